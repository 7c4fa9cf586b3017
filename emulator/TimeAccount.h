// TimeAccount: the time spent inside the stack, not counting the time its
// callbacks spend in the library. Every entry into the stack (a C API call,
// the channel handler) opens a stack scope, every call into the library a
// library scope; time is charged to the scope on top. It reads the
// monotonic clock, which costs a few nanoseconds where a thread CPU clock
// costs a system call: in a single-threaded run that never waits (a run on
// the virtual clock) the two agree, as long as the machine does not take the
// processor away. For a measure that does not depend on that, a sampling
// profiler (a SIGPROF handler) asks InStackNow() which side it interrupted.
// Off by default: then a scope costs one test.
#ifndef ZAVREL_EMULATOR_TIMEACCOUNT_H
#define ZAVREL_EMULATOR_TIMEACCOUNT_H

#include <csignal>
#include <cstdint>
#include <vector>

namespace Zavrel::Emulator {

class TimeAccount {
public:
    // Switch it on or off between calls of the stack, not from inside one.
    void Enable(bool on);
    bool IsEnabled() const { return m_enabled; }
    // Nanoseconds charged to the stack so far.
    uint64_t StackNs() const { return m_stackNs; }
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
    static uint64_t Now();

    static volatile std::sig_atomic_t s_inStack;

    bool m_enabled = false;
    std::vector<bool> m_scopes;  // true: a stack scope
    uint64_t m_last = 0;
    uint64_t m_stackNs = 0;
};

}  // namespace Zavrel::Emulator

#endif
