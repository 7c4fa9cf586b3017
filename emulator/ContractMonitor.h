// ContractMonitor: what the stack checks of the library's side of the
// contract. It remembers which row OIDs the library asked for, which rows
// have a request outstanding (from the request until the stack's
// cRunPendingAction for that row), whether the interface tables were
// reported ready, and which RTM instances were ever started; and it counts
// every breach with a line of text.
#ifndef ZAVREL_EMULATOR_CONTRACTMONITOR_H
#define ZAVREL_EMULATOR_CONTRACTMONITOR_H

#include <map>
#include <set>
#include <string>
#include <vector>

#include "emulator/EmulatorTypes.h"
#include "emulator/OidCodec.h"

namespace Zavrel::Emulator {

class ContractMonitor {
public:
    void OidGiven(const Oid& oid) { m_given.insert(oid); }
    bool WasGiven(const Oid& oid) const { return m_given.count(oid) != 0; }

    // A request on the row starts; false when another one is outstanding.
    bool RequestStarted(const Oid& oid);
    // The stack is about to report the end of a request on the row.
    void RequestFinished(const Oid& oid);
    bool IsOutstanding(const Oid& oid) const { return m_outstanding.count(oid) != 0; }
    size_t OutstandingCount() const { return m_outstanding.size(); }

    void SetI3Ready() { m_i3Ready = true; }
    bool IsI3Ready() const { return m_i3Ready; }

    void InstanceStarted(unsigned long id) { m_started.insert(id); }
    bool WasStarted(unsigned long id) const { return m_started.count(id) != 0; }

    // Counts one breach and traces it at level 1.
    void Report(BreachKind kind, const std::string& text);
    size_t Count() const { return m_texts.size(); }
    size_t Count(BreachKind kind) const { return m_counts[static_cast<size_t>(kind)]; }
    // "<breach kind>: <what>", in order.
    const std::vector<std::string>& Texts() const { return m_texts; }

    void Clear();

private:
    std::set<Oid> m_given;
    std::map<Oid, unsigned int> m_outstanding;
    std::set<unsigned long> m_started;
    bool m_i3Ready = false;
    std::vector<std::string> m_texts;
    size_t m_counts[BREACH_KIND_COUNT] = {};
};

}  // namespace Zavrel::Emulator

#endif
