#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mib/IPv4AddressAction.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class IPv4AddressActionTest : public test::RecordingStackEnv {};

TEST_F(IPv4AddressActionTest, SendsTheAddressWithTheVlanAndPrefixLengthOfTheMask) {
    IPv4AddressAction action(1, 5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)"});
}

TEST_F(IPv4AddressActionTest, NonContiguousMaskCountsItsBits) {
    IPv4AddressAction action(1, 5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 0, 255, 0));
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 16)"});
}

TEST_F(IPv4AddressActionTest, UsesTheSameCallInsideTheStackContext) {
    IPv4AddressAction action(6, 7, 3, Ip4Addr(192, 168, 0, 9), Ip4Addr(255, 255, 0, 0));
    action.IssueReq(true);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(6, 7, 1, 3, 192.168.0.9, 16)"});
}

TEST_F(IPv4AddressActionTest, TracesTheRequestAtLevelFive) {
    IPv4AddressAction action(1, 5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    action.IssueReq(false);
    action.IssueReq(true);
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "AddressAction: shared_context = 0 row_status = 1 vlan = 5 if_index = 100 "
                  "address = 10.0.0.1\n",
                  "AddressAction: shared_context = 1 row_status = 1 vlan = 5 if_index = 100 "
                  "address = 10.0.0.1\n"}));
}

TEST_F(IPv4AddressActionTest, DefaultActionIsAllZero) {
    IPv4AddressAction action;
    EXPECT_STREQ(action.name, "IPv4AddressAction");
    EXPECT_EQ(action.RowStatus(), 0);
    EXPECT_EQ(action.Vlan(), 0u);
    EXPECT_EQ(action.IfIndex(), 0u);
    EXPECT_EQ(action.Address(), Ip4Addr());
    EXPECT_EQ(action.Mask(), Ip4Addr());
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(0, 0, 1, 0, 0.0.0.0, 0)"});
}

}  // namespace
}  // namespace Zavrel
