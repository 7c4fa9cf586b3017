// Kernel interfaces bound to VLANs, and the policy rules that route what
// arrives on them through their VLAN's table. Each test runs in a network
// namespace of its own.
#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "app/KernelLinks.h"
#include "app/KernelRules.h"
#include "support/testsupport/NetNamespace.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;

class RecordingListener : public KernelLinks::Listener {
public:
    void LinkAdded(unsigned short vlan, const KernelLink& link) override {
        lines.push_back(std::to_string(vlan) + " link " + link.name + (link.up ? " up" : " down") +
                        " mtu " + std::to_string(link.mtu));
    }
    void LinkChanged(unsigned short vlan, const KernelLink&, const KernelLink& after) override {
        lines.push_back(std::to_string(vlan) + " change " + after.name +
                        (after.up ? " up" : " down") + " mtu " + std::to_string(after.mtu));
    }
    void LinkGone(unsigned short vlan, const KernelLink& link) override {
        lines.push_back(std::to_string(vlan) + " gone " + link.name);
    }
    void AddressAdded(unsigned short vlan, const KernelAddress& address) override {
        lines.push_back(std::to_string(vlan) + " address add " + address.address + "/" +
                        std::to_string(address.prefixLength));
    }
    void AddressRemoved(unsigned short vlan, const KernelAddress& address) override {
        lines.push_back(std::to_string(vlan) + " address del " + address.address + "/" +
                        std::to_string(address.prefixLength));
    }
    Strings Take() {
        Strings taken;
        taken.swap(lines);
        return taken;
    }
    Strings lines;
};

class KernelLinksTest : public ::testing::Test {
protected:
    void SetUp() override {
        ZAVREL_ENTER_NET_NAMESPACE(m_namespace);
        Shell("ip link add veth0 type veth peer name veth1");
        Shell("ip addr add 10.1.0.1/24 dev veth0");
        links = std::make_unique<KernelLinks>(listener);
        std::string error;
        ASSERT_TRUE(links->Open(error)) << error;
    }
    void TearDown() override {
        links.reset();
        m_namespace.reset();
    }

    static void Shell(const std::string& command) {
        int status = 0;
        const std::string output = NetNamespace::Run(command, &status);
        ASSERT_EQ(0, status) << command << ": " << output;
    }

    // Reads the kernel's news until the listener has heard line, for up to
    // two seconds.
    void ReadUntilHeard(const std::string& line) {
        for (int attempt = 0; attempt < 200; ++attempt) {
            links->OnReadable();
            if (std::find(listener.lines.begin(), listener.lines.end(), line) !=
                listener.lines.end()) {
                return;
            }
            pollfd ready = {links->Fd(), POLLIN, 0};
            poll(&ready, 1, 10);
        }
        FAIL() << "not heard within two seconds: " << line;
    }

    RecordingListener listener;
    std::unique_ptr<KernelLinks> links;

private:
    std::unique_ptr<NetNamespace> m_namespace;
};

TEST_F(KernelLinksTest, AttachReportsTheInterfaceAndItsAddressesAtOnce) {
    std::string error;
    ASSERT_TRUE(links->Attach(10, "veth0", error)) << error;
    EXPECT_EQ(Strings({"10 link veth0 down mtu 1500", "10 address add 10.1.0.1/24"}),
              listener.Take());
    EXPECT_TRUE(links->IsPresent("veth0"));
}

TEST_F(KernelLinksTest, StateAndAddressChangesAreFollowedFromNotifications) {
    std::string error;
    ASSERT_TRUE(links->Attach(10, "veth0", error)) << error;
    listener.Take();
    Shell("ip link set veth1 up");
    Shell("ip link set veth0 up");
    // The kernel tells of a link's operational state and of a new IPv6
    // address from a work queue, a moment after the command has returned:
    // each is heard before the next change, so that the news comes in the
    // order of the changes.
    ReadUntilHeard("10 change veth0 up mtu 1500");
    Shell("ip link set veth0 mtu 1400");
    Shell("ip addr add 2001:db8:1::1/64 dev veth0 nodad");
    ReadUntilHeard("10 address add 2001:db8:1::1/64");
    Shell("ip addr del 10.1.0.1/24 dev veth0");
    links->OnReadable();
    const Strings lines = listener.Take();
    // The kernel may report a link more than once on the way up, and its
    // carrier change may come after the address changes (it is sent from a
    // deferred work queue): what counts is the order of the address changes
    // and the link's final state.
    Strings links_seen;
    Strings addresses;
    for (const std::string& line : lines) {
        (line.rfind("10 address ", 0) == 0 ? addresses : links_seen).push_back(line);
    }
    ASSERT_FALSE(links_seen.empty());
    EXPECT_EQ("10 change veth0 up mtu 1400", links_seen.back());
    EXPECT_EQ(Strings({"10 address add 2001:db8:1::1/64", "10 address del 10.1.0.1/24"}),
              addresses);
}

