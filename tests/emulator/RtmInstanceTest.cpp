// RTM instances: created by sms_cipr_start, made ready once the library has
// given their settings, deleted with their routes by action 2080.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RtmState;

class RtmInstanceTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
    }
};

TEST_F(RtmInstanceTest, StartIsAcceptedAndTheSettingsAreAskedForOnTheNextRun) {
    amb_cipr_rtm_entity entity{};
    EXPECT_EQ(0ul, sms_cipr_start(5, &entity));
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    EXPECT_EQ(nullptr, Stack().FindInstance(5));  // accepted, not yet created
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cGetRtmConfig(5)", "cSetRtmReady(5)"}), Side().Calls());
    EXPECT_EQ(RtmState::Ready, Stack().FindInstance(5)->State());
}

TEST_F(RtmInstanceTest, AnInstanceTheLibraryDoesNotKnowStaysNotReady) {
    Side().SetRtmConfigUnknown(6);
    StartInstance(6);
    EXPECT_EQ(Strings({"cRescheduleNBase()", "cGetRtmConfig(6)"}), Side().Callbacks());
    ASSERT_NE(nullptr, Stack().FindInstance(6));
    EXPECT_EQ(RtmState::Unknown, Stack().FindInstance(6)->State());
    EXPECT_FALSE(Stack().FindInstance(6)->IsReady());
}

TEST_F(RtmInstanceTest, TheSettingsTheLibraryGivesDecideNotThoseOfTheStart) {
    amb_cipr_rtm_entity answer = LibrarySide::DefaultRtmConfig(5);
    answer.rip_distance = 80;
    answer.dead_rpm_timer = 90;
    Side().SetRtmConfig(5, answer);
    amb_cipr_rtm_entity start{};
    start.rip_distance = 120;
    sms_cipr_start(5, &start);
    Side().RunScheduler();
    const Emulator::RtmInstance* instance = Stack().FindInstance(5);
    ASSERT_NE(nullptr, instance);
    EXPECT_EQ(80ul, instance->Settings().rip_distance);
    EXPECT_EQ(90ul, instance->Settings().dead_rpm_timer);
    EXPECT_EQ(120ul, instance->Requested().rip_distance);
    EXPECT_EQ(80ul, instance->Distance(Emulator::RouteSource::Rip));
    EXPECT_EQ(0ul, instance->Distance(Emulator::RouteSource::Connected));
    EXPECT_EQ(1ul, instance->Distance(Emulator::RouteSource::Static));
}

TEST_F(RtmInstanceTest, AStartOfAnExistingInstanceUpdatesItsSettingsAndReportsItReadyAgain) {
    StartInstance(5);
    amb_cipr_rtm_entity answer = LibrarySide::DefaultRtmConfig(5);
    answer.ebgp_distance = 170;
    Side().SetRtmConfig(5, answer);
    Side().ClearCalls();
    StartInstance(5);
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()", "cGetRtmConfig(5)",
                       "cSetRtmReady(5)"}),
              Side().Calls());
    EXPECT_EQ(170ul, Stack().FindInstance(5)->Settings().ebgp_distance);
    EXPECT_EQ(1u, Stack().Instances().size());
}

TEST_F(RtmInstanceTest, AReadyInstanceStaysReadyWhenARestartFindsItUnknown) {
    StartInstance(5);
    Side().SetRtmConfigUnknown(5);
    StartInstance(5);
    EXPECT_EQ(RtmState::Ready, Stack().FindInstance(5)->State());
}

TEST_F(RtmInstanceTest, TheIpv6InstanceOfAVlanCarriesBit0x8000) {
    StartInstance(5);
    EXPECT_EQ(Emulator::IpAddress::IPV4, Stack().FindInstance(5)->Family());
    Side().ClearCalls();
    StartInstance(0x8005);
    ASSERT_NE(nullptr, Stack().FindInstance(0x8005));
    EXPECT_EQ(Emulator::IpAddress::IPV6, Stack().FindInstance(0x8005)->Family());
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()", "cGetRtmConfig(32773)",
                       "cSetRtmReady(32773)"}),
              Side().Calls());
}

TEST_F(RtmInstanceTest, DeleteRemovesTheInstanceWithItsRoutesOnTheNextRun) {
    StartInstance(5);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    ASSERT_EQ(1u, Stack().FindInstance(5)->StaticRoutes().size());
    Side().ClearCalls();
    EXPECT_EQ(0ul, sms_cipr_action(5, SMS_CIPR_ACTION_DELETE));
    EXPECT_NE(nullptr, Stack().FindInstance(5));
    Side().RunScheduler();
    EXPECT_EQ(nullptr, Stack().FindInstance(5));
    // Deleting calls nothing back.
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    // The interface tables are not the instance's: they stay.
    EXPECT_NE(nullptr, Stack().Interfaces().FindInterface(5, 100));
}

TEST_F(RtmInstanceTest, DeletingAnAbsentInstanceIsHarmless) {
    EXPECT_EQ(0ul, sms_cipr_action(9, SMS_CIPR_ACTION_DELETE));
    Side().RunScheduler();
    EXPECT_TRUE(Stack().Instances().empty());
}

TEST_F(RtmInstanceTest, AnotherActionCodeIsRefusedAndLeavesTheInstance) {
    StartInstance(5);
    Side().ClearCalls();
    EXPECT_NE(0ul, sms_cipr_action(5, 2081));
    EXPECT_TRUE(Side().Calls().empty());
    Side().RunScheduler();
    EXPECT_NE(nullptr, Stack().FindInstance(5));
}

TEST_F(RtmInstanceTest, AStartWithoutEntityUsesZeroSettingsUntilTheLibraryAnswers) {
    Side().defaultRtmConfigResult = 2;
    EXPECT_EQ(0ul, sms_cipr_start(7, nullptr));
    Side().RunScheduler();
    ASSERT_NE(nullptr, Stack().FindInstance(7));
    EXPECT_EQ(7ul, Stack().FindInstance(7)->Requested().instance_index);
    EXPECT_EQ(0ul, Stack().FindInstance(7)->Settings().rip_distance);
}

TEST_F(RtmInstanceTest, InstanceRequestsAreCounted) {
    StartInstance(5);
    sms_cipr_action(5, SMS_CIPR_ACTION_DELETE);
    EXPECT_EQ(2u, Emulator::RequestCount(Emulator::RequestKind::Instance));
}

}  // namespace
}  // namespace Zavrel::test
