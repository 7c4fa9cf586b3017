// Redistribution entries from the RTM manager and from a router's profile to
// the stack and back.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgSched.h"
#include "pipeline/PipelineFixture.h"
#include "platform/Options.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

const char kLegend[] = "\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)";

class RedistributionPipelineTest : public test::PipelineFixture {
protected:
    void ReloadVlan5(const char* ripv2Section) {
        Options options;
        std::string text = std::string("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": ") +
                           ripv2Section + "}]}";
        ASSERT_TRUE(options.LoadFromText(string(text)));
        ASSERT_TRUE(mgr->Reload(options, "vlan.json", DclConfigObject::OPTION_TYPE_VLAN));
    }
    static void Done(unsigned long source, unsigned long dest) {
        std::vector<unsigned long> oid = RecordingStack::RedistOid(5, source, dest);
        cRunPendingAction(oid.data(), oid.size());
    }
    std::string Items() {
        CapturingConsole out;
        mgr->GetCfgSched().PrintSummary(&out);
        mgr->GetCfgSched().Print(&out);
        return out.Output();
    }
    size_t Sends() const {
        return Stack().Calls("sms_act_cipr_redist").size() +
               Stack().Calls("sms_bld_amb_test_cipr_redist").size();
    }
};

const char kStatic[] = "sms_act_cipr_redist(1, 1, 196608, 524288, 5, 0)";
const char kConnected[] = "sms_act_cipr_redist(1, 1, 131072, 524288, 5, 0)";
const char kOspf[] = "sms_act_cipr_redist(1, 1, 851968, 524288, 5, 0)";

TEST_F(RedistributionPipelineTest,
       EnabledRouterQueuesOneEntryPerAllowedSourceThatWaitsForItsInstance) {
    ReloadVlan5("{\"enabled\": 1, \"REDISTRIBUTION\": {\"bgp\": 0}}");
    Tick();
    Tick();
    EXPECT_EQ(Sends(), 0u);
    EXPECT_EQ(Items(), std::string("Pending Item Buckets: 1\n") +
                           "==== Item 0 ====\n"
                           "RedistItem: Instance(5) Dest(0x80000) Src(0x30000) Priority(0x0) "
                           "RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n\n"
                           "==== Item 1 ====\n"
                           "RedistItem: Instance(5) Dest(0x80000) Src(0x20000) Priority(0x0) "
                           "RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n\n"
                           "==== Item 2 ====\n"
                           "RedistItem: Instance(5) Dest(0x80000) Src(0xd0000) Priority(0x0) "
                           "RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n\n");

    trace.Clear();
    Stack().ClearCalls();
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    EXPECT_EQ(Requests(), (std::vector<std::string>{kStatic, kConnected, kOspf}));
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "OnTIMEOUT Sending MIB ACTION\n",
                  "Redist context = 0 vlan = 5 dest = 80000 src = 30000 pri = 0 row_status = 1 "
                  "admin_status = 1\n",
                  "OnTIMEOUT Sending MIB ACTION\n",
                  "Redist context = 0 vlan = 5 dest = 80000 src = 20000 pri = 0 row_status = 1 "
                  "admin_status = 1\n",
                  "OnTIMEOUT Sending MIB ACTION\n",
                  "Redist context = 0 vlan = 5 dest = 80000 src = d0000 pri = 0 row_status = 1 "
                  "admin_status = 1\n"}));
    EXPECT_EQ(PendingActions(),
              std::string(kLegend) +
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:3:5:131072:524288)"
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:3:5:196608:524288)"
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:3:5:851968:524288)");
}

TEST_F(RedistributionPipelineTest, AnswersRemoveRetryOrParkTheEntries) {
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    ReloadVlan5("{\"enabled\": 1, \"REDISTRIBUTION\": {\"bgp\": 0}}");
    Tick();
    ASSERT_EQ(Sends(), 3u);
    Stack().ClearCalls();
    trace.Clear();

    AsStack([] {
        cSetRedistState(1, 1, 0x30000, 0x80000, 0, 5, 0, 1);  // static: done
        Done(0x30000, 0x80000);
        cSetRedistState(1, 1, 0x20000, 0x80000, 0, 5, 0, 5);  // connected: retried
        Done(0x20000, 0x80000);
        cSetRedistState(1, 1, 0xd0000, 0x80000, 0, 5, 0, 3);  // ospf: parked
        Done(0xd0000, 0x80000);
    });
    Tick();
    EXPECT_EQ(
        trace.Texts(10),
        (std::vector<std::string>{
            "Scheduling Timer Expired!!! Scheduling Metaswitch\n",
            "Redistribution Response from Metaswitch: vlan=5 src=196608 dst=524288 status=1\n",
            "Redistribution Request Success\n",
            "Redistribution Response from Metaswitch: vlan=5 src=131072 dst=524288 status=1\n",
            "Redistribution Request Not success!! Retrying...\n",
            "Redistribution Response from Metaswitch: vlan=5 src=851968 dst=524288 status=1\n",
            "Unable to set redistribution. No retry!!!\n",
            "Starting Scheduler Timer for 100 ms\n"}));
    // The retried entry goes again on the next tick, from the application side.
    EXPECT_EQ(Requests(), std::vector<std::string>{kConnected});
    Tick();
    Tick();
    EXPECT_EQ(Requests(), std::vector<std::string>{kConnected});
    EXPECT_EQ(Items(),
              std::string("Pending Item Buckets: 1\n") +
                  "==== Item 0 ====\n"
                  "RedistItem: Instance(5) Dest(0x80000) Src(0x20000) Priority(0x0) "
                  "RowStatus(Active) AdminStatus(1) ActionState(Issued) Reason(genErr)\n\n"
                  "==== Item 1 ====\n"
                  "RedistItem: Instance(5) Dest(0x80000) Src(0xd0000) Priority(0x0) "
                  "RowStatus(Active) AdminStatus(1) ActionState(Issued) Reason(badValue)\n\n");
    EXPECT_EQ(
        PendingActions(),
        std::string(kLegend) + "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:3:5:131072:524288)");
}

