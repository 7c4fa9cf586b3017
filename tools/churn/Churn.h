// Churn: the whole system driven for hours of virtual time by a seeded
// sequence of application events (SystemDriver), with the stack failing a
// share of its answers, reporting what the process and the library hold
// every virtual hour. At the end the stack behaves again, the clock runs
// on, and the run says what was lost, made up or left stuck.
#ifndef ZAVREL_TOOLS_CHURN_H
#define ZAVREL_TOOLS_CHURN_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "harness/RouterSystem.h"

namespace Zavrel {

class Churn {
public:
    struct Settings {
        unsigned int hours = 24;
        uint64_t seed = 1;
        // Share of the row requests of every kind the stack fails (with a
        // temporary failure, which the library retries).
        double faultRate = 0.1;
        // Virtual time between two events.
        unsigned int eventGapMs = 250;
    };
    // One hour's report.
    struct Hour {
        unsigned int hour = 0;
        uint64_t residentKb = 0;  // the process's resident set
        uint64_t heapBytes = 0;   // bytes the allocator has handed out
        RouterSystem::Counters counters;
        uint64_t requests = 0;   // row requests the stack had so far
        uint64_t confirmed = 0;  // of them, answered done
        uint64_t failed = 0;     // of them, failed by the injected faults
        size_t wanted = 0;       // static routes the application wants
        size_t breaches = 0;
        // "hour 3 rss 10240 kB heap 812345 B vlans ... requests ... breaches 0"
        std::string ToString() const;
    };
    struct Result {
        std::vector<Hour> hours;
        std::vector<std::string> problems;  // after settling; empty when none
        uint64_t events = 0;
        bool started = false;
    };
    // The verdict on a finished run. The first hour warms up (the allocator
    // reaches the size the configurations' state space needs); the
    // resident sets read at the ends of the hours after it must stay within
    // 1% of each other. The heap in use rises and falls with what is
    // configured at the hour's end, so it is shown, not judged.
    struct Summary {
        uint64_t events = 0;
        size_t problems = 0;
        uint64_t residentLowKb = 0;  // over hours 2.. (0 with one hour)
        uint64_t residentHighKb = 0;
        double spread = 0;  // (high - low) / low
        bool flat = true;
        uint64_t heapLow = 0;  // over every hour
        uint64_t heapHigh = 0;
        // Nothing lost, made up or stuck, no breach, and flat.
        bool Passed() const { return problems == 0 && flat; }
        // "churn: 14400 events, 0 problems, resident set after hour 1: 5264
        // to 5272 kB (0.15%, flat), heap in use 189000 to 220000 B"
        std::string ToString() const;
    };
    static Summary Summarize(const Result& result);

    explicit Churn(const Settings& settings) : m_settings(settings) {}
    // Runs the whole churn; report (may be empty) gets each hour as it ends.
    Result Run(const std::function<void(const Hour&)>& report);

    // What the process holds now.
    static uint64_t ResidentKb();
    static uint64_t HeapBytes();

private:
    Settings m_settings;
};

}  // namespace Zavrel

#endif
