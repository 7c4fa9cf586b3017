#include "config/DclIpAddress.h"

#include <gtest/gtest.h>

#include <cstring>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

const unsigned char V4[4] = {10, 1, 2, 3};
const unsigned char V6[16] = {10, 1, 2, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
const unsigned char V6B[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9};

class DclIpAddressTest : public test::TestEnv {};

TEST_F(DclIpAddressTest, ConstructionCopiesTheGivenBytesAndZeroesTheRest) {
    DclIpAddress address(V4, 4);
    EXPECT_EQ(4u, address.Length());
    EXPECT_EQ(0, memcmp(V4, address.Bytes(), 4));
    for (int i = 4; i < 16; ++i) {
        EXPECT_EQ(0, address.Bytes()[i]) << i;
    }
}

TEST_F(DclIpAddressTest, DefaultValueIsEmpty) {
    DclIpAddress address;
    EXPECT_EQ(0u, address.Length());
    EXPECT_TRUE(address == DclIpAddress(nullptr, 0));
    EXPECT_EQ(string("0.0.0.0"), address.ToString());
}

TEST_F(DclIpAddressTest, EmptyValuesAreEqualToEachOther) {
    DclIpAddress a(nullptr, 0);
    DclIpAddress b(V4, 0);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a == a);
}

TEST_F(DclIpAddressTest, EmptyValueDiffersFromAnyAddress) {
    DclIpAddress empty(nullptr, 0);
    EXPECT_FALSE(empty == DclIpAddress(V4, 4));
    EXPECT_FALSE(empty == DclIpAddress(V6, 16));
    unsigned char zeros[16] = {0};
    EXPECT_FALSE(empty == DclIpAddress(zeros, 4));
}

TEST_F(DclIpAddressTest, EmptyValuePrintsAsZeroAddress) {
    EXPECT_EQ(string("0.0.0.0"), DclIpAddress(nullptr, 0).ToString());
}

TEST_F(DclIpAddressTest, ShortValuePrintsAllFourBytes) {
    const unsigned char two[2] = {7, 9};
    EXPECT_EQ(string("7.9.0.0"), DclIpAddress(two, 2).ToString());
}

TEST_F(DclIpAddressTest, Ip4ValuePrintsDotted) {
    EXPECT_EQ(string("10.1.2.3"), DclIpAddress(V4, 4).ToString());
}

TEST_F(DclIpAddressTest, Ip6ValuePrintsThePlatformNotation) {
    EXPECT_EQ(string("2001:db8::9"), DclIpAddress(V6B, 16).ToString());
}

TEST_F(DclIpAddressTest, ValueLongerThanSixteenPrintsNothing) {
    DclIpAddress address(V6, 16);
    address.length = 17;
    EXPECT_EQ(string(""), address.ToString());
}

TEST_F(DclIpAddressTest, Ip4ValueNeverEqualsIp6ValueWithTheSameFirstBytes) {
    DclIpAddress v4(V4, 4);
    DclIpAddress v6(V6, 16);
    EXPECT_FALSE(v4 == v6);
    EXPECT_FALSE(v6 == v4);
}

TEST_F(DclIpAddressTest, EqualityComparesTheBytesOfTheLength) {
    EXPECT_TRUE(DclIpAddress(V6, 16) == DclIpAddress(V6, 16));
    EXPECT_FALSE(DclIpAddress(V6, 16) == DclIpAddress(V6B, 16));
    const unsigned char other[4] = {10, 1, 2, 4};
    EXPECT_FALSE(DclIpAddress(V4, 4) == DclIpAddress(other, 4));
}

TEST_F(DclIpAddressTest, CompareWithIp4AddrOnIpv6ValueIsFalseEvenWhenFirstBytesMatch) {
    DclIpAddress v6(V6, 16);
    EXPECT_FALSE(v6 == Ip4Addr(10, 1, 2, 3));
}

TEST_F(DclIpAddressTest, CompareWithIp4AddrOnIpv4Value) {
    DclIpAddress v4(V4, 4);
    EXPECT_TRUE(v4 == Ip4Addr(10, 1, 2, 3));
    EXPECT_FALSE(v4 == Ip4Addr(10, 1, 2, 4));
}

