#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "config/DclConfigObject.h"
#include "platform/Options.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RouterMgrFixture.h"

namespace Zavrel {
namespace {

using test::RecordingStack;
typedef std::vector<std::string> Lines;
typedef std::set<unsigned short> Vids;

const DclConfigObject::OptionType VLAN_OPTIONS = DclConfigObject::OPTION_TYPE_VLAN;
const DclConfigObject::OptionType REMOTE_OPTIONS = DclConfigObject::OPTION_TYPE_REMOTE;

class RouterMgrReloadTest : public test::RouterMgrFixture {
protected:
    // Loads the JSON text and reloads it as the options of source.
    bool Load(const char* json, const char* source, DclConfigObject::OptionType type) {
        Options options;
        EXPECT_TRUE(options.LoadFromText(string(json))) << options.Error().c_str();
        return mgr->Reload(options, string(source), type);
    }

    Vids Vlans() const {
        Vids vids;
        for (const auto& entry : mgr->GetVlans()) {
            vids.insert(entry.first);
        }
        return vids;
    }

    std::set<std::string> SourcesOf(unsigned short vid) const {
        std::set<std::string> names;
        const DcRouterMgr::VlanRouters* record = mgr->GetVlans().at(vid);
        for (const string& name : record->sources) {
            names.insert(name.c_str());
        }
        return names;
    }
};

TEST_F(RouterMgrReloadTest, VlanOptionsCreateTheListedVlansAndRecordTheirSource) {
    EXPECT_TRUE(
        Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS));

    EXPECT_EQ(Vlans(), (Vids{5, 7}));
    EXPECT_EQ(mgr->GetSourceVlans("a.json"), (Vids{5, 7}));
    EXPECT_EQ(SourcesOf(5), std::set<std::string>{"a.json"});
    EXPECT_EQ(SourcesOf(7), std::set<std::string>{"a.json"});
    EXPECT_EQ(trace.Texts(10).front(), "Reloading Configuration in all VLANs\n");
    EXPECT_TRUE(trace.Contains(10, "Creating VLAN 5\n"));
    EXPECT_TRUE(trace.Contains(10, "Creating VLAN 7\n"));
}

TEST_F(RouterMgrReloadTest, VidUsesItsLowSixteenBits) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 65541}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(Vlans(), Vids{5});
}

TEST_F(RouterMgrReloadTest, ReloadingTheSameOptionsMakesNoStackCall) {
    const char* json =
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RTM\": {\"dead_rpm_timer\": 30}}]}";
    Load(json, "a.json", VLAN_OPTIONS);
    stack().ClearCalls();
    const DcRouterMgr::VlanRouters* record = mgr->GetVlans().at(5);

    EXPECT_TRUE(Load(json, "a.json", VLAN_OPTIONS));

    EXPECT_TRUE(stack().Requests().empty());
    EXPECT_EQ(mgr->GetVlans().at(5), record);
}

TEST_F(RouterMgrReloadTest, VlanOptionsRefreshTheRtmOfAnExistingVlan) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    stack().ClearCalls();

    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RTM\": {\"dead_rpm_timer\": 30}}]}", "a.json",
         VLAN_OPTIONS);

    EXPECT_EQ(stack().Requests(),
              (Lines{"sms_cipr_start(5, {inst=0 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 "
                     "ibgp=200 rip=120 dead=30 af=1})",
                     "sms_cipr_start(32773, {inst=0 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 "
                     "ibgp=200 rip=120 dead=30 af=2})"}));
}

TEST_F(RouterMgrReloadTest, RemoteOptionsDoNotTouchTheRtmOfAnExistingVlan) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    stack().ClearCalls();

    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RTM\": {\"dead_rpm_timer\": 30}}]}",
         "remote.json", REMOTE_OPTIONS);

    EXPECT_TRUE(stack().Requests().empty());
    EXPECT_EQ(SourcesOf(5), (std::set<std::string>{"a.json", "remote.json"}));
    EXPECT_EQ(mgr->GetSourceVlans("remote.json"), Vids{5});
}

TEST_F(RouterMgrReloadTest, RemoteOptionsBeforeTheVlanOptionsAreSkipped) {
    EXPECT_TRUE(Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 12}]}", "remote.json", REMOTE_OPTIONS));

    EXPECT_EQ(trace.Texts(0),
              Lines{"Loaded Remote remote.json Options with VLAN 12 before loading VLAN "
                    "options... Skipping\n"});
    EXPECT_TRUE(Vlans().empty());
    EXPECT_TRUE(mgr->GetSourceVlans("remote.json").empty());
    EXPECT_TRUE(stack().Calls().empty());
}

