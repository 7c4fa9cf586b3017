// RTM instances: settings from options, creation, update, deletion, and the
// answers to the stack's requests for an instance's settings.
#include "rtm/DcRtmMgr.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "platform/Options.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

class DcRtmMgrTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        rtm = DcRtmMgr::GetInstance();
        ASSERT_NE(rtm, nullptr);
    }

    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    static std::string Entity(unsigned int inst, unsigned int rs, unsigned int as,
                              unsigned int ospfInt, unsigned int ospfExt, unsigned int ebgp,
                              unsigned int ibgp, unsigned int rip, unsigned int dead,
                              unsigned int af) {
        char text[200];
        std::snprintf(text, sizeof(text),
                      "{inst=%u rs=%u as=%u ospf_int=%u ospf_ext=%u ebgp=%u ibgp=%u rip=%u "
                      "dead=%u af=%u}",
                      inst, rs, as, ospfInt, ospfExt, ebgp, ibgp, rip, dead, af);
        return text;
    }

    Options options;
    DcRtmMgr* rtm = nullptr;
};

TEST_F(DcRtmMgrTest, GetInstanceReturnsTheSameObjectEveryTime) {
    EXPECT_EQ(DcRtmMgr::GetInstance(), rtm);
}

TEST_F(DcRtmMgrTest, DefaultSettingsKeepTheCrossedBgpDistances) {
    DcRtmMgr::RTMData data;
    EXPECT_FALSE(data.ready);
    EXPECT_EQ(data.deadTimer, 60u);
    EXPECT_EQ(data.ospfv2Internal, 40u);
    EXPECT_EQ(data.ospfv3Internal, 40u);
    EXPECT_EQ(data.ospfv2External, 110u);
    EXPECT_EQ(data.ospfv3External, 110u);
    EXPECT_EQ(data.ripv2, 120u);
    EXPECT_EQ(data.ripng, 120u);
    EXPECT_EQ(data.ebgp, 200u);
    EXPECT_EQ(data.ibgp, 20u);
}

TEST_F(DcRtmMgrTest, Vlan5HasIpv4Instance5AndIpv6Instance32773) {
    EXPECT_EQ(rtm->GetDclProtocolInstanceIdFromVlan(5, 0), 5);
    EXPECT_EQ(rtm->GetDclProtocolInstanceIdFromVlan(5, 41), 32773);
    EXPECT_EQ(rtm->GetDclProtocolInstanceIdFromVlan(5, 2), 5) << "only 41 means IPv6";
}

TEST_F(DcRtmMgrTest, VlanWithoutRtmSectionGetsTheDefaults) {
    OptionsNode vlan = Load(R"({"vid": 5})");
    DcRtmMgr::RTMData data;
    data.deadTimer = 7;
    EXPECT_FALSE(rtm->GetRTMConfig(vlan, &data));
    EXPECT_EQ(data.deadTimer, 7u) << "data is left unchanged";

    EXPECT_TRUE(rtm->UpdateRtmConfig(5, vlan, DclConfigObject::OPTION_TYPE_VLAN));
    const DcRtmMgr::RTMData* stored = rtm->GetRtmData(5);
    ASSERT_NE(stored, nullptr);
    EXPECT_EQ(stored->deadTimer, 60u);
    EXPECT_EQ(stored->ripv2, 120u);
    EXPECT_EQ(stored->ebgp, 200u);
    EXPECT_EQ(stored->ibgp, 20u);
}

TEST_F(DcRtmMgrTest, AdminDistanceSectionZeroesTheDistancesItLeavesOut) {
    OptionsNode vlan = Load(R"({"RTM": {"ADMIN_DISTANCE": {"ripv2": 80}}})");
    DcRtmMgr::RTMData data;
    EXPECT_TRUE(rtm->GetRTMConfig(vlan, &data));
    EXPECT_EQ(data.ripv2, 80u);
    EXPECT_EQ(data.deadTimer, 60u) << "the dead timer keeps its default";
    EXPECT_EQ(data.ospfv2Internal, 0u);
    EXPECT_EQ(data.ospfv2External, 0u);
    EXPECT_EQ(data.ospfv3Internal, 0u);
    EXPECT_EQ(data.ospfv3External, 0u);
    EXPECT_EQ(data.ripng, 0u);
    EXPECT_EQ(data.ebgp, 0u);
    EXPECT_EQ(data.ibgp, 0u);
}

