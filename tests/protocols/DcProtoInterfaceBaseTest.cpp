// The protocol object of a router: enabled state from layered options,
// lazy readiness from the RTM instance, interfaces and addresses.
#include "routing/DcProtoInterfaceBase.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "protocols/Ospfv3Interface.h"
#include "protocols/RipngInterface.h"
#include "protocols/Ripv2Interface.h"
#include "routing/DcRipv2Router.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class DcProtoInterfaceBaseTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    void Apply(const char* json, const char* source,
               DclConfigObject::OptionType type = DclConfigObject::OPTION_TYPE_VLAN) {
        iface->ApplyOptions(Load(json), source, type);
    }

    Options options;
    DcRipv2Router router{6};
    DcProtoInterfaceBase* iface = router.GetInterface();
};

TEST_F(DcProtoInterfaceBaseTest, StartsDisabledWithTheDefaultProfile) {
    ASSERT_NE(iface, nullptr);
    EXPECT_FALSE(iface->IsEnabled());
    EXPECT_FALSE(iface->IsReady());
    EXPECT_EQ(iface->GetStatus(), DcProtoInterfaceBase::CONFIG_DISABLED);
    EXPECT_EQ(iface->GetProfile(), RedistributionProfile());
    EXPECT_EQ(iface->GetVlan(), 6);
}

TEST_F(DcProtoInterfaceBaseTest, EnabledLeafEnablesAndDisables) {
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_TRUE(iface->IsEnabled());
    EXPECT_TRUE(router.IsEnabled());
    Apply(R"({"enabled": 0})", "vlan.json");
    EXPECT_FALSE(iface->IsEnabled());
    Apply(R"({"enabled": true})", "vlan.json");
    EXPECT_TRUE(iface->IsEnabled());
}

