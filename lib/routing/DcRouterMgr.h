// DcRouterMgr: the library's root object.
//
// A process-wide singleton, created on first use and never destroyed (tests
// take it down between cases through ResetForTests). It owns, per configured
// VLAN, one router of each protocol (BGP, OSPFv2, OSPFv3, RIPv2, RIPng, IGMP,
// MLD), and it owns the stack scheduler, the configuration scheduler, the
// request serializer and the two tables of routing console handlers.
// Interface and address events of the application are fanned out from here
// to the routers of the VLAN concerned.
//
// The implementation is split by theme: DcRouterMgr.cpp (instance, VLAN
// lifecycle, events, stack bridge), DcRouterMgrReload.cpp (configuration
// reload) and DcRouterMgrConsole.cpp (routing console commands).
#ifndef ZAVREL_ROUTING_DCROUTERMGR_H
#define ZAVREL_ROUTING_DCROUTERMGR_H

#include <map>
#include <set>
#include <utility>

#include "cfg/CfgSched.h"
#include "config/DclConfigObject.h"
#include "mib/Serializer.h"
#include "platform/Ip4Addr.h"
#include "platform/String.h"
#include "routing/DcRouterCmdHandler.h"
#include "stack/DcScheduler.h"

namespace Zavrel {

class DcConsole;
class DcIpInterface;
class DcRouterBase;
class DcSckInterface;
class Options;
class OptionsNode;

// A visitor of routers (see DcRouterMgr::ForEachDcRouter).
class DcRouterIteratorFunc {
public:
    virtual ~DcRouterIteratorFunc();
    virtual void operator()(DcRouterBase* router) = 0;
};

class DcRouterMgr {
public:
    // The protocol routers of a VLAN. The value is also the order in which
    // a VLAN's routers are kept and visited.
    enum ProtocolType : int {
        BGP = 0,
        OSPFv2 = 1,
        OSPFv3 = 2,
        RIPv2 = 3,
        RIPng = 4,
        IGMP = 5,
        MLD = 6
    };
    static constexpr int PROTOCOL_COUNT = 7;

    // The routers of one VLAN.
    struct VlanRouters {
        VlanRouters() = default;
        ~VlanRouters();  // deletes the routers still in the map
        VlanRouters(const VlanRouters&) = delete;
        VlanRouters& operator=(const VlanRouters&) = delete;

        // The options sources that configure the VLAN.
        std::set<string> sources;
        // The routers, owned.
        std::map<ProtocolType, DcRouterBase*> routers;
    };

    typedef std::map<unsigned short, VlanRouters*> VlanMap;
    typedef std::map<string, DcRouterCmdHandler> CmdHandlerMap;

    // The manager, created on first use. Null only when it could not be
    // allocated.
    static DcRouterMgr* GetInstance();

    ~DcRouterMgr();
    DcRouterMgr(const DcRouterMgr&) = delete;
    DcRouterMgr& operator=(const DcRouterMgr&) = delete;

    // ---- start-up
    // Records the routers' IP interface object and the console's default
    // VLAN, then starts the routing stack. Returns smsi_init's result.
    int Initialize(unsigned short vid, DcIpInterface* ip);
    // Hands the application's socket registry to the routers. Must come
    // before Initialize: the stack may register sockets as soon as it runs.
    void SckInterfaceInitialize(DcSckInterface* sck);

    // ---- owned parts
    Serializer& GetSerializer() { return m_serializer; }
    CfgSched& GetCfgSched() { return m_cfg_sched; }
    DcScheduler& GetScheduler() { return m_scheduler; }
    const VlanMap& GetVlans() const { return m_vlans; }

    // ---- VLAN lifecycle
    // Creates the VLAN's RTM instances and its seven routers (unconfigured).
    // Returns the VLAN's position and true when it was inserted; the end
    // position and false when the RTM configuration was refused or a router
    // could not be allocated; the existing position and false when the VLAN
    // already exists.
    std::pair<VlanMap::iterator, bool> CreateVlan(unsigned short vid, const OptionsNode& node,
                                                  DclConfigObject::OptionType type);
    void DeleteVlan(unsigned short vid);

    // ---- events
    // Multicast membership of a remote that joins or leaves a network.
    void JoinNetwork(unsigned short vid, unsigned int ifIndex, bool flag);
    void LeaveNetwork(unsigned short vid, unsigned int ifIndex);
    void ProcessIPAddressChange(unsigned short vid, unsigned int ifIndex, const Ip4Addr& addr);
    // Status changes must be sent only for created VLANs: an unknown VLAN is
    // entered into the VLAN map with an empty (null) record, which the
    // lookups and walks skip.
    void ProcessInterfaceStatusChange(unsigned short vid, unsigned int ifIndex,
                                      unsigned short status);

