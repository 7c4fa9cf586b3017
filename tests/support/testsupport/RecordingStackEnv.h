// RecordingStackEnv: a LibraryEnv whose library runs against the recording
// stack double (support/stackdouble). The double is reset before each test
// and again after it, after the managers are gone, so that no call, script
// or hook (hooks often hold the fixture that set them) outlives the test.
#ifndef ZAVREL_TESTS_RECORDINGSTACKENV_H
#define ZAVREL_TESTS_RECORDINGSTACKENV_H

#include <gtest/gtest.h>

#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/LibraryEnv.h"

namespace Zavrel::test {

class RecordingStackEnv : public LibraryEnv {
protected:
    void SetUp() override {
        LibraryEnv::SetUp();
        stack().Reset();
    }
    void TearDown() override {
        LibraryEnv::TearDown();
        stack().Reset();
    }

    static RecordingStack& stack() { return RecordingStack::Instance(); }
};

}  // namespace Zavrel::test

#endif
