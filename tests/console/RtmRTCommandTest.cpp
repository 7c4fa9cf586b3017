#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "console/DcConsoleCommand.h"
#include "console/RtmRTCommand.h"
#include "interfaces/DcInterfaceMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

std::string Spaces(size_t n) {
    return std::string(n, ' ');
}

// Right-aligned in width.
std::string Right(const std::string& text, size_t width) {
    return text.size() >= width ? text : Spaces(width - text.size()) + text;
}
std::string Left(const std::string& text, size_t width) {
    return text.size() >= width ? text : text + Spaces(width - text.size());
}

// One line of a detail block: label in 20 columns, ":  ", value in 40.
std::string Detail(const std::string& label, const std::string& value) {
    if (value.empty()) {
        return Left(label, 20) + ":  \n";
    }
    return Left(label, 20) + ":  " + Left(value, 40) + "\n";
}

const std::string kIp4Header = "\n VLAN" + Right("PREFIX", 20) + Right("NEXTHOP", 17) +
                               Right("IFACE", 11) + Right("AGE", 11) + Right("PROTO", 11) + "\n";
const std::string kIp6Header = "\n VLAN" + Right("PREFIX", 51) + Right("NEXTHOP", 47) +
                               Right("IFACE", 11) + Right("AGE", 11) + Right("PROTO", 11) + "\n";

template <typename Row>
Row Ip4Row(unsigned long instance, unsigned char a, unsigned char b, unsigned long length,
           unsigned long proto) {
    Row row;
    std::memset(&row, 0, sizeof(row));
    row.instance = instance;
    row.addr_family = 1;
    row.dest[0] = a;
    row.dest[1] = b;
    row.dest_len = length;
    row.next_hop[0] = 192;
    row.next_hop[1] = 168;
    row.next_hop[2] = 1;
    row.next_hop[3] = 1;
    row.if_index = 3;
    row.route_type = 4;
    row.proto = proto;
    row.age = 77;
    row.route_info = 1;
    row.next_hop_as = 65001;
    row.metric1 = 10;
    row.metric2 = 20;
    row.metric3 = 30;
    row.metric4 = 40;
    row.metric5 = 50;
    return row;
}

class RtmRTCommandTest : public test::RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        DcRtmMgr::GetInstance()->CreateRTMInstance(12, 0, DcRtmMgr::RTMData());
        DcRtmMgr::GetInstance()->CreateRTMInstance(12, 41, DcRtmMgr::RTMData());
        RecordingStack::Instance().ClearCalls();
        console.SetVlan(12);
    }

    // Runs Parse with the words; deletes a refused command as its creator
    // does and returns null then.
    template <typename Command>
    Command* Start(unsigned short family, std::vector<std::string> words) {
        auto* command = new Command(&console, family);
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        argv.push_back(nullptr);
        if (!command->Parse(static_cast<int>(words.size()), argv.data())) {
            delete command;
            return nullptr;
        }
        return command;
    }

    static unsigned char Answer(unsigned long code, const void* row = nullptr) {
        return RecordingStack::Instance().Answer(code, row);
    }

    static size_t Walks() { return RecordingStack::Instance().PendingWalks().size(); }
};

TEST_F(RtmRTCommandTest, RibCommandWalksTheRibFromTheInstanceOfTheConsoleVlan) {
    DcConsoleCommand::m_default_vlan = 3;
    ASSERT_NE(Start<RtmRibCommand>(0, {}), nullptr);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_rtm_rib(12)"});
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
}

TEST_F(RtmRTCommandTest, RouteCommandWalksTheRouteTable) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {}), nullptr);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_rtm_route(12)"});
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
}

TEST_F(RtmRTCommandTest, Ipv6ListingWalksFromTheIpv6Instance) {
    ASSERT_NE(Start<RtmRibCommand>(41, {}), nullptr);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_rtm_rib(32780)"});
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
}

