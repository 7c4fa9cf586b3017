#include "console/RtmRTCommand.h"

#include <cstring>
#include <map>

#include "config/OptionParsers.h"
#include "console/TwoColumnsFormatter.h"
#include "interfaces/DcInterfaceMgr.h"
#include "platform/String.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

// Route protocol words by IANA code; code 2 keeps its three n's.
const char* const kProtoWords[18] = {
    "", "other", "connnected", "static", "icmp", "",    "",     "", "rip",
    "", "",      "",           "",       "ospf", "bgp", "idpr", "", "",
};

const char* const kTypeWords[5] = {"", "other", "reject", "local", "remote"};

// The keywords of "proto"; matched as whole words.
const std::map<string, long>& ProtocolKeywords() {
    static const std::map<string, long> keywords = {
        {"connected", Sms::PROTO_LOCAL}, {"static", Sms::PROTO_STATIC}, {"rip", Sms::PROTO_RIP},
        {"ospf", Sms::PROTO_OSPF},       {"bgp", Sms::PROTO_BGP},
    };
    return keywords;
}

// What differs between the two row types.
char Marker(const amb_cipr_rtm_route*) {
    return ' ';
}
char Marker(const amb_cipr_rtm_rib* row) {
    return row->fib_route == 1 ? '>' : ' ';
}
bool Unresolved(const amb_cipr_rtm_route*) {
    return false;
}
bool Unresolved(const amb_cipr_rtm_rib* row) {
    return row->unresolved == 1;
}

unsigned short VlanOfInstance(unsigned long instance) {
    return static_cast<unsigned short>(
        instance & ~static_cast<unsigned long>(DcRtmMgr::IP6_INSTANCE_BIT) & 0xffff);
}

}  // namespace

template <typename T>
const DcConsoleCommand::ConsoleCommandValueOption RtmRTCommand<T>::dest_option(
    "dest", false, &RtmRTCommand<T>::ParseDestination);

template <typename T>
const DcConsoleCommand::ConsoleCommandValueOption RtmRTCommand<T>::proto_option(
    "proto", false, &RtmRTCommand<T>::ParseProtocol);

template <typename T>
const DcConsoleCommand::ConsoleCommandFlagOption RtmRTCommand<T>::detail_option(
    "detail", &RtmRTCommand<T>::SetDetail);

template <typename T>
const DcConsoleCommand::ConsoleCommandOption* const RtmRTCommand<T>::m_opts[4] = {
    &DcConsoleCommand::vlan_option,
    &RtmRTCommand<T>::dest_option,
    &RtmRTCommand<T>::proto_option,
    &RtmRTCommand<T>::detail_option,
};

template <typename T>
RtmRTCommand<T>::RtmRTCommand(DcConsole* console, unsigned short family, const char* usage,
                              const char* description)
    : DcConsoleCommand(console, usage, description),
      m_ip4_destination(),
      m_ip6_destination(),
      m_detail(false),
      m_family(family),
      m_protocol(0) {}

template <typename T>
RtmRTCommand<T>::~RtmRTCommand() = default;

template <typename T>
const char* RtmRTCommand<T>::ProtoStr(unsigned long code) {
    return code < sizeof(kProtoWords) / sizeof(kProtoWords[0]) ? kProtoWords[code] : "";
}

template <typename T>
const char* RtmRTCommand<T>::TypeStr(unsigned long code) {
    return code < sizeof(kTypeWords) / sizeof(kTypeWords[0]) ? kTypeWords[code] : "";
}

template <typename T>
unsigned short RtmRTCommand<T>::Instance() const {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return IsIpv6() ? static_cast<unsigned short>(m_vlan | DcRtmMgr::IP6_INSTANCE_BIT) : m_vlan;
    }
    return rtm->GetDclProtocolInstanceIdFromVlan(m_vlan, m_family);
}

