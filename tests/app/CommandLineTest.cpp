#include "app/CommandLine.h"

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class CommandLineTest : public TestEnv {
protected:
    bool Parse(std::vector<std::string> args) {
        std::vector<char*> argv;
        for (auto& a : args) {
            argv.push_back(a.data());
        }
        return line.Parse(static_cast<int>(argv.size()), argv.data(), error);
    }
    CommandLine line;
    std::string error;
};

TEST_F(CommandLineTest, DefaultsAreVlanOneRealTimeErrorsOnly) {
    ASSERT_TRUE(Parse({}));
    EXPECT_EQ(line.vlan, 1);
    EXPECT_FALSE(line.virtualTime);
    EXPECT_FALSE(line.strict);
    EXPECT_EQ(line.traceLevel, 0);
    EXPECT_TRUE(line.readStdin);
    EXPECT_TRUE(line.sources.empty());
}

TEST_F(CommandLineTest, KeepsCommandsAndScriptsInTheirOrder) {
    ASSERT_TRUE(
        Parse({"-c", "vlan 5", "--script", "a.script", "--command=help", "-s", "b.script"}));
    ASSERT_EQ(line.sources.size(), 4u);
    EXPECT_EQ(line.sources[0].kind, CommandLine::Source::COMMAND);
    EXPECT_EQ(line.sources[0].text, "vlan 5");
    EXPECT_EQ(line.sources[1].kind, CommandLine::Source::SCRIPT);
    EXPECT_EQ(line.sources[1].text, "a.script");
    EXPECT_EQ(line.sources[2].text, "help");
    EXPECT_EQ(line.sources[3].text, "b.script");
}

TEST_F(CommandLineTest, ReadsTheOtherOptions) {
    ASSERT_TRUE(Parse({"--vlan", "0x10", "--virtual-time", "--strict", "--trace=10", "--echo",
                       "--no-stdin", "--settle-limit", "5000"}));
    EXPECT_EQ(line.vlan, 16);
    EXPECT_TRUE(line.virtualTime);
    EXPECT_TRUE(line.strict);
    EXPECT_EQ(line.traceLevel, 10);
    EXPECT_TRUE(line.echo);
    EXPECT_FALSE(line.readStdin);
    EXPECT_EQ(line.settleLimitMs, 5000u);
}

TEST_F(CommandLineTest, HelpAndVersion) {
    ASSERT_TRUE(Parse({"--help", "-V"}));
    EXPECT_TRUE(line.showHelp);
    EXPECT_TRUE(line.showVersion);
}

TEST_F(CommandLineTest, UnknownOptionIsAnError) {
    EXPECT_FALSE(Parse({"--frobnicate"}));
    EXPECT_EQ(error, "unknown option '--frobnicate'");
}

TEST_F(CommandLineTest, MissingValueIsAnError) {
    EXPECT_FALSE(Parse({"--script"}));
    EXPECT_EQ(error, "option --script needs a value");
}

TEST_F(CommandLineTest, BadVlanIsAnError) {
    EXPECT_FALSE(Parse({"--vlan", "5000"}));
    EXPECT_EQ(error, "bad VLAN '5000' (1 to 4094)");
}

TEST_F(CommandLineTest, FlagWithAValueIsAnError) {
    EXPECT_FALSE(Parse({"--strict=yes"}));
    EXPECT_EQ(error, "option --strict takes no value");
}

}  // namespace
}  // namespace Zavrel::test
