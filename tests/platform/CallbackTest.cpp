#include "platform/Callback.h"

#include <gtest/gtest.h>

#include <memory>

namespace Zavrel {
namespace {

class Receiver {
public:
    void OnEvent(unsigned int interval, void* context) {
        lastInterval = interval;
        lastContext = context;
        ++calls;
    }
    unsigned int lastInterval = 0;
    void* lastContext = nullptr;
    int calls = 0;
};

TEST(CallbackTest, MemberCallbackCallsTheBoundMethodWithBothArguments) {
    Receiver r;
    int marker = 0;
    MemberCallback2<Receiver, unsigned int, void*> cb(&r, &Receiver::OnEvent);
    cb(100, &marker);
    EXPECT_EQ(1, r.calls);
    EXPECT_EQ(100u, r.lastInterval);
    EXPECT_EQ(&marker, r.lastContext);
}

TEST(CallbackTest, MemberCallbackWorksThroughTheBaseAndIsDeletedThroughIt) {
    Receiver r;
    std::unique_ptr<CallbackBuffer2<unsigned int, void*>> cb(
        new MemberCallback2<Receiver, unsigned int, void*>(&r, &Receiver::OnEvent));
    (*cb)(5, nullptr);
    (*cb)(6, nullptr);
    EXPECT_EQ(2, r.calls);
    EXPECT_EQ(6u, r.lastInterval);
}

}  // namespace
}  // namespace Zavrel
