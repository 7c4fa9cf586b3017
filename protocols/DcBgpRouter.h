// DcBgpRouter: the BGP4+ router of a VLAN, named "BGP". One router serves
// both families: it is ready once enabled and the VLAN's IPv4 RTM instance is
// ready, and the routes redistributed into BGP are requested in both RTM
// instances of the VLAN (IPv4 first).
#ifndef ZAVREL_PROTOCOLS_DCBGPROUTER_H
#define ZAVREL_PROTOCOLS_DCBGPROUTER_H

#include "routing/DcRouterBase.h"

namespace Zavrel {

class DcConsole;

class DcBgpRouter : public DcRouterBase {
public:
    explicit DcBgpRouter(unsigned short vid);
    ~DcBgpRouter() override;

    // Accepts the bundle without adding a list.
    bool CreateConfigList(DcConfigLists& lists) override;

    // Console handlers of the IPv4 and IPv6 "bgp" commands.
    static void Ip4ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
    static void Ip6ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
};

}  // namespace Zavrel

#endif
