#include "app/LibraryGrammar.h"

#include "platform/ConsoleCommand.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class LibraryGrammarTest : public TestEnv {};

TEST_F(LibraryGrammarTest, AHandlerWordTakesTheFirstLineOfItsHelp) {
    CommandGrammar grammar;
    LibraryGrammar::DescribeHandler(grammar, "ip", "bgp", "  BGP4 Routing Configuration\nmore");
    const CommandGrammar::Next next = grammar.After({"ip"});
    ASSERT_EQ(next.choices.size(), 1u);
    EXPECT_EQ(next.choices[0].word, "bgp");
    EXPECT_EQ(next.choices[0].help, "BGP4 Routing Configuration");
    // The handler's own words are its business: any of them fits.
    const CommandGrammar::Next after = grammar.After({"ip", "BGP", "neighbors", "detail"});
    EXPECT_TRUE(after.canEnd);
    EXPECT_TRUE(after.anyWords);
    EXPECT_TRUE(after.choices.empty());
}

TEST_F(LibraryGrammarTest, RegisteredConsoleCommandsAreFirstWords) {
    int owner = 0;
    ASSERT_TRUE(ConsoleCommand::RegisterHandler(
        CONSOLE_ROLE_EVERYONE, [](ConsoleSession*, int, char**) { return 0; }, &owner, "mibdump",
        "Dump the MIB rows"));
    CommandGrammar grammar;
    LibraryGrammar::Describe(grammar);
    ConsoleCommand::Unregister("mibdump", &owner);
    bool found = false;
    for (const GrammarChoice& choice : grammar.After({}).choices) {
        if (choice.word == "mibdump") {
            found = true;
            EXPECT_EQ(choice.help, "Dump the MIB rows");
        }
    }
    EXPECT_TRUE(found);
    EXPECT_TRUE(grammar.After({"mibdump", "all"}).canEnd);
}

}  // namespace
}  // namespace Zavrel::test
