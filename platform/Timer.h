// Timers on the current EventLoop: TimerBase, OneShotTimer, PeriodicTimer.
#ifndef ZAVREL_PLATFORM_TIMER_H
#define ZAVREL_PLATFORM_TIMER_H

#include <memory>

#include "platform/Callback.h"
#include "platform/String.h"

namespace Zavrel {

class EventLoop;

// A named timer whose callback receives (interval in ms, context).
class TimerBase {
public:
    using Callback = CallbackBuffer2<unsigned int, void*>;

    // Takes ownership of callback (which may be null: the timer then only
    // runs OnExpire of a subclass). The name is copied.
    TimerBase(const char* name, Callback* callback, void* context = nullptr);
    virtual ~TimerBase();  // stops the timer
    TimerBase(const TimerBase&) = delete;
    TimerBase& operator=(const TimerBase&) = delete;

    // (Re)starts the timer for ms milliseconds on EventLoop::Current().
    // Starting a running timer re-arms it from now. A periodic timer with
    // an interval of 0 repeats every millisecond.
    bool Start(unsigned int ms);
    void Stop();
    bool IsRunning() const { return m_loop != nullptr; }
    const char* Name() const { return m_name.c_str(); }
    unsigned int Interval() const { return m_interval; }

    // Called by the loop when the timer is due.
    void Expire();
    // Called by a loop that is destroyed while the timer is armed on it: the
    // timer becomes idle without touching the loop.
    void LoopGone() { m_loop = nullptr; }

protected:
    virtual bool IsPeriodic() const = 0;
    // Runs when the timer expires, after the timer has been re-armed
    // (periodic) or made idle (one-shot). The default runs the callback, when
    // there is one. It is the last thing Expire does, so it may destroy the
    // timer.
    virtual void OnExpire(unsigned int interval, void* context);

private:
    string m_name;
    std::unique_ptr<Callback> m_callback;
    void* m_context;
    unsigned int m_interval = 0;
    EventLoop* m_loop = nullptr;  // the loop it is armed on, null when idle
};

// Fires once; it is idle again when its callback runs, so the callback may
// start it anew.
class OneShotTimer : public TimerBase {
public:
    using TimerBase::TimerBase;

protected:
    bool IsPeriodic() const override { return false; }
};

// Fires every interval until stopped; re-armed before its callback runs.
class PeriodicTimer : public TimerBase {
public:
    using TimerBase::TimerBase;

protected:
    bool IsPeriodic() const override { return true; }
};

}  // namespace Zavrel

#endif
