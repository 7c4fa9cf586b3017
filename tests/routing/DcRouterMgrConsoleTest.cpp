#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/RouteRedistributeItem.h"
#include "cfg/StaticRouteItem.h"
#include "platform/Options.h"
#include "protocols/DcBgpRouter.h"
#include "protocols/DcMulticastRouter.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterMgr.h"
#include "routing/DcRouterMgrTestPeer.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RouterMgrFixture.h"

namespace Zavrel {
namespace {

using test::RecordingStack;
typedef std::vector<std::string> Lines;

const char IP4_USAGE[] =
    "Usage: \n"
    " ip protocol database [vrf <vid>] [dest     Show Routing Information Base           \n"
    " <address>] [proto                          \n"
    " connected|static|bgp|ospf|rip]             \n"
    " [detail]                                   \n"
    " ip protocol mcast-database [vrf <vid>]     Show Multicast Routing Information Base \n"
    " [group <address>]                          \n"
    " ip protocol summary                        Show Summary of IP Protocols            \n"
    " ip protocol pending-actions [summary]      Show Pending Protocol Configurations    \n"
    " ip protocol ips                            IPS Trace Commands                      \n";

const char IP6_USAGE[] =
    "Usage: \n"
    " ip6 protocol database [vrf <vid>] [dest    Show Routing Information Base           \n"
    " <address>] [proto                          \n"
    " connected|static|bgp|ospf|rip]             \n"
    " [detail]                                   \n";

const char IPS_USAGE[] =
    "Usage: ips [on|off|status|set filter|reset filter]\n"
    "       ips set filter [type|proc] [in|out] <FILTERLIST>\n"
    "       ips reset filter [type|proc] [in|out]\n"
    "\n"
    "       where FILTERLIST :\n"
    "                   filter\n"
    "                   FILTERLIST, filter\n";

const char IP4_SUMMARY_HEADER[] = "   VID  BGP4+ OSPFv2  RIPv2   IGMP\n";
const char IP6_SUMMARY_HEADER[] = "   VID  BGP4+ OSPFv3  RIPng    MLD\n";

class RouterMgrConsoleTest : public test::RouterMgrFixture {
protected:
    // Runs a routing command given as words, through the handler table of
    // the family, as the application's console does.
    void Run(const DcRouterMgr::CmdHandlerMap& table, std::vector<std::string> words) {
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        argv.push_back(nullptr);
        auto found = table.find(string(words.front().c_str()));
        ASSERT_NE(found, table.end()) << words.front();
        found->second.Run(nullptr, &console, static_cast<int>(words.size()), argv.data());
    }
    void Ip4(std::vector<std::string> words) { Run(mgr->GetIp4ConCmdHandlers(), words); }
    void Ip6(std::vector<std::string> words) { Run(mgr->GetIp6ConCmdHandlers(), words); }

