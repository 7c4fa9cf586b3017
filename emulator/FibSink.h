// FibSink: where the stack's forwarding decisions go. Each RTM instance tells
// the sink, per destination, the route it now installs or that it installs
// none any more; the sink gathers those changes during a scheduler run and
// applies them at the end of the run (Commit). A destination changed several
// times in one run is applied once, with its final route, and a RIB rebuilt
// from scratch changes nothing that stayed the same.
//
// The sink keeps the forwarding table as last committed; an implementation
// is handed only the differences (Apply). MemoryFib keeps nothing more: the
// committed table is the forwarding table. KernelFib mirrors it into Linux.
#ifndef ZAVREL_EMULATOR_FIBSINK_H
#define ZAVREL_EMULATOR_FIBSINK_H

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <json/value.h>

#include "emulator/IpAddress.h"
#include "emulator/Rib.h"

namespace Zavrel::Emulator {

// One destination of one forwarding table. Both RTM instances of a VLAN (IPv4
// and IPv6) share its table number: the VLAN id.
struct FibKey {
    unsigned long table = 0;
    IpAddress destination;
    unsigned long prefixLength = 0;

    friend bool operator<(const FibKey& a, const FibKey& b) {
        return std::tie(a.table, a.destination, a.prefixLength) <
               std::tie(b.table, b.destination, b.prefixLength);
    }
    friend bool operator==(const FibKey& a, const FibKey& b) {
        return a.table == b.table && a.destination == b.destination &&
               a.prefixLength == b.prefixLength;
    }
};

// What a destination is forwarded to. A zero next hop means directly
// attached (a connected prefix, or a route out of an interface).
struct FibRoute {
    IpAddress nextHop;
    unsigned long ifIndex = 0;
    RouteSource source = RouteSource::Static;

    friend bool operator==(const FibRoute& a, const FibRoute& b) {
        return a.nextHop == b.nextHop && a.ifIndex == b.ifIndex && a.source == b.source;
    }
    friend bool operator!=(const FibRoute& a, const FibRoute& b) { return !(a == b); }
};

// The table of an RTM instance: its id without the IPv6 bit 0x8000.
unsigned long FibTableOf(unsigned long instance);
FibKey FibKeyOf(unsigned long instance, const RibEntry& entry);
FibRoute FibRouteOf(const RibEntry& entry);

class FibSink {
public:
    struct Change {
        FibKey key;
        std::optional<FibRoute> before;  // none: the destination is new
        std::optional<FibRoute> after;   // none: the destination is withdrawn
    };

    virtual ~FibSink();

    // Queues the route the destination now has (null: none).
    void Set(const FibKey& key, const FibRoute* route);
    bool HasPending() const { return !m_pending.empty(); }
    // Applies what was queued and differs from the committed table.
    void Commit();
    // Forgets the committed table without applying anything (the stack was
    // reset).
    void Forget();

    const std::map<FibKey, FibRoute>& Committed() const { return m_committed; }
    const FibRoute* Find(const FibKey& key) const;

    // What the sink has to say of a destination in the table dump ("" for
    // nothing; a kernel sink gives the kernel's refusal).
    virtual std::string Describe(const FibKey& key) const;
    // Lines added to the stack's status text ("" for none).
    virtual std::string StatusText() const;
    // The same as members of the status document (none by default).
    virtual void StatusJson(Json::Value& status) const;
    // The stack's interfaces or addresses changed (routes refused for want
    // of them may now be accepted).
    virtual void InterfacesChanged();

protected:
    virtual void Apply(const std::vector<Change>& changes) = 0;
    // Called at the end of every Commit, changes or not.
    virtual void OnCommitted();

private:
    std::map<FibKey, std::optional<FibRoute>> m_pending;
    std::map<FibKey, FibRoute> m_committed;
};

// The forwarding table in the stack's memory only: nothing beyond the
// committed table.
class MemoryFib final : public FibSink {
protected:
    void Apply(const std::vector<Change>& changes) override;
};

}  // namespace Zavrel::Emulator

#endif
