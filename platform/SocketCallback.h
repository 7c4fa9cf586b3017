// The socket handler registry: the stack registers a handler for each of its
// descriptors; the application hands ready descriptors to InvokeCallback.
#ifndef ZAVREL_PLATFORM_SOCKETCALLBACK_H
#define ZAVREL_PLATFORM_SOCKETCALLBACK_H

namespace Zavrel {

using SocketHandler = void (*)(int fd, int events, void* context);

// Registers (or replaces) the handler of fd.
void RegisterSocketHandler(int fd, SocketHandler handler, void* context);
void UnregisterSocketHandler(int fd);
bool HasSocketHandler(int fd);

// Hands a ready descriptor and its ready events to its handler. Returns 1
// when a handler ran, 0 when fd has none.
int InvokeCallback(int fd, int events);

}  // namespace Zavrel

#endif
