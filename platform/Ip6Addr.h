// Ip6Addr: an IPv6 address held as 16 bytes in network order.
#ifndef ZAVREL_PLATFORM_IP6ADDR_H
#define ZAVREL_PLATFORM_IP6ADDR_H

#include <cstddef>
#include <cstdint>
#include <functional>

#include "platform/String.h"

namespace Zavrel {

class Ip6Addr {
public:
    Ip6Addr();  // "::"
    explicit Ip6Addr(const unsigned char bytes[16]);

    const unsigned char* Bytes() const { return m_bytes; }
    unsigned char* Bytes() { return m_bytes; }

    // The i-th 32-bit word (0..3), read in network order (first byte most
    // significant).
    uint32_t Word(int index) const;
    void SetWord(int index, uint32_t value);

    bool IsUnspecified() const;

    // Canonical text of RFC 5952: lower-case hexadecimal, no leading zeros,
    // the longest run of two or more zero groups (the first of equal runs)
    // compressed to "::", IPv4-mapped addresses as ::ffff:a.b.c.d.
    string ToString() const;
    // Parses IPv6 text (RFC 4291 forms, with an optional embedded IPv4 tail).
    // On failure returns false and leaves the address unchanged.
    bool FromString(const string& text);

    friend bool operator==(const Ip6Addr& a, const Ip6Addr& b);
    friend bool operator!=(const Ip6Addr& a, const Ip6Addr& b) { return !(a == b); }
    friend bool operator<(const Ip6Addr& a, const Ip6Addr& b);

private:
    unsigned char m_bytes[16];
};

}  // namespace Zavrel

template <>
struct std::hash<Zavrel::Ip6Addr> {
    size_t operator()(const Zavrel::Ip6Addr& a) const;
};

#endif
