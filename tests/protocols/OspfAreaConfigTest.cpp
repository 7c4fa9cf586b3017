// OSPF area records: comparison, row status and display.
#include "protocols/OspfAreaConfig.h"

#include <gtest/gtest.h>

#include "platform/Options.h"
#include "protocols/DcOspfv2Router.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class OspfAreaConfigTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    Options options;
    DcOspfv2Router router{3};
};

TEST_F(OspfAreaConfigTest, ComparesByAreaIdThenSettings) {
    OspfAreaConfig running(router);
    ASSERT_TRUE(running.ParseFromOption(Load(R"({"area": 1, "stub": 1, "interfaces": [5, 4]})")));
    OspfAreaConfig same(router);
    ASSERT_TRUE(same.ParseFromOption(Load(R"({"area": 1, "stub": true, "interfaces": [4, 5]})")));
    OspfAreaConfig changed(router);
    ASSERT_TRUE(changed.ParseFromOption(Load(R"({"area": 1, "interfaces": [4, 5]})")));
    OspfAreaConfig other(router);
    ASSERT_TRUE(other.ParseFromOption(Load(R"({"area": 2, "stub": 1, "interfaces": [4, 5]})")));
    EXPECT_EQ(running.CompareWithNew(&same), 0);
    EXPECT_EQ(running.CompareWithNew(&changed), 1);
    EXPECT_EQ(running.CompareWithNew(&other), 2);
    running.UpdateFromNew(&changed);
    EXPECT_FALSE(running.stub);
}

TEST_F(OspfAreaConfigTest, RowStatusFollowsTheLifecycle) {
    OspfAreaConfig area(router);
    ASSERT_TRUE(area.ParseFromOption(Load(R"({"area": 1})")));
    EXPECT_EQ(area.GetRowStatus(), 4);
    EXPECT_FALSE(area.Commit());
    EXPECT_TRUE(area.GetInMib());
    EXPECT_FALSE(area.actionReq);
    EXPECT_EQ(area.GetRowStatus(), 1);
    EXPECT_TRUE(router.HasArea(1));
    area.MarkDestroy();
    EXPECT_EQ(area.GetRowStatus(), 6);
    EXPECT_TRUE(area.Commit());
    EXPECT_FALSE(area.GetInMib());
    EXPECT_FALSE(router.HasArea(1));
}

TEST_F(OspfAreaConfigTest, DisplayShowsTheAreaAndItsInterfaces) {
    OspfAreaConfig area(router);
    ASSERT_TRUE(area.ParseFromOption(Load(R"({"area": 1, "stub": 1, "interfaces": [12, 11]})")));
    area.Display(&console);
    OspfAreaConfig backbone(router);
    ASSERT_TRUE(backbone.ParseFromOption(Load(R"({"area": 0})")));
    backbone.Display(&console);
    EXPECT_EQ(console.Output(), "Area 1 (stub) Interfaces: 11 12\nArea 0 Interfaces:\n");
}

TEST_F(OspfAreaConfigTest, NonNumericInterfacesAreSkipped) {
    OspfAreaConfig area(router);
    ASSERT_TRUE(area.ParseFromOption(Load(R"({"area": 1, "interfaces": [4, "x", -1, 6]})")));
    EXPECT_EQ(area.interfaces, (std::set<unsigned int>{4, 6}));
}

}  // namespace
}  // namespace Zavrel
