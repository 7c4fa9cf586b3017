// The protocol router base: status, interfaces, reload into per-source
// bundles of configuration lists, event fan-out, and the socket registry.
#include "routing/DcRouterBase.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/DCLConfigListTestSupport.h"
#include "platform/Options.h"
#include "routing/DcConfigLists.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::CommitLog;
using test::TestList;
using Lines = std::vector<std::string>;

// A protocol object that records what the router base asks of it.
class RecordingProto : public DcProtoInterfaceBase {
public:
    explicit RecordingProto(Lines* calls) : DcProtoInterfaceBase(0, PROTO_NONE), m_calls(calls) {}
    ~RecordingProto() override { m_calls->push_back("proto deleted"); }

    void ApplyOptions(const OptionsNode& section, const string& source,
                      DclConfigObject::OptionType type) override {
        m_calls->push_back("apply " + std::string(source.c_str()) + " " + std::to_string(type) +
                           " " + std::string(section.GetAsString("tag").c_str()));
    }
    void DeleteOptions(const string& source, DclConfigObject::OptionType type) override {
        m_calls->push_back("delete " + std::string(source.c_str()) + " " + std::to_string(type));
    }
    bool IsEnabled() const override { return enabled; }
    bool IsReady() const override { return ready; }
    bool IsReady(unsigned int ifIndex) const override { return ifIndex == readyIf; }
    void InterfaceStatusChange(unsigned int ifIndex, unsigned int status) override {
        m_calls->push_back("status " + std::to_string(ifIndex) + " " + std::to_string(status));
    }
    void AddressChange(unsigned int ifIndex, const Ip4Addr& address) override {
        m_calls->push_back("address " + std::to_string(ifIndex) + " " +
                           std::string(address.ToString().c_str()));
    }

    bool enabled = true;
    bool ready = false;
    unsigned int readyIf = 0;

private:
    Lines* m_calls;
};

// A protocol object that is not an interface object.
class PlainProto : public DcProtoConfigBase {
public:
    explicit PlainProto(Lines* calls) : m_calls(calls) {}
    void ApplyOptions(const OptionsNode&, const string& source,
                      DclConfigObject::OptionType) override {
        m_calls->push_back("plain apply " + std::string(source.c_str()));
    }
    void DeleteOptions(const string& source, DclConfigObject::OptionType) override {
        m_calls->push_back("plain delete " + std::string(source.c_str()));
    }

private:
    Lines* m_calls;
};

// A router whose bundles hold one TestList (option key "ITEMS").
class ListRouter : public DcRouterBase {
public:
    ListRouter(unsigned short vid, DcProtoConfigBase* proto, CommitLog* log)
        : DcRouterBase("ROUTER", vid, proto), m_log(log) {}
    bool CreateConfigList(DcConfigLists& lists) override {
        ++created;
        if (refuse) {
            return false;
        }
        lists.Add(new TestList(*this, m_log));
        return true;
    }
    bool refuse = false;
    int created = 0;

private:
    CommitLog* m_log;
};

class RecordingSockets : public DcSckInterface {
public:
    void RegisterSocket(int fd, int kind, int arg) override {
        calls.push_back("register " + std::to_string(fd) + " " + std::to_string(kind) + " " +
                        std::to_string(arg));
    }
    void UnregisterSocket(int fd, int arg) override {
        calls.push_back("unregister " + std::to_string(fd) + " " + std::to_string(arg));
    }
    void ChangeSocketMask(int fd, int kind) override {
        calls.push_back("mask " + std::to_string(fd) + " " + std::to_string(kind));
    }
    Lines calls;
};

class DcRouterBaseTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        proto = new RecordingProto(&calls);
        router = new ListRouter(5, proto, &log);
    }
    void TearDown() override {
        delete router;
        RecordingStackEnv::TearDown();
    }

    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    Options options;
    Lines calls;
    CommitLog log;
    RecordingProto* proto = nullptr;
    ListRouter* router = nullptr;
};

