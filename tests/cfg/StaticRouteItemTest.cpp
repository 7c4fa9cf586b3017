#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/RouteRedistributeItem.h"
#include "cfg/StaticRouteItem.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

const unsigned char kDest4[16] = {10,   0,    0,    0,    0xaa, 0xaa, 0xaa, 0xaa,
                                  0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa};
const unsigned char kHop4[16] = {192,  168,  1,    1,    0xbb, 0xbb, 0xbb, 0xbb,
                                 0xbb, 0xbb, 0xbb, 0xbb, 0xbb, 0xbb, 0xbb, 0xbb};
const unsigned char kDest6[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 1};
const unsigned char kHop6[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

MibOid OidOf(const std::vector<unsigned long>& components) {
    return MibOid(components.data(), components.size());
}

class StaticRouteItemTest : public test::RecordingStackEnv {
protected:
    static StaticRouteItem Ip4Route(long rowStatus = 1, long adminStatus = 1,
                                    unsigned long routeType = 0x30000) {
        return StaticRouteItem(5, 1, rowStatus, adminStatus, kDest4, 24, kHop4, 7, 3, routeType, 0);
    }
    static StaticRouteItem Ip6Route() {
        return StaticRouteItem(5, 2, 6, 2, kDest6, 64, kHop6, 12, 20, 0x30000, 0);
    }
};

TEST_F(StaticRouteItemTest, OidComesFromTheStackForTheIpv4InstanceOfTheVlan) {
    StaticRouteItem item = Ip4Route();
    EXPECT_EQ(item.GetOid(), OidOf(RecordingStack::RouteOid(5, 1, kDest4, 24, kHop4, 7)));
}

TEST_F(StaticRouteItemTest, OidOfAnIpv6RouteUsesTheIpv6Instance) {
    StaticRouteItem item = Ip6Route();
    EXPECT_EQ(item.GetOid(), OidOf(RecordingStack::RouteOid(32773, 2, kDest6, 64, kHop6, 12)));
}

TEST_F(StaticRouteItemTest, GetOidStoresTheValueItReturns) {
    StaticRouteItem item = Ip4Route();
    MibOid& first = item.GetOid();
    MibOid& second = item.GetOid();
    EXPECT_EQ(&first, &second);
    EXPECT_GT(first.Length(), 0ul);
}

TEST_F(StaticRouteItemTest, Ipv4RouteCopiesOnlyFourAddressBytes) {
    unsigned char otherDest[16];
    unsigned char otherHop[16];
    std::memcpy(otherDest, kDest4, 4);
    std::memcpy(otherHop, kHop4, 4);
    std::memset(otherDest + 4, 0x11, 12);
    std::memset(otherHop + 4, 0x22, 12);
    StaticRouteItem item = Ip4Route();
    StaticRouteItem other(5, 1, 1, 1, otherDest, 24, otherHop, 7, 3, 0x30000, 0);
    for (int i = 4; i < 16; ++i) {
        EXPECT_EQ(item.Destination()[i], 0) << i;
        EXPECT_EQ(item.NextHop()[i], 0) << i;
    }
    EXPECT_EQ(item.GetOid(), other.GetOid());
}

TEST_F(StaticRouteItemTest, ListReadyFollowsTheReadyFlagOfItsRtmInstance) {
    StaticRouteItem item = Ip4Route();
    EXPECT_FALSE(item.CfgListReady());
    DcRtmMgr::GetInstance()->CreateRTMInstance(5, 0, DcRtmMgr::RTMData());
    EXPECT_FALSE(item.CfgListReady());
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_TRUE(item.CfgListReady());
}

TEST_F(StaticRouteItemTest, Ipv6RouteWaitsForTheIpv6Instance) {
    StaticRouteItem item = Ip6Route();
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_FALSE(item.CfgListReady());
    DcRtmMgr::GetInstance()->SetRtmReady(32773);
    EXPECT_TRUE(item.CfgListReady());
}

TEST_F(StaticRouteItemTest, ItemReadyIsTheSameAsListReady) {
    StaticRouteItem item = Ip4Route();
    EXPECT_FALSE(item.CfgItemReady());
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_TRUE(item.CfgItemReady());
}

TEST_F(StaticRouteItemTest, ReadinessKeyIsTheRtmInstance) {
    unsigned long key = 0;
    EXPECT_TRUE(Ip4Route().GetListReadyKey(key));
    EXPECT_EQ(key, 5ul);
    EXPECT_TRUE(Ip6Route().GetListReadyKey(key));
    EXPECT_EQ(key, 32773ul);
}

TEST_F(StaticRouteItemTest, SendQueuesARouteActionUnderTheOidAndMarksTheItemIssued) {
    StaticRouteItem item = Ip4Route();
    item.Send();
    Serializer& serializer = DcRouterMgr::GetInstance()->GetSerializer();
    EXPECT_EQ(
        serializer.PendingActionCount(OidOf(RecordingStack::RouteOid(5, 1, kDest4, 24, kHop4, 7))),
        1u);
    EXPECT_TRUE(item.IsIssued());
    EXPECT_TRUE(RecordingStack::Instance().Calls("sms_update_route").empty());
}

TEST_F(StaticRouteItemTest, SendToAReadySerializerIssuesTheRouteAtOnce) {
    DcRouterMgr::GetInstance()->GetSerializer().RunPendingActions();
    StaticRouteItem item = Ip4Route(1, 2, 0x30000);
    item.Send();
    EXPECT_EQ(RecordingStack::Instance().Calls("sms_update_route"),
              std::vector<std::string>{
                  "sms_update_route(1, 1, 2, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)"});
}

TEST_F(StaticRouteItemTest, SendOfAnIpv6RouteUsesTheIpv6Instance) {
    DcRouterMgr::GetInstance()->GetSerializer().RunPendingActions();
    StaticRouteItem item = Ip6Route();
    item.Send();
    EXPECT_EQ(RecordingStack::Instance().Calls("sms_update_route"),
              std::vector<std::string>{"sms_update_route(1, 6, 2, 2, 2001:db8:1::, 64, fe80::1, "
                                       "196608, 12, 32773, 20)"});
}

TEST_F(StaticRouteItemTest, ScheduledRouteReachesTheStackOnTheTickAfterItsInstanceIsReady) {
    DcRouterMgr::GetInstance()->GetSerializer().RunPendingActions();
    CfgSched& sched = DcRouterMgr::GetInstance()->GetCfgSched();
    const CfgKey key(5, 0x3d000003);
    sched.Insert(key, new StaticRouteItem(Ip4Route()));
    loop.Advance(100);
    EXPECT_TRUE(RecordingStack::Instance().Calls("sms_update_route").empty());
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    loop.Advance(100);
    EXPECT_EQ(RecordingStack::Instance().Calls("sms_update_route"),
              std::vector<std::string>{
                  "sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)"});
    ASSERT_EQ(sched.Items(key).size(), 1u);
    EXPECT_TRUE(sched.Items(key)[0]->IsIssued());
}

TEST_F(StaticRouteItemTest, PrintsAnIpv4StaticRoute) {
    Ip4Route().PrintItem(&console);
    EXPECT_EQ(console.Output(),
              "StaticRouteItem: vrf(5) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(7) metric(3) "
              "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n");
}

TEST_F(StaticRouteItemTest, AnyOtherRouteTypePrintsOther) {
    StaticRouteItem item = Ip4Route(4, 2, 0x20000);
    item.SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    item.SetReasonCode(5);
    item.PrintItem(&console);
    EXPECT_EQ(console.Output(),
              "StaticRouteItem: vrf(5) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(7) metric(3) "
              "Type(Other) RowStatus(Create & Go) AdminStatus(2) ActionState(Issued) "
              "Reason(genErr)\n");
}

TEST_F(StaticRouteItemTest, PrintsAnIpv6Route) {
    Ip6Route().PrintItem(&console);
    EXPECT_EQ(console.Output(),
              "StaticRouteItem: vrf(5) Dest(2001:db8:1::/64) NextHop(fe80::1) Intf(12) "
              "metric(20) Type(Static) RowStatus(Destroy) AdminStatus(2) ActionState(New) "
              "Reason(noError)\n");
}

TEST_F(StaticRouteItemTest, ReplaceWithANullPointerIsFalse) {
    StaticRouteItem item = Ip4Route();
    item.GetOid();
    EXPECT_FALSE(item.Replace(nullptr));
}

TEST_F(StaticRouteItemTest, ReplaceNeedsTheSameOidRowStatusAndAdminStatus) {
    StaticRouteItem item = Ip4Route(1, 1);
    item.GetOid();
    StaticRouteItem same = Ip4Route(1, 1);
    StaticRouteItem otherRow = Ip4Route(6, 1);
    StaticRouteItem otherAdmin = Ip4Route(1, 2);
    StaticRouteItem otherRoute(5, 1, 1, 1, kDest4, 16, kHop4, 7, 3, 0x30000, 0);
    EXPECT_TRUE(item.Replace(static_cast<CfgItem*>(&same)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherRow)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherAdmin)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherRoute)));
}

