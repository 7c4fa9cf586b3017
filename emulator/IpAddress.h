// IpAddress: an IPv4 or IPv6 address as the stack's rows carry it (network
// order bytes), with the prefix arithmetic the routing tables need.
#ifndef ZAVREL_EMULATOR_IPADDRESS_H
#define ZAVREL_EMULATOR_IPADDRESS_H

#include <cstddef>
#include <string>

namespace Zavrel::Emulator {

class IpAddress {
public:
    static constexpr int IPV4 = 1;
    static constexpr int IPV6 = 2;

    IpAddress() = default;  // 0.0.0.0
    // Copies 4 bytes (IPV4) or 16 bytes (any other family); a null pointer
    // gives the zero address of the family.
    IpAddress(int family, const unsigned char* bytes);
    // Parses "10.0.0.1" or "2001:db8::1"; false leaves the address as it was.
    bool Parse(const std::string& text);

    int Family() const { return m_family; }
    bool IsIpv4() const { return m_family == IPV4; }
    const unsigned char* Bytes() const { return m_bytes; }
    size_t Size() const { return IsIpv4() ? 4 : 16; }
    unsigned long MaxPrefixLength() const { return IsIpv4() ? 32 : 128; }
    bool IsZero() const;

    // The address with the bits past prefixLength cleared.
    IpAddress Masked(unsigned long prefixLength) const;
    // True when this address lies in prefix/prefixLength (same family).
    bool InPrefix(const IpAddress& prefix, unsigned long prefixLength) const;
    // Copies the address into a 16-byte row field (IPv4 uses the first 4).
    void CopyTo(unsigned char out[16]) const;

    // "10.0.0.1", "2001:db8::1".
    std::string ToString() const;

    friend bool operator==(const IpAddress& a, const IpAddress& b);
    friend bool operator!=(const IpAddress& a, const IpAddress& b) { return !(a == b); }
    // Family first, then the bytes.
    friend bool operator<(const IpAddress& a, const IpAddress& b);

private:
    int m_family = IPV4;
    unsigned char m_bytes[16] = {};
};

}  // namespace Zavrel::Emulator

#endif
