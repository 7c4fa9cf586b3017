// The interactive console in a real terminal: zavrel-router runs on a
// pseudo-terminal with readline, and the tests type keys and read the
// screen.
#include <sys/stat.h>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <json/json.h>

#include "PtySession.h"
#include "tests/app/TempDirTest.h"

namespace Zavrel::test {
namespace {

const char PROMPT[] = "zavrel-router[vlan 1]> ";

class ConsoleTest : public TempDirTest {
protected:
    // Starts the application on the virtual clock and waits for the prompt.
    void StartInteractive(PtySession& session) {
        ASSERT_TRUE(session.Start({"--virtual-time"}, m_dir)) << session.Error();
        ASSERT_TRUE(session.WaitFor(PROMPT)) << session.Take();
        EXPECT_EQ(session.Take(), PROMPT);
    }
    // Types keys and returns the screen output up to and with expected.
    static std::string Type(PtySession& session, const std::string& keys,
                            const std::string& expected) {
        EXPECT_TRUE(session.Send(keys));
        EXPECT_TRUE(session.WaitFor(expected)) << "waiting for '" << expected << "'";
        return session.Take();
    }
    // Ends the session with quit, expecting exit status 0.
    static void Quit(PtySession& session) {
        EXPECT_TRUE(session.Send("\x05\x15quit\r"));  // Ctrl-E, Ctrl-U: an empty line
        EXPECT_EQ(session.WaitForExit(), 0);
    }
    std::string HistoryPath() const { return m_dir + "/state/zavrel-router/history"; }
    static std::string Read(const std::string& path) {
        std::ifstream in(path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
    static std::string SiteVlans() {
        const char* source = getenv("ZAVREL_SOURCE_DIR");
        return std::string(source != nullptr ? source : ".") + "/examples/site-vlans.json";
    }
};

TEST_F(ConsoleTest, TabCompletesCommandWords) {
    PtySession session;
    StartInteractive(session);
    EXPECT_EQ(Type(session, "st\t", "stack "), "stack ");
    EXPECT_EQ(Type(session, "sta\t", "status "), "status ");
    EXPECT_EQ(Type(session, "\t", "json "), "json ");
    Quit(session);
}

TEST_F(ConsoleTest, SecondTabListsTheChoices) {
    PtySession session;
    StartInteractive(session);
    // The first Tab completes what the choices share, the next two list
    // them (the first of them finds nothing more to complete).
    EXPECT_EQ(Type(session, "inter\t", "interface"), "interface");
    EXPECT_EQ(Type(session, "\t\t", std::string(PROMPT) + "interface"),
              "\r\ninterface  interfaces  interfaces6\r\n" + std::string(PROMPT) + "interface");
    Quit(session);
}

TEST_F(ConsoleTest, QuestionMarkListsTheNextWordsAndKeepsTheLine) {
    PtySession session;
    StartInteractive(session);
    EXPECT_EQ(Type(session, "rtm route ", "rtm route "), "rtm route ");
    const std::string listing = Type(session, "?", std::string(PROMPT) + "rtm route ");
    EXPECT_EQ(listing,
              "\r\n"
              "  vrf     only this VLAN\r\n"
              "  dest    only this destination\r\n"
              "  proto   only this protocol\r\n"
              "  detail  every field\r\n"
              "  <cr>    run the command\r\n" +
                  std::string(PROMPT) + "rtm route ");
    Quit(session);
}

TEST_F(ConsoleTest, QuestionMarkInsideTheLineAnswersForTheWordsBeforeTheCursor) {
    PtySession session;
    StartInteractive(session);
    Type(session, "stack status", "status");
    // Back over "status" and two letters of "stack": '?' at "st|ack".
    const std::string back(9, '\x02');  // Ctrl-B
    const std::string line = std::string(PROMPT) + "stack status" + std::string(9, '\b');
    const std::string listing = Type(session, back + "?", line);
    EXPECT_EQ(listing.substr(listing.find('\r')),
              "\r\n  stack  inject failures into the routing stack, delay its answers, show its "
              "counters and tables, hand it routes learnt by a routing protocol\r\n" +
                  line);
    Quit(session);
}

TEST_F(ConsoleTest, QuestionMarkNamesAValueAndTheLibrarysWords) {
    PtySession session;
    StartInteractive(session);
    Type(session, "interface add ", "add ");
    EXPECT_EQ(Type(session, "?", std::string(PROMPT) + "interface add "),
              "\r\n  <vlan>  a VLAN, 1 to 4094\r\n" + std::string(PROMPT) + "interface add ");
    Type(session, "\x15ip ", "ip ");
    EXPECT_EQ(Type(session, "?", std::string(PROMPT) + "ip "),
              "\r\n"
              "  bgp       BGP4 Routing Configuration\r\n"
              "  igmp      IGMP Routing Configuration\r\n"
              "  ospf      OSPFv2 Routing Configuration\r\n"
              "  protocol  Routing Protocol Configuration\r\n"
              "  rip       RIPv2 Routing Configuration\r\n"
              "  <cr>      run the command\r\n" +
                  std::string(PROMPT) + "ip ");
    Quit(session);
}

TEST_F(ConsoleTest, HelpTakesACommandNameAndAQuotedWordKeepsItsQuestionMark) {
    PtySession session;
    StartInteractive(session);
    EXPECT_EQ(Type(session, "help ser\t", "serializer "), "help serializer ");
    EXPECT_EQ(Type(session, "\r", std::string(PROMPT)),
              "\r\nserializer ...\r\n"
              "    Debug traces from serializer type in metaswitch\r\n" +
                  std::string(PROMPT));
    EXPECT_EQ(Type(session, "load \"what?", "what?"), "load \"what?");
    Quit(session);
}

TEST_F(ConsoleTest, TabOffersTheVlansAndInterfacesThatExist) {
    PtySession session;
    StartInteractive(session);
    Type(session, "load " + SiteVlans() + "\r", PROMPT);
    Type(session, "interface add 10 100 eth0\r", PROMPT);
    Type(session, "interface up ", "up ");
    EXPECT_EQ(Type(session, "\t\t", std::string(PROMPT) + "interface up "),
              "\r\n<vlan>  10  20  30\r\n" + std::string(PROMPT) + "interface up ");
    EXPECT_EQ(Type(session, "2\t", "20 "), "20 ");
    Type(session, "100 ", "100 ");
    // One interface exists, but a name not announced yet may be meant:
    // Tab lists it, and completes it once a letter says which.
    EXPECT_EQ(Type(session, "\t\t", std::string(PROMPT) + "interface up 20 100 "),
              "\r\n<name>  eth0\r\n" + std::string(PROMPT) + "interface up 20 100 ");
    EXPECT_EQ(Type(session, "e\t", "eth0 "), "eth0 ");
    Quit(session);
}

TEST_F(ConsoleTest, WordsWithPunctuationCompleteAsAWhole) {
    PtySession session;
    StartInteractive(session);
    Type(session, "interface add 10 100 eth0@vlan10\r", PROMPT);
    Type(session, "interface up 10 100 ", "100 ");
    // '@' ends a word for readline's own completion, never here.
    EXPECT_EQ(Type(session, "eth0@v\t", "lan10 "), "eth0@vlan10 ");
    Quit(session);
}

TEST_F(ConsoleTest, HistoryIsKeptAcrossRuns) {
    {
        PtySession first;
        StartInteractive(first);
        Type(first, "vlan 20\r", "zavrel-router[vlan 20]> ");
        Quit(first);
    }
    EXPECT_EQ(Read(HistoryPath()), "vlan 20\nquit\n");
    PtySession second;
    StartInteractive(second);
    // Two steps back in the history: "vlan 20", run again.
    Type(second, "\x10", "quit");
    Type(second, "\x10", "vlan 20");
    EXPECT_NE(Type(second, "\r", "zavrel-router[vlan 20]> ").find("zavrel-router[vlan 20]> "),
              std::string::npos);
    Quit(second);
    EXPECT_EQ(Read(HistoryPath()), "vlan 20\nquit\nvlan 20\nquit\n");
}

TEST_F(ConsoleTest, CommandArgumentsWriteNoHistory) {
    PtySession session;
    ASSERT_TRUE(session.Start({"--virtual-time", "--no-stdin", "-c", "vlan 20"}, m_dir))
        << session.Error();
    EXPECT_EQ(session.WaitForExit(), 0);
    struct stat info;
    EXPECT_NE(stat(HistoryPath().c_str(), &info), 0);
}

TEST_F(ConsoleTest, StackStatusAndTablesJsonParse) {
    PtySession session;
    ASSERT_TRUE(session.Start({"--virtual-time", "--no-stdin", "-c", "load " + SiteVlans(), "-c",
                               "interface add 10 100 eth0", "-c",
                               "address add 10 100 192.168.10.1/24", "-c", "stack status json"},
                              m_dir))
        << session.Error();
    EXPECT_EQ(session.WaitForExit(), 0);
    Json::Value status;
    Json::CharReaderBuilder builder;
    std::string errors;
    std::istringstream statusText(session.Take());
    ASSERT_TRUE(Json::parseFromStream(builder, statusText, &status, &errors)) << errors;
    EXPECT_EQ(status["version"].asInt(), 1);
    EXPECT_EQ(status["stack"]["state"].asString(), "running");
    EXPECT_EQ(status["stack"]["interfaces"].asUInt64(), 2u);
    EXPECT_EQ(status["stack"]["addresses"].asUInt64(), 1u);
    EXPECT_EQ(status["eventLoop"]["stackDescriptors"].asUInt64(), 1u);

    PtySession tablesSession;
    ASSERT_TRUE(
        tablesSession.Start({"--virtual-time", "--no-stdin", "-c", "load " + SiteVlans(), "-c",
                             "interface add 10 100 eth0", "-c",
                             "address add 10 100 192.168.10.1/24", "-c", "stack tables json"},
                            m_dir))
        << tablesSession.Error();
    EXPECT_EQ(tablesSession.WaitForExit(), 0);
    Json::Value tables;
    std::istringstream tablesText(tablesSession.Take());
    ASSERT_TRUE(Json::parseFromStream(builder, tablesText, &tables, &errors)) << errors;
    EXPECT_EQ(tables["version"].asInt(), 1);
    ASSERT_EQ(tables["tables"]["addresses"].size(), 1u);
    EXPECT_EQ(tables["tables"]["addresses"][0]["address"].asString(), "192.168.10.1");
    EXPECT_EQ(tables["tables"]["addresses"][0]["prefixLength"].asUInt64(), 24u);
    EXPECT_EQ(tables["tables"]["interfaces"][0]["name"].asString(), "eth0");
    EXPECT_EQ(tables["tables"]["rtmInstances"].size(), 6u);
}

}  // namespace
}  // namespace Zavrel::test
