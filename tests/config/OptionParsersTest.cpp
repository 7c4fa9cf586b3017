#include "config/OptionParsers.h"

#include <gtest/gtest.h>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class OptionParsersTest : public test::TestEnv {};

TEST_F(OptionParsersTest, ParseNumberOnEmptyTextSucceedsWithZero) {
    unsigned int value = 99;
    EXPECT_TRUE(ParseNumber(&value, ""));
    EXPECT_EQ(0u, value);
}

TEST_F(OptionParsersTest, ParseNumberWithTrailingGarbageFailsButStoresTheNumber) {
    unsigned int value = 0;
    EXPECT_FALSE(ParseNumber(&value, "12x"));
    EXPECT_EQ(12u, value);
}

TEST_F(OptionParsersTest, ParseNumberOfMinusOneWrapsToTheLargestValue) {
    unsigned int value = 0;
    EXPECT_TRUE(ParseNumber(&value, "-1"));
    EXPECT_EQ(4294967295u, value);
}

TEST_F(OptionParsersTest, ParseNumberOfNullTextFailsAndLeavesTheValue) {
    unsigned int value = 7;
    EXPECT_FALSE(ParseNumber(&value, nullptr));
    EXPECT_EQ(7u, value);
}

TEST_F(OptionParsersTest, ParseNumberReadsPlainDecimal) {
    unsigned int value = 0;
    EXPECT_TRUE(ParseNumber(&value, "4094"));
    EXPECT_EQ(4094u, value);
}

TEST_F(OptionParsersTest, ParseMetricTakesZeroTo255AndLeavesTheValueOtherwise) {
    unsigned char metric = 7;
    EXPECT_TRUE(ParseMetric(&metric, ""));
    EXPECT_EQ(0, metric);
    EXPECT_TRUE(ParseMetric(&metric, "255"));
    EXPECT_EQ(255, metric);
    EXPECT_FALSE(ParseMetric(&metric, "256"));
    EXPECT_FALSE(ParseMetric(&metric, "3x"));
    EXPECT_FALSE(ParseMetric(&metric, "-1"));
    EXPECT_FALSE(ParseMetric(&metric, nullptr));
    EXPECT_EQ(255, metric);
}

TEST_F(OptionParsersTest, ParseRangeOfOneNumberGivesEqualBounds) {
    unsigned int low = 0, high = 0;
    EXPECT_TRUE(ParseRange(&low, &high, "5"));
    EXPECT_EQ(5u, low);
    EXPECT_EQ(5u, high);
}

TEST_F(OptionParsersTest, ParseRangeDoesNotCheckTheOrderOfTheBounds) {
    unsigned int low = 0, high = 0;
    EXPECT_TRUE(ParseRange(&low, &high, "7-3"));
    EXPECT_EQ(7u, low);
    EXPECT_EQ(3u, high);
}

TEST_F(OptionParsersTest, ParseRangeWithNothingAfterTheDashGivesHighZero) {
    unsigned int low = 0, high = 9;
    EXPECT_TRUE(ParseRange(&low, &high, "5-"));
    EXPECT_EQ(5u, low);
    EXPECT_EQ(0u, high);
}

TEST_F(OptionParsersTest, ParseRangeWithAnotherSeparatorFailsAfterStoringLow) {
    unsigned int low = 0, high = 9;
    EXPECT_FALSE(ParseRange(&low, &high, "5+6"));
    EXPECT_EQ(5u, low);
    EXPECT_EQ(9u, high);
}

TEST_F(OptionParsersTest, ParseRangeWithGarbageAfterHighFailsButStoresHigh) {
    unsigned int low = 0, high = 0;
    EXPECT_FALSE(ParseRange(&low, &high, "1-2z"));
    EXPECT_EQ(1u, low);
    EXPECT_EQ(2u, high);
}

TEST_F(OptionParsersTest, ParseRangeOfNullTextFails) {
    unsigned int low = 4, high = 4;
    EXPECT_FALSE(ParseRange(&low, &high, nullptr));
    EXPECT_EQ(4u, low);
    EXPECT_EQ(4u, high);
}

TEST_F(OptionParsersTest, ParseBoolAcceptsOneAndZeroOnly) {
    bool value = false;
    EXPECT_TRUE(ParseBool(&value, "1"));
    EXPECT_TRUE(value);
    EXPECT_TRUE(ParseBool(&value, "0"));
    EXPECT_FALSE(value);
}

TEST_F(OptionParsersTest, ParseBoolRejectsWordsInAnyCaseAndLeavesTheValue) {
    for (const char* word : {"true", "TRUE", "True", "false", "yes", "01", "", " 1"}) {
        bool value = true;
        EXPECT_FALSE(ParseBool(&value, word)) << word;
        EXPECT_TRUE(value) << word;
        value = false;
        EXPECT_FALSE(ParseBool(&value, word)) << word;
        EXPECT_FALSE(value) << word;
    }
    bool value = true;
    EXPECT_FALSE(ParseBool(&value, nullptr));
    EXPECT_TRUE(value);
}

