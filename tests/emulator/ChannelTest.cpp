// The management channel: an eventfd registered with the library's event
// loop bridge, served through InvokeCallback.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "platform/SocketCallback.h"
#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RouteSource;

class ChannelTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        // What the application does with a registered descriptor: watch it
        // and hand it to InvokeCallback when it is ready.
        Side().OnCall("cRegisterWorkWithEventloop", [this] {
            for (const auto& entry : Side().registered) {
                loop.WatchFd(entry.first, EventLoop::READABLE,
                             [](int fd, int events) { InvokeCallback(fd, events); });
            }
        });
        StartStack();
        StartInstance(5);
        Side().ClearCalls();
        fd = Stack().ChannelFd();
    }
    int fd = -1;
    std::string Fd() const { return std::to_string(fd); }
};

TEST_F(ChannelTest, TheChannelIsAnEventDescriptorRegisteredForReading) {
    ASSERT_GE(fd, 0);
    struct stat info;
    ASSERT_EQ(0, fstat(fd, &info));
    EXPECT_TRUE(Stack().IsChannelRegistered());
    EXPECT_EQ(static_cast<unsigned int>(SMS_SOCK_READ), Stack().ChannelMask());
    EXPECT_TRUE(HasSocketHandler(fd));
    EXPECT_EQ(EventLoop::READABLE, loop.WatchedEvents(fd));
}

TEST_F(ChannelTest, TheChannelIsQuietWithoutManagementWork) {
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    EXPECT_EQ(0u, Stack().ChannelReads());
}

TEST_F(ChannelTest, PostedWorkMakesTheChannelReadableAndReadingItAsksForARun) {
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(5, RouteSource::Rip, "192.168.0.0", 16, "10.0.0.1", 0, 1));
    // Posting alone does not call the library.
    EXPECT_TRUE(Side().Calls().empty());
    EXPECT_EQ(1u, loop.DispatchReadyFds());
    EXPECT_EQ(1u, Stack().ChannelReads());
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    // Read empty: not ready again.
    EXPECT_EQ(0u, loop.DispatchReadyFds());
    Side().RunScheduler();
    EXPECT_EQ(1u, Stack().FindInstance(5)->ProtocolRoutes().size());
}

TEST_F(ChannelTest, ARunAcceptsPostedWorkEvenWhenTheChannelWasNotRead) {
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(5, RouteSource::Rip, "192.168.0.0", 16, "10.0.0.1", 0, 1));
    Side().RunScheduler();
    EXPECT_EQ(1u, Stack().FindInstance(5)->ProtocolRoutes().size());
    EXPECT_EQ(0u, loop.DispatchReadyFds());
}

TEST_F(ChannelTest, FreezingMasksTheChannelAndThawingRestoresItsMask) {
    Emulator::Freeze(true);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cChangeMask(" + Fd() + ", 0)"}), Side().Calls());
    Side().ClearCalls();
    Emulator::Freeze(false);
    Side().RunScheduler();
    EXPECT_EQ(
        Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()", "cChangeMask(" + Fd() + ", 1)"}),
        Side().Calls());
}

TEST_F(ChannelTest, AFrozenStackAcceptsRequestsButAnswersOnlyOnceThawed) {
    Emulator::Freeze(true);
    Interface(4, 5, 100, "eth0");
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_TRUE(Side().Calls("cRunPendingAction").empty());
    Emulator::Freeze(false);
    Side().RunScheduler();
    EXPECT_EQ(1u, Side().Calls("cRunPendingAction").size());
}

TEST_F(ChannelTest, ClosingUnregistersTheChannelOnTheNextRun) {
    Stack().CloseManagementChannel();
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cUnregisterWorkWithEventloop(" + Fd() + ", 0)"}), Side().Calls());
    EXPECT_FALSE(HasSocketHandler(fd));
    EXPECT_FALSE(Stack().IsChannelRegistered());
    EXPECT_EQ(-1, Stack().ChannelFd());
    // Management work still reaches the stack, on a run it asks for itself.
    Side().ClearCalls();
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(5, RouteSource::Rip, "192.168.0.0", 16, "10.0.0.1", 0, 1));
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
}

class ChannelSwitchTest : public EmulatorFixture {};

TEST_F(ChannelSwitchTest, AStackWithoutChannelRegistersNoDescriptor) {
    Stack().SetChannelEnabled(false);
    ASSERT_EQ(0, Init());
    Side().RunScheduler();
    Side().RunScheduler();
    EXPECT_TRUE(Stack().IsI3Ready());
    EXPECT_EQ(-1, Stack().ChannelFd());
    EXPECT_TRUE(Side().Calls("cRegisterWorkWithEventloop").empty());
    // Management work asks for a run directly.
    Side().ClearCalls();
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(5, RouteSource::Rip, "192.168.0.0", 16, "10.0.0.1", 0, 1));
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
}

}  // namespace
}  // namespace Zavrel::test
