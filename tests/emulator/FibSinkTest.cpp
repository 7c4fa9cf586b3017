// The forwarding table sink: changes gathered during a run are applied at
// its end, once per destination and only where they differ from what was
// committed; the stack tells it every change of an installed route.
#include <gtest/gtest.h>

#include <json/value.h>

#include <memory>

#include "emulator/FibSink.h"
#include "tests/emulator/EmulatorFixture.h"
#include "tests/emulator/FibValues.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::FibKey;
using Emulator::FibRoute;
using Emulator::FibSink;
using Emulator::IpAddress;
using Emulator::RouteSource;

// Records every change applied, one line each.
class RecordingFib final : public FibSink {
public:
    explicit RecordingFib(Strings& lines) : m_lines(lines) {}

    // A sink that has something to say of one destination.
    std::string Describe(const FibKey& key) const override {
        return key.prefixLength == 16 ? "kernel: refused for the test" : "";
    }
    std::string StatusText() const override { return "Recording sink\n"; }
    void StatusJson(Json::Value& status) const override { status["recording"] = true; }

    static std::string RouteText(const std::optional<FibRoute>& route) {
        if (!route) {
            return "-";
        }
        return route->nextHop.ToString() + " if " + std::to_string(route->ifIndex) + " " +
               Emulator::RouteSourceName(route->source);
    }

protected:
    void Apply(const std::vector<Change>& changes) override {
        for (const Change& change : changes) {
            m_lines.push_back(std::to_string(change.key.table) + " " +
                              change.key.destination.ToString() + "/" +
                              std::to_string(change.key.prefixLength) + ": " +
                              RouteText(change.before) + " -> " + RouteText(change.after));
        }
    }

private:
    Strings& m_lines;
};

TEST(FibSinkTest, ACommitAppliesEachDestinationOnceWithItsLastRoute) {
    Strings lines;
    RecordingFib fib(lines);
    const FibRoute first = Via("10.0.0.1", 1);
    const FibRoute last = Via("10.0.0.2", 1);
    fib.Set(Key(5, "192.0.2.0", 24), &first);
    fib.Set(Key(5, "192.0.2.0", 24), &last);
    EXPECT_TRUE(fib.HasPending());
    EXPECT_EQ(Strings(), lines);
    fib.Commit();
    EXPECT_EQ(Strings({"5 192.0.2.0/24: - -> 10.0.0.2 if 1 static"}), lines);
    EXPECT_FALSE(fib.HasPending());
    ASSERT_NE(nullptr, fib.Find(Key(5, "192.0.2.0", 24)));
    EXPECT_EQ(last, *fib.Find(Key(5, "192.0.2.0", 24)));
}

TEST(FibSinkTest, ARouteSetAgainUnchangedAppliesNothing) {
    Strings lines;
    RecordingFib fib(lines);
    const FibRoute route = Via("10.0.0.1", 1);
    fib.Set(Key(5, "192.0.2.0", 24), &route);
    fib.Commit();
    lines.clear();
    // A rebuild withdraws everything, then installs the same again.
    fib.Set(Key(5, "192.0.2.0", 24), nullptr);
    fib.Set(Key(5, "192.0.2.0", 24), &route);
    fib.Commit();
    EXPECT_EQ(Strings(), lines);
}

TEST(FibSinkTest, ADestinationAddedAndWithdrawnInOneRunAppliesNothing) {
    Strings lines;
    RecordingFib fib(lines);
    const FibRoute route = Via("10.0.0.1", 1);
    fib.Set(Key(5, "192.0.2.0", 24), &route);
    fib.Set(Key(5, "192.0.2.0", 24), nullptr);
    fib.Commit();
    EXPECT_EQ(Strings(), lines);
    EXPECT_TRUE(fib.Committed().empty());
}

TEST(FibSinkTest, AWithdrawalCarriesTheRouteItRemoves) {
    Strings lines;
    RecordingFib fib(lines);
    const FibRoute route = Via("10.0.0.1", 1);
    fib.Set(Key(5, "192.0.2.0", 24), &route);
    fib.Commit();
    fib.Set(Key(5, "192.0.2.0", 24), nullptr);
    fib.Commit();
    EXPECT_EQ(Strings({"5 192.0.2.0/24: - -> 10.0.0.1 if 1 static",
                       "5 192.0.2.0/24: 10.0.0.1 if 1 static -> -"}),
              lines);
}

TEST(FibSinkTest, ChangesAreAppliedInTableAndDestinationOrder) {
    Strings lines;
    RecordingFib fib(lines);
    const FibRoute route = Via("10.0.0.1", 1);
    fib.Set(Key(7, "10.0.0.0", 8), &route);
    fib.Set(Key(5, "198.51.100.0", 24), &route);
    fib.Set(Key(5, "192.0.2.0", 24), &route);
    fib.Commit();
    EXPECT_EQ(Strings({"5 192.0.2.0/24: - -> 10.0.0.1 if 1 static",
                       "5 198.51.100.0/24: - -> 10.0.0.1 if 1 static",
                       "7 10.0.0.0/8: - -> 10.0.0.1 if 1 static"}),
              lines);
}

