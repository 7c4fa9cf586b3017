// Ospfv3Interface: the protocol object of an OSPFv3 router. It works in the
// VLAN's IPv6 RTM instance: that instance's readiness makes the router ready,
// and the routes redistributed into OSPF are requested there.
#ifndef ZAVREL_PROTOCOLS_OSPFV3INTERFACE_H
#define ZAVREL_PROTOCOLS_OSPFV3INTERFACE_H

#include "routing/DcProtoInterfaceBase.h"

namespace Zavrel {

class Ospfv3Interface : public DcProtoInterfaceBase {
public:
    Ospfv3Interface();
    ~Ospfv3Interface() override;
};

}  // namespace Zavrel

#endif
