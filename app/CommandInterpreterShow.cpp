// Listings: the router manager's handler tables, the RTM tables and the
// stack's interfaces.
#include "app/ArgVector.h"
#include "app/CommandInterpreter.h"
#include "console/DcInterfaceConsoleCommand.h"
#include "console/RtmRTCommand.h"
#include "routing/DcRouterMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

CommandInterpreter::Result CommandInterpreter::Ip4(const Args& args) {
    return IpHandlers(args, false);
}

CommandInterpreter::Result CommandInterpreter::Ip6(const Args& args) {
    return IpHandlers(args, true);
}

CommandInterpreter::Result CommandInterpreter::IpHandlers(const Args& args, bool ipv6) {
    const char* name = ipv6 ? "ip6" : "ip";
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return Result::Fail(std::string(name) + ": no router manager");
    }
    const auto& handlers = ipv6 ? manager->GetIp6ConCmdHandlers() : manager->GetIp4ConCmdHandlers();
    if (args.Count() < 2) {
        m_console.Print("Usage: %s <word> ...\n", name);
        for (const auto& entry : handlers) {
            m_console.Print("  %-10s %s\n", entry.first.c_str(), entry.second.GetHelp().c_str());
        }
        return Result::Local();
    }
    for (const auto& entry : handlers) {
        if (Words::Is(args[1], entry.first.c_str())) {
            ArgVector argv(args.words, 1);
            entry.second.Run(nullptr, &m_console, argv.Argc(), argv.Argv());
            return Result::Ok();
        }
    }
    std::string known;
    for (const auto& entry : handlers) {
        known += known.empty() ? "" : ", ";
        known += entry.first.c_str();
    }
    return Result::Fail(std::string(name) + ": unknown word '" + args[1] + "' (" + known + ")");
}

CommandInterpreter::Result CommandInterpreter::Rtm4(const Args& args) {
    return Rtm(args, Sms::AFI_IPV4);
}

CommandInterpreter::Result CommandInterpreter::Rtm6(const Args& args) {
    return Rtm(args, Sms::AFI_IPV6);
}

CommandInterpreter::Result CommandInterpreter::Rtm(const Args& args, unsigned short family) {
    const std::string name = args[0];
    if (args.Count() < 2) {
        return Result::Fail(name + ": missing route|rib; " +
                            UsageOf(family == Sms::AFI_IPV6 ? "rtm6" : "rtm"));
    }
    DcConsoleCommand* command = nullptr;
    if (Words::Is(args[1], "route")) {
        command = new RtmRouteCommand(&m_console, family);
    } else if (Words::Is(args[1], "rib")) {
        command = new RtmRibCommand(&m_console, family);
    } else {
        return Result::Fail(name + ": unknown table '" + args[1] + "' (route or rib)");
    }
    ArgVector argv(args.words, 2);
    if (!command->Parse(argv.Argc(), argv.Argv())) {
        // The command has printed what was wrong, if anything (words left
        // over get no message of its own); it never started.
        delete command;
        return Result::Fail(name + " " + args[1] + ": not started");
    }
    // From here on the command owns itself until its walk ends.
    return WaitForEnd();
}

CommandInterpreter::Result CommandInterpreter::Interfaces4(const Args& args) {
    return Interfaces(args, false);
}

CommandInterpreter::Result CommandInterpreter::Interfaces6(const Args& args) {
    return Interfaces(args, true);
}

CommandInterpreter::Result CommandInterpreter::Interfaces(const Args& args, bool ipv6) {
    unsigned short vlan = m_console.CurrentVlan();
    std::string error;
    if (args.Count() > 1 && !ReadVlan(args, 1, vlan, error)) {
        return Result::Fail(args[0] + ": " + error);
    }
    if (args.Count() > 2) {
        return Result::Fail(args[0] + ": unexpected '" + args[2] + "'");
    }
    auto* command = new DcInterfaceConsoleCommand(&m_console, vlan, ipv6);
    ArgVector argv(args.words, 2);
    if (!command->Parse(argv.Argc(), argv.Argv())) {
        delete command;
        return Result::Local();
    }
    return WaitForEnd();
}

}  // namespace Zavrel
