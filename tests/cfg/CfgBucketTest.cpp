// The scheduler's indexed buckets against a plain model of the item-by-item
// algorithm: the same operations on both must give the same sends, the same
// destructions, the same item order and states and the same resume key.
#include <list>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgBucket.h"
#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/FakeCfgItem.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

using test::FakeCfgItem;
using test::FakeWorld;

// The OID a FakeCfgItem with this value has.
MibOid MibOidOf(unsigned long value) {
    const unsigned long components[2] = {42, value};
    return MibOid(components, 2);
}

// The scheduler's algorithm written as a walk over plain lists.
class ModelSched {
public:
    struct Item {
        std::string name;
        unsigned long oid;
        int status;
        long group;
        bool issued = false;
        unsigned int reason = 0;
        unsigned int retries = 0;
    };

    explicit ModelSched(FakeWorld& world) : m_world(world) {}

    void Insert(CfgKey key, const Item& item) {
        std::list<Item>& bucket = m_buckets[key];
        for (auto held = bucket.begin(); held != bucket.end(); ++held) {
            if (held->oid != item.oid) {
                continue;
            }
            if (held->status == item.status) {
                ++replacements;
                log.push_back("delete " + held->name);
                if (held == bucket.begin()) {
                    bucket.erase(held);
                    bucket.push_back(item);
                } else {
                    auto predecessor = std::prev(held);
                    bucket.erase(held);
                    bucket.insert(predecessor, item);
                }
                return;
            }
            break;
        }
        bucket.push_back(item);
    }

    void Update(CfgKey key, unsigned long oid, unsigned int reason, bool retry) {
        auto found = m_buckets.find(key);
        if (found == m_buckets.end()) {
            return;
        }
        for (Item& item : found->second) {
            if (item.oid == oid && item.issued) {
                item.reason = reason;
                if (reason != 1) {
                    ++item.retries;
                }
                if (item.retries > 9 || !retry) {
                    return;
                }
                item.issued = false;
                return;
            }
        }
    }

    void Remove(CfgKey key, unsigned long oid, unsigned int reason) {
        auto found = m_buckets.find(key);
        if (found == m_buckets.end()) {
            return;
        }
        std::list<Item>& bucket = found->second;
        for (auto item = bucket.begin(); item != bucket.end(); ++item) {
            if (item->oid == oid) {
                log.push_back("inmib " + item->name + " 1 " + std::to_string(reason));
                if (item->issued) {
                    log.push_back("delete " + item->name);
                    bucket.erase(item);
                }
                break;
            }
        }
        if (bucket.empty()) {
            m_buckets.erase(found);
        }
    }

    void Reset() {
        for (auto& bucket : m_buckets) {
            for (Item& item : bucket.second) {
                item.issued = false;
                item.reason = 0;
                item.retries = 0;
            }
        }
    }

    void Tick() {
        if (m_buckets.empty()) {
            resume = CfgKey(1, 0);
            return;
        }
        auto it = m_buckets.find(resume);
        if (it == m_buckets.end()) {
            it = m_buckets.begin();
        }
        unsigned int count = 0;
        while (it != m_buckets.end()) {
            std::list<Item>& bucket = it->second;
            for (auto item = bucket.begin(); item != bucket.end();) {
                if (!ListReady(*item)) {
                    ++notReadyStops;
                    break;
                }
                auto next = std::next(item);
                if (!item->issued) {
                    ++count;
                    if (Flag(m_world.itemReady, item->name, true)) {
                        log.push_back("send " + item->name);
                        item->issued = true;
                    } else if (Flag(m_world.removeOnNotReady, item->name, false)) {
                        log.push_back("delete " + item->name);
                        bucket.erase(item);
                        ++removedNotReady;
                    }
                }
                if (count > 30) {
                    ++earlyStops;
                    ++it;
                    resume = it != m_buckets.end() ? it->first : CfgKey(1, 0);
                    return;
                }
                item = next;
            }
            if (bucket.empty()) {
                it = m_buckets.erase(it);
            } else {
                ++it;
            }
        }
        resume = CfgKey(1, 0);
    }

    const std::map<CfgKey, std::list<Item>>& Buckets() const { return m_buckets; }

    std::vector<std::string> log;
    CfgKey resume{1, 0};
    // How often each path of the walk was taken.
    int replacements = 0;
    int notReadyStops = 0;
    int removedNotReady = 0;
    int earlyStops = 0;

private:
    static bool Flag(const std::map<std::string, bool>& flags, const std::string& name,
                     bool fallback) {
        auto found = flags.find(name);
        return found == flags.end() ? fallback : found->second;
    }
    bool ListReady(const Item& item) const {
        if (item.group < 0) {
            return Flag(m_world.ownListReady, item.name, true);
        }
        auto found = m_world.groupReady.find(item.group);
        return found == m_world.groupReady.end() || found->second;
    }

