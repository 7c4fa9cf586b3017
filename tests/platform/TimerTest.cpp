#include "platform/Timer.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/VirtualEventLoop.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

// Records "<name>@<time> interval=<ms>" for every expiry.
class Log {
public:
    explicit Log(VirtualEventLoop& loop) : m_loop(loop) {}
    void Add(const std::string& name, unsigned int interval) {
        entries.push_back(name + "@" + std::to_string(m_loop.NowMs()) +
                          " interval=" + std::to_string(interval));
    }
    std::vector<std::string> entries;

private:
    VirtualEventLoop& m_loop;
};

// A callback that logs under a name and may run an extra action.
class LogCallback : public TimerBase::Callback {
public:
    LogCallback(Log& log, std::string name, std::function<void()> then = nullptr)
        : m_log(log), m_name(std::move(name)), m_then(std::move(then)) {}
    void operator()(unsigned int interval, void*) override {
        m_log.Add(m_name, interval);
        if (m_then) {
            m_then();
        }
    }

private:
    Log& m_log;
    std::string m_name;
    std::function<void()> m_then;
};

class TimerTest : public test::TestEnv {
protected:
    Log log{loop};
};

TEST_F(TimerTest, NewTimerIsIdleAndKeepsItsName) {
    OneShotTimer timer("DcScheduler", new LogCallback(log, "t"));
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_STREQ("DcScheduler", timer.Name());
    EXPECT_EQ(0u, timer.Interval());
}

TEST_F(TimerTest, OneShotFiresOnceAtItsDueTime) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    EXPECT_TRUE(timer.Start(100));
    EXPECT_TRUE(timer.IsRunning());
    EXPECT_EQ(100u, timer.Interval());
    EXPECT_EQ(0u, loop.Advance(99));
    EXPECT_TRUE(log.entries.empty());
    EXPECT_EQ(1u, loop.Advance(1));
    EXPECT_EQ((std::vector<std::string>{"t@100 interval=100"}), log.entries);
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(0u, loop.Advance(1000));
    EXPECT_EQ(1u, log.entries.size());
}

TEST_F(TimerTest, CallbackReceivesIntervalAndContext) {
    struct Capture : TimerBase::Callback {
        void operator()(unsigned int interval, void* context) override {
            gotInterval = interval;
            gotContext = context;
        }
        unsigned int gotInterval = 0;
        void* gotContext = nullptr;
    };
    auto* capture = new Capture;
    int marker = 0;
    OneShotTimer timer("t", capture, &marker);
    timer.Start(5);
    loop.Advance(5);
    EXPECT_EQ(5u, capture->gotInterval);
    EXPECT_EQ(&marker, capture->gotContext);
}

TEST_F(TimerTest, MemberCallbackIsCalledOnTheObject) {
    struct Owner {
        void OnTimeout(unsigned int interval, void*) { seen.push_back(interval); }
        std::vector<unsigned int> seen;
    } owner;
    OneShotTimer timer("DcScheduler",
                       new MemberCallback2<Owner, unsigned int, void*>(&owner, &Owner::OnTimeout));
    timer.Start(10);
    loop.Advance(10);
    EXPECT_EQ((std::vector<unsigned int>{10}), owner.seen);
}

TEST_F(TimerTest, TimersFireInOrderOfDueTime) {
    OneShotTimer a("a", new LogCallback(log, "a"));
    OneShotTimer b("b", new LogCallback(log, "b"));
    OneShotTimer c("c", new LogCallback(log, "c"));
    c.Start(30);
    a.Start(10);
    b.Start(20);
    EXPECT_EQ(3u, loop.Advance(100));
    EXPECT_EQ(
        (std::vector<std::string>{"a@10 interval=10", "b@20 interval=20", "c@30 interval=30"}),
        log.entries);
    EXPECT_EQ(100u, loop.NowMs());
}

TEST_F(TimerTest, TimersDueAtTheSameTimeFireInArmingOrder) {
    OneShotTimer a("a", new LogCallback(log, "a"));
    OneShotTimer b("b", new LogCallback(log, "b"));
    OneShotTimer c("c", new LogCallback(log, "c"));
    b.Start(10);
    c.Start(10);
    a.Start(10);
    loop.Advance(10);
    EXPECT_EQ(
        (std::vector<std::string>{"b@10 interval=10", "c@10 interval=10", "a@10 interval=10"}),
        log.entries);
}

