// The forwarding table in Linux: each test runs in a network namespace of
// its own with one veth pair (veth0 10.1.0.1/24 and 2001:db8:1::1/64, its
// peer veth1 up) and checks the kernel's tables with iproute2.
#include <gtest/gtest.h>
#include <net/if.h>

#include <json/value.h>
#include <algorithm>

#include <memory>

#include "emulator/KernelFib.h"
#include "support/testsupport/NetNamespace.h"
#include "support/testsupport/TestEnv.h"
#include "tests/emulator/FibValues.h"

namespace Zavrel::test {
namespace {

using Emulator::FibKey;
using Emulator::FibRoute;
using Emulator::KernelFib;
using Emulator::RouteSource;

class KernelFibTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        ZAVREL_ENTER_NET_NAMESPACE(m_namespace);
        Shell("ip link add veth0 type veth peer name veth1");
        Shell("ip link set veth0 up");
        Shell("ip link set veth1 up");
        Shell("ip addr add 10.1.0.1/24 dev veth0");
        Shell("ip addr add 2001:db8:1::1/64 dev veth0 nodad");
        veth0 = if_nametoindex("veth0");
        ASSERT_NE(0u, veth0);
        fib = Open();
    }
    void TearDown() override {
        fib.reset();
        m_namespace.reset();
        TestEnv::TearDown();
    }

    std::unique_ptr<KernelFib> Open() {
        auto opened = std::make_unique<KernelFib>([this] { return loop.NowMs(); });
        std::string error;
        EXPECT_TRUE(opened->Open(error)) << error;
        return opened;
    }

    static void Shell(const std::string& command) {
        int status = 0;
        const std::string output = NetNamespace::Run(command, &status);
        ASSERT_EQ(0, status) << command << ": " << output;
    }
    // The kernel's routes of a table, as iproute2 prints them with numbers
    // for protocols and scopes (the same whatever names the machine knows).
    static std::string Table(const char* family, unsigned long table) {
        return NetNamespace::Run(std::string("ip -N ") + family + " route show table " +
                                 std::to_string(table));
    }

    void Install(unsigned long table, const char* destination, unsigned long prefixLength,
                 const FibRoute& route) {
        fib->Set(Key(table, destination, prefixLength), &route);
    }

    std::unique_ptr<KernelFib> fib;
    unsigned int veth0 = 0;

private:
    std::unique_ptr<NetNamespace> m_namespace;
};

TEST_F(KernelFibTest, RoutesOfAVlanGoIntoItsTableWithOurProtocolAndPriority) {
    Install(10, "10.1.0.0", 24, Via("0.0.0.0", veth0, RouteSource::Connected));
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    Install(10, "2001:db8:1::", 64, Via("::", veth0, RouteSource::Connected));
    Install(10, "2001:db8:99::", 48, Via("2001:db8:1::2", veth0));
    fib->Commit();
    EXPECT_EQ(
        "10.1.0.0/24 dev veth0 proto 201 scope 253 metric 20 \n"
        "198.51.100.0/24 via 10.1.0.2 dev veth0 proto 201 metric 20 \n",
        Table("-4", 10));
    EXPECT_EQ(
        "2001:db8:1::/64 dev veth0 proto 201 metric 20 pref medium\n"
        "2001:db8:99::/48 via 2001:db8:1::2 dev veth0 proto 201 metric 20 pref medium\n",
        Table("-6", 10));
    EXPECT_EQ(4u, fib->GetCounters().written);
    EXPECT_EQ(1u, fib->GetCounters().batches);
}

