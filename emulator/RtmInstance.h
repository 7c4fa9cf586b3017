// RtmInstance: one routing table manager instance of the stack (a VLAN's
// IPv4 instance, or its IPv6 instance with bit 0x8000). It holds the
// instance's settings, its static route rows, its redistribution rows, the
// routes that protocols have handed it, and its RIB, which it keeps in step
// with those sources and with the connected prefixes of its interfaces.
#ifndef ZAVREL_EMULATOR_RTMINSTANCE_H
#define ZAVREL_EMULATOR_RTMINSTANCE_H

#include <cstdint>
#include <map>
#include <set>
#include <tuple>
#include <utility>
#include <vector>

#include "emulator/FibSink.h"
#include "emulator/InterfaceTable.h"
#include "emulator/IpAddress.h"
#include "emulator/Rib.h"
#include "stackapi/stackapi.h"

namespace Zavrel::Emulator {

// Starting: created, its settings not yet fetched from the library.
// Ready: settings fetched, cSetRtmReady reported. Unknown: the library did
// not know the instance when asked (it stays not ready until started again).
enum class RtmState { Starting = 0, Ready, Unknown };
const char* RtmStateName(RtmState state);

struct StaticRoute {
    IpAddress destination;
    unsigned long prefixLength = 0;
    IpAddress nextHop;
    unsigned long ifIndex = 0;
    long adminStatus = 1;
    unsigned long metric = 0;
    long pathType = 0;
    uint64_t sinceMs = 0;  // clock time the route last became a candidate
};

struct RedistributionRow {
    long source = 0;
    long destination = 0;
    long adminStatus = 1;
    unsigned long extra = 0;
};

struct ProtocolRoute {
    RouteSource source = RouteSource::Rip;
    IpAddress destination;
    unsigned long prefixLength = 0;
    IpAddress nextHop;
    unsigned long ifIndex = 0;
    unsigned long metric = 0;
    uint64_t sinceMs = 0;
};

class RtmInstance {
public:
    // destination, prefix length, next hop, ifIndex
    using RouteKey = std::tuple<IpAddress, unsigned long, IpAddress, unsigned long>;
    using RedistKey = std::pair<long, long>;  // source, destination
    // destination, prefix length, source, next hop, ifIndex
    using ProtocolKey = std::tuple<IpAddress, unsigned long, int, IpAddress, unsigned long>;

    RtmInstance(unsigned long id, const amb_cipr_rtm_entity& requested);

    unsigned long Id() const { return m_id; }
    // IpAddress::IPV6 when the id carries bit 0x8000, else IpAddress::IPV4.
    int Family() const { return m_family; }

    RtmState State() const { return m_state; }
    void SetState(RtmState state) { m_state = state; }
    bool IsReady() const { return m_state == RtmState::Ready; }

    // The settings of the last sms_cipr_start, and those the library gave
    // when asked (these decide the distances).
    const amb_cipr_rtm_entity& Requested() const { return m_requested; }
    void SetRequested(const amb_cipr_rtm_entity& entity) { m_requested = entity; }
    const amb_cipr_rtm_entity& Settings() const { return m_settings; }
    void ApplySettings(const amb_cipr_rtm_entity& entity);

    // Administrative distance of a source: connected 0, static 1, the
    // protocols from the settings.
    unsigned long Distance(RouteSource source) const;

    // Static route rows. Row status 1 or 4 creates or updates the row, 6
    // destroys it (RESULT_NO_ROW when absent). The caller has checked the
    // values.
    unsigned long ApplyStaticRoute(long rowStatus, long adminStatus, const IpAddress& destination,
                                   unsigned long prefixLength, const IpAddress& nextHop,
                                   unsigned long ifIndex, unsigned long metric, long pathType,
                                   uint64_t nowMs);
    const std::map<RouteKey, StaticRoute>& StaticRoutes() const { return m_static; }

    // Redistribution rows: 1 or 4 creates or updates, 6 destroys
    // (RESULT_NO_ROW when absent).
    unsigned long ApplyRedistribution(long rowStatus, long adminStatus, long source,
                                      long destination, unsigned long extra);
    const std::map<RedistKey, RedistributionRow>& Redistributions() const { return m_redist; }

    // Routes handed over by a protocol; withdrawing an absent one does nothing.
    void AddProtocolRoute(const ProtocolRoute& route);
    void RemoveProtocolRoute(const ProtocolRoute& route);
    const std::map<ProtocolKey, ProtocolRoute>& ProtocolRoutes() const { return m_protocol; }

    // The interface tables of this instance changed: every route must be
    // resolved again.
    void MarkAllDirty() { m_rebuild = true; }
    bool IsDirty() const { return m_rebuild || !m_dirty.empty(); }
    // Brings the RIB up to date with the sources and the connected prefixes,
    // and tells the forwarding table every destination whose installed route
    // changed.
    void Refresh(const std::vector<ConnectedPrefix>& connected, FibSink& fib);
    // Tells the forwarding table that none of this instance's routes is
    // installed any more (the instance goes away).
    void WithdrawAll(FibSink& fib) const;
    const Rib& GetRib() const { return m_rib; }

private:
    void Recompute(const IpAddress& destination, unsigned long prefixLength,
                   const std::vector<ConnectedPrefix>& connected, FibSink& fib);
    // Resolves a next hop over the connected prefixes; sets entry.ifIndex
    // and entry.unresolved.
    static void Resolve(RibEntry& entry, unsigned long requestedIfIndex,
                        const std::vector<ConnectedPrefix>& connected);

    unsigned long m_id;
    int m_family;
    RtmState m_state = RtmState::Starting;
    amb_cipr_rtm_entity m_requested;
    amb_cipr_rtm_entity m_settings;
    std::map<RouteKey, StaticRoute> m_static;
    std::map<RedistKey, RedistributionRow> m_redist;
    std::map<ProtocolKey, ProtocolRoute> m_protocol;
    std::set<std::pair<IpAddress, unsigned long>> m_dirty;
    bool m_rebuild = true;
    Rib m_rib;
};

}  // namespace Zavrel::Emulator

#endif
