// InterfaceTable: the stack's I3 tables, interfaces ("ei") and interface
// addresses ("ea"), keyed by instance. IPv4 rows live in the VLAN's IPv4
// instance (the VLAN itself), IPv6 rows in its IPv6 instance (VLAN | 0x8000).
// The table also derives the connected prefixes that feed the RTM instance
// of the same id: the prefixes of the addresses of interfaces that are up.
#ifndef ZAVREL_EMULATOR_INTERFACETABLE_H
#define ZAVREL_EMULATOR_INTERFACETABLE_H

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "emulator/IpAddress.h"

namespace Zavrel::Emulator {

struct InterfaceRow {
    unsigned long instance = 0;
    unsigned long ifIndex = 0;
    std::string name;
    unsigned long operStatus = 2;  // 1 up, 2 down
    unsigned long mtu = 0;
    unsigned long flags = 0;
    unsigned long extra = 0;
    uint64_t upSinceMs = 0;  // clock time the interface last came up
};

struct AddressRow {
    unsigned long instance = 0;
    unsigned long ifIndex = 0;
    unsigned long addrType = 1;  // 1 IPv4, 2 IPv6
    IpAddress address;
    unsigned long prefixLength = 0;
    uint64_t sinceMs = 0;  // clock time the row was created
};

// A connected prefix of an up interface.
struct ConnectedPrefix {
    IpAddress prefix;  // the address with the host bits cleared
    unsigned long prefixLength = 0;
    unsigned long ifIndex = 0;
    uint64_t sinceMs = 0;  // the later of address creation and interface up
};

class InterfaceTable {
public:
    using EiKey = std::tuple<unsigned long, unsigned long>;  // instance, ifIndex
    // instance, ifIndex, address type, address
    using EaKey = std::tuple<unsigned long, unsigned long, unsigned long, IpAddress>;

    // MTU given to a row whose request leaves it 0.
    static constexpr unsigned long DEFAULT_MTU = 1500;

    // Applies an interface row request and returns its result:
    // row status 4 creates the row (or re-creates it with the new values),
    // 1 updates an existing row (RESULT_NO_ROW when absent), 6 destroys it
    // (done when absent); other row statuses and an oper status other than
    // 1 or 2 are wrong values.
    unsigned long ApplyInterface(long rowStatus, unsigned long operStatus, unsigned long instance,
                                 unsigned long ifIndex, const char* name, unsigned long reserved,
                                 long flags, unsigned long extra, uint64_t nowMs);
    // Applies an address row request: row status 4 or 1 creates or updates
    // the row (the library announces addresses as active rows), 6 destroys it
    // (done when absent). Wrong values: another row status, an address type
    // other than 1 or 2, a null address, a prefix length beyond the type's,
    // or an IPv6 row in an IPv4 instance (and the other way round).
    unsigned long ApplyAddress(long rowStatus, unsigned long instance, unsigned long addrType,
                               unsigned long ifIndex, const unsigned char* address,
                               unsigned long prefixLength, uint64_t nowMs);

    const InterfaceRow* FindInterface(unsigned long instance, unsigned long ifIndex) const;
    const std::map<EiKey, InterfaceRow>& Interfaces() const { return m_interfaces; }
    const std::map<EaKey, AddressRow>& Addresses() const { return m_addresses; }

    // The connected prefixes of one instance, in address table order.
    std::vector<ConnectedPrefix> Connected(unsigned long instance) const;

    void Clear();

private:
    std::map<EiKey, InterfaceRow> m_interfaces;
    std::map<EaKey, AddressRow> m_addresses;
};

}  // namespace Zavrel::Emulator

#endif
