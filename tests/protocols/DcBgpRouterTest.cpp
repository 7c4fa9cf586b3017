// The BGP4+ router of a VLAN.
#include "protocols/DcBgpRouter.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "routing/DcConfigLists.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class DcBgpRouterTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    Options options;
};

TEST_F(DcBgpRouterTest, IsNamedBgpAndStartsDisabled) {
    DcBgpRouter router(21);
    EXPECT_EQ(router.GetName(), "BGP");
    EXPECT_EQ(router.GetDisplayId(), "BGP:21");
    ASSERT_NE(router.GetInterface(), nullptr);
    EXPECT_EQ(router.GetInterface()->GetProtocol(), 0xe0000u);
    EXPECT_TRUE(router.GetInterface()->IsDualStack());
    EXPECT_FALSE(router.IsEnabled());
    EXPECT_FALSE(router.IsReady());
}

TEST_F(DcBgpRouterTest, ReadsItsBgpSectionAndIsReadyWithTheIpv4Instance) {
    DcBgpRouter router(21);
    router.Reload(Load(R"({"vid": 21, "BGP": {"enabled": 1, "REDISTRIBUTION": {"ospf": 0}}})"),
                  "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(router.IsEnabled());
    EXPECT_FALSE(router.GetInterface()->GetProfile().ospf);
    EXPECT_FALSE(router.IsReady());
    DcRtmMgr::GetInstance()->SetRtmReady(21);
    EXPECT_TRUE(router.IsReady());
    EXPECT_EQ(router.GetConfigLists().size(), 1u) << "an enabled source gets an empty bundle";
    EXPECT_TRUE(router.GetConfigLists().begin()->second->Lists().empty());
}

TEST_F(DcBgpRouterTest, IgnoresOtherRoutersSections) {
    DcBgpRouter router(21);
    router.Reload(Load(R"({"vid": 21, "OSPFV2": {"enabled": 1}})"), "vlan.json",
                  DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_FALSE(router.IsEnabled());
}

}  // namespace
}  // namespace Zavrel