    FakeWorld& m_world;
    std::map<CfgKey, std::list<Item>> m_buckets;
};

class CfgBucketTest : public test::TestEnv {
protected:
    void Insert(CfgKey key, const std::string& name, unsigned long oid, int status, long group) {
        model.Insert(key, ModelSched::Item{name, oid, status, group});
        sched.Insert(key, new FakeCfgItem(world, name, oid, status, group));
        names.push_back(name);
    }
    void Update(CfgKey key, unsigned long oid, unsigned int reason, bool retry) {
        model.Update(key, oid, reason, retry);
        FakeCfgItem probe(scratch, "probe", oid);
        sched.Update(key, &probe, reason, retry);
    }
    void Remove(CfgKey key, unsigned long oid, unsigned int reason) {
        model.Remove(key, oid, reason);
        FakeCfgItem probe(scratch, "probe", oid);
        sched.Remove(key, &probe, reason);
    }
    void Tick() {
        model.Tick();
        sched.OnTimeout(100, nullptr);
    }
    void Reset() {
        model.Reset();
        sched.Reset();
    }

    // Compares everything observable; returns a description of the first
    // difference, or "" when both agree.
    std::string Difference() {
        std::vector<std::string> log = world.Take();
        if (log != model.log) {
            return "logs differ";
        }
        model.log.clear();
        if (!(sched.ResumeKey() == model.resume)) {
            return "resume keys differ";
        }
        if (sched.BucketCount() != model.Buckets().size()) {
            return "bucket counts differ";
        }
        for (const auto& bucket : model.Buckets()) {
            std::vector<CfgItem*> items = sched.Items(bucket.first);
            if (items.size() != bucket.second.size()) {
                return "bucket sizes differ";
            }
            size_t index = 0;
            for (const ModelSched::Item& expected : bucket.second) {
                auto* item = static_cast<FakeCfgItem*>(items[index++]);
                if (item->Name() != expected.name || item->IsIssued() != expected.issued ||
                    item->GetReasonCode() != expected.reason ||
                    item->GetRetryCount() != expected.retries) {
                    return "item " + expected.name + " differs";
                }
            }
        }
        return "";
    }

    FakeWorld world;
    FakeWorld scratch;
    ModelSched model{world};
    CfgSched sched;
    std::vector<std::string> names;
};

TEST_F(CfgBucketTest, IndexedSchedulerBehavesLikeTheItemByItemWalkOnMixedBuckets) {
    const CfgKey keys[] = {CfgKey(5, 0x3d000003), CfgKey(5, 0x3d000002), CfgKey(9, 0x3d000003)};
    for (unsigned int seed : {1u, 2u, 3u, 4u}) {
        std::mt19937 random(seed);
        auto pick = [&](unsigned int n) { return static_cast<unsigned int>(random() % n); };
        int serial = 0;
        for (int step = 0; step < 1500; ++step) {
            const CfgKey key = keys[pick(3)];
            const unsigned long oid = pick(14);
            const unsigned int op = pick(100);
            if (op < 30) {
                // Mostly the group follows the OID, as it does for real items;
                // sometimes not, and sometimes the item has no readiness key.
                long group = oid >= 11 ? -1 : static_cast<long>(oid % 3);
                if (pick(5) == 0) {
                    group = static_cast<long>(pick(4)) - 1;
                }
                const int count = pick(16) == 0 ? 20 : 1;
                for (int i = 0; i < count; ++i) {
                    const unsigned long itemOid = count == 1 ? oid : pick(60);
                    Insert(key, "i" + std::to_string(serial++), itemOid, static_cast<int>(pick(2)),
                           group);
                }
            } else if (op < 45) {
                const unsigned int reasons[] = {1, 3, 5};
                Update(key, oid, reasons[pick(3)], pick(4) != 0);
            } else if (op < 58) {
                Remove(key, oid, pick(7));
            } else if (op < 85) {
                Tick();
            } else if (op < 89) {
                world.groupReady[static_cast<long>(pick(3))] = pick(3) != 0;
            } else if (op < 93 && !names.empty()) {
                world.ownListReady[names[pick(static_cast<unsigned int>(names.size()))]] =
                    pick(3) != 0;
            } else if (op < 96 && !names.empty()) {
                world.itemReady[names[pick(static_cast<unsigned int>(names.size()))]] =
                    pick(3) != 0;
            } else if (op < 99 && !names.empty()) {
                world.removeOnNotReady[names[pick(static_cast<unsigned int>(names.size()))]] =
                    pick(2) != 0;
            } else {
                Reset();
            }
            const std::string difference = Difference();
            ASSERT_EQ(difference, "") << "seed " << seed << " step " << step;
        }
    }
    // The scenario went through every path of the walk.
    EXPECT_GT(model.replacements, 0);
    EXPECT_GT(model.notReadyStops, 0);
    EXPECT_GT(model.removedNotReady, 0);
    EXPECT_GT(model.earlyStops, 0);
}

