// Configured IPv4 static routes: reading, equality, matching and ordering.
#include "rtm/Ip4RouteConfig.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class Ip4RouteConfigTest : public test::TestEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    static Ip4Addr A(const char* text) {
        Ip4Addr address;
        EXPECT_TRUE(address.FromString(text)) << text;
        return address;
    }

    Options options;
};

TEST_F(Ip4RouteConfigTest, DefaultsAreZeroAddressesAndMetricOne) {
    Ip4RouteConfig route;
    EXPECT_EQ(route.vlan, 0);
    EXPECT_TRUE(route.interface.empty());
    EXPECT_EQ(route.network, Ip4Addr());
    EXPECT_EQ(route.netmask, Ip4Addr());
    EXPECT_EQ(route.gateway, Ip4Addr());
    EXPECT_EQ(route.metric, 1);
}

TEST_F(Ip4RouteConfigTest, ParsesEveryKey) {
    Ip4RouteConfig route;
    ASSERT_TRUE(route.ParseGroup(7, Load(R"({"interface": "eth1", "network": "10.1.0.0",
        "netmask": "255.255.0.0", "gateway": "192.168.1.1", "metric": 5})")));
    EXPECT_EQ(route.vlan, 7);
    EXPECT_EQ(route.interface, "eth1");
    EXPECT_EQ(route.network, A("10.1.0.0"));
    EXPECT_EQ(route.netmask, A("255.255.0.0"));
    EXPECT_EQ(route.gateway, A("192.168.1.1"));
    EXPECT_EQ(route.metric, 5);
}

TEST_F(Ip4RouteConfigTest, RecordWithoutMetricParsesWithMetricZeroNotTheDefault) {
    Ip4RouteConfig route;
    ASSERT_TRUE(route.ParseGroup(7, Load(R"({"network": "10.1.0.0", "netmask": "255.255.0.0",
        "gateway": "192.168.1.1"})")));
    EXPECT_EQ(route.metric, 0);
    EXPECT_TRUE(route.interface.empty());
}

TEST_F(Ip4RouteConfigTest, Metric256IsRejectedAnd255Accepted) {
    Ip4RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(1, Load(R"({"network": "10.1.0.0", "netmask": "255.255.0.0",
        "gateway": "192.168.1.1", "metric": 256})")));
    EXPECT_TRUE(route.ParseGroup(1, Load(R"({"network": "10.1.0.0", "netmask": "255.255.0.0",
        "gateway": "192.168.1.1", "metric": 255})")));
    EXPECT_EQ(route.metric, 255);
}

TEST_F(Ip4RouteConfigTest, NonNumericMetricIsRejected) {
    Ip4RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(1, Load(R"({"network": "10.1.0.0", "netmask": "255.255.0.0",
        "gateway": "192.168.1.1", "metric": "5x"})")));
}

TEST_F(Ip4RouteConfigTest, EmptyRecordIsRejected) {
    Ip4RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(1, Load(R"({})")));
    EXPECT_FALSE(route.ParseGroup(1, OptionsNode()));
    EXPECT_EQ(route.vlan, 0);
}

TEST_F(Ip4RouteConfigTest, BadGatewayFailsKeepingTheFieldsAlreadyRead) {
    Ip4RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(3, Load(R"({"network": "10.1.0.0", "netmask": "255.255.0.0",
        "gateway": "192.168.1", "metric": 2})")));
    EXPECT_EQ(route.vlan, 3);
    EXPECT_EQ(route.network, A("10.1.0.0"));
    EXPECT_EQ(route.netmask, A("255.255.0.0"));
    EXPECT_EQ(route.gateway, Ip4Addr());
    EXPECT_EQ(route.metric, 1);
}

TEST_F(Ip4RouteConfigTest, MissingNetworkIsRejected) {
    Ip4RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(3, Load(R"({"netmask": "255.255.0.0", "gateway": "1.1.1.1"})")));
}

TEST_F(Ip4RouteConfigTest, CopyAndAssignmentKeepEveryFieldIncludingTheInterface) {
    Ip4RouteConfig route(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 9);
    route.interface = "eth2";
    Ip4RouteConfig copy(route);
    EXPECT_TRUE(copy == route);
    Ip4RouteConfig assigned;
    assigned = route;
    EXPECT_TRUE(assigned == route);
    assigned = assigned;
    EXPECT_EQ(assigned.interface, "eth2");
}

TEST_F(Ip4RouteConfigTest, RoutesDifferingOnlyInInterfaceAreUnequalButMatch) {
    Ip4RouteConfig a(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 9);
    Ip4RouteConfig b(a);
    b.interface = "eth3";
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a(b));
    EXPECT_TRUE(b(a));
}

