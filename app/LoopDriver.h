// LoopDriver: runs the application's event loop in small steps, on the
// virtual clock (scripts that run at once and repeat exactly) or on real
// time with libevent. The driver installs its loop as the current one for
// the lifetime of the driver.
#ifndef ZAVREL_APP_LOOPDRIVER_H
#define ZAVREL_APP_LOOPDRIVER_H

#include <cstdint>
#include <memory>

#include "platform/EventLoop.h"
#include "platform/LibeventLoop.h"
#include "platform/Timer.h"
#include "platform/VirtualEventLoop.h"

namespace Zavrel {

class LoopDriver {
public:
    virtual ~LoopDriver();

    // A driver for the virtual clock or for libevent; null when the real
    // loop cannot be created.
    static std::unique_ptr<LoopDriver> Create(bool virtualTime);

    virtual EventLoop& Loop() = 0;
    virtual bool IsVirtual() const = 0;
    uint64_t NowMs() const;
    // Handles what is due or ready, waiting for it at most until deadline
    // (on the loop's clock). On the virtual clock one step fires the next
    // due timer, or moves the clock to the deadline when none falls due
    // before it.
    virtual void Step(uint64_t deadline) = 0;
    // Lets ms milliseconds pass on the loop's clock, running everything that
    // falls due.
    void RunFor(uint64_t ms);

protected:
    LoopDriver() = default;
    void Install(EventLoop& loop);

private:
    EventLoop* m_installed = nullptr;
    EventLoop* m_previous = nullptr;
};

class VirtualLoopDriver : public LoopDriver {
public:
    VirtualLoopDriver();
    ~VirtualLoopDriver() override;
    EventLoop& Loop() override { return m_loop; }
    bool IsVirtual() const override { return true; }
    void Step(uint64_t deadline) override;
    VirtualEventLoop& Virtual() { return m_loop; }

private:
    VirtualEventLoop m_loop;
};

class RealLoopDriver : public LoopDriver {
public:
    RealLoopDriver();
    ~RealLoopDriver() override;
    bool IsValid() const { return m_loop.IsValid(); }
    EventLoop& Loop() override { return m_loop; }
    bool IsVirtual() const override { return false; }
    void Step(uint64_t deadline) override;
    LibeventLoop& Real() { return m_loop; }

    // Longest single wait of a step, so that the caller looks at the system
    // at least this often.
    static constexpr unsigned int MAX_WAIT_MS = 20;

private:
    LibeventLoop m_loop;
    OneShotTimer m_wake;
};

}  // namespace Zavrel

#endif