TEST_F(CfgBucketTest, ManyReplacementsAtOnePlaceKeepTheOrderOfTheWalk) {
    const CfgKey key(5, 0x3d000003);
    for (unsigned long oid = 0; oid < 6; ++oid) {
        Insert(key, "base" + std::to_string(oid), oid, 1, 0);
    }
    // Each replacement moves the item one place towards the head and then
    // to the tail: far more moves than the spacing of positions allows
    // without renumbering.
    for (int round = 0; round < 400; ++round) {
        Insert(key, "r" + std::to_string(round), 3, 1, round % 2 == 0 ? 0 : -1);
        ASSERT_EQ(Difference(), "") << round;
    }
    for (int round = 0; round < 200; ++round) {
        Insert(key, "f" + std::to_string(round), 40, 1, 1);
        Insert(key, "g" + std::to_string(round), 40, 1, 1);
        ASSERT_EQ(Difference(), "") << round;
    }
    Tick();
    EXPECT_EQ(Difference(), "");
}

TEST_F(CfgBucketTest, ReplacementsPilingUpBeforeOneItemKeepTheOrderOfTheWalk) {
    // Every replacement lands between the previous one and the same item,
    // so the room between positions there runs out again and again.
    const CfgKey key(5, 0x3d000003);
    Insert(key, "A", 1, 1, 0);
    Insert(key, "P", 2, 1, 1);
    for (unsigned long k = 0; k < 1500; ++k) {
        Insert(key, "h" + std::to_string(k), 100 + k, 1, static_cast<long>(k % 3) - 1);
        Insert(key, "h" + std::to_string(k) + "'", 100 + k, 1, static_cast<long>(k % 3) - 1);
        if (k % 25 == 0) {
            ASSERT_EQ(Difference(), "") << k;
        }
    }
    ASSERT_EQ(Difference(), "");
    world.groupReady[1] = false;
    Tick();
    EXPECT_EQ(Difference(), "");
    world.groupReady[1] = true;
    for (int tick = 0; tick < 6; ++tick) {
        Tick();
        ASSERT_EQ(Difference(), "") << tick;
    }
}

TEST_F(CfgBucketTest, ReplacementsPilingUpAtTheHeadKeepTheOrderOfTheWalk) {
    // The same with the place right after the first item, and items behind
    // it, so the room is made towards the head and in the middle.
    const CfgKey key(5, 0x3d000003);
    Insert(key, "P", 2, 1, 1);
    for (unsigned long k = 0; k < 40; ++k) {
        Insert(key, "t" + std::to_string(k), 5000 + k, 1, 0);
    }
    for (unsigned long k = 0; k < 1200; ++k) {
        // Replacing the item right after P moves the new one before P.
        std::vector<CfgItem*> items = sched.Items(key);
        auto* second = static_cast<FakeCfgItem*>(items[1]);
        Insert(key, "r" + std::to_string(k), second->OidValue(), second->Status(), second->Group());
        if (k % 25 == 0) {
            ASSERT_EQ(Difference(), "") << k;
        }
    }
    ASSERT_EQ(Difference(), "");
    Tick();
    EXPECT_EQ(Difference(), "");
}

TEST_F(CfgBucketTest, ReplacementIntoAnotherReadinessGroupKeepsBothGroupsInOrder) {
    const CfgKey key(5, 0x3d000003);
    Insert(key, "a", 1, 1, 0);
    Insert(key, "b", 2, 1, 1);
    Insert(key, "c", 3, 1, 0);
    Insert(key, "d", 4, 1, 1);
    Insert(key, "c2", 3, 1, 1);  // lands before b, in group 1 now
    ASSERT_EQ(Difference(), "");
    world.groupReady[1] = false;
    Tick();
    EXPECT_EQ(Difference(), "");
    world.groupReady[1] = true;
    world.groupReady[0] = false;
    Tick();
    EXPECT_EQ(Difference(), "");
}

