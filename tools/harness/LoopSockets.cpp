// LoopSockets: descriptor watches for the stack's sockets.
#include "harness/LoopSockets.h"

#include "routing/DcRouterMgr.h"

namespace Zavrel {

void LoopSockets::RegisterSocket(int fd, int kind, int) {
    m_loop.WatchFd(fd, Events(kind), [](int ready, int events) {
        if (DcRouterMgr* manager = DcRouterMgr::GetInstance()) {
            manager->SocketCallback(ready, events);
        }
    });
}

void LoopSockets::UnregisterSocket(int fd, int) {
    m_loop.UnwatchFd(fd);
}

void LoopSockets::ChangeSocketMask(int fd, int kind) {
    m_loop.ChangeFd(fd, Events(kind));
}

int LoopSockets::Events(int kind) {
    return kind == 1 ? EventLoop::READABLE : kind == 2 ? EventLoop::WRITABLE : 0;
}

}  // namespace Zavrel
