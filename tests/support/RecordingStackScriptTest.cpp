// Scripted results, hooks and Reset of the recording double.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

using Lines = std::vector<std::string>;

const unsigned char kNet[4] = {10, 0, 0, 0};
const unsigned char kGw[4] = {10, 0, 0, 254};

class RecordingStackScriptTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        stack.Reset();
    }
    RecordingStack& stack = RecordingStack::Instance();
};

TEST_F(RecordingStackScriptTest, EveryRequestAnswersZeroByDefault) {
    char components[] = "bgp";
    amb_cipr_rtm_entity entity{};
    EXPECT_EQ(smsi_init(components), 0);
    EXPECT_EQ(nbb_get_ips_tracing(), 0);
    EXPECT_EQ(sms_update_route(1, 4, 1, 1, kNet, 24, kGw, 3, 0, 5, 1), 0u);
    EXPECT_EQ(sms_act_interface(4, 1, 5, 100, "eth0", 0, 0, 0), 0u);
    EXPECT_EQ(sms_bld_amb_test_i3_ei(4, 1, 5, 100, "eth0", 0, 0, 0), 0u);
    EXPECT_EQ(sms_act_ipaddr(4, 5, 1, 100, kGw, 24), 0u);
    EXPECT_EQ(sms_act_cipr_redist(4, 1, 3, 14, 5, 0), 0u);
    EXPECT_EQ(sms_bld_amb_test_cipr_redist(5, 4, 1, 14, 3, 0), 0u);
    EXPECT_EQ(sms_cipr_start(5, &entity), 0u);
    EXPECT_EQ(sms_cipr_action(5, 2080), 0u);
    EXPECT_EQ(sms_get_next_rtm_route(5, nullptr, nullptr), 0u);
}

TEST_F(RecordingStackScriptTest, SchedulerAnswersMinusOneByDefault) {
    EXPECT_EQ(stack.Result("nbb_scheduler"), -1);
    EXPECT_EQ(nbb_scheduler(), -1);
    EXPECT_FALSE(stack.HasResult("nbb_scheduler"));
}

TEST_F(RecordingStackScriptTest, SetResultAppliesToEveryLaterCallOfThatFunctionOnly) {
    stack.SetResult("sms_cipr_action", 3);
    stack.SetResult("smsi_init", -2);
    char components[] = "bgp";
    EXPECT_EQ(sms_cipr_action(5, 2080), 3u);
    EXPECT_EQ(sms_cipr_action(6, 2080), 3u);
    EXPECT_EQ(smsi_init(components), -2);
    EXPECT_EQ(sms_act_cipr_redist(4, 1, 3, 14, 5, 0), 0u);
    EXPECT_TRUE(stack.HasResult("sms_cipr_action"));
    EXPECT_FALSE(stack.HasResult("sms_act_cipr_redist"));
}

TEST_F(RecordingStackScriptTest, ResultIsCastToTheFunctionsReturnWidth) {
    stack.SetResult("sms_update_route", -1);
    EXPECT_EQ(sms_update_route(1, 4, 1, 1, kNet, 24, kGw, 3, 0, 5, 1),
              static_cast<unsigned long>(-1));
}

TEST_F(RecordingStackScriptTest, QueuedSchedulerResultsComeFirstThenTheSetResult) {
    stack.QueueSchedulerResults({3, 250});
    stack.QueueSchedulerResults({0});
    EXPECT_EQ(nbb_scheduler(), 3);
    EXPECT_EQ(nbb_scheduler(), 250);
    EXPECT_EQ(nbb_scheduler(), 0);
    EXPECT_EQ(nbb_scheduler(), -1);
    stack.SetResult("nbb_scheduler", 40);
    EXPECT_EQ(nbb_scheduler(), 40);
    stack.QueueSchedulerResults({7});
    EXPECT_EQ(stack.NextSchedulerResult(), 7);
    EXPECT_EQ(stack.NextSchedulerResult(), 40);
}

TEST_F(RecordingStackScriptTest, SchedulerHookRunsInsideEverySchedulerRun) {
    int runs = 0;
    stack.OnScheduler([&] {
        ++runs;
        stack.Record("inside");
    });
    nbb_scheduler();
    nbb_scheduler();
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(stack.Calls(), (Lines{"nbb_scheduler()", "inside", "nbb_scheduler()", "inside"}));
}

TEST_F(RecordingStackScriptTest, SchedulerHookMayScriptTheResultOfItsOwnRun) {
    stack.OnScheduler([&] { stack.QueueSchedulerResults({12}); });
    EXPECT_EQ(nbb_scheduler(), 12);
}

