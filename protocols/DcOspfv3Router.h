// DcOspfv3Router: the OSPFv3 router of a VLAN, named "OSPFV3", with an
// Ospfv3Interface as its protocol object. It works in the VLAN's IPv6 RTM
// instance and keeps its areas as DcOspfRouter does.
#ifndef ZAVREL_PROTOCOLS_DCOSPFV3ROUTER_H
#define ZAVREL_PROTOCOLS_DCOSPFV3ROUTER_H

#include "protocols/DcOspfRouter.h"

namespace Zavrel {

class DcOspfv3Router : public DcOspfRouter {
public:
    explicit DcOspfv3Router(unsigned short vid);
    ~DcOspfv3Router() override;

    // Console handler of the IPv6 "ospf" command.
    static void ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
};

}  // namespace Zavrel

#endif