TEST_F(DcRouterBaseTest, ConstructorSetsNameVlanDisplayIdAndStatusZero) {
    EXPECT_EQ(router->GetName(), "ROUTER");
    EXPECT_EQ(router->GetVlan(), 5);
    EXPECT_EQ(router->GetDisplayId(), "ROUTER:5");
    EXPECT_EQ(router->GetStatus(), DcProtoInterfaceBase::CONFIG_DISABLED);
    EXPECT_EQ(router->GetInterface(), proto);
    EXPECT_EQ(proto->GetRouter(), router) << "the protocol object is bound to its router";
}

TEST_F(DcRouterBaseTest, WithoutInterfaceObjectEnabledAndReadyFollowTheStatus) {
    ListRouter plain(3, nullptr, &log);
    EXPECT_FALSE(plain.IsEnabled());
    EXPECT_FALSE(plain.IsReady());
    plain.SetStatus(DcProtoInterfaceBase::CONFIG_ENABLED);
    EXPECT_TRUE(plain.IsEnabled());
    EXPECT_FALSE(plain.IsReady());
    plain.SetStatus("ignored", DcProtoInterfaceBase::CONFIG_READY);
    EXPECT_TRUE(plain.IsEnabled());
    EXPECT_TRUE(plain.IsReady());
    EXPECT_EQ(plain.GetInterface(), nullptr);
}

TEST_F(DcRouterBaseTest, WithInterfaceObjectEnabledAndReadyAskIt) {
    router->SetStatus(DcProtoInterfaceBase::CONFIG_DISABLED);
    proto->enabled = true;
    proto->ready = true;
    EXPECT_TRUE(router->IsEnabled());
    EXPECT_TRUE(router->IsReady());
    proto->enabled = false;
    proto->ready = false;
    router->SetStatus(DcProtoInterfaceBase::CONFIG_READY);
    EXPECT_FALSE(router->IsEnabled());
    EXPECT_FALSE(router->IsReady());
}

TEST_F(DcRouterBaseTest, SetInterfaceStatusZeroOnUnknownIndexChangesNothing) {
    router->SetInterfaceStatus(7, DcProtoInterfaceBase::IF_REMOVED);
    EXPECT_FALSE(router->IsEnabled(7));
    EXPECT_TRUE(router->GetInterfaces().empty());
}

TEST_F(DcRouterBaseTest, InterfaceMarkedNotReadyIsEnabledButNotReady) {
    ListRouter plain(3, nullptr, &log);
    plain.SetInterfaceStatus(7, DcProtoInterfaceBase::IF_DOWN);
    EXPECT_TRUE(plain.IsEnabled(7));
    EXPECT_FALSE(plain.IsReady(7));
    plain.SetInterfaceStatus(7, DcProtoInterfaceBase::IF_UP);
    EXPECT_TRUE(plain.IsReady(7));
    plain.SetInterfaceStatus(8, static_cast<DcProtoInterfaceBase::IfStatus>(9));
    EXPECT_TRUE(plain.IsReady(8)) << "any status but 0 and 1 means ready";
    plain.SetInterfaceStatus(7, DcProtoInterfaceBase::IF_REMOVED);
    EXPECT_FALSE(plain.IsEnabled(7));
    EXPECT_FALSE(plain.IsReady(7));
}

TEST_F(DcRouterBaseTest, InterfaceReadinessAsksTheInterfaceObject) {
    router->SetInterfaceStatus(7, DcProtoInterfaceBase::IF_UP);
    proto->readyIf = 9;
    EXPECT_FALSE(router->IsReady(7));
    EXPECT_TRUE(router->IsReady(9));
    EXPECT_TRUE(router->IsEnabled(7));
    EXPECT_FALSE(router->IsEnabled(9)) << "enabled interfaces are the router's own map";
}

