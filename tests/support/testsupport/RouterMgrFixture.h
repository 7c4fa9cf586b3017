// RouterMgrFixture: a TestEnv with the routing manager created against a
// freshly reset recording stack. The calls and traces of the creation are
// cleared, so a test sees only what it causes itself.
#ifndef ZAVREL_TESTS_ROUTERMGRFIXTURE_H
#define ZAVREL_TESTS_ROUTERMGRFIXTURE_H

#include <gtest/gtest.h>

#include "routing/DcRouterMgr.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/TestEnv.h"

namespace Zavrel::test {

class RouterMgrFixture : public TestEnv {
protected:
    void SetUp() override {
        TestEnv::SetUp();
        stack().Reset();
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        stack().ClearCalls();
        trace.Clear();
    }

    static RecordingStack& stack() { return RecordingStack::Instance(); }

    DcRouterMgr* mgr = nullptr;
};

}  // namespace Zavrel::test

#endif
