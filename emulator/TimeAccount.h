// TimeAccount: the time spent inside the stack, not counting the time its
// callbacks spend in the library. Every entry into the stack (a C API call,
// the channel handler) opens a stack scope, every call into the library a
// library scope; time is charged to the scope on top.
//
// The clock is chosen when the account is switched on. The monotonic clock
// costs a few nanoseconds a read; in a single-threaded run that never waits
// (a run on the virtual clock) it agrees with CPU time as long as the machine
// does not take the processor away. The thread CPU clock is immune to that
// but costs a system call a read; Reads() tells how many were made, so that
// a caller can take their cost out. A sampling profiler (a SIGPROF handler)
// can instead ask InStackNow() which side it interrupted.
// Off by default: then a scope costs one test.
#ifndef ZAVREL_EMULATOR_TIMEACCOUNT_H
#define ZAVREL_EMULATOR_TIMEACCOUNT_H

#include <time.h>

#include <csignal>
#include <cstdint>
#include <vector>

namespace Zavrel::Emulator {

class TimeAccount {
public:
    // Switch it on or off between calls of the stack, not from inside one.
    void Enable(bool on, clockid_t clock = CLOCK_MONOTONIC);
    // Reads time from source instead of the system clock (null restores the
    // system clock): lets tests charge known amounts of time.
    using ClockSource = uint64_t (*)();
    void SetClockSource(ClockSource source) { m_source = source; }
    bool IsEnabled() const { return m_enabled; }
    // Nanoseconds charged to the stack so far.
    uint64_t StackNs() const { return m_stackNs; }
    // Clock reads made so far.
    uint64_t Reads() const { return m_reads; }
    // Nanoseconds one read of the clock costs, measured over count reads.
    static uint64_t ReadCostNs(clockid_t clock, unsigned int count = 100000);
    // True while the innermost open scope is a stack scope; safe to call
    // from a signal handler.
    static bool InStackNow() { return s_inStack != 0; }
    void Clear();

    class Scope {
    public:
        Scope(TimeAccount& account, bool stack) : m_account(account) {
            m_pushed = m_account.Enter(stack);
        }
        ~Scope() {
            if (m_pushed) {
                m_account.Leave();
            }
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        TimeAccount& m_account;
        bool m_pushed;
    };

private:
    bool Enter(bool stack);
    void Leave();
    void Charge(uint64_t now);
    uint64_t Now();

    static volatile std::sig_atomic_t s_inStack;

    bool m_enabled = false;
    clockid_t m_clock = CLOCK_MONOTONIC;
    ClockSource m_source = nullptr;
    uint64_t m_reads = 0;
    std::vector<bool> m_scopes;  // true: a stack scope
    uint64_t m_last = 0;
    uint64_t m_stackNs = 0;
};

}  // namespace Zavrel::Emulator

#endif
