// The churn run for one virtual hour: application events four a second
// against a stack that fails a tenth of its answers, then the check that
// nothing was lost, made up or left stuck and that the stack's contract
// held throughout.
#include "churn/Churn.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Zavrel {
namespace {

TEST(ChurnTest, OneHourLosesNothingAndKeepsTheContract) {
    Churn::Settings settings;
    settings.hours = 1;
    settings.seed = 1;
    std::vector<Churn::Hour> reported;
    const Churn::Result result =
        Churn(settings).Run([&](const Churn::Hour& hour) { reported.push_back(hour); });
    ASSERT_TRUE(result.started);
    EXPECT_EQ(result.events, 14400u);
    ASSERT_EQ(reported.size(), 1u);
    const Churn::Hour& hour = reported[0];
    EXPECT_EQ(hour.hour, 1u);
    EXPECT_EQ(hour.breaches, 0u);
    // The run did work, and the faults were injected.
    EXPECT_GT(hour.confirmed, 1000u);
    EXPECT_GT(hour.failed, 100u);
    EXPECT_GT(hour.wanted, 0u);
    EXPECT_EQ(result.problems, std::vector<std::string>{});
}

TEST(ChurnTest, HourLineNamesEveryFigure) {
    Churn::Hour hour;
    hour.hour = 3;
    hour.residentKb = 10240;
    hour.heapBytes = 812345;
    hour.counters.vlans = 2;
    hour.counters.cfgItems = 5;
    hour.requests = 900;
    hour.confirmed = 800;
    hour.failed = 90;
    hour.wanted = 12;
    EXPECT_EQ(hour.ToString(),
              "hour 3 rss 10240 kB heap 812345 B vlans 2 items 5 parked 0 waiting 0 rows 0 "
              "interfaces 0 rtm 0 requests 900 confirmed 800 failed 90 wanted 12 breaches 0");
}

// Hours with these resident sets (kB) and heaps (bytes).
Churn::Result RunOf(const std::vector<uint64_t>& residentKb, const std::vector<uint64_t>& heap) {
    Churn::Result result;
    result.started = true;
    result.events = 14400 * residentKb.size();
    for (size_t i = 0; i < residentKb.size(); ++i) {
        Churn::Hour hour;
        hour.hour = static_cast<unsigned int>(i + 1);
        hour.residentKb = residentKb[i];
        hour.heapBytes = heap[i];
        result.hours.push_back(hour);
    }
    return result;
}

// The verdict on the run and its closing line.
void ExpectSummary(const Churn::Result& result, bool flat, bool passed, const std::string& line) {
    const Churn::Summary summary = Churn::Summarize(result);
    EXPECT_EQ(summary.flat, flat);
    EXPECT_EQ(summary.Passed(), passed);
    EXPECT_EQ(summary.ToString(), line);
}

TEST(ChurnTest, TheFirstHourWarmsUpAndTheLaterOnesStayWithinOnePercent) {
    ExpectSummary(RunOf({5136, 5264, 5272, 5268}, {190000, 220000, 189000, 200000}), true, true,
                  "churn: 57600 events, 0 problems, resident set after hour 1: 5264 to 5272 kB "
                  "(0.15%, flat), heap in use 189000 to 220000 B");
}

TEST(ChurnTest, AResidentSetGrowingPastOnePercentFailsTheRun) {
    ExpectSummary(RunOf({5000, 5200, 5300}, {1, 2, 3}), false, false,
                  "churn: 43200 events, 0 problems, resident set after hour 1: 5200 to 5300 kB "
                  "(1.92%, grew), heap in use 1 to 3 B");
}

TEST(ChurnTest, AProblemFailsAFlatRun) {
    Churn::Result result = RunOf({5000, 5200, 5200}, {7, 7, 7});
    result.problems.push_back("lost: a route");
    ExpectSummary(result, true, false,
                  "churn: 43200 events, 1 problems, resident set after hour 1: 5200 to 5200 kB "
                  "(0.00%, flat), heap in use 7 to 7 B");
}

TEST(ChurnTest, OneHourHasNoLaterHourToJudge) {
    ExpectSummary(RunOf({5136}, {190000}), true, true,
                  "churn: 14400 events, 0 problems, resident set after hour 1: 0 to 0 kB "
                  "(0.00%, flat), heap in use 190000 to 190000 B");
}

}  // namespace
}  // namespace Zavrel
