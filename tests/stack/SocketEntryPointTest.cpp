#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/SocketCallback.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "stack/StackCallbacks.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

typedef std::vector<std::string> Lines;

// The application's socket registry, recording what it is asked.
class RecordingSockets : public DcSckInterface {
public:
    void RegisterSocket(int fd, int kind, int arg) override {
        calls.push_back("register(" + std::to_string(fd) + ", " + std::to_string(kind) + ", " +
                        std::to_string(arg) + ")");
    }
    void UnregisterSocket(int fd, int arg) override {
        calls.push_back("unregister(" + std::to_string(fd) + ", " + std::to_string(arg) + ")");
    }
    void ChangeSocketMask(int fd, int kind) override {
        calls.push_back("mask(" + std::to_string(fd) + ", " + std::to_string(kind) + ")");
    }
    Lines calls;
};

class SocketEntryPointTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        mgr->SckInterfaceInitialize(&sockets);
    }
    void TearDown() override {
        mgr->SckInterfaceInitialize(nullptr);
        RecordingStackEnv::TearDown();
    }

    RecordingSockets sockets;
    DcRouterMgr* mgr = nullptr;
};

TEST_F(SocketEntryPointTest, TheRegistryIsHandedToTheRouters) {
    EXPECT_EQ(DcRouterBase::GetSckInterface(), &sockets);
}

TEST_F(SocketEntryPointTest, RegisterPassesTheKindBeforeTheStackArgument) {
    cRegisterWorkWithEventloop(7, 99, SMS_SOCK_READ);
    EXPECT_EQ(sockets.calls, Lines{"register(7, 1, 99)"});
}

TEST_F(SocketEntryPointTest, RegisterMapsReadToOneAndWriteToTwo) {
    cRegisterWorkWithEventloop(7, 0, SMS_SOCK_WRITE);
    cRegisterWorkWithEventloop(8, 0, SMS_SOCK_READ | SMS_SOCK_WRITE);
    cRegisterWorkWithEventloop(9, 0, SMS_SOCK_WRITE | SMS_SOCK_EXCEPT);
    EXPECT_EQ(sockets.calls,
              (Lines{"register(7, 2, 0)", "register(8, 1, 0)", "register(9, 2, 0)"}));
}

TEST_F(SocketEntryPointTest, RegisterNeverYieldsTheExceptionKind) {
    cRegisterWorkWithEventloop(7, 5, SMS_SOCK_EXCEPT);
    cRegisterWorkWithEventloop(8, 5, 0);
    EXPECT_EQ(sockets.calls, (Lines{"register(7, 0, 5)", "register(8, 0, 5)"}));
}

TEST_F(SocketEntryPointTest, ChangeMaskMapsExceptionToThree) {
    cChangeMask(7, SMS_SOCK_EXCEPT);
    EXPECT_EQ(sockets.calls, Lines{"mask(7, 3)"});
}

TEST_F(SocketEntryPointTest, ChangeMaskIsDecidedByTheLowestOfTheThreeBits) {
    cChangeMask(1, SMS_SOCK_READ);
    cChangeMask(2, SMS_SOCK_WRITE);
    cChangeMask(3, SMS_SOCK_READ | SMS_SOCK_WRITE);
    cChangeMask(4, SMS_SOCK_WRITE | SMS_SOCK_EXCEPT);
    cChangeMask(5, SMS_SOCK_READ | SMS_SOCK_EXCEPT);
    cChangeMask(6, 0);
    cChangeMask(7, 0x8);
    EXPECT_EQ(sockets.calls, (Lines{"mask(1, 1)", "mask(2, 2)", "mask(3, 1)", "mask(4, 2)",
                                    "mask(5, 1)", "mask(6, 0)", "mask(7, 0)"}));
}

TEST_F(SocketEntryPointTest, UnregisterPassesTheDescriptorAndTheStackArgument) {
    cUnregisterWorkWithEventloop(7, 42);
    EXPECT_EQ(sockets.calls, Lines{"unregister(7, 42)"});
}

TEST_F(SocketEntryPointTest, ManagerForwardsToTheSocketRegistry) {
    DcRouterMgr::SetFiledescriptors(3, 4, 1);
    DcRouterMgr::ChangeMask(3, 2);
    DcRouterMgr::RemoveFiledescriptors(3, 4);
    EXPECT_EQ(sockets.calls, (Lines{"register(3, 1, 4)", "mask(3, 2)", "unregister(3, 4)"}));
}

int g_handled_fd = -1;
int g_handled_events = -1;

void Handler(int fd, int events, void*) {
    g_handled_fd = fd;
    g_handled_events = events;
}

TEST_F(SocketEntryPointTest, SocketCallbackHandsTheReadyDescriptorToTheStackHandler) {
    RegisterSocketHandler(11, &Handler, nullptr);
    mgr->SocketCallback(11, 2);
    EXPECT_EQ(g_handled_fd, 11);
    EXPECT_EQ(g_handled_events, 2);
    UnregisterSocketHandler(11);
}

TEST_F(SocketEntryPointTest, StackRegistersItsSocketsFromInsideItsRun) {
    test::RecordingStack::Instance().OnScheduler([] {
        cRegisterWorkWithEventloop(20, 1, SMS_SOCK_READ);
        cChangeMask(20, SMS_SOCK_WRITE);
    });
    mgr->GetScheduler().SchedNBase();
    EXPECT_EQ(sockets.calls, (Lines{"register(20, 1, 1)", "mask(20, 2)"}));
}

}  // namespace
}  // namespace Zavrel
