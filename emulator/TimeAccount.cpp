#include "emulator/TimeAccount.h"

#include <time.h>

namespace Zavrel::Emulator {

volatile std::sig_atomic_t TimeAccount::s_inStack = 0;

void TimeAccount::Enable(bool on) {
    m_enabled = on;
    m_scopes.clear();
    s_inStack = 0;
}

void TimeAccount::Clear() {
    m_scopes.clear();
    m_stackNs = 0;
    s_inStack = 0;
}

uint64_t TimeAccount::Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
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
