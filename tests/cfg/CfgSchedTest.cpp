#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/FakeCfgItem.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

using test::FakeCfgItem;
using test::FakeWorld;

const CfgKey kRoutes(5, 0x3d000003);
const CfgKey kOther(7, 0x3d000003);
const CfgKey kRedist(5, 0x3d000002);

class CfgSchedTest : public test::TestEnv {
protected:
    FakeCfgItem* Add(CfgKey key, const std::string& name, unsigned long oid, int status = 1,
                     long group = 0) {
        auto* item = new FakeCfgItem(world, name, oid, status, group);
        sched.Insert(key, item);
        return item;
    }

    std::vector<std::string> Names(CfgKey key) const {
        std::vector<std::string> names;
        for (CfgItem* item : sched.Items(key)) {
            names.push_back(static_cast<FakeCfgItem*>(item)->Name());
        }
        return names;
    }

    std::vector<std::string> Sent() {
        std::vector<std::string> sent;
        for (const std::string& line : world.Take()) {
            if (line.rfind("send ", 0) == 0) {
                sent.push_back(line.substr(5));
            }
        }
        return sent;
    }

    void Tick() { sched.OnTimeout(100, nullptr); }

    // Reports a failure for the row of the item with this OID.
    void Fail(CfgKey key, unsigned long oid, unsigned int reason, bool retry = true) {
        FakeCfgItem probe(scratch, "probe", oid);
        sched.Update(key, &probe, reason, retry);
    }
    void Confirm(CfgKey key, unsigned long oid, unsigned int reason = 1) {
        FakeCfgItem probe(scratch, "probe", oid);
        sched.Remove(key, &probe, reason);
    }

    FakeWorld world;
    FakeWorld scratch;
    CfgSched sched;
};

TEST_F(CfgSchedTest, InsertStartsThePeriodicTimerCfgSchedulerWithInterval100) {
    EXPECT_FALSE(sched.IsRunning());
    EXPECT_STREQ(sched.Name(), "CfgScheduler");
    Add(kRoutes, "a", 1);
    EXPECT_TRUE(sched.IsRunning());
    EXPECT_EQ(sched.Interval(), 100u);
    EXPECT_TRUE(loop.IsArmed(&sched));
}

TEST_F(CfgSchedTest, TimerSendsReadyItemsEvery100Milliseconds) {
    Add(kRoutes, "a", 1);
    loop.Advance(99);
    EXPECT_TRUE(Sent().empty());
    loop.Advance(1);
    EXPECT_EQ(Sent(), std::vector<std::string>{"a"});
    Add(kRoutes, "b", 2);
    loop.Advance(100);
    EXPECT_EQ(Sent(), std::vector<std::string>{"b"});
}

TEST_F(CfgSchedTest, InsertingAgainWhileRunningDoesNotRestartTheTimer) {
    Add(kRoutes, "a", 1);
    loop.Advance(60);
    Add(kRoutes, "b", 2);
    loop.Advance(40);
    EXPECT_EQ(Sent(), (std::vector<std::string>{"a", "b"}));
}

TEST_F(CfgSchedTest, AllItemsListsTheBucketsInKeyOrderEachInListOrder) {
    EXPECT_TRUE(sched.AllItems().empty());
    EXPECT_EQ(sched.ItemCount(), 0u);
    Add(kOther, "c", 3);
    Add(kRoutes, "a", 1);
    Add(kRedist, "r", 9);
    Add(kRoutes, "b", 2);
    std::vector<std::string> names;
    for (CfgItem* item : sched.AllItems()) {
        names.push_back(static_cast<FakeCfgItem*>(item)->Name());
    }
    // (5, redistribution) < (5, static routes) < (7, static routes)
    EXPECT_EQ(names, (std::vector<std::string>{"r", "a", "b", "c"}));
    EXPECT_EQ(sched.ItemCount(), 4u);
}

TEST_F(CfgSchedTest, NullItemIsIgnored) {
    sched.Insert(kRoutes, nullptr);
    EXPECT_EQ(sched.BucketCount(), 0u);
    EXPECT_FALSE(sched.IsRunning());
}

