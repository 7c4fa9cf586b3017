#include "app/KernelLinks.h"

#include <arpa/inet.h>
#include <libmnl/libmnl.h>
#include <linux/if.h>
#include <linux/if_addr.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <cerrno>
#include <cstring>

#include <vector>

#include "emulator/RouteNetlink.h"

namespace Zavrel {

namespace {

constexpr size_t RECEIVE_SIZE = 32768;

template <int MAX>
struct Attributes {
    const nlattr* table[MAX + 1] = {};
};

template <int MAX>
int Collect(const nlattr* attribute, void* data) {
    if (mnl_attr_type_valid(attribute, MAX) > 0) {
        static_cast<Attributes<MAX>*>(data)->table[mnl_attr_get_type(attribute)] = attribute;
    }
    return MNL_CB_OK;
}

std::string ErrnoText(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

}  // namespace

KernelLinks::Listener::~Listener() = default;

bool KernelLinks::ParseLink(const nlmsghdr* message, KernelLink& link) {
    if ((message->nlmsg_type != RTM_NEWLINK && message->nlmsg_type != RTM_DELLINK) ||
        message->nlmsg_len < mnl_nlmsg_size(sizeof(ifinfomsg))) {
        return false;
    }
    const auto* info = static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(message));
    Attributes<IFLA_MAX> a;
    if (mnl_attr_parse(message, sizeof(ifinfomsg), Collect<IFLA_MAX>, &a) < 0 ||
        a.table[IFLA_IFNAME] == nullptr) {
        return false;
    }
    link.ifIndex = static_cast<uint32_t>(info->ifi_index);
    link.name = mnl_attr_get_str(a.table[IFLA_IFNAME]);
    link.flags = info->ifi_flags;
    link.mtu = a.table[IFLA_MTU] != nullptr ? mnl_attr_get_u32(a.table[IFLA_MTU]) : 0;
    link.up = (info->ifi_flags & IFF_UP) != 0 && (info->ifi_flags & IFF_RUNNING) != 0;
    return true;
}

bool KernelLinks::ParseAddress(const nlmsghdr* message, KernelAddress& address) {
    if ((message->nlmsg_type != RTM_NEWADDR && message->nlmsg_type != RTM_DELADDR) ||
        message->nlmsg_len < mnl_nlmsg_size(sizeof(ifaddrmsg))) {
        return false;
    }
    const auto* info = static_cast<const ifaddrmsg*>(mnl_nlmsg_get_payload(message));
    if (info->ifa_family != AF_INET && info->ifa_family != AF_INET6) {
        return false;
    }
    if (info->ifa_family == AF_INET6 && info->ifa_scope == RT_SCOPE_LINK) {
        return false;
    }
    Attributes<IFA_MAX> a;
    if (mnl_attr_parse(message, sizeof(ifaddrmsg), Collect<IFA_MAX>, &a) < 0) {
        return false;
    }
    // IPv4 keeps the interface's own address in IFA_LOCAL (IFA_ADDRESS is
    // the peer on point-to-point links).
    const nlattr* value = a.table[IFA_LOCAL] != nullptr ? a.table[IFA_LOCAL] : a.table[IFA_ADDRESS];
    const size_t size = info->ifa_family == AF_INET ? 4 : 16;
    if (value == nullptr || mnl_attr_get_payload_len(value) != size) {
        return false;
    }
    char text[INET6_ADDRSTRLEN];
    if (inet_ntop(info->ifa_family, mnl_attr_get_payload(value), text, sizeof(text)) == nullptr) {
        return false;
    }
    address.ifIndex = info->ifa_index;
    address.address = text;
    address.prefixLength = info->ifa_prefixlen;
    address.ipv6 = info->ifa_family == AF_INET6;
    return true;
}

KernelLinks::KernelLinks(Listener& listener) : m_listener(listener) {}

KernelLinks::~KernelLinks() {
    if (m_events != nullptr) {
        mnl_socket_close(m_events);
    }
    if (m_requests != nullptr) {
        mnl_socket_close(m_requests);
    }
}

bool KernelLinks::Open(std::string& error) {
    m_events = mnl_socket_open2(NETLINK_ROUTE, SOCK_NONBLOCK);
    m_requests = mnl_socket_open(NETLINK_ROUTE);
    unsigned int groups = 0;
    for (unsigned int group : {RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR}) {
        groups |= 1u << (group - 1);
    }
    if (m_events == nullptr || m_requests == nullptr ||
        mnl_socket_bind(m_events, groups, MNL_SOCKET_AUTOPID) < 0 ||
        mnl_socket_bind(m_requests, 0, MNL_SOCKET_AUTOPID) < 0) {
        error = ErrnoText("netlink socket for interfaces");
        return false;
    }
    return true;
}

int KernelLinks::Fd() const {
    return m_events == nullptr ? -1 : mnl_socket_get_fd(m_events);
}

bool KernelLinks::Dump(uint16_t type, std::string& error) {
    m_dumping = true;
    const bool ok = DumpNow(type, error);
    m_dumping = false;
    return ok;
}

bool KernelLinks::DumpNow(uint16_t type, std::string& error) {
    std::vector<char> buffer(RECEIVE_SIZE);
    nlmsghdr* request = mnl_nlmsg_put_header(buffer.data());
    request->nlmsg_type = type;
    request->nlmsg_seq = ++m_sequence;
    if (type == RTM_GETLINK) {
        auto* info =
            static_cast<ifinfomsg*>(mnl_nlmsg_put_extra_header(request, sizeof(ifinfomsg)));
        info->ifi_family = AF_UNSPEC;
    } else {
        auto* info =
            static_cast<ifaddrmsg*>(mnl_nlmsg_put_extra_header(request, sizeof(ifaddrmsg)));
        info->ifa_family = AF_UNSPEC;
    }
    return Emulator::RunNetlinkDump(m_requests, request, OnMessage, this, "interface dump", error);
}

int KernelLinks::OnMessage(const nlmsghdr* message, void* self) {
    static_cast<KernelLinks*>(self)->Handle(message);
    return MNL_CB_OK;
}

void KernelLinks::Handle(const nlmsghdr* message) {
    KernelLink link;
    KernelAddress address;
    if (ParseLink(message, link)) {
        OnLink(link, message->nlmsg_type == RTM_DELLINK);
    } else if (ParseAddress(message, address)) {
        OnAddress(address, message->nlmsg_type == RTM_DELADDR);
    }
}

void KernelLinks::OnReadable() {
    if (m_events == nullptr) {
        return;
    }
    std::vector<char> buffer(RECEIVE_SIZE);
    for (;;) {
        const ssize_t size = mnl_socket_recvfrom(m_events, buffer.data(), buffer.size());
        if (size < 0) {
            if (errno == ENOBUFS) {
                // Notifications were lost: read the whole state again.
                std::string error;
                Dump(RTM_GETLINK, error);
                Dump(RTM_GETADDR, error);
                continue;
            }
            return;
        }
        mnl_cb_run(buffer.data(), static_cast<size_t>(size), 0, 0, OnMessage, this);
        std::string error;
        ReadWantedAddresses(error);
    }
}

void KernelLinks::OnLink(const KernelLink& link, bool removed) {
    // The bound interface that had this index until now, if any.
    std::string previous;
    for (const auto& present : m_links) {
        if (present.second.ifIndex == link.ifIndex) {
            previous = present.first;
            break;
        }
    }
    if (!previous.empty() && (removed || previous != link.name)) {
        Vanish(m_bindings[previous], previous);
    }
    if (removed) {
        return;
    }
    auto bound = m_bindings.find(link.name);
    if (bound == m_bindings.end()) {
        return;
    }
    auto present = m_links.find(link.name);
    if (present != m_links.end() && present->second.ifIndex != link.ifIndex) {
        Vanish(bound->second, link.name);
        present = m_links.end();
    }
    if (present == m_links.end()) {
        Appear(bound->second, link);
        return;
    }
    const KernelLink before = present->second;
    if (before.flags != link.flags || before.mtu != link.mtu || before.up != link.up) {
        present->second = link;
        m_listener.LinkChanged(bound->second, before, link);
    }
}

void KernelLinks::Appear(unsigned short vlan, const KernelLink& link) {
    m_links[link.name] = link;
    m_listener.LinkAdded(vlan, link);
    // Its addresses are read once the dump or the notifications under way
    // are done: a socket takes one dump at a time.
    m_addressesWanted = true;
}

bool KernelLinks::ReadWantedAddresses(std::string& error) {
    bool ok = true;
    while (m_addressesWanted && !m_dumping) {
        m_addressesWanted = false;
        ok = Dump(RTM_GETADDR, error) && ok;
    }
    return ok;
}

void KernelLinks::Vanish(unsigned short vlan, const std::string& name) {
    auto present = m_links.find(name);
    if (present == m_links.end()) {
        return;
    }
    const KernelLink link = present->second;
    for (auto it = m_addresses.begin(); it != m_addresses.end();) {
        if (it->ifIndex == link.ifIndex) {
            const KernelAddress address = *it;
            it = m_addresses.erase(it);
            m_listener.AddressRemoved(vlan, address);
        } else {
            ++it;
        }
    }
    m_links.erase(present);
    m_listener.LinkGone(vlan, link);
}

void KernelLinks::OnAddress(const KernelAddress& address, bool removed) {
    for (const auto& present : m_links) {
        if (present.second.ifIndex != address.ifIndex) {
            continue;
        }
        const unsigned short vlan = m_bindings[present.first];
        if (removed) {
            if (m_addresses.erase(address) != 0) {
                m_listener.AddressRemoved(vlan, address);
            }
        } else if (m_addresses.insert(address).second) {
            m_listener.AddressAdded(vlan, address);
        }
        return;
    }
}

bool KernelLinks::Attach(unsigned short vlan, const std::string& name, std::string& error) {
    auto bound = m_bindings.find(name);
    if (bound != m_bindings.end()) {
        if (bound->second == vlan) {
            return true;
        }
        error = "interface " + name + " is attached to VLAN " + std::to_string(bound->second);
        return false;
    }
    m_bindings[name] = vlan;
    return Dump(RTM_GETLINK, error) && ReadWantedAddresses(error);
}

bool KernelLinks::Detach(unsigned short vlan, const std::string& name, std::string& error) {
    auto bound = m_bindings.find(name);
    if (bound == m_bindings.end() || bound->second != vlan) {
        error = "interface " + name + " is not attached to VLAN " + std::to_string(vlan);
        return false;
    }
    Vanish(vlan, name);
    m_bindings.erase(bound);
    return true;
}

}  // namespace Zavrel