template <typename T>
bool RtmRTCommand<T>::ParseDestination(DcConsoleCommand& command, const char* text) {
    RtmRTCommand<T>& self = static_cast<RtmRTCommand<T>&>(command);
    if (self.m_family == Sms::AFI_IPV6) {
        if (text == nullptr || !self.m_ip6_destination.FromString(text)) {
            self.Print("Invalid IPv6 Destination Address %s\n", text != nullptr ? text : "");
            return false;
        }
    } else if (self.m_family == 0) {
        if (!ParseAddress(self.m_ip4_destination, text)) {
            self.Print("Invalid IPv4 Destination Address %s\n", text != nullptr ? text : "");
            return false;
        }
    }
    return true;
}

template <typename T>
bool RtmRTCommand<T>::ParseProtocol(DcConsoleCommand& command, const char* text) {
    if (text == nullptr) {
        return false;
    }
    const std::map<string, long>& keywords = ProtocolKeywords();
    auto found = keywords.find(string(text));
    if (found == keywords.end()) {
        return false;
    }
    static_cast<RtmRTCommand<T>&>(command).m_protocol = found->second;
    return true;
}

template <typename T>
bool RtmRTCommand<T>::SetDetail(DcConsoleCommand& command) {
    static_cast<RtmRTCommand<T>&>(command).m_detail = true;
    return true;
}

template <typename T>
bool RtmRTCommand<T>::ParseWords(int argc, char** argv) {
    if (m_console != nullptr) {
        m_vlan = m_console->CurrentVlan();
    }
    if (!ParseOptions(m_opts, 4, argc, argv)) {
        Print("Usage: %s\n", m_usage != nullptr ? m_usage : "");
        return false;
    }
    if (argc > 0) {
        return false;
    }
    // The VLAN must have an RTM; its IPv4 instance is numbered as the VLAN.
    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0, sizeof(entity));
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr || !rtm->GetRTMConfig(m_vlan, &entity)) {
        Print("VLAN %u is not present\n", static_cast<unsigned int>(m_vlan));
        return false;
    }
    return true;
}

template <typename T>
unsigned int RtmRTCommand<T>::Display(unsigned int /*first*/, unsigned int code, const void* data) {
    if (code != SMS_RC_ROW) {
        ParseError(code);
        return 0;
    }
    const T* row = static_cast<const T*>(data);
    if (row == nullptr || row->instance != Instance()) {
        return 1;
    }
    if (m_protocol != 0 && static_cast<unsigned long>(m_protocol) != row->proto) {
        return 1;
    }
    if (IsIpv6()) {
        if (!m_ip6_destination.IsUnspecified() &&
            std::memcmp(m_ip6_destination.Bytes(), row->dest, 16) != 0) {
            return 1;
        }
    } else if (m_ip4_destination != Ip4Addr() && !IsEqual(m_ip4_destination, row->dest)) {
        return 1;
    }
    if (m_detail) {
        PrintEntry(row);
    } else {
        if (m_header_printed == 0) {
            PrintHeader();
            m_header_printed = 1;
        }
        PrintTableRow(row);
    }
    return 1;
}

template <typename T>
void RtmRTCommand<T>::PrintHeader() {
    Print("\n %4s %*s %*s %10s %10s %10s\n", "VLAN", IsIpv6() ? 50 : 19, "PREFIX",
          IsIpv6() ? 46 : 16, "NEXTHOP", "IFACE", "AGE", "PROTO");
}

template <typename T>
const char* RtmRTCommand<T>::PrefixText(const T* row) const {
    const unsigned int length = static_cast<unsigned int>(row->dest_len);
    return IsIpv6() ? ToIp6PrefixStr(row->dest, length) : ToIp4PrefixStr(row->dest, length);
}

template <typename T>
const char* RtmRTCommand<T>::NextHopText(const T* row) const {
    return IsIpv6() ? ToIp6Str(row->next_hop) : DcIp4ToIp4Str(row->next_hop);
}

