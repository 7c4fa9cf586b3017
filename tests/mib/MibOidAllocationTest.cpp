// An OID longer than its inline room takes a heap array; when that array
// cannot be had the OID becomes the empty OID, the failure is logged at
// level 0, and nothing throws.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "mib/MibOid.h"
#include "platform/AllocationFaults.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

typedef std::vector<std::string> Lines;

class MibOidAllocationTest : public test::TestEnv {
protected:
    void TearDown() override {
        AllocationFaults::Clear();
        test::TestEnv::TearDown();
    }
    static std::vector<unsigned long> Sequence(unsigned long count) {
        std::vector<unsigned long> components;
        for (unsigned long i = 0; i < count; ++i) {
            components.push_back(i + 1);
        }
        return components;
    }
    static void ExpectEmpty(const MibOid& oid) {
        EXPECT_EQ(oid.Length(), 0ul);
        EXPECT_EQ(oid.ToString(), "");
        EXPECT_TRUE(oid == MibOid());
        EXPECT_EQ(oid[0], 0ul);
        EXPECT_EQ(oid[40], 0ul);
    }
    const Lines kFailure{"MibOid: Error in allocating components\n"};
};

TEST_F(MibOidAllocationTest, ALongOidThatCannotBeHeldIsEmpty) {
    const std::vector<unsigned long> components = Sequence(40);
    AllocationFaults::FailNth("MibOid", 1);
    const MibOid oid(components.data(), components.size());
    ExpectEmpty(oid);
    EXPECT_EQ(trace.Texts(0), kFailure);
}

TEST_F(MibOidAllocationTest, AShortOidNeedsNoHeapAndCannotFail) {
    const std::vector<unsigned long> components = Sequence(20);
    AllocationFaults::FailNth("MibOid", 1);
    const MibOid oid(components.data(), components.size());
    EXPECT_EQ(oid.Length(), 20ul);
    EXPECT_EQ(oid[19], 20ul);
    EXPECT_TRUE(trace.Texts(0).empty());
    // The armed failure is still there for the first long one.
    const std::vector<unsigned long> longer = Sequence(21);
    ExpectEmpty(MibOid(longer.data(), longer.size()));
    EXPECT_EQ(trace.Texts(0), kFailure);
}

TEST_F(MibOidAllocationTest, ACopyOfALongOidThatCannotBeHeldIsEmpty) {
    const std::vector<unsigned long> components = Sequence(40);
    const MibOid original(components.data(), components.size());
    MibOid copy(Sequence(3).data(), 3);
    AllocationFaults::FailNth("MibOid", 1);
    copy = original;
    ExpectEmpty(copy);
    EXPECT_EQ(original.Length(), 40ul);
    AllocationFaults::FailNth("MibOid", 1);
    ExpectEmpty(MibOid(original));
    EXPECT_EQ(trace.Texts(0), Lines({kFailure[0], kFailure[0]}));
}

TEST_F(MibOidAllocationTest, SettingALongOidThatCannotBeHeldLeavesItEmpty) {
    const std::vector<unsigned long> components = Sequence(40);
    MibOid oid(Sequence(5).data(), 5);
    AllocationFaults::FailNth("MibOid", 1);
    oid.SetOid(components.data(), components.size());
    ExpectEmpty(oid);
    // Without components the length alone is stored, unclipped, when the
    // room can be had; not when it cannot.
    AllocationFaults::FailNth("MibOid", 1);
    oid.SetOid(nullptr, 200);
    ExpectEmpty(oid);
    oid.SetOid(nullptr, 200);
    EXPECT_EQ(oid.Length(), 200ul);
    EXPECT_EQ(trace.Texts(0), Lines({kFailure[0], kFailure[0]}));
}

TEST_F(MibOidAllocationTest, AnEmptiedOidTakesALongOidAgainOnceMemoryIsBack) {
    const std::vector<unsigned long> components = Sequence(40);
    MibOid oid;
    AllocationFaults::FailNth("MibOid", 1);
    oid.SetOid(components.data(), components.size());
    ExpectEmpty(oid);
    oid.SetOid(components.data(), components.size());
    EXPECT_EQ(oid.Length(), 40ul);
    EXPECT_EQ(oid[39], 40ul);
    EXPECT_EQ(oid, MibOid(components.data(), components.size()));
}

}  // namespace
}  // namespace Zavrel
