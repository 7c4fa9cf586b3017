// Configured IPv6 static routes: reading, equality, matching and ordering.
#include "rtm/Ip6RouteConfig.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class Ip6RouteConfigTest : public test::TestEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    static Ip6Addr A(const char* text) {
        Ip6Addr address;
        EXPECT_TRUE(address.FromString(text)) << text;
        return address;
    }

    static Ip6RouteConfig Route(const char* network, unsigned int length, const char* gateway,
                                unsigned char metric) {
        return Ip6RouteConfig(1, A(network), Ip6Prefix(A(network), length), A(gateway), metric);
    }

    Options options;
};

TEST_F(Ip6RouteConfigTest, DefaultsAreUnspecifiedAddressesAndMetricOne) {
    Ip6RouteConfig route;
    EXPECT_EQ(route.vlan, 0);
    EXPECT_TRUE(route.interface.empty());
    EXPECT_EQ(route.network, Ip6Addr());
    EXPECT_EQ(route.prefix.Address(), Ip6Addr());
    EXPECT_EQ(route.prefix.Length(), 0u);
    EXPECT_EQ(route.gateway, Ip6Addr());
    EXPECT_EQ(route.metric, 1);
}

TEST_F(Ip6RouteConfigTest, ParsesEveryKeyWithThePrefixAddressFromTheNetwork) {
    Ip6RouteConfig route;
    ASSERT_TRUE(route.ParseGroup(9, Load(R"({"interface": "eth0", "network": "2001:db8::",
        "prefix": "48", "gateway": "fe80::1", "metric": 7})")));
    EXPECT_EQ(route.vlan, 9);
    EXPECT_EQ(route.interface, "eth0");
    EXPECT_EQ(route.network, A("2001:db8::"));
    EXPECT_EQ(route.prefix.Address(), A("2001:db8::"));
    EXPECT_EQ(route.prefix.Length(), 48u);
    EXPECT_EQ(route.gateway, A("fe80::1"));
    EXPECT_EQ(route.metric, 7);
}

TEST_F(Ip6RouteConfigTest, RecordWithoutMetricParsesWithMetricZero) {
    Ip6RouteConfig route;
    ASSERT_TRUE(route.ParseGroup(9, Load(R"({"network": "2001:db8::", "prefix": 32,
        "gateway": "fe80::1"})")));
    EXPECT_EQ(route.metric, 0);
}

TEST_F(Ip6RouteConfigTest, Metric256IsRejectedAnd255Accepted) {
    Ip6RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(9, Load(R"({"network": "2001:db8::", "prefix": 32,
        "gateway": "fe80::1", "metric": 256})")));
    EXPECT_TRUE(route.ParseGroup(9, Load(R"({"network": "2001:db8::", "prefix": 32,
        "gateway": "fe80::1", "metric": 255})")));
    EXPECT_EQ(route.metric, 255);
}

TEST_F(Ip6RouteConfigTest, MissingPrefixIsRejectedAfterTheNetworkWasRead) {
    Ip6RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(9, Load(R"({"network": "2001:db8::", "gateway": "fe80::1"})")));
    EXPECT_EQ(route.network, A("2001:db8::"));
    EXPECT_EQ(route.prefix.Length(), 0u);
}

TEST_F(Ip6RouteConfigTest, BadNetworkOrGatewayIsRejected) {
    Ip6RouteConfig route;
    EXPECT_FALSE(route.ParseGroup(9, Load(R"({"network": "2001:db8::g", "prefix": 32,
        "gateway": "fe80::1"})")));
    EXPECT_FALSE(route.ParseGroup(9, Load(R"({"network": "2001:db8::", "prefix": 32,
        "gateway": "fe80:::1"})")));
    EXPECT_FALSE(route.ParseGroup(9, Load(R"({})")));
}

TEST_F(Ip6RouteConfigTest, RoutesDifferingOnlyInInterfaceAreUnequalButMatch) {
    Ip6RouteConfig a = Route("2001:db8::", 32, "fe80::1", 3);
    Ip6RouteConfig b(a);
    EXPECT_TRUE(a == b);
    b.interface = "eth1";
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a(b));
}

TEST_F(Ip6RouteConfigTest, AssignmentCopiesEveryField) {
    Ip6RouteConfig a = Route("2001:db8::", 32, "fe80::1", 3);
    a.interface = "eth1";
    Ip6RouteConfig b;
    b = a;
    EXPECT_TRUE(b == a);
}

TEST_F(Ip6RouteConfigTest, PatternWithMetric255MatchesAnyMetric) {
    Ip6RouteConfig configured = Route("2001:db8::", 32, "fe80::1", 3);
    EXPECT_TRUE(Route("2001:db8::", 32, "fe80::1", 255)(configured));
    EXPECT_FALSE(Route("2001:db8::", 32, "fe80::1", 5)(configured));
    EXPECT_TRUE(Route("2001:db8::", 32, "fe80::1", 3)(configured));
    EXPECT_FALSE(Route("2001:db8::", 48, "fe80::1", 255)(configured));
    EXPECT_FALSE(Route("2001:db8::", 32, "fe80::2", 255)(configured));
}

TEST_F(Ip6RouteConfigTest, ShorterPrefixOfTheSameAddressComesFirst) {
    Ip6RouteConfig slash32 = Route("2001:db8::", 32, "fe80::9", 9);
    Ip6RouteConfig slash48 = Route("2001:db8::", 48, "fe80::1", 1);
    EXPECT_TRUE(slash32 < slash48);
    EXPECT_FALSE(slash48 < slash32);
}

TEST_F(Ip6RouteConfigTest, SmallerAddressWordComesFirst) {
    Ip6RouteConfig low = Route("2001:db8::ffff", 128, "fe80::9", 9);
    Ip6RouteConfig high = Route("2001:db9::", 32, "fe80::1", 1);
    EXPECT_TRUE(low < high);
    EXPECT_FALSE(high < low);
}

TEST_F(Ip6RouteConfigTest, SamePrefixOrdersByGatewayThenMetric) {
    Ip6RouteConfig a = Route("2001:db8::", 32, "fe80::1", 9);
    Ip6RouteConfig b = Route("2001:db8::", 32, "fe80::2", 1);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    b.gateway = a.gateway;
    EXPECT_TRUE(b < a);
    EXPECT_FALSE(a < b);
    b.metric = 9;
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b < a) << "equal routes order both ways";
}

TEST_F(Ip6RouteConfigTest, PrefixAddressIsComparedWithoutMasking) {
    // Both are /32 of 2001:db8::, but the stored addresses differ past the
    // prefix length, and that difference decides.
    Ip6RouteConfig a(1, A("2001:db8::"), Ip6Prefix(A("2001:db8::1"), 32), A("fe80::1"), 1);
    Ip6RouteConfig b(1, A("2001:db8::"), Ip6Prefix(A("2001:db8::"), 32), A("fe80::1"), 1);
    EXPECT_TRUE(b < a);
    EXPECT_FALSE(a < b);
}

}  // namespace
}  // namespace Zavrel
