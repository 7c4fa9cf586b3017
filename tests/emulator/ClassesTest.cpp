// The emulator's building blocks on their own: addresses, OIDs, the RIB's
// choice and the fault plan's sequence.
#include <gtest/gtest.h>

#include "emulator/FaultPlan.h"
#include "emulator/IpAddress.h"
#include "emulator/OidCodec.h"
#include "emulator/Rib.h"
#include "stackapi/stackapi.h"

namespace Zavrel::Emulator {
namespace {

IpAddress Ip(const char* text) {
    IpAddress address;
    EXPECT_TRUE(address.Parse(text));
    return address;
}

TEST(IpAddressTest, MaskingClearsTheHostBitsAcrossAByte) {
    EXPECT_EQ("10.0.0.0", Ip("10.0.0.77").Masked(24).ToString());
    EXPECT_EQ("10.0.0.64", Ip("10.0.0.77").Masked(26).ToString());
    EXPECT_EQ("0.0.0.0", Ip("10.0.0.77").Masked(0).ToString());
    EXPECT_EQ("2001:db8::", Ip("2001:db8::1").Masked(64).ToString());
    EXPECT_EQ("2001:db8::1", Ip("2001:db8::1").Masked(128).ToString());
}

TEST(IpAddressTest, AnAddressIsInAPrefixOfItsOwnFamilyOnly) {
    EXPECT_TRUE(Ip("10.0.0.254").InPrefix(Ip("10.0.0.0"), 24));
    EXPECT_FALSE(Ip("10.0.1.254").InPrefix(Ip("10.0.0.0"), 24));
    EXPECT_FALSE(Ip("::").InPrefix(Ip("0.0.0.0"), 0));
}

TEST(IpAddressTest, BadTextLeavesTheAddressAsItWas) {
    IpAddress address = Ip("10.0.0.1");
    EXPECT_FALSE(address.Parse("10.0.0"));
    EXPECT_EQ("10.0.0.1", address.ToString());
}

TEST(IpAddressTest, ANullPointerGivesTheZeroAddressOfTheFamily) {
    EXPECT_EQ("::", IpAddress(IpAddress::IPV6, nullptr).ToString());
    EXPECT_TRUE(IpAddress(IpAddress::IPV4, nullptr).IsZero());
}

TEST(OidCodecTest, WriteCopiesTheComponentsAndReturnsTheLength) {
    const Oid oid = OidCodec::Ei(5, 100);
    unsigned long buffer[SMS_MAX_OID_LEN] = {};
    EXPECT_EQ(11ul, OidCodec::Write(oid, buffer));
    EXPECT_EQ(100ul, buffer[10]);
    EXPECT_EQ(11ul, OidCodec::Write(oid, nullptr));
    EXPECT_EQ("1:3:6:1:4:1:47810:7:3:5:100", OidCodec::ToString(oid));
}

TEST(OidCodecTest, NullAddressesCountAsZero) {
    const unsigned char zero[16] = {};
    EXPECT_EQ(OidCodec::Route(5, 1, zero, 0, zero, 0),
              OidCodec::Route(5, 1, nullptr, 0, nullptr, 0));
}

RibEntry Candidate(RouteSource source, unsigned long distance, unsigned long metric,
                   const char* nextHop, bool unresolved = false) {
    RibEntry entry;
    entry.destination = Ip("192.168.0.0");
    entry.prefixLength = 16;
    entry.nextHop = Ip(nextHop);
    entry.source = source;
    entry.distance = distance;
    entry.metric = metric;
    entry.unresolved = unresolved;
    return entry;
}

TEST(RibTest, TheLowestDistanceWinsThenTheLowestMetric) {
    Rib rib;
    rib.SetDestination(Ip("192.168.0.0"), 16,
                       {Candidate(RouteSource::Rip, 120, 1, "10.0.0.1"),
                        Candidate(RouteSource::OspfInternal, 40, 20, "10.0.0.2"),
                        Candidate(RouteSource::OspfInternal, 40, 10, "10.0.0.3")});
    const RibEntry* installed = rib.Installed(Ip("192.168.0.0"), 16);
    ASSERT_NE(nullptr, installed);
    EXPECT_EQ("10.0.0.3", installed->nextHop.ToString());
    EXPECT_EQ(3u, rib.Size());
    EXPECT_EQ(1u, rib.FibCount());
}

TEST(RibTest, UnresolvedCandidatesAreNeverInstalled) {
    Rib rib;
    rib.SetDestination(Ip("192.168.0.0"), 16,
                       {Candidate(RouteSource::Static, 1, 1, "10.0.0.1", true)});
    EXPECT_EQ(nullptr, rib.Installed(Ip("192.168.0.0"), 16));
    EXPECT_EQ(0u, rib.FibCount());
    EXPECT_EQ(1u, rib.Size());
}

TEST(RibTest, SettingADestinationReplacesOnlyItsOwnCandidates) {
    Rib rib;
    rib.SetDestination(Ip("192.168.0.0"), 16, {Candidate(RouteSource::Static, 1, 1, "10.0.0.1")});
    RibEntry other = Candidate(RouteSource::Static, 1, 1, "10.0.0.1");
    other.prefixLength = 24;
    rib.SetDestination(Ip("192.168.0.0"), 24, {other});
    rib.SetDestination(Ip("192.168.0.0"), 16, {});
    EXPECT_EQ(1u, rib.Size());
    EXPECT_EQ(1u, rib.FibCount());
    EXPECT_NE(nullptr, rib.Installed(Ip("192.168.0.0"), 24));
}

TEST(FaultPlanTest, FailNextIsConsumedOnePerRequest) {
    FaultPlan plan;
    plan.FailNext(RequestKind::Route, 2, 5);
    EXPECT_TRUE(plan.Decide(RequestKind::Route).fail);
    EXPECT_EQ(1u, plan.PendingFailures(RequestKind::Route));
    EXPECT_FALSE(plan.Decide(RequestKind::Address).fail);
    EXPECT_EQ(5ul, plan.Decide(RequestKind::Route).result);
    EXPECT_FALSE(plan.Decide(RequestKind::Route).fail);
}

TEST(FaultPlanTest, ADelayOfZeroRunsCountsAsOne) {
    FaultPlan plan;
    plan.SetAnswerDelay(0);
    EXPECT_EQ(1u, plan.Decide(RequestKind::Walk).runs);
    plan.SetAnswerDelay(RequestKind::Walk, 4);
    EXPECT_EQ(4u, plan.Decide(RequestKind::Walk).runs);
    EXPECT_FALSE(plan.IsEmpty());
}

}  // namespace
}  // namespace Zavrel::Emulator
