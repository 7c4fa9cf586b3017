// Table dumps and the status text of the application's "stack status".
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

class StatusTest : public EmulatorFixture {};

TEST_F(StatusTest, BeforeSmsiInitTheStackIsNotStarted) {
    EXPECT_EQ("Stack emulator: not started\n", Emulator::StatusText());
}

TEST_F(StatusTest, TheStatusTextSumsUpTablesCountersAndTheChannel) {
    StartStack();
    StartInstance(5);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Route(1, 1, 5, "192.169.0.0", 16, "10.0.0.254", 0, 1);
    Route(1, 1, 5, "10.0.0.0", 33, "10.0.0.254");
    Side().RunScheduler();
    const std::string fd = std::to_string(Stack().ChannelFd());
    EXPECT_EQ(
        "Stack emulator: running (components: ripv2 ripng bgp ospf ospfv3 igmp pim)\n"
        "Interface tables: ready\n"
        "Runs: 5, queued requests: 0, walks in progress: 0\n"
        "RTM instances: 1 (1 ready)\n"
        "Static routes: 2, redistribution rows: 0, RIB entries: 3, FIB entries: 3\n"
        "Interfaces: 1, addresses: 1\n"
        "Requests: route 3, redistribution 0, interface 1, address 1, instance 1, walk 0\n"
        "Answers: result 1: 4, result 3: 1\n"
        "Contract breaches: 0\n"
        "Faults: none\n"
        "Management channel: descriptor " +
            fd + ", mask 1\n",
        Emulator::StatusText());
}

TEST_F(StatusTest, AFrozenStackWithFaultsSaysSo) {
    StartStack();
    Emulator::FailNext(Emulator::RequestKind::Route, 1, 5);
    Emulator::Freeze(true);
    const std::string status = Emulator::StatusText();
    EXPECT_EQ(0u, status.find("Stack emulator: frozen (components: "));
    EXPECT_NE(std::string::npos,
              status.find("Faults: \nroute: fail next 1 with 5, answer after 1 runs, fail 0 per "
                          "million with 0\n"));
}

TEST_F(StatusTest, TheTableDumpShowsEveryTableUnderItsHeading) {
    StartStack();
    StartInstance(5);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "172.16.0.1", 0, 4);
    Redist(1, 1, 0x30000, 0x80000, 5);
    Side().RunScheduler();
    loop.Advance(3000);
    EXPECT_EQ(
        "RTM instances:\n"
        "instance 5 IPv4 ready dead 60 ospf-int 40 ospf-ext 110 rip 120 ebgp 200 ibgp 20 "
        "static 1 redistribution 1 rib 2 fib 1\n"
        "Static routes:\n"
        "5 192.168.0.0/16 via 172.16.0.1 ifIndex 0 admin up metric 4\n"
        "Redistribution:\n"
        "5 source 0x30000 destination 0x80000 admin up\n"
        "RIB:\n"
        "> 5 10.0.0.0/24 via 0.0.0.0 ifIndex 100 connected distance 0 metric 0 age 3\n"
        "  5 192.168.0.0/16 via 172.16.0.1 ifIndex 0 static distance 1 metric 4 age 3 "
        "unresolved\n"
        "Interfaces:\n"
        "5 100 eth0 up mtu 1500 flags 0x18 extra 0\n"
        "Addresses:\n"
        "5 100 10.0.0.1/24\n",
        Emulator::DumpTables());
}

TEST_F(StatusTest, AClosedChannelIsReported) {
    StartStack();
    Stack().CloseManagementChannel();
    Side().RunScheduler();
    EXPECT_NE(std::string::npos, Emulator::StatusText().find("Management channel: closed\n"));
}

}  // namespace
}  // namespace Zavrel::test