TEST_F(DcRtmMgrTest, RtmSectionReadsEveryKey) {
    OptionsNode vlan = Load(R"({"RTM": {"dead_rpm_timer": 90, "ADMIN_DISTANCE": {
        "ospfv2_internal": 1, "ospfv2_external": 2, "ospfv3_internal": 3,
        "ospfv3_external": 4, "ripv2": 5, "ripng": 6, "ebgp": 7, "ibgp": 8}}})");
    DcRtmMgr::RTMData data;
    EXPECT_TRUE(rtm->GetRTMConfig(vlan, &data));
    EXPECT_EQ(data.deadTimer, 90u);
    EXPECT_EQ(data.ospfv2Internal, 1u);
    EXPECT_EQ(data.ospfv2External, 2u);
    EXPECT_EQ(data.ospfv3Internal, 3u);
    EXPECT_EQ(data.ospfv3External, 4u);
    EXPECT_EQ(data.ripv2, 5u);
    EXPECT_EQ(data.ripng, 6u);
    EXPECT_EQ(data.ebgp, 7u);
    EXPECT_EQ(data.ibgp, 8u);
}

TEST_F(DcRtmMgrTest, EmptyRtmSectionLeavesDataUnchanged) {
    OptionsNode vlan = Load(R"({"RTM": {}})");
    DcRtmMgr::RTMData data;
    data.ripv2 = 3;
    EXPECT_FALSE(rtm->GetRTMConfig(vlan, &data));
    EXPECT_EQ(data.ripv2, 3u);
}

TEST_F(DcRtmMgrTest, UpdateTwiceWithSameOptionsStartsBothInstancesOnlyOnce) {
    OptionsNode vlan = Load(R"({"vid": 5})");
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, vlan, DclConfigObject::OPTION_TYPE_VLAN));
    const std::vector<std::string> first = {
        "sms_cipr_start(5, " + Entity(0, 0, 0, 40, 110, 20, 200, 120, 60, 1) + ")",
        "sms_cipr_start(32773, " + Entity(0, 0, 0, 40, 110, 20, 200, 120, 60, 2) + ")",
    };
    EXPECT_EQ(RecordingStack::Instance().Calls(), first);
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{
                  "DcRtmMgr::UpdateRtmConfig: Creating IPv4 Unicast RTM for vlan 5\n",
                  "Creating RTM Instance 5\n", "Creating IPv6 Unicast RTM for vlan 5\n",
                  "Creating RTM Instance 32773\n"}));

    RecordingStack::Instance().ClearCalls();
    trace.Clear();
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, vlan, DclConfigObject::OPTION_TYPE_VLAN));
    EXPECT_TRUE(RecordingStack::Instance().Calls().empty());
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{
                  "DcRtmMgr::UpdateRtmConfig: Creating IPv4 Unicast RTM for vlan 5\n",
                  "Creating RTM Instance 5\n", "Creating IPv6 Unicast RTM for vlan 5\n",
                  "Creating RTM Instance 32773\n"}));
}

TEST_F(DcRtmMgrTest, IPv6InstanceTakesTheOspfv3AndRipngDistances) {
    OptionsNode vlan = Load(R"({"RTM": {"dead_rpm_timer": 30, "ADMIN_DISTANCE": {
        "ospfv2_internal": 11, "ospfv2_external": 12, "ospfv3_internal": 13,
        "ospfv3_external": 14, "ripv2": 15, "ripng": 16, "ebgp": 17, "ibgp": 18}}})");
    EXPECT_TRUE(rtm->UpdateRtmConfig(7, vlan, DclConfigObject::OPTION_TYPE_VLAN));
    // The first BGP field of the entity receives iBGP, the second eBGP.
    const std::vector<std::string> expected = {
        "sms_cipr_start(7, " + Entity(0, 0, 0, 11, 12, 18, 17, 15, 30, 1) + ")",
        "sms_cipr_start(32775, " + Entity(0, 0, 0, 13, 14, 18, 17, 16, 30, 2) + ")",
    };
    EXPECT_EQ(RecordingStack::Instance().Calls(), expected);
}

TEST_F(DcRtmMgrTest, ChangedOptionsStartTheInstancesAgainWithTheNewSettings) {
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, Load(R"({"vid": 5})"), DclConfigObject::OPTION_TYPE_VLAN));
    rtm->SetRtmReady(5);
    RecordingStack::Instance().ClearCalls();
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, Load(R"({"RTM": {"dead_rpm_timer": 45}})"),
                                     DclConfigObject::OPTION_TYPE_VLAN));
    const std::vector<std::string> expected = {
        "sms_cipr_start(5, " + Entity(0, 0, 0, 40, 110, 20, 200, 120, 45, 1) + ")",
        "sms_cipr_start(32773, " + Entity(0, 0, 0, 40, 110, 20, 200, 120, 45, 2) + ")",
    };
    EXPECT_EQ(RecordingStack::Instance().Calls(), expected);
    EXPECT_EQ(rtm->GetRtmData(5)->deadTimer, 45u);
    EXPECT_TRUE(rtm->IsRtmReady(5)) << "an update keeps the readiness flag";
}