TEST_F(TimerTest, RestartingAnArmedOneShotReArmsItFromNow) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    timer.Start(100);
    loop.Advance(60);
    timer.Start(100);
    EXPECT_EQ(0u, loop.Advance(99));
    EXPECT_TRUE(log.entries.empty());
    EXPECT_EQ(1u, loop.Advance(1));
    EXPECT_EQ((std::vector<std::string>{"t@160 interval=100"}), log.entries);
    EXPECT_EQ(0u, loop.ArmedTimerCount());
}

TEST_F(TimerTest, RestartingWithAShorterDelayFiresEarlierAndOnce) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    timer.Start(100);
    timer.Start(5);
    EXPECT_EQ(1u, loop.ArmedTimerCount());
    loop.Advance(200);
    EXPECT_EQ((std::vector<std::string>{"t@5 interval=5"}), log.entries);
}

TEST_F(TimerTest, RestartingMovesTheTimerBehindOthersDueAtTheSameTime) {
    OneShotTimer a("a", new LogCallback(log, "a"));
    OneShotTimer b("b", new LogCallback(log, "b"));
    a.Start(10);
    b.Start(10);
    a.Start(10);
    loop.Advance(10);
    EXPECT_EQ((std::vector<std::string>{"b@10 interval=10", "a@10 interval=10"}), log.entries);
}

TEST_F(TimerTest, OneShotIsIdleInItsCallbackAndMayRestartItself) {
    std::unique_ptr<OneShotTimer> timer;
    int runs = 0;
    bool runningInCallback = true;
    timer = std::make_unique<OneShotTimer>("t", new LogCallback(log, "t", [&] {
                                               runningInCallback = timer->IsRunning();
                                               if (++runs < 3) {
                                                   timer->Start(10);
                                               }
                                           }));
    timer->Start(10);
    EXPECT_EQ(3u, loop.Advance(100));
    EXPECT_FALSE(runningInCallback);
    EXPECT_EQ(
        (std::vector<std::string>{"t@10 interval=10", "t@20 interval=10", "t@30 interval=10"}),
        log.entries);
    EXPECT_FALSE(timer->IsRunning());
}

TEST_F(TimerTest, PeriodicFiresEveryIntervalUntilStopped) {
    PeriodicTimer timer("CfgScheduler", new LogCallback(log, "p"));
    timer.Start(100);
    EXPECT_EQ(3u, loop.Advance(350));
    EXPECT_EQ((std::vector<std::string>{"p@100 interval=100", "p@200 interval=100",
                                        "p@300 interval=100"}),
              log.entries);
    EXPECT_TRUE(timer.IsRunning());
    timer.Stop();
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(0u, loop.Advance(1000));
    EXPECT_EQ(3u, log.entries.size());
}

TEST_F(TimerTest, PeriodicIsReArmedBeforeItsCallbackSoTheCallbackCanStopIt) {
    std::unique_ptr<PeriodicTimer> timer;
    bool armedInCallback = false;
    timer = std::make_unique<PeriodicTimer>("p", new LogCallback(log, "p", [&] {
                                                armedInCallback = loop.IsArmed(timer.get());
                                                if (log.entries.size() == 2) {
                                                    timer->Stop();
                                                }
                                            }));
    timer->Start(50);
    EXPECT_EQ(2u, loop.Advance(1000));
    EXPECT_TRUE(armedInCallback);
    EXPECT_FALSE(timer->IsRunning());
}

TEST_F(TimerTest, PeriodicRestartedFromItsCallbackTakesTheNewInterval) {
    std::unique_ptr<PeriodicTimer> timer;
    timer = std::make_unique<PeriodicTimer>("p", new LogCallback(log, "p", [&] {
                                                if (log.entries.size() == 1) {
                                                    timer->Start(30);
                                                }
                                            }));
    timer->Start(10);
    loop.Advance(80);
    EXPECT_EQ(
        (std::vector<std::string>{"p@10 interval=10", "p@40 interval=30", "p@70 interval=30"}),
        log.entries);
}

TEST_F(TimerTest, PeriodicWithZeroIntervalRepeatsEveryMillisecond) {
    PeriodicTimer timer("p", new LogCallback(log, "p"));
    timer.Start(0);
    EXPECT_EQ(1u, loop.RunDue());
    EXPECT_EQ(3u, loop.Advance(3));
    EXPECT_EQ((std::vector<std::string>{"p@0 interval=0", "p@1 interval=0", "p@2 interval=0",
                                        "p@3 interval=0"}),
              log.entries);
}

