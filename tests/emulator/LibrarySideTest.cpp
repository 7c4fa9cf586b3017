// The library-side double the emulator's tests stand on: rendering, scripts
// and hooks.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;

class LibrarySideTest : public EmulatorFixture {};

TEST_F(LibrarySideTest, RouteStatesRenderAddressesByFamily) {
    Side().inRun = true;
    cSetRouteState(32773, 2, Addr("2001:db8::").data(), 32, Addr("fe80::1").data(), 7, 2, 196608, 1,
                   1, 0, 5);
    cSetRouteState(5, 1, nullptr, 0, Addr("10.0.0.1").data(), 0, 1, 0, 6, 2, 0, 6);
    Side().inRun = false;
    EXPECT_EQ(
        Strings({"cSetRouteState(32773, 2, 2001:db8::, 32, fe80::1, 7, 2, 196608, 1, 1, 0, 5)",
                 "cSetRouteState(5, 1, null, 0, 10.0.0.1, 0, 1, 0, 6, 2, 0, 6)"}),
        Side().Calls());
    ASSERT_EQ(2u, Side().routeStates.size());
    EXPECT_EQ(5u, Side().routeStates[0].result);
    EXPECT_EQ("null", Side().routeStates[1].destination);
}

TEST_F(LibrarySideTest, CallsOutsideARunAreNotedExceptTheRequestForARun) {
    cRescheduleNBase();
    cIsNBaseRescheduled();
    cI3Ready();
    EXPECT_EQ(Strings({"cI3Ready()"}), Side().callsOutsideRun);
    Side().callsOutsideRun.clear();
}

TEST_F(LibrarySideTest, TheRescheduledAnswerFollowsTheFlagUnlessScripted) {
    Side().inRun = true;
    EXPECT_EQ(0, cIsNBaseRescheduled());
    cRescheduleNBase();
    EXPECT_EQ(1, cIsNBaseRescheduled());
    Side().rescheduledAnswer = 0;
    EXPECT_EQ(0, cIsNBaseRescheduled());
    EXPECT_EQ(1u, Side().rescheduleCount);
    Side().inRun = false;
}

TEST_F(LibrarySideTest, RtmConfigAnswersAreScriptedPerInstance) {
    Side().inRun = true;
    amb_cipr_rtm_entity entity{};
    EXPECT_EQ(1, cGetRtmConfig(5, &entity));
    EXPECT_EQ(200ul, entity.ebgp_distance);
    EXPECT_EQ(1ul, entity.row_status);
    Side().SetRtmConfigUnknown(5);
    EXPECT_EQ(2, cGetRtmConfig(5, &entity));
    Side().defaultRtmConfigResult = 2;
    EXPECT_EQ(2, cGetRtmConfig(6, &entity));
    amb_cipr_rtm_entity scripted{};
    scripted.rip_distance = 9;
    Side().SetRtmConfig(6, scripted);
    EXPECT_EQ(1, cGetRtmConfig(6, &entity));
    EXPECT_EQ(9ul, entity.rip_distance);
    Side().inRun = false;
}

TEST_F(LibrarySideTest, InstanceQueriesAnswerAsTheLibraryDoes) {
    Side().inRun = true;
    EXPECT_EQ(1, cIsIpv6Instance(0x8005));
    EXPECT_EQ(0, cIsIpv6Instance(5));
    EXPECT_EQ(0x8005ul, cGetIp6Instance(5));
    EXPECT_EQ(5ul, cGetIp4Instance(0x8005));
    EXPECT_EQ(0, cIsRtmReady(5));
    cSetRtmReady(5);
    EXPECT_EQ(1, cIsRtmReady(5));
    unsigned char address[4] = {9, 9, 9, 9};
    EXPECT_EQ(0, cGetAddress(5, address));
    EXPECT_EQ(9, address[0]);
    Side().addresses[5] = {10, 0, 0, 1};
    EXPECT_EQ(1, cGetAddress(5, address));
    EXPECT_EQ(10, address[0]);
    EXPECT_EQ(0, cGetVlanAddress(5, nullptr));
    Side().inRun = false;
}

TEST_F(LibrarySideTest, HooksRunOnceOrEveryTime) {
    int once = 0;
    int every = 0;
    Side().OnNextCall("cRescheduleNBase", [&once] { ++once; });
    Side().OnCall("cRescheduleNBase", [&every] { ++every; });
    cRescheduleNBase();
    cRescheduleNBase();
    EXPECT_EQ(1, once);
    EXPECT_EQ(2, every);
}

TEST_F(LibrarySideTest, AWalkProbeStopsAfterTheScriptedRows) {
    LibrarySide::WalkProbe probe("i3_ea");
    probe.stopAfterRows = 1;
    amb_stubs_i3_ea row{};
    row.instance = 5;
    row.if_index = 100;
    row.addr_type = 1;
    row.address[0] = 10;
    row.address[3] = 1;
    row.prefix_len = 24;
    EXPECT_EQ(0, LibrarySide::WalkCallback(&probe, 0, SMS_RC_ROW, &row));
    EXPECT_EQ(Strings({"1 5 100 type 1 10.0.0.1/24"}), probe.lines);
    EXPECT_EQ(0, LibrarySide::WalkCallback(&probe, 0, SMS_RC_END_OF_TABLE, nullptr));
    EXPECT_TRUE(probe.ended);
    EXPECT_EQ(Strings({"5 100 type 1 10.0.0.1/24"}), probe.Rows());
}

TEST_F(LibrarySideTest, RunPendingActionRecordsTheOidAsText) {
    unsigned long oid[] = {1, 3, 6, 42};
    Side().inRun = true;
    cRunPendingAction(oid, 4);
    cRunPendingAction(nullptr, 0);
    Side().inRun = false;
    EXPECT_EQ(Strings({"cRunPendingAction(1:3:6:42)", "cRunPendingAction(null)"}), Side().Calls());
    ASSERT_EQ(1u, Side().completedOids.size());
    EXPECT_EQ(42ul, Side().completedOids[0][3]);
}

}  // namespace
}  // namespace Zavrel::test
