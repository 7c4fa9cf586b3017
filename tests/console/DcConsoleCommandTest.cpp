#include "console/DcConsoleCommand.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/Ip6Addr.h"
#include "stackapi/stackapi.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

// The stack is handed ResponseHandler as its walk callback.
static_assert(std::is_same<decltype(&DcConsoleCommand::ResponseHandler), sms_walk_callback>::value,
              "ResponseHandler must have the stack's walk callback type");

// A command with the option sequence vrf, dest (required when asked),
// note (a value option without action) and detail, and a scripted Display.
class ProbeCommand : public DcConsoleCommand {
public:
    ProbeCommand(DcConsole* console, bool* destroyed = nullptr)
        : DcConsoleCommand(console, "probe [vrf <vid>] [dest <d>] [detail]", "Probe"),
          m_destroyed(destroyed) {}
    ProbeCommand(DcConsole* console, unsigned short vlan)
        : DcConsoleCommand(console, vlan, "probe", "Probe"), m_destroyed(nullptr) {}
    ~ProbeCommand() override {
        if (m_destroyed != nullptr) {
            *m_destroyed = true;
        }
    }

    bool Parse(int argc, char** argv) override {
        static const ConsoleCommandValueOption dest("dest", false, &ProbeCommand::SetDest);
        static const ConsoleCommandValueOption note("note", false, nullptr);
        static const ConsoleCommandFlagOption detail("detail", &ProbeCommand::SetDetail);
        static const ConsoleCommandOption* const options[] = {&vlan_option, &dest, &note, &detail};
        if (!ParseOptions(options, 4, argc, argv)) {
            Print("Usage: %s\n", m_usage);
            return false;
        }
        return argc == 0;
    }

    unsigned int Display(unsigned int first, unsigned int code, const void* row) override {
        calls.push_back(std::to_string(first) + "/" + std::to_string(code) + "/" +
                        (row != nullptr ? static_cast<const char*>(row) : "null"));
        return result;
    }

    static bool SetDest(DcConsoleCommand& command, const char* value) {
        ProbeCommand& self = static_cast<ProbeCommand&>(command);
        if (strcmp(value, "bad") == 0) {
            return false;
        }
        self.dest = value;
        return true;
    }
    static bool SetDetail(DcConsoleCommand& command) {
        static_cast<ProbeCommand&>(command).detail = true;
        return false;  // the result is not looked at
    }

    unsigned short HeaderFlag() const { return m_header_printed; }
    using DcConsoleCommand::ParseOptions;

    std::vector<std::string> calls;
    unsigned int result = 1;
    std::string dest;
    bool detail = false;

private:
    bool* m_destroyed;
};

class DcConsoleCommandTest : public test::TestEnv {
protected:
    // Runs an option on the words and reports what is left.
    struct Outcome {
        bool result;
        int argc;
        std::string next;
    };
    Outcome Offer(const DcConsoleCommand::ConsoleCommandOption& option,
                  std::vector<std::string> words) {
        storage = std::move(words);
        pointers.clear();
        for (std::string& word : storage) {
            pointers.push_back(&word[0]);
        }
        pointers.push_back(nullptr);
        int argc = static_cast<int>(storage.size());
        char** argv = pointers.data();
        bool result = option.Parse(command, argc, argv);
        return {result, argc, argc > 0 ? argv[0] : ""};
    }
    bool ParseWords(ProbeCommand& target, std::vector<std::string> words) {
        storage = std::move(words);
        pointers.clear();
        for (std::string& word : storage) {
            pointers.push_back(&word[0]);
        }
        pointers.push_back(nullptr);
        return target.Parse(static_cast<int>(storage.size()), pointers.data());
    }

    ProbeCommand command{&console};
    std::vector<std::string> storage;
    std::vector<char*> pointers;
};

