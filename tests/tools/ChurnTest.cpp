// The churn run for one virtual hour: application events four a second
// against a stack that fails a tenth of its answers, then the check that
// nothing was lost, made up or left stuck and that the stack's contract
// held throughout.
#include "churn/Churn.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace Zavrel
