// DcScheduler: runs the routing stack's cooperative scheduler from a one-shot
// timer of the application's event loop.
//
// The stack does work only inside nbb_scheduler(). After each run the timer
// is re-armed for the delay the stack asks for (at least 10 ms, 100 ms when
// the stack is idle). The stack may ask for an early run (cRescheduleNBase),
// which arms a 5 ms timer unless one is already pending.
#ifndef ZAVREL_STACK_DCSCHEDULER_H
#define ZAVREL_STACK_DCSCHEDULER_H

#include "platform/Timer.h"

namespace Zavrel {

class DcScheduler {
public:
    // Delays of the timer, in milliseconds.
    static constexpr unsigned int EARLY_RUN_MS = 5;
    static constexpr unsigned int MIN_INTERVAL_MS = 10;
    static constexpr unsigned int IDLE_INTERVAL_MS = 100;

    DcScheduler();
    ~DcScheduler();
    DcScheduler(const DcScheduler&) = delete;
    DcScheduler& operator=(const DcScheduler&) = delete;

    // Starts the stack's components; returns what smsi_init returns. Does
    // not start the timer: the stack's first early-run request does.
    int init();

    // (Re)starts the timer for ms milliseconds.
    void StartTimer(unsigned int ms);

    // Timer callback: runs the stack once and re-arms the timer.
    void OnTimeout(unsigned int interval, void* context);

    // Runs the stack once, leaving the timer alone.
    void SchedNBase();

    // The stack asks for an early run: arms the 5 ms timer unless an early
    // run is already pending.
    void RescheduleNBase();

    // True while an early run is pending.
    bool IsRescheduled() const { return m_rescheduled; }

    const OneShotTimer& Timer() const { return m_timer; }

private:
    bool m_rescheduled;
    OneShotTimer m_timer;
};

}  // namespace Zavrel

#endif
