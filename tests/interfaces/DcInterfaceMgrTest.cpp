#include "interfaces/DcInterfaceMgr.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/Ip6Prefix.h"
#include "routing/DcRouterMgr.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"
#include "support/testsupport/TestAddresses.h"

namespace Zavrel {
namespace {

using test::RecordingStack;
typedef std::vector<std::string> Lines;
using test::V4;
using test::V6;

class DcInterfaceMgrTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        mgr = DcInterfaceMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        // The stack's interface tables are ready: requests go out as they
        // are queued.
        DcRouterMgr::GetInstance()->GetSerializer().RunPendingActions();
        stack().ClearCalls();
        trace.Clear();
    }

    static Serializer& serializer() { return DcRouterMgr::GetInstance()->GetSerializer(); }

    // Acts as the stack: reports every outstanding request done, until no
    // request is left, so that queued requests on the same row follow.
    void CompleteAll() {
        for (int round = 0; round < 16; ++round) {
            std::vector<std::vector<unsigned long>> oids = PendingOids();
            if (oids.empty()) {
                return;
            }
            for (std::vector<unsigned long>& oid : oids) {
                cRunPendingAction(oid.data(), oid.size());
            }
        }
        ADD_FAILURE() << "requests still pending";
    }

    // The OIDs that have requests in the serializer, in queue order.
    std::vector<std::vector<unsigned long>> PendingOids() {
        std::vector<std::vector<unsigned long>> oids;
        for (const MibOid& oid : serializer().ActionsQueue()) {
            oids.emplace_back(oid.Components(), oid.Components() + oid.Length());
        }
        return oids;
    }

    Lines Requests() { return stack().Requests(); }

    DcInterfaceMgr* mgr = nullptr;
};

// ---- interface rows

TEST_F(DcInterfaceMgrTest, AddInterfaceSendsCreateAndGoForBothInstancesIpv4First) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x18, 7, 1);
    EXPECT_EQ(stack().Calls(), (Lines{"sms_set_i3_ei_oid(5, 100)",
                                      "sms_act_interface(4, 1, 5, 100, \"eth0\", 0, 24, 7)",
                                      "sms_set_i3_ei_oid(32773, 100)",
                                      "sms_act_interface(4, 1, 32773, 100, \"eth0\", 0, 24, 7)"}));
}

TEST_F(DcInterfaceMgrTest, Ipv6InterfaceRowIsNeverUnnumbered) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x38, 0, 1);
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(4, 1, 5, 100, \"eth0\", 0, 56, 0)",
                                 "sms_act_interface(4, 1, 32773, 100, \"eth0\", 0, 24, 0)"}));
}

TEST_F(DcInterfaceMgrTest, AddInterfaceRecordsTheInterface) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_VLAN, 0, 0, 2);
    const IpInterface* record = mgr->FindInterface(5, 100);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetVlan(), 5);
    EXPECT_EQ(record->GetIfIndex(), 100u);
    EXPECT_EQ(record->GetName(), "eth0");
    EXPECT_EQ(record->GetType(), DcInterfaceMgr::INTF_TYPE_VLAN);
    EXPECT_EQ(record->GetOperStatus(), 2u);
    EXPECT_EQ(record->GetAddress(), Ip4Addr());
    EXPECT_EQ(record->GetMask(), Ip4Addr());
    EXPECT_TRUE(record->GetIp6Prefixes().empty());
    unsigned int ifIndex = 0;
    EXPECT_EQ(mgr->GetIfIndex("eth0", ifIndex), 1);
    EXPECT_EQ(ifIndex, 100u);
    EXPECT_STREQ(mgr->GetIfName(5, 100), "eth0");
}

