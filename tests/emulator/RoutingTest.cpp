// Routing decisions: per RTM instance the candidates are the static rows
// with admin status up and the connected prefixes of up interfaces; the best
// resolved candidate per destination is installed.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RouteSource;

class RoutingTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
        StartInstance(5);
        StartInstance(0x8005);
    }
    static Strings Rib(unsigned long instance = 5) { return Walk("rtm_rib", instance); }
    static Strings Routes(unsigned long instance = 5) { return Walk("rtm_route", instance); }
};

TEST_F(RoutingTest, TheConnectedPrefixOfAnUpInterfaceIsInstalled) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    EXPECT_EQ(Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0 fib 1 "
                       "unresolved 0",
                       "7"}),
              Rib());
    EXPECT_EQ(Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0", "7"}),
              Routes());
}

TEST_F(RoutingTest, ADownInterfaceGivesNoConnectedPrefix) {
    Interface(4, 5, 100, "eth0", 2);
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"7"}), Rib());
}

TEST_F(RoutingTest, AnAddressWithoutInterfaceRowGivesNoConnectedPrefix) {
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"7"}), Rib());
}

TEST_F(RoutingTest, AStaticRouteResolvedOverAConnectedPrefixIsInstalledOnItsInterface) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254", 0, 3);
    Side().RunScheduler();
    EXPECT_EQ(
        Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                 "1 5 192.168.0.0/16 via 10.0.0.254 if 100 type 4 proto 3 age 0 metric 3", "7"}),
        Routes());
}

TEST_F(RoutingTest, AStaticRouteWhoseNextHopLiesInNoConnectedPrefixStaysUnresolved) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "172.16.0.1");
    Side().RunScheduler();
    EXPECT_EQ(Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0 fib 1 "
                       "unresolved 0",
                       "1 5 192.168.0.0/16 via 172.16.0.1 if 0 type 4 proto 3 age 0 metric 1 fib 0 "
                       "unresolved 1",
                       "7"}),
              Rib());
    EXPECT_EQ(1u, Routes().size() - 1);
}

TEST_F(RoutingTest, AnUnresolvedRouteResolvesWhenAnAddressCoversItsNextHop) {
    Route(1, 1, 5, "192.168.0.0", 16, "172.16.0.1");
    Side().RunScheduler();
    Network(5, 200, "eth1", "172.16.0.2", 30);
    EXPECT_EQ(Strings({"1 5 172.16.0.0/30 via 0.0.0.0 if 200 type 3 proto 2 age 0 metric 0 fib 1 "
                       "unresolved 0",
                       "1 5 192.168.0.0/16 via 172.16.0.1 if 200 type 4 proto 3 age 0 metric 1 "
                       "fib 1 unresolved 0",
                       "7"}),
              Rib());
}

TEST_F(RoutingTest, ARouteBecomesUnresolvedWhenItsInterfaceGoesDown) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    Interface(1, 5, 100, "eth0", 2, 0);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"1 5 192.168.0.0/16 via 10.0.0.254 if 0 type 4 proto 3 age 0 metric 1 fib 0 "
                       "unresolved 1",
                       "7"}),
              Rib());
}

TEST_F(RoutingTest, AGivenIfIndexLimitsResolutionToThatInterface) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254", 101);
    Side().RunScheduler();
    EXPECT_EQ(2u, Routes().size());  // the connected prefix and the end
    const Strings rib = Rib();
    ASSERT_EQ(3u, rib.size());
    EXPECT_EQ(
        "1 5 192.168.0.0/16 via 10.0.0.254 if 101 type 4 proto 3 age 0 metric 1 fib 0 "
        "unresolved 1",
        rib[1]);
}

TEST_F(RoutingTest, ARouteWithoutNextHopGoesOutOfItsUpInterface) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "0.0.0.0", 100);
    Route(1, 1, 5, "192.169.0.0", 16, "0.0.0.0", 0);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 5 192.168.0.0/16 via 0.0.0.0 if 100 type 4 proto 3 age 0 metric 1", "7"}),
              Routes());
}

TEST_F(RoutingTest, AConnectedPrefixBeatsAStaticRouteToTheSameDestination) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Network(5, 101, "eth1", "10.0.1.1", 24);
    Route(1, 1, 5, "10.0.0.0", 24, "10.0.1.254");
    Side().RunScheduler();
    const Strings rib = Rib();
    ASSERT_EQ(4u, rib.size());
    EXPECT_EQ("1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0 fib 1 unresolved 0",
              rib[0]);
    EXPECT_EQ(
        "1 5 10.0.0.0/24 via 10.0.1.254 if 101 type 4 proto 3 age 0 metric 1 fib 0 "
        "unresolved 0",
        rib[1]);
}

TEST_F(RoutingTest, TheLowerMetricWinsAmongStaticRoutesAndTheOtherTakesOverWhenItGoes) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.253", 0, 5);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254", 0, 2);
    Side().RunScheduler();
    Strings routes = Routes();
    ASSERT_EQ(3u, routes.size());
    EXPECT_EQ("1 5 192.168.0.0/16 via 10.0.0.254 if 100 type 4 proto 3 age 0 metric 2", routes[1]);
    Route(6, 2, 5, "192.168.0.0", 16, "10.0.0.254", 0, 0);
    Side().RunScheduler();
    routes = Routes();
    ASSERT_EQ(3u, routes.size());
    EXPECT_EQ("1 5 192.168.0.0/16 via 10.0.0.253 if 100 type 4 proto 3 age 0 metric 5", routes[1]);
}

