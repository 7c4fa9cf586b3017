#include "platform/ConsoleCommand.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/ConsoleSession.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

class ConsoleCommandTest : public test::TestEnv {
protected:
    // The registry is process-wide: leave it empty for the next test.
    void TearDown() override {
        for (const ConsoleCommand* command : ConsoleCommand::All()) {
            const std::string name = command->Name().str();
            ConsoleCommand::Unregister(name.c_str(), command->Owner());
        }
        test::TestEnv::TearDown();
    }

    // Runs a command line (words separated by blanks) the way the
    // application does: looks the first word up and hands all words over.
    int RunLine(const std::string& line) {
        std::vector<std::string> words;
        size_t pos = 0;
        while (pos < line.size()) {
            const size_t end = line.find(' ', pos);
            words.push_back(
                line.substr(pos, end == std::string::npos ? std::string::npos : end - pos));
            pos = end == std::string::npos ? line.size() : end + 1;
        }
        std::vector<char*> argv;
        for (std::string& w : words) {
            argv.push_back(&w[0]);
        }
        argv.push_back(nullptr);
        const ConsoleCommand* command = ConsoleCommand::Find(words.at(0).c_str());
        if (command == nullptr) {
            return -1;
        }
        ConsoleSession session(console);
        return command->Run(&session, static_cast<int>(words.size()), argv.data());
    }
};

struct Counter {
    std::string seen;
    int calls = 0;
};

int CountingHandler(Counter* counter, ConsoleSession* session, int argc, char** argv) {
    ++counter->calls;
    counter->seen.clear();
    for (int i = 0; i < argc; ++i) {
        counter->seen += std::string(i ? "," : "") + argv[i];
    }
    session->Printf("%d words\n", argc);
    return argc;
}

int OtherHandler(Counter* counter, ConsoleSession* session, int, char**) {
    ++counter->calls;
    session->Write("other\n");
    return 99;
}

TEST_F(ConsoleCommandTest, RegisteredHandlerReceivesContextSessionAndAllWords) {
    Counter counter;
    ASSERT_TRUE(ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter,
                                         "serializer", "Debug traces"));
    EXPECT_EQ(3, RunLine("serializer debug 3"));
    EXPECT_EQ(1, counter.calls);
    EXPECT_EQ("serializer,debug,3", counter.seen);
    EXPECT_EQ("3 words\n", console.Output());
}

TEST_F(ConsoleCommandTest, LookupIgnoresLetterCase) {
    Counter counter;
    ASSERT_TRUE(ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter,
                                         "Serializer", "help"));
    EXPECT_NE(nullptr, ConsoleCommand::Find("SERIALIZER"));
    EXPECT_NE(nullptr, ConsoleCommand::Find("serializer"));
    EXPECT_EQ(nullptr, ConsoleCommand::Find("serial"));
    EXPECT_EQ(nullptr, ConsoleCommand::Find(nullptr));
    EXPECT_EQ(1, RunLine("SERIALIZER"));
    EXPECT_EQ(string("Serializer"), ConsoleCommand::Find("serializer")->Name());
}

TEST_F(ConsoleCommandTest, KeepsNameHelpAndRole) {
    Counter counter;
    ASSERT_TRUE(ConsoleCommand::Register(CONSOLE_ROLE_ADMIN, &CountingHandler, &counter, "rtm",
                                         "Routing table"));
    const ConsoleCommand* command = ConsoleCommand::Find("rtm");
    ASSERT_NE(nullptr, command);
    EXPECT_EQ(string("rtm"), command->Name());
    EXPECT_EQ(string("Routing table"), command->Help());
    EXPECT_EQ(CONSOLE_ROLE_ADMIN, command->Role());
    EXPECT_EQ(&counter, command->Owner());
}

