// CpuAccount: the thread CPU time spent inside the stack, not counting the
// time its callbacks spend in the library. Every entry into the stack (a C
// API call, the channel handler) opens a stack scope, every call into the
// library a library scope; time is charged to the scope on top. Off by
// default: then a scope costs one test.
#ifndef ZAVREL_EMULATOR_CPUACCOUNT_H
#define ZAVREL_EMULATOR_CPUACCOUNT_H

#include <cstdint>
#include <vector>

namespace Zavrel::Emulator {

class CpuAccount {
public:
    // Switch it on or off between calls of the stack, not from inside one.
    void Enable(bool on);
    bool IsEnabled() const { return m_enabled; }
    // Nanoseconds charged to the stack so far.
    uint64_t StackNs() const { return m_stackNs; }
    void Clear();

    class Scope {
    public:
        Scope(CpuAccount& account, bool stack) : m_account(account) {
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
        CpuAccount& m_account;
        bool m_pushed;
    };

private:
    bool Enter(bool stack);
    void Leave();
    void Charge(uint64_t now);
    static uint64_t Now();

    bool m_enabled = false;
    std::vector<bool> m_scopes;  // true: a stack scope
    uint64_t m_last = 0;
    uint64_t m_stackNs = 0;
};

}  // namespace Zavrel::Emulator

#endif