TEST(FibSinkTest, BothInstancesOfAVlanShareItsTable) {
    EXPECT_EQ(5u, Emulator::FibTableOf(5));
    EXPECT_EQ(5u, Emulator::FibTableOf(0x8005));
    EXPECT_EQ(4094u, Emulator::FibTableOf(0x8000 | 4094));
}

// The stack tells its sink every change of an installed route.
class StackFibTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        Stack().SetFibSink(std::make_unique<RecordingFib>(lines));
        StartStack();
        StartInstance(5);
        StartInstance(0x8005);
    }
    void TearDown() override {
        Stack().SetFibSink(nullptr);
        EmulatorFixture::TearDown();
    }

    Strings lines;
};

TEST_F(StackFibTest, ConnectedPrefixesAndStaticRoutesReachTheSinkAtTheEndOfTheRun) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Network(0x8005, 100, "eth0", "2001:db8::1", 64);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    EXPECT_EQ(Strings({"5 10.0.0.0/24: - -> 0.0.0.0 if 100 connected",
                       "5 2001:db8::/64: - -> :: if 100 connected",
                       "5 192.168.0.0/16: - -> 10.0.0.254 if 100 static"}),
              lines);
}

TEST_F(StackFibTest, AnInterfaceRowWrittenAgainChangesNothingInTheSink) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    lines.clear();
    Interface(4, 5, 100, "eth0");
    Side().RunScheduler();
    EXPECT_EQ(Strings(), lines);
}

TEST_F(StackFibTest, ADisabledRouteIsWithdrawnAndABetterOneReplacesIt) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254", 0, 5);
    Side().RunScheduler();
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.253", 0, 1);
    Side().RunScheduler();
    Route(1, 2, 5, "192.168.0.0", 16, "10.0.0.253", 0, 1);
    Side().RunScheduler();
    Route(1, 2, 5, "192.168.0.0", 16, "10.0.0.254", 0, 5);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"5 10.0.0.0/24: - -> 0.0.0.0 if 100 connected",
                       "5 192.168.0.0/16: - -> 10.0.0.254 if 100 static",
                       "5 192.168.0.0/16: 10.0.0.254 if 100 static -> 10.0.0.253 if 100 static",
                       "5 192.168.0.0/16: 10.0.0.253 if 100 static -> 10.0.0.254 if 100 static",
                       "5 192.168.0.0/16: 10.0.0.254 if 100 static -> -"}),
              lines);
}

TEST_F(StackFibTest, ADeletedInstanceWithdrawsEveryRouteItInstalled) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    lines.clear();
    sms_cipr_action(5, 2080);
    Side().RunScheduler();
    EXPECT_EQ(Strings({"5 10.0.0.0/24: 0.0.0.0 if 100 connected -> -",
                       "5 192.168.0.0/16: 10.0.0.254 if 100 static -> -"}),
              lines);
    EXPECT_TRUE(Stack().Fib().Committed().empty());
}

TEST_F(StackFibTest, WhatTheSinkSaysOfARouteIsShownWithItInTheTablesAndTheStatus) {
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Side().RunScheduler();
    EXPECT_EQ(
        "> 5 10.0.0.0/24 via 0.0.0.0 ifIndex 100 connected distance 0 metric 0 age 0\n"
        "> 5 192.168.0.0/16 via 10.0.0.254 ifIndex 100 static distance 1 metric 1 age 0 "
        "kernel: refused for the test\n",
        Stack().DumpRib());
    const Json::Value tables = Stack().TablesJson();
    ASSERT_EQ(2u, tables["rib"].size());
    EXPECT_FALSE(tables["rib"][0].isMember("forwarding"));
    EXPECT_EQ("kernel: refused for the test", tables["rib"][1]["forwarding"].asString());
    const std::string status = Stack().StatusText();
    EXPECT_EQ("Recording sink\n", status.substr(status.size() - 15));
    EXPECT_TRUE(Stack().StatusJson()["recording"].asBool());
}

TEST_F(StackFibTest, TheDefaultSinkHoldsExactlyTheInstalledRoutes) {
    Stack().SetFibSink(nullptr);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Route(1, 1, 5, "172.16.0.0", 12, "10.9.9.9");  // unresolved: never installed
    Side().RunScheduler();
    ASSERT_EQ(2u, Stack().Fib().Committed().size());
    EXPECT_EQ(Via("10.0.0.254", 100), *Stack().Fib().Find(Key(5, "192.168.0.0", 16)));
    EXPECT_EQ(nullptr, Stack().Fib().Find(Key(5, "172.16.0.0", 12)));
    EXPECT_EQ(Strings(), lines);
}

}  // namespace
}  // namespace Zavrel::test
