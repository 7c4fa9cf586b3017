// DcMulticastRouterBase: base of the multicast routers.
#include "routing/DcMulticastRouterBase.h"

namespace Zavrel {

DcMulticastRouterBase::DcMulticastRouterBase(const string& name, unsigned short vid,
                                             DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcMulticastRouterBase::~DcMulticastRouterBase() = default;

}  // namespace Zavrel