    // ---- lookups
    DcRouterBase* GetDcRouterByVID(unsigned short vid, ProtocolType type);
    // For stack callbacks: the IPv6 bit of the instance id is ignored.
    DcRouterBase* GetDcRouterByInstanceID(unsigned int instanceId, ProtocolType type);
    // Calls f with the router of the given type of every VLAN, in ascending
    // VLAN order. Nothing when f is null.
    void ForEachDcRouter(DcRouterIteratorFunc* f, ProtocolType type);

    // Number of set bits of a netmask: its prefix length.
    static unsigned int bitcount(Ip4Addr mask);
    static const char* RouterName(ProtocolType type);

    // ---- configuration
    // Applies the options of one source; always true.
    bool Reload(const Options& options, const string& source, DclConfigObject::OptionType type);
    // Removes everything the source configured.
    void DeleteOptions(const string& source, DclConfigObject::OptionType type);
    // The VLANs a source has configured (empty when the source is unknown).
    std::set<unsigned short> GetSourceVlans(const string& source) const;

    // ---- stack sockets and tracing
    static void SetFiledescriptors(int fd, int arg, int kind);
    static void RemoveFiledescriptors(int fd, int arg);
    static void ChangeMask(int fd, int kind);
    // A registered descriptor is ready: dispatch to the stack's handler.
    void SocketCallback(int fd, int events);
    bool GetIPSTracing() const;
    void SetIPSFilter(char* filter, unsigned short value);
    void TripsControl(bool on);

    // ---- routing console
    const CmdHandlerMap& GetIp4ConCmdHandlers() const { return m_ip4_handlers; }
    const CmdHandlerMap& GetIp6ConCmdHandlers() const { return m_ip6_handlers; }
    void AddIp4RouterCmdHandler(const char* name, DcRouterCmdFunc handler, const char* help);
    void AddIp6RouterCmdHandler(const char* name, DcRouterCmdFunc handler, const char* help);
    // The "protocol" handlers of the two tables.
    static void ConCmdIp4Rtm(void* context, DcConsole* console, int argc, char** argv);
    static void ConCmdIp6Rtm(void* context, DcConsole* console, int argc, char** argv);
    void ConCmdIp4RtmSummary(DcConsole* console);
    void ConCmdIp6RtmSummary(DcConsole* console);
    void ConCmdIpsTrace(DcConsole* console, int argc, char** argv);

    // ---- test seam
    // For tests only; neither the library nor the application calls it. The
    // three managers are meant to live as long as the process, so a test
    // program that runs many cases in one process takes them down between
    // cases here, as if the process had ended: the interface manager first
    // (it only queues requests through this manager), then this manager
    // (its VLANs and routers, the serializer with the actions it still
    // holds, the configuration scheduler with its items and timer, the
    // stack scheduler's timer), then the RTM manager (routers and items ask
    // it for readiness while they exist). The application objects handed to
    // the routers and the console's default VLAN go back to their initial
    // values. The next GetInstance of each manager creates a new one. Timers
    // are stopped on the loop they are armed on, so call it while that loop
    // still exists. Nothing is sent to the stack and nothing is logged but
    // the scheduler's "Deleting DC Scheduler". Returns how many of the three
    // managers existed (0 to 3), so a test can tell whether a call created
    // one.
    static int ResetForTests();

private:
    friend class DcRouterMgrTestPeer;

    DcRouterMgr();
    void RegisterConsoleHandlers();
    void PrintSummary(DcConsole* console, const char* const names[4], const ProtocolType types[4]);
    // Gives each router of the VLAN its section of entry.
    void ReloadRouters(VlanRouters* record, const OptionsNode& entry, const string& source,
                       DclConfigObject::OptionType type);
    // Drops the options of source from every router of the VLAN and the
    // source from the VLAN; deletes the VLAN when no source is left.
    void RemoveSourceFromVlan(unsigned short vid, VlanRouters* record, const string& source,
                              DclConfigObject::OptionType type);

    static DcRouterMgr* m_instance;

    const char* m_vlan_section;
    VlanMap m_vlans;
    std::map<string, std::set<unsigned short>> m_source_vlans;
    DcScheduler m_scheduler;
    CfgSched m_cfg_sched;
    Serializer m_serializer;
    CmdHandlerMap m_ip4_handlers;
    CmdHandlerMap m_ip6_handlers;
};

}  // namespace Zavrel

#endif