TEST_F(KernelFibTest, TablesAboveTheOldByteLimitWork) {
    Install(4094, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    EXPECT_EQ("198.51.100.0/24 via 10.1.0.2 dev veth0 proto 201 metric 20 \n", Table("-4", 4094));
}

TEST_F(KernelFibTest, AWithdrawnRouteLeavesTheKernelAndAChangedOneIsReplacedInPlace) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    Install(10, "203.0.113.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    fib->Set(Key(10, "198.51.100.0", 24), nullptr);
    Install(10, "203.0.113.0", 24, Via("10.1.0.3", veth0));
    fib->Commit();
    EXPECT_EQ("203.0.113.0/24 via 10.1.0.3 dev veth0 proto 201 metric 20 \n", Table("-4", 10));
    EXPECT_EQ(3u, fib->GetCounters().written);
    EXPECT_EQ(1u, fib->GetCounters().removed);
}

TEST_F(KernelFibTest, ManyChangesGoInBatchesAndEveryAcknowledgementFindsItsRoute) {
    for (int i = 0; i < 600; ++i) {
        const std::string destination =
            "172.16." + std::to_string(i / 256) + "." + std::to_string(i % 256);
        Install(10, destination.c_str(), 32, Via("10.1.0.2", veth0));
    }
    // One refusal in the middle names its own route.
    Install(10, "172.31.0.0", 16, Via("10.9.9.9", 0));
    fib->Commit();
    EXPECT_EQ(600u, fib->GetCounters().written);
    EXPECT_EQ(1u, fib->GetCounters().refused);
    EXPECT_LT(1u, fib->GetCounters().batches);
    EXPECT_GT(600u / 10, fib->GetCounters().batches);
    EXPECT_EQ("", fib->ErrorOf(Key(10, "172.16.1.44", 32)));
    EXPECT_EQ("Network is unreachable: Nexthop has invalid gateway",
              fib->ErrorOf(Key(10, "172.31.0.0", 16)));
    const std::string table = Table("-4", 10);
    EXPECT_EQ(600, std::count(table.begin(), table.end(), '\n'));
}

TEST_F(KernelFibTest, ARefusedRouteIsMarkedAndTriedAgainAfterAnAddressChange) {
    Install(10, "192.0.2.0", 24, Via("10.2.0.2", 0));
    fib->Commit();
    EXPECT_EQ("kernel: Network is unreachable: Nexthop has invalid gateway",
              fib->Describe(Key(10, "192.0.2.0", 24)));
    EXPECT_EQ(1u, fib->RefusedCount());
    EXPECT_EQ("", Table("-4", 10));

    // The address that makes the gateway reachable arrives before the
    // backoff has passed: the retry waits for it.
    Shell("ip addr add 10.2.0.1/24 dev veth0");
    fib->OnNotification();
    EXPECT_EQ(1u, fib->RefusedCount());
    EXPECT_EQ(KernelFib::RETRY_FIRST_MS, static_cast<uint64_t>(fib->RetryDue()));
    loop.Advance(KernelFib::RETRY_FIRST_MS);
    EXPECT_EQ(-1, fib->RetryDue());
    EXPECT_EQ(0u, fib->RefusedCount());
    EXPECT_EQ("", fib->Describe(Key(10, "192.0.2.0", 24)));
    EXPECT_EQ("192.0.2.0/24 via 10.2.0.2 dev veth0 proto 201 metric 20 \n", Table("-4", 10));
}

TEST_F(KernelFibTest, TheRetryBackoffDoublesUpToItsBound) {
    Install(10, "192.0.2.0", 24, Via("10.2.0.2", 0));
    fib->Commit();
    uint64_t expected = KernelFib::RETRY_FIRST_MS;
    for (int attempt = 1; attempt <= 12; ++attempt) {
        ASSERT_EQ(expected, static_cast<uint64_t>(fib->RetryDue())) << "attempt " << attempt;
        loop.Advance(expected);
        expected = std::min(expected * 2, KernelFib::RETRY_MAX_MS);
    }
    EXPECT_EQ(KernelFib::RETRY_MAX_MS, static_cast<uint64_t>(fib->RetryDue()));
    EXPECT_EQ(13u, fib->GetCounters().refused);
}

TEST_F(KernelFibTest, TheKernelsReservedTablesAreNeverWritten) {
    Install(254, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    EXPECT_EQ("kernel: table 254 is reserved by the kernel",
              fib->Describe(Key(254, "198.51.100.0", 24)));
    EXPECT_EQ("", NetNamespace::Run("ip -N -4 route show table main proto 201"));
    EXPECT_EQ(-1, fib->RetryDue());
}

TEST_F(KernelFibTest, ARouteDeletedFromOutsideIsPutBackAndCounted) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    Shell("ip route add 203.0.113.0/24 via 10.1.0.3 table 10 proto static");
    Shell("ip route del 198.51.100.0/24 table 10");
    fib->OnNotification();
    EXPECT_EQ(1u, fib->GetCounters().repaired);
    EXPECT_EQ(
        "198.51.100.0/24 via 10.1.0.2 dev veth0 proto 201 metric 20 \n"
        "203.0.113.0/24 via 10.1.0.3 dev veth0 proto 4 \n",
        Table("-4", 10));
}

TEST_F(KernelFibTest, ARouteReplacedFromOutsideIsPutBackAndOthersAreLeftAlone) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    Install(10, "2001:db8:99::", 48, Via("2001:db8:1::2", veth0));
    fib->Commit();
    Shell("ip route replace 198.51.100.0/24 via 10.1.0.9 table 10 metric 20 proto static");
    Shell("ip route add 198.51.100.0/24 via 10.1.0.7 table 10 metric 5 proto static");
    Shell("ip -6 route del 2001:db8:99::/48 table 10");
    fib->OnNotification();
    EXPECT_EQ(2u, fib->GetCounters().repaired);
    EXPECT_EQ(
        "198.51.100.0/24 via 10.1.0.7 dev veth0 proto 4 metric 5 \n"
        "198.51.100.0/24 via 10.1.0.2 dev veth0 proto 201 metric 20 \n",
        Table("-4", 10));
    EXPECT_EQ("2001:db8:99::/48 via 2001:db8:1::2 dev veth0 proto 201 metric 20 pref medium\n",
              Table("-6", 10));
}

