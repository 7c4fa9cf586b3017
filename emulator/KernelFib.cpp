#include "emulator/KernelFib.h"

#include <sys/socket.h>
#include <time.h>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace Zavrel::Emulator {

namespace {

// Tables the kernel keeps for itself: unspecified, default, main, local.
bool IsReservedTable(unsigned long table) {
    return table == 0 || (table >= 253 && table <= 255);
}

std::string ReservedTableText(unsigned long table) {
    return "table " + std::to_string(table) + " is reserved by the kernel";
}

uint64_t ThreadCpuNs() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

std::string RefusalText(int error, const std::string& kernelText) {
    std::string text = std::strerror(-error);
    if (!kernelText.empty()) {
        text += ": " + kernelText;
    }
    return text;
}

}  // namespace

KernelFib::KernelFib(std::function<uint64_t()> clock) : m_clock(std::move(clock)) {}

bool KernelFib::Open(std::string& error) {
    // Listen first, so that nothing changed between the dump and the
    // subscription goes unseen.
    if (!m_events.Open(true, error) || !m_requests.Open(false, error)) {
        m_events.Close();
        return false;
    }
    for (int family : {AF_INET, AF_INET6}) {
        std::vector<KernelRoute> routes;
        if (!m_requests.Dump(family, routes, error)) {
            m_events.Close();
            m_requests.Close();
            return false;
        }
        for (const KernelRoute& route : routes) {
            if (route.protocol == PROTOCOL) {
                m_adopted[KeyOf(route)] = route;
                ++m_counters.adopted;
            }
        }
    }
    return true;
}

FibKey KernelFib::KeyOf(const KernelRoute& route) {
    FibKey key;
    key.table = route.table;
    key.destination = route.destination.Masked(route.prefixLength);
    key.prefixLength = route.prefixLength;
    return key;
}

KernelRoute KernelFib::ToKernel(const FibKey& key, const FibRoute& route) const {
    KernelRoute kernel;
    kernel.table = static_cast<uint32_t>(key.table);
    kernel.destination = key.destination;
    kernel.prefixLength = static_cast<unsigned int>(key.prefixLength);
    kernel.gateway = route.nextHop;
    kernel.ifIndex = static_cast<uint32_t>(route.ifIndex);
    kernel.protocol = PROTOCOL;
    kernel.priority = PRIORITY;
    return kernel;
}

bool KernelFib::SameForwarding(const KernelRoute& kernel, const FibRoute& route) {
    return kernel.gateway == route.nextHop &&
           (route.ifIndex == 0 || kernel.ifIndex == route.ifIndex);
}

void KernelFib::QueueInstall(const FibKey& key, const FibRoute& route) {
    if (IsReservedTable(key.table)) {
        Refusal& refusal = m_refused[key];
        refusal.error = ReservedTableText(key.table);
        ++refusal.attempts;
        refusal.dueMs = UINT64_MAX;
        ++m_counters.refused;
        return;
    }
    auto adopted = m_adopted.find(key);
    if (adopted != m_adopted.end()) {
        const KernelRoute found = adopted->second;
        m_adopted.erase(adopted);
        if (found.priority == PRIORITY && SameForwarding(found, route)) {
            ++m_counters.kept;
            m_refused.erase(key);
            return;
        }
        if (found.priority != PRIORITY) {
            // Another priority is another route: remove it, not replace it.
            m_inFlight[m_requests.Queue(false, found)] = std::make_pair(false, key);
        }
    }
    m_inFlight[m_requests.Queue(true, ToKernel(key, route))] = std::make_pair(true, key);
}

void KernelFib::Apply(const std::vector<Change>& changes) {
    if (!m_requests.IsOpen()) {
        return;
    }
    for (const Change& change : changes) {
        if (change.after) {
            QueueInstall(change.key, *change.after);
            continue;
        }
        m_refused.erase(change.key);
        auto adopted = m_adopted.find(change.key);
        if (adopted != m_adopted.end()) {
            m_inFlight[m_requests.Queue(false, adopted->second)] =
                std::make_pair(false, change.key);
            m_adopted.erase(adopted);
        }
        if (change.before && !IsReservedTable(change.key.table)) {
            m_inFlight[m_requests.Queue(false, ToKernel(change.key, *change.before))] =
                std::make_pair(false, change.key);
        }
    }
    Send();
}

