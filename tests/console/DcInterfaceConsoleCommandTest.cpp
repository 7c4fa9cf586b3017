#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "console/DcConsoleCommand.h"
#include "console/DcInterfaceConsoleCommand.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::RecordingStack;

const std::string kHelp =
    "Flags:\nB-Broadcast M-Multicast L-Loopback\nT-MPLS Tunnel P-Point2Point U-Unnumbered\n";
const std::string kHeader = "VLAN    IfIndex     IfName Status    MTU  Flags IPAddress\n";
const std::string kBlank6 =
    "\n" + std::string(4 + 1 + 10 + 1 + 10 + 1 + 6 + 1 + 6 + 1 + 6 + 1, ' ');

amb_stubs_i3_ei Interface(unsigned long instance, unsigned long ifIndex, const char* name,
                          unsigned long oper, unsigned long mtu, unsigned long flags) {
    amb_stubs_i3_ei row;
    std::memset(&row, 0, sizeof(row));
    row.instance = instance;
    row.if_index = ifIndex;
    std::strncpy(row.if_name, name, sizeof(row.if_name) - 1);
    row.oper_status = oper;
    row.mtu = mtu;
    row.flags = flags;
    return row;
}

amb_stubs_i3_ea Address4(unsigned long instance, unsigned long ifIndex, unsigned char last,
                         unsigned long length) {
    amb_stubs_i3_ea row;
    std::memset(&row, 0, sizeof(row));
    row.instance = instance;
    row.if_index = ifIndex;
    row.addr_type = SMS_ADDR_TYPE_IPV4;
    row.address[0] = 10;
    row.address[3] = last;
    row.prefix_len = length;
    return row;
}

class DcInterfaceConsoleCommandTest : public test::RecordingStackEnv {
protected:
    static unsigned char Answer(unsigned long code, const void* row = nullptr) {
        return RecordingStack::Instance().Answer(code, row);
    }
    static size_t Walks() { return RecordingStack::Instance().PendingWalks().size(); }
};

TEST_F(DcInterfaceConsoleCommandTest, VlanWithoutInterfacesPrintsHelpHeaderAndEndOfTable) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_i3_ei(5)"});
    // The end of the first walk: low byte 0 for the stack, command alive.
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              (std::vector<std::string>{"sms_get_next_i3_ei(5)", "sms_get_next_i3_ea(5)"}));
    EXPECT_EQ(console.All(), "");
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader + "End of Table\n");
    EXPECT_EQ(console.EndCount(), 1);
    EXPECT_EQ(Walks(), 0u);
}

TEST_F(DcInterfaceConsoleCommandTest, InterfaceWithThreeAddressesPrintsTwoContinuationLines) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    auto eth = Interface(5, 100, "eth0", 1, 1500, 0x18);
    EXPECT_EQ(Answer(SMS_RC_ROW, &eth), 1);
    Answer(SMS_RC_END_OF_TABLE);
    auto a1 = Address4(5, 100, 1, 24);
    auto a2 = Address4(5, 100, 2, 16);
    auto a3 = Address4(5, 100, 3, 8);
    EXPECT_EQ(Answer(SMS_RC_ROW, &a1), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &a2), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &a3), 1);
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader +
                                    "   5        100       eth0     UP   1500     BM 10.0.0.1/24" +
                                    kBlank6 + "10.0.0.2/16" + kBlank6 + "10.0.0.3/8\n" +
                                    "End of Table\n");
}

TEST_F(DcInterfaceConsoleCommandTest, FlagLettersComeInBitOrder) {
    auto bm = Interface(5, 1, "a", 1, 0, 0x18);
    auto pu = Interface(5, 1, "a", 1, 0, 0x24);
    auto all = Interface(5, 1, "a", 1, 0, 0x3f);
    auto none = Interface(5, 1, "a", 1, 0, 0x40);
    EXPECT_EQ(DcInterfaceConsoleCommand::GetIfFlagsStr(&bm), "BM");
    EXPECT_EQ(DcInterfaceConsoleCommand::GetIfFlagsStr(&pu), "PU");
    EXPECT_EQ(DcInterfaceConsoleCommand::GetIfFlagsStr(&all), "TLPBMU");
    EXPECT_EQ(DcInterfaceConsoleCommand::GetIfFlagsStr(&none), "");
}

