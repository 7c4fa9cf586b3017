// Fault injection: failing the next requests of a kind, answering late, and
// a seeded failure rate.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RequestKind;

class FaultTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
        StartInstance(5);
        Side().ClearCalls();
    }
    static std::vector<unsigned int> RouteResults() {
        std::vector<unsigned int> results;
        for (const auto& state : Side().routeStates) {
            results.push_back(state.result);
        }
        return results;
    }
    // 100 route creates answered in one run; the results in order.
    static std::vector<unsigned int> HundredRoutes() {
        char destination[32];
        for (int i = 0; i < 100; ++i) {
            std::snprintf(destination, sizeof(destination), "10.%d.0.0", i);
            Route(1, 1, 5, destination, 16, "0.0.0.0", 100);
        }
        Side().RunScheduler();
        return RouteResults();
    }
};

TEST_F(FaultTest, TheNextRouteRequestsFailWithTheGivenResultAndChangeNothing) {
    Emulator::FailNext(RequestKind::Route, 2, Emulator::RESULT_TEMPORARY);
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Route(1, 1, 5, "10.2.0.0", 16, "0.0.0.0", 100);
    Route(1, 1, 5, "10.3.0.0", 16, "0.0.0.0", 100);
    Side().RunScheduler();
    EXPECT_EQ(std::vector<unsigned int>({5, 5, 1}), RouteResults());
    EXPECT_EQ("5 10.3.0.0/16 via 0.0.0.0 ifIndex 100 admin up metric 1\n",
              Stack().DumpStaticRoutes());
    EXPECT_EQ(3u, Side().Calls("cRunPendingAction").size());
    EXPECT_EQ(2u, Emulator::AnswerCount(RequestKind::Route, Emulator::RESULT_TEMPORARY));
}

TEST_F(FaultTest, FailuresOfOneKindLeaveTheOtherKindsAlone) {
    Emulator::FailNext(RequestKind::Redistribution, 1, 13);
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Redist(1, 1, 0x30000, 0x80000, 5);
    Side().RunScheduler();
    EXPECT_EQ(std::vector<unsigned int>({1}), RouteResults());
    EXPECT_EQ("cSetRedistState(1, 1, 196608, 524288, 0, 5, 0, 13)",
              Side().Calls("cSetRedistState").back());
    EXPECT_EQ("", Stack().DumpRedistribution());
}

TEST_F(FaultTest, FailedInterfaceAndAddressRequestsAreEndedAndCountedWithoutChange) {
    Emulator::FailNext(RequestKind::Interface, 1, 5);
    Emulator::FailNext(RequestKind::Address, 1, 14);
    Interface(4, 5, 100, "eth0");
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    EXPECT_EQ(2u, Side().Calls("cRunPendingAction").size());
    EXPECT_EQ("", Stack().DumpInterfaces());
    EXPECT_EQ("", Stack().DumpAddresses());
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Interface, 5));
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Address, 14));
}

TEST_F(FaultTest, AnAnswerDelayedByThreeRunsComesOnTheThirdRun) {
    Emulator::SetAnswerDelay(RequestKind::Route, 3);
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Side().RunScheduler();
    Side().RunScheduler();
    EXPECT_TRUE(Side().routeStates.empty());
    Side().RunScheduler();
    EXPECT_EQ(std::vector<unsigned int>({1}), RouteResults());
}

TEST_F(FaultTest, ADelayedRequestDoesNotHoldBackALaterOneOfAnotherKind) {
    Emulator::SetAnswerDelay(RequestKind::Route, 2);
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Interface(4, 5, 100, "eth0");
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cRunPendingAction(" + EiOid(5, 100) + ")"}), Side().Callbacks());
}

TEST_F(FaultTest, ASeededFailureRateFailsTheSameRequestsEveryTime) {
    Emulator::SetFailureRate(RequestKind::Route, 0.3, Emulator::RESULT_TEMPORARY, 42);
    const std::vector<unsigned int> first = HundredRoutes();
    ASSERT_EQ(100u, first.size());
    const size_t failures = Emulator::AnswerCount(RequestKind::Route, Emulator::RESULT_TEMPORARY);
    EXPECT_GT(failures, 15u);
    EXPECT_LT(failures, 45u);

    Emulator::Reset();
    Side().Reset();
    StartStack();
    StartInstance(5);
    Emulator::SetFailureRate(RequestKind::Route, 0.3, Emulator::RESULT_TEMPORARY, 42);
    EXPECT_EQ(first, HundredRoutes());

    Emulator::Reset();
    Side().Reset();
    StartStack();
    StartInstance(5);
    Emulator::SetFailureRate(RequestKind::Route, 0.3, Emulator::RESULT_TEMPORARY, 7);
    EXPECT_NE(first, HundredRoutes());
}

TEST_F(FaultTest, RatesOfZeroAndOneFailNothingAndEverything) {
    Emulator::SetFailureRate(RequestKind::Route, 0.0, 5, 1);
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Side().RunScheduler();
    Emulator::SetFailureRate(RequestKind::Route, 1.0, 5, 1);
    Route(1, 1, 5, "10.2.0.0", 16, "0.0.0.0", 100);
    Route(1, 1, 5, "10.3.0.0", 16, "0.0.0.0", 100);
    Side().RunScheduler();
    EXPECT_EQ(std::vector<unsigned int>({1, 5, 5}), RouteResults());
}

TEST_F(FaultTest, ClearingTheFaultsRestoresNormalAnswers) {
    Emulator::FailNext(RequestKind::Route, 5, 3);
    Emulator::SetAnswerDelay(RequestKind::Route, 4);
    Emulator::ClearFaults();
    Route(1, 1, 5, "10.1.0.0", 16, "0.0.0.0", 100);
    Side().RunScheduler();
    EXPECT_EQ(std::vector<unsigned int>({1}), RouteResults());
    EXPECT_EQ("none", Stack().Faults().Describe());
}

TEST_F(FaultTest, TheFaultsAreDescribedPerKind) {
    Emulator::FailNext(RequestKind::Route, 2, 5);
    Emulator::SetAnswerDelay(RequestKind::Address, 3);
    EXPECT_EQ(
        "route: fail next 2 with 5, answer after 1 runs, fail 0 per million with 0\n"
        "address: fail next 0 with 0, answer after 3 runs, fail 0 per million with 0\n",
        Stack().Faults().Describe());
}

}  // namespace
}  // namespace Zavrel::test
