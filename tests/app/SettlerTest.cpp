#include "app/Settler.h"

#include <functional>

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class FakeProbe : public QuietProbe {
public:
    State Check() override {
        ++calls;
        if (quiet && !quiet()) {
            return BUSY;
        }
        return sure ? QUIET : PROBABLY_QUIET;
    }
    std::string ProgressText() override { return "progress"; }
    std::function<bool()> quiet;
    bool sure = false;
    int calls = 0;
};

class LambdaCallback : public TimerBase::Callback {
public:
    explicit LambdaCallback(std::function<void()> f) : m_f(std::move(f)) {}
    void operator()(unsigned int, void*) override { m_f(); }

private:
    std::function<void()> m_f;
};

class SettlerTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        driver = std::make_unique<VirtualLoopDriver>();
        settler = std::make_unique<Settler>(*driver, probe);
    }
    void TearDown() override {
        settler.reset();
        driver.reset();
        TestEnv::TearDown();
    }
    static bool Always() { return true; }

    FakeProbe probe;
    std::unique_ptr<VirtualLoopDriver> driver;
    std::unique_ptr<Settler> settler;
};

TEST_F(SettlerTest, QuietSystemSettlesAfterOneWindow) {
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), Settler::DEFAULT_WINDOW_MS);
}

TEST_F(SettlerTest, WaitsForTheWorkToEndAndThenAWholeWindow) {
    bool busy = true;
    OneShotTimer work("work", new LambdaCallback([&busy]() { busy = false; }));
    work.Start(1000);
    probe.quiet = [&busy]() { return !busy; };
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), 1000u + Settler::DEFAULT_WINDOW_MS);
}

TEST_F(SettlerTest, WorkThatComesBackWithinTheWindowKeepsItRunning) {
    // Busy for 5 ms after every tick of a 100 ms periodic timer, three
    // times: like a retried request sent from the scheduler's tick.
    int ticks = 0;
    bool busy = false;
    OneShotTimer done("done", new LambdaCallback([&busy]() { busy = false; }));
    PeriodicTimer tick("tick", new LambdaCallback([&]() {
                           if (++ticks <= 3) {
                               busy = true;
                               done.Start(5);
                           }
                       }));
    tick.Start(100);
    probe.quiet = [&busy]() { return !busy; };
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(ticks, 4);
    EXPECT_EQ(driver->NowMs(), 305u + Settler::DEFAULT_WINDOW_MS);
}

TEST_F(SettlerTest, GivesUpAtTheLimit) {
    settler->SetLimit(2000);
    probe.quiet = []() { return false; };
    EXPECT_FALSE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), 2000u);
}

TEST_F(SettlerTest, WaitsForTheCommandToEnd) {
    bool ended = false;
    OneShotTimer end("end", new LambdaCallback([&ended]() { ended = true; }));
    end.Start(40);
    EXPECT_TRUE(settler->RunUntilQuiet([&ended]() { return ended; }));
    EXPECT_EQ(driver->NowMs(), 40u + Settler::DEFAULT_WINDOW_MS);
}

TEST_F(SettlerTest, CertainQuietSettlesAtOnce) {
    probe.sure = true;
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), 0u);
    EXPECT_EQ(probe.calls, 1);
}

TEST_F(SettlerTest, CertainQuietAfterWorkSettlesWhenTheWorkEnds) {
    probe.sure = true;
    bool busy = true;
    OneShotTimer work("work", new LambdaCallback([&busy]() { busy = false; }));
    work.Start(70);
    probe.quiet = [&busy]() { return !busy; };
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), 70u);
}

TEST_F(SettlerTest, NoProbeBeforeTheCommandHasEnded) {
    probe.sure = true;
    bool ended = false;
    OneShotTimer end("end", new LambdaCallback([&ended]() { ended = true; }));
    end.Start(25);
    EXPECT_TRUE(settler->RunUntilQuiet([&ended]() { return ended; }));
    EXPECT_EQ(driver->NowMs(), 25u);
    EXPECT_EQ(probe.calls, 1);
}

TEST_F(SettlerTest, ShorterWindowSettlesSooner) {
    settler->SetWindow(10);
    EXPECT_TRUE(settler->RunUntilQuiet(Always));
    EXPECT_EQ(driver->NowMs(), 10u);
}

}  // namespace
}  // namespace Zavrel::test
