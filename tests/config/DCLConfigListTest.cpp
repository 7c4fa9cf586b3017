// Configuration object lists: reconciling a running list with each newly
// loaded configuration, committing, clearing, holding and displaying.
#include "config/DCLConfigList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "config/DCLConfigListTestSupport.h"
#include "platform/Options.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::CommitLog;
using test::TestList;
using test::TestObject;
using test::TestRouter;
using Lines = std::vector<std::string>;

class DCLConfigListTest : public test::RecordingStackEnv {
protected:
    OptionsNode Load(const char* json) {
        EXPECT_TRUE(options.LoadFromText(json)) << options.Error().c_str();
        return options.Root();
    }

    void Parse(const char* json, const char* source = "vlan.json",
               DclConfigObject::OptionType type = DclConfigObject::OPTION_TYPE_VLAN) {
        list.Parse(Load(json), source, type);
    }

    Options options;
    TestRouter router{5};
    CommitLog log;
    TestList list{router, &log};
};

TEST_F(DCLConfigListTest, FirstParseCreatesEveryRecordInOrder) {
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}, {"id": 2, "value": 20}]})");
    EXPECT_EQ(log.lines, (Lines{"create 1 v=10", "create 2 v=20"}));
    EXPECT_EQ(list.Describe(), (Lines{"5:1=10", "5:2=20"}));
    EXPECT_EQ(trace.Texts(5),
              (Lines{"TESTLIST:: ActionReq: 1 InMib: 0  Vlan: 5   ID: 1 RowStatus C\n",
                     "TESTLIST:: ActionReq: 1 InMib: 0  Vlan: 5   ID: 2 RowStatus C\n"}));
}

TEST_F(DCLConfigListTest, ParsedObjectsTakeTheSourceNameTypeAndRouterVlan) {
    Parse(R"({"ITEMS": [{"id": 1}]})", "remote.json", DclConfigObject::OPTION_TYPE_REMOTE);
    ASSERT_EQ(list.Objects().size(), 1u);
    const DclConfigObject* object = list.Objects().front();
    EXPECT_EQ(object->name, "remote.json");
    EXPECT_EQ(object->optionType, DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_EQ(object->vlan, 5);
}

TEST_F(DCLConfigListTest, ReparsingAnIdenticalConfigurationSendsNothing) {
    const char* json = R"({"ITEMS": [{"id": 1, "value": 10}, {"id": 2, "value": 20}]})";
    Parse(json);
    log.lines.clear();
    trace.Clear();
    Parse(json);
    EXPECT_TRUE(log.lines.empty());
    EXPECT_TRUE(trace.Texts(5).empty());
    for (const DclConfigObject* object : list.Objects()) {
        EXPECT_FALSE(object->actionReq);
    }
    EXPECT_EQ(list.Describe(), (Lines{"5:1=10", "5:2=20"}));
}

TEST_F(DCLConfigListTest, RemovedRecordIsDestroyedAndDeleted) {
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}, {"id": 2, "value": 20}]})");
    log.lines.clear();
    trace.Clear();
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}]})");
    EXPECT_EQ(log.lines, (Lines{"destroy 2"}));
    EXPECT_EQ(log.deleted, 1);
    EXPECT_EQ(list.Describe(), (Lines{"5:1=10"}));
    EXPECT_EQ(trace.Texts(5),
              (Lines{"TESTLIST:: ActionReq: 1 InMib: 1  Vlan: 5   ID: 2 RowStatus D\n"}));
}

TEST_F(DCLConfigListTest, ChangedSettingsAreUpdatedInPlaceKeepingTheListPosition) {
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}, {"id": 2, "value": 20}]})");
    log.lines.clear();
    Parse(R"({"ITEMS": [{"id": 2, "value": 20}, {"id": 1, "value": 11}]})");
    EXPECT_EQ(log.lines, (Lines{"update 1 v=11"}));
    EXPECT_EQ(list.Describe(), (Lines{"5:1=11", "5:2=20"}));
}

