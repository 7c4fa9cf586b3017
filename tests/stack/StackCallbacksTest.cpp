#include "stack/StackCallbacks.h"

#include <dlfcn.h>

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "interfaces/DcInterfaceMgr.h"
#include "mib/Serializer.h"
#include "platform/Ip4Addr.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"
#include "support/testsupport/TestAddresses.h"

namespace Zavrel {
namespace {

using test::RecordingStack;
typedef std::vector<std::string> Lines;

const unsigned long IP6 = DcRtmMgr::IP6_INSTANCE_BIT;

using test::V4;

class StackCallbacksTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        // The managers exist, as they do once the application has started.
        ASSERT_NE(DcRouterMgr::GetInstance(), nullptr);
        ASSERT_NE(rtm(), nullptr);
        trace.Clear();
    }

    static DcRtmMgr* rtm() { return DcRtmMgr::GetInstance(); }
    static DcInterfaceMgr* interfaces() { return DcInterfaceMgr::GetInstance(); }
};

TEST_F(StackCallbacksTest, EntryPointsAreExportedUnderTheirPlainNames) {
    const char* const names[] = {"cRescheduleNBase",
                                 "cIsNBaseRescheduled",
                                 "cRegisterWorkWithEventloop",
                                 "cUnregisterWorkWithEventloop",
                                 "cChangeMask",
                                 "cIsIpv6Instance",
                                 "cGetIp6Instance",
                                 "cGetIp4Instance",
                                 "cSetRouteState",
                                 "cSetRedistState",
                                 "cIsRtmReady",
                                 "cSetRtmReady",
                                 "cGetRtmConfig",
                                 "cGetAddress",
                                 "cGetVlanAddress",
                                 "cI3Ready",
                                 "cRunPendingAction"};
    for (const char* name : names) {
        EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
    }
}

// ---- instances

TEST_F(StackCallbacksTest, Ipv6InstanceIsRecognisedByItsBit) {
    EXPECT_EQ(cIsIpv6Instance(5 | IP6), 1);
    EXPECT_EQ(cIsIpv6Instance(5), 0);
    EXPECT_EQ(cIsIpv6Instance(0), 0);
}

TEST_F(StackCallbacksTest, InstanceLookupsIgnoreTheIpv6BitOfTheirArgument) {
    EXPECT_EQ(cGetIp6Instance(5), 32773ul);
    EXPECT_EQ(cGetIp6Instance(5 | IP6), 32773ul);
    EXPECT_EQ(cGetIp4Instance(5), 5ul);
    EXPECT_EQ(cGetIp4Instance(5 | IP6), 5ul);
}

TEST_F(StackCallbacksTest, InstanceLookupsKeepTheLowSixteenBits) {
    EXPECT_EQ(cGetIp4Instance(0x10007ul), 7ul);
    EXPECT_EQ(cGetIp6Instance(0x18007ul), 32775ul);
}

// ---- RTM readiness and settings

TEST_F(StackCallbacksTest, RtmOfAnUnknownVlanIsNotReady) {
    EXPECT_EQ(cIsRtmReady(77), 0);
}

TEST_F(StackCallbacksTest, SetRtmReadyOnAnUnknownVlanCreatesItsEntry) {
    cSetRtmReady(77);
    EXPECT_TRUE(rtm()->HasRtmData(77));
    EXPECT_EQ(cIsRtmReady(77), 1);
}

TEST_F(StackCallbacksTest, SetRtmReadyMarksAKnownInstanceReady) {
    DcRtmMgr::RTMData data;
    rtm()->CreateRTMInstance(5, 0, data);
    EXPECT_EQ(cIsRtmReady(5), 0);
    cSetRtmReady(5);
    EXPECT_EQ(cIsRtmReady(5), 1);
}

TEST_F(StackCallbacksTest, ReadinessCallsDoNotStripTheIpv6Bit) {
    cSetRtmReady(5 | IP6);
    EXPECT_EQ(cIsRtmReady(5), 0);
    EXPECT_EQ(cIsRtmReady(5 | IP6), 1);
    EXPECT_FALSE(rtm()->HasRtmData(5));
    EXPECT_TRUE(rtm()->HasRtmData(5 | IP6));
}