TEST_F(RouterMgrReloadTest, OtherOptionTypesAlsoNeedAnExistingVlan) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 12}]}", "other.json",
         static_cast<DclConfigObject::OptionType>(4));
    EXPECT_TRUE(trace.Contains(0,
                               "Loaded Remote other.json Options with VLAN 12 before loading "
                               "VLAN options... Skipping\n"));
    EXPECT_TRUE(Vlans().empty());
}

TEST_F(RouterMgrReloadTest, EntryWithoutVidIsSkippedAndTheOthersAreLoaded) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"name\": \"x\"}, {\"vid\": 6}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(trace.Texts(0), Lines{"Unable to Get VLAN ID:cannot find the node element\n"});
    EXPECT_EQ(Vlans(), Vids{6});
}

TEST_F(RouterMgrReloadTest, EntryThatIsNotAnObjectIsSkipped) {
    Load("{\"VLAN_CONFIGURATIONS\": [5, {\"vid\": 6}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(trace.Texts(0), Lines{"Unable to Get VLAN ID:Incorrect Node type for Object or Array "
                                    "operations\n"});
    EXPECT_EQ(Vlans(), Vids{6});
}

TEST_F(RouterMgrReloadTest, EmptyVlanSectionRemovesTheSourceAndTheVlansItAloneConfigured) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 7}]}", "b.json", VLAN_OPTIONS);

    EXPECT_TRUE(Load("{\"VLAN_CONFIGURATIONS\": []}", "a.json", VLAN_OPTIONS));

    EXPECT_EQ(Vlans(), Vids{7});
    EXPECT_EQ(SourcesOf(7), std::set<std::string>{"b.json"});
    EXPECT_TRUE(mgr->GetSourceVlans("a.json").empty());
}

TEST_F(RouterMgrReloadTest, MissingVlanSectionRemovesTheSourceToo) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    trace.Clear();
    Load("{}", "a.json", VLAN_OPTIONS);
    EXPECT_TRUE(Vlans().empty());
    EXPECT_FALSE(trace.Contains(10, "Reloading Configuration in all VLANs\n"));
    EXPECT_TRUE(trace.Contains(10, "Deleted VLAN 5\n"));
}

TEST_F(RouterMgrReloadTest, DroppedVlanGoesOnlyWhenNoOtherSourceListsIt) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 7}]}", "b.json", VLAN_OPTIONS);

    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(Vlans(), (Vids{5, 7}));
    EXPECT_EQ(SourcesOf(7), std::set<std::string>{"b.json"});

    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 9}]}", "b.json", VLAN_OPTIONS);
    EXPECT_EQ(Vlans(), (Vids{5, 9}));
}

TEST_F(RouterMgrReloadTest, SourceKeepsAVlanItNoLongerListsInItsRecord) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(Vlans(), Vids{5});
    EXPECT_EQ(mgr->GetSourceVlans("a.json"), (Vids{5, 7}));
    trace.Clear();

    mgr->DeleteOptions("a.json", VLAN_OPTIONS);

    EXPECT_EQ(trace.Texts(0), Lines{"Invalid VLAN 7 Record found for Config File a.json\n"});
    EXPECT_TRUE(Vlans().empty());
}

TEST_F(RouterMgrReloadTest, ReloadAfterTheVlanWasDeletedDirectlyRecreatesIt) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    mgr->DeleteVlan(5);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    EXPECT_EQ(Vlans(), Vids{5});
    EXPECT_EQ(SourcesOf(5), std::set<std::string>{"a.json"});
}

bool Enabled(DcRouterMgr* mgr, unsigned short vid, DcRouterMgr::ProtocolType type) {
    DcRouterBase* router = mgr->GetDcRouterByVID(vid, type);
    EXPECT_NE(router, nullptr);
    return router != nullptr && router->IsEnabled();
}

TEST_F(RouterMgrReloadTest, VlanOptionsReachEveryRouterOfTheVlan) {
    Load(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"BGP\": {\"enabled\": true}, "
        "\"OSPFV2\": {\"enabled\": true}, \"OSPFV3\": {\"enabled\": true}, "
        "\"RIPV2\": {\"enabled\": true}, \"RIPNG\": {\"enabled\": true}, "
        "\"IGMP\": {\"enabled\": true}, \"MLD\": {\"enabled\": true}}, {\"vid\": 6}]}",
        "a.json", VLAN_OPTIONS);
    for (int type = 0; type < DcRouterMgr::PROTOCOL_COUNT; ++type) {
        DcRouterMgr::ProtocolType t = static_cast<DcRouterMgr::ProtocolType>(type);
        EXPECT_TRUE(Enabled(mgr, 5, t)) << type;
        EXPECT_FALSE(Enabled(mgr, 6, t)) << type;
    }
}

