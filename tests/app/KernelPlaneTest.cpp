// What the kernel says of bound interfaces reaches the library as the
// application's own commands, exactly as typed by hand.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "app/KernelPlane.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;

class KernelPlaneTest : public ::testing::Test {
protected:
    KernelPlane plane{[this](const std::string& line, std::string& error) {
                          commands.push_back(line);
                          if (line.rfind("address del", 0) == 0) {
                              error = "no such address";
                              return false;
                          }
                          return true;
                      },
                      [this](const std::string& line) { reports.push_back(line); }};
    Strings commands;
    Strings reports;

    static KernelLink Link(bool up, uint32_t flags = 0x1003) {
        KernelLink link;
        link.ifIndex = 7;
        link.name = "eth1";
        link.flags = flags;
        link.mtu = 1500;
        link.up = up;
        return link;
    }
    static KernelAddress Address(const char* text, unsigned int length) {
        KernelAddress address;
        address.ifIndex = 7;
        address.address = text;
        address.prefixLength = length;
        address.ipv6 = std::string(text).find(':') != std::string::npos;
        return address;
    }
};

TEST_F(KernelPlaneTest, AnInterfaceThatAppearsIsAddedWithItsFlagsAndState) {
    plane.LinkAdded(10, Link(true, 0x11043));
    plane.LinkAdded(20, Link(false, 0x1002));
    EXPECT_EQ(Strings({"interface add 10 7 eth1 flags 0x11043 up",
                       "interface add 20 7 eth1 flags 0x1002 down"}),
              commands);
}

TEST_F(KernelPlaneTest, StateChangesBecomeUpAndDownAndFlagChangesWriteTheRowAgain) {
    plane.LinkChanged(10, Link(false, 0x1002), Link(true, 0x11043));
    plane.LinkChanged(10, Link(true, 0x11043), Link(false, 0x1003));
    plane.LinkChanged(10, Link(true, 0x11043), Link(true, 0x11143));
    KernelLink smaller = Link(true, 0x11043);
    smaller.mtu = 1400;
    plane.LinkChanged(10, Link(true, 0x11043), smaller);
    EXPECT_EQ(Strings({"interface up 10 7 eth1", "interface down 10 7 eth1",
                       "interface add 10 7 eth1 flags 0x11143 up"}),
              commands);
}

TEST_F(KernelPlaneTest, AnInterfaceThatGoesIsRemoved) {
    plane.LinkGone(10, Link(true));
    EXPECT_EQ(Strings({"interface remove 10 7 eth1"}), commands);
}

TEST_F(KernelPlaneTest, AddressesOfBothFamiliesAreAddedAndDeleted) {
    plane.AddressAdded(10, Address("10.1.0.1", 24));
    plane.AddressAdded(10, Address("2001:db8:1::1", 64));
    plane.AddressRemoved(10, Address("10.1.0.1", 24));
    EXPECT_EQ(Strings({"address add 10 7 10.1.0.1/24", "address add 10 7 2001:db8:1::1/64",
                       "address del 10 7 10.1.0.1/24"}),
              commands);
}

TEST_F(KernelPlaneTest, ACommandThatFailsIsReportedOnTheConsole) {
    plane.AddressRemoved(10, Address("10.1.0.1", 24));
    EXPECT_EQ(Strings({"kernel: address del 10 7 10.1.0.1/24: no such address"}), reports);
}

TEST_F(KernelPlaneTest, AttachingNeedsTheKernelLink) {
    std::string error;
    EXPECT_FALSE(plane.Attach(10, "eth1", error));
    EXPECT_EQ("the kernel link is off (start with --kernel)", error);
    EXPECT_FALSE(plane.Detach(10, "eth1", error));
    EXPECT_EQ("the kernel link is off (start with --kernel)", error);
}

TEST_F(KernelPlaneTest, ABindingFileThatIsNotOfTheShapeIsRefusedWithItsPlace) {
    const std::string path = ::testing::TempDir() + "kernel-bindings.json";
    for (const auto& bad : std::vector<std::pair<std::string, std::string>>{
             {"{\"attach\": {}}",
              path + ": expected {\"attach\": [{\"vlan\": <vlan>, \"interface\": <name>}, ...]}"},
             {"{\"attach\": [{\"vlan\": 0, \"interface\": \"eth1\"}]}",
              path + ": attach[0]: needs \"vlan\" (1 to 4094) and \"interface\" (a name)"},
             {"{\"attach\": [{\"vlan\": 10, \"interface\": \"eth1\"}]}",
              path + ": attach[0]: the kernel link is off (start with --kernel)"}}) {
        FILE* file = std::fopen(path.c_str(), "w");
        ASSERT_NE(nullptr, file);
        std::fputs(bad.first.c_str(), file);
        std::fclose(file);
        std::string error;
        EXPECT_FALSE(plane.LoadBindings(path, error)) << bad.first;
        EXPECT_EQ(bad.second, error) << bad.first;
    }
    std::remove(path.c_str());
}

}  // namespace
}  // namespace Zavrel::test
