#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/RouteRedistributeItem.h"
#include "cfg/StaticRouteItem.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "platform/Options.h"
#include "routing/DcProtoInterfaceBase.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

MibOid OidOf(const std::vector<unsigned long>& components) {
    return MibOid(components.data(), components.size());
}

class RouteRedistributeItemTest : public test::RecordingStackEnv {};

TEST_F(RouteRedistributeItemTest, OidComesFromTheStackForInstanceSourceAndDestination) {
    RouteRedistributeItem item(1, 1, 3, 0x80000, 0, 32773, 0);
    EXPECT_EQ(item.GetOid(), OidOf(RecordingStack::RedistOid(32773, 3, 0x80000)));
}

TEST_F(RouteRedistributeItemTest, DefaultItemIsZeroButForInstanceOne) {
    RouteRedistributeItem item;
    EXPECT_EQ(item.RowStatus(), 0);
    EXPECT_EQ(item.AdminStatus(), 0);
    EXPECT_EQ(item.Source(), 0);
    EXPECT_EQ(item.Destination(), 0);
    EXPECT_EQ(item.Priority(), 0);
    EXPECT_EQ(item.Instance(), 1ul);
    EXPECT_EQ(item.Extra(), 0ul);
    EXPECT_EQ(item.GetActionState(), CfgItem::ACTION_ITEM_NEW);
}

TEST_F(RouteRedistributeItemTest, SendQueuesARedistActionUnderTheOidAndMarksTheItemIssued) {
    RouteRedistributeItem item(1, 1, 3, 0x80000, 4, 5, 9);
    item.Send();
    EXPECT_EQ(DcRouterMgr::GetInstance()->GetSerializer().PendingActionCount(
                  OidOf(RecordingStack::RedistOid(5, 3, 0x80000))),
              1u);
    EXPECT_TRUE(item.IsIssued());
    EXPECT_TRUE(RecordingStack::Instance().Requests().empty());
}

TEST_F(RouteRedistributeItemTest, SendToAReadySerializerIssuesTheRowAtOnce) {
    DcRouterMgr::GetInstance()->GetSerializer().RunPendingActions();
    RouteRedistributeItem item(6, 2, 3, 0xd0000, 4, 32773, 9);
    item.Send();
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_act_cipr_redist(6, 2, 3, 851968, 32773, 0)"});
}

TEST_F(RouteRedistributeItemTest, ListReadyFollowsTheReadyFlagOfTheLow16BitsOfTheInstance) {
    RouteRedistributeItem ipv6(1, 1, 3, 0x80000, 0, 0x8005, 0);
    RouteRedistributeItem wide(1, 1, 3, 0x80000, 0, 0x18005, 0);
    EXPECT_FALSE(ipv6.CfgListReady());
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_FALSE(ipv6.CfgListReady());
    DcRtmMgr::GetInstance()->SetRtmReady(0x8005);
    EXPECT_TRUE(ipv6.CfgListReady());
    EXPECT_TRUE(wide.CfgListReady());
}

TEST_F(RouteRedistributeItemTest, ReadinessKeyIsTheLow16BitsOfTheInstance) {
    unsigned long key = 0;
    EXPECT_TRUE(RouteRedistributeItem(1, 1, 3, 0x80000, 0, 0x18005, 0).GetListReadyKey(key));
    EXPECT_EQ(key, 0x8005ul);
}

TEST_F(RouteRedistributeItemTest, ReceivingRouterOfAnIpv4Instance) {
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0x80000, 0, 5, 0).ReceivingRouterKind(),
              DcRouterMgr::RIPv2);
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0xd0000, 0, 5, 0).ReceivingRouterKind(),
              DcRouterMgr::OSPFv2);
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0x30000, 0, 5, 0).ReceivingRouterKind(),
              DcRouterMgr::BGP);
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0x80000, 0, 5, 0).ReceivingVlan(), 5);
}

TEST_F(RouteRedistributeItemTest, Ipv6OspfDestinationAsksForRouterKindTwoOnTheVlanWithoutTheBit) {
    RouteRedistributeItem item(1, 1, 3, 0xd0000, 0, 0x8005, 0);
    EXPECT_EQ(item.ReceivingRouterKind(), 2);
    EXPECT_EQ(item.ReceivingVlan(), 5);
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0x80000, 0, 0x8005, 0).ReceivingRouterKind(),
              DcRouterMgr::RIPng);
    EXPECT_EQ(RouteRedistributeItem(1, 1, 3, 0x10000, 0, 0x8005, 0).ReceivingRouterKind(),
              DcRouterMgr::BGP);
}

