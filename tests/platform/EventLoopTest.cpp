#include "platform/EventLoop.h"

#include <gtest/gtest.h>

#include "platform/Timer.h"
#include "platform/VirtualEventLoop.h"

namespace Zavrel {
namespace {

TEST(EventLoopTest, DefaultLoopIsAProcessWideVirtualLoop) {
    EventLoop& current = EventLoop::Current();
    EXPECT_NE(nullptr, dynamic_cast<VirtualEventLoop*>(&current));
    EXPECT_EQ(&current, &EventLoop::Current());
}

TEST(EventLoopTest, SetCurrentInstallsALoopAndReturnsThePreviousOne) {
    EventLoop& def = EventLoop::Current();
    VirtualEventLoop a;
    VirtualEventLoop b;
    EXPECT_EQ(nullptr, EventLoop::SetCurrent(&a));
    EXPECT_EQ(&a, &EventLoop::Current());
    EXPECT_EQ(&a, EventLoop::SetCurrent(&b));
    EXPECT_EQ(&b, EventLoop::SetCurrent(nullptr));
    EXPECT_EQ(&def, &EventLoop::Current());
}

TEST(EventLoopTest, DestroyingTheCurrentLoopRestoresTheDefault) {
    EventLoop& def = EventLoop::Current();
    {
        VirtualEventLoop temporary;
        EventLoop::SetCurrent(&temporary);
    }
    EXPECT_EQ(&def, &EventLoop::Current());
    EXPECT_EQ(nullptr, EventLoop::SetCurrent(nullptr));
}

TEST(EventLoopTest, TimersStartOnTheDefaultLoopWhenNoneIsInstalled) {
    auto& def = static_cast<VirtualEventLoop&>(EventLoop::Current());
    OneShotTimer timer("t", nullptr);
    timer.Start(10);
    EXPECT_TRUE(def.IsArmed(&timer));
    timer.Stop();
    EXPECT_FALSE(def.IsArmed(&timer));
}

}  // namespace
}  // namespace Zavrel
