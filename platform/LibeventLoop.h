// LibeventLoop: the real event loop of the application, on libevent.
#ifndef ZAVREL_PLATFORM_LIBEVENTLOOP_H
#define ZAVREL_PLATFORM_LIBEVENTLOOP_H

#include <cstdint>
#include <map>
#include <memory>

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

    // Runs until Break() or until nothing is left to wait for.
    int Run();
    // Runs one pass: waits for the first event (or not at all when
    // nonBlocking) and handles what is ready.
    int RunOnce(bool nonBlocking);
    // Runs for at most ms milliseconds of real time.
    int RunFor(unsigned int ms);
    void Break();

    event_base* Base() const { return m_base; }

private:
    struct TimerEvent;
    struct FdWatch;
    static void OnTimer(int, short, void* arg);
    static void OnFd(int fd, short what, void* arg);

    event_base* m_base;
    std::map<TimerBase*, std::unique_ptr<TimerEvent>> m_timers;
    std::map<int, std::unique_ptr<FdWatch>> m_fds;
};

}  // namespace Zavrel

#endif
