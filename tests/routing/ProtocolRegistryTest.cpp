// ProtocolRegistry: the library reaches the protocol libraries only through
// the registry, and says so where an entry is missing.
#include "routing/ProtocolRegistry.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/CapturingConsole.h"
#include "platform/Options.h"
#include "protocols/DcBgpRouter.h"
#include "protocols/DcMulticastRouter.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "protocols/DcRouterConsole.h"
#include "protocols/RegisterProtocols.h"
#include "protocols/RipngInterface.h"
#include "protocols/Ripv2Interface.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterMgr.h"
#include "support/testsupport/RouterMgrFixture.h"

namespace Zavrel {
namespace {

// Empties the registry for the test and puts back what was registered.
class EmptyRegistryTest : public test::RouterMgrFixture {
protected:
    void SetUp() override {
        test::RouterMgrFixture::SetUp();
        m_saved = ProtocolRegistry::Get();
        ProtocolRegistry::Clear();
    }
    void TearDown() override {
        ProtocolRegistry::Register(m_saved);
        test::RouterMgrFixture::TearDown();
    }

    void RunIp4(std::vector<std::string> words) {
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        const DcRouterMgr::CmdHandlerMap& table = mgr->GetIp4ConCmdHandlers();
        auto found = table.find(string(words.front().c_str()));
        ASSERT_NE(found, table.end()) << words.front();
        found->second.Run(nullptr, &console, static_cast<int>(words.size()), argv.data());
    }

