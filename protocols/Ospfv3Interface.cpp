// Ospfv3Interface: OSPFv3 protocol object.
#include "protocols/Ospfv3Interface.h"

#include "rtm/DcRtmMgr.h"

namespace Zavrel {

Ospfv3Interface::Ospfv3Interface()
    : DcProtoInterfaceBase(DcRtmMgr::AFI_IPV6, RedistributionProfile::PROTO_OSPF) {}

Ospfv3Interface::~Ospfv3Interface() = default;

}  // namespace Zavrel
