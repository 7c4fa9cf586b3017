#include "mib/MibOid.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class MibOidTest : public test::TestEnv {
protected:
    static MibOid Make(std::vector<unsigned long> components) {
        return MibOid(components.data(), components.size());
    }
};

TEST_F(MibOidTest, DefaultIdentifierIsEmptyAndAllZero) {
    MibOid oid;
    EXPECT_EQ(0ul, oid.Length());
    for (unsigned long i = 0; i < MibOid::MAX_LENGTH; ++i) {
        EXPECT_EQ(0ul, oid[i]) << i;
    }
}

TEST_F(MibOidTest, ConstructingFromTwoHundredComponentsKeepsTheFirst130) {
    std::vector<unsigned long> components(200);
    for (unsigned long i = 0; i < 200; ++i) {
        components[i] = i + 1;
    }
    MibOid oid(components.data(), components.size());
    EXPECT_EQ(130ul, oid.Length());
    EXPECT_EQ(1ul, oid[0]);
    EXPECT_EQ(130ul, oid[129]);
}

TEST_F(MibOidTest, ConstructionClearsComponentsBeyondTheLength) {
    MibOid oid = Make({4, 5});
    EXPECT_EQ(2ul, oid.Length());
    EXPECT_EQ(0ul, oid[2]);
    EXPECT_EQ(0ul, oid[129]);
}

TEST_F(MibOidTest, SetOidWithNullArrayKeepsTheComponentsAndTakesTheLength) {
    MibOid oid = Make({1, 3, 6});
    oid.SetOid(nullptr, 7);
    EXPECT_EQ(7ul, oid.Length());
    EXPECT_EQ(1ul, oid[0]);
    EXPECT_EQ(3ul, oid[1]);
    EXPECT_EQ(6ul, oid[2]);
}

TEST_F(MibOidTest, SetOidWithNullArrayLeavesAnOverlongLengthUnclipped) {
    MibOid oid = Make({1, 3, 6});
    oid.SetOid(nullptr, 500);
    EXPECT_EQ(500ul, oid.Length());
}

TEST_F(MibOidTest, IdentifierWithUnclippedLengthStillPrintsAndComparesSafely) {
    MibOid oid = Make({1, 3, 6});
    oid.SetOid(nullptr, 500);
    MibOid same = oid;
    EXPECT_TRUE(oid == same);
    EXPECT_FALSE(oid < same);
    EXPECT_TRUE(Make({1, 3, 6}) < oid);
    string text = oid.ToString();
    EXPECT_EQ(0, strncmp("1:3:6:0:0", text.c_str(), 9));
}

TEST_F(MibOidTest, SetOidClipsTheLengthAndDoesNotClearTheTail) {
    MibOid oid = Make({9, 9, 9, 9});
    const unsigned long two[2] = {1, 2};
    oid.SetOid(two, 2);
    EXPECT_EQ(2ul, oid.Length());
    EXPECT_EQ(1ul, oid[0]);
    EXPECT_EQ(2ul, oid[1]);
    EXPECT_EQ(9ul, oid[2]);
    EXPECT_EQ(9ul, oid[3]);

    std::vector<unsigned long> many(300, 5);
    oid.SetOid(many.data(), many.size());
    EXPECT_EQ(130ul, oid.Length());
    EXPECT_EQ(5ul, oid[129]);
}

TEST_F(MibOidTest, ToStringOfAnEmptyIdentifierIsEmpty) {
    EXPECT_EQ(string(""), MibOid().ToString());
}

TEST_F(MibOidTest, ToStringOfOneComponentHasNoColon) {
    EXPECT_EQ(string("42"), Make({42}).ToString());
}

TEST_F(MibOidTest, ToStringJoinsComponentsWithColons) {
    EXPECT_EQ(string("1:3:6:1:2"), Make({1, 3, 6, 1, 2}).ToString());
    EXPECT_EQ(string("4294967295:0"), Make({4294967295ul, 0}).ToString());
}

TEST_F(MibOidTest, PrefixSortsBeforeTheLongerIdentifier) {
    EXPECT_TRUE(Make({1, 3, 6}) < Make({1, 3, 6, 1}));
    EXPECT_FALSE(Make({1, 3, 6, 1}) < Make({1, 3, 6}));
}

TEST_F(MibOidTest, FirstDifferingComponentDecidesTheOrder) {
    EXPECT_TRUE(Make({1, 3, 6, 1}) < Make({1, 3, 7}));
    EXPECT_FALSE(Make({1, 3, 7}) < Make({1, 3, 6, 1}));
}

TEST_F(MibOidTest, ComponentsCompareAsUnsigned) {
    EXPECT_TRUE(Make({1}) < Make({4294967295ul}));
    EXPECT_FALSE(Make({4294967295ul}) < Make({1}));
}

TEST_F(MibOidTest, EqualIdentifiersAreEquivalentInTheOrder) {
    EXPECT_FALSE(Make({1, 2}) < Make({1, 2}));
    EXPECT_FALSE(MibOid() < MibOid());
}

TEST_F(MibOidTest, EqualityNeedsEqualLengths) {
    EXPECT_FALSE(Make({1, 3, 6}) == Make({1, 3, 6, 1}));
    EXPECT_FALSE(Make({1, 3, 6, 1}) == Make({1, 3, 6}));
    EXPECT_TRUE(Make({1, 3, 6}) == Make({1, 3, 6}));
    EXPECT_FALSE(Make({1, 3, 6}) == Make({1, 3, 7}));
}

TEST_F(MibOidTest, TwoEmptyIdentifiersAreEqual) {
    MibOid a;
    MibOid b = Make({7});
    b.SetOid(b.Components(), 0);
    EXPECT_TRUE(a == b);
}

TEST_F(MibOidTest, CopiesCompareEqual) {
    MibOid a = Make({1, 3, 6, 1, 2, 1});
    MibOid b(a);
    EXPECT_TRUE(a == b);
    EXPECT_EQ(a.ToString(), b.ToString());
}

}  // namespace
}  // namespace Zavrel
