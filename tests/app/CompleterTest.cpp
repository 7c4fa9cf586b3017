#include "app/Completer.h"

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class CompleterTest : public TestEnv {
protected:
    static void Grammar(CommandGrammar& grammar) {
        grammar.AddForm("interface add <vlan> <ifindex> <name> [up|down]", "announce interfaces");
        grammar.AddForm("interface remove <vlan> <ifindex> <name>", "announce interfaces");
        grammar.AddForm("interfaces [<vid>]", "list interfaces");
        grammar.AddForm("serializer ...", "the serializer");
        grammar.AddWordHelp("interface", "add", "announce an interface");
        grammar.AddWordHelp("interface", "remove", "remove an interface");
        grammar.AddWordHelp("", "<vlan>", "a VLAN, 1 to 4094");
        grammar.AddWordHelp("", "<vid>", "a VLAN, 1 to 4094");
        grammar.AddWordHelp("", "<name>", "an interface name");
    }
    static std::vector<std::string> Values(const std::string& placeholder) {
        if (placeholder == "<vlan>" || placeholder == "<vid>") {
            return {"10", "20"};
        }
        if (placeholder == "<name>") {
            return {"eth0", "eth1", "lan"};
        }
        return {};
    }

    Completer completer{&CompleterTest::Grammar, &CompleterTest::Values};
};

TEST_F(CompleterTest, CompletesKeywordsThatStartWithTheWord) {
    const Completer::Candidates candidates = completer.Complete("inter");
    EXPECT_EQ(candidates.words, (std::vector<std::string>{"interface", "interfaces"}));
    EXPECT_FALSE(candidates.placeholder);
    EXPECT_EQ(completer.Complete("INTERFACE R").words, (std::vector<std::string>{"remove"}));
    EXPECT_TRUE(completer.Complete("nothing").words.empty());
}

TEST_F(CompleterTest, OffersExistingValuesAndNamesThePlaceholder) {
    const Completer::Candidates vlans = completer.Complete("interface add ");
    EXPECT_EQ(vlans.words, (std::vector<std::string>{"10", "20"}));
    EXPECT_TRUE(vlans.placeholder);
    EXPECT_EQ(Completer::Listing(vlans.listing), "<vlan>  10  20\n");
    EXPECT_EQ(completer.Complete("interface add 10 100 et").words,
              (std::vector<std::string>{"eth0", "eth1"}));
    const Completer::Candidates index = completer.Complete("interface add 10 ");
    EXPECT_TRUE(index.words.empty());
    EXPECT_EQ(Completer::Listing(index.listing), "<ifindex>\n");
}

TEST_F(CompleterTest, HelpListsTheNextWordsWithTheirHelp) {
    EXPECT_EQ(completer.Help("interface "),
              "  add     announce an interface\n"
              "  remove  remove an interface\n");
    EXPECT_EQ(completer.Help("interface a"), "  add  announce an interface\n");
    EXPECT_EQ(completer.Help("interfaces "),
              "  <vid>  a VLAN, 1 to 4094\n"
              "  <cr>   run the command\n");
    EXPECT_EQ(completer.Help("interface add 10 100 eth0 "),
              "  up    announce interfaces\n"
              "  down  announce interfaces\n"
              "  <cr>  run the command\n");
    EXPECT_EQ(completer.Help("serializer "),
              "  <cr>  run the command\n"
              "  ...   the command's own words\n");
    EXPECT_EQ(completer.Help("bogus "), "% no command fits here\n");
    EXPECT_EQ(completer.Help("load \"x"), "");
}

TEST_F(CompleterTest, ListingWrapsAtTheWidth) {
    const std::vector<GrammarChoice> choices = {
        {"interface", ""}, {"interfaces", ""}, {"interfaces6", ""}, {"ip", ""}};
    EXPECT_EQ(Completer::Listing(choices, 80), "interface  interfaces  interfaces6  ip\n");
    EXPECT_EQ(Completer::Listing(choices, 23), "interface  interfaces\ninterfaces6  ip\n");
    EXPECT_EQ(Completer::Listing(choices, 5), "interface\ninterfaces\ninterfaces6\nip\n");
    EXPECT_EQ(Completer::Listing({}, 80), "\n");
}

}  // namespace
}  // namespace Zavrel::test
