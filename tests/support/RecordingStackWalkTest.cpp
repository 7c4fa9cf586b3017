// Table walks kept by the recording double and answered by the test.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

// What a walk callback saw, and what it answers.
struct Listener {
    std::vector<std::string> seen;
    unsigned char reply = 1;
    // Starts another walk from inside the callback when set.
    bool startEaWalk = false;
};

unsigned char Listen(void* context, unsigned long first, unsigned long code, void* row) {
    auto* listener = static_cast<Listener*>(context);
    std::string text = "first=" + std::to_string(first) + " code=" + std::to_string(code);
    if (row != nullptr) {
        text += " if=" + std::to_string(static_cast<amb_stubs_i3_ei*>(row)->if_index);
    }
    listener->seen.push_back(text);
    if (listener->startEaWalk) {
        listener->startEaWalk = false;
        sms_get_next_i3_ea(9, Listen, listener);
    }
    return listener->reply;
}

class RecordingStackWalkTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        stack.Reset();
    }
    RecordingStack& stack = RecordingStack::Instance();
};

TEST_F(RecordingStackWalkTest, EachWalkRequestIsKeptWithItsTableInstanceCallbackAndContext) {
    Listener a, b, c, d;
    sms_get_next_rtm_route(5, Listen, &a);
    sms_get_next_rtm_rib(32773, Listen, &b);
    sms_get_next_i3_ei(1, Listen, &c);
    sms_get_next_i3_ea(2, Listen, &d);
    const auto& walks = stack.PendingWalks();
    ASSERT_EQ(walks.size(), 4u);
    EXPECT_EQ(walks[0].table, "rtm_route");
    EXPECT_EQ(walks[0].instance, 5u);
    EXPECT_EQ(walks[0].callback, &Listen);
    EXPECT_EQ(walks[0].context, &a);
    EXPECT_EQ(walks[1].table, "rtm_rib");
    EXPECT_EQ(walks[1].instance, 32773u);
    EXPECT_EQ(walks[1].context, &b);
    EXPECT_EQ(walks[2].table, "i3_ei");
    EXPECT_EQ(walks[2].context, &c);
    EXPECT_EQ(walks[3].table, "i3_ea");
    EXPECT_EQ(walks[3].instance, 2u);
    EXPECT_EQ(walks[3].context, &d);
}

TEST_F(RecordingStackWalkTest, WalkIsKeptEvenWhenItsRequestIsAnsweredWithAFailure) {
    stack.SetResult("sms_get_next_rtm_route", 1);
    Listener a;
    EXPECT_EQ(sms_get_next_rtm_route(5, Listen, &a), 1u);
    EXPECT_EQ(stack.PendingWalks().size(), 1u);
}

TEST_F(RecordingStackWalkTest, RowsGoToTheCallbackWithFirstZeroAndTheWalkStaysWhileItAnswersTrue) {
    Listener a;
    sms_get_next_i3_ei(5, Listen, &a);
    amb_stubs_i3_ei row{};
    row.if_index = 100;
    EXPECT_EQ(stack.Answer(SMS_RC_ROW, &row), 1);
    row.if_index = 101;
    EXPECT_EQ(stack.Answer(SMS_RC_ROW, &row), 1);
    EXPECT_EQ(a.seen, (std::vector<std::string>{"first=0 code=1 if=100", "first=0 code=1 if=101"}));
    EXPECT_EQ(stack.PendingWalks().size(), 1u);
}

TEST_F(RecordingStackWalkTest, EndOfTableHandsNoRowAndDropsTheWalk) {
    Listener a;
    sms_get_next_i3_ei(5, Listen, &a);
    EXPECT_EQ(stack.Answer(SMS_RC_END_OF_TABLE, nullptr), 1);
    EXPECT_EQ(a.seen, (std::vector<std::string>{"first=0 code=7"}));
    EXPECT_TRUE(stack.PendingWalks().empty());
}

TEST_F(RecordingStackWalkTest, AnErrorCodeDropsTheWalkWhateverTheCallbackAnswers) {
    Listener a;
    sms_get_next_rtm_rib(5, Listen, &a);
    EXPECT_EQ(stack.Answer(SMS_RC_GEN_ERROR, nullptr), 1);
    EXPECT_TRUE(stack.PendingWalks().empty());
}

