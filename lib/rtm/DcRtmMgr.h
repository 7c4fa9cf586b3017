// DcRtmMgr: the routing table manager (RTM) instances of every VLAN, one for
// IPv4 and one for IPv6, with the settings they were created with; and the
// static routes and redistribution entries that reach those instances as
// configuration items, with the handling of the stack's answers.
//
// The IPv4 instance of a VLAN is the VLAN number; the IPv6 instance is the
// VLAN number with IP6_INSTANCE_BIT set.
#ifndef ZAVREL_RTM_DCRTMMGR_H
#define ZAVREL_RTM_DCRTMMGR_H

#include <cstddef>
#include <map>

#include "config/DclConfigObject.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/Ip6Prefix.h"
#include "platform/OptionsNode.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

class DcRtmMgr {
public:
    static constexpr unsigned short IP6_INSTANCE_BIT = 0x8000;
    // Kind codes of the configuration scheduler keys.
    static constexpr unsigned int CFG_KEY_STATIC_ROUTE = 0x3d000003;
    static constexpr unsigned int CFG_KEY_REDISTRIBUTION = 0x3d000002;
    // Address family arguments: 41 selects IPv6, anything else IPv4.
    static constexpr int AFI_IPV4 = Sms::AFI_IPV4;
    static constexpr int AFI_IPV6 = Sms::AFI_IPV6;

    // Settings of one RTM instance.
    struct RTMData {
        RTMData();
        // Set when the stack reports the instance ready.
        bool ready;
        unsigned int deadTimer;
        unsigned int ospfv2Internal;
        unsigned int ospfv3Internal;
        unsigned int ospfv2External;
        unsigned int ospfv3External;
        unsigned int ripv2;
        unsigned int ripng;
        unsigned int ebgp;
        unsigned int ibgp;
    };

    static DcRtmMgr* GetInstance();

    // vlan with IP6_INSTANCE_BIT set when afi is 41, else vlan.
    unsigned short GetDclProtocolInstanceIdFromVlan(unsigned short vlan, int afi) const;

    // Readiness flag of an instance; false when the instance is unknown.
    bool IsRtmReady(unsigned short id) const;
    // Sets the readiness flag, inserting default settings when unknown.
    void SetRtmReady(unsigned short id);
    bool HasRtmData(unsigned short id) const;
    // The stored settings of an instance, or null.
    const RTMData* GetRtmData(unsigned short id) const;
    // Instances with stored settings.
    size_t RtmDataCount() const { return m_rtm_data.size(); }

    // Reads the "RTM" section of a VLAN's options into data; false (data
    // unchanged) when the section is missing or empty.
    bool GetRTMConfig(const OptionsNode& options, RTMData* data);
    // Creates or updates one instance in the stack (unchanged settings make
    // no stack call). Always true.
    bool CreateRTMInstance(unsigned short vlan, int afi, const RTMData& data);
    void DeleteRTMInstance(unsigned short vlan, int afi);
    // Deletes both instances of a VLAN.
    void DeleteRtmConfig(unsigned short vlan);
    // Creates both instances of a VLAN from its options (type 0 only).
    bool UpdateRtmConfig(unsigned short vlan, const OptionsNode& options,
                         DclConfigObject::OptionType type);
    // Answers the stack's request for an instance's settings; false when the
    // instance is unknown (entity untouched).
    bool GetRTMConfig(unsigned short instanceId, amb_cipr_rtm_entity* entity);

    // ---- static routes and redistribution
    void UpdateStaticRoute(unsigned long vlan, long family, const unsigned char* destination,
                           long prefixLength, const unsigned char* nextHop, unsigned long ifIndex,
                           unsigned long metric, long routeType, long rowStatus, long adminStatus);
    void UpdateStaticRoute(unsigned short vlan, const Ip4Addr& destination, int prefixLength,
                           const Ip4Addr& nextHop, unsigned int ifIndex, unsigned short metric,
                           int routeType, unsigned int rowStatus, unsigned int adminStatus);
    void UpdateStaticRoute(unsigned short vlan, const Ip6Addr& destination, int prefixLength,
                           const Ip6Addr& nextHop, unsigned int ifIndex, unsigned short metric,
                           int routeType, unsigned int rowStatus, unsigned int adminStatus);
    void Redistribute(unsigned int rowStatus, unsigned int adminStatus, unsigned int source,
                      unsigned int destination, unsigned short instance);
    void HandleRedistributionStatusChange(unsigned short instance, unsigned int source,
                                          unsigned int destination, bool enabled, bool wasEnabled);
    void UpdateRouteCallback(unsigned short vlan, int family, const unsigned char* destination,
                             unsigned int prefixLength, const unsigned char* nextHop,
                             unsigned int ifIndex, int metric, int routeType, int rowStatus,
                             int adminStatus, unsigned long spare, unsigned int result);
    void UpdateRedistributionCallback(unsigned short instance, unsigned int source,
                                      unsigned int destination, unsigned int adminStatus,
                                      unsigned int rowStatus, unsigned long extra,
                                      unsigned int result);

private:
    // DcRouterMgr::ResetForTests takes this manager down too.
    friend class DcRouterMgr;

    DcRtmMgr();
    DcRtmMgr(const DcRtmMgr&) = delete;
    DcRtmMgr& operator=(const DcRtmMgr&) = delete;

    // Deletes the instance, if any; true when there was one.
    static bool DestroyInstance();

    static DcRtmMgr* m_instance;
    std::map<unsigned short, RTMData> m_rtm_data;
};

// Static routes of the application, IPv4: the netmask becomes a prefix
// length, the metric is cut to 16 bits.
bool AddRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
              const Ip4Addr& gateway, unsigned int ifIndex, unsigned int metric, long routeType,
              long adminStatus);
bool RemoveRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                 const Ip4Addr& gateway, unsigned int ifIndex);
bool EnableRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                 const Ip4Addr& gateway, unsigned int ifIndex);
bool DisableRoute(unsigned short vlan, const Ip4Addr& destination, const Ip4Addr& netmask,
                  const Ip4Addr& gateway, unsigned int ifIndex);

// IPv6: AddRoute takes the destination from the prefix (address unused);
// the other three take it from address and only the length from prefix.
bool AddRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
              const Ip6Addr& gateway, unsigned int ifIndex, unsigned int metric, long routeType,
              long adminStatus);
bool RemoveRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                 const Ip6Addr& gateway, unsigned int ifIndex);
bool EnableRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                 const Ip6Addr& gateway, unsigned int ifIndex);
bool DisableRoute(unsigned short vlan, const Ip6Addr& address, const Ip6Prefix& prefix,
                  const Ip6Addr& gateway, unsigned int ifIndex);

}  // namespace Zavrel

#endif
