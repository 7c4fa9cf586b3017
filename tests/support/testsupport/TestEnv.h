// TestEnv: the base fixture of every test. It installs a capturing trace
// sink and a virtual clock for the length of one test and restores the
// previous ones afterwards.
#ifndef ZAVREL_TESTS_TESTENV_H
#define ZAVREL_TESTS_TESTENV_H

#include <gtest/gtest.h>

#include "platform/CapturingConsole.h"
#include "platform/EventLoop.h"
#include "platform/Trace.h"
#include "platform/VirtualEventLoop.h"

namespace Zavrel::test {

class TestEnv : public ::testing::Test {
protected:
    void SetUp() override {
        m_previousSink = SetTraceSink(&trace);
        m_previousLoop = EventLoop::SetCurrent(&loop);
    }
    void TearDown() override {
        EventLoop::SetCurrent(m_previousLoop);
        SetTraceSink(m_previousSink);
    }

    CapturingTraceSink trace;
    VirtualEventLoop loop;
    CapturingConsole console;

private:
    TraceSink* m_previousSink = nullptr;
    EventLoop* m_previousLoop = nullptr;
};

}  // namespace Zavrel::test

#endif
