// DcMulticastRouter: IGMP / MLD router.
#include "protocols/DcMulticastRouter.h"

#include <new>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "protocols/DcRouterConsole.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

namespace {

int NormalizeProtocol(int protocol) {
    return protocol == DcMulticastRouter::PROTOCOL_MLD ? DcMulticastRouter::PROTOCOL_MLD
                                                       : DcMulticastRouter::PROTOCOL_IGMP;
}

}  // namespace

DcMulticastRouter::DcMulticastRouter(unsigned short vid, int protocol)
    : DcMulticastRouterBase(
          NormalizeProtocol(protocol) == PROTOCOL_MLD ? "MLD" : "IGMP", vid,
          new (std::nothrow) DcProtoInterfaceBase(
              NormalizeProtocol(protocol) == PROTOCOL_MLD ? DcRtmMgr::AFI_IPV6 : DcRtmMgr::AFI_IPV4,
              DcProtoInterfaceBase::PROTO_NONE)),
      m_protocol(NormalizeProtocol(protocol)) {}

DcMulticastRouter::~DcMulticastRouter() = default;

bool DcMulticastRouter::CreateConfigList(DcConfigLists&) {
    return true;
}

bool DcMulticastRouter::AddInterface(unsigned int ifIndex, bool querier) {
    m_querier[ifIndex] = querier;
    SetInterfaceStatus(ifIndex, DcProtoInterfaceBase::IF_UP);
    return true;
}

bool DcMulticastRouter::ConfigureInterface(unsigned int ifIndex, bool querier) {
    if (!IsMulticastInterface(ifIndex) && !IsEnabled(ifIndex)) {
        return false;
    }
    m_querier[ifIndex] = querier;
    return true;
}

bool DcMulticastRouter::RemoveInterface(unsigned int ifIndex) {
    if (m_querier.erase(ifIndex) == 0) {
        return false;
    }
    for (auto it = m_groups.begin(); it != m_groups.end();) {
        it = it->second == ifIndex ? m_groups.erase(it) : std::next(it);
    }
    SetInterfaceStatus(ifIndex, DcProtoInterfaceBase::IF_REMOVED);
    return true;
}

bool DcMulticastRouter::IsMulticastInterface(unsigned int ifIndex) const {
    return m_querier.count(ifIndex) != 0;
}

bool DcMulticastRouter::IsQuerier(unsigned int ifIndex) const {
    auto it = m_querier.find(ifIndex);
    return it != m_querier.end() && it->second;
}

bool DcMulticastRouter::AddGroup(unsigned int ifIndex, const char* group) {
    std::array<unsigned char, 16> address{};
    if (!IsMulticastInterface(ifIndex) || !ParseGroup(m_protocol, group, &address)) {
        return false;
    }
    m_groups.insert(Group(address, ifIndex));
    return true;
}

bool DcMulticastRouter::RemoveGroup(unsigned int ifIndex, const char* group) {
    std::array<unsigned char, 16> address{};
    if (!ParseGroup(m_protocol, group, &address)) {
        return false;
    }
    return m_groups.erase(Group(address, ifIndex)) != 0;
}

bool DcMulticastRouter::ParseGroup(int protocol, const char* text,
                                   std::array<unsigned char, 16>* out) {
    if (text == nullptr || out == nullptr) {
        return false;
    }
    std::array<unsigned char, 16> address{};
    if (NormalizeProtocol(protocol) == PROTOCOL_MLD) {
        Ip6Addr group;
        // ff00::/8
        if (!group.FromString(text) || group.Bytes()[0] != 0xff) {
            return false;
        }
        for (int i = 0; i < 16; ++i) {
            address[i] = group.Bytes()[i];
        }
    } else {
        Ip4Addr group;
        // 224.0.0.0/4
        if (!group.FromString(text) || (group.Bytes()[0] & 0xf0) != 0xe0) {
            return false;
        }
        for (int i = 0; i < 4; ++i) {
            address[i] = group.Bytes()[i];
        }
    }
    *out = address;
    return true;
}

string DcMulticastRouter::FormatGroup(int protocol, const std::array<unsigned char, 16>& address) {
    if (NormalizeProtocol(protocol) == PROTOCOL_MLD) {
        return Ip6Addr(address.data()).ToString();
    }
    return Ip4Addr(address.data()).ToString();
}

void DcMulticastRouter::Ip4ConsoleCommand(void* context, DcConsole* console, int argc,
                                          char** argv) {
    ConsoleCommand(context, console, argc, argv, PROTOCOL_IGMP);
}

void DcMulticastRouter::ConsoleCommand(void*, DcConsole* console, int argc, char** argv,
                                       int protocol) {
    if (NormalizeProtocol(protocol) == PROTOCOL_MLD) {
        DcRouterConsole::Show(console, argc, argv, "ip6 mld", DcRouterMgr::MLD, "MLD",
                              DcRtmMgr::AFI_IPV6);
    } else {
        DcRouterConsole::Show(console, argc, argv, "ip igmp", DcRouterMgr::IGMP, "IGMP",
                              DcRtmMgr::AFI_IPV4);
    }
}

}  // namespace Zavrel
