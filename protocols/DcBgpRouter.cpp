// DcBgpRouter: BGP4+ router.
#include "protocols/DcBgpRouter.h"

#include <new>

#include "protocols/DcRouterConsole.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcBgpRouter::DcBgpRouter(unsigned short vid)
    : DcRouterBase("BGP", vid,
                   new (std::nothrow) DcProtoInterfaceBase(
                       DcRtmMgr::AFI_IPV4, RedistributionProfile::PROTO_BGP, true)) {}

DcBgpRouter::~DcBgpRouter() = default;

bool DcBgpRouter::CreateConfigList(DcConfigLists&) {
    return true;
}

void DcBgpRouter::Ip4ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    DcRouterConsole::Show(console, argc, argv, "ip bgp", DcRouterMgr::BGP, "BGP4+",
                          DcRtmMgr::AFI_IPV4);
}

void DcBgpRouter::Ip6ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    DcRouterConsole::Show(console, argc, argv, "ip6 bgp", DcRouterMgr::BGP, "BGP4+",
                          DcRtmMgr::AFI_IPV6);
}

}  // namespace Zavrel
