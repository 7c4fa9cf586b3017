#include "platform/DcConsole.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/String.h"

namespace Zavrel {
namespace {

// A console that records what reaches its pure operations.
class RecordingConsole : public DcConsole {
public:
    void VPrint(const char* format, va_list args) override {
        string text;
        text.VFormat(format, args);
        printed += text.str();
        ++vprints;
    }
    void ErrorPrint(const char* message) override { errors += message; }
    int EndOfCommand() override { return ++ends; }
    unsigned short CurrentVlan() const override { return 42; }

    std::string printed;
    std::string errors;
    int vprints = 0;
    int ends = 0;
};

TEST(DcConsoleTest, PrintForwardsFormatAndArgumentsToVPrint) {
    RecordingConsole console;
    DcConsole& base = console;
    base.Print("%s %u %d\n", "vlan", 12u, -3);
    EXPECT_EQ(1, console.vprints);
    EXPECT_EQ("vlan 12 -3\n", console.printed);
}

TEST(DcConsoleTest, TheOtherOperationsAreVirtual) {
    RecordingConsole console;
    DcConsole& base = console;
    base.ErrorPrint("Gen Error\n");
    EXPECT_EQ(1, base.EndOfCommand());
    EXPECT_EQ(42, base.CurrentVlan());
    EXPECT_EQ("Gen Error\n", console.errors);
}

}  // namespace
}  // namespace Zavrel
