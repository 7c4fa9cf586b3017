// DcRouterConsole: what the protocol console handlers print about the router
// of one protocol in the console's VLAN: its state, its RTM instance, what it
// redistributes, its interfaces and, for OSPF, its areas and, for multicast,
// its multicast interfaces and groups.
#ifndef ZAVREL_PROTOCOLS_DCROUTERCONSOLE_H
#define ZAVREL_PROTOCOLS_DCROUTERCONSOLE_H

namespace Zavrel {

class DcConsole;
class DcRouterBase;

class DcRouterConsole {
public:
    // Runs one router command: argv[0] is the command word, any further
    // word prints "Usage: <usage>\n". Otherwise the router of the given
    // protocol type in the console's VLAN is printed under label, with the
    // RTM instance of family afi (0 or 41). Ends with the console's end of
    // command.
    static void Show(DcConsole* console, int argc, char** argv, const char* usage, int type,
                     const char* label, int afi);

    // The router's lines (without the end of command).
    static void PrintRouter(DcConsole* console, DcRouterBase* router, const char* label, int afi);
};

}  // namespace Zavrel

#endif
