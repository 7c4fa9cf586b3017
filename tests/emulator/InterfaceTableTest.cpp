// The I3 tables: interface rows and address rows with row status semantics,
// each request ended by cRunPendingAction with the row's OID.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RequestKind;

class InterfaceTableTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
    }
    static std::string Answered(const std::string& oid) { return "cRunPendingAction(" + oid + ")"; }
};

TEST_F(InterfaceTableTest, CreateAndGoCreatesTheRowAndEndsTheRequestWithTheRowsOid) {
    Interface(4, 5, 100, "eth0", 1, 0x18);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({Answered(EiOid(5, 100))}), Side().Calls());
    EXPECT_EQ("5 100 eth0 up mtu 1500 flags 0x18 extra 0\n", Stack().DumpInterfaces());
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Interface, Emulator::RESULT_DONE));
}

TEST_F(InterfaceTableTest, TheInterfaceOidIsBuiltFromInstanceAndIfIndex) {
    EXPECT_EQ("1:3:6:1:4:1:47810:7:3:5:100", EiOid(5, 100));
    EXPECT_EQ("1:3:6:1:4:1:47810:7:3:32773:100", EiOid(0x8005, 100));
}

TEST_F(InterfaceTableTest, AnUpdateChangesTheRowWithTheValuesItCarries) {
    Interface(4, 5, 100, "eth0", 1, 0x28);
    Side().RunScheduler();
    Interface(1, 5, 100, "eth0", 2, 0);
    Side().RunScheduler();
    EXPECT_EQ("5 100 eth0 down mtu 1500 flags 0x0 extra 0\n", Stack().DumpInterfaces());
}

TEST_F(InterfaceTableTest, AnUpdateOfAnAbsentRowIsRefusedButStillEnded) {
    Interface(1, 5, 100, "eth0", 1);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({Answered(EiOid(5, 100))}), Side().Calls());
    EXPECT_EQ("", Stack().DumpInterfaces());
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Interface, Emulator::RESULT_NO_ROW));
}

TEST_F(InterfaceTableTest, ADestroyRemovesTheRowAndADestroyOfAnAbsentRowIsDone) {
    Interface(4, 5, 100, "eth0");
    Side().RunScheduler();
    Interface(6, 5, 100, "eth0", 2, 0);
    Side().RunScheduler();
    EXPECT_EQ("", Stack().DumpInterfaces());
    Interface(6, 5, 100, "eth0", 2, 0);
    Side().RunScheduler();
    // The create, the destroy and the destroy of the absent row.
    EXPECT_EQ(3u, Emulator::AnswerCount(RequestKind::Interface, Emulator::RESULT_DONE));
}

TEST_F(InterfaceTableTest, ACreateOfAnExistingRowReplacesItsValues) {
    Interface(4, 5, 100, "eth0", 2, 0x08);
    Side().RunScheduler();
    Interface(4, 5, 100, "wan0", 1, 0x10);
    Side().RunScheduler();
    EXPECT_EQ("5 100 wan0 up mtu 1500 flags 0x10 extra 0\n", Stack().DumpInterfaces());
}

TEST_F(InterfaceTableTest, AnUnknownRowStatusOrOperStatusIsAWrongValue) {
    Interface(2, 5, 100, "eth0");
    Interface(4, 5, 101, "eth1", 3);
    Side().RunScheduler();
    EXPECT_EQ("", Stack().DumpInterfaces());
    EXPECT_EQ(2u, Emulator::AnswerCount(RequestKind::Interface, Emulator::RESULT_WRONG_VALUE));
    EXPECT_EQ(2u, Side().Calls("cRunPendingAction").size());
}

TEST_F(InterfaceTableTest, TheBuildCallFromInsideTheStackBehavesLikeTheActionCall) {
    EiOid(5, 100);
    sms_bld_amb_test_i3_ei(4, 1, 5, 100, "eth0", 9000, 0x04, 7);
    Side().RunScheduler();
    EXPECT_EQ("5 100 eth0 up mtu 9000 flags 0x4 extra 7\n", Stack().DumpInterfaces());
}

