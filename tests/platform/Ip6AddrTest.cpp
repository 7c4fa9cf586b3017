#include "platform/Ip6Addr.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace Zavrel {
namespace {

Ip6Addr FromGroups(std::initializer_list<unsigned int> groups) {
    unsigned char bytes[16] = {};
    int i = 0;
    for (unsigned int g : groups) {
        bytes[2 * i] = static_cast<unsigned char>(g >> 8);
        bytes[2 * i + 1] = static_cast<unsigned char>(g);
        ++i;
    }
    return Ip6Addr(bytes);
}

std::string Text(std::initializer_list<unsigned int> groups) {
    return FromGroups(groups).ToString().str();
}

TEST(Ip6AddrTest, DefaultIsUnspecified) {
    EXPECT_TRUE(Ip6Addr().IsUnspecified());
    EXPECT_EQ(string("::"), Ip6Addr().ToString());
}

TEST(Ip6AddrTest, TextIsLowerCaseWithoutLeadingZeros) {
    EXPECT_EQ("2001:db8:a:b:c:d:e:f", Text({0x2001, 0x0db8, 0xa, 0xb, 0xc, 0xd, 0xe, 0xf}));
    EXPECT_EQ("abcd:ef01:2345:6789:abcd:ef01:2345:6789",
              Text({0xABCD, 0xEF01, 0x2345, 0x6789, 0xabcd, 0xef01, 0x2345, 0x6789}));
}

TEST(Ip6AddrTest, LoopbackAndTrailingRuns) {
    EXPECT_EQ("::1", Text({0, 0, 0, 0, 0, 0, 0, 1}));
    EXPECT_EQ("1::", Text({1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ("2001:db8::", Text({0x2001, 0xdb8, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ("fe80::1", Text({0xfe80, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(Ip6AddrTest, LongestZeroRunIsCompressed) {
    EXPECT_EQ("2001:0:0:1::1", Text({0x2001, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_EQ("2001:db8::1:0:0:1", Text({0x2001, 0xdb8, 0, 0, 1, 0, 0, 1}));
}

TEST(Ip6AddrTest, FirstOfEqualZeroRunsIsCompressed) {
    EXPECT_EQ("2001:db8::1:0:0:1", Text({0x2001, 0xdb8, 0, 0, 1, 0, 0, 1}));
    EXPECT_EQ("1::2:0:0:3:4", Text({1, 0, 0, 2, 0, 0, 3, 4}));
    EXPECT_EQ("::1:0:0:2:3:4", Text({0, 0, 1, 0, 0, 2, 3, 4}));
}

TEST(Ip6AddrTest, SingleZeroGroupIsNotCompressed) {
    EXPECT_EQ("2001:db8:0:1:1:1:1:1", Text({0x2001, 0xdb8, 0, 1, 1, 1, 1, 1}));
    EXPECT_EQ("0:1:2:3:4:5:6:7", Text({0, 1, 2, 3, 4, 5, 6, 7}));
    EXPECT_EQ("1:2:3:4:5:6:7:0", Text({1, 2, 3, 4, 5, 6, 7, 0}));
}

TEST(Ip6AddrTest, TwoZeroGroupsAreCompressed) {
    EXPECT_EQ("1:2:3::6:7:8", Text({1, 2, 3, 0, 0, 6, 7, 8}));
    EXPECT_EQ("::3:4:5:6:7:8", Text({0, 0, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ("1:2:3:4:5:6::", Text({1, 2, 3, 4, 5, 6, 0, 0}));
}

TEST(Ip6AddrTest, Ipv4MappedUsesDottedTail) {
    EXPECT_EQ("::ffff:192.0.2.1", Text({0, 0, 0, 0, 0, 0xffff, 0xc000, 0x0201}));
    EXPECT_EQ("::ffff:0.0.0.0", Text({0, 0, 0, 0, 0, 0xffff, 0, 0}));
}

TEST(Ip6AddrTest, OtherEmbeddedIpv4FormsStayHexadecimal) {
    // Only the mapped prefix uses dotted form; the old compatible form and
    // ::ffff:0:0:0/96 are printed as groups.
    EXPECT_EQ("::c000:201", Text({0, 0, 0, 0, 0, 0, 0xc000, 0x0201}));
    EXPECT_EQ("::ffff:0:c000:201", Text({0, 0, 0, 0, 0xffff, 0, 0xc000, 0x0201}));
    EXPECT_EQ("64:ff9b::c000:201", Text({0x64, 0xff9b, 0, 0, 0, 0, 0xc000, 0x0201}));
}

TEST(Ip6AddrTest, AllOnes) {
    EXPECT_EQ("ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
              Text({0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff}));
}

TEST(Ip6AddrTest, FromStringAcceptsTheUsualForms) {
    Ip6Addr a;
    EXPECT_TRUE(a.FromString("2001:DB8::1"));
    EXPECT_EQ(FromGroups({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}), a);
    EXPECT_TRUE(a.FromString("2001:0db8:0000:0000:0000:0000:0000:0001"));
    EXPECT_EQ(FromGroups({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}), a);
    EXPECT_TRUE(a.FromString("::"));
    EXPECT_TRUE(a.IsUnspecified());
    EXPECT_TRUE(a.FromString("::ffff:10.1.2.3"));
    EXPECT_EQ(FromGroups({0, 0, 0, 0, 0, 0xffff, 0x0a01, 0x0203}), a);
    EXPECT_TRUE(a.FromString("1:2:3:4:5:6:1.2.3.4"));
    EXPECT_EQ(string("1:2:3:4:5:6:102:304"), a.ToString());
}

TEST(Ip6AddrTest, TextRoundTripsToCanonicalForm) {
    for (const char* text : {"2001:db8::1", "::1", "::", "fe80::1:2", "1:0:0:2::3",
                             "::ffff:1.2.3.4", "2001:db8:0:1:1:1:1:1", "1::"}) {
        Ip6Addr a;
        ASSERT_TRUE(a.FromString(text)) << text;
        EXPECT_EQ(string(text), a.ToString());
    }
    Ip6Addr b;
    ASSERT_TRUE(b.FromString("2001:0DB8:0:0:1:0:0:1"));
    EXPECT_EQ(string("2001:db8::1:0:0:1"), b.ToString());
}

TEST(Ip6AddrTest, FailedFromStringLeavesTheAddressUnchanged) {
    Ip6Addr a;
    ASSERT_TRUE(a.FromString("2001:db8::5"));
    for (const char* bad : {"", ":", ":::", "1::2::3", "12345::", "g::1", "1:2:3:4:5:6:7:8:9",
                            "1:2:3:4:5:6:7", " ::1", "::1 ", "::1%eth0", "10.0.0.1",
                            "::ffff:1.2.3.256", "::ffff:01.2.3.4", "2001:db8::/64", "dynamic"}) {
        EXPECT_FALSE(a.FromString(bad)) << bad;
        EXPECT_EQ(string("2001:db8::5"), a.ToString()) << bad;
    }
    EXPECT_FALSE(a.FromString(string("::1\0::2", 7)));
    EXPECT_EQ(string("2001:db8::5"), a.ToString());
}

TEST(Ip6AddrTest, WordsAreReadAndWrittenInNetworkOrder) {
    Ip6Addr a;
    a.SetWord(0, 0x20010db8u);
    a.SetWord(3, 0x00000001u);
    EXPECT_EQ(0x20, a.Bytes()[0]);
    EXPECT_EQ(0xb8, a.Bytes()[3]);
    EXPECT_EQ(0x20010db8u, a.Word(0));
    EXPECT_EQ(0u, a.Word(1));
    EXPECT_EQ(1u, a.Word(3));
    EXPECT_EQ(string("2001:db8::1"), a.ToString());
}

TEST(Ip6AddrTest, WordIndexOutOfRangeIsIgnored) {
    Ip6Addr a;
    a.SetWord(4, 0xffffffffu);
    a.SetWord(-1, 0xffffffffu);
    EXPECT_TRUE(a.IsUnspecified());
    EXPECT_EQ(0u, a.Word(4));
    EXPECT_EQ(0u, a.Word(-1));
}

TEST(Ip6AddrTest, ComparesByteWise) {
    EXPECT_EQ(FromGroups({1}), FromGroups({1}));
    EXPECT_NE(FromGroups({1}), FromGroups({2}));
    EXPECT_LT(FromGroups({1, 0xffff}), FromGroups({2}));
}

TEST(Ip6AddrTest, HashesIntoUnorderedContainers) {
    std::unordered_set<Ip6Addr> set;
    set.insert(FromGroups({0x2001, 0xdb8}));
    set.insert(FromGroups({0x2001, 0xdb8}));
    set.insert(FromGroups({0x2001, 0xdb8, 0, 0, 0, 0, 0, 1}));
    EXPECT_EQ(2u, set.size());
}

}  // namespace
}  // namespace Zavrel
