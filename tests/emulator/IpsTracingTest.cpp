// The IPS tracing controls keep their state; nbb_os_failures is the stack's.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

class IpsTracingTest : public EmulatorFixture {};

TEST_F(IpsTracingTest, TripsControlTurnsTracingOnAndOff) {
    EXPECT_EQ(0, nbb_get_ips_tracing());
    nbb_trips_control(1);
    EXPECT_NE(0, nbb_get_ips_tracing());
    nbb_trips_control(0);
    EXPECT_EQ(0, nbb_get_ips_tracing());
}

TEST_F(IpsTracingTest, FiltersAreKeptPerFilterTypeAndResetWithANullList) {
    char list[] = "1, 7, 12";
    nbb_set_ips_filter(list, 6);
    char other[] = "3";
    nbb_set_ips_filter(other, 1);
    EXPECT_EQ("1, 7, 12", Stack().IpsFilter(6));
    EXPECT_EQ("3", Stack().IpsFilter(1));
    nbb_set_ips_filter(nullptr, 6);
    EXPECT_EQ("", Stack().IpsFilter(6));
    EXPECT_EQ("3", Stack().IpsFilter(1));
}

TEST_F(IpsTracingTest, TheControlsCallNothingBack) {
    nbb_trips_control(1);
    nbb_get_ips_tracing();
    nbb_set_ips_filter(nullptr, 2);
    EXPECT_TRUE(Side().Calls().empty());
}

TEST_F(IpsTracingTest, TheOsFailureCounterIsTheStacksAndCanBeCleared) {
    nbb_os_failures = 3;
    EXPECT_EQ(3ul, nbb_os_failures);
    nbb_os_failures = 0;
    EXPECT_EQ(0ul, nbb_os_failures);
}

}  // namespace
}  // namespace Zavrel::test
