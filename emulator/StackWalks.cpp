// Stack: table walks. A walk delivers the rows of its table from its
// starting instance onward, in table order, each with SMS_RC_ROW, then
// SMS_RC_END_OF_TABLE; it stops early when the callback returns 0 in its low
// byte. Each step finds the first row after the last one delivered, so a
// walk spread over several runs stays in order while the tables change.
#include <cstddef>
#include <cstring>

#include "emulator/Stack.h"
#include "platform/EventLoop.h"

namespace Zavrel::Emulator {

unsigned long Stack::AgeOf(uint64_t sinceMs) const {
    const uint64_t now = NowMs();
    return now > sinceMs ? static_cast<unsigned long>((now - sinceMs) / 1000) : 0;
}

void Stack::FillRoute(const RibEntry& entry, unsigned long instance,
                      amb_cipr_rtm_route& row) const {
    std::memset(&row, 0, sizeof(row));
    row.instance = instance;
    row.addr_family = entry.destination.IsIpv4() ? 1 : 2;
    entry.destination.CopyTo(row.dest);
    row.dest_len = entry.prefixLength;
    entry.nextHop.CopyTo(row.next_hop);
    row.if_index = entry.ifIndex;
    row.route_type = entry.routeType;
    row.proto = ProtocolCode(entry.source);
    row.age = AgeOf(entry.sinceMs);
    row.metric1 = entry.metric;
}

bool Stack::NextRtmRow(Walk& walk, bool fibOnly, const RibEntry*& entry) {
    for (auto it = m_instances.lower_bound(walk.instance); it != m_instances.end(); ++it) {
        if (it->first != walk.instance) {
            walk.instance = it->first;
            walk.hasKey = false;
        }
        const RtmInstance& instance = *it->second;
        if (!instance.IsReady()) {
            continue;
        }
        const auto& entries = instance.GetRib().Entries();
        for (auto e = walk.hasKey ? entries.upper_bound(walk.ribKey) : entries.begin();
             e != entries.end(); ++e) {
            if (!fibOnly || e->second.fib) {
                walk.ribKey = e->first;
                walk.hasKey = true;
                entry = &e->second;
                return true;
            }
        }
    }
    return false;
}

bool Stack::Deliver(Walk& walk, unsigned int limit) {
    for (unsigned int delivered = 0; limit == 0 || delivered < limit; ++delivered) {
        bool found = false;
        unsigned char answer = 1;
        switch (walk.table) {
            case WalkTable::RtmRoute: {
                const RibEntry* entry = nullptr;
                if (NextRtmRow(walk, true, entry)) {
                    amb_cipr_rtm_route row;
                    FillRoute(*entry, walk.instance, row);
                    found = true;
                    answer = CallLibrary(
                        [&] { return walk.callback(walk.context, walk.id, SMS_RC_ROW, &row); });
                }
                break;
            }
            case WalkTable::RtmRib: {
                const RibEntry* entry = nullptr;
                if (NextRtmRow(walk, false, entry)) {
                    amb_cipr_rtm_route route;
                    FillRoute(*entry, walk.instance, route);
                    amb_cipr_rtm_rib row;
                    std::memset(&row, 0, sizeof(row));
                    static_assert(
                        offsetof(amb_cipr_rtm_rib, fib_route) == sizeof(amb_cipr_rtm_route),
                        "a RIB row begins with a route row");
                    std::memcpy(&row, &route, sizeof(route));
                    row.fib_route = entry->fib ? 1 : 0;
                    row.unresolved = entry->unresolved ? 1 : 0;
                    found = true;
                    answer = CallLibrary(
                        [&] { return walk.callback(walk.context, walk.id, SMS_RC_ROW, &row); });
                }
                break;
            }
            case WalkTable::I3Ei: {
                const auto& rows = m_interfaces.Interfaces();
                auto it = walk.hasKey ? rows.upper_bound(walk.eiKey)
                                      : rows.lower_bound(InterfaceTable::EiKey(walk.instance, 0));
                if (it != rows.end()) {
                    walk.eiKey = it->first;
                    walk.hasKey = true;
                    const InterfaceRow& source = it->second;
                    amb_stubs_i3_ei row;
                    std::memset(&row, 0, sizeof(row));
                    row.instance = source.instance;
                    row.if_index = source.ifIndex;
                    std::strncpy(row.if_name, source.name.c_str(), sizeof(row.if_name) - 1);
                    row.oper_status = source.operStatus;
                    row.mtu = source.mtu;
                    row.flags = source.flags;
                    row.extra = source.extra;
                    found = true;
                    answer = CallLibrary(
                        [&] { return walk.callback(walk.context, walk.id, SMS_RC_ROW, &row); });
                }
                break;
            }
            case WalkTable::I3Ea: {
                const auto& rows = m_interfaces.Addresses();
                auto it =
                    walk.hasKey
                        ? rows.upper_bound(walk.eaKey)
                        : rows.lower_bound(InterfaceTable::EaKey(walk.instance, 0, 0, IpAddress()));
                if (it != rows.end()) {
                    walk.eaKey = it->first;
                    walk.hasKey = true;
                    const AddressRow& source = it->second;
                    amb_stubs_i3_ea row;
                    std::memset(&row, 0, sizeof(row));
                    row.instance = source.instance;
                    row.if_index = source.ifIndex;
                    row.addr_type = source.addrType;
                    source.address.CopyTo(row.address);
                    row.prefix_len = source.prefixLength;
                    found = true;
                    answer = CallLibrary(
                        [&] { return walk.callback(walk.context, walk.id, SMS_RC_ROW, &row); });
                }
                break;
            }
        }
        if (!found) {
            CallLibrary(
                [&] { return walk.callback(walk.context, walk.id, SMS_RC_END_OF_TABLE, nullptr); });
            return true;
        }
        ++m_walkRows;
        if (answer == 0) {
            // The library is done with this walk (and may have let go of its
            // context): nothing more is delivered.
            return true;
        }
        if (walk.cutCode != 0) {
            CallLibrary(
                [&] { return walk.callback(walk.context, walk.id, walk.cutCode, nullptr); });
            return true;
        }
    }
    return false;
}

void Stack::ProcessWalks() {
    for (auto it = m_walks.begin(); it != m_walks.end();) {
        if (Deliver(*it, m_walkRowsPerRun)) {
            it = m_walks.erase(it);
        } else {
            ++it;
        }
    }
}

}  // namespace Zavrel::Emulator
