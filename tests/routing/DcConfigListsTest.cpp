// Per-source bundles of configuration lists.
#include "routing/DcConfigLists.h"

#include <gtest/gtest.h>

#include "config/DCLConfigListTestSupport.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel {
namespace {

using test::CommitLog;
using test::TestList;
using test::TestRouter;
using Lines = std::vector<std::string>;

class DcConfigListsTest : public test::RecordingStackEnv {
protected:
    TestRouter router{4};
    CommitLog log;
};

TEST_F(DcConfigListsTest, KeepsNameTypeAndListsInOrder) {
    DcConfigLists bundle("remote.json", DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_EQ(bundle.GetName(), "remote.json");
    EXPECT_EQ(bundle.GetType(), DclConfigObject::OPTION_TYPE_REMOTE);
    EXPECT_TRUE(bundle.Lists().empty());
    auto* first = new TestList(router, &log);
    auto* second = new TestList(router, &log);
    bundle.Add(first);
    bundle.Add(nullptr);
    bundle.Add(second);
    EXPECT_EQ(bundle.Lists(), (std::vector<DCLConfigList*>{first, second}));
}

TEST_F(DcConfigListsTest, DeleteOptionsDestroysEveryListsObjectsInListOrder) {
    DcConfigLists bundle("a.json", DclConfigObject::OPTION_TYPE_VLAN);
    auto* first = new TestList(router, &log);
    auto* second = new TestList(router, &log);
    first->Adopt(1, 0, 4);
    second->Adopt(2, 0, 4);
    bundle.Add(first);
    bundle.Add(second);
    bundle.DeleteOptions("a.json", DclConfigObject::OPTION_TYPE_VLAN);
    EXPECT_EQ(log.lines, (Lines{"destroy 1", "destroy 2"}));
    EXPECT_TRUE(first->Objects().empty());
    EXPECT_TRUE(second->Objects().empty());
}

TEST_F(DcConfigListsTest, DestructorClearsAndDeletesTheListsWithoutCommits) {
    {
        DcConfigLists bundle("a.json", DclConfigObject::OPTION_TYPE_VLAN);
        auto* list = new TestList(router, &log);
        list->Adopt(1, 0, 4);
        list->Adopt(2, 0, 4);
        bundle.Add(list);
    }
    EXPECT_TRUE(log.lines.empty());
    EXPECT_EQ(log.deleted, 2);
}

}  // namespace
}  // namespace Zavrel
