#include "emulator/TimeAccount.h"

#include <time.h>

namespace Zavrel::Emulator {

volatile std::sig_atomic_t TimeAccount::s_inStack = 0;

void TimeAccount::Enable(bool on, clockid_t clock) {
    m_enabled = on;
    m_clock = clock;
    m_scopes.clear();
    s_inStack = 0;
}

void TimeAccount::Clear() {
    m_scopes.clear();
    m_stackNs = 0;
    m_reads = 0;
    s_inStack = 0;
}

namespace {

uint64_t Read(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

}  // namespace

uint64_t TimeAccount::Now() {
    ++m_reads;
    return m_source != nullptr ? m_source() : Read(m_clock);
}

uint64_t TimeAccount::ReadCostNs(clockid_t clock, unsigned int count) {
    if (count == 0) {
        return 0;
    }
    const uint64_t start = Read(clock);
    for (unsigned int i = 0; i < count; ++i) {
        Read(clock);
    }
    return (Read(clock) - start) / count;
}

void TimeAccount::Charge(uint64_t now) {
    if (!m_scopes.empty() && m_scopes.back()) {
        m_stackNs += now - m_last;
    }
    m_last = now;
}

bool TimeAccount::Enter(bool stack) {
    if (!m_enabled) {
        return false;
    }
    Charge(Now());
    m_scopes.push_back(stack);
    s_inStack = stack ? 1 : 0;
    return true;
}

void TimeAccount::Leave() {
    if (m_scopes.empty()) {
        return;
    }
    Charge(Now());
    m_scopes.pop_back();
    s_inStack = (!m_scopes.empty() && m_scopes.back()) ? 1 : 0;
}

}  // namespace Zavrel::Emulator
