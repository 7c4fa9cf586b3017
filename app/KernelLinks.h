// KernelLinks: kernel interfaces bound to VLANs. An interface is bound by
// name; while it exists, its index, flags, MTU, operational state and
// addresses are read from the kernel (a dump when it appears, then the
// kernel's notifications) and handed to a Listener as they change. A bound
// interface that disappears is reported gone and followed again if it comes
// back. IPv6 link-local addresses are left out: every interface has one and
// they are no VLAN's prefix.
#ifndef ZAVREL_APP_KERNELLINKS_H
#define ZAVREL_APP_KERNELLINKS_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

struct mnl_socket;
struct nlmsghdr;

namespace Zavrel {

struct KernelLink {
    uint32_t ifIndex = 0;
    std::string name;
    uint32_t flags = 0;  // IFF_*
    uint32_t mtu = 0;
    bool up = false;  // administratively up and running
};

struct KernelAddress {
    uint32_t ifIndex = 0;
    std::string address;  // "10.0.0.1", "2001:db8::1"
    unsigned int prefixLength = 0;
    bool ipv6 = false;

    friend bool operator<(const KernelAddress& a, const KernelAddress& b) {
        return std::tie(a.ifIndex, a.ipv6, a.address, a.prefixLength) <
               std::tie(b.ifIndex, b.ipv6, b.address, b.prefixLength);
    }
};

class KernelLinks {
public:
    // What the application does with what the kernel says of a bound
    // interface.
    class Listener {
    public:
        virtual ~Listener();
        virtual void LinkAdded(unsigned short vlan, const KernelLink& link) = 0;
        virtual void LinkChanged(unsigned short vlan, const KernelLink& before,
                                 const KernelLink& after) = 0;
        virtual void LinkGone(unsigned short vlan, const KernelLink& link) = 0;
        virtual void AddressAdded(unsigned short vlan, const KernelAddress& address) = 0;
        virtual void AddressRemoved(unsigned short vlan, const KernelAddress& address) = 0;
    };

    explicit KernelLinks(Listener& listener);
    ~KernelLinks();
    KernelLinks(const KernelLinks&) = delete;
    KernelLinks& operator=(const KernelLinks&) = delete;

    bool Open(std::string& error);
    // Readable when the kernel has notifications.
    int Fd() const;
    // Binds the interface to the VLAN and reports it at once when it exists.
    // An interface is bound to one VLAN at a time.
    bool Attach(unsigned short vlan, const std::string& name, std::string& error);
    // Reports its addresses removed and the interface gone, and unbinds it.
    bool Detach(unsigned short vlan, const std::string& name, std::string& error);
    // Reads the notifications waiting.
    void OnReadable();

    // name -> VLAN
    const std::map<std::string, unsigned short>& Bindings() const { return m_bindings; }
    bool IsPresent(const std::string& name) const { return m_links.count(name) != 0; }

    // Parsers of the kernel's messages (false for anything else).
    static bool ParseLink(const nlmsghdr* message, KernelLink& link);
    static bool ParseAddress(const nlmsghdr* message, KernelAddress& address);

private:
    void OnLink(const KernelLink& link, bool removed);
    void OnAddress(const KernelAddress& address, bool removed);
    void Appear(unsigned short vlan, const KernelLink& link);
    void Vanish(unsigned short vlan, const std::string& name);
    // Dumps links (RTM_GETLINK) or addresses (RTM_GETADDR) into the handlers.
    bool Dump(uint16_t type, std::string& error);
    bool DumpNow(uint16_t type, std::string& error);
    // Dumps the addresses when an interface appeared since the last dump.
    bool ReadWantedAddresses(std::string& error);
    void Handle(const nlmsghdr* message);
    static int OnMessage(const nlmsghdr* message, void* self);

    Listener& m_listener;
    mnl_socket* m_events = nullptr;
    mnl_socket* m_requests = nullptr;
    uint32_t m_sequence = 0;
    std::map<std::string, unsigned short> m_bindings;
    std::map<std::string, KernelLink> m_links;  // bound interfaces that exist
    std::set<KernelAddress> m_addresses;        // their addresses
    bool m_dumping = false;
    bool m_addressesWanted = false;
};

}  // namespace Zavrel

#endif
