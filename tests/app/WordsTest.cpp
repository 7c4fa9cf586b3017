#include "app/Words.h"

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class WordsTest : public TestEnv {};

TEST_F(WordsTest, SplitsAtBlanksAndDropsComments) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(Words::Split("  route add\t10 10.0.0.0/8  # a comment", words, error));
    EXPECT_EQ(words, (std::vector<std::string>{"route", "add", "10", "10.0.0.0/8"}));
}

TEST_F(WordsTest, KeepsBlanksInsideQuotes) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(Words::Split("load \"my file.json\" source x", words, error));
    EXPECT_EQ(words, (std::vector<std::string>{"load", "my file.json", "source", "x"}));
}

TEST_F(WordsTest, RejectsAnUnterminatedQuote) {
    std::vector<std::string> words{"old"};
    std::string error;
    EXPECT_FALSE(Words::Split("load \"my file.json", words, error));
    EXPECT_EQ(error, "unterminated quote");
    EXPECT_TRUE(words.empty());
}

TEST_F(WordsTest, CommentOnlyLineHasNoWords) {
    std::vector<std::string> words;
    std::string error;
    ASSERT_TRUE(Words::Split("# nothing here", words, error));
    EXPECT_TRUE(words.empty());
}

TEST_F(WordsTest, KeywordsCompareWithoutCase) {
    EXPECT_TRUE(Words::Is("ROUTE", "route"));
    EXPECT_TRUE(Words::Is("Route", "route"));
    EXPECT_FALSE(Words::Is("rout", "route"));
}

TEST_F(WordsTest, NumbersAreDecimalOrHex) {
    uint64_t value = 0;
    EXPECT_TRUE(Words::ParseNumber("42", 100, value));
    EXPECT_EQ(value, 42u);
    EXPECT_TRUE(Words::ParseNumber("0x2A", 100, value));
    EXPECT_EQ(value, 42u);
    EXPECT_TRUE(Words::ParseNumber("0x30000", 0xFFFFFFFFu, value));
    EXPECT_EQ(value, 0x30000u);
}

TEST_F(WordsTest, RejectsSignsGarbageAndOverflow) {
    uint64_t value = 7;
    EXPECT_FALSE(Words::ParseNumber("", 100, value));
    EXPECT_FALSE(Words::ParseNumber("-1", 100, value));
    EXPECT_FALSE(Words::ParseNumber("+1", 100, value));
    EXPECT_FALSE(Words::ParseNumber("12a", 100, value));
    EXPECT_FALSE(Words::ParseNumber("0x", 100, value));
    EXPECT_FALSE(Words::ParseNumber("0xg", 100, value));
    EXPECT_FALSE(Words::ParseNumber("101", 100, value));
    EXPECT_FALSE(Words::ParseNumber("99999999999999999999999", 0xFFFFFFFFu, value));
    EXPECT_EQ(value, 7u);
}

TEST_F(WordsTest, UnsignedTakesThirtyTwoBits) {
    unsigned int value = 0;
    EXPECT_TRUE(Words::ParseUnsigned("4294967295", value));
    EXPECT_EQ(value, 4294967295u);
    EXPECT_FALSE(Words::ParseUnsigned("4294967296", value));
}

TEST_F(WordsTest, VlanIsOneTo4094) {
    unsigned short vlan = 0;
    EXPECT_TRUE(Words::ParseVlan("1", vlan));
    EXPECT_EQ(vlan, 1);
    EXPECT_TRUE(Words::ParseVlan("4094", vlan));
    EXPECT_EQ(vlan, 4094);
    EXPECT_FALSE(Words::ParseVlan("0", vlan));
    EXPECT_FALSE(Words::ParseVlan("4095", vlan));
    EXPECT_FALSE(Words::ParseVlan("ten", vlan));
}

TEST_F(WordsTest, ParsesAnIpv4Prefix) {
    AppPrefix prefix;
    ASSERT_TRUE(Words::ParsePrefix("10.1.0.0/16", prefix));
    EXPECT_FALSE(prefix.ipv6);
    EXPECT_EQ(prefix.ip4, Ip4Addr(10, 1, 0, 0));
    EXPECT_EQ(prefix.length, 16u);
}

TEST_F(WordsTest, ParsesAnIpv6Prefix) {
    AppPrefix prefix;
    ASSERT_TRUE(Words::ParsePrefix("2001:db8::1/64", prefix));
    EXPECT_TRUE(prefix.ipv6);
    EXPECT_EQ(prefix.ip6.ToString(), string("2001:db8::1"));
    EXPECT_EQ(prefix.length, 64u);
}

TEST_F(WordsTest, RejectsBadPrefixes) {
    AppPrefix prefix;
    EXPECT_FALSE(Words::ParsePrefix("10.0.0.0", prefix));
    EXPECT_FALSE(Words::ParsePrefix("10.0.0.0/33", prefix));
    EXPECT_FALSE(Words::ParsePrefix("10.0.0.0/", prefix));
    EXPECT_FALSE(Words::ParsePrefix("10.0.0.0/08", prefix));
    EXPECT_FALSE(Words::ParsePrefix("10.0.0.0/0x8", prefix));
    EXPECT_FALSE(Words::ParsePrefix("10.0.0/8", prefix));
    EXPECT_FALSE(Words::ParsePrefix("/8", prefix));
    EXPECT_FALSE(Words::ParsePrefix("2001:db8::/129", prefix));
    EXPECT_FALSE(Words::ParsePrefix("2001:db8::g/64", prefix));
}

TEST_F(WordsTest, Ipv6NeedsAColon) {
    Ip6Addr address;
    EXPECT_FALSE(Words::ParseIp6("10.0.0.1", address));
    EXPECT_TRUE(Words::ParseIp6("::1", address));
}

TEST_F(WordsTest, NetmaskOfALength) {
    EXPECT_EQ(Words::Netmask(0), Ip4Addr(0, 0, 0, 0));
    EXPECT_EQ(Words::Netmask(8), Ip4Addr(255, 0, 0, 0));
    EXPECT_EQ(Words::Netmask(20), Ip4Addr(255, 255, 240, 0));
    EXPECT_EQ(Words::Netmask(32), Ip4Addr(255, 255, 255, 255));
}

}  // namespace
}  // namespace Zavrel::test
