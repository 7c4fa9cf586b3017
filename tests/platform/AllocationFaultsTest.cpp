// AllocationFaults: the n-th allocation of a kind fails, once.
#include "platform/AllocationFaults.h"

#include <memory>

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

struct Thing {
    explicit Thing(int v) : value(v) {}
    int value;
};

class AllocationFaultsTest : public ::testing::Test {
protected:
    void TearDown() override { AllocationFaults::Clear(); }
};

TEST_F(AllocationFaultsTest, NothingArmedAllocatesWithTheArguments) {
    std::unique_ptr<Thing> thing(NewOrNull<Thing>("Thing", 7));
    ASSERT_NE(thing, nullptr);
    EXPECT_EQ(7, thing->value);
}

TEST_F(AllocationFaultsTest, TheNthAllocationOfTheKindFailsAndOnlyThatOne) {
    AllocationFaults::FailNth("Thing", 3);
    std::unique_ptr<Thing> first(NewOrNull<Thing>("Thing", 1));
    std::unique_ptr<Thing> other(NewOrNull<Thing>("Other", 1));
    std::unique_ptr<Thing> second(NewOrNull<Thing>("Thing", 2));
    std::unique_ptr<Thing> third(NewOrNull<Thing>("Thing", 3));
    std::unique_ptr<Thing> fourth(NewOrNull<Thing>("Thing", 4));
    EXPECT_NE(first, nullptr);
    EXPECT_NE(other, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_EQ(third, nullptr);
    EXPECT_NE(fourth, nullptr);
}

TEST_F(AllocationFaultsTest, ZeroAndClearDisarm) {
    AllocationFaults::FailNth("Thing", 1);
    AllocationFaults::FailNth("Thing", 0);
    std::unique_ptr<Thing> a(NewOrNull<Thing>("Thing", 1));
    EXPECT_NE(a, nullptr);
    AllocationFaults::FailNth("Thing", 1);
    AllocationFaults::Clear();
    std::unique_ptr<Thing> b(NewOrNull<Thing>("Thing", 1));
    EXPECT_NE(b, nullptr);
}

TEST_F(AllocationFaultsTest, KindsCountApart) {
    AllocationFaults::FailNth("A", 1);
    AllocationFaults::FailNth("B", 2);
    EXPECT_TRUE(AllocationFaults::ShouldFail("A"));
    EXPECT_FALSE(AllocationFaults::ShouldFail("B"));
    EXPECT_TRUE(AllocationFaults::ShouldFail("B"));
    EXPECT_FALSE(AllocationFaults::ShouldFail("A"));
    EXPECT_FALSE(AllocationFaults::ShouldFail(nullptr));
}

}  // namespace
}  // namespace Zavrel
