// RouterMgrFixture: a RecordingStackEnv with the routing manager created
// afresh against the freshly reset recording stack. The calls and traces of
// the creation are cleared, so a test sees only what it causes itself.
#ifndef ZAVREL_TESTS_ROUTERMGRFIXTURE_H
#define ZAVREL_TESTS_ROUTERMGRFIXTURE_H

#include <gtest/gtest.h>

#include "routing/DcRouterMgr.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel::test {

class RouterMgrFixture : public RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        stack().ClearCalls();
        trace.Clear();
    }

    DcRouterMgr* mgr = nullptr;
};

}  // namespace Zavrel::test

#endif
