#include "platform/IntrusiveList.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace Zavrel::test {
namespace {

struct Row {
    explicit Row(std::string name) : name(std::move(name)) {}
    std::string name;
    IntrusiveListHook<Row> byAge;
    IntrusiveListHook<Row> byKind;
};

using AgeList = IntrusiveList<Row, &Row::byAge>;
using KindList = IntrusiveList<Row, &Row::byKind>;

template <typename List>
std::vector<std::string> Names(const List& list) {
    std::vector<std::string> names;
    for (Row* row : list) {
        names.push_back(row->name);
    }
    return names;
}

// The same names walked from the back, through Prev.
template <typename List>
std::vector<std::string> NamesBackwards(const List& list) {
    std::vector<std::string> names;
    for (Row* row = list.Back(); row != nullptr; row = List::Prev(*row)) {
        names.insert(names.begin(), row->name);
    }
    return names;
}

using Names_t = std::vector<std::string>;

TEST(IntrusiveListTest, StartsEmpty) {
    AgeList list;
    EXPECT_TRUE(list.Empty());
    EXPECT_EQ(list.Size(), 0u);
    EXPECT_EQ(list.Front(), nullptr);
    EXPECT_EQ(list.Back(), nullptr);
    EXPECT_TRUE(list.begin() == list.end());
}

TEST(IntrusiveListTest, PushBackKeepsInsertionOrderBothWays) {
    Row a("a"), b("b"), c("c");
    AgeList list;
    list.PushBack(a);
    list.PushBack(b);
    list.PushBack(c);
    EXPECT_EQ(Names(list), (Names_t{"a", "b", "c"}));
    EXPECT_EQ(NamesBackwards(list), (Names_t{"a", "b", "c"}));
    EXPECT_EQ(list.Size(), 3u);
    EXPECT_EQ(list.Front(), &a);
    EXPECT_EQ(list.Back(), &c);
    EXPECT_EQ(AgeList::Next(a), &b);
    EXPECT_EQ(AgeList::Prev(a), nullptr);
    EXPECT_EQ(AgeList::Next(c), nullptr);
    list.Clear();
}

TEST(IntrusiveListTest, InsertBeforeTheFrontAMiddleObjectAndNothing) {
    Row a("a"), b("b"), c("c"), d("d");
    AgeList list;
    list.InsertBefore(nullptr, b);  // the back of an empty list
    list.InsertBefore(&b, a);       // before the front
    list.InsertBefore(nullptr, d);  // the back
    list.InsertBefore(&d, c);       // in the middle
    EXPECT_EQ(Names(list), (Names_t{"a", "b", "c", "d"}));
    EXPECT_EQ(NamesBackwards(list), (Names_t{"a", "b", "c", "d"}));
    list.Clear();
}

TEST(IntrusiveListTest, EraseTheFrontTheBackAMiddleObjectAndTheLast) {
    Row a("a"), b("b"), c("c"), d("d");
    AgeList list;
    for (Row* row : {&a, &b, &c, &d}) {
        list.PushBack(*row);
    }
    list.Erase(b);
    EXPECT_EQ(Names(list), (Names_t{"a", "c", "d"}));
    list.Erase(a);
    EXPECT_EQ(Names(list), (Names_t{"c", "d"}));
    EXPECT_EQ(list.Front(), &c);
    list.Erase(d);
    EXPECT_EQ(Names(list), (Names_t{"c"}));
    EXPECT_EQ(NamesBackwards(list), (Names_t{"c"}));
    EXPECT_EQ(list.Back(), &c);
    list.Erase(c);
    EXPECT_TRUE(list.Empty());
    EXPECT_EQ(list.Size(), 0u);
    EXPECT_EQ(list.Front(), nullptr);
    EXPECT_EQ(list.Back(), nullptr);
}

TEST(IntrusiveListTest, AnErasedObjectHasNoNeighboursAndCanBeLinkedAgain) {
    Row a("a"), b("b"), c("c");
    AgeList list;
    for (Row* row : {&a, &b, &c}) {
        list.PushBack(*row);
    }
    list.Erase(b);
    EXPECT_EQ(b.byAge.prev, nullptr);
    EXPECT_EQ(b.byAge.next, nullptr);
    list.InsertBefore(&a, b);
    EXPECT_EQ(Names(list), (Names_t{"b", "a", "c"}));
    list.Clear();
}

TEST(IntrusiveListTest, AnObjectIsOnOneListPerHookIndependently) {
    Row a("a"), b("b"), c("c");
    AgeList byAge;
    KindList byKind;
    for (Row* row : {&a, &b, &c}) {
        byAge.PushBack(*row);
    }
    byKind.PushBack(c);
    byKind.PushBack(a);
    byAge.Erase(a);
    EXPECT_EQ(Names(byAge), (Names_t{"b", "c"}));
    EXPECT_EQ(Names(byKind), (Names_t{"c", "a"}));
    byAge.Clear();
    byKind.Clear();
}

TEST(IntrusiveListTest, ClearAndDestructionUnlinkWithoutDestroying) {
    Row a("a"), b("b");
    {
        AgeList list;
        list.PushBack(a);
        list.PushBack(b);
    }
    EXPECT_EQ(a.name, "a");
    EXPECT_EQ(a.byAge.next, nullptr);
    EXPECT_EQ(b.byAge.prev, nullptr);
    AgeList list;
    list.PushBack(b);
    list.PushBack(a);
    list.Clear();
    EXPECT_TRUE(list.Empty());
    EXPECT_EQ(b.byAge.next, nullptr);
    EXPECT_EQ(a.byAge.prev, nullptr);
}

}  // namespace
}  // namespace Zavrel::test
