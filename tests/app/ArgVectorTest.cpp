#include "app/ArgVector.h"

#include <cstring>

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {
namespace {

class ArgVectorTest : public TestEnv {};

TEST_F(ArgVectorTest, CopiesTheWordsFromTheFirstOn) {
    const std::vector<std::string> words{"ip", "protocol", "summary"};
    ArgVector argv(words, 1);
    ASSERT_EQ(argv.Argc(), 2);
    EXPECT_STREQ(argv.Argv()[0], "protocol");
    EXPECT_STREQ(argv.Argv()[1], "summary");
    EXPECT_EQ(argv.Argv()[2], nullptr);
}

TEST_F(ArgVectorTest, WordsAreWritableCopies) {
    const std::vector<std::string> words{"abc"};
    ArgVector argv(words, 0);
    argv.Argv()[0][0] = 'X';
    EXPECT_EQ(words[0], "abc");
    EXPECT_STREQ(argv.Argv()[0], "Xbc");
}

TEST_F(ArgVectorTest, PastTheEndGivesNoWords) {
    const std::vector<std::string> words{"rtm", "route"};
    ArgVector argv(words, 2);
    EXPECT_EQ(argv.Argc(), 0);
    EXPECT_EQ(argv.Argv()[0], nullptr);
}

}  // namespace
}  // namespace Zavrel::test
