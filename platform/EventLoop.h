// EventLoop: the clock, timers and descriptor watches that drive the system.
// Two loops implement it: VirtualEventLoop (a virtual clock for tests and
// scripted runs) and LibeventLoop (the real loop of the application).
#ifndef ZAVREL_PLATFORM_EVENTLOOP_H
#define ZAVREL_PLATFORM_EVENTLOOP_H

#include <cstdint>
#include <functional>

namespace Zavrel {

class TimerBase;

class EventLoop {
public:
    // Event bits of a descriptor watch.
    static constexpr int READABLE = 1;
    static constexpr int WRITABLE = 2;
    using FdHandler = std::function<void(int fd, int events)>;

    virtual ~EventLoop();

    // Milliseconds on this loop's clock.
    virtual uint64_t NowMs() const = 0;

    // Arms the timer to expire after delayMs; re-arming replaces the old due
    // time. Called by TimerBase::Start.
    virtual void ArmTimer(TimerBase* timer, unsigned int delayMs) = 0;
    virtual void DisarmTimer(TimerBase* timer) = 0;

    // Watches a descriptor for the given events (READABLE | WRITABLE); the
    // handler receives the events that are ready. Watching a descriptor that
    // is already watched replaces its events and handler.
    virtual bool WatchFd(int fd, int events, FdHandler handler) = 0;
    virtual bool ChangeFd(int fd, int events) = 0;
    virtual void UnwatchFd(int fd) = 0;

    // The loop timers use. Until one is installed, a process-wide
    // VirtualEventLoop is used, so nothing runs on real time by accident.
    static EventLoop& Current();
    // Installs a loop (not owned); null restores the default virtual loop.
    // Returns the loop installed before (null for the default).
    static EventLoop* SetCurrent(EventLoop* loop);
};

}  // namespace Zavrel

#endif