TEST_F(RecordingStackWalkTest, PassOverKeepsTheWalkGoing) {
    Listener a;
    sms_get_next_rtm_route(5, Listen, &a);
    EXPECT_EQ(stack.Answer(SMS_RC_PASS_OVER, nullptr), 1);
    EXPECT_EQ(stack.PendingWalks().size(), 1u);
    EXPECT_EQ(a.seen, (std::vector<std::string>{"first=0 code=12"}));
}

TEST_F(RecordingStackWalkTest, CallbackAnsweringFalseEndsTheWalk) {
    Listener a;
    a.reply = 0;
    sms_get_next_rtm_route(5, Listen, &a);
    amb_cipr_rtm_route row{};
    EXPECT_EQ(stack.Answer(SMS_RC_ROW, &row), 0);
    EXPECT_TRUE(stack.PendingWalks().empty());
}

TEST_F(RecordingStackWalkTest, OnlyTheLowByteOfTheAnswerCountsAndAWholeByteIsReturned) {
    Listener a;
    a.reply = 0xff;
    sms_get_next_rtm_route(5, Listen, &a);
    amb_cipr_rtm_route row{};
    EXPECT_EQ(stack.Answer(SMS_RC_ROW, &row), 0xff);
    EXPECT_EQ(stack.PendingWalks().size(), 1u);
}

TEST_F(RecordingStackWalkTest, AnswersGoToTheOldestWalkFirst) {
    Listener a, b;
    sms_get_next_rtm_route(5, Listen, &a);
    sms_get_next_rtm_rib(6, Listen, &b);
    stack.Answer(SMS_RC_END_OF_TABLE, nullptr);
    stack.Answer(SMS_RC_END_OF_TABLE, nullptr);
    EXPECT_EQ(a.seen.size(), 1u);
    EXPECT_EQ(b.seen.size(), 1u);
    EXPECT_TRUE(stack.PendingWalks().empty());
}

TEST_F(RecordingStackWalkTest, WalkStartedFromInsideACallbackQueuesBehindTheRunningOne) {
    Listener a;
    a.startEaWalk = true;
    sms_get_next_i3_ei(5, Listen, &a);
    amb_stubs_i3_ei row{};
    row.if_index = 3;
    stack.Answer(SMS_RC_ROW, &row);
    ASSERT_EQ(stack.PendingWalks().size(), 2u);
    EXPECT_EQ(stack.PendingWalks()[0].table, "i3_ei");
    EXPECT_EQ(stack.PendingWalks()[1].table, "i3_ea");
    EXPECT_EQ(stack.PendingWalks()[1].instance, 9u);
    stack.Answer(SMS_RC_END_OF_TABLE, nullptr);
    ASSERT_EQ(stack.PendingWalks().size(), 1u);
    EXPECT_EQ(stack.PendingWalks()[0].table, "i3_ea");
}

TEST_F(RecordingStackWalkTest, AnsweringWithNoPendingWalkCallsNothingAndGivesZero) {
    EXPECT_EQ(stack.Answer(SMS_RC_END_OF_TABLE, nullptr), 0);
    EXPECT_TRUE(stack.Calls().empty());
}

TEST_F(RecordingStackWalkTest, WalkWithoutCallbackIsDroppedOnItsFirstAnswer) {
    sms_get_next_i3_ea(5, nullptr, nullptr);
    EXPECT_EQ(stack.Answer(SMS_RC_ROW, nullptr), 0);
    EXPECT_TRUE(stack.PendingWalks().empty());
}

TEST_F(RecordingStackWalkTest, TestMayQueueAWalkOfItsOwn) {
    Listener a;
    stack.AddWalk(RecordingStack::Walk{"rtm_rib", 4, Listen, &a});
    stack.Answer(SMS_RC_END_OF_TABLE, nullptr);
    EXPECT_EQ(a.seen, (std::vector<std::string>{"first=0 code=7"}));
    EXPECT_TRUE(stack.Calls().empty());
}

}  // namespace
}  // namespace Zavrel::test
