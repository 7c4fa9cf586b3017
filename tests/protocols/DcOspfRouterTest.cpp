// The OSPF routers: their names and families, and their areas from options.
#include "protocols/DcOspfRouter.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/Options.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "protocols/Ospfv3Interface.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using Ids = std::vector<unsigned int>;

class DcOspfRouterTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    void Reload(DcRouterBase& router, const char* json, const char* source = "vlan.json") {
        router.Reload(Load(json), source, DclConfigObject::OPTION_TYPE_VLAN);
    }
    static std::vector<unsigned int> Interfaces(const DcOspfRouter& router, unsigned int area) {
        const OspfAreaCB* cb = router.GetArea(area);
        return cb == nullptr ? Ids{} : Ids(cb->interfaces.begin(), cb->interfaces.end());
    }
    Options options;
};

TEST_F(DcOspfRouterTest, Ospfv2RouterWorksInTheIpv4Instance) {
    DcOspfv2Router router(8);
    EXPECT_EQ(router.GetName(), "OSPFV2");
    EXPECT_EQ(router.GetDisplayId(), "OSPFV2:8");
    EXPECT_EQ(router.GetVersion(), 2u);
    ASSERT_NE(router.GetInterface(), nullptr);
    EXPECT_EQ(router.GetInterface()->GetAfi(), 0);
    EXPECT_EQ(router.GetInterface()->GetProtocol(), 0xd0000u);
    EXPECT_NE(dynamic_cast<DcOspfRouterBase*>(&router), nullptr);
}

TEST_F(DcOspfRouterTest, Ospfv3RouterIsAnOspfRouterBaseWithAnOspfv3Interface) {
    DcOspfv3Router router(8);
    EXPECT_EQ(router.GetName(), "OSPFV3");
    EXPECT_EQ(router.GetVersion(), 3u);
    EXPECT_NE(dynamic_cast<Ospfv3Interface*>(router.GetInterface()), nullptr);
    DcOspfRouterBase* base = &router;
    EXPECT_EQ(base->GetAreaCount(), 0u);
    Reload(router, R"({"OSPFV3": {"enabled": 1}})");
    DcRtmMgr::GetInstance()->SetRtmReady(8);
    EXPECT_FALSE(router.IsReady());
    DcRtmMgr::GetInstance()->SetRtmReady(8 | DcRtmMgr::IP6_INSTANCE_BIT);
    EXPECT_TRUE(router.IsReady());
}

TEST_F(DcOspfRouterTest, AreasComeFromTheAreasListWhileEnabled) {
    DcOspfv2Router router(8);
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [
        {"area": 0, "interfaces": [100, 101]}, {"area": 5, "stub": 1, "interfaces": [102]}]}})");
    EXPECT_EQ(router.GetAreaIds(), (Ids{0, 5}));
    EXPECT_FALSE(router.IsStubArea(0));
    EXPECT_TRUE(router.IsStubArea(5));
    EXPECT_EQ(Interfaces(router, 0), (Ids{100, 101}));
    EXPECT_EQ(Interfaces(router, 5), (Ids{102}));
    EXPECT_TRUE(router.IsAreaBorderRouter());
    unsigned int area = 99;
    EXPECT_TRUE(router.GetInterfaceArea(102, &area));
    EXPECT_EQ(area, 5u);
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "OSPF_AREAS:: ActionReq: 1 InMib: 0  Vlan: 8   ID: 0 RowStatus C\n",
                  "OSPF_AREAS:: ActionReq: 1 InMib: 0  Vlan: 8   ID: 5 RowStatus C\n"}));
}