TEST_F(RtmRTCommandTest, UsageAndDescriptionTexts) {
    RtmRouteCommand route(&console, 0);
    RtmRibCommand rib(&console, 0);
    EXPECT_STREQ(route.GetUsage(),
                 "rtm route [vrf <vid>] [destination <Destination Address>] "
                 "[protocol bgp|connected|static|rip|ospf] [detail]");
    EXPECT_STREQ(route.GetDescription(), "Show Route Information");
    EXPECT_STREQ(rib.GetUsage(),
                 "rtm rib [vrf <vid>] [destination <Destination Address>] "
                 "[protocol bgp|connected|static|rip|ospf] [detail]");
    EXPECT_STREQ(rib.GetDescription(), "Show RIB Information");
}

TEST_F(RtmRTCommandTest, FiltersStartEmpty) {
    RtmRibCommand rib(&console, 41);
    EXPECT_EQ(rib.GetFamily(), 41);
    EXPECT_EQ(rib.GetProtocol(), 0);
    EXPECT_FALSE(rib.GetDetail());
    EXPECT_EQ(rib.GetIp4Destination(), Ip4Addr());
    EXPECT_TRUE(rib.GetIp6Destination().IsUnspecified());
}

TEST_F(RtmRTCommandTest, VlanWithoutRtmIsNotPresentAndTheCommandDoesNotStart) {
    console.SetVlan(13);
    EXPECT_EQ(Start<RtmRibCommand>(0, {}), nullptr);
    EXPECT_EQ(console.Output(), "VLAN 13 is not present\n");
    EXPECT_TRUE(RecordingStack::Instance().Requests().empty());
}

TEST_F(RtmRTCommandTest, TableListsRowsOfTheInstanceUnderOneHeaderAndEndsWithEndOfTable) {
    ASSERT_NE(Start<RtmRibCommand>(0, {}), nullptr);
    auto first = Ip4Row<amb_cipr_rtm_rib>(12, 10, 1, 16, 3);
    auto other = Ip4Row<amb_cipr_rtm_rib>(13, 10, 2, 16, 3);
    auto second = Ip4Row<amb_cipr_rtm_rib>(12, 172, 16, 12, 14);
    second.fib_route = 1;
    EXPECT_EQ(Answer(SMS_RC_ROW, &first), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &other), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &second), 1);
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(console.Output(), kIp4Header + "   12" + Right("10.1.0.0/16", 20) +
                                    Right("192.168.1.1", 17) + Right("lo", 11) + Right("77", 11) +
                                    " static    \n" + ">  12" + Right("172.16.0.0/12", 20) +
                                    Right("192.168.1.1", 17) + Right("lo", 11) + Right("77", 11) +
                                    " bgp       \n");
    EXPECT_EQ(console.Errors(), "End of table\n");
    EXPECT_EQ(console.EndCount(), 1);
    EXPECT_EQ(Walks(), 0u);
}

TEST_F(RtmRTCommandTest, WalkWithoutMatchingRowsPrintsNoHeaderOnlyTheEndWord) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {}), nullptr);
    auto other = Ip4Row<amb_cipr_rtm_route>(7, 10, 2, 16, 3);
    EXPECT_EQ(Answer(SMS_RC_ROW, &other), 1);
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(console.Output(), "");
    EXPECT_EQ(console.Errors(), "End of table\n");
}

TEST_F(RtmRTCommandTest, DestinationProtocolAndDetailListOnlyMatchingRowsAsBlocks) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {"dest", "10.0.0.0", "proto", "static", "detail"}),
              nullptr);
    auto match8 = Ip4Row<amb_cipr_rtm_route>(12, 10, 0, 8, 3);
    auto match24 = Ip4Row<amb_cipr_rtm_route>(12, 10, 0, 24, 3);
    auto bgp = Ip4Row<amb_cipr_rtm_route>(12, 10, 0, 8, 14);
    auto elsewhere = Ip4Row<amb_cipr_rtm_route>(12, 11, 0, 8, 3);
    for (auto* row : {&match8, &bgp, &elsewhere, &match24}) {
        EXPECT_EQ(Answer(SMS_RC_ROW, row), 1);
    }
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    auto block = [](const std::string& prefix) {
        return Detail("VLAN", "12") + Detail("Destination", prefix) +
               Detail("Nexthop", "192.168.1.1") + Detail("Route Type", "remote") +
               Detail("Protocol", "static") + Detail("Route Info", "1") + Detail("Age", "77") +
               Detail("NextHop AS", "65001") + Detail("Metric1", "10") + Detail("Metric2", "20") +
               Detail("Metric3", "30") + Detail("Metric4", "40") + Detail("Metric5", "50") + "\n";
    };
    EXPECT_EQ(console.Output(), block("10.0.0.0/8") + block("10.0.0.0/24"));
}

