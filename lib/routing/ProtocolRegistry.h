// ProtocolRegistry: what the protocol libraries give the router manager.
//
// The BGP, OSPFv2, OSPFv3 and multicast routers of a VLAN, the protocol
// objects of the library's own RIPv2 and RIPng routers, the protocol console
// handlers and the multicast table command all come from the protocol
// libraries. The library knows them only through this table, which the
// protocol libraries fill once at start, before the router manager is first
// used (zavrel_protocols: RegisterProtocols()). The library therefore
// depends on no protocol library, and a deployment may bring its own.
//
// An entry left empty is reported where it is needed: a VLAN cannot be
// created without its routers, a console command without its handler is not
// offered, and a RIP router without a protocol object runs without one.
#ifndef ZAVREL_ROUTING_PROTOCOLREGISTRY_H
#define ZAVREL_ROUTING_PROTOCOLREGISTRY_H

#include <vector>

#include "routing/DcRouterCmdHandler.h"

namespace Zavrel {

class DcConsole;
class DcConsoleCommand;
class DcProtoConfigBase;
class DcRouterBase;

class ProtocolRegistry {
public:
    // Router types are DcRouterMgr::ProtocolType values.
    static constexpr int TYPE_COUNT = 7;

    // Makes the router of one type for a VLAN; null when out of memory.
    using RouterFactory = DcRouterBase* (*)(unsigned short vid);
    // Makes the protocol object of a router the library builds itself.
    using ProtoFactory = DcProtoConfigBase* (*)();
    // Prints the router of one type in the console's VLAN (the protocol
    // console handler shared by the routing commands): argv[0] is the
    // command word; afi is 0 or 41. Ends the console's command.
    using RouterShow = void (*)(DcConsole* console, int argc, char** argv, const char* usage,
                                int type, const char* label, int afi);
    // Makes the multicast routing table command of family 0 or 41.
    using TableCommandFactory = DcConsoleCommand* (*)(DcConsole* console, int family);

    // One routing console handler: its word in the "ip" or "ip6" table.
    struct ConsoleHandler {
        const char* name;
        DcRouterCmdFunc handler;
        const char* help;
    };

    // Everything one protocol library set provides.
    struct Entries {
        RouterFactory routers[TYPE_COUNT] = {};
        ProtoFactory protos[TYPE_COUNT] = {};
        std::vector<ConsoleHandler> ip4_handlers;
        std::vector<ConsoleHandler> ip6_handlers;
        RouterShow show_router = nullptr;
        TableCommandFactory multicast_table = nullptr;
    };

    // Replaces the table. Call before the router manager is first used: its
    // console tables are filled when it is created.
    static void Register(const Entries& entries);
    // Empties the table (tests of a library without protocols).
    static void Clear();

    static const Entries& Get();

    // The factory of a router type; null when none is registered.
    static RouterFactory Router(int type);
    // The protocol object of a router type, made by its factory; null when
    // none is registered or it could not be allocated.
    static DcProtoConfigBase* MakeProto(int type);

private:
    static Entries& Table();
};

}  // namespace Zavrel

#endif
