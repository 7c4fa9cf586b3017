// How the recording double writes down each call the library makes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

using Lines = std::vector<std::string>;

const unsigned char kNet10[4] = {10, 0, 0, 0};
const unsigned char kGw[4] = {192, 168, 1, 1};
const unsigned char kHost10[4] = {10, 0, 0, 1};
// 2001:db8::1
const unsigned char kV6Host[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
// 2001:db8:0:1::
const unsigned char kV6Net[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0};
// fe80::a:b0:c:0
const unsigned char kV6Link[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0x0a, 0, 0xb0, 0, 0x0c, 0, 0};
// 2001:db8::1:0:0:1 (two equal zero runs: the first one is compressed)
const unsigned char kV6TwoRuns[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1};
// ::ffff:192.0.2.1
const unsigned char kV6Mapped[16] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xff, 0xff, 192, 0, 2, 1};

class RecordingStackCallTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        stack.Reset();
    }
    RecordingStack& stack = RecordingStack::Instance();
};

TEST_F(RecordingStackCallTest, InitIsRecordedWithItsComponentListInQuotes) {
    char components[] = "ripv2 ripng bgp ospf ospfv3 igmp pim";
    smsi_init(components);
    smsi_init(nullptr);
    EXPECT_EQ(stack.Calls(),
              (Lines{"smsi_init(\"ripv2 ripng bgp ospf ospfv3 igmp pim\")", "smsi_init(null)"}));
}

TEST_F(RecordingStackCallTest, RuntimeCallsAreRecordedWithTheirArguments) {
    char filter[] = "rtm";
    nbb_scheduler();
    nbb_get_ips_tracing();
    nbb_set_ips_filter(filter, 3);
    nbb_set_ips_filter(nullptr, 0);
    nbb_trips_control(1);
    nbb_trips_control(0);
    EXPECT_EQ(stack.Calls(), (Lines{"nbb_scheduler()", "nbb_get_ips_tracing()",
                                    "nbb_set_ips_filter(\"rtm\", 3)", "nbb_set_ips_filter(null, 0)",
                                    "nbb_trips_control(1)", "nbb_trips_control(0)"}));
}

TEST_F(RecordingStackCallTest, Ipv4RouteShowsDottedAddressesAndEveryNumberInOrder) {
    sms_update_route(1, 1, 1, 1, kNet10, 24, kGw, 196608, 0, 5, 1);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 0, 5, 1)"}));
}

TEST_F(RecordingStackCallTest, RouteOfAnyFamilyOtherThanOneShowsIpv6Text) {
    sms_update_route(0, 6, 2, 2, kV6Net, 64, kV6Link, 3, 7, 0x8005, 20);
    sms_update_route(0, 4, 1, 0, kV6Host, 128, kV6Mapped, 3, 7, 0x8005, 1);
    EXPECT_EQ(
        stack.Calls(),
        (Lines{"sms_update_route(0, 6, 2, 2, 2001:db8:0:1::, 64, fe80::a:b0:c:0, 3, 7, 32773, 20)",
               "sms_update_route(0, 4, 1, 0, 2001:db8::1, 128, ::ffff:192.0.2.1, 3, 7, "
               "32773, 1)"}));
}

TEST_F(RecordingStackCallTest, Ipv6TextIsLowerCaseWithTheFirstLongestZeroRunCompressed) {
    const unsigned char allZero[16] = {};
    sms_act_ipaddr(1, 32773, SMS_ADDR_TYPE_IPV6, 1, kV6TwoRuns, 64);
    sms_act_ipaddr(1, 32773, SMS_ADDR_TYPE_IPV6, 1, kV6Link, 64);
    sms_act_ipaddr(1, 32773, SMS_ADDR_TYPE_IPV6, 1, allZero, 0);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_act_ipaddr(1, 32773, 2, 1, 2001:db8::1:0:0:1, 64)",
                                    "sms_act_ipaddr(1, 32773, 2, 1, fe80::a:b0:c:0, 64)",
                                    "sms_act_ipaddr(1, 32773, 2, 1, ::, 0)"}));
}

TEST_F(RecordingStackCallTest, NegativeSignedArgumentsKeepTheirSign) {
    sms_update_route(-1, -6, -2, 1, kNet10, 8, kGw, -3, 0, 1, 0);
    sms_act_cipr_redist(-1, 2, -3, 14, 5, 0);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_update_route(-1, -6, -2, 1, 10.0.0.0, 8, 192.168.1.1, -3, 0, 1, 0)",
                     "sms_act_cipr_redist(-1, 2, -3, 14, 5, 0)"}));
}

TEST_F(RecordingStackCallTest, NullAddressesAreShownAsNull) {
    sms_update_route(1, 6, 2, 1, nullptr, 0, nullptr, 3, 0, 5, 1);
    sms_act_ipaddr(6, 5, 2, 100, nullptr, 64);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_update_route(1, 6, 2, 1, null, 0, null, 3, 0, 5, 1)",
                                    "sms_act_ipaddr(6, 5, 2, 100, null, 64)"}));
}

