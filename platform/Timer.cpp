#include "platform/Timer.h"

#include "platform/EventLoop.h"

namespace Zavrel {

TimerBase::TimerBase(const char* name, Callback* callback, void* context)
    : m_name(name), m_callback(callback), m_context(context) {}

TimerBase::~TimerBase() {
    Stop();
}

bool TimerBase::Start(unsigned int ms) {
    EventLoop& loop = EventLoop::Current();
    if (m_loop != nullptr && m_loop != &loop) {
        m_loop->DisarmTimer(this);
    }
    m_interval = ms;
    m_loop = &loop;
    loop.ArmTimer(this, ms);
    return true;
}

void TimerBase::Stop() {
    if (m_loop != nullptr) {
        EventLoop* loop = m_loop;
        m_loop = nullptr;
        loop->DisarmTimer(this);
    }
}

void TimerBase::Expire() {
    if (m_loop == nullptr) {
        return;
    }
    if (IsPeriodic()) {
        // Re-armed before the callback, so the callback may stop it. A zero
        // interval repeats after 1 ms rather than spinning at one instant.
        m_loop->ArmTimer(this, m_interval > 0 ? m_interval : 1);
    } else {
        m_loop = nullptr;
    }
    // Last: the callback may destroy the timer.
    OnExpire(m_interval, m_context);
}

void TimerBase::OnExpire(unsigned int interval, void* context) {
    if (m_callback) {
        (*m_callback)(interval, context);
    }
}

}  // namespace Zavrel
