// DcInterfaceMgr: the record of the IP interfaces the application has
// announced, per VLAN, and the one place that tells the routing stack about
// interfaces and their addresses.
//
// Every change first queues the stack requests (interface rows for both
// stack instances of the VLAN, interface-address rows) through the router
// manager's serializer, and then updates the manager's own tables. Requests
// are sent whether or not the interface is known; only the tables depend on
// it. A process-wide singleton, created on first use and never destroyed
// (tests take it down between cases through DcRouterMgr::ResetForTests).
#ifndef ZAVREL_INTERFACES_DCINTERFACEMGR_H
#define ZAVREL_INTERFACES_DCINTERFACEMGR_H

#include <cstddef>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/Ip6Prefix.h"
#include "platform/String.h"

namespace Zavrel {

class DcInterfaceMgr {
public:
    // Interface types are the application's; the manager stores and returns
    // them unchanged. 0 stands for an unknown interface.
    enum IntfType : int {
        INTF_TYPE_UNKNOWN = 0,
        INTF_TYPE_ETHERNET = 1,
        INTF_TYPE_VLAN = 2,
        INTF_TYPE_TUNNEL = 3,
        INTF_TYPE_LOOPBACK = 4
    };

    // One known interface.
    class IpInterface {
    public:
        // Key of an interface: VLAN, then ifIndex.
        struct Key {
            unsigned int vlan;
            unsigned int ifIndex;
            // Strict numeric order on (VLAN, ifIndex); no name is involved.
            static bool NameCompare(const Key& a, const Key& b);
        };
        // Hash of a prefix: its first address word, in network order.
        struct Ip6PrefixHash {
            size_t operator()(const Ip6Prefix& prefix) const;
        };
        typedef std::unordered_set<Ip6Prefix, Ip6PrefixHash> Ip6PrefixSet;

        IpInterface(unsigned short vlan, unsigned int ifIndex, const char* name, IntfType type,
                    unsigned int operStatus);

        unsigned short GetVlan() const { return m_vlan; }
        unsigned int GetIfIndex() const { return m_ifIndex; }
        const string& GetName() const { return m_name; }
        IntfType GetType() const { return m_type; }
        unsigned int GetOperStatus() const { return m_oper_status; }
        const Ip4Addr& GetAddress() const { return m_address; }
        const Ip4Addr& GetMask() const { return m_mask; }
        const Ip6PrefixSet& GetIp6Prefixes() const { return m_ip6_prefixes; }

        void SetOperStatus(unsigned int status) { m_oper_status = status; }
        void SetAddress(const Ip4Addr& address, const Ip4Addr& mask);
        void AddIp6Prefix(const Ip6Prefix& prefix) { m_ip6_prefixes.insert(prefix); }
        void RemoveIp6Prefix(const Ip6Prefix& prefix) { m_ip6_prefixes.erase(prefix); }

    private:
        unsigned short m_vlan;
        unsigned int m_ifIndex;
        string m_name;
        IntfType m_type;
        unsigned int m_oper_status;  // 1 up, 2 down
        Ip4Addr m_address;           // 0.0.0.0 when none
        Ip4Addr m_mask;
        // Reserved: secondary IPv4 addresses (address to mask); not filled.
        std::unordered_map<Ip4Addr, Ip4Addr> m_ip4_addresses;
        Ip6PrefixSet m_ip6_prefixes;
    };

    typedef std::map<IpInterface::Key, IpInterface,
                     bool (*)(const IpInterface::Key&, const IpInterface::Key&)>
        InterfaceMap;

    static DcInterfaceMgr* GetInstance();

    DcInterfaceMgr(const DcInterfaceMgr&) = delete;
    DcInterfaceMgr& operator=(const DcInterfaceMgr&) = delete;

    void Initialize(unsigned int defaultInterface) { m_default_interface = defaultInterface; }
    unsigned int GetDefaultInterface() const { return m_default_interface; }

    // ---- interfaces
    void AddInterface(unsigned short vlan, unsigned int ifIndex, const char* name, IntfType type,
                      unsigned int interfaceFlags, unsigned int interfaceExtra,
                      unsigned int operStatus);
    void RemoveInterface(unsigned short vlan, unsigned int ifIndex, const char* name);
    void SetInterfaceUp(unsigned short vlan, unsigned int ifIndex, const char* name);
    void SetInterfaceDown(unsigned short vlan, unsigned int ifIndex, const char* name);
    // Queues the interface rows of both stack instances of the VLAN; the
    // IPv6 row never carries the unnumbered flag. Touches no table.
    void SetInterfaceStatus(unsigned short vlan, unsigned int ifIndex, const char* name,
                            unsigned int rowStatus, unsigned int operStatus, unsigned int reserved,
                            unsigned int interfaceFlags, unsigned int interfaceExtra);

    // ---- IPv4 addresses (one per interface)
    void AddIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip4Addr& address,
                      const Ip4Addr& mask);
    void DeleteIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip4Addr& address,
                         const Ip4Addr& mask);
    // Only for a known interface: destroys the old address row, sends the
    // new one, records it and tells the router manager.
    void ChangeIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip4Addr& address,
                         const Ip4Addr& mask);
    void UpdateIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip4Addr& address,
                         const Ip4Addr& mask, unsigned int rowStatus);

    // ---- IPv6 addresses (recorded as prefixes)
    void AddIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip6Addr& address,
                      unsigned int prefixLength);
    // Erases the prefix of the full address with length 128, whatever the
    // length given: a prefix added with a shorter length stays.
    void DeleteIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip6Addr& address,
                         unsigned int prefixLength);
    void UpdateIpAddress(unsigned short vlan, unsigned int ifIndex, const Ip6Addr& address,
                         unsigned int prefixLength, unsigned int rowStatus);

    // ---- primary interface of a VLAN
    void SetPrimaryInterface(unsigned short vlan, const char* name);
    const char* GetPrimaryInterface(unsigned short vlan) const;

    // ---- lookups (1 found, 0 not found)
    // The name table holds one ifIndex per name across all VLANs: the
    // interface added last under the name.
    int GetIfIndex(const char* name, unsigned int& ifIndex);
    int GetIfIpAddr(unsigned short vlan, unsigned int ifIndex, Ip4Addr& address, Ip4Addr& mask);
    int GetIfIpAddr(unsigned short vlan, const char* name, Ip4Addr& address);
    // "lo" for an unknown interface.
    const char* GetIfName(unsigned short vlan, unsigned int ifIndex);
    // The type of the named interface's ifIndex in VLAN 1, whatever VLAN
    // the interface was added in; 0 when there is none.
    IntfType GetIfType(const char* name);

    // The record of an interface, or null.
    const IpInterface* FindInterface(unsigned short vlan, unsigned int ifIndex) const;
    // Interfaces held, over all VLANs.
    size_t InterfaceCount() const { return m_interfaces.size(); }

private:
    // DcRouterMgr::ResetForTests takes this manager down too.
    friend class DcRouterMgr;

    DcInterfaceMgr();
    IpInterface* Find(unsigned short vlan, unsigned int ifIndex);
    // Deletes the instance, if any; true when there was one.
    static bool DestroyInstance();

    static DcInterfaceMgr* m_instance;

    unsigned int m_default_interface;
    InterfaceMap m_interfaces;
    std::map<string, unsigned int> m_names;
    std::map<unsigned short, string> m_primary;
};

typedef DcInterfaceMgr::IpInterface IpInterface;

}  // namespace Zavrel

#endif
