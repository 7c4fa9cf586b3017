// Ip6Prefix: an IPv6 address with a prefix length.
#ifndef ZAVREL_PLATFORM_IP6PREFIX_H
#define ZAVREL_PLATFORM_IP6PREFIX_H

#include <cstdint>

#include "platform/Ip6Addr.h"
#include "platform/String.h"

namespace Zavrel {

class Ip6Prefix {
public:
    // MASK32[n] has the top n bits of a 32-bit word set (MASK32[0] is 0).
    // Indexed by (prefix length mod 32) to build the partial word of a mask.
    static const uint32_t MASK32[32];

    Ip6Prefix();  // ::/0
    Ip6Prefix(const Ip6Addr& address, unsigned int length);

    const Ip6Addr& Address() const { return m_address; }
    Ip6Addr& Address() { return m_address; }
    unsigned int Length() const { return m_length; }
    void SetAddress(const Ip6Addr& address) { m_address = address; }
    void SetLength(unsigned int length) { m_length = length; }

    // "address/length"; the address is kept as written (not masked).
    string ToString() const;
    // Parses "address/length" with a decimal length of 0..128. On failure
    // returns false and leaves the prefix unchanged.
    bool FromString(const string& text);

    // Equal when the four address words and the length are equal.
    friend bool operator==(const Ip6Prefix& a, const Ip6Prefix& b);
    friend bool operator!=(const Ip6Prefix& a, const Ip6Prefix& b) { return !(a == b); }

private:
    Ip6Addr m_address;
    unsigned int m_length;
};

}  // namespace Zavrel

#endif
