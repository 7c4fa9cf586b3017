// The time account charges the stack for its own work, not for the time its
// callbacks spend in the library.
#include <gtest/gtest.h>

#include <time.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

uint64_t Clock(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

// Burns the given CPU time of this thread (and at least as much real time).
void Spin(uint64_t ns) {
    const uint64_t end = Clock(CLOCK_THREAD_CPUTIME_ID) + ns;
    while (Clock(CLOCK_THREAD_CPUTIME_ID) < end) {
    }
}

class TimeAccountTest : public EmulatorFixture {};

TEST_F(TimeAccountTest, NothingIsChargedWhileTheAccountIsOff) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    Side().RunScheduler();
    EXPECT_FALSE(Stack().Account().IsEnabled());
    EXPECT_EQ(0u, Stack().Account().StackNs());
}

TEST_F(TimeAccountTest, TimeSpentInTheLibrarysCallbacksIsNotChargedToTheStack) {
    constexpr uint64_t SPIN_NS = 20000000;  // 20 ms of CPU inside the library
    StartStack();
    Stack().Account().Enable(true);
    Side().OnCall("cRunPendingAction", [] { Spin(SPIN_NS); });
    Interface(4, 5, 100, "eth0");
    const uint64_t before = Clock(CLOCK_MONOTONIC);
    Side().RunScheduler();
    const uint64_t spent = Clock(CLOCK_MONOTONIC) - before;
    ASSERT_GE(spent, SPIN_NS);
    EXPECT_LT(Stack().Account().StackNs(), spent - SPIN_NS + 1000000);
    Stack().Account().Clear();
    EXPECT_EQ(0u, Stack().Account().StackNs());
}

TEST_F(TimeAccountTest, EveryScopeReadsTheClockTwice) {
    StartStack();
    Stack().Account().Enable(true, CLOCK_THREAD_CPUTIME_ID);
    // sms_set_i3_ei_oid and sms_act_interface, which calls
    // cIsNBaseRescheduled and cRescheduleNBase: four scopes.
    Interface(4, 5, 100, "eth0");
    EXPECT_EQ(8u, Stack().Account().Reads());
    Stack().Account().Clear();
    EXPECT_EQ(0u, Stack().Account().Reads());
    EXPECT_EQ(0u, Emulator::TimeAccount::ReadCostNs(CLOCK_MONOTONIC, 0));
}

TEST_F(TimeAccountTest, TheInnermostScopeTellsWhichSideIsRunning) {
    StartStack();
    Stack().Account().Enable(true);
    std::vector<bool> seen;
    Side().OnCall("cRunPendingAction", [&seen] {
        seen.push_back(Emulator::TimeAccount::InStackNow());
        // The library issues the next request from inside the callback.
        Interface(1, 5, 100, "eth0", 2, 0);
        seen.push_back(Emulator::TimeAccount::InStackNow());
    });
    Side().OnNextCall("cIsNBaseRescheduled",
                      [&seen] { seen.push_back(Emulator::TimeAccount::InStackNow()); });
    Interface(4, 5, 100, "eth0");
    EXPECT_FALSE(Emulator::TimeAccount::InStackNow());
    EXPECT_EQ(std::vector<bool>({false}), seen);
    seen.clear();
    Side().RunScheduler();
    EXPECT_EQ(std::vector<bool>({false, false}), seen);
    EXPECT_FALSE(Emulator::TimeAccount::InStackNow());

    // The stack's own trace of a breach is written from inside the stack.
    class FlagSink : public TraceSink {
    public:
        bool Wants(int) const override { return true; }
        void Write(int, const char*) override {
            flags.push_back(Emulator::TimeAccount::InStackNow());
        }
        std::vector<bool> flags;
    } sink;
    TraceSink* previous = SetTraceSink(&sink);
    // The request made from the callback is still outstanding: both
    // requests overlap it.
    Interface(1, 5, 100, "eth0", 1, 0);
    Interface(1, 5, 100, "eth0", 1, 0);
    SetTraceSink(previous);
    EXPECT_EQ(2u, Emulator::BreachCount(Emulator::BreachKind::OverlappingRequest));
    EXPECT_EQ(std::vector<bool>({true, true}), sink.flags);
}

}  // namespace
}  // namespace Zavrel::test
