// DcOspfv2Router: OSPFv2 router.
#include "protocols/DcOspfv2Router.h"

#include <new>

#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcOspfv2Router::DcOspfv2Router(unsigned short vid)
    : DcOspfRouter("OSPFV2", vid,
                   new (std::nothrow)
                       DcProtoInterfaceBase(DcRtmMgr::AFI_IPV4, RedistributionProfile::PROTO_OSPF),
                   2) {}

DcOspfv2Router::~DcOspfv2Router() = default;

}  // namespace Zavrel
