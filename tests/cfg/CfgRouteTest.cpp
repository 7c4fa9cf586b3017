#include "cfg/CfgRoute.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

const unsigned char NET_A[16] = {10, 1, 0, 0};
const unsigned char NET_B[16] = {10, 2, 0, 0};
const unsigned char GW_A[16] = {192, 168, 1, 1};
const unsigned char NET6[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
const unsigned char GW6[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

class CfgRouteTest : public test::TestEnv {
protected:
    unsigned int AddV4(const unsigned char* net, unsigned int length, unsigned short metric = 1,
                       unsigned long ifIndex = 100) {
        return routes.AddEntry(1, net, length, GW_A, ifIndex, 0, metric, 3, 4, 1);
    }

    CfgRoute routes{12};
};

TEST_F(CfgRouteTest, NewListIsEmpty) {
    EXPECT_EQ(0u, routes.Count());
    EXPECT_EQ(12, routes.Vlan());
    EXPECT_TRUE(routes.Entries().empty());
    EXPECT_EQ(nullptr, routes.GetCfgRouteEntry(1, NET_A, 16, GW_A));
}

TEST_F(CfgRouteTest, AddEntryStoresEveryField) {
    EXPECT_EQ(1u, routes.AddEntry(1, NET_A, 16, GW_A, 7, 55, 9, 3, 4, 2));
    ASSERT_EQ(1u, routes.Entries().size());
    const CfgRouteEntry& entry = routes.Entries().front();
    EXPECT_EQ(1, entry.family);
    EXPECT_EQ(0, memcmp(NET_A, entry.destination, 4));
    EXPECT_EQ(0, memcmp(GW_A, entry.nextHop, 4));
    EXPECT_EQ(16u, entry.prefixLength);
    EXPECT_EQ(7u, entry.ifIndex);
    EXPECT_EQ(55, entry.reserved);
    EXPECT_EQ(9, entry.metric);
    EXPECT_EQ(3, entry.pathType);
    EXPECT_EQ(4, entry.rowStatus);
    EXPECT_EQ(2, entry.adminStatus);
    EXPECT_EQ(1u, routes.Count());
}

TEST_F(CfgRouteTest, AddingTheFirstEntryAgainUpdatesItInPlace) {
    ASSERT_EQ(1u, AddV4(NET_A, 16, 5));
    EXPECT_EQ(0u, routes.AddEntry(1, NET_A, 16, GW_A, 8, 3, 20, 4, 6, 2));
    EXPECT_EQ(1u, routes.Count());
    ASSERT_EQ(1u, routes.Entries().size());
    const CfgRouteEntry& entry = routes.Entries().front();
    EXPECT_EQ(20, entry.metric);
    EXPECT_EQ(3, entry.reserved);
    EXPECT_EQ(8u, entry.ifIndex);
    EXPECT_EQ(4, entry.pathType);
    EXPECT_EQ(6, entry.rowStatus);
    EXPECT_EQ(2, entry.adminStatus);
}

TEST_F(CfgRouteTest, AddingARouteEqualToTheSecondEntryAppendsADuplicate) {
    AddV4(NET_A, 16);
    AddV4(NET_B, 16);
    EXPECT_EQ(1u, AddV4(NET_B, 16));
    EXPECT_EQ(3u, routes.Count());
    EXPECT_EQ(3u, routes.Entries().size());
}

TEST_F(CfgRouteTest, LookupOnlyEverFindsTheFirstEntry) {
    AddV4(NET_A, 16);
    AddV4(NET_B, 16);
    EXPECT_EQ(&routes.Entries().front(), routes.GetCfgRouteEntry(1, NET_A, 16, GW_A));
    EXPECT_EQ(nullptr, routes.GetCfgRouteEntry(1, NET_B, 16, GW_A));
    EXPECT_EQ(nullptr, routes.GetCfgRouteEntry(1, NET_A, 24, GW_A));
    EXPECT_EQ(nullptr, routes.GetCfgRouteEntry(2, NET_A, 16, GW_A));
}

TEST_F(CfgRouteTest, DeleteWithSamePrefixLengthKeepsTheEntry) {
    AddV4(NET_A, 16);
    EXPECT_EQ(1u, routes.DelEntry(1, NET_A, 16, GW_A, 100));
    EXPECT_EQ(1u, routes.Entries().size());
    EXPECT_EQ(1u, routes.Count());
}

TEST_F(CfgRouteTest, DeleteWithAnotherPrefixLengthRemovesTheEntryButKeepsTheCount) {
    AddV4(NET_A, 16);
    AddV4(NET_B, 16);
    EXPECT_EQ(1u, routes.DelEntry(1, NET_A, 24, GW_A, 100));
    ASSERT_EQ(1u, routes.Entries().size());
    EXPECT_EQ(0, memcmp(NET_B, routes.Entries().front().destination, 4));
    EXPECT_EQ(2u, routes.Count());
}

TEST_F(CfgRouteTest, DeleteRemovesEveryMatchingEntry) {
    AddV4(NET_A, 16);
    AddV4(NET_B, 16);
    AddV4(NET_A, 8);
    routes.DelEntry(1, NET_A, 24, GW_A, 100);
    ASSERT_EQ(1u, routes.Entries().size());
    EXPECT_EQ(0, memcmp(NET_B, routes.Entries().front().destination, 4));
}

TEST_F(CfgRouteTest, DeleteNeedsTheSameIfIndexAndAddresses) {
    AddV4(NET_A, 16);
    routes.DelEntry(1, NET_A, 24, GW_A, 101);
    routes.DelEntry(1, NET_B, 24, GW_A, 100);
    routes.DelEntry(1, NET_A, 24, NET_B, 100);
    routes.DelEntry(2, NET_A, 24, GW_A, 100);
    EXPECT_EQ(1u, routes.Entries().size());
}

TEST_F(CfgRouteTest, DeleteOnAnEmptyListReturnsOne) {
    EXPECT_EQ(1u, routes.DelEntry(1, NET_A, 16, GW_A, 100));
}

TEST_F(CfgRouteTest, TableAfterADeleteThatEmptiedTheListShowsTheHeaderAndTheOldCount) {
    AddV4(NET_A, 16);
    routes.DelEntry(1, NET_A, 24, GW_A, 100);
    routes.PrintTable(&console);
    EXPECT_EQ(
        "VLAN ID = 12\n"
        "VLAN Network         Netmask         Nexthop         IfIndex Cost\n"
        "\nNumber of Entries: 1\n\n",
        console.Output());
}

TEST_F(CfgRouteTest, TableOfAnEmptyListHasNoHeader) {
    routes.PrintTable(&console);
    EXPECT_EQ("VLAN ID = 12\n\nNumber of Entries: 0\n\n", console.Output());
}

TEST_F(CfgRouteTest, TableRowsWriteDestinationAndPrefixLengthTogether) {
    routes.AddEntry(1, NET_A, 16, GW_A, 100, 0, 7, 3, 4, 1);
    routes.PrintTable(&console);
    EXPECT_EQ(
        "VLAN ID = 12\n"
        "VLAN Network         Netmask         Nexthop         IfIndex Cost\n"
        "  12 10.1.0.0       /016 192.168.1.1     100      7\n"
        "\nNumber of Entries: 1\n\n",
        console.Output());
}

TEST_F(CfgRouteTest, TableRowsOfIpv6Entries) {
    routes.AddEntry(2, NET6, 32, GW6, 5, 0, 1, 3, 4, 1);
    routes.PrintTable(&console);
    EXPECT_EQ(
        "VLAN ID = 12\n"
        "VLAN Network         Netmask         Nexthop         IfIndex Cost\n"
        "  12 2001:db8::     /032 fe80::1         5        1\n"
        "\nNumber of Entries: 1\n\n",
        console.Output());
}

TEST_F(CfgRouteTest, ListGoesToTheTraceLogAtLevelZero) {
    routes.AddEntry(1, NET_A, 16, GW_A, 100, 0, 7, 3, 4, 1);
    routes.PrintList();
    std::vector<CapturingTraceSink::Line> expected = {
        {0, "\nVLAN ID = 12\n"},
        {0, "\t12\t10.1.0.0/16\t192.168.1.1\t100\t7\n"},
        {0, "\nNumber of Entries: 1\n"},
    };
    EXPECT_EQ(expected, trace.Lines());
}

TEST_F(CfgRouteTest, Ipv4EntryComparesAndCopiesOnlyFourBytes) {
    unsigned char dest[16];
    unsigned char gw[16];
    memset(dest, 0xAA, sizeof(dest));
    memset(gw, 0xBB, sizeof(gw));
    memcpy(dest, NET_A, 4);
    memcpy(gw, GW_A, 4);
    routes.AddEntry(1, dest, 16, gw, 100, 0, 1, 3, 4, 1);
    const CfgRouteEntry& entry = routes.Entries().front();
    for (int i = 4; i < 16; ++i) {
        EXPECT_EQ(0, entry.destination[i]) << i;
        EXPECT_EQ(0, entry.nextHop[i]) << i;
    }
    // Other bytes past the first four in the caller's buffers do not matter.
    dest[5] = 0x11;
    gw[9] = 0x22;
    EXPECT_EQ(&entry, routes.GetCfgRouteEntry(1, dest, 16, gw));
    EXPECT_EQ(0u, routes.AddEntry(1, dest, 16, gw, 100, 0, 2, 3, 4, 1));
    routes.DelEntry(1, dest, 8, gw, 100);
    EXPECT_TRUE(routes.Entries().empty());
}

TEST_F(CfgRouteTest, AnyFamilyOtherThanOneIsHandledAsIpv6) {
    for (int family : {2, 10, 0, -1}) {
        CfgRoute list(1);
        unsigned char dest[16];
        memcpy(dest, NET6, 16);
        list.AddEntry(family, dest, 32, GW6, 1, 0, 1, 3, 4, 1);
        const CfgRouteEntry& entry = list.Entries().front();
        EXPECT_EQ(0, memcmp(NET6, entry.destination, 16)) << family;
        EXPECT_EQ(0, memcmp(GW6, entry.nextHop, 16)) << family;
        EXPECT_EQ(string("2001:db8::"), entry.Format(entry.destination)) << family;
        dest[15] = 1;  // a difference past the first four bytes counts
        EXPECT_EQ(nullptr, list.GetCfgRouteEntry(family, dest, 32, GW6)) << family;
        EXPECT_EQ(&entry, list.GetCfgRouteEntry(family, NET6, 32, GW6)) << family;
    }
}

TEST_F(CfgRouteTest, FormatUsesTheEntryFamily) {
    CfgRouteEntry entry{};
    entry.family = 1;
    EXPECT_EQ(string("192.168.1.1"), entry.Format(GW_A));
    entry.family = 2;
    EXPECT_EQ(string("fe80::1"), entry.Format(GW6));
}

TEST_F(CfgRouteTest, CleanListRemovesEverythingAndZeroesTheCount) {
    AddV4(NET_A, 16);
    AddV4(NET_B, 16);
    routes.CleanList();
    EXPECT_TRUE(routes.Entries().empty());
    EXPECT_EQ(0u, routes.Count());
}

void CollectMetric(CfgRouteEntry* entry, void* context) {
    static_cast<std::vector<unsigned short>*>(context)->push_back(entry->metric);
}

TEST_F(CfgRouteTest, IterateAllVisitsEveryEntryInOrderWithTheContext) {
    AddV4(NET_A, 16, 3);
    AddV4(NET_B, 16, 4);
    AddV4(NET_A, 8, 5);
    std::vector<unsigned short> metrics;
    routes.IterateAll(&CollectMetric, &metrics);
    EXPECT_EQ(std::vector<unsigned short>({3, 4, 5}), metrics);
}

}  // namespace
}  // namespace Zavrel