TEST_F(DcRouterBaseTest, ReloadAppliesTheSectionAndParsesItIntoANewBundle) {
    router->Reload(Load(R"({"ROUTER": {"tag": "t1", "ITEMS": [{"id": 1, "value": 10}]}})"),
                   "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"apply vlan.json 0 t1"}));
    EXPECT_EQ(router->created, 1);
    ASSERT_EQ(router->GetConfigLists().size(), 1u);
    const DcConfigLists* bundle = router->GetConfigLists().at("vlan.json");
    EXPECT_EQ(bundle->GetName(), "vlan.json");
    EXPECT_EQ(bundle->GetType(), DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(log.lines, (Lines{"create 1 v=10"}));

    log.lines.clear();
    router->Reload(Load(R"({"ROUTER": {"tag": "t2", "ITEMS": [{"id": 1, "value": 11}]}})"),
                   "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(router->created, 1) << "the source's bundle is reused";
    EXPECT_EQ(log.lines, (Lines{"update 1 v=11"}));
}

TEST_F(DcRouterBaseTest, ReloadSectionDoesWhatReloadDoesWithTheRoutersMember) {
    const OptionsNode entry =
        Load(R"({"OTHER": {"tag": "no"}, "ROUTER": {"tag": "t1", "ITEMS": [{"id": 3}]}})");
    router->ReloadSection(entry["ROUTER"], "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"apply vlan.json 0 t1"}));
    EXPECT_EQ(log.lines, (Lines{"create 3 v=0"}));

    calls.clear();
    log.lines.clear();
    router->ReloadSection(entry["MISSING"], "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"delete vlan.json 0"}));
    EXPECT_EQ(log.lines, (Lines{"destroy 3"}));
    EXPECT_TRUE(router->GetConfigLists().empty());
}

TEST_F(DcRouterBaseTest, EachSourceGetsItsOwnBundle) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "a.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 2}]}})"), "b.json",
                   DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_EQ(router->GetConfigLists().size(), 2u);
    EXPECT_EQ(log.lines, (Lines{"create 1 v=0", "create 2 v=0"}));
}

TEST_F(DcRouterBaseTest, ReloadWithoutTheRoutersSectionDeletesThatSourcesOptions) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    calls.clear();
    log.lines.clear();
    router->Reload(Load(R"({"OTHER": {}})"), "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"delete vlan.json 0"}));
    EXPECT_EQ(log.lines, (Lines{"destroy 1"}));
    EXPECT_TRUE(router->GetConfigLists().empty());
}

TEST_F(DcRouterBaseTest, ReloadWithEmptySectionDeletesThatSourcesOptions) {
    router->Reload(Load(R"({"ROUTER": {}})"), "vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"delete vlan.json 0"}));
    EXPECT_EQ(router->created, 0);
}

TEST_F(DcRouterBaseTest, ReloadWhileDisabledRemovesTheBundleAndCreatesNone) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    log.lines.clear();
    proto->enabled = false;
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}, {"id": 2}]}})"), "vlan.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(log.lines, (Lines{"destroy 1"}));
    EXPECT_TRUE(router->GetConfigLists().empty());
    EXPECT_EQ(router->created, 1);

    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "other.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(router->GetConfigLists().empty());
    EXPECT_EQ(router->created, 1);
}

TEST_F(DcRouterBaseTest, RefusedBundleIsNotKeptAndTheNextReloadTriesAgain) {
    router->refuse = true;
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(router->GetConfigLists().empty());
    EXPECT_TRUE(log.lines.empty());
    router->refuse = false;
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(router->created, 2);
    EXPECT_EQ(log.lines, (Lines{"create 1 v=0"}));
}

