// KernelPlane: zavrel-router's link to Linux (--kernel). The embedded stack's
// forwarding table is mirrored into the kernel (KernelFib), kernel interfaces
// bound to VLANs feed the library (KernelLinks), and traffic arriving on a
// bound interface is routed through its VLAN's table (KernelRules).
//
// What the kernel says of a bound interface reaches the library through the
// application's own commands, exactly as typed by hand:
//   appears            interface add <vlan> <ifindex> <name> flags <flags> up|down
//   goes up / down     interface up|down <vlan> <ifindex> <name>
//   flags change       interface add ... (the row written again)
//   disappears         interface remove <vlan> <ifindex> <name>
//   address added      address add <vlan> <ifindex> <address>/<length>
//   address removed    address del <vlan> <ifindex> <address>/<length>
//
// Routes and rules of an earlier run are adopted at start and kept where the
// system wants them again; Settled removes the rest once the start-up
// commands have run. A clean exit (Stop) removes every route and rule of
// ours.
#ifndef ZAVREL_APP_KERNELPLANE_H
#define ZAVREL_APP_KERNELPLANE_H

#include <functional>
#include <memory>
#include <string>

#include "app/KernelLinks.h"
#include "app/KernelRules.h"
#include "platform/Timer.h"

namespace Zavrel {

namespace Emulator {
class KernelFib;
}

class KernelPlane : public KernelLinks::Listener {
public:
    // Runs one application command; false with the error when it failed.
    using CommandRunner = std::function<bool(const std::string& line, std::string& error)>;
    // Reports a line on the console.
    using Reporter = std::function<void(const std::string& line)>;

    KernelPlane(CommandRunner run, Reporter report);
    ~KernelPlane() override;
    KernelPlane(const KernelPlane&) = delete;
    KernelPlane& operator=(const KernelPlane&) = delete;

    // Opens the kernel sockets, puts the kernel forwarding table under the
    // stack and watches the kernel's notifications on the current loop.
    bool Start(std::string& error);
    bool IsStarted() const { return m_started; }

    bool Attach(unsigned short vlan, const std::string& name, std::string& error);
    bool Detach(unsigned short vlan, const std::string& name, std::string& error);
    // Binds the interfaces a file names:
    //   {"attach": [{"vlan": 10, "interface": "eth1"}, ...]}
    bool LoadBindings(const std::string& path, std::string& error);

    // The start-up commands have run: routes and rules of an earlier run that
    // nothing wants any more are removed.
    void Settled();
    // A clean exit: every route and rule of ours leaves the kernel.
    void Stop();

    // Reads the kernel's notifications now (the loop does it when they
    // arrive).
    void Poll();

    // KernelLinks::Listener
    void LinkAdded(unsigned short vlan, const KernelLink& link) override;
    void LinkChanged(unsigned short vlan, const KernelLink& before,
                     const KernelLink& after) override;
    void LinkGone(unsigned short vlan, const KernelLink& link) override;
    void AddressAdded(unsigned short vlan, const KernelAddress& address) override;
    void AddressRemoved(unsigned short vlan, const KernelAddress& address) override;

private:
    class RetryTimer : public OneShotTimer {
    public:
        explicit RetryTimer(KernelPlane& plane)
            : OneShotTimer("kernel-retry", nullptr), m_plane(plane) {}

    protected:
        void OnExpire(unsigned int, void*) override { m_plane.Retry(); }

    private:
        KernelPlane& m_plane;
    };

    void Run(const std::string& line);
    void Retry();
    void ArmRetry(long delayMs);

    CommandRunner m_run;
    Reporter m_report;
    KernelLinks m_links;
    KernelRules m_rules;
    Emulator::KernelFib* m_fib = nullptr;  // owned by the stack
    RetryTimer m_retry;
    bool m_started = false;
};

}  // namespace Zavrel

#endif
