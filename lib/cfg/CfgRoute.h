// CfgRoute: the static routes configured for one VLAN, each a CfgRouteEntry.
// CfgRouteEntry is also the record a route MIB action is built from.
#ifndef ZAVREL_CFG_CFGROUTE_H
#define ZAVREL_CFG_CFGROUTE_H

#include <list>

#include "platform/String.h"

namespace Zavrel {

class DcConsole;

struct CfgRouteEntry {
    // Width of the addresses of an entry of this family: 4 for IPv4 (1),
    // 16 for anything else.
    static unsigned int AddressWidth(int family) { return family == 1 ? 4u : 16u; }

    // The address as text: dotted IPv4 when family is 1, IPv6 otherwise.
    string Format(const void* address) const;

    int family;
    unsigned char destination[16];
    unsigned char nextHop[16];
    unsigned int prefixLength;
    unsigned int ifIndex;
    unsigned short metric;
    unsigned short reserved;  // carried into route actions, never sent or printed
    int pathType;
    int rowStatus;
    int adminStatus;
};

class CfgRoute {
public:
    using Callback = void (*)(CfgRouteEntry* entry, void* context);

    explicit CfgRoute(unsigned short vlan);
    ~CfgRoute();
    CfgRoute(const CfgRoute&) = delete;
    CfgRoute& operator=(const CfgRoute&) = delete;

    // Looks only at the first entry of the list: it is returned when its
    // family, prefix length, destination and next hop match; null otherwise.
    CfgRouteEntry* GetCfgRouteEntry(int family, const void* destination, unsigned int prefixLength,
                                    const void* nextHop);
    // Updates the entry GetCfgRouteEntry finds (0), or appends a new one and
    // raises the count (1). Note: reserved comes before metric.
    unsigned int AddEntry(int family, const void* destination, unsigned int prefixLength,
                          const void* nextHop, unsigned long ifIndex, unsigned short reserved,
                          unsigned short metric, long pathType, long rowStatus, long adminStatus);
    // Removes every entry of the family with these addresses and ifIndex
    // whose prefix length differs from the given one; an entry with the same
    // prefix length is kept. The count is not lowered. Always 1.
    unsigned int DelEntry(int family, const void* destination, unsigned int prefixLength,
                          const void* nextHop, unsigned long ifIndex);
    // Removes every entry and zeroes the count.
    void CleanList();
    void IterateAll(Callback callback, void* context);

    // Table of the entries on the console.
    void PrintTable(DcConsole* console) const;
    // The same list in the trace log (level 0).
    void PrintList() const;

    // Entries appended since the last CleanList (deletes do not lower it).
    unsigned int Count() const { return m_count; }
    unsigned short Vlan() const { return m_vlan; }
    const std::list<CfgRouteEntry>& Entries() const { return m_entries; }

private:
    static bool SameAddresses(const CfgRouteEntry& entry, const void* destination,
                              const void* nextHop);

    std::list<CfgRouteEntry> m_entries;
    unsigned int m_count;
    unsigned short m_vlan;
};

}  // namespace Zavrel

#endif