TEST_F(DcRtmMgrTest, RemoteOptionsCarryNoRtmSettings) {
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, Load(R"({"RTM": {"dead_rpm_timer": 45}})"),
                                     DclConfigObject::OPTION_TYPE_REMOTE));
    EXPECT_TRUE(RecordingStack::Instance().Calls().empty());
    EXPECT_FALSE(rtm->HasRtmData(5));
    EXPECT_EQ(trace.Texts(10),
              (std::vector<std::string>{
                  "DcRtmMgr::UpdateRtmConfig: Creating IPv4 Unicast RTM for vlan 5\n"}));
}

TEST_F(DcRtmMgrTest, DeleteRtmConfigOfUnknownVlanStillDeletesBothInstances) {
    rtm->DeleteRtmConfig(9);
    EXPECT_EQ(
        RecordingStack::Instance().Calls(),
        (std::vector<std::string>{"sms_cipr_action(9, 2080)", "sms_cipr_action(32777, 2080)"}));
    EXPECT_EQ(trace.Texts(10), (std::vector<std::string>{"Deleting RTM Instance 9\n",
                                                         "Deleting RTM Instance 32777\n"}));
}

TEST_F(DcRtmMgrTest, DeleteRemovesTheStoredSettings) {
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, Load(R"({"vid": 5})"), DclConfigObject::OPTION_TYPE_VLAN));
    rtm->DeleteRTMInstance(5, 41);
    EXPECT_TRUE(rtm->HasRtmData(5));
    EXPECT_FALSE(rtm->HasRtmData(32773));
    rtm->DeleteRTMInstance(5, 0);
    EXPECT_FALSE(rtm->HasRtmData(5));
}

TEST_F(DcRtmMgrTest, GetRtmConfigForUnknownIdReturnsFalseAndLeavesTheEntity) {
    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0xab, sizeof(entity));
    amb_cipr_rtm_entity before = entity;
    EXPECT_FALSE(rtm->GetRTMConfig(static_cast<unsigned short>(12), &entity));
    EXPECT_EQ(std::memcmp(&entity, &before, sizeof(entity)), 0);
}

TEST_F(DcRtmMgrTest, GetRtmConfigAnswersWithBgpDistancesInTheOtherOrder) {
    OptionsNode vlan = Load(R"({"RTM": {"dead_rpm_timer": 30, "ADMIN_DISTANCE": {
        "ospfv2_internal": 11, "ospfv2_external": 12, "ospfv3_internal": 13,
        "ospfv3_external": 14, "ripv2": 15, "ripng": 16, "ebgp": 17, "ibgp": 18}}})");
    EXPECT_TRUE(rtm->UpdateRtmConfig(7, vlan, DclConfigObject::OPTION_TYPE_VLAN));

    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0xab, sizeof(entity));
    ASSERT_TRUE(rtm->GetRTMConfig(static_cast<unsigned short>(7), &entity));
    EXPECT_EQ(entity.instance_index, 7ul);
    EXPECT_EQ(entity.row_status, 1ul);
    EXPECT_EQ(entity.admin_status, 1ul);
    EXPECT_EQ(entity.ospf_int_distance, 11ul);
    EXPECT_EQ(entity.ospf_ext_distance, 12ul);
    EXPECT_EQ(entity.ebgp_distance, 17ul);
    EXPECT_EQ(entity.ibgp_distance, 18ul);
    EXPECT_EQ(entity.rip_distance, 15ul);
    EXPECT_EQ(entity.dead_rpm_timer, 30ul);
    EXPECT_EQ(entity.addr_family, 0ul) << "the family is left zero";

    ASSERT_TRUE(rtm->GetRTMConfig(static_cast<unsigned short>(7 | 0x8000), &entity));
    EXPECT_EQ(entity.instance_index, 32775ul);
    EXPECT_EQ(entity.ospf_int_distance, 13ul);
    EXPECT_EQ(entity.ospf_ext_distance, 14ul);
    EXPECT_EQ(entity.rip_distance, 16ul);
    EXPECT_EQ(entity.addr_family, 0ul);
}

TEST_F(DcRtmMgrTest, ReadinessIsFalseUntilReportedAndReportingCreatesTheEntry) {
    EXPECT_FALSE(rtm->IsRtmReady(5));
    EXPECT_FALSE(rtm->HasRtmData(5));
    rtm->SetRtmReady(5);
    EXPECT_TRUE(rtm->IsRtmReady(5));
    ASSERT_NE(rtm->GetRtmData(5), nullptr);
    EXPECT_EQ(rtm->GetRtmData(5)->deadTimer, 60u);
    EXPECT_FALSE(rtm->IsRtmReady(32773));
}

TEST_F(DcRtmMgrTest, CreatingAnInstanceDoesNotMakeItReady) {
    EXPECT_TRUE(rtm->UpdateRtmConfig(5, Load(R"({"vid": 5})"), DclConfigObject::OPTION_TYPE_VLAN));
    EXPECT_TRUE(rtm->HasRtmData(5));
    EXPECT_FALSE(rtm->IsRtmReady(5));
}

}  // namespace
}  // namespace Zavrel
