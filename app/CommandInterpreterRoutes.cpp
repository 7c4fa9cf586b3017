// Static routes.
#include "app/CommandInterpreter.h"
#include "platform/Ip6Prefix.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

namespace {

// Route type of a static route row, the default of "route add".
constexpr unsigned int STATIC_ROUTE_TYPE = 0x30000;
constexpr unsigned int DEFAULT_METRIC = 1;
constexpr long ADMIN_UP = 1;
constexpr long ADMIN_DOWN = 2;

}  // namespace

CommandInterpreter::Result CommandInterpreter::Route(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("route: missing sub-command " + SubCommandsOf("route"));
    }
    const std::string& verb = args[1];
    enum { ADD, REMOVE, ENABLE, DISABLE } action;
    if (Words::Is(verb, "add")) {
        action = ADD;
    } else if (Words::Is(verb, "remove")) {
        action = REMOVE;
    } else if (Words::Is(verb, "enable")) {
        action = ENABLE;
    } else if (Words::Is(verb, "disable")) {
        action = DISABLE;
    } else {
        return Result::Fail("route: unknown sub-command '" + verb + "' " + SubCommandsOf("route"));
    }
    const std::string prefix = "route " + verb + ": ";
    std::string error;
    unsigned short vlan = 0;
    if (!ReadVlan(args, 2, vlan, error)) {
        return Result::Fail(prefix + error);
    }
    if (args.Count() < 4) {
        return Result::Fail(prefix + "missing <prefix>/<length>");
    }
    AppPrefix destination;
    if (!Words::ParsePrefix(args[3], destination)) {
        return Result::Fail(prefix + "bad prefix '" + args[3] + "' (<prefix>/<length>)");
    }
    if (args.Count() < 5 || !Words::Is(args[4], "via")) {
        return Result::Fail(prefix + "missing 'via <gateway>'");
    }
    if (args.Count() < 6) {
        return Result::Fail(prefix + "missing <gateway>");
    }
    Ip4Addr gateway4;
    Ip6Addr gateway6;
    if (destination.ipv6 ? !Words::ParseIp6(args[5], gateway6)
                         : !Words::ParseIp4(args[5], gateway4)) {
        return Result::Fail(prefix + "bad gateway '" + args[5] + "' (an " +
                            (destination.ipv6 ? "IPv6" : "IPv4") + " address)");
    }

    unsigned int ifIndex = 0;
    unsigned int metric = DEFAULT_METRIC;
    unsigned int type = STATIC_ROUTE_TYPE;
    long admin = ADMIN_UP;
    bool seenIfIndex = false, seenMetric = false, seenType = false, seenAdmin = false;
    for (size_t i = 6; i < args.Count(); i += 2) {
        const std::string& word = args[i];
        const bool isIfIndex = Words::Is(word, "ifindex");
        const bool addOnly =
            Words::Is(word, "metric") || Words::Is(word, "type") || Words::Is(word, "admin");
        if (!isIfIndex && !(addOnly && action == ADD)) {
            return Result::Fail(prefix + "unexpected '" + word + "'; " + UsageOf("route", verb));
        }
        bool& seen = isIfIndex                   ? seenIfIndex
                     : Words::Is(word, "metric") ? seenMetric
                     : Words::Is(word, "type")   ? seenType
                                                 : seenAdmin;
        if (seen) {
            return Result::Fail(prefix + "'" + word + "' given twice");
        }
        seen = true;
        if (Words::Is(word, "admin")) {
            if (i + 1 >= args.Count()) {
                return Result::Fail(prefix + "missing up|down after 'admin'");
            }
            if (Words::Is(args[i + 1], "up")) {
                admin = ADMIN_UP;
            } else if (Words::Is(args[i + 1], "down")) {
                admin = ADMIN_DOWN;
            } else {
                return Result::Fail(prefix + "bad admin state '" + args[i + 1] + "' (up or down)");
            }
            continue;
        }
        unsigned int* target = isIfIndex ? &ifIndex : Words::Is(word, "metric") ? &metric : &type;
        if (!ReadUnsigned(args, i + 1, word.c_str(), *target, error)) {
            return Result::Fail(prefix + error);
        }
    }

    if (!destination.ipv6) {
        const Ip4Addr netmask = Words::Netmask(destination.length);
        switch (action) {
            case ADD:
                AddRoute(vlan, destination.ip4, netmask, gateway4, ifIndex, metric,
                         static_cast<long>(type), admin);
                break;
            case REMOVE:
                RemoveRoute(vlan, destination.ip4, netmask, gateway4, ifIndex);
                break;
            case ENABLE:
                EnableRoute(vlan, destination.ip4, netmask, gateway4, ifIndex);
                break;
            case DISABLE:
                DisableRoute(vlan, destination.ip4, netmask, gateway4, ifIndex);
                break;
        }
        return Result::Ok();
    }
    const Ip6Prefix prefix6(destination.ip6, destination.length);
    switch (action) {
        case ADD:
            AddRoute(vlan, destination.ip6, prefix6, gateway6, ifIndex, metric,
                     static_cast<long>(type), admin);
            break;
        case REMOVE:
            RemoveRoute(vlan, destination.ip6, prefix6, gateway6, ifIndex);
            break;
        case ENABLE:
            EnableRoute(vlan, destination.ip6, prefix6, gateway6, ifIndex);
            break;
        case DISABLE:
            DisableRoute(vlan, destination.ip6, prefix6, gateway6, ifIndex);
            break;
    }
    return Result::Ok();
}

}  // namespace Zavrel
