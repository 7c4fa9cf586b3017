#include "app/CommandGrammar.h"

#include "app/CommandInterpreter.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class CommandGrammarTest : public TestEnv {
protected:
    static std::vector<std::string> WordsOf(const CommandGrammar::Next& next) {
        std::vector<std::string> words;
        for (const GrammarChoice& choice : next.choices) {
            words.push_back(choice.word);
        }
        return words;
    }

    CommandGrammar grammar;
};

TEST_F(CommandGrammarTest, FirstWordsComeFromEveryForm) {
    ASSERT_TRUE(grammar.AddForm("route add <vlan> <prefix>/<length> via <gateway>", "routes"));
    ASSERT_TRUE(grammar.AddForm("route remove|enable <vlan>", "routes"));
    ASSERT_TRUE(grammar.AddForm("vlan [<vid>]", "the VLAN"));
    const CommandGrammar::Next next = grammar.After({});
    EXPECT_EQ(WordsOf(next), (std::vector<std::string>{"route", "vlan"}));
    EXPECT_FALSE(next.canEnd);
    EXPECT_EQ(next.choices[0].help, "routes");
}

TEST_F(CommandGrammarTest, KeywordsMatchInAnyCaseAndValuesMatchAnything) {
    ASSERT_TRUE(grammar.AddForm("route add <vlan> <prefix>/<length> via <gateway>", "routes"));
    ASSERT_TRUE(grammar.AddForm("route remove|enable <vlan>", "routes"));
    EXPECT_EQ(WordsOf(grammar.After({"ROUTE"})),
              (std::vector<std::string>{"add", "remove", "enable"}));
    EXPECT_EQ(WordsOf(grammar.After({"route", "add"})), (std::vector<std::string>{"<vlan>"}));
    EXPECT_EQ(WordsOf(grammar.After({"route", "add", "10", "10.0.0.0/8"})),
              (std::vector<std::string>{"via"}));
    const CommandGrammar::Next end = grammar.After({"route", "Remove", "10"});
    EXPECT_TRUE(end.choices.empty());
    EXPECT_TRUE(end.canEnd);
    EXPECT_TRUE(grammar.After({"route", "bogus"}).choices.empty());
    EXPECT_FALSE(grammar.After({"route", "bogus"}).canEnd);
}

TEST_F(CommandGrammarTest, OptionalGroupsComeOnceInAnyOrder) {
    ASSERT_TRUE(grammar.AddForm("join <vlan> [ifindex <n>] [metric <n>] [admin up|down]", "x"));
    const CommandGrammar::Next all = grammar.After({"join", "10"});
    EXPECT_TRUE(all.canEnd);
    EXPECT_EQ(WordsOf(all), (std::vector<std::string>{"ifindex", "metric", "admin"}));
    EXPECT_EQ(WordsOf(grammar.After({"join", "10", "metric"})), (std::vector<std::string>{"<n>"}));
    EXPECT_FALSE(grammar.After({"join", "10", "metric"}).canEnd);
    EXPECT_EQ(WordsOf(grammar.After({"join", "10", "metric", "3"})),
              (std::vector<std::string>{"ifindex", "admin"}));
    EXPECT_EQ(WordsOf(grammar.After({"join", "10", "admin"})),
              (std::vector<std::string>{"up", "down"}));
    // A group already given does not fit a second time.
    EXPECT_FALSE(grammar.After({"join", "10", "metric", "3", "metric"}).canEnd);
    EXPECT_TRUE(grammar.After({"join", "10", "metric", "3", "metric"}).choices.empty());
}

TEST_F(CommandGrammarTest, OpenFormsTakeAnyFurtherWords) {
    ASSERT_TRUE(grammar.AddForm("serializer ...", "the serializer"));
    const CommandGrammar::Next next = grammar.After({"serializer", "debug", "3"});
    EXPECT_TRUE(next.canEnd);
    EXPECT_TRUE(next.anyWords);
    EXPECT_TRUE(next.choices.empty());
}

TEST_F(CommandGrammarTest, RejectsEmptyFormsAndOpenGroups) {
    EXPECT_FALSE(grammar.AddForm("", "x"));
    EXPECT_FALSE(grammar.AddForm("[only optional]", "x"));
    EXPECT_FALSE(grammar.AddForm("route add [metric <n>", "x"));
    EXPECT_EQ(grammar.FormCount(), 0u);
}

TEST_F(CommandGrammarTest, WordHelpOfTheCommandComesBeforeGeneralHelp) {
    ASSERT_TRUE(grammar.AddForm("stack status", "the stack"));
    ASSERT_TRUE(grammar.AddForm("interface up <vlan>", "interfaces"));
    grammar.AddWordHelp("", "up", "oper status up");
    grammar.AddWordHelp("stack", "status", "the stack's counters");
    grammar.AddWordHelp("", "<vlan>", "a VLAN, 1 to 4094");
    EXPECT_EQ(grammar.After({"stack"}).choices[0].help, "the stack's counters");
    EXPECT_EQ(grammar.After({"interface"}).choices[0].help, "oper status up");
    EXPECT_EQ(grammar.After({"interface", "up"}).choices[0].help, "a VLAN, 1 to 4094");
    EXPECT_TRUE(grammar.After({"interface", "up"}).choices[0].IsValue());
}

TEST_F(CommandGrammarTest, TheApplicationsCommandsDescribeThemselves) {
    CommandInterpreter::DescribeCommands(grammar);
    const std::vector<std::string> first = WordsOf(grammar.After({}));
    for (const char* name : {"load", "interface", "route", "stack", "ip", "rtm6", "help", "quit"}) {
        EXPECT_NE(std::find(first.begin(), first.end(), name), first.end()) << name;
    }
    EXPECT_EQ(WordsOf(grammar.After({"stack"})),
              (std::vector<std::string>{"fail", "delay", "status", "tables", "learn", "withdraw"}));
    const CommandGrammar::Next status = grammar.After({"stack", "status"});
    EXPECT_EQ(WordsOf(status), (std::vector<std::string>{"json"}));
    EXPECT_TRUE(status.canEnd);
    EXPECT_EQ(WordsOf(grammar.After({"stack", "learn", "10"})),
              (std::vector<std::string>{"rip", "ospf", "ospf-external", "ebgp", "ibgp"}));
    EXPECT_EQ(WordsOf(grammar.After({"rtm", "rib"})),
              (std::vector<std::string>{"vrf", "dest", "proto", "detail"}));
    EXPECT_EQ(grammar.After({"rtm", "rib"}).choices[0].help, "only this VLAN");
    // ip's words are the library's: the application names none of them.
    const CommandGrammar::Next ip = grammar.After({"ip"});
    EXPECT_TRUE(ip.choices.empty());
    EXPECT_TRUE(ip.anyWords);
}

std::string Sample(const std::string& placeholder) {
    return placeholder == "<vlan>" ? "10" : "1";
}

TEST_F(CommandGrammarTest, ExamplesUseEveryWordOnce) {
    ASSERT_TRUE(grammar.AddForm("route add|del <vlan> [metric <n>] [admin up|down]", "x"));
    ASSERT_TRUE(grammar.AddForm("serializer ...", "x"));
    const std::vector<std::vector<std::string>> expected = {
        {"route", "add", "10"},
        {"route", "del", "10"},
        {"route", "add", "10", "metric", "1", "admin", "up"},
        {"route", "del", "10", "metric", "1", "admin", "up"},
        {"route", "add", "10", "metric", "1", "admin", "down"},
        {"serializer"},
    };
    EXPECT_EQ(grammar.Examples(&Sample), expected);
}

}  // namespace
}  // namespace Zavrel::test