void KernelFib::Send() {
    if (m_requests.Queued() == 0) {
        return;
    }
    const uint64_t now = m_clock();
    auto onAck = [&](uint32_t sequence, int error, const std::string& text) {
        auto found = m_inFlight.find(sequence);
        if (found == m_inFlight.end()) {
            return;
        }
        const bool install = found->second.first;
        const FibKey key = found->second.second;
        m_inFlight.erase(found);
        if (!install) {
            // A route already gone is as good as removed.
            if (error == 0) {
                ++m_counters.removed;
            }
            return;
        }
        if (error == 0) {
            ++m_counters.written;
            m_refused.erase(key);
            return;
        }
        ++m_counters.refused;
        Refusal& refusal = m_refused[key];
        refusal.error = RefusalText(error, text);
        refusal.attempts = std::min(refusal.attempts + 1, 20u);
        refusal.dueMs = now + std::min(RETRY_FIRST_MS << (refusal.attempts - 1), RETRY_MAX_MS);
    };
    std::string error;
    const uint64_t cpuBefore = ThreadCpuNs();
    const bool sent = m_requests.Flush(onAck, error);
    m_counters.sendCpuNs += ThreadCpuNs() - cpuBefore;
    if (!sent) {
        m_failure = error;
        // Whatever was not answered counts as refused with the socket's error.
        for (const auto& pending : m_inFlight) {
            if (pending.second.first) {
                Refusal& refusal = m_refused[pending.second.second];
                refusal.error = error;
                ++refusal.attempts;
                refusal.dueMs = now + RETRY_FIRST_MS;
            }
        }
    }
    m_inFlight.clear();
    m_counters.batches = m_requests.Sends();
}

void KernelFib::RetryDueRoutes() {
    const uint64_t now = m_clock();
    std::vector<FibKey> due;
    for (const auto& refused : m_refused) {
        if (refused.second.dueMs <= now) {
            due.push_back(refused.first);
        }
    }
    for (const FibKey& key : due) {
        const FibRoute* route = Find(key);
        if (route == nullptr) {
            m_refused.erase(key);
        } else if (!IsReservedTable(key.table)) {
            QueueInstall(key, *route);
        }
    }
    Send();
}

long KernelFib::RetryDue() {
    RetryDueRoutes();
    const uint64_t now = m_clock();
    uint64_t next = UINT64_MAX;
    for (const auto& refused : m_refused) {
        next = std::min(next, refused.second.dueMs);
    }
    if (next == UINT64_MAX) {
        return -1;
    }
    return next <= now ? 0 : static_cast<long>(std::min<uint64_t>(next - now, RETRY_MAX_MS));
}

void KernelFib::InterfacesChanged() {
    m_retryWanted = true;
}

void KernelFib::OnCommitted() {
    if (m_retryWanted) {
        m_retryWanted = false;
        RetryDueRoutes();
    }
}

void KernelFib::ReleaseAdopted() {
    for (const auto& adopted : m_adopted) {
        m_inFlight[m_requests.Queue(false, adopted.second)] = std::make_pair(false, adopted.first);
        ++m_counters.released;
    }
    m_adopted.clear();
    Send();
}

void KernelFib::RemoveAll() {
    for (const auto& route : Committed()) {
        if (!IsReservedTable(route.first.table) && m_refused.count(route.first) == 0) {
            m_inFlight[m_requests.Queue(false, ToKernel(route.first, route.second))] =
                std::make_pair(false, route.first);
        }
    }
    ReleaseAdopted();
}

void KernelFib::OnNotification() {
    if (!m_events.IsOpen()) {
        return;
    }
    const bool complete =
        m_events.ReadEvents([this](RouteNetlink::Event event, const KernelRoute* route,
                                   uint32_t origin) { OnEvent(event, route, origin); });
    if (!complete) {
        Resync();
    }
    Send();
    if (m_retryWanted) {
        m_retryWanted = false;
        RetryDueRoutes();
    }
}

