#include "routing/DcRouterMgr.h"

#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "console/DcConsoleCommand.h"
#include "mib/Serializer.h"
#include "platform/ConsoleCommand.h"
#include "platform/Ip4Addr.h"
#include "platform/Options.h"
#include "protocols/DcMulticastRouter.h"
#include "routing/DcProtoInterfaceBase.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgrTestPeer.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RouterMgrFixture.h"
#include "support/testsupport/TestAddresses.h"

namespace Zavrel {
namespace {

using test::RecordingStack;
typedef std::vector<std::string> Lines;
using test::V4;

class RouterMgrTest : public test::RouterMgrFixture {
protected:
    bool Create(unsigned short vid) {
        Options options;
        return mgr->CreateVlan(vid, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second;
    }

    size_t IndexOf(const std::string& text) const {
        const Lines lines = trace.Texts();
        for (size_t i = 0; i < lines.size(); ++i) {
            if (lines[i] == text) {
                return i;
            }
        }
        ADD_FAILURE() << "no trace " << text;
        return lines.size();
    }
};

// Records the VLAN and name of every router it is called with.
class Collector : public DcRouterIteratorFunc {
public:
    void operator()(DcRouterBase* router) override {
        seen.push_back(std::to_string(router->GetVlan()) + ":" + router->GetName().c_str());
    }
    Lines seen;
};

// ---- instance

// No manager exists when these tests start.
class RouterMgrInstanceTest : public test::RecordingStackEnv {};

TEST_F(RouterMgrInstanceTest, FirstUseCreatesTheManagerWithItsPartsInOrder) {
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();

    ASSERT_NE(mgr, nullptr);
    const Lines lines = trace.Texts(10);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines.front(), "Creating new Instance of Manager\n");
    EXPECT_EQ(lines[1], "Creating DC Scheduler\n");
    EXPECT_EQ(lines.back(), "Creating DcRouterMgr\n");
}

// Notes, with every line the manager's creation logs, whether the request
// serializer had registered its console command by then.
class SerializerRegistrationProbe : public TraceSink {
public:
    bool Wants(int) const override { return true; }
    void Write(int, const char* text) override {
        lines.push_back(text);
        registered.push_back(ConsoleCommand::Find(Serializer::CONSOLE_COMMAND) != nullptr);
    }
    Lines lines;
    std::vector<bool> registered;
};

TEST_F(RouterMgrInstanceTest, MembersAreBuiltInTheirDescribedOrder) {
    ASSERT_EQ(ConsoleCommand::Find(Serializer::CONSOLE_COMMAND), nullptr);
    SerializerRegistrationProbe probe;
    TraceSink* previous = SetTraceSink(&probe);
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    SetTraceSink(previous);
    ASSERT_NE(mgr, nullptr);

    // The stack scheduler is built before the serializer (which registers
    // its command as it is built), and both before the constructor's body,
    // which logs last.
    EXPECT_EQ(probe.lines, (Lines{"Creating new Instance of Manager\n", "Creating DC Scheduler\n",
                                  "Creating DcRouterMgr\n"}));
    EXPECT_EQ(probe.registered, (std::vector<bool>{false, false, true}));
    const ConsoleCommand* command = ConsoleCommand::Find(Serializer::CONSOLE_COMMAND);
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->Owner(), &mgr->GetSerializer());
    EXPECT_STREQ(mgr->GetScheduler().Timer().Name(), "DcScheduler");
    EXPECT_STREQ(mgr->GetCfgSched().Name(), "CfgScheduler");

