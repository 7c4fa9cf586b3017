// Type widths the library and the stack's C API rely on, checked for the
// target this program was built for: the 32-bit embedded target
// (arm-linux-gnueabihf, unsigned long of 32 bits) or a 64-bit host build
// (x86-64, unsigned long of 64 bits).
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

template <typename... Args>
std::string Printed(const char* format, Args... args) {
    char text[64];
    std::snprintf(text, sizeof text, format, args...);
    return text;
}

// The recording double is process-wide: start each test on a clean one, so
// that a result scripted by another test of this program cannot answer here.
class WidthTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        RecordingStack::Instance().Reset();
    }
    void TearDown() override {
        RecordingStack::Instance().Reset();
        TestEnv::TearDown();
    }
};

#if defined(__arm__)
TEST_F(WidthTest, EmbeddedTargetHasThirtyTwoBitLongsAndPointers) {
    EXPECT_EQ(sizeof(unsigned long), 4u);
    EXPECT_EQ(sizeof(long), 4u);
    EXPECT_EQ(sizeof(void*), 4u);
    EXPECT_EQ(sizeof(size_t), 4u);
    EXPECT_EQ(ULONG_MAX, 4294967295UL);
}

TEST_F(WidthTest, EmbeddedTargetUnsignedLongWrapsAfterThirtyTwoBits) {
    volatile unsigned long top = 4294967295UL;
    EXPECT_EQ(top + 1UL, 0UL);
    EXPECT_EQ(static_cast<unsigned long>(-1), 4294967295UL);
}

TEST_F(WidthTest, EmbeddedTargetRowStructuresHaveThirtyTwoBitFields) {
    EXPECT_EQ(sizeof(amb_cipr_rtm_entity), 40u);
    EXPECT_EQ(sizeof(amb_cipr_rtm_route), 88u);
    EXPECT_EQ(sizeof(amb_cipr_rtm_rib), 96u);
    EXPECT_EQ(sizeof(amb_stubs_i3_ei), 88u);
    EXPECT_EQ(sizeof(amb_stubs_i3_ea), 32u);
}

TEST_F(WidthTest, EmbeddedTargetPrintsAllOnesUnsignedLongAsThirtyTwoBits) {
    EXPECT_EQ(Printed("%lu", static_cast<unsigned long>(-1)), "4294967295");
    EXPECT_EQ(Printed("%ld", static_cast<long>(0x80000000UL)), "-2147483648");
}
#elif defined(__x86_64__)
TEST_F(WidthTest, HostBuildHasSixtyFourBitLongsAndPointers) {
    EXPECT_EQ(sizeof(unsigned long), 8u);
    EXPECT_EQ(sizeof(long), 8u);
    EXPECT_EQ(sizeof(void*), 8u);
    EXPECT_EQ(sizeof(size_t), 8u);
    EXPECT_EQ(ULONG_MAX, 18446744073709551615UL);
}

TEST_F(WidthTest, HostBuildUnsignedLongGoesPastThirtyTwoBits) {
    volatile unsigned long top = 4294967295UL;
    EXPECT_EQ(top + 1UL, 4294967296UL);
}

TEST_F(WidthTest, HostBuildRowStructuresHaveSixtyFourBitFields) {
    EXPECT_EQ(sizeof(amb_cipr_rtm_entity), 80u);
    EXPECT_EQ(sizeof(amb_cipr_rtm_route), 144u);
    EXPECT_EQ(sizeof(amb_cipr_rtm_rib), 160u);
    EXPECT_EQ(sizeof(amb_stubs_i3_ei), 112u);
    EXPECT_EQ(sizeof(amb_stubs_i3_ea), 48u);
}

TEST_F(WidthTest, HostBuildPrintsAllOnesUnsignedLongAsSixtyFourBits) {
    EXPECT_EQ(Printed("%lu", static_cast<unsigned long>(-1)), "18446744073709551615");
    EXPECT_EQ(Printed("%ld", static_cast<long>(0x80000000UL)), "2147483648");
}
#else
TEST_F(WidthTest, TargetIsOneThatTheWidthsAreKnownFor) {
    ADD_FAILURE() << "no width expectations for this target";
}
#endif

TEST_F(WidthTest, UnsignedLongIsAsWideAsAPointer) {
    EXPECT_EQ(sizeof(unsigned long), sizeof(void*));
    EXPECT_GE(sizeof(unsigned long), 4u);
}

TEST_F(WidthTest, FixedWidthsHoldOnEveryTarget) {
    EXPECT_EQ(CHAR_BIT, 8);
    EXPECT_EQ(sizeof(bool), 1u);
    EXPECT_EQ(sizeof(unsigned short), 2u);
    EXPECT_EQ(sizeof(unsigned int), 4u);
    EXPECT_EQ(sizeof(int), 4u);
    EXPECT_EQ(sizeof(long long), 8u);
    EXPECT_EQ(sizeof(uint64_t), 8u);
    EXPECT_EQ(alignof(uint64_t), 8u);
}

TEST_F(WidthTest, LargestThirtyTwoBitOidComponentPrintsInFullWithLu) {
    const unsigned long component = 4294967295UL;
    EXPECT_EQ(Printed("%lu", component), "4294967295");
    EXPECT_EQ(Printed("%lu:%lu", component, 0UL), "4294967295:0");
}

TEST_F(WidthTest, SizeAndUnsignedIntPrintWithTheirOwnConversions) {
    EXPECT_EQ(Printed("%zu", static_cast<size_t>(4294967295U)), "4294967295");
    EXPECT_EQ(Printed("%u", 4294967295U), "4294967295");
    EXPECT_EQ(Printed("%u", static_cast<unsigned int>(0x8000 | 5)), "32773");
}

TEST_F(WidthTest, UnsignedIntWrapsAfterThirtyTwoBitsOnEveryTarget) {
    volatile unsigned int top = 4294967295U;
    EXPECT_EQ(top + 1U, 0U);
}

TEST_F(WidthTest, RowStructuresAreMadeOfWholeUnsignedLongs) {
    EXPECT_EQ(sizeof(amb_cipr_rtm_entity), 10 * sizeof(unsigned long));
    EXPECT_EQ(sizeof(amb_cipr_rtm_route), 14 * sizeof(unsigned long) + 32);
    EXPECT_EQ(sizeof(amb_cipr_rtm_rib), sizeof(amb_cipr_rtm_route) + 2 * sizeof(unsigned long));
    EXPECT_EQ(sizeof(amb_stubs_i3_ea), 4 * sizeof(unsigned long) + 16);
}

TEST_F(WidthTest, StackDoubleWritesTheLargestThirtyTwoBitWordInFull) {
    RecordingStack& stack = RecordingStack::Instance();
    sms_cipr_action(4294967295UL, SMS_CIPR_ACTION_DELETE);
    EXPECT_EQ(stack.Calls(), (std::vector<std::string>{"sms_cipr_action(4294967295, 2080)"}));
}

TEST_F(WidthTest, StackDoubleKeepsFullOidComponents) {
    unsigned long oid[SMS_MAX_OID_LEN] = {};
    const unsigned long length = sms_set_i3_ei_oid(oid, 4294967295UL, 1);
    ASSERT_EQ(length, 10u);
    EXPECT_EQ(oid[8], 4294967295UL);
}

}  // namespace
}  // namespace Zavrel::test
