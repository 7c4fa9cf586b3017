#include "platform/LibeventLoop.h"

#include <event2/event.h>
#include <sys/time.h>

#include <ctime>

#include "platform/Timer.h"

namespace Zavrel {

struct LibeventLoop::TimerEvent {
    TimerEvent(LibeventLoop* l, TimerBase* t) : loop(l), timer(t) {}
    ~TimerEvent() {
        if (ev != nullptr) {
            event_free(ev);
        }
    }
    LibeventLoop* loop;
    TimerBase* timer;
    event* ev = nullptr;
};

struct LibeventLoop::FdWatch {
    FdWatch(LibeventLoop* l, int f, int e, FdHandler h)
        : loop(l), fd(f), events(e), handler(std::move(h)) {}
    ~FdWatch() {
        if (ev != nullptr) {
            event_free(ev);
        }
    }
    LibeventLoop* loop;
    int fd;
    int events;
    FdHandler handler;
    event* ev = nullptr;
};

namespace {

timeval ToTimeval(unsigned int ms) {
    timeval tv;
    tv.tv_sec = static_cast<time_t>(ms / 1000u);
    tv.tv_usec = static_cast<suseconds_t>((ms % 1000u) * 1000u);
    return tv;
}

}  // namespace

namespace {
// libevent's default clock is the coarse monotonic clock (a few ms of
// granularity), with which a timer can fire before its interval has passed
// on NowMs's clock. Ask for the precise clock.
event_base* NewPreciseBase() {
    event_config* config = event_config_new();
    if (config == nullptr) {
        return event_base_new();
    }
    event_config_set_flag(config, EVENT_BASE_FLAG_PRECISE_TIMER);
    event_base* base = event_base_new_with_config(config);
    event_config_free(config);
    return base != nullptr ? base : event_base_new();
}
}  // namespace

LibeventLoop::LibeventLoop() : m_base(NewPreciseBase()) {}

LibeventLoop::~LibeventLoop() {
    // Timers still armed become idle without calling back into this loop.
    for (auto& entry : m_timers) {
        entry.first->LoopGone();
    }
    m_timers.clear();
    m_fds.clear();
    m_retiredTimers.clear();
    m_retiredFds.clear();
    if (m_base != nullptr) {
        event_base_free(m_base);
    }
}

uint64_t LibeventLoop::NowMs() const {
    timespec ts;
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<uint64_t>(ts.tv_sec) * 1000u + static_cast<uint64_t>(ts.tv_nsec) / 1000000u;
}

void LibeventLoop::FreeRetired() {
    m_retiredTimers.clear();
    m_retiredFds.clear();
}

void LibeventLoop::ArmTimer(TimerBase* timer, unsigned int delayMs) {
    if (m_base == nullptr || timer == nullptr) {
        return;
    }
    if (m_callbackDepth == 0) {
        FreeRetired();
    }
    const timeval tv = ToTimeval(delayMs);
    auto it = m_timers.find(timer);
    if (it == m_timers.end()) {
        auto entry = std::make_unique<TimerEvent>(this, timer);
        entry->ev = evtimer_new(m_base, &LibeventLoop::OnTimer, entry.get());
        if (entry->ev == nullptr) {
            return;
        }
        it = m_timers.emplace(timer, std::move(entry)).first;
    }
    // Adding a pending timer again replaces its due time.
    evtimer_add(it->second->ev, &tv);
}

void LibeventLoop::DisarmTimer(TimerBase* timer) {
    auto it = m_timers.find(timer);
    if (it == m_timers.end()) {
        return;
    }
    evtimer_del(it->second->ev);
    m_retiredTimers.push_back(std::move(it->second));
    m_timers.erase(it);
    if (m_callbackDepth == 0) {
        FreeRetired();
    }
}

void LibeventLoop::OnTimer(int, short, void* arg) {
    auto* entry = static_cast<TimerEvent*>(arg);
    LibeventLoop* loop = entry->loop;
    TimerBase* timer = entry->timer;
    loop->FreeRetired();
    // The fired event is done; a periodic timer gets a new one when Expire
    // re-arms it.
    auto it = loop->m_timers.find(timer);
    if (it != loop->m_timers.end()) {
        loop->m_retiredTimers.push_back(std::move(it->second));
        loop->m_timers.erase(it);
    }
    ++loop->m_callbackDepth;
    timer->Expire();
    --loop->m_callbackDepth;
}

bool LibeventLoop::WatchFd(int fd, int events, FdHandler handler) {
    if (m_base == nullptr || fd < 0 || !handler || (events & ~(READABLE | WRITABLE)) != 0) {
        return false;
    }
    auto watch = std::make_unique<FdWatch>(this, fd, events, std::move(handler));
    if (events != 0) {
        short what = EV_PERSIST;
        if ((events & READABLE) != 0) {
            what |= EV_READ;
        }
        if ((events & WRITABLE) != 0) {
            what |= EV_WRITE;
        }
        watch->ev = event_new(m_base, fd, what, &LibeventLoop::OnFd, watch.get());
        if (watch->ev == nullptr || event_add(watch->ev, nullptr) != 0) {
            return false;
        }
    }
    UnwatchFd(fd);
    m_fds.emplace(fd, std::move(watch));
    return true;
}

bool LibeventLoop::ChangeFd(int fd, int events) {
    auto it = m_fds.find(fd);
    if (it == m_fds.end()) {
        return false;
    }
    FdHandler handler = it->second->handler;
    return WatchFd(fd, events, std::move(handler));
}

void LibeventLoop::UnwatchFd(int fd) {
    auto it = m_fds.find(fd);
    if (it == m_fds.end()) {
        return;
    }
    if (it->second->ev != nullptr) {
        event_del(it->second->ev);
    }
    m_retiredFds.push_back(std::move(it->second));
    m_fds.erase(it);
    if (m_callbackDepth == 0) {
        FreeRetired();
    }
}

void LibeventLoop::OnFd(int fd, short what, void* arg) {
    auto* watch = static_cast<FdWatch*>(arg);
    LibeventLoop* loop = watch->loop;
    loop->FreeRetired();
    int ready = 0;
    if ((what & EV_READ) != 0) {
        ready |= READABLE;
    }
    if ((what & EV_WRITE) != 0) {
        ready |= WRITABLE;
    }
    // The handler may drop or replace its own watch: call a copy.
    FdHandler handler = watch->handler;
    ++loop->m_callbackDepth;
    handler(fd, ready);
    --loop->m_callbackDepth;
}

void LibeventLoop::OnDeadline(int, short, void* arg) {
    *static_cast<bool*>(arg) = true;
}

bool LibeventLoop::HasWork() const {
    if (!m_timers.empty()) {
        return true;
    }
    for (const auto& entry : m_fds) {
        if (entry.second->ev != nullptr) {
            return true;
        }
    }
    return false;
}

int LibeventLoop::Loop(const void* limit) {
    if (m_base == nullptr) {
        return -1;
    }
    m_break = false;
    bool expired = false;
    event* deadline = nullptr;
    if (limit != nullptr) {
        deadline = evtimer_new(m_base, &LibeventLoop::OnDeadline, &expired);
        if (deadline == nullptr) {
            return -1;
        }
        evtimer_add(deadline, static_cast<const timeval*>(limit));
    }
    int result = 0;
    for (;;) {
        if (m_break || expired) {
            result = 0;
            break;
        }
        if (!HasWork()) {
            result = 1;
            break;
        }
        if (event_base_loop(m_base, EVLOOP_ONCE) < 0) {
            result = -1;
            break;
        }
        if (m_callbackDepth == 0) {
            FreeRetired();
        }
    }
    if (deadline != nullptr) {
        event_free(deadline);
    }
    m_break = false;
    return result;
}

int LibeventLoop::Run() {
    return Loop(nullptr);
}

int LibeventLoop::RunFor(unsigned int ms) {
    const timeval tv = ToTimeval(ms);
    return Loop(&tv);
}

int LibeventLoop::RunOnce(bool nonBlocking) {
    if (m_base == nullptr) {
        return -1;
    }
    const int result =
        event_base_loop(m_base, nonBlocking ? (EVLOOP_ONCE | EVLOOP_NONBLOCK) : EVLOOP_ONCE);
    if (m_callbackDepth == 0) {
        FreeRetired();
    }
    return result;
}

void LibeventLoop::Break() {
    m_break = true;
    if (m_base != nullptr) {
        event_base_loopbreak(m_base);
    }
}

}  // namespace Zavrel
