#include "platform/MemberSet.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/ConsoleSession.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class MemberSetTest : public test::TestEnv {
protected:
    int Debug(std::vector<const char*> words) {
        std::vector<char*> argv;
        for (const char* w : words) {
            argv.push_back(const_cast<char*>(w));
        }
        ConsoleSession session(console);
        return HandleDebugCommand(&session, static_cast<int>(argv.size()), argv.data(), set,
                                  "trace_set");
    }

    MemberSet set;
};

TEST_F(MemberSetTest, StartsWithNothingSelected) {
    EXPECT_FALSE(set.Any());
    EXPECT_EQ(0u, set.Bits());
    EXPECT_FALSE(set.IsSelected(0));
}

TEST_F(MemberSetTest, SelectAndDeselectLevels) {
    set.Select(3);
    set.Select(31);
    EXPECT_TRUE(set.IsSelected(3));
    EXPECT_TRUE(set.IsSelected(31));
    EXPECT_FALSE(set.IsSelected(4));
    EXPECT_EQ(0x80000008u, set.Bits());
    set.Deselect(3);
    EXPECT_FALSE(set.IsSelected(3));
    set.SelectAll();
    EXPECT_EQ(0xffffffffu, set.Bits());
    set.Clear();
    EXPECT_FALSE(set.Any());
}

TEST_F(MemberSetTest, LevelsOutsideTheSetAreIgnored) {
    set.Select(32);
    set.Select(-1);
    EXPECT_FALSE(set.Any());
    set.SelectAll();
    EXPECT_FALSE(set.IsSelected(32));
    EXPECT_FALSE(set.IsSelected(-1));
    set.Deselect(40);
    EXPECT_EQ(0xffffffffu, set.Bits());
}

TEST_F(MemberSetTest, MemberTraceWritesOnlySelectedLevels) {
    set.Select(3);
    member_TRACE(set, 3, "%s, size=%zu\n", "queue", static_cast<size_t>(2));
    member_TRACE(set, 5, "not selected\n");
    ASSERT_EQ(1u, trace.Lines().size());
    EXPECT_EQ(3, trace.Lines()[0].level);
    EXPECT_EQ("queue, size=2\n", trace.Lines()[0].text);
}

TEST_F(MemberSetTest, MemberTraceIsOneStatement) {
    set.Select(1);
    if (set.Any())
        member_TRACE(set, 1, "in if\n");
    else
        member_TRACE(set, 1, "in else\n");
    EXPECT_EQ((std::vector<std::string>{"in if\n"}), trace.Texts());
}

TEST_F(MemberSetTest, DebugWithNoWordsShowsTheSet) {
    EXPECT_EQ(0, Debug({}));
    EXPECT_EQ("trace_set: off\n", console.Output());
}

TEST_F(MemberSetTest, DebugSelectsLevelsAndShowsThemAscending) {
    EXPECT_EQ(0, Debug({"5", "3"}));
    EXPECT_EQ("trace_set: 3 5\n", console.Output());
    EXPECT_TRUE(set.IsSelected(3));
    EXPECT_TRUE(set.IsSelected(5));
}

TEST_F(MemberSetTest, DebugMinusLevelDeselects) {
    set.Select(3);
    set.Select(5);
    EXPECT_EQ(0, Debug({"-3"}));
    EXPECT_EQ("trace_set: 5\n", console.Output());
}

TEST_F(MemberSetTest, DebugAllSelectsEveryLevel) {
    EXPECT_EQ(0, Debug({"ALL"}));
    EXPECT_EQ(0xffffffffu, set.Bits());
    EXPECT_EQ(
        "trace_set: 0 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26 27 28 "
        "29 30 31\n",
        console.Output());
}

TEST_F(MemberSetTest, DebugOffAndNoneClear) {
    set.SelectAll();
    EXPECT_EQ(0, Debug({"off"}));
    EXPECT_FALSE(set.Any());
    set.Select(2);
    EXPECT_EQ(0, Debug({"none", "7"}));
    EXPECT_EQ(0x80u, set.Bits());
    EXPECT_EQ("trace_set: off\ntrace_set: 7\n", console.Output());
}

TEST_F(MemberSetTest, DebugWordsApplyInOrder) {
    EXPECT_EQ(0, Debug({"all", "-0", "-31", "off", "10"}));
    EXPECT_EQ("trace_set: 10\n", console.Output());
}

TEST_F(MemberSetTest, DebugBadWordPrintsUsageAndChangesNothing) {
    set.Select(4);
    for (const char* bad : {"32", "-32", "x", "", "-", "3x", "+3", "100", "-all"}) {
        console.Clear();
        EXPECT_EQ(1, Debug({"1", bad})) << bad;
        EXPECT_EQ("Usage: debug <level>|-<level>|all|off ...\n", console.Output()) << bad;
        EXPECT_EQ(0x10u, set.Bits()) << bad;
    }
}

TEST_F(MemberSetTest, DebugWithoutSessionStillChangesTheSet) {
    char word[] = "2";
    char* argv[] = {word};
    EXPECT_EQ(0, HandleDebugCommand(nullptr, 1, argv, set, "trace_set"));
    EXPECT_TRUE(set.IsSelected(2));
}

}  // namespace
}  // namespace Zavrel
