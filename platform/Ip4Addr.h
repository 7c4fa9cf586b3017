// Ip4Addr: an IPv4 address held as 4 bytes in network order.
#ifndef ZAVREL_PLATFORM_IP4ADDR_H
#define ZAVREL_PLATFORM_IP4ADDR_H

#include <cstddef>
#include <cstdint>
#include <functional>

#include "platform/String.h"

namespace Zavrel {

class Ip4Addr {
public:
    Ip4Addr();  // 0.0.0.0
    explicit Ip4Addr(const unsigned char bytes[4]);
    Ip4Addr(unsigned char a, unsigned char b, unsigned char c, unsigned char d);

    // The address from a 32-bit value whose most significant byte is the
    // first byte of the address (10.0.0.1 is 0x0A000001).
    static Ip4Addr FromHostOrder(uint32_t value);
    // The 32-bit value of the address, first byte most significant.
    uint32_t HostOrder() const;

    const unsigned char* Bytes() const { return m_bytes; }
    unsigned char* Bytes() { return m_bytes; }

    // Dotted-quad text, for example "10.0.0.1".
    string ToString() const;
    // Parses strict dotted-quad text (four decimal numbers of 0..255, nothing
    // else). On failure returns false and leaves the address unchanged.
    bool FromString(const string& text);

    // Writes the dotted-quad text of a value in host order (as HostOrder
    // gives it) into buffer. Returns false, writing nothing, when buffer is
    // null or size is too small for the text and its terminating zero.
    static bool Uint32ToString(uint32_t value, char* buffer, size_t size);

    friend bool operator==(const Ip4Addr& a, const Ip4Addr& b);
    friend bool operator!=(const Ip4Addr& a, const Ip4Addr& b) { return !(a == b); }
    friend bool operator<(const Ip4Addr& a, const Ip4Addr& b);

private:
    unsigned char m_bytes[4];
};

}  // namespace Zavrel

template <>
struct std::hash<Zavrel::Ip4Addr> {
    size_t operator()(const Zavrel::Ip4Addr& a) const { return a.HostOrder(); }
};

#endif
