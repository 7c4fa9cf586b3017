#include "platform/VirtualEventLoop.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Timer.h"

namespace Zavrel {
namespace {

class Flag : public TimerBase::Callback {
public:
    explicit Flag(std::vector<std::string>& log, const char* name) : m_log(log), m_name(name) {}
    void operator()(unsigned int, void*) override { m_log.push_back(m_name); }

private:
    std::vector<std::string>& m_log;
    std::string m_name;
};

class VirtualEventLoopTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_previous = EventLoop::SetCurrent(&loop);
        ASSERT_EQ(0, pipe(m_pipe));
    }
    void TearDown() override {
        EventLoop::SetCurrent(m_previous);
        close(m_pipe[0]);
        close(m_pipe[1]);
    }

    VirtualEventLoop loop;
    std::vector<std::string> log;
    int m_pipe[2] = {-1, -1};

private:
    EventLoop* m_previous = nullptr;
};

TEST_F(VirtualEventLoopTest, ClockStartsAtZeroAndMovesOnlyWhenAdvanced) {
    EXPECT_EQ(0u, loop.NowMs());
    EXPECT_EQ(0u, loop.Advance(250));
    EXPECT_EQ(250u, loop.NowMs());
    EXPECT_EQ(0u, loop.RunDue());
    EXPECT_EQ(250u, loop.NowMs());
}

TEST_F(VirtualEventLoopTest, ClockIsAtTheDueTimeDuringACallbackAndAtTheTargetAfter) {
    uint64_t seen = 0;
    struct Seen : TimerBase::Callback {
        Seen(VirtualEventLoop& l, uint64_t& s) : loop(l), seen(s) {}
        void operator()(unsigned int, void*) override { seen = loop.NowMs(); }
        VirtualEventLoop& loop;
        uint64_t& seen;
    };
    OneShotTimer t("t", new Seen(loop, seen));
    loop.Advance(7);
    t.Start(30);
    loop.Advance(100);
    EXPECT_EQ(37u, seen);
    EXPECT_EQ(107u, loop.NowMs());
}

TEST_F(VirtualEventLoopTest, AdvanceSaturatesAtTheEndOfTheClock) {
    loop.Advance(10);
    loop.Advance(UINT64_MAX);
    EXPECT_EQ(UINT64_MAX, loop.NowMs());
}

TEST_F(VirtualEventLoopTest, NextDueAndArmedState) {
    uint64_t due = 99;
    EXPECT_FALSE(loop.NextDue(due));
    EXPECT_EQ(99u, due);
    OneShotTimer a("a", new Flag(log, "a"));
    OneShotTimer b("b", new Flag(log, "b"));
    a.Start(40);
    b.Start(20);
    EXPECT_TRUE(loop.NextDue(due));
    EXPECT_EQ(20u, due);
    EXPECT_TRUE(loop.HasArmedTimers());
    EXPECT_EQ(2u, loop.ArmedTimerCount());
    EXPECT_TRUE(loop.IsArmed(&a));
    b.Stop();
    EXPECT_FALSE(loop.IsArmed(&b));
    EXPECT_TRUE(loop.NextDue(due));
    EXPECT_EQ(40u, due);
}

TEST_F(VirtualEventLoopTest, RunDueFiresOnlyWhatIsDueNow) {
    OneShotTimer now("now", new Flag(log, "now"));
    OneShotTimer later("later", new Flag(log, "later"));
    now.Start(0);
    later.Start(1);
    EXPECT_EQ(1u, loop.RunDue());
    EXPECT_EQ((std::vector<std::string>{"now"}), log);
    EXPECT_TRUE(later.IsRunning());
}

TEST_F(VirtualEventLoopTest, DestructorLeavesArmedTimersIdle) {
    OneShotTimer t("t", new Flag(log, "t"));
    {
        VirtualEventLoop temporary;
        EventLoop::SetCurrent(&temporary);
        t.Start(10);
        EXPECT_TRUE(t.IsRunning());
    }
    // The destroyed loop was current: the default loop is current again.
    EXPECT_FALSE(t.IsRunning());
    EventLoop::SetCurrent(&loop);
}

TEST_F(VirtualEventLoopTest, WatchReadableDescriptorAndDispatchWhenReady) {
    std::vector<int> ready;
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int fd, int events) {
        char c;
        EXPECT_EQ(1, read(fd, &c, 1));
        ready.push_back(events);
    }));
    EXPECT_EQ(1u, loop.WatchedFdCount());
    EXPECT_EQ(EventLoop::READABLE, loop.WatchedEvents(m_pipe[0]));
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    ASSERT_EQ(1, write(m_pipe[1], "x", 1));
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ((std::vector<int>{EventLoop::READABLE}), ready);
    EXPECT_EQ(0u, loop.DispatchReadyFds());
}

