#include "platform/ConsoleSession.h"

#include <gtest/gtest.h>

#include "platform/CapturingConsole.h"

namespace Zavrel {
namespace {

TEST(ConsoleSessionTest, WriteDoesNotInterpretPercentSigns) {
    CapturingConsole console;
    ConsoleSession session(console);
    session.Write("50% %s %d\n");
    EXPECT_EQ("50% %s %d\n", console.Output());
}

TEST(ConsoleSessionTest, WriteOfStringAndNull) {
    CapturingConsole console;
    ConsoleSession session(console);
    session.Write(string("abc"));
    session.Write(static_cast<const char*>(nullptr));
    EXPECT_EQ("abc", console.Output());
}

TEST(ConsoleSessionTest, PrintfFormats) {
    CapturingConsole console;
    ConsoleSession session(console);
    session.Printf("%s=%u\n", "count", 3u);
    EXPECT_EQ("count=3\n", console.Output());
    EXPECT_EQ(&console, &session.Console());
}

}  // namespace
}  // namespace Zavrel