TEST_F(RecordingStackCallTest, LargestUnsignedWordIsShownInFull) {
    const unsigned long all = static_cast<unsigned long>(-1);
    sms_cipr_action(all, SMS_CIPR_ACTION_DELETE);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_cipr_action(" + std::to_string(all) + ", 2080)"}));
}

TEST_F(RecordingStackCallTest, RouteOidRequestShowsItsKeyButNotTheBuffer) {
    unsigned long oid[SMS_MAX_OID_LEN];
    sms_get_route_oid(oid, 5, 1, kNet10, 24, kGw, 0);
    sms_get_route_oid(oid, 32773, 2, kV6Net, 64, kV6Link, 9);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_get_route_oid(5, 1, 10.0.0.0, 24, 192.168.1.1, 0)",
                     "sms_get_route_oid(32773, 2, 2001:db8:0:1::, 64, fe80::a:b0:c:0, 9)"}));
}

TEST_F(RecordingStackCallTest, InterfaceRowsShowTheNameInQuotes) {
    sms_act_interface(4, 1, 5, 100, "eth0", 0, 24, 0);
    sms_bld_amb_test_i3_ei(6, 2, 32773, 101, "vlan5", 0, -1, 7);
    sms_act_interface(4, 1, 5, 102, nullptr, 0, 0, 0);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_act_interface(4, 1, 5, 100, \"eth0\", 0, 24, 0)",
                                    "sms_bld_amb_test_i3_ei(6, 2, 32773, 101, \"vlan5\", 0, -1, 7)",
                                    "sms_act_interface(4, 1, 5, 102, null, 0, 0, 0)"}));
}

TEST_F(RecordingStackCallTest, AddressRowsAreShownByAddressType) {
    sms_act_ipaddr(1, 5, SMS_ADDR_TYPE_IPV4, 100, kHost10, 24);
    sms_act_ipaddr(4, 32773, SMS_ADDR_TYPE_IPV6, 100, kV6Host, 64);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)",
                                    "sms_act_ipaddr(4, 32773, 2, 100, 2001:db8::1, 64)"}));
}

TEST_F(RecordingStackCallTest, AddressOfAnUnknownTypeIsReadAsFourBytes) {
    sms_act_ipaddr(1, 5, 0, 100, kHost10, 24);
    unsigned long oid[SMS_MAX_OID_LEN];
    sms_set_i3_ea_oid(oid, 5, 100, kHost10, 3);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_act_ipaddr(1, 5, 0, 100, 10.0.0.1, 24)",
                                    "sms_set_i3_ea_oid(5, 100, 10.0.0.1, 3)"}));
}

TEST_F(RecordingStackCallTest, InterfaceOidRequestsShowTheirKeys) {
    unsigned long oid[SMS_MAX_OID_LEN];
    sms_set_i3_ei_oid(oid, 5, 100);
    sms_set_i3_ea_oid(oid, 5, 100, kHost10, SMS_ADDR_TYPE_IPV4);
    sms_set_i3_ea_oid(oid, 32773, 100, kV6Host, SMS_ADDR_TYPE_IPV6);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_set_i3_ei_oid(5, 100)", "sms_set_i3_ea_oid(5, 100, 10.0.0.1, 1)",
                     "sms_set_i3_ea_oid(32773, 100, 2001:db8::1, 2)"}));
}

TEST_F(RecordingStackCallTest, RedistributionCallsKeepTheirOwnArgumentOrders) {
    unsigned long oid[SMS_MAX_OID_LEN];
    sms_act_cipr_redist(4, 1, 3, 14, 5, 0);
    sms_bld_amb_test_cipr_redist(5, 4, 1, 14, 3, 0);
    sms_set_cipr_redist_oid(oid, 5, 3, 14);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_act_cipr_redist(4, 1, 3, 14, 5, 0)",
                                    "sms_bld_amb_test_cipr_redist(5, 4, 1, 14, 3, 0)",
                                    "sms_set_cipr_redist_oid(5, 3, 14)"}));
}

TEST_F(RecordingStackCallTest, RtmStartShowsEveryEntityFieldInStructOrder) {
    amb_cipr_rtm_entity entity{};
    entity.instance_index = 5;
    entity.row_status = 0;
    entity.admin_status = 0;
    entity.ospf_int_distance = 40;
    entity.ospf_ext_distance = 110;
    entity.ebgp_distance = 20;
    entity.ibgp_distance = 200;
    entity.rip_distance = 120;
    entity.dead_rpm_timer = 60;
    entity.addr_family = 1;
    sms_cipr_start(5, &entity);
    sms_cipr_start(6, nullptr);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_cipr_start(5, {inst=5 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 "
                     "ibgp=200 rip=120 dead=60 af=1})",
                     "sms_cipr_start(6, null)"}));
}

TEST_F(RecordingStackCallTest, RtmActionShowsInstanceAndActionCode) {
    sms_cipr_action(5, SMS_CIPR_ACTION_DELETE);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_cipr_action(5, 2080)"}));
}

