// The IGMP and MLD routers of a VLAN: interfaces, querier roles and groups.
#include "protocols/DcMulticastRouter.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class DcMulticastRouterTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    Options options;
};

TEST_F(DcMulticastRouterTest, ProtocolZeroIsIgmpAnd41IsMld) {
    DcMulticastRouter igmp(4, 0);
    DcMulticastRouter mld(4, 41);
    DcMulticastRouter other(4, 17);
    EXPECT_EQ(igmp.GetName(), "IGMP");
    EXPECT_EQ(igmp.GetProtocol(), 0);
    EXPECT_EQ(igmp.GetInterface()->GetAfi(), 0);
    EXPECT_EQ(mld.GetName(), "MLD");
    EXPECT_EQ(mld.GetProtocol(), 41);
    EXPECT_EQ(mld.GetInterface()->GetAfi(), 41);
    EXPECT_EQ(other.GetName(), "IGMP");
    EXPECT_EQ(igmp.GetInterface()->GetProtocol(), DcProtoInterfaceBase::PROTO_NONE);
}

TEST_F(DcMulticastRouterTest, EnabledByItsSectionAndReadyWithItsFamilysInstance) {
    DcMulticastRouter mld(4, 41);
    mld.Reload(Load(R"({"MLD": {"enabled": 1}})"), "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(mld.IsEnabled());
    DcRtmMgr::GetInstance()->SetRtmReady(4);
    EXPECT_FALSE(mld.IsReady());
    DcRtmMgr::GetInstance()->SetRtmReady(4 | DcRtmMgr::IP6_INSTANCE_BIT);
    EXPECT_TRUE(mld.IsReady());
}

TEST_F(DcMulticastRouterTest, AddedInterfaceBecomesOneOfTheRoutersInterfaces) {
    DcMulticastRouter igmp(4, 0);
    EXPECT_FALSE(igmp.IsEnabled(100));
    EXPECT_TRUE(igmp.AddInterface(100, true));
    EXPECT_TRUE(igmp.IsEnabled(100));
    EXPECT_TRUE(igmp.IsMulticastInterface(100));
    EXPECT_TRUE(igmp.IsQuerier(100));
    EXPECT_TRUE(igmp.AddInterface(100, false));
    EXPECT_FALSE(igmp.IsQuerier(100));
}

TEST_F(DcMulticastRouterTest, ConfigureInterfaceChangesTheRoleOfAKnownInterfaceOnly) {
    DcMulticastRouter igmp(4, 0);
    EXPECT_FALSE(igmp.ConfigureInterface(100, true));
    EXPECT_FALSE(igmp.IsMulticastInterface(100));
    igmp.AddInterface(100, false);
    EXPECT_TRUE(igmp.ConfigureInterface(100, true));
    EXPECT_TRUE(igmp.IsQuerier(100));
}

TEST_F(DcMulticastRouterTest, ConfigureInterfaceStartsMulticastOnAnInterfaceKnownFromItsStatus) {
    DcMulticastRouter igmp(4, 0);
    igmp.ProcessInterfaceStatusChange(100, 2);
    EXPECT_TRUE(igmp.IsEnabled(100));
    EXPECT_FALSE(igmp.IsMulticastInterface(100));
    EXPECT_TRUE(igmp.ConfigureInterface(100, false));
    EXPECT_TRUE(igmp.IsMulticastInterface(100));
    EXPECT_FALSE(igmp.IsQuerier(100));
}

TEST_F(DcMulticastRouterTest, MulticastInterfaceStaysWhenItsStatusIsForgotten) {
    DcMulticastRouter igmp(4, 0);
    igmp.AddInterface(100, true);
    igmp.ProcessInterfaceStatusChange(100, 0);
    EXPECT_FALSE(igmp.IsEnabled(100));
    EXPECT_TRUE(igmp.IsMulticastInterface(100));
    EXPECT_TRUE(igmp.ConfigureInterface(100, false));
}

TEST_F(DcMulticastRouterTest, GroupsNeedAMulticastAddressOfTheFamilyAndAMulticastInterface) {
    DcMulticastRouter igmp(4, 0);
    EXPECT_FALSE(igmp.AddGroup(100, "239.1.1.1")) << "not a multicast interface";
    igmp.AddInterface(100, true);
    EXPECT_TRUE(igmp.AddGroup(100, "239.1.1.1"));
    EXPECT_TRUE(igmp.AddGroup(100, "224.0.0.5"));
    EXPECT_FALSE(igmp.AddGroup(100, "10.1.1.1"));
    EXPECT_FALSE(igmp.AddGroup(100, "ff02::1"));
    EXPECT_FALSE(igmp.AddGroup(100, nullptr));
    EXPECT_EQ(igmp.GetGroups().size(), 2u);
    EXPECT_EQ(DcMulticastRouter::FormatGroup(0, igmp.GetGroups().begin()->first), "224.0.0.5");

    DcMulticastRouter mld(4, 41);
    mld.AddInterface(100, true);
    EXPECT_TRUE(mld.AddGroup(100, "ff02::1:3"));
    EXPECT_FALSE(mld.AddGroup(100, "2001:db8::1"));
    EXPECT_FALSE(mld.AddGroup(100, "239.1.1.1"));
    EXPECT_EQ(DcMulticastRouter::FormatGroup(41, mld.GetGroups().begin()->first), "ff02::1:3");
}

TEST_F(DcMulticastRouterTest, RemovingGroupsAndInterfaces) {
    DcMulticastRouter igmp(4, 0);
    igmp.AddInterface(100, true);
    igmp.AddInterface(101, false);
    igmp.AddGroup(100, "239.1.1.1");
    igmp.AddGroup(101, "239.1.1.1");
    igmp.AddGroup(101, "239.2.2.2");
    EXPECT_TRUE(igmp.RemoveGroup(100, "239.1.1.1"));
    EXPECT_FALSE(igmp.RemoveGroup(100, "239.1.1.1"));
    EXPECT_FALSE(igmp.RemoveGroup(100, "bad"));
    EXPECT_EQ(igmp.GetGroups().size(), 2u);
    EXPECT_TRUE(igmp.RemoveInterface(101));
    EXPECT_TRUE(igmp.GetGroups().empty());
    EXPECT_FALSE(igmp.IsEnabled(101));
    EXPECT_FALSE(igmp.RemoveInterface(101));
    EXPECT_TRUE(igmp.IsEnabled(100));
}

}  // namespace
}  // namespace Zavrel
