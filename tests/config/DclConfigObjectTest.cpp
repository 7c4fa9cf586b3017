// Configuration objects: bookkeeping, name fields, family options, debug
// dumps, and the option-to-MIB readers.
#include "config/DclConfigObject.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "config/DCLConfigListTestSupport.h"
#include "platform/Options.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::CommitLog;
using test::TestObject;
using test::TestRouter;

class DclConfigObjectTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    Options options;
    TestRouter router{5};
    CommitLog log;
};

TEST_F(DclConfigObjectTest, NewObjectStartsOutOfTheMibWithAnActionRequired) {
    TestObject object(router, &log);
    EXPECT_EQ(object.vlan, 0);
    EXPECT_EQ(object.id, 0u);
    EXPECT_TRUE(object.name.empty());
    EXPECT_EQ(object.optionType, DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_FALSE(object.GetInMib());
    EXPECT_TRUE(object.actionReq);
    EXPECT_FALSE(object.held);
    EXPECT_EQ(&object.router, &router);
}

TEST_F(DclConfigObjectTest, CopyFromAnotherTakesIdRouterAndVlanOnly) {
    TestObject original(router, &log);
    original.id = 9;
    original.vlan = 12;
    original.name = "source.json";
    original.optionType = DclConfigObject::OPTION_TYPE_REMOTE;
    original.SetInMib(true);
    original.actionReq = false;
    original.held = true;
    TestObject copy(&original);
    EXPECT_EQ(copy.id, 9u);
    EXPECT_EQ(copy.vlan, 12);
    EXPECT_EQ(&copy.router, &router);
    EXPECT_TRUE(copy.name.empty());
    EXPECT_EQ(copy.optionType, DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_FALSE(copy.GetInMib());
    EXPECT_TRUE(copy.actionReq);
    EXPECT_FALSE(copy.held);
}

TEST_F(DclConfigObjectTest, KeysMatchOnVlanAndId) {
    TestObject a(router, &log);
    TestObject b(router, &log);
    a.vlan = b.vlan = 3;
    a.id = b.id = 4;
    b.value = 99;
    EXPECT_TRUE(a.KeyMatch(&b));
    b.vlan = 2;
    EXPECT_FALSE(a.KeyMatch(&b));
    b.vlan = 3;
    b.id = 5;
    EXPECT_FALSE(a.KeyMatch(&b));
}

TEST_F(DclConfigObjectTest, DebugRowStatusGivesOneLetterPerStatus) {
    EXPECT_EQ(DebugRowStatus(0), 'U');
    EXPECT_EQ(DebugRowStatus(1), 'M');
    EXPECT_EQ(DebugRowStatus(2), 'U');
    EXPECT_EQ(DebugRowStatus(3), 'U');
    EXPECT_EQ(DebugRowStatus(4), 'C');
    EXPECT_EQ(DebugRowStatus(5), 'U');
    EXPECT_EQ(DebugRowStatus(6), 'D');
    EXPECT_EQ(DebugRowStatus(7), 'U');
    EXPECT_EQ(DebugRowStatus(65535), 'U');
}

TEST_F(DclConfigObjectTest, DebugDumpLogsTheBookkeepingAtLevel5) {
    TestObject object(router, &log);
    object.vlan = 5;
    object.id = 17;
    object.DebugDump("BGP_PEERS");
    object.SetInMib(true);
    object.actionReq = false;
    object.destroy = true;
    object.DebugDump("BGP_PEERS");
    ASSERT_EQ(trace.Lines().size(), 2u);
    EXPECT_EQ(trace.Lines()[0].level, 5);
    EXPECT_EQ(trace.Lines()[0].text,
              "BGP_PEERS:: ActionReq: 1 InMib: 0  Vlan: 5   ID: 17 RowStatus C\n");
    EXPECT_EQ(trace.Lines()[1].level, 5);
    EXPECT_EQ(trace.Lines()[1].text,
              "BGP_PEERS:: ActionReq: 0 InMib: 1  Vlan: 5   ID: 17 RowStatus D\n");
}

TEST_F(DclConfigObjectTest, NameFieldsAreTheNumbersAfterUnderscores) {
    TestObject object(router, &log);
    EXPECT_EQ(object.ParseKeyFromName("peer_3_12_7_9", 1), 3);
    EXPECT_EQ(object.ParseNumber("peer_3_12_7_9"), 7);
    EXPECT_EQ(object.ParseSecondIndex("peer_3_12_7_9"), 9);
    EXPECT_EQ(object.ParseId("peer_3_12_7_9"), 12);
    EXPECT_EQ(object.id, 12u);
}

TEST_F(DclConfigObjectTest, NameWithTooFewUnderscoresGivesZero) {
    TestObject object(router, &log);
    object.id = 44;
    EXPECT_EQ(object.ParseKeyFromName("peer_3", 2), 0);
    EXPECT_EQ(object.ParseSecondIndex("peer_3_12_7"), 0);
    EXPECT_EQ(object.ParseNumber("peer_3_12"), 0);
    EXPECT_EQ(object.ParseId("peer"), 0);
    EXPECT_EQ(object.id, 0u) << "the id takes the result even when it is 0";
    EXPECT_EQ(object.ParseKeyFromName(nullptr, 1), 0);
}

TEST_F(DclConfigObjectTest, NameFieldIsTruncatedTo16Bits) {
    TestObject object(router, &log);
    EXPECT_EQ(object.ParseKeyFromName("x_65537", 1), 1);
    EXPECT_EQ(object.ParseKeyFromName("x__5", 1), 0) << "no digits read as 0";
}

TEST_F(DclConfigObjectTest, AfiOptionOneMeansIpv6) {
    TestObject object(router, &log);
    long afi = 0;
    EXPECT_TRUE(object.ParseAfiOption(Load(R"({"afi": 1})"), afi, "afi"));
    EXPECT_EQ(afi, 2);
    EXPECT_TRUE(object.ParseAfiOption(Load(R"({"afi": 0})"), afi, "afi"));
    EXPECT_EQ(afi, 1);
    EXPECT_TRUE(object.ParseAfiOption(Load(R"({"afi": 7})"), afi, "afi"));
    EXPECT_EQ(afi, 1);
    afi = 0;
    EXPECT_FALSE(object.ParseAfiOption(Load(R"({})"), afi, "afi"));
    EXPECT_EQ(afi, 1);
}

TEST_F(DclConfigObjectTest, SafiOptionMapsToTheStackCodes) {
    TestObject object(router, &log);
    long safi = 0;
    EXPECT_FALSE(object.ParseSafiOption(Load(R"({})"), safi, "safi"));
    EXPECT_EQ(safi, 1) << "an absent member reads the fallback 3, which maps to 1";
    EXPECT_TRUE(object.ParseSafiOption(Load(R"({"safi": 0})"), safi, "safi"));
    EXPECT_EQ(safi, 3);
    EXPECT_TRUE(object.ParseSafiOption(Load(R"({"safi": 1})"), safi, "safi"));
    EXPECT_EQ(safi, 128);
    EXPECT_TRUE(object.ParseSafiOption(Load(R"({"safi": 2})"), safi, "safi"));
    EXPECT_EQ(safi, 2);
    EXPECT_TRUE(object.ParseSafiOption(Load(R"({"safi": 3})"), safi, "safi"));
    EXPECT_EQ(safi, 1);
    EXPECT_TRUE(object.ParseSafiOption(Load(R"({"safi": 9})"), safi, "safi"));
    EXPECT_EQ(safi, 1);
}

TEST_F(DclConfigObjectTest, ReadMibIpAddressCopiesFourBytes) {
    OptionsNode node = Load(R"({"addr": "10.1.2.3", "bad": "10.1.2", "v6": "2001:db8::1"})");
    unsigned char out[16];
    std::memset(out, 0xee, sizeof(out));
    unsigned char length = 9;
    EXPECT_TRUE(ReadDCLMibIpAddress(node, "addr", out, length));
    EXPECT_EQ(length, 4);
    EXPECT_EQ(out[0], 10);
    EXPECT_EQ(out[3], 3);
    EXPECT_EQ(out[4], 0xee);

    std::memset(out, 0xee, sizeof(out));
    EXPECT_FALSE(ReadDCLMibIpAddress(node, "bad", out, length));
    EXPECT_EQ(length, 0);
    EXPECT_EQ(out[0], 0xee);
    EXPECT_FALSE(ReadDCLMibIpAddress(node, "missing", out, length));
    EXPECT_EQ(length, 0);
}

TEST_F(DclConfigObjectTest, ReadMibIpv6AddressCopiesSixteenBytes) {
    OptionsNode node = Load(R"({"addr": "2001:db8::1", "bad": "2001:db8::g"})");
    unsigned char out[16];
    std::memset(out, 0xee, sizeof(out));
    unsigned char length = 9;
    EXPECT_TRUE(ReadDCLMibIpv6Address(node, "addr", out, length));
    EXPECT_EQ(length, 16);
    EXPECT_EQ(out[0], 0x20);
    EXPECT_EQ(out[1], 0x01);
    EXPECT_EQ(out[15], 0x01);
    EXPECT_FALSE(ReadDCLMibIpv6Address(node, "bad", out, length));
    EXPECT_EQ(length, 0);
    EXPECT_FALSE(ReadDCLMibIpv6Address(node, "missing", out, length));
    EXPECT_EQ(length, 0);
}

TEST_F(DclConfigObjectTest, ReadMibStringOfAbsentMemberIsEmpty) {
    unsigned char out[128];
    std::memset(out, 'x', sizeof(out));
    unsigned long length = 9;
    EXPECT_TRUE(ReadDCLMibString(Load(R"({})"), "filter", out, length));
    EXPECT_EQ(length, 0ul);
    EXPECT_EQ(out[0], '\0');
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(DclConfigObjectTest, ReadMibStringRefusesAPatternStartingWithMatchAll) {
    unsigned char out[128];
    std::memset(out, 'x', sizeof(out));
    unsigned long length = 9;
    EXPECT_FALSE(ReadDCLMibString(Load(R"({"filter": ".*abc"})"), "filter", out, length));
    EXPECT_EQ(length, 0ul);
    EXPECT_EQ(out[0], '\0');
    ASSERT_EQ(trace.Lines().size(), 1u);
    EXPECT_EQ(trace.Lines()[0].level, 0);
    EXPECT_EQ(trace.Lines()[0].text,
              "ReadDCLMibString: Invalid regex string \".*\" in option filter\n");
}

TEST_F(DclConfigObjectTest, ReadMibStringCopiesShortText) {
    unsigned char out[128];
    std::memset(out, 'x', sizeof(out));
    unsigned long length = 0;
    EXPECT_TRUE(ReadDCLMibString(Load(R"({"filter": "^65000_"})"), "filter", out, length));
    EXPECT_EQ(length, 7ul);
    EXPECT_STREQ(reinterpret_cast<char*>(out), "^65000_");
}

TEST_F(DclConfigObjectTest, ReadMibStringKeeps127CharactersOfALongText) {
    const std::string text(200, 'a');
    const std::string json = "{\"filter\": \"" + text + "\"}";
    unsigned char out[128];
    std::memset(out, 'x', sizeof(out));
    unsigned long length = 0;
    EXPECT_TRUE(ReadDCLMibString(Load(json.c_str()), "filter", out, length));
    EXPECT_EQ(length, 127ul);
    EXPECT_EQ(std::string(reinterpret_cast<char*>(out), 127), std::string(127, 'a'));
    EXPECT_EQ(out[127], '\0') << "the buffer always ends terminated";
}

TEST_F(DclConfigObjectTest, ReadMibValueSetsValueAndPresenceOnlyOnSuccess) {
    OptionsNode node = Load(R"({"metric": 42, "negative": -3, "text": "abc"})");
    long value = 0;
    long present = 0;
    EXPECT_TRUE(ReadDCLMibValue(node, "metric", value, present));
    EXPECT_EQ(value, 42);
    EXPECT_EQ(present, 1);

    value = 7;
    present = 0;
    EXPECT_FALSE(ReadDCLMibValue(node, "missing", value, present));
    EXPECT_FALSE(ReadDCLMibValue(node, "text", value, present));
    EXPECT_EQ(value, 7);
    EXPECT_EQ(present, 0);

    unsigned long unsignedValue = 0;
    EXPECT_TRUE(ReadDCLMibValue(node, "metric", unsignedValue, present));
    EXPECT_EQ(unsignedValue, 42ul);
    EXPECT_EQ(present, 1);
    EXPECT_TRUE(ReadDCLMibValue(node, "negative", value, present));
    EXPECT_EQ(value, -3);
}

}  // namespace
}  // namespace Zavrel
