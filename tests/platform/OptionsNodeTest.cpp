#include "platform/OptionsNode.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/Options.h"

namespace Zavrel {
namespace {

class OptionsNodeTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(options.LoadFromText(string(R"({
            "int": -12,
            "big": 4294967295,
            "huge": 4294967296,
            "negbig": -2147483649,
            "intmin": -2147483648,
            "intmax": 2147483647,
            "int64min": -9223372036854775808,
            "uint64max": 18446744073709551615,
            "minusone": -1,
            "zero": 0,
            "one": 1,
            "two": 2,
            "real": 5.0,
            "half": 2.5,
            "t": true,
            "f": false,
            "null": null,
            "text": "vlan",
            "empty": "",
            "digits": "42",
            "negdigits": "-42",
            "textbig": "4294967295",
            "texthuge": "99999999999999999999999",
            "textintmin": "-2147483648",
            "textintover": "2147483648",
            "plus": "+1",
            "spaced": " 1",
            "hex": "0x10",
            "minus": "-",
            "ttrue": "true",
            "tfalse": "false",
            "tone": "1",
            "tzero": "0",
            "tTRUE": "TRUE",
            "tyes": "yes",
            "array": [1, 2],
            "emptyarray": [],
            "object": {"a": 1},
            "emptyobject": {}
        })")))
            << options.Error().str();
    }

    OptionsNode Node(const char* key) const { return options[key]; }

