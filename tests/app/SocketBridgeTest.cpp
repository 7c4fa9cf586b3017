// The application's socket registry with the library and the embedded
// stack: the stack's descriptor is watched by the loop, and a ready
// descriptor goes back to the stack through the router manager.
#include "app/AppIpInterface.h"
#include "app/LoopSocketInterface.h"
#include "emulator/Emulator.h"
#include "interfaces/DcInterfaceMgr.h"
#include "routing/DcRouterMgr.h"
#include "support/testsupport/EmulatedStackEnv.h"

namespace Zavrel::test {
namespace {

class SocketBridgeTest : public EmulatedStackEnv {
protected:
    void Start() {
        DcRouterMgr* manager = DcRouterMgr::GetInstance();
        ASSERT_NE(manager, nullptr);
        manager->SckInterfaceInitialize(&sockets);
        DcInterfaceMgr::GetInstance()->Initialize(0);
        ASSERT_EQ(manager->Initialize(1, &ip), 0);
        loop.Advance(500);
    }

    LoopSocketInterface sockets{loop};
    AppIpInterface ip;
};

TEST_F(SocketBridgeTest, StackDescriptorIsWatchedForReadingOnceTheStackRuns) {
    Start();
    const int fd = Emulator::Instance().ChannelFd();
    ASSERT_GE(fd, 0);
    EXPECT_EQ(sockets.RegisteredCount(), 1u);
    EXPECT_EQ(sockets.KindOf(fd), 1);
    EXPECT_EQ(loop.WatchedEvents(fd), EventLoop::READABLE);
    EXPECT_TRUE(Emulator::Instance().IsI3Ready());
}

TEST_F(SocketBridgeTest, ReadyDescriptorWakesTheStackThroughTheManager) {
    Start();
    const uint64_t readsBefore = Emulator::Instance().ChannelReads();
    // Work posted from outside the library makes the descriptor readable.
    ASSERT_TRUE(Emulator::AddProtocolRoute(1, Emulator::RouteSource::Rip, "10.9.0.0", 16,
                                           "10.0.0.2", 0, 1));
    EXPECT_EQ(loop.DispatchReadyFds(), 1u);
    EXPECT_EQ(sockets.CallbackCount(), 1u);
    EXPECT_EQ(Emulator::Instance().ChannelReads(), readsBefore + 1);
    // Nothing is left to read.
    EXPECT_EQ(loop.DispatchReadyFds(), 0u);
}

}  // namespace
}  // namespace Zavrel::test
