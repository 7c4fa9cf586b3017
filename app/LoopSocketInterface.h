// LoopSocketInterface: the application's socket registry for the library.
// The stack's descriptors are watched by the application's event loop; when
// one is ready it is handed back to the library (DcRouterMgr::SocketCallback),
// which passes it on to the stack's handler.
#ifndef ZAVREL_APP_LOOPSOCKETINTERFACE_H
#define ZAVREL_APP_LOOPSOCKETINTERFACE_H

#include <map>

#include "platform/EventLoop.h"
#include "routing/DcRouterBase.h"

namespace Zavrel {

class LoopSocketInterface : public DcSckInterface {
public:
    explicit LoopSocketInterface(EventLoop& loop);
    ~LoopSocketInterface() override;
    LoopSocketInterface(const LoopSocketInterface&) = delete;
    LoopSocketInterface& operator=(const LoopSocketInterface&) = delete;

    void RegisterSocket(int fd, int kind, int arg) override;
    void UnregisterSocket(int fd, int arg) override;
    void ChangeSocketMask(int fd, int kind) override;

    // The loop events watched for an event kind of the library: 1 readable,
    // 2 writable, 3 (exceptional conditions) readable, anything else none.
    static int EventsOfKind(int kind);

    size_t RegisteredCount() const { return m_sockets.size(); }
    // Event kind of a registered descriptor, -1 when it is not registered.
    int KindOf(int fd) const;
    unsigned long CallbackCount() const { return m_callbacks; }

private:
    struct Socket {
        int kind;
        int arg;
    };
    void Watch(int fd, int kind);
    void OnReady(int fd, int events);

    EventLoop& m_loop;
    std::map<int, Socket> m_sockets;
    unsigned long m_callbacks = 0;
};

}  // namespace Zavrel

#endif
