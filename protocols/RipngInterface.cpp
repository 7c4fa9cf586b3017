// RipngInterface: RIPng protocol object.
#include "protocols/RipngInterface.h"

#include "rtm/DcRtmMgr.h"

namespace Zavrel {

RipngInterface::RipngInterface()
    : DcProtoInterfaceBase(DcRtmMgr::AFI_IPV6, RedistributionProfile::PROTO_RIP) {}

RipngInterface::~RipngInterface() = default;

}  // namespace Zavrel