TEST_F(OptionParsersTest, ParseAddressReadsDottedText) {
    Ip4Addr address;
    EXPECT_TRUE(ParseAddress(address, "10.1.2.3"));
    EXPECT_EQ(Ip4Addr(10, 1, 2, 3), address);
}

TEST_F(OptionParsersTest, ParseAddressFailsOnNullOrBadTextAndKeepsTheAddress) {
    Ip4Addr address(1, 2, 3, 4);
    EXPECT_FALSE(ParseAddress(address, nullptr));
    EXPECT_FALSE(ParseAddress(address, "10.1.2"));
    EXPECT_FALSE(ParseAddress(address, "dynamic"));
    EXPECT_EQ(Ip4Addr(1, 2, 3, 4), address);
}

TEST_F(OptionParsersTest, ParseAddressDynamicInCapitalsSucceedsAndLeavesTheAddress) {
    Ip4Addr address(1, 2, 3, 4);
    EXPECT_TRUE(ParseAddressDynamic(address, "DYNAMIC"));
    EXPECT_TRUE(ParseAddressDynamic(address, "Dynamic"));
    EXPECT_EQ(Ip4Addr(1, 2, 3, 4), address);
}

TEST_F(OptionParsersTest, ParseAddressDynamicParsesOtherTextAsAnAddress) {
    Ip4Addr address;
    EXPECT_TRUE(ParseAddressDynamic(address, "192.168.0.1"));
    EXPECT_EQ(Ip4Addr(192, 168, 0, 1), address);
    EXPECT_FALSE(ParseAddressDynamic(address, "dyn"));
    EXPECT_FALSE(ParseAddressDynamic(address, nullptr));
    EXPECT_EQ(Ip4Addr(192, 168, 0, 1), address);
}

TEST_F(OptionParsersTest, ParseIp6AddressReadsText) {
    Ip6Addr address;
    EXPECT_TRUE(ParseIp6Address(address, "2001:db8::1"));
    EXPECT_EQ(string("2001:db8::1"), address.ToString());
}

TEST_F(OptionParsersTest, ParseIp6AddressFailsOnNullOrBadTextAndKeepsTheAddress) {
    Ip6Addr address;
    ASSERT_TRUE(ParseIp6Address(address, "fe80::5"));
    EXPECT_FALSE(ParseIp6Address(address, nullptr));
    EXPECT_FALSE(ParseIp6Address(address, "fe80::zz"));
    EXPECT_EQ(string("fe80::5"), address.ToString());
}

TEST_F(OptionParsersTest, ParseIp6AddressDynamicInAnyCaseLeavesTheAddress) {
    Ip6Addr address;
    ASSERT_TRUE(ParseIp6Address(address, "fe80::5"));
    EXPECT_TRUE(ParseIp6AddressDynamic(address, "DyNaMiC"));
    EXPECT_EQ(string("fe80::5"), address.ToString());
    EXPECT_TRUE(ParseIp6AddressDynamic(address, "2001:db8::2"));
    EXPECT_EQ(string("2001:db8::2"), address.ToString());
    EXPECT_FALSE(ParseIp6AddressDynamic(address, nullptr));
}

TEST_F(OptionParsersTest, ParseIp6PrefixJoinsAddressAndLength) {
    Ip6Prefix prefix;
    EXPECT_TRUE(ParseIp6Prefix(prefix, "2001:db8::", "48"));
    EXPECT_EQ(48u, prefix.Length());
    EXPECT_EQ(string("2001:db8::"), prefix.Address().ToString());
}

TEST_F(OptionParsersTest, ParseIp6PrefixWithNullLengthOrAddressFails) {
    Ip6Prefix prefix;
    ASSERT_TRUE(ParseIp6Prefix(prefix, "2001:db8::", "48"));
    EXPECT_FALSE(ParseIp6Prefix(prefix, "2001:db8::", nullptr));
    EXPECT_FALSE(ParseIp6Prefix(prefix, nullptr, "64"));
    EXPECT_EQ(48u, prefix.Length());
}

TEST_F(OptionParsersTest, ParseIp6PrefixWithBadLengthFails) {
    Ip6Prefix prefix;
    EXPECT_FALSE(ParseIp6Prefix(prefix, "2001:db8::", "129"));
    EXPECT_FALSE(ParseIp6Prefix(prefix, "2001:db8::", "x"));
}

TEST_F(OptionParsersTest, ParsersNeverLog) {
    unsigned int n = 0;
    bool b = false;
    Ip4Addr a;
    ParseNumber(&n, "x");
    ParseBool(&b, "x");
    ParseAddress(a, "x");
    EXPECT_TRUE(trace.Lines().empty());
}

}  // namespace
}  // namespace Zavrel