TEST_F(DcInterfaceConsoleCommandTest, FlagHelpText) {
    EXPECT_EQ(DcInterfaceConsoleCommand::GetIfFlagHelpStr(), kHelp);
}

TEST_F(DcInterfaceConsoleCommandTest, Ipv6ListingWalksTheIpv6InstanceAndPrintsPrefixTexts) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, true);
    ASSERT_TRUE(command->Parse(0, nullptr));
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_i3_ei(32773)"});
    auto eth = Interface(32773, 7, "eth1", 2, 9000, 0x24);
    Answer(SMS_RC_ROW, &eth);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(RecordingStack::Instance().Requests().back(), "sms_get_next_i3_ea(32773)");
    amb_stubs_i3_ea address;
    std::memset(&address, 0, sizeof(address));
    address.instance = 32773;
    address.if_index = 7;
    address.addr_type = SMS_ADDR_TYPE_IPV6;
    address.address[0] = 0x20;
    address.address[1] = 0x01;
    address.address[2] = 0x0d;
    address.address[3] = 0xb8;
    address.address[15] = 1;
    address.prefix_len = 64;
    Answer(SMS_RC_ROW, &address);
    Answer(SMS_RC_END_OF_TABLE);
    // The VLAN column shows the instance without the IPv6 bit.
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader +
                                    "   5          7       eth1   DOWN   9000     PU "
                                    "2001:db8::1/64\nEnd of Table\n");
}

TEST_F(DcInterfaceConsoleCommandTest, WordsAfterTheCommandNameAreIgnored) {
    std::string one = "bogus";
    std::string two = "words";
    char* argv[] = {&one[0], &two[0], nullptr};
    auto* command = new DcInterfaceConsoleCommand(&console, 9, false);
    EXPECT_TRUE(command->Parse(2, argv));
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_i3_ei(9)"});
    Answer(SMS_RC_END_OF_TABLE);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(DcInterfaceConsoleCommandTest, CommandWithoutVlanTakesTheDefaultVlan) {
    DcConsoleCommand::m_default_vlan = 21;
    auto* command = new DcInterfaceConsoleCommand(&console, false);
    EXPECT_EQ(command->GetVlan(), 21);
    EXPECT_FALSE(command->IsIpv6());
    ASSERT_TRUE(command->Parse(0, nullptr));
    EXPECT_EQ(command->GetInstance(), 21u);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_i3_ei(21)"});
    Answer(SMS_RC_END_OF_TABLE);
    Answer(SMS_RC_END_OF_TABLE);
}

TEST_F(DcInterfaceConsoleCommandTest, InterfacesPrintInAscendingIfIndexAndALaterRowReplaces) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    auto b = Interface(5, 20, "b", 1, 1500, 0);
    auto a = Interface(5, 10, "a", 1, 1500, 0);
    auto b2 = Interface(5, 20, "b2", 2, 576, 0x02);
    Answer(SMS_RC_ROW, &b);
    Answer(SMS_RC_ROW, &a);
    Answer(SMS_RC_ROW, &b2);
    Answer(SMS_RC_END_OF_TABLE);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader +
                                    "   5         10          a     UP   1500        \n"
                                    "   5         20         b2   DOWN    576      L \n"
                                    "End of Table\n");
}