    Options options;
};

TEST_F(OptionsNodeTest, DefaultNodeHasNoValue) {
    OptionsNode node;
    EXPECT_FALSE(node.HasValue());
    EXPECT_EQ(nullptr, node.Value());
    EXPECT_TRUE(node.IsNull());
    EXPECT_TRUE(node.IsEmpty());
    EXPECT_FALSE(node.IsObject());
    EXPECT_FALSE(node.IsArray());
    EXPECT_EQ(0u, node.Size());
    EXPECT_EQ(string(""), node.GetAsString());
    EXPECT_FALSE(node["x"].HasValue());
}

TEST_F(OptionsNodeTest, MemberLookup) {
    EXPECT_TRUE(Node("int").HasValue());
    EXPECT_FALSE(Node("absent").HasValue());
    EXPECT_FALSE(Node("array")["a"].HasValue());
    EXPECT_FALSE(options.Root()[nullptr].HasValue());
    EXPECT_EQ(string("1"), Node("object").Child("a").GetAsString());
    EXPECT_EQ(&options.Json()["int"], Node("int").Value());
}

TEST_F(OptionsNodeTest, NullAndEmpty) {
    EXPECT_TRUE(Node("null").HasValue());
    EXPECT_TRUE(Node("null").IsNull());
    EXPECT_TRUE(Node("null").IsEmpty());
    EXPECT_TRUE(Node("empty").IsEmpty());
    EXPECT_FALSE(Node("empty").IsNull());
    EXPECT_TRUE(Node("emptyarray").IsEmpty());
    EXPECT_TRUE(Node("emptyobject").IsEmpty());
    EXPECT_FALSE(Node("text").IsEmpty());
    EXPECT_FALSE(Node("zero").IsEmpty());
    EXPECT_FALSE(Node("f").IsEmpty());
    EXPECT_FALSE(Node("array").IsEmpty());
    EXPECT_FALSE(Node("object").IsEmpty());
}

TEST_F(OptionsNodeTest, KindsAndSizes) {
    EXPECT_TRUE(Node("array").IsArray());
    EXPECT_FALSE(Node("array").IsObject());
    EXPECT_TRUE(Node("object").IsObject());
    EXPECT_EQ(2u, Node("array").Size());
    EXPECT_EQ(1u, Node("object").Size());
    EXPECT_EQ(0u, Node("text").Size());
    EXPECT_EQ(39u, options.Root().Size());
}

TEST_F(OptionsNodeTest, GetAsStringOfEveryKind) {
    EXPECT_EQ(string("vlan"), Node("text").GetAsString());
    EXPECT_EQ(string("-12"), Node("int").GetAsString());
    EXPECT_EQ(string("4294967296"), Node("huge").GetAsString());
    EXPECT_EQ(string("2.5"), Node("half").GetAsString());
    EXPECT_EQ(string("true"), Node("t").GetAsString());
    EXPECT_EQ(string("false"), Node("f").GetAsString());
    EXPECT_EQ(string(""), Node("null").GetAsString());
    EXPECT_EQ(string(""), Node("array").GetAsString());
    EXPECT_EQ(string(""), Node("object").GetAsString());
    EXPECT_EQ(string("vlan"), options.Root().GetAsString("text"));
    EXPECT_EQ(string(""), options.Root().GetAsString("absent"));
}

// --- AsVal(int)

TEST_F(OptionsNodeTest, IntFromIntegers) {
    int v = 7;
    EXPECT_TRUE(Node("int").AsVal(v));
    EXPECT_EQ(-12, v);
    EXPECT_TRUE(Node("intmin").AsVal(v));
    EXPECT_EQ(-2147483647 - 1, v);
    EXPECT_TRUE(Node("intmax").AsVal(v));
    EXPECT_EQ(2147483647, v);
}

TEST_F(OptionsNodeTest, IntFromDecimalText) {
    int v = 7;
    EXPECT_TRUE(Node("digits").AsVal(v));
    EXPECT_EQ(42, v);
    EXPECT_TRUE(Node("negdigits").AsVal(v));
    EXPECT_EQ(-42, v);
    EXPECT_TRUE(Node("textintmin").AsVal(v));
    EXPECT_EQ(-2147483647 - 1, v);
}

TEST_F(OptionsNodeTest, IntFailuresKeepTheValueAndExplain) {
    const struct {
        const char* key;
        const char* error;
    } cases[] = {
        {"big", "number 4294967295 is out of range for int"},
        {"negbig", "number -2147483649 is out of range for int"},
        {"int64min", "number -9223372036854775808 is out of range for int"},
        {"uint64max", "number 18446744073709551615 is out of range for int"},
        {"textintover", "number 2147483648 is out of range for int"},
        {"texthuge", "number 99999999999999999999999 is out of range for int"},
        {"real", "cannot convert real number to int"},
        {"half", "cannot convert real number to int"},
        {"t", "cannot convert boolean to int"},
        {"null", "cannot convert null to int"},
        {"array", "cannot convert array to int"},
        {"object", "cannot convert object to int"},
        {"text", "text \"vlan\" is not a decimal number"},
        {"empty", "text \"\" is not a decimal number"},
        {"plus", "text \"+1\" is not a decimal number"},
        {"spaced", "text \" 1\" is not a decimal number"},
        {"hex", "text \"0x10\" is not a decimal number"},
        {"minus", "text \"-\" is not a decimal number"},
    };
    for (const auto& c : cases) {
        int v = 7;
        OptionsNode node = Node(c.key);
        EXPECT_FALSE(node.AsVal(v)) << c.key;
        EXPECT_EQ(7, v) << c.key;
        EXPECT_EQ(string(c.error), node.Error()) << c.key;
    }
}

// --- AsVal(unsigned int)

TEST_F(OptionsNodeTest, UnsignedFromIntegersAndText) {
    unsigned int v = 7;
    EXPECT_TRUE(Node("big").AsVal(v));
    EXPECT_EQ(4294967295u, v);
    EXPECT_TRUE(Node("zero").AsVal(v));
    EXPECT_EQ(0u, v);
    EXPECT_TRUE(Node("textbig").AsVal(v));
    EXPECT_EQ(4294967295u, v);
    EXPECT_TRUE(Node("digits").AsVal(v));
    EXPECT_EQ(42u, v);
}

TEST_F(OptionsNodeTest, UnsignedFailuresKeepTheValueAndExplain) {
    const struct {
        const char* key;
        const char* error;
    } cases[] = {
        {"int", "number -12 is out of range for unsigned int"},
        {"minusone", "number -1 is out of range for unsigned int"},
        {"int64min", "number -9223372036854775808 is out of range for unsigned int"},
        {"uint64max", "number 18446744073709551615 is out of range for unsigned int"},
        {"huge", "number 4294967296 is out of range for unsigned int"},
        {"negdigits", "text \"-42\" is not a decimal number"},
        {"texthuge", "number 99999999999999999999999 is out of range for unsigned int"},
        {"real", "cannot convert real number to unsigned int"},
        {"f", "cannot convert boolean to unsigned int"},
        {"null", "cannot convert null to unsigned int"},
        {"array", "cannot convert array to unsigned int"},
        {"object", "cannot convert object to unsigned int"},
        {"text", "text \"vlan\" is not a decimal number"},
        {"plus", "text \"+1\" is not a decimal number"},
    };
    for (const auto& c : cases) {
        unsigned int v = 7;
        OptionsNode node = Node(c.key);
        EXPECT_FALSE(node.AsVal(v)) << c.key;
        EXPECT_EQ(7u, v) << c.key;
        EXPECT_EQ(string(c.error), node.Error()) << c.key;
    }
}

// --- AsVal(bool)

TEST_F(OptionsNodeTest, BoolFromBooleansNumbersAndTexts) {
    const struct {
        const char* key;
        bool value;
    } cases[] = {
        {"t", true},     {"f", false},      {"one", true},  {"zero", false},
        {"ttrue", true}, {"tfalse", false}, {"tone", true}, {"tzero", false},
    };
    for (const auto& c : cases) {
        bool v = !c.value;
        EXPECT_TRUE(Node(c.key).AsVal(v)) << c.key;
        EXPECT_EQ(c.value, v) << c.key;
    }
}

TEST_F(OptionsNodeTest, BoolFailuresKeepTheValueAndExplain) {
    const struct {
        const char* key;
        const char* error;
    } cases[] = {
        {"two", "number 2 is not 0 or 1"},
        {"int", "number -12 is not 0 or 1"},
        {"minusone", "number -1 is not 0 or 1"},
        {"int64min", "number -9223372036854775808 is not 0 or 1"},
        {"uint64max", "number 18446744073709551615 is not 0 or 1"},
        {"real", "cannot convert real number to bool"},
        {"null", "cannot convert null to bool"},
        {"array", "cannot convert array to bool"},
        {"object", "cannot convert object to bool"},
        {"tTRUE", "text \"TRUE\" is not a boolean"},
        {"tyes", "text \"yes\" is not a boolean"},
        {"empty", "text \"\" is not a boolean"},
    };
    for (const auto& c : cases) {
        bool v = true;
        OptionsNode node = Node(c.key);
        EXPECT_FALSE(node.AsVal(v)) << c.key;
        EXPECT_TRUE(v) << c.key;
        EXPECT_EQ(string(c.error), node.Error()) << c.key;
    }
}

TEST_F(OptionsNodeTest, AsValOfANodeWithoutValue) {
    int i = 3;
    unsigned int u = 3;
    bool b = true;
    OptionsNode node;
    EXPECT_FALSE(node.AsVal(i));
    EXPECT_FALSE(node.AsVal(u));
    EXPECT_FALSE(node.AsVal(b));
    EXPECT_EQ(3, i);
    EXPECT_EQ(3u, u);
    EXPECT_TRUE(b);
    EXPECT_EQ(string("cannot find the node element"), node.Error());
}

// --- GetLeafValue

TEST_F(OptionsNodeTest, GetLeafValueReadsAMember) {
    OptionsNode root = options.Root();
    int i = 0;
    unsigned int u = 0;
    bool b = false;
    EXPECT_TRUE(root.GetLeafValue(i, "int", 5));
    EXPECT_EQ(-12, i);
    EXPECT_TRUE(root.GetLeafValue(u, "big", 5u));
    EXPECT_EQ(4294967295u, u);
    EXPECT_TRUE(root.GetLeafValue(b, "t", false));
    EXPECT_TRUE(b);
    EXPECT_TRUE(root.Error().empty());
}

TEST_F(OptionsNodeTest, GetLeafValueOnAnArrayNodeFailsWithWrongTypeAndGivesTheFallback) {
    OptionsNode array = Node("array");
    int v = 1;
    EXPECT_FALSE(array.GetLeafValue(v, "a", 99));
    EXPECT_EQ(99, v);
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), array.Error());
}

