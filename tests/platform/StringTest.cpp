#include "platform/String.h"

#include <gtest/gtest.h>

#include <string>

namespace Zavrel {
namespace {

TEST(StringTest, NullTextGivesEmptyString) {
    string s(static_cast<const char*>(nullptr));
    EXPECT_TRUE(s.empty());
    EXPECT_STREQ("", s.c_str());
    string t(nullptr, 5);
    EXPECT_TRUE(t.empty());
}

TEST(StringTest, TextWithLengthKeepsEmbeddedZeroBytes) {
    string s("ab\0cd", 5);
    EXPECT_EQ(5u, s.length());
    EXPECT_EQ('c', s[3]);
}

TEST(StringTest, FormatReplacesTheContent) {
    string s("old text");
    s.Format("%s=%d", "vid", 12);
    EXPECT_EQ(string("vid=12"), s);
}

TEST(StringTest, AppendFmtAppends) {
    string s("a");
    s.AppendFmt("-%u", 7u).AppendFmt("-%s", "x");
    EXPECT_EQ(string("a-7-x"), s);
}

TEST(StringTest, FormatHandlesTextLongerThanAnyInternalBuffer) {
    const std::string big(100000, 'x');
    string s;
    s.Format("<%s>", big.c_str());
    EXPECT_EQ(100002u, s.length());
    EXPECT_EQ("<" + big + ">", s.str());
    s.AppendFmt("%s|", big.c_str());
    EXPECT_EQ(200003u, s.length());
    EXPECT_EQ('|', s[200002]);
}

TEST(StringTest, FormatAtTheBoundaryOfTheSmallBuffer) {
    for (size_t n = 250; n < 262; ++n) {
        const std::string text(n, 'y');
        string s("pre");
        s.AppendFmt("%s", text.c_str());
        EXPECT_EQ("pre" + text, s.str()) << n;
    }
}

TEST(StringTest, EmptyFormatGivesEmptyString) {
    string s("keep");
    s.Format("%s", "");
    EXPECT_TRUE(s.empty());
}

TEST(StringTest, ComparesWithCStrings) {
    string s("abc");
    EXPECT_TRUE(s == "abc");
    EXPECT_TRUE(s != "abd");
    EXPECT_TRUE(string() == static_cast<const char*>(nullptr));
    EXPECT_FALSE(s == static_cast<const char*>(nullptr));
}

TEST(StringTest, OrdersLikeStdString) {
    EXPECT_LT(string("a"), string("b"));
    EXPECT_LE(string("a"), string("a"));
    EXPECT_GT(string("b"), string("a"));
    EXPECT_GE(string("b"), string("b"));
}

TEST(StringTest, AppendAndClear) {
    string s;
    s += "ab";
    s += string("cd");
    s.Append(static_cast<const char*>(nullptr));
    EXPECT_EQ(string("abcd"), s);
    s.clear();
    EXPECT_TRUE(s.empty());
}

TEST(StringTest, HashMatchesStdStringHash) {
    EXPECT_EQ(std::hash<std::string>()("vlan"), StringHash()(string("vlan")));
}

}  // namespace
}  // namespace Zavrel
