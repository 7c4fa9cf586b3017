// Churn: hours of application events against a faulty stack on the virtual
// clock, reported hour by hour.
#include "churn/Churn.h"

#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "emulator/Emulator.h"
#include "harness/SystemDriver.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

const Emulator::RequestKind kRowKinds[] = {
    Emulator::RequestKind::Route, Emulator::RequestKind::Redistribution,
    Emulator::RequestKind::Interface, Emulator::RequestKind::Address};

constexpr uint64_t kHourMs = 3600ull * 1000ull;

}  // namespace

std::string Churn::Hour::ToString() const {
    char line[320];
    std::snprintf(line, sizeof line,
                  "hour %u rss %llu kB heap %llu B %s requests %llu confirmed %llu failed %llu "
                  "wanted %zu breaches %zu",
                  hour, static_cast<unsigned long long>(residentKb),
                  static_cast<unsigned long long>(heapBytes), counters.ToString().c_str(),
                  static_cast<unsigned long long>(requests),
                  static_cast<unsigned long long>(confirmed),
                  static_cast<unsigned long long>(failed), wanted, breaches);
    return line;
}

Churn::Summary Churn::Summarize(const Result& result) {
    Summary summary;
    summary.events = result.events;
    summary.problems = result.problems.size();
    if (result.hours.empty()) {
        return summary;
    }
    summary.heapLow = result.hours.front().heapBytes;
    summary.heapHigh = summary.heapLow;
    for (size_t i = 0; i < result.hours.size(); ++i) {
        const Hour& hour = result.hours[i];
        summary.heapLow = std::min(summary.heapLow, hour.heapBytes);
        summary.heapHigh = std::max(summary.heapHigh, hour.heapBytes);
        if (i == 0) {
            continue;
        }
        summary.residentLowKb = summary.residentLowKb == 0
                                    ? hour.residentKb
                                    : std::min(summary.residentLowKb, hour.residentKb);
        summary.residentHighKb = std::max(summary.residentHighKb, hour.residentKb);
    }
    if (result.hours.size() >= 2) {
        const uint64_t low = summary.residentLowKb;
        summary.spread =
            low == 0 ? 0.0
                     : static_cast<double>(summary.residentHighKb - low) / static_cast<double>(low);
        summary.flat = low != 0 && summary.spread <= 0.01;
    }
    return summary;
}

std::string Churn::Summary::ToString() const {
    char line[320];
    std::snprintf(line, sizeof line,
                  "churn: %llu events, %zu problems, resident set after hour 1: %llu to %llu kB "
                  "(%.2f%%, %s), heap in use %llu to %llu B",
                  static_cast<unsigned long long>(events), problems,
                  static_cast<unsigned long long>(residentLowKb),
                  static_cast<unsigned long long>(residentHighKb), spread * 100.0,
                  flat ? "flat" : "grew", static_cast<unsigned long long>(heapLow),
                  static_cast<unsigned long long>(heapHigh));
    return line;
}

uint64_t Churn::ResidentKb() {
    FILE* statm = std::fopen("/proc/self/statm", "r");
    if (statm == nullptr) {
        return 0;
    }
    unsigned long long size = 0;
    unsigned long long resident = 0;
    const int read = std::fscanf(statm, "%llu %llu", &size, &resident);
    std::fclose(statm);
    if (read != 2) {
        return 0;
    }
    return resident * static_cast<unsigned long long>(sysconf(_SC_PAGESIZE)) / 1024;
}

uint64_t Churn::HeapBytes() {
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 33))
    return mallinfo2().uordblks;
#else
    return 0;
#endif
}

Churn::Result Churn::Run(const std::function<void(const Hour&)>& report) {
    Result result;
    RouterSystem system(1);
    if (!system.IsStarted()) {
        return result;
    }
    result.started = true;
    for (size_t k = 0; k < sizeof kRowKinds / sizeof kRowKinds[0]; ++k) {
        Emulator::SetFailureRate(kRowKinds[k], m_settings.faultRate, Sms::RESULT_TEMPORARY,
                                 m_settings.seed + k);
    }
    SeededChoices choices(m_settings.seed);
    SystemDriver::Settings drive;
    drive.stackFaults = false;
    drive.unconfiguredVlan = false;
    SystemDriver driver(system, choices, drive);
    const unsigned int gap = m_settings.eventGapMs == 0 ? 1 : m_settings.eventGapMs;
    for (unsigned int hour = 1; hour <= m_settings.hours; ++hour) {
        for (uint64_t elapsed = 0; elapsed < kHourMs; elapsed += gap) {
            driver.Step();
            system.Run(gap);
            ++result.events;
        }
        Hour h;
        h.hour = hour;
        h.residentKb = ResidentKb();
        h.heapBytes = HeapBytes();
        h.counters = system.Count();
        h.requests = RouterSystem::StackRequests();
        h.confirmed = Emulator::AnswerCount(Sms::RESULT_DONE);
        for (Emulator::RequestKind kind : kRowKinds) {
            h.failed += Emulator::AnswerCount(kind, Sms::RESULT_TEMPORARY);
        }
        h.wanted = driver.Book().Wanted();
        h.breaches = Emulator::BreachCount();
        if (report) {
            report(h);
        }
        result.hours.push_back(h);
    }
    driver.Settle();
    result.problems = driver.Problems();
    return result;
}

}  // namespace Zavrel