TEST_F(VirtualEventLoopTest, WritableDescriptorIsReportedWritable) {
    int events = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::READABLE | EventLoop::WRITABLE,
                             [&](int, int e) { events = e; }));
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ(EventLoop::WRITABLE, events);
}

TEST_F(VirtualEventLoopTest, ChangeFdSelectsOtherEvents) {
    int calls = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::READABLE, [&](int, int) { ++calls; }));
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    EXPECT_TRUE(loop.ChangeFd(m_pipe[1], EventLoop::WRITABLE));
    EXPECT_EQ(EventLoop::WRITABLE, loop.WatchedEvents(m_pipe[1]));
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_TRUE(loop.ChangeFd(m_pipe[1], 0));
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    EXPECT_EQ(1, calls);
    EXPECT_FALSE(loop.ChangeFd(12345, EventLoop::READABLE));
    EXPECT_FALSE(loop.ChangeFd(m_pipe[1], 8));
}

TEST_F(VirtualEventLoopTest, WatchingAgainReplacesEventsAndHandler) {
    std::string who;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::WRITABLE, [&](int, int) { who += "first"; }));
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::WRITABLE, [&](int, int) { who += "second"; }));
    EXPECT_EQ(1u, loop.WatchedFdCount());
    loop.DispatchReadyFds();
    EXPECT_EQ("second", who);
}

TEST_F(VirtualEventLoopTest, InvalidWatchesAreRefused) {
    EXPECT_FALSE(loop.WatchFd(-1, EventLoop::READABLE, [](int, int) {}));
    EXPECT_FALSE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, nullptr));
    EXPECT_FALSE(loop.WatchFd(m_pipe[0], 4, [](int, int) {}));
    EXPECT_EQ(0u, loop.WatchedFdCount());
    EXPECT_EQ(0, loop.WatchedEvents(m_pipe[0]));
}

TEST_F(VirtualEventLoopTest, HandlerMayUnwatchItsOwnDescriptor) {
    int calls = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[1], EventLoop::WRITABLE, [&](int fd, int) {
        ++calls;
        loop.UnwatchFd(fd);
    }));
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    EXPECT_EQ(1, calls);
    EXPECT_EQ(0u, loop.WatchedFdCount());
}

TEST_F(VirtualEventLoopTest, HandlerMayUnwatchAnotherReadyDescriptor) {
    int other[2];
    ASSERT_EQ(0, pipe(other));
    int calls = 0;
    const int first = m_pipe[1] < other[1] ? m_pipe[1] : other[1];
    const int second = m_pipe[1] < other[1] ? other[1] : m_pipe[1];
    ASSERT_TRUE(loop.WatchFd(first, EventLoop::WRITABLE, [&](int, int) {
        ++calls;
        loop.UnwatchFd(second);
    }));
    ASSERT_TRUE(loop.WatchFd(second, EventLoop::WRITABLE, [&](int, int) { calls += 100; }));
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ(1, calls);
    close(other[0]);
    close(other[1]);
}

TEST_F(VirtualEventLoopTest, ClosedWriterReportsReadable) {
    int events = 0;
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int, int e) { events = e; }));
    close(m_pipe[1]);
    m_pipe[1] = open("/dev/null", O_WRONLY);
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ(EventLoop::READABLE, events);
}

TEST_F(VirtualEventLoopTest, AdvanceDispatchesReadyDescriptorsBeforeEachTimer) {
    std::vector<std::string> order;
    struct Note : TimerBase::Callback {
        Note(std::vector<std::string>& o, int fd) : order(o), writeFd(fd) {}
        void operator()(unsigned int, void*) override {
            order.push_back("timer");
            EXPECT_EQ(1, write(writeFd, "y", 1));
        }
        std::vector<std::string>& order;
        int writeFd;
    };
    ASSERT_TRUE(loop.WatchFd(m_pipe[0], EventLoop::READABLE, [&](int fd, int) {
        char c;
        EXPECT_EQ(1, read(fd, &c, 1));
        order.push_back(std::string("fd:") + c);
    }));
    OneShotTimer a("a", new Note(order, m_pipe[1]));
    OneShotTimer b("b", new Note(order, m_pipe[1]));
    a.Start(10);
    b.Start(20);
    ASSERT_EQ(1, write(m_pipe[1], "x", 1));
    EXPECT_EQ(2u, loop.Advance(30));
    EXPECT_EQ((std::vector<std::string>{"fd:x", "timer", "fd:y", "timer", "fd:y"}), order);
}

TEST_F(VirtualEventLoopTest, UnwatchOfAnUnknownDescriptorIsHarmless) {
    loop.UnwatchFd(77);
    EXPECT_EQ(0u, loop.WatchedFdCount());
}

}  // namespace
}  // namespace Zavrel
