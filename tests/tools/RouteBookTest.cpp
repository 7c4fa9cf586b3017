// RouteBook: the check of the application's static routes against the
// stack's table and the scheduler's items, on the whole system.
#include "harness/RouteBook.h"

#include <gtest/gtest.h>

#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "emulator/Emulator.h"
#include "harness/RouterSystem.h"
#include "harness/SystemDriver.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {
namespace {

class RouteBookTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(system.IsStarted());
        std::string error;
        ASSERT_TRUE(system.Reload(SystemDriver::Document(0, 0), "a.json", error)) << error;
        system.Run(1000);
    }
    static RouteBook::Route Route10() {
        RouteBook::Route route;
        route.vlan = 10;
        route.destination = Ip4Addr(172, 16, 1, 0);
        route.prefixLength = 24;
        route.gateway = Ip4Addr(10, 0, 0, 254);
        return route;
    }

    // Another route of the VLAN (172.16.9.0/24) added, then Route10()
    // enabled, removed and enabled again, all held New: the second enable
    // replaces the first and is linked in ahead of the other route, so
    // before the remove.
    bool EnableRemoveEnableBehindAnotherRoute() {
        RouteBook::Route other = Route10();
        other.destination = Ip4Addr(172, 16, 9, 0);
        return book.Add(other, 1) && book.Enable(Route10()) && book.Remove(Route10()) &&
               book.Enable(Route10());
    }

    // The one item the scheduler still holds, a static route; null (and a
    // failure) otherwise.
    StaticRouteItem* OnlyHeldItem() {
        const std::vector<CfgItem*> held = system.Manager().GetCfgSched().AllItems();
        EXPECT_EQ(held.size(), 1u);
        return held.size() == 1 ? dynamic_cast<StaticRouteItem*>(held[0]) : nullptr;
    }

    RouterSystem system;
    RouteBook book;
};

