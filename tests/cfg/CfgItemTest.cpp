#include <string>

#include <gtest/gtest.h>

#include "cfg/CfgItem.h"
#include "mib/MibOid.h"
#include "cfg/PlainCfgItem.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

using PlainItem = test::PlainCfgItem;

class CfgItemTest : public test::TestEnv {};

TEST_F(CfgItemTest, RowStatusNamesCoverOneToSix)
{
    EXPECT_STREQ(CfgItem::GetRowStatusStr(1), "Active");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(2), "Not In Service");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(3), "Not Ready");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(4), "Create & Go");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(5), "Create & Wait");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(6), "Destroy");
}

TEST_F(CfgItemTest, RowStatusZeroSevenAndNegativePrintUnknown)
{
    EXPECT_STREQ(CfgItem::GetRowStatusStr(0), "Unknown");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(7), "Unknown");
    EXPECT_STREQ(CfgItem::GetRowStatusStr(-1), "Unknown");
}

TEST_F(CfgItemTest, ReasonNamesAreTheSnmpErrorNames)
{
    const char* const names[] = {
        "noError",    "tooBig",        "noSuchName",        "badValue",
        "readOnly",   "genErr",        "noAccess",          "wrongType",
        "wrongLength", "wrongEncoding", "wrongValue",       "noCreation",
        "inconsistentValue", "resourceUnavailable", "commitFailed", "undoFailed",
        "authorizationError", "notWritable", "inconsistentName",
    };
    for (long code = 0; code <= 18; ++code) {
        EXPECT_STREQ(CfgItem::GetReasonStr(code), names[code]) << code;
    }
}

TEST_F(CfgItemTest, ReasonNineteenAndNegativePrintUnknown)
{
    EXPECT_STREQ(CfgItem::GetReasonStr(19), "Unknown");
    EXPECT_STREQ(CfgItem::GetReasonStr(-1), "Unknown");
}

TEST_F(CfgItemTest, ActionStateOnePrintsIssuedAndEveryOtherValueNew)
{
    EXPECT_STREQ(CfgItem::GetActionStateStr(0), "New");
    EXPECT_STREQ(CfgItem::GetActionStateStr(1), "Issued");
    EXPECT_STREQ(CfgItem::GetActionStateStr(2), "New");
    EXPECT_STREQ(CfgItem::GetActionStateStr(-3), "New");
}

TEST_F(CfgItemTest, StartsNewWithNoErrorAndNoRetries)
{
    PlainItem item;
    EXPECT_EQ(item.GetActionState(), CfgItem::ACTION_ITEM_NEW);
    EXPECT_FALSE(item.IsIssued());
    EXPECT_EQ(item.GetReasonCode(), 0u);
    EXPECT_STREQ(CfgItem::GetReasonStr(item.GetReasonCode()), "noError");
    EXPECT_EQ(item.GetRetryCount(), 0u);
}

TEST_F(CfgItemTest, SettersStoreStateReasonAndRetryCount)
{
    PlainItem item;
    item.SetActionState(CfgItem::ACTION_ITEM_ISSUED);
    item.SetReasonCode(13);
    item.SetRetryCount(4);
    EXPECT_TRUE(item.IsIssued());
    EXPECT_EQ(item.GetReasonCode(), 13u);
    EXPECT_EQ(item.GetRetryCount(), 4u);
}

TEST_F(CfgItemTest, BaseOperationsHaveTheirDefaultAnswers)
{
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

}  // namespace
}  // namespace Zavrel