    // Members are built in the order of their declaration, and members of
    // one access level lie at ascending addresses in that order: the VLAN
    // section name, the VLAN map, the per-source VLAN sets, the stack
    // scheduler, the configuration scheduler, the request serializer, the
    // IPv4 and then the IPv6 console handler tables.
    const std::vector<const void*> members = DcRouterMgrTestPeer::MemberAddresses(*mgr);
    ASSERT_EQ(members.size(), 8u);
    EXPECT_STREQ(*static_cast<const char* const*>(members[0]), "VLAN_CONFIGURATIONS");
    EXPECT_EQ(members[1], &mgr->GetVlans());
    EXPECT_EQ(members[3], &mgr->GetScheduler());
    EXPECT_EQ(members[4], &mgr->GetCfgSched());
    EXPECT_EQ(members[5], &mgr->GetSerializer());
    EXPECT_EQ(members[6], &mgr->GetIp4ConCmdHandlers());
    EXPECT_EQ(members[7], &mgr->GetIp6ConCmdHandlers());
    const std::less<const void*> before;
    EXPECT_FALSE(before(members.front(), mgr));
    EXPECT_TRUE(before(members.back(), mgr + 1));
    for (size_t i = 1; i < members.size(); ++i) {
        EXPECT_TRUE(before(members[i - 1], members[i])) << "member " << i;
    }
}

TEST_F(RouterMgrTest, GetInstanceReturnsTheSameManagerWithoutCreatingAgain) {
    EXPECT_EQ(DcRouterMgr::GetInstance(), mgr);
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(RouterMgrTest, RouterNamesFollowTheProtocolTypes) {
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::BGP), "BGP4+");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::OSPFv2), "OSPFv2");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::OSPFv3), "OSPFv3");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::RIPv2), "RIPv2");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::RIPng), "RIPng");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::IGMP), "IGMP");
    EXPECT_STREQ(DcRouterMgr::RouterName(DcRouterMgr::MLD), "MLD");
}

TEST_F(RouterMgrTest, BitcountCountsTheSetBitsOfAMask) {
    EXPECT_EQ(DcRouterMgr::bitcount(V4("255.255.255.0")), 24u);
    EXPECT_EQ(DcRouterMgr::bitcount(V4("0.0.0.0")), 0u);
    EXPECT_EQ(DcRouterMgr::bitcount(V4("255.255.255.255")), 32u);
    EXPECT_EQ(DcRouterMgr::bitcount(V4("255.0.255.0")), 16u);
    EXPECT_EQ(DcRouterMgr::bitcount(V4("0.0.0.1")), 1u);
}

// ---- start-up

// The application's IP interface object.
class AppIpInterface : public DcIpInterface {};

TEST_F(RouterMgrTest, InitializeSetsTheConsoleVlanAndStartsTheStack) {
    stack().SetResult("smsi_init", 7);
    AppIpInterface ip;
    EXPECT_EQ(mgr->Initialize(12, &ip), 7);
    EXPECT_EQ(DcRouterBase::GetIpInterface(), &ip);
    EXPECT_EQ(DcConsoleCommand::m_default_vlan, 12);
    EXPECT_EQ(stack().Calls(), Lines{"smsi_init(\"ripv2 ripng bgp ospf ospfv3 igmp pim\")"});
    EXPECT_EQ(trace.Texts(10), (Lines{"Initializing Manager\n", "Starting Metaswitch\n"}));
    EXPECT_FALSE(loop.HasArmedTimers());
}

TEST_F(RouterMgrTest, SckInterfaceInitializeIsLogged) {
    mgr->SckInterfaceInitialize(nullptr);
    EXPECT_EQ(trace.Texts(10), Lines{"Initializing SckDescriptor\n"});
    EXPECT_EQ(DcRouterBase::GetSckInterface(), nullptr);
}

// ---- VLAN lifecycle

TEST_F(RouterMgrTest, CreateVlanMakesBothRtmInstancesAndSevenRouters) {
    ASSERT_TRUE(Create(5));

    EXPECT_EQ(stack().Requests(),
              (Lines{"sms_cipr_start(5, {inst=0 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 "
                     "ibgp=200 rip=120 dead=60 af=1})",
                     "sms_cipr_start(32773, {inst=0 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 "
                     "ibgp=200 rip=120 dead=60 af=2})"}));
    EXPECT_EQ(trace.Texts(10).front(), "Creating VLAN 5\n");
    ASSERT_EQ(mgr->GetVlans().count(5), 1u);
    const DcRouterMgr::VlanRouters* record = mgr->GetVlans().at(5);
    ASSERT_NE(record, nullptr);
    ASSERT_EQ(record->routers.size(), 7u);
    int expectedType = 0;
    for (const auto& entry : record->routers) {
        EXPECT_EQ(entry.first, expectedType++);
        ASSERT_NE(entry.second, nullptr);
        EXPECT_EQ(entry.second->GetVlan(), 5);
    }
    EXPECT_TRUE(record->sources.empty());
}

