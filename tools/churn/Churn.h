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
