// RouterSystem: the whole system started for a program, its counters, and
// reloads through it.
#include "harness/RouterSystem.h"

#include <gtest/gtest.h>

#include "harness/SystemDriver.h"
#include "interfaces/DcInterfaceMgr.h"

namespace Zavrel {
namespace {

class RouterSystemTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(system.IsStarted());
        system.Run(500);
    }
    RouterSystem system;
};

TEST_F(RouterSystemTest, AFreshSystemHoldsNothing) {
    EXPECT_EQ(system.Count().ToString(),
              "vlans 0 items 0 parked 0 waiting 0 rows 0 interfaces 0 rtm 0");
}

TEST_F(RouterSystemTest, ARefusedDocumentSaysWhyAndChangesNothing) {
    std::string error;
    EXPECT_FALSE(system.Reload("{\"VLAN_CONFIGURATIONS\": [", "a.json", error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(system.Count(), RouterSystem::Counters());
}

TEST_F(RouterSystemTest, ReloadAndUnloadShowInTheCounters) {
    std::string error;
    ASSERT_TRUE(system.Reload(SystemDriver::Document(0, 5), "a.json", error)) << error;
    system.Run(2000);
    const RouterSystem::Counters loaded = system.Count();
    EXPECT_EQ(loaded.vlans, 3u);
    EXPECT_EQ(loaded.rtmInstances, 6u);  // an IPv4 and an IPv6 instance each
    EXPECT_EQ(loaded.cfgItems, 0u);      // every redistribution row confirmed
    system.Unload("a.json");
    system.Run(2000);
    const RouterSystem::Counters unloaded = system.Count();
    EXPECT_EQ(unloaded.vlans, 0u);
    EXPECT_EQ(unloaded.rtmInstances, 0u);
    // Deliberate: the redistribution rows to destroy wait for the instances
    // the delete took away.
    EXPECT_GT(unloaded.waitingItems, 0u);
    EXPECT_EQ(unloaded.cfgItems, unloaded.waitingItems);
}

TEST_F(RouterSystemTest, InterfacesShowInTheCounters) {
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    ASSERT_NE(interfaces, nullptr);
    interfaces->AddInterface(10, 100, "e10-100", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x18, 0, 1);
    interfaces->AddInterface(20, 100, "e20-100", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x18, 0, 1);
    EXPECT_EQ(system.Count().interfaces, 2u);
    interfaces->RemoveInterface(10, 100, "e10-100");
    EXPECT_EQ(system.Count().interfaces, 1u);
}

TEST_F(RouterSystemTest, ASecondReloadOfAnUnchangedDocumentAsksTheStackForNothing) {
    std::string error;
    const std::string document = SystemDriver::Document(1, 1);
    ASSERT_TRUE(system.Reload(document, "b.json", error)) << error;
    system.Run(2000);
    const uint64_t requests = RouterSystem::StackRequests();
    ASSERT_TRUE(system.Reload(document, "b.json", error)) << error;
    system.Run(2000);
    EXPECT_EQ(RouterSystem::StackRequests(), requests);
}

// Deliberate: a document that lists a VLAN twice applies both entries on
// every reload, so the VLAN's settings change twice and the stack is asked
// again each time.
TEST_F(RouterSystemTest, ADocumentListingAVlanTwiceAsksTheStackOnEveryReload) {
    std::string error;
    const std::string document =
        "{\"VLAN_CONFIGURATIONS\": [{\"vid\": 10, \"RTM\": {\"dead_rpm_timer\": 90}}, "
        "{\"vid\": 10}]}";
    ASSERT_TRUE(system.Reload(document, "a.json", error)) << error;
    system.Run(2000);
    const uint64_t requests = RouterSystem::StackRequests();
    ASSERT_TRUE(system.Reload(document, "a.json", error)) << error;
    system.Run(2000);
    EXPECT_GT(RouterSystem::StackRequests(), requests);
}

}  // namespace
}  // namespace Zavrel
