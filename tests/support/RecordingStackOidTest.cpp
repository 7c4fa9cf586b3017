// The deterministic OIDs the recording double builds for rows.
#include <gtest/gtest.h>

#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

using Oid = std::vector<unsigned long>;

const unsigned char kNet[4] = {10, 1, 2, 0};
const unsigned char kGw[4] = {10, 1, 2, 254};
const unsigned char kV6Net[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
const unsigned char kV6Gw[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

class RecordingStackOidTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        stack.Reset();
    }
    // The OID a builder wrote, cut to the length it returned.
    static Oid Written(const unsigned long* buffer, unsigned long length) {
        return Oid(buffer, buffer + length);
    }
    RecordingStack& stack = RecordingStack::Instance();
    unsigned long buffer[SMS_MAX_OID_LEN] = {};
};

TEST_F(RecordingStackOidTest, Ipv4RouteOidHoldsInstanceFamilyLengthBothAddressesAndIfIndex) {
    EXPECT_EQ(RecordingStack::RouteOid(5, 1, kNet, 24, kGw, 7),
              (Oid{1, 3, 6, 1, 4, 1, 4874, 2, 5, 1, 24, 10, 1, 2, 0, 10, 1, 2, 254, 7}));
}

TEST_F(RecordingStackOidTest, Ipv6RouteOidHoldsSixteenBytesPerAddress) {
    const Oid oid = RecordingStack::RouteOid(32773, 2, kV6Net, 32, kV6Gw, 0);
    ASSERT_EQ(oid.size(), 8u + 3u + 16u + 16u + 1u);
    EXPECT_EQ(Oid(oid.begin(), oid.begin() + 15),
              (Oid{1, 3, 6, 1, 4, 1, 4874, 2, 32773, 2, 32, 0x20, 0x01, 0x0d, 0xb8}));
    EXPECT_EQ(oid[27], 0xfeu);
    EXPECT_EQ(oid[42], 1u);
    EXPECT_EQ(oid[43], 0u);
}

TEST_F(RecordingStackOidTest, RouteBuilderFillsTheBufferAndReturnsTheLength) {
    const unsigned long length = sms_get_route_oid(buffer, 5, 1, kNet, 24, kGw, 7);
    EXPECT_EQ(length, 20u);
    EXPECT_EQ(Written(buffer, length), RecordingStack::RouteOid(5, 1, kNet, 24, kGw, 7));
}

TEST_F(RecordingStackOidTest, RedistributionOidHoldsInstanceSourceAndDestination) {
    EXPECT_EQ(RecordingStack::RedistOid(5, 3, 14), (Oid{1, 3, 6, 1, 4, 1, 4874, 3, 5, 3, 14}));
    const unsigned long length = sms_set_cipr_redist_oid(buffer, 5, 3, 14);
    EXPECT_EQ(Written(buffer, length), (Oid{1, 3, 6, 1, 4, 1, 4874, 3, 5, 3, 14}));
}

TEST_F(RecordingStackOidTest, InterfaceOidHoldsInstanceAndIfIndex) {
    EXPECT_EQ(RecordingStack::EiOid(5, 100), (Oid{1, 3, 6, 1, 4, 1, 4874, 4, 5, 100}));
    const unsigned long length = sms_set_i3_ei_oid(buffer, 5, 100);
    EXPECT_EQ(Written(buffer, length), (Oid{1, 3, 6, 1, 4, 1, 4874, 4, 5, 100}));
}

TEST_F(RecordingStackOidTest, InterfaceAddressOidTakesFourOrSixteenBytesByType) {
    EXPECT_EQ(RecordingStack::EaOid(5, 100, kGw, SMS_ADDR_TYPE_IPV4),
              (Oid{1, 3, 6, 1, 4, 1, 4874, 5, 5, 100, 1, 10, 1, 2, 254}));
    const unsigned long length = sms_set_i3_ea_oid(buffer, 32773, 100, kV6Gw, SMS_ADDR_TYPE_IPV6);
    ASSERT_EQ(length, 8u + 3u + 16u);
    EXPECT_EQ(Written(buffer, length), (Oid{1, 3, 6, 1, 4, 1, 4874, 5, 32773, 100, 2, 0xfe, 0x80, 0,
                                            0, 0, 0, 0, 0, 0, 0,    0, 0,     0,   0, 0,    1}));
}

TEST_F(RecordingStackOidTest, MissingAddressesCountAsZeroBytes) {
    EXPECT_EQ(RecordingStack::RouteOid(5, 1, nullptr, 0, nullptr, 0),
              (Oid{1, 3, 6, 1, 4, 1, 4874, 2, 5, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(RecordingStack::EaOid(5, 1, nullptr, 1),
              (Oid{1, 3, 6, 1, 4, 1, 4874, 5, 5, 1, 1, 0, 0, 0, 0}));
}

TEST_F(RecordingStackOidTest, NegativeKeysBecomeFullWordComponents) {
    const Oid oid = RecordingStack::RedistOid(5, -1, 14);
    EXPECT_EQ(oid[9], static_cast<unsigned long>(-1));
}

TEST_F(RecordingStackOidTest, DifferentRowsGetDifferentOids) {
    EXPECT_NE(RecordingStack::RouteOid(5, 1, kNet, 24, kGw, 0),
              RecordingStack::RouteOid(5, 1, kNet, 25, kGw, 0));
    EXPECT_NE(RecordingStack::RedistOid(5, 3, 14), RecordingStack::RedistOid(5, 14, 3));
    EXPECT_NE(RecordingStack::EiOid(5, 100), RecordingStack::EiOid(6, 100));
}

TEST_F(RecordingStackOidTest, ScriptedResultReplacesTheLengthButTheBufferIsStillWritten) {
    stack.SetResult("sms_set_i3_ei_oid", 0);
    EXPECT_EQ(sms_set_i3_ei_oid(buffer, 5, 100), 0u);
    EXPECT_EQ(Written(buffer, 10), (Oid{1, 3, 6, 1, 4, 1, 4874, 4, 5, 100}));
}

TEST_F(RecordingStackOidTest, NullBufferIsNotWrittenButTheLengthIsReturned) {
    EXPECT_EQ(sms_set_i3_ei_oid(nullptr, 5, 100), 10u);
}

TEST_F(RecordingStackOidTest, BuilderWritesNothingBeyondTheOid) {
    unsigned long guarded[SMS_MAX_OID_LEN];
    for (unsigned long& c : guarded) {
        c = 77;
    }
    const unsigned long length = sms_set_cipr_redist_oid(guarded, 5, 3, 14);
    EXPECT_EQ(guarded[length], 77u);
    EXPECT_EQ(guarded[SMS_MAX_OID_LEN - 1], 77u);
}

}  // namespace
}  // namespace Zavrel::test
