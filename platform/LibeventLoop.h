// LibeventLoop: the real event loop of the application, on libevent.
#ifndef ZAVREL_PLATFORM_LIBEVENTLOOP_H
#define ZAVREL_PLATFORM_LIBEVENTLOOP_H

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "platform/EventLoop.h"

struct event_base;
struct event;

namespace Zavrel {

class LibeventLoop : public EventLoop {
public:
    LibeventLoop();
    ~LibeventLoop() override;
    LibeventLoop(const LibeventLoop&) = delete;
    LibeventLoop& operator=(const LibeventLoop&) = delete;

    bool IsValid() const { return m_base != nullptr; }

    // Monotonic milliseconds.
    uint64_t NowMs() const override;
    void ArmTimer(TimerBase* timer, unsigned int delayMs) override;
    void DisarmTimer(TimerBase* timer) override;
    bool WatchFd(int fd, int events, FdHandler handler) override;
    bool ChangeFd(int fd, int events) override;
    void UnwatchFd(int fd) override;

    // Runs until Break() or until nothing is left to wait for (no armed
    // timer and no descriptor watched for any event). Returns 0 after
    // Break(), 1 when nothing was left, -1 on an error of the loop.
    int Run();
    // Runs one pass: waits for the first event (or not at all when
    // nonBlocking) and handles what is ready. Returns as libevent's
    // event_base_loop does: 0, 1 when nothing was pending, -1 on error.
    int RunOnce(bool nonBlocking);
    // As Run, but returns 0 at the latest after ms milliseconds of real time.
    int RunFor(unsigned int ms);
    // Makes the running Run/RunFor/RunOnce return after the current callback.
    void Break();

    event_base* Base() const { return m_base; }

private:
    struct TimerEvent;
    struct FdWatch;
    static void OnTimer(int, short, void* arg);
    static void OnFd(int fd, short what, void* arg);
    static void OnDeadline(int, short, void* arg);
    int Loop(const void* limit);
    bool HasWork() const;
    // Events are never freed inside their own callback: a disarmed timer or
    // a dropped watch is retired and freed later, outside of it.
    void FreeRetired();

    event_base* m_base;
    std::map<TimerBase*, std::unique_ptr<TimerEvent>> m_timers;
    std::map<int, std::unique_ptr<FdWatch>> m_fds;
    std::vector<std::unique_ptr<TimerEvent>> m_retiredTimers;
    std::vector<std::unique_ptr<FdWatch>> m_retiredFds;
    int m_callbackDepth = 0;
    bool m_break = false;
};

}  // namespace Zavrel

#endif
