#include "platform/SocketCallback.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Zavrel {
namespace {

struct Calls {
    std::vector<std::string> seen;
};

void Record(int fd, int events, void* context) {
    static_cast<Calls*>(context)->seen.push_back(std::to_string(fd) + ":" + std::to_string(events));
}

void RecordOther(int fd, int, void* context) {
    static_cast<Calls*>(context)->seen.push_back("other " + std::to_string(fd));
}

class SocketCallbackTest : public ::testing::Test {
protected:
    void TearDown() override {
        for (int fd : {3, 4, 5, 9}) {
            UnregisterSocketHandler(fd);
        }
    }
    Calls calls;
};

TEST_F(SocketCallbackTest, InvokeCallbackHandsDescriptorAndEventsToTheHandler) {
    RegisterSocketHandler(5, &Record, &calls);
    EXPECT_TRUE(HasSocketHandler(5));
    EXPECT_EQ(1, InvokeCallback(5, 2));
    EXPECT_EQ((std::vector<std::string>{"5:2"}), calls.seen);
}

TEST_F(SocketCallbackTest, DescriptorWithoutHandlerGivesZero) {
    EXPECT_FALSE(HasSocketHandler(9));
    EXPECT_EQ(0, InvokeCallback(9, 1));
    EXPECT_EQ(0, InvokeCallback(-1, 1));
}

TEST_F(SocketCallbackTest, RegisteringAgainReplacesTheHandler) {
    Calls other;
    RegisterSocketHandler(4, &Record, &calls);
    RegisterSocketHandler(4, &RecordOther, &other);
    EXPECT_EQ(1, InvokeCallback(4, 1));
    EXPECT_TRUE(calls.seen.empty());
    EXPECT_EQ((std::vector<std::string>{"other 4"}), other.seen);
}

TEST_F(SocketCallbackTest, UnregisterRemovesOnlyThatDescriptor) {
    RegisterSocketHandler(3, &Record, &calls);
    RegisterSocketHandler(4, &Record, &calls);
    UnregisterSocketHandler(3);
    UnregisterSocketHandler(3);
    EXPECT_EQ(0, InvokeCallback(3, 1));
    EXPECT_EQ(1, InvokeCallback(4, 1));
    EXPECT_EQ((std::vector<std::string>{"4:1"}), calls.seen);
}

TEST_F(SocketCallbackTest, RegisteringANullHandlerRemovesTheRegistration) {
    RegisterSocketHandler(3, &Record, &calls);
    RegisterSocketHandler(3, nullptr, &calls);
    EXPECT_FALSE(HasSocketHandler(3));
}

void UnregisterSelf(int fd, int events, void* context) {
    UnregisterSocketHandler(fd);
    Record(fd, events, context);
}

TEST_F(SocketCallbackTest, HandlerMayUnregisterItself) {
    RegisterSocketHandler(5, &UnregisterSelf, &calls);
    EXPECT_EQ(1, InvokeCallback(5, 1));
    EXPECT_EQ(0, InvokeCallback(5, 1));
    EXPECT_EQ((std::vector<std::string>{"5:1"}), calls.seen);
}

}  // namespace
}  // namespace Zavrel
