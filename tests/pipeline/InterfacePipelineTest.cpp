// Interfaces and their addresses from the interface manager to the stack's
// interface tables.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "interfaces/DcInterfaceMgr.h"
#include "pipeline/PipelineFixture.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

const char kLegend[] = "\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)";

class InterfacePipelineTest : public test::PipelineFixture {
protected:
    static DcInterfaceMgr& Intf() { return *DcInterfaceMgr::GetInstance(); }
    static Ip6Addr V6(const char* text) {
        Ip6Addr address;
        EXPECT_TRUE(address.FromString(string(text)));
        return address;
    }
    static void EiDone(unsigned long instance, unsigned long ifIndex) {
        std::vector<unsigned long> oid = RecordingStack::EiOid(instance, ifIndex);
        cRunPendingAction(oid.data(), oid.size());
    }
};

TEST_F(InterfacePipelineTest, InterfaceAndAddressesWaitForTheStackThenGoForBothInstancesInOrder) {
    Intf().AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x38, 0, 1);
    Intf().AddIpAddress(5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    Intf().AddIpAddress(5, 100, V6("2001:db8::1"), 64);
    Tick();
    EXPECT_TRUE(Requests().empty());
    EXPECT_EQ(PendingActions(),
              std::string(kLegend) + "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:4:5:100)" +
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:4:32773:100)" +
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:5:5:100:1:10:0:0:1)" +
                  "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:5:32773:100:2:32:1:13:184:0:0:0:"
                  "0:0:0:0:0:0:0:0:1)");

    trace.Clear();
    AsStack([] { cI3Ready(); });
    Tick();
    // The IPv6 row never carries the unnumbered flag (0x38 becomes 0x18).
    EXPECT_EQ(Requests(), (std::vector<std::string>{
                              "sms_bld_amb_test_i3_ei(4, 1, 5, 100, \"eth0\", 0, 56, 0)",
                              "sms_bld_amb_test_i3_ei(4, 1, 32773, 100, \"eth0\", 0, 24, 0)",
                              "sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)",
                              "sms_act_ipaddr(1, 32773, 2, 100, 2001:db8::1, 64)"}));
    EXPECT_EQ(trace.Texts(5),
              (std::vector<std::string>{
                  "InterfaceAction: shared_context = 1 row_status = 4 oper_status = 1 vlan = 5 "
                  "if_index = 100 if_name = eth0\n",
                  "InterfaceAction: shared_context = 1 row_status = 4 oper_status = 1 vlan = "
                  "32773 if_index = 100 if_name = eth0\n",
                  "AddressAction: shared_context = 1 row_status = 1 vlan = 5 if_index = 100 "
                  "address = 10.0.0.1\n"}));
}

TEST_F(InterfacePipelineTest, EndOfARowRequestReleasesTheNextRequestOfThatRowOnly) {
    AsStack([] { cI3Ready(); });
    Tick();
    Intf().AddInterface(5, 100, "eth0", DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x28, 0, 1);
    Intf().SetInterfaceDown(5, 100, "eth0");
    Intf().SetInterfaceUp(5, 100, "eth0");
    EXPECT_EQ(Requests(),
              (std::vector<std::string>{"sms_act_interface(4, 1, 5, 100, \"eth0\", 0, 40, 0)",
                                        "sms_act_interface(4, 1, 32773, 100, \"eth0\", 0, 8, 0)"}));
    EXPECT_EQ(PendingActions(), std::string(kLegend) +
                                    "\n(Actions_Count=3, MibOid=1:3:6:1:4:1:4874:4:5:100)" +
                                    "\n(Actions_Count=3, MibOid=1:3:6:1:4:1:4874:4:32773:100)");
    Stack().ClearCalls();

    AsStack([] { EiDone(5, 100); });
    Tick();
    // Only the IPv4 row moves on, from inside the stack's run, flags 0.
    EXPECT_EQ(Requests(),
              std::vector<std::string>{"sms_bld_amb_test_i3_ei(1, 2, 5, 100, \"eth0\", 0, 0, 0)"});
    AsStack([] {
        EiDone(32773, 100);
        EiDone(5, 100);
    });
    Tick();
    EXPECT_EQ(Requests(), (std::vector<std::string>{
                              "sms_bld_amb_test_i3_ei(1, 2, 5, 100, \"eth0\", 0, 0, 0)",
                              "sms_bld_amb_test_i3_ei(1, 2, 32773, 100, \"eth0\", 0, 0, 0)",
                              "sms_bld_amb_test_i3_ei(1, 1, 5, 100, \"eth0\", 0, 0, 0)"}));
    EXPECT_EQ(PendingActions(), std::string(kLegend) +
                                    "\n(Actions_Count=1, MibOid=1:3:6:1:4:1:4874:4:5:100)" +
                                    "\n(Actions_Count=2, MibOid=1:3:6:1:4:1:4874:4:32773:100)");
    AsStack([] {
        EiDone(5, 100);
        EiDone(32773, 100);
        EiDone(32773, 100);
    });
    Tick();
    EXPECT_EQ(Requests().back(), "sms_bld_amb_test_i3_ei(1, 1, 32773, 100, \"eth0\", 0, 0, 0)");
    EXPECT_EQ(PendingActions(), kLegend);
}

TEST_F(InterfacePipelineTest, AddressDestroyFollowsTheCreateOfTheSameRow) {
    AsStack([] { cI3Ready(); });
    Tick();
    Intf().AddIpAddress(5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    Intf().DeleteIpAddress(5, 100, Ip4Addr(10, 0, 0, 1), Ip4Addr(255, 255, 255, 0));
    EXPECT_EQ(Requests(), std::vector<std::string>{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)"});
    AsStack([] {
        const unsigned char address[4] = {10, 0, 0, 1};
        std::vector<unsigned long> oid = RecordingStack::EaOid(5, 100, address, 1);
        cRunPendingAction(oid.data(), oid.size());
    });
    Tick();
    EXPECT_EQ(Requests(), (std::vector<std::string>{"sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)",
                                                    "sms_act_ipaddr(6, 5, 1, 100, 10.0.0.1, 24)"}));
    EXPECT_EQ(trace.Texts(5).back(),
              "AddressAction: shared_context = 1 row_status = 6 vlan = 5 if_index = 100 "
              "address = 10.0.0.1\n");
}

}  // namespace
}  // namespace Zavrel