TEST_F(RouteBookTest, RouteInstalledAsAskedIsKept) {
    ASSERT_TRUE(book.Add(Route10(), 3));
    system.Run(1000);
    EXPECT_EQ(book.Wanted(), 1u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
    ASSERT_TRUE(book.Disable(Route10()));
    system.Run(1000);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
    ASSERT_TRUE(book.Remove(Route10()));
    system.Run(1000);
    EXPECT_EQ(book.Wanted(), 0u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
}

TEST_F(RouteBookTest, RouteRefusedWithAReasonIsExplainedByItsItem) {
    Emulator::FailNext(Emulator::RequestKind::Route, 1, 3);
    ASSERT_TRUE(book.Add(Route10(), 3));
    system.Run(3000);
    // Not in the stack: only the refused item keeps the route.
    EXPECT_EQ(Emulator::Instance().DumpStaticRoutes(), "");
    StaticRouteItem* refused = OnlyHeldItem();
    ASSERT_NE(refused, nullptr);
    EXPECT_EQ(refused->GetReasonCode(), 3u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
}

TEST_F(RouteBookTest, RouteRemovedBehindTheBooksBackIsLost) {
    ASSERT_TRUE(book.Add(Route10(), 3));
    system.Run(1000);
    ASSERT_TRUE(RemoveRoute(10, Ip4Addr(172, 16, 1, 0), Ip4Addr(255, 255, 255, 0),
                            Ip4Addr(10, 0, 0, 254), 0));
    system.Run(1000);
    EXPECT_EQ(book.Check(system.Manager()),
              std::vector<std::string>{
                  "lost: 10 172.16.1.0/24 via 10.0.0.254 ifIndex 0: wanted "
                  "admin up, stack has none, not answered since asked, no item says why"});
}

TEST_F(RouteBookTest, RouteNobodyAskedForIsMadeUp) {
    ASSERT_TRUE(AddRoute(10, Ip4Addr(172, 16, 2, 0), Ip4Addr(255, 255, 255, 0),
                         Ip4Addr(10, 0, 0, 254), 0, 3, 0x30000, 1));
    system.Run(1000);
    EXPECT_EQ(
        book.Check(system.Manager()),
        std::vector<std::string>{
            "made up: 10 172.16.2.0/24 via 10.0.0.254 ifIndex 0: in the stack, never asked for"});
}

TEST_F(RouteBookTest, RoutesOfAVlanThatWentAwayAreNoLongerPromised) {
    ASSERT_TRUE(book.Add(Route10(), 3));
    system.Run(1000);
    system.Unload("a.json");
    system.Run(1000);
    book.ForgetVlan(10);
    EXPECT_EQ(book.Wanted(), 0u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
}

// Deliberate: an item that replaces an equal held one is linked before the
// held one's predecessor, so a route enabled again while its removal waits
// behind it ends removed. The book keeps the route: the stack did the last
// request (the enable) after it was made, and then the earlier remove.
TEST_F(RouteBookTest, EnableReplacingAHeldEnableAheadOfARemoveEndsRemovedAsTheSchedulerOrders) {
    ASSERT_TRUE(EnableRemoveEnableBehindAnotherRoute());
    EXPECT_EQ(book.Wanted(), 2u);
    system.Run(2000);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
    EXPECT_EQ(Emulator::Instance().DumpStaticRoutes(),
              "10 172.16.9.0/24 via 10.0.0.254 ifIndex 0 admin up metric 1\n");
}

// Deliberate: a route whose last request the stack refused without a retry
// loses the refused item when the stack confirms a later request of the
// same row (the confirmation goes to the first held item of the row, and
// destroys it when it is Issued). Here the last enable replaces the first
// and moves ahead of the remove, is refused, and the remove's confirmation
// destroys it. The book keeps the route: the stack answered the last
// request.
TEST_F(RouteBookTest, ARefusedEnableIsDestroyedByTheConfirmationOfTheRemoveSentAfterIt) {
    ASSERT_TRUE(EnableRemoveEnableBehindAnotherRoute());
    Emulator::FailNext(Emulator::RequestKind::Route, 1, 4);
    system.Run(2000);
    EXPECT_EQ(Emulator::Instance().DumpStaticRoutes(),
              "10 172.16.9.0/24 via 10.0.0.254 ifIndex 0 admin up metric 1\n");
    StaticRouteItem* remove = OnlyHeldItem();
    ASSERT_NE(remove, nullptr);
    EXPECT_EQ(remove->RowStatus(), Sms::ROW_DESTROY);
    EXPECT_EQ(book.Wanted(), 2u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
}

// Deliberate: the stack's answer on a row goes to the first held item of
// the row, and one that a failure sent back to New takes none. A route
// added and removed in one tick, whose add fails once, ends installed: the
// remove is done (its answer reaches the add, which is New and stays), the
// add goes out again, and the remove's item stays Issued for good. The
// book keeps the route: the remove, the last request, was done after it
// was made.
TEST_F(RouteBookTest, RemoveDoneWhileItsAddWaitsForARetryLeavesTheAddInstalledAndTheRemoveParked) {
    Emulator::FailNext(Emulator::RequestKind::Route, 1, 5);
    ASSERT_TRUE(book.Add(Route10(), 3));
    ASSERT_TRUE(book.Remove(Route10()));
    system.Run(2000);
    EXPECT_EQ(Emulator::Instance().DumpStaticRoutes(),
              "10 172.16.1.0/24 via 10.0.0.254 ifIndex 0 admin up metric 3\n");
    StaticRouteItem* remove = OnlyHeldItem();
    ASSERT_NE(remove, nullptr);
    EXPECT_EQ(remove->RowStatus(), Sms::ROW_DESTROY);
    EXPECT_TRUE(remove->IsIssued());
    EXPECT_EQ(remove->GetReasonCode(), 0u);
    EXPECT_TRUE(book.Check(system.Manager()).empty());
}

}  // namespace
}  // namespace Zavrel