TEST_F(CfgSchedTest, InsertingAnItemEqualToAHeldOneReplacesIt) {
    Add(kRoutes, "a", 1, 1);
    Add(kRoutes, "a2", 1, 1);
    EXPECT_EQ(Names(kRoutes), std::vector<std::string>{"a2"});
    EXPECT_EQ(world.Take(), std::vector<std::string>{"delete a"});
    EXPECT_EQ(trace.Texts(5), std::vector<std::string>{"REPLACED ------- 1 item.............\n"});
}

TEST_F(CfgSchedTest, CreatingABucketNeverTracesTheSecondReplacementText) {
    Add(kRoutes, "a", 1);
    Add(kRedist, "b", 1);
    EXPECT_TRUE(trace.Texts(5).empty());
}

TEST_F(CfgSchedTest, SameOidWithAnotherRowStatusKeepsBoth) {
    Add(kRoutes, "a", 1, 1);
    Add(kRoutes, "b", 1, 6);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(world.Take().empty());
}

TEST_F(CfgSchedTest, ReplacementLinksTheNewItemJustBeforeTheHeldItemsFormerPredecessor) {
    Add(kRoutes, "A", 1);
    Add(kRoutes, "B", 2);
    Add(kRoutes, "H", 3);
    Add(kRoutes, "C", 4);
    Add(kRoutes, "H2", 3);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"A", "H2", "B", "C"}));
}

TEST_F(CfgSchedTest, ReplacingTheFirstItemOfABucketPutsTheNewItemAtTheTail) {
    Add(kRoutes, "H", 3);
    Add(kRoutes, "B", 2);
    Add(kRoutes, "C", 4);
    Add(kRoutes, "H2", 3);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"B", "C", "H2"}));
}

TEST_F(CfgSchedTest, ReplacingTheOnlyItemKeepsIt) {
    Add(kRoutes, "H", 3);
    Add(kRoutes, "H2", 3);
    EXPECT_EQ(Names(kRoutes), std::vector<std::string>{"H2"});
}

TEST_F(CfgSchedTest, RepeatedReplacementCreepsTowardsTheHeadAndWrapsToTheTail) {
    Add(kRoutes, "A", 1);
    Add(kRoutes, "B", 2);
    Add(kRoutes, "H0", 3);
    Add(kRoutes, "H1", 3);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"A", "H1", "B"}));
    Add(kRoutes, "H2", 3);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"H2", "A", "B"}));
    Add(kRoutes, "H3", 3);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"A", "B", "H3"}));
}

TEST_F(CfgSchedTest, OnlyTheFirstHeldItemOfTheOidIsAskedToBeReplaced) {
    Add(kRoutes, "x", 1, 1);
    Add(kRoutes, "y", 1, 2);
    Add(kRoutes, "z", 1, 2);
    EXPECT_EQ(Names(kRoutes), (std::vector<std::string>{"x", "y", "z"}));
}

TEST_F(CfgSchedTest, BucketsAreKeptApart) {
    Add(kRoutes, "a", 1);
    Add(kRedist, "b", 1);
    EXPECT_EQ(sched.BucketCount(), 2u);
    EXPECT_EQ(Names(kRoutes), std::vector<std::string>{"a"});
    EXPECT_EQ(Names(kRedist), std::vector<std::string>{"b"});
}

TEST_F(CfgSchedTest, FortyReadyNewItemsGoThirtyOneOnTheFirstTickAndNineOnTheSecond) {
    for (unsigned long i = 0; i < 40; ++i) {
        Add(kRoutes, "r" + std::to_string(i), i);
    }
    Tick();
    std::vector<std::string> first = Sent();
    ASSERT_EQ(first.size(), 31u);
    EXPECT_EQ(first.front(), "r0");
    EXPECT_EQ(first.back(), "r30");
    Tick();
    std::vector<std::string> second = Sent();
    ASSERT_EQ(second.size(), 9u);
    EXPECT_EQ(second.front(), "r31");
    EXPECT_EQ(second.back(), "r39");
    Tick();
    EXPECT_TRUE(Sent().empty());
}

