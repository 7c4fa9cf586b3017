// RegisterProtocols: the protocol libraries' entries of the registry.
#include "protocols/RegisterProtocols.h"

#include "platform/AllocationFaults.h"
#include "protocols/DcBgpRouter.h"
#include "protocols/DcMulticastRouter.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "protocols/DcRouterConsole.h"
#include "protocols/MulticastRoutingTableConsoleCommand.h"
#include "protocols/RipngInterface.h"
#include "protocols/Ripv2Interface.h"
#include "routing/DcRouterMgr.h"
#include "routing/ProtocolRegistry.h"

namespace Zavrel {

namespace {

DcRouterBase* MakeBgp(unsigned short vid) {
    return NewOrNull<DcBgpRouter>("DcBgpRouter", vid);
}
DcRouterBase* MakeOspfv2(unsigned short vid) {
    return NewOrNull<DcOspfv2Router>("DcOspfv2Router", vid);
}
DcRouterBase* MakeOspfv3(unsigned short vid) {
    return NewOrNull<DcOspfv3Router>("DcOspfv3Router", vid);
}
DcRouterBase* MakeIgmp(unsigned short vid) {
    return NewOrNull<DcMulticastRouter>("DcMulticastRouter", vid, DcMulticastRouter::PROTOCOL_IGMP);
}
DcRouterBase* MakeMld(unsigned short vid) {
    return NewOrNull<DcMulticastRouter>("DcMulticastRouter", vid, DcMulticastRouter::PROTOCOL_MLD);
}
DcProtoConfigBase* MakeRipv2Interface() {
    return NewOrNull<Ripv2Interface>("Ripv2Interface");
}
DcProtoConfigBase* MakeRipngInterface() {
    return NewOrNull<RipngInterface>("RipngInterface");
}
DcConsoleCommand* MakeMulticastTable(DcConsole* console, int family) {
    return NewOrNull<MulticastRoutingTableConsoleCommand>(
        "MulticastRoutingTableConsoleCommand", console, static_cast<unsigned short>(family));
}

}  // namespace

void RegisterProtocols() {
    ProtocolRegistry::Entries entries;
    entries.routers[DcRouterMgr::BGP] = &MakeBgp;
    entries.routers[DcRouterMgr::OSPFv2] = &MakeOspfv2;
    entries.routers[DcRouterMgr::OSPFv3] = &MakeOspfv3;
    entries.routers[DcRouterMgr::IGMP] = &MakeIgmp;
    entries.routers[DcRouterMgr::MLD] = &MakeMld;
    entries.protos[DcRouterMgr::RIPv2] = &MakeRipv2Interface;
    entries.protos[DcRouterMgr::RIPng] = &MakeRipngInterface;
    entries.ip4_handlers = {
        {"bgp", &DcBgpRouter::Ip4ConsoleCommand, "BGP4 Routing Configuration"},
        {"ospf", &DcOspfv2Router::ConsoleCommand, "OSPFv2 Routing Configuration"},
        {"igmp", &DcMulticastRouter::Ip4ConsoleCommand, "IGMP Routing Configuration"},
    };
    entries.ip6_handlers = {
        {"bgp", &DcBgpRouter::Ip6ConsoleCommand, "BGP4 Routing Configuration"},
        // The help text of this entry is spelled "OPSFv3" on purpose.
        {"ospf", &DcOspfv3Router::ConsoleCommand, "OPSFv3 Routing Configuration"},
    };
    entries.show_router = &DcRouterConsole::Show;
    entries.multicast_table = &MakeMulticastTable;
    ProtocolRegistry::Register(entries);
}

}  // namespace Zavrel