TEST_F(RoutingTest, EqualCandidatesInstallTheFirstInTableOrder) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.253");
    Side().RunScheduler();
    EXPECT_EQ("1 5 192.168.0.0/16 via 10.0.0.253 if 100 type 4 proto 3 age 0 metric 1",
              Routes()[1]);
}

TEST_F(RoutingTest, AnAdminDownStaticRouteIsNoCandidateUntilItIsEnabled) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 2, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    EXPECT_EQ(2u, Rib().size());
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    EXPECT_EQ(3u, Routes().size());
}

TEST_F(RoutingTest, AgesCountSecondsOnTheLoopsClock) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    loop.Advance(4000);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    loop.Advance(2500);
    EXPECT_EQ(
        Strings({"1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 6 metric 0",
                 "1 5 192.168.0.0/16 via 10.0.0.254 if 100 type 4 proto 3 age 2 metric 1", "7"}),
        Routes());
}

TEST_F(RoutingTest, TheConnectedAgeStartsWhenTheInterfaceComesUp) {
    Interface(4, 5, 100, "eth0", 2);
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    loop.Advance(10000);
    Interface(1, 5, 100, "eth0", 1, 0);
    Side().RunScheduler();
    loop.Advance(3000);
    EXPECT_EQ("1 5 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 3 metric 0", Routes()[0]);
}

TEST_F(RoutingTest, Ipv6ConnectedAndStaticRoutesLiveInTheIpv6Instance) {
    Network(0x8005, 100, "eth0", "2001:db8::1", 64);
    Route(1, 1, 0x8005, "2001:db8:1::", 48, "2001:db8::fe");
    Side().RunScheduler();
    EXPECT_EQ(Strings({"1 32773 2001:db8::/64 via :: if 100 type 3 proto 2 age 0 metric 0",
                       "1 32773 2001:db8:1::/48 via 2001:db8::fe if 100 type 4 proto 3 age 0 "
                       "metric 1",
                       "7"}),
              Routes(0x8005));
    EXPECT_EQ(Strings({"7"}), Walk("rtm_route", 0x8006));
}

TEST_F(RoutingTest, ProtocolRoutesTakeTheirDistanceFromTheInstanceSettings) {
    amb_cipr_rtm_entity settings = LibrarySide::DefaultRtmConfig(6);
    settings.rip_distance = 30;  // below OSPF internal (40)
    Side().SetRtmConfig(6, settings);
    StartInstance(6);
    Network(6, 100, "eth0", "10.0.0.1", 24);
    ASSERT_TRUE(Emulator::AddProtocolRoute(6, RouteSource::OspfInternal, "192.168.0.0", 16,
                                           "10.0.0.253", 0, 10));
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(6, RouteSource::Rip, "192.168.0.0", 16, "10.0.0.254", 0, 2));
    Side().RunScheduler();
    EXPECT_EQ(
        Strings({"1 6 10.0.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                 "1 6 192.168.0.0/16 via 10.0.0.254 if 100 type 4 proto 8 age 0 metric 2", "7"}),
        Routes(6));
    // A static route (distance 1) beats both.
    Route(1, 1, 6, "192.168.0.0", 16, "10.0.0.252", 0, 50);
    Side().RunScheduler();
    EXPECT_EQ("1 6 192.168.0.0/16 via 10.0.0.252 if 100 type 4 proto 3 age 0 metric 50",
              Routes(6)[1]);
}

TEST_F(RoutingTest, AWithdrawnProtocolRouteLeavesTheRib) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    ASSERT_TRUE(
        Emulator::AddProtocolRoute(5, RouteSource::Ebgp, "192.168.0.0", 16, "10.0.0.254", 0, 0));
    Side().RunScheduler();
    EXPECT_EQ(3u, Routes().size());
    ASSERT_TRUE(
        Emulator::WithdrawProtocolRoute(5, RouteSource::Ebgp, "192.168.0.0", 16, "10.0.0.254", 0));
    Side().RunScheduler();
    EXPECT_EQ(2u, Routes().size());
}

TEST_F(RoutingTest, ProtocolRoutesAreRefusedForConnectedOrStaticOrBadAddresses) {
    EXPECT_FALSE(
        Emulator::AddProtocolRoute(5, RouteSource::Static, "10.0.0.0", 8, "1.1.1.1", 0, 0));
    EXPECT_FALSE(
        Emulator::AddProtocolRoute(5, RouteSource::Connected, "10.0.0.0", 8, "1.1.1.1", 0, 0));
    EXPECT_FALSE(Emulator::AddProtocolRoute(5, RouteSource::Rip, "10.0.0", 8, "1.1.1.1", 0, 0));
    EXPECT_FALSE(Emulator::AddProtocolRoute(5, RouteSource::Rip, "10.0.0.0", 33, "1.1.1.1", 0, 0));
    EXPECT_FALSE(Emulator::AddProtocolRoute(5, RouteSource::Rip, "10.0.0.0", 8, "::1", 0, 0));
    EXPECT_EQ(0u, Stack().PendingManagementWork());
}

TEST_F(RoutingTest, RibsOfDifferentInstancesAreSeparate) {
    StartInstance(6);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Network(6, 100, "eth0", "10.0.6.1", 24);
    Route(1, 1, 6, "192.168.0.0", 16, "10.0.0.254");  // next hop in instance 5 only
    Side().RunScheduler();
    const Strings rib = Rib(6);
    ASSERT_EQ(3u, rib.size());
    EXPECT_EQ(
        "1 6 192.168.0.0/16 via 10.0.0.254 if 0 type 4 proto 3 age 0 metric 1 fib 0 "
        "unresolved 1",
        rib[1]);
}

}  // namespace
}  // namespace Zavrel::test
