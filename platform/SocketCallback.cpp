#include "platform/SocketCallback.h"

#include <map>

namespace Zavrel {

namespace {

struct Registration {
    SocketHandler handler;
    void* context;
};

std::map<int, Registration>& Registry() {
    static auto* registry = new std::map<int, Registration>();
    return *registry;
}

}  // namespace

void RegisterSocketHandler(int fd, SocketHandler handler, void* context) {
    if (handler == nullptr) {
        UnregisterSocketHandler(fd);
        return;
    }
    Registry()[fd] = Registration{handler, context};
}

void UnregisterSocketHandler(int fd) {
    Registry().erase(fd);
}

bool HasSocketHandler(int fd) {
    return Registry().count(fd) != 0;
}

int InvokeCallback(int fd, int events) {
    auto& registry = Registry();
    auto it = registry.find(fd);
    if (it == registry.end()) {
        return 0;
    }
    const Registration registration = it->second;
    registration.handler(fd, events, registration.context);
    return 1;
}

}  // namespace Zavrel
