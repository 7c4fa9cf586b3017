// The quiet test's look into the configuration scheduler: it answers the
// way the scheduler's next tick would act.
#include "app/SystemProbe.h"

#include "cfg/CfgItem.h"
#include "cfg/CfgSched.h"
#include "platform/Ip6Prefix.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/testsupport/EmulatedStackEnv.h"

namespace Zavrel::test {
namespace {

class SystemProbeTest : public EmulatedStackEnv {
protected:
    static void AddIp4Route() {
        AddRoute(10, Ip4Addr(172, 16, 0, 0), Ip4Addr(255, 240, 0, 0), Ip4Addr(192, 168, 10, 254), 0,
                 1, 0x30000, 1);
    }
    static void AddIp6Route() {
        Ip6Addr address;
        ASSERT_TRUE(address.FromString("2001:db8:99::"));
        Ip6Addr gateway;
        ASSERT_TRUE(gateway.FromString("2001:db8:10::fe"));
        AddRoute(10, address, Ip6Prefix(address, 48), gateway, 0, 1, 0x30000, 1);
    }
    static CfgSched& Scheduler() { return DcRouterMgr::GetInstance()->GetCfgSched(); }
    static std::vector<CfgItem*> RouteItems() {
        return Scheduler().Items(CfgKey(10, DcRtmMgr::CFG_KEY_STATIC_ROUTE));
    }
};

TEST_F(SystemProbeTest, EmptySchedulerIsQuiet) {
    EXPECT_EQ(SystemProbe::SchedulerState(), QuietProbe::QUIET);
}

TEST_F(SystemProbeTest, NewItemWaitingForItsRtmInstanceIsQuiet) {
    AddIp4Route();
    ASSERT_EQ(RouteItems().size(), 1u);
    EXPECT_EQ(SystemProbe::SchedulerState(), QuietProbe::QUIET);
}

TEST_F(SystemProbeTest, NewItemWhoseRtmInstanceIsReadyIsBusy) {
    DcRtmMgr::GetInstance()->SetRtmReady(10);
    AddIp4Route();
    EXPECT_EQ(SystemProbe::SchedulerState(), QuietProbe::BUSY);
}

TEST_F(SystemProbeTest, IssuedItemIsQuiet) {
    DcRtmMgr::GetInstance()->SetRtmReady(10);
    AddIp4Route();
    RouteItems().front()->SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    EXPECT_EQ(SystemProbe::SchedulerState(), QuietProbe::QUIET);
}

TEST_F(SystemProbeTest, ItemBehindOneWhoseInstanceIsNotReadyWaitsLikeTheTick) {
    // IPv4 and IPv6 routes of a VLAN share a bucket; the IPv6 instance is
    // not ready, so a tick stops at it and the IPv4 route behind it waits.
    DcRtmMgr::GetInstance()->SetRtmReady(10);
    AddIp6Route();
    AddIp4Route();
    ASSERT_EQ(RouteItems().size(), 2u);
    EXPECT_EQ(SystemProbe::SchedulerState(), QuietProbe::QUIET);
}

TEST_F(SystemProbeTest, SerializerStartsEmpty) {
    EXPECT_TRUE(SystemProbe::SerializerEmpty());
}

}  // namespace
}  // namespace Zavrel::test