TEST_F(RecordingStackScriptTest, SchedulerHookMayReplaceItselfWhileRunning) {
    std::vector<std::string> seen;
    stack.OnScheduler([&] {
        seen.push_back("first");
        stack.OnScheduler([&] { seen.push_back("second"); });
    });
    nbb_scheduler();
    nbb_scheduler();
    nbb_scheduler();
    EXPECT_EQ(seen, (Lines{"first", "second", "second"}));
}

TEST_F(RecordingStackScriptTest, CallHookRunsOnceInsideTheNextCallAfterItIsRecorded) {
    std::vector<std::string> seenInside;
    stack.OnNextCall("sms_update_route", [&] { seenInside = stack.Calls(); });
    sms_update_route(1, 4, 1, 1, kNet, 24, kGw, 3, 0, 5, 1);
    sms_update_route(1, 6, 1, 1, kNet, 24, kGw, 3, 0, 5, 1);
    EXPECT_EQ(seenInside,
              (Lines{"sms_update_route(1, 4, 1, 1, 10.0.0.0, 24, 10.0.0.254, 3, 0, 5, 1)"}));
}

TEST_F(RecordingStackScriptTest, CallHookWaitsForItsOwnFunction) {
    int runs = 0;
    stack.OnNextCall("sms_cipr_action", [&] { ++runs; });
    sms_cipr_start(5, nullptr);
    nbb_scheduler();
    EXPECT_EQ(runs, 0);
    sms_cipr_action(5, 2080);
    EXPECT_EQ(runs, 1);
    sms_cipr_action(5, 2080);
    EXPECT_EQ(runs, 1);
}

TEST_F(RecordingStackScriptTest, CallHookMayScriptTheResultOfTheCallItRunsIn) {
    stack.OnNextCall("sms_act_ipaddr", [&] { stack.SetResult("sms_act_ipaddr", 5); });
    EXPECT_EQ(sms_act_ipaddr(4, 5, 1, 100, kGw, 24), 5u);
}

TEST_F(RecordingStackScriptTest, CallHookMaySetTheNextHookForTheSameFunction) {
    std::vector<std::string> seen;
    stack.OnNextCall("sms_cipr_action", [&] {
        seen.push_back("first");
        stack.OnNextCall("sms_cipr_action", [&] { seen.push_back("second"); });
    });
    sms_cipr_action(1, 2080);
    sms_cipr_action(2, 2080);
    sms_cipr_action(3, 2080);
    EXPECT_EQ(seen, (Lines{"first", "second"}));
}

TEST_F(RecordingStackScriptTest, SettingACallHookAgainReplacesTheWaitingOne) {
    std::vector<std::string> seen;
    stack.OnNextCall("smsi_init", [&] { seen.push_back("old"); });
    stack.OnNextCall("smsi_init", [&] { seen.push_back("new"); });
    smsi_init(nullptr);
    EXPECT_EQ(seen, (Lines{"new"}));
}

TEST_F(RecordingStackScriptTest, SchedulerCallHookRunsBeforeTheSchedulerHook) {
    std::vector<std::string> seen;
    stack.OnScheduler([&] { seen.push_back("every run"); });
    stack.OnNextCall("nbb_scheduler", [&] { seen.push_back("next call"); });
    nbb_scheduler();
    EXPECT_EQ(seen, (Lines{"next call", "every run"}));
}

