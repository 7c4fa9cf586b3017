// RipngInterface: the protocol object of a RIPng router. It works in the
// VLAN's IPv6 RTM instance: that instance's readiness makes the router ready,
// and the routes redistributed into RIP are requested there.
#ifndef ZAVREL_PROTOCOLS_RIPNGINTERFACE_H
#define ZAVREL_PROTOCOLS_RIPNGINTERFACE_H

#include "routing/DcProtoInterfaceBase.h"

namespace Zavrel {

class RipngInterface : public DcProtoInterfaceBase {
public:
    RipngInterface();
    ~RipngInterface() override;
};

}  // namespace Zavrel

#endif
