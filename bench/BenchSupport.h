// BenchSupport: what the benchmarks that run the whole library against the
// stack emulator share: the process CPU clock, a trace sink that drops
// everything, the application's socket registry on a loop, and a way to let
// virtual time pass until something holds.
#ifndef ZAVREL_BENCH_BENCHSUPPORT_H
#define ZAVREL_BENCH_BENCHSUPPORT_H

#include <benchmark/benchmark.h>
#include <time.h>

#include <cstdint>

#include "platform/EventLoop.h"
#include "platform/Trace.h"
#include "platform/VirtualEventLoop.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel::bench {

inline uint64_t ClockNs(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000000000u + static_cast<uint64_t>(now.tv_nsec);
}

class QuietSink : public TraceSink {
public:
    bool Wants(int) const override { return false; }
    void Write(int, const char*) override {}
};

class NoIpInterface : public DcIpInterface {};

// The application's socket registry: descriptors are watched on the loop and
// handed back to the library when ready.
class LoopSockets : public DcSckInterface {
public:
    explicit LoopSockets(EventLoop& loop) : m_loop(loop) {}
    void RegisterSocket(int fd, int kind, int) override {
        m_loop.WatchFd(fd, kind == 2 ? EventLoop::WRITABLE : EventLoop::READABLE,
                       [](int ready, int events) {
                           DcRouterMgr::GetInstance()->SocketCallback(ready, events);
                       });
    }
    void UnregisterSocket(int fd, int) override { m_loop.UnwatchFd(fd); }
    void ChangeSocketMask(int fd, int kind) override {
        m_loop.ChangeFd(fd,
                        kind == 0 ? 0 : (kind == 2 ? EventLoop::WRITABLE : EventLoop::READABLE));
    }

private:
    EventLoop& m_loop;
};

// What a run of the whole system needs around it, for the length of one
// benchmark: traces dropped, a virtual loop as the current one, the socket
// registry on it and an IP interface that does nothing.
class BenchEnvironment {
public:
    BenchEnvironment()
        : m_previousSink(SetTraceSink(&m_quiet)), m_previousLoop(EventLoop::SetCurrent(&loop)) {}
    ~BenchEnvironment() {
        EventLoop::SetCurrent(m_previousLoop);
        SetTraceSink(m_previousSink);
    }
    BenchEnvironment(const BenchEnvironment&) = delete;
    BenchEnvironment& operator=(const BenchEnvironment&) = delete;

    VirtualEventLoop loop;
    LoopSockets sockets{loop};
    NoIpInterface ip;

private:
    QuietSink m_quiet;
    TraceSink* m_previousSink;
    EventLoop* m_previousLoop;
};

// The library and the stack are process-wide and never torn down, so a
// scenario can start them only once: true the first time; later calls mark
// the benchmark skipped with the reason and return false.
inline bool FirstRunInProcess(benchmark::State& state, const char* reason) {
    static bool ran = false;
    if (!ran) {
        ran = true;
        return true;
    }
    state.SkipWithError(reason);
    for (auto _ : state) {
    }
    return false;
}

// Advances the clock in steps until done() holds; returns false after limitMs.
template <typename Done>
bool AdvanceUntil(VirtualEventLoop& loop, uint64_t limitMs, Done done) {
    for (uint64_t waited = 0; waited < limitMs; waited += 10) {
        if (done()) {
            return true;
        }
        loop.Advance(10);
    }
    return done();
}

}  // namespace Zavrel::bench

#endif