TEST_F(DCLConfigListTest, CommitOrderIsListOrderWithNewObjectsLast) {
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}, {"id": 2, "value": 20}, {"id": 3}]})");
    log.lines.clear();
    Parse(R"({"ITEMS": [{"id": 4, "value": 40}, {"id": 3, "value": 30}, {"id": 1, "value": 10}]})");
    EXPECT_EQ(log.lines, (Lines{"destroy 2", "update 3 v=30", "create 4 v=40"}));
    EXPECT_EQ(list.Describe(), (Lines{"5:1=10", "5:3=30", "5:4=40"}));
}

TEST_F(DCLConfigListTest, OnlyTheFirstOfTwoMatchingRunningObjectsIsKept) {
    TestObject* first = list.Adopt(1, 10, 5);
    first->SetInMib(true);
    TestObject* second = list.Adopt(1, 10, 5);
    second->SetInMib(true);
    Parse(R"({"ITEMS": [{"id": 1, "value": 10}]})");
    EXPECT_EQ(log.lines, (Lines{"destroy 1"}));
    ASSERT_EQ(list.Objects().size(), 1u);
    EXPECT_EQ(list.Objects().front(), first);
}

TEST_F(DCLConfigListTest, VanishedObjectsAreMarkedInPointerOrder) {
    for (unsigned int id = 1; id <= 6; ++id) {
        list.Adopt(id, 0, 5)->SetInMib(true);
    }
    Parse(R"({"ITEMS": []})");
    ASSERT_EQ(log.marked.size(), 6u);
    EXPECT_TRUE(std::is_sorted(
        log.marked.begin(), log.marked.end(),
        [](const void* a, const void* b) { return std::less<const void*>()(a, b); }));
    EXPECT_EQ(log.lines,
              (Lines{"destroy 1", "destroy 2", "destroy 3", "destroy 4", "destroy 5", "destroy 6"}))
        << "the destructions themselves run in list order";
    EXPECT_TRUE(list.Objects().empty());
    EXPECT_EQ(log.deleted, 6);
}

TEST_F(DCLConfigListTest, MissingSectionDestroysEverything) {
    Parse(R"({"ITEMS": [{"id": 1}]})");
    log.lines.clear();
    Parse(R"({"OTHER": 1})");
    EXPECT_EQ(log.lines, (Lines{"destroy 1"}));
    EXPECT_TRUE(list.Objects().empty());
}

TEST_F(DCLConfigListTest, RejectedAndEmptyRecordsAreDroppedSilently) {
    Parse(R"({"ITEMS": [{"value": 1}, {}, {"id": 2, "value": 20}]})");
    EXPECT_EQ(log.lines, (Lines{"create 2 v=20"}));
    EXPECT_EQ(log.deleted, 0);
    EXPECT_EQ(log.deletedParsed, 2) << "the rejected object and the parsed copy are deleted";
    EXPECT_TRUE(trace.Texts(0).empty());
}

TEST_F(DCLConfigListTest, RecordsGivenAsAnObjectAreParsedInDocumentOrder) {
    Parse(R"({"ITEMS": {"b": {"id": 2}, "a": {"id": 1}}})");
    EXPECT_EQ(list.Describe().size(), 2u);
    EXPECT_EQ(log.lines.size(), 2u);
}

TEST_F(DCLConfigListTest, CommitSkipsObjectsWithoutAnAction) {
    TestObject* object = list.Adopt(3, 0, 5);
    object->actionReq = false;
    list.CommitToMib();
    EXPECT_TRUE(log.lines.empty()) << "objects without an action are skipped";
    object->actionReq = true;
    list.CommitToMib();
    EXPECT_EQ(log.lines, (Lines{"create 3 v=0"}));
    EXPECT_EQ(list.Objects().size(), 1u);
}