TEST_F(ConsoleCommandTest, RegisteringANameAgainReplacesIt) {
    Counter first;
    Counter second;
    ASSERT_TRUE(
        ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &first, "cmd", "one"));
    ASSERT_TRUE(
        ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &OtherHandler, &second, "CMD", "two"));
    EXPECT_EQ(99, RunLine("cmd x"));
    EXPECT_EQ(0, first.calls);
    EXPECT_EQ(1, second.calls);
    EXPECT_EQ(string("two"), ConsoleCommand::Find("cmd")->Help());
    EXPECT_EQ(string("CMD"), ConsoleCommand::Find("cmd")->Name());
    EXPECT_EQ(1u, ConsoleCommand::All().size());
}

TEST_F(ConsoleCommandTest, RejectsNullOrEmptyNameAndNullHandler) {
    Counter counter;
    EXPECT_FALSE(
        ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter, nullptr, "h"));
    EXPECT_FALSE(
        ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter, "", "h"));
    int (*none)(Counter*, ConsoleSession*, int, char**) = nullptr;
    EXPECT_FALSE(ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, none, &counter, "x", "h"));
    EXPECT_FALSE(
        ConsoleCommand::RegisterHandler(CONSOLE_ROLE_EVERYONE, nullptr, &counter, "x", "h"));
    EXPECT_TRUE(ConsoleCommand::All().empty());
}

TEST_F(ConsoleCommandTest, NullHelpBecomesEmpty) {
    Counter counter;
    ASSERT_TRUE(ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter,
                                         "nohelp", nullptr));
    EXPECT_EQ(string(""), ConsoleCommand::Find("nohelp")->Help());
}

TEST_F(ConsoleCommandTest, AllIsOrderedByName) {
    Counter counter;
    for (const char* name : {"serializer", "Protocol", "rtm", "ip6"}) {
        ASSERT_TRUE(
            ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &counter, name, "h"));
    }
    std::vector<std::string> names;
    for (const ConsoleCommand* c : ConsoleCommand::All()) {
        names.push_back(c->Name().str());
    }
    EXPECT_EQ((std::vector<std::string>{"ip6", "Protocol", "rtm", "serializer"}), names);
}

TEST_F(ConsoleCommandTest, UnregisterNeedsTheSameOwner) {
    Counter owner;
    Counter stranger;
    ASSERT_TRUE(
        ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &CountingHandler, &owner, "cmd", "h"));
    ConsoleCommand::Unregister("cmd", &stranger);
    EXPECT_NE(nullptr, ConsoleCommand::Find("cmd"));
    ConsoleCommand::Unregister("CMD", &owner);
    EXPECT_EQ(nullptr, ConsoleCommand::Find("cmd"));
    ConsoleCommand::Unregister(nullptr, &owner);
    ConsoleCommand::Unregister("never", &owner);
}

TEST_F(ConsoleCommandTest, LambdaHandlersCanBeRegisteredDirectly) {
    int seenArgc = -1;
    ASSERT_TRUE(ConsoleCommand::RegisterHandler(
        CONSOLE_ROLE_EVERYONE,
        [&seenArgc](ConsoleSession* s, int argc, char**) {
            seenArgc = argc;
            s->Write("lambda\n");
            return 0;
        },
        nullptr, "lambda", "h"));
    EXPECT_EQ(0, RunLine("lambda a b"));
    EXPECT_EQ(3, seenArgc);
    EXPECT_EQ("lambda\n", console.Output());
}

TEST_F(ConsoleCommandTest, HandlerMayReplaceItsOwnRegistrationWhileRunning) {
    Counter counter;
    ASSERT_TRUE(ConsoleCommand::RegisterHandler(
        CONSOLE_ROLE_EVERYONE,
        [&counter](ConsoleSession* s, int argc, char** argv) {
            ConsoleCommand::Register(CONSOLE_ROLE_EVERYONE, &OtherHandler, &counter, "self", "h");
            s->Write("replaced\n");
            return argc + (argv[0] != nullptr ? 10 : 0);
        },
        nullptr, "self", "h"));
    EXPECT_EQ(11, RunLine("self"));
    EXPECT_EQ(99, RunLine("self"));
    EXPECT_EQ("replaced\nother\n", console.Output());
}

}  // namespace
}  // namespace Zavrel