TEST_F(StackCallbacksTest, GetRtmConfigOfAnUnknownInstanceFailsWithTwo) {
    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0xAB, sizeof(entity));
    EXPECT_EQ(cGetRtmConfig(9, &entity), 2);
    EXPECT_EQ(entity.instance_index, static_cast<unsigned long>(~0ul / 0xFF * 0xAB));
}

TEST_F(StackCallbacksTest, GetRtmConfigFillsTheEntityOfAKnownInstance) {
    DcRtmMgr::RTMData data;
    rtm()->CreateRTMInstance(5, 0, data);
    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0xAB, sizeof(entity));
    EXPECT_EQ(cGetRtmConfig(5, &entity), 1);
    EXPECT_EQ(entity.instance_index, 5ul);
    EXPECT_EQ(entity.row_status, 1ul);
    EXPECT_EQ(entity.admin_status, 1ul);
    EXPECT_EQ(entity.dead_rpm_timer, 60ul);
    EXPECT_EQ(entity.rip_distance, 120ul);
}

TEST_F(StackCallbacksTest, GetRtmConfigDoesNotStripTheIpv6Bit) {
    DcRtmMgr::RTMData data;
    rtm()->CreateRTMInstance(5, 0, data);
    amb_cipr_rtm_entity entity;
    EXPECT_EQ(cGetRtmConfig(5 | IP6, &entity), 2);
    rtm()->CreateRTMInstance(5, 41, data);
    EXPECT_EQ(cGetRtmConfig(5 | IP6, &entity), 1);
    EXPECT_EQ(entity.instance_index, 32773ul);
}

// ---- route and redistribution outcomes

TEST_F(StackCallbacksTest, RouteStateStripsTheInstanceAndPassesTheValuesInOrder) {
    const unsigned char dest[4] = {10, 0, 0, 0};
    const unsigned char nextHop[4] = {192, 168, 1, 1};
    trace.Clear();

    cSetRouteState(5 | IP6, 1, dest, 24, nextHop, 3, 1, 4, 1, 1, 0, 1);

    EXPECT_EQ(trace.Texts(10),
              (Lines{"Route Update Response from Metaswitch: vlan = 5, dest= 10.0.0.0/24 "
                     "nexthop: 192.168.1.1\n",
                     "Route Programmed Successfully\n"}));
}

TEST_F(StackCallbacksTest, RouteStateWithAFailureAsksForARetry) {
    const unsigned char dest[4] = {10, 0, 0, 0};
    const unsigned char nextHop[4] = {192, 168, 1, 1};
    trace.Clear();
    cSetRouteState(5, 1, dest, 24, nextHop, 3, 1, 4, 1, 1, 0, 5);
    EXPECT_TRUE(trace.Contains(10, "Route Not programmed!!! Retrying...\n"));
}

TEST_F(StackCallbacksTest, RouteStateOfAnIpv6InstanceEndsTheRouteOfItsVlan) {
    CfgSched& sched = DcRouterMgr::GetInstance()->GetCfgSched();
    AddRoute(5, V4("10.0.0.0"), V4("255.255.255.0"), V4("192.168.1.1"), 3, 1, 0x30000, 1);
    cSetRtmReady(5);
    loop.Advance(100);  // the scheduler sends the route
    const CfgKey key(5, DcRtmMgr::CFG_KEY_STATIC_ROUTE);
    ASSERT_TRUE(sched.HasBucket(key));

    const unsigned char dest[4] = {10, 0, 0, 0};
    const unsigned char nextHop[4] = {192, 168, 1, 1};
    cSetRouteState(5 | IP6, 1, dest, 24, nextHop, 3, 1, 0x30000, 1, 1, 0, 1);

    EXPECT_FALSE(sched.HasBucket(key));
}

TEST_F(StackCallbacksTest, RedistStateReordersItsValuesAndKeepsTheInstanceAsItIs) {
    trace.Clear();
    // a0 row 1, a1 admin 2, a2 source 3, a3 destination 14, a4 unused,
    // a5 instance 32773, a6 extra, a7 result 1.
    cSetRedistState(1, 2, 3, 14, 99, 5 | IP6, 0, 1);
    EXPECT_EQ(trace.Texts(10),
              (Lines{"Redistribution Response from Metaswitch: vlan=32773 src=3 dst=14 "
                     "status=1\n",
                     "Redistribution Request Success\n"}));
}

