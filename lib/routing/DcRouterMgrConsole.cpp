// DcRouterMgr: the routing console commands.
//
// Two tables of handlers, one per address family, keyed by the first word
// of a routing command. The "protocol" handlers are the manager's own
// diagnostics; the other words go to the protocol routers.
#include "routing/DcRouterMgr.h"

#include <strings.h>

#include <new>

#include "console/RtmRTCommand.h"
#include "console/TwoColumnsFormatter.h"
#include "platform/AllocationFaults.h"
#include "platform/DcConsole.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterBase.h"
#include "routing/ProtocolRegistry.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

// IPS trace filter types, by kind and direction.
const unsigned short IPS_FILTER_TYPE_IN = 1;
const unsigned short IPS_FILTER_TYPE_OUT = 2;
const unsigned short IPS_FILTER_PROC_IN = 5;
const unsigned short IPS_FILTER_PROC_OUT = 6;

const char IPS_USAGE[] =
    "Usage: ips [on|off|status|set filter|reset filter]\n"
    "       ips set filter [type|proc] [in|out] <FILTERLIST>\n"
    "       ips reset filter [type|proc] [in|out]\n"
    "\n"
    "       where FILTERLIST :\n"
    "                   filter\n"
    "                   FILTERLIST, filter\n";

// Sub-commands of the IPv4 "protocol" command are recognised by their first
// two letters, whatever their case.
bool MatchesAbbrev(const char* word, const char* command) {
    return strncasecmp(word, command, 2) == 0;
}

bool MatchesWord(const char* word, const char* command) {
    return strcasecmp(word, command) == 0;
}

string BuildIp4Help() {
    TwoColumnsFormatter formatter;
    formatter.PushRow(
        " ip protocol database [vrf <vid>] [dest <address>] [proto "
        "connected|static|bgp|ospf|rip] [detail]",
        "Show Routing Information Base");
    formatter.PushRow(" ip protocol mcast-database [vrf <vid>] [group <address>]",
                      "Show Multicast Routing Information Base");
    formatter.PushRow(" ip protocol summary", "Show Summary of IP Protocols");
    formatter.PushRow(" ip protocol pending-actions [summary]",
                      "Show Pending Protocol Configurations");
    formatter.PushRow(" ip protocol ips", "IPS Trace Commands");
    const char* text = formatter.Format();
    return string(text);
}

string BuildIp6Help() {
    TwoColumnsFormatter formatter;
    formatter.PushRow(
        " ip6 protocol database [vrf <vid>] [dest <address>] [proto "
        "connected|static|bgp|ospf|rip] [detail]",
        "Show Routing Information Base");
    const char* text = formatter.Format();
    return string(text);
}

// The help blocks are built on first use and kept for the life of the
// process.
const string& Ip4Help() {
    static const string help = BuildIp4Help();
    return help;
}

const string& Ip6Help() {
    static const string help = BuildIp6Help();
    return help;
}

void PrintUsage(DcConsole* console, const string& help) {
    console->Print("Usage: \n");
    console->Print("%s", help.c_str());
}

// Runs a table command on the remaining words. A command that refuses the
// words is deleted at once; one that accepts them owns itself from then on.
template <typename Command>
bool RunTableCommand(Command* command, int argc, char** argv) {
    if (command == nullptr) {
        return false;
    }
    if (!command->Parse(argc, argv)) {
        delete command;
        return false;
    }
    return true;
}

// Filter type of an IPS kind and direction; 0 when either word is unknown.
unsigned short IpsFilterType(const char* kind, const char* direction) {
    bool in = MatchesWord(direction, "in");
    bool out = MatchesWord(direction, "out");
    if (!in && !out) {
        return 0;
    }
    if (MatchesWord(kind, "type")) {
        return in ? IPS_FILTER_TYPE_IN : IPS_FILTER_TYPE_OUT;
    }
    if (MatchesWord(kind, "proc")) {
        return in ? IPS_FILTER_PROC_IN : IPS_FILTER_PROC_OUT;
    }
    return 0;
}

}  // namespace

void DcRouterMgr::RegisterConsoleHandlers() {
    // The library's own words, then the protocol libraries' handlers (the
    // tables are ordered by word, so the order of entry does not show).
    AddIp4RouterCmdHandler("rip", &DcRipv2Router::ConsoleCommand, "RIPv2 Routing Configuration");
    AddIp4RouterCmdHandler("protocol", &DcRouterMgr::ConCmdIp4Rtm,
                           "Routing Protocol Configuration");
    AddIp6RouterCmdHandler("rip", &DcRipngRouter::ConsoleCommand, "RIPng Routing Configuration");
    AddIp6RouterCmdHandler("protocol", &DcRouterMgr::ConCmdIp6Rtm,
                           "Routing Protocol Configuration");
    const ProtocolRegistry::Entries& registered = ProtocolRegistry::Get();
    for (const ProtocolRegistry::ConsoleHandler& entry : registered.ip4_handlers) {
        AddIp4RouterCmdHandler(entry.name, entry.handler, entry.help);
    }
    for (const ProtocolRegistry::ConsoleHandler& entry : registered.ip6_handlers) {
        AddIp6RouterCmdHandler(entry.name, entry.handler, entry.help);
    }
}

void DcRouterMgr::AddIp4RouterCmdHandler(const char* name, DcRouterCmdFunc handler,
                                         const char* help) {
    m_ip4_handlers.insert(std::make_pair(string(name), DcRouterCmdHandler(handler, help)));
}

