// The status and the tables as JSON: the same information as the status
// text and the table dump (StatusTest), member for member.
#include <gtest/gtest.h>
#include <json/json.h>

#include "tests/emulator/EmulatorFixture.h"

namespace Zavrel::test {
namespace {

class StatusJsonTest : public EmulatorFixture {
protected:
    static std::string Compact(const Json::Value& value) {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        return Json::writeString(builder, value);
    }
};

TEST_F(StatusJsonTest, BeforeSmsiInitOnlyStartedIsThere) {
    EXPECT_EQ("{\"started\":false}", Compact(Emulator::StatusJson()));
}

TEST_F(StatusJsonTest, TheStatusHoldsTablesCountersAndTheChannel) {
    StartStack();
    StartInstance(5);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "10.0.0.254");
    Route(1, 1, 5, "192.169.0.0", 16, "10.0.0.254", 0, 1);
    Route(1, 1, 5, "10.0.0.0", 33, "10.0.0.254");
    Side().RunScheduler();
    const std::string fd = std::to_string(Stack().ChannelFd());
    EXPECT_EQ(
        "{\"addresses\":1,\"answers\":[{\"count\":4,\"result\":1},{\"count\":1,\"result\":3}],"
        "\"components\":[\"ripv2\",\"ripng\",\"bgp\",\"ospf\",\"ospfv3\",\"igmp\",\"pim\"],"
        "\"contractBreaches\":[],\"faults\":[],\"fibEntries\":3,\"interfaceTables\":\"ready\","
        "\"interfaces\":1,\"managementChannel\":{\"descriptor\":" +
            fd +
            ",\"mask\":1,\"state\":\"registered\"},"
            "\"queuedRequests\":0,\"redistributionRows\":0,\"requests\":{\"address\":1,"
            "\"instance\":1,\"interface\":1,\"redistribution\":0,\"route\":3,\"walk\":0},"
            "\"ribEntries\":3,\"rtmInstances\":{\"count\":1,\"ready\":1},\"runs\":5,"
            "\"started\":true,\"state\":\"running\",\"staticRoutes\":2,\"walksInProgress\":0}",
        Compact(Emulator::StatusJson()));
}

TEST_F(StatusJsonTest, AFrozenStackWithFaultsSaysSo) {
    StartStack();
    Emulator::FailNext(Emulator::RequestKind::Route, 1, 5);
    Emulator::Freeze(true);
    const Json::Value status = Emulator::StatusJson();
    EXPECT_EQ("frozen", status["state"].asString());
    EXPECT_EQ(
        "[{\"answerAfterRuns\":1,\"failNext\":1,\"failPerMillion\":0,\"failResult\":5,"
        "\"kind\":\"route\",\"rateResult\":0}]",
        Compact(status["faults"]));
}

TEST_F(StatusJsonTest, TheTablesHoldEveryRow) {
    StartStack();
    StartInstance(5);
    Network(5, 100, "eth0", "10.0.0.1", 24);
    Route(1, 1, 5, "192.168.0.0", 16, "172.16.0.1", 0, 4);
    Redist(1, 1, 0x30000, 0x80000, 5);
    Side().RunScheduler();
    loop.Advance(3000);
    EXPECT_EQ(
        "{\"addresses\":[{\"address\":\"10.0.0.1\",\"ifIndex\":100,\"instance\":5,"
        "\"prefixLength\":24}],"
        "\"interfaces\":[{\"extra\":0,\"flags\":24,\"ifIndex\":100,\"instance\":5,\"mtu\":1500,"
        "\"name\":\"eth0\",\"oper\":\"up\"}],"
        "\"redistribution\":[{\"admin\":\"up\",\"destination\":524288,\"instance\":5,"
        "\"source\":196608}],"
        "\"rib\":[{\"age\":3,\"destination\":\"10.0.0.0\",\"distance\":0,\"fib\":true,"
        "\"ifIndex\":100,\"instance\":5,\"metric\":0,\"nextHop\":\"0.0.0.0\",\"prefixLength\":24,"
        "\"source\":\"connected\",\"unresolved\":false},"
        "{\"age\":3,\"destination\":\"192.168.0.0\",\"distance\":1,\"fib\":false,\"ifIndex\":0,"
        "\"instance\":5,\"metric\":4,\"nextHop\":\"172.16.0.1\",\"prefixLength\":16,"
        "\"source\":\"static\",\"unresolved\":true}],"
        "\"rtmInstances\":[{\"deadTimer\":60,\"distances\":{\"ebgp\":200,\"ibgp\":20,"
        "\"ospfExternal\":110,\"ospfInternal\":40,\"rip\":120},\"family\":\"IPv4\","
        "\"fibEntries\":1,\"instance\":5,\"redistributionRows\":1,\"ribEntries\":2,"
        "\"state\":\"ready\",\"staticRoutes\":1}],"
        "\"staticRoutes\":[{\"admin\":\"up\",\"destination\":\"192.168.0.0\",\"ifIndex\":0,"
        "\"instance\":5,\"metric\":4,\"nextHop\":\"172.16.0.1\",\"prefixLength\":16}]}",
        Compact(Emulator::TablesJson()));
}

}  // namespace
}  // namespace Zavrel::test
