// What the protocol routers redistribute: enabling, disabling and profile
// changes become redistribution items of the RTM manager, one per source
// protocol whose effective state changed.
#include <gtest/gtest.h>

#include <string>

#include "cfg/CfgSched.h"
#include "platform/Options.h"
#include "protocols/DcBgpRouter.h"
#include "protocols/DcMulticastRouter.h"
#include "protocols/DcOspfv2Router.h"
#include "protocols/DcOspfv3Router.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

class DcProtoInterfaceBaseRedistributionTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        sched = &DcRouterMgr::GetInstance()->GetCfgSched();
    }

    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }
    void Reload(DcRouterBase& router, const char* json, const char* source = "vlan.json") {
        router.Reload(Load(json), source, DclConfigObject::OPTION_TYPE_VLAN);
    }

    // The queued redistribution items, one line each:
    // "<instance> <src> -> <dst> <row status> <admin status>".
    std::string Queued() {
        console.Clear();
        sched->Print(&console);
        std::string out;
        const std::string& text = console.Output();
        size_t pos = 0;
        while ((pos = text.find("RedistItem: ", pos)) != std::string::npos) {
            const size_t end = text.find('\n', pos);
            out += text.substr(pos, end - pos) + "\n";
            pos = end;
        }
        return out;
    }

    static std::string Line(unsigned int instance, const char* dst, const char* src, bool active) {
        return "RedistItem: Instance(" + std::to_string(instance) + ") Dest(" + dst + ") Src(" +
               src + ") Priority(0x0) RowStatus(" + (active ? "Active" : "Destroy") +
               ") AdminStatus(" + (active ? "1" : "2") + ") ActionState(New) Reason(noError)\n";
    }

    Options options;
    CfgSched* sched = nullptr;
};

TEST_F(DcProtoInterfaceBaseRedistributionTest, EnablingRipv2RequestsEveryOtherSource) {
    DcRipv2Router rip(5);
    Reload(rip, R"({"RIPV2": {"enabled": 1}})");
    EXPECT_EQ(Queued(), Line(5, "0x80000", "0x30000", true) + Line(5, "0x80000", "0x20000", true) +
                            Line(5, "0x80000", "0xd0000", true) +
                            Line(5, "0x80000", "0xe0000", true))
        << "a protocol does not redistribute its own routes into itself";
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, ProfileOfTheSectionLimitsTheSources) {
    DcRipv2Router rip(5);
    Reload(rip, R"({"RIPV2": {"enabled": 1, "REDISTRIBUTION": {"connected": 0, "bgp": 0}}})");
    EXPECT_EQ(Queued(), Line(5, "0x80000", "0x30000", true) + Line(5, "0x80000", "0xd0000", true));
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, ProfileChangeRequestsOnlyTheChangedSources) {
    DcOspfv2Router ospf(5);
    Reload(ospf, R"({"OSPFV2": {"enabled": 1, "REDISTRIBUTION": {"bgp": 0}}})");
    const std::string before = Queued();
    Reload(ospf, R"({"OSPFV2": {"enabled": 1, "REDISTRIBUTION": {"static": 0}}})");
    const std::string after = Queued();
    ASSERT_EQ(after.compare(0, before.size(), before), 0);
    EXPECT_EQ(after.substr(before.size()),
              Line(5, "0xd0000", "0x30000", false) + Line(5, "0xd0000", "0xe0000", true));
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, UnchangedReloadRequestsNothing) {
    DcRipv2Router rip(5);
    Reload(rip, R"({"RIPV2": {"enabled": 1, "REDISTRIBUTION": {"bgp": 0}}})");
    const std::string before = Queued();
    Reload(rip, R"({"RIPV2": {"enabled": 1, "REDISTRIBUTION": {"bgp": 0}}})");
    EXPECT_EQ(Queued(), before);
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, DisablingWithdrawsWhatWasRedistributed) {
    DcRipngRouter rip(5);
    Reload(rip, R"({"RIPNG": {"enabled": 1, "REDISTRIBUTION": {"static": 0, "connected": 0,
        "ospf": 0}}})");
    EXPECT_EQ(Queued(), Line(32773, "0x80000", "0xe0000", true));
    Reload(rip, R"({"RIPNG": {"enabled": 0}})");
    // The destroy has the same row as the waiting create, so it is filed
    // after it (it does not replace it: the row status differs).
    EXPECT_EQ(Queued(),
              Line(32773, "0x80000", "0xe0000", true) + Line(32773, "0x80000", "0xe0000", false));
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, DroppingTheSectionWithdrawsToo) {
    DcOspfv3Router ospf(5);
    Reload(ospf, R"({"OSPFV3": {"enabled": 1, "REDISTRIBUTION": {"static": 0, "connected": 0,
        "rip": 0}}})");
    Reload(ospf, R"({"vid": 5})");
    EXPECT_EQ(Queued(),
              Line(32773, "0xd0000", "0xe0000", true) + Line(32773, "0xd0000", "0xe0000", false));
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, BgpRedistributesIntoBothInstances) {
    DcBgpRouter bgp(5);
    Reload(bgp, R"({"BGP": {"enabled": 1, "REDISTRIBUTION": {"static": 0, "connected": 0,
        "rip": 0}}})");
    EXPECT_EQ(Queued(),
              Line(5, "0xe0000", "0xd0000", true) + Line(32773, "0xe0000", "0xd0000", true));
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, DisabledRouterRequestsNothing) {
    DcRipv2Router rip(5);
    Reload(rip, R"({"RIPV2": {"enabled": 0, "REDISTRIBUTION": {"bgp": 0}}})");
    EXPECT_EQ(sched->BucketCount(), 0u);
}

TEST_F(DcProtoInterfaceBaseRedistributionTest, MulticastRoutersTakeNoRedistribution) {
    DcMulticastRouter igmp(5, 0);
    Reload(igmp, R"({"IGMP": {"enabled": 1, "REDISTRIBUTION": {"bgp": 0}}})");
    EXPECT_TRUE(igmp.IsEnabled());
    EXPECT_EQ(sched->BucketCount(), 0u);
}

}  // namespace
}  // namespace Zavrel
