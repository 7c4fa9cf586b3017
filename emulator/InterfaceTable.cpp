#include "emulator/InterfaceTable.h"

#include <algorithm>

#include "emulator/EmulatorTypes.h"

namespace Zavrel::Emulator {

unsigned long InterfaceTable::ApplyInterface(long rowStatus, unsigned long operStatus,
                                             unsigned long instance, unsigned long ifIndex,
                                             const char* name, unsigned long reserved, long flags,
                                             unsigned long extra, uint64_t nowMs) {
    const EiKey key(instance, ifIndex);
    auto found = m_interfaces.find(key);
    if (rowStatus == ROW_DESTROY) {
        if (found != m_interfaces.end()) {
            m_interfaces.erase(found);
        }
        return RESULT_DONE;
    }
    if (rowStatus != ROW_CREATE_AND_GO && rowStatus != ROW_ACTIVE) {
        return RESULT_WRONG_VALUE;
    }
    if (operStatus != 1 && operStatus != 2) {
        return RESULT_WRONG_VALUE;
    }
    if (rowStatus == ROW_ACTIVE && found == m_interfaces.end()) {
        return RESULT_NO_ROW;
    }
    const bool wasUp = found != m_interfaces.end() && found->second.operStatus == 1;
    const uint64_t upSince = found != m_interfaces.end() ? found->second.upSinceMs : nowMs;
    InterfaceRow& row = m_interfaces[key];
    row.instance = instance;
    row.ifIndex = ifIndex;
    row.name = name != nullptr ? name : "";
    row.operStatus = operStatus;
    // The request's reserved word carries no MTU in this system; a non-zero
    // value is taken as one.
    row.mtu = reserved != 0 ? reserved : DEFAULT_MTU;
    row.flags = static_cast<unsigned long>(flags);
    row.extra = extra;
    row.upSinceMs = (operStatus == 1 && !wasUp) ? nowMs : upSince;
    return RESULT_DONE;
}

unsigned long InterfaceTable::ApplyAddress(long rowStatus, unsigned long instance,
                                           unsigned long addrType, unsigned long ifIndex,
                                           const unsigned char* address, unsigned long prefixLength,
                                           uint64_t nowMs) {
    if (rowStatus != ROW_ACTIVE && rowStatus != ROW_CREATE_AND_GO && rowStatus != ROW_DESTROY) {
        return RESULT_WRONG_VALUE;
    }
    if ((addrType != 1 && addrType != 2) || address == nullptr) {
        return RESULT_WRONG_VALUE;
    }
    const bool ipv6Instance = (instance & IP6_INSTANCE_BIT) != 0;
    if (ipv6Instance != (addrType == 2)) {
        return RESULT_WRONG_VALUE;
    }
    const IpAddress value(addrType == 1 ? IpAddress::IPV4 : IpAddress::IPV6, address);
    const EaKey key(instance, ifIndex, addrType, value);
    if (rowStatus == ROW_DESTROY) {
        m_addresses.erase(key);
        return RESULT_DONE;
    }
    if (prefixLength > value.MaxPrefixLength()) {
        return RESULT_WRONG_VALUE;
    }
    auto found = m_addresses.find(key);
    if (found != m_addresses.end()) {
        found->second.prefixLength = prefixLength;
        return RESULT_DONE;
    }
    AddressRow row;
    row.instance = instance;
    row.ifIndex = ifIndex;
    row.addrType = addrType;
    row.address = value;
    row.prefixLength = prefixLength;
    row.sinceMs = nowMs;
    m_addresses.emplace(key, row);
    return RESULT_DONE;
}

const InterfaceRow* InterfaceTable::FindInterface(unsigned long instance,
                                                  unsigned long ifIndex) const {
    auto found = m_interfaces.find(EiKey(instance, ifIndex));
    return found == m_interfaces.end() ? nullptr : &found->second;
}

std::vector<ConnectedPrefix> InterfaceTable::Connected(unsigned long instance) const {
    std::vector<ConnectedPrefix> result;
    auto it = m_addresses.lower_bound(EaKey(instance, 0, 0, IpAddress()));
    for (; it != m_addresses.end() && std::get<0>(it->first) == instance; ++it) {
        const AddressRow& address = it->second;
        const InterfaceRow* interface = FindInterface(instance, address.ifIndex);
        if (interface == nullptr || interface->operStatus != 1) {
            continue;
        }
        ConnectedPrefix prefix;
        prefix.prefix = address.address.Masked(address.prefixLength);
        prefix.prefixLength = address.prefixLength;
        prefix.ifIndex = address.ifIndex;
        prefix.sinceMs = std::max(address.sinceMs, interface->upSinceMs);
        result.push_back(prefix);
    }
    return result;
}

void InterfaceTable::Clear() {
    m_interfaces.clear();
    m_addresses.clear();
}

}  // namespace Zavrel::Emulator