void KernelFib::OnEvent(RouteNetlink::Event event, const KernelRoute* route, uint32_t origin) {
    if (event == RouteNetlink::Event::LinkChanged || event == RouteNetlink::Event::AddressChanged) {
        m_retryWanted = true;
        return;
    }
    // Our own requests come back as notifications too.
    if (origin == m_requests.PortId() || route->priority != PRIORITY) {
        return;
    }
    const FibKey key = KeyOf(*route);
    if (event == RouteNetlink::Event::RouteRemoved && route->protocol == PROTOCOL) {
        m_adopted.erase(key);
    }
    const FibRoute* wanted = Find(key);
    if (wanted == nullptr || m_refused.count(key) != 0 || IsReservedTable(key.table)) {
        return;
    }
    const bool ours = route->protocol == PROTOCOL && SameForwarding(*route, *wanted);
    if (event == RouteNetlink::Event::RouteRemoved ? ours : !ours) {
        // Ours was removed, or replaced by another: put it back.
        ++m_counters.repaired;
        m_inFlight[m_requests.Queue(true, ToKernel(key, *wanted))] = std::make_pair(true, key);
    }
}

void KernelFib::Resync() {
    ++m_counters.resyncs;
    std::map<FibKey, KernelRoute> present;
    for (int family : {AF_INET, AF_INET6}) {
        std::vector<KernelRoute> routes;
        std::string error;
        if (!m_requests.Dump(family, routes, error)) {
            m_failure = error;
            return;
        }
        for (const KernelRoute& route : routes) {
            if (route.protocol == PROTOCOL && route.priority == PRIORITY) {
                present[KeyOf(route)] = route;
            }
        }
    }
    for (const auto& wanted : Committed()) {
        if (m_refused.count(wanted.first) != 0 || IsReservedTable(wanted.first.table)) {
            continue;
        }
        auto found = present.find(wanted.first);
        if (found == present.end() || !SameForwarding(found->second, wanted.second)) {
            ++m_counters.repaired;
            m_inFlight[m_requests.Queue(true, ToKernel(wanted.first, wanted.second))] =
                std::make_pair(true, wanted.first);
        }
    }
}

void KernelFib::StatusJson(Json::Value& status) const {
    Json::Value& kernel = status["kernelForwarding"];
    auto count = [](uint64_t value) { return Json::Value(static_cast<Json::UInt64>(value)); };
    kernel["protocol"] = static_cast<Json::UInt>(PROTOCOL);
    kernel["priority"] = static_cast<Json::UInt>(PRIORITY);
    kernel["written"] = count(m_counters.written);
    kernel["removed"] = count(m_counters.removed);
    kernel["refused"] = count(m_counters.refused);
    kernel["waiting"] = count(m_refused.size());
    kernel["repaired"] = count(m_counters.repaired);
    kernel["adopted"] = count(m_counters.adopted);
    kernel["kept"] = count(m_counters.kept);
    kernel["released"] = count(m_counters.released);
    kernel["undecided"] = count(m_adopted.size());
    kernel["batches"] = count(m_counters.batches);
    kernel["resyncs"] = count(m_counters.resyncs);
    if (!m_failure.empty()) {
        kernel["failure"] = m_failure;
    }
}

std::string KernelFib::ErrorOf(const FibKey& key) const {
    auto found = m_refused.find(key);
    return found == m_refused.end() ? std::string() : found->second.error;
}

std::string KernelFib::Describe(const FibKey& key) const {
    const std::string error = ErrorOf(key);
    return error.empty() ? error : "kernel: " + error;
}

std::string KernelFib::StatusText() const {
    char line[512];
    std::snprintf(line, sizeof(line),
                  "Kernel forwarding: protocol %u, priority %u; written %llu, removed %llu, "
                  "refused %llu (%zu waiting), repaired %llu; adopted %llu (kept %llu, "
                  "released %llu, %zu undecided); batches %llu, resyncs %llu\n",
                  static_cast<unsigned int>(PROTOCOL), static_cast<unsigned int>(PRIORITY),
                  static_cast<unsigned long long>(m_counters.written),
                  static_cast<unsigned long long>(m_counters.removed),
                  static_cast<unsigned long long>(m_counters.refused), m_refused.size(),
                  static_cast<unsigned long long>(m_counters.repaired),
                  static_cast<unsigned long long>(m_counters.adopted),
                  static_cast<unsigned long long>(m_counters.kept),
                  static_cast<unsigned long long>(m_counters.released), m_adopted.size(),
                  static_cast<unsigned long long>(m_counters.batches),
                  static_cast<unsigned long long>(m_counters.resyncs));
    std::string text = line;
    if (!m_failure.empty()) {
        text += "Kernel forwarding failure: " + m_failure + "\n";
    }
    return text;
}

}  // namespace Zavrel::Emulator
