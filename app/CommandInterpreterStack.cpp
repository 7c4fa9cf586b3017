// The embedded stack's controls.
#include "app/CommandInterpreter.h"

namespace Zavrel {

CommandInterpreter::Result CommandInterpreter::Stack(const Args& args) {
    if (args.Count() < 2) {
        return Result::Fail("stack: missing sub-command " + SubCommandsOf("stack"));
    }
    const std::string& verb = args[1];
    if (Words::Is(verb, "status") || Words::Is(verb, "tables")) {
        const bool status = Words::Is(verb, "status");
        const bool json = args.Count() > 2 && Words::Is(args[2], "json");
        const size_t extra = json ? 3 : 2;
        if (args.Count() > extra) {
            return Result::Fail(std::string(status ? "stack status" : "stack tables") +
                                ": unexpected '" + args[extra] + "'");
        }
        if (json) {
            const std::string document =
                status ? m_stack.StatusJson(m_sockets.RegisteredCount(), m_sockets.CallbackCount())
                       : m_stack.TablesJson();
            m_console.Print("%s\n", document.c_str());
        } else if (status) {
            m_stack.PrintStatus(m_console);
            m_console.Print(
                "Event loop: %zu stack descriptor(s) registered, %lu ready callback(s)\n",
                m_sockets.RegisteredCount(), m_sockets.CallbackCount());
        } else {
            m_stack.PrintTables(m_console);
        }
        return Result::Local();
    }
    if (Words::Is(verb, "learn") || Words::Is(verb, "withdraw")) {
        return StackRoute(args);
    }
    std::string error;
    if (Words::Is(verb, "delay")) {
        unsigned int runs = 0;
        if (!ReadUnsigned(args, 2, "runs", runs, error)) {
            return Result::Fail("stack delay: " + error);
        }
        if (args.Count() > 3) {
            return Result::Fail("stack delay: unexpected '" + args[3] + "'");
        }
        m_stack.Delay(runs);
        return Result::Local();
    }
    if (Words::Is(verb, "fail")) {
        const std::string prefix = "stack fail: ";
        unsigned int count = 0;
        if (!ReadUnsigned(args, 2, "count", count, error)) {
            return Result::Fail(prefix + error + "; " + UsageOf("stack", "fail"));
        }
        if (args.Count() < 4) {
            return Result::Fail(prefix + "missing route|redist|interface|address");
        }
        StackControl::RequestKind kind;
        const std::string& what = args[3];
        if (Words::Is(what, "route")) {
            kind = StackControl::ROUTE;
        } else if (Words::Is(what, "redist")) {
            kind = StackControl::REDIST;
        } else if (Words::Is(what, "interface")) {
            kind = StackControl::INTERFACE;
        } else if (Words::Is(what, "address")) {
            kind = StackControl::ADDRESS;
        } else {
            return Result::Fail(prefix + "bad request kind '" + what +
                                "' (route, redist, interface or address)");
        }
        if (args.Count() < 5 || !Words::Is(args[4], "result")) {
            return Result::Fail(prefix + "missing 'result <code>'");
        }
        unsigned int code = 0;
        if (!ReadUnsigned(args, 5, "code", code, error)) {
            return Result::Fail(prefix + error);
        }
        if (args.Count() > 6) {
            return Result::Fail(prefix + "unexpected '" + args[6] + "'");
        }
        m_stack.Fail(count, kind, code);
        return Result::Local();
    }
    return Result::Fail("stack: unknown sub-command '" + verb + "' " + SubCommandsOf("stack"));
}

CommandInterpreter::Result CommandInterpreter::StackRoute(const Args& args) {
    const bool learn = Words::Is(args[1], "learn");
    const std::string prefix = "stack " + args[1] + ": ";
    std::string error;
    unsigned short vlan = 0;
    if (!ReadVlan(args, 2, vlan, error)) {
        return Result::Fail(prefix + error);
    }
    if (args.Count() < 4) {
        return Result::Fail(prefix + "missing <protocol>");
    }
    StackControl::Protocol protocol;
    const std::string& name = args[3];
    if (Words::Is(name, "rip")) {
        protocol = StackControl::RIP;
    } else if (Words::Is(name, "ospf")) {
        protocol = StackControl::OSPF;
    } else if (Words::Is(name, "ospf-external")) {
        protocol = StackControl::OSPF_EXTERNAL;
    } else if (Words::Is(name, "ebgp")) {
        protocol = StackControl::EBGP;
    } else if (Words::Is(name, "ibgp")) {
        protocol = StackControl::IBGP;
    } else {
        return Result::Fail(prefix + "bad protocol '" + name +
                            "' (rip, ospf, ospf-external, ebgp or ibgp)");
    }
    if (args.Count() < 5) {
        return Result::Fail(prefix + "missing <prefix>/<length>");
    }
    AppPrefix destination;
    if (!Words::ParsePrefix(args[4], destination)) {
        return Result::Fail(prefix + "bad prefix '" + args[4] + "' (<prefix>/<length>)");
    }
    if (args.Count() < 7 || !Words::Is(args[5], "via")) {
        return Result::Fail(prefix + "missing 'via <gateway>'");
    }
    Ip4Addr gateway4;
    Ip6Addr gateway6;
    if (destination.ipv6 ? !Words::ParseIp6(args[6], gateway6)
                         : !Words::ParseIp4(args[6], gateway4)) {
        return Result::Fail(prefix + "bad gateway '" + args[6] + "' (an " +
                            (destination.ipv6 ? "IPv6" : "IPv4") + " address)");
    }
    unsigned int ifIndex = 0;
    unsigned int metric = 1;
    bool seenIfIndex = false, seenMetric = false;
    for (size_t i = 7; i < args.Count(); i += 2) {
        const std::string& word = args[i];
        const bool isIfIndex = Words::Is(word, "ifindex");
        const bool isMetric = learn && Words::Is(word, "metric");
        if (!isIfIndex && !isMetric) {
            return Result::Fail(prefix + "unexpected '" + word + "'; " + UsageOf("stack", args[1]));
        }
        bool& seen = isIfIndex ? seenIfIndex : seenMetric;
        if (seen) {
            return Result::Fail(prefix + "'" + word + "' given twice");
        }
        seen = true;
        if (!ReadUnsigned(args, i + 1, word.c_str(), isIfIndex ? ifIndex : metric, error)) {
            return Result::Fail(prefix + error);
        }
    }
    const std::string address =
        destination.ipv6 ? destination.ip6.ToString().str() : destination.ip4.ToString().str();
    const std::string gateway =
        destination.ipv6 ? gateway6.ToString().str() : gateway4.ToString().str();
    const bool accepted = learn ? m_stack.Learn(vlan, destination.ipv6, protocol, address,
                                                destination.length, gateway, ifIndex, metric)
                                : m_stack.Withdraw(vlan, destination.ipv6, protocol, address,
                                                   destination.length, gateway, ifIndex);
    if (!accepted) {
        return Result::Fail(prefix + "the stack refused the route");
    }
    return Result::Ok();
}

}  // namespace Zavrel
