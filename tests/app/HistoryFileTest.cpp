#include "app/HistoryFile.h"

#include <sys/stat.h>
#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include <readline/history.h>

#include "tests/app/TempDirTest.h"

namespace Zavrel::test {
namespace {

class HistoryFileTest : public TempDirTest {
protected:
    void SetUp() override {
        TempDirTest::SetUp();
        clear_history();
    }
    void TearDown() override {
        clear_history();
        TempDirTest::TearDown();
    }
    static std::string Read(const std::string& path) {
        std::ifstream in(path);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }
};

TEST_F(HistoryFileTest, PathFollowsXdgStateHomeThenHome) {
    EXPECT_EQ(HistoryFile::PathFrom("/state", "/home/u"), "/state/zavrel-router/history");
    EXPECT_EQ(HistoryFile::PathFrom("", "/home/u"), "/home/u/.local/state/zavrel-router/history");
    EXPECT_EQ(HistoryFile::PathFrom(nullptr, "/home/u"),
              "/home/u/.local/state/zavrel-router/history");
    EXPECT_EQ(HistoryFile::PathFrom(nullptr, nullptr), "");
}

TEST_F(HistoryFileTest, SavesIntoANewDirectoryAndLoadsBack) {
    const std::string path = m_dir + "/a/b/history";
    HistoryFile file(path);
    add_history("vlan 10");
    add_history("stack status");
    ASSERT_TRUE(file.Save());
    EXPECT_EQ(Read(path), "vlan 10\nstack status\n");
    clear_history();
    EXPECT_EQ(file.Load(), "stack status");
    EXPECT_EQ(history_length, 2);
    EXPECT_STREQ(history_get(history_base)->line, "vlan 10");
}

TEST_F(HistoryFileTest, KeepsOnlyTheNewestLines) {
    const std::string path = m_dir + "/history";
    HistoryFile file(path, 3);
    EXPECT_EQ(file.Load(), "");  // no file yet
    for (const char* line : {"one", "two", "three", "four", "five"}) {
        add_history(line);
    }
    ASSERT_TRUE(file.Save());
    EXPECT_EQ(Read(path), "three\nfour\nfive\n");
}

TEST_F(HistoryFileTest, NoPathMeansNoFile) {
    HistoryFile file("");
    add_history("quit");
    EXPECT_FALSE(file.Save());
    EXPECT_EQ(file.Load(), "");
}

}  // namespace
}  // namespace Zavrel::test
