#include "config/ConfigParser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

// Records every call the walk makes.
class RecordingParser : public ConfigParser {
public:
    RecordingParser() = default;
    explicit RecordingParser(const char* section) : ConfigParser(section) {}

    bool ParseVlanOptions(unsigned short vlan, const OptionsNode& node) override {
        std::string text = node.HasValue() ? node.GetAsString("value").str() : "<none>";
        calls.push_back("vlan " + std::to_string(vlan) + " " + text);
        bool result = results.empty() ? true : results.front();
        if (!results.empty()) {
            results.erase(results.begin());
        }
        return result;
    }
    bool ParseKeys(unsigned short vlan, const OptionsNode& record) override {
        calls.push_back("keys " + std::to_string(vlan) + " " + record.GetAsString("vid").str());
        return false;
    }

    std::vector<std::string> calls;
    std::vector<bool> results;
};

// A parser that keeps the base ParseKeys.
class PlainParser : public ConfigParser {
public:
    bool ParseVlanOptions(unsigned short, const OptionsNode&) override { return true; }
    using ConfigParser::ParseKeys;
};

class ConfigParserTest : public test::TestEnv {
protected:
    Options Load(const char* text) {
        Options options;
        EXPECT_TRUE(options.LoadFromText(string(text))) << options.Error().c_str();
        return options;
    }
};

TEST_F(ConfigParserTest, DefaultSectionIsVlanConfigurations) {
    RecordingParser parser;
    EXPECT_STREQ("VLAN_CONFIGURATIONS", parser.Section());
}

TEST_F(ConfigParserTest, GivenSectionPointerIsKept) {
    const char* name = "REMOTES";
    RecordingParser parser(name);
    EXPECT_EQ(name, parser.Section());
}

TEST_F(ConfigParserTest, NullSubsectionFailsAtOnce) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{"vid":1}]})");
    RecordingParser parser;
    EXPECT_FALSE(parser.ParseOptions(nullptr, options));
    EXPECT_TRUE(parser.calls.empty());
}

TEST_F(ConfigParserTest, MissingOrEmptySectionFails) {
    RecordingParser parser;
    EXPECT_FALSE(parser.ParseOptions("BGP", Load(R"({"OTHER":[{"vid":1}]})")));
    EXPECT_FALSE(parser.ParseOptions("BGP", Load(R"({"VLAN_CONFIGURATIONS":[]})")));
    EXPECT_TRUE(parser.calls.empty());
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(ConfigParserTest, RecordsAreHandedOverInDocumentOrderWithTheirSubsection) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[
        {"vid":12, "BGP":{"value":"a"}},
        {"vid":5, "BGP":{"value":"b"}},
        {"vid":7}]})");
    RecordingParser parser;
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    std::vector<std::string> expected = {"vlan 12 a", "keys 12 12",    "vlan 5 b",
                                         "keys 5 5",  "vlan 7 <none>", "keys 7 7"};
    EXPECT_EQ(expected, parser.calls);
}

TEST_F(ConfigParserTest, ResultIsThatOfTheLastSubsectionCall) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{"vid":1},{"vid":2}]})");
    RecordingParser parser;
    parser.results = {true, false};
    EXPECT_FALSE(parser.ParseOptions("BGP", options));

    RecordingParser second;
    second.results = {false, true};
    EXPECT_TRUE(second.ParseOptions("BGP", options));
}

TEST_F(ConfigParserTest, RecordWithoutVidLogsOneLineAndTheOthersAreStillParsed) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{"vid":3},{"name":"x"},{"vid":4}]})");
    RecordingParser parser;
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    std::vector<std::string> expected = {"vlan 3 <none>", "keys 3 3", "vlan 4 <none>", "keys 4 4"};
    EXPECT_EQ(expected, parser.calls);
    ASSERT_EQ(1u, trace.Lines().size());
    EXPECT_EQ(0, trace.Lines()[0].level);
    EXPECT_EQ("Failed to get VLAN id: cannot find the node element\n", trace.Lines()[0].text);
}

TEST_F(ConfigParserTest, RecordFailingBeforeTheCallDoesNotChangeTheResult) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{"vid":3},{"vid":null}]})");
    RecordingParser parser;
    parser.results = {true};
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    EXPECT_TRUE(trace.Contains(0, "Failed to get VLAN id: cannot find the node element\n"));
}

TEST_F(ConfigParserTest, EmptyRecordIsReportedInvalidAndSkipped) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{},{"vid":9}]})");
    RecordingParser parser;
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    std::vector<std::string> expected = {"vlan 9 <none>", "keys 9 9"};
    EXPECT_EQ(expected, parser.calls);
    ASSERT_EQ(1u, trace.Lines().size());
    EXPECT_EQ(0, trace.Lines()[0].level);
    EXPECT_EQ("This option item is invalid\n", trace.Lines()[0].text);
}