TEST_F(OptionsNodeTest, GetLeafValueOnANodeWithoutValueFailsWithWrongType) {
    OptionsNode none;
    unsigned int v = 1;
    EXPECT_FALSE(none.GetLeafValue(v, "a", 5u));
    EXPECT_EQ(5u, v);
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), none.Error());
    OptionsNode text = Node("text");
    bool b = false;
    EXPECT_FALSE(text.GetLeafValue(b, "a", true));
    EXPECT_TRUE(b);
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), text.Error());
}

TEST_F(OptionsNodeTest, GetLeafValueOfANullMemberFailsWithNotFoundAndGivesTheFallback) {
    OptionsNode root = options.Root();
    int v = 1;
    EXPECT_FALSE(root.GetLeafValue(v, "null", 42));
    EXPECT_EQ(42, v);
    EXPECT_EQ(string("cannot find the node element"), root.Error());
}

TEST_F(OptionsNodeTest, GetLeafValueOfAMissingMemberFailsWithNotFound) {
    OptionsNode root = options.Root();
    bool v = true;
    EXPECT_FALSE(root.GetLeafValue(v, "absent", false));
    EXPECT_FALSE(v);
    EXPECT_EQ(string("cannot find the node element"), root.Error());
    int i = 1;
    EXPECT_FALSE(root.GetLeafValue(i, nullptr, 0));
    EXPECT_EQ(0, i);
}

TEST_F(OptionsNodeTest, GetLeafValueOfAnUnconvertibleMemberGivesTheFallbackAndTheReason) {
    OptionsNode root = options.Root();
    int v = 1;
    EXPECT_FALSE(root.GetLeafValue(v, "text", 3));
    EXPECT_EQ(3, v);
    EXPECT_EQ(string("text \"vlan\" is not a decimal number"), root.Error());
    unsigned int u = 1;
    EXPECT_FALSE(root.GetLeafValue(u, "huge", 4u));
    EXPECT_EQ(4u, u);
    EXPECT_EQ(string("number 4294967296 is out of range for unsigned int"), root.Error());
}

