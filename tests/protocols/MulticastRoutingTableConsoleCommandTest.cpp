// The multicast routing table command: the groups a VLAN's multicast router
// holds, filtered by VLAN and group.
#include "protocols/MulticastRoutingTableConsoleCommand.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/Options.h"
#include "protocols/DcMulticastRouter.h"
#include "routing/DcRouterMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class MulticastRoutingTableConsoleCommandTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        manager = DcRouterMgr::GetInstance();
        ASSERT_NE(manager, nullptr);
        ASSERT_TRUE(options.LoadFromText(
            R"({"VLAN_CONFIGURATIONS": [{"vid": 5, "IGMP": {"enabled": 1}, "MLD": {"enabled": 1}},
                                        {"vid": 6, "IGMP": {"enabled": 1}}]})"));
        manager->Reload(options, "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
        igmp = dynamic_cast<DcMulticastRouter*>(manager->GetDcRouterByVID(5, DcRouterMgr::IGMP));
        mld = dynamic_cast<DcMulticastRouter*>(manager->GetDcRouterByVID(5, DcRouterMgr::MLD));
        ASSERT_NE(igmp, nullptr);
        ASSERT_NE(mld, nullptr);
        igmp->AddInterface(100, true);
        igmp->AddInterface(101, false);
        igmp->AddGroup(100, "239.1.1.1");
        igmp->AddGroup(101, "239.1.1.1");
        igmp->AddGroup(101, "224.0.1.20");
        mld->AddInterface(100, false);
        mld->AddGroup(100, "ff05::1:3");
        console.SetVlan(5);
    }

    // Runs the command with the words; true when it started.
    bool Run(unsigned short family, std::vector<std::string> words) {
        console.Clear();
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        argv.push_back(nullptr);
        auto* command = new MulticastRoutingTableConsoleCommand(&console, family);
        if (!command->Parse(static_cast<int>(words.size()), argv.data())) {
            delete command;
            return false;
        }
        return true;
    }

    static std::string Header(unsigned int vlan, const char* protocol) {
        return "Multicast routing table of VLAN " + std::to_string(vlan) + " (" + protocol +
               ")\nGroup                                    Interface  Querier\n";
    }

    Options options;
    DcRouterMgr* manager = nullptr;
    DcMulticastRouter* igmp = nullptr;
    DcMulticastRouter* mld = nullptr;
};

TEST_F(MulticastRoutingTableConsoleCommandTest, ListsTheGroupsOfTheConsolesVlan) {
    EXPECT_TRUE(Run(0, {}));
    EXPECT_EQ(console.Output(), Header(5, "IGMP") +
                                    "224.0.1.20                               101        no\n"
                                    "239.1.1.1                                100        yes\n"
                                    "239.1.1.1                                101        no\n"
                                    "End of Table\n");
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(MulticastRoutingTableConsoleCommandTest, GroupWordKeepsOneGroup) {
    EXPECT_TRUE(Run(0, {"group", "239.1.1.1"}));
    EXPECT_EQ(console.Output(), Header(5, "IGMP") +
                                    "239.1.1.1                                100        yes\n"
                                    "239.1.1.1                                101        no\n"
                                    "End of Table\n");
}

TEST_F(MulticastRoutingTableConsoleCommandTest, VrfWordChoosesTheVlan) {
    EXPECT_TRUE(Run(0, {"vrf", "6"}));
    EXPECT_EQ(console.Output(), Header(6, "IGMP") + "End of Table\n");
    EXPECT_TRUE(Run(0, {"vr", "9", "gr", "239.1.1.1"}));
    EXPECT_EQ(console.Output(),
              "Multicast routing table of VLAN 9 (IGMP)\nNo multicast router in VLAN 9\n"
              "End of Table\n");
}

TEST_F(MulticastRoutingTableConsoleCommandTest, Family41ListsTheMldGroups) {
    EXPECT_TRUE(Run(41, {"group", "ff05::1:3"}));
    EXPECT_EQ(console.Output(), Header(5, "MLD") +
                                    "ff05::1:3                                100        no\n"
                                    "End of Table\n");
}

TEST_F(MulticastRoutingTableConsoleCommandTest, BadWordsAreRefusedWithTheUsage) {
    EXPECT_FALSE(Run(0, {"group", "10.1.1.1"}));
    EXPECT_EQ(console.Output(),
              "Invalid group address 10.1.1.1\n"
              "Usage: mcast-database [vrf <vid>] [group <address>]\n");
    EXPECT_FALSE(Run(0, {"vrf", "x"}));
    EXPECT_EQ(console.Output(),
              "Invalid VLAN ID x\nUsage: mcast-database [vrf <vid>] [group <address>]\n");
    EXPECT_FALSE(Run(0, {"group", "239.1.1.1", "extra"}));
    EXPECT_EQ(console.Output(), "Usage: mcast-database [vrf <vid>] [group <address>]\n");
    EXPECT_FALSE(Run(0, {"group"}));
    EXPECT_FALSE(Run(41, {"group", "239.1.1.1"}));
    EXPECT_EQ(console.EndCount(), 0);
}

TEST_F(MulticastRoutingTableConsoleCommandTest, ManagersMcastDatabaseCommandRunsIt) {
    std::vector<std::string> words = {"protocol", "mcast-database", "group", "224.0.1.20"};
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(&word[0]);
    }
    console.Clear();
    DcRouterMgr::ConCmdIp4Rtm(nullptr, &console, static_cast<int>(argv.size()), argv.data());
    EXPECT_EQ(console.Output(), Header(5, "IGMP") +
                                    "224.0.1.20                               101        no\n"
                                    "End of Table\n");
}

}  // namespace
}  // namespace Zavrel