TEST_F(DcOspfRouterTest, ReloadUpdatesMovesAndRemovesAreas) {
    DcOspfv2Router router(8);
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [
        {"area": 0, "interfaces": [100, 101]}, {"area": 5, "stub": 1, "interfaces": [102]}]}})");
    trace.Clear();
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [
        {"area": 0, "interfaces": [100]}, {"area": 7, "interfaces": [101]}]}})");
    EXPECT_EQ(router.GetAreaIds(), (Ids{0, 7}));
    EXPECT_EQ(Interfaces(router, 0), (Ids{100}));
    EXPECT_EQ(Interfaces(router, 7), (Ids{101}));
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "OSPF_AREAS:: ActionReq: 1 InMib: 1  Vlan: 8   ID: 0 RowStatus M\n",
                  "OSPF_AREAS:: ActionReq: 1 InMib: 1  Vlan: 8   ID: 5 RowStatus D\n",
                  "OSPF_AREAS:: ActionReq: 1 InMib: 0  Vlan: 8   ID: 7 RowStatus C\n"}));
}

TEST_F(DcOspfRouterTest, UnchangedAreasAreNotCommittedAgain) {
    DcOspfv2Router router(8);
    const char* json = R"({"OSPFV2": {"enabled": 1, "AREAS": [{"area": 0, "interfaces": [100]}]}})";
    Reload(router, json);
    trace.Clear();
    Reload(router, json);
    EXPECT_TRUE(trace.Texts(5).empty());
    EXPECT_EQ(router.GetAreaIds(), (Ids{0}));
}

TEST_F(DcOspfRouterTest, DisablingRemovesEveryArea) {
    DcOspfv2Router router(8);
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [{"area": 0}, {"area": 1}]}})");
    Reload(router, R"({"OSPFV2": {"enabled": 0, "AREAS": [{"area": 0}, {"area": 1}]}})");
    EXPECT_EQ(router.GetAreaCount(), 0u);
    EXPECT_TRUE(router.GetConfigLists().empty());
}

TEST_F(DcOspfRouterTest, DroppingTheSectionRemovesEveryArea) {
    DcOspfv2Router router(8);
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [{"area": 0}]}})");
    Reload(router, R"({"vid": 8})");
    EXPECT_EQ(router.GetAreaCount(), 0u);
    EXPECT_FALSE(router.IsEnabled());
}

TEST_F(DcOspfRouterTest, AreaRecordWithoutAreaIdIsIgnored) {
    DcOspfv2Router router(8);
    Reload(router, R"({"OSPFV2": {"enabled": 1, "AREAS": [{"stub": 1}, {"area": 3}]}})");
    EXPECT_EQ(router.GetAreaIds(), (Ids{3}));
}

TEST_F(DcOspfRouterTest, AreaOperations) {
    DcOspfv3Router router(8);
    EXPECT_TRUE(router.AddArea(1, false));
    EXPECT_TRUE(router.HasArea(1));
    EXPECT_FALSE(router.IsAreaBorderRouter()) << "no backbone";
    EXPECT_TRUE(router.AddArea(1, true));
    EXPECT_TRUE(router.IsStubArea(1));
    EXPECT_TRUE(router.SetAreaStub(1, false));
    EXPECT_FALSE(router.IsStubArea(1));
    EXPECT_FALSE(router.SetAreaStub(2, true));
    EXPECT_FALSE(router.AttachInterface(2, 100)) << "unknown area";
    EXPECT_TRUE(router.AttachInterface(1, 100));
    EXPECT_TRUE(router.AddArea(0, false));
    EXPECT_TRUE(router.IsAreaBorderRouter());
    EXPECT_TRUE(router.AttachInterface(0, 100)) << "moves the interface";
    EXPECT_EQ(Interfaces(router, 1), Ids{});
    EXPECT_EQ(Interfaces(router, 0), (Ids{100}));
    EXPECT_TRUE(router.DetachInterface(100));
    EXPECT_FALSE(router.DetachInterface(100));
    EXPECT_FALSE(router.GetInterfaceArea(100, nullptr));
    EXPECT_EQ(router.GetArea(9), nullptr);
    EXPECT_TRUE(router.RemoveArea(1));
    EXPECT_FALSE(router.RemoveArea(1));
    router.ClearAreas();
    EXPECT_EQ(router.GetAreaCount(), 0u);
}

}  // namespace
}  // namespace Zavrel
