// SmsConstants: every number of the stack API pinned to its value.
#include "stackapi/SmsConstants.h"

#include <gtest/gtest.h>

#include "cfg/RouteRedistributeItem.h"
#include "routing/RedistributionProfile.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {
namespace {

TEST(SmsConstantsTest, RowStatusValuesOneToSix) {
    EXPECT_EQ(Sms::ROW_ACTIVE, 1);
    EXPECT_EQ(Sms::ROW_NOT_IN_SERVICE, 2);
    EXPECT_EQ(Sms::ROW_NOT_READY, 3);
    EXPECT_EQ(Sms::ROW_CREATE_AND_GO, 4);
    EXPECT_EQ(Sms::ROW_CREATE_AND_WAIT, 5);
    EXPECT_EQ(Sms::ROW_DESTROY, 6);
    EXPECT_EQ(Sms::STATUS_UP, 1);
    EXPECT_EQ(Sms::STATUS_DOWN, 2);
}

TEST(SmsConstantsTest, RowResultsWithAMeaningOfTheirOwn) {
    EXPECT_EQ(Sms::RESULT_DONE, 1u);
    EXPECT_EQ(Sms::RESULT_WRONG_VALUE, 3u);
    EXPECT_EQ(Sms::RESULT_TEMPORARY, 5u);
    EXPECT_EQ(Sms::RESULT_NO_ROW, 6u);
}

TEST(SmsConstantsTest, TheThreeFamilyNumberingsDiffer) {
    // The stack's families.
    EXPECT_EQ(Sms::AFI_IPV4, 0);
    EXPECT_EQ(Sms::AFI_IPV6, 41);
    EXPECT_EQ(DcRtmMgr::AFI_IPV4, Sms::AFI_IPV4);
    EXPECT_EQ(DcRtmMgr::AFI_IPV6, Sms::AFI_IPV6);
    // Route and address records.
    EXPECT_EQ(Sms::RECORD_IPV4, 1);
    EXPECT_EQ(Sms::RECORD_IPV6, 2);
    // Address rows.
    EXPECT_EQ(Sms::ADDR_TYPE_IPV4, 1u);
    EXPECT_EQ(Sms::ADDR_TYPE_IPV6, 2u);
}

TEST(SmsConstantsTest, RouteProtocolCodesFollowIana) {
    EXPECT_EQ(Sms::PROTO_LOCAL, 2);
    EXPECT_EQ(Sms::PROTO_STATIC, 3);
    EXPECT_EQ(Sms::PROTO_RIP, 8);
    EXPECT_EQ(Sms::PROTO_OSPF, 13);
    EXPECT_EQ(Sms::PROTO_BGP, 14);
}

TEST(SmsConstantsTest, RedistributionRowsCarryTheCodeInTheUpperHalf) {
    EXPECT_EQ(RedistributionProfile::PROTO_CONNECTED, 0x20000u);
    EXPECT_EQ(RedistributionProfile::PROTO_STATIC, 0x30000u);
    EXPECT_EQ(RedistributionProfile::PROTO_RIP, 0x80000u);
    EXPECT_EQ(RedistributionProfile::PROTO_OSPF, 0xd0000u);
    EXPECT_EQ(RedistributionProfile::PROTO_BGP, 0xe0000u);
    EXPECT_EQ(RouteRedistributeItem::PROTOCOL_RIP, 0x80000);
    EXPECT_EQ(RouteRedistributeItem::PROTOCOL_OSPF, 0xd0000);
}

}  // namespace
}  // namespace Zavrel