TEST_F(DcRouterBaseTest, ReloadWithNonInterfaceProtocolOnlyAppliesTheOptions) {
    Lines plainCalls;
    ListRouter plain(3, new PlainProto(&plainCalls), &log);
    plain.Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                 DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(plainCalls, (Lines{"plain apply vlan.json"}));
    EXPECT_EQ(plain.created, 0);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DcRouterBaseTest, ReloadWithoutProtocolObjectDoesNothing) {
    ListRouter bare(3, nullptr, &log);
    EXPECT_TRUE(bare.Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "vlan.json",
                            DclConfigObject::OPTION_TYPE_VLAN));
    EXPECT_EQ(bare.created, 0);
    bare.DeleteOptions("vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DcRouterBaseTest, DeleteOptionsCallsTheProtocolAndDestroysTheSourcesBundle) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "a.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 2}]}})"), "b.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    calls.clear();
    log.lines.clear();
    router->DeleteOptions("a.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(calls, (Lines{"delete a.json 0"}));
    EXPECT_EQ(log.lines, (Lines{"destroy 1"}));
    EXPECT_EQ(router->GetConfigLists().size(), 1u);
    EXPECT_EQ(router->GetConfigLists().count("b.json"), 1u);

    calls.clear();
    router->DeleteOptions("unknown.json", DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_EQ(calls, (Lines{"delete unknown.json 1"}));
}

TEST_F(DcRouterBaseTest, InterfaceStatusChangeGoesToTheProtocolThenEveryListBySourceName) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 2}]}})"), "b.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "a.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    calls.clear();
    log.lines.clear();
    router->ProcessInterfaceStatusChange(12, 2);
    EXPECT_EQ(calls, (Lines{"status 12 2"}));
    EXPECT_EQ(log.lines, (Lines{"if 12 2", "if 12 2"}));
}

TEST_F(DcRouterBaseTest, InterfaceStatusChangeWithoutInterfaceObjectDoesNothing) {
    Lines plainCalls;
    ListRouter plain(3, new PlainProto(&plainCalls), &log);
    plain.ProcessInterfaceStatusChange(12, 2);
    plain.ProcessIPAddressChange(12, Ip4Addr(10, 0, 0, 1));
    EXPECT_TRUE(plainCalls.empty());
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DcRouterBaseTest, AddressChangeGoesToTheProtocolOnly) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}]}})"), "a.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    calls.clear();
    log.lines.clear();
    router->ProcessIPAddressChange(12, Ip4Addr(10, 0, 0, 1));
    EXPECT_EQ(calls, (Lines{"address 12 10.0.0.1"}));
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DcRouterBaseTest, DestructorDeletesTheProtocolThenClearsBundlesWithoutCommits) {
    router->Reload(Load(R"({"ROUTER": {"ITEMS": [{"id": 1}, {"id": 2}]}})"), "a.json",
                   DclConfigObject::OPTION_TYPE_VLAN);
    log.lines.clear();
    calls.clear();
    delete router;
    router = nullptr;
    EXPECT_EQ(calls, (Lines{"proto deleted"}));
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(log.deleted, 2);
}

TEST_F(DcRouterBaseTest, FormatIpv4AddrGivesDottedText) {
    const unsigned char bytes[4] = {192, 168, 0, 17};
    EXPECT_EQ(DcRouterBase::FormatIpv4Addr(bytes), "192.168.0.17");
}

TEST_F(DcRouterBaseTest, SocketRequestsGoToTheApplicationsRegistry) {
    RecordingSockets sockets;
    DcRouterBase::SocketInitialize(&sockets);
    DcRouterBase::SetSckDescriptor(11, 1, 7);
    DcRouterBase::ChangeWorkMask(11, 3);
    DcRouterBase::RemoveSckDescriptor(11, 7);
    EXPECT_EQ(sockets.calls, (Lines{"register 11 1 7", "mask 11 3", "unregister 11 7"}));
    EXPECT_EQ(DcRouterBase::m_sck_interface, &sockets);
    DcRouterBase::SocketInitialize(nullptr);
}

TEST_F(DcRouterBaseTest, SocketRequestsWithoutRegistryDoNothing) {
    DcRouterBase::SocketInitialize(nullptr);
    DcRouterBase::SetSckDescriptor(11, 1, 7);
    DcRouterBase::RemoveSckDescriptor(11, 7);
    DcRouterBase::ChangeWorkMask(11, 3);
    EXPECT_EQ(DcRouterBase::GetSckInterface(), nullptr);
}

TEST_F(DcRouterBaseTest, InitializeStoresTheIpInterface) {
    class AppIp : public DcIpInterface {};
    AppIp ip;
    DcRouterBase::Initialize(&ip);
    EXPECT_EQ(DcRouterBase::m_ip_interface, &ip);
    DcRouterBase::Initialize(nullptr);
}

}  // namespace
}  // namespace Zavrel