TEST_F(StackCallbacksTest, RedistStateUsesTheLowSixteenBitsOfTheInstance) {
    trace.Clear();
    cSetRedistState(6, 2, 8, 13, 0, 0x10009, 0, 3);
    EXPECT_EQ(trace.Texts(10),
              (Lines{"Redistribution Response from Metaswitch: vlan=9 src=8 dst=13 status=6\n",
                     "Redistribution Request Not success!! Retrying...\n"}));
}

// ---- the eleven route-state values, by position

// cSetRouteState hands its eleven values, in this order, to the RTM
// manager's answer for a static route row: family, destination, prefix
// length, next hop, ifIndex, metric, route type, row status, admin status, a
// spare value and the stack's result. Each row of the table changes one
// value of a base report and says what the answer then shows. The family,
// the addresses and the prefix length show in the logged response and in
// the OID the answer looks the route up by, the ifIndex only in that OID;
// row status and result pick the outcome. Metric, route type, admin status
// and the spare value take no part in the answer, so changing one of them
// changes nothing; a value that went to another place would change
// something there. (Two of those four swapped with each other could not be
// seen from outside.)
class RouteStateValuesTest : public StackCallbacksTest {
protected:
    struct Report {
        int family = 1;
        unsigned char destination[16] = {10, 1, 2, 0};
        unsigned int prefixLength = 27;
        unsigned char nextHop[16] = {192, 168, 1, 9};
        unsigned int ifIndex = 7;
        int metric = 3;
        int routeType = 0x30000;
        int rowStatus = 1;
        int adminStatus = 1;
        unsigned long spare = 0;
        unsigned int result = 3;
    };

    void SetUp() override {
        StackCallbacksTest::SetUp();
        // A waiting route of the VLAN: with a bucket to look in, the answer
        // builds the reported row's OID (an OID this route does not have).
        AddRoute(5, V4("10.99.0.0"), V4("255.255.0.0"), V4("192.168.1.1"), 1, 1, 0x30000, 1);
    }

    // The answer's log and the route OIDs it built.
    Lines Answer(const Report& r) {
        trace.Clear();
        stack().ClearCalls();
        cSetRouteState(5, r.family, r.destination, r.prefixLength, r.nextHop, r.ifIndex, r.metric,
                       r.routeType, r.rowStatus, r.adminStatus, r.spare, r.result);
        Lines seen = trace.Texts(10);
        for (const std::string& call : stack().Calls("sms_get_route_oid")) {
            seen.push_back(call);
        }
        return seen;
    }
};

