// DcRipv2Router: RIPv2 router.
#include "routing/DcRipv2Router.h"

#include <new>

#include "protocols/DcRouterConsole.h"
#include "protocols/Ripv2Interface.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcRipv2Router::DcRipv2Router(unsigned short vid)
    : DcRouterBase("RIPV2", vid, new (std::nothrow) Ripv2Interface()) {}

DcRipv2Router::DcRipv2Router(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcRipv2Router::~DcRipv2Router() = default;

bool DcRipv2Router::CreateConfigList(DcConfigLists&) { return true; }

void DcRipv2Router::ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    DcRouterConsole::Show(console, argc, argv, "ip rip", DcRouterMgr::RIPv2, "RIPv2",
                          DcRtmMgr::AFI_IPV4);
}

}  // namespace Zavrel