TEST_F(KernelLinksTest, AnInterfaceThatDisappearsIsReportedGoneAndFollowedWhenItReturns) {
    std::string error;
    ASSERT_TRUE(links->Attach(10, "veth0", error)) << error;
    listener.Take();
    Shell("ip link del veth0");
    links->OnReadable();
    EXPECT_EQ(Strings({"10 address del 10.1.0.1/24", "10 gone veth0"}), listener.Take());
    EXPECT_FALSE(links->IsPresent("veth0"));
    Shell("ip link add veth0 type veth peer name veth1");
    Shell("ip addr add 10.3.0.1/24 dev veth0");
    links->OnReadable();
    const Strings lines = listener.Take();
    ASSERT_LE(2u, lines.size());
    EXPECT_EQ("10 link veth0 down mtu 1500", lines.front());
    EXPECT_EQ("10 address add 10.3.0.1/24", lines.back());
}

TEST_F(KernelLinksTest, UnboundInterfacesAreNotReported) {
    Shell("ip link set veth1 up");
    Shell("ip addr add 10.2.0.1/24 dev veth1");
    links->OnReadable();
    EXPECT_EQ(Strings(), listener.Take());
}

TEST_F(KernelLinksTest, AnInterfaceBindsToOneVlanAndDetachRemovesWhatAttachReported) {
    std::string error;
    ASSERT_TRUE(links->Attach(10, "veth0", error)) << error;
    EXPECT_FALSE(links->Attach(20, "veth0", error));
    EXPECT_EQ("interface veth0 is attached to VLAN 10", error);
    listener.Take();
    EXPECT_FALSE(links->Detach(20, "veth0", error));
    EXPECT_EQ("interface veth0 is not attached to VLAN 20", error);
    ASSERT_TRUE(links->Detach(10, "veth0", error)) << error;
    EXPECT_EQ(Strings({"10 address del 10.1.0.1/24", "10 gone veth0"}), listener.Take());
    EXPECT_TRUE(links->Bindings().empty());
}

TEST_F(KernelLinksTest, AnInterfaceNotYetThereIsReportedWhenItAppears) {
    std::string error;
    ASSERT_TRUE(links->Attach(30, "later0", error)) << error;
    EXPECT_EQ(Strings(), listener.Take());
    Shell("ip link add later0 type veth peer name later1");
    links->OnReadable();
    EXPECT_EQ(Strings({"30 link later0 down mtu 1500"}), listener.Take());
}

TEST_F(KernelLinksTest, RulesSendArrivingTrafficToTheVlanTableAndStopThere) {
    KernelRules rules;
    std::string error;
    ASSERT_TRUE(rules.Open(error)) << error;
    ASSERT_TRUE(rules.Add("veth0", 10, error)) << error;
    // iproute2 prints numbers with -N: protocol 201, action 7 (unreachable).
    EXPECT_EQ(
        "1000:\tfrom all iif veth0 lookup 10 proto 201\n"
        "1001:\tfrom all iif veth0 7 proto 201\n",
        NetNamespace::Run("ip -N -4 rule show pref 1000; ip -N -4 rule show pref 1001"));
    EXPECT_EQ(
        "1000:\tfrom all iif veth0 lookup 10 proto 201\n"
        "1001:\tfrom all iif veth0 7 proto 201\n",
        NetNamespace::Run("ip -N -6 rule show pref 1000; ip -N -6 rule show pref 1001"));
    ASSERT_TRUE(rules.Remove("veth0", 10, error)) << error;
    EXPECT_EQ("", NetNamespace::Run("ip -4 rule show pref 1000; ip -6 rule show pref 1001"));
}

TEST_F(KernelLinksTest, RulesOfAnEarlierRunAreKeptWhenWantedAndRemovedWhenNot) {
    {
        KernelRules first;
        std::string error;
        ASSERT_TRUE(first.Open(error)) << error;
        ASSERT_TRUE(first.Add("veth0", 10, error)) << error;
        ASSERT_TRUE(first.Add("veth1", 20, error)) << error;
    }
    KernelRules rules;
    std::string error;
    ASSERT_TRUE(rules.Open(error)) << error;
    EXPECT_EQ(8u, rules.AdoptedCount());
    ASSERT_TRUE(rules.Add("veth0", 10, error)) << error;
    EXPECT_EQ(4u, rules.AdoptedCount());
    rules.ReleaseAdopted();
    EXPECT_EQ(
        "1000:\tfrom all iif veth0 lookup 10 proto 201\n"
        "1001:\tfrom all iif veth0 7 proto 201\n",
        NetNamespace::Run("ip -N -4 rule show pref 1000; ip -N -4 rule show pref 1001"));
}

}  // namespace
}  // namespace Zavrel::test