TEST_F(OptionsNodeTest, TheLatestFailedReadGivesTheErrorWhetherItsTextIsFixedOrFormatted) {
    OptionsNode root = options.Root();
    int v = 0;
    EXPECT_FALSE(root.GetLeafValue(v, "absent", 0));
    EXPECT_FALSE(root.GetLeafValue(v, "text", 0));
    EXPECT_EQ(string("text \"vlan\" is not a decimal number"), root.Error());
    EXPECT_FALSE(root.GetLeafValue(v, "absent", 0));
    EXPECT_EQ(string("cannot find the node element"), root.Error());
    root.SetError("custom");
    EXPECT_EQ(string("custom"), root.Error());
    OptionsNode array = Node("array");
    EXPECT_FALSE(array.GetLeafValue(v, "a", 0));
    const OptionsNode copy = array;
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), copy.Error());
    EXPECT_EQ(string("Incorrect Node type for Object or Array operations"), array.Error());
}

// --- FindMembers

TEST_F(OptionsNodeTest, FindMembersFindsWhatTheLookupOfEachKeyFinds) {
    static constexpr OptionsNode::Key KEYS[] = {"text", "absent", "null", "object", "int", "t"};
    OptionsNode found[6];
    const OptionsNode root = options.Root();
    root.FindMembers(KEYS, found);
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(root[KEYS[i].name].Value(), found[i].Value()) << KEYS[i].name;
    }
    EXPECT_TRUE(found[0].HasValue());
    EXPECT_FALSE(found[1].HasValue());
    EXPECT_TRUE(found[2].HasValue());
    EXPECT_TRUE(found[2].IsNull());
    int i = 0;
    EXPECT_TRUE(found[4].AsVal(i));
    EXPECT_EQ(-12, i);
}

TEST_F(OptionsNodeTest, FindMembersMatchesWholeNamesOnly) {
    static constexpr OptionsNode::Key KEYS[] = {"tex", "texts", "TEXT", "in"};
    OptionsNode found[4];
    options.Root().FindMembers(KEYS, found);
    for (const OptionsNode& node : found) {
        EXPECT_FALSE(node.HasValue());
    }
}

TEST_F(OptionsNodeTest, FindMembersOfANodeThatIsNoObjectFindsNothing) {
    static constexpr OptionsNode::Key KEYS[] = {"a"};
    OptionsNode found[1] = {options.Root()};
    Node("array").FindMembers(KEYS, found);
    EXPECT_FALSE(found[0].HasValue());
    found[0] = options.Root();
    OptionsNode().FindMembers(KEYS, found);
    EXPECT_FALSE(found[0].HasValue());
    found[0] = options.Root();
    Node("text").FindMembers(KEYS, found);
    EXPECT_FALSE(found[0].HasValue());
    found[0] = options.Root();
    Node("object").FindMembers(KEYS, found);
    EXPECT_TRUE(found[0].HasValue());
}

TEST_F(OptionsNodeTest, FindMembersTakesKeysOfAnyLengthAndAnEmptyName) {
    Options doc;
    ASSERT_TRUE(doc.LoadFromText(string(R"({"": 1, "a": 2, "a_rather_long_member_name": 3})")));
    const OptionsNode::Key keys[] = {OptionsNode::Key("a_rather_long_member_name"),
                                     OptionsNode::Key("", 0), OptionsNode::Key("ab", 1)};
    OptionsNode found[3];
    doc.Root().FindMembers(keys, found);
    unsigned int v = 0;
    EXPECT_TRUE(found[0].AsVal(v));
    EXPECT_EQ(3u, v);
    EXPECT_TRUE(found[1].AsVal(v));
    EXPECT_EQ(1u, v);
    EXPECT_TRUE(found[2].AsVal(v));  // the key is the first letter only
    EXPECT_EQ(2u, v);
    EXPECT_EQ(doc.Root()[""].Value(), found[1].Value());
}

TEST_F(OptionsNodeTest, FindMembersLeavesTheFoundNodesErrorsAlone) {
    static constexpr OptionsNode::Key KEYS[] = {"int"};
    OptionsNode found[1];
    found[0].SetError("kept");
    options.Root().FindMembers(KEYS, found);
    EXPECT_TRUE(found[0].HasValue());
    EXPECT_EQ(string("kept"), found[0].Error());
}

TEST_F(OptionsNodeTest, ErrorCanBeSetOnAConstNode) {
    const OptionsNode node = Node("int");
    node.SetError("custom");
    EXPECT_EQ(string("custom"), node.Error());
}

TEST_F(OptionsNodeTest, CopiedNodeViewsTheSameValue) {
    OptionsNode a = Node("object");
    OptionsNode b = a;
    EXPECT_EQ(a.Value(), b.Value());
}

}  // namespace
}  // namespace Zavrel
