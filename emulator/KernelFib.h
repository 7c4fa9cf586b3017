// KernelFib: the stack's forwarding table mirrored into Linux. The installed
// routes of VLAN v (IPv4 and IPv6, connected prefixes included) go into
// kernel routing table v, written with this system's own route protocol
// number so that routes of other owners are never touched.
//
// - Changes are sent at the end of each scheduler run in batches, every
//   acknowledgement matched to its route.
// - A route the kernel refuses stays in the table marked with the kernel's
//   error text, and is tried again after interfaces or addresses change,
//   no more often than its backoff allows (100 ms doubling to 30 s).
// - Routes of our protocol found in the kernel at start are adopted: kept
//   untouched when the stack installs the same route, removed by
//   ReleaseAdopted when it has not, so a restart makes no flap.
// - Notifications are read from the kernel: a route of ours removed or
//   replaced from outside is put back and counted.
//
// The stack's answers on MIB rows never depend on the kernel: accepting a
// row and forwarding along it are separate, as in a real stack.
#ifndef ZAVREL_EMULATOR_KERNELFIB_H
#define ZAVREL_EMULATOR_KERNELFIB_H

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "emulator/FibSink.h"
#include "emulator/RouteNetlink.h"

namespace Zavrel::Emulator {

class KernelFib final : public FibSink {
public:
    // Route protocol number of this system's routes ("zavrel" in
    // rt_protos.d); free in iproute2's list and among the routing suites'.
    static constexpr uint8_t PROTOCOL = 201;
    // Route priority (metric) of this system's routes, so that a route of
    // another owner for the same prefix at another priority lives beside
    // ours.
    static constexpr uint32_t PRIORITY = 20;
    static constexpr uint64_t RETRY_FIRST_MS = 100;
    static constexpr uint64_t RETRY_MAX_MS = 30000;

    struct Counters {
        uint64_t written = 0;    // routes the kernel accepted (installs and replacements)
        uint64_t removed = 0;    // routes removed
        uint64_t refused = 0;    // refusals, retries included
        uint64_t repaired = 0;   // routes of ours put back after a change from outside
        uint64_t adopted = 0;    // routes of ours found at start
        uint64_t kept = 0;       // adopted routes the stack installed again unchanged
        uint64_t released = 0;   // adopted routes removed as no longer wanted
        uint64_t batches = 0;    // sends
        uint64_t resyncs = 0;    // notification overruns answered by a dump
        uint64_t sendCpuNs = 0;  // CPU time of the thread in sends and their
                                 // acknowledgements (the kernel's work on
                                 // them included), read once per send
    };

    // clock: milliseconds, the clock of the event loop.
    explicit KernelFib(std::function<uint64_t()> clock);

    // Opens the sockets and adopts the routes of our protocol already in the
    // kernel. False with the reason in error.
    bool Open(std::string& error);
    // The descriptor that becomes readable when the kernel has notifications.
    int NotificationFd() const { return m_events.Fd(); }
    // Reads the notifications waiting, repairs drift and retries refused
    // routes after link or address changes.
    void OnNotification();
    // Retries the refused routes whose backoff has passed; milliseconds until
    // the next one is due (-1: none waits).
    long RetryDue();
    // Removes the adopted routes that the stack has not installed again.
    void ReleaseAdopted();
    // Removes every route of ours from the kernel (a clean exit); the
    // committed table stays as it was.
    void RemoveAll();

    const Counters& GetCounters() const { return m_counters; }
    size_t RefusedCount() const { return m_refused.size(); }
    size_t AdoptedCount() const { return m_adopted.size(); }
    // The kernel's text for a refused route ("" when it is installed).
    std::string ErrorOf(const FibKey& key) const;

    std::string Describe(const FibKey& key) const override;
    std::string StatusText() const override;
    // "kernelForwarding": protocol, priority and the counters.
    void StatusJson(Json::Value& status) const override;
    void InterfacesChanged() override;

protected:
    void Apply(const std::vector<Change>& changes) override;
    void OnCommitted() override;

private:
    struct Refusal {
        std::string error;
        unsigned int attempts = 0;
        uint64_t dueMs = 0;
    };

    KernelRoute ToKernel(const FibKey& key, const FibRoute& route) const;
    static FibKey KeyOf(const KernelRoute& route);
    static bool SameForwarding(const KernelRoute& kernel, const FibRoute& route);
    // Queues the route of key as committed; an adopted route equal to it is
    // kept instead.
    void QueueInstall(const FibKey& key, const FibRoute& route);
    void Send();
    void OnEvent(RouteNetlink::Event event, const KernelRoute* route, uint32_t origin);
    void Resync();
    void RetryDueRoutes();

    std::function<uint64_t()> m_clock;
    RouteNetlink m_requests;
    RouteNetlink m_events;
    std::map<uint32_t, std::pair<bool, FibKey>> m_inFlight;  // sequence -> (install, key)
    std::map<FibKey, Refusal> m_refused;
    std::map<FibKey, KernelRoute> m_adopted;
    Counters m_counters;
    std::string m_failure;  // the last socket failure, for the status
    bool m_retryWanted = false;
};

}  // namespace Zavrel::Emulator

#endif
