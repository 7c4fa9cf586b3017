// Rib: the routing information base of one RTM instance. It holds every
// candidate route per destination (destination address and prefix length)
// and marks the one installed in the forwarding table: among the resolved
// candidates the lowest administrative distance wins, then the lowest
// metric, then the first in table order. Unresolved candidates stay in the
// RIB but are never installed.
#ifndef ZAVREL_EMULATOR_RIB_H
#define ZAVREL_EMULATOR_RIB_H

#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

#include "emulator/IpAddress.h"

namespace Zavrel::Emulator {

// Where a candidate route comes from.
enum class RouteSource { Connected = 0, Static, Rip, OspfInternal, OspfExternal, Ebgp, Ibgp };
// IANA route protocol code of a source: 2 local, 3 static, 8 rip, 13 ospf, 14 bgp.
unsigned long ProtocolCode(RouteSource source);
// "connected", "static", "rip", "ospf-internal", "ospf-external", "ebgp", "ibgp".
const char* RouteSourceName(RouteSource source);

// Route types of the stack's rows.
constexpr unsigned long ROUTE_TYPE_LOCAL = 3;
constexpr unsigned long ROUTE_TYPE_REMOTE = 4;

struct RibEntry {
    IpAddress destination;
    unsigned long prefixLength = 0;
    IpAddress nextHop;
    unsigned long ifIndex = 0;  // the resolved interface (0 while unresolved)
    RouteSource source = RouteSource::Static;
    unsigned long distance = 0;
    unsigned long metric = 0;
    unsigned long routeType = ROUTE_TYPE_REMOTE;
    uint64_t sinceMs = 0;  // clock time the candidate appeared
    bool fib = false;
    bool unresolved = false;
};

class Rib {
public:
    // Table order: destination, prefix length, next hop, ifIndex, source.
    using Key = std::tuple<IpAddress, unsigned long, IpAddress, unsigned long, int>;
    static Key KeyOf(const RibEntry& entry);

    // Replaces every candidate of the destination by these and installs the
    // best one.
    void SetDestination(const IpAddress& destination, unsigned long prefixLength,
                        std::vector<RibEntry> candidates);
    void Clear() {
        m_entries.clear();
        m_fibCount = 0;
    }

    const std::map<Key, RibEntry>& Entries() const { return m_entries; }
    size_t Size() const { return m_entries.size(); }
    size_t FibCount() const { return m_fibCount; }
    // The installed route of a destination, or null.
    const RibEntry* Installed(const IpAddress& destination, unsigned long prefixLength) const;

private:
    std::map<Key, RibEntry>::const_iterator First(const IpAddress& destination,
                                                  unsigned long prefixLength) const;

    std::map<Key, RibEntry> m_entries;
    size_t m_fibCount = 0;
};

}  // namespace Zavrel::Emulator

#endif
