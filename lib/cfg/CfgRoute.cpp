#include "cfg/CfgRoute.h"

#include <cstring>

#include "config/AddressFormat.h"
#include "platform/DcConsole.h"
#include "platform/Trace.h"

namespace Zavrel {

string CfgRouteEntry::Format(const void* address) const {
    return family == 1 ? FormatIp4Addr(address) : FormatIp6Addr(address);
}

CfgRoute::CfgRoute(unsigned short vlan) : m_count(0), m_vlan(vlan) {}

CfgRoute::~CfgRoute() {
    CleanList();
}

bool CfgRoute::SameAddresses(const CfgRouteEntry& entry, const void* destination,
                             const void* nextHop) {
    unsigned int width = CfgRouteEntry::AddressWidth(entry.family);
    return memcmp(entry.destination, destination, width) == 0 &&
           memcmp(entry.nextHop, nextHop, width) == 0;
}

CfgRouteEntry* CfgRoute::GetCfgRouteEntry(int family, const void* destination,
                                          unsigned int prefixLength, const void* nextHop) {
    // Only the first entry is ever examined.
    if (m_entries.empty()) {
        return nullptr;
    }
    CfgRouteEntry& first = m_entries.front();
    if (first.family == family && first.prefixLength == prefixLength &&
        SameAddresses(first, destination, nextHop)) {
        return &first;
    }
    return nullptr;
}

unsigned int CfgRoute::AddEntry(int family, const void* destination, unsigned int prefixLength,
                                const void* nextHop, unsigned long ifIndex, unsigned short reserved,
                                unsigned short metric, long pathType, long rowStatus,
                                long adminStatus) {
    CfgRouteEntry* found = GetCfgRouteEntry(family, destination, prefixLength, nextHop);
    if (found != nullptr) {
        found->metric = metric;
        found->reserved = reserved;
        found->ifIndex = static_cast<unsigned int>(ifIndex);
        found->pathType = static_cast<int>(pathType);
        found->rowStatus = static_cast<int>(rowStatus);
        found->adminStatus = static_cast<int>(adminStatus);
        return 0;
    }
    CfgRouteEntry entry;
    memset(&entry, 0, sizeof(entry));
    entry.family = family;
    unsigned int width = CfgRouteEntry::AddressWidth(family);
    memcpy(entry.destination, destination, width);
    memcpy(entry.nextHop, nextHop, width);
    entry.prefixLength = prefixLength;
    entry.ifIndex = static_cast<unsigned int>(ifIndex);
    entry.metric = metric;
    entry.reserved = reserved;
    entry.pathType = static_cast<int>(pathType);
    entry.rowStatus = static_cast<int>(rowStatus);
    entry.adminStatus = static_cast<int>(adminStatus);
    m_entries.push_back(entry);
    ++m_count;
    return 1;
}

unsigned int CfgRoute::DelEntry(int family, const void* destination, unsigned int prefixLength,
                                const void* nextHop, unsigned long ifIndex) {
    // An entry is removed only when its prefix length differs from the given
    // one, and the count is left as it is: both are how the list behaves.
    for (std::list<CfgRouteEntry>::iterator it = m_entries.begin(); it != m_entries.end();) {
        bool familyMatches = family == 1 ? it->family == 1 : it->family == family;
        if (familyMatches && SameAddresses(*it, destination, nextHop) &&
            it->ifIndex == static_cast<unsigned int>(ifIndex) && it->prefixLength != prefixLength) {
            it = m_entries.erase(it);
        } else {
            ++it;
        }
    }
    return 1;
}

void CfgRoute::CleanList() {
    m_entries.clear();
    m_count = 0;
}

void CfgRoute::IterateAll(Callback callback, void* context) {
    if (callback == nullptr) {
        return;
    }
    for (CfgRouteEntry& entry : m_entries) {
        callback(&entry, context);
    }
}

void CfgRoute::PrintTable(DcConsole* console) const {
    if (console == nullptr) {
        return;
    }
    console->Print("VLAN ID = %d\n", static_cast<int>(m_vlan));
    if (m_count != 0) {
        console->Print("%-4s %-15s %-15s %-15s %-5s %-4s\n", "VLAN", "Network", "Netmask",
                       "Nexthop", "IfIndex", "Cost");
    }
    for (const CfgRouteEntry& entry : m_entries) {
        console->Print("%4u %-15s/%03u %-15s %-5u %4u\n", static_cast<unsigned int>(m_vlan),
                       entry.Format(entry.destination).c_str(), entry.prefixLength,
                       entry.Format(entry.nextHop).c_str(), entry.ifIndex,
                       static_cast<unsigned int>(entry.metric));
    }
    console->Print("\nNumber of Entries: %u\n\n", m_count);
}

void CfgRoute::PrintList() const {
    TRACE("\nVLAN ID = %d\n", static_cast<int>(m_vlan));
    for (const CfgRouteEntry& entry : m_entries) {
        TRACE("\t%u\t%s/%lu\t%s\t%u\t%u\n", static_cast<unsigned int>(m_vlan),
              entry.Format(entry.destination).c_str(),
              static_cast<unsigned long>(entry.prefixLength), entry.Format(entry.nextHop).c_str(),
              entry.ifIndex, static_cast<unsigned int>(entry.metric));
    }
    TRACE("\nNumber of Entries: %u\n", m_count);
}

}  // namespace Zavrel