void DcRouterMgr::AddIp6RouterCmdHandler(const char* name, DcRouterCmdFunc handler,
                                         const char* help) {
    m_ip6_handlers.insert(std::make_pair(string(name), DcRouterCmdHandler(handler, help)));
}

void DcRouterMgr::ConCmdIp4Rtm(void*, DcConsole* console, int argc, char** argv) {
    DcRouterMgr* mgr = GetInstance();
    if (console == nullptr || mgr == nullptr) {
        return;
    }
    if (argc > 1) {
        const char* sub = argv[1];
        if (MatchesAbbrev(sub, "pending-actions")) {
            if (argc == 3 && MatchesAbbrev(argv[2], "summary")) {
                mgr->GetCfgSched().PrintSummary(console);
            } else {
                mgr->GetCfgSched().Print(console);
            }
            return;
        }
        if (MatchesAbbrev(sub, "summary")) {
            mgr->ConCmdIp4RtmSummary(console);
            return;
        }
        if (MatchesAbbrev(sub, "database")) {
            RunTableCommand(NewOrNull<RtmRibCommand>("RtmRibCommand", console, Sms::AFI_IPV4),
                            argc - 2, argv + 2);
            return;
        }
        if (MatchesWord(sub, "ips")) {
            mgr->ConCmdIpsTrace(console, argc - 2, argv + 2);
            return;
        }
        if (MatchesAbbrev(sub, "mcast-database")) {
            ProtocolRegistry::TableCommandFactory multicast =
                ProtocolRegistry::Get().multicast_table;
            if (multicast == nullptr ||
                !RunTableCommand(multicast(console, Sms::AFI_IPV4), argc - 2, argv + 2)) {
                console->Print("Fail to parse mcast-database sub command.\n");
            }
            return;
        }
    }
    PrintUsage(console, Ip4Help());
}

void DcRouterMgr::ConCmdIp6Rtm(void*, DcConsole* console, int argc, char** argv) {
    DcRouterMgr* mgr = GetInstance();
    if (console == nullptr || mgr == nullptr) {
        return;
    }
    if (argc > 1) {
        const char* sub = argv[1];
        if (MatchesWord(sub, "summary")) {
            mgr->ConCmdIp6RtmSummary(console);
            return;
        }
        if (MatchesWord(sub, "database")) {
            RunTableCommand(NewOrNull<RtmRibCommand>("RtmRibCommand", console, Sms::AFI_IPV6),
                            argc - 2, argv + 2);
            return;
        }
    }
    PrintUsage(console, Ip6Help());
}

void DcRouterMgr::ConCmdIp4RtmSummary(DcConsole* console) {
    static const char* const names[4] = {"BGP4+", "OSPFv2", "RIPv2", "IGMP"};
    static const ProtocolType types[4] = {BGP, OSPFv2, RIPv2, IGMP};
    PrintSummary(console, names, types);
}

void DcRouterMgr::ConCmdIp6RtmSummary(DcConsole* console) {
    static const char* const names[4] = {"BGP4+", "OSPFv3", "RIPng", "MLD"};
    static const ProtocolType types[4] = {BGP, OSPFv3, RIPng, MLD};
    PrintSummary(console, names, types);
}

void DcRouterMgr::PrintSummary(DcConsole* console, const char* const names[4],
                               const ProtocolType types[4]) {
    console->Print("%6s %6s %6s %6s %6s\n", "VID", names[0], names[1], names[2], names[3]);
    for (const auto& vlan : m_vlans) {
        console->Print("%6u", static_cast<unsigned int>(vlan.first));
        bool enabled[PROTOCOL_COUNT] = {false, false, false, false, false, false, false};
        if (vlan.second != nullptr) {
            for (const auto& router : vlan.second->routers) {
                if (router.first >= 0 && router.first < PROTOCOL_COUNT &&
                    router.second != nullptr) {
                    enabled[router.first] = router.second->IsEnabled();
                }
            }
        }
        for (int column = 0; column < 4; ++column) {
            console->Print(" %6s", enabled[types[column]] ? "Yes" : "No");
        }
        console->Print("\n");
    }
    console->EndOfCommand();
}

void DcRouterMgr::ConCmdIpsTrace(DcConsole* console, int argc, char** argv) {
    if (argc >= 1) {
        const char* verb = argv[0];
        if (MatchesWord(verb, "on")) {
            TripsControl(true);
            console->Print("IPS TRACE is ON!\n");
            return;
        }
        if (MatchesWord(verb, "off")) {
            TripsControl(false);
            console->Print("IPS TRACE is OFF!\n");
            return;
        }
        if (MatchesWord(verb, "status")) {
            console->Print("IPS TRACE is %s!\n", GetIPSTracing() ? "ON" : "OFF");
            return;
        }
        // set filter <kind> <direction> <list>
        if (MatchesWord(verb, "set") && argc > 4) {
            unsigned short filterType = IpsFilterType(argv[2], argv[3]);
            if (filterType != 0) {
                console->Print("IPS TRACE filter %s and type %d is set!\n", argv[4],
                               static_cast<int>(filterType));
                SetIPSFilter(argv[4], filterType);
                return;
            }
        }
        // reset filter <kind> <direction>
        if (MatchesWord(verb, "reset") && argc > 3) {
            unsigned short filterType = IpsFilterType(argv[2], argv[3]);
            if (filterType != 0) {
                console->Print("IPS TRACE filter type %d is Reset!\n",
                               static_cast<int>(filterType));
                SetIPSFilter(nullptr, filterType);
                return;
            }
        }
    }
    console->Print("%s", IPS_USAGE);
}

}  // namespace Zavrel
