// The stack is cooperative: it works, and calls the library, only inside
// nbb_scheduler; outside a run it only asks for one.
#include <gtest/gtest.h>

#include "emulator/Emulator.h"
#include "platform/Timer.h"
#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;

class SchedulingTest : public EmulatorFixture {};

TEST_F(SchedulingTest, SmsiInitStartsTheComponentsAndAsksForAnEarlyRun) {
    EXPECT_EQ(0, Init());
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    EXPECT_TRUE(Stack().IsStarted());
    EXPECT_EQ(Strings({"ripv2", "ripng", "bgp", "ospf", "ospfv3", "igmp", "pim"}),
              Stack().Components());
}

TEST_F(SchedulingTest, SmsiInitDoesNotAskForARunWhileOneIsPending) {
    Side().rescheduled = true;
    EXPECT_EQ(0, Init());
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()"}), Side().Calls());
}

TEST_F(SchedulingTest, AnUnknownComponentIsRefusedAndNothingStarts) {
    EXPECT_NE(0, Init("ripv2 isis"));
    EXPECT_FALSE(Stack().IsStarted());
    EXPECT_TRUE(Stack().Components().empty());
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_TRUE(Side().Calls().empty());
}

TEST_F(SchedulingTest, ANullComponentListIsRefused) {
    EXPECT_NE(0, smsi_init(nullptr));
    EXPECT_FALSE(Stack().IsStarted());
}

TEST_F(SchedulingTest, ASecondSmsiInitAddsOnlyNewComponents) {
    EXPECT_EQ(0, Init("ripv2 bgp"));
    EXPECT_EQ(0, Init("bgp pim"));
    EXPECT_EQ(Strings({"ripv2", "bgp", "pim"}), Stack().Components());
}

TEST_F(SchedulingTest, TheFirstRunRegistersTheChannelAndTheSecondReportsTheInterfaceTablesReady) {
    ASSERT_EQ(0, Init());
    Side().ClearCalls();
    const int fd = Stack().ChannelFd();
    ASSERT_GE(fd, 0);

    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(Strings({"cRegisterWorkWithEventloop(" + std::to_string(fd) + ", 0, 1)"}),
              Side().Calls());
    EXPECT_FALSE(Stack().IsI3Ready());

    Side().ClearCalls();
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"cI3Ready()"}), Side().Calls());
    EXPECT_TRUE(Stack().IsI3Ready());

    Side().ClearCalls();
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_TRUE(Side().Calls().empty());
}

TEST_F(SchedulingTest, TheInterfaceTablesCanTakeMoreRunsToComeUp) {
    Stack().SetI3ReadyAfterRuns(4);
    ASSERT_EQ(0, Init());
    Side().RunScheduler();
    Side().RunScheduler();
    Side().RunScheduler();
    EXPECT_FALSE(Stack().IsI3Ready());
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cI3Ready()"}), Side().Calls());
}

TEST_F(SchedulingTest, ARunBeforeSmsiInitDoesNothing) {
    EXPECT_EQ(-1, nbb_scheduler());
    EXPECT_TRUE(Side().Calls().empty());
}

TEST_F(SchedulingTest, ARequestOutsideARunOnlyAsksForARun) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    Side().ClearCalls();
    Interface(4, 5, 101, "eth1");
    // A run is pending now: the stack only asks.
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()"}), Side().Calls());
}

TEST_F(SchedulingTest, ARequestIsAnsweredOnTheNextRunAndTheRunReportsIdleAfterwards) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    Side().ClearCalls();
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"cRunPendingAction(" + EiOid(5, 100) + ")"}), Side().Calls());
}

