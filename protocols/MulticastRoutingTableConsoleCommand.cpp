// MulticastRoutingTableConsoleCommand: the groups of a VLAN's multicast router.
#include "protocols/MulticastRoutingTableConsoleCommand.h"

#include "protocols/DcMulticastRouter.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

namespace {

const char* kUsage = "mcast-database [vrf <vid>] [group <address>]";
const char* kDescription = "Show Multicast Routing Information Base";

}  // namespace

MulticastRoutingTableConsoleCommand::MulticastRoutingTableConsoleCommand(DcConsole* console,
                                                                         unsigned short family)
    : DcConsoleCommand(console, console != nullptr ? console->CurrentVlan() : m_default_vlan,
                       kUsage, kDescription),
      m_family(family == DcMulticastRouter::PROTOCOL_MLD ? DcMulticastRouter::PROTOCOL_MLD
                                                         : DcMulticastRouter::PROTOCOL_IGMP),
      m_has_group(false),
      m_group{} {}

MulticastRoutingTableConsoleCommand::~MulticastRoutingTableConsoleCommand() = default;

bool MulticastRoutingTableConsoleCommand::ParseGroupOption(DcConsoleCommand& command,
                                                           const char* text) {
    auto& self = static_cast<MulticastRoutingTableConsoleCommand&>(command);
    if (!DcMulticastRouter::ParseGroup(self.m_family, text, &self.m_group)) {
        self.Print("Invalid group address %s\n", text);
        return false;
    }
    self.m_has_group = true;
    return true;
}

bool MulticastRoutingTableConsoleCommand::Parse(int argc, char** argv) {
    static const ConsoleCommandValueOption groupOption("group", false, &ParseGroupOption);
    static const ConsoleCommandOption* const options[] = {&vlan_option, &groupOption};
    if (m_console == nullptr) {
        return false;
    }
    if (argv == nullptr) {
        argc = 0;
    }
    if (!ParseOptions(options, 2, argc, argv) || argc > 0) {
        Print("Usage: %s\n", m_usage);
        return false;
    }
    PrintTable();
    TableEnd();
    delete this;
    return true;
}

void MulticastRoutingTableConsoleCommand::PrintTable() {
    const bool mld = m_family == DcMulticastRouter::PROTOCOL_MLD;
    Print("Multicast routing table of VLAN %u (%s)\n", static_cast<unsigned int>(m_vlan),
          mld ? "MLD" : "IGMP");
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    DcRouterBase* base =
        manager != nullptr
            ? manager->GetDcRouterByVID(m_vlan, mld ? DcRouterMgr::MLD : DcRouterMgr::IGMP)
            : nullptr;
    auto* router = dynamic_cast<DcMulticastRouter*>(base);
    if (router == nullptr) {
        Print("No multicast router in VLAN %u\n", static_cast<unsigned int>(m_vlan));
        return;
    }
    Print("%-40s %-10s %s\n", "Group", "Interface", "Querier");
    for (const DcMulticastRouter::Group& group : router->GetGroups()) {
        if (m_has_group && group.first != m_group) {
            continue;
        }
        Print("%-40s %-10u %s\n", DcMulticastRouter::FormatGroup(m_family, group.first).c_str(),
              group.second, router->IsQuerier(group.second) ? "yes" : "no");
    }
}

}  // namespace Zavrel