TEST_F(CfgSchedTest, EachSendIsTracedAtLevelFive) {
    Add(kRoutes, "a", 1);
    Add(kRoutes, "b", 2);
    Tick();
    EXPECT_EQ(trace.Texts(5), (std::vector<std::string>{"OnTIMEOUT Sending MIB ACTION\n",
                                                        "OnTIMEOUT Sending MIB ACTION\n"}));
}

TEST_F(CfgSchedTest, SentItemsStayHeldAsIssued) {
    Add(kRoutes, "a", 1);
    Tick();
    ASSERT_EQ(sched.Items(kRoutes).size(), 1u);
    EXPECT_TRUE(sched.Items(kRoutes)[0]->IsIssued());
}

TEST_F(CfgSchedTest, TickStopsRightAfterTheThirtyFirstNewItemAndResumesAtTheNextBucket) {
    for (unsigned long i = 0; i < 31; ++i) {
        Add(kRoutes, "r" + std::to_string(i), i);
    }
    Add(kOther, "o", 1);
    Tick();
    EXPECT_EQ(Sent().size(), 31u);
    EXPECT_EQ(sched.ResumeKey(), kOther);
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"o"});
    EXPECT_EQ(sched.ResumeKey(), CfgKey(1, 0));
}

TEST_F(CfgSchedTest, RoundRobinContinuesWhereTheLastTickStopped) {
    for (unsigned long i = 0; i < 40; ++i) {
        Add(kRoutes, "r" + std::to_string(i), i);
    }
    for (unsigned long i = 0; i < 5; ++i) {
        Add(kOther, "o" + std::to_string(i), i);
    }
    Tick();
    EXPECT_EQ(Sent().size(), 31u);
    EXPECT_EQ(sched.ResumeKey(), kOther);
    Tick();  // starts at the other bucket and ends at the end of the map
    EXPECT_EQ(Sent(), (std::vector<std::string>{"o0", "o1", "o2", "o3", "o4"}));
    EXPECT_EQ(sched.ResumeKey(), CfgKey(1, 0));
    Tick();
    EXPECT_EQ(Sent().size(), 9u);
}

TEST_F(CfgSchedTest, StoppingInTheLastBucketResumesAtTheFirstBucket) {
    Add(kRoutes, "first", 100);
    world.groupReady[0] = true;
    for (unsigned long i = 0; i < 35; ++i) {
        Add(kOther, "o" + std::to_string(i), i);
    }
    Tick();
    EXPECT_EQ(Sent().size(), 31u);
    EXPECT_EQ(sched.ResumeKey(), CfgKey(1, 0));
}

TEST_F(CfgSchedTest, TickWithoutBucketsSetsTheResumeKeyBackToOneZero) {
    Tick();
    EXPECT_EQ(sched.ResumeKey(), CfgKey(1, 0));
    EXPECT_EQ(sched.BucketCount(), 0u);
}

TEST_F(CfgSchedTest, NotReadyItemAtTheHeadHoldsBackItsBucketButNotOthers) {
    Add(kRoutes, "blocked", 1, 1, 1);
    Add(kRoutes, "behind", 2, 1, 0);
    Add(kOther, "free", 1, 1, 0);
    world.groupReady[1] = false;
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"free"});
    world.groupReady[1] = true;
    Tick();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"blocked", "behind"}));
}

TEST_F(CfgSchedTest, NotReadyIssuedItemHoldsBackTheNewItemsBehindIt) {
    Add(kRoutes, "early", 1, 1, 1);
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"early"});
    Add(kRoutes, "late", 2, 1, 0);
    world.groupReady[1] = false;
    Tick();
    EXPECT_TRUE(Sent().empty());
    world.groupReady[1] = true;
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"late"});
}

TEST_F(CfgSchedTest, NewItemsBeforeTheFirstNotReadyItemAreStillSent) {
    Add(kRoutes, "a", 1, 1, 0);
    Add(kRoutes, "b", 2, 1, 1);
    Add(kRoutes, "c", 3, 1, 0);
    world.groupReady[1] = false;
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"a"});
}