TEST_F(RtmRTCommandTest, LongFormsOfTheKeywordsMatchNothingAndTheCommandDoesNotStart) {
    EXPECT_EQ(Start<RtmRibCommand>(0, {"destination", "10.0.0.0"}), nullptr);
    EXPECT_EQ(Start<RtmRibCommand>(0, {"protocol", "bgp"}), nullptr);
    EXPECT_EQ(console.All(), "");
    EXPECT_TRUE(RecordingStack::Instance().Requests().empty());
}

TEST_F(RtmRTCommandTest, WordsLeftOverStopTheCommandWithoutAMessage) {
    EXPECT_EQ(Start<RtmRibCommand>(0, {"detail", "extra"}), nullptr);
    EXPECT_EQ(console.All(), "");
}

TEST_F(RtmRTCommandTest, ProtocolAbbreviationFailsWithTheUsageLine) {
    EXPECT_EQ(Start<RtmRibCommand>(0, {"proto", "os"}), nullptr);
    EXPECT_EQ(console.Output(), std::string("Usage: ") + RtmRibCommand::USAGE + "\n");
}

TEST_F(RtmRTCommandTest, ProtocolKeywordsSetTheirCodes) {
    const std::pair<const char*, long> keywords[] = {
        {"connected", 2}, {"static", 3}, {"rip", 8}, {"ospf", 13}, {"bgp", 14}};
    for (const auto& keyword : keywords) {
        RtmRibCommand command(&console, 0);
        EXPECT_TRUE(RtmRibCommand::ParseProtocol(command, keyword.first));
        EXPECT_EQ(command.GetProtocol(), keyword.second);
    }
    RtmRibCommand command(&console, 0);
    EXPECT_FALSE(RtmRibCommand::ParseProtocol(command, "BGP"));
    EXPECT_FALSE(RtmRibCommand::ParseProtocol(command, "connnected"));
    EXPECT_EQ(console.All(), "");
}

TEST_F(RtmRTCommandTest, BgpProtocolFilterKeepsOnlyCode14) {
    ASSERT_NE(Start<RtmRibCommand>(0, {"pro", "bgp"}), nullptr);
    auto stat = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 3);
    auto bgp = Ip4Row<amb_cipr_rtm_rib>(12, 10, 9, 16, 14);
    Answer(SMS_RC_ROW, &stat);
    Answer(SMS_RC_ROW, &bgp);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output(), kIp4Header + "   12" + Right("10.9.0.0/16", 20) +
                                    Right("192.168.1.1", 17) + Right("lo", 11) + Right("77", 11) +
                                    " bgp       \n");
}

TEST_F(RtmRTCommandTest, VrfAndAbbreviatedDetailListThatVlanAsBlocks) {
    console.SetVlan(1);
    auto* command = Start<RtmRibCommand>(0, {"vrf", "12", "det"});
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->GetVlan(), 12);
    EXPECT_TRUE(command->GetDetail());
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_rtm_rib(12)"});
    auto row = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 3);
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output().rfind(Detail("VLAN", "12"), 0), 0u);
    EXPECT_NE(console.Output().find("FIB Route?  : no\n"), std::string::npos);
}

TEST_F(RtmRTCommandTest, InvalidVlanPrintsItsMessageAndTheUsageLine) {
    EXPECT_EQ(Start<RtmRouteCommand>(0, {"vrf", "abc"}), nullptr);
    EXPECT_EQ(console.Output(),
              std::string("Invalid VLAN ID abc\nUsage: ") + RtmRouteCommand::USAGE + "\n");
}

TEST_F(RtmRTCommandTest, InvalidIpv4DestinationPrintsItsMessageAndTheUsageLine) {
    EXPECT_EQ(Start<RtmRouteCommand>(0, {"dest", "300.1.1.1"}), nullptr);
    EXPECT_EQ(console.Output(), std::string("Invalid IPv4 Destination Address 300.1.1.1\n"
                                            "Usage: ") +
                                    RtmRouteCommand::USAGE + "\n");
}

