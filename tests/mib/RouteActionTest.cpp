#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgRoute.h"
#include "mib/RouteAction.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class RouteActionTest : public test::RecordingStackEnv {
protected:
    static CfgRouteEntry Ip4Entry() {
        CfgRouteEntry entry;
        std::memset(&entry, 0, sizeof(entry));
        entry.family = 1;
        const unsigned char destination[4] = {10, 0, 0, 0};
        const unsigned char nextHop[4] = {192, 168, 1, 1};
        std::memcpy(entry.destination, destination, 4);
        std::memcpy(entry.nextHop, nextHop, 4);
        entry.prefixLength = 24;
        entry.ifIndex = 7;
        entry.metric = 3;
        entry.reserved = 9;
        entry.pathType = 0x30000;
        entry.rowStatus = 1;
        entry.adminStatus = 1;
        return entry;
    }

    static CfgRouteEntry Ip6Entry(int family) {
        CfgRouteEntry entry;
        std::memset(&entry, 0, sizeof(entry));
        entry.family = family;
        entry.destination[0] = 0x20;
        entry.destination[1] = 0x01;
        entry.destination[2] = 0x0d;
        entry.destination[3] = 0xb8;
        entry.nextHop[0] = 0xfe;
        entry.nextHop[1] = 0x80;
        entry.nextHop[15] = 0x01;
        entry.prefixLength = 64;
        entry.ifIndex = 12;
        entry.metric = 20;
        entry.pathType = 0x30000;
        entry.rowStatus = 6;
        entry.adminStatus = 2;
        return entry;
    }
};

TEST_F(RouteActionTest, IssuedAtInsertionSendsTheRouteWithFirstArgumentOne) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 5);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{
                  "sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)"});
}

TEST_F(RouteActionTest, IssuedFromTheQueueSendsTheRouteWithFirstArgumentZero) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 5);
    action.IssueReq(true);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{
                  "sms_update_route(0, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)"});
}

TEST_F(RouteActionTest, TracesTheRouteAtLevelFiveBeforeTheCall) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 5);
    action.IssueReq(false);
    EXPECT_EQ(trace.Texts(5),
              std::vector<std::string>{
                  "Vlan = 5 if_index = 7 ipaddr = 10.0.0.0/24 gw = 192.168.1.1 metric = 3 "
                  "path_type = 196608 row status = 1 admin_status = 1\n"});
}

TEST_F(RouteActionTest, FamilyOneAsksForTheIpv4InstanceOfTheVlan) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 12);
    action.IssueReq(false);
    ASSERT_EQ(RecordingStack::Instance().Calls("sms_update_route").size(), 1u);
    EXPECT_EQ(RecordingStack::Instance().Calls("sms_update_route")[0],
              "sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 12, 3)");
}

TEST_F(RouteActionTest, AnyOtherFamilyAsksForTheIpv6InstanceOfTheVlan) {
    for (int family : {2, 10}) {
        RecordingStack::Instance().Reset();
        trace.Clear();
        CfgRouteEntry entry = Ip6Entry(family);
        RouteAction action(entry, 5);
        action.IssueReq(true);
        EXPECT_EQ(RecordingStack::Instance().Requests(),
                  std::vector<std::string>{"sms_update_route(0, 6, 2, " + std::to_string(family) +
                                           ", 2001:db8::, 64, fe80::1, 196608, 12, 32773, 20)"});
        EXPECT_EQ(trace.Texts(5),
                  std::vector<std::string>{
                      "Vlan = 5 if_index = 12 ipaddr = 2001:db8::/64 gw = fe80::1 metric = 20 "
                      "path_type = 196608 row status = 6 admin_status = 2\n"});
    }
}

TEST_F(RouteActionTest, KeepsTheLow16BitsOfTheVlan) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 0x10005);
    EXPECT_EQ(action.Vlan(), 5);
    action.IssueReq(false);
    EXPECT_EQ(RecordingStack::Instance().Calls("sms_update_route")[0],
              "sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)");
}

TEST_F(RouteActionTest, CopiesOnlyFourAddressBytesForFamilyOne) {
    CfgRouteEntry entry = Ip4Entry();
    std::memset(entry.destination + 4, 0xee, 12);
    std::memset(entry.nextHop + 4, 0xee, 12);
    RouteAction action(entry, 5);
    for (int i = 4; i < 16; ++i) {
        EXPECT_EQ(action.Entry().destination[i], 0) << i;
        EXPECT_EQ(action.Entry().nextHop[i], 0) << i;
    }
    EXPECT_EQ(action.Entry().destination[0], 10);
    EXPECT_EQ(action.Entry().nextHop[3], 1);
}

TEST_F(RouteActionTest, CopiesEveryFieldOfTheEntry) {
    CfgRouteEntry entry = Ip6Entry(2);
    entry.reserved = 77;
    RouteAction action(entry, 9);
    EXPECT_EQ(action.Entry().family, 2);
    EXPECT_EQ(std::memcmp(action.Entry().destination, entry.destination, 16), 0);
    EXPECT_EQ(std::memcmp(action.Entry().nextHop, entry.nextHop, 16), 0);
    EXPECT_EQ(action.Entry().prefixLength, 64u);
    EXPECT_EQ(action.Entry().ifIndex, 12u);
    EXPECT_EQ(action.Entry().metric, 20);
    EXPECT_EQ(action.Entry().reserved, 77);
    EXPECT_EQ(action.Entry().pathType, 0x30000);
    EXPECT_EQ(action.Entry().rowStatus, 6);
    EXPECT_EQ(action.Entry().adminStatus, 2);
}

TEST_F(RouteActionTest, IsNamedAfterItsClass) {
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 5);
    EXPECT_STREQ(action.name, "RouteAction");
    RouteAction empty;
    EXPECT_STREQ(empty.name, "RouteAction");
    EXPECT_EQ(empty.Vlan(), 0);
}

TEST_F(RouteActionTest, ReturnsTheStackResultUnexamined) {
    RecordingStack::Instance().SetResult("sms_update_route", 42);
    CfgRouteEntry entry = Ip4Entry();
    RouteAction action(entry, 5);
    EXPECT_EQ(action.IssueReq(false), 42ul);
}

}  // namespace
}  // namespace Zavrel
