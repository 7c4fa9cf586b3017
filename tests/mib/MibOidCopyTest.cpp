#include "mib/MibOid.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class MibOidCopyTest : public test::TestEnv {
protected:
    static std::vector<unsigned long> Sequence(unsigned long count, unsigned long first) {
        std::vector<unsigned long> components;
        for (unsigned long i = 0; i < count; ++i) {
            components.push_back(first + i);
        }
        return components;
    }
};

TEST_F(MibOidCopyTest, LongIdentifierCopiesKeepEveryComponent) {
    const std::vector<unsigned long> components = Sequence(64, 1);
    const MibOid original(components.data(), components.size());
    const MibOid copy(original);
    ASSERT_EQ(64ul, copy.Length());
    for (unsigned long i = 0; i < 64; ++i) {
        EXPECT_EQ(i + 1, copy[i]) << i;
    }
    EXPECT_EQ(0ul, copy[64]);
    EXPECT_EQ(0ul, copy[129]);
    EXPECT_TRUE(copy == original);
    EXPECT_EQ(original.ToString(), copy.ToString());
}

TEST_F(MibOidCopyTest, AssigningAShortIdentifierOverALongOneClearsTheOldTail) {
    const std::vector<unsigned long> longer = Sequence(100, 7);
    MibOid target(longer.data(), longer.size());
    const unsigned long shorter[] = {3, 4};
    const MibOid source(shorter, 2);
    target = source;
    EXPECT_EQ(2ul, target.Length());
    EXPECT_EQ(3ul, target[0]);
    EXPECT_EQ(4ul, target[1]);
    EXPECT_EQ(0ul, target[2]);
    EXPECT_EQ(0ul, target[99]);
    EXPECT_EQ("3:4", target.ToString());
}

TEST_F(MibOidCopyTest, CopyKeepsComponentsPastTheLengthLeftBySetOid) {
    const std::vector<unsigned long> longer = Sequence(40, 1);
    MibOid oid(longer.data(), longer.size());
    const unsigned long shorter[] = {9};
    oid.SetOid(shorter, 1);
    const MibOid copy(oid);
    EXPECT_EQ(1ul, copy.Length());
    EXPECT_EQ(9ul, copy[0]);
    EXPECT_EQ(2ul, copy[1]);
    EXPECT_EQ(40ul, copy[39]);
    EXPECT_EQ(0ul, copy[40]);
}

TEST_F(MibOidCopyTest, MovedIdentifierKeepsItsValue) {
    const std::vector<unsigned long> components = Sequence(50, 100);
    MibOid source(components.data(), components.size());
    const std::string text = source.ToString().c_str();
    MibOid moved(std::move(source));
    EXPECT_EQ(50ul, moved.Length());
    EXPECT_EQ(text, moved.ToString().c_str());
    MibOid assigned;
    assigned = std::move(moved);
    EXPECT_EQ(50ul, assigned.Length());
    EXPECT_EQ(149ul, assigned[49]);
}

TEST_F(MibOidCopyTest, NullSetOidGrowingTheLengthReadsZerosBeyondWhatWasWritten) {
    const unsigned long two[] = {5, 6};
    MibOid oid(two, 2);
    oid.SetOid(nullptr, 200);
    EXPECT_EQ(200ul, oid.Length());
    EXPECT_EQ(5ul, oid[0]);
    EXPECT_EQ(0ul, oid[2]);
    EXPECT_EQ(0ul, oid[129]);
    EXPECT_EQ(0ul, oid.Components()[129]);
}

}  // namespace
}  // namespace Zavrel
