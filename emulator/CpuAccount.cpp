#include "emulator/CpuAccount.h"

#include <time.h>

namespace Zavrel::Emulator {

void CpuAccount::Enable(bool on) {
    m_enabled = on;
    m_scopes.clear();
}

void CpuAccount::Clear() {
    m_scopes.clear();
    m_stackNs = 0;
}

uint64_t CpuAccount::Now() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

void CpuAccount::Charge(uint64_t now) {
    if (!m_scopes.empty() && m_scopes.back()) {
        m_stackNs += now - m_last;
    }
    m_last = now;
}

bool CpuAccount::Enter(bool stack) {
    if (!m_enabled) {
        return false;
    }
    Charge(Now());
    m_scopes.push_back(stack);
    return true;
}

void CpuAccount::Leave() {
    if (m_scopes.empty()) {
        return;
    }
    Charge(Now());
    m_scopes.pop_back();
}

}  // namespace Zavrel::Emulator
