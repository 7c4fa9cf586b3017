#include "app/StdoutConsole.h"

#include <cstdio>

#include "app/AppTraceSink.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

std::string ReadAll(FILE* file) {
    fflush(file);
    rewind(file);
    std::string text;
    int c;
    while ((c = fgetc(file)) != EOF) {
        text += static_cast<char>(c);
    }
    return text;
}

class StdoutConsoleTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        out = tmpfile();
        err = tmpfile();
        ASSERT_NE(out, nullptr);
        ASSERT_NE(err, nullptr);
    }
    void TearDown() override {
        fclose(out);
        fclose(err);
        TestEnv::TearDown();
    }
    FILE* out = nullptr;
    FILE* err = nullptr;
};

TEST_F(StdoutConsoleTest, PrintsExactlyWhatTheLibraryPrints) {
    StdoutConsole console(out, 1);
    console.Print("%6s %6u\n", "VID", 10u);
    console.ErrorPrint("End of table\n");
    EXPECT_EQ(ReadAll(out), "   VID     10\nEnd of table\n");
}

TEST_F(StdoutConsoleTest, PrintsLongTextWhole) {
    StdoutConsole console(out, 1);
    const std::string text(3000, 'x');
    console.Print("%s|\n", text.c_str());
    EXPECT_EQ(ReadAll(out), text + "|\n");
}

TEST_F(StdoutConsoleTest, KnowsWhetherTheLastLineIsComplete) {
    StdoutConsole console(out, 1);
    EXPECT_TRUE(console.AtLineStart());
    console.Print("Pending Actions");
    EXPECT_FALSE(console.AtLineStart());
    console.ErrorPrint("End of table\n");
    EXPECT_TRUE(console.AtLineStart());
    console.Print("%s", "");
    EXPECT_TRUE(console.AtLineStart());
}

TEST_F(StdoutConsoleTest, CountsEndsOfCommands) {
    StdoutConsole console(out, 1);
    EXPECT_EQ(console.EndCount(), 0u);
    console.EndOfCommand();
    console.EndOfCommand();
    EXPECT_EQ(console.EndCount(), 2u);
}

TEST_F(StdoutConsoleTest, CarriesTheCurrentVlan) {
    StdoutConsole console(out, 7);
    EXPECT_EQ(console.CurrentVlan(), 7);
    console.SetVlan(12);
    EXPECT_EQ(console.CurrentVlan(), 12);
}

TEST_F(StdoutConsoleTest, TraceSinkKeepsLinesUpToItsLevel) {
    AppTraceSink sink(out, err, 1);
    EXPECT_TRUE(sink.Wants(0));
    EXPECT_TRUE(sink.Wants(1));
    EXPECT_FALSE(sink.Wants(5));
    sink.Write(1, "warning\n");
    sink.Write(10, "progress\n");
    EXPECT_EQ(ReadAll(err), "warning\n");
}

TEST_F(StdoutConsoleTest, TraceSinkFlushesConsoleOutputFirst) {
    StdoutConsole console(out, 1);
    AppTraceSink sink(out, out, 0);
    console.Print("before ");
    sink.Write(0, "trace\n");
    console.Print("after\n");
    EXPECT_EQ(ReadAll(out), "before trace\nafter\n");
}

}  // namespace
}  // namespace Zavrel::test
