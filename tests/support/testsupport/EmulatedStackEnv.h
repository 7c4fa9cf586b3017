// EmulatedStackEnv: a LibraryEnv whose library runs against the embedded
// stack emulator (emulator/). The emulator goes back to its state before
// smsi_init before each test and again after it, after the managers are
// gone, so that neither its tables nor its descriptor outlive the test.
#ifndef ZAVREL_TESTS_EMULATEDSTACKENV_H
#define ZAVREL_TESTS_EMULATEDSTACKENV_H

#include <gtest/gtest.h>

#include "emulator/Emulator.h"
#include "support/testsupport/LibraryEnv.h"

namespace Zavrel::test {

class EmulatedStackEnv : public LibraryEnv {
protected:
    void SetUp() override {
        LibraryEnv::SetUp();
        Emulator::Reset();
    }
    void TearDown() override {
        LibraryEnv::TearDown();
        Emulator::Reset();
    }
};

}  // namespace Zavrel::test

#endif
