// Ripv2Interface: the protocol object of a RIPv2 router. It works in the
// VLAN's IPv4 RTM instance: that instance's readiness makes the router ready,
// and the routes redistributed into RIP are requested there.
#ifndef ZAVREL_PROTOCOLS_RIPV2INTERFACE_H
#define ZAVREL_PROTOCOLS_RIPV2INTERFACE_H

#include "routing/DcProtoInterfaceBase.h"

namespace Zavrel {

class Ripv2Interface : public DcProtoInterfaceBase {
public:
    Ripv2Interface();
    ~Ripv2Interface() override;
};

}  // namespace Zavrel

#endif
