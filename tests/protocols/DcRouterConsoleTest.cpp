// The protocol routers' console handlers: what they print about the router
// of the console's VLAN.
#include "protocols/DcRouterConsole.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/Options.h"
#include "protocols/DcBgpRouter.h"
#include "protocols/DcMulticastRouter.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using Handler = void (*)(void*, DcConsole*, int, char**);

class DcRouterConsoleTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        manager = DcRouterMgr::GetInstance();
        ASSERT_NE(manager, nullptr);
        console.SetVlan(5);
    }

    void Configure(const char* json) {
        ASSERT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        manager->Reload(options, "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    }

    std::string Run(Handler handler, const char* word, const char* extra = nullptr) {
        console.Clear();
        std::string first = word;
        std::string second = extra != nullptr ? extra : "";
        char* argv[] = {&first[0], &second[0], nullptr};
        handler(nullptr, &console, extra != nullptr ? 2 : 1, argv);
        return console.Output();
    }

    static void Mld(void* context, DcConsole* console, int argc, char** argv) {
        DcMulticastRouter::ConsoleCommand(context, console, argc, argv, 41);
    }

    Options options;
    DcRouterMgr* manager = nullptr;
};

TEST_F(DcRouterConsoleTest, Ripv2ShowsStateRedistributionAndInterfaces) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5,
        "RIPV2": {"enabled": 1, "REDISTRIBUTION": {"connected": 0}}}]})");
    manager->ProcessInterfaceStatusChange(5, 100, 2);
    manager->ProcessInterfaceStatusChange(5, 101, 1);
    manager->ProcessIPAddressChange(5, 100, Ip4Addr(10, 0, 0, 1));
    EXPECT_EQ(Run(&DcRipv2Router::ConsoleCommand, "rip"),
              "RIPv2 in VLAN 5: Enabled\n"
              "RTM instance 5: not ready\n"
              "Redistribute: static ospf bgp\n"
              "Interface  State  Address\n"
              "100        Up     10.0.0.1\n"
              "101        Down   -\n");
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(DcRouterConsoleTest, RouterBecomesReadyWithItsRtmInstance) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "RIPV2": {"enabled": 1}}]})");
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_EQ(Run(&DcRipv2Router::ConsoleCommand, "rip"),
              "RIPv2 in VLAN 5: Ready\n"
              "RTM instance 5: ready\n"
              "Redistribute: static connected ospf bgp\n"
              "No interfaces\n");
}

TEST_F(DcRouterConsoleTest, DisabledRouterShowsItsDefaultProfile) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5}]})");
    EXPECT_EQ(Run(&DcOspfv2Router::ConsoleCommand, "ospf"),
              "OSPFv2 in VLAN 5: Disabled\n"
              "RTM instance 5: not ready\n"
              "Redistribute: static connected rip bgp\n"
              "No interfaces\n"
              "Areas: 0\n");
}

TEST_F(DcRouterConsoleTest, OspfShowsItsAreas) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "OSPFV3": {"enabled": 1,
        "REDISTRIBUTION": {"static": 0, "connected": 0, "rip": 0, "bgp": 0},
        "AREAS": [{"area": 0, "interfaces": [100, 101]}, {"area": 3, "stub": 1}]}}]})");
    EXPECT_EQ(Run(&DcOspfv3Router::ConsoleCommand, "ospf"),
              "OSPFv3 in VLAN 5: Enabled\n"
              "RTM instance 32773: not ready\n"
              "Redistribute: none\n"
              "No interfaces\n"
              "Areas: 2 (area border router)\n"
              "Area 0 Interfaces: 100 101\n"
              "Area 3 (stub) Interfaces:\n");
}

TEST_F(DcRouterConsoleTest, BgpShowsTheInstanceOfTheCommandsFamily) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "BGP": {"enabled": 1}}]})");
    DcRtmMgr::GetInstance()->SetRtmReady(5);
    EXPECT_EQ(Run(&DcBgpRouter::Ip4ConsoleCommand, "bgp"),
              "BGP4+ in VLAN 5: Ready\n"
              "RTM instance 5: ready\n"
              "Redistribute: static connected rip ospf\n"
              "No interfaces\n");
    EXPECT_EQ(Run(&DcBgpRouter::Ip6ConsoleCommand, "bgp"),
              "BGP4+ in VLAN 5: Ready\n"
              "RTM instance 32773: not ready\n"
              "Redistribute: static connected rip ospf\n"
              "No interfaces\n");
}