TEST_F(CfgSchedTest, ItemsWithoutAReadinessKeyAreAskedOneByOne) {
    Add(kRoutes, "a", 1, 1, -1);
    Add(kRoutes, "b", 2, 1, -1);
    Add(kRoutes, "c", 3, 1, -1);
    world.ownListReady["b"] = false;
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"a"});
    world.ownListReady["b"] = true;
    Tick();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"b", "c"}));
}

TEST_F(CfgSchedTest, ListReadyButNotItemReadyItemWaitsAndCounts) {
    for (unsigned long i = 0; i < 31; ++i) {
        Add(kRoutes, "w" + std::to_string(i), i);
        world.itemReady["w" + std::to_string(i)] = false;
    }
    Add(kRoutes, "ready", 100);
    Tick();
    EXPECT_TRUE(Sent().empty());
    EXPECT_EQ(sched.Items(kRoutes).size(), 32u);
    Tick();
    EXPECT_TRUE(Sent().empty());
}

TEST_F(CfgSchedTest, NotReadyItemThatAsksForRemovalIsDestroyedAndItsEmptyBucketErased) {
    Add(kRoutes, "gone", 1);
    world.itemReady["gone"] = false;
    world.removeOnNotReady["gone"] = true;
    Tick();
    EXPECT_EQ(world.Take(), std::vector<std::string>{"delete gone"});
    EXPECT_EQ(sched.BucketCount(), 0u);
}

TEST_F(CfgSchedTest, ItemFailingTenTimesWithReasonFiveIsSentAgainNineTimesThenParked) {
    Add(kRoutes, "a", 1);
    int sends = 0;
    for (int failure = 0; failure < 10; ++failure) {
        Tick();
        sends += static_cast<int>(Sent().size());
        Fail(kRoutes, 1, 5);
    }
    Tick();
    Tick();
    sends += static_cast<int>(Sent().size());
    EXPECT_EQ(sends, 10);  // the first send and nine more
    ASSERT_EQ(sched.Items(kRoutes).size(), 1u);
    CfgItem* item = sched.Items(kRoutes)[0];
    EXPECT_TRUE(item->IsIssued());
    EXPECT_EQ(item->GetRetryCount(), 10u);
    EXPECT_EQ(item->GetReasonCode(), 5u);
    EXPECT_TRUE(item->IsParked());
}

TEST_F(CfgSchedTest, AParkedItemStaysParkedWhateverTheReportsUntilReset) {
    Add(kRoutes, "a", 1);
    for (int failure = 0; failure < 10; ++failure) {
        Tick();
        Fail(kRoutes, 1, 5);
    }
    Sent();
    CfgItem* item = sched.Items(kRoutes)[0];
    ASSERT_TRUE(item->IsParked());
    Fail(kRoutes, 1, 1);
    Fail(kRoutes, 1, 5);
    Tick();
    EXPECT_TRUE(Sent().empty());
    EXPECT_TRUE(item->IsParked());
    sched.Reset();
    EXPECT_FALSE(item->IsParked());
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"a"});
}

TEST_F(CfgSchedTest, AFailureNotToBeRetriedDoesNotParkAndALaterRetryableOneSendsAgain) {
    Add(kRoutes, "a", 1);
    Tick();
    Sent();
    Fail(kRoutes, 1, 3, false);
    EXPECT_FALSE(sched.Items(kRoutes)[0]->IsParked());
    Tick();
    EXPECT_TRUE(Sent().empty());
    Fail(kRoutes, 1, 5, true);
    Tick();
    EXPECT_EQ(Sent(), std::vector<std::string>{"a"});
}

TEST_F(CfgSchedTest, FailuresWithReasonOneDoNotUseUpAnAttempt) {
    Add(kRoutes, "a", 1);
    int sends = 0;
    for (int failure = 0; failure < 20; ++failure) {
        Tick();
        sends += static_cast<int>(Sent().size());
        Fail(kRoutes, 1, 1);
    }
    Tick();
    sends += static_cast<int>(Sent().size());
    EXPECT_EQ(sends, 21);
    EXPECT_EQ(sched.Items(kRoutes)[0]->GetRetryCount(), 0u);
    EXPECT_EQ(sched.Items(kRoutes)[0]->GetReasonCode(), 1u);
}

