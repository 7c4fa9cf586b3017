// DcRipv2Router: the RIPv2 router of a VLAN, named "RIPV2", with a
// Ripv2Interface as its protocol object. It keeps no configuration lists.
#ifndef ZAVREL_ROUTING_DCRIPV2ROUTER_H
#define ZAVREL_ROUTING_DCRIPV2ROUTER_H

#include "routing/DcRouterBase.h"

namespace Zavrel {

class DcConsole;

class DcRipv2Router : public DcRouterBase {
public:
    // "RIPV2" with a new Ripv2Interface.
    explicit DcRipv2Router(unsigned short vid);
    DcRipv2Router(const string& name, unsigned short vid, DcProtoConfigBase* proto);
    ~DcRipv2Router() override;

    // Accepts the bundle without adding a list.
    bool CreateConfigList(DcConfigLists& lists) override;

    // Console handler of the IPv4 "rip" command.
    static void ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
};

}  // namespace Zavrel

#endif
