#include "emulator/RouteNetlink.h"

#include <libmnl/libmnl.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <cerrno>
#include <cstring>

namespace Zavrel::Emulator {

namespace {

// A batch is sent when it reaches BATCH_LIMIT bytes (libmnl's socket buffer
// size at most); its buffer holds twice that, for the message that
// overflowed. Reads take whole datagrams, which the kernel makes up to 32 KiB
// for dumps.
constexpr size_t BATCH_LIMIT = 8192;
constexpr size_t RECEIVE_SIZE = 32768;

int FamilyOf(const IpAddress& address) {
    return address.IsIpv4() ? AF_INET : AF_INET6;
}

struct ParseState {
    const nlattr* attributes[RTA_MAX + 1] = {};
};

int CollectRouteAttribute(const nlattr* attribute, void* data) {
    const int type = mnl_attr_get_type(attribute);
    if (mnl_attr_type_valid(attribute, RTA_MAX) > 0) {
        static_cast<ParseState*>(data)->attributes[type] = attribute;
    }
    return MNL_CB_OK;
}

bool ReadAddress(const nlattr* attribute, int family, IpAddress& address) {
    const size_t size = family == AF_INET ? 4 : 16;
    if (attribute == nullptr) {
        address = IpAddress(family == AF_INET ? IpAddress::IPV4 : IpAddress::IPV6, nullptr);
        return true;
    }
    if (mnl_attr_get_payload_len(attribute) != size) {
        return false;
    }
    address = IpAddress(family == AF_INET ? IpAddress::IPV4 : IpAddress::IPV6,
                        static_cast<const unsigned char*>(mnl_attr_get_payload(attribute)));
    return true;
}

void PutRoute(nlmsghdr* message, bool add, const KernelRoute& route) {
    const int family = FamilyOf(route.destination);
    auto* rtm = static_cast<rtmsg*>(mnl_nlmsg_put_extra_header(message, sizeof(rtmsg)));
    rtm->rtm_family = static_cast<unsigned char>(family);
    rtm->rtm_dst_len = static_cast<unsigned char>(route.prefixLength);
    rtm->rtm_table = static_cast<unsigned char>(route.table < 256 ? route.table : RT_TABLE_UNSPEC);
    rtm->rtm_protocol = route.protocol;
    rtm->rtm_type = RTN_UNICAST;
    if (add) {
        rtm->rtm_scope = route.gateway.IsZero() ? RT_SCOPE_LINK : RT_SCOPE_UNIVERSE;
    } else {
        rtm->rtm_scope = RT_SCOPE_NOWHERE;
    }
    mnl_attr_put_u32(message, RTA_TABLE, route.table);
    mnl_attr_put(message, RTA_DST, route.destination.Size(), route.destination.Bytes());
    mnl_attr_put_u32(message, RTA_PRIORITY, route.priority);
    if (add) {
        if (!route.gateway.IsZero()) {
            mnl_attr_put(message, RTA_GATEWAY, route.gateway.Size(), route.gateway.Bytes());
        }
        if (route.ifIndex != 0) {
            mnl_attr_put_u32(message, RTA_OIF, route.ifIndex);
        }
    }
}

// An acknowledgement: the error code of the message it answers and, when
// the kernel gave one, its own text (NETLINK_EXT_ACK).
struct AckState {
    const RouteNetlink::AckHandler* handler = nullptr;
    size_t acknowledged = 0;
};

int CollectAckAttribute(const nlattr* attribute, void* data) {
    if (mnl_attr_get_type(attribute) == NLMSGERR_ATTR_MSG &&
        mnl_attr_validate(attribute, MNL_TYPE_NUL_STRING) >= 0) {
        *static_cast<std::string*>(data) = mnl_attr_get_str(attribute);
    }
    return MNL_CB_OK;
}

int OnAck(const nlmsghdr* message, void* data) {
    auto* state = static_cast<AckState*>(data);
    if (message->nlmsg_len < mnl_nlmsg_size(sizeof(nlmsgerr))) {
        return MNL_CB_ERROR;
    }
    const auto* error = static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(message));
    std::string text;
    if ((message->nlmsg_flags & NLM_F_ACK_TLVS) != 0) {
        // With NETLINK_CAP_ACK the answered message is reduced to its
        // header, so the attributes follow the nlmsgerr directly.
        mnl_attr_parse(message, sizeof(nlmsgerr), CollectAckAttribute, &text);
    }
    ++state->acknowledged;
    (*state->handler)(message->nlmsg_seq, error->error, text);
    return MNL_CB_OK;
}

struct DumpState {
    int family = 0;
    std::vector<KernelRoute>* routes = nullptr;
};

int OnDumpedRoute(const nlmsghdr* message, void* data) {
    auto* state = static_cast<DumpState*>(data);
    KernelRoute route;
    if (ParseKernelRoute(message, route) && FamilyOf(route.destination) == state->family) {
        state->routes->push_back(route);
    }
    return MNL_CB_OK;
}

struct EventState {
    const RouteNetlink::EventHandler* handler = nullptr;
};

int OnEvent(const nlmsghdr* message, void* data) {
    const auto& handler = *static_cast<EventState*>(data)->handler;
    switch (message->nlmsg_type) {
        case RTM_NEWROUTE:
        case RTM_DELROUTE: {
            KernelRoute route;
            if (ParseKernelRoute(message, route)) {
                handler(message->nlmsg_type == RTM_NEWROUTE ? RouteNetlink::Event::RouteAdded
                                                            : RouteNetlink::Event::RouteRemoved,
                        &route, message->nlmsg_pid);
            }
            break;
        }
        case RTM_NEWLINK:
        case RTM_DELLINK:
            handler(RouteNetlink::Event::LinkChanged, nullptr, message->nlmsg_pid);
            break;
        case RTM_NEWADDR:
        case RTM_DELADDR:
            handler(RouteNetlink::Event::AddressChanged, nullptr, message->nlmsg_pid);
            break;
        default:
            break;
    }
    return MNL_CB_OK;
}

std::string ErrnoText(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

}  // namespace

bool ParseKernelRoute(const nlmsghdr* message, KernelRoute& route) {
    if (message->nlmsg_len < mnl_nlmsg_size(sizeof(rtmsg))) {
        return false;
    }
    const auto* rtm = static_cast<const rtmsg*>(mnl_nlmsg_get_payload(message));
    if ((rtm->rtm_family != AF_INET && rtm->rtm_family != AF_INET6) ||
        rtm->rtm_type != RTN_UNICAST) {
        return false;
    }
    ParseState state;
    if (mnl_attr_parse(message, sizeof(rtmsg), CollectRouteAttribute, &state) < 0) {
        return false;
    }
    const nlattr* const* a = state.attributes;
    if (!ReadAddress(a[RTA_DST], rtm->rtm_family, route.destination) ||
        !ReadAddress(a[RTA_GATEWAY], rtm->rtm_family, route.gateway)) {
        return false;
    }
    route.prefixLength = rtm->rtm_dst_len;
    route.protocol = rtm->rtm_protocol;
    route.table = a[RTA_TABLE] != nullptr ? mnl_attr_get_u32(a[RTA_TABLE]) : rtm->rtm_table;
    route.ifIndex = a[RTA_OIF] != nullptr ? mnl_attr_get_u32(a[RTA_OIF]) : 0;
    route.priority = a[RTA_PRIORITY] != nullptr ? mnl_attr_get_u32(a[RTA_PRIORITY]) : 0;
    return true;
}

RouteNetlink::RouteNetlink() = default;

RouteNetlink::~RouteNetlink() {
    Close();
}

bool RouteNetlink::Open(bool notifications, std::string& error) {
    Close();
    m_socket = mnl_socket_open2(NETLINK_ROUTE, notifications ? SOCK_NONBLOCK : 0);
    if (m_socket == nullptr) {
        error = ErrnoText("netlink socket");
        return false;
    }
    unsigned int groups = 0;
    if (notifications) {
        for (unsigned int group : {RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR,
                                   RTNLGRP_IPV4_ROUTE, RTNLGRP_IPV6_ROUTE}) {
            groups |= 1u << (group - 1);
        }
    }
    if (mnl_socket_bind(m_socket, groups, MNL_SOCKET_AUTOPID) < 0) {
        error = ErrnoText("netlink bind");
        Close();
        return false;
    }
    if (!notifications) {
        // Acknowledgements carry the kernel's own error text and only the
        // header of the message they answer.
        int on = 1;
        mnl_socket_setsockopt(m_socket, NETLINK_EXT_ACK, &on, sizeof(on));
        mnl_socket_setsockopt(m_socket, NETLINK_CAP_ACK, &on, sizeof(on));
    }
    m_portId = mnl_socket_get_portid(m_socket);
    return true;
}

void RouteNetlink::Close() {
    if (m_socket != nullptr) {
        mnl_socket_close(m_socket);
        m_socket = nullptr;
    }
    m_queue.clear();
}

int RouteNetlink::Fd() const {
    return m_socket == nullptr ? -1 : mnl_socket_get_fd(m_socket);
}

bool RouteNetlink::Dump(int family, std::vector<KernelRoute>& routes, std::string& error) {
    std::vector<char> buffer(RECEIVE_SIZE);
    nlmsghdr* request = mnl_nlmsg_put_header(buffer.data());
    request->nlmsg_type = RTM_GETROUTE;
    request->nlmsg_seq = ++m_sequence;
    auto* rtm = static_cast<rtmsg*>(mnl_nlmsg_put_extra_header(request, sizeof(rtmsg)));
    rtm->rtm_family = static_cast<unsigned char>(family);
    DumpState state;
    state.family = family;
    state.routes = &routes;
    return RunNetlinkDump(m_socket, request, OnDumpedRoute, &state, "route dump", error);
}

bool RunNetlinkDump(mnl_socket* socket, nlmsghdr* request, int (*callback)(const nlmsghdr*, void*),
                    void* data, const char* what, std::string& error) {
    request->nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    if (mnl_socket_sendto(socket, request, request->nlmsg_len) < 0) {
        error = ErrnoText(what);
        return false;
    }
    const uint32_t sequence = request->nlmsg_seq;
    const uint32_t portId = mnl_socket_get_portid(socket);
    std::vector<char> buffer(RECEIVE_SIZE);
    for (;;) {
        const ssize_t size = mnl_socket_recvfrom(socket, buffer.data(), buffer.size());
        const int result = size < 0 ? MNL_CB_ERROR
                                    : mnl_cb_run(buffer.data(), static_cast<size_t>(size), sequence,
                                                 portId, callback, data);
        if (result < 0) {
            error = ErrnoText(what);
            return false;
        }
        if (result == MNL_CB_STOP) {
            return true;
        }
    }
}

uint32_t RouteNetlink::Queue(bool add, const KernelRoute& route) {
    Request request;
    request.add = add;
    request.route = route;
    request.sequence = ++m_sequence;
    if (request.sequence == 0) {  // 0 is never an answer's sequence
        request.sequence = ++m_sequence;
    }
    m_queue.push_back(request);
    return request.sequence;
}

bool RouteNetlink::Flush(const AckHandler& handler, std::string& error) {
    std::vector<char> buffer(2 * BATCH_LIMIT);
    mnl_nlmsg_batch* batch = mnl_nlmsg_batch_start(buffer.data(), BATCH_LIMIT);
    size_t inBatch = 0;
    bool ok = true;
    for (const Request& request : m_queue) {
        nlmsghdr* message = mnl_nlmsg_put_header(mnl_nlmsg_batch_current(batch));
        message->nlmsg_type = request.add ? RTM_NEWROUTE : RTM_DELROUTE;
        message->nlmsg_flags = NLM_F_REQUEST | NLM_F_ACK;
        if (request.add) {
            message->nlmsg_flags |= NLM_F_CREATE | NLM_F_REPLACE;
        }
        message->nlmsg_seq = request.sequence;
        PutRoute(message, request.add, request.route);
        if (mnl_nlmsg_batch_next(batch)) {
            ++inBatch;
            continue;
        }
        // The message just written did not fit: send the others, then it
        // heads the next batch.
        ok = SendBatch(mnl_nlmsg_batch_head(batch), mnl_nlmsg_batch_size(batch), inBatch, handler,
                       error);
        mnl_nlmsg_batch_reset(batch);
        inBatch = 1;
        if (!ok) {
            break;
        }
    }
    if (ok && !mnl_nlmsg_batch_is_empty(batch)) {
        ok = SendBatch(mnl_nlmsg_batch_head(batch), mnl_nlmsg_batch_size(batch), inBatch, handler,
                       error);
    }
    mnl_nlmsg_batch_stop(batch);
    m_queue.clear();
    return ok;
}

bool RouteNetlink::SendBatch(const void* data, size_t size, size_t messages,
                             const AckHandler& handler, std::string& error) {
    if (mnl_socket_sendto(m_socket, data, size) < 0) {
        error = ErrnoText("route batch");
        return false;
    }
    ++m_sends;
    AckState state;
    state.handler = &handler;
    mnl_cb_t control[NLMSG_MIN_TYPE] = {};
    control[NLMSG_ERROR] = OnAck;
    std::vector<char> buffer(RECEIVE_SIZE);
    while (state.acknowledged < messages) {
        const ssize_t received = mnl_socket_recvfrom(m_socket, buffer.data(), buffer.size());
        if (received < 0) {
            error = ErrnoText("route batch acknowledgements");
            return false;
        }
        if (mnl_cb_run2(buffer.data(), static_cast<size_t>(received), 0, m_portId, nullptr, &state,
                        control, NLMSG_MIN_TYPE) < 0) {
            error = ErrnoText("route batch acknowledgements");
            return false;
        }
    }
    return true;
}

bool RouteNetlink::ReadEvents(const EventHandler& handler) {
    std::vector<char> buffer(RECEIVE_SIZE);
    EventState state;
    state.handler = &handler;
    for (;;) {
        const ssize_t size = mnl_socket_recvfrom(m_socket, buffer.data(), buffer.size());
        if (size < 0) {
            return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
        }
        mnl_cb_run(buffer.data(), static_cast<size_t>(size), 0, 0, OnEvent, &state);
    }
}

}  // namespace Zavrel::Emulator
