// DcBgpRouter: BGP4+ router.
#include "protocols/DcBgpRouter.h"

#include <new>

#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcBgpRouter::DcBgpRouter(unsigned short vid)
    : DcRouterBase("BGP", vid,
                   new (std::nothrow) DcProtoInterfaceBase(
                       DcRtmMgr::AFI_IPV4, RedistributionProfile::PROTO_BGP, true)) {}

DcBgpRouter::~DcBgpRouter() = default;

bool DcBgpRouter::CreateConfigList(DcConfigLists&) { return true; }

}  // namespace Zavrel