TEST_F(DcRouterConsoleTest, IgmpShowsMulticastInterfacesAndGroups) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "IGMP": {"enabled": 1}}]})");
    manager->JoinNetwork(5, 100, true);
    manager->ProcessInterfaceStatusChange(5, 101, 1);
    auto* igmp = dynamic_cast<DcMulticastRouter*>(manager->GetDcRouterByVID(5, DcRouterMgr::IGMP));
    ASSERT_NE(igmp, nullptr);
    ASSERT_TRUE(igmp->AddGroup(100, "239.1.1.1"));
    ASSERT_TRUE(igmp->ConfigureInterface(101, false));
    EXPECT_EQ(Run(&DcMulticastRouter::Ip4ConsoleCommand, "igmp"),
              "IGMP in VLAN 5: Enabled\n"
              "RTM instance 5: not ready\n"
              "Interface  State  Address\n"
              "101        Down   -\n"
              "Interface  State  Querier\n"
              "100        Up     yes\n"
              "101        Down   no\n"
              "Group                                    Interface\n"
              "239.1.1.1                                100\n");
}

TEST_F(DcRouterConsoleTest, MldWithoutInterfacesOrGroups) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "MLD": {"enabled": 1}}]})");
    EXPECT_EQ(Run(&Mld, "mld"),
              "MLD in VLAN 5: Enabled\n"
              "RTM instance 32773: not ready\n"
              "No interfaces\n"
              "No multicast interfaces\n"
              "No groups\n");
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(DcRouterConsoleTest, UnknownVlanHasNoRouter) {
    console.SetVlan(77);
    EXPECT_EQ(Run(&DcOspfv2Router::ConsoleCommand, "ospf"), "No OSPFv2 router in VLAN 77\n");
    EXPECT_EQ(Run(&DcMulticastRouter::Ip4ConsoleCommand, "igmp"), "No IGMP router in VLAN 77\n");
    EXPECT_EQ(console.EndCount(), 1) << "each run ends its command";
}

TEST_F(DcRouterConsoleTest, FurtherWordsPrintTheUsage) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5}]})");
    EXPECT_EQ(Run(&DcBgpRouter::Ip4ConsoleCommand, "bgp", "summary"), "Usage: ip bgp\n");
    EXPECT_EQ(Run(&DcBgpRouter::Ip6ConsoleCommand, "bgp", "x"), "Usage: ip6 bgp\n");
    EXPECT_EQ(Run(&DcOspfv2Router::ConsoleCommand, "ospf", "x"), "Usage: ip ospf\n");
    EXPECT_EQ(Run(&DcOspfv3Router::ConsoleCommand, "ospf", "x"), "Usage: ip6 ospf\n");
    EXPECT_EQ(Run(&DcRipv2Router::ConsoleCommand, "rip", "x"), "Usage: ip rip\n");
    EXPECT_EQ(Run(&DcMulticastRouter::Ip4ConsoleCommand, "igmp", "x"), "Usage: ip igmp\n");
    EXPECT_EQ(Run(&Mld, "mld", "x"), "Usage: ip6 mld\n");
    EXPECT_EQ(console.EndCount(), 1) << "each run ends its command";
}

TEST_F(DcRouterConsoleTest, RipngHandlerDoesNothing) {
    Configure(R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "RIPNG": {"enabled": 1}}]})");
    EXPECT_EQ(Run(&DcRipngRouter::ConsoleCommand, "rip"), "");
    EXPECT_EQ(console.EndCount(), 0);
}

TEST_F(DcRouterConsoleTest, NullConsoleIsIgnored) {
    char word[] = "bgp";
    char* argv[] = {word, nullptr};
    DcBgpRouter::Ip4ConsoleCommand(nullptr, nullptr, 1, argv);
    EXPECT_TRUE(trace.Texts(0).empty());
}

TEST_F(DcRouterConsoleTest, HandlersAreTheManagersForwarders) {
    const auto& ip4 = manager->GetIp4ConCmdHandlers();
    const auto& ip6 = manager->GetIp6ConCmdHandlers();
    EXPECT_EQ(ip4.at("bgp").GetHandler(), &DcBgpRouter::Ip4ConsoleCommand);
    EXPECT_EQ(ip4.at("ospf").GetHandler(), &DcOspfv2Router::ConsoleCommand);
    EXPECT_EQ(ip4.at("rip").GetHandler(), &DcRipv2Router::ConsoleCommand);
    EXPECT_EQ(ip4.at("igmp").GetHandler(), &DcMulticastRouter::Ip4ConsoleCommand);
    EXPECT_EQ(ip6.at("bgp").GetHandler(), &DcBgpRouter::Ip6ConsoleCommand);
    EXPECT_EQ(ip6.at("rip").GetHandler(), &DcRipngRouter::ConsoleCommand);
    EXPECT_EQ(ip6.at("ospf").GetHandler(), &DcOspfv3Router::ConsoleCommand);
}

}  // namespace
}  // namespace Zavrel
