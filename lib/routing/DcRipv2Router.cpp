// DcRipv2Router: RIPv2 router.
#include "routing/DcRipv2Router.h"

#include <new>

#include "protocols/Ripv2Interface.h"

namespace Zavrel {

DcRipv2Router::DcRipv2Router(unsigned short vid)
    : DcRouterBase("RIPV2", vid, new (std::nothrow) Ripv2Interface()) {}

DcRipv2Router::DcRipv2Router(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcRipv2Router::~DcRipv2Router() = default;

bool DcRipv2Router::CreateConfigList(DcConfigLists&) { return true; }

}  // namespace Zavrel
