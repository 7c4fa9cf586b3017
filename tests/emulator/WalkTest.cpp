// Table walks: answered on a later run, rows from the given instance onward
// in table order with code 1, then code 7; a callback returning 0 in its low
// byte ends the walk.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;

class WalkTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
        for (unsigned long id : {5ul, 6ul, 7ul}) {
            StartInstance(id);
        }
        Network(7, 100, "eth0", "10.7.0.1", 24);
        Network(5, 101, "eth1", "10.5.1.1", 24);
        Network(5, 100, "eth0", "10.5.0.1", 24);
        Network(6, 100, "eth0", "10.6.0.1", 24);
        Side().ClearCalls();
    }
};

TEST_F(WalkTest, AWalkIsAnsweredOnTheNextRunNotWhenAsked) {
    LibrarySide::WalkProbe probe("rtm_route");
    EXPECT_EQ(0ul, sms_get_next_rtm_route(5, &LibrarySide::WalkCallback, &probe));
    EXPECT_TRUE(probe.lines.empty());
    EXPECT_EQ(Strings({"cIsNBaseRescheduled()", "cRescheduleNBase()"}), Side().Calls());
    Side().RunScheduler();
    EXPECT_EQ(5u, probe.lines.size());
    EXPECT_TRUE(probe.ended);
}

TEST_F(WalkTest, RowsComeFromTheGivenInstanceOnwardInTableOrderThenTheEnd) {
    EXPECT_EQ(Strings({"1 6 10.6.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 7 10.7.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0", "7"}),
              Walk("rtm_route", 6));
    EXPECT_EQ(Strings({"1 5 10.5.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 5 10.5.1.0/24 via 0.0.0.0 if 101 type 3 proto 2 age 0 metric 0",
                       "1 6 10.6.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 7 10.7.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0", "7"}),
              Walk("rtm_route", 0));
}

TEST_F(WalkTest, AWalkPastTheLastInstanceGetsOnlyTheEnd) {
    EXPECT_EQ(Strings({"7"}), Walk("rtm_rib", 8));
}

TEST_F(WalkTest, TheInterfaceWalkOrdersByInstanceThenIfIndex) {
    EXPECT_EQ(Strings({"1 5 100 eth0 oper 1 mtu 1500 flags 24 extra 0",
                       "1 5 101 eth1 oper 1 mtu 1500 flags 24 extra 0",
                       "1 6 100 eth0 oper 1 mtu 1500 flags 24 extra 0",
                       "1 7 100 eth0 oper 1 mtu 1500 flags 24 extra 0", "7"}),
              Walk("i3_ei", 5));
}

TEST_F(WalkTest, TheAddressWalkOrdersByInstanceThenIfIndexThenAddress) {
    Address(1, 6, 100, "10.6.0.0", 32);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"1 6 100 type 1 10.6.0.0/32", "1 6 100 type 1 10.6.0.1/24",
                       "1 7 100 type 1 10.7.0.1/24", "7"}),
              Walk("i3_ea", 6));
}

TEST_F(WalkTest, AFailedWalkIsCutShortAfterOneRowWithTheResultAsItsCode) {
    Emulator::FailNext(Emulator::RequestKind::Walk, 1, SMS_RC_RESOURCE);
    EXPECT_EQ(Strings({"1 5 100 eth0 oper 1 mtu 1500 flags 24 extra 0", "5"}), Walk("i3_ei", 5));
    EXPECT_EQ(0u, Stack().ActiveWalks());
    // Only the next walk was failed.
    EXPECT_EQ(5u, Walk("i3_ei", 5).size());
}

TEST_F(WalkTest, AFailedWalkOfAnEmptyStretchEndsWithTheEndOfTable) {
    Emulator::FailNext(Emulator::RequestKind::Walk, 1, SMS_RC_RESOURCE);
    EXPECT_EQ(Strings({"7"}), Walk("rtm_rib", 8));
}

