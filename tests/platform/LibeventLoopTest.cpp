#include "platform/LibeventLoop.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/Timer.h"

namespace Zavrel {
namespace {

// These tests run on real time, but never wait for it: each run is bounded by
// a generous limit and ends as soon as there is nothing left to wait for.
constexpr unsigned int BOUND_MS = 10000;

class Action : public TimerBase::Callback {
public:
    explicit Action(std::function<void()> f) : m_f(std::move(f)) {}
    void operator()(unsigned int, void*) override { m_f(); }

private:
    std::function<void()> m_f;
};

class LibeventLoopTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(loop.IsValid());
        ASSERT_NE(nullptr, loop.Base());
        m_previous = EventLoop::SetCurrent(&loop);
        ASSERT_EQ(0, pipe(m_pipe));
    }
    void TearDown() override {
        EventLoop::SetCurrent(m_previous);
        close(m_pipe[0]);
        close(m_pipe[1]);
    }

    LibeventLoop loop;
    int m_pipe[2] = {-1, -1};

private:
    EventLoop* m_previous = nullptr;
};

TEST_F(LibeventLoopTest, ClockIsMonotonic) {
    const uint64_t a = loop.NowMs();
    const uint64_t b = loop.NowMs();
    EXPECT_LE(a, b);
}

TEST_F(LibeventLoopTest, NothingToWaitForEndsTheRunAtOnce) {
    EXPECT_EQ(1, loop.Run());
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
}

TEST_F(LibeventLoopTest, ShortRealTimerFires) {
    int fired = 0;
    OneShotTimer timer("t", new Action([&] { ++fired; }));
    const uint64_t start = loop.NowMs();
    timer.Start(3);
    EXPECT_TRUE(timer.IsRunning());
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(1, fired);
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_GE(loop.NowMs() - start, 3u);
}

TEST_F(LibeventLoopTest, TimersFireInOrderOfDueTime) {
    std::vector<std::string> order;
    OneShotTimer late("late", new Action([&] { order.push_back("late"); }));
    OneShotTimer early("early", new Action([&] { order.push_back("early"); }));
    late.Start(20);
    early.Start(2);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ((std::vector<std::string>{"early", "late"}), order);
}

TEST_F(LibeventLoopTest, OneShotRestartedFromItsCallbackFiresAgain) {
    std::unique_ptr<OneShotTimer> timer;
    int fired = 0;
    timer = std::make_unique<OneShotTimer>("t", new Action([&] {
                                               EXPECT_FALSE(timer->IsRunning());
                                               if (++fired < 3) {
                                                   timer->Start(1);
                                               }
                                           }));
    timer->Start(1);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(3, fired);
}

TEST_F(LibeventLoopTest, RestartingAnArmedTimerReplacesItsDueTime) {
    std::vector<std::string> order;
    OneShotTimer a("a", new Action([&] { order.push_back("a"); }));
    OneShotTimer b("b", new Action([&] { order.push_back("b"); }));
    a.Start(1);
    b.Start(30);
    a.Start(60);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ((std::vector<std::string>{"b", "a"}), order);
}

TEST_F(LibeventLoopTest, PeriodicTimerRepeatsUntilStoppedFromItsCallback) {
    std::unique_ptr<PeriodicTimer> timer;
    int fired = 0;
    timer = std::make_unique<PeriodicTimer>("p", new Action([&] {
                                                EXPECT_TRUE(timer->IsRunning());
                                                if (++fired == 3) {
                                                    timer->Stop();
                                                }
                                            }));
    timer->Start(1);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(3, fired);
    EXPECT_FALSE(timer->IsRunning());
}

TEST_F(LibeventLoopTest, StoppedTimerDoesNotFire) {
    int fired = 0;
    OneShotTimer timer("t", new Action([&] { ++fired; }));
    timer.Start(1);
    timer.Stop();
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(0, fired);
}

TEST_F(LibeventLoopTest, CallbackMayDestroyItsOwnTimer) {
    std::unique_ptr<PeriodicTimer> timer;
    timer = std::make_unique<PeriodicTimer>("p", new Action([&] { timer.reset(); }));
    timer->Start(1);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(nullptr, timer);
}

TEST_F(LibeventLoopTest, RunForEndsAtItsLimit) {
    int fired = 0;
    OneShotTimer timer("t", new Action([&] { ++fired; }));
    timer.Start(BOUND_MS * 10);
    EXPECT_EQ(0, loop.RunFor(1));
    EXPECT_EQ(0, fired);
    EXPECT_TRUE(timer.IsRunning());
}

