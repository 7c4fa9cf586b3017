// DcRipngRouter: RIPng router.
#include "routing/DcRipngRouter.h"

#include "routing/DcRouterMgr.h"
#include "routing/ProtocolRegistry.h"

namespace Zavrel {

DcRipngRouter::DcRipngRouter(unsigned short vid)
    : DcRouterBase("RIPNG", vid, ProtocolRegistry::MakeProto(DcRouterMgr::RIPng)) {}

DcRipngRouter::DcRipngRouter(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcRipngRouter::~DcRipngRouter() = default;

bool DcRipngRouter::CreateConfigList(DcConfigLists&) {
    return true;
}

void DcRipngRouter::ConsoleCommand(void*, DcConsole*, int, char**) {}

}  // namespace Zavrel
