#include "app/LineSource.h"

#include <unistd.h>
#include <cstdio>

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class LineSourceTest : public TestEnv {
protected:
    std::string WriteScript(const std::string& text) {
        char path[] = "/tmp/zavrel-app-XXXXXX";
        const int fd = mkstemp(path);
        EXPECT_GE(fd, 0);
        EXPECT_EQ(write(fd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
        close(fd);
        paths.push_back(path);
        return path;
    }
    void TearDown() override {
        for (const auto& p : paths) {
            unlink(p.c_str());
        }
        TestEnv::TearDown();
    }
    std::vector<std::string> paths;
};

TEST_F(LineSourceTest, ArgumentGivesItsCommandOnce) {
    ArgumentSource source("vlan 5", 2);
    std::string line;
    ASSERT_TRUE(source.Next(line));
    EXPECT_EQ(line, "vlan 5");
    EXPECT_EQ(source.Where(), "-c #2");
    EXPECT_FALSE(source.Next(line));
}

TEST_F(LineSourceTest, ScriptGivesItsLinesWithTheirNumbers) {
    const std::string path = WriteScript("first\r\n\nthird");
    StreamSource source(path);
    ASSERT_TRUE(source.IsOpen());
    std::string line;
    ASSERT_TRUE(source.Next(line));
    EXPECT_EQ(line, "first");
    EXPECT_EQ(source.Where(), path + ":1");
    ASSERT_TRUE(source.Next(line));
    EXPECT_EQ(line, "");
    ASSERT_TRUE(source.Next(line));
    EXPECT_EQ(line, "third");
    EXPECT_EQ(source.Where(), path + ":3");
    EXPECT_FALSE(source.Next(line));
}

TEST_F(LineSourceTest, RelativeNamesOfAScriptAreTakenFromItsDirectory) {
    const std::string path = WriteScript("x\n");
    StreamSource source(path);
    EXPECT_EQ(source.BaseDir(), "/tmp/");
}

TEST_F(LineSourceTest, MissingScriptIsNotOpen) {
    StreamSource source("/nonexistent/zavrel.script");
    EXPECT_FALSE(source.IsOpen());
    EXPECT_EQ(source.Error(), "No such file or directory");
    std::string line;
    EXPECT_FALSE(source.Next(line));
}

}  // namespace
}  // namespace Zavrel::test
