// The RIPv2 and RIPng routers of a VLAN.
#include <gtest/gtest.h>

#include "protocols/RipngInterface.h"
#include "protocols/Ripv2Interface.h"
#include "routing/DcConfigLists.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class DcRipRouterTest : public test::RecordingStackEnv {};

TEST_F(DcRipRouterTest, Ripv2RouterIsNamedRipv2WithARipv2Interface) {
    DcRipv2Router router(12);
    EXPECT_EQ(router.GetName(), "RIPV2");
    EXPECT_EQ(router.GetDisplayId(), "RIPV2:12");
    EXPECT_EQ(router.GetVlan(), 12);
    auto* iface = dynamic_cast<Ripv2Interface*>(router.GetInterface());
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->GetRouter(), &router);
    EXPECT_EQ(iface->GetAfi(), 0);
    EXPECT_EQ(iface->GetRtmInstance(), 12);
    EXPECT_EQ(iface->GetProtocol(), 0x80000u);
}

TEST_F(DcRipRouterTest, RipngRouterIsNamedRipngWithARipngInterface) {
    DcRipngRouter router(12);
    EXPECT_EQ(router.GetName(), "RIPNG");
    EXPECT_EQ(router.GetDisplayId(), "RIPNG:12");
    auto* iface = dynamic_cast<RipngInterface*>(router.GetInterface());
    ASSERT_NE(iface, nullptr);
    EXPECT_EQ(iface->GetAfi(), 41);
    EXPECT_EQ(iface->GetRtmInstance(), 12 | DcRtmMgr::IP6_INSTANCE_BIT);
    EXPECT_EQ(iface->GetProtocol(), 0x80000u);
}

TEST_F(DcRipRouterTest, RipRoutersAcceptABundleWithoutAddingLists) {
    DcRipv2Router v2(1);
    DcRipngRouter ng(1);
    DcConfigLists bundle("vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(v2.CreateConfigList(bundle));
    EXPECT_TRUE(ng.CreateConfigList(bundle));
    EXPECT_TRUE(bundle.Lists().empty());
}

TEST_F(DcRipRouterTest, RoutersCanBeBuiltWithAnyNameAndProtocolObject) {
    DcRipv2Router router("CUSTOM", 3, nullptr);
    EXPECT_EQ(router.GetName(), "CUSTOM");
    EXPECT_EQ(router.GetInterface(), nullptr);
    DcRipngRouter ng("CUSTOM6", 3, new RipngInterface());
    EXPECT_NE(ng.GetInterface(), nullptr);
}

TEST_F(DcRipRouterTest, RipngConsoleCommandPrintsNothing) {
    char word[] = "rip";
    char* argv[] = {word};
    DcRipngRouter::ConsoleCommand(nullptr, &console, 1, argv);
    EXPECT_EQ(console.All(), "");
    EXPECT_EQ(console.EndCount(), 0);
}

}  // namespace
}  // namespace Zavrel