TEST_F(CfgSchedTest, UpdateWithRetryFalseRecordsTheReasonButNeverSendsAgain) {
    Add(kRoutes, "a", 1);
    Tick();
    Sent();
    Fail(kRoutes, 1, 3, false);
    Tick();
    Tick();
    EXPECT_TRUE(Sent().empty());
    CfgItem* item = sched.Items(kRoutes)[0];
    EXPECT_TRUE(item->IsIssued());
    EXPECT_EQ(item->GetReasonCode(), 3u);
    EXPECT_EQ(item->GetRetryCount(), 1u);
}

TEST_F(CfgSchedTest, UpdateTouchesOnlyTheFirstIssuedItemOfTheOid) {
    Add(kRoutes, "x", 1, 1);
    Tick();
    Sent();
    Add(kRoutes, "y", 1, 2);  // New, same OID
    Add(kRoutes, "z", 1, 3);
    Tick();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"y", "z"}));
    Fail(kRoutes, 1, 5);
    std::vector<CfgItem*> items = sched.Items(kRoutes);
    EXPECT_FALSE(items[0]->IsIssued());
    EXPECT_EQ(items[0]->GetReasonCode(), 5u);
    EXPECT_TRUE(items[1]->IsIssued());
    EXPECT_EQ(items[1]->GetReasonCode(), 0u);
    EXPECT_TRUE(items[2]->IsIssued());
}

TEST_F(CfgSchedTest, UpdateSkipsNewItemsOfTheOid) {
    Add(kRoutes, "x", 1);
    Fail(kRoutes, 1, 5);
    CfgItem* item = sched.Items(kRoutes)[0];
    EXPECT_FALSE(item->IsIssued());
    EXPECT_EQ(item->GetReasonCode(), 0u);
    EXPECT_EQ(item->GetRetryCount(), 0u);
}

TEST_F(CfgSchedTest, UpdateWithANullItemOrAnUnknownBucketDoesNothing) {
    Add(kRoutes, "x", 1);
    Tick();
    sched.Update(kRoutes, nullptr, 5, true);
    Fail(kOther, 1, 5);
    EXPECT_TRUE(sched.Items(kRoutes)[0]->IsIssued());
    EXPECT_FALSE(sched.HasBucket(kOther));
}

TEST_F(CfgSchedTest, RemoveDestroysTheIssuedItemAndErasesTheEmptiedBucket) {
    Add(kRoutes, "a", 1);
    Tick();
    Sent();
    trace.Clear();
    Confirm(kRoutes, 1, 1);
    EXPECT_EQ(world.Take(), (std::vector<std::string>{"inmib a 1 1", "delete a"}));
    EXPECT_EQ(trace.Texts(5), std::vector<std::string>{"Removing the handle\n"});
    EXPECT_EQ(sched.BucketCount(), 0u);
}

TEST_F(CfgSchedTest, RemoveLeavesANewItemOfTheOidInPlace) {
    Add(kRoutes, "a", 1);
    Confirm(kRoutes, 1, 6);
    EXPECT_EQ(world.Take(), std::vector<std::string>{"inmib a 1 6"});
    EXPECT_EQ(Names(kRoutes), std::vector<std::string>{"a"});
    EXPECT_TRUE(trace.Texts(5).empty());
}

TEST_F(CfgSchedTest, RemoveHandlesOnlyTheFirstItemOfTheOid) {
    Add(kRoutes, "x", 1, 1);
    Tick();
    Sent();
    Add(kRoutes, "y", 1, 2);
    Confirm(kRoutes, 1);
    EXPECT_EQ(world.Take(), (std::vector<std::string>{"inmib x 1 1", "delete x"}));
    Confirm(kRoutes, 1);
    EXPECT_EQ(world.Take(), std::vector<std::string>{"inmib y 1 1"});
    EXPECT_EQ(Names(kRoutes), std::vector<std::string>{"y"});
}

TEST_F(CfgSchedTest, RemoveOnAnUnknownBucketDoesNothing) {
    Add(kRoutes, "a", 1);
    Confirm(kOther, 1);
    EXPECT_TRUE(world.Take().empty());
    EXPECT_EQ(sched.BucketCount(), 1u);
}

