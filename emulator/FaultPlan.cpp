#include "emulator/FaultPlan.h"

#include <json/value.h>

#include <cstdio>

namespace Zavrel::Emulator {

void FaultPlan::FailNext(RequestKind kind, unsigned int count, unsigned long result) {
    Of(kind).failNext = count;
    Of(kind).failResult = result;
}

void FaultPlan::SetAnswerDelay(RequestKind kind, unsigned int runs) {
    Of(kind).delay = runs == 0 ? 1 : runs;
}

void FaultPlan::SetAnswerDelay(unsigned int runs) {
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        SetAnswerDelay(static_cast<RequestKind>(i), runs);
    }
}

void FaultPlan::SetFailureRate(RequestKind kind, double rate, unsigned long result, uint64_t seed) {
    if (rate < 0.0) {
        rate = 0.0;
    }
    if (rate > 1.0) {
        rate = 1.0;
    }
    PerKind& faults = Of(kind);
    faults.ratePerMillion = static_cast<uint32_t>(rate * 1000000.0 + 0.5);
    faults.rateResult = result;
    faults.state = seed;
}

void FaultPlan::Clear() {
    for (PerKind& faults : m_kinds) {
        faults = PerKind();
    }
}

// splitmix64: small, fast and the same on every platform.
uint64_t FaultPlan::NextRandom(uint64_t& state) {
    state += 0x9E3779B97F4A7C15ull;
    uint64_t z = state;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

FaultDecision FaultPlan::Decide(RequestKind kind) {
    PerKind& faults = Of(kind);
    FaultDecision decision;
    decision.runs = faults.delay;
    if (faults.failNext > 0) {
        --faults.failNext;
        decision.fail = true;
        decision.result = faults.failResult;
    } else if (faults.ratePerMillion > 0) {
        if (NextRandom(faults.state) % 1000000u < faults.ratePerMillion) {
            decision.fail = true;
            decision.result = faults.rateResult;
        }
    }
    return decision;
}

unsigned int FaultPlan::PendingFailures(RequestKind kind) const {
    return Of(kind).failNext;
}

unsigned int FaultPlan::AnswerDelay(RequestKind kind) const {
    return Of(kind).delay;
}

bool FaultPlan::IsEmpty() const {
    for (const PerKind& faults : m_kinds) {
        if (faults.failNext != 0 || faults.delay != 1 || faults.ratePerMillion != 0) {
            return false;
        }
    }
    return true;
}

std::string FaultPlan::Describe() const {
    if (IsEmpty()) {
        return "none";
    }
    std::string text;
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        const PerKind& faults = m_kinds[i];
        if (faults.failNext == 0 && faults.delay == 1 && faults.ratePerMillion == 0) {
            continue;
        }
        char line[160];
        std::snprintf(line, sizeof(line),
                      "%s: fail next %u with %lu, answer after %u runs, "
                      "fail %u per million with %lu\n",
                      RequestKindName(static_cast<RequestKind>(i)), faults.failNext,
                      faults.failResult, faults.delay,
                      static_cast<unsigned int>(faults.ratePerMillion), faults.rateResult);
        text += line;
    }
    return text;
}

Json::Value FaultPlan::ToJson() const {
    Json::Value faults(Json::arrayValue);
    for (size_t i = 0; i < REQUEST_KIND_COUNT; ++i) {
        const PerKind& kind = m_kinds[i];
        if (kind.failNext == 0 && kind.delay == 1 && kind.ratePerMillion == 0) {
            continue;
        }
        Json::Value fault(Json::objectValue);
        fault["kind"] = RequestKindName(static_cast<RequestKind>(i));
        fault["failNext"] = kind.failNext;
        fault["failResult"] = static_cast<Json::UInt64>(kind.failResult);
        fault["answerAfterRuns"] = kind.delay;
        fault["failPerMillion"] = static_cast<Json::UInt>(kind.ratePerMillion);
        fault["rateResult"] = static_cast<Json::UInt64>(kind.rateResult);
        faults.append(fault);
    }
    return faults;
}

}  // namespace Zavrel::Emulator