TEST_F(Ip4RouteConfigTest, PatternWithMetric255MatchesAnyMetric) {
    Ip4RouteConfig configured(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 9);
    Ip4RouteConfig any(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 255);
    Ip4RouteConfig five(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 5);
    EXPECT_TRUE(any(configured));
    EXPECT_FALSE(five(configured));
    configured.metric = 5;
    EXPECT_TRUE(five(configured));
    EXPECT_FALSE(configured(any)) << "only the pattern's own metric is a wildcard";
}

TEST_F(Ip4RouteConfigTest, MatchingNeedsEqualVlanNetworkMaskAndGateway) {
    Ip4RouteConfig pattern(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 255);
    EXPECT_FALSE(pattern(Ip4RouteConfig(5, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 1)));
    EXPECT_FALSE(pattern(Ip4RouteConfig(4, A("10.0.0.1"), A("255.0.0.0"), A("1.1.1.1"), 1)));
    EXPECT_FALSE(pattern(Ip4RouteConfig(4, A("10.0.0.0"), A("255.255.0.0"), A("1.1.1.1"), 1)));
    EXPECT_FALSE(pattern(Ip4RouteConfig(4, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.2"), 1)));
}

TEST_F(Ip4RouteConfigTest, SameBaseWithDifferentMasksOrdersByGatewayThenMetric) {
    Ip4RouteConfig slash8(1, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.2"), 1);
    Ip4RouteConfig slash16(1, A("10.0.0.0"), A("255.255.0.0"), A("1.1.1.1"), 1);
    EXPECT_TRUE(Ip4RouteConfig::Compare(slash16, slash8)) << "smaller gateway first";
    EXPECT_FALSE(Ip4RouteConfig::Compare(slash8, slash16));

    slash16.gateway = slash8.gateway;
    slash16.metric = 3;
    EXPECT_TRUE(Ip4RouteConfig::Compare(slash8, slash16));
    EXPECT_FALSE(Ip4RouteConfig::Compare(slash16, slash8));
}

TEST_F(Ip4RouteConfigTest, LargerMaskedNetworkComesAfter) {
    Ip4RouteConfig slash8(1, A("10.0.0.0"), A("255.0.0.0"), A("9.9.9.9"), 200);
    Ip4RouteConfig slash16(1, A("10.0.0.0"), A("255.255.0.0"), A("9.9.9.9"), 200);
    Ip4RouteConfig other(1, A("10.1.0.0"), A("255.255.0.0"), A("1.1.1.1"), 1);
    EXPECT_TRUE(slash8 < other);
    EXPECT_TRUE(slash16 < other);
    EXPECT_FALSE(other < slash8);
    EXPECT_FALSE(other < slash16);
}

TEST_F(Ip4RouteConfigTest, HostBitsOutsideTheMaskDoNotCount) {
    Ip4RouteConfig a(1, A("10.0.0.77"), A("255.0.0.0"), A("1.1.1.1"), 1);
    Ip4RouteConfig b(1, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 2);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Ip4RouteConfigTest, EqualRoutesWithEqualMetricsOrderBothWays) {
    Ip4RouteConfig a(1, A("10.0.0.0"), A("255.0.0.0"), A("1.1.1.1"), 4);
    Ip4RouteConfig b(a);
    EXPECT_TRUE(Ip4RouteConfig::Compare(a, b));
    EXPECT_TRUE(Ip4RouteConfig::Compare(b, a));
}

TEST_F(Ip4RouteConfigTest, NetworksCompareAsNumbersInNetworkOrder) {
    Ip4RouteConfig low(1, A("9.255.0.0"), A("255.255.0.0"), A("1.1.1.1"), 1);
    Ip4RouteConfig high(1, A("10.0.0.0"), A("255.255.0.0"), A("1.1.1.1"), 1);
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
}

}  // namespace
}  // namespace Zavrel