TEST_F(CfgSchedTest, ResetMarksEveryItemNewAgainAndTheNextTickSendsThemAll) {
    Add(kRoutes, "a", 1);
    Add(kRedist, "b", 2);
    Tick();
    Sent();
    Fail(kRoutes, 1, 5, false);
    sched.Reset();
    for (CfgItem* item : sched.Items(kRoutes)) {
        EXPECT_FALSE(item->IsIssued());
        EXPECT_EQ(item->GetReasonCode(), 0u);
        EXPECT_EQ(item->GetRetryCount(), 0u);
    }
    Tick();  // the redistribution bucket sorts first
    EXPECT_EQ(Sent(), (std::vector<std::string>{"b", "a"}));
}

TEST_F(CfgSchedTest, PrintSummaryCountsTheBuckets) {
    Add(kRoutes, "a", 1);
    Add(kRedist, "b", 2);
    sched.PrintSummary(&console);
    EXPECT_EQ(console.Output(), "Pending Item Buckets: 2\n");
}

TEST_F(CfgSchedTest, PrintNumbersTheItemsOfEachBucketFromZero) {
    Add(kRedist, "r0", 1);
    Add(kRoutes, "s0", 1);
    Add(kRoutes, "s1", 2);
    sched.Print(&console);
    EXPECT_EQ(console.Output(),
              "==== Item 0 ====\nFake(r0) ActionState(New)\n\n"
              "==== Item 0 ====\nFake(s0) ActionState(New)\n\n"
              "==== Item 1 ====\nFake(s1) ActionState(New)\n\n");
}

TEST_F(CfgSchedTest, InFlightQuestionsAreFalseForTheseItems) {
    Add(kRoutes, "a", 1);
    Tick();
    EXPECT_FALSE(sched.RouteMapInFlight(kRoutes, 1, 2));
    EXPECT_FALSE(sched.AggrAddrInFlight(kRoutes, 1, 2));
    EXPECT_FALSE(sched.RouteMapInFlight(kOther, 1, 2));
    EXPECT_FALSE(sched.AggrAddrInFlight(kOther, 1, 2));
}

TEST_F(CfgSchedTest, TickAsksOneItemPerReadinessGroupNotEveryIssuedItem) {
    for (unsigned long i = 0; i < 1000; ++i) {
        Add(kRoutes, "i" + std::to_string(i), i, 1, static_cast<long>(i % 2));
    }
    for (int tick = 0; tick < 40; ++tick) {
        Tick();
    }
    ASSERT_EQ(Sent().size(), 1000u);
    Add(kRoutes, "n0", 5000);
    Add(kRoutes, "n1", 5001);
    world.listReadyCalls = 0;
    Tick();
    EXPECT_EQ(Sent(), (std::vector<std::string>{"n0", "n1"}));
    EXPECT_LE(world.listReadyCalls, 4);
}

TEST_F(CfgSchedTest, DestroyingTheSchedulerDestroysTheItemsItHolds) {
    {
        CfgSched local;
        local.Insert(kRoutes, new FakeCfgItem(world, "a", 1));
        local.Insert(kRedist, new FakeCfgItem(world, "b", 1));
    }
    EXPECT_EQ(world.Take(), (std::vector<std::string>{"delete b", "delete a"}));
}

TEST(CfgKeyTest, OrdersByTheFirstFieldThenTheSecond) {
    EXPECT_TRUE(CfgKey(1, 9) < CfgKey(2, 0));
    EXPECT_TRUE(CfgKey(2, 0) < CfgKey(2, 1));
    EXPECT_FALSE(CfgKey(2, 1) < CfgKey(2, 1));
    EXPECT_TRUE(CfgKey(0x7fffffff, 0) < CfgKey(0x80000000u, 0));
    EXPECT_TRUE(CfgKey(3, 0x7fffffff) < CfgKey(3, 0x80000000u));
    EXPECT_EQ(CfgKey(4, 5), CfgKey(4, 5));
    EXPECT_NE(CfgKey(4, 5), CfgKey(5, 4));
}

}  // namespace
}  // namespace Zavrel
