// DcOspfv2Router: the OSPFv2 router of a VLAN, named "OSPFV2". It works in
// the VLAN's IPv4 RTM instance and keeps its areas as DcOspfRouter does.
#ifndef ZAVREL_PROTOCOLS_DCOSPFV2ROUTER_H
#define ZAVREL_PROTOCOLS_DCOSPFV2ROUTER_H

#include "protocols/DcOspfRouter.h"

namespace Zavrel {

class DcOspfv2Router : public DcOspfRouter {
public:
    explicit DcOspfv2Router(unsigned short vid);
    ~DcOspfv2Router() override;

    // Console handler of the IPv4 "ospf" command.
    static void ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
};

}  // namespace Zavrel

#endif
