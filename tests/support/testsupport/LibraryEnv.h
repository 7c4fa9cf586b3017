// LibraryEnv: a TestEnv for tests that use the library's process-wide
// managers (DcRouterMgr, DcRtmMgr, DcInterfaceMgr). Every test starts
// without any of them and leaves none behind: DcRouterMgr::ResetForTests runs
// before the test and again after it, while the test's loop still exists, so
// that the managers' timers are stopped on that loop and nothing a test made
// (VLANs, RTM instances, interfaces, queued requests, items, the application
// objects handed to the routers) reaches the next one. What the teardown
// before the test logs is cleared.
#ifndef ZAVREL_TESTS_LIBRARYENV_H
#define ZAVREL_TESTS_LIBRARYENV_H

#include <gtest/gtest.h>

#include "routing/DcRouterMgr.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {

class LibraryEnv : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        DcRouterMgr::ResetForTests();
        trace.Clear();
    }
    void TearDown() override {
        DcRouterMgr::ResetForTests();
        TestEnv::TearDown();
    }
};

}  // namespace Zavrel::test

#endif
