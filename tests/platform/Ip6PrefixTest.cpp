#include "platform/Ip6Prefix.h"

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

TEST(Ip6PrefixTest, MaskTableHasTheTopBitsSet) {
    EXPECT_EQ(0x00000000u, Ip6Prefix::MASK32[0]);
    EXPECT_EQ(0x80000000u, Ip6Prefix::MASK32[1]);
    EXPECT_EQ(0xffff0000u, Ip6Prefix::MASK32[16]);
    EXPECT_EQ(0xfffffffeu, Ip6Prefix::MASK32[31]);
    for (unsigned int n = 1; n < 32; ++n) {
        EXPECT_EQ(~((1u << (32 - n)) - 1u), Ip6Prefix::MASK32[n]) << n;
    }
}

TEST(Ip6PrefixTest, DefaultIsAllAddressesWithLengthZero) {
    Ip6Prefix p;
    EXPECT_EQ(0u, p.Length());
    EXPECT_EQ(string("::/0"), p.ToString());
}

TEST(Ip6PrefixTest, FromStringParsesAddressAndLength) {
    Ip6Prefix p;
    ASSERT_TRUE(p.FromString("2001:db8::/32"));
    EXPECT_EQ(32u, p.Length());
    EXPECT_EQ(0x20010db8u, p.Address().Word(0));
    EXPECT_EQ(string("2001:db8::/32"), p.ToString());
}

TEST(Ip6PrefixTest, AddressIsKeptAsWrittenNotMasked) {
    Ip6Prefix p;
    ASSERT_TRUE(p.FromString("2001:db8::1/64"));
    EXPECT_EQ(string("2001:db8::1/64"), p.ToString());
}

TEST(Ip6PrefixTest, LengthBoundaries) {
    Ip6Prefix p;
    EXPECT_TRUE(p.FromString("::/0"));
    EXPECT_EQ(0u, p.Length());
    EXPECT_TRUE(p.FromString("::1/128"));
    EXPECT_EQ(128u, p.Length());
}

TEST(Ip6PrefixTest, LengthAbove128IsRejectedAndThePrefixUnchanged) {
    Ip6Prefix p;
    ASSERT_TRUE(p.FromString("fe80::/10"));
    for (const char* bad : {"::1/129", "::1/200", "::1/999", "::1/1000", "::1/4294967296"}) {
        EXPECT_FALSE(p.FromString(bad)) << bad;
        EXPECT_EQ(string("fe80::/10"), p.ToString()) << bad;
    }
}

TEST(Ip6PrefixTest, MalformedTextIsRejectedAndThePrefixUnchanged) {
    Ip6Prefix p;
    ASSERT_TRUE(p.FromString("fe80::/10"));
    for (const char* bad :
         {"", "/64", "2001:db8::", "2001:db8::/", "2001:db8::/-1", "2001:db8::/+64",
          "2001:db8::/ 64", "2001:db8::/64 ", "2001:db8::/6x", "2001:db8::/0x40", "2001:db8::/064",
          "2001:db8::/00", "2001:db8::/64/1", "2001:db8:::/64", "10.0.0.0/8", " 2001:db8::/64"}) {
        EXPECT_FALSE(p.FromString(bad)) << bad;
        EXPECT_EQ(string("fe80::/10"), p.ToString()) << bad;
    }
    EXPECT_FALSE(p.FromString(string("::/6\0", 5)));
    EXPECT_EQ(string("fe80::/10"), p.ToString());
}

TEST(Ip6PrefixTest, EqualWhenWordsAndLengthAreEqual) {
    Ip6Prefix a;
    Ip6Prefix b;
    ASSERT_TRUE(a.FromString("2001:db8::/64"));
    ASSERT_TRUE(b.FromString("2001:DB8:0::/64"));
    EXPECT_EQ(a, b);
    b.SetLength(48);
    EXPECT_NE(a, b);
    b.SetLength(64);
    b.Address().SetWord(3, 1);
    EXPECT_NE(a, b);
}

TEST(Ip6PrefixTest, ConstructorAndSettersKeepTheirValues) {
    Ip6Addr addr;
    addr.SetWord(0, 0xfe800000u);
    Ip6Prefix p(addr, 10);
    EXPECT_EQ(addr, p.Address());
    EXPECT_EQ(10u, p.Length());
    p.SetAddress(Ip6Addr());
    p.SetLength(200);
    EXPECT_EQ(string("::/200"), p.ToString());
}

}  // namespace
}  // namespace Zavrel
