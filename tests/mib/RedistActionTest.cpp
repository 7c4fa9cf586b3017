#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mib/RedistAction.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class RedistActionTest : public test::RecordingStackEnv {};

TEST_F(RedistActionTest, OutsideTheStackContextPassesSourceBeforeDestination) {
    RedistAction action(1, 1, 3, 0x80000, 7, 5, 99);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_cipr_redist(1, 1, 3, 524288, 5, 0)"});
}

TEST_F(RedistActionTest, InsideTheStackContextPassesTheInstanceFirstAndDestinationBeforeSource) {
    RedistAction action(6, 2, 3, 0xd0000, 7, 32773, 99);
    action.IssueReq(true);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_bld_amb_test_cipr_redist(32773, 6, 2, 851968, 3, 0)"});
}

TEST_F(RedistActionTest, TracesThePriorityButSendsItNowhere) {
    RedistAction action(1, 1, 3, 0x80000, 4242, 5, 99);
    action.IssueReq(false);
    action.IssueReq(true);
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "Redist context = 0 vlan = 5 dest = 80000 src = 3 pri = 4242 row_status = 1 "
                  "admin_status = 1\n",
                  "Redist context = 1 vlan = 5 dest = 80000 src = 3 pri = 4242 row_status = 1 "
                  "admin_status = 1\n"}));
    for (const std::string& call : RecordingStack::Instance().Requests()) {
        EXPECT_EQ(call.find("4242"), std::string::npos) << call;
    }
}

TEST_F(RedistActionTest, DefaultActionIsZeroButForVlanOne) {
    RedistAction action;
    EXPECT_STREQ(action.name, "RedistAction");
    EXPECT_EQ(action.RowStatus(), 0);
    EXPECT_EQ(action.AdminStatus(), 0);
    EXPECT_EQ(action.Source(), 0);
    EXPECT_EQ(action.Destination(), 0);
    EXPECT_EQ(action.Priority(), 0);
    EXPECT_EQ(action.Vlan(), 1ul);
    EXPECT_EQ(action.Extra(), 0ul);
}

TEST_F(RedistActionTest, KeepsTheLastValueWithoutSendingIt) {
    RedistAction action(1, 1, 3, 0x80000, 0, 5, 12345);
    EXPECT_EQ(action.Extra(), 12345ul);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests()[0].find("12345"), std::string::npos);
}

}  // namespace
}  // namespace Zavrel