TEST_F(RouterMgrTest, CreatedRoutersCarryTheirProtocolNames) {
    ASSERT_TRUE(Create(5));
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::OSPFv3)->GetName(), "OSPFV3");
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::RIPv2)->GetName(), "RIPV2");
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::RIPng)->GetName(), "RIPNG");
}

TEST_F(RouterMgrTest, CreateVlanForAnExistingVlanKeepsTheFirstRecord) {
    ASSERT_TRUE(Create(5));
    DcRouterBase* bgp = mgr->GetDcRouterByVID(5, DcRouterMgr::BGP);
    const DcRouterMgr::VlanRouters* record = mgr->GetVlans().at(5);

    Options options;
    auto result = mgr->CreateVlan(5, options.Root(), DclConfigObject::OPTION_TYPE_VLAN);

    EXPECT_FALSE(result.second);
    ASSERT_NE(result.first, mgr->GetVlans().end());
    EXPECT_EQ(result.first->second, record);
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::BGP), bgp);
}

TEST_F(RouterMgrTest, CreateVlanTakesItsRtmSettingsFromTheOptions) {
    Options options;
    ASSERT_TRUE(options.LoadFromText(
        string("{\"RTM\": {\"dead_rpm_timer\": 90, \"ADMIN_DISTANCE\": {\"ripv2\": 80}}}")));
    ASSERT_TRUE(mgr->CreateVlan(8, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second);
    EXPECT_EQ(stack().Requests().front(),
              "sms_cipr_start(8, {inst=0 rs=0 as=0 ospf_int=0 ospf_ext=0 ebgp=0 ibgp=0 rip=80 "
              "dead=90 af=1})");
}

TEST_F(RouterMgrTest, DeleteVlanDeletesTheRtmInstancesFirstThenTheRouters) {
    ASSERT_TRUE(Create(5));
    stack().ClearCalls();
    trace.Clear();

    mgr->DeleteVlan(5);

    EXPECT_EQ(stack().Requests(),
              (Lines{"sms_cipr_action(5, 2080)", "sms_cipr_action(32773, 2080)"}));
    EXPECT_EQ(trace.Texts(10).front(), "Deleting VLAN 5\n");
    EXPECT_LT(IndexOf("Deleting RTM Instance 32773\n"), IndexOf("Deleting the Routers Map\n"));
    EXPECT_EQ(trace.Texts(10).back(), "Deleted VLAN 5\n");
    EXPECT_EQ(mgr->GetVlans().count(5), 0u);
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::BGP), nullptr);
}

TEST_F(RouterMgrTest, DeleteOfAnUnknownVlanLogsAWarningAndChangesNothing) {
    ASSERT_TRUE(Create(5));
    stack().ClearCalls();
    trace.Clear();

    mgr->DeleteVlan(9);

    EXPECT_EQ(trace.Texts(1), Lines{"Trying to delete VLAN 9 which does not exist\n"});
    EXPECT_EQ(trace.Texts(10), Lines{"Deleting VLAN 9\n"});
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_EQ(mgr->GetVlans().size(), 1u);
}

// ---- lookups

TEST_F(RouterMgrTest, RouterByVidOfAnUnknownVlanIsNull) {
    EXPECT_EQ(mgr->GetDcRouterByVID(5, DcRouterMgr::BGP), nullptr);
}

