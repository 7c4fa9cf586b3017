// PipelineFixture: the whole library against the recording stack double on
// the virtual clock, with fresh managers and a fresh double for every test.
// The test plays the stack: work queued with AsStack() runs inside the next
// nbb_scheduler() run, where the real stack would make its callbacks.
#ifndef ZAVREL_TESTS_PIPELINE_PIPELINEFIXTURE_H
#define ZAVREL_TESTS_PIPELINE_PIPELINEFIXTURE_H

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "routing/DcRouterMgr.h"
#include "stackapi/stackapi.h"
#include "support/stackdouble/RecordingStack.h"
#include "support/testsupport/RecordingStackEnv.h"

namespace Zavrel::test {

class PipelineFixture : public RecordingStackEnv {
protected:
    void SetUp() override {
        RecordingStackEnv::SetUp();
        Stack().OnScheduler([this] { RunStackWork(); });
        // The stack asks for its first run while it starts.
        Stack().OnNextCall("smsi_init", [] { cRescheduleNBase(); });
        mgr = DcRouterMgr::GetInstance();
        ASSERT_NE(mgr, nullptr);
        ASSERT_EQ(mgr->Initialize(1, nullptr), 0);
        Stack().ClearCalls();
        trace.Clear();
    }

    static RecordingStack& Stack() { return RecordingStack::Instance(); }

    // Work the stack does on its next scheduler run.
    void AsStack(std::function<void()> work) { m_work.push_back(std::move(work)); }

    // Moves the clock far enough for one stack run and one configuration
    // scheduler tick (both are due at most 100 ms apart while idle).
    void Tick() { loop.Advance(100); }

    // The calls that ask the stack to do something, from a given one on.
    std::vector<std::string> Requests() const { return Stack().Requests(); }

    std::string PendingActions() { return mgr->GetSerializer().GetPendingActionsAsString().str(); }

    DcRouterMgr* mgr = nullptr;

private:
    void RunStackWork() {
        std::deque<std::function<void()>> work;
        work.swap(m_work);
        for (auto& step : work) {
            step();
        }
    }

    std::deque<std::function<void()>> m_work;
};

}  // namespace Zavrel::test

#endif