    void CreateVlan(unsigned short vid) {
        Options options;
        ASSERT_TRUE(mgr->CreateVlan(vid, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second);
    }
};

// ---- handler tables

TEST_F(RouterMgrConsoleTest, Ipv4TableHoldsTheFiveWordsWithTheirHandlersAndHelp) {
    const DcRouterMgr::CmdHandlerMap& table = mgr->GetIp4ConCmdHandlers();
    ASSERT_EQ(table.size(), 5u);
    EXPECT_EQ(table.at("bgp").GetHandler(), &DcBgpRouter::Ip4ConsoleCommand);
    EXPECT_EQ(table.at("bgp").GetHelp(), "BGP4 Routing Configuration");
    EXPECT_EQ(table.at("ospf").GetHandler(), &DcOspfv2Router::ConsoleCommand);
    EXPECT_EQ(table.at("ospf").GetHelp(), "OSPFv2 Routing Configuration");
    EXPECT_EQ(table.at("rip").GetHandler(), &DcRipv2Router::ConsoleCommand);
    EXPECT_EQ(table.at("rip").GetHelp(), "RIPv2 Routing Configuration");
    EXPECT_EQ(table.at("protocol").GetHandler(), &DcRouterMgr::ConCmdIp4Rtm);
    EXPECT_EQ(table.at("protocol").GetHelp(), "Routing Protocol Configuration");
    EXPECT_EQ(table.at("igmp").GetHandler(), &DcMulticastRouter::Ip4ConsoleCommand);
    EXPECT_EQ(table.at("igmp").GetHelp(), "IGMP Routing Configuration");
}

TEST_F(RouterMgrConsoleTest, Ipv6TableHoldsTheFourWordsAndKeepsTheOpsfSpelling) {
    const DcRouterMgr::CmdHandlerMap& table = mgr->GetIp6ConCmdHandlers();
    ASSERT_EQ(table.size(), 4u);
    EXPECT_EQ(table.at("bgp").GetHandler(), &DcBgpRouter::Ip6ConsoleCommand);
    EXPECT_EQ(table.at("bgp").GetHelp(), "BGP4 Routing Configuration");
    EXPECT_EQ(table.at("rip").GetHandler(), &DcRipngRouter::ConsoleCommand);
    EXPECT_EQ(table.at("rip").GetHelp(), "RIPng Routing Configuration");
    EXPECT_EQ(table.at("ospf").GetHandler(), &DcOspfv3Router::ConsoleCommand);
    EXPECT_EQ(table.at("ospf").GetHelp(), "OPSFv3 Routing Configuration");
    EXPECT_EQ(table.at("protocol").GetHandler(), &DcRouterMgr::ConCmdIp6Rtm);
    EXPECT_EQ(table.at("protocol").GetHelp(), "Routing Protocol Configuration");
}

TEST_F(RouterMgrConsoleTest, SecondRegistrationOfAWordIsIgnored) {
    mgr->AddIp4RouterCmdHandler("bgp", &DcRouterMgr::ConCmdIp6Rtm, "other");
    mgr->AddIp6RouterCmdHandler("protocol", &DcRouterMgr::ConCmdIp4Rtm, "other");
    EXPECT_EQ(mgr->GetIp4ConCmdHandlers().at("bgp").GetHandler(), &DcBgpRouter::Ip4ConsoleCommand);
    EXPECT_EQ(mgr->GetIp4ConCmdHandlers().at("bgp").GetHelp(), "BGP4 Routing Configuration");
    EXPECT_EQ(mgr->GetIp6ConCmdHandlers().at("protocol").GetHandler(), &DcRouterMgr::ConCmdIp6Rtm);
}

TEST_F(RouterMgrConsoleTest, NewWordsCanBeAdded) {
    mgr->AddIp6RouterCmdHandler("mld", &DcRouterMgr::ConCmdIp6Rtm, "MLD");
    EXPECT_EQ(mgr->GetIp6ConCmdHandlers().size(), 5u);
    EXPECT_EQ(mgr->GetIp6ConCmdHandlers().at("mld").GetHelp(), "MLD");
}

// ---- usage

TEST_F(RouterMgrConsoleTest, Ipv4ProtocolWithoutASubCommandPrintsTheUsage) {
    Ip4({"protocol"});
    EXPECT_EQ(console.Output(), IP4_USAGE);
}

TEST_F(RouterMgrConsoleTest, Ipv4UnknownSubCommandPrintsTheUsage) {
    Ip4({"protocol", "xyz"});
    EXPECT_EQ(console.Output(), IP4_USAGE);
}

TEST_F(RouterMgrConsoleTest, Ipv4SingleLetterMatchesNoSubCommand) {
    Ip4({"protocol", "s"});
    EXPECT_EQ(console.Output(), IP4_USAGE);
}

TEST_F(RouterMgrConsoleTest, Ipv4IpDoesNotReachTheIpsCommands) {
    Ip4({"protocol", "ip", "on"});
    EXPECT_EQ(console.Output(), IP4_USAGE);
    EXPECT_TRUE(stack().Calls("nbb_trips_control").empty());
}

TEST_F(RouterMgrConsoleTest, Ipv4UsageIsTheSameEveryTime) {
    Ip4({"protocol"});
    Ip4({"protocol"});
    EXPECT_EQ(console.Output(), std::string(IP4_USAGE) + IP4_USAGE);
}

TEST_F(RouterMgrConsoleTest, Ipv6ProtocolWithoutASubCommandPrintsTheUsage) {
    Ip6({"protocol"});
    EXPECT_EQ(console.Output(), IP6_USAGE);
}

TEST_F(RouterMgrConsoleTest, Ipv6SubCommandsAreMatchedOnTheWholeWord) {
    Ip6({"protocol", "su"});
    EXPECT_EQ(console.Output(), IP6_USAGE);
    console.Clear();
    Ip6({"protocol", "data"});
    EXPECT_EQ(console.Output(), IP6_USAGE);
    console.Clear();
    Ip6({"protocol", "ips"});
    EXPECT_EQ(console.Output(), IP6_USAGE);
}

// ---- summaries

TEST_F(RouterMgrConsoleTest, Ipv4SummaryOfNoVlanPrintsTheHeaderAndEnds) {
    Ip4({"protocol", "summary"});
    EXPECT_EQ(console.Output(), IP4_SUMMARY_HEADER);
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(RouterMgrConsoleTest, Ipv4SummaryIsMatchedOnItsFirstTwoLettersInAnyCase) {
    CreateVlan(5);
    Ip4({"protocol", "su"});
    Ip4({"protocol", "SUMMARY"});
    Ip4({"protocol", "sUx"});
    const std::string one =
        std::string(IP4_SUMMARY_HEADER) + "     5     No     No     No     No\n";
    EXPECT_EQ(console.Output(), one + one + one);
    EXPECT_EQ(console.EndCount(), 3);
}

TEST_F(RouterMgrConsoleTest, SummaryListsVlansInAscendingOrder) {
    CreateVlan(300);
    CreateVlan(12);
    Ip4({"protocol", "summary"});
    EXPECT_EQ(console.Output(), std::string(IP4_SUMMARY_HEADER) +
                                    "    12     No     No     No     No\n"
                                    "   300     No     No     No     No\n");
}

TEST_F(RouterMgrConsoleTest, Ipv6SummaryShowsTheIpv6Routers) {
    CreateVlan(5);
    Ip6({"protocol", "summary"});
    EXPECT_EQ(console.Output(),
              std::string(IP6_SUMMARY_HEADER) + "     5     No     No     No     No\n");
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(RouterMgrConsoleTest, VlanWithAnEmptyRouterMapShowsNoEverywhere) {
    DcRouterMgrTestPeer::AddVlanWithoutRouters(mgr, 8);
    Ip4({"protocol", "summary"});
    Ip6({"protocol", "SUMMARY"});
    EXPECT_EQ(console.Output(), std::string(IP4_SUMMARY_HEADER) +
                                    "     8     No     No     No     No\n" + IP6_SUMMARY_HEADER +
                                    "     8     No     No     No     No\n");
}

TEST_F(RouterMgrConsoleTest, VlanKnownOnlyFromAStatusChangeShowsNoEverywhere) {
    mgr->ProcessInterfaceStatusChange(9, 1, 1);
    Ip4({"protocol", "summary"});
    EXPECT_EQ(console.Output(),
              std::string(IP4_SUMMARY_HEADER) + "     9     No     No     No     No\n");
}

// ---- pending actions

TEST_F(RouterMgrConsoleTest, PendingActionsSummaryPrintsTheBucketCount) {
    Ip4({"protocol", "pe", "su"});
    EXPECT_EQ(console.Output(), "Pending Item Buckets: 0\n");
}

// Files a static route to 10.0.0.0/24 of the VLAN into the manager's
// configuration scheduler.
void FileStaticRoute(DcRouterMgr* mgr, unsigned short vlan) {
    const unsigned char dest[4] = {10, 0, 0, 0};
    const unsigned char nextHop[4] = {192, 168, 1, 1};
    mgr->GetCfgSched().Insert(
        CfgKey(vlan, DcRtmMgr::CFG_KEY_STATIC_ROUTE),
        new StaticRouteItem(vlan, 1, 1, 1, dest, 24, nextHop, 3, 2, 0x30000, 0));
}

const char ROUTE_ITEM_5[] =
    "StaticRouteItem: vrf(5) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(3) metric(2) "
    "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n";
const char ROUTE_ITEM_6[] =
    "StaticRouteItem: vrf(6) Dest(10.0.0.0/24) NextHop(192.168.1.1) Intf(3) metric(2) "
    "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(New) Reason(noError)\n";
const char REDIST_ITEM_5[] =
    "RedistItem: Instance(5) Dest(0xe0000) Src(0x30000) Priority(0x0) RowStatus(Active) "
    "AdminStatus(1) ActionState(New) Reason(noError)\n";

TEST_F(RouterMgrConsoleTest, PendingActionsListsEveryItemOfEveryBucket) {
    FileStaticRoute(mgr, 6);
    FileStaticRoute(mgr, 5);
    mgr->GetCfgSched().Insert(CfgKey(5, DcRtmMgr::CFG_KEY_REDISTRIBUTION),
                              new RouteRedistributeItem(1, 1, 0x30000, 0xe0000, 0, 5, 0));

    Ip4({"protocol", "pending-actions", "summary"});
    EXPECT_EQ(console.Output(), "Pending Item Buckets: 3\n");

    console.Clear();
    Ip4({"protocol", "pex"});
    EXPECT_EQ(console.Output(), std::string("==== Item 0 ====\n") + REDIST_ITEM_5 + "\n" +
                                    "==== Item 0 ====\n" + ROUTE_ITEM_5 + "\n" +
                                    "==== Item 0 ====\n" + ROUTE_ITEM_6 + "\n");
}

TEST_F(RouterMgrConsoleTest, PendingActionsWithOtherWordsPrintsTheFullList) {
    FileStaticRoute(mgr, 5);
    const std::string full = std::string("==== Item 0 ====\n") + ROUTE_ITEM_5 + "\n";

    Ip4({"protocol", "PE", "su", "more"});
    EXPECT_EQ(console.Output(), full);
    console.Clear();
    Ip4({"protocol", "pe", "x"});
    EXPECT_EQ(console.Output(), full);
    console.Clear();
    Ip4({"protocol", "pe"});
    EXPECT_EQ(console.Output(), full);
    console.Clear();
    Ip4({"protocol", "pe", "SU"});
    EXPECT_EQ(console.Output(), "Pending Item Buckets: 1\n");
}

// ---- database

TEST_F(RouterMgrConsoleTest, DatabaseOfAVlanWithoutRtmIsRefused) {
    console.SetVlan(4);
    Ip4({"protocol", "database"});
    EXPECT_EQ(console.Output(), "VLAN 4 is not present\n");
    EXPECT_TRUE(stack().PendingWalks().empty());
}

TEST_F(RouterMgrConsoleTest, DatabaseWalksTheIpv4RibOfTheVlan) {
    CreateVlan(5);
    stack().ClearCalls();
    Ip4({"protocol", "da", "vrf", "5"});
    EXPECT_EQ(stack().Calls(), Lines{"sms_get_next_rtm_rib(5)"});
    ASSERT_EQ(stack().PendingWalks().size(), 1u);

    stack().Answer(SMS_RC_END_OF_TABLE, nullptr);
    EXPECT_EQ(console.Errors(), "End of table\n");
    EXPECT_TRUE(stack().PendingWalks().empty());
}

TEST_F(RouterMgrConsoleTest, DatabaseShowsTheRibRowsOfTheVlan) {
    CreateVlan(5);
    console.SetVlan(5);
    Ip4({"protocol", "database"});
    ASSERT_EQ(stack().PendingWalks().size(), 1u);

    amb_cipr_rtm_rib row = {};
    row.instance = 5;
    row.addr_family = 1;
    row.dest[0] = 10;
    row.dest_len = 24;
    row.next_hop[0] = 192;
    row.next_hop[1] = 168;
    row.next_hop[2] = 1;
    row.next_hop[3] = 1;
    row.if_index = 3;
    row.proto = 3;
    row.age = 7;
    row.fib_route = 1;
    stack().Answer(SMS_RC_ROW, &row);
    stack().Answer(SMS_RC_END_OF_TABLE, nullptr);

    EXPECT_EQ(console.Output(),
              "\n VLAN              PREFIX          NEXTHOP      IFACE        AGE      PROTO\n"
              ">   5         10.0.0.0/24      192.168.1.1         lo          7 static    \n");
    EXPECT_EQ(console.Errors(), "End of table\n");
    EXPECT_TRUE(stack().PendingWalks().empty());
}

TEST_F(RouterMgrConsoleTest, DatabaseWithWordsLeftOverDoesNotStart) {
    CreateVlan(5);
    stack().ClearCalls();
    Ip4({"protocol", "database", "vrf", "5", "extra"});
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_TRUE(stack().PendingWalks().empty());
}

TEST_F(RouterMgrConsoleTest, Ipv6DatabaseWalksTheIpv6Rib) {
    CreateVlan(5);
    stack().ClearCalls();
    Ip6({"protocol", "DATABASE", "vrf", "5"});
    ASSERT_EQ(stack().PendingWalks().size(), 1u);
    EXPECT_EQ(stack().PendingWalks().front().table, "rtm_rib");
    stack().Answer(SMS_RC_END_OF_TABLE, nullptr);
    EXPECT_TRUE(stack().PendingWalks().empty());
}

TEST_F(RouterMgrConsoleTest, Ipv6DatabaseOfAVlanWithoutRtmIsRefused) {
    console.SetVlan(4);
    Ip6({"protocol", "database"});
    EXPECT_EQ(console.Output(), "VLAN 4 is not present\n");
}

// ---- multicast database

TEST_F(RouterMgrConsoleTest, McastDatabaseThatRefusesItsWordsSaysSo) {
    Ip4({"protocol", "mcast-database", "bogus"});
    EXPECT_EQ(console.Output(),
              "Usage: mcast-database [vrf <vid>] [group <address>]\n"
              "Fail to parse mcast-database sub command.\n");
}

TEST_F(RouterMgrConsoleTest, McastDatabaseListsTheIgmpTableOfTheVlan) {
    CreateVlan(5);
    Ip4({"protocol", "MC", "vrf", "5"});
    EXPECT_EQ(console.Output(),
              "Multicast routing table of VLAN 5 (IGMP)\n"
              "Group                                    Interface  Querier\n"
              "End of Table\n");
}

// ---- IPS tracing

TEST_F(RouterMgrConsoleTest, IpsOnAndOffSwitchTheStackTracing) {
    Ip4({"protocol", "ips", "on"});
    Ip4({"protocol", "IPS", "OFF"});
    EXPECT_EQ(console.Output(), "IPS TRACE is ON!\nIPS TRACE is OFF!\n");
    EXPECT_EQ(stack().Calls("nbb_trips_control"),
              (Lines{"nbb_trips_control(1)", "nbb_trips_control(0)"}));
}

TEST_F(RouterMgrConsoleTest, IpsStatusReportsTheStackTracing) {
    stack().ipsTracing = 1;
    Ip4({"protocol", "ips", "status"});
    stack().ipsTracing = 0;
    Ip4({"protocol", "ips", "Status"});
    EXPECT_EQ(console.Output(), "IPS TRACE is ON!\nIPS TRACE is OFF!\n");
}

TEST_F(RouterMgrConsoleTest, IpsSetFilterPassesTheListWithItsFilterType) {
    Ip4({"protocol", "ips", "set", "filter", "proc", "out", "3,4"});
    EXPECT_EQ(console.Output(), "IPS TRACE filter 3,4 and type 6 is set!\n");
    EXPECT_EQ(stack().ipsFilters, Lines{"3,4/6"});
}

TEST_F(RouterMgrConsoleTest, IpsFilterTypesFollowKindAndDirection) {
    Ip4({"protocol", "ips", "set", "filter", "type", "in", "a"});
    Ip4({"protocol", "ips", "set", "filter", "type", "out", "b"});
    Ip4({"protocol", "ips", "set", "filter", "proc", "in", "c"});
    EXPECT_EQ(stack().ipsFilters, (Lines{"a/1", "b/2", "c/5"}));
}

TEST_F(RouterMgrConsoleTest, IpsResetFilterClearsTheFilterOfItsType) {
    Ip4({"protocol", "ips", "reset", "filter", "type", "in"});
    EXPECT_EQ(console.Output(), "IPS TRACE filter type 1 is Reset!\n");
    EXPECT_EQ(stack().ipsFilters, Lines{"null/1"});
}

TEST_F(RouterMgrConsoleTest, IpsWithAnUnknownKindOrDirectionPrintsItsUsage) {
    Ip4({"protocol", "ips", "set", "filter", "kind", "in", "a"});
    Ip4({"protocol", "ips", "reset", "filter", "proc", "up"});
    EXPECT_EQ(console.Output(), std::string(IPS_USAGE) + IPS_USAGE);
    EXPECT_TRUE(stack().ipsFilters.empty());
}

TEST_F(RouterMgrConsoleTest, IpsWithTooFewWordsPrintsItsUsage) {
    Ip4({"protocol", "ips", "set", "filter", "proc", "out"});
    Ip4({"protocol", "ips", "reset", "filter", "proc"});
    Ip4({"protocol", "ips"});
    Ip4({"protocol", "ips", "toggle"});
    EXPECT_EQ(console.Output(), std::string(IPS_USAGE) + IPS_USAGE + IPS_USAGE + IPS_USAGE);
    EXPECT_TRUE(stack().ipsFilters.empty());
    EXPECT_TRUE(stack().Calls("nbb_trips_control").empty());
}

}  // namespace
}  // namespace Zavrel