TEST_F(RtmRTCommandTest, InvalidIpv6DestinationPrintsItsMessageAndTheUsageLine) {
    EXPECT_EQ(Start<RtmRibCommand>(41, {"dest", "2001:zz::"}), nullptr);
    EXPECT_EQ(console.Output(), std::string("Invalid IPv6 Destination Address 2001:zz::\n"
                                            "Usage: ") +
                                    RtmRibCommand::USAGE + "\n");
}

TEST_F(RtmRTCommandTest, DestinationKeywordWithoutValueFailsWithTheUsageLine) {
    EXPECT_EQ(Start<RtmRibCommand>(0, {"dest"}), nullptr);
    EXPECT_EQ(console.Output(), std::string("Usage: ") + RtmRibCommand::USAGE + "\n");
}

TEST_F(RtmRTCommandTest, ConnectedRoutePrintsTheWordWithThreeNs) {
    ASSERT_NE(Start<RtmRibCommand>(0, {"proto", "connected"}), nullptr);
    auto row = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 2);
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_NE(console.Output().find(" connnected\n"), std::string::npos);
}

TEST_F(RtmRTCommandTest, RibRowInTheForwardingTableIsMarkedInBothForms) {
    auto row = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 3);
    row.fib_route = 1;
    ASSERT_NE(Start<RtmRibCommand>(0, {}), nullptr);
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output().substr(kIp4Header.size(), 1), ">");
    console.Clear();
    ASSERT_NE(Start<RtmRibCommand>(0, {"detail"}), nullptr);
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    const std::string& output = console.Output();
    const std::string last = "FIB Route?  : yes\n";
    ASSERT_GE(output.size(), last.size());
    EXPECT_EQ(output.substr(output.size() - last.size()), last);
}

TEST_F(RtmRTCommandTest, RouteRowsAreNeverMarked) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {}), nullptr);
    auto row = Ip4Row<amb_cipr_rtm_route>(12, 10, 0, 8, 3);
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output().substr(kIp4Header.size(), 1), " ");
    EXPECT_EQ(console.Output().find("FIB"), std::string::npos);
}

TEST_F(RtmRTCommandTest, InterfaceColumnShowsTheInterfaceNameOrTbdForUnresolvedRows) {
    DcInterfaceMgr::GetInstance()->AddInterface(12, 3, "eth3",
                                                static_cast<DcInterfaceMgr::IntfType>(0), 0, 0, 1);
    ASSERT_NE(Start<RtmRibCommand>(0, {}), nullptr);
    auto named = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 3);
    auto unresolved = Ip4Row<amb_cipr_rtm_rib>(12, 10, 1, 16, 3);
    unresolved.unresolved = 1;
    auto unknown = Ip4Row<amb_cipr_rtm_rib>(12, 10, 2, 16, 3);
    unknown.if_index = 99;
    Answer(SMS_RC_ROW, &named);
    Answer(SMS_RC_ROW, &unresolved);
    Answer(SMS_RC_ROW, &unknown);
    Answer(SMS_RC_END_OF_TABLE);
    const std::string tail = Right("192.168.1.1", 17);
    EXPECT_EQ(console.Output(), kIp4Header + "   12" + Right("10.0.0.0/8", 20) + tail +
                                    Right("eth3", 11) + Right("77", 11) + " static    \n" +
                                    "   12" + Right("10.1.0.0/16", 20) + tail + Right("TBD", 11) +
                                    Right("77", 11) + " static    \n" + "   12" +
                                    Right("10.2.0.0/16", 20) + tail + Right("lo", 11) +
                                    Right("77", 11) + " static    \n");
}

TEST_F(RtmRTCommandTest, Ipv6ListingUsesColumns50And46Wide) {
    ASSERT_NE(Start<RtmRibCommand>(41, {}), nullptr);
    amb_cipr_rtm_rib row;
    std::memset(&row, 0, sizeof(row));
    row.instance = 32780;
    row.addr_family = 2;
    row.dest[0] = 0x20;
    row.dest[1] = 0x01;
    row.dest[2] = 0x0d;
    row.dest[3] = 0xb8;
    row.dest_len = 32;
    row.next_hop[0] = 0xfe;
    row.next_hop[1] = 0x80;
    row.next_hop[15] = 1;
    row.if_index = 3;
    row.proto = 13;
    row.age = 5;
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output(), kIp6Header + "   12" + Right("2001:db8::/32", 51) +
                                    Right("fe80::1", 47) + Right("lo", 11) + Right("5", 11) +
                                    " ospf      \n");
}

