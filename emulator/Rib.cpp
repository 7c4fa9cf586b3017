#include "emulator/Rib.h"

#include "stackapi/SmsConstants.h"

namespace Zavrel::Emulator {

unsigned long ProtocolCode(RouteSource source) {
    switch (source) {
        case RouteSource::Connected:
            return Sms::PROTO_LOCAL;
        case RouteSource::Static:
            return Sms::PROTO_STATIC;
        case RouteSource::Rip:
            return Sms::PROTO_RIP;
        case RouteSource::OspfInternal:
        case RouteSource::OspfExternal:
            return Sms::PROTO_OSPF;
        case RouteSource::Ebgp:
        case RouteSource::Ibgp:
            return Sms::PROTO_BGP;
    }
    return 1;  // "other"
}

const char* RouteSourceName(RouteSource source) {
    switch (source) {
        case RouteSource::Connected:
            return "connected";
        case RouteSource::Static:
            return "static";
        case RouteSource::Rip:
            return "rip";
        case RouteSource::OspfInternal:
            return "ospf-internal";
        case RouteSource::OspfExternal:
            return "ospf-external";
        case RouteSource::Ebgp:
            return "ebgp";
        case RouteSource::Ibgp:
            return "ibgp";
    }
    return "other";
}

Rib::Key Rib::KeyOf(const RibEntry& entry) {
    return Key(entry.destination, entry.prefixLength, entry.nextHop, entry.ifIndex,
               static_cast<int>(entry.source));
}

std::map<Rib::Key, RibEntry>::const_iterator Rib::First(const IpAddress& destination,
                                                        unsigned long prefixLength) const {
    return m_entries.lower_bound(Key(destination, prefixLength, IpAddress(), 0, 0));
}

void Rib::SetDestination(const IpAddress& destination, unsigned long prefixLength,
                         std::vector<RibEntry> candidates) {
    auto it = First(destination, prefixLength);
    while (it != m_entries.end() && std::get<0>(it->first) == destination &&
           std::get<1>(it->first) == prefixLength) {
        if (it->second.fib) {
            --m_fibCount;
        }
        it = m_entries.erase(it);
    }
    RibEntry* best = nullptr;
    Key bestKey;
    for (RibEntry& candidate : candidates) {
        candidate.fib = false;
        if (candidate.unresolved) {
            continue;
        }
        const Key key = KeyOf(candidate);
        if (best == nullptr || candidate.distance < best->distance ||
            (candidate.distance == best->distance &&
             (candidate.metric < best->metric ||
              (candidate.metric == best->metric && key < bestKey)))) {
            best = &candidate;
            bestKey = key;
        }
    }
    if (best != nullptr) {
        best->fib = true;
        ++m_fibCount;
    }
    for (RibEntry& candidate : candidates) {
        const Key key = KeyOf(candidate);
        auto inserted = m_entries.emplace(key, candidate);
        if (!inserted.second && candidate.fib) {
            // Two candidates with one key: keep the installed one.
            inserted.first->second = candidate;
        }
    }
}

const RibEntry* Rib::Installed(const IpAddress& destination, unsigned long prefixLength) const {
    for (auto it = First(destination, prefixLength);
         it != m_entries.end() && std::get<0>(it->first) == destination &&
         std::get<1>(it->first) == prefixLength;
         ++it) {
        if (it->second.fib) {
            return &it->second;
        }
    }
    return nullptr;
}

}  // namespace Zavrel::Emulator