// The tables are filled on their first call in the process. That call is
// made here, while the program starts and before any test runs, with a
// stand-in word; the test below checks what it returned, in whatever order
// the tests run. The stand-in word has the same text, so later tests see
// "UNKN" either way; the checks are on which object is returned.
const char STAND_IN[] = "UNKN";

struct FirstCallOfTheProcess {
    FirstCallOfTheProcess() {
        const char* saved = DclUnknownStr;
        DclUnknownStr = STAND_IN;
        operStatusZero = DcConsoleCommand::OperStatusStr(0);
        yesNoZero = DcConsoleCommand::AmbBoolYesNoStr(0);
        DclUnknownStr = saved;
    }
    const char* operStatusZero;
    const char* yesNoZero;
};

const FirstCallOfTheProcess firstCall;

TEST(DcConsoleCommandUnknownWordTest, EntryForZeroIsTheUnknownWordOfTheFirstCall) {
    EXPECT_EQ(STAND_IN, firstCall.operStatusZero);
    EXPECT_EQ(STAND_IN, firstCall.yesNoZero);
    // Entry 0 keeps the word of the first call; values past the tables
    // follow the current word.
    EXPECT_NE(STAND_IN, DclUnknownStr);
    EXPECT_EQ(STAND_IN, DcConsoleCommand::OperStatusStr(0));
    EXPECT_EQ(STAND_IN, DcConsoleCommand::AmbBoolYesNoStr(0));
    EXPECT_EQ(DclUnknownStr, DcConsoleCommand::OperStatusStr(9));
    EXPECT_EQ(DclUnknownStr, DcConsoleCommand::AmbBoolYesNoStr(9));
}

TEST(DcConsoleCommandUnknownWordTest, EntryForZeroStaysFixedAfterTheFirstCallWhileOthersFollow) {
    const char* zero = DcConsoleCommand::OperStatusStr(0);
    const char* yesNoZero = DcConsoleCommand::AmbBoolYesNoStr(0);
    static const char replaced[] = "????";
    const char* saved = DclUnknownStr;
    DclUnknownStr = replaced;
    EXPECT_EQ(zero, DcConsoleCommand::OperStatusStr(0));
    EXPECT_EQ(yesNoZero, DcConsoleCommand::AmbBoolYesNoStr(0));
    EXPECT_STREQ("????", DcConsoleCommand::OperStatusStr(6));
    EXPECT_STREQ("????", DcConsoleCommand::AmbBoolYesNoStr(3));
    DclUnknownStr = saved;
}

// ---- construction

TEST_F(DcConsoleCommandTest, CommandWithoutVlanTakesTheDefaultVlan) {
    unsigned short saved = DcConsoleCommand::m_default_vlan;
    DcConsoleCommand::m_default_vlan = 42;
    ProbeCommand probe(&console);
    EXPECT_EQ(42, probe.GetVlan());
    EXPECT_EQ(0, probe.HeaderFlag());
    EXPECT_STREQ("Probe", probe.GetDescription());
    DcConsoleCommand::m_default_vlan = saved;
}

TEST_F(DcConsoleCommandTest, DefaultVlanStartsAtZero) {
    EXPECT_EQ(0, DcConsoleCommand::m_default_vlan);
}

TEST_F(DcConsoleCommandTest, CommandWithVlanKeepsIt) {
    ProbeCommand probe(&console, static_cast<unsigned short>(300));
    EXPECT_EQ(300, probe.GetVlan());
    EXPECT_EQ(0, probe.HeaderFlag());
    EXPECT_EQ(&console, probe.GetConsole());
}

TEST_F(DcConsoleCommandTest, BaseDisplayEndsTheCommand) {
    struct Bare : DcConsoleCommand {
        explicit Bare(DcConsole* c) : DcConsoleCommand(c, nullptr, nullptr) {}
        bool Parse(int, char**) override { return false; }
    } bare(&console);
    EXPECT_EQ(0u, bare.Display(0, 1, nullptr));
}

// ---- output

