#include "platform/ParseIpAddr.h"

#include <gtest/gtest.h>

namespace Zavrel {
namespace {

// Parses text; returns whether it succeeded and the cursor offset.
struct Result {
    bool ok;
    long offset;
    Ip4Addr address;
};

Result Parse(const char* text) {
    Ip4Addr address(9, 9, 9, 9);
    const char* cursor = text;
    const bool ok = Parse_IpAddr()(address, cursor);
    return Result{ok, cursor - text, address};
}

TEST(ParseIpAddrTest, ParsesDottedQuadAndMovesCursorToTheEnd) {
    const Result r = Parse("10.0.0.1");
    EXPECT_TRUE(r.ok);
    EXPECT_EQ(8, r.offset);
    EXPECT_EQ(Ip4Addr(10, 0, 0, 1), r.address);
}

TEST(ParseIpAddrTest, AcceptsBoundaryValues) {
    EXPECT_EQ(Ip4Addr(0, 0, 0, 0), Parse("0.0.0.0").address);
    EXPECT_EQ(Ip4Addr(255, 255, 255, 255), Parse("255.255.255.255").address);
    EXPECT_TRUE(Parse("255.255.255.255").ok);
}

TEST(ParseIpAddrTest, RejectsPartAbove255AndLeavesCursorOnThatPart) {
    const Result r = Parse("1.2.256.4");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(4, r.offset);
    EXPECT_EQ(Ip4Addr(9, 9, 9, 9), r.address);
}

TEST(ParseIpAddrTest, RejectsLeadingZero) {
    const Result r = Parse("01.2.3.4");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(1, r.offset);
    EXPECT_FALSE(Parse("1.2.3.00").ok);
    EXPECT_FALSE(Parse("1.2.3.010").ok);
}

TEST(ParseIpAddrTest, RejectsMoreThanThreeDigits) {
    const Result r = Parse("1.0001.2.3");
    EXPECT_FALSE(r.ok);
    EXPECT_FALSE(Parse("1.2.3.1000").ok);
}

TEST(ParseIpAddrTest, RejectsMissingPart) {
    const Result r = Parse("1.2.3");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(5, r.offset);
    EXPECT_FALSE(Parse("1..2.3").ok);
}

TEST(ParseIpAddrTest, RejectsTrailingDot) {
    const Result r = Parse("1.2.3.4.");
    EXPECT_FALSE(r.ok);
    EXPECT_EQ(7, r.offset);
}

TEST(ParseIpAddrTest, RejectsFifthPart) {
    EXPECT_FALSE(Parse("1.2.3.4.5").ok);
}

TEST(ParseIpAddrTest, RejectsSpaces) {
    const Result leading = Parse(" 1.2.3.4");
    EXPECT_FALSE(leading.ok);
    EXPECT_EQ(0, leading.offset);
    const Result trailing = Parse("1.2.3.4 ");
    EXPECT_FALSE(trailing.ok);
    EXPECT_EQ(7, trailing.offset);
    EXPECT_FALSE(Parse("1. 2.3.4").ok);
}

TEST(ParseIpAddrTest, RejectsSigns) {
    EXPECT_FALSE(Parse("+1.2.3.4").ok);
    EXPECT_FALSE(Parse("1.-2.3.4").ok);
}

TEST(ParseIpAddrTest, RejectsEmptyTextAndLetters) {
    EXPECT_FALSE(Parse("").ok);
    EXPECT_FALSE(Parse("a.b.c.d").ok);
    EXPECT_FALSE(Parse("0x1.2.3.4").ok);
    EXPECT_FALSE(Parse("1.2.3.4/24").ok);
}

TEST(ParseIpAddrTest, NullCursorTextFails) {
    Ip4Addr address(1, 2, 3, 4);
    const char* cursor = nullptr;
    EXPECT_FALSE(Parse_IpAddr()(address, cursor));
    EXPECT_EQ(nullptr, cursor);
    EXPECT_EQ(Ip4Addr(1, 2, 3, 4), address);
}

}  // namespace
}  // namespace Zavrel
