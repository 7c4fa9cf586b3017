#include "mib/Serializer.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/ConsoleCommand.h"
#include "platform/ConsoleSession.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel {
namespace {

const char INSERT_SIG[] =
    "void Zavrel::Serializer::Insert(const Zavrel::MibOid&, Zavrel::MibAction*)";
const char REMOVE_SIG[] = "void Zavrel::Serializer::Remove(const Zavrel::MibOid&)";

// An action that writes what happens to it into a shared log.
class LoggingAction : public MibAction {
public:
    LoggingAction(std::vector<std::string>& log, std::string id)
        : MibAction("LoggingAction"), m_log(log), m_id(std::move(id)) {}
    ~LoggingAction() override { m_log.push_back("destroy " + m_id); }
    unsigned long IssueReq(bool shared_context) override {
        m_log.push_back("issue " + m_id + (shared_context ? " shared" : " app"));
        if (onIssue) {
            onIssue();
        }
        return 7;
    }

    std::function<void()> onIssue;

private:
    std::vector<std::string>& m_log;
    std::string m_id;
};

class SerializerTest : public test::TestEnv {
protected:
    static MibOid Oid(std::vector<unsigned long> components) {
        return MibOid(components.data(), components.size());
    }
    LoggingAction* Action(const std::string& id) { return new LoggingAction(log, id); }
    int Complete(const MibOid& oid) {
        std::vector<unsigned long> components(oid.Components(), oid.Components() + oid.Length());
        return serializer.RunPendingAction(components.data(), components.size());
    }
    std::vector<std::string> Issued() const {
        std::vector<std::string> issued;
        for (const std::string& line : log) {
            if (line.rfind("issue ", 0) == 0) {
                issued.push_back(line);
            }
        }
        return issued;
    }
    std::vector<std::string> QueueTexts() const {
        std::vector<std::string> texts;
        for (const MibOid& oid : serializer.ActionsQueue()) {
            texts.push_back(oid.ToString().str());
        }
        return texts;
    }
    int RunConsole(std::vector<std::string> words) {
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        argv.push_back(nullptr);
        const ConsoleCommand* command = ConsoleCommand::Find("serializer");
        EXPECT_NE(nullptr, command);
        if (command == nullptr) {
            return -1;
        }
        ConsoleSession session(console);
        return command->Run(&session, static_cast<int>(words.size()), argv.data());
    }

    std::vector<std::string> log;
    Serializer serializer;
};

TEST_F(SerializerTest, ThreeActionsOnOneOidAreIssuedOneAfterEachCompletion) {
    serializer.RunPendingActions();
    MibOid oid = Oid({1, 3, 6, 1});
    serializer.Insert(oid, Action("a"));
    serializer.Insert(oid, Action("b"));
    serializer.Insert(oid, Action("c"));
    EXPECT_EQ(std::vector<std::string>({"issue a app"}), Issued());
    EXPECT_EQ(3u, serializer.PendingActionCount(oid));

    EXPECT_EQ(1, Complete(oid));
    EXPECT_EQ(std::vector<std::string>({"issue a app", "issue b shared"}), Issued());
    EXPECT_EQ(1, Complete(oid));
    EXPECT_EQ(std::vector<std::string>({"issue a app", "issue b shared", "issue c shared"}),
              Issued());
    EXPECT_EQ(1u, serializer.PendingOidCount());

    EXPECT_EQ(0, Complete(oid));
    EXPECT_EQ(0u, serializer.PendingOidCount());
    EXPECT_TRUE(serializer.ActionsQueue().empty());
    EXPECT_EQ(3u, Issued().size());
}

TEST_F(SerializerTest, IssuedActionIsDestroyedRightAfterItsRequest) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({1}), Action("a"));
    EXPECT_EQ(std::vector<std::string>({"issue a app", "destroy a"}), log);
}

TEST_F(SerializerTest, ActionsInsertedBeforeReadyAreHeldThenIssuedOnePerOidInInsertionOrder) {
    MibOid later = Oid({9, 9});
    MibOid earlier = Oid({1, 1});
    serializer.Insert(later, Action("later1"));
    serializer.Insert(earlier, Action("earlier1"));
    serializer.Insert(later, Action("later2"));
    serializer.Insert(earlier, Action("earlier2"));
    EXPECT_TRUE(Issued().empty());
    EXPECT_FALSE(serializer.IsReady());

    serializer.RunPendingActions();
    EXPECT_TRUE(serializer.IsReady());
    EXPECT_EQ(std::vector<std::string>({"issue later1 shared", "issue earlier1 shared"}), Issued());
    EXPECT_EQ(2u, serializer.PendingActionCount(later));
    EXPECT_EQ(2u, serializer.PendingActionCount(earlier));
}

