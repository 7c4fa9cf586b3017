#include "platform/Options.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/OptionsNode.h"

namespace Zavrel {
namespace {

// A document with every kind of value, objects small and large, names that
// are prefixes of each other, an empty name, a name with a NUL byte, and
// values at the edges of every conversion.
std::string VariedDocument() {
    std::string text = R"({
        "int": -12, "uint": 4294967295, "huge": 4294967296, "int64min": -9223372036854775808,
        "uint64max": 18446744073709551615, "zero": 0, "one": 1, "two": 2, "minusone": -1,
        "intmax": 2147483647, "intover": 2147483648, "intmin": -2147483648,
        "real": 5.0, "half": 2.5, "t": true, "f": false, "null": null,
        "text": "vlan", "empty": "", "digits": "42", "tone": "1", "ttrue": "true",
        "array": [1, "x", null, [], {}, [2, [3]], {"a": {"b": false}}],
        "emptyarray": [], "emptyobject": {},
        "": "empty name", "a": 1, "ab": 2, "abc": 3, "b": 4, "a\u0000b": 5,
        "nested": {"enabled": true, "REDISTRIBUTION": {"static": false, "bgp": 1}},
        "large": {)";
    for (int i = 0; i < 40; ++i) {
        if (i != 0) {
            text += ", ";
        }
        text += "\"k" + std::to_string(i * 7 % 40) + "\": " + std::to_string(i);
    }
    text += R"(, "k": "short", "k1x": true, "": 0}
    })";
    return text;
}

// Names to look up in an object: its own members and some it lacks.
std::vector<std::string> NamesToTry(const OptionsNode& object) {
    std::vector<std::string> names = {
        "",    "a",   "ab", "abc",     "abcd",           "k",     "k1", "k39",
        "k40", "k1x", "zz", "enabled", "REDISTRIBUTION", "static"};
    for (OptionsNodeIterator it = object.begin(); it != object.end(); ++it) {
        names.push_back(it.Name().str());
    }
    return names;
}

// Every answer of the document's node (through Options) equals the answer of
// a node made on the jsoncpp value directly, FindMembers included; then the
// same for every child, met in the same order.
void ExpectSameAnswers(const OptionsNode& read, const OptionsNode& plain, const std::string& at) {
    SCOPED_TRACE(at);
    EXPECT_EQ(plain.Value(), read.Value());
    EXPECT_EQ(plain.HasValue(), read.HasValue());
    EXPECT_EQ(plain.IsEmpty(), read.IsEmpty());
    EXPECT_EQ(plain.IsNull(), read.IsNull());
    EXPECT_EQ(plain.IsObject(), read.IsObject());
    EXPECT_EQ(plain.IsArray(), read.IsArray());
    EXPECT_EQ(plain.Size(), read.Size());
    EXPECT_EQ(plain.GetAsString(), read.GetAsString());

    int i1 = 77;
    int i2 = 77;
    EXPECT_EQ(plain.AsVal(i1), read.AsVal(i2));
    EXPECT_EQ(i1, i2);
    EXPECT_EQ(plain.Error(), read.Error());
    unsigned int u1 = 77;
    unsigned int u2 = 77;
    EXPECT_EQ(plain.AsVal(u1), read.AsVal(u2));
    EXPECT_EQ(u1, u2);
    EXPECT_EQ(plain.Error(), read.Error());
    bool b1 = true;
    bool b2 = true;
    EXPECT_EQ(plain.AsVal(b1), read.AsVal(b2));
    EXPECT_EQ(b1, b2);
    EXPECT_EQ(plain.Error(), read.Error());

    if (plain.IsObject()) {
        const std::vector<std::string> names = NamesToTry(plain);
        for (const std::string& name : names) {
            EXPECT_EQ(plain[name.c_str()].Value(), read[name.c_str()].Value()) << name;
            unsigned int v1 = 5;
            unsigned int v2 = 5;
            EXPECT_EQ(plain.GetLeafValue(v1, name.c_str(), 9u),
                      read.GetLeafValue(v2, name.c_str(), 9u))
                << name;
            EXPECT_EQ(v1, v2) << name;
            EXPECT_EQ(plain.Error(), read.Error()) << name;
        }
        std::vector<OptionsNode::Key> keys;
        for (const std::string& name : names) {
            bool seen = false;
            for (const OptionsNode::Key& key : keys) {
                seen = seen || (key.length == name.size() &&
                                name.compare(0, name.size(), key.name, key.length) == 0);
            }
            if (!seen) {
                keys.emplace_back(name.data(), name.size());
            }
        }
        std::vector<OptionsNode> fromPlain(keys.size());
        std::vector<OptionsNode> fromDocument(keys.size());
        plain.FindMembers(keys.data(), fromPlain.data(), keys.size());
        read.FindMembers(keys.data(), fromDocument.data(), keys.size());
        for (size_t k = 0; k < keys.size(); ++k) {
            EXPECT_EQ(fromPlain[k].Value(), fromDocument[k].Value()) << k;
        }
    } else {
        EXPECT_FALSE(read["a"].HasValue());
        int v = 3;
        EXPECT_FALSE(read.GetLeafValue(v, "a", 4));
        EXPECT_EQ(4, v);
    }

    OptionsNodeIterator p = plain.begin();
    OptionsNodeIterator x = read.begin();
    size_t position = 0;
    for (; p != plain.end() && x != read.end(); ++p, ++x, ++position) {
        EXPECT_EQ(p.Name(), x.Name());
        ExpectSameAnswers(*x, *p,
                          at + "/" + std::string(p.Name().str()) + "#" + std::to_string(position));
    }
    EXPECT_TRUE(p == plain.end());
    EXPECT_TRUE(x == read.end());
}

