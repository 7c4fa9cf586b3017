#include "stack/DcScheduler.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "routing/DcRouterMgr.h"
#include "stack/StackCallbacks.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class DcSchedulerTest : public test::RecordingStackEnv {
protected:
    uint64_t NextDue() const {
        uint64_t due = 0;
        EXPECT_TRUE(loop.NextDue(due));
        return due;
    }

    size_t SchedulerRuns() const { return stack().Calls("nbb_scheduler").size(); }
};

TEST_F(DcSchedulerTest, ConstructionAndDestructionAreLogged) {
    {
        DcScheduler scheduler;
        EXPECT_EQ(trace.Texts(10), std::vector<std::string>{"Creating DC Scheduler\n"});
        EXPECT_FALSE(scheduler.IsRescheduled());
        EXPECT_STREQ(scheduler.Timer().Name(), "DcScheduler");
    }
    EXPECT_TRUE(trace.Contains(10, "Deleting DC Scheduler\n"));
}

TEST_F(DcSchedulerTest, InitStartsTheFixedComponentListAndReturnsItsResult) {
    DcScheduler scheduler;
    stack().SetResult("smsi_init", 3);
    trace.Clear();

    EXPECT_EQ(scheduler.init(), 3);

    EXPECT_EQ(stack().Calls(),
              std::vector<std::string>{"smsi_init(\"ripv2 ripng bgp ospf ospfv3 igmp pim\")"});
    EXPECT_EQ(trace.Texts(10), std::vector<std::string>{"Starting Metaswitch\n"});
}

TEST_F(DcSchedulerTest, InitDoesNotArmTheTimer) {
    DcScheduler scheduler;
    scheduler.init();
    EXPECT_FALSE(loop.IsArmed(&scheduler.Timer()));
    EXPECT_FALSE(loop.HasArmedTimers());
}

TEST_F(DcSchedulerTest, StartTimerArmsForTheGivenDelayAndLogs) {
    DcScheduler scheduler;
    trace.Clear();
    scheduler.StartTimer(42);
    EXPECT_TRUE(loop.IsArmed(&scheduler.Timer()));
    EXPECT_EQ(NextDue(), 42u);
    EXPECT_EQ(trace.Texts(10), std::vector<std::string>{"Starting Scheduler Timer for 42 ms\n"});
}

TEST_F(DcSchedulerTest, RescheduleArmsAFiveMillisecondTimer) {
    DcScheduler scheduler;
    trace.Clear();
    scheduler.RescheduleNBase();
    EXPECT_TRUE(scheduler.IsRescheduled());
    EXPECT_EQ(NextDue(), 5u);
    EXPECT_EQ(trace.Texts(10), (std::vector<std::string>{"Rescheduling Metaswitch\n",
                                                         "Starting Scheduler Timer for 5 ms\n"}));
}

TEST_F(DcSchedulerTest, SecondRescheduleWhilePendingIsIgnored) {
    DcScheduler scheduler;
    scheduler.RescheduleNBase();
    loop.Advance(3);
    trace.Clear();

    scheduler.RescheduleNBase();

    // The pending timer keeps its due time: it is not re-armed from now.
    EXPECT_EQ(NextDue(), 5u);
    EXPECT_EQ(trace.Texts(10), std::vector<std::string>{"Rescheduling Metaswitch\n"});
}

TEST_F(DcSchedulerTest, TimerRunClearsTheFlagAndRunsTheStackOnce) {
    DcScheduler scheduler;
    scheduler.RescheduleNBase();
    trace.Clear();

    EXPECT_EQ(loop.Advance(5), 1u);

    EXPECT_FALSE(scheduler.IsRescheduled());
    EXPECT_EQ(SchedulerRuns(), 1u);
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{"Scheduling Timer Expired!!! Scheduling Metaswitch\n",
                                        "Starting Scheduler Timer for 100 ms\n"}));
}

TEST_F(DcSchedulerTest, StackResultBelowTenRearmsForTenMilliseconds) {
    DcScheduler scheduler;
    stack().QueueSchedulerResults({3});
    scheduler.StartTimer(1);
    loop.Advance(1);
    EXPECT_EQ(NextDue(), 1u + 10u);
}

TEST_F(DcSchedulerTest, StackResultZeroRearmsForTenMilliseconds) {
    DcScheduler scheduler;
    stack().QueueSchedulerResults({0});
    scheduler.StartTimer(1);
    loop.Advance(1);
    EXPECT_EQ(NextDue(), 1u + 10u);
}

TEST_F(DcSchedulerTest, NegativeStackResultRearmsForTheIdleHundredMilliseconds) {
    DcScheduler scheduler;
    stack().QueueSchedulerResults({-1});
    scheduler.StartTimer(1);
    loop.Advance(1);
    EXPECT_EQ(NextDue(), 1u + 100u);
}

