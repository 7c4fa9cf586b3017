// LoopSockets: the application's socket registry (DcSckInterface) over an
// event loop's descriptor watches; a ready descriptor goes to the router
// manager's SocketCallback.
#ifndef ZAVREL_TOOLS_LOOPSOCKETS_H
#define ZAVREL_TOOLS_LOOPSOCKETS_H

#include "platform/EventLoop.h"
#include "routing/DcRouterBase.h"

namespace Zavrel {

// The application's socket registry over an event loop's descriptor watches.
class LoopSockets : public DcSckInterface {
public:
    explicit LoopSockets(EventLoop& loop) : m_loop(loop) {}
    void RegisterSocket(int fd, int kind, int arg) override;
    void UnregisterSocket(int fd, int arg) override;
    void ChangeSocketMask(int fd, int kind) override;

private:
    static int Events(int kind);
    EventLoop& m_loop;
};

}  // namespace Zavrel

#endif