TEST_F(DclIpAddressTest, FailedIp4ParseLeavesThePreviousValue) {
    DclIpAddress address(V6B, 16);
    EXPECT_FALSE(address.Ip4AddrFromString("10.1.2"));
    EXPECT_FALSE(address.Ip4AddrFromString(nullptr));
    EXPECT_EQ(16u, address.Length());
    EXPECT_EQ(string("2001:db8::9"), address.ToString());
}

TEST_F(DclIpAddressTest, FailedIp6ParseLeavesThePreviousValue) {
    DclIpAddress address(V4, 4);
    EXPECT_FALSE(address.Ip6AddrFromString("2001:::x"));
    EXPECT_FALSE(address.Ip6AddrFromString(nullptr));
    EXPECT_EQ(4u, address.Length());
    EXPECT_EQ(string("10.1.2.3"), address.ToString());
}

TEST_F(DclIpAddressTest, SuccessfulParsesSetLengthAndBytes) {
    DclIpAddress address(nullptr, 0);
    EXPECT_TRUE(address.Ip4AddrFromString("192.168.1.254"));
    EXPECT_EQ(4u, address.Length());
    EXPECT_TRUE(address == Ip4Addr(192, 168, 1, 254));
    EXPECT_TRUE(address.Ip6AddrFromString("2001:db8::9"));
    EXPECT_EQ(16u, address.Length());
    EXPECT_EQ(0, memcmp(V6B, address.Bytes(), 16));
}

TEST_F(DclIpAddressTest, ReinitialisingIpv6WithIpv4ClearsTheTail) {
    DclIpAddress address(V6B, 16);
    address.Init(V4, 4);
    Ip6Addr six = address.ToIp6Addr();
    EXPECT_EQ(0, memcmp(V4, six.Bytes(), 4));
    for (int i = 4; i < 16; ++i) {
        EXPECT_EQ(0, six.Bytes()[i]) << i;
    }
}

TEST_F(DclIpAddressTest, ToIp4AddrTakesTheFirstFourBytesWhateverTheLength) {
    EXPECT_EQ(Ip4Addr(10, 1, 2, 3), DclIpAddress(V6, 16).ToIp4Addr());
    EXPECT_EQ(Ip4Addr(0, 0, 0, 0), DclIpAddress(nullptr, 0).ToIp4Addr());
}

TEST_F(DclIpAddressTest, CopyAndAssignmentCopyTheValue) {
    DclIpAddress original(V6B, 16);
    DclIpAddress copy(original);
    EXPECT_TRUE(copy == original);
    DclIpAddress other(V4, 4);
    other = original;
    EXPECT_TRUE(other == original);
    EXPECT_EQ(16u, other.Length());
}

TEST_F(DclIpAddressTest, SelfAssignmentKeepsTheValue) {
    DclIpAddress address(V4, 4);
    DclIpAddress& self = address;
    address = self;
    EXPECT_EQ(4u, address.Length());
    EXPECT_TRUE(address == Ip4Addr(10, 1, 2, 3));
}

TEST_F(DclIpAddressTest, OversizedLengthNeverCopiesPastTheSixteenBytes) {
    unsigned char source[32];
    for (int i = 0; i < 32; ++i) {
        source[i] = static_cast<unsigned char>(i + 1);
    }
    DclIpAddress address(source, 32);
    EXPECT_EQ(32u, address.Length());
    EXPECT_EQ(0, memcmp(source, address.Bytes(), 16));
    EXPECT_TRUE(address == DclIpAddress(address));
    EXPECT_EQ(string(""), address.ToString());
}

TEST_F(DclIpAddressTest, NullSourceWithLengthLeavesZeroBytes) {
    DclIpAddress address(nullptr, 4);
    EXPECT_EQ(4u, address.Length());
    EXPECT_EQ(string("0.0.0.0"), address.ToString());
}

}  // namespace
}  // namespace Zavrel
