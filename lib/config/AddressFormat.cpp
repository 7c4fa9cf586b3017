#include "config/AddressFormat.h"

#include <cstdio>
#include <cstring>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"

namespace Zavrel {

namespace {

// Buffer handed to Ip4Addr::Uint32ToString.
const size_t IP4_TEXT_BUFFER = 40;
// Room for the longest IPv6 text and its terminating zero.
const size_t IP6_TEXT_MAX = 46;

}  // namespace

char* Ip4AddrToStr(char* dst, const void* addr) {
    const unsigned char* b = static_cast<const unsigned char*>(addr);
    snprintf(dst, 16, "%u.%u.%u.%u", static_cast<unsigned int>(b[0]),
             static_cast<unsigned int>(b[1]), static_cast<unsigned int>(b[2]),
             static_cast<unsigned int>(b[3]));
    return dst;
}

char* Ip6AddrToStr(char* dst, const void* addr) {
    Ip6Addr address(static_cast<const unsigned char*>(addr));
    string text = address.ToString();
    if (text.empty()) {
        dst[0] = '\0';
        return dst;
    }
    snprintf(dst, IP6_TEXT_MAX, "%s", text.c_str());
    return dst;
}

string FormatIp4Addr(unsigned int addr) {
    return detail::FormatIp4AddrWith(&Ip4Addr::Uint32ToString, addr);
}

string FormatIp4Addr(const void* addr) {
    return Ip4Addr(static_cast<const unsigned char*>(addr)).ToString();
}

string FormatIp6Addr(const void* addr) {
    return Ip6Addr(static_cast<const unsigned char*>(addr)).ToString();
}

namespace detail {

string FormatIp4AddrWith(Uint32ToTextFn convert, unsigned int addr) {
    char buffer[IP4_TEXT_BUFFER];
    if (convert(addr, buffer, sizeof(buffer))) {
        return string(buffer);
    }
    return string();
}

}  // namespace detail

}  // namespace Zavrel