TEST_F(DcInterfaceMgrTest, AddingAKnownInterfaceAgainKeepsNameAndTypeButTakesTheOperStatus) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    CompleteAll();
    stack().ClearCalls();

    mgr->AddInterface(5, 100, "wan1", DcInterfaceMgr::INTF_TYPE_TUNNEL, 0, 0, 2);

    // A second createAndGo pair is sent.
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(4, 2, 5, 100, \"wan1\", 0, 0, 0)",
                                 "sms_act_interface(4, 2, 32773, 100, \"wan1\", 0, 0, 0)"}));
    const IpInterface* record = mgr->FindInterface(5, 100);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->GetName(), "eth0");
    EXPECT_EQ(record->GetType(), DcInterfaceMgr::INTF_TYPE_ETHERNET);
    EXPECT_EQ(record->GetOperStatus(), 2u);
    EXPECT_EQ(record->GetAddress(), V4("10.0.0.1"));
    // The name table is not touched: the new name is unknown.
    unsigned int ifIndex = 0;
    EXPECT_EQ(mgr->GetIfIndex("wan1", ifIndex), 0);
}

TEST_F(DcInterfaceMgrTest, SecondRequestOnTheSameRowWaitsForTheFirstToComplete) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    stack().ClearCalls();
    mgr->SetInterfaceDown(5, 100, "eth0");
    EXPECT_TRUE(Requests().empty());
    CompleteAll();
    EXPECT_EQ(Requests().size(), 2u);
}

TEST_F(DcInterfaceMgrTest, UpAndDownResendTheRowWithFlagsAndExtraZero) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x28, 9, 2);
    CompleteAll();
    stack().ClearCalls();

    mgr->SetInterfaceUp(5, 100, "eth0");
    CompleteAll();
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(1, 1, 5, 100, \"eth0\", 0, 0, 0)",
                                 "sms_act_interface(1, 1, 32773, 100, \"eth0\", 0, 0, 0)"}));
    EXPECT_EQ(mgr->FindInterface(5, 100)->GetOperStatus(), 1u);

    stack().ClearCalls();
    mgr->SetInterfaceDown(5, 100, "eth0");
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(1, 2, 5, 100, \"eth0\", 0, 0, 0)",
                                 "sms_act_interface(1, 2, 32773, 100, \"eth0\", 0, 0, 0)"}));
    EXPECT_EQ(mgr->FindInterface(5, 100)->GetOperStatus(), 2u);
}

TEST_F(DcInterfaceMgrTest, UpAndDownOfAnUnknownInterfaceOnlySend) {
    mgr->SetInterfaceUp(6, 7, "x0");
    CompleteAll();
    mgr->SetInterfaceDown(6, 7, "x0");
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(1, 1, 6, 7, \"x0\", 0, 0, 0)",
                                 "sms_act_interface(1, 1, 32774, 7, \"x0\", 0, 0, 0)",
                                 "sms_act_interface(1, 2, 6, 7, \"x0\", 0, 0, 0)",
                                 "sms_act_interface(1, 2, 32774, 7, \"x0\", 0, 0, 0)"}));
    EXPECT_EQ(mgr->FindInterface(6, 7), nullptr);
}

TEST_F(DcInterfaceMgrTest, SetInterfaceStatusPassesItsArgumentsAndTouchesNoTable) {
    mgr->SetInterfaceStatus(5, 100, "eth0", 5, 2, 3, 0x21, 4);
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(5, 2, 5, 100, \"eth0\", 3, 33, 4)",
                                 "sms_act_interface(5, 2, 32773, 100, \"eth0\", 3, 1, 4)"}));
    EXPECT_EQ(mgr->FindInterface(5, 100), nullptr);
    unsigned int ifIndex = 0;
    EXPECT_EQ(mgr->GetIfIndex("eth0", ifIndex), 0);
}

TEST_F(DcInterfaceMgrTest, RemoveInterfaceDestroysBothRowsAndForgetsIt) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x8, 0, 1);
    CompleteAll();
    stack().ClearCalls();

    mgr->RemoveInterface(5, 100, "eth0");

    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(6, 2, 5, 100, \"eth0\", 0, 0, 0)",
                                 "sms_act_interface(6, 2, 32773, 100, \"eth0\", 0, 0, 0)"}));
    EXPECT_EQ(mgr->FindInterface(5, 100), nullptr);
    unsigned int ifIndex = 0;
    EXPECT_EQ(mgr->GetIfIndex("eth0", ifIndex), 0);
    EXPECT_STREQ(mgr->GetIfName(5, 100), "lo");
}

