#include "app/LoopDriver.h"

#include <algorithm>

namespace Zavrel {

LoopDriver::~LoopDriver() {
    if (m_installed != nullptr) {
        EventLoop::SetCurrent(m_previous);
    }
}

std::unique_ptr<LoopDriver> LoopDriver::Create(bool virtualTime) {
    if (virtualTime) {
        return std::make_unique<VirtualLoopDriver>();
    }
    auto real = std::make_unique<RealLoopDriver>();
    if (!real->IsValid()) {
        return nullptr;
    }
    return real;
}

void LoopDriver::Install(EventLoop& loop) {
    m_installed = &loop;
    m_previous = EventLoop::SetCurrent(&loop);
}

uint64_t LoopDriver::NowMs() const {
    return m_installed != nullptr ? m_installed->NowMs() : 0;
}

void LoopDriver::RunFor(uint64_t ms) {
    const uint64_t deadline = NowMs() + ms;
    do {
        Step(deadline);
    } while (NowMs() < deadline);
}

VirtualLoopDriver::VirtualLoopDriver() {
    Install(m_loop);
}

VirtualLoopDriver::~VirtualLoopDriver() = default;

void VirtualLoopDriver::Step(uint64_t deadline) {
    if (m_loop.RunDue() > 0) {
        return;
    }
    const uint64_t now = m_loop.NowMs();
    uint64_t due = 0;
    if (m_loop.NextDue(due) && due <= deadline) {
        m_loop.Advance(due > now ? due - now : 0);
    } else if (deadline > now) {
        m_loop.Advance(deadline - now);
    }
}

RealLoopDriver::RealLoopDriver() : m_wake("AppLoopWake", nullptr) {
    Install(m_loop);
}

RealLoopDriver::~RealLoopDriver() {
    m_wake.Stop();
}

void RealLoopDriver::Step(uint64_t deadline) {
    const uint64_t now = m_loop.NowMs();
    const uint64_t wait = deadline > now ? std::min<uint64_t>(deadline - now, MAX_WAIT_MS) : 0;
    // The wake timer bounds the wait even when nothing else is armed.
    m_wake.Start(static_cast<unsigned int>(wait));
    m_loop.RunOnce(false);
}

}  // namespace Zavrel