TEST_F(SchedulingTest, ARequestMadeInsideARunAsksForAnotherRunAndIsAnsweredThere) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    Side().OnNextCall("cRunPendingAction", [] { Interface(1, 5, 100, "eth0", 2); });
    Side().ClearCalls();
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(Strings({"cRunPendingAction(" + EiOid(5, 100) + ")", "cIsNBaseRescheduled()",
                       "cRescheduleNBase()"}),
              Side().Calls());
    EXPECT_EQ(1u, Stack().QueuedRequests());
    Side().ClearCalls();
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"cRunPendingAction(" + EiOid(5, 100) + ")"}), Side().Calls());
    EXPECT_EQ(2u, Stack().Interfaces().FindInterface(5, 100)->operStatus);
}

TEST_F(SchedulingTest, TheSchedulerReturnsZeroWhileDelayedWorkWaits) {
    StartStack();
    Emulator::SetAnswerDelay(Emulator::RequestKind::Interface, 3);
    Interface(4, 5, 100, "eth0");
    Side().ClearCalls();
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_TRUE(Side().Calls().empty());
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"cRunPendingAction(" + EiOid(5, 100) + ")"}), Side().Calls());
}

// The library's scheduler, in short: an early run 5 ms after
// cRescheduleNBase, otherwise the delay the stack returns (at least 10 ms,
// 100 ms when idle).
class TimerDriver {
public:
    TimerDriver()
        : m_timer("DcScheduler", new MemberCallback2<TimerDriver, unsigned int, void*>(
                                     this, &TimerDriver::OnTimeout)) {
        LibrarySide::Instance().OnCall("cRescheduleNBase", [this] { m_timer.Start(5); });
    }
    void OnTimeout(unsigned int, void*) {
        const int next = LibrarySide::Instance().RunScheduler();
        ++runs;
        if (LibrarySide::Instance().rescheduled) {
            return;
        }
        m_timer.Start(next < 0 ? 100 : (next < 10 ? 10 : static_cast<unsigned int>(next)));
    }
    int runs = 0;

private:
    OneShotTimer m_timer;
};

TEST_F(SchedulingTest, DrivenByATimerOnTheVirtualClockTheStackComesUpAndAnswers) {
    TimerDriver driver;
    ASSERT_EQ(0, Init());
    loop.Advance(5);
    EXPECT_EQ(1, driver.runs);
    EXPECT_FALSE(Stack().IsI3Ready());
    loop.Advance(10);
    EXPECT_EQ(2, driver.runs);
    EXPECT_TRUE(Stack().IsI3Ready());

    Interface(4, 5, 100, "eth0");
    loop.Advance(5);
    EXPECT_EQ(3, driver.runs);
    EXPECT_EQ(1u, Side().Calls("cRunPendingAction").size());
    // Idle: the timer comes back every 100 ms.
    loop.Advance(1000);
    EXPECT_EQ(13, driver.runs);
}

}  // namespace
}  // namespace Zavrel::test

namespace Zavrel::test {
namespace {

class SchedulingReentryTest : public EmulatorFixture {};

TEST_F(SchedulingReentryTest, ARunAskedForFromInsideARunDoesNothing) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    int inner = -2;
    Side().OnNextCall("cRunPendingAction", [&inner] { inner = nbb_scheduler(); });
    const uint64_t runs = Stack().Runs();
    Side().RunScheduler();
    EXPECT_EQ(0, inner);
    EXPECT_EQ(runs + 1, Stack().Runs());
}

TEST_F(SchedulingReentryTest, RequestsTheLibraryIssuesInsideI3ReadyAreAnsweredOnTheNextRun) {
    ASSERT_EQ(0, Init());
    Side().OnNextCall("cI3Ready", [] {
        Interface(4, 5, 100, "eth0");
        Address(1, 5, 100, "10.0.0.1", 24);
    });
    Side().RunScheduler();
    Side().RunScheduler();
    EXPECT_TRUE(Side().Calls("cRunPendingAction").empty());
    EXPECT_EQ(2u, Stack().QueuedRequests());
    EXPECT_TRUE(Side().rescheduled);
    Side().RunScheduler();
    EXPECT_EQ(2u, Side().Calls("cRunPendingAction").size());
    EXPECT_EQ(0u, Emulator::BreachCount());
}

}  // namespace
}  // namespace Zavrel::test
