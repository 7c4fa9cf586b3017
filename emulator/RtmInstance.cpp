#include "emulator/RtmInstance.h"

#include <optional>

#include "emulator/EmulatorTypes.h"

namespace Zavrel::Emulator {

const char* RtmStateName(RtmState state) {
    switch (state) {
        case RtmState::Starting:
            return "starting";
        case RtmState::Ready:
            return "ready";
        case RtmState::Unknown:
            return "unknown to the library";
    }
    return "?";
}

RtmInstance::RtmInstance(unsigned long id, const amb_cipr_rtm_entity& requested)
    : m_id(id),
      m_family((id & IP6_INSTANCE_BIT) != 0 ? IpAddress::IPV6 : IpAddress::IPV4),
      m_requested(requested),
      m_settings(requested) {}

void RtmInstance::ApplySettings(const amb_cipr_rtm_entity& entity) {
    m_settings = entity;
    // Distances decide every destination again.
    m_rebuild = true;
}

unsigned long RtmInstance::Distance(RouteSource source) const {
    switch (source) {
        case RouteSource::Connected:
            return 0;
        case RouteSource::Static:
            return 1;
        case RouteSource::Rip:
            return m_settings.rip_distance;
        case RouteSource::OspfInternal:
            return m_settings.ospf_int_distance;
        case RouteSource::OspfExternal:
            return m_settings.ospf_ext_distance;
        case RouteSource::Ebgp:
            return m_settings.ebgp_distance;
        case RouteSource::Ibgp:
            return m_settings.ibgp_distance;
    }
    return 255;
}

unsigned long RtmInstance::ApplyStaticRoute(long rowStatus, long adminStatus,
                                            const IpAddress& destination,
                                            unsigned long prefixLength, const IpAddress& nextHop,
                                            unsigned long ifIndex, unsigned long metric,
                                            long pathType, uint64_t nowMs) {
    const RouteKey key(destination, prefixLength, nextHop, ifIndex);
    auto found = m_static.find(key);
    if (rowStatus == ROW_DESTROY) {
        if (found == m_static.end()) {
            return RESULT_NO_ROW;
        }
        m_static.erase(found);
        m_dirty.emplace(destination, prefixLength);
        return RESULT_DONE;
    }
    if (found == m_static.end()) {
        StaticRoute route;
        route.destination = destination;
        route.prefixLength = prefixLength;
        route.nextHop = nextHop;
        route.ifIndex = ifIndex;
        route.sinceMs = nowMs;
        found = m_static.emplace(key, route).first;
    } else if (found->second.adminStatus != 1 && adminStatus == 1) {
        found->second.sinceMs = nowMs;
    }
    found->second.adminStatus = adminStatus;
    found->second.metric = metric;
    found->second.pathType = pathType;
    m_dirty.emplace(destination, prefixLength);
    return RESULT_DONE;
}

unsigned long RtmInstance::ApplyRedistribution(long rowStatus, long adminStatus, long source,
                                               long destination, unsigned long extra) {
    const RedistKey key(source, destination);
    if (rowStatus == ROW_DESTROY) {
        return m_redist.erase(key) != 0 ? RESULT_DONE : RESULT_NO_ROW;
    }
    RedistributionRow& row = m_redist[key];
    row.source = source;
    row.destination = destination;
    row.adminStatus = adminStatus;
    row.extra = extra;
    return RESULT_DONE;
}

void RtmInstance::AddProtocolRoute(const ProtocolRoute& route) {
    m_protocol[ProtocolKey(route.destination, route.prefixLength, static_cast<int>(route.source),
                           route.nextHop, route.ifIndex)] = route;
    m_dirty.emplace(route.destination, route.prefixLength);
}

void RtmInstance::RemoveProtocolRoute(const ProtocolRoute& route) {
    if (m_protocol.erase(ProtocolKey(route.destination, route.prefixLength,
                                     static_cast<int>(route.source), route.nextHop,
                                     route.ifIndex)) != 0) {
        m_dirty.emplace(route.destination, route.prefixLength);
    }
}

void RtmInstance::Resolve(RibEntry& entry, unsigned long requestedIfIndex,
                          const std::vector<ConnectedPrefix>& connected) {
    const ConnectedPrefix* best = nullptr;
    for (const ConnectedPrefix& prefix : connected) {
        if (requestedIfIndex != 0 && prefix.ifIndex != requestedIfIndex) {
            continue;
        }
        // A route without a next hop goes out of its interface directly.
        const bool reaches = entry.nextHop.IsZero()
                                 ? requestedIfIndex != 0
                                 : entry.nextHop.InPrefix(prefix.prefix, prefix.prefixLength);
        if (reaches && (best == nullptr || prefix.prefixLength > best->prefixLength)) {
            best = &prefix;
        }
    }
    entry.unresolved = best == nullptr;
    entry.ifIndex = best == nullptr ? requestedIfIndex : best->ifIndex;
}

void RtmInstance::Recompute(const IpAddress& destination, unsigned long prefixLength,
                            const std::vector<ConnectedPrefix>& connected, FibSink& fib) {
    std::vector<RibEntry> candidates;
    for (const ConnectedPrefix& prefix : connected) {
        if (prefix.prefix == destination && prefix.prefixLength == prefixLength) {
            RibEntry entry;
            entry.destination = destination;
            entry.prefixLength = prefixLength;
            entry.nextHop = IpAddress(destination.Family(), nullptr);
            entry.ifIndex = prefix.ifIndex;
            entry.source = RouteSource::Connected;
            entry.distance = Distance(RouteSource::Connected);
            entry.routeType = ROUTE_TYPE_LOCAL;
            entry.sinceMs = prefix.sinceMs;
            candidates.push_back(entry);
        }
    }
    for (auto it = m_static.lower_bound(RouteKey(destination, prefixLength, IpAddress(), 0));
         it != m_static.end() && std::get<0>(it->first) == destination &&
         std::get<1>(it->first) == prefixLength;
         ++it) {
        const StaticRoute& route = it->second;
        if (route.adminStatus != 1) {
            continue;
        }
        RibEntry entry;
        entry.destination = destination;
        entry.prefixLength = prefixLength;
        entry.nextHop = route.nextHop;
        entry.source = RouteSource::Static;
        entry.distance = Distance(RouteSource::Static);
        entry.metric = route.metric;
        entry.routeType = ROUTE_TYPE_REMOTE;
        entry.sinceMs = route.sinceMs;
        Resolve(entry, route.ifIndex, connected);
        candidates.push_back(entry);
    }
    for (auto it =
             m_protocol.lower_bound(ProtocolKey(destination, prefixLength, 0, IpAddress(), 0));
         it != m_protocol.end() && std::get<0>(it->first) == destination &&
         std::get<1>(it->first) == prefixLength;
         ++it) {
        const ProtocolRoute& route = it->second;
        RibEntry entry;
        entry.destination = destination;
        entry.prefixLength = prefixLength;
        entry.nextHop = route.nextHop;
        entry.source = route.source;
        entry.distance = Distance(route.source);
        entry.metric = route.metric;
        entry.routeType = ROUTE_TYPE_REMOTE;
        entry.sinceMs = route.sinceMs;
        Resolve(entry, route.ifIndex, connected);
        candidates.push_back(entry);
    }
    const RibEntry* installed = m_rib.Installed(destination, prefixLength);
    std::optional<FibRoute> before;
    if (installed != nullptr) {
        before = FibRouteOf(*installed);
    }
    m_rib.SetDestination(destination, prefixLength, std::move(candidates));
    installed = m_rib.Installed(destination, prefixLength);
    if (installed == nullptr) {
        if (before) {
            RibEntry withdrawn;
            withdrawn.destination = destination;
            withdrawn.prefixLength = prefixLength;
            fib.Set(FibKeyOf(m_id, withdrawn), nullptr);
        }
    } else {
        const FibRoute after = FibRouteOf(*installed);
        if (!before || *before != after) {
            fib.Set(FibKeyOf(m_id, *installed), &after);
        }
    }
}

void RtmInstance::WithdrawAll(FibSink& fib) const {
    for (const auto& entry : m_rib.Entries()) {
        if (entry.second.fib) {
            fib.Set(FibKeyOf(m_id, entry.second), nullptr);
        }
    }
}

void RtmInstance::Refresh(const std::vector<ConnectedPrefix>& connected, FibSink& fib) {
    if (m_rebuild) {
        // Every installed route is withdrawn and the RIB built again; the
        // forwarding table applies only what differs at the end of the run.
        WithdrawAll(fib);
        m_rib.Clear();
        m_dirty.clear();
        for (const ConnectedPrefix& prefix : connected) {
            m_dirty.emplace(prefix.prefix, prefix.prefixLength);
        }
        for (const auto& route : m_static) {
            m_dirty.emplace(std::get<0>(route.first), std::get<1>(route.first));
        }
        for (const auto& route : m_protocol) {
            m_dirty.emplace(std::get<0>(route.first), std::get<1>(route.first));
        }
        m_rebuild = false;
    }
    for (const auto& destination : m_dirty) {
        Recompute(destination.first, destination.second, connected, fib);
    }
    m_dirty.clear();
}

}  // namespace Zavrel::Emulator
