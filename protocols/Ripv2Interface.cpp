// Ripv2Interface: RIPv2 protocol object.
#include "protocols/Ripv2Interface.h"

#include "rtm/DcRtmMgr.h"

namespace Zavrel {

Ripv2Interface::Ripv2Interface()
    : DcProtoInterfaceBase(DcRtmMgr::AFI_IPV4, RedistributionProfile::PROTO_RIP) {}

Ripv2Interface::~Ripv2Interface() = default;

}  // namespace Zavrel
