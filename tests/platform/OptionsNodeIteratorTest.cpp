#include "platform/OptionsNodeIterator.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Options.h"

namespace Zavrel {
namespace {

class OptionsNodeIteratorTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(options.LoadFromText(string(
            R"({"list": [{"vid": 10}, {"name": "x"}, {"vid": 30}], "obj": {"b": 2, "a": 1},
                "empty": [], "text": "t"})")));
    }
    Options options;
};

TEST_F(OptionsNodeIteratorTest, WalksArrayElementsInDocumentOrder) {
    std::vector<int> vids;
    for (const OptionsNode& element : options["list"]) {
        int vid = -1;
        element.GetLeafValue(vid, "vid", 0);
        vids.push_back(vid);
    }
    EXPECT_EQ((std::vector<int>{10, 0, 30}), vids);
}

TEST_F(OptionsNodeIteratorTest, ArrayElementsHaveNoName) {
    OptionsNode list = options["list"];
    OptionsNodeIterator it = list.begin();
    EXPECT_EQ(string(""), it.Name());
}

TEST_F(OptionsNodeIteratorTest, WalksObjectMembersWithTheirNames) {
    OptionsNode obj = options["obj"];
    std::vector<std::string> names;
    std::vector<std::string> values;
    for (OptionsNodeIterator it = obj.begin(); it != obj.end(); ++it) {
        names.push_back(it.Name().str());
        values.push_back(it->GetAsString().str());
    }
    // jsoncpp keeps object members ordered by name.
    EXPECT_EQ((std::vector<std::string>{"a", "b"}), names);
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), values);
}

TEST_F(OptionsNodeIteratorTest, ElementNodeStartsWithAnEmptyError) {
    OptionsNode list = options["list"];
    OptionsNodeIterator it = list.begin();
    ++it;
    const OptionsNode& element = *it;
    int vid = 5;
    EXPECT_FALSE(element.GetLeafValue(vid, "vid", 0));
    EXPECT_EQ(string("cannot find the node element"), element.Error());
    ++it;
    EXPECT_TRUE(it->Error().empty());
    // Dereferencing again hands out a fresh node.
    it->SetError("x");
    EXPECT_TRUE((*it).Error().empty());
}

TEST_F(OptionsNodeIteratorTest, EmptyArrayAndScalarsAndMissingNodesHaveNoElements) {
    int count = 0;
    for (const OptionsNode& n : options["empty"]) {
        (void)n;
        ++count;
    }
    for (const OptionsNode& n : options["text"]) {
        (void)n;
        ++count;
    }
    for (const OptionsNode& n : options["absent"]) {
        (void)n;
        ++count;
    }
    EXPECT_EQ(0, count);
    EXPECT_TRUE(options["text"].begin() == options["text"].end());
}

TEST_F(OptionsNodeIteratorTest, InvalidIteratorIsInertAndDiffersFromAValidOne) {
    OptionsNodeIterator none;
    ++none;
    EXPECT_EQ(string(""), none.Name());
    EXPECT_FALSE((*none).HasValue());
    EXPECT_TRUE(none == OptionsNodeIterator());
    OptionsNode list = options["list"];
    EXPECT_TRUE(none != list.begin());
    EXPECT_TRUE(list.begin() != none);
}

TEST_F(OptionsNodeIteratorTest, IteratorsOfTheSameArrayCompareByPosition) {
    OptionsNode list = options["list"];
    OptionsNodeIterator a = list.begin();
    OptionsNodeIterator b = list.begin();
    EXPECT_TRUE(a == b);
    ++b;
    EXPECT_TRUE(a != b);
    ++a;
    EXPECT_TRUE(a == b);
    ++a;
    ++a;
    EXPECT_TRUE(a == list.end());
}

}  // namespace
}  // namespace Zavrel
