// SystemDriver: the events of the application and of the stack, drawn from
// a Choices source, and the check of what the system holds afterwards.
#include "harness/SystemDriver.h"

#include "cfg/CfgSched.h"
#include "console/DcInterfaceConsoleCommand.h"
#include "console/RtmRTCommand.h"
#include "emulator/Emulator.h"
#include "interfaces/DcInterfaceMgr.h"
#include "mib/Serializer.h"
#include "platform/CapturingConsole.h"
#include "platform/Ip6Addr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

// VLANs the events name: four that the documents configure and, last, one
// that none does.
const unsigned short kVlans[] = {10, 11, 20, 21, 99};
const uint32_t kVlanCount = sizeof(kVlans) / sizeof(kVlans[0]);

// Each document: the VLAN entries of VLAN_CONFIGURATIONS.
const char* const kDocuments[2][SystemDriver::VARIANTS] = {
    {
        R"({"vid": 10, "RIPV2": {"enabled": true, "REDISTRIBUTION": {"bgp": false}}})",
        R"({"vid": 10, "RIPV2": {"enabled": true}, "BGP": {"enabled": true, "REDISTRIBUTION": {"static": true}}}, {"vid": 11})",
        R"({"vid": 10, "OSPFV2": {"enabled": true, "AREAS": [{"area": 0, "stub": 0, "interfaces": [100, 101]}]}}, {"vid": 11, "RIPNG": {"enabled": true}, "MLD": {"enabled": true}})",
        R"({"vid": 11, "RTM": {"dead_rpm_timer": 60}}, {"vid": 21, "IGMP": {"enabled": true}})",
        "",
        R"({"vid": 10, "RIPV2": {"enabled": true}, "BGP": {"REDISTRIBUTION": {"connected": true, "rip": true}}}, {"vid": 11}, {"vid": 21, "RIPV2": {"enabled": true}})",
    },
    {
        R"({"vid": 20, "RIPV2": {"enabled": true}})",
        R"({"vid": 20, "RIPNG": {"enabled": true}, "OSPFV3": {"enabled": true}}, {"vid": 21, "RIPV2": {"enabled": true}})",
        R"({"vid": 20, "BGP": {"enabled": true, "REDISTRIBUTION": {"ospf": true}}})",
        R"({"vid": 21})",
        "",
        R"({"vid": 20, "IGMP": {"enabled": true}, "MLD": {"enabled": true}}, {"vid": 21, "OSPFV2": {"enabled": true}})",
    },
};

// Results a faulty stack answers with: a temporary failure (retried), a
// wrong value (given up), no such row, and two results the library has no
// name for (general error and inconsistent value in the walk codes).
const unsigned long kFaultResults[] = {Sms::RESULT_TEMPORARY, Sms::RESULT_WRONG_VALUE,
                                       Sms::RESULT_NO_ROW, 2, 4};

// The kinds of request a fault can hit: the four row kinds and walks.
const Emulator::RequestKind kFaultKinds[] = {
    Emulator::RequestKind::Route, Emulator::RequestKind::Redistribution,
    Emulator::RequestKind::Interface, Emulator::RequestKind::Address, Emulator::RequestKind::Walk};
const uint32_t kFaultKindCount = sizeof(kFaultKinds) / sizeof(kFaultKinds[0]);

}  // namespace

const char* const SystemDriver::SOURCES[2] = {"a.json", "b.json"};

std::string SystemDriver::Document(unsigned int source, unsigned int variant) {
    return std::string("{\"VLAN_CONFIGURATIONS\": [") + kDocuments[source % 2][variant % VARIANTS] +
           "]}";
}

SystemDriver::SystemDriver(RouterSystem& system, Choices& choices, const Settings& settings)
    : m_system(system), m_choices(choices), m_settings(settings) {}

void SystemDriver::Step() {
    Do(static_cast<Event>(m_choices.Pick(EVENT_COUNT)));
    CollectWalks();
}

void SystemDriver::Note(const std::string& event) {
    if (m_log != nullptr) {
        m_log->push_back("at " + std::to_string(m_system.Loop().NowMs()) + " ms: " + event);
    }
}

void SystemDriver::Do(Event event) {
    ++m_tally.events[event];
    switch (event) {
        case ADD_ROUTE: {
            const RouteBook::Route route = PickRoute();
            const unsigned int metric = 1 + m_choices.Pick(16);
            Note("add route " + route.ToString() + " metric " + std::to_string(metric));
            m_book.Add(route, metric);
            break;
        }
        case REMOVE_ROUTE:
            RouteRequest("remove", &RouteBook::Remove);
            break;
        case ENABLE_ROUTE:
            RouteRequest("enable", &RouteBook::Enable);
            break;
        case DISABLE_ROUTE:
            RouteRequest("disable", &RouteBook::Disable);
            break;
        case INTERFACE:
            Interface();
            break;
        case ADDRESS:
            Address();
            break;
        case RELOAD:
            Reload();
            break;
        case UNLOAD:
            Unload();
            break;
        case WALK:
            Walk();
            break;
        case STACK_FAULT:
            StackFault();
            break;
        case RUN_CLOCK: {
            static const uint64_t steps[] = {0, 50, 100, 250, 1000, 5000};
            const uint64_t ms = steps[m_choices.Pick(6)];
            Note("run " + std::to_string(ms) + " ms");
            m_system.Run(ms);
            break;
        }
        case EVENT_COUNT:
            break;
    }
}

