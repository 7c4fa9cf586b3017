// State entry points of the stack: instances, route and redistribution
// outcomes, RTM readiness and settings, interface addresses and the end of
// MIB requests. Each finds the right manager and forwards.
#include "stack/StackCallbacks.h"

#include <cstring>

#include "interfaces/DcInterfaceMgr.h"
#include "mib/Serializer.h"
#include "platform/Ip4Addr.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace {

using Zavrel::DcInterfaceMgr;
using Zavrel::DcRouterMgr;
using Zavrel::DcRtmMgr;

// The RTM manager, created if needed: the instance bit is its constant.
DcRtmMgr* RtmMgr() {
    return DcRtmMgr::GetInstance();
}

// The VLAN of a stack instance id: the IPv6 bit cleared, the low 16 bits.
unsigned short StripInstance(unsigned long instance) {
    return static_cast<unsigned short>(
        instance & ~static_cast<unsigned long>(DcRtmMgr::IP6_INSTANCE_BIT) & 0xFFFFul);
}

// The low 16 bits of an id that is used as it is, IPv6 bit included.
unsigned short LowBits(unsigned long value) {
    return static_cast<unsigned short>(value & 0xFFFFul);
}

// The IPv4 address of the named interface of the instance's VLAN, written
// as 4 bytes in network order; the buffer is untouched when there is none.
int WriteInterfaceAddress(unsigned long instance, unsigned char* address, const char* name) {
    RtmMgr();
    unsigned short vid = StripInstance(instance);
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return 0;
    }
    if (name == nullptr) {
        name = interfaces->GetPrimaryInterface(vid);
    }
    Zavrel::Ip4Addr value;
    if (!interfaces->GetIfIpAddr(vid, name, value)) {
        return 0;
    }
    std::memcpy(address, value.Bytes(), 4);
    return 1;
}

}  // namespace

extern "C" {

ZAVREL_STACK_EXPORT int cIsIpv6Instance(unsigned long instance) {
    RtmMgr();
    return (instance & DcRtmMgr::IP6_INSTANCE_BIT) != 0 ? 1 : 0;
}

ZAVREL_STACK_EXPORT unsigned long cGetIp6Instance(unsigned long instance) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return 0;
    }
    return rtm->GetDclProtocolInstanceIdFromVlan(StripInstance(instance), Zavrel::Sms::AFI_IPV6);
}

ZAVREL_STACK_EXPORT unsigned long cGetIp4Instance(unsigned long instance) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return 0;
    }
    return rtm->GetDclProtocolInstanceIdFromVlan(StripInstance(instance), Zavrel::Sms::AFI_IPV4);
}

ZAVREL_STACK_EXPORT void cSetRouteState(unsigned long instance, int family,
                                        const unsigned char* dest, unsigned int prefix_len,
                                        const unsigned char* next_hop, unsigned int if_index,
                                        int metric, int route_type, int row_status,
                                        int admin_status, unsigned long spare,
                                        unsigned int result) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return;
    }
    rtm->UpdateRouteCallback(StripInstance(instance), family, dest, prefix_len, next_hop, if_index,
                             metric, route_type, row_status, admin_status, spare, result);
}

ZAVREL_STACK_EXPORT void cSetRedistState(unsigned long a0, unsigned long a1, unsigned long a2,
                                         unsigned long a3, unsigned long a4, unsigned long a5,
                                         unsigned long a6, unsigned long a7) {
    (void)a4;
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return;
    }
    // a0 row status, a1 admin status, a2 source, a3 destination, a5 the
    // instance (used as it is), a6 extra value, a7 result.
    rtm->UpdateRedistributionCallback(LowBits(a5), static_cast<unsigned int>(a2),
                                      static_cast<unsigned int>(a3), static_cast<unsigned int>(a1),
                                      static_cast<unsigned int>(a0), a6,
                                      static_cast<unsigned int>(a7));
}

ZAVREL_STACK_EXPORT int cIsRtmReady(unsigned long instance) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return 0;
    }
    return rtm->IsRtmReady(LowBits(instance)) ? 1 : 0;
}

ZAVREL_STACK_EXPORT void cSetRtmReady(unsigned long instance) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr) {
        return;
    }
    rtm->SetRtmReady(LowBits(instance));
}

ZAVREL_STACK_EXPORT int cGetRtmConfig(unsigned long instance, amb_cipr_rtm_entity* entity) {
    DcRtmMgr* rtm = RtmMgr();
    if (rtm == nullptr || entity == nullptr) {
        return 2;
    }
    return rtm->GetRTMConfig(LowBits(instance), entity) ? 1 : 2;
}

ZAVREL_STACK_EXPORT int cGetAddress(unsigned long instance, unsigned char* address) {
    if (address == nullptr) {
        return 0;
    }
    return WriteInterfaceAddress(instance, address, nullptr);
}

ZAVREL_STACK_EXPORT int cGetVlanAddress(unsigned long instance, unsigned char* address) {
    if (address == nullptr) {
        return 0;
    }
    return WriteInterfaceAddress(instance, address, "eth0");
}

ZAVREL_STACK_EXPORT int cI3Ready(void) {
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    if (mgr == nullptr) {
        return 0;
    }
    mgr->GetSerializer().RunPendingActions();
    return 0;
}

ZAVREL_STACK_EXPORT void cRunPendingAction(unsigned long* oid, unsigned long length) {
    if (oid == nullptr || length == 0) {
        return;
    }
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    if (mgr == nullptr) {
        return;
    }
    mgr->GetSerializer().RunPendingAction(oid, length);
}

}  // extern "C"
