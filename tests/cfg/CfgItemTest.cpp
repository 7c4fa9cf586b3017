#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "cfg/CfgItem.h"
#include "cfg/PlainCfgItem.h"
#include "mib/MibOid.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

using PlainItem = test::PlainCfgItem;

class CfgItemTest : public test::TestEnv {};

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
    explicit LargeItem(int& destroyed) : SmallItem(destroyed) {
        std::memset(m_payload, 0x5a, sizeof(m_payload));
    }
    bool PayloadIntact() const {
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

TEST_F(CfgItemTest, RowStatusNamesCoverOneToSix) {
    EXPECT_STREQ(CfgItem::GetRowStatusStr(1), "Active");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(2), "Not In Service");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(3), "Not Ready");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(4), "Create & Go");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(5), "Create & Wait");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(6), "Destroy");
}

TEST_F(CfgItemTest, RowStatusZeroSevenAndNegativePrintUnknown) {
    EXPECT_STREQ(CfgItem::GetRowStatusStr(0), "Unknown");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(7), "Unknown");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(-1), "Unknown");
}

TEST_F(CfgItemTest, ReasonNamesAreTheSnmpErrorNames) {
    const char* const names[] = {
        "noError",
        "tooBig",
        "noSuchName",
        "badValue",
        "readOnly",
        "genErr",
        "noAccess",
        "wrongType",
        "wrongLength",
        "wrongEncoding",
        "wrongValue",
        "noCreation",
        "inconsistentValue",
        "resourceUnavailable",
        "commitFailed",
        "undoFailed",
        "authorizationError",
        "notWritable",
        "inconsistentName",
    };
    for (long code = 0; code <= 18; ++code) {
        EXPECT_STREQ(CfgItem::GetReasonStr(code), names[code]) << code;
    }
}

TEST_F(CfgItemTest, ReasonNineteenAndNegativePrintUnknown) {
    EXPECT_STREQ(CfgItem::GetReasonStr(19), "Unknown");
    EXPECT_STREQ(CfgItem::GetReasonStr(-1), "Unknown");
}

TEST_F(CfgItemTest, ActionStateOnePrintsIssuedAndEveryOtherValueNew) {
    EXPECT_STREQ(CfgItem::GetActionStateStr(0), "New");
    EXPECT_STREQ(CfgItem::GetActionStateStr(1), "Issued");
    EXPECT_STREQ(CfgItem::GetActionStateStr(2), "New");
    EXPECT_STREQ(CfgItem::GetActionStateStr(-3), "New");
}

TEST_F(CfgItemTest, StartsNewWithNoErrorAndNoRetries) {
    PlainItem item;
    EXPECT_EQ(item.GetActionState(), CfgItem::ACTION_ITEM_NEW);
    EXPECT_FALSE(item.IsIssued());
    EXPECT_EQ(item.GetReasonCode(), 0u);
    EXPECT_STREQ(CfgItem::GetReasonStr(item.GetReasonCode()), "noError");
    EXPECT_EQ(item.GetRetryCount(), 0u);
}

TEST_F(CfgItemTest, SettersStoreStateReasonAndRetryCount) {
    PlainItem item;
    item.SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    item.SetReasonCode(13);
    item.SetRetryCount(4);
    EXPECT_TRUE(item.IsIssued());
    EXPECT_EQ(item.GetReasonCode(), 13u);
    EXPECT_EQ(item.GetRetryCount(), 4u);
}

TEST_F(CfgItemTest, BaseOperationsHaveTheirDefaultAnswers) {
    PlainItem item;
    PlainItem other;
    item.SetInMib(true, 5);
    EXPECT_TRUE(item.Replace(&other));
    EXPECT_TRUE(item.Replace(nullptr));
    EXPECT_FALSE(item.RemoveOnNotReady());
    EXPECT_FALSE(item.IsInFlight(1, 2));
    unsigned long key = 77;
    EXPECT_FALSE(item.GetListReadyKey(key));
    EXPECT_EQ(item.GetActionState(), CfgItem::ACTION_ITEM_NEW);
}

TEST_F(CfgItemTest, ParkedIsIssuedWithTheRetriesUsedUp) {
    PlainItem item;
    item.SetRetryCount(CfgItem::MAX_RETRIES + 1);
    EXPECT_FALSE(item.IsParked()) << "New";
    item.SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    EXPECT_TRUE(item.IsParked());
    item.SetRetryCount(CfgItem::MAX_RETRIES);
    EXPECT_FALSE(item.IsParked());
    EXPECT_EQ(9u, CfgItem::MAX_RETRIES);
}

TEST(CfgItemMemoryTest, ItemsOfDifferentSizesAreKeptApartAndFreedThroughTheBase) {
    int destroyed = 0;
    std::vector<CfgItem*> items;
    for (int i = 0; i < 1000; ++i) {
        items.push_back(i % 2 == 0 ? static_cast<CfgItem*>(new SmallItem(destroyed))
                                   : static_cast<CfgItem*>(new LargeItem(destroyed)));
    }
    for (size_t i = 1; i < items.size(); i += 2) {
        EXPECT_TRUE(static_cast<LargeItem*>(items[i])->PayloadIntact()) << i;
    }
    for (CfgItem* item : items) {
        delete item;
    }
    EXPECT_EQ(1000, destroyed);
}

TEST(CfgItemMemoryTest, FreedBlocksAreUsedAgain) {
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

TEST(CfgItemMemoryTest, NothrowNewGivesAnItem) {
    int destroyed = 0;
    CfgItem* item = new (std::nothrow) SmallItem(destroyed);
    ASSERT_NE(nullptr, item);
    EXPECT_TRUE(item->CfgItemReady());
    delete item;
    EXPECT_EQ(1, destroyed);
}

}  // namespace
}  // namespace Zavrel
