// Static route rows: stable OIDs, and answers through cSetRouteState then
// cRunPendingAction.
#include <gtest/gtest.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

using Strings = std::vector<std::string>;
using Emulator::RequestKind;

class StaticRouteTest : public EmulatorFixture {
protected:
    void SetUp() override {
        EmulatorFixture::SetUp();
        StartStack();
        StartInstance(5);
        StartInstance(0x8005);
        Side().ClearCalls();
    }
    static unsigned int LastResult() { return Side().routeStates.back().result; }
};

TEST_F(StaticRouteTest, TheRouteOidIsStableAndDiffersWithEveryKeyValue) {
    const std::string oid = RouteOid(5, "10.0.0.0", 24, "192.168.1.1", 0);
    EXPECT_EQ("1:3:6:1:4:1:47810:7:1:5:1:24:10:0:0:0:192:168:1:1:0", oid);
    EXPECT_EQ(oid, RouteOid(5, "10.0.0.0", 24, "192.168.1.1", 0));
    EXPECT_NE(oid, RouteOid(6, "10.0.0.0", 24, "192.168.1.1", 0));
    EXPECT_NE(oid, RouteOid(5, "10.0.1.0", 24, "192.168.1.1", 0));
    EXPECT_NE(oid, RouteOid(5, "10.0.0.0", 25, "192.168.1.1", 0));
    EXPECT_NE(oid, RouteOid(5, "10.0.0.0", 24, "192.168.1.2", 0));
    EXPECT_NE(oid, RouteOid(5, "10.0.0.0", 24, "192.168.1.1", 3));
    // Asking for an OID makes no request; it is only counted.
    EXPECT_TRUE(Side().Calls().empty());
    EXPECT_EQ(0u, Emulator::RequestCount(RequestKind::Route));
    EXPECT_EQ(7u, Stack().OidQueries());
}

TEST_F(StaticRouteTest, AnIpv6RouteOidHoldsSixteenBytesPerAddress) {
    unsigned long oid[SMS_MAX_OID_LEN];
    const unsigned long length =
        sms_get_route_oid(oid, 0x8005, 2, Addr("2001:db8::").data(), 32, Addr("fe80::1").data(), 7);
    EXPECT_EQ(9u + 3u + 16u + 16u + 1u, length);
    EXPECT_LE(length, static_cast<unsigned long>(SMS_MAX_OID_LEN));
}

TEST_F(StaticRouteTest, ACreateIsAnsweredDoneWithTheRowsValuesThenEnded) {
    Route(1, 1, 5, "10.0.0.0", 24, "192.168.1.1", 0, 7);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ(Strings({"cSetRouteState(5, 1, 10.0.0.0, 24, 192.168.1.1, 0, 7, 196608, 1, 1, 0, 1)",
                       "cRunPendingAction(" + RouteOid(5, "10.0.0.0", 24, "192.168.1.1", 0) + ")"}),
              Side().Calls());
    EXPECT_EQ("5 10.0.0.0/24 via 192.168.1.1 ifIndex 0 admin up metric 7\n",
              Stack().DumpStaticRoutes());
}

TEST_F(StaticRouteTest, TheRouteObserverSeesEveryAnswerBeforeTheLibraryDoes) {
    std::vector<std::string> seen;
    Emulator::ObserveRouteAnswers([&seen](const Emulator::RouteAnswer& a) {
        seen.push_back(std::to_string(a.instance) + " " + a.destination + "/" +
                       std::to_string(a.prefixLength) + " via " + a.nextHop + " if " +
                       std::to_string(a.ifIndex) + " row " + std::to_string(a.rowStatus) +
                       " admin " + std::to_string(a.adminStatus) + " result " +
                       std::to_string(a.result) + " after " +
                       std::to_string(Side().routeStates.size()) + " answers");
    });
    Emulator::FailNext(RequestKind::Route, 1, 3);
    Route(1, 1, 5, "10.0.0.0", 24, "192.168.1.1", 0, 7);
    Side().RunScheduler();
    Route(1, 2, 5, "10.0.1.0", 24, "192.168.1.1", 2, 7);
    Side().RunScheduler();
    EXPECT_EQ(
        Strings({"5 10.0.0.0/24 via 192.168.1.1 if 0 row 1 admin 1 result 3 after 0 answers",
                 "5 10.0.1.0/24 via 192.168.1.1 if 2 row 1 admin 2 result 1 after 1 answers"}),
        seen);
    // An empty function stops the observing.
    Emulator::ObserveRouteAnswers(nullptr);
    Route(1, 1, 5, "10.0.2.0", 24, "192.168.1.1", 0, 7);
    Side().RunScheduler();
    EXPECT_EQ(2u, seen.size());
}

