// Text forms of raw addresses, used by log lines and console tables.
#ifndef ZAVREL_CONFIG_ADDRESSFORMAT_H
#define ZAVREL_CONFIG_ADDRESSFORMAT_H

#include <cstddef>
#include <cstdint>

#include "platform/String.h"

namespace Zavrel {

// Writes the 4 bytes at addr as "%u.%u.%u.%u" into dst (16 characters at
// least) and returns dst.
char* Ip4AddrToStr(char* dst, const void* addr);
// Writes the Ip6Addr text of the 16 bytes at addr into dst (large enough
// for the longest IPv6 text) and returns dst.
char* Ip6AddrToStr(char* dst, const void* addr);
// The text that Ip4Addr::Uint32ToString gives for addr, or "" when that
// conversion fails.
string FormatIp4Addr(unsigned int addr);
// Ip4Addr / Ip6Addr text of the 4 / 16 bytes at addr.
string FormatIp4Addr(const void* addr);
string FormatIp6Addr(const void* addr);

namespace detail {

// The converter behind FormatIp4Addr(unsigned int), replaceable so that its
// failure path can be exercised.
using Uint32ToTextFn = bool (*)(uint32_t value, char* buffer, size_t size);
string FormatIp4AddrWith(Uint32ToTextFn convert, unsigned int addr);

}  // namespace detail

}  // namespace Zavrel

#endif