TEST_F(RouteStateValuesTest, EachValueHasItsPlace) {
    const Lines base = {
        "Route Update Response from Metaswitch: vlan = 5, dest= 10.1.2.0/27 nexthop: "
        "192.168.1.9\n",
        "Unable to set route. No retry!!!\n",
        "sms_get_route_oid(5, 1, 10.1.2.0, 27, 192.168.1.9, 7)"};
    EXPECT_EQ(Answer(Report()), base);

    const struct {
        const char* value;
        void (*change)(Report&);
        Lines shows;
    } table[] = {
        {"1 family: 2 is IPv6, 16-byte addresses on the IPv6 instance",
         [](Report& r) { r.family = 2; },
         {"Route Update Response from Metaswitch: vlan = 5, dest= a01:200::/27 nexthop: "
          "c0a8:109::\n",
          "Unable to set route. No retry!!!\n",
          "sms_get_route_oid(32773, 2, a01:200::, 27, c0a8:109::, 7)"}},
        {"2 destination",
         [](Report& r) { r.destination[2] = 3; },
         {"Route Update Response from Metaswitch: vlan = 5, dest= 10.1.3.0/27 nexthop: "
          "192.168.1.9\n",
          "Unable to set route. No retry!!!\n",
          "sms_get_route_oid(5, 1, 10.1.3.0, 27, 192.168.1.9, 7)"}},
        {"3 prefix length",
         [](Report& r) { r.prefixLength = 26; },
         {"Route Update Response from Metaswitch: vlan = 5, dest= 10.1.2.0/26 nexthop: "
          "192.168.1.9\n",
          "Unable to set route. No retry!!!\n",
          "sms_get_route_oid(5, 1, 10.1.2.0, 26, 192.168.1.9, 7)"}},
        {"4 next hop",
         [](Report& r) { r.nextHop[3] = 10; },
         {"Route Update Response from Metaswitch: vlan = 5, dest= 10.1.2.0/27 nexthop: "
          "192.168.1.10\n",
          "Unable to set route. No retry!!!\n",
          "sms_get_route_oid(5, 1, 10.1.2.0, 27, 192.168.1.10, 7)"}},
        {"5 ifIndex",
         [](Report& r) { r.ifIndex = 8; },
         {base[0], base[1], "sms_get_route_oid(5, 1, 10.1.2.0, 27, 192.168.1.9, 8)"}},
        {"6 metric", [](Report& r) { r.metric = 99; }, base},
        {"7 route type", [](Report& r) { r.routeType = 0; }, base},
        {"8 row status: a destroy answered 3 is retried",
         [](Report& r) { r.rowStatus = 6; },
         {base[0], "Route Not programmed!!! Retrying...\n", base[2]}},
        {"9 admin status", [](Report& r) { r.adminStatus = 6; }, base},
        {"10 spare value", [](Report& r) { r.spare = 77; }, base},
        {"11 result: 1 is success",
         [](Report& r) { r.result = 1; },
         {base[0], "Route Programmed Successfully\n", base[2]}},
    };
    for (const auto& row : table) {
        Report report;
        row.change(report);
        EXPECT_EQ(Answer(report), row.shows) << row.value;
    }
    // The waiting route was never the one answered.
    ASSERT_EQ(DcRouterMgr::GetInstance()
                  ->GetCfgSched()
                  .Items(CfgKey(5, DcRtmMgr::CFG_KEY_STATIC_ROUTE))
                  .size(),
              1u);
}

// No manager exists when these tests start.
class StackAddressWithoutManagersTest : public test::RecordingStackEnv {};

TEST_F(StackAddressWithoutManagersTest, AddressWithoutABufferCreatesAndAsksNoManager) {
    EXPECT_EQ(cGetAddress(5, nullptr), 0);
    EXPECT_EQ(cGetAddress(5 | IP6, nullptr), 0);
    EXPECT_EQ(cGetVlanAddress(5, nullptr), 0);
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_TRUE(trace.Lines().empty());
    EXPECT_EQ(DcRouterMgr::ResetForTests(), 0) << "a manager was created";
}

// The check above can see a manager made: with a buffer, the lookup makes
// the RTM manager (for the instance bit) and the interface manager, but not
// the router manager.
TEST_F(StackAddressWithoutManagersTest, AddressWithABufferCreatesTheRtmAndInterfaceManagers) {
    unsigned char buffer[4] = {0xAA, 0xAA, 0xAA, 0xAA};
    EXPECT_EQ(cGetAddress(5, buffer), 0);
    EXPECT_FALSE(trace.Contains(10, "Creating new Instance of Manager\n"));
    EXPECT_EQ(DcRouterMgr::ResetForTests(), 2);
}

// ---- addresses

class StackAddressTest : public StackCallbacksTest {
protected:
    void SetUp() override {
        StackCallbacksTest::SetUp();
        std::memset(buffer, 0xAA, sizeof(buffer));
    }

    bool BufferUntouched() const {
        for (unsigned char byte : buffer) {
            if (byte != 0xAA) {
                return false;
            }
        }
        return true;
    }

    unsigned char buffer[4];
};

TEST_F(StackAddressTest, GetAddressWithoutABufferReturnsZeroAtOnce) {
    trace.Clear();
    EXPECT_EQ(cGetAddress(5, nullptr), 0);
    EXPECT_EQ(cGetVlanAddress(5, nullptr), 0);
    EXPECT_TRUE(trace.Lines().empty());
    EXPECT_TRUE(stack().Calls().empty());
}

