// RouteNetlink: one rtnetlink socket, through libmnl, for what the kernel
// forwarding table needs: routes written in batches with each
// acknowledgement matched to its message, route dumps, and notifications of
// routes, links and addresses.
#ifndef ZAVREL_EMULATOR_ROUTENETLINK_H
#define ZAVREL_EMULATOR_ROUTENETLINK_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "emulator/IpAddress.h"

struct mnl_socket;
struct nlmsghdr;

namespace Zavrel::Emulator {

// A route as the kernel holds it (the part of it this system reads and
// writes).
struct KernelRoute {
    uint32_t table = 0;
    IpAddress destination;
    unsigned int prefixLength = 0;
    IpAddress gateway;  // zero: directly attached
    uint32_t ifIndex = 0;
    uint8_t protocol = 0;
    uint32_t priority = 0;
};

class RouteNetlink {
public:
    // Kinds of notification.
    enum class Event { RouteAdded, RouteRemoved, LinkChanged, AddressChanged };
    // The event, its route (null for links and addresses) and the netlink
    // port of the socket whose request caused it (0 for the kernel's own).
    using EventHandler = std::function<void(Event, const KernelRoute*, uint32_t)>;
    // seq, 0 or a negative errno, the kernel's own text (may be "").
    using AckHandler = std::function<void(uint32_t, int, const std::string&)>;

    RouteNetlink();
    ~RouteNetlink();
    RouteNetlink(const RouteNetlink&) = delete;
    RouteNetlink& operator=(const RouteNetlink&) = delete;

    // Opens a socket for requests (notifications false) or one that listens
    // to route, link and address changes (true, non-blocking).
    bool Open(bool notifications, std::string& error);
    void Close();
    bool IsOpen() const { return m_socket != nullptr; }
    int Fd() const;
    uint32_t PortId() const { return m_portId; }

    // Every route of the family (AF_INET or AF_INET6) in every table.
    bool Dump(int family, std::vector<KernelRoute>& routes, std::string& error);

    // Adds a message that installs or replaces the route (add) or removes
    // it; returns its sequence number. Messages are sent together by Flush.
    uint32_t Queue(bool add, const KernelRoute& route);
    size_t Queued() const { return m_queue.size(); }
    // Sends what was queued, as many messages per send as fit, and reads
    // every acknowledgement. False only when the socket failed; errors of
    // single messages go to the handler.
    bool Flush(const AckHandler& handler, std::string& error);
    uint64_t Sends() const { return m_sends; }

    // Reads the notifications that are waiting (never blocks). False when
    // the kernel dropped some (the socket overran): the caller resyncs.
    bool ReadEvents(const EventHandler& handler);

private:
    struct Request {
        bool add = false;
        KernelRoute route;
        uint32_t sequence = 0;
    };
    // Sends one batch and reads its acknowledgements.
    bool SendBatch(const void* data, size_t size, size_t messages, const AckHandler& handler,
                   std::string& error);

    mnl_socket* m_socket = nullptr;
    uint32_t m_portId = 0;
    uint32_t m_sequence = 0;
    std::vector<Request> m_queue;
    uint64_t m_sends = 0;
};

// Sends a dump request (NLM_F_DUMP set here) on a blocking socket and hands
// every message of the answer to callback, until its end. False with
// "<what>: <reason>" in error when the socket or the kernel failed.
bool RunNetlinkDump(mnl_socket* socket, nlmsghdr* request, int (*callback)(const nlmsghdr*, void*),
                    void* data, const char* what, std::string& error);

// Parses a route message; false for anything that is not a unicast route.
bool ParseKernelRoute(const nlmsghdr* message, KernelRoute& route);

}  // namespace Zavrel::Emulator

#endif