// The scheduler replaces a held route by an incoming one of the same OID
// only when the row status and the admin status both match; the other
// values (here metric and route type) do not count.
TEST_F(StaticRouteItemTest, InsertReplacesAHeldRouteOnlyWhenRowAndAdminStatusBothMatch) {
    const CfgKey key(5, DcRtmMgr::CFG_KEY_STATIC_ROUTE);
    const struct {
        const char* incoming;
        long rowStatus;
        long adminStatus;
        unsigned long metric;
        bool replaces;
    } cases[] = {
        {"same row and admin status", 1, 1, 3, true},
        {"same row and admin status, other metric", 1, 1, 9, true},
        {"other row status", 6, 1, 3, false},
        {"other admin status", 1, 2, 3, false},
        {"other row and admin status", 6, 2, 3, false},
    };
    for (const auto& c : cases) {
        CfgSched sched;
        trace.Clear();
        CfgItem* held = new StaticRouteItem(5, 1, 1, 1, kDest4, 24, kHop4, 7, 3, 0x30000, 0);
        sched.Insert(key, held);
        CfgItem* incoming = new StaticRouteItem(5, 1, c.rowStatus, c.adminStatus, kDest4, 24, kHop4,
                                                7, c.metric, 0, 0);
        const std::vector<CfgItem*> expected =
            c.replaces ? std::vector<CfgItem*>{incoming} : std::vector<CfgItem*>{held, incoming};

        sched.Insert(key, incoming);

        EXPECT_EQ(sched.Items(key), expected) << c.incoming;
        EXPECT_EQ(trace.Texts(5), c.replaces ? std::vector<std::string>{"REPLACED ------- 1 "
                                                                        "item.............\n"}
                                             : std::vector<std::string>{})
            << c.incoming;
    }
}

TEST_F(StaticRouteItemTest, ReplaceOfAnItemOfAnotherKindIsFalse) {
    StaticRouteItem item = Ip4Route();
    item.GetOid();
    RouteRedistributeItem redistribution(1, 1, 3, 0x80000, 0, 5, 0);
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&redistribution)));
}

}  // namespace
}  // namespace Zavrel
