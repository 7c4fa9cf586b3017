#include "platform/CapturingConsole.h"

#include <gtest/gtest.h>

#include <string>

namespace Zavrel {
namespace {

TEST(CapturingConsoleTest, KeepsOutputErrorsAndBothInOrder) {
    CapturingConsole console;
    console.Print("line %d\n", 1);
    console.ErrorPrint("Wrong Value\n");
    console.Print("line %d\n", 2);
    EXPECT_EQ("line 1\nline 2\n", console.Output());
    EXPECT_EQ("Wrong Value\n", console.Errors());
    EXPECT_EQ("line 1\nWrong Value\nline 2\n", console.All());
}

TEST(CapturingConsoleTest, ErrorPrintShowsTheMessageAsItIs) {
    CapturingConsole console;
    console.ErrorPrint("100% done");
    console.ErrorPrint(nullptr);
    EXPECT_EQ("100% done", console.Errors());
}

TEST(CapturingConsoleTest, CountsEndsOfCommand) {
    CapturingConsole console;
    EXPECT_EQ(0, console.EndCount());
    EXPECT_EQ(0, console.EndOfCommand());
    console.EndOfCommand();
    EXPECT_EQ(2, console.EndCount());
}

TEST(CapturingConsoleTest, VlanDefaultsToOneAndCanBeSet) {
    CapturingConsole console;
    EXPECT_EQ(1, console.CurrentVlan());
    CapturingConsole other(20);
    EXPECT_EQ(20, other.CurrentVlan());
    other.SetVlan(30);
    EXPECT_EQ(30, other.CurrentVlan());
}

TEST(CapturingConsoleTest, ClearForgetsEverything) {
    CapturingConsole console;
    console.Print("x");
    console.ErrorPrint("y");
    console.EndOfCommand();
    console.Clear();
    EXPECT_EQ("", console.Output());
    EXPECT_EQ("", console.Errors());
    EXPECT_EQ("", console.All());
    EXPECT_EQ(0, console.EndCount());
}

TEST(CapturingConsoleTest, LongOutputIsKeptWhole) {
    CapturingConsole console;
    const std::string big(10000, 'r');
    console.Print("%s|", big.c_str());
    EXPECT_EQ(big + "|", console.Output());
}

}  // namespace
}  // namespace Zavrel