TEST_F(DcConsoleCommandTest, PrintGoesToTheConsole) {
    command.Print("a%db%s\n", 1, "c");
    EXPECT_EQ("a1bc\n", console.Output());
}

TEST_F(DcConsoleCommandTest, TableEndPrintsEndOfTableWithCapitalTAndEndsTheCommand) {
    command.TableEnd();
    EXPECT_EQ("End of Table\n", console.Output());
    EXPECT_EQ(1, console.EndCount());
}

TEST_F(DcConsoleCommandTest, CommandEndEndsTheCommandOnly) {
    command.CommandEnd();
    EXPECT_EQ("", console.All());
    EXPECT_EQ(1, console.EndCount());
}

TEST_F(DcConsoleCommandTest, ParseErrorOfAnUnknownCodePrintsNothingAndEndsTheCommand) {
    command.ParseError(1);
    command.ParseError(0);
    command.ParseError(11);
    command.ParseError(12);
    EXPECT_EQ("", console.All());
    EXPECT_EQ(4, console.EndCount());
}

TEST_F(DcConsoleCommandTest, ParseErrorOfEndOfTablePrintsTheSmallTSpelling) {
    command.ParseError(7);
    EXPECT_EQ("End of table\n", console.Errors());
    EXPECT_EQ("", console.Output());
    EXPECT_EQ(1, console.EndCount());
}

TEST_F(DcConsoleCommandTest, ParseErrorWordsOfEveryCode) {
    const char* expected[] = {"Gen Error\n",        "Wrong Value\n",         "Inconsistent Value\n",
                              "Resource Failure\n", "Family is not found\n", "End of table\n",
                              "Agent Error\n",      "Incomplete\n",          "Partial Family ok\n"};
    for (unsigned int code = 2; code <= 10; ++code) {
        console.Clear();
        command.ParseError(code);
        EXPECT_EQ(expected[code - 2], console.Errors()) << code;
        EXPECT_EQ(1, console.EndCount()) << code;
    }
}

// ---- VLAN

TEST_F(DcConsoleCommandTest, ParseVlanStoresTheNumber) {
    EXPECT_TRUE(command.ParseVlan("12"));
    EXPECT_EQ(12, command.GetVlan());
    EXPECT_TRUE(DcConsoleCommand::ParseVlan(command, "13"));
    EXPECT_EQ(13, command.GetVlan());
    EXPECT_EQ("", console.All());
}

TEST_F(DcConsoleCommandTest, BadVlanWordIsReportedAndKeepsTheVlan) {
    command.SetVlan(5);
    EXPECT_FALSE(command.ParseVlan("12x"));
    EXPECT_EQ("Invalid VLAN ID 12x\n", console.Output());
    EXPECT_EQ(5, command.GetVlan());
}