TEST_F(SerializerTest, SecondRunPendingActionsDoesNotReissueOutstandingHeads) {
    MibOid oid = Oid({5});
    serializer.Insert(oid, Action("a"));
    serializer.Insert(oid, Action("b"));
    serializer.RunPendingActions();
    serializer.RunPendingActions();
    EXPECT_EQ(std::vector<std::string>({"issue a shared"}), Issued());
}

TEST_F(SerializerTest, CompletionWhileNotReadyPopsTheHeadAndIssuesNothing) {
    MibOid oid = Oid({2, 2});
    serializer.Insert(oid, Action("a"));
    serializer.Insert(oid, Action("b"));
    EXPECT_EQ(0, Complete(oid));
    EXPECT_TRUE(Issued().empty());
    EXPECT_EQ(1u, serializer.PendingActionCount(oid));
    // The popped action was never issued; it is destroyed rather than lost.
    EXPECT_EQ(std::vector<std::string>({"destroy a"}), log);

    serializer.RunPendingActions();
    EXPECT_EQ(std::vector<std::string>({"issue b shared"}), Issued());
}

TEST_F(SerializerTest, CompletionForUnknownOidIsIgnored) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({1}), Action("a"));
    EXPECT_EQ(0, Complete(Oid({2})));
    EXPECT_EQ(1u, serializer.PendingOidCount());
    EXPECT_EQ(0, serializer.Send(Oid({3})));
}

TEST_F(SerializerTest, NullActionOnlyCreatesTheEntry) {
    serializer.RunPendingActions();
    MibOid oid = Oid({4, 4});
    serializer.Insert(oid, nullptr);
    EXPECT_EQ(1u, serializer.PendingOidCount());
    EXPECT_EQ(0u, serializer.PendingActionCount(oid));
    EXPECT_EQ(std::vector<std::string>({"4:4"}), QueueTexts());
    EXPECT_EQ(0, serializer.Send(oid));

    serializer.Insert(oid, Action("a"));
    EXPECT_EQ(std::vector<std::string>({"issue a app"}), Issued());
}

TEST_F(SerializerTest, CompletionOfAnEmptyEntryForgetsTheOid) {
    MibOid oid = Oid({4, 4});
    serializer.Insert(oid, nullptr);
    serializer.Remove(oid);
    EXPECT_EQ(0u, serializer.PendingOidCount());
    EXPECT_TRUE(serializer.ActionsQueue().empty());
}

TEST_F(SerializerTest, SendIssuesAWaitingHeadFromTheStackSide) {
    MibOid oid = Oid({8});
    serializer.Insert(oid, Action("a"));
    EXPECT_EQ(0, serializer.Send(oid));  // not ready yet
    serializer.RunPendingActions();
    EXPECT_EQ(0, serializer.Send(oid));  // already outstanding
    EXPECT_EQ(std::vector<std::string>({"issue a shared"}), Issued());
}

TEST_F(SerializerTest, IssueMibRequestWithNullOrBeforeReadyDoesNothing) {
    EXPECT_EQ(0, serializer.IssueMibRequest(nullptr, true));
    LoggingAction* action = Action("a");
    EXPECT_EQ(0, serializer.IssueMibRequest(action, true));
    EXPECT_TRUE(log.empty());  // kept, not destroyed
    serializer.RunPendingActions();
    EXPECT_EQ(0, serializer.IssueMibRequest(nullptr, false));
    EXPECT_EQ(1, serializer.IssueMibRequest(action, false));
    EXPECT_EQ(std::vector<std::string>({"issue a app", "destroy a"}), log);
}

TEST_F(SerializerTest, QueueKeepsOrderOfFirstInsertionAndForgottenOidsRejoinAtTheEnd) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({3}), Action("a"));
    serializer.Insert(Oid({1}), Action("b"));
    serializer.Insert(Oid({2}), Action("c"));
    EXPECT_EQ(std::vector<std::string>({"3", "1", "2"}), QueueTexts());
    Complete(Oid({3}));
    EXPECT_EQ(std::vector<std::string>({"1", "2"}), QueueTexts());
    serializer.Insert(Oid({3}), Action("d"));
    EXPECT_EQ(std::vector<std::string>({"1", "2", "3"}), QueueTexts());
}

