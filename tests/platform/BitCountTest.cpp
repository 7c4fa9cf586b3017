// BitCount: set bits of a 32-bit word.
#include "platform/BitCount.h"

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

TEST(BitCountTest, CountsEveryBitOfTheWord) {
    EXPECT_EQ(BitCount(0u), 0u);
    EXPECT_EQ(BitCount(1u), 1u);
    EXPECT_EQ(BitCount(0x80000000u), 1u);
    EXPECT_EQ(BitCount(0xFFFFFF00u), 24u);
    EXPECT_EQ(BitCount(0xFFFFFFFFu), 32u);
}

TEST(BitCountTest, CountsBitsThatAreNotContiguous) {
    // Not a netmask: every set bit counts wherever it is.
    EXPECT_EQ(BitCount(0xFF00FF00u), 16u);
    EXPECT_EQ(BitCount(0x00000101u), 2u);
}

}  // namespace
}  // namespace Zavrel