TEST_F(RouteRedistributeItemTest, ItemIsNotReadyWithoutTheReceivingRouter) {
    RouteRedistributeItem item(1, 1, 3, 0x80000, 0, 77, 0);
    EXPECT_FALSE(item.CfgItemReady());
}

TEST_F(RouteRedistributeItemTest, ReceivingRouterDecidesWhetherTheItemIsReady) {
    Options options;
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    ASSERT_TRUE(manager->CreateVlan(5, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second);
    const struct {
        long destination;
        unsigned long instance;
        DcRouterMgr::ProtocolType kind;
    } cases[] = {
        {0x80000, 5, DcRouterMgr::RIPv2},       {0xd0000, 5, DcRouterMgr::OSPFv2},
        {0x30000, 5, DcRouterMgr::BGP},         {0x80000, 0x8005, DcRouterMgr::RIPng},
        {0xd0000, 0x8005, DcRouterMgr::OSPFv3}, {0x30000, 0x8005, DcRouterMgr::BGP},
    };
    auto check = [&]() {
        int ready = 0;
        for (const auto& c : cases) {
            RouteRedistributeItem item(1, 1, 3, c.destination, 0, c.instance, 0);
            DcRouterBase* router = manager->GetDcRouterByVID(5, c.kind);
            EXPECT_NE(router, nullptr) << c.kind;
            if (router != nullptr) {
                EXPECT_EQ(item.CfgItemReady(), router->IsReady()) << c.kind;
                ready += router->IsReady() ? 1 : 0;
            }
        }
        return ready;
    };
    EXPECT_EQ(check(), 0);
    // Routers enabled (by their options, or their status when they have no
    // protocol object) and both RTM instances ready.
    Json::Value enabled(Json::objectValue);
    enabled["enabled"] = true;
    Options section(enabled);
    for (int kind = DcRouterMgr::BGP; kind <= DcRouterMgr::RIPng; ++kind) {
        DcRouterBase* router =
            manager->GetDcRouterByVID(5, static_cast<DcRouterMgr::ProtocolType>(kind));
        router->SetStatus(DcProtoInterfaceBase::CONFIG_READY);
        if (router->GetInterface() != nullptr) {
            router->GetInterface()->ApplyOptions(section.Root(), "test",
                                                 DclConfigObject::OPTION_TYPE_VLAN);
        }
    }
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    DcRtmMgr::GetInstance()->SetRtmReady(0x8005);
    EXPECT_GT(check(), 0);
}

// VLAN 10 + k has both RTM instances ready and only its router of kind k
// ready. An item for the IPv6 instance of the VLAN (the instance with the
// IPv6 bit) whose destination is OSPF (0xd0000) is ready exactly in the
// VLAN whose OSPFv3 router (kind 2) is ready: it asks that router of the
// VLAN without the bit, and no other. The item for the IPv4 instance asks
// the OSPFv2 router (kind 1).
TEST_F(RouteRedistributeItemTest, Ipv6OspfItemIsReadyExactlyWhenTheOspfv3RouterOfItsVlanIs) {
    Options options;
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    Json::Value enabled(Json::objectValue);
    enabled["enabled"] = true;
    Options section(enabled);
    for (int kind = 0; kind < DcRouterMgr::PROTOCOL_COUNT; ++kind) {
        const unsigned short vlan = static_cast<unsigned short>(10 + kind);
        ASSERT_TRUE(
            manager->CreateVlan(vlan, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second);
        DcRtmMgr::GetInstance()->SetRtmReady(vlan);
        DcRtmMgr::GetInstance()->SetRtmReady(vlan | DcRtmMgr::IP6_INSTANCE_BIT);
        DcRouterBase* ready =
            manager->GetDcRouterByVID(vlan, static_cast<DcRouterMgr::ProtocolType>(kind));
        ASSERT_NE(ready, nullptr);
        if (ready->GetInterface() != nullptr) {
            ready->GetInterface()->ApplyOptions(section.Root(), "test",
                                                DclConfigObject::OPTION_TYPE_VLAN);
        } else {
            ready->SetStatus(DcProtoInterfaceBase::CONFIG_READY);
        }
        for (int other = 0; other < DcRouterMgr::PROTOCOL_COUNT; ++other) {
            DcRouterBase* router =
                manager->GetDcRouterByVID(vlan, static_cast<DcRouterMgr::ProtocolType>(other));
            ASSERT_NE(router, nullptr);
            ASSERT_EQ(router->IsReady(), other == kind) << "VLAN " << vlan << " kind " << other;
        }

        RouteRedistributeItem ipv6(1, 1, 3, 0xd0000, 0, vlan | DcRtmMgr::IP6_INSTANCE_BIT, 0);
        RouteRedistributeItem ipv4(1, 1, 3, 0xd0000, 0, vlan, 0);
        EXPECT_EQ(ipv6.CfgItemReady(), kind == DcRouterMgr::OSPFv3) << "kind " << kind << " ready";
        EXPECT_EQ(ipv4.CfgItemReady(), kind == DcRouterMgr::OSPFv2) << "kind " << kind << " ready";
    }
}

// The scheduler replaces a held entry by an incoming one of the same OID only
// when the row status and the admin status both match; the other values
// (here the priority and the further value) do not count.
TEST_F(RouteRedistributeItemTest, InsertReplacesAHeldEntryOnlyWhenRowAndAdminStatusBothMatch) {
    const CfgKey key(5, DcRtmMgr::CFG_KEY_REDISTRIBUTION);
    const struct {
        const char* incoming;
        long rowStatus;
        long adminStatus;
        long priority;
        bool replaces;
    } cases[] = {
        {"same row and admin status", 1, 1, 0, true},
        {"same row and admin status, other priority", 1, 1, 7, true},
        {"other row status", 6, 1, 0, false},
        {"other admin status", 1, 2, 0, false},
        {"other row and admin status", 6, 2, 0, false},
    };
    for (const auto& c : cases) {
        CfgSched sched;
        trace.Clear();
        CfgItem* held = new RouteRedistributeItem(1, 1, 3, 0x80000, 0, 5, 0);
        sched.Insert(key, held);
        CfgItem* incoming =
            new RouteRedistributeItem(c.rowStatus, c.adminStatus, 3, 0x80000, c.priority, 5, 9);
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

TEST_F(RouteRedistributeItemTest, RemoveOnNotReadyWhenTheRtmHoldsExactlyThisInstance) {
    RouteRedistributeItem item(1, 1, 3, 0x80000, 0, 5, 0);
    RouteRedistributeItem wide(1, 1, 3, 0x80000, 0, 0x10005, 0);
    EXPECT_FALSE(item.RemoveOnNotReady());
    DcRtmMgr::GetInstance()->CreateRTMInstance(5, 0, DcRtmMgr::RTMData());
    EXPECT_TRUE(item.RemoveOnNotReady());
    EXPECT_FALSE(wide.RemoveOnNotReady());
}

TEST_F(RouteRedistributeItemTest, PrintsTheProtocolsAndPriorityInHexadecimal) {
    RouteRedistributeItem item(1, 1, 0x30000, 0xd0000, 26, 32773, 0);
    item.PrintItem(&console);
    EXPECT_EQ(console.Output(),
              "RedistItem: Instance(32773) Dest(0xd0000) Src(0x30000) Priority(0x1a) "
              "RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n");
}

TEST_F(RouteRedistributeItemTest, PrintsStateAndReason) {
    RouteRedistributeItem item(6, 2, 3, 0x80000, 0, 5, 0);
    item.SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    item.SetReasonCode(19);
    item.PrintItem(&console);
    EXPECT_EQ(console.Output(),
              "RedistItem: Instance(5) Dest(0x80000) Src(0x3) Priority(0x0) RowStatus(Destroy) "
              "AdminStatus(2) ActionState(Issued) Reason(Unknown)\n");
}

TEST_F(RouteRedistributeItemTest, ReplaceNeedsTheSameOidRowStatusAndAdminStatus) {
    RouteRedistributeItem item(1, 1, 3, 0x80000, 0, 5, 0);
    item.GetOid();
    RouteRedistributeItem same(1, 1, 3, 0x80000, 9, 5, 4);
    RouteRedistributeItem otherRow(6, 1, 3, 0x80000, 0, 5, 0);
    RouteRedistributeItem otherAdmin(1, 2, 3, 0x80000, 0, 5, 0);
    RouteRedistributeItem otherSource(1, 1, 8, 0x80000, 0, 5, 0);
    EXPECT_FALSE(item.Replace(nullptr));
    EXPECT_TRUE(item.Replace(static_cast<CfgItem*>(&same)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherRow)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherAdmin)));
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&otherSource)));
}

TEST_F(RouteRedistributeItemTest, ReplaceOfAnItemOfAnotherKindIsFalse) {
    const unsigned char address[4] = {10, 0, 0, 0};
    RouteRedistributeItem item(1, 1, 3, 0x80000, 0, 5, 0);
    item.GetOid();
    StaticRouteItem route(5, 1, 1, 1, address, 8, address, 1, 1, 0x30000, 0);
    EXPECT_FALSE(item.Replace(static_cast<CfgItem*>(&route)));
}

}  // namespace
}  // namespace Zavrel
