// DcRipngRouter: the RIPng router of a VLAN, named "RIPNG", with a
// RipngInterface as its protocol object. It keeps no configuration lists.
#ifndef ZAVREL_ROUTING_DCRIPNGROUTER_H
#define ZAVREL_ROUTING_DCRIPNGROUTER_H

#include "routing/DcRouterBase.h"

namespace Zavrel {

class DcConsole;

class DcRipngRouter : public DcRouterBase {
public:
    // "RIPNG" with a new RipngInterface.
    explicit DcRipngRouter(unsigned short vid);
    DcRipngRouter(const string& name, unsigned short vid, DcProtoConfigBase* proto);
    ~DcRipngRouter() override;

    // Accepts the bundle without adding a list.
    bool CreateConfigList(DcConfigLists& lists) override;

    // Console handler of the IPv6 "rip" command: does nothing.
    static void ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
};

}  // namespace Zavrel

#endif
