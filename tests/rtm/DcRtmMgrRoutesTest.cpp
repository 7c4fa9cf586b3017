// Static routes and redistribution: the items the RTM manager queues in the
// configuration scheduler, the free route functions, and the handling of the
// stack's answers on those rows.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cfg/CfgItem.h"
#include "cfg/CfgSched.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using Lines = std::vector<std::string>;

class DcRtmMgrRoutesTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        rtm = DcRtmMgr::GetInstance();
        ASSERT_NE(rtm, nullptr);
        sched = &DcRouterMgr::GetInstance()->GetCfgSched();
        trace.Clear();
    }

    // The scheduler's full print-out.
    std::string Pending() {
        console.Clear();
        sched->Print(&console);
        return console.Output();
    }

    // Marks every held item of a bucket Issued, as a tick would.
    void Issue(unsigned int vlanOrInstance, unsigned int kind) {
        for (CfgItem* item : sched->Items(CfgKey(vlanOrInstance, kind))) {
            item->SetActionState(CfgItem::ACTION_ITEM_ISSUED);
        }
    }

    static Ip4Addr A4(const char* text) {
        Ip4Addr address;
        EXPECT_TRUE(address.FromString(text)) << text;
        return address;
    }
    static Ip6Addr A6(const char* text) {
        Ip6Addr address;
        EXPECT_TRUE(address.FromString(text)) << text;
        return address;
    }

    static std::string Item(const std::string& line) {
        return "==== Item 0 ====\n" + line + "\n\n";
    }

    DcRtmMgr* rtm = nullptr;
    CfgSched* sched = nullptr;
};

const unsigned int ROUTES = DcRtmMgr::CFG_KEY_STATIC_ROUTE;
const unsigned int REDIST = DcRtmMgr::CFG_KEY_REDISTRIBUTION;

TEST_F(DcRtmMgrRoutesTest, KindCodesAreFixed) {
    EXPECT_EQ(DcRtmMgr::CFG_KEY_STATIC_ROUTE, 0x3d000003u);
    EXPECT_EQ(DcRtmMgr::CFG_KEY_REDISTRIBUTION, 0x3d000002u);
}

TEST_F(DcRtmMgrRoutesTest, AddRouteQueuesAnActiveRouteWithThePrefixLengthOfTheMask) {
    EXPECT_TRUE(
        AddRoute(5, A4("10.1.0.0"), A4("255.255.0.0"), A4("192.168.1.1"), 7, 65537, 0x30000, 1));
    EXPECT_TRUE(sched->HasBucket(CfgKey(5, ROUTES)));
    EXPECT_EQ(Pending(), Item("StaticRouteItem: vrf(5) Dest(10.1.0.0/16) NextHop(192.168.1.1) "
                              "Intf(7) metric(1) Type(Static) RowStatus(Active) AdminStatus(1) "
                              "ActionState(New) Reason(noError)"))
        << "the metric is cut to 16 bits";
    EXPECT_TRUE(test::RecordingStack::Instance().Requests().empty()) << "nothing is sent yet";
}

