#include "platform/StrUtil.h"

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

TEST(StrUtilTest, PrefixMatchesWithoutRegardToCase) {
    EXPECT_TRUE(strcasestrstart("Remote_12", "remote"));
    EXPECT_TRUE(strcasestrstart("remote", "REMOTE"));
}

TEST(StrUtilTest, TextShorterThanPrefixDoesNotMatch) {
    EXPECT_FALSE(strcasestrstart("rem", "remote"));
    EXPECT_FALSE(strcasestrstart("", "r"));
}

TEST(StrUtilTest, DifferentTextDoesNotMatch) {
    EXPECT_FALSE(strcasestrstart("remove", "remote"));
}

TEST(StrUtilTest, EmptyPrefixMatchesAnyText) {
    EXPECT_TRUE(strcasestrstart("anything", ""));
    EXPECT_TRUE(strcasestrstart("", ""));
}

TEST(StrUtilTest, NullTextOrPrefixDoesNotMatch) {
    EXPECT_FALSE(strcasestrstart(nullptr, "a"));
    EXPECT_FALSE(strcasestrstart("a", nullptr));
    EXPECT_FALSE(strcasestrstart(nullptr, nullptr));
}

}  // namespace
}  // namespace Zavrel
