// RouteBook: the application's wishes for its static routes, and the check
// of the stack's and the scheduler's tables against them.
#include "harness/RouteBook.h"

#include <set>

#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "emulator/Emulator.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

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

RouteBook::RouteBook() {
    Emulator::ObserveRouteAnswers(
        [this](const Emulator::RouteAnswer& answer) { Answered(answer); });
}

RouteBook::~RouteBook() {
    Emulator::ObserveRouteAnswers(nullptr);
}

void RouteBook::Record(const Route& route, Wish wish) {
    Entry& entry = m_routes[route.ToString()];
    entry.vlan = route.vlan;
    entry.wish = wish;
    entry.asked |= Bit(wish);
    entry.promised = true;
    entry.answered = false;
}

void RouteBook::Answered(const Emulator::RouteAnswer& answer) {
    if ((answer.instance & Emulator::IP6_INSTANCE_BIT) != 0) {
        return;
    }
    auto found = m_routes.find(std::to_string(answer.instance) + " " + answer.destination + "/" +
                               std::to_string(answer.prefixLength) + " via " + answer.nextHop +
                               " ifIndex " + std::to_string(answer.ifIndex));
    if (found == m_routes.end()) {
        return;
    }
    const bool destroy = answer.rowStatus == Sms::ROW_DESTROY;
    const bool done =
        answer.result == Sms::RESULT_DONE || (destroy && answer.result == Sms::RESULT_NO_ROW);
    const Wish asked = destroy                                ? Wish::Absent
                       : answer.adminStatus == Sms::STATUS_UP ? Wish::Up
                                                              : Wish::Down;
    Entry& entry = found->second;
    if (asked == entry.wish) {
        entry.answered = true;
    } else if (done && (entry.asked & Bit(asked)) == 0) {
        // A request the application never made for the route was done: the
        // answer to the last request no longer stands.
        entry.answered = false;
    }
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
        if (entry.second.vlan == vlan) {
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
    // not as asked: refused with a reason, or waiting for its instance.
    std::set<std::string> explained;
    for (CfgItem* item : manager.GetCfgSched().AllItems()) {
        auto* route = dynamic_cast<StaticRouteItem*>(item);
        if (route == nullptr || route->Family() != Sms::RECORD_IPV4) {
            continue;
        }
        const bool refused = route->IsIssued() && route->GetReasonCode() != 0;
        if (!refused && route->CfgListReady()) {
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
    for (const auto& entry : m_routes) {
        const std::string& name = entry.first;
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
        if (asAsked || entry.second.answered || explained.count(name) != 0) {
            continue;
        }
        const char* wanted = wish == Wish::Up     ? "admin up"
                             : wish == Wish::Down ? "admin down"
                                                  : "absent";
        const std::string has = held == stack.end()                                 ? "none"
                                : held->second == static_cast<long>(Sms::STATUS_UP) ? "admin up"
                                                                                    : "admin down";
        problems.push_back("lost: " + name + ": wanted " + wanted + ", stack has " + has +
                           ", not answered since asked, no item says why");
    }
    for (const auto& row : stack) {
        if (m_routes.count(row.first) == 0) {
            problems.push_back("made up: " + row.first + ": in the stack, never asked for");
        }
    }
    return problems;
}

}  // namespace Zavrel
