// What runs out of memory: each allocation the library makes fails once,
// through the allocation fault hook, and the test checks the text logged
// and that nothing was left half-done.
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgSched.h"
#include "interfaces/DcInterfaceMgr.h"
#include "pipeline/PipelineFixture.h"
#include "platform/AllocationFaults.h"
#include "platform/Ip4Addr.h"
#include "platform/Options.h"
#include "routing/DcRouterBase.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"

namespace Zavrel {
namespace {

typedef std::vector<std::string> Lines;

class AllocationFailureTest : public test::PipelineFixture {
protected:
    void TearDown() override {
        AllocationFaults::Clear();
        test::PipelineFixture::TearDown();
    }

    static void AddTheRoute() {
        AddRoute(5, Ip4Addr(10, 0, 0, 0), Ip4Addr(255, 255, 255, 0), Ip4Addr(192, 168, 1, 1), 7, 3,
                 0x30000, 1);
    }
    void Ready() {
        AsStack([] {
            cSetRtmReady(5);
            cI3Ready();
        });
        Tick();
        Stack().ClearCalls();
        trace.Clear();
    }
    bool CreateVlan(unsigned short vid) {
        Options options;
        return mgr->CreateVlan(vid, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second;
    }
    size_t Queued(unsigned int kind) const {
        return mgr->GetCfgSched().Items(CfgKey(5, kind)).size();
    }
};

TEST_F(AllocationFailureTest, RouterManagerIsNullAndSaysSoThenComesOnTheNextCall) {
    DcRouterMgr::ResetForTests();
    trace.Clear();
    AllocationFaults::FailNth("DcRouterMgr", 1);
    EXPECT_EQ(DcRouterMgr::GetInstance(), nullptr);
    EXPECT_EQ(trace.Texts(0), Lines({"Error in allocating DcRouterMgr\n"}));
    mgr = DcRouterMgr::GetInstance();
    EXPECT_NE(mgr, nullptr);
}

TEST_F(AllocationFailureTest, RtmManagerIsNullAndSaysSo) {
    DcRouterMgr::ResetForTests();
    trace.Clear();
    AllocationFaults::FailNth("DcRtmMgr", 1);
    EXPECT_EQ(DcRtmMgr::GetInstance(), nullptr);
    EXPECT_EQ(trace.Texts(0), Lines({"DcRtmMgr::GetInstance: Error in allocating DcRtmMgr\n"}));
    EXPECT_NE(DcRtmMgr::GetInstance(), nullptr);
    mgr = DcRouterMgr::GetInstance();
}

TEST_F(AllocationFailureTest, InterfaceManagerIsNullAndSaysSoAtLevelZeroAsTheOthersDo) {
    DcRouterMgr::ResetForTests();
    trace.Clear();
    AllocationFaults::FailNth("DcInterfaceMgr", 1);
    EXPECT_EQ(DcInterfaceMgr::GetInstance(), nullptr);
    EXPECT_EQ(trace.Texts(0),
              Lines({"DcInterfaceMgr::GetInstance: Error in allocating DcInterfaceMgr\n"}));
    EXPECT_NE(DcInterfaceMgr::GetInstance(), nullptr);
    mgr = DcRouterMgr::GetInstance();
}

TEST_F(AllocationFailureTest, AVlanWhoseRouterCannotBeMadeIsRolledBack) {
    for (const char* kind : {"DcBgpRouter", "DcRipv2Router", "DcMulticastRouter"}) {
        trace.Clear();
        AllocationFaults::FailNth(kind, 1);
        EXPECT_FALSE(CreateVlan(5)) << kind;
        EXPECT_EQ(mgr->GetVlans().count(5), 0u) << kind;
        // The RTM instances made for the VLAN are taken back too.
        amb_cipr_rtm_entity entity = {};
        EXPECT_FALSE(DcRtmMgr::GetInstance()->GetRTMConfig(5, &entity)) << kind;
    }
}

TEST_F(AllocationFailureTest, TheRouterThatCouldNotBeMadeIsNamed) {
    AllocationFaults::FailNth("DcBgpRouter", 1);
    EXPECT_FALSE(CreateVlan(5));
    EXPECT_EQ(trace.Texts(0), Lines({"Memory allocation failed for BGP4+ router\n"}));
    trace.Clear();
    AllocationFaults::FailNth("DcRipngRouter", 1);
    EXPECT_FALSE(CreateVlan(5));
    EXPECT_EQ(trace.Texts(0), Lines({"Memory allocation failed for RIPng router\n"}));
    trace.Clear();
    // The second multicast router is MLD.
    AllocationFaults::FailNth("DcMulticastRouter", 2);
    EXPECT_FALSE(CreateVlan(5));
    EXPECT_EQ(trace.Texts(0), Lines({"Memory allocation failed for MLD router\n"}));
    EXPECT_TRUE(CreateVlan(5));
}

TEST_F(AllocationFailureTest, AVlanRecordThatCannotBeMadeCreatesNothing) {
    AllocationFaults::FailNth("VlanRouters", 1);
    EXPECT_FALSE(CreateVlan(5));
    EXPECT_EQ(mgr->GetVlans().count(5), 0u);
    EXPECT_TRUE(Requests().empty());
}

TEST_F(AllocationFailureTest, InterfaceRowsAreQueuedBothOrNeither) {
    Ready();
    // The IPv6 row's action is the second of the two.
    AllocationFaults::FailNth("InterfaceAction", 2);
    DcInterfaceMgr::GetInstance()->SetInterfaceStatus(5, 100, "eth0", 4, 1, 0, 0, 0);
    EXPECT_EQ(trace.Texts(1), Lines({"Error in Allocating InterfaceAction\n"}));
    EXPECT_TRUE(Requests().empty());
    EXPECT_EQ(mgr->GetSerializer().PendingActionCount(MibOid()), 0u);
    EXPECT_EQ(PendingActions(), "\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)");
}

TEST_F(AllocationFailureTest, AddressRowsThatCannotBeMadeAreDroppedWithoutAWord) {
    Ready();
    AllocationFaults::FailNth("IPv4AddressAction", 1);
    DcInterfaceMgr::GetInstance()->UpdateIpAddress(5, 100, Ip4Addr(10, 0, 0, 1),
                                                   Ip4Addr(255, 255, 255, 0), 4);
    EXPECT_TRUE(trace.Texts(1).empty());
    EXPECT_TRUE(Requests().empty());
}

TEST_F(AllocationFailureTest, AStaticRouteThatCannotBeMadeIsNotQueued) {
    AllocationFaults::FailNth("StaticRouteItem", 1);
    AddTheRoute();
    EXPECT_EQ(trace.Texts(1),
              Lines({"DcRtmMgr::UpdateStaticRoute: Error in Allocating RouteItem\n"}));
    EXPECT_EQ(mgr->GetCfgSched().BucketCount(), 0u);
}

TEST_F(AllocationFailureTest, ARedistributionThatCannotBeMadeIsNotQueued) {
    AllocationFaults::FailNth("RouteRedistributeItem", 1);
    DcRtmMgr::GetInstance()->Redistribute(1, 1, 0x30000, 0x80000, 5);
    EXPECT_EQ(trace.Texts(1), Lines({"Error in allocating Redistribution Item\n"}));
    EXPECT_EQ(mgr->GetCfgSched().BucketCount(), 0u);
}

TEST_F(AllocationFailureTest, ABucketThatCannotBeMadeDropsTheItemAndLeavesNoBucket) {
    AllocationFaults::FailNth("CfgBucket", 1);
    AddTheRoute();
    EXPECT_EQ(trace.Texts(1), Lines({"CfgSched::Insert: Error in allocating CfgBucket\n"}));
    EXPECT_EQ(mgr->GetCfgSched().BucketCount(), 0u);
    AddTheRoute();
    EXPECT_EQ(Queued(DcRtmMgr::CFG_KEY_STATIC_ROUTE), 1u);
}

TEST_F(AllocationFailureTest, ARouteRequestThatCannotBeMadeLeavesTheItemNewForTheNextTick) {
    Ready();
    AddTheRoute();
    AllocationFaults::FailNth("RouteAction", 1);
    Tick();
    EXPECT_EQ(trace.Texts(1), Lines({"StaticRouteItem::Send: Error in allocating RouteAction\n"}));
    EXPECT_TRUE(Requests().empty());
    ASSERT_EQ(Queued(DcRtmMgr::CFG_KEY_STATIC_ROUTE), 1u);
    EXPECT_FALSE(
        mgr->GetCfgSched().Items(CfgKey(5, DcRtmMgr::CFG_KEY_STATIC_ROUTE))[0]->IsIssued());
    Tick();
    EXPECT_EQ(Requests().size(), 1u);
}

TEST_F(AllocationFailureTest, ARedistributionRequestThatCannotBeMadeIsSentOnALaterTick) {
    // An enabled RIPv2 router queues its redistribution entries (static,
    // connected, OSPF, BGP); the first one's request cannot be made.
    Options options;
    ASSERT_TRUE(options.LoadFromText(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": 1}}]}"));
    ASSERT_TRUE(mgr->Reload(options, "vlan.json", DclConfigObject::OPTION_TYPE_VLAN));
    AllocationFaults::FailNth("RedistAction", 1);
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    EXPECT_EQ(trace.Texts(1),
              Lines({"RouteRedistributeItem::Send: Error in allocating RedistAction\n"}));
    // The entry whose request could not be made is still New, and goes out
    // on a later tick with the others: nothing is lost.
    for (int i = 0; i < 5; ++i) {
        Tick();
    }
    const std::vector<std::string> sent = Stack().Calls("sms_act_cipr_redist");
    EXPECT_EQ(std::set<std::string>(sent.begin(), sent.end()).size(),
              Queued(DcRtmMgr::CFG_KEY_REDISTRIBUTION));
    EXPECT_EQ(sent.size(), 4u);
}

TEST_F(AllocationFailureTest, AConfigurationBundleThatCannotBeMadeIsNotKept) {
    ASSERT_TRUE(CreateVlan(5));
    DcRouterBase* bgp = mgr->GetDcRouterByVID(5, DcRouterMgr::BGP);
    ASSERT_NE(bgp, nullptr);
    Options options;
    ASSERT_TRUE(options.LoadFromText("{\"enabled\": true}"));
    AllocationFaults::FailNth("DcConfigLists", 1);
    EXPECT_TRUE(bgp->ReloadSection(options.Root(), "site", DclConfigObject::OPTION_TYPE_VLAN));
    EXPECT_TRUE(bgp->GetConfigLists().empty());
    // The next reload makes it.
    EXPECT_TRUE(bgp->ReloadSection(options.Root(), "site", DclConfigObject::OPTION_TYPE_VLAN));
    EXPECT_EQ(bgp->GetConfigLists().size(), 1u);
}

}  // namespace
}  // namespace Zavrel