TEST_F(DcRtmMgrRoutesTest, AddRouteKeepsTheGivenRouteTypeAndAdminStatus) {
    AddRoute(5, A4("10.1.0.0"), A4("255.255.255.255"), A4("192.168.1.1"), 0, 3, 4, 2);
    EXPECT_EQ(Pending(), Item("StaticRouteItem: vrf(5) Dest(10.1.0.0/32) NextHop(192.168.1.1) "
                              "Intf(0) metric(3) Type(Other) RowStatus(Active) AdminStatus(2) "
                              "ActionState(New) Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, RemoveRouteWithMask24QueuesADestroyWithPrefixLength24) {
    EXPECT_TRUE(RemoveRoute(5, A4("10.1.2.0"), A4("255.255.255.0"), A4("192.168.1.1"), 7));
    EXPECT_EQ(Pending(), Item("StaticRouteItem: vrf(5) Dest(10.1.2.0/24) NextHop(192.168.1.1) "
                              "Intf(7) metric(0) Type(Other) RowStatus(Destroy) AdminStatus(2) "
                              "ActionState(New) Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, EnableAndDisableRouteQueueActiveRowsUpAndDown) {
    EXPECT_TRUE(EnableRoute(5, A4("10.1.2.0"), A4("255.255.255.0"), A4("192.168.1.1"), 7));
    EXPECT_TRUE(DisableRoute(6, A4("10.1.2.0"), A4("255.255.255.0"), A4("192.168.1.1"), 7));
    EXPECT_EQ(Pending(),
              Item("StaticRouteItem: vrf(5) Dest(10.1.2.0/24) NextHop(192.168.1.1) Intf(7) "
                   "metric(0) Type(Other) RowStatus(Active) AdminStatus(1) ActionState(New) "
                   "Reason(noError)") +
                  Item("StaticRouteItem: vrf(6) Dest(10.1.2.0/24) NextHop(192.168.1.1) Intf(7) "
                       "metric(0) Type(Other) RowStatus(Active) AdminStatus(2) ActionState(New) "
                       "Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, Ipv6AddRouteTakesTheDestinationFromThePrefixNotTheAddress) {
    EXPECT_TRUE(AddRoute(5, A6("2001:db8:ffff::1"), Ip6Prefix(A6("2001:db8::"), 32), A6("fe80::1"),
                         3, 10, 0x30000, 1));
    EXPECT_EQ(Pending(), Item("StaticRouteItem: vrf(5) Dest(2001:db8::/32) NextHop(fe80::1) "
                              "Intf(3) metric(10) Type(Static) RowStatus(Active) AdminStatus(1) "
                              "ActionState(New) Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, Ipv6RemoveEnableDisableTakeTheDestinationFromTheAddress) {
    const Ip6Prefix prefix(A6("2001:db8::"), 48);
    EXPECT_TRUE(RemoveRoute(5, A6("2001:db8:1::"), prefix, A6("fe80::1"), 3));
    EXPECT_TRUE(EnableRoute(6, A6("2001:db8:2::"), prefix, A6("fe80::1"), 3));
    EXPECT_TRUE(DisableRoute(7, A6("2001:db8:3::"), prefix, A6("fe80::1"), 3));
    EXPECT_EQ(Pending(),
              Item("StaticRouteItem: vrf(5) Dest(2001:db8:1::/48) NextHop(fe80::1) Intf(3) "
                   "metric(0) Type(Other) RowStatus(Destroy) AdminStatus(2) ActionState(New) "
                   "Reason(noError)") +
                  Item("StaticRouteItem: vrf(6) Dest(2001:db8:2::/48) NextHop(fe80::1) Intf(3) "
                       "metric(0) Type(Other) RowStatus(Active) AdminStatus(1) ActionState(New) "
                       "Reason(noError)") +
                  Item("StaticRouteItem: vrf(7) Dest(2001:db8:3::/48) NextHop(fe80::1) Intf(3) "
                       "metric(0) Type(Other) RowStatus(Active) AdminStatus(2) ActionState(New) "
                       "Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, UpdateStaticRouteFilesUnderTheVlanAndTheStaticRouteKind) {
    const unsigned char dest[4] = {10, 0, 0, 0};
    const unsigned char hop[4] = {10, 0, 0, 1};
    rtm->UpdateStaticRoute(9ul, 1l, dest, 8l, hop, 2ul, 5ul, 0x30000l, 1l, 1l);
    EXPECT_EQ(sched->BucketCount(), 1u);
    EXPECT_EQ(sched->Items(CfgKey(9, ROUTES)).size(), 1u);
}

// ---- the stack's answers on static routes

class RouteAnswerTest : public DcRtmMgrRoutesTest {
protected:
    void Queue(unsigned int rowStatus, unsigned int adminStatus) {
        rtm->UpdateStaticRoute(5, A4("10.1.0.0"), 16, A4("192.168.1.1"), 7, 1, 0x30000, rowStatus,
                               adminStatus);
        Issue(5, ROUTES);
        trace.Clear();
    }
    void Answer(int rowStatus, int adminStatus, unsigned int result) {
        const unsigned char dest[4] = {10, 1, 0, 0};
        const unsigned char hop[4] = {192, 168, 1, 1};
        rtm->UpdateRouteCallback(5, 1, dest, 16, hop, 7, 1, 0x30000, rowStatus, adminStatus, 0,
                                 result);
    }
    std::string State(const char* rowStatus, int admin, const char* state, const char* reason) {
        return Item(std::string("StaticRouteItem: vrf(5) Dest(10.1.0.0/16) NextHop(192.168.1.1) "
                                "Intf(7) metric(1) Type(Static) RowStatus(") +
                    rowStatus + ") AdminStatus(" + std::to_string(admin) + ") ActionState(" +
                    state + ") Reason(" + reason + ")");
    }
};

TEST_F(RouteAnswerTest, SuccessRemovesTheItem) {
    Queue(1, 1);
    Answer(1, 1, 1);
    EXPECT_EQ(Pending(), "");
    EXPECT_EQ(trace.Texts(10),
              (Lines{"Route Update Response from Metaswitch: vlan = 5, dest= 10.1.0.0/16 nexthop: "
                     "192.168.1.1\n",
                     "Route Programmed Successfully\n"}));
}

TEST_F(RouteAnswerTest, CreateAnsweredWith5IsRetried) {
    Queue(1, 1);
    Answer(1, 1, 5);
    EXPECT_EQ(Pending(), State("Active", 1, "New", "genErr"));
    EXPECT_EQ(trace.Texts(10).back(), "Route Not programmed!!! Retrying...\n");
}

TEST_F(RouteAnswerTest, CreateAnsweredWith3IsGivenUp) {
    Queue(1, 1);
    Answer(1, 1, 3);
    EXPECT_EQ(Pending(), State("Active", 1, "Issued", "badValue"));
    EXPECT_EQ(trace.Texts(10).back(), "Unable to set route. No retry!!!\n");
}

TEST_F(RouteAnswerTest, CreateAnsweredWith6IsGivenUp) {
    Queue(1, 1);
    Answer(1, 1, 6);
    EXPECT_EQ(Pending(), State("Active", 1, "Issued", "noAccess"));
    EXPECT_EQ(trace.Texts(10).back(), "Unable to set route. No retry!!!\n");
}

TEST_F(RouteAnswerTest, DestroyAnsweredWith6CountsAsDone) {
    Queue(6, 2);
    Answer(6, 2, 6);
    EXPECT_EQ(Pending(), "");
    EXPECT_EQ(trace.Texts(10).back(), "Route Programmed Successfully\n");
}

TEST_F(RouteAnswerTest, DestroyAnsweredWith5Or3IsRetried) {
    Queue(6, 2);
    Answer(6, 2, 5);
    EXPECT_EQ(Pending(), State("Destroy", 2, "New", "genErr"));
    EXPECT_EQ(trace.Texts(10).back(), "Route Not programmed!!! Retrying...\n");
    Issue(5, ROUTES);
    Answer(6, 2, 3);
    EXPECT_EQ(Pending(), State("Destroy", 2, "New", "badValue"));
    EXPECT_EQ(trace.Texts(10).back(), "Route Not programmed!!! Retrying...\n");
}

TEST_F(RouteAnswerTest, Ipv6AnswerIsLoggedWithIpv6Addresses) {
    const unsigned char dest[16] = {0x20, 0x01, 0x0d, 0xb8};
    unsigned char hop[16] = {0xfe, 0x80};
    hop[15] = 1;
    rtm->UpdateRouteCallback(5, 2, dest, 32, hop, 7, 1, 0x30000, 1, 1, 0, 1);
    EXPECT_EQ(trace.Texts(10),
              (Lines{"Route Update Response from Metaswitch: vlan = 5, dest= 2001:db8::/32 "
                     "nexthop: fe80::1\n",
                     "Route Programmed Successfully\n"}));
}

// ---- redistribution

TEST_F(DcRtmMgrRoutesTest, EnablingRedistributionQueuesOneActiveItem) {
    rtm->HandleRedistributionStatusChange(5, 0x30000, 0x80000, true, false);
    EXPECT_TRUE(sched->HasBucket(CfgKey(5, REDIST)));
    EXPECT_EQ(Pending(), Item("RedistItem: Instance(5) Dest(0x80000) Src(0x30000) Priority(0x0) "
                              "RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, DisablingRedistributionQueuesADestroy) {
    rtm->HandleRedistributionStatusChange(32773, 0x20000, 0xd0000, false, true);
    EXPECT_TRUE(sched->HasBucket(CfgKey(32773, REDIST)));
    EXPECT_EQ(Pending(), Item("RedistItem: Instance(32773) Dest(0xd0000) Src(0x20000) "
                              "Priority(0x0) RowStatus(Destroy) AdminStatus(2) ActionState(New) "
                              "Reason(noError)"));
}

TEST_F(DcRtmMgrRoutesTest, EqualFlagsQueueNothing) {
    rtm->HandleRedistributionStatusChange(5, 0x30000, 0x80000, true, true);
    rtm->HandleRedistributionStatusChange(5, 0x30000, 0x80000, false, false);
    EXPECT_EQ(sched->BucketCount(), 0u);
}

class RedistAnswerTest : public DcRtmMgrRoutesTest {
protected:
    void Queue(unsigned int rowStatus, unsigned int adminStatus) {
        rtm->Redistribute(rowStatus, adminStatus, 0x30000, 0x80000, 5);
        Issue(5, REDIST);
        trace.Clear();
    }
    std::string State(const char* rowStatus, int admin, const char* state, const char* reason) {
        return Item(std::string("RedistItem: Instance(5) Dest(0x80000) Src(0x30000) "
                                "Priority(0x0) RowStatus(") +
                    rowStatus + ") AdminStatus(" + std::to_string(admin) + ") ActionState(" +
                    state + ") Reason(" + reason + ")");
    }
};

TEST_F(RedistAnswerTest, SuccessRemovesTheItem) {
    Queue(1, 1);
    rtm->UpdateRedistributionCallback(5, 0x30000, 0x80000, 1, 1, 0, 1);
    EXPECT_EQ(Pending(), "");
    EXPECT_EQ(trace.Texts(10),
              (Lines{"Redistribution Response from Metaswitch: vlan=5 src=196608 dst=524288 "
                     "status=1\n",
                     "Redistribution Request Success\n"}));
}

TEST_F(RedistAnswerTest, CreateAnsweredWith5IsRetriedAndWith3GivenUp) {
    Queue(1, 1);
    rtm->UpdateRedistributionCallback(5, 0x30000, 0x80000, 1, 1, 0, 5);
    EXPECT_EQ(Pending(), State("Active", 1, "New", "genErr"));
    EXPECT_EQ(trace.Texts(10).back(), "Redistribution Request Not success!! Retrying...\n");
    Issue(5, REDIST);
    rtm->UpdateRedistributionCallback(5, 0x30000, 0x80000, 1, 1, 0, 3);
    EXPECT_EQ(Pending(), State("Active", 1, "Issued", "badValue"));
    EXPECT_EQ(trace.Texts(10).back(), "Unable to set redistribution. No retry!!!\n");
}

TEST_F(RedistAnswerTest, DestroyAnsweredWith6CountsAsDoneAndWith5IsRetried) {
    Queue(6, 2);
    rtm->UpdateRedistributionCallback(5, 0x30000, 0x80000, 2, 6, 0, 5);
    EXPECT_EQ(Pending(), State("Destroy", 2, "New", "genErr"));
    Issue(5, REDIST);
    rtm->UpdateRedistributionCallback(5, 0x30000, 0x80000, 2, 6, 0, 6);
    EXPECT_EQ(Pending(), "");
    EXPECT_EQ(trace.Texts(10).back(), "Redistribution Request Success\n");
}

}  // namespace
}  // namespace Zavrel