TEST_F(ConfigParserTest, RecordThatIsNotAnObjectCannotGiveAVlan) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[[1,2],{"vid":9}]})");
    RecordingParser parser;
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    EXPECT_TRUE(trace.Contains(
        0, "Failed to get VLAN id: Incorrect Node type for Object or Array operations\n"));
    ASSERT_EQ(2u, parser.calls.size());
}

TEST_F(ConfigParserTest, VlanNumberKeepsOnlyTheLowSixteenBits) {
    Options options = Load(R"({"VLAN_CONFIGURATIONS":[{"vid":65537}]})");
    RecordingParser parser;
    EXPECT_TRUE(parser.ParseOptions("BGP", options));
    ASSERT_FALSE(parser.calls.empty());
    EXPECT_EQ("vlan 1 <none>", parser.calls[0]);
}

TEST_F(ConfigParserTest, BaseParseKeysReturnsTrue) {
    Options options = Load(R"({"vid":1})");
    PlainParser parser;
    EXPECT_TRUE(parser.ParseKeys(1, options.Root()));
}

// The leaf reader the walk uses for "vid".
class LeafValueTest : public test::TestEnv {};

TEST_F(LeafValueTest, ReadingFromAnArrayFailsWithTheNodeTypeErrorAndGivesTheFallback) {
    Json::Value array(Json::arrayValue);
    array.append(1);
    OptionsNode node(&array);
    int value = 3;
    EXPECT_FALSE(node.GetLeafValue<int>(value, "vid", 17));
    EXPECT_EQ(17, value);
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), node.Error());
}

TEST_F(LeafValueTest, NullMemberFailsAsMissingAndGivesTheFallback) {
    Json::Value object(Json::objectValue);
    object["vid"] = Json::Value();
    OptionsNode node(&object);
    unsigned int value = 3;
    EXPECT_FALSE(node.GetLeafValue<unsigned int>(value, "vid", 9u));
    EXPECT_EQ(9u, value);
    EXPECT_EQ(string("cannot find the node element"), node.Error());
    bool flag = false;
    EXPECT_FALSE(node.GetLeafValue<bool>(flag, "other", true));
    EXPECT_TRUE(flag);
}

TEST_F(LeafValueTest, PresentMemberIsConverted) {
    Json::Value object(Json::objectValue);
    object["vid"] = 12;
    OptionsNode node(&object);
    int value = 0;
    EXPECT_TRUE(node.GetLeafValue<int>(value, "vid", 5));
    EXPECT_EQ(12, value);
}

class GetVlanFromGroupTest : public test::TestEnv {
protected:
    bool Get(const char* name, unsigned short* vlan) {
        Json::Value value(Json::objectValue);
        value["Name"] = name;
        OptionsNode node(&value);
        return ConfigParser::GetVlanFromGroup("remote", node, vlan);
    }
};

TEST_F(GetVlanFromGroupTest, NameWithVlanAndMoreTextGivesTheVlan) {
    unsigned short vlan = 0;
    EXPECT_TRUE(Get("Remote_12_x", &vlan));
    EXPECT_EQ(12, vlan);
}

TEST_F(GetVlanFromGroupTest, BarePrefixSucceedsAndLeavesTheVlanAlone) {
    unsigned short vlan = 77;
    EXPECT_TRUE(Get("remote", &vlan));
    EXPECT_EQ(77, vlan);
}

TEST_F(GetVlanFromGroupTest, DigitsRightAfterThePrefixFail) {
    unsigned short vlan = 77;
    EXPECT_FALSE(Get("remote12", &vlan));
    EXPECT_EQ(77, vlan);
}

TEST_F(GetVlanFromGroupTest, GarbageAfterTheNumberFails) {
    unsigned short vlan = 77;
    EXPECT_FALSE(Get("remote_12x", &vlan));
    EXPECT_EQ(77, vlan);
}

TEST_F(GetVlanFromGroupTest, ColonSeparatorsAreAccepted) {
    unsigned short vlan = 0;
    EXPECT_TRUE(Get("REMOTE:30:site", &vlan));
    EXPECT_EQ(30, vlan);
}

TEST_F(GetVlanFromGroupTest, NumbersAreNotRangeCheckedAndWrapAtSixteenBits) {
    unsigned short vlan = 5;
    EXPECT_TRUE(Get("remote_0", &vlan));
    EXPECT_EQ(0, vlan);
    EXPECT_TRUE(Get("remote_70000", &vlan));
    EXPECT_EQ(70000 - 65536, vlan);
}

TEST_F(GetVlanFromGroupTest, EmptyDigitRunGivesZero) {
    unsigned short vlan = 5;
    EXPECT_TRUE(Get("remote_", &vlan));
    EXPECT_EQ(0, vlan);
}

TEST_F(GetVlanFromGroupTest, OtherPrefixOrMissingNameFails) {
    unsigned short vlan = 5;
    EXPECT_FALSE(Get("local_1", &vlan));
    Json::Value value(Json::objectValue);
    OptionsNode node(&value);
    EXPECT_FALSE(ConfigParser::GetVlanFromGroup("remote", node, &vlan));
    EXPECT_EQ(5, vlan);
}

}  // namespace
}  // namespace Zavrel
