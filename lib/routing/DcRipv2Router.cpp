// DcRipv2Router: RIPv2 router.
#include "routing/DcRipv2Router.h"

#include "platform/DcConsole.h"
#include "routing/DcRouterMgr.h"
#include "routing/ProtocolRegistry.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcRipv2Router::DcRipv2Router(unsigned short vid)
    : DcRouterBase("RIPV2", vid, ProtocolRegistry::MakeProto(DcRouterMgr::RIPv2)) {}

DcRipv2Router::DcRipv2Router(const string& name, unsigned short vid, DcProtoConfigBase* proto)
    : DcRouterBase(name, vid, proto) {}

DcRipv2Router::~DcRipv2Router() = default;

bool DcRipv2Router::CreateConfigList(DcConfigLists&) {
    return true;
}

void DcRipv2Router::ConsoleCommand(void*, DcConsole* console, int argc, char** argv) {
    // The router is printed by the protocol libraries' console handler.
    ProtocolRegistry::RouterShow show = ProtocolRegistry::Get().show_router;
    if (show == nullptr) {
        if (console != nullptr) {
            console->EndOfCommand();
        }
        return;
    }
    show(console, argc, argv, "ip rip", DcRouterMgr::RIPv2, "RIPv2", DcRtmMgr::AFI_IPV4);
}

}  // namespace Zavrel