TEST_F(DcInterfaceMgrTest, RemoveOfAnUnknownInterfaceStillSendsTheDestroyRows) {
    mgr->RemoveInterface(9, 4, "ghost");
    EXPECT_EQ(Requests(), (Lines{"sms_act_interface(6, 2, 9, 4, \"ghost\", 0, 0, 0)",
                                 "sms_act_interface(6, 2, 32777, 4, \"ghost\", 0, 0, 0)"}));
}

TEST_F(DcInterfaceMgrTest, RemoveErasesTheStoredNameNotTheNameGiven) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddInterface(5, 101, "eth1", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->RemoveInterface(5, 100, "eth1");
    unsigned int ifIndex = 0;
    EXPECT_EQ(mgr->GetIfIndex("eth0", ifIndex), 0);
    EXPECT_EQ(mgr->GetIfIndex("eth1", ifIndex), 1);
    EXPECT_EQ(ifIndex, 101u);
}

TEST_F(DcInterfaceMgrTest, NameTableHoldsOneIfIndexPerNameAcrossVlans) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddInterface(6, 200, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    unsigned int ifIndex = 0;
    ASSERT_EQ(mgr->GetIfIndex("eth0", ifIndex), 1);
    EXPECT_EQ(ifIndex, 200u);

    // Removing either interface removes the name for both.
    mgr->RemoveInterface(5, 100, "eth0");
    EXPECT_EQ(mgr->GetIfIndex("eth0", ifIndex), 0);
    EXPECT_NE(mgr->FindInterface(6, 200), nullptr);
}

TEST_F(DcInterfaceMgrTest, GetIfIndexOfANullOrUnknownNameIsFalseAndLeavesTheIndex) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    unsigned int ifIndex = 5;
    EXPECT_EQ(mgr->GetIfIndex(nullptr, ifIndex), 0);
    EXPECT_EQ(mgr->GetIfIndex("eth1", ifIndex), 0);
    EXPECT_EQ(ifIndex, 5u);
}

TEST_F(DcInterfaceMgrTest, InterfaceKeysAreOrderedByVlanThenIfIndex) {
    IpInterface::Key a{1, 500};
    IpInterface::Key b{2, 1};
    IpInterface::Key c{2, 3};
    EXPECT_TRUE(IpInterface::Key::NameCompare(a, b));
    EXPECT_FALSE(IpInterface::Key::NameCompare(b, a));
    EXPECT_TRUE(IpInterface::Key::NameCompare(b, c));
    EXPECT_FALSE(IpInterface::Key::NameCompare(c, c));
}

// ---- names and types

TEST_F(DcInterfaceMgrTest, GetIfNameOfAnUnknownInterfaceIsLo) {
    EXPECT_STREQ(mgr->GetIfName(5, 1), "lo");
}