TEST_F(StackAddressTest, GetAddressGivesThePrimaryInterfaceAddressInNetworkOrder) {
    interfaces()->AddInterface(5, 100, "wan0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->AddIpAddress(5, 100, V4("10.1.2.3"), V4("255.255.255.0"));
    interfaces()->SetPrimaryInterface(5, "wan0");

    EXPECT_EQ(cGetAddress(5 | IP6, buffer), 1);
    EXPECT_EQ(buffer[0], 10);
    EXPECT_EQ(buffer[1], 1);
    EXPECT_EQ(buffer[2], 2);
    EXPECT_EQ(buffer[3], 3);
}

TEST_F(StackAddressTest, GetAddressWithoutAPrimaryInterfaceLeavesTheBuffer) {
    interfaces()->AddInterface(5, 100, "wan0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->AddIpAddress(5, 100, V4("10.1.2.3"), V4("255.255.255.0"));
    EXPECT_EQ(cGetAddress(5, buffer), 0);
    EXPECT_TRUE(BufferUntouched());
}

TEST_F(StackAddressTest, GetAddressOfAPrimaryInterfaceOfAnotherVlanFails) {
    interfaces()->AddInterface(6, 100, "wan0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->AddIpAddress(6, 100, V4("10.1.2.3"), V4("255.255.255.0"));
    interfaces()->SetPrimaryInterface(5, "wan0");
    EXPECT_EQ(cGetAddress(5, buffer), 0);
    EXPECT_TRUE(BufferUntouched());
}

TEST_F(StackAddressTest, GetVlanAddressAlwaysAsksForEth0) {
    interfaces()->AddInterface(5, 100, "wan0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->AddIpAddress(5, 100, V4("10.1.2.3"), V4("255.255.255.0"));
    interfaces()->SetPrimaryInterface(5, "wan0");
    EXPECT_EQ(cGetVlanAddress(5, buffer), 0);
    EXPECT_TRUE(BufferUntouched());

    interfaces()->AddInterface(5, 101, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->AddIpAddress(5, 101, V4("192.168.7.1"), V4("255.255.255.0"));
    EXPECT_EQ(cGetVlanAddress(5 | IP6, buffer), 1);
    EXPECT_EQ(buffer[0], 192);
    EXPECT_EQ(buffer[1], 168);
    EXPECT_EQ(buffer[2], 7);
    EXPECT_EQ(buffer[3], 1);
}

// ---- serializer

class StackSerializerTest : public StackCallbacksTest {
protected:
    Serializer& serializer() { return DcRouterMgr::GetInstance()->GetSerializer(); }
};

TEST_F(StackSerializerTest, I3ReadyLetsTheQueuedRequestsGo) {
    interfaces()->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    EXPECT_TRUE(stack().Requests().empty());

    cI3Ready();

    // Issued from the stack's callback: the in-context form of the request.
    EXPECT_EQ(stack().Requests(),
              (Lines{"sms_bld_amb_test_i3_ei(4, 1, 5, 100, \"eth0\", 0, 0, 0)",
                     "sms_bld_amb_test_i3_ei(4, 1, 32773, 100, \"eth0\", 0, 0, 0)"}));
}

TEST_F(StackSerializerTest, RunPendingActionIssuesTheNextRequestOfTheRow) {
    cI3Ready();
    interfaces()->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->SetInterfaceDown(5, 100, "eth0");
    stack().ClearCalls();

    std::vector<unsigned long> oid = RecordingStack::EiOid(5, 100);
    cRunPendingAction(oid.data(), oid.size());

    EXPECT_EQ(stack().Requests(), Lines{"sms_bld_amb_test_i3_ei(1, 2, 5, 100, \"eth0\", 0, 0, 0)"});
}

TEST_F(StackSerializerTest, RunPendingActionIgnoresANullOidOrAZeroLength) {
    cI3Ready();
    interfaces()->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    interfaces()->SetInterfaceDown(5, 100, "eth0");
    const std::string before = serializer().GetPendingActionsAsString().c_str();
    stack().ClearCalls();

    std::vector<unsigned long> oid = RecordingStack::EiOid(5, 100);
    cRunPendingAction(nullptr, oid.size());
    cRunPendingAction(oid.data(), 0);

    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_EQ(serializer().GetPendingActionsAsString().c_str(), before);
}

}  // namespace
}  // namespace Zavrel