TEST_F(RecordingStackScriptTest, EveryFunctionRunsItsCallHook) {
    const std::vector<std::string> functions = {"smsi_init",
                                                "nbb_get_ips_tracing",
                                                "nbb_set_ips_filter",
                                                "nbb_trips_control",
                                                "sms_update_route",
                                                "sms_get_route_oid",
                                                "sms_act_interface",
                                                "sms_bld_amb_test_i3_ei",
                                                "sms_act_ipaddr",
                                                "sms_set_i3_ei_oid",
                                                "sms_set_i3_ea_oid",
                                                "sms_act_cipr_redist",
                                                "sms_bld_amb_test_cipr_redist",
                                                "sms_set_cipr_redist_oid",
                                                "sms_cipr_start",
                                                "sms_cipr_action",
                                                "sms_get_next_rtm_route",
                                                "sms_get_next_rtm_rib",
                                                "sms_get_next_i3_ei",
                                                "sms_get_next_i3_ea",
                                                "nbb_scheduler"};
    std::vector<std::string> ran;
    for (const std::string& f : functions) {
        stack.OnNextCall(f, [&ran, f] { ran.push_back(f); });
    }
    unsigned long oid[SMS_MAX_OID_LEN];
    amb_cipr_rtm_entity entity{};
    smsi_init(nullptr);
    nbb_get_ips_tracing();
    nbb_set_ips_filter(nullptr, 0);
    nbb_trips_control(0);
    sms_update_route(1, 4, 1, 1, kNet, 24, kGw, 3, 0, 5, 1);
    sms_get_route_oid(oid, 5, 1, kNet, 24, kGw, 0);
    sms_act_interface(4, 1, 5, 100, "eth0", 0, 0, 0);
    sms_bld_amb_test_i3_ei(4, 1, 5, 100, "eth0", 0, 0, 0);
    sms_act_ipaddr(4, 5, 1, 100, kGw, 24);
    sms_set_i3_ei_oid(oid, 5, 100);
    sms_set_i3_ea_oid(oid, 5, 100, kGw, 1);
    sms_act_cipr_redist(4, 1, 3, 14, 5, 0);
    sms_bld_amb_test_cipr_redist(5, 4, 1, 14, 3, 0);
    sms_set_cipr_redist_oid(oid, 5, 3, 14);
    sms_cipr_start(5, &entity);
    sms_cipr_action(5, 2080);
    sms_get_next_rtm_route(5, nullptr, nullptr);
    sms_get_next_rtm_rib(5, nullptr, nullptr);
    sms_get_next_i3_ei(5, nullptr, nullptr);
    sms_get_next_i3_ea(5, nullptr, nullptr);
    nbb_scheduler();
    EXPECT_EQ(ran, functions);
}

TEST_F(RecordingStackScriptTest, TripsControlSwitchesTheTracingStateThatTheQueryReports) {
    EXPECT_EQ(nbb_get_ips_tracing(), 0);
    nbb_trips_control(1);
    EXPECT_EQ(stack.ipsTracing, 1);
    EXPECT_EQ(nbb_get_ips_tracing(), 1);
    nbb_trips_control(0);
    EXPECT_EQ(nbb_get_ips_tracing(), 0);
}

TEST_F(RecordingStackScriptTest, ScriptedTracingQueryResultWinsOverTheState) {
    stack.ipsTracing = 1;
    stack.SetResult("nbb_get_ips_tracing", 0);
    EXPECT_EQ(nbb_get_ips_tracing(), 0);
}

TEST_F(RecordingStackScriptTest, FiltersAreKeptAsFilterSlashType) {
    char filter[] = "bgp";
    nbb_set_ips_filter(filter, 2);
    nbb_set_ips_filter(nullptr, 65535);
    EXPECT_EQ(stack.ipsFilters, (Lines{"bgp/2", "null/65535"}));
}

TEST_F(RecordingStackScriptTest, OsFailureCounterIsAPlainGlobalOfTheStack) {
    nbb_os_failures = 7;
    EXPECT_EQ(nbb_os_failures, 7u);
    nbb_os_failures = 0;
    EXPECT_EQ(nbb_os_failures, 0u);
}

unsigned char Keep(void*, unsigned long, unsigned long, void*) {
    return 1;
}

TEST_F(RecordingStackScriptTest, ResetForgetsEverythingAndRestoresTheDefaults) {
    int hookRuns = 0;
    char filter[] = "x";
    stack.SetResult("sms_cipr_action", 4);
    stack.SetResult("nbb_scheduler", 30);
    stack.QueueSchedulerResults({1, 2});
    stack.OnScheduler([&] { ++hookRuns; });
    stack.OnNextCall("sms_cipr_start", [&] { ++hookRuns; });
    sms_get_next_i3_ei(5, Keep, nullptr);
    nbb_trips_control(1);
    nbb_set_ips_filter(filter, 1);
    nbb_os_failures = 9;

    stack.Reset();

    EXPECT_TRUE(stack.Calls().empty());
    EXPECT_TRUE(stack.PendingWalks().empty());
    EXPECT_EQ(stack.ipsTracing, 0);
    EXPECT_TRUE(stack.ipsFilters.empty());
    EXPECT_EQ(nbb_os_failures, 0u);
    EXPECT_FALSE(stack.HasResult("sms_cipr_action"));
    EXPECT_EQ(sms_cipr_action(5, 2080), 0u);
    EXPECT_EQ(nbb_scheduler(), -1);
    sms_cipr_start(5, nullptr);
    EXPECT_EQ(hookRuns, 0);
}

TEST_F(RecordingStackScriptTest, TheDoubleIsOneObjectPerProcess) {
    EXPECT_EQ(&RecordingStack::Instance(), &stack);
}

}  // namespace
}  // namespace Zavrel::test
