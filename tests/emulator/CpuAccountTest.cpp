// The CPU account charges the stack for its own work, not for the time its
// callbacks spend in the library.
#include <gtest/gtest.h>

#include <time.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

uint64_t ThreadNs() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

// Burns the given CPU time of this thread.
void Spin(uint64_t ns) {
    const uint64_t end = ThreadNs() + ns;
    while (ThreadNs() < end) {
    }
}

class CpuAccountTest : public EmulatorFixture {};

TEST_F(CpuAccountTest, NothingIsChargedWhileTheAccountIsOff) {
    StartStack();
    Interface(4, 5, 100, "eth0");
    Side().RunScheduler();
    EXPECT_FALSE(Stack().Cpu().IsEnabled());
    EXPECT_EQ(0u, Stack().Cpu().StackNs());
}

TEST_F(CpuAccountTest, TimeSpentInTheLibrarysCallbacksIsNotChargedToTheStack) {
    constexpr uint64_t SPIN_NS = 20000000;  // 20 ms of CPU inside the library
    StartStack();
    Stack().Cpu().Enable(true);
    Side().OnCall("cRunPendingAction", [] { Spin(SPIN_NS); });
    Interface(4, 5, 100, "eth0");
    const uint64_t before = ThreadNs();
    Side().RunScheduler();
    const uint64_t spent = ThreadNs() - before;
    ASSERT_GE(spent, SPIN_NS);
    EXPECT_LT(Stack().Cpu().StackNs(), spent - SPIN_NS + 1000000);
    Stack().Cpu().Clear();
    EXPECT_EQ(0u, Stack().Cpu().StackNs());
}

}  // namespace
}  // namespace Zavrel::test