TEST_F(RouterMgrTest, RouterByInstanceIdIgnoresTheIpv6Bit) {
    ASSERT_TRUE(Create(5));
    for (int type = 0; type < DcRouterMgr::PROTOCOL_COUNT; ++type) {
        DcRouterMgr::ProtocolType t = static_cast<DcRouterMgr::ProtocolType>(type);
        DcRouterBase* router = mgr->GetDcRouterByVID(5, t);
        ASSERT_NE(router, nullptr);
        EXPECT_EQ(mgr->GetDcRouterByInstanceID(5, t), router);
        EXPECT_EQ(mgr->GetDcRouterByInstanceID(5 | DcRtmMgr::IP6_INSTANCE_BIT, t), router);
    }
    EXPECT_EQ(mgr->GetDcRouterByInstanceID(0x10005, DcRouterMgr::BGP),
              mgr->GetDcRouterByVID(5, DcRouterMgr::BGP));
}

TEST_F(RouterMgrTest, RouterByInstanceIdWithAnInvalidTypeIsNull) {
    ASSERT_TRUE(Create(5));
    trace.Clear();
    EXPECT_EQ(mgr->GetDcRouterByInstanceID(5, static_cast<DcRouterMgr::ProtocolType>(7)), nullptr);
    EXPECT_EQ(mgr->GetDcRouterByInstanceID(5, static_cast<DcRouterMgr::ProtocolType>(-1)), nullptr);
    EXPECT_EQ(trace.Texts(10), (Lines{"Invalid protocol type\n", "Invalid protocol type\n"}));
}