TEST_F(LibeventLoopTest, BreakFromACallbackEndsTheRun) {
    int fired = 0;
    PeriodicTimer timer("p", new Action([&] {
                            ++fired;
                            loop.Break();
                        }));
    timer.Start(1);
    EXPECT_EQ(0, loop.Run());
    EXPECT_EQ(1, fired);
    EXPECT_TRUE(timer.IsRunning());
}

TEST_F(LibeventLoopTest, WatchedPipeIsReportedReadable) {
    std::string got;
    int events = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int fd, int e) {
        char buffer[16];
        const ssize_t n = read(fd, buffer, sizeof buffer);
        ASSERT_GT(n, 0);
        got.append(buffer, static_cast<size_t>(n));
        events = e;
        loop.UnwatchFd(fd);
    }));
    ASSERT_EQ(2, write(m_pipe[1], "hi", 2));
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ("hi", got);
    EXPECT_EQ(EventLoop::READABLE, events);
}

TEST_F(LibeventLoopTest, WatchIsPersistentUntilUnwatched) {
    int calls = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int fd, int) {
        char c;
        ASSERT_EQ(1, read(fd, &c, 1));
        if (++calls < 3) {
            ASSERT_EQ(1, write(m_pipe[1], "z", 1));
        } else {
            loop.UnwatchFd(fd);
        }
    }));
    ASSERT_EQ(1, write(m_pipe[1], "z", 1));
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(3, calls);
}

TEST_F(LibeventLoopTest, ChangeFdSwitchesToWritable) {
    int events = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::READABLE, [&](int fd, int e) {
        events = e;
        loop.UnwatchFd(fd);
    }));
    EXPECT_TRUE(loop.ChangeFd(m_pipe[1], EventLoop::WRITABLE));
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(EventLoop::WRITABLE, events);
    EXPECT_FALSE(loop.ChangeFd(m_pipe[1], EventLoop::READABLE));
}

TEST_F(LibeventLoopTest, WatchWithoutEventsLeavesNothingToWaitFor) {
    int calls = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], 0, [&](int, int) { ++calls; }));
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ(0, calls);
}

TEST_F(LibeventLoopTest, InvalidWatchesAreRefused) {
    EXPECT_FALSE(loop.WatchFd(-1, EventLoop::READABLE, [](int, int) {}));
    EXPECT_FALSE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, nullptr));
    EXPECT_FALSE(loop.WatchFd(m_pipe[0], 4, [](int, int) {}));
    loop.UnwatchFd(m_pipe[0]);
}

TEST_F(LibeventLoopTest, TimerAndDescriptorTogether) {
    std::vector<std::string> order;
    OneShotTimer timer("t", new Action([&] {
                           order.push_back("timer");
                           EXPECT_EQ(1, write(m_pipe[1], "x", 1));
                       }));
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int fd, int) {
        char c;
        ASSERT_EQ(1, read(fd, &c, 1));
        order.push_back("fd");
        loop.UnwatchFd(fd);
    }));
    timer.Start(2);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
    EXPECT_EQ((std::vector<std::string>{"timer", "fd"}), order);
}

TEST_F(LibeventLoopTest, RunOnceWithoutBlockingHandlesWhatIsReady) {
    int calls = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::WRITABLE, [&](int, int) { ++calls; }));
    EXPECT_EQ(0, loop.RunOnce(true));
    EXPECT_EQ(1, calls);
    loop.UnwatchFd(m_pipe[1]);
}

TEST_F(LibeventLoopTest, DestroyingTheLoopLeavesArmedTimersIdle) {
    OneShotTimer timer("t", nullptr);
    PeriodicTimer periodic("p", nullptr);
    {
        LibeventLoop other;
        EventLoop::SetCurrent(&other);
        timer.Start(1000);
        periodic.Start(1000);
        ASSERT_TRUE(other.WatchFd(m_pipe[0], EventLoop::READABLE, [](int, int) {}));
    }
    EXPECT_FALSE(timer.IsRunning());
    EXPECT_FALSE(periodic.IsRunning());
    EventLoop::SetCurrent(&loop);
    timer.Start(1);
    EXPECT_EQ(1, loop.RunFor(BOUND_MS));
}

}  // namespace
}  // namespace Zavrel