TEST_F(DcInterfaceMgrTest, GetIfNameOfAnInterfaceAddedWithAnEmptyNameIsEmpty) {
    mgr->AddInterface(5, 100, "", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    EXPECT_STREQ(mgr->GetIfName(5, 100), "");
}

TEST_F(DcInterfaceMgrTest, GetIfTypeLooksInVlanOneOnly) {
    mgr->AddInterface(7, 100, "eth7", DcInterfaceMgr::INTF_TYPE_TUNNEL, 0, 0, 1);
    EXPECT_EQ(mgr->GetIfType("eth7"), DcInterfaceMgr::INTF_TYPE_UNKNOWN);

    // A VLAN 1 record with the same ifIndex answers for the name.
    mgr->AddInterface(1, 100, "eth1", DcInterfaceMgr::INTF_TYPE_LOOPBACK, 0, 0, 1);
    EXPECT_EQ(mgr->GetIfType("eth7"), DcInterfaceMgr::INTF_TYPE_LOOPBACK);
    EXPECT_EQ(mgr->GetIfType("eth1"), DcInterfaceMgr::INTF_TYPE_LOOPBACK);
}

TEST_F(DcInterfaceMgrTest, GetIfTypeOfNoNameOrAnUnknownNameIsZero) {
    mgr->AddInterface(1, 100, "", DcInterfaceMgr::INTF_TYPE_VLAN, 0, 0, 1);
    EXPECT_EQ(mgr->GetIfType(nullptr), DcInterfaceMgr::INTF_TYPE_UNKNOWN);
    EXPECT_EQ(mgr->GetIfType(""), DcInterfaceMgr::INTF_TYPE_UNKNOWN);
    EXPECT_EQ(mgr->GetIfType("none"), DcInterfaceMgr::INTF_TYPE_UNKNOWN);
}

// ---- IPv4 addresses

TEST_F(DcInterfaceMgrTest, AddIpAddressSendsTheActiveRowAndRecordsIt) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    stack().ClearCalls();

    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));

    EXPECT_EQ(stack().Calls(), (Lines{"sms_set_i3_ea_oid(5, 100, 10.0.0.1, 1)",
                                      "sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)"}));
    Ip4Addr address;
    Ip4Addr mask;
    ASSERT_EQ(mgr->GetIfIpAddr(5, 100, address, mask), 1);
    EXPECT_EQ(address, V4("10.0.0.1"));
    EXPECT_EQ(mask, V4("255.255.255.0"));
}

TEST_F(DcInterfaceMgrTest, AnInterfaceRecordsOneIpv4Address) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    mgr->AddIpAddress(5, 100, V4("10.9.0.1"), V4("255.255.0.0"));
    Ip4Addr address;
    Ip4Addr mask;
    ASSERT_EQ(mgr->GetIfIpAddr(5, 100, address, mask), 1);
    EXPECT_EQ(address, V4("10.9.0.1"));
    EXPECT_EQ(mask, V4("255.255.0.0"));
}

TEST_F(DcInterfaceMgrTest, AddressOfAnUnknownInterfaceIsSentButNotRecorded) {
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    EXPECT_EQ(Requests(), Lines{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)"});
    Ip4Addr address;
    Ip4Addr mask;
    EXPECT_EQ(mgr->GetIfIpAddr(5, 100, address, mask), 0);
}

TEST_F(DcInterfaceMgrTest, DeleteIpAddressClearsTheRecordedAddressWhicheverWasGiven) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    CompleteAll();
    stack().ClearCalls();

    mgr->DeleteIpAddress(5, 100, V4("172.16.0.1"), V4("255.255.0.0"));

    EXPECT_EQ(Requests(), Lines{"sms_act_ipaddr(6, 5, 1, 100, 172.16.0.1, 16)"});
    Ip4Addr address = V4("1.1.1.1");
    Ip4Addr mask = V4("1.1.1.1");
    ASSERT_EQ(mgr->GetIfIpAddr(5, 100, address, mask), 1);
    EXPECT_EQ(address, Ip4Addr());
    EXPECT_EQ(mask, Ip4Addr());
}

TEST_F(DcInterfaceMgrTest, ChangeIpAddressDestroysTheOldRowSendsTheNewOneAndTellsTheRouters) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    CompleteAll();
    stack().ClearCalls();
    trace.Clear();

    mgr->ChangeIpAddress(5, 100, V4("10.0.1.1"), V4("255.255.0.0"));

    EXPECT_EQ(Requests(), (Lines{"sms_act_ipaddr(6, 5, 1, 100, 10.0.0.1, 24)",
                                 "sms_act_ipaddr(1, 5, 1, 100, 10.0.1.1, 16)"}));
    Ip4Addr address;
    Ip4Addr mask;
    ASSERT_EQ(mgr->GetIfIpAddr(5, 100, address, mask), 1);
    EXPECT_EQ(address, V4("10.0.1.1"));
    EXPECT_EQ(mask, V4("255.255.0.0"));
    EXPECT_TRUE(trace.Contains(10, "Updating IP Address Change to Interface 100\n"));
}

