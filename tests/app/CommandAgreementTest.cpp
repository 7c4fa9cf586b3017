// The application's commands take every word their grammar offers: each
// form of each command, spelt out with every alternative and every optional
// group, runs through zavrel-router without a complaint about its words.
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "PtySession.h"
#include "app/CommandInterpreter.h"
#include "tests/app/TempDirTest.h"

namespace Zavrel::test {
namespace {

std::string SourceDir() {
    const char* source = getenv("ZAVREL_SOURCE_DIR");
    return source != nullptr ? source : ".";
}

// A good value for each placeholder of the application's usage lines.
std::string Sample(const std::string& placeholder) {
    static const std::map<std::string, std::string> samples = {
        {"<file>", SourceDir() + "/examples/site-vlans.json"},
        {"<source>", "site-vlans.json"},
        {"<name>", "eth0"},
        {"<ifname>", "eth0"},
        {"<n>", "1"},
        {"<vlan>", "10"},
        {"<vid>", "10"},
        {"<ifindex>", "100"},
        {"<address>/<length>", "192.168.10.1/24"},
        {"<prefix>/<length>", "10.1.0.0/16"},
        {"<gateway>", "192.168.10.254"},
        {"<address>", "192.168.10.1"},
        {"<protocol>", "rip"},
        {"<flag>", "0"},
        {"<ms>", "10"},
        {"<count>", "1"},
        {"<code>", "5"},
        {"<runs>", "1"},
        {"<command>", "route"},
    };
    const auto found = samples.find(placeholder);
    return found != samples.end() ? found->second : "<no sample for " + placeholder + ">";
}

class CommandAgreementTest : public TempDirTest {};

TEST_F(CommandAgreementTest, EveryWordOfTheGrammarIsTaken) {
    CommandGrammar grammar;
    CommandInterpreter::DescribeCommands(grammar);
    std::string script;
    size_t count = 0;
    for (const std::vector<std::string>& words : grammar.Examples(&Sample)) {
        if (words[0] == "quit") {
            continue;  // ends the run; it is the last line below
        }
        std::string line;
        for (const std::string& word : words) {
            // rtm6 filters on IPv6 destinations.
            const bool ipv6 = words[0] == "rtm6" && word == Sample("<address>");
            line += (line.empty() ? "" : " ") + (ipv6 ? std::string("2001:db8::1") : word);
        }
        script += line + "\n";
        ++count;
    }
    script += "quit\n";
    EXPECT_GT(count, 40u);
    const std::string path = m_dir + "/every-word.script";
    {
        std::ofstream out(path);
        out << script;
    }
    PtySession session;
    ASSERT_TRUE(session.Start({"--virtual-time", "--no-stdin", "--script", path}, m_dir))
        << session.Error();
    EXPECT_EQ(session.WaitForExit(30000), 0);
    std::istringstream output(session.Take());
    std::string complaints;
    for (std::string line; std::getline(output, line);) {
        // 'interface attach|detach' take their words but need --kernel,
        // which this run has not: that answer is not about a word.
        if (line.compare(0, 15, "zavrel-router: ") == 0 &&
            line.find(": the kernel link is off (start with --kernel)") == std::string::npos) {
            complaints += line + "\n";
        }
    }
    EXPECT_EQ(complaints, "") << script;
}

}  // namespace
}  // namespace Zavrel::test
