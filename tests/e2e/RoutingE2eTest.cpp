// The library started as the application starts it, with the stack emulator
// behind it: configuration, interfaces, static routes and redistribution
// reach the stack's tables, and the console prints them.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "console/DcInterfaceConsoleCommand.h"
#include "console/RtmRTCommand.h"
#include "e2e/E2eFixture.h"
#include "interfaces/DcInterfaceMgr.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {
namespace {

using Emulator::RequestKind;

const char kVlan5[] =
    "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": 1, "
    "\"REDISTRIBUTION\": {\"bgp\": 0}}}]}";
const char kHeader[] =
    "\n VLAN              PREFIX          NEXTHOP      IFACE        AGE      PROTO\n";

class RoutingE2eTest : public test::E2eFixture {
protected:
    static DcInterfaceMgr& Intf() { return *DcInterfaceMgr::GetInstance(); }
    static void AddEth0() {
        Intf().AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x18, 0, 1);
    }
    static void AddEth0Address() {
        Intf().AddIpAddress(5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    }
    static void AddRouteVia(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
        AddRoute(5, Ip4Addr(172, 16, 0, 0), Ip4Addr(255, 255, 0, 0), Ip4Addr(a, b, c, d), 0, 3,
                 0x30000, 1);
    }
    std::string Pending() { return Ip4Command("protocol", {"protocol", "pending-actions"}); }
};

TEST_F(RoutingE2eTest, StartedStackRegistersItsDescriptorWithTheApplication) {
    Run();
    ASSERT_EQ(sockets.calls.size(), 1u);
    EXPECT_EQ(sockets.calls[0].rfind("register ", 0), 0u);
    EXPECT_EQ(sockets.calls[0].substr(sockets.calls[0].size() - 2), " 1");
    EXPECT_EQ(loop.WatchedFdCount(), 1u);
}

TEST_F(RoutingE2eTest, InterfacesAndAddressesReachTheInterfaceTablesOfBothInstances) {
    Reload(kVlan5);
    AddEth0();
    AddEth0Address();
    Intf().AddIpAddress(
        5, 100,
        [] {
            Ip6Addr a;
            a.FromString(string("2001:db8::1"));
            return a;
        }(),
        64);
    Run();
    EXPECT_EQ(Table("Interfaces:"),
              "5 100 eth0 up mtu 1500 flags 0x18 extra 0\n"
              "32773 100 eth0 up mtu 1500 flags 0x18 extra 0\n");
    EXPECT_EQ(Table("Addresses:"), "5 100 10.0.0.1/24\n32773 100 2001:db8::1/64\n");

    Intf().SetInterfaceDown(5, 100, "eth0");
    Run();
    EXPECT_EQ(Table("Interfaces:"),
              "5 100 eth0 down mtu 1500 flags 0x0 extra 0\n"
              "32773 100 eth0 down mtu 1500 flags 0x0 extra 0\n");
}

TEST_F(RoutingE2eTest, StaticRouteWaitsWhileItsInstanceIsNotReadyThenIsInstalled) {
    AddEth0();
    AddEth0Address();
    AddRouteVia(10, 0, 0, 254);
    Run();
    // No RTM instance for VLAN 5 yet: the route is held by the library.
    EXPECT_EQ(Emulator::RequestCount(RequestKind::Route), 0u);

    Reload(kVlan5);
    Run();
    EXPECT_EQ(Emulator::RequestCount(RequestKind::Route), 1u);
    EXPECT_EQ(Table("Static routes:"),
              "5 172.16.0.0/16 via 10.0.0.254 ifIndex 0 admin up metric 3\n");
    EXPECT_EQ(Pending(), "");
}

TEST_F(RoutingE2eTest, StaticRouteFailedWithResult5IsRetriedUntilInstalled) {
    Reload(kVlan5);
    Run();
    Emulator::FailNext(RequestKind::Route, 2, 5);
    AddRouteVia(10, 0, 0, 254);
    Run();
    EXPECT_EQ(Emulator::RequestCount(RequestKind::Route), 3u);
    EXPECT_EQ(Emulator::AnswerCount(RequestKind::Route, 5), 2u);
    EXPECT_EQ(Emulator::AnswerCount(RequestKind::Route, 1), 1u);
    EXPECT_TRUE(trace.Contains(10, "Route Not programmed!!! Retrying...\n"));
    EXPECT_TRUE(trace.Contains(10, "Route Programmed Successfully\n"));
    EXPECT_EQ(Table("Static routes:"),
              "5 172.16.0.0/16 via 10.0.0.254 ifIndex 0 admin up metric 3\n");
    EXPECT_EQ(Pending(), "");
}

TEST_F(RoutingE2eTest, StaticRouteFailedWithResult3IsParked) {
    Reload(kVlan5);
    Run();
    Emulator::FailNext(RequestKind::Route, 1, 3);
    AddRouteVia(10, 0, 0, 254);
    Run(3000);
    EXPECT_EQ(Emulator::RequestCount(RequestKind::Route), 1u);
    EXPECT_TRUE(trace.Contains(10, "Unable to set route. No retry!!!\n"));
    EXPECT_EQ(Table("Static routes:"), "");
    EXPECT_EQ(Pending(),
              "==== Item 0 ====\n"
              "StaticRouteItem: vrf(5) Dest(172.16.0.0/16) NextHop(10.0.0.254) Intf(0) metric(3) "
              "Type(Static) RowStatus(Active) AdminStatus(1) ActionState(Issued) Reason(badValue)\n"
              "\n");
}

TEST_F(RoutingE2eTest, RouteThroughAnUnknownNextHopIsUnresolvedUntilTheAddressComes) {
    Reload(kVlan5);
    AddEth0();
    AddRouteVia(10, 0, 0, 254);
    Run();
    EXPECT_EQ(RunCommand<RtmRibCommand>({}, 0),
              std::string(kHeader) +
                  "    5       172.16.0.0/16       10.0.0.254        TBD          0 static    \n"
                  "End of table\n");
    EXPECT_EQ(RunCommand<RtmRouteCommand>({}, 0), "End of table\n");

    AddEth0Address();
    Run();
    EXPECT_EQ(RunCommand<RtmRibCommand>({}, 0),
              std::string(kHeader) +
                  ">   5         10.0.0.0/24          0.0.0.0       eth0          1 connnected\n"
                  ">   5       172.16.0.0/16       10.0.0.254       eth0          2 static    \n"
                  "End of table\n");
}

TEST_F(RoutingE2eTest, ConsoleCommandsPrintTheStacksTables) {
    Reload(kVlan5);
    AddEth0();
    AddEth0Address();
    AddRouteVia(10, 0, 0, 254);
    Run();
    EXPECT_EQ(RunCommand<RtmRouteCommand>({}, 0),
              std::string(kHeader) +
                  "    5         10.0.0.0/24          0.0.0.0       eth0          0 connnected\n"
                  "    5       172.16.0.0/16       10.0.0.254       eth0          0 static    \n"
                  "End of table\n");
    EXPECT_EQ(RunCommand<RtmRibCommand>({"proto", "static"}, 0),
              std::string(kHeader) +
                  ">   5       172.16.0.0/16       10.0.0.254       eth0          1 static    \n"
                  "End of table\n");
    EXPECT_EQ(RunCommand<DcInterfaceConsoleCommand>({}, false),
              "\nFlags:\n"
              "B-Broadcast M-Multicast L-Loopback\n"
              "T-MPLS Tunnel P-Point2Point U-Unnumbered\n"
              "VLAN    IfIndex     IfName Status    MTU  Flags IPAddress\n"
              "   5        100       eth0     UP   1500     BM 10.0.0.1/24\n"
              "End of Table\n");
    EXPECT_EQ(Ip4Command("protocol", {"protocol", "database"}),
              std::string(kHeader) +
                  ">   5         10.0.0.0/24          0.0.0.0       eth0          2 connnected\n"
                  ">   5       172.16.0.0/16       10.0.0.254       eth0          2 static    \n"
                  "End of table\n");
}

TEST_F(RoutingE2eTest, RedistributionRowsComeAndGoWithTheRoutersProfile) {
    Reload(kVlan5);
    Run();
    EXPECT_EQ(Table("Redistribution:"),
              "5 source 0x20000 destination 0x80000 admin up\n"
              "5 source 0x30000 destination 0x80000 admin up\n"
              "5 source 0xd0000 destination 0x80000 admin up\n");

    Reload(
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": 1, "
        "\"REDISTRIBUTION\": {\"bgp\": 0, \"ospf\": 0}}}]}");
    Run();
    EXPECT_EQ(Table("Redistribution:"),
              "5 source 0x20000 destination 0x80000 admin up\n"
              "5 source 0x30000 destination 0x80000 admin up\n");

    Reload(kVlan5);
    Run();
    EXPECT_EQ(Table("Redistribution:"),
              "5 source 0x20000 destination 0x80000 admin up\n"
              "5 source 0x30000 destination 0x80000 admin up\n"
              "5 source 0xd0000 destination 0x80000 admin up\n");
    EXPECT_EQ(Pending(), "");
}

// Disabling the router queues Destroy entries into it, but an entry whose
// receiving router is not ready is dropped while its RTM instance is known:
// the destroys never reach the stack and its rows stay.
TEST_F(RoutingE2eTest, DisablingTheReceivingRouterDropsItsDestroysAndLeavesTheRows) {
    Reload(kVlan5);
    Run();
    const uint64_t before = Emulator::RequestCount(RequestKind::Redistribution);
    Reload("{\"VLAN_CONFIGURATIONS\": [{\"vid\": 5, \"RIPV2\": {\"enabled\": 0}}]}");
    Run();
    EXPECT_EQ(Emulator::RequestCount(RequestKind::Redistribution), before);
    EXPECT_EQ(Table("Redistribution:"),
              "5 source 0x20000 destination 0x80000 admin up\n"
              "5 source 0x30000 destination 0x80000 admin up\n"
              "5 source 0xd0000 destination 0x80000 admin up\n");
    EXPECT_EQ(Pending(), "");
}

}  // namespace
}  // namespace Zavrel