TEST(OptionsDocumentTest, ReadsOfTheDocumentAnswerExactlyAsItsValues) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(string(VariedDocument()))) << options.Error().str();
    ExpectSameAnswers(options.Root(), OptionsNode(&options.Json()), "root");
}

TEST(OptionsDocumentTest, MembersOfLargeAndSmallObjectsAreFoundByName) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(string(VariedDocument())));
    const OptionsNode large = options["large"];
    ASSERT_TRUE(large.IsObject());
    for (int i = 0; i < 40; ++i) {
        const std::string name = "k" + std::to_string(i * 7 % 40);
        int value = -1;
        EXPECT_TRUE(large.GetLeafValue(value, name.c_str(), -1)) << name;
        EXPECT_EQ(i, value) << name;
    }
    EXPECT_FALSE(large["k40"].HasValue());
    EXPECT_EQ(string("short"), large.GetAsString("k"));
    EXPECT_TRUE(large[""].HasValue());
    EXPECT_EQ(string("empty name"), options.Root().GetAsString(""));
}

TEST(OptionsDocumentTest, ANameWithANulByteIsFoundByItsWholeLength) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(string(VariedDocument())));
    const OptionsNode::Key keys[] = {OptionsNode::Key("a\0b", 3), OptionsNode::Key("a")};
    OptionsNode found[2];
    options.Root().FindMembers(keys, found);
    unsigned int value = 0;
    EXPECT_TRUE(found[0].AsVal(value));
    EXPECT_EQ(5u, value);
    EXPECT_TRUE(found[1].AsVal(value));
    EXPECT_EQ(1u, value);
}

TEST(OptionsDocumentTest, CopiesAndMovesReadTheirOwnDocument) {
    Options original;
    ASSERT_TRUE(original.LoadFromText(string(R"({"vid": 7, "BGP": {"enabled": true}})")));
    Options copy(original);
    ASSERT_TRUE(original.LoadFromText(string(R"({"vid": 8})")));
    unsigned int vid = 0;
    EXPECT_TRUE(copy.Root().GetLeafValue(vid, "vid", 0u));
    EXPECT_EQ(7u, vid);
    EXPECT_NE(copy.Root().Value(), original.Root().Value());
    EXPECT_EQ(&copy.Json(), copy.Root().Value());

    Options moved(std::move(copy));
    EXPECT_TRUE(moved.Root().GetLeafValue(vid, "vid", 0u));
    EXPECT_EQ(7u, vid);
    EXPECT_EQ(&moved.Json(), moved.Root().Value());
    bool enabled = false;
    EXPECT_TRUE(moved["BGP"].GetLeafValue(enabled, "enabled", false));
    EXPECT_TRUE(enabled);

    Options assigned;
    assigned = moved;
    EXPECT_TRUE(assigned.Root().GetLeafValue(vid, "vid", 0u));
    EXPECT_EQ(7u, vid);
    EXPECT_EQ(&assigned.Json(), assigned.Root().Value());
    Options target;
    target = std::move(assigned);
    EXPECT_TRUE(target.Root().GetLeafValue(vid, "vid", 0u));
    EXPECT_EQ(7u, vid);
    EXPECT_EQ(&target.Json(), target.Root().Value());
}

TEST(OptionsDocumentTest, AFailedLoadKeepsTheDocument) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(string(R"({"vid": 7})")));
    EXPECT_FALSE(options.LoadFromText(string(R"({"vid": )")));
    unsigned int vid = 0;
    EXPECT_TRUE(options.Root().GetLeafValue(vid, "vid", 0u));
    EXPECT_EQ(7u, vid);
}

TEST(OptionsDocumentTest, DocumentsMadeFromAValueAndEmptyDocumentsAreRead) {
    Json::Value root(Json::objectValue);
    root["x"] = 3;
    const Options made(root);
    int x = 0;
    EXPECT_TRUE(made.Root().GetLeafValue(x, "x", 0));
    EXPECT_EQ(3, x);
    const Options empty;
    EXPECT_TRUE(empty.Root().IsObject());
    EXPECT_TRUE(empty.Root().IsEmpty());
    EXPECT_TRUE(empty.Root().begin() == empty.Root().end());
}

TEST(OptionsDocumentTest, ReadingTheSameDocumentAgainGivesTheSameNodes) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(string(R"({"a": {"b": [1, 2]}, "c": true})")));
    const OptionsNode first = options["a"]["b"];
    const OptionsNode again = options["a"]["b"];
    EXPECT_EQ(first.Value(), again.Value());
    unsigned int sum = 0;
    for (OptionsNodeIterator it = again.begin(); it != again.end(); ++it) {
        unsigned int v = 0;
        EXPECT_TRUE(it->AsVal(v));
        sum += v;
    }
    EXPECT_EQ(3u, sum);
}

}  // namespace
}  // namespace Zavrel
