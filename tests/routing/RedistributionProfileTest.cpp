// Redistribution profiles: defaults, the constructor's argument order, and
// reading a "REDISTRIBUTION" section.
#include "routing/RedistributionProfile.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class RedistributionProfileTest : public test::TestEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    Options options;
};

TEST_F(RedistributionProfileTest, EverySourceIsOnByDefault) {
    RedistributionProfile profile;
    EXPECT_TRUE(profile.staticRoutes);
    EXPECT_TRUE(profile.connected);
    EXPECT_TRUE(profile.rip);
    EXPECT_TRUE(profile.ospf);
    EXPECT_TRUE(profile.bgp);
}

TEST_F(RedistributionProfileTest, FiveArgumentConstructorTakesStaticConnectedBgpOspfRip) {
    RedistributionProfile profile(true, false, true, false, true);
    EXPECT_TRUE(profile.staticRoutes);
    EXPECT_FALSE(profile.connected);
    EXPECT_TRUE(profile.bgp);
    EXPECT_FALSE(profile.ospf);
    EXPECT_TRUE(profile.rip);
}

TEST_F(RedistributionProfileTest, ResetTurnsEverySourceOn) {
    RedistributionProfile profile(false, false, false, false, false);
    profile.Reset();
    EXPECT_EQ(profile, RedistributionProfile());
}

TEST_F(RedistributionProfileTest, EqualityComparesAllFiveFlags) {
    RedistributionProfile a;
    RedistributionProfile b;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    b.ospf = false;
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    a = b;
    EXPECT_TRUE(a == b);
    a = a;
    EXPECT_FALSE(a.ospf);
}

TEST_F(RedistributionProfileTest, MissingOrEmptySectionIsFalseAndChangesNothing) {
    RedistributionProfile profile(false, true, false, true, false);
    const RedistributionProfile before = profile;
    EXPECT_FALSE(profile.ParseOption(Load(R"({})")));
    EXPECT_FALSE(profile.ParseOption(Load(R"({"REDISTRIBUTION": {}})")));
    EXPECT_EQ(profile, before);
}

TEST_F(RedistributionProfileTest, SectionHoldingOnlyBgpLeavesTheOtherFlags) {
    RedistributionProfile profile(false, true, true, false, true);
    EXPECT_TRUE(profile.ParseOption(Load(R"({"REDISTRIBUTION": {"bgp": false}})")));
    EXPECT_FALSE(profile.bgp);
    EXPECT_FALSE(profile.staticRoutes);
    EXPECT_TRUE(profile.connected);
    EXPECT_TRUE(profile.rip);
    EXPECT_FALSE(profile.ospf);
}

TEST_F(RedistributionProfileTest, EveryLeafIsRead) {
    RedistributionProfile profile;
    EXPECT_TRUE(profile.ParseOption(Load(R"({"REDISTRIBUTION": {"static": 0, "connected": false,
        "bgp": "0", "rip": false, "ospf": 0}})")));
    EXPECT_EQ(profile, RedistributionProfile(false, false, false, false, false));
    EXPECT_TRUE(profile.ParseOption(Load(R"({"REDISTRIBUTION": {"static": 1, "ospf": true}})")));
    EXPECT_TRUE(profile.staticRoutes);
    EXPECT_TRUE(profile.ospf);
    EXPECT_FALSE(profile.connected);
}

TEST_F(RedistributionProfileTest, UnreadableLeafLeavesItsFlag) {
    RedistributionProfile profile(true, true, true, false, true);
    EXPECT_TRUE(profile.ParseOption(Load(R"({"REDISTRIBUTION": {"ospf": "yes", "rip": false}})")));
    EXPECT_FALSE(profile.ospf);
    EXPECT_FALSE(profile.rip);
}

TEST_F(RedistributionProfileTest, AllowsMapsProtocolCodesToFlags) {
    RedistributionProfile profile(true, false, true, false, true);
    EXPECT_TRUE(profile.Allows(0x30000));
    EXPECT_FALSE(profile.Allows(0x20000));
    EXPECT_TRUE(profile.Allows(0xe0000));
    EXPECT_FALSE(profile.Allows(0xd0000));
    EXPECT_TRUE(profile.Allows(0x80000));
    EXPECT_FALSE(profile.Allows(0x10000));
}

}  // namespace
}  // namespace Zavrel
