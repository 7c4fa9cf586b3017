// DcOspfv2Router: OSPFv2 router.
#include "protocols/DcOspfv2Router.h"

#include <new>

#include "protocols/DcRouterConsole.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcOspfv2Router::DcOspfv2Router(unsigned short vid)
    : DcOspfRouter("OSPFV2", vid,
                   new (std::nothrow)
                       DcProtoInterfaceBase(DcRtmMgr::AFI_IPV4, RedistributionProfile::PROTO_OSPF),
                   2) {}

DcOspfv2Router::~DcOspfv2Router() = default;

void DcOspfv2Router::ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    DcRouterConsole::Show(console, argc, argv, "ip ospf", DcRouterMgr::OSPFv2, "OSPFv2",
                          DcRtmMgr::AFI_IPV4);
}

}  // namespace Zavrel
