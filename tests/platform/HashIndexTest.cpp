#include "platform/HashIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace Zavrel::test {
namespace {

struct Thing {
    int id;
};

std::vector<int> IdsUnder(const HashIndex<Thing>& index, size_t hash) {
    std::vector<int> ids;
    index.ForEach(hash, [&](Thing* thing) { ids.push_back(thing->id); });
    std::sort(ids.begin(), ids.end());
    return ids;
}

TEST(HashIndexTest, AnEmptyIndexFindsAndErasesNothing) {
    HashIndex<Thing> index;
    Thing a{1};
    EXPECT_TRUE(index.Empty());
    EXPECT_EQ(IdsUnder(index, 7), std::vector<int>{});
    EXPECT_FALSE(index.Erase(7, &a));
    EXPECT_EQ(0u, index.Size());
}

TEST(HashIndexTest, ObjectsAreFoundUnderTheirOwnHashOnly) {
    HashIndex<Thing> index;
    Thing a{1};
    Thing b{2};
    Thing c{3};
    index.Insert(10, &a);
    index.Insert(20, &b);
    index.Insert(10, &c);
    EXPECT_EQ(3u, index.Size());
    EXPECT_EQ(IdsUnder(index, 10), (std::vector<int>{1, 3}));
    EXPECT_EQ(IdsUnder(index, 20), std::vector<int>{2});
    EXPECT_EQ(IdsUnder(index, 30), std::vector<int>{});
}

TEST(HashIndexTest, EraseTakesOneObjectOffItsHashAndNothingElse) {
    HashIndex<Thing> index;
    Thing a{1};
    Thing b{2};
    index.Insert(5, &a);
    index.Insert(5, &b);
    EXPECT_FALSE(index.Erase(6, &a)) << "filed under another hash";
    EXPECT_TRUE(index.Erase(5, &a));
    EXPECT_FALSE(index.Erase(5, &a)) << "already gone";
    EXPECT_EQ(IdsUnder(index, 5), std::vector<int>{2});
    EXPECT_EQ(1u, index.Size());
}

TEST(HashIndexTest, OneObjectFiledTwiceIsErasedOnceAtATime) {
    HashIndex<Thing> index;
    Thing a{1};
    index.Insert(5, &a);
    index.Insert(5, &a);
    EXPECT_EQ(IdsUnder(index, 5), (std::vector<int>{1, 1}));
    EXPECT_TRUE(index.Erase(5, &a));
    EXPECT_EQ(IdsUnder(index, 5), std::vector<int>{1});
}

TEST(HashIndexTest, HashesThatDifferOnlyInTheirHighBitsAreKeptApart) {
    HashIndex<Thing> index;
    std::vector<Thing> things;
    for (int i = 0; i < 64; ++i) {
        things.push_back(Thing{i});
    }
    const unsigned topShift = sizeof(size_t) * 8 - 8;
    for (int i = 0; i < 64; ++i) {
        index.Insert(static_cast<size_t>(i) << topShift, &things[static_cast<size_t>(i)]);
    }
    for (int i = 0; i < 64; ++i) {
        EXPECT_EQ(IdsUnder(index, static_cast<size_t>(i) << topShift), std::vector<int>{i});
    }
}

TEST(HashIndexTest, ClearEmptiesTheIndexAndItFillsAgain) {
    HashIndex<Thing> index;
    Thing a{1};
    for (size_t h = 0; h < 100; ++h) {
        index.Insert(h, &a);
    }
    index.Clear();
    EXPECT_TRUE(index.Empty());
    for (size_t h = 0; h < 100; ++h) {
        ASSERT_EQ(IdsUnder(index, h), std::vector<int>{}) << h;
    }
    index.Insert(42, &a);
    EXPECT_EQ(IdsUnder(index, 42), std::vector<int>{1});
}

// Random inserts and erases against a multimap, over few hashes (long runs
// of one hash, and runs of different hashes that meet) and across growth;
// every hash is looked up after each step, so that an erase that breaks a
// probe run shows at once.
TEST(HashIndexTest, RandomInsertsAndErasesAgreeWithAMultimap) {
    std::mt19937 random(7);
    std::vector<std::unique_ptr<Thing>> things;
    HashIndex<Thing> index;
    std::multimap<size_t, Thing*> model;
    for (int step = 0; step < 4000; ++step) {
        const size_t hash = random() % 97;
        if (model.empty() || random() % 3 != 0) {
            things.push_back(std::make_unique<Thing>(Thing{step}));
            index.Insert(hash, things.back().get());
            model.emplace(hash, things.back().get());
        } else {
            auto victim = model.begin();
            std::advance(victim, static_cast<long>(random() % model.size()));
            ASSERT_TRUE(index.Erase(victim->first, victim->second)) << step;
            model.erase(victim);
        }
        ASSERT_EQ(model.size(), index.Size()) << step;
        for (size_t h = 0; h < 97; ++h) {
            std::vector<int> expected;
            const auto range = model.equal_range(h);
            for (auto it = range.first; it != range.second; ++it) {
                expected.push_back(it->second->id);
            }
            std::sort(expected.begin(), expected.end());
            ASSERT_EQ(IdsUnder(index, h), expected) << "step " << step << " hash " << h;
        }
    }
}

}  // namespace
}  // namespace Zavrel::test
