// TempDirTest: a test with a scratch folder of its own (m_dir, under /tmp),
// made before each test and removed with its contents after it.
#ifndef ZAVREL_TESTS_APP_TEMPDIRTEST_H
#define ZAVREL_TESTS_APP_TEMPDIRTEST_H

#include <cstdlib>
#include <string>

#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {

class TempDirTest : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        char pattern[] = "/tmp/zavrel-test-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_dir = pattern;
    }
    void TearDown() override {
        const std::string command = "rm -rf '" + m_dir + "'";
        EXPECT_EQ(system(command.c_str()), 0);
        TestEnv::TearDown();
    }

    std::string m_dir;
};

}  // namespace Zavrel::test

#endif