TEST_F(RouterMgrTest, ForEachWithoutAVisitorDoesNothing) {
    ASSERT_TRUE(Create(5));
    trace.Clear();
    mgr->ForEachDcRouter(nullptr, DcRouterMgr::BGP);
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(RouterMgrTest, ForEachVisitsOneRouterPerVlanInAscendingOrder) {
    ASSERT_TRUE(Create(30));
    ASSERT_TRUE(Create(7));
    ASSERT_TRUE(Create(12));
    Collector collector;
    mgr->ForEachDcRouter(&collector, DcRouterMgr::RIPng);
    EXPECT_EQ(collector.seen, (Lines{"7:RIPNG", "12:RIPNG", "30:RIPNG"}));
}

// ---- events

TEST_F(RouterMgrTest, StatusChangeOfAnUnknownVlanLeavesAnEmptyRecordThatLookupsSkip) {
    ASSERT_TRUE(Create(5));
    trace.Clear();

    mgr->ProcessInterfaceStatusChange(9, 3, 1);

    EXPECT_EQ(trace.Texts(10), Lines{"Updating Interface Status of Interface 3\n"});
    ASSERT_EQ(mgr->GetVlans().count(9), 1u);
    EXPECT_EQ(mgr->GetVlans().at(9), nullptr);
    EXPECT_EQ(mgr->GetDcRouterByVID(9, DcRouterMgr::BGP), nullptr);
    EXPECT_EQ(mgr->GetDcRouterByInstanceID(9, DcRouterMgr::BGP), nullptr);
    Collector collector;
    mgr->ForEachDcRouter(&collector, DcRouterMgr::RIPv2);
    EXPECT_EQ(collector.seen, Lines{"5:RIPV2"});
}

TEST_F(RouterMgrTest, CreatingAVlanKnownOnlyFromAStatusChangeFillsItsRecord) {
    mgr->ProcessInterfaceStatusChange(9, 3, 1);
    ASSERT_TRUE(Create(9));
    ASSERT_NE(mgr->GetVlans().at(9), nullptr);
    EXPECT_NE(mgr->GetDcRouterByVID(9, DcRouterMgr::BGP), nullptr);
}

TEST_F(RouterMgrTest, DeletingAVlanKnownOnlyFromAStatusChangeRemovesItsEntry) {
    mgr->ProcessInterfaceStatusChange(9, 3, 1);
    stack().ClearCalls();
    mgr->DeleteVlan(9);
    EXPECT_EQ(mgr->GetVlans().count(9), 0u);
    EXPECT_EQ(stack().Requests(),
              (Lines{"sms_cipr_action(9, 2080)", "sms_cipr_action(32777, 2080)"}));
}

TEST_F(RouterMgrTest, AddressChangeOfAnUnknownVlanIsIgnored) {
    mgr->ProcessIPAddressChange(9, 3, V4("10.0.0.1"));
    EXPECT_EQ(trace.Texts(10), Lines{"Updating IP Address Change to Interface 3\n"});
    EXPECT_TRUE(mgr->GetVlans().empty());
}

TEST_F(RouterMgrTest, JoinNetworkBeforeTheVlanExistsIsSkipped) {
    mgr->JoinNetwork(4, 10, true);
    EXPECT_EQ(trace.Texts(0),
              Lines{"Connected remote to inet with VLAN 4 before loading VLAN options... "
                    "Skipping\n"});
    EXPECT_TRUE(stack().Calls().empty());
}

TEST_F(RouterMgrTest, LeaveNetworkBeforeTheVlanExistsIsSkippedWithTheSameMessage) {
    mgr->LeaveNetwork(4, 10);
    EXPECT_EQ(trace.Texts(0),
              Lines{"Connected remote to inet with VLAN 4 before loading VLAN options... "
                    "Skipping\n"});
}

TEST_F(RouterMgrTest, StatusChangeReachesEveryRouterOfTheVlan) {
    ASSERT_TRUE(Create(5));
    ASSERT_TRUE(Create(6));

    mgr->ProcessInterfaceStatusChange(5, 3, 2);

    for (int type = 0; type < DcRouterMgr::PROTOCOL_COUNT; ++type) {
        DcRouterMgr::ProtocolType t = static_cast<DcRouterMgr::ProtocolType>(type);
        EXPECT_TRUE(mgr->GetDcRouterByVID(5, t)->IsEnabled(3)) << type;
        EXPECT_FALSE(mgr->GetDcRouterByVID(6, t)->IsEnabled(3)) << type;
    }
    mgr->ProcessInterfaceStatusChange(5, 3, 0);
    for (int type = 0; type < DcRouterMgr::PROTOCOL_COUNT; ++type) {
        DcRouterMgr::ProtocolType t = static_cast<DcRouterMgr::ProtocolType>(type);
        EXPECT_FALSE(mgr->GetDcRouterByVID(5, t)->IsEnabled(3)) << type;
    }
}

TEST_F(RouterMgrTest, AddressChangeReachesEveryRouterOfTheVlan) {
    ASSERT_TRUE(Create(5));
    ASSERT_TRUE(Create(6));
    trace.Clear();

    mgr->ProcessIPAddressChange(5, 3, V4("10.0.0.1"));

    EXPECT_EQ(trace.Texts(10), Lines{"Updating IP Address Change to Interface 3\n"});
    for (int type = 0; type < DcRouterMgr::PROTOCOL_COUNT; ++type) {
        DcRouterMgr::ProtocolType t = static_cast<DcRouterMgr::ProtocolType>(type);
        DcProtoInterfaceBase* proto = mgr->GetDcRouterByVID(5, t)->GetInterface();
        ASSERT_NE(proto, nullptr) << type;
        ASSERT_EQ(proto->GetAddresses().count(3), 1u) << type;
        EXPECT_EQ(proto->GetAddresses().at(3), V4("10.0.0.1")) << type;
        EXPECT_TRUE(mgr->GetDcRouterByVID(6, t)->GetInterface()->GetAddresses().empty());
    }
}

// ---- multicast membership

class RouterMgrMulticastTest : public RouterMgrTest {
protected:
    // VLAN 5 with its IGMP router enabled or not.
    void CreateVlanWithIgmp(bool enabled) {
        Options options;
        ASSERT_TRUE(options.LoadFromText(string(
            enabled ? "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"IGMP\": {\"enabled\": true}}]}"
                    : "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5}]}")));
        mgr->Reload(options, "vlans.json", DclConfigObject::OPTION_TYPE_VLAN);
        igmp = dynamic_cast<DcMulticastRouter*>(mgr->GetDcRouterByVID(5, DcRouterMgr::IGMP));
        ASSERT_NE(igmp, nullptr);
        ASSERT_EQ(igmp->IsEnabled(), enabled);
        trace.Clear();
    }

    DcMulticastRouter* igmp = nullptr;
};

TEST_F(RouterMgrMulticastTest, JoinNetworkAddsTheInterfaceToTheEnabledIgmpRouter) {
    CreateVlanWithIgmp(true);
    mgr->JoinNetwork(5, 10, true);
    EXPECT_TRUE(igmp->IsMulticastInterface(10));
    EXPECT_TRUE(igmp->IsQuerier(10));
    EXPECT_TRUE(igmp->IsEnabled(10));
}

TEST_F(RouterMgrMulticastTest, JoinNetworkOnAKnownInterfaceMakesItANonQuerier) {
    CreateVlanWithIgmp(true);
    mgr->JoinNetwork(5, 10, true);
    mgr->JoinNetwork(5, 10, true);
    EXPECT_TRUE(igmp->IsMulticastInterface(10));
    EXPECT_FALSE(igmp->IsQuerier(10));
}

TEST_F(RouterMgrMulticastTest, JoinNetworkLeavesADisabledIgmpRouterAlone) {
    CreateVlanWithIgmp(false);
    mgr->JoinNetwork(5, 10, true);
    EXPECT_FALSE(igmp->IsMulticastInterface(10));
    EXPECT_FALSE(igmp->IsEnabled(10));
    EXPECT_TRUE(trace.Texts(0).empty());
}

TEST_F(RouterMgrMulticastTest, JoinNetworkDoesNotTouchTheMldRouter) {
    CreateVlanWithIgmp(true);
    mgr->JoinNetwork(5, 10, false);
    EXPECT_FALSE(mgr->GetDcRouterByVID(5, DcRouterMgr::MLD)->IsEnabled(10));
    EXPECT_FALSE(igmp->IsQuerier(10));
}

TEST_F(RouterMgrMulticastTest, LeaveNetworkLeavesTheMulticastInterfaceConfigured) {
    CreateVlanWithIgmp(true);
    mgr->JoinNetwork(5, 10, true);
    stack().ClearCalls();

    mgr->LeaveNetwork(5, 10);

    EXPECT_TRUE(igmp->IsMulticastInterface(10));
    EXPECT_TRUE(igmp->IsQuerier(10));
    EXPECT_TRUE(igmp->IsEnabled(10));
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(RouterMgrMulticastTest, LeaveNetworkOfAVlanKnownOnlyFromAStatusChangeIsSkipped) {
    mgr->ProcessInterfaceStatusChange(4, 1, 2);
    trace.Clear();
    mgr->LeaveNetwork(4, 10);
    mgr->JoinNetwork(4, 10, true);
    EXPECT_EQ(trace.Texts(0),
              (Lines{"Connected remote to inet with VLAN 4 before loading VLAN options... "
                     "Skipping\n",
                     "Connected remote to inet with VLAN 4 before loading VLAN options... "
                     "Skipping\n"}));
}

// ---- IPS tracing controls

TEST_F(RouterMgrTest, IpsTracingControlsResetTheStackFailureCounter) {
    nbb_os_failures = 9;
    stack().ipsTracing = 1;
    EXPECT_TRUE(mgr->GetIPSTracing());
    EXPECT_EQ(nbb_os_failures, 0ul);

    nbb_os_failures = 9;
    char filter[] = "12,13";
    mgr->SetIPSFilter(filter, 5);
    EXPECT_EQ(nbb_os_failures, 0ul);
    EXPECT_EQ(stack().ipsFilters, Lines{"12,13/5"});

    nbb_os_failures = 9;
    mgr->TripsControl(false);
    EXPECT_EQ(nbb_os_failures, 0ul);
    EXPECT_FALSE(mgr->GetIPSTracing());
}

}  // namespace
}  // namespace Zavrel
