#include "app/LoopDriver.h"

#include <functional>

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class CountingCallback : public TimerBase::Callback {
public:
    explicit CountingCallback(int& count) : m_count(count) {}
    void operator()(unsigned int, void*) override { ++m_count; }

private:
    int& m_count;
};

class LoopDriverTest : public TestEnv {};

TEST_F(LoopDriverTest, VirtualDriverInstallsItsLoopAndRestoresThePreviousOne) {
    {
        VirtualLoopDriver driver;
        EXPECT_EQ(&EventLoop::Current(), &driver.Loop());
        EXPECT_TRUE(driver.IsVirtual());
    }
    EXPECT_EQ(&EventLoop::Current(), &loop);
}

TEST_F(LoopDriverTest, VirtualStepFiresTheNextTimerOnly) {
    VirtualLoopDriver driver;
    int first = 0;
    int second = 0;
    OneShotTimer a("a", new CountingCallback(first));
    OneShotTimer b("b", new CountingCallback(second));
    a.Start(30);
    b.Start(70);
    driver.Step(1000);
    EXPECT_EQ(driver.NowMs(), 30u);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
    driver.Step(1000);
    EXPECT_EQ(driver.NowMs(), 70u);
    EXPECT_EQ(second, 1);
}

TEST_F(LoopDriverTest, VirtualStepStopsAtTheDeadline) {
    VirtualLoopDriver driver;
    int fired = 0;
    OneShotTimer a("a", new CountingCallback(fired));
    a.Start(500);
    driver.Step(200);
    EXPECT_EQ(driver.NowMs(), 200u);
    EXPECT_EQ(fired, 0);
}

TEST_F(LoopDriverTest, RunForLetsExactlyThatTimePass) {
    VirtualLoopDriver driver;
    int fired = 0;
    PeriodicTimer tick("tick", new CountingCallback(fired));
    tick.Start(100);
    driver.RunFor(450);
    EXPECT_EQ(driver.NowMs(), 450u);
    EXPECT_EQ(fired, 4);
}

}  // namespace
}  // namespace Zavrel::test