TEST_F(DcInterfaceMgrTest, ChangeIpAddressOfAnUnknownInterfaceSendsNothingAndTellsNoRouter) {
    mgr->ChangeIpAddress(5, 100, V4("10.0.1.1"), V4("255.255.0.0"));
    EXPECT_TRUE(stack().Calls().empty());
    EXPECT_FALSE(trace.Contains(10, "Updating IP Address Change to Interface 100\n"));
}

TEST_F(DcInterfaceMgrTest, UpdateIpAddressSendsOneRowAndTouchesNoTable) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    stack().ClearCalls();
    mgr->UpdateIpAddress(5, 100, V4("10.0.0.1"), V4("255.0.255.0"), 2);
    EXPECT_EQ(Requests(), Lines{"sms_act_ipaddr(2, 5, 1, 100, 10.0.0.1, 16)"});
    EXPECT_EQ(mgr->FindInterface(5, 100)->GetAddress(), Ip4Addr());
}

TEST_F(DcInterfaceMgrTest, GetIfIpAddrByNameUsesTheVlanGiven) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.1"), V4("255.255.255.0"));
    Ip4Addr address;
    ASSERT_EQ(mgr->GetIfIpAddr(5, "eth0", address), 1);
    EXPECT_EQ(address, V4("10.0.0.1"));

    // Re-pointed at another VLAN's interface, the name finds nothing in 5.
    mgr->AddInterface(6, 200, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    address = Ip4Addr();
    EXPECT_EQ(mgr->GetIfIpAddr(5, "eth0", address), 0);
    EXPECT_EQ(mgr->GetIfIpAddr(6, "eth0", address), 1);
    EXPECT_EQ(address, Ip4Addr());
    EXPECT_EQ(mgr->GetIfIpAddr(5, static_cast<const char*>(nullptr), address), 0);
}

TEST_F(DcInterfaceMgrTest, GetIfIpAddrByNameLooksUpAnEmptyNameLikeAnyOther) {
    mgr->AddInterface(5, 100, "", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V4("10.0.0.9"), V4("255.255.255.0"));
    Ip4Addr address;
    ASSERT_EQ(mgr->GetIfIpAddr(5, "", address), 1);
    EXPECT_EQ(address, V4("10.0.0.9"));
}

// ---- IPv6 addresses

TEST_F(DcInterfaceMgrTest, AddIpv6AddressSendsTheRowForTheIpv6InstanceAndStoresThePrefix) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    stack().ClearCalls();

    mgr->AddIpAddress(5, 100, V6("2001:db8::1"), 64);

    EXPECT_EQ(stack().Calls(), (Lines{"sms_set_i3_ea_oid(32773, 100, 2001:db8::1, 2)",
                                      "sms_act_ipaddr(1, 32773, 2, 100, 2001:db8::1, 64)"}));
    const IpInterface::Ip6PrefixSet& prefixes = mgr->FindInterface(5, 100)->GetIp6Prefixes();
    ASSERT_EQ(prefixes.size(), 1u);
    EXPECT_EQ(*prefixes.begin(), Ip6Prefix(V6("2001:db8::"), 64));
}

TEST_F(DcInterfaceMgrTest, DeletingAnIpv6AddressLeavesAShorterPrefixInTheSet) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V6("2001:db8::1"), 64);
    CompleteAll();
    stack().ClearCalls();

    mgr->DeleteIpAddress(5, 100, V6("2001:db8::1"), 64);

    EXPECT_EQ(Requests(), Lines{"sms_act_ipaddr(6, 32773, 2, 100, 2001:db8::1, 64)"});
    const IpInterface::Ip6PrefixSet& prefixes = mgr->FindInterface(5, 100)->GetIp6Prefixes();
    ASSERT_EQ(prefixes.size(), 1u);
    EXPECT_EQ(*prefixes.begin(), Ip6Prefix(V6("2001:db8::"), 64));
}

TEST_F(DcInterfaceMgrTest, DeletingAnIpv6AddressErasesItsFullLengthPrefix) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V6("2001:db8::1"), 128);
    mgr->AddIpAddress(5, 100, V6("2001:db8::2"), 128);
    mgr->DeleteIpAddress(5, 100, V6("2001:db8::1"), 64);
    const IpInterface::Ip6PrefixSet& prefixes = mgr->FindInterface(5, 100)->GetIp6Prefixes();
    ASSERT_EQ(prefixes.size(), 1u);
    EXPECT_EQ(*prefixes.begin(), Ip6Prefix(V6("2001:db8::2"), 128));
}

