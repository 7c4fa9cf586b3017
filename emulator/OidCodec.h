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

#include <string>
#include <vector>

namespace Zavrel::Emulator {

using Oid = std::vector<unsigned long>;

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
    // Components joined by ":" ("1:3:6:1...").
    static std::string ToString(const Oid& oid);

private:
    static Oid Prefix(unsigned long table);
    static void AppendBytes(Oid& oid, const unsigned char* bytes, size_t count);
};

}  // namespace Zavrel::Emulator

#endif