TEST_F(WalkTest, AWalkStopsWhenTheCallbackReturnsZeroInItsLowByte) {
    LibrarySide::WalkProbe probe("i3_ei");
    // 256 is not 0, but its low byte is.
    probe.hook = [&probe](unsigned long, const void*) -> unsigned char {
        return static_cast<unsigned char>(probe.rows == 2 ? 256 : 1);
    };
    sms_get_next_i3_ei(0, &LibrarySide::WalkCallback, &probe);
    Side().RunScheduler();
    EXPECT_EQ(2u, probe.lines.size());
    EXPECT_FALSE(probe.ended);
    EXPECT_EQ(0u, Stack().ActiveWalks());
    Side().RunScheduler();
    EXPECT_EQ(2u, probe.lines.size());
}

TEST_F(WalkTest, AWalkStartedFromInsideACallbackIsAnsweredOnTheNextRun) {
    // The interface display reads the address table once the interface walk
    // has left its instance.
    LibrarySide::WalkProbe addresses("i3_ea");
    LibrarySide::WalkProbe interfaces("i3_ei");
    interfaces.hook = [&](unsigned long code, const void* row) -> unsigned char {
        const bool left =
            code == SMS_RC_ROW && static_cast<const amb_stubs_i3_ei*>(row)->instance > 5;
        if (code == SMS_RC_END_OF_TABLE || left) {
            sms_get_next_i3_ea(5, &LibrarySide::WalkCallback, &addresses);
            return 0;
        }
        return 1;
    };
    sms_get_next_i3_ei(5, &LibrarySide::WalkCallback, &interfaces);
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(3u, interfaces.lines.size());
    EXPECT_TRUE(addresses.lines.empty());
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"1 5 100 type 1 10.5.0.1/24", "1 5 101 type 1 10.5.1.1/24",
                       "1 6 100 type 1 10.6.0.1/24", "1 7 100 type 1 10.7.0.1/24", "7"}),
              addresses.lines);
}

TEST_F(WalkTest, AWalkCanBeSpreadOverSeveralRuns) {
    Stack().SetWalkRowsPerRun(2);
    LibrarySide::WalkProbe probe("rtm_route");
    sms_get_next_rtm_route(5, &LibrarySide::WalkCallback, &probe);
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(2u, probe.lines.size());
    // A route added between two runs of the walk comes in its place.
    Route(1, 1, 6, "10.6.9.0", 24, "10.6.0.254");
    EXPECT_EQ(0, Side().RunScheduler());
    EXPECT_EQ(4u, probe.lines.size());
    EXPECT_EQ(-1, Side().RunScheduler());
    EXPECT_EQ(Strings({"1 5 10.5.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 5 10.5.1.0/24 via 0.0.0.0 if 101 type 3 proto 2 age 0 metric 0",
                       "1 6 10.6.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0",
                       "1 6 10.6.9.0/24 via 10.6.0.254 if 100 type 4 proto 3 age 0 metric 1",
                       "1 7 10.7.0.0/24 via 0.0.0.0 if 100 type 3 proto 2 age 0 metric 0", "7"}),
              probe.lines);
}

TEST_F(WalkTest, InstancesThatAreNotReadyShowNoRows) {
    Side().SetRtmConfigUnknown(9);
    StartInstance(9);
    Network(9, 100, "eth0", "10.9.0.1", 24);
    EXPECT_EQ(Strings({"7"}), Walk("rtm_rib", 9));
}

TEST_F(WalkTest, AWalkWithoutCallbackIsRefused) {
    EXPECT_NE(0ul, sms_get_next_rtm_rib(5, nullptr, nullptr));
    EXPECT_EQ(0u, Stack().QueuedRequests());
}

TEST_F(WalkTest, WalksAreCountedWithTheRowsTheyDelivered) {
    Walk("i3_ei", 0);
    Walk("i3_ea", 7);
    EXPECT_EQ(2u, Emulator::RequestCount(Emulator::RequestKind::Walk));
    EXPECT_EQ(5u, Stack().WalkRowsDelivered());
}

}  // namespace
}  // namespace Zavrel::test