template <typename T>
void RtmRTCommand<T>::PrintTableRow(const T* row) {
    const unsigned short vlan = VlanOfInstance(row->instance);
    // The prefix text first: the IPv6 prefix formatter reuses the address
    // formatter's buffer, which the next hop then fills.
    const char* prefix = PrefixText(row);
    const char* nextHop = NextHopText(row);
    const char* iface = "TBD";
    if (!Unresolved(row)) {
        DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
        const char* name =
            interfaces != nullptr
                ? interfaces->GetIfName(vlan, static_cast<unsigned int>(row->if_index))
                : nullptr;
        iface = name != nullptr ? name : "";
    }
    Print("%c%4u %*s %*s %10s %10u %-10s\n", Marker(row), static_cast<unsigned int>(vlan),
          IsIpv6() ? 50 : 19, prefix, IsIpv6() ? 46 : 16, nextHop, iface,
          static_cast<unsigned int>(row->age), ProtoStr(row->proto));
}

template <typename T>
void RtmRTCommand<T>::PrintEntry(const T* row) const {
    TwoColumnsFormatter formatter;
    formatter.PushRow("VLAN", static_cast<unsigned int>(VlanOfInstance(row->instance)));
    formatter.PushRow("Destination", PrefixText(row));
    formatter.PushRow("Nexthop", NextHopText(row));
    formatter.PushRow("Route Type", TypeStr(row->route_type));
    formatter.PushRow("Protocol", ProtoStr(row->proto));
    formatter.PushRow("Route Info", static_cast<unsigned int>(row->route_info));
    formatter.PushRow("Age", static_cast<unsigned int>(row->age));
    formatter.PushRow("NextHop AS", static_cast<unsigned int>(row->next_hop_as));
    formatter.PushRow("Metric1", static_cast<unsigned int>(row->metric1));
    formatter.PushRow("Metric2", static_cast<unsigned int>(row->metric2));
    formatter.PushRow("Metric3", static_cast<unsigned int>(row->metric3));
    formatter.PushRow("Metric4", static_cast<unsigned int>(row->metric4));
    formatter.PushRow("Metric5", static_cast<unsigned int>(row->metric5));
    const char* text = formatter.Format(20, TwoColumnsFormatter::DEFAULT_COL2_WIDTH, ":  ");
    if (text != nullptr) {
        // Printed as text: an address or number never holds a format sign,
        // and nothing in it is taken as one.
        Print("%s", text);
    }
    Print("\n");
}

template class RtmRTCommand<amb_cipr_rtm_route>;
template class RtmRTCommand<amb_cipr_rtm_rib>;

// ---- the two commands

const char* const RtmRouteCommand::USAGE =
    "rtm route [vrf <vid>] [destination <Destination Address>] "
    "[protocol bgp|connected|static|rip|ospf] [detail]";
const char* const RtmRouteCommand::DESCRIPTION = "Show Route Information";

RtmRouteCommand::RtmRouteCommand(DcConsole* console, unsigned short family)
    : RtmRTCommand<amb_cipr_rtm_route>(console, family, USAGE, DESCRIPTION) {}

RtmRouteCommand::~RtmRouteCommand() = default;

bool RtmRouteCommand::Parse(int argc, char** argv) {
    if (!ParseWords(argc, argv)) {
        return false;
    }
    sms_get_next_rtm_route(Instance(), &DcConsoleCommand::ResponseHandler, this);
    return true;
}

const char* const RtmRibCommand::USAGE =
    "rtm rib [vrf <vid>] [destination <Destination Address>] "
    "[protocol bgp|connected|static|rip|ospf] [detail]";
const char* const RtmRibCommand::DESCRIPTION = "Show RIB Information";

RtmRibCommand::RtmRibCommand(DcConsole* console, unsigned short family)
    : RtmRTCommand<amb_cipr_rtm_rib>(console, family, USAGE, DESCRIPTION) {}

RtmRibCommand::~RtmRibCommand() = default;

bool RtmRibCommand::Parse(int argc, char** argv) {
    if (!ParseWords(argc, argv)) {
        return false;
    }
    sms_get_next_rtm_rib(Instance(), &DcConsoleCommand::ResponseHandler, this);
    return true;
}

void RtmRibCommand::PrintEntry(const amb_cipr_rtm_rib* row) const {
    RtmRTCommand<amb_cipr_rtm_rib>::PrintEntry(row);
    Print("FIB Route?  : %s\n", row->fib_route == 1 ? "yes" : "no");
}

}  // namespace Zavrel