TEST_F(TimerTest, StopPreventsTheExpiryAndIsHarmlessWhenIdle) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    timer.Stop();
    timer.Start(10);
    timer.Stop();
    timer.Stop();
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_EQ(0u, loop.Advance(100));
    EXPECT_TRUE(log.entries.empty());
    EXPECT_FALSE(loop.HasArmedTimers());
}

TEST_F(TimerTest, TimerArmedFromACallbackFiresInTheSameAdvanceWhenDue) {
    OneShotTimer second("second", new LogCallback(log, "second"));
    OneShotTimer first("first", new LogCallback(log, "first", [&] { second.Start(5); }));
    first.Start(10);
    EXPECT_EQ(2u, loop.Advance(15));
    EXPECT_EQ((std::vector<std::string>{"first@10 interval=10", "second@15 interval=5"}),
              log.entries);
}

TEST_F(TimerTest, TimerArmedFromACallbackBeyondTheAdvanceWaits) {
    OneShotTimer second("second", new LogCallback(log, "second"));
    OneShotTimer first("first", new LogCallback(log, "first", [&] { second.Start(10); }));
    first.Start(10);
    EXPECT_EQ(1u, loop.Advance(15));
    EXPECT_TRUE(second.IsRunning());
    EXPECT_EQ(1u, loop.Advance(5));
    EXPECT_EQ("second@20 interval=10", log.entries.back());
}

TEST_F(TimerTest, CallbackMayStopAnotherDueTimer) {
    OneShotTimer b("b", new LogCallback(log, "b"));
    OneShotTimer a("a", new LogCallback(log, "a", [&] { b.Stop(); }));
    a.Start(10);
    b.Start(10);
    EXPECT_EQ(1u, loop.Advance(10));
    EXPECT_EQ((std::vector<std::string>{"a@10 interval=10"}), log.entries);
}

TEST_F(TimerTest, CallbackMayDestroyItsOwnTimer) {
    std::unique_ptr<PeriodicTimer> timer;
    timer = std::make_unique<PeriodicTimer>("p", new LogCallback(log, "p", [&] { timer.reset(); }));
    timer->Start(10);
    EXPECT_EQ(1u, loop.Advance(100));
    EXPECT_EQ(nullptr, timer);
    EXPECT_FALSE(loop.HasArmedTimers());
}

TEST_F(TimerTest, DestroyingAnArmedTimerDisarmsIt) {
    {
        OneShotTimer timer("t", new LogCallback(log, "t"));
        timer.Start(10);
        EXPECT_EQ(1u, loop.ArmedTimerCount());
    }
    EXPECT_EQ(0u, loop.ArmedTimerCount());
    EXPECT_EQ(0u, loop.Advance(100));
}

TEST_F(TimerTest, TimerWithoutCallbackRunsOnExpireOfASubclass) {
    class Counting : public OneShotTimer {
    public:
        Counting() : OneShotTimer("counting", nullptr) {}
        int expired = 0;

    protected:
        void OnExpire(unsigned int, void*) override { ++expired; }
    };
    Counting timer;
    timer.Start(1);
    loop.Advance(1);
    EXPECT_EQ(1, timer.expired);

    OneShotTimer bare("bare", nullptr);
    bare.Start(1);
    EXPECT_EQ(1u, loop.Advance(1));
}

TEST_F(TimerTest, DestroyingTheLoopLeavesArmedTimersIdle) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    PeriodicTimer periodic("p", new LogCallback(log, "p"));
    {
        VirtualEventLoop other;
        EventLoop* previous = EventLoop::SetCurrent(&other);
        timer.Start(10);
        periodic.Start(10);
        EXPECT_EQ(2u, other.ArmedTimerCount());
        EventLoop::SetCurrent(previous);
    }
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_FALSE(periodic.IsRunning());
    timer.Stop();
    timer.Start(5);
    EXPECT_TRUE(loop.IsArmed(&timer));
    loop.Advance(5);
    EXPECT_EQ((std::vector<std::string>{"t@5 interval=5"}), log.entries);
}

TEST_F(TimerTest, StartingOnAnotherLoopMovesTheTimer) {
    OneShotTimer timer("t", new LogCallback(log, "t"));
    timer.Start(10);
    VirtualEventLoop other;
    EventLoop* previous = EventLoop::SetCurrent(&other);
    timer.Start(10);
    EventLoop::SetCurrent(previous);
    EXPECT_FALSE(loop.IsArmed(&timer));
    EXPECT_TRUE(other.IsArmed(&timer));
    EXPECT_EQ(1u, other.Advance(10));
    timer.Start(1);
    EXPECT_TRUE(loop.IsArmed(&timer));
}

}  // namespace
}  // namespace Zavrel
