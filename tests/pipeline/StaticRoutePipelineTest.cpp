// A static route from the application to the stack and back, through the
// configuration scheduler, the serializer and the stack's answers.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgSched.h"
#include "pipeline/PipelineFixture.h"
#include "platform/Ip4Addr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

const unsigned char kDest[4] = {10, 0, 0, 0};
const unsigned char kHop[4] = {192, 168, 1, 1};

const char kSendShared[] =
    "sms_update_route(0, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)";
const char kSendApp[] = "sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 7, 5, 3)";
const char kIssueTrace[] =
    "Vlan = 5 if_index = 7 ipaddr = 10.0.0.0/24 gw = 192.168.1.1 metric = 3 "
    "path_type = 196608 row status = 1 admin_status = 1\n";
const char kResponse[] =
    "Route Update Response from Metaswitch: vlan = 5, dest= 10.0.0.0/24 nexthop: 192.168.1.1\n";
const char kLegend[] = "\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)";
const char kOid[] = "1:3:6:1:4:1:4874:2:5:1:24:10:0:0:0:192:168:1:1:7";

class StaticRoutePipelineTest : public test::PipelineFixture {
protected:
    static void AddTheRoute() {
        AddRoute(5, Ip4Addr(10, 0, 0, 0), Ip4Addr(255, 255, 255, 0), Ip4Addr(192, 168, 1, 1), 7, 3,
                 0x30000, 1);
    }
    // The stack's report on the route row (as requested, admin status given).
    static void Answer(unsigned int result, int adminStatus = 1) {
        cSetRouteState(5, 1, kDest, 24, kHop, 7, 3, 0x30000, 1, adminStatus, 0, result);
    }
    // The end of the request on the route row.
    static void Done() {
        std::vector<unsigned long> oid = RecordingStack::RouteOid(5, 1, kDest, 24, kHop, 7);
        cRunPendingAction(oid.data(), oid.size());
    }
    // Instance and stack both ready, the route sent once.
    void ReadyAndSent() {
        AsStack([] {
            cSetRtmReady(5);
            cI3Ready();
        });
        Tick();
        AddTheRoute();
        Tick();
        ASSERT_EQ(Requests(), std::vector<std::string>{kSendApp});
        Stack().ClearCalls();
        trace.Clear();
    }
    size_t Sends() const { return Stack().Calls("sms_update_route").size(); }
    std::string Items() {
        CapturingConsole out;
        mgr->GetCfgSched().PrintSummary(&out);
        mgr->GetCfgSched().Print(&out);
        return out.Output();
    }
};

TEST_F(StaticRoutePipelineTest,
       RouteWaitsForItsInstanceAndForTheStackThenIsIssuedFromTheStacksRun) {
    AddTheRoute();
    Tick();
    Tick();
    EXPECT_TRUE(Requests().empty());
    EXPECT_TRUE(trace.Texts(5).empty());

    AsStack([] { cSetRtmReady(5); });
    Tick();
    Tick();
    // Sent by the scheduler, held by the serializer until the stack is ready.
    EXPECT_TRUE(Requests().empty());
    EXPECT_EQ(trace.Texts(5), std::vector<std::string>{"OnTIMEOUT Sending MIB ACTION\n"});
    EXPECT_EQ(PendingActions(), std::string(kLegend) + "\n(Actions_Count=1, MibOid=" + kOid + ")");

    trace.Clear();
    AsStack([] { cI3Ready(); });
    Tick();
    EXPECT_EQ(Requests(), std::vector<std::string>{kSendShared});
    EXPECT_EQ(trace.Texts(5), std::vector<std::string>{kIssueTrace});
}

TEST_F(StaticRoutePipelineTest, RouteSentOnceTheStackIsReadyGoesOutFromTheApplicationSide) {
    AsStack([] {
        cI3Ready();
        cSetRtmReady(5);
    });
    Tick();
    AddTheRoute();
    Tick();
    EXPECT_EQ(Requests(), std::vector<std::string>{kSendApp});
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{"OnTIMEOUT Sending MIB ACTION\n", kIssueTrace}));
}