// The bucket itself: after replacements at every place, positions still rise
// along the list, the New items are met in list order, and the first item
// that is not list-ready is found by its group.
class CfgBucketPlacesTest : public test::TestEnv {
protected:
    FakeCfgItem* Make(const std::string& name, unsigned long oid, long group) {
        return new FakeCfgItem(world, name, oid, 1, group);
    }
    void Append(const std::string& name, unsigned long oid, long group) {
        FakeCfgItem* item = Make(name, oid, group);
        item->GetOid();
        bucket.Append(item);
    }
    // Replaces the first item of the OID by a new one of the same OID.
    void Replace(const std::string& name, unsigned long oid, long group) {
        FakeCfgItem* item = Make(name, oid, group);
        CfgBucket::Entry held = bucket.FindFirst(item->GetOid());
        ASSERT_TRUE(held != bucket.End()) << name;
        bucket.ReplaceShifted(held, item);
    }
    void Send(unsigned long oid) {
        FakeCfgItem probe(scratch, "probe", oid);
        CfgBucket::Entry entry = bucket.FindFirst(probe.GetOid());
        entry->SetActionState(CfgItem::ACTION_ITEM_ISSUED);
        bucket.SyncState(entry);
    }
    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        bucket.ForEachItem(
            [&](CfgItem* item) { names.push_back(static_cast<FakeCfgItem*>(item)->Name()); });
        return names;
    }
    // Positions rise along the list and the New walk follows the list.
    void ExpectConsistent() {
        std::vector<CfgBucket::Position> positions;
        std::vector<std::string> newInList;
        for (CfgItem* item : bucket.Items()) {
            CfgBucket::Entry entry = bucket.FindFirst(item->GetOid());
            ASSERT_TRUE(entry != bucket.End());
            ASSERT_EQ(entry, item);
            positions.push_back(CfgBucket::PositionOf(entry));
            if (!item->IsIssued()) {
                newInList.push_back(static_cast<FakeCfgItem*>(item)->Name());
            }
        }
        for (size_t i = 1; i < positions.size(); ++i) {
            ASSERT_LT(positions[i - 1], positions[i]) << i;
        }
        std::vector<std::string> newWalk;
        for (CfgBucket::Entry entry = bucket.FirstNew(); entry != bucket.End();
             entry = bucket.NextNew(CfgBucket::PositionOf(entry))) {
            newWalk.push_back(static_cast<FakeCfgItem*>(entry)->Name());
        }
        EXPECT_EQ(newWalk, newInList);
    }

    FakeWorld world;
    FakeWorld scratch;
    CfgBucket bucket;
};

TEST_F(CfgBucketPlacesTest, ReplacementsEverywhereKeepPositionsAndTheNewIndexInListOrder) {
    for (unsigned long oid = 0; oid < 40; ++oid) {
        Append("i" + std::to_string(oid), oid, static_cast<long>(oid % 3) - 1);
    }
    for (unsigned long oid = 0; oid < 40; oid += 3) {
        Send(oid);
    }
    ExpectConsistent();
    for (int round = 0; round < 300; ++round) {
        const unsigned long oid = static_cast<unsigned long>(round * 7 % 40);
        Replace("r" + std::to_string(round), oid, static_cast<long>(round % 3) - 1);
        if (round % 5 == 0) {
            Send(static_cast<unsigned long>(round * 11 % 40));
        }
        ASSERT_NO_FATAL_FAILURE(ExpectConsistent()) << round;
    }
    EXPECT_EQ(40u, bucket.Size());
}

TEST_F(CfgBucketPlacesTest, AReplacementTakesItsPredecessorsPlaceAndThePredecessorTheReplaced) {
    Append("X", 1, 0);
    Append("P", 2, 0);
    Append("H", 3, 0);
    Append("Y", 4, 0);
    const CfgBucket::Position p = CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(2)));
    const CfgBucket::Position h = CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(3)));
    Replace("N", 3, 1);
    EXPECT_EQ(Names(), (std::vector<std::string>{"X", "N", "P", "Y"}));
    EXPECT_EQ(p, CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(3))));
    EXPECT_EQ(h, CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(2))));
    EXPECT_EQ(world.Take(), std::vector<std::string>{"delete H"});
}

TEST_F(CfgBucketPlacesTest, TheFirstNotReadyItemIsFoundFromOneItemPerGroup) {
    Append("a", 1, 0);
    Append("b", 2, 1);
    Append("c", 3, -1);
    Append("d", 4, 1);
    EXPECT_EQ(CfgBucket::NONE, bucket.FirstNotReady());
    world.groupReady[1] = false;
    world.listReadyCalls = 0;
    EXPECT_EQ(CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(2))), bucket.FirstNotReady());
    EXPECT_EQ(2, world.listReadyCalls) << "one item of each group, none without a key";
    world.groupReady[1] = true;
    world.ownListReady["c"] = false;
    EXPECT_EQ(CfgBucket::PositionOf(bucket.FindFirst(MibOidOf(3))), bucket.FirstNotReady());
}

}  // namespace
}  // namespace Zavrel
