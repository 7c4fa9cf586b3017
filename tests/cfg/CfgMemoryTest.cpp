#include "cfg/CfgMemory.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <memory_resource>
#include <new>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgItem.h"
#include "cfg/PlainCfgItem.h"

namespace Zavrel {
namespace {

// Two item kinds of different sizes, each recording its destruction.
class SmallItem : public test::PlainCfgItem {
public:
    explicit SmallItem(int& destroyed) : m_destroyed(destroyed) {}
    ~SmallItem() override { ++m_destroyed; }

private:
    int& m_destroyed;
};

class LargeItem : public SmallItem {
public:
    explicit LargeItem(int& destroyed) : SmallItem(destroyed)
    {
        std::memset(m_payload, 0x5a, sizeof(m_payload));
    }
    bool PayloadIntact() const
    {
        for (unsigned char byte : m_payload) {
            if (byte != 0x5a) {
                return false;
            }
        }
        return true;
    }

private:
    unsigned char m_payload[700];
};

bool Aligned(const void* block)
{
    return reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t) == 0;
}

TEST(CfgMemoryTest, ItemsOfDifferentSizesAreKeptApartAndFreedThroughTheBase)
{
    int destroyed = 0;
    std::vector<CfgItem*> items;
    for (int i = 0; i < 1000; ++i) {
        items.push_back(i % 2 == 0 ? static_cast<CfgItem*>(new SmallItem(destroyed))
                                   : static_cast<CfgItem*>(new LargeItem(destroyed)));
        EXPECT_TRUE(Aligned(items.back()));
    }
    for (size_t i = 1; i < items.size(); i += 2) {
        EXPECT_TRUE(static_cast<LargeItem*>(items[i])->PayloadIntact()) << i;
    }
    for (CfgItem* item : items) {
        delete item;
    }
    EXPECT_EQ(1000, destroyed);
}

TEST(CfgMemoryTest, FreedBlocksAreUsedAgain)
{
    int destroyed = 0;
    std::vector<std::unique_ptr<CfgItem>> first;
    for (int i = 0; i < 100; ++i) {
        first.emplace_back(new LargeItem(destroyed));
    }
    first.clear();
    std::vector<std::unique_ptr<LargeItem>> second;
    for (int i = 0; i < 100; ++i) {
        second.emplace_back(new LargeItem(destroyed));
        EXPECT_TRUE(second.back()->PayloadIntact());
    }
    second.clear();
    EXPECT_EQ(200, destroyed);
}

TEST(CfgMemoryTest, NothrowNewGivesAnItem)
{
    int destroyed = 0;
    CfgItem* item = new (std::nothrow) SmallItem(destroyed);
    ASSERT_NE(nullptr, item);
    EXPECT_TRUE(item->CfgItemReady());
    delete item;
    EXPECT_EQ(1, destroyed);
}

TEST(CfgMemoryTest, BlocksAreAlignedAndWritable)
{
    std::vector<std::pair<void*, std::size_t>> blocks;
    for (std::size_t size = 1; size <= 4096; size *= 3) {
        void* block = CfgMemoryAllocate(size);
        ASSERT_NE(nullptr, block);
        EXPECT_TRUE(Aligned(block)) << size;
        std::memset(block, 0xa5, size);
        blocks.emplace_back(block, size);
    }
    for (const auto& block : blocks) {
        CfgMemoryDeallocate(block.first, block.second);
    }
}

TEST(CfgMemoryTest, FreeingNullDoesNothing)
{
    const CfgMemoryUse before = CfgMemoryUsage();
    CfgMemoryDeallocate(nullptr, 64);
    EXPECT_EQ(before.inUse, CfgMemoryUsage().inUse);
    EXPECT_EQ(before.reserved, CfgMemoryUsage().reserved);
}

TEST(CfgMemoryTest, UsageCountsTheBytesOfLiveBlocks)
{
    int destroyed = 0;
    const CfgMemoryUse before = CfgMemoryUsage();
    CfgItem* item = new LargeItem(destroyed);
    const CfgMemoryUse during = CfgMemoryUsage();
    EXPECT_EQ(sizeof(LargeItem), during.inUse - before.inUse);
    EXPECT_GE(during.reserved, during.inUse);
    delete item;
    EXPECT_EQ(before.inUse, CfgMemoryUsage().inUse);
    EXPECT_EQ(1, destroyed);
}

TEST(CfgMemoryTest, ContainersOnTheResourceAreCountedToo)
{
    const CfgMemoryUse before = CfgMemoryUsage();
    {
        std::pmr::vector<std::uint64_t> values(CfgMemory());
        values.reserve(100);
        EXPECT_EQ(100 * sizeof(std::uint64_t), CfgMemoryUsage().inUse - before.inUse);
    }
    EXPECT_EQ(before.inUse, CfgMemoryUsage().inUse);
}

}  // namespace
}  // namespace Zavrel