TEST_F(KernelFibTest, OurOwnChangesAreNotTakenForDrift) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    Install(10, "198.51.100.0", 24, Via("10.1.0.3", veth0));
    fib->Commit();
    fib->Set(Key(10, "198.51.100.0", 24), nullptr);
    fib->Commit();
    fib->OnNotification();
    EXPECT_EQ(0u, fib->GetCounters().repaired);
    EXPECT_EQ("", Table("-4", 10));
}

TEST_F(KernelFibTest, ARestartKeepsWhatIsStillWantedAndRemovesTheRestWithoutAFlap) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    Install(10, "203.0.113.0", 24, Via("10.1.0.2", veth0));
    Install(20, "192.0.2.0", 24, Via("10.1.0.2", veth0));
    fib->Commit();
    // An unclean exit leaves the routes; the next run finds them.
    fib = Open();
    EXPECT_EQ(3u, fib->GetCounters().adopted);
    EXPECT_EQ(3u, fib->AdoptedCount());
    // Watch the kernel's notifications from here on.
    Emulator::RouteNetlink watcher;
    std::string error;
    ASSERT_TRUE(watcher.Open(true, error)) << error;

    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));  // the same: kept
    Install(10, "203.0.113.0", 24, Via("10.1.0.3", veth0));   // changed: replaced
    fib->Commit();
    EXPECT_EQ(1u, fib->GetCounters().kept);
    EXPECT_EQ(1u, fib->GetCounters().written);
    fib->ReleaseAdopted();  // 192.0.2.0/24 in table 20 is no longer wanted
    EXPECT_EQ(1u, fib->GetCounters().released);

    std::vector<std::string> seen;
    watcher.ReadEvents([&](Emulator::RouteNetlink::Event event, const Emulator::KernelRoute* route,
                           uint32_t) {
        if (route != nullptr) {
            seen.push_back(
                std::string(event == Emulator::RouteNetlink::Event::RouteAdded ? "add " : "del ") +
                route->destination.ToString() + "/" + std::to_string(route->prefixLength) +
                " table " + std::to_string(route->table));
        }
    });
    EXPECT_EQ(
        std::vector<std::string>({"add 203.0.113.0/24 table 10", "del 192.0.2.0/24 table 20"}),
        seen);
    EXPECT_EQ(
        "198.51.100.0/24 via 10.1.0.2 dev veth0 proto 201 metric 20 \n"
        "203.0.113.0/24 via 10.1.0.3 dev veth0 proto 201 metric 20 \n",
        Table("-4", 10));
    EXPECT_EQ("", Table("-4", 20));
}

TEST_F(KernelFibTest, RoutesOfOtherProtocolsAreNeverAdopted) {
    Shell("ip route add 198.51.100.0/24 via 10.1.0.2 table 10 proto static metric 20");
    fib = Open();
    EXPECT_EQ(0u, fib->AdoptedCount());
    fib->ReleaseAdopted();
    EXPECT_EQ("198.51.100.0/24 via 10.1.0.2 dev veth0 proto 4 metric 20 \n", Table("-4", 10));
}

TEST_F(KernelFibTest, TheStatusLineCountsWhatHappened) {
    Install(10, "198.51.100.0", 24, Via("10.1.0.2", veth0));
    Install(10, "192.0.2.0", 24, Via("10.2.0.2", 0));
    fib->Commit();
    EXPECT_EQ(
        "Kernel forwarding: protocol 201, priority 20; written 1, removed 0, refused 1 "
        "(1 waiting), repaired 0; adopted 0 (kept 0, released 0, 0 undecided); batches 1, "
        "resyncs 0\n",
        fib->StatusText());
    Json::Value status;
    fib->StatusJson(status);
    const Json::Value& kernel = status["kernelForwarding"];
    EXPECT_EQ(201u, kernel["protocol"].asUInt());
    EXPECT_EQ(1u, kernel["written"].asUInt());
    EXPECT_EQ(1u, kernel["refused"].asUInt());
    EXPECT_EQ(1u, kernel["waiting"].asUInt());
    EXPECT_FALSE(kernel.isMember("failure"));
}

}  // namespace
}  // namespace Zavrel::test