TEST_F(DCLConfigListTest, DeleteOptionsDestroysAndDeletesEveryObject) {
    Parse(R"({"ITEMS": [{"id": 1}, {"id": 2}]})");
    log.lines.clear();
    list.DeleteOptions("vlan.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(log.lines, (Lines{"destroy 1", "destroy 2"}));
    EXPECT_TRUE(list.Objects().empty());
    EXPECT_EQ(log.deleted, 2);
}

TEST_F(DCLConfigListTest, ClearDeletesWithoutTouchingTheStack) {
    Parse(R"({"ITEMS": [{"id": 1}, {"id": 2}]})");
    log.lines.clear();
    list.Clear();
    EXPECT_TRUE(log.lines.empty());
    EXPECT_TRUE(list.Objects().empty());
    EXPECT_EQ(log.deleted, 2);
}

TEST_F(DCLConfigListTest, ClearVlanLeavesTheSecondOfTwoAdjacentObjects) {
    list.Adopt(1, 0, 7);
    list.Adopt(2, 0, 7);
    list.Clear(7);
    EXPECT_EQ(list.Describe(), (Lines{"7:2=0"}));
    EXPECT_EQ(log.deleted, 1);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DCLConfigListTest, ClearVlanSkipsTheFollowerOfEachDeletedObject) {
    list.Adopt(1, 0, 7);
    list.Adopt(2, 0, 7);
    list.Adopt(3, 0, 9);
    list.Adopt(4, 0, 7);
    list.Adopt(5, 0, 7);
    list.Adopt(6, 0, 9);
    list.Clear(7);
    EXPECT_EQ(list.Describe(), (Lines{"7:2=0", "9:3=0", "7:5=0", "9:6=0"}));
}

TEST_F(DCLConfigListTest, ClearVlanWrapsToTheFirstObjectAfterDeletingTheLast) {
    // 1 is deleted, 2 skipped, 3 deleted; 3 was the last, so the scan goes
    // on from the first object, 2, and deletes it too.
    list.Adopt(1, 0, 7);
    list.Adopt(2, 0, 7);
    list.Adopt(3, 0, 7);
    list.Clear(7);
    EXPECT_TRUE(list.Objects().empty());
    EXPECT_EQ(log.deleted, 3);
}

TEST_F(DCLConfigListTest, ClearVlanWrapExaminesTheFirstObjectOnce) {
    list.Adopt(1, 0, 9);
    list.Adopt(2, 0, 7);
    list.Adopt(3, 0, 9);
    list.Adopt(4, 0, 7);
    list.Clear(7);
    EXPECT_EQ(list.Describe(), (Lines{"9:1=0", "9:3=0"}));
    EXPECT_EQ(log.deleted, 2);
}

TEST_F(DCLConfigListTest, ClearVlanSkippedLastObjectStays) {
    list.Adopt(1, 0, 9);
    list.Adopt(2, 0, 7);
    list.Adopt(3, 0, 7);
    list.Clear(7);
    EXPECT_EQ(list.Describe(), (Lines{"9:1=0", "7:3=0"}));
}

TEST_F(DCLConfigListTest, ClearVlanOnSingleObjectOrEmptyListEnds) {
    list.Clear(7);
    EXPECT_TRUE(list.Objects().empty());
    list.Adopt(1, 0, 7);
    list.Clear(7);
    EXPECT_TRUE(list.Objects().empty());
    list.Adopt(1, 0, 9);
    list.Clear(7);
    EXPECT_EQ(list.Describe(), (Lines{"9:1=0"}));
}

TEST_F(DCLConfigListTest, HoldMarksOnlyTheVlansObjects) {
    TestObject* a = list.Adopt(1, 0, 7);
    TestObject* b = list.Adopt(2, 0, 9);
    list.Clear(7, true);
    EXPECT_TRUE(a->held);
    EXPECT_FALSE(b->held);
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(list.Objects().size(), 2u);
}

TEST_F(DCLConfigListTest, ReleaseCommitsTheVlansObjectsAgainWithoutDeletingAny) {
    TestObject* a = list.Adopt(1, 1, 7);
    a->SetInMib(true);
    a->actionReq = false;
    TestObject* b = list.Adopt(2, 2, 9);
    b->actionReq = false;
    TestObject* c = list.Adopt(3, 3, 7);
    c->destroy = true;
    list.Clear(7, true);
    list.Clear(7, false);
    EXPECT_FALSE(a->held);
    EXPECT_FALSE(c->held);
    EXPECT_EQ(log.lines, (Lines{"update 1 v=1", "destroy 3"}));
    EXPECT_EQ(list.Objects().size(), 3u) << "a finished commit deletes nothing here";
    EXPECT_EQ(trace.Texts(5),
              (Lines{"TESTLIST:: ActionReq: 1 InMib: 1  Vlan: 7   ID: 1 RowStatus M\n",
                     "TESTLIST:: ActionReq: 1 InMib: 0  Vlan: 7   ID: 3 RowStatus D\n"}));
}

TEST_F(DCLConfigListTest, CheckInMibNeedsVlanIdAndTheRowInTheMib) {
    list.Adopt(1, 0, 7)->SetInMib(true);
    list.Adopt(2, 0, 7);
    EXPECT_TRUE(list.CheckInMib(7, 1));
    EXPECT_FALSE(list.CheckInMib(7, 2));
    EXPECT_FALSE(list.CheckInMib(8, 1));
}

TEST_F(DCLConfigListTest, SetDestroyMarksEveryObjectInListOrder) {
    TestObject* a = list.Adopt(1, 0, 7);
    TestObject* b = list.Adopt(2, 0, 7);
    a->actionReq = b->actionReq = false;
    list.SetDestroy();
    EXPECT_EQ(log.marked, (std::vector<const void*>{a, b}));
    EXPECT_TRUE(a->actionReq);
    EXPECT_TRUE(b->actionReq);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(DCLConfigListTest, DisplayListFiltersByVlanAndId) {
    list.Adopt(1, 10, 7);
    list.Adopt(2, 20, 7);
    list.Adopt(1, 30, 9);
    DclConfigDisplayFilter all;
    list.DisplayList(&console, all);
    EXPECT_EQ(console.Output(),
              "object 1 vlan 7 value 10\nobject 2 vlan 7 value 20\nobject 1 vlan 9 value 30\n");
    console.Clear();
    DclConfigDisplayFilter vlan7;
    vlan7.vlan = 7;
    list.DisplayList(&console, vlan7);
    EXPECT_EQ(console.Output(), "object 1 vlan 7 value 10\nobject 2 vlan 7 value 20\n");
    console.Clear();
    DclConfigDisplayFilter id1;
    id1.id = 1;
    list.DisplayList(&console, id1);
    EXPECT_EQ(console.Output(), "object 1 vlan 7 value 10\nobject 1 vlan 9 value 30\n");
}

TEST_F(DCLConfigListTest, ForEachStopsAtTheFirstFalse) {
    list.Adopt(1, 0, 7);
    list.Adopt(2, 0, 7);
    list.Adopt(3, 0, 7);
    struct Visit : DclConfigListIteratorFunc {
        std::vector<unsigned int> ids;
        unsigned int stopAt = 0;
        bool operator()(DclConfigObject* object) override {
            ids.push_back(object->id);
            return object->id != stopAt;
        }
    } visit;
    EXPECT_FALSE(list.ForEach(nullptr));
    EXPECT_TRUE(list.ForEach(&visit));
    EXPECT_EQ(visit.ids, (std::vector<unsigned int>{1, 2, 3}));
    visit.ids.clear();
    visit.stopAt = 2;
    EXPECT_FALSE(list.ForEach(&visit));
    EXPECT_EQ(visit.ids, (std::vector<unsigned int>{1, 2}));
}

TEST_F(DCLConfigListTest, ForEachOnEmptyListIsTrue) {
    struct Never : DclConfigListIteratorFunc {
        bool operator()(DclConfigObject*) override { return false; }
    } never;
    EXPECT_TRUE(list.ForEach(&never));
}

TEST_F(DCLConfigListTest, DestructorDeletesEveryObjectWithoutCommits) {
    {
        TestList scoped(router, &log);
        scoped.Adopt(1, 0, 5);
        scoped.Adopt(2, 0, 5);
    }
    EXPECT_EQ(log.deleted, 2);
    EXPECT_TRUE(log.lines.empty());
}

}  // namespace
}  // namespace Zavrel