TEST_F(SerializerTest, CompletionClipsTheGivenOidTo130Components) {
    serializer.RunPendingActions();
    std::vector<unsigned long> components(200, 3);
    MibOid clipped(components.data(), components.size());
    serializer.Insert(clipped, Action("a"));
    EXPECT_EQ(0, serializer.RunPendingAction(components.data(), components.size()));
    EXPECT_EQ(0u, serializer.PendingOidCount());
}

TEST_F(SerializerTest, CompletionReportedFromInsideTheRequestIsHandledSafely) {
    serializer.RunPendingActions();
    MibOid oid = Oid({6, 6});
    LoggingAction* first = Action("a");
    first->onIssue = [this, oid] { Complete(oid); };
    serializer.Insert(oid, first);
    EXPECT_EQ(0u, serializer.PendingOidCount());
    serializer.Insert(oid, Action("b"));
    EXPECT_EQ(std::vector<std::string>({"issue a app", "issue b app"}), Issued());
    EXPECT_EQ(1u, serializer.PendingActionCount(oid));
}

TEST_F(SerializerTest, ResetForgetsEverythingDestroysWaitingActionsAndKeepsReady) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({1}), Action("a"));
    serializer.Insert(Oid({1}), Action("b"));
    serializer.Insert(Oid({2}), nullptr);
    log.clear();
    serializer.Reset();
    EXPECT_EQ(0u, serializer.PendingOidCount());
    EXPECT_TRUE(serializer.ActionsQueue().empty());
    EXPECT_EQ(std::vector<std::string>({"destroy b"}), log);
    EXPECT_TRUE(serializer.IsReady());
}

TEST_F(SerializerTest, PendingListingCountsTheOutstandingHead) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({1, 3, 6}), Action("a"));
    serializer.Insert(Oid({1, 3, 6}), Action("b"));
    serializer.Insert(Oid({1, 3, 6}), Action("c"));
    EXPECT_EQ(string("\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)"
                     "\n(Actions_Count=3, MibOid=1:3:6)"),
              serializer.GetPendingActionsAsString());
}

TEST_F(SerializerTest, PendingListingFollowsOidOrder) {
    serializer.Insert(Oid({2}), Action("a"));
    serializer.Insert(Oid({1, 5}), Action("b"));
    serializer.Insert(Oid({1, 5}), Action("c"));
    EXPECT_EQ(string("\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)"
                     "\n(Actions_Count=2, MibOid=1:5)"
                     "\n(Actions_Count=1, MibOid=2)"),
              serializer.GetPendingActionsAsString());
}

TEST_F(SerializerTest, PendingListingWithNothingPendingIsOnlyTheLegend) {
    EXPECT_EQ(string("\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)"),
              serializer.GetPendingActionsAsString());
}

TEST_F(SerializerTest, NoTracesWhileNoTraceLevelIsSelected) {
    serializer.RunPendingActions();
    serializer.Insert(Oid({1}), Action("a"));
    Complete(Oid({1}));
    EXPECT_TRUE(trace.Lines().empty());
}

TEST_F(SerializerTest, InsertTracesQueueBookkeepingAtLevelThree) {
    serializer.TraceSet().SelectAll();
    serializer.Insert(Oid({1, 3}), Action("a"));
    serializer.Insert(Oid({1, 3}), Action("b"));
    std::vector<CapturingTraceSink::Line> expected = {
        {3, std::string(INSERT_SIG) + ", queued into m_actions_queue, oid=1:3\n"},
        {3, std::string(INSERT_SIG) + ", m_actions_queue size=1\n"},
        {3, std::string(INSERT_SIG) + ", m_pending_actions size=1\n"},
        {3, std::string(INSERT_SIG) + ", added to p_action_list, action=LoggingAction\n"},
        {3, std::string(INSERT_SIG) + ", p_action_list size=1\n"},
        {3, std::string(INSERT_SIG) + ", added to p_action_list, action=LoggingAction\n"},
        {3, std::string(INSERT_SIG) + ", p_action_list size=2\n"},
    };
    EXPECT_EQ(expected, trace.Lines());
}

