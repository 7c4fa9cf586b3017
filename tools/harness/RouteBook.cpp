// RouteBook: the application's wishes for its static routes, and the check
// of the stack's and the scheduler's tables against them.
#include "harness/RouteBook.h"

#include <cstring>
#include <set>

#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "emulator/Emulator.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

bool RouteBook::Route::operator<(const Route& other) const {
    return std::make_tuple(vlan, destination.HostOrder(), prefixLength, gateway.HostOrder(),
                           ifIndex) < std::make_tuple(other.vlan, other.destination.HostOrder(),
                                                      other.prefixLength, other.gateway.HostOrder(),
                                                      other.ifIndex);
}

std::string RouteBook::Route::ToString() const {
    return std::to_string(vlan) + " " + destination.ToString().c_str() + "/" +
           std::to_string(prefixLength) + " via " + gateway.ToString().c_str() + " ifIndex " +
           std::to_string(ifIndex);
}

Ip4Addr RouteBook::Netmask(unsigned int prefixLength) {
    const uint32_t mask = prefixLength == 0    ? 0u
                          : prefixLength >= 32 ? 0xffffffffu
                                               : ~((1u << (32 - prefixLength)) - 1u);
    return Ip4Addr::FromHostOrder(mask);
}

bool RouteBook::Matches(const StaticRouteItem& item, const Route& route) {
    return item.Family() == Sms::RECORD_IPV4 && item.Vlan() == route.vlan &&
           Ip4Addr(item.Destination()) == route.destination &&
           item.PrefixLength() == static_cast<long>(route.prefixLength) &&
           Ip4Addr(item.NextHop()) == route.gateway && item.IfIndex() == route.ifIndex;
}

void RouteBook::Record(const Route& route, Wish wish) {
    // Items already sent go out before any New one, and the scheduler sends
    // a route's New items in their list order, so the stack ends with the
    // last New one. Replacing a held item links the new one a place before
    // the old one's predecessor (or at the tail), so the request just made
    // need not be the last: read the list.
    if (DcRouterMgr* manager = DcRouterMgr::GetInstance()) {
        const CfgKey key(route.vlan, DcRtmMgr::CFG_KEY_STATIC_ROUTE);
        for (CfgItem* item : manager->GetCfgSched().Items(key)) {
            auto* held = dynamic_cast<StaticRouteItem*>(item);
            if (held == nullptr || held->IsIssued() || !Matches(*held, route)) {
                continue;
            }
            wish = held->RowStatus() == static_cast<long>(Sms::ROW_DESTROY) ? Wish::Absent
                   : held->AdminStatus() == Sms::STATUS_UP                  ? Wish::Up
                                                                            : Wish::Down;
        }
    }
    Entry& entry = m_routes[route];
    entry.wish = wish;
    entry.promised = true;
}

bool RouteBook::Add(const Route& route, unsigned int metric) {
    if (!AddRoute(route.vlan, route.destination, Netmask(route.prefixLength), route.gateway,
                  route.ifIndex, metric, StaticRouteItem::ROUTE_TYPE_STATIC, Sms::STATUS_UP)) {
        return false;
    }
    Record(route, Wish::Up);
    return true;
}

bool RouteBook::Ask(RouteCall call, const Route& route, Wish wish) {
    if (!call(route.vlan, route.destination, Netmask(route.prefixLength), route.gateway,
              route.ifIndex)) {
        return false;
    }
    Record(route, wish);
    return true;
}

bool RouteBook::Enable(const Route& route) {
    return Ask(static_cast<RouteCall>(&EnableRoute), route, Wish::Up);
}

bool RouteBook::Disable(const Route& route) {
    return Ask(static_cast<RouteCall>(&DisableRoute), route, Wish::Down);
}

bool RouteBook::Remove(const Route& route) {
    return Ask(static_cast<RouteCall>(&RemoveRoute), route, Wish::Absent);
}

void RouteBook::ForgetVlan(unsigned short vlan) {
    for (auto& entry : m_routes) {
        if (entry.first.vlan == vlan) {
            entry.second.promised = false;
        }
    }
}

size_t RouteBook::Wanted() const {
    size_t count = 0;
    for (const auto& entry : m_routes) {
        if (entry.second.promised && entry.second.wish != Wish::Absent) {
            ++count;
        }
    }
    return count;
}

std::vector<std::string> RouteBook::Check(DcRouterMgr& manager) const {
    // The stack's IPv4 static rows, by the same text as Route::ToString.
    std::map<std::string, long> stack;
    for (const auto& instance : Emulator::Instance().Instances()) {
        if ((instance.first & Emulator::IP6_INSTANCE_BIT) != 0) {
            continue;
        }
        for (const auto& row : instance.second->StaticRoutes()) {
            const Emulator::StaticRoute& r = row.second;
            stack[std::to_string(instance.first) + " " + r.destination.ToString() + "/" +
                  std::to_string(r.prefixLength) + " via " + r.nextHop.ToString() + " ifIndex " +
                  std::to_string(r.ifIndex)] = r.adminStatus;
        }
    }
    // Routes the scheduler holds an item for that says why the route is
    // not (yet) as asked: refused with a reason; waiting for its instance;
    // or sent, with no request left on its row, and never to be sent again
    // (the answer went to an earlier item of the row, one that a failure
    // had sent back to New: the scheduler gives a row's answer to its first
    // held item, and a New one takes none, so the earlier request is sent
    // again after the later one was done).
    std::set<std::string> explained;
    for (CfgItem* item : manager.GetCfgSched().AllItems()) {
        auto* route = dynamic_cast<StaticRouteItem*>(item);
        if (route == nullptr || route->Family() != Sms::RECORD_IPV4) {
            continue;
        }
        const bool refused = route->IsIssued() && route->GetReasonCode() != 0;
        const bool stale = route->IsIssued() && route->GetReasonCode() == 0 &&
                           manager.GetSerializer().PendingActionCount(route->GetOid()) == 0;
        if (!refused && !stale && route->CfgListReady()) {
            continue;
        }
        Ip4Addr destination(route->Destination());
        Ip4Addr gateway(route->NextHop());
        explained.insert(std::to_string(route->Vlan()) + " " + destination.ToString().c_str() +
                         "/" + std::to_string(route->PrefixLength()) + " via " +
                         gateway.ToString().c_str() + " ifIndex " +
                         std::to_string(route->IfIndex()));
    }

    std::vector<std::string> problems;
    std::set<std::string> known;
    for (const auto& entry : m_routes) {
        const std::string name = entry.first.ToString();
        known.insert(name);
        if (!entry.second.promised) {
            continue;
        }
        auto held = stack.find(name);
        const Wish wish = entry.second.wish;
        const bool asAsked =
            wish == Wish::Absent
                ? held == stack.end()
                : held != stack.end() &&
                      (held->second == static_cast<long>(Sms::STATUS_UP)) == (wish == Wish::Up);
        if (asAsked || explained.count(name) != 0) {
            continue;
        }
        const char* wanted = wish == Wish::Up     ? "admin up"
                             : wish == Wish::Down ? "admin down"
                                                  : "absent";
        const std::string has = held == stack.end()                                 ? "none"
                                : held->second == static_cast<long>(Sms::STATUS_UP) ? "admin up"
                                                                                    : "admin down";
        problems.push_back("lost: " + name + ": wanted " + wanted + ", stack has " + has +
                           ", no item says why");
    }
    for (const auto& row : stack) {
        if (known.count(row.first) == 0) {
            problems.push_back("made up: " + row.first + ": in the stack, never asked for");
        }
    }
    return problems;
}

}  // namespace Zavrel