    CapturingConsole console{5};

private:
    ProtocolRegistry::Entries m_saved;
};

TEST(ProtocolRegistryTest, RegisterProtocolsEntersEveryProtocolLibraryPiece) {
    const ProtocolRegistry::Entries saved = ProtocolRegistry::Get();
    ProtocolRegistry::Clear();
    RegisterProtocols();
    const ProtocolRegistry::Entries& entries = ProtocolRegistry::Get();

    // The routers the protocol libraries make; the RIP routers are the
    // library's own and take only their protocol objects from there.
    for (int type : {DcRouterMgr::BGP, DcRouterMgr::OSPFv2, DcRouterMgr::OSPFv3, DcRouterMgr::IGMP,
                     DcRouterMgr::MLD}) {
        EXPECT_NE(entries.routers[type], nullptr) << type;
        EXPECT_EQ(entries.protos[type], nullptr) << type;
    }
    for (int type : {DcRouterMgr::RIPv2, DcRouterMgr::RIPng}) {
        EXPECT_EQ(entries.routers[type], nullptr) << type;
        EXPECT_NE(entries.protos[type], nullptr) << type;
    }

    DcRouterBase* bgp = ProtocolRegistry::Router(DcRouterMgr::BGP)(7);
    EXPECT_NE(dynamic_cast<DcBgpRouter*>(bgp), nullptr);
    EXPECT_EQ(bgp->GetVlan(), 7u);
    delete bgp;
    DcRouterBase* mld = ProtocolRegistry::Router(DcRouterMgr::MLD)(7);
    ASSERT_NE(dynamic_cast<DcMulticastRouter*>(mld), nullptr);
    EXPECT_EQ(static_cast<DcMulticastRouter*>(mld)->GetProtocol(), DcMulticastRouter::PROTOCOL_MLD);
    delete mld;
    DcProtoConfigBase* rip = ProtocolRegistry::MakeProto(DcRouterMgr::RIPv2);
    EXPECT_NE(dynamic_cast<Ripv2Interface*>(rip), nullptr);
    delete rip;
    DcProtoConfigBase* ripng = ProtocolRegistry::MakeProto(DcRouterMgr::RIPng);
    EXPECT_NE(dynamic_cast<RipngInterface*>(ripng), nullptr);
    delete ripng;

    ASSERT_EQ(entries.ip4_handlers.size(), 3u);
    EXPECT_STREQ(entries.ip4_handlers[0].name, "bgp");
    EXPECT_STREQ(entries.ip4_handlers[1].name, "ospf");
    EXPECT_STREQ(entries.ip4_handlers[2].name, "igmp");
    ASSERT_EQ(entries.ip6_handlers.size(), 2u);
    EXPECT_STREQ(entries.ip6_handlers[0].name, "bgp");
    EXPECT_STREQ(entries.ip6_handlers[1].name, "ospf");
    EXPECT_EQ(entries.show_router, &DcRouterConsole::Show);
    EXPECT_NE(entries.multicast_table, nullptr);

    ProtocolRegistry::Register(saved);
}

TEST(ProtocolRegistryTest, TypesOutsideTheTableHaveNoEntry) {
    EXPECT_EQ(ProtocolRegistry::Router(-1), nullptr);
    EXPECT_EQ(ProtocolRegistry::Router(ProtocolRegistry::TYPE_COUNT), nullptr);
    EXPECT_EQ(ProtocolRegistry::MakeProto(-1), nullptr);
    EXPECT_EQ(ProtocolRegistry::MakeProto(ProtocolRegistry::TYPE_COUNT), nullptr);
}

TEST_F(EmptyRegistryTest, AVlanIsNotCreatedWithoutItsRoutersAndEachMissingOneIsNamed) {
    Options options;
    EXPECT_FALSE(mgr->CreateVlan(5, options.Root(), DclConfigObject::OPTION_TYPE_VLAN).second);
    EXPECT_EQ(mgr->GetVlans().count(5), 0u);
    const std::vector<std::string> errors = trace.Texts(0);
    // Every missing router is named, in protocol order, and nothing of the
    // VLAN is made: no RTM instance either.
    ASSERT_EQ(errors.size(), 5u);
    EXPECT_EQ(errors[0], "No BGP4+ router is registered\n");
    EXPECT_EQ(errors[1], "No OSPFv2 router is registered\n");
    EXPECT_EQ(errors[2], "No OSPFv3 router is registered\n");
    EXPECT_EQ(errors[3], "No IGMP router is registered\n");
    EXPECT_EQ(errors[4], "No MLD router is registered\n");
    EXPECT_TRUE(stack().Calls().empty());
}

TEST_F(EmptyRegistryTest, RipRoutersRunWithoutAProtocolObject) {
    DcRipv2Router rip(5);
    DcRipngRouter ripng(5);
    EXPECT_EQ(rip.GetProto(), nullptr);
    EXPECT_EQ(ripng.GetProto(), nullptr);
}

TEST_F(EmptyRegistryTest, RipCommandWithoutTheRouterPrinterEndsTheCommandSilently) {
    RunIp4({"rip"});
    EXPECT_EQ(console.All(), "");
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(EmptyRegistryTest, AManagerMadeWithoutProtocolsOffersOnlyTheLibrarysOwnWords) {
    DcRouterMgr::ResetForTests();
    DcRouterMgr* fresh = DcRouterMgr::GetInstance();
    ASSERT_NE(fresh, nullptr);
    std::vector<std::string> ip4;
    for (const auto& entry : fresh->GetIp4ConCmdHandlers()) {
        ip4.push_back(entry.first.c_str());
    }
    std::vector<std::string> ip6;
    for (const auto& entry : fresh->GetIp6ConCmdHandlers()) {
        ip6.push_back(entry.first.c_str());
    }
    EXPECT_EQ(std::vector<std::string>({"protocol", "rip"}), ip4);
    EXPECT_EQ(std::vector<std::string>({"protocol", "rip"}), ip6);
    mgr = fresh;
}

TEST_F(EmptyRegistryTest, McastDatabaseWithoutTheTableCommandSaysItCannotRun) {
    RunIp4({"protocol", "mcast-database"});
    EXPECT_EQ(console.Output(), "Fail to parse mcast-database sub command.\n");
}

}  // namespace
}  // namespace Zavrel