TEST_F(RtmRTCommandTest, Ipv6DestinationFilterComparesAllSixteenBytes) {
    ASSERT_NE(Start<RtmRibCommand>(41, {"dest", "2001:db8::"}), nullptr);
    amb_cipr_rtm_rib match;
    std::memset(&match, 0, sizeof(match));
    match.instance = 32780;
    match.dest[0] = 0x20;
    match.dest[1] = 0x01;
    match.dest[2] = 0x0d;
    match.dest[3] = 0xb8;
    match.dest_len = 64;
    amb_cipr_rtm_rib differs = match;
    differs.dest[15] = 1;
    Answer(SMS_RC_ROW, &differs);
    Answer(SMS_RC_ROW, &match);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_NE(console.Output().find("2001:db8::/64"), std::string::npos);
    EXPECT_EQ(console.Output().find("2001:db8::1/64"), std::string::npos);
}

TEST_F(RtmRTCommandTest, CodesBeyondTheWordTablesPrintTheEmptyWord) {
    EXPECT_STREQ(RtmRibCommand::ProtoStr(17), "");
    EXPECT_STREQ(RtmRibCommand::ProtoStr(18), "");
    EXPECT_STREQ(RtmRibCommand::ProtoStr(1000), "");
    EXPECT_STREQ(RtmRibCommand::TypeStr(5), "");
    EXPECT_STREQ(RtmRibCommand::TypeStr(77), "");
    ASSERT_NE(Start<RtmRibCommand>(0, {"detail"}), nullptr);
    auto row = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 18);
    row.route_type = 5;
    Answer(SMS_RC_ROW, &row);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_NE(console.Output().find(Detail("Route Type", "") + Detail("Protocol", "")),
              std::string::npos);
}

TEST_F(RtmRTCommandTest, WordTables) {
    const char* const protocols[] = {"", "other", "connnected", "static", "icmp", "",
                                     "", "",      "rip",        "",       "",     "",
                                     "", "ospf",  "bgp",        "idpr",   "",     ""};
    for (unsigned long code = 0; code < 18; ++code) {
        EXPECT_STREQ(RtmRouteCommand::ProtoStr(code), protocols[code]) << code;
    }
    const char* const types[] = {"", "other", "reject", "local", "remote"};
    for (unsigned long code = 0; code < 5; ++code) {
        EXPECT_STREQ(RtmRouteCommand::TypeStr(code), types[code]) << code;
    }
}

TEST_F(RtmRTCommandTest, PassOverResponseKeepsTheCommandAlive) {
    ASSERT_NE(Start<RtmRibCommand>(0, {}), nullptr);
    EXPECT_EQ(Answer(SMS_RC_PASS_OVER), 1);
    EXPECT_EQ(Walks(), 1u);
    auto row = Ip4Row<amb_cipr_rtm_rib>(12, 10, 0, 8, 3);
    EXPECT_EQ(Answer(SMS_RC_ROW, &row), 1);
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_NE(console.Output().find("10.0.0.0/8"), std::string::npos);
}

TEST_F(RtmRTCommandTest, StackErrorPrintsItsWordAndEndsTheCommand) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {}), nullptr);
    EXPECT_EQ(Answer(SMS_RC_GEN_ERROR), 0);
    EXPECT_EQ(console.Errors(), "Gen Error\n");
    EXPECT_EQ(console.EndCount(), 1);
    EXPECT_EQ(Walks(), 0u);
}

TEST_F(RtmRTCommandTest, UnknownResponseCodePrintsNothingAndEndsTheCommand) {
    ASSERT_NE(Start<RtmRouteCommand>(0, {}), nullptr);
    EXPECT_EQ(Answer(11), 0);
    EXPECT_EQ(console.All(), "");
    EXPECT_EQ(console.EndCount(), 1);
}

}  // namespace
}  // namespace Zavrel
