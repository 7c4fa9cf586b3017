#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mib/IPv6AddressAction.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class IPv6AddressActionTest : public test::RecordingStackEnv {
protected:
    static Ip6Addr Address(const char* text) {
        Ip6Addr address;
        EXPECT_TRUE(address.FromString(text));
        return address;
    }
};

// Unlike the IPv4 row, the second argument is the IPv6 protocol instance of
// the VLAN, not the VLAN.
TEST_F(IPv6AddressActionTest, SendsTheIpv6InstanceOfTheVlanAndAddressTypeTwo) {
    IPv6AddressAction action(1, 5, 100, Address("2001:db8::1"), 64);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(1, 32773, 2, 100, 2001:db8::1, 64)"});
}

TEST_F(IPv6AddressActionTest, UsesTheSameCallInsideTheStackContext) {
    IPv6AddressAction action(6, 12, 7, Address("fe80::2"), 128);
    action.IssueReq(true);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(6, 32780, 2, 7, fe80::2, 128)"});
}

TEST_F(IPv6AddressActionTest, UsesOnlyTheLow16BitsOfTheVlan) {
    IPv6AddressAction action(1, 0x10005, 100, Address("2001:db8::1"), 64);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_ipaddr(1, 32773, 2, 100, 2001:db8::1, 64)"});
}

TEST_F(IPv6AddressActionTest, IsNotTraced) {
    IPv6AddressAction action(1, 5, 100, Address("2001:db8::1"), 64);
    action.IssueReq(false);
    EXPECT_TRUE(trace.Texts(5).empty());
}

TEST_F(IPv6AddressActionTest, DefaultActionIsAllZero) {
    IPv6AddressAction action;
    EXPECT_STREQ(action.name, "IPv6AddressAction");
    EXPECT_EQ(action.RowStatus(), 0);
    EXPECT_EQ(action.Vlan(), 0u);
    EXPECT_EQ(action.IfIndex(), 0u);
    EXPECT_TRUE(action.Address().IsUnspecified());
    EXPECT_EQ(action.PrefixLength(), 0u);
}

}  // namespace
}  // namespace Zavrel