TEST_F(RouterMgrReloadTest, EachRouterTakesOnlyTheMemberWithItsExactName) {
    Load(
        "{\"VLAN_CONFIGURATIONS\": [{\"MLD\": {\"enabled\": true}, \"bgp\": {\"enabled\": true}, "
        "\"OSPFV\": {\"enabled\": true}, \"OSPFV22\": {\"enabled\": true}, \"vid\": 5, "
        "\"RIPV2\": {\"enabled\": true}, \"IGMP\": {\"enabled\": false}}]}",
        "a.json", VLAN_OPTIONS);
    EXPECT_TRUE(Enabled(mgr, 5, DcRouterMgr::MLD));
    EXPECT_TRUE(Enabled(mgr, 5, DcRouterMgr::RIPv2));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::BGP));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::OSPFv2));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::OSPFv3));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::RIPng));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::IGMP));
}

TEST_F(RouterMgrReloadTest, RemoteOptionsReachOnlyTheRoutersThatRun) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"BGP\": {\"enabled\": true}}]}", "a.json",
         VLAN_OPTIONS);

    Load(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"BGP\": {\"enabled\": false}, "
        "\"OSPFV2\": {\"enabled\": true}}]}",
        "remote.json", REMOTE_OPTIONS);

    // The running BGP router took the remote's options; the OSPFv2 router,
    // which does not run, never saw them.
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::BGP));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::OSPFv2));
}

TEST_F(RouterMgrReloadTest, OtherOptionTypesReachEveryRouterOfAnExistingVlan) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    stack().ClearCalls();

    Load(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"OSPFV2\": {\"enabled\": true}, "
        "\"RTM\": {\"dead_rpm_timer\": 30}}]}",
        "other.json", static_cast<DclConfigObject::OptionType>(4));

    EXPECT_TRUE(Enabled(mgr, 5, DcRouterMgr::OSPFv2));
    EXPECT_TRUE(stack().Requests().empty());
    EXPECT_EQ(SourcesOf(5), (std::set<std::string>{"a.json", "other.json"}));
}

TEST_F(RouterMgrReloadTest, DroppingAVlanRemovesTheSourceOptionsFromItsRouters) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"BGP\": {\"enabled\": true}}]}", "b.json",
         VLAN_OPTIONS);
    ASSERT_TRUE(Enabled(mgr, 5, DcRouterMgr::BGP));

    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 6}]}", "b.json", VLAN_OPTIONS);

    EXPECT_EQ(Vlans(), (Vids{5, 6}));
    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::BGP));
}

TEST_F(RouterMgrReloadTest, DeleteOptionsRemovesTheSourceOptionsFromTheRouters) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": true}}]}", "remote.json",
         static_cast<DclConfigObject::OptionType>(7));
    ASSERT_TRUE(Enabled(mgr, 5, DcRouterMgr::RIPv2));

    mgr->DeleteOptions("remote.json", static_cast<DclConfigObject::OptionType>(7));

    EXPECT_FALSE(Enabled(mgr, 5, DcRouterMgr::RIPv2));
    EXPECT_EQ(SourcesOf(5), std::set<std::string>{"a.json"});
}

TEST_F(RouterMgrReloadTest, DeleteOptionsOfAnUnknownSourceDoesNothing) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
    stack().ClearCalls();
    trace.Clear();
    mgr->DeleteOptions("b.json", VLAN_OPTIONS);
    EXPECT_TRUE(trace.Lines().empty());
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_EQ(Vlans(), Vids{5});
}

TEST_F(RouterMgrReloadTest, DeleteOptionsRemovesTheSourceFromItsVlansAndDeletesTheLonelyOnes) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS);
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 7}]}", "remote.json", REMOTE_OPTIONS);

    mgr->DeleteOptions("a.json", VLAN_OPTIONS);

    EXPECT_EQ(Vlans(), Vids{7});
    EXPECT_EQ(SourcesOf(7), std::set<std::string>{"remote.json"});
    EXPECT_TRUE(mgr->GetSourceVlans("a.json").empty());
}

TEST_F(RouterMgrReloadTest, DeleteOptionsOfAVlanDeletedDirectlyLogsTheStaleRecord) {
    Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}, {\"vid\": 7}]}", "a.json", VLAN_OPTIONS);
    mgr->DeleteVlan(5);
    trace.Clear();

    mgr->DeleteOptions("a.json", VLAN_OPTIONS);

    EXPECT_EQ(trace.Texts(0), Lines{"Invalid VLAN 5 Record found for Config File a.json\n"});
    EXPECT_TRUE(Vlans().empty());
}

}  // namespace
}  // namespace Zavrel