TEST_F(DcProtoInterfaceBaseTest, SectionWithoutEnabledLeafLeavesTheStateBelowIt) {
    Apply(R"({"REDISTRIBUTION": {"bgp": 0}})", "vlan.json");
    EXPECT_FALSE(iface->IsEnabled()) << "nothing below: disabled";
    Apply(R"({"enabled": 1})", "vlan.json");
    Apply(R"({"REDISTRIBUTION": {"ospf": 0}})", "remote.json", DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_TRUE(iface->IsEnabled()) << "the remote's section does not say, the VLAN's does";
    EXPECT_FALSE(iface->GetProfile().ospf);
    EXPECT_TRUE(iface->GetProfile().bgp);
}

TEST_F(DcProtoInterfaceBaseTest, LatestSourceWinsAndDeletingItFallsBack) {
    Apply(R"({"enabled": 1, "REDISTRIBUTION": {"static": 0}})", "vlan.json");
    Apply(R"({"enabled": 0})", "remote.json", DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_FALSE(iface->IsEnabled());
    EXPECT_FALSE(iface->GetProfile().staticRoutes) << "the remote's section has no profile";
    iface->DeleteOptions("remote.json", DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_TRUE(iface->IsEnabled());
    iface->DeleteOptions("vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_FALSE(iface->IsEnabled());
    EXPECT_EQ(iface->GetProfile(), RedistributionProfile());
}

TEST_F(DcProtoInterfaceBaseTest, ReapplyingASourceMakesItTheLatest) {
    Apply(R"({"enabled": 1})", "vlan.json");
    Apply(R"({"enabled": 0})", "remote.json");
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_TRUE(iface->IsEnabled());
    iface->DeleteOptions("unknown.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(iface->IsEnabled());
}

TEST_F(DcProtoInterfaceBaseTest, EachSectionsProfileStartsFromTheDefaults) {
    Apply(R"({"enabled": 1, "REDISTRIBUTION": {"bgp": 0, "rip": 0}})", "vlan.json");
    EXPECT_EQ(iface->GetProfile(), RedistributionProfile(true, true, false, true, false));
    Apply(R"({"enabled": 1, "REDISTRIBUTION": {"rip": 0}})", "vlan.json");
    EXPECT_EQ(iface->GetProfile(), RedistributionProfile(true, true, true, true, false));
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_EQ(iface->GetProfile(), RedistributionProfile());
}

TEST_F(DcProtoInterfaceBaseTest, ReadyOnceEnabledAndTheRtmInstanceIsReady) {
    DcRtmMgr::GetInstance()->SetRtmReady(6);
    EXPECT_FALSE(iface->IsReady()) << "not enabled yet";
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_TRUE(iface->IsReady());
    EXPECT_EQ(iface->GetStatus(), DcProtoInterfaceBase::CONFIG_READY);
    EXPECT_TRUE(router.IsReady());
}

TEST_F(DcProtoInterfaceBaseTest, ReadinessIsEvaluatedWhenAsked) {
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_FALSE(iface->IsReady());
    EXPECT_EQ(iface->GetStatus(), DcProtoInterfaceBase::CONFIG_ENABLED);
    DcRtmMgr::GetInstance()->SetRtmReady(6 | DcRtmMgr::IP6_INSTANCE_BIT);
    EXPECT_FALSE(iface->IsReady()) << "the IPv6 instance is not RIPv2's";
    DcRtmMgr::GetInstance()->SetRtmReady(6);
    EXPECT_TRUE(iface->IsReady());
    DcRtmMgr::GetInstance()->DeleteRtmConfig(6);
    EXPECT_FALSE(iface->IsReady()) << "a deleted instance is not ready";
}

TEST_F(DcProtoInterfaceBaseTest, Ipv6ProtocolsWaitForTheIpv6Instance) {
    RipngInterface ripng;
    Ospfv3Interface ospf;
    DcRipv2Router holder("HOLDER", 6, nullptr);
    ripng.Bind(&holder);
    ospf.Bind(&holder);
    ripng.ApplyOptions(Load(R"({"enabled": 1})"), "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    ospf.ApplyOptions(Load(R"({"enabled": 1})"), "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    DcRtmMgr::GetInstance()->SetRtmReady(6);
    EXPECT_FALSE(ripng.IsReady());
    EXPECT_FALSE(ospf.IsReady());
    DcRtmMgr::GetInstance()->SetRtmReady(6 | DcRtmMgr::IP6_INSTANCE_BIT);
    EXPECT_TRUE(ripng.IsReady());
    EXPECT_TRUE(ospf.IsReady());
    EXPECT_EQ(ospf.GetProtocol(), 0xd0000u);
    EXPECT_EQ(ospf.GetRtmInstance(), 6 | DcRtmMgr::IP6_INSTANCE_BIT);
}

TEST_F(DcProtoInterfaceBaseTest, UnboundObjectWorksInVlanZero) {
    Ripv2Interface loose;
    EXPECT_EQ(loose.GetRouter(), nullptr);
    EXPECT_EQ(loose.GetVlan(), 0);
    loose.InterfaceStatusChange(3, 2);
    EXPECT_EQ(loose.GetInterfaceStatus(3), DcProtoInterfaceBase::IF_UP);
}

TEST_F(DcProtoInterfaceBaseTest, InterfaceStatusChangesAreTrackedAndMirroredInTheRouter) {
    iface->InterfaceStatusChange(10, 2);
    iface->InterfaceStatusChange(11, 1);
    iface->InterfaceStatusChange(12, 7);
    EXPECT_EQ(iface->GetInterfaceStatus(10), DcProtoInterfaceBase::IF_UP);
    EXPECT_EQ(iface->GetInterfaceStatus(11), DcProtoInterfaceBase::IF_DOWN);
    EXPECT_EQ(iface->GetInterfaceStatus(12), DcProtoInterfaceBase::IF_UP);
    EXPECT_EQ(iface->GetInterfaceStatus(13), DcProtoInterfaceBase::IF_REMOVED);
    EXPECT_TRUE(router.IsEnabled(10));
    EXPECT_TRUE(router.IsEnabled(11));
    EXPECT_EQ(router.GetInterfaces().at(10), true);
    EXPECT_EQ(router.GetInterfaces().at(11), false);

    iface->InterfaceStatusChange(10, 0);
    EXPECT_EQ(iface->GetInterfaceStatus(10), DcProtoInterfaceBase::IF_REMOVED);
    EXPECT_FALSE(router.IsEnabled(10));
    EXPECT_EQ(iface->GetInterfaces().size(), 2u);
}

TEST_F(DcProtoInterfaceBaseTest, RouterEventsReachTheProtocolObject) {
    router.ProcessInterfaceStatusChange(20, 2);
    router.ProcessIPAddressChange(20, Ip4Addr(10, 9, 8, 7));
    EXPECT_EQ(iface->GetInterfaceStatus(20), DcProtoInterfaceBase::IF_UP);
    ASSERT_EQ(iface->GetAddresses().count(20), 1u);
    EXPECT_EQ(iface->GetAddresses().at(20), Ip4Addr(10, 9, 8, 7));
}

TEST_F(DcProtoInterfaceBaseTest, InterfaceIsReadyWhenTheProtocolIsReadyAndTheInterfaceUp) {
    DcRtmMgr::GetInstance()->SetRtmReady(6);
    iface->InterfaceStatusChange(10, 2);
    iface->InterfaceStatusChange(11, 1);
    EXPECT_FALSE(router.IsReady(10)) << "the protocol is not enabled";
    Apply(R"({"enabled": 1})", "vlan.json");
    EXPECT_TRUE(router.IsReady(10));
    EXPECT_FALSE(router.IsReady(11));
    EXPECT_FALSE(router.IsReady(12));
}

TEST_F(DcProtoInterfaceBaseTest, RemovingAnInterfaceForgetsItsAddress) {
    iface->InterfaceStatusChange(10, 2);
    iface->AddressChange(10, Ip4Addr(10, 0, 0, 1));
    iface->AddressChange(10, Ip4Addr(10, 0, 0, 2));
    EXPECT_EQ(iface->GetAddresses().at(10), Ip4Addr(10, 0, 0, 2));
    iface->InterfaceStatusChange(10, 0);
    EXPECT_TRUE(iface->GetAddresses().empty());
}

TEST_F(DcProtoInterfaceBaseTest, NamesOfStatesAndProtocols) {
    EXPECT_STREQ(DcProtoInterfaceBase::StatusName(DcProtoInterfaceBase::CONFIG_DISABLED),
                 "Disabled");
    EXPECT_STREQ(DcProtoInterfaceBase::StatusName(DcProtoInterfaceBase::CONFIG_ENABLED), "Enabled");
    EXPECT_STREQ(DcProtoInterfaceBase::StatusName(DcProtoInterfaceBase::CONFIG_READY), "Ready");
    EXPECT_STREQ(DcProtoInterfaceBase::IfStatusName(DcProtoInterfaceBase::IF_UP), "Up");
    EXPECT_STREQ(DcProtoInterfaceBase::IfStatusName(DcProtoInterfaceBase::IF_DOWN), "Down");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(0x30000), "static");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(0x20000), "connected");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(0x80000), "rip");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(0xd0000), "ospf");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(0xe0000), "bgp");
    EXPECT_STREQ(DcProtoInterfaceBase::ProtocolName(1), "unknown");
}

}  // namespace
}  // namespace Zavrel