TEST_F(StaticRoutePipelineTest, SuccessRemovesTheItemAndTheEndOfTheRequestForgetsTheRow) {
    ReadyAndSent();
    AsStack([] {
        Answer(1);
        Done();
    });
    Tick();
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{"Scheduling Timer Expired!!! Scheduling Metaswitch\n",
                                        kResponse, "Route Programmed Successfully\n",
                                        "Starting Scheduler Timer for 100 ms\n"}));
    EXPECT_EQ(trace.Texts(5), std::vector<std::string>{"Removing the handle\n"});
    EXPECT_EQ(PendingActions(), kLegend);
    EXPECT_EQ(Items(), "Pending Item Buckets: 0\n");
    for (int i = 0; i < 5; ++i) {
        Tick();
    }
    EXPECT_EQ(Sends(), 0u);
}

TEST_F(StaticRoutePipelineTest, FailureWithResult5IsResentOnTheNextTickNineTimesThenParked) {
    ReadyAndSent();
    for (int failure = 1; failure <= 10; ++failure) {
        AsStack([] {
            Answer(5);
            Done();
        });
        Tick();
        // The failure is answered in the stack's run; the next tick re-sends
        // (from the application side) until nine re-sends are used up.
        EXPECT_EQ(Sends(), static_cast<size_t>(failure <= 9 ? failure : 9)) << failure;
    }
    EXPECT_EQ(Stack().Calls("sms_update_route"), std::vector<std::string>(9, kSendApp));
    EXPECT_EQ(trace.Texts(10)[1], kResponse);
    EXPECT_EQ(trace.Texts(10)[2], "Route Not programmed!!! Retrying...\n");
    for (int i = 0; i < 5; ++i) {
        Tick();
    }
    EXPECT_EQ(Sends(), 9u);
    EXPECT_EQ(PendingActions(), kLegend);
    EXPECT_EQ(Items(),
              "Pending Item Buckets: 1\n"
              "==== Item 0 ====\n"
              "StaticRouteItem: vrf(5) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(7) metric(3) "
              "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(Issued) Reason(genErr)\n"
              "\n");
}

TEST_F(StaticRoutePipelineTest, FailureWithResult3IsParkedAtOnce) {
    ReadyAndSent();
    AsStack([] {
        Answer(3);
        Done();
    });
    Tick();
    Tick();
    Tick();
    EXPECT_EQ(Sends(), 0u);
    EXPECT_EQ(trace.Texts(10)[2], "Unable to set route. No retry!!!\n");
    EXPECT_EQ(Items(),
              "Pending Item Buckets: 1\n"
              "==== Item 0 ====\n"
              "StaticRouteItem: vrf(5) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(7) metric(3) "
              "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(Issued) Reason(badValue)\n"
              "\n");
}

TEST_F(StaticRoutePipelineTest, EndOfTheRequestReleasesTheNextRequestOfThatRowFromTheStacksRun) {
    ReadyAndSent();
    // Same row, admin down: a second item, its action waits behind the first.
    DisableRoute(5, Ip4Addr(10, 0, 0, 0), Ip4Addr(255, 255, 255, 0), Ip4Addr(192, 168, 1, 1), 7);
    Tick();
    EXPECT_EQ(Sends(), 0u);
    EXPECT_EQ(PendingActions(), std::string(kLegend) + "\n(Actions_Count=2, MibOid=" + kOid + ")");

    AsStack([] { Answer(1); });
    Tick();
    EXPECT_EQ(Sends(), 0u);  // the report alone releases nothing

    AsStack([] { Done(); });
    Tick();
    EXPECT_EQ(Stack().Calls("sms_update_route"),
              std::vector<std::string>{
                  "sms_update_route(0, 1, 2, 1, 10.0.0.0, 24, 192.168.1.1, 0, 7, 5, 0)"});
    EXPECT_EQ(PendingActions(), std::string(kLegend) + "\n(Actions_Count=1, MibOid=" + kOid + ")");

    AsStack([] {
        cSetRouteState(5, 1, kDest, 24, kHop, 7, 0, 0, 1, 2, 0, 1);
        Done();
    });
    Tick();
    EXPECT_EQ(PendingActions(), kLegend);
    EXPECT_EQ(Items(), "Pending Item Buckets: 0\n");
}

}  // namespace
}  // namespace Zavrel