TEST_F(DcInterfaceConsoleCommandTest, RowOfAGreaterInstanceEndsTheInterfaceWalk) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    auto lower = Interface(4, 1, "low", 1, 1500, 0);
    auto own = Interface(5, 2, "own", 1, 1500, 0);
    auto beyond = Interface(6, 3, "next", 1, 1500, 0);
    EXPECT_EQ(Answer(SMS_RC_ROW, &lower), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &own), 1);
    EXPECT_EQ(Answer(SMS_RC_ROW, &beyond), 0);  // 256: walk over, command kept
    EXPECT_EQ(RecordingStack::Instance().Requests().back(), "sms_get_next_i3_ea(5)");
    auto addressBeyond = Address4(6, 3, 9, 24);
    EXPECT_EQ(Answer(SMS_RC_ROW, &addressBeyond), 0);
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader +
                                    "   4          1        low     UP   1500        \n"
                                    "   5          2        own     UP   1500        \n"
                                    "End of Table\n");
}

TEST_F(DcInterfaceConsoleCommandTest, AddressOfAnUnseenInterfacePrintsWithAZeroInterfaceRow) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    Answer(SMS_RC_END_OF_TABLE);
    auto address = Address4(5, 42, 7, 24);
    Answer(SMS_RC_ROW, &address);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(console.Output(), "\n" + kHelp + kHeader +
                                    "   0          0              DOWN      0        10.0.0.7/24\n"
                                    "End of Table\n");
}

TEST_F(DcInterfaceConsoleCommandTest, ErrorInTheInterfaceWalkPrintsItsWordAndNoTable) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    auto eth = Interface(5, 1, "eth0", 1, 1500, 0);
    Answer(SMS_RC_ROW, &eth);
    EXPECT_EQ(Answer(SMS_RC_WRONG_VALUE), 0);
    EXPECT_EQ(console.Output(), "");
    EXPECT_EQ(console.Errors(), "Wrong Value\n");
    EXPECT_EQ(console.EndCount(), 1);
    EXPECT_EQ(Walks(), 0u);
    EXPECT_EQ(RecordingStack::Instance().Requests(),
              std::vector<std::string>{"sms_get_next_i3_ei(5)"});
}

TEST_F(DcInterfaceConsoleCommandTest, ErrorInTheAddressWalkPrintsItsWordAndNoTable) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(Answer(SMS_RC_RESOURCE), 0);
    EXPECT_EQ(console.Output(), "");
    EXPECT_EQ(console.Errors(), "Resource Failure\n");
    EXPECT_EQ(Walks(), 0u);
}

TEST_F(DcInterfaceConsoleCommandTest, PassOverResponsesReachNeitherHandler) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    EXPECT_EQ(Answer(SMS_RC_PASS_OVER), 1);
    EXPECT_EQ(Walks(), 1u);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_EQ(Answer(SMS_RC_PASS_OVER), 1);
    EXPECT_EQ(Answer(SMS_RC_END_OF_TABLE), 0);
    EXPECT_EQ(console.EndCount(), 1);
}

TEST_F(DcInterfaceConsoleCommandTest, HandlerResultsKeepOrEndTheCommand) {
    DcInterfaceConsoleCommand command(&console, 5, false);
    ASSERT_TRUE(command.Parse(0, nullptr));
    auto eth = Interface(5, 1, "eth0", 1, 1500, 0);
    EXPECT_EQ(command.Display(0, SMS_RC_ROW, &eth), 1u);
    EXPECT_EQ(command.Display(0, SMS_RC_END_OF_TABLE, nullptr), 256u);
    RecordingStack::Instance().PendingWalks().clear();
    EXPECT_EQ(command.Display(0, SMS_RC_END_OF_TABLE, nullptr), 0u);
}

TEST_F(DcInterfaceConsoleCommandTest, UnterminatedNameFromTheStackIsPrintedWithinItsField) {
    auto* command = new DcInterfaceConsoleCommand(&console, 5, false);
    ASSERT_TRUE(command->Parse(0, nullptr));
    auto eth = Interface(5, 1, "x", 1, 1500, 0);
    std::memset(eth.if_name, 'n', sizeof(eth.if_name));
    Answer(SMS_RC_ROW, &eth);
    Answer(SMS_RC_END_OF_TABLE);
    Answer(SMS_RC_END_OF_TABLE);
    EXPECT_NE(console.Output().find(" " + std::string(64, 'n') + "     UP"), std::string::npos);
}

}  // namespace
}  // namespace Zavrel
