#include "config/AddressFormat.h"

#include <gtest/gtest.h>

#include <cstring>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class AddressFormatTest : public test::TestEnv {};

bool FailingConverter(uint32_t, char*, size_t) {
    return false;
}

TEST_F(AddressFormatTest, Ip4AddrToStrWritesDecimalBytesWithoutLeadingZeros) {
    const unsigned char bytes[4] = {10, 0, 7, 255};
    char buffer[16];
    EXPECT_EQ(buffer, Ip4AddrToStr(buffer, bytes));
    EXPECT_STREQ("10.0.7.255", buffer);
}

TEST_F(AddressFormatTest, Ip4AddrToStrFillsSixteenCharactersForTheLongestAddress) {
    const unsigned char bytes[4] = {255, 255, 255, 255};
    char buffer[16];
    EXPECT_STREQ("255.255.255.255", Ip4AddrToStr(buffer, bytes));
}

TEST_F(AddressFormatTest, Ip6AddrToStrWritesThePlatformText) {
    const unsigned char bytes[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    char buffer[48];
    EXPECT_EQ(buffer, Ip6AddrToStr(buffer, bytes));
    EXPECT_STREQ("2001:db8::1", buffer);
}

TEST_F(AddressFormatTest, Ip6AddrToStrOfTheZeroAddress) {
    const unsigned char bytes[16] = {0};
    char buffer[48];
    EXPECT_STREQ(Ip6Addr().ToString().c_str(), Ip6AddrToStr(buffer, bytes));
}

TEST_F(AddressFormatTest, FormatIp4AddrOfAnIntegerUsesThePlatformConversion) {
    char expected[40];
    ASSERT_TRUE(Ip4Addr::Uint32ToString(0x0A000001u, expected, sizeof(expected)));
    EXPECT_EQ(string(expected), FormatIp4Addr(0x0A000001u));
    EXPECT_EQ(string("10.0.0.1"), FormatIp4Addr(0x0A000001u));
}

TEST_F(AddressFormatTest, FormatIp4AddrOfAnIntegerIsEmptyWhenTheConversionFails) {
    EXPECT_EQ(string(""), detail::FormatIp4AddrWith(&FailingConverter, 0x0A000001u));
}

TEST_F(AddressFormatTest, FormatIp4AddrOfBytes) {
    const unsigned char bytes[4] = {192, 168, 10, 1};
    EXPECT_EQ(string("192.168.10.1"), FormatIp4Addr(static_cast<const void*>(bytes)));
}

TEST_F(AddressFormatTest, FormatIp6AddrOfBytes) {
    const unsigned char bytes[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x2a};
    EXPECT_EQ(string("fe80::2a"), FormatIp6Addr(bytes));
}

}  // namespace
}  // namespace Zavrel