TEST_F(StaticRouteTest, AnIpv6CreateIsAnsweredWithTheIpv6Instance) {
    Route(4, 1, 0x8005, "2001:db8::", 32, "fe80::1", 7, 2);
    Side().ClearCalls();
    Side().RunScheduler();
    EXPECT_EQ("cSetRouteState(32773, 2, 2001:db8::, 32, fe80::1, 7, 2, 196608, 4, 1, 0, 1)",
              Side().Calls().front());
    EXPECT_EQ("32773 2001:db8::/32 via fe80::1 ifIndex 7 admin up metric 2\n",
              Stack().DumpStaticRoutes());
}

TEST_F(StaticRouteTest, ARouteForAnAbsentInstanceIsTemporary) {
    StartInstance(6);
    sms_cipr_action(6, SMS_CIPR_ACTION_DELETE);
    Side().RunScheduler();
    Route(1, 1, 6, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_TEMPORARY, LastResult());
}

TEST_F(StaticRouteTest, ARouteForAnInstanceNotYetReadyIsTemporary) {
    Side().SetRtmConfigUnknown(7);
    StartInstance(7);
    Route(1, 1, 7, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_TEMPORARY, LastResult());
    EXPECT_TRUE(Stack().FindInstance(7)->StaticRoutes().empty());
}

TEST_F(StaticRouteTest, ADestroyRemovesTheRowAndADestroyOfAnAbsentRowHasNoRow) {
    Route(1, 1, 5, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    Route(6, 2, 5, "10.0.0.0", 24, "192.168.1.1", 0, 0);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_DONE, LastResult());
    EXPECT_EQ("", Stack().DumpStaticRoutes());
    Route(6, 2, 5, "10.0.0.0", 24, "192.168.1.1", 0, 0);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_NO_ROW, LastResult());
}

TEST_F(StaticRouteTest, APrefixLengthBeyondTheFamilysIsAWrongValue) {
    Route(1, 1, 5, "10.0.0.0", 33, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    Route(1, 1, 0x8005, "2001:db8::", 129, "fe80::1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    EXPECT_EQ("", Stack().DumpStaticRoutes());
}

TEST_F(StaticRouteTest, AnUnknownRowStatusOrAdminStatusIsAWrongValue) {
    Route(2, 1, 5, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    Route(7, 1, 5, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
    Route(1, 3, 5, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
}

TEST_F(StaticRouteTest, AFamilyThatDoesNotMatchTheInstanceIsAWrongValue) {
    Route(1, 1, 0x8005, "10.0.0.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_WRONG_VALUE, LastResult());
}

TEST_F(StaticRouteTest, ARouteWithoutAddressesIsAWrongValue) {
    RouteOid(5, "0.0.0.0", 0, "0.0.0.0", 0);
    sms_update_route(1, 1, 1, 1, nullptr, 0, nullptr, 0x30000, 0, 5, 1);
    Side().RunScheduler();
    EXPECT_EQ("cSetRouteState(5, 1, 0.0.0.0, 0, 0.0.0.0, 0, 1, 196608, 1, 1, 0, 3)",
              Side().Calls("cSetRouteState").back());
}

TEST_F(StaticRouteTest, AnUpdateChangesMetricAndAdminStatus) {
    Route(1, 1, 5, "10.0.0.0", 24, "192.168.1.1", 0, 7);
    Side().RunScheduler();
    Route(1, 2, 5, "10.0.0.0", 24, "192.168.1.1", 0, 9);
    Side().RunScheduler();
    EXPECT_EQ("5 10.0.0.0/24 via 192.168.1.1 ifIndex 0 admin down metric 9\n",
              Stack().DumpStaticRoutes());
}

TEST_F(StaticRouteTest, TheSharedContextFlagChangesNothing) {
    RouteOid(5, "10.0.0.0", 24, "192.168.1.1", 0);
    sms_update_route(0, 1, 1, 1, Addr("10.0.0.0").data(), 24, Addr("192.168.1.1").data(), 0x30000,
                     0, 5, 1);
    Side().RunScheduler();
    EXPECT_EQ(Emulator::RESULT_DONE, LastResult());
}

TEST_F(StaticRouteTest, AnswersAreCountedPerResult) {
    Route(1, 1, 5, "10.0.0.0", 24, "192.168.1.1");
    Route(1, 1, 5, "10.0.1.0", 33, "192.168.1.1");
    Route(6, 2, 5, "10.0.2.0", 24, "192.168.1.1");
    Side().RunScheduler();
    EXPECT_EQ(3u, Emulator::RequestCount(RequestKind::Route));
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Route, Emulator::RESULT_DONE));
    EXPECT_EQ(1u, Emulator::AnswerCount(RequestKind::Route, Emulator::RESULT_WRONG_VALUE));
    EXPECT_EQ(1u, Emulator::AnswerCount(Emulator::RESULT_NO_ROW));
}

}  // namespace
}  // namespace Zavrel::test
