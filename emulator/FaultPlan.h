// FaultPlan: faults the stack emulator injects into its answers, per kind of
// row request: fail the next N requests with a given result, answer after K
// scheduler runs instead of the next one, and fail a share of the requests
// drawn from a seeded pseudo-random sequence (the same seed gives the same
// failures on every machine). A table walk that fails is cut short: it
// delivers at most one row and then ends with the result as its code.
#ifndef ZAVREL_EMULATOR_FAULTPLAN_H
#define ZAVREL_EMULATOR_FAULTPLAN_H

#include <cstdint>
#include <string>

#include "emulator/EmulatorTypes.h"

namespace Json {
class Value;
}

namespace Zavrel::Emulator {

struct FaultDecision {
    bool fail = false;  // answer with result instead of doing the request
    unsigned long result = 0;
    unsigned int runs = 1;  // the request is answered this many runs after it came
};

class FaultPlan {
public:
    // The next count requests of the kind fail with result (replaces an
    // earlier count of the kind).
    void FailNext(RequestKind kind, unsigned int count, unsigned long result);
    // Requests of the kind are answered runs scheduler runs after they came
    // (1, the default, is the next run; 0 counts as 1).
    void SetAnswerDelay(RequestKind kind, unsigned int runs);
    void SetAnswerDelay(unsigned int runs);  // every kind
    // A share (0.0 to 1.0, in steps of one in a million) of the requests of
    // the kind fails with result; seed starts the pseudo-random sequence.
    void SetFailureRate(RequestKind kind, double rate, unsigned long result, uint64_t seed);
    // No faults at all.
    void Clear();

    // Decides the fate of one request of the kind (consumes a FailNext
    // count or a draw of the sequence).
    FaultDecision Decide(RequestKind kind);

    unsigned int PendingFailures(RequestKind kind) const;
    unsigned int AnswerDelay(RequestKind kind) const;
    bool IsEmpty() const;
    // One line per kind with a fault, "none" when there are none.
    std::string Describe() const;
    // The same as Describe, one object per kind with a fault (an empty
    // array when there are none).
    Json::Value ToJson() const;

private:
    struct PerKind {
        unsigned int failNext = 0;
        unsigned long failResult = 0;
        unsigned int delay = 1;
        uint32_t ratePerMillion = 0;
        unsigned long rateResult = 0;
        uint64_t state = 0;
    };
    static uint64_t NextRandom(uint64_t& state);
    PerKind& Of(RequestKind kind) { return m_kinds[static_cast<size_t>(kind)]; }
    const PerKind& Of(RequestKind kind) const { return m_kinds[static_cast<size_t>(kind)]; }

    PerKind m_kinds[REQUEST_KIND_COUNT];
};

}  // namespace Zavrel::Emulator

#endif
