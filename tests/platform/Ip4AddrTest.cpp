#include "platform/Ip4Addr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <unordered_set>

namespace Zavrel {
namespace {

TEST(Ip4AddrTest, DefaultIsAllZero) {
    EXPECT_EQ(string("0.0.0.0"), Ip4Addr().ToString());
    EXPECT_EQ(0u, Ip4Addr().HostOrder());
}

TEST(Ip4AddrTest, HostOrderHasTheFirstByteMostSignificant) {
    EXPECT_EQ(0x0A000001u, Ip4Addr(10, 0, 0, 1).HostOrder());
    EXPECT_EQ(Ip4Addr(10, 0, 0, 1), Ip4Addr::FromHostOrder(0x0A000001u));
    EXPECT_EQ(10, Ip4Addr::FromHostOrder(0x0A000001u).Bytes()[0]);
}

TEST(Ip4AddrTest, ConstructsFromBytes) {
    const unsigned char bytes[4] = {192, 168, 1, 254};
    EXPECT_EQ(string("192.168.1.254"), Ip4Addr(bytes).ToString());
}

TEST(Ip4AddrTest, FromStringParsesStrictDottedQuad) {
    Ip4Addr a;
    EXPECT_TRUE(a.FromString("172.16.0.255"));
    EXPECT_EQ(Ip4Addr(172, 16, 0, 255), a);
}

TEST(Ip4AddrTest, FailedFromStringLeavesTheAddressUnchanged) {
    Ip4Addr a(1, 2, 3, 4);
    for (const char* bad : {"256.1.1.1", "01.1.1.1", "1.1.1", "1.1.1.1.", " 1.1.1.1", "1.1.1.1 ",
                            "-1.1.1.1", "+1.1.1.1", "", "dynamic"}) {
        EXPECT_FALSE(a.FromString(bad)) << bad;
        EXPECT_EQ(Ip4Addr(1, 2, 3, 4), a) << bad;
    }
}

TEST(Ip4AddrTest, FromStringRejectsEmbeddedZeroByte) {
    Ip4Addr a;
    EXPECT_FALSE(a.FromString(string("1.2.3.4\0x", 9)));
    EXPECT_EQ(Ip4Addr(), a);
}

TEST(Ip4AddrTest, Uint32ToStringWritesDottedQuad) {
    char buffer[40];
    EXPECT_TRUE(Ip4Addr::Uint32ToString(0xC0A80101u, buffer, sizeof buffer));
    EXPECT_STREQ("192.168.1.1", buffer);
    EXPECT_TRUE(Ip4Addr::Uint32ToString(0xFFFFFFFFu, buffer, sizeof buffer));
    EXPECT_STREQ("255.255.255.255", buffer);
}

TEST(Ip4AddrTest, Uint32ToStringNeedsRoomForTheTerminatingZero) {
    char buffer[16];
    std::memset(buffer, 'z', sizeof buffer);
    EXPECT_FALSE(Ip4Addr::Uint32ToString(0xC0A80101u, buffer, 11));
    EXPECT_EQ('z', buffer[0]);
    EXPECT_TRUE(Ip4Addr::Uint32ToString(0xC0A80101u, buffer, 12));
    EXPECT_STREQ("192.168.1.1", buffer);
    EXPECT_FALSE(Ip4Addr::Uint32ToString(0xFFFFFFFFu, buffer, 15));
    EXPECT_TRUE(Ip4Addr::Uint32ToString(0xFFFFFFFFu, buffer, 16));
}

TEST(Ip4AddrTest, Uint32ToStringRejectsNullBufferAndZeroSize) {
    char buffer[4] = {'z', 'z', 'z', 'z'};
    EXPECT_FALSE(Ip4Addr::Uint32ToString(0, nullptr, 40));
    EXPECT_FALSE(Ip4Addr::Uint32ToString(0, buffer, 0));
    EXPECT_EQ('z', buffer[0]);
}

TEST(Ip4AddrTest, ComparesByteWise) {
    EXPECT_EQ(Ip4Addr(1, 2, 3, 4), Ip4Addr(1, 2, 3, 4));
    EXPECT_NE(Ip4Addr(1, 2, 3, 4), Ip4Addr(1, 2, 3, 5));
    EXPECT_LT(Ip4Addr(1, 2, 3, 4), Ip4Addr(2, 0, 0, 0));
    EXPECT_FALSE(Ip4Addr(2, 0, 0, 0) < Ip4Addr(1, 255, 255, 255));
}

TEST(Ip4AddrTest, HashesIntoUnorderedContainers) {
    std::unordered_set<Ip4Addr> set;
    set.insert(Ip4Addr(10, 0, 0, 1));
    set.insert(Ip4Addr(10, 0, 0, 1));
    set.insert(Ip4Addr(10, 0, 0, 2));
    EXPECT_EQ(2u, set.size());
}

TEST(Ip4AddrTest, BytesAreWritable) {
    Ip4Addr a;
    a.Bytes()[3] = 7;
    EXPECT_EQ(string("0.0.0.7"), a.ToString());
}

}  // namespace
}  // namespace Zavrel