TEST_F(RedistributionPipelineTest, ProfileChangeDestroysTheEntryOfTheSourceNoLongerAllowed) {
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    ReloadVlan5("{\"enabled\": 1, \"REDISTRIBUTION\": {\"bgp\": 0}}");
    Tick();
    AsStack([] {
        for (unsigned long source : {0x30000ul, 0x20000ul, 0xd0000ul}) {
            cSetRedistState(1, 1, source, 0x80000, 0, 5, 0, 1);
            Done(source, 0x80000);
        }
    });
    Tick();
    ASSERT_EQ(Items(), "Pending Item Buckets: 0\n");
    Stack().ClearCalls();

    ReloadVlan5("{\"enabled\": 1, \"REDISTRIBUTION\": {\"bgp\": 0, \"static\": 0}}");
    Tick();
    EXPECT_EQ(Requests(),
              std::vector<std::string>{"sms_act_cipr_redist(6, 2, 196608, 524288, 5, 0)"});
    // A destroy answered "no row" counts as done.
    AsStack([] {
        cSetRedistState(6, 2, 0x30000, 0x80000, 0, 5, 0, 6);
        Done(0x30000, 0x80000);
    });
    Tick();
    EXPECT_TRUE(trace.Contains(10, "Redistribution Request Success\n"));
    EXPECT_EQ(Items(), "Pending Item Buckets: 0\n");
    EXPECT_EQ(PendingActions(), kLegend);
}

TEST_F(RedistributionPipelineTest, EntryForARouterThatIsNotReadyIsDroppedWhileItsInstanceIsKnown) {
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    ReloadVlan5("{\"enabled\": 0}");
    Tick();
    Stack().ClearCalls();
    // Into OSPFv2, which is not enabled in VLAN 5.
    DcRtmMgr::GetInstance()->Redistribute(1, 1, 0x30000, 0xd0000, 5);
    Tick();
    EXPECT_EQ(Sends(), 0u);
    EXPECT_EQ(Items(), "Pending Item Buckets: 0\n");
}

TEST_F(RedistributionPipelineTest, EndOfTheRequestReleasesTheNextRequestOfTheSameEntry) {
    AsStack([] {
        cSetRtmReady(5);
        cI3Ready();
    });
    Tick();
    ReloadVlan5(
        "{\"enabled\": 1, \"REDISTRIBUTION\": {\"static\": 0, \"connected\": 0, "
        "\"ospf\": 0, \"bgp\": 0}}");
    Tick();
    ASSERT_EQ(Sends(), 0u);
    // Instance 5 was reported ready with the default settings, so only the
    // IPv6 instance is started.
    ASSERT_EQ(Requests(), std::vector<std::string>{
                              "sms_cipr_start(32773, {inst=0 rs=0 as=0 ospf_int=40 ospf_ext=110 "
                              "ebgp=20 ibgp=200 rip=120 dead=60 af=2})"});
    Stack().ClearCalls();
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    rtm->Redistribute(1, 1, 0xe0000, 0x80000, 5);
    rtm->Redistribute(6, 2, 0xe0000, 0x80000, 5);
    Tick();
    EXPECT_EQ(Requests(),
              std::vector<std::string>{"sms_act_cipr_redist(1, 1, 917504, 524288, 5, 0)"});
    EXPECT_EQ(
        PendingActions(),
        std::string(kLegend) + "\n(Actions_Count=2, MibOid=1:3:6:1:4:1:4874:3:5:917504:524288)");
    AsStack([] { Done(0xe0000, 0x80000); });
    Tick();
    EXPECT_EQ(Requests(), (std::vector<std::string>{
                              "sms_act_cipr_redist(1, 1, 917504, 524288, 5, 0)",
                              "sms_bld_amb_test_cipr_redist(5, 6, 2, 524288, 917504, 0)"}));
}

}  // namespace
}  // namespace Zavrel