TEST_F(DcSchedulerTest, StackResultOfTenOrMoreIsUsedAsItIs) {
    DcScheduler scheduler;
    stack().QueueSchedulerResults({250, 10});
    scheduler.StartTimer(1);
    loop.Advance(1);
    EXPECT_EQ(NextDue(), 1u + 250u);
    loop.Advance(250);
    EXPECT_EQ(NextDue(), 251u + 10u);
    EXPECT_EQ(SchedulerRuns(), 2u);
}

TEST_F(DcSchedulerTest, TimerKeepsRunningTheStackFromItself) {
    DcScheduler scheduler;
    stack().QueueSchedulerResults({20, 3, -5});
    scheduler.StartTimer(1);
    // Runs at 1 (next in 20), 21 (next in 10), 31 (idle: next in 100), 131.
    loop.Advance(131);
    EXPECT_EQ(SchedulerRuns(), 4u);
    EXPECT_EQ(NextDue(), 231u);
}

TEST_F(DcSchedulerTest, SchedNBaseRunsTheStackWithoutTouchingTheTimer) {
    DcScheduler scheduler;
    trace.Clear();
    scheduler.SchedNBase();
    EXPECT_EQ(SchedulerRuns(), 1u);
    EXPECT_FALSE(loop.HasArmedTimers());
    EXPECT_EQ(trace.Texts(10), std::vector<std::string>{"Scheduling Metaswitch\n"});

    scheduler.StartTimer(30);
    scheduler.SchedNBase();
    EXPECT_EQ(NextDue(), 30u);
}

// ---- through the manager's scheduler and the stack's entry points

class SchedulingEntryPointTest : public DcSchedulerTest {
protected:
    void SetUp() override {
        DcSchedulerTest::SetUp();
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        trace.Clear();
    }

    DcScheduler& scheduler() { return mgr->GetScheduler(); }

    DcRouterMgr* mgr = nullptr;
};

TEST_F(SchedulingEntryPointTest, TwoRescheduleRequestsBeforeTheTimerFiresStartItOnce) {
    cRescheduleNBase();
    cRescheduleNBase();

    EXPECT_EQ(loop.ArmedTimerCount(), 1u);
    EXPECT_EQ(NextDue(), 5u);
    EXPECT_EQ(trace.Texts(10), (std::vector<std::string>{"Rescheduling Metaswitch\n",
                                                         "Starting Scheduler Timer for 5 ms\n",
                                                         "Rescheduling Metaswitch\n"}));
}

TEST_F(SchedulingEntryPointTest, IsNBaseRescheduledReportsThePendingEarlyRun) {
    EXPECT_EQ(cIsNBaseRescheduled(), 0);
    cRescheduleNBase();
    EXPECT_EQ(cIsNBaseRescheduled(), 1);
    loop.Advance(5);
    EXPECT_EQ(cIsNBaseRescheduled(), 0);
}

TEST_F(SchedulingEntryPointTest, RescheduleFromInsideTheStackRunSuppressesTheRearm) {
    int runs = 0;
    stack().OnScheduler([&runs] {
        if (runs++ == 0) {
            cRescheduleNBase();
        }
    });
    stack().QueueSchedulerResults({250});
    scheduler().StartTimer(20);
    trace.Clear();

    loop.Advance(20);

    // Only the 5 ms timer the stack asked for is armed, not the 250 ms one.
    EXPECT_EQ(loop.ArmedTimerCount(), 1u);
    EXPECT_EQ(NextDue(), 25u);
    EXPECT_TRUE(scheduler().IsRescheduled());
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{
                  "Scheduling Timer Expired!!! Scheduling Metaswitch\n",
                  "Rescheduling Metaswitch\n", "Starting Scheduler Timer for 5 ms\n",
                  "No starting next scheduler timer !!! since Metaswitch restarted it for some "
                  "action\n"}));

    // The early run re-arms as usual.
    loop.Advance(5);
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(scheduler().IsRescheduled());
    EXPECT_EQ(NextDue(), 125u);
}

TEST_F(SchedulingEntryPointTest, FirstRescheduleRequestDuringStartupStartsTheTimer) {
    stack().OnNextCall("smsi_init", [] { cRescheduleNBase(); });
    mgr->Initialize(1, nullptr);
    EXPECT_EQ(NextDue(), 5u);
    loop.Advance(5);
    EXPECT_EQ(SchedulerRuns(), 1u);
    EXPECT_EQ(NextDue(), 105u);
}

}  // namespace
}  // namespace Zavrel