TEST_F(SerializerTest, RemoveTracesSizesAtLevelFiveAndForgettingAtLevelThree) {
    serializer.Insert(Oid({7}), Action("a"));
    serializer.Insert(Oid({7}), Action("b"));
    serializer.Insert(Oid({8}), Action("c"));
    serializer.TraceSet().SelectAll();
    serializer.Remove(Oid({7}));
    serializer.Remove(Oid({7}));
    std::vector<CapturingTraceSink::Line> expected = {
        {5, std::string(REMOVE_SIG) + ", m_pending_actions size=2\n"},
        {5, std::string(REMOVE_SIG) + ", p_action_list size=1\n"},
        {5, std::string(REMOVE_SIG) + ", m_pending_actions size=2\n"},
        {5, std::string(REMOVE_SIG) + ", p_action_list size=0\n"},
        {3, std::string(REMOVE_SIG) + ", removed from m_actions_queue, oid=7\n"},
        {3, std::string(REMOVE_SIG) + ", m_actions_queue size=1\n"},
    };
    EXPECT_EQ(expected, trace.Lines());
}

TEST_F(SerializerTest, OnlyTheSelectedTraceLevelsAreWritten) {
    serializer.Insert(Oid({7}), Action("a"));
    serializer.TraceSet().Select(5);
    serializer.Remove(Oid({7}));
    std::vector<CapturingTraceSink::Line> expected = {
        {5, std::string(REMOVE_SIG) + ", m_pending_actions size=1\n"},
        {5, std::string(REMOVE_SIG) + ", p_action_list size=0\n"},
    };
    EXPECT_EQ(expected, trace.Lines());
}

TEST_F(SerializerTest, ConsoleCommandIsRegisteredForEveryoneWithItsHelp) {
    const ConsoleCommand* command = ConsoleCommand::Find("serializer");
    ASSERT_NE(nullptr, command);
    EXPECT_EQ(string("Debug traces from serializer type in metaswitch"), command->Help());
    EXPECT_EQ(CONSOLE_ROLE_EVERYONE, command->Role());
}

TEST_F(SerializerTest, ConsolePendingActionsWritesTheListing) {
    serializer.Insert(Oid({1, 2}), Action("a"));
    RunConsole({"serializer", "pending_actions"});
    EXPECT_EQ(serializer.GetPendingActionsAsString().str(), console.Output());
}

TEST_F(SerializerTest, ConsoleKeywordInCapitalsWorksLikeLowerCase) {
    serializer.Insert(Oid({1, 2}), Action("a"));
    RunConsole({"serializer", "PENDING_ACTIONS"});
    EXPECT_EQ(std::string("\nPending Actions (Actions_Count=<No of actions>, MibOid=<oid>)"
                          "\n(Actions_Count=1, MibOid=1:2)"),
              console.Output());
}

TEST_F(SerializerTest, ConsoleWithoutKeywordOrWithAnUnknownOnePrintsUsage) {
    RunConsole({"serializer"});
    EXPECT_EQ("Usage: serializer  pending_actions|debug <level>\n", console.Output());
    console.Clear();
    RunConsole({"serializer", "pending"});
    EXPECT_EQ("Usage: serializer  pending_actions|debug <level>\n", console.Output());
}

TEST_F(SerializerTest, ConsoleDebugSelectsTraceLevels) {
    RunConsole({"serializer", "DEBUG", "3"});
    EXPECT_TRUE(serializer.TraceSet().IsSelected(3));
    EXPECT_FALSE(serializer.TraceSet().IsSelected(5));
    EXPECT_NE(std::string::npos, console.Output().find("trace_set"));
    RunConsole({"serializer", "debug", "off"});
    EXPECT_FALSE(serializer.TraceSet().Any());
}

TEST(SerializerRegistrationTest, DestroyedSerializerGivesUpItsCommand) {
    {
        Serializer first;
        EXPECT_NE(nullptr, ConsoleCommand::Find("serializer"));
    }
    EXPECT_EQ(nullptr, ConsoleCommand::Find("serializer"));
    Serializer second;
    EXPECT_NE(nullptr, ConsoleCommand::Find("serializer"));
}

TEST(SerializerRegistrationTest, OlderSerializerDoesNotRemoveTheNewerRegistration) {
    auto first = std::make_unique<Serializer>();
    Serializer second;
    first.reset();
    EXPECT_NE(nullptr, ConsoleCommand::Find("serializer"));
}

}  // namespace
}  // namespace Zavrel