unsigned char IgnoreRow(void*, unsigned long, unsigned long, void*) {
    return 1;
}

TEST_F(RecordingStackCallTest, WalksShowOnlyTheirStartingInstance) {
    int context = 0;
    sms_get_next_rtm_route(5, IgnoreRow, &context);
    sms_get_next_rtm_rib(32773, IgnoreRow, &context);
    sms_get_next_i3_ei(0, IgnoreRow, &context);
    sms_get_next_i3_ea(7, IgnoreRow, nullptr);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_get_next_rtm_route(5)", "sms_get_next_rtm_rib(32773)",
                                    "sms_get_next_i3_ei(0)", "sms_get_next_i3_ea(7)"}));
}

TEST_F(RecordingStackCallTest, CallsOfOneFunctionAreListedInOrder) {
    sms_cipr_action(5, 2080);
    nbb_scheduler();
    sms_cipr_action(6, 2080);
    EXPECT_EQ(stack.Calls("sms_cipr_action"),
              (Lines{"sms_cipr_action(5, 2080)", "sms_cipr_action(6, 2080)"}));
    EXPECT_EQ(stack.Calls("nbb_scheduler"), (Lines{"nbb_scheduler()"}));
    EXPECT_TRUE(stack.Calls("sms_cipr").empty());
}

TEST_F(RecordingStackCallTest, RequestsLeaveOutOidBuildersSchedulerRunsAndTracingQueries) {
    unsigned long oid[SMS_MAX_OID_LEN];
    char components[] = "bgp";
    smsi_init(components);
    nbb_scheduler();
    nbb_get_ips_tracing();
    nbb_trips_control(1);
    sms_get_route_oid(oid, 5, 1, kNet10, 24, kGw, 0);
    sms_update_route(1, 4, 1, 1, kNet10, 24, kGw, 3, 0, 5, 1);
    sms_set_i3_ei_oid(oid, 5, 100);
    sms_set_i3_ea_oid(oid, 5, 100, kHost10, 1);
    sms_set_cipr_redist_oid(oid, 5, 3, 14);
    sms_get_next_i3_ei(5, IgnoreRow, nullptr);
    EXPECT_EQ(stack.Requests(),
              (Lines{"smsi_init(\"bgp\")", "nbb_trips_control(1)",
                     "sms_update_route(1, 4, 1, 1, 10.0.0.0, 24, 192.168.1.1, 3, 0, 5, 1)",
                     "sms_get_next_i3_ei(5)"}));
    EXPECT_EQ(stack.Calls().size(), 10u);
}

TEST_F(RecordingStackCallTest, ClearCallsForgetsTheLinesOnly) {
    stack.SetResult("sms_cipr_action", 9);
    sms_cipr_action(5, 2080);
    stack.ClearCalls();
    EXPECT_TRUE(stack.Calls().empty());
    EXPECT_EQ(sms_cipr_action(5, 2080), 9u);
    EXPECT_EQ(stack.Calls(), (Lines{"sms_cipr_action(5, 2080)"}));
}

TEST_F(RecordingStackCallTest, TestsMayRecordTheirOwnLines) {
    stack.Record("marker");
    nbb_scheduler();
    EXPECT_EQ(stack.Calls(), (Lines{"marker", "nbb_scheduler()"}));
}

TEST_F(RecordingStackCallTest, WithRecordingOffCallsAreAnsweredButNotRecorded) {
    int hookRuns = 0;
    stack.OnNextCall("sms_get_route_oid", [&] { ++hookRuns; });
    stack.SetResult("sms_update_route", 7);
    stack.SetRecording(false);
    EXPECT_FALSE(stack.IsRecording());
    unsigned long oid[SMS_MAX_OID_LEN] = {};
    const unsigned long length = sms_get_route_oid(oid, 5, 1, kNet10, 24, kGw, 3);
    const std::vector<unsigned long> expected = RecordingStack::RouteOid(5, 1, kNet10, 24, kGw, 3);
    EXPECT_EQ(std::vector<unsigned long>(oid, oid + length), expected);
    EXPECT_EQ(hookRuns, 1);
    EXPECT_EQ(sms_update_route(1, 1, 1, 1, kNet10, 24, kGw, 196608, 0, 5, 1), 7ul);
    EXPECT_EQ(stack.Calls(), Lines{});

    stack.SetRecording(true);
    sms_update_route(1, 1, 1, 1, kNet10, 24, kGw, 196608, 0, 5, 1);
    EXPECT_EQ(stack.Calls(),
              (Lines{"sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 0, 5, 1)"}));
}

TEST_F(RecordingStackCallTest, ResetTurnsRecordingBackOn) {
    stack.SetRecording(false);
    stack.Reset();
    EXPECT_TRUE(stack.IsRecording());
    nbb_scheduler();
    EXPECT_EQ(stack.Calls(), (Lines{"nbb_scheduler()"}));
}

}  // namespace
}  // namespace Zavrel::test
