#include "app/LoopSocketInterface.h"

#include "platform/Trace.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

LoopSocketInterface::LoopSocketInterface(EventLoop& loop) : m_loop(loop) {}

LoopSocketInterface::~LoopSocketInterface() {
    for (const auto& entry : m_sockets) {
        m_loop.UnwatchFd(entry.first);
    }
}

int LoopSocketInterface::EventsOfKind(int kind) {
    switch (kind) {
        case 1:
            return EventLoop::READABLE;
        case 2:
            return EventLoop::WRITABLE;
        case 3:
            // The loops know only readable and writable; exceptional conditions
            // show up as readable.
            return EventLoop::READABLE;
        default:
            return 0;
    }
}

int LoopSocketInterface::KindOf(int fd) const {
    auto it = m_sockets.find(fd);
    return it == m_sockets.end() ? -1 : it->second.kind;
}

void LoopSocketInterface::RegisterSocket(int fd, int kind, int arg) {
    TRACE(10, "LoopSocketInterface::RegisterSocket: fd %d kind %d\n", fd, kind);
    m_sockets[fd] = Socket{kind, arg};
    Watch(fd, kind);
}

void LoopSocketInterface::UnregisterSocket(int fd, int /*arg*/) {
    TRACE(10, "LoopSocketInterface::UnregisterSocket: fd %d\n", fd);
    if (m_sockets.erase(fd) != 0) {
        m_loop.UnwatchFd(fd);
    }
}

void LoopSocketInterface::ChangeSocketMask(int fd, int kind) {
    TRACE(10, "LoopSocketInterface::ChangeSocketMask: fd %d kind %d\n", fd, kind);
    auto it = m_sockets.find(fd);
    if (it == m_sockets.end()) {
        TRACE(1, "LoopSocketInterface::ChangeSocketMask: fd %d is not registered\n", fd);
        return;
    }
    it->second.kind = kind;
    Watch(fd, kind);
}

void LoopSocketInterface::Watch(int fd, int kind) {
    const int events = EventsOfKind(kind);
    if (events == 0) {
        // Registered, but the stack wants nothing from it for now.
        m_loop.UnwatchFd(fd);
        return;
    }
    if (!m_loop.WatchFd(fd, events,
                        [this](int readyFd, int readyEvents) { OnReady(readyFd, readyEvents); })) {
        TRACE(0, "LoopSocketInterface: cannot watch fd %d\n", fd);
    }
}

void LoopSocketInterface::OnReady(int fd, int events) {
    ++m_callbacks;
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager != nullptr) {
        manager->SocketCallback(fd, events);
    }
}

}  // namespace Zavrel