TEST_F(DcInterfaceMgrTest, Ipv6PrefixLengthAbove128IsStoredAs128) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V6("2001:db8::1"), 200);
    const IpInterface::Ip6PrefixSet& prefixes = mgr->FindInterface(5, 100)->GetIp6Prefixes();
    ASSERT_EQ(prefixes.size(), 1u);
    EXPECT_EQ(*prefixes.begin(), Ip6Prefix(V6("2001:db8::1"), 128));
}

TEST_F(DcInterfaceMgrTest, Ipv6PrefixKeepsAPartialWordOfTheMask) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->AddIpAddress(5, 100, V6("2001:db8:abcd:ef01:2345::1"), 52);
    mgr->AddIpAddress(5, 100, V6("2001:db8:abcd:ef01:2345::2"), 52);
    const IpInterface::Ip6PrefixSet& prefixes = mgr->FindInterface(5, 100)->GetIp6Prefixes();
    ASSERT_EQ(prefixes.size(), 1u);
    EXPECT_EQ(*prefixes.begin(), Ip6Prefix(V6("2001:db8:abcd:e000::"), 52));
}

TEST_F(DcInterfaceMgrTest, Ipv6AddressOfAnUnknownInterfaceIsSentButNotRecorded) {
    mgr->AddIpAddress(5, 100, V6("2001:db8::1"), 64);
    mgr->DeleteIpAddress(5, 101, V6("2001:db8::1"), 64);
    EXPECT_EQ(Requests(), (Lines{"sms_act_ipaddr(1, 32773, 2, 100, 2001:db8::1, 64)",
                                 "sms_act_ipaddr(6, 32773, 2, 101, 2001:db8::1, 64)"}));
    EXPECT_EQ(mgr->FindInterface(5, 100), nullptr);
}

TEST_F(DcInterfaceMgrTest, Ipv6PrefixHashIsTheFirstAddressWord) {
    IpInterface::Ip6PrefixHash hash;
    EXPECT_EQ(hash(Ip6Prefix(V6("2001:db8::"), 32)), static_cast<size_t>(0x20010db8u));
}

// ---- primary interface and default interface

TEST_F(DcInterfaceMgrTest, PrimaryInterfaceOfAVlanNeverSetIsNull) {
    EXPECT_EQ(mgr->GetPrimaryInterface(5), nullptr);
}

TEST_F(DcInterfaceMgrTest, SetPrimaryInterfaceIgnoresAnEmptyOrNullName) {
    mgr->SetPrimaryInterface(5, "");
    mgr->SetPrimaryInterface(5, nullptr);
    EXPECT_EQ(mgr->GetPrimaryInterface(5), nullptr);
}

TEST_F(DcInterfaceMgrTest, SetPrimaryInterfaceOverwritesAndSurvivesRemoval) {
    mgr->AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0, 0, 1);
    mgr->SetPrimaryInterface(5, "eth9");
    mgr->SetPrimaryInterface(5, "eth0");
    EXPECT_STREQ(mgr->GetPrimaryInterface(5), "eth0");
    mgr->RemoveInterface(5, 100, "eth0");
    EXPECT_STREQ(mgr->GetPrimaryInterface(5), "eth0");
}

TEST_F(DcInterfaceMgrTest, DefaultInterfaceIsZeroUntilInitialized) {
    EXPECT_EQ(mgr->GetDefaultInterface(), 0u);
    mgr->Initialize(42);
    EXPECT_EQ(mgr->GetDefaultInterface(), 42u);
}

TEST_F(DcInterfaceMgrTest, GetInstanceAlwaysReturnsTheSameManager) {
    EXPECT_EQ(DcInterfaceMgr::GetInstance(), mgr);
}

}  // namespace
}  // namespace Zavrel
