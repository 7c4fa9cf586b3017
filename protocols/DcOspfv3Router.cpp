// DcOspfv3Router: OSPFv3 router.
#include "protocols/DcOspfv3Router.h"

#include <new>

#include "protocols/DcRouterConsole.h"
#include "protocols/Ospfv3Interface.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcOspfv3Router::DcOspfv3Router(unsigned short vid)
    : DcOspfRouter("OSPFV3", vid, new (std::nothrow) Ospfv3Interface(), 3) {}

DcOspfv3Router::~DcOspfv3Router() = default;

void DcOspfv3Router::ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    DcRouterConsole::Show(console, argc, argv, "ip6 ospf", DcRouterMgr::OSPFv3, "OSPFv3",
                          DcRtmMgr::AFI_IPV6);
}

}  // namespace Zavrel
