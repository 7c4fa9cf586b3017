// The time account charges the stack for its own work, not for the time its
// callbacks spend in the library.
#include <gtest/gtest.h>

#include <time.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

class TimeAccountTest : public EmulatorFixture {};

TEST_F(TimeAccountTest, NothingIsChargedWhileTheAccountIsOff) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    Side().RunScheduler();
    EXPECT_FALSE(Stack().Account().IsEnabled());
    EXPECT_EQ(0u, Stack().Account().StackNs());
}

// A clock that moves 1 us at every read, plus what a test adds on purpose.
uint64_t g_fakeNs = 0;
uint64_t FakeClock() {
    g_fakeNs += 1000;
    return g_fakeNs;
}

TEST_F(TimeAccountTest, TimeSpentInTheLibrarysCallbacksIsNotChargedToTheStack) {
    constexpr uint64_t LIBRARY_NS = 20000000;  // 20 ms inside the library
    StartStack();
    g_fakeNs = 0;
    Stack().Account().SetClockSource(&FakeClock);
    Stack().Account().Enable(true);
    Side().OnCall("cRunPendingAction", [] { g_fakeNs += LIBRARY_NS; });
    Interface(4, 5, 100, "eth0");
    const uint64_t before = g_fakeNs;
    Side().RunScheduler();
    const uint64_t spent = g_fakeNs - before;
    ASSERT_GE(spent, LIBRARY_NS);
    // Only the clock's own 1 us steps are charged to the stack, never the
    // 20 ms spent in the library.
    EXPECT_GT(Stack().Account().StackNs(), 0u);
    EXPECT_LT(Stack().Account().StackNs(), LIBRARY_NS);
    EXPECT_LT(Stack().Account().StackNs(), 100u * 1000u);
    Stack().Account().Clear();
    EXPECT_EQ(0u, Stack().Account().StackNs());
    Stack().Account().SetClockSource(nullptr);
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
