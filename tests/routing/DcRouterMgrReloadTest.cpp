#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/RouteRedistributeItem.h"
#include "config/DclConfigObject.h"
#include "platform/Options.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "routing/DcRouterMgrTestPeer.h"
#include "routing/RedistributionProfile.h"
#include "rtm/DcRtmMgr.h"
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

// A protocol object that notes, in a log shared by the routers of a VLAN,
// the sections it is given ("<router> <source> <type> <tag>") and the
// sources it is told to forget ("<router> forgets <source>").
class LoggingProto : public DcProtoConfigBase {
public:
    LoggingProto(std::string router, Lines* log) : m_router(std::move(router)), m_log(log) {}
    void ApplyOptions(const OptionsNode& section, const string& source,
                      DclConfigObject::OptionType type) override {
        m_log->push_back(m_router + " " + source.c_str() + " " + std::to_string(type) + " " +
                         section.GetAsString("tag").c_str());
    }
    void DeleteOptions(const string& source, DclConfigObject::OptionType) override {
        m_log->push_back(m_router + " forgets " + source.c_str());
    }

private:
    std::string m_router;
    Lines* m_log;
};

// A router named like the real one of its type, with a LoggingProto. It
// runs (IsEnabled) when its status is not 0.
class LoggingRouter : public DcRouterBase {
public:
    LoggingRouter(const char* name, Lines* log)
        : DcRouterBase(name, 5, new LoggingProto(name, log)) {}
    bool CreateConfigList(DcConfigLists&) override { return true; }
};

class RouterOrderTest : public RouterMgrReloadTest {
protected:
    // VLAN 5 from a.json, its routers replaced by logging ones.
    void SetUp() override {
        RouterMgrReloadTest::SetUp();
        Load("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}", "a.json", VLAN_OPTIONS);
        static const char* const names[DcRouterMgr::PROTOCOL_COUNT] = {
            "BGP", "OSPFV2", "OSPFV3", "RIPV2", "RIPNG", "IGMP", "MLD"};
        std::map<DcRouterMgr::ProtocolType, DcRouterBase*> routers;
        for (int type = DcRouterMgr::PROTOCOL_COUNT - 1; type >= 0; --type) {
            routers[static_cast<DcRouterMgr::ProtocolType>(type)] =
                new LoggingRouter(names[type], &log);
        }
        DcRouterMgrTestPeer::ReplaceRouters(mgr, 5, routers);
    }

    // The entry of VLAN 5 with the routers' sections in reverse protocol
    // order; OSPFV3 and IGMP have none.
    static constexpr const char* ENTRY =
        "{\"VLAN_CONFIGURATIONS\": [{\"MLD\": {\"tag\": \"m\"}, \"RIPNG\": {\"tag\": \"n\"}, "
        "\"RIPV2\": {\"tag\": \"r\"}, \"OSPFV2\": {\"tag\": \"o\"}, \"BGP\": {\"tag\": \"b\"}, "
        "\"vid\": 5}]}";

    Lines log;
};

TEST_F(RouterOrderTest, VlanOptionsReachTheRoutersInProtocolOrder) {
    Load(ENTRY, "a.json", VLAN_OPTIONS);
    EXPECT_EQ(log, (Lines{"BGP a.json 0 b", "OSPFV2 a.json 0 o", "OSPFV3 forgets a.json",
                          "RIPV2 a.json 0 r", "RIPNG a.json 0 n", "IGMP forgets a.json",
                          "MLD a.json 0 m"}));
}

TEST_F(RouterOrderTest, OtherOptionTypesReachTheRoutersInProtocolOrder) {
    Load(ENTRY, "other.json", static_cast<DclConfigObject::OptionType>(4));
    EXPECT_EQ(log,
              (Lines{"BGP other.json 4 b", "OSPFV2 other.json 4 o", "OSPFV3 forgets other.json",
                     "RIPV2 other.json 4 r", "RIPNG other.json 4 n", "IGMP forgets other.json",
                     "MLD other.json 4 m"}));
}

TEST_F(RouterOrderTest, RemoteOptionsReachTheRunningRoutersInProtocolOrder) {
    // Routers without an interface object run when their status says so.
    mgr->GetDcRouterByVID(5, DcRouterMgr::MLD)->SetStatus(DcProtoInterfaceBase::CONFIG_ENABLED);
    mgr->GetDcRouterByVID(5, DcRouterMgr::OSPFv3)->SetStatus(DcProtoInterfaceBase::CONFIG_ENABLED);
    mgr->GetDcRouterByVID(5, DcRouterMgr::RIPv2)->SetStatus(DcProtoInterfaceBase::CONFIG_ENABLED);
    mgr->GetDcRouterByVID(5, DcRouterMgr::BGP)->SetStatus(DcProtoInterfaceBase::CONFIG_ENABLED);

    Load(ENTRY, "remote.json", REMOTE_OPTIONS);

    EXPECT_EQ(log, (Lines{"BGP remote.json 1 b", "OSPFV3 forgets remote.json",
                          "RIPV2 remote.json 1 r", "MLD remote.json 1 m"}));
}

// With the real routers: enabling BGP, OSPFv2 and RIPv2 in one entry that
// lists them the other way round queues their redistribution entries for
// the IPv4 instance as the routers are reloaded, BGP's first.
TEST_F(RouterMgrReloadTest, RealRoutersAreReloadedInProtocolOrder) {
    Load(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": true}, "
        "\"OSPFV2\": {\"enabled\": true}, \"BGP\": {\"enabled\": true}}]}",
        "a.json", VLAN_OPTIONS);

    std::vector<long> receivers;
    for (CfgItem* item : mgr->GetCfgSched().Items(CfgKey(5, DcRtmMgr::CFG_KEY_REDISTRIBUTION))) {
        auto* entry = dynamic_cast<RouteRedistributeItem*>(item);
        ASSERT_NE(entry, nullptr);
        if (receivers.empty() || receivers.back() != entry->Destination()) {
            receivers.push_back(entry->Destination());
        }
    }
    EXPECT_EQ(receivers, (std::vector<long>{RedistributionProfile::PROTO_BGP,
                                            RedistributionProfile::PROTO_OSPF,
                                            RedistributionProfile::PROTO_RIP}));
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
