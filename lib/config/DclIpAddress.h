// DclIpAddress: an IPv4 or IPv6 address held as raw network-order bytes with
// a byte count (4, 16, or 0 for no address).
#ifndef ZAVREL_CONFIG_DCLIPADDRESS_H
#define ZAVREL_CONFIG_DCLIPADDRESS_H

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/String.h"

namespace Zavrel {

class DclIpAddress {
public:
    static const unsigned int MAX_BYTES = 16;

    // No address (length 0).
    DclIpAddress();
    // Callers pass a length of 0, 4 or 16.
    DclIpAddress(const unsigned char* data, unsigned long length);
    DclIpAddress(const DclIpAddress& other);
    DclIpAddress& operator=(const DclIpAddress& other);
    virtual ~DclIpAddress();

    // Zeroes all bytes, stores the length, then copies that many bytes.
    void Init(const unsigned char* data, unsigned long length);

    // Parse dotted IPv4 / IPv6 text. On failure the value is left unchanged.
    bool Ip4AddrFromString(const char* text);
    bool Ip6AddrFromString(const char* text);

    // Equal when same length and the first length bytes are equal.
    bool operator==(const DclIpAddress& other) const;
    // Only an IPv4 value (length 4) can equal an Ip4Addr.
    bool operator==(const Ip4Addr& address) const;

    // The first four bytes / all sixteen bytes, whatever the length.
    Ip4Addr ToIp4Addr() const;
    Ip6Addr ToIp6Addr() const;

    // Dotted text for a length up to 4 (all four bytes are always printed),
    // IPv6 text up to 16, empty above.
    string ToString() const;

    unsigned int Length() const { return length; }
    const unsigned char* Bytes() const { return bytes; }

    unsigned int length;
    unsigned char bytes[MAX_BYTES];
};

}  // namespace Zavrel

#endif
