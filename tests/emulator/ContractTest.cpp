// The stack counts every breach of the library's side of the contract.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::BreachKind;

class ContractTest : public EmulatorFixture {
protected:
    void Ready() {
        StartStack();
        StartInstance(5);
        Side().ClearCalls();
    }
};

TEST_F(ContractTest, AWellBehavedSequenceHasNoBreach) {
    Ready();
    Interface(4, 5, 100, "eth0");
    Address(1, 5, 100, "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Redist(1, 1, 0x30000, 0x80000, 5);
    Side().RunScheduler();
    // The next request on a row, issued from inside cRunPendingAction as
    // the library's serializer does, is no breach either.
    Side().OnNextCall("cRunPendingAction", [] { Interface(1, 5, 100, "eth0", 2, 0); });
    Interface(1, 5, 100, "eth0", 1, 0);
    Side().RunScheduler();
    Side().RunScheduler();
    EXPECT_EQ(0u, Emulator::BreachCount());
    EXPECT_TRUE(Emulator::Breaches().empty());
}

TEST_F(ContractTest, ASecondRequestOnARowWhileOneIsOutstandingIsABreach) {
    Ready();
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Route(6, 2, 5, "192.168.0.0", 16, "10.0.0.254");
    EXPECT_EQ(1u, Emulator::BreachCount(BreachKind::OverlappingRequest));
    EXPECT_EQ(Strings({"overlapping request: route instance 5 192.168.0.0/16 via 10.0.0.254 "
                       "ifIndex 0 while another request on the row is outstanding"}),
              Emulator::Breaches());
    EXPECT_TRUE(trace.Contains(1,
                               "Stack emulator: contract breach: overlapping request: route "
                               "instance 5 192.168.0.0/16 via 10.0.0.254 ifIndex 0 while "
                               "another request on the row is outstanding\n"));
    // Both are still answered.
    Side().RunScheduler();
    EXPECT_EQ(2u, Side().Calls("cRunPendingAction").size());
}

TEST_F(ContractTest, ARequestOnARowAfterItsEndWasReportedIsNoBreach) {
    Ready();
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    Address(6, 5, 100, "10.0.0.1", 24);
    EXPECT_EQ(0u, Emulator::BreachCount());
}

TEST_F(ContractTest, RequestsOnDifferentRowsMayBeOutstandingTogether) {
    Ready();
    Interface(4, 5, 100, "eth0");
    Interface(4, 0x8005, 100, "eth0");
    Interface(4, 5, 101, "eth1");
    EXPECT_EQ(0u, Emulator::BreachCount());
}

TEST_F(ContractTest, ARowRequestBeforeTheInterfaceTablesAreReadyIsABreach) {
    ASSERT_EQ(0, Init());
    Interface(4, 5, 100, "eth0");
    EXPECT_EQ(1u, Emulator::BreachCount(BreachKind::RequestBeforeI3Ready));
    EXPECT_EQ(Strings({"request before interface tables ready: interface instance 5 ifIndex 100"}),
              Emulator::Breaches());
}

TEST_F(ContractTest, StartingAnInstanceBeforeTheInterfaceTablesAreReadyIsAllowed) {
    ASSERT_EQ(0, Init());
    amb_cipr_rtm_entity entity{};
    sms_cipr_start(5, &entity);
    EXPECT_EQ(0u, Emulator::BreachCount());
}

TEST_F(ContractTest, ARouteForAnInstanceNeverStartedIsABreach) {
    Ready();
    Route(1, 1, 9, "192.168.0.0", 16, "10.0.0.254");
    EXPECT_EQ(1u, Emulator::BreachCount(BreachKind::UnknownInstance));
    EXPECT_EQ(Strings({"route for an instance never started: route instance 9 192.168.0.0/16 via "
                       "10.0.0.254 ifIndex 0"}),
              Emulator::Breaches());
}

TEST_F(ContractTest, ARouteForADeletedInstanceIsNoBreach) {
    Ready();
    sms_cipr_action(5, SMS_CIPR_ACTION_DELETE);
    Side().RunScheduler();
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    EXPECT_EQ(0u, Emulator::BreachCount());
}

TEST_F(ContractTest, ARequestWhoseRowsOidWasNeverAskedForIsABreach) {
    Ready();
    // The OID of the address row built with the IPv4 instance, the row sent
    // for the IPv6 instance.
    EaOid(5, 100, "2001:db8::1");
    sms_act_ipaddr(1, 0x8005, 2, 100, Addr("2001:db8::1").data(), 64);
    EXPECT_EQ(1u, Emulator::BreachCount(BreachKind::OidMismatch));
    EXPECT_EQ(Strings({"row without its OID: address instance 32773 ifIndex 100 2001:db8::1 (its "
                       "OID 1:3:6:1:4:1:47810:7:4:32773:100:2:32:1:13:184:0:0:0:0:0:0:0:0:0:0:0:1 "
                       "was never asked for)"}),
              Emulator::Breaches());
}

TEST_F(ContractTest, EveryKindOfRowIsCheckedForItsOid) {
    Ready();
    sms_act_interface(4, 1, 5, 100, "eth0", 0, 0, 0);
    sms_update_route(1, 1, 1, 1, Addr("10.0.0.0").data(), 8, Addr("1.1.1.1").data(), 0x30000, 0, 5,
                     1);
    sms_act_cipr_redist(1, 1, 0x30000, 0x80000, 5, 0);
    sms_act_ipaddr(1, 5, 1, 100, Addr("10.0.0.1").data(), 24);
    EXPECT_EQ(4u, Emulator::BreachCount(BreachKind::OidMismatch));
    EXPECT_EQ(4u, Emulator::BreachCount());
}

TEST_F(ContractTest, TheStatusTextListsTheBreaches) {
    Ready();
    Route(1, 1, 9, "192.168.0.0", 16, "10.0.0.254");
    const std::string status = Emulator::StatusText();
    EXPECT_NE(std::string::npos,
              status.find("Contract breaches: 1\n  route for an instance never started: route "
                          "instance 9 192.168.0.0/16 via 10.0.0.254 ifIndex 0\n"));
}

TEST_F(ContractTest, ResetForgetsTheBreaches) {
    Ready();
    Route(1, 1, 9, "192.168.0.0", 16, "10.0.0.254");
    Emulator::Reset();
    EXPECT_EQ(0u, Emulator::BreachCount());
}

}  // namespace
}  // namespace Zavrel::test
