// OidCodec: the object identifiers of the stack's rows. Every OID starts with
// the stack's own enterprise arc and a table number, then the row's index
// values, so equal rows always get equal OIDs and different rows different
// ones:
//   route:  PREFIX.1 instance family prefixLength destination(4|16) nextHop(4|16) ifIndex
//   redist: PREFIX.2 instance source destination
//   i3 ei:  PREFIX.3 instance ifIndex
//   i3 ea:  PREFIX.4 instance ifIndex addressType address(4|16)
// with PREFIX = 1.3.6.1.4.1.47810.7 and address bytes one component each
// (IPv4 for route family 1 and address type 1, IPv6 otherwise).
#ifndef ZAVREL_EMULATOR_OIDCODEC_H
#define ZAVREL_EMULATOR_OIDCODEC_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace Zavrel::Emulator {

// The OID of a row, held in place (no allocation): at most MAX_LENGTH
// components, more than the longest row needs (45, an IPv6 route).
class Oid {
public:
    static constexpr size_t MAX_LENGTH = 48;

    void push_back(unsigned long component) {
        if (m_length < MAX_LENGTH) {
            m_components[m_length++] = component;
        }
    }
    size_t size() const { return m_length; }
    unsigned long operator[](size_t index) const { return m_components[index]; }
    const unsigned long* begin() const { return m_components; }
    const unsigned long* end() const { return m_components + m_length; }

    friend bool operator==(const Oid& a, const Oid& b) {
        return a.m_length == b.m_length && std::equal(a.begin(), a.end(), b.begin());
    }
    friend bool operator!=(const Oid& a, const Oid& b) { return !(a == b); }

private:
    unsigned long m_components[MAX_LENGTH] = {};
    size_t m_length = 0;
};

class OidCodec {
public:
    static constexpr unsigned long TABLE_ROUTE = 1;
    static constexpr unsigned long TABLE_REDIST = 2;
    static constexpr unsigned long TABLE_I3_EI = 3;
    static constexpr unsigned long TABLE_I3_EA = 4;

    // Null address pointers count as the zero address.
    static Oid Route(unsigned long instance, long family, const unsigned char* destination,
                     unsigned long prefixLength, const unsigned char* nextHop,
                     unsigned long ifIndex);
    static Oid Redist(unsigned long instance, long source, long destination);
    static Oid Ei(unsigned long instance, unsigned long ifIndex);
    static Oid Ea(unsigned long instance, unsigned long ifIndex, const unsigned char* address,
                  unsigned long addrType);

    // Copies the OID into buffer (SMS_MAX_OID_LEN entries at least) and
    // returns its length; a null buffer only returns the length.
    static unsigned long Write(const Oid& oid, unsigned long* buffer);
    // A 64-bit digest of the OID (FNV-1a over whole components), for tables
    // that only need to tell OIDs apart.
    static uint64_t Hash(const Oid& oid);
    // Components joined by ":" ("1:3:6:1...").
    static std::string ToString(const Oid& oid);

private:
    static Oid Prefix(unsigned long table);
    static void AppendBytes(Oid& oid, const unsigned char* bytes, size_t count);
};

}  // namespace Zavrel::Emulator

#endif