void SystemDriver::RouteRequest(const char* verb, bool (RouteBook::*request)(const Route&)) {
    const RouteBook::Route route = PickRoute();
    Note(std::string(verb) + " route " + route.ToString());
    (m_book.*request)(route);
}

unsigned short SystemDriver::PickVlan() {
    return kVlans[m_choices.Pick(m_settings.unconfiguredVlan ? kVlanCount : kVlanCount - 1)];
}

RouteBook::Route SystemDriver::PickRoute() {
    RouteBook::Route route;
    route.vlan = PickVlan();
    route.destination = Ip4Addr(172, 16, static_cast<unsigned char>(m_choices.Pick(8)), 0);
    route.prefixLength = 24;
    route.gateway = Ip4Addr(10, 0, static_cast<unsigned char>(m_choices.Pick(2)), 254);
    route.ifIndex = m_choices.Pick(2) == 0 ? 0 : 100;
    return route;
}

void SystemDriver::Interface() {
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return;
    }
    const unsigned short vlan = PickVlan();
    const unsigned int ifIndex = 100 + m_choices.Pick(3);
    const std::string name = "e" + std::to_string(vlan) + "-" + std::to_string(ifIndex);
    const uint32_t action = m_choices.Pick(4);
    static const char* const actions[] = {"add", "remove", "up", "down"};
    Note(std::string("interface ") + actions[action] + " " + name);
    switch (action) {
        case 0:
            interfaces->AddInterface(vlan, ifIndex, name.c_str(),
                                     DcInterfaceMgr::INTF_TYPE_ETHERNET, 0x18, 0, 1);
            break;
        case 1:
            interfaces->RemoveInterface(vlan, ifIndex, name.c_str());
            break;
        case 2:
            interfaces->SetInterfaceUp(vlan, ifIndex, name.c_str());
            break;
        default:
            interfaces->SetInterfaceDown(vlan, ifIndex, name.c_str());
            break;
    }
}

void SystemDriver::Address() {
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        return;
    }
    const unsigned short vlan = PickVlan();
    const unsigned int ifIndex = 100 + m_choices.Pick(3);
    const auto host = static_cast<unsigned char>(1 + m_choices.Pick(2));
    const Ip4Addr address(10, static_cast<unsigned char>(vlan), static_cast<unsigned char>(ifIndex),
                          host);
    const Ip4Addr mask(255, 255, 255, 0);
    Ip6Addr address6;
    address6.FromString(string(("2001:db8:" + std::to_string(vlan) + ":" + std::to_string(ifIndex) +
                                "::" + std::to_string(host))
                                   .c_str()));
    const uint32_t action = m_choices.Pick(5);
    static const char* const actions[] = {"add", "change to", "delete", "add", "delete"};
    Note(std::string("address ") + actions[action] + " " +
         (action < 3 ? address.ToString().c_str() : address6.ToString().c_str()) + " vlan " +
         std::to_string(vlan) + " ifIndex " + std::to_string(ifIndex));
    switch (action) {
        case 0:
            interfaces->AddIpAddress(vlan, ifIndex, address, mask);
            break;
        case 1:
            interfaces->ChangeIpAddress(vlan, ifIndex, address, mask);
            break;
        case 2:
            interfaces->DeleteIpAddress(vlan, ifIndex, address, mask);
            break;
        case 3:
            interfaces->AddIpAddress(vlan, ifIndex, address6, 64);
            break;
        default:
            interfaces->DeleteIpAddress(vlan, ifIndex, address6, 64);
            break;
    }
}

void SystemDriver::Reload() {
    const unsigned int source = m_choices.Pick(2);
    const unsigned int variant = m_choices.Pick(VARIANTS);
    Note(std::string("reload ") + SOURCES[source] + " variant " + std::to_string(variant));
    std::string error;
    if (!m_system.Reload(Document(source, variant), SOURCES[source], error)) {
        ++m_tally.refusedDocuments;
    }
    NoteVlans();
}

void SystemDriver::Unload() {
    const unsigned int source = m_choices.Pick(2);
    Note(std::string("unload ") + SOURCES[source]);
    m_system.Unload(SOURCES[source]);
    NoteVlans();
}

void SystemDriver::NoteVlans() {
    std::set<unsigned short> now;
    for (const auto& entry : m_system.Manager().GetVlans()) {
        if (entry.second != nullptr) {
            now.insert(entry.first);
        }
    }
    for (unsigned short vlan : m_vlans) {
        if (now.count(vlan) == 0) {
            m_book.ForgetVlan(vlan);
        }
    }
    m_vlans.swap(now);
}

const char* const SystemDriver::WALK_TABLES[WALK_TABLE_COUNT] = {
    "rtm route", "rtm rib", "rtm6 route", "rtm6 rib", "interfaces", "interfaces6"};

