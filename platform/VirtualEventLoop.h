// VirtualEventLoop: a deterministic loop on a virtual clock. Time moves only
// when told to; due timers fire in order of due time, and timers due at the
// same time in the order they were armed.
#ifndef ZAVREL_PLATFORM_VIRTUALEVENTLOOP_H
#define ZAVREL_PLATFORM_VIRTUALEVENTLOOP_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <tuple>

#include "platform/EventLoop.h"

namespace Zavrel {

class VirtualEventLoop : public EventLoop {
public:
    VirtualEventLoop();
    ~VirtualEventLoop() override;

    uint64_t NowMs() const override { return m_now; }
    void ArmTimer(TimerBase* timer, unsigned int delayMs) override;
    void DisarmTimer(TimerBase* timer) override;
    bool WatchFd(int fd, int events, FdHandler handler) override;
    bool ChangeFd(int fd, int events) override;
    void UnwatchFd(int fd) override;

    // Moves the clock forward by ms, firing every timer that falls due on
    // the way (including timers armed by the callbacks), each with the clock
    // set to its due time. Ready descriptors are dispatched before each
    // timer. Returns the number of timers fired.
    size_t Advance(uint64_t ms);
    // Fires the timers already due at the current time and dispatches ready
    // descriptors. Returns the number of timers fired.
    size_t RunDue();
    // Polls the watched descriptors without waiting and calls the handlers
    // of those that are ready. Returns the number of handlers called.
    size_t DispatchReadyFds();

    bool HasArmedTimers() const { return !m_queue.empty(); }
    size_t ArmedTimerCount() const { return m_queue.size(); }
    // Due time of the earliest armed timer; false when none is armed.
    bool NextDue(uint64_t& dueMs) const;
    bool IsArmed(const TimerBase* timer) const;
    size_t WatchedFdCount() const { return m_fds.size(); }
    int WatchedEvents(int fd) const;  // 0 when not watched

private:
    struct Watch {
        int events;
        FdHandler handler;
    };
    using Key = std::tuple<uint64_t, uint64_t, TimerBase*>;  // due, arm sequence, timer
    bool FireNext(uint64_t limit);

    uint64_t m_now = 0;
    uint64_t m_sequence = 0;
    std::set<Key> m_queue;
    std::map<TimerBase*, Key> m_armed;
    std::map<int, Watch> m_fds;
};

}  // namespace Zavrel

#endif
