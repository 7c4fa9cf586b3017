#include "support/stackdouble/RecordingStack.h"

#include <utility>

namespace Zavrel::test {

namespace {

// The function name of a recorded line: the text before its "(".
std::string FunctionOf(const std::string& line) {
    return line.substr(0, line.find('('));
}

bool EndsWith(const std::string& text, const std::string& tail) {
    return text.size() >= tail.size() &&
           text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// Appends the components of one address, 4 or 16 bytes; a missing address
// counts as all zero so that the OID keeps its length.
void AppendBytes(std::vector<unsigned long>& oid, const unsigned char* bytes, size_t count) {
    for (size_t i = 0; i < count; ++i) {
        oid.push_back(bytes != nullptr ? bytes[i] : 0UL);
    }
}

std::vector<unsigned long> Prefix(unsigned long table) {
    return {1, 3, 6, 1, 4, 1, 4874, table};
}

}  // namespace

RecordingStack& RecordingStack::Instance() {
    static RecordingStack* stack = new RecordingStack();  // lives as long as the process
    return *stack;
}

void RecordingStack::Reset() {
    m_calls.clear();
    m_results.clear();
    m_schedulerResults.clear();
    m_schedulerHook = nullptr;
    m_callHooks.clear();
    m_walks.clear();
    ipsTracing = 0;
    ipsFilters.clear();
    nbb_os_failures = 0;
    m_recording = true;
}

std::vector<std::string> RecordingStack::Calls(const std::string& function) const {
    std::vector<std::string> out;
    for (const std::string& line : m_calls) {
        if (FunctionOf(line) == function) {
            out.push_back(line);
        }
    }
    return out;
}

std::vector<std::string> RecordingStack::Requests() const {
    std::vector<std::string> out;
    for (const std::string& line : m_calls) {
        const std::string function = FunctionOf(line);
        const bool oidBuilder = function.compare(0, 4, "sms_") == 0 && EndsWith(function, "_oid");
        if (oidBuilder || function == "nbb_scheduler" || function == "nbb_get_ips_tracing") {
            continue;
        }
        out.push_back(line);
    }
    return out;
}

long RecordingStack::Result(const std::string& function) const {
    auto it = m_results.find(function);
    if (it != m_results.end()) {
        return it->second;
    }
    return function == "nbb_scheduler" ? -1 : 0;
}

bool RecordingStack::HasResult(const std::string& function) const {
    return m_results.count(function) != 0;
}

void RecordingStack::QueueSchedulerResults(const std::vector<int>& results) {
    m_schedulerResults.insert(m_schedulerResults.end(), results.begin(), results.end());
}

int RecordingStack::NextSchedulerResult() {
    if (m_schedulerResults.empty()) {
        return static_cast<int>(Result("nbb_scheduler"));
    }
    const int result = m_schedulerResults.front();
    m_schedulerResults.pop_front();
    return result;
}

void RecordingStack::RunSchedulerHook() {
    // A copy, so that the hook may replace or clear itself while it runs.
    std::function<void()> hook = m_schedulerHook;
    if (hook) {
        hook();
    }
}

void RecordingStack::OnNextCall(const std::string& function, std::function<void()> hook) {
    m_callHooks[function] = std::move(hook);
}

void RecordingStack::RunCallHook(const std::string& function) {
    auto it = m_callHooks.find(function);
    if (it == m_callHooks.end()) {
        return;
    }
    // Taken out first: the hook runs once and may set the next one.
    std::function<void()> hook = std::move(it->second);
    m_callHooks.erase(it);
    if (hook) {
        hook();
    }
}

unsigned char RecordingStack::Answer(unsigned long code, const void* row) {
    if (m_walks.empty()) {
        return 0;
    }
    // Taken off the queue while its callback runs: the callback may start
    // new walks (they queue behind) or end the command that owns the context.
    const Walk walk = m_walks.front();
    m_walks.pop_front();
    if (walk.callback == nullptr) {
        return 0;
    }
    const unsigned char result = walk.callback(walk.context, 0, code, const_cast<void*>(row));
    const bool goesOn = code == SMS_RC_ROW || code == SMS_RC_PASS_OVER;
    if (goesOn && result != 0) {
        m_walks.push_front(walk);
    }
    return result;
}

std::vector<unsigned long> RecordingStack::RouteOid(unsigned long instance, long family,
                                                    const unsigned char* dest,
                                                    unsigned long prefixLength,
                                                    const unsigned char* nextHop,
                                                    unsigned long ifIndex) {
    const size_t bytes = family == 1 ? 4 : 16;
    std::vector<unsigned long> oid = Prefix(2);
    oid.push_back(instance);
    oid.push_back(static_cast<unsigned long>(family));
    oid.push_back(prefixLength);
    AppendBytes(oid, dest, bytes);
    AppendBytes(oid, nextHop, bytes);
    oid.push_back(ifIndex);
    return oid;
}

std::vector<unsigned long> RecordingStack::RedistOid(unsigned long instance, long source,
                                                     long dest) {
    std::vector<unsigned long> oid = Prefix(3);
    oid.push_back(instance);
    oid.push_back(static_cast<unsigned long>(source));
    oid.push_back(static_cast<unsigned long>(dest));
    return oid;
}

std::vector<unsigned long> RecordingStack::EiOid(unsigned long instance, unsigned long ifIndex) {
    std::vector<unsigned long> oid = Prefix(4);
    oid.push_back(instance);
    oid.push_back(ifIndex);
    return oid;
}

std::vector<unsigned long> RecordingStack::EaOid(unsigned long instance, unsigned long ifIndex,
                                                 const unsigned char* address,
                                                 unsigned long addrType) {
    std::vector<unsigned long> oid = Prefix(5);
    oid.push_back(instance);
    oid.push_back(ifIndex);
    oid.push_back(addrType);
    AppendBytes(oid, address, addrType == SMS_ADDR_TYPE_IPV6 ? 16 : 4);
    return oid;
}

}  // namespace Zavrel::test