bool SystemDriver::StartWalk(CapturingConsole& console, const std::string& table,
                             std::vector<std::string> words) {
    unsigned int index = 0;
    while (index < WALK_TABLE_COUNT && table != WALK_TABLES[index]) {
        ++index;
    }
    if (index == WALK_TABLE_COUNT) {
        return false;
    }
    std::vector<char*> argv;
    for (std::string& word : words) {
        argv.push_back(&word[0]);
    }
    argv.push_back(nullptr);
    const unsigned short family = index == 2 || index == 3 ? Sms::AFI_IPV6 : Sms::AFI_IPV4;
    DcConsoleCommand* command = nullptr;
    if (index == 0 || index == 2) {
        command = new RtmRouteCommand(&console, family);
    } else if (index == 1 || index == 3) {
        command = new RtmRibCommand(&console, family);
    } else {
        command = new DcInterfaceConsoleCommand(&console, index == 5);
    }
    // From a successful Parse on, the command owns itself until its walk
    // ends.
    if (!command->Parse(static_cast<int>(words.size()), argv.data())) {
        delete command;
        return false;
    }
    return true;
}

void SystemDriver::Walk() {
    const char* table = WALK_TABLES[m_choices.Pick(WALK_TABLE_COUNT)];
    std::vector<std::string> words;
    if (m_choices.Pick(2) == 0) {
        words = {"vrf", std::to_string(PickVlan())};
    }
    std::string name = table;
    for (const std::string& word : words) {
        name += " " + word;
    }
    Note("walk " + name);
    auto console = std::make_unique<CapturingConsole>(1);
    if (StartWalk(*console, table, words)) {
        m_walks.push_back(RunningWalk{name, std::move(console)});
    }
}

std::string SystemDriver::WalkProblem(const CapturingConsole& console, const std::string& walk) {
    if (console.EndCount() != 1) {
        return "walk '" + walk + "' ended " + std::to_string(console.EndCount()) + " times";
    }
    const std::string& all = console.All();
    const std::string tableEnd = "End of Table\n";
    const bool endOfTable =
        all.size() >= tableEnd.size() &&
        all.compare(all.size() - tableEnd.size(), tableEnd.size(), tableEnd) == 0;
    if (!endOfTable && console.Errors().empty()) {
        return "walk '" + walk + "' ended without its end of table or an error";
    }
    return "";
}

void SystemDriver::CollectWalks() {
    for (auto it = m_walks.begin(); it != m_walks.end();) {
        if (it->console->EndCount() == 0) {
            ++it;
            continue;
        }
        const std::string problem = WalkProblem(*it->console, it->name);
        if (!problem.empty()) {
            m_walkProblems.push_back(problem);
        }
        it = m_walks.erase(it);
    }
}

void SystemDriver::StackFault() {
    if (!m_settings.stackFaults) {
        return;
    }
    const Emulator::RequestKind kind = kFaultKinds[m_choices.Pick(kFaultKindCount)];
    const std::string kindName = Emulator::RequestKindName(kind);
    switch (m_choices.Pick(5)) {
        case 0: {
            const unsigned int count = 1 + m_choices.Pick(3);
            const unsigned long result = kFaultResults[m_choices.Pick(5)];
            Note("stack fails the next " + std::to_string(count) + " " + kindName +
                 " requests with " + std::to_string(result));
            Emulator::FailNext(kind, count, result);
            break;
        }
        case 1: {
            const unsigned int runs = 1 + m_choices.Pick(5);
            Note("stack answers " + kindName + " requests after " + std::to_string(runs) + " runs");
            Emulator::SetAnswerDelay(kind, runs);
            break;
        }
        case 2:
            Note("stack frozen");
            Emulator::Freeze(true);
            break;
        case 3:
            Note("stack thawed");
            Emulator::Freeze(false);
            break;
        default:
            Note("stack faults cleared");
            Emulator::ClearFaults();
            break;
    }
}

void SystemDriver::Settle(uint64_t ms) {
    Emulator::ClearFaults();
    Emulator::Freeze(false);
    m_system.Run(ms);
}

std::vector<std::string> SystemDriver::Problems() {
    std::vector<std::string> problems = m_book.Check(m_system.Manager());
    for (CfgItem* item : m_system.Manager().GetCfgSched().AllItems()) {
        if (!item->IsIssued() && item->CfgListReady() && item->CfgItemReady()) {
            CapturingConsole line;
            item->PrintItem(&line);
            problems.push_back("stuck: New and ready, never sent: " + line.All());
        }
    }
    CollectWalks();
    problems.insert(problems.end(), m_walkProblems.begin(), m_walkProblems.end());
    for (const RunningWalk& walk : m_walks) {
        problems.push_back("walk '" + walk.name + "' never ended");
    }
    const size_t rows = m_system.Manager().GetSerializer().PendingOidCount();
    if (rows != 0) {
        problems.push_back("rows still queued in the serializer: " + std::to_string(rows));
    }
    for (const std::string& breach : Emulator::Breaches()) {
        problems.push_back("contract breach: " + breach);
    }
    return problems;
}

}  // namespace Zavrel
