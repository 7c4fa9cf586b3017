// Redistribution rows, answered through cSetRedistState then
// cRunPendingAction.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RequestKind;

constexpr long STATIC = 0x30000;
constexpr long RIP = 0x80000;
constexpr long OSPF = 0xd0000;

class RedistributionTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
        StartInstance(5);
        Side().ClearCalls();
    }
    static unsigned long LastResult() { return Side().redistStates.back()[7]; }
};

TEST_F(RedistributionTest, TheActionCallCreatesTheRowAndIsAnsweredWithItsValues) {
    Redist(1, 1, STATIC, RIP, 5);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cSetRedistState(1, 1, 196608, 524288, 0, 5, 0, 1)",
                       "cRunPendingAction(" + RedistOid(5, STATIC, RIP) + ")"}),
              Side().Calls());
    EXPECT_EQ("5 source 0x30000 destination 0x80000 admin up\n", Stack().DumpRedistribution());
}

TEST_F(RedistributionTest, TheRedistributionOidIsBuiltFromInstanceSourceAndDestination) {
    EXPECT_EQ("1:3:6:1:4:1:47810:7:2:5:196608:524288", RedistOid(5, STATIC, RIP));
    EXPECT_NE(RedistOid(5, STATIC, RIP), RedistOid(5, RIP, STATIC));
}

TEST_F(RedistributionTest, TheBuildCallTakesInstanceFirstAndDestinationBeforeSource) {
    RedistOid(5, STATIC, OSPF);
    sms_bld_amb_test_cipr_redist(5, 1, 2, OSPF, STATIC, 0);
    Side().RunScheduler();
    EXPECT_EQ("cSetRedistState(1, 2, 196608, 851968, 0, 5, 0, 1)",
              Side().Calls("cSetRedistState").back());
    EXPECT_EQ("5 source 0x30000 destination 0xd0000 admin down\n", Stack().DumpRedistribution());
}

TEST_F(RedistributionTest, TheExtraValueComesBackAsTheSeventhValue) {
    Redist(1, 1, STATIC, RIP, 5, 9);
    Side().RunScheduler();
    EXPECT_EQ(9u, Side().redistStates.back()[6]);
}

TEST_F(RedistributionTest, ADestroyRemovesTheRowAndADestroyOfAnAbsentRowHasNoRow) {
    Redist(1, 1, STATIC, RIP, 5);
    Side().RunScheduler();
    Redist(6, 2, STATIC, RIP, 5);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_DONE, LastResult());
    EXPECT_EQ("", Stack().DumpRedistribution());
    Redist(6, 2, STATIC, RIP, 5);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_NO_ROW, LastResult());
}

TEST_F(RedistributionTest, ARowForAnInstanceThatIsAbsentOrNotReadyIsTemporary) {
    Redist(1, 1, STATIC, RIP, 9);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_TEMPORARY, LastResult());
    Side().SetRtmConfigUnknown(7);
    StartInstance(7);
    Redist(1, 1, STATIC, RIP, 7);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_TEMPORARY, LastResult());
}

TEST_F(RedistributionTest, AnUnknownRowStatusOrAdminStatusIsAWrongValue) {
    Redist(5, 1, STATIC, RIP, 5);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    Redist(1, 0, STATIC, RIP, 5);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    EXPECT_EQ(2u, Emulator::AnswerCount(RequestKind::Redistribution, Emulator::RESULT_WRONG_VALUE));
}

TEST_F(RedistributionTest, AnUpdateChangesTheAdminStatus) {
    Redist(1, 1, STATIC, RIP, 5);
    Side().RunScheduler();
    Redist(1, 2, STATIC, RIP, 5);
    Side().RunScheduler();
    EXPECT_EQ("5 source 0x30000 destination 0x80000 admin down\n", Stack().DumpRedistribution());
    EXPECT_EQ(2u, Emulator::RequestCount(RequestKind::Redistribution));
}

}  // namespace
}  // namespace Zavrel::test
