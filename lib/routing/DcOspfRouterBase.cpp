// DcOspfRouterBase: OSPF router base with its areas.
#include "routing/DcOspfRouterBase.h"

namespace Zavrel {

DcOspfRouterBase::DcOspfRouterBase(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcOspfRouterBase::~DcOspfRouterBase() {
    m_areas.clear();
}

}  // namespace Zavrel
