#include "app/LoopSocketInterface.h"

#include <unistd.h>

#include "platform/SocketCallback.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class LoopSocketInterfaceTest : public TestEnv {
protected:
    void TearDown() override {
        for (int fd : fds) {
            close(fd);
        }
        TestEnv::TearDown();
    }
    int Pipe(int& writeEnd) {
        int p[2] = {-1, -1};
        EXPECT_EQ(pipe(p), 0);
        fds.push_back(p[0]);
        fds.push_back(p[1]);
        writeEnd = p[1];
        return p[0];
    }
    std::vector<int> fds;
};

struct Seen {
    int fd = -1;
    int events = 0;
    int calls = 0;
};

void RecordReady(int fd, int events, void* context) {
    auto* seen = static_cast<Seen*>(context);
    seen->fd = fd;
    seen->events = events;
    ++seen->calls;
}

TEST_F(LoopSocketInterfaceTest, EventKindsMapToLoopEvents) {
    EXPECT_EQ(LoopSocketInterface::EventsOfKind(1), EventLoop::READABLE);
    EXPECT_EQ(LoopSocketInterface::EventsOfKind(2), EventLoop::WRITABLE);
    EXPECT_EQ(LoopSocketInterface::EventsOfKind(3), EventLoop::READABLE);
    EXPECT_EQ(LoopSocketInterface::EventsOfKind(0), 0);
    EXPECT_EQ(LoopSocketInterface::EventsOfKind(4), 0);
}

TEST_F(LoopSocketInterfaceTest, RegisterWatchesReMaskChangesUnregisterForgets) {
    int writeEnd = -1;
    const int fd = Pipe(writeEnd);
    LoopSocketInterface sockets(loop);
    sockets.RegisterSocket(fd, 1, 7);
    EXPECT_EQ(loop.WatchedEvents(fd), EventLoop::READABLE);
    EXPECT_EQ(sockets.KindOf(fd), 1);
    sockets.ChangeSocketMask(fd, 2);
    EXPECT_EQ(loop.WatchedEvents(fd), EventLoop::WRITABLE);
    sockets.UnregisterSocket(fd, 7);
    EXPECT_EQ(loop.WatchedEvents(fd), 0);
    EXPECT_EQ(sockets.KindOf(fd), -1);
    EXPECT_EQ(sockets.RegisteredCount(), 0u);
}

TEST_F(LoopSocketInterfaceTest, KindZeroKeepsTheRegistrationButWatchesNothing) {
    int writeEnd = -1;
    const int fd = Pipe(writeEnd);
    LoopSocketInterface sockets(loop);
    sockets.RegisterSocket(fd, 0, 0);
    EXPECT_EQ(sockets.KindOf(fd), 0);
    EXPECT_EQ(loop.WatchedEvents(fd), 0);
    sockets.ChangeSocketMask(fd, 1);
    EXPECT_EQ(loop.WatchedEvents(fd), EventLoop::READABLE);
}

TEST_F(LoopSocketInterfaceTest, ReMaskOfAnUnknownDescriptorIsIgnoredWithAWarning) {
    LoopSocketInterface sockets(loop);
    sockets.ChangeSocketMask(99, 1);
    EXPECT_EQ(loop.WatchedEvents(99), 0);
    EXPECT_TRUE(
        trace.Contains(1, "LoopSocketInterface::ChangeSocketMask: fd 99 is not registered\n"));
}

TEST_F(LoopSocketInterfaceTest, ReadyDescriptorReachesTheStackHandlerThroughTheManager) {
    int writeEnd = -1;
    const int fd = Pipe(writeEnd);
    Seen seen;
    RegisterSocketHandler(fd, RecordReady, &seen);
    LoopSocketInterface sockets(loop);
    sockets.RegisterSocket(fd, 1, 0);
    ASSERT_EQ(write(writeEnd, "x", 1), 1);
    loop.DispatchReadyFds();
    EXPECT_EQ(seen.calls, 1);
    EXPECT_EQ(seen.fd, fd);
    EXPECT_EQ(seen.events, EventLoop::READABLE);
    EXPECT_EQ(sockets.CallbackCount(), 1u);
    UnregisterSocketHandler(fd);
}

TEST_F(LoopSocketInterfaceTest, DestructionStopsWatching) {
    int writeEnd = -1;
    const int fd = Pipe(writeEnd);
    {
        LoopSocketInterface sockets(loop);
        sockets.RegisterSocket(fd, 1, 0);
    }
    EXPECT_EQ(loop.WatchedEvents(fd), 0);
}

}  // namespace
}  // namespace Zavrel::test
