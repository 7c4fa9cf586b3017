#include "platform/VirtualEventLoop.h"

#include <poll.h>

#include <vector>

#include "platform/Timer.h"

namespace Zavrel {

VirtualEventLoop::VirtualEventLoop() = default;

VirtualEventLoop::~VirtualEventLoop() {
    // Timers still armed here become idle; they must not call back into a
    // loop that no longer exists.
    for (const auto& entry : m_armed) {
        entry.first->LoopGone();
    }
}

void VirtualEventLoop::ArmTimer(TimerBase* timer, unsigned int delayMs) {
    if (timer == nullptr) {
        return;
    }
    DisarmTimer(timer);
    const Key key(m_now + delayMs, m_sequence++, timer);
    m_queue.insert(key);
    m_armed[timer] = key;
}

void VirtualEventLoop::DisarmTimer(TimerBase* timer) {
    auto it = m_armed.find(timer);
    if (it == m_armed.end()) {
        return;
    }
    m_queue.erase(it->second);
    m_armed.erase(it);
}

bool VirtualEventLoop::WatchFd(int fd, int events, FdHandler handler) {
    if (fd < 0 || !handler || (events & ~(READABLE | WRITABLE)) != 0) {
        return false;
    }
    m_fds[fd] = Watch{events, std::move(handler)};
    return true;
}

bool VirtualEventLoop::ChangeFd(int fd, int events) {
    auto it = m_fds.find(fd);
    if (it == m_fds.end() || (events & ~(READABLE | WRITABLE)) != 0) {
        return false;
    }
    it->second.events = events;
    return true;
}

void VirtualEventLoop::UnwatchFd(int fd) {
    m_fds.erase(fd);
}

int VirtualEventLoop::WatchedEvents(int fd) const {
    auto it = m_fds.find(fd);
    return it != m_fds.end() ? it->second.events : 0;
}

bool VirtualEventLoop::NextDue(uint64_t& dueMs) const {
    if (m_queue.empty()) {
        return false;
    }
    dueMs = std::get<0>(*m_queue.begin());
    return true;
}

bool VirtualEventLoop::IsArmed(const TimerBase* timer) const {
    return m_armed.count(const_cast<TimerBase*>(timer)) != 0;
}

bool VirtualEventLoop::FireNext(uint64_t limit) {
    if (m_queue.empty()) {
        return false;
    }
    const Key key = *m_queue.begin();
    const uint64_t due = std::get<0>(key);
    if (due > limit) {
        return false;
    }
    TimerBase* timer = std::get<2>(key);
    m_queue.erase(m_queue.begin());
    m_armed.erase(timer);
    if (due > m_now) {
        m_now = due;
    }
    timer->Expire();
    return true;
}

size_t VirtualEventLoop::Advance(uint64_t ms) {
    const uint64_t target = ms > UINT64_MAX - m_now ? UINT64_MAX : m_now + ms;
    size_t fired = 0;
    for (;;) {
        DispatchReadyFds();
        if (!FireNext(target)) {
            break;
        }
        ++fired;
    }
    m_now = target;
    return fired;
}

size_t VirtualEventLoop::RunDue() {
    return Advance(0);
}

size_t VirtualEventLoop::DispatchReadyFds() {
    if (m_fds.empty()) {
        return 0;
    }
    std::vector<pollfd> polled;
    polled.reserve(m_fds.size());
    for (const auto& entry : m_fds) {
        short events = 0;
        if ((entry.second.events & READABLE) != 0) {
            events |= POLLIN;
        }
        if ((entry.second.events & WRITABLE) != 0) {
            events |= POLLOUT;
        }
        if (events != 0) {
            polled.push_back(pollfd{entry.first, events, 0});
        }
    }
    if (polled.empty() || poll(polled.data(), polled.size(), 0) <= 0) {
        return 0;
    }
    size_t called = 0;
    for (const pollfd& p : polled) {
        // A handler may have unwatched or changed this descriptor meanwhile.
        auto it = m_fds.find(p.fd);
        if (it == m_fds.end()) {
            continue;
        }
        int ready = 0;
        if ((p.revents & (POLLIN | POLLHUP | POLLERR)) != 0) {
            ready |= READABLE;
        }
        if ((p.revents & (POLLOUT | POLLERR)) != 0) {
            ready |= WRITABLE;
        }
        ready &= it->second.events;
        if (ready == 0) {
            continue;
        }
        // The handler may unwatch its own descriptor: call a copy.
        FdHandler handler = it->second.handler;
        handler(p.fd, ready);
        ++called;
    }
    return called;
}

}  // namespace Zavrel