TEST_F(InterfaceTableTest, AnIpv4AddressRowCarriesTheVlanAndItsOidUsesTheVlan) {
    EXPECT_EQ("1:3:6:1:4:1:47810:7:4:5:100:1:10:0:0:1", EaOid(5, 100, "10.0.0.1"));
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({Answered(EaOid(5, 100, "10.0.0.1"))}), Side().Calls());
    EXPECT_EQ("5 100 10.0.0.1/24\n", Stack().DumpAddresses());
}

TEST_F(InterfaceTableTest, AnIpv6AddressRowLivesInTheIpv6InstanceWithSixteenBytesInItsOid) {
    EXPECT_EQ("1:3:6:1:4:1:47810:7:4:32773:100:2:32:1:13:184:0:0:0:0:0:0:0:0:0:0:0:1",
              EaOid(0x8005, 100, "2001:db8::1"));
    Address(1, 0x8005, 100, "2001:db8::1", 64);
    Side().RunScheduler();
    EXPECT_EQ("32773 100 2001:db8::1/64\n", Stack().DumpAddresses());
}

TEST_F(InterfaceTableTest, AnActiveAddressRowThatDoesNotExistYetIsCreated) {
    // The library announces every address as an active row.
    Address(1, 5, 100, "10.0.0.1", 24);
    Address(4, 5, 100, "10.0.1.1", 24);
    Side().RunScheduler();
    EXPECT_EQ("5 100 10.0.0.1/24\n5 100 10.0.1.1/24\n", Stack().DumpAddresses());
}

TEST_F(InterfaceTableTest, AnAddressRowNeedsNoInterfaceRow) {
    Address(1, 5, 300, "10.0.0.1", 24);
    Side().RunScheduler();
    EXPECT_EQ("5 300 10.0.0.1/24\n", Stack().DumpAddresses());
    EXPECT_EQ("", Stack().DumpInterfaces());
}

TEST_F(InterfaceTableTest, AnAddressDestroyRemovesTheRowAndIsDoneWhenItIsAbsent) {
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    Address(6, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    Address(6, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    EXPECT_EQ("", Stack().DumpAddresses());
    EXPECT_EQ(3u, Emulator::AnswerCount(RequestKind::Address, Emulator::RESULT_DONE));
}

TEST_F(InterfaceTableTest, AddressRowsWithWrongValuesAreRefused) {
    Address(1, 5, 100, "10.0.0.1", 33);           // prefix beyond IPv4
    Address(1, 0x8005, 100, "2001:db8::1", 129);  // prefix beyond IPv6
    Address(1, 5, 100, "2001:db8::2", 64);        // IPv6 row in the IPv4 instance
    Address(1, 0x8005, 100, "10.0.0.2", 24);      // IPv4 row in the IPv6 instance
    Address(3, 5, 100, "10.0.0.3", 24);           // row status
    EaOid(5, 100, "10.0.0.4");
    sms_act_ipaddr(1, 5, 3, 100, Addr("10.0.0.4").data(), 24);  // address type
    sms_act_ipaddr(1, 5, 1, 100, nullptr, 24);                  // no address
    Side().RunScheduler();
    EXPECT_EQ("", Stack().DumpAddresses());
    EXPECT_EQ(7u, Emulator::AnswerCount(RequestKind::Address, Emulator::RESULT_WRONG_VALUE));
    EXPECT_EQ(7u, Side().Calls("cRunPendingAction").size());
}

TEST_F(InterfaceTableTest, ASecondActiveRowForTheSameAddressChangesItsPrefixLength) {
    Address(1, 5, 100, "10.0.0.1", 24);
    Side().RunScheduler();
    Address(1, 5, 100, "10.0.0.1", 16);
    Side().RunScheduler();
    EXPECT_EQ("5 100 10.0.0.1/16\n", Stack().DumpAddresses());
}

TEST_F(InterfaceTableTest, RequestsOfBothKindsAreCounted) {
    Interface(4, 5, 100, "eth0");
    Interface(4, 0x8005, 100, "eth0");
    Address(1, 5, 100, "10.0.0.1", 24);
    EXPECT_EQ(2u, Emulator::RequestCount(RequestKind::Interface));
    EXPECT_EQ(1u, Emulator::RequestCount(RequestKind::Address));
}

}  // namespace
}  // namespace Zavrel::test