TEST_F(DcConsoleCommandTest, VlanOptionIsAnOptionalVrfValue) {
    EXPECT_STREQ("vrf", DcConsoleCommand::vlan_option.keyword);
    EXPECT_FALSE(DcConsoleCommand::vlan_option.required);
    Outcome outcome = Offer(DcConsoleCommand::vlan_option, {"vrf", "12", "detail"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("detail", outcome.next);
    EXPECT_EQ(12, command.GetVlan());
}

TEST_F(DcConsoleCommandTest, VlanOptionWithBadNumberFailsAndLeavesTheValue) {
    Outcome outcome = Offer(DcConsoleCommand::vlan_option, {"V", "abc"});
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("abc", outcome.next);
    EXPECT_EQ("Invalid VLAN ID abc\n", console.Output());
}

// ---- options

TEST_F(DcConsoleCommandTest, FlagOptionMatchesPrefixesInAnyCaseAndTheEmptyWord) {
    DcConsoleCommand::ConsoleCommandFlagOption detail("detail", nullptr);
    EXPECT_TRUE(detail.Matches("det"));
    EXPECT_TRUE(detail.Matches("DETAIL"));
    EXPECT_TRUE(detail.Matches("d"));
    EXPECT_TRUE(detail.Matches(""));
    EXPECT_FALSE(detail.Matches("details"));
    EXPECT_FALSE(detail.Matches("x"));
}

TEST_F(DcConsoleCommandTest, FlagOptionConsumesAMatchingWordAndCallsItsAction) {
    DcConsoleCommand::ConsoleCommandFlagOption detail("detail", &ProbeCommand::SetDetail);
    Outcome outcome = Offer(detail, {"DET", "more"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("more", outcome.next);
    EXPECT_TRUE(command.detail);
}

TEST_F(DcConsoleCommandTest, FlagOptionLeavesAWordThatDoesNotMatch) {
    DcConsoleCommand::ConsoleCommandFlagOption detail("detail", &ProbeCommand::SetDetail);
    Outcome outcome = Offer(detail, {"details"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_FALSE(command.detail);
    EXPECT_TRUE(Offer(detail, {}).result);
}

TEST_F(DcConsoleCommandTest, FlagOptionWithoutActionOnlyConsumes) {
    DcConsoleCommand::ConsoleCommandFlagOption detail("detail", nullptr);
    Outcome outcome = Offer(detail, {"detail"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(0, outcome.argc);
}

TEST_F(DcConsoleCommandTest, ValueOptionAsTheLastWordFailsForMissingValue) {
    DcConsoleCommand::ConsoleCommandValueOption dest("dest", false, &ProbeCommand::SetDest);
    Outcome outcome = Offer(dest, {"dest"});
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(0, outcome.argc);
}

TEST_F(DcConsoleCommandTest, AbsentOptionalValueOptionSucceedsWithoutConsuming) {
    DcConsoleCommand::ConsoleCommandValueOption dest("dest", false, &ProbeCommand::SetDest);
    Outcome outcome = Offer(dest, {"proto", "x"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(2, outcome.argc);
    EXPECT_TRUE(Offer(dest, {}).result);
}

TEST_F(DcConsoleCommandTest, AbsentRequiredValueOptionFails) {
    DcConsoleCommand::ConsoleCommandValueOption dest("dest", true, &ProbeCommand::SetDest);
    EXPECT_FALSE(Offer(dest, {"proto", "x"}).result);
    EXPECT_FALSE(Offer(dest, {}).result);
}

TEST_F(DcConsoleCommandTest, ValueOptionConsumesKeywordAndValue) {
    DcConsoleCommand::ConsoleCommandValueOption dest("dest", true, &ProbeCommand::SetDest);
    Outcome outcome = Offer(dest, {"De", "10.0.0.0", "next"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("next", outcome.next);
    EXPECT_EQ("10.0.0.0", command.dest);
}

TEST_F(DcConsoleCommandTest, ValueOptionWhoseActionFailsLeavesTheValueUnconsumed) {
    DcConsoleCommand::ConsoleCommandValueOption dest("dest", false, &ProbeCommand::SetDest);
    Outcome outcome = Offer(dest, {"dest", "bad"});
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("bad", outcome.next);
}

TEST_F(DcConsoleCommandTest, ValueOptionWithoutActionLeavesTheValueForTheNextOption) {
    DcConsoleCommand::ConsoleCommandValueOption note("note", false, nullptr);
    Outcome outcome = Offer(note, {"note", "text"});
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(1, outcome.argc);
    EXPECT_EQ("text", outcome.next);
}

TEST_F(DcConsoleCommandTest, OptionsAreAcceptedInTheirOrderOnly) {
    ProbeCommand probe(&console);
    EXPECT_TRUE(ParseWords(probe, {"vrf", "12", "dest", "x", "det"}));
    EXPECT_EQ(12, probe.GetVlan());
    EXPECT_EQ("x", probe.dest);
    EXPECT_TRUE(probe.detail);

    ProbeCommand reversed(&console);
    EXPECT_FALSE(ParseWords(reversed, {"det", "vrf", "12"}));
    EXPECT_EQ("", console.Output());
}

TEST_F(DcConsoleCommandTest, FailingOptionPrintsTheUsage) {
    ProbeCommand probe(&console);
    EXPECT_FALSE(ParseWords(probe, {"vrf", "x"}));
    EXPECT_EQ("Invalid VLAN ID x\nUsage: probe [vrf <vid>] [dest <d>] [detail]\n",
              console.Output());
}

// ---- walk

TEST_F(DcConsoleCommandTest, PassOverResponseReachesNoDisplayAndKeepsTheCommand) {
    bool destroyed = false;
    ProbeCommand* probe = new ProbeCommand(&console, &destroyed);
    EXPECT_EQ(1, DcConsoleCommand::ResponseHandler(probe, 3, 12, nullptr));
    EXPECT_TRUE(probe->calls.empty());
    EXPECT_FALSE(destroyed);
    delete probe;
}

TEST_F(DcConsoleCommandTest, ResponseHandlerPassesTheResponseToDisplay) {
    bool destroyed = false;
    ProbeCommand* probe = new ProbeCommand(&console, &destroyed);
    char row[] = "row";
    EXPECT_EQ(1, DcConsoleCommand::ResponseHandler(probe, 3, 1, row));
    EXPECT_EQ(std::vector<std::string>({"3/1/row"}), probe->calls);
    EXPECT_FALSE(destroyed);
    delete probe;
}

TEST_F(DcConsoleCommandTest, DisplayReturningZeroDeletesTheCommand) {
    bool destroyed = false;
    ProbeCommand* probe = new ProbeCommand(&console, &destroyed);
    probe->result = 0;
    EXPECT_EQ(0, DcConsoleCommand::ResponseHandler(probe, 0, 7, nullptr));
    EXPECT_TRUE(destroyed);
}

TEST_F(DcConsoleCommandTest, DisplayReturning256StopsTheWalkButKeepsTheCommand) {
    bool destroyed = false;
    ProbeCommand* probe = new ProbeCommand(&console, &destroyed);
    probe->result = 256;
    EXPECT_EQ(0, DcConsoleCommand::ResponseHandler(probe, 0, 7, nullptr));
    EXPECT_FALSE(destroyed);
    probe->result = 0x1ff;
    EXPECT_EQ(0xff, DcConsoleCommand::ResponseHandler(probe, 0, 1, nullptr));
    EXPECT_FALSE(destroyed);
    delete probe;
}

// ---- formatters

TEST_F(DcConsoleCommandTest, Ip4PrefixText) {
    const unsigned char bytes[4] = {10, 1, 0, 0};
    EXPECT_STREQ("10.1.0.0/16", DcConsoleCommand::ToIp4PrefixStr(bytes, 16));
    const unsigned char widest[4] = {255, 255, 255, 255};
    EXPECT_STREQ("255.255.255.255/32", DcConsoleCommand::ToIp4PrefixStr(widest, 32));
}

TEST_F(DcConsoleCommandTest, Ip4AddressTextUsesOneStaticBuffer) {
    const unsigned char a[4] = {10, 0, 0, 1};
    const unsigned char b[4] = {172, 16, 5, 4};
    const char* first = DcConsoleCommand::DcIp4ToIp4Str(a);
    EXPECT_STREQ("10.0.0.1", first);
    const char* second = DcConsoleCommand::DcIp4ToIp4Str(b);
    EXPECT_EQ(first, second);
    EXPECT_STREQ("172.16.5.4", first);
}

TEST_F(DcConsoleCommandTest, Ip6TextAndPrefixText) {
    const unsigned char bytes[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_STREQ("2001:db8::", DcConsoleCommand::ToIp6Str(bytes));
    EXPECT_STREQ("2001:db8::/32", DcConsoleCommand::ToIp6PrefixStr(bytes, 32));
}

TEST_F(DcConsoleCommandTest, Ip6PrefixTextOverwritesTheIp6TextBuffer) {
    const unsigned char a[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
    const unsigned char b[16] = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2};
    const char* text = DcConsoleCommand::ToIp6Str(a);
    EXPECT_STREQ("fe80::1", text);
    DcConsoleCommand::ToIp6PrefixStr(b, 64);
    EXPECT_STREQ("fe80::2", text);
}

TEST_F(DcConsoleCommandTest, LongestIp6PrefixTextFits) {
    unsigned char bytes[16];
    memset(bytes, 0xff, sizeof(bytes));
    std::string expected = Ip6Addr(bytes).ToString().str() + "/128";
    EXPECT_EQ(expected, DcConsoleCommand::ToIp6PrefixStr(bytes, 128));
}

TEST_F(DcConsoleCommandTest, IsEqualComparesTheBytesWithTheAddress) {
    const unsigned char bytes[4] = {10, 0, 0, 0};
    EXPECT_TRUE(DcConsoleCommand::IsEqual(Ip4Addr(10, 0, 0, 0), bytes));
    EXPECT_FALSE(DcConsoleCommand::IsEqual(Ip4Addr(10, 0, 0, 1), bytes));
}

TEST_F(DcConsoleCommandTest, TimerIntervalsBelowADayShowHoursMinutesSeconds) {
    EXPECT_EQ(string("00:00:00"), DcConsoleCommand::DclTimerIntervalString(0));
    EXPECT_EQ(string("23:59:59"), DcConsoleCommand::DclTimerIntervalString(86399));
    EXPECT_EQ(string("01:01:01"), DcConsoleCommand::DclTimerIntervalString(3661));
}

TEST_F(DcConsoleCommandTest, TimerIntervalsOfADayOrMoreShowOnlyWeeksAndDays) {
    EXPECT_EQ(string("1d"), DcConsoleCommand::DclTimerIntervalString(86400));
    EXPECT_EQ(string("1d"), DcConsoleCommand::DclTimerIntervalString(90061));
    EXPECT_EQ(string("1w"), DcConsoleCommand::DclTimerIntervalString(604800));
    EXPECT_EQ(string("1w1d"), DcConsoleCommand::DclTimerIntervalString(694861));
    EXPECT_EQ(string("2w3d"), DcConsoleCommand::DclTimerIntervalString(2 * 604800 + 3 * 86400));
}

TEST_F(DcConsoleCommandTest, OperStatusWords) {
    EXPECT_STREQ("Up", DcConsoleCommand::OperStatusStr(1));
    for (int status = 2; status <= 5; ++status) {
        EXPECT_STREQ("Down", DcConsoleCommand::OperStatusStr(status)) << status;
    }
    EXPECT_STREQ("UNKN", DcConsoleCommand::OperStatusStr(0));
    EXPECT_STREQ("UNKN", DcConsoleCommand::OperStatusStr(6));
    EXPECT_STREQ("UNKN", DcConsoleCommand::OperStatusStr(100));
}

TEST_F(DcConsoleCommandTest, YesNoWords) {
    EXPECT_STREQ("Yes", DcConsoleCommand::AmbBoolYesNoStr(1));
    EXPECT_STREQ("No", DcConsoleCommand::AmbBoolYesNoStr(2));
    EXPECT_STREQ("UNKN", DcConsoleCommand::AmbBoolYesNoStr(0));
    EXPECT_STREQ("UNKN", DcConsoleCommand::AmbBoolYesNoStr(3));
}

TEST_F(DcConsoleCommandTest, AddressFromStringByFamily) {
    DclIpAddress address(nullptr, 0);
    EXPECT_TRUE(DcConsoleCommand::DclAddrFromString(1, address, "10.0.0.1"));
    EXPECT_EQ(4u, address.Length());
    EXPECT_FALSE(DcConsoleCommand::DclAddrFromString(1, address, "2001:db8::1"));
    EXPECT_TRUE(DcConsoleCommand::DclAddrFromString(2, address, "2001:db8::1"));
    EXPECT_EQ(16u, address.Length());
    EXPECT_TRUE(DcConsoleCommand::DclAddrFromString(41, address, "::1"));
    EXPECT_FALSE(DcConsoleCommand::DclAddrFromString(0, address, "10.0.0.1"));
    EXPECT_EQ(string("::1"), address.ToString());
}

// ---- hex dump

const unsigned char LETTERS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";

std::string HexOf(int from, int to) {
    std::string text;
    char buffer[8];
    for (int i = from; i < to; ++i) {
        snprintf(buffer, sizeof(buffer), "%02x ", LETTERS[i]);
        text += buffer;
    }
    return text;
}

TEST_F(DcConsoleCommandTest, HexDumpOfTwentyBytesShowsBytesFourToSevenOnItsShortLine) {
    command.HexDump(LETTERS, 20, 16);
    EXPECT_EQ(HexOf(0, 16) + "ABCDEFGHIJKLMNOP\n" + HexOf(16, 20) + std::string(36, ' ') + "EFGH\n",
              console.Output());
}

TEST_F(DcConsoleCommandTest, HexDumpOfWholeLinesShowsTheSameBytesInBothColumns) {
    command.HexDump(LETTERS, 32, 16);
    EXPECT_EQ(HexOf(0, 16) + "ABCDEFGHIJKLMNOP\n" + HexOf(16, 32) + "QRSTUVWXYZ012345\n",
              console.Output());
    console.Clear();
    command.HexDump(LETTERS, 8, 8);
    EXPECT_EQ(HexOf(0, 8) + "ABCDEFGH\n", console.Output());
}

TEST_F(DcConsoleCommandTest, HexDumpShorterThanOneLineNeverReadsBeforeTheData) {
    command.HexDump(LETTERS + 10, 4, 16);
    EXPECT_EQ(HexOf(10, 14) + std::string(36, ' ') + "\n", console.Output());
}

TEST_F(DcConsoleCommandTest, HexDumpShortLineReadsOnlyTheBytesThatExist) {
    // 10 bytes, width 8: the short line of 2 bytes starts its character
    // column 8 bytes back from its end, at bytes 2 and 3.
    command.HexDump(LETTERS, 10, 8);
    EXPECT_EQ(HexOf(0, 8) + "ABCDEFGH\n" + HexOf(8, 10) + std::string(18, ' ') + "CD\n",
              console.Output());
}

TEST_F(DcConsoleCommandTest, HexDumpOfZeroLengthOrWidthPrintsNothing) {
    command.HexDump(LETTERS, 0, 16);
    command.HexDump(LETTERS, 10, 0);
    EXPECT_EQ("", console.All());
}

TEST_F(DcConsoleCommandTest, HexDumpLineOfAFullLineMovesToTheNextLine) {
    const unsigned char* cursor = LETTERS;
    command.HexDumpLine(cursor, 4, 4);
    EXPECT_EQ(LETTERS + 4, cursor);
    EXPECT_EQ(HexOf(0, 4) + "ABCD\n", console.Output());
}

TEST_F(DcConsoleCommandTest, StandaloneShortHexDumpLineReadsNothingBeforeTheLine) {
    const unsigned char* cursor = LETTERS + 8;
    command.HexDumpLine(cursor, 2, 4);
    EXPECT_EQ(HexOf(8, 10) + std::string(6, ' ') + "\n", console.Output());
    EXPECT_EQ(LETTERS + 8, cursor);
}

TEST_F(DcConsoleCommandTest, HexDumpLineWithALowerBoundReadsBackToIt) {
    const unsigned char* cursor = LETTERS + 8;
    command.HexDumpLine(cursor, 2, 4, LETTERS);
    EXPECT_EQ(HexOf(8, 10) + std::string(6, ' ') + "GH\n", console.Output());
    EXPECT_EQ(LETTERS + 8, cursor);
}

}  // namespace
}  // namespace Zavrel
