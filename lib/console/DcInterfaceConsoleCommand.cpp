#include "console/DcInterfaceConsoleCommand.h"

#include <cstring>

#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

namespace {

struct FlagLetter {
    unsigned long bit;
    const char* letter;
};

// In bit order, which is the order the letters are shown in.
const FlagLetter kFlagLetters[] = {
    {SMS_IF_FLAG_MPLS_TUNNEL, "T"}, {SMS_IF_FLAG_LOOPBACK, "L"},  {SMS_IF_FLAG_P2P, "P"},
    {SMS_IF_FLAG_BROADCAST, "B"},   {SMS_IF_FLAG_MULTICAST, "M"}, {SMS_IF_FLAG_UNNUMBERED, "U"},
};

}  // namespace

DcInterfaceConsoleCommand::DcInterfaceConsoleCommand(DcConsole* console, bool ipv6)
    : DcConsoleCommand(console, nullptr, nullptr),
      m_ipv6(ipv6),
      m_instance(0),
      m_prefix_formatter(ipv6 ? &DcConsoleCommand::ToIp6PrefixStr
                              : &DcConsoleCommand::ToIp4PrefixStr),
      m_handler(&DcInterfaceConsoleCommand::HandleEiEntry),
      m_interfaces() {}

DcInterfaceConsoleCommand::DcInterfaceConsoleCommand(DcConsole* console, unsigned short vlan,
                                                     bool ipv6)
    : DcConsoleCommand(console, vlan, nullptr, nullptr),
      m_ipv6(ipv6),
      m_instance(0),
      m_prefix_formatter(ipv6 ? &DcConsoleCommand::ToIp6PrefixStr
                              : &DcConsoleCommand::ToIp4PrefixStr),
      m_handler(&DcInterfaceConsoleCommand::HandleEiEntry),
      m_interfaces() {}

DcInterfaceConsoleCommand::~DcInterfaceConsoleCommand() = default;

bool DcInterfaceConsoleCommand::Parse(int /*argc*/, char** /*argv*/) {
    const int afi = m_ipv6 ? Sms::AFI_IPV6 : Sms::AFI_IPV4;
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm != nullptr) {
        m_instance = rtm->GetDclProtocolInstanceIdFromVlan(m_vlan, afi);
    } else {
        m_instance = m_ipv6 ? (m_vlan | DcRtmMgr::IP6_INSTANCE_BIT) : m_vlan;
    }
    sms_get_next_i3_ei(m_instance, &DcConsoleCommand::ResponseHandler, this);
    return true;
}

unsigned int DcInterfaceConsoleCommand::Display(unsigned int first, unsigned int code,
                                                const void* row) {
    return (this->*m_handler)(first, code, row);
}

void DcInterfaceConsoleCommand::SwitchToEaEntries() {
    m_handler = &DcInterfaceConsoleCommand::HandleEaEntry;
    sms_get_next_i3_ea(m_instance, &DcConsoleCommand::ResponseHandler, this);
}

unsigned int DcInterfaceConsoleCommand::HandleEiEntry(unsigned int /*first*/, unsigned int code,
                                                      const void* data) {
    const amb_stubs_i3_ei* row = static_cast<const amb_stubs_i3_ei*>(data);
    if (code == SMS_RC_ROW && row == nullptr) {
        return NEXT_ROW;  // nothing to keep
    }
    if (code == SMS_RC_ROW && row->instance <= m_instance) {
        m_interfaces[static_cast<unsigned int>(row->if_index)].first = *row;
        return NEXT_ROW;
    }
    if (code == SMS_RC_END_OF_TABLE || code == SMS_RC_ROW) {
        // The end of the table, or the walk has left the instance.
        SwitchToEaEntries();
        return END_OF_WALK;
    }
    ParseError(code);
    return DONE;
}

unsigned int DcInterfaceConsoleCommand::HandleEaEntry(unsigned int /*first*/, unsigned int code,
                                                      const void* data) {
    const amb_stubs_i3_ea* row = static_cast<const amb_stubs_i3_ea*>(data);
    if (code == SMS_RC_ROW && row == nullptr) {
        return NEXT_ROW;
    }
    if (code == SMS_RC_ROW && row->instance <= m_instance) {
        // An address of an interface not seen gets an all-zero interface row.
        m_interfaces[static_cast<unsigned int>(row->if_index)].second.push_back(*row);
        return NEXT_ROW;
    }
    if (code != SMS_RC_ROW && code != SMS_RC_END_OF_TABLE) {
        ParseError(code);
        return DONE;
    }
    PrintTable();
    TableEnd();
    return DONE;
}

void DcInterfaceConsoleCommand::PrintTable() {
    Print("\n");
    Print("%s", GetIfFlagHelpStr().c_str());
    Print("%4s %10s %10s %6s %6s %6s %s\n", "VLAN", "IfIndex", "IfName", "Status", "MTU", "Flags",
          "IPAddress");
    for (const auto& entry : m_interfaces) {
        const amb_stubs_i3_ei& ei = entry.second.first;
        // The stack's name field need not be terminated.
        char name[sizeof(ei.if_name) + 1];
        std::memcpy(name, ei.if_name, sizeof(ei.if_name));
        name[sizeof(ei.if_name)] = '\0';
        const unsigned short vlan = static_cast<unsigned short>(
            ei.instance & ~static_cast<unsigned long>(DcRtmMgr::IP6_INSTANCE_BIT) & 0xffff);
        Print("%4u %10u %10s ", static_cast<unsigned int>(vlan),
              static_cast<unsigned int>(ei.if_index), name);
        Print("%6s %6u %6s ", ei.oper_status == 1 ? "UP" : "DOWN",
              static_cast<unsigned int>(ei.mtu), GetIfFlagsStr(&ei).c_str());
        const Addresses& addresses = entry.second.second;
        bool first = true;
        for (const amb_stubs_i3_ea& ea : addresses) {
            const char* text =
                m_prefix_formatter(ea.address, static_cast<unsigned int>(ea.prefix_len));
            if (first) {
                Print("%s", text);
                first = false;
            } else {
                Print("\n%4s %10s %10s %6s %6s %6s %s", "", "", "", "", "", "", text);
            }
        }
        Print("\n");
    }
}

string DcInterfaceConsoleCommand::GetIfFlagHelpStr() {
    return string(
        "Flags:\nB-Broadcast M-Multicast L-Loopback\nT-MPLS Tunnel P-Point2Point "
        "U-Unnumbered\n");
}

string DcInterfaceConsoleCommand::GetIfFlagsStr(const amb_stubs_i3_ei* row) {
    string letters;
    if (row == nullptr) {
        return letters;
    }
    for (const FlagLetter& flag : kFlagLetters) {
        if ((row->flags & flag.bit) != 0) {
            letters.Append(flag.letter);
        }
    }
    return letters;
}

}  // namespace Zavrel
