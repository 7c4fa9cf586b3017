#include "platform/EventLoop.h"

#include "platform/VirtualEventLoop.h"

namespace Zavrel {

namespace {

EventLoop* g_current = nullptr;

// Created on first use and kept for the life of the process, so timers
// owned by other long-lived objects never outlive their loop.
EventLoop& DefaultLoop() {
    static VirtualEventLoop* loop = new VirtualEventLoop();
    return *loop;
}

}  // namespace

EventLoop::~EventLoop() {
    if (g_current == this) {
        g_current = nullptr;
    }
}

EventLoop& EventLoop::Current() {
    return g_current != nullptr ? *g_current : DefaultLoop();
}

EventLoop* EventLoop::SetCurrent(EventLoop* loop) {
    EventLoop* previous = g_current;
    g_current = loop;
    return previous;
}

}  // namespace Zavrel
