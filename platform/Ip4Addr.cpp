#include "platform/Ip4Addr.h"

#include <cstdio>
#include <cstring>

#include "platform/ParseIpAddr.h"

namespace Zavrel {

Ip4Addr::Ip4Addr() : m_bytes{0, 0, 0, 0} {}

Ip4Addr::Ip4Addr(const unsigned char bytes[4]) {
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
}

Ip4Addr::Ip4Addr(unsigned char a, unsigned char b, unsigned char c, unsigned char d)
    : m_bytes{a, b, c, d} {}

Ip4Addr Ip4Addr::FromHostOrder(uint32_t value) {
    return Ip4Addr(static_cast<unsigned char>(value >> 24), static_cast<unsigned char>(value >> 16),
                   static_cast<unsigned char>(value >> 8), static_cast<unsigned char>(value));
}

uint32_t Ip4Addr::HostOrder() const {
    return (static_cast<uint32_t>(m_bytes[0]) << 24) | (static_cast<uint32_t>(m_bytes[1]) << 16) |
           (static_cast<uint32_t>(m_bytes[2]) << 8) | static_cast<uint32_t>(m_bytes[3]);
}

string Ip4Addr::ToString() const {
    char buffer[16];
    Uint32ToString(HostOrder(), buffer, sizeof buffer);
    return string(buffer);
}

bool Ip4Addr::FromString(const string& text) {
    // Text with an embedded zero byte is not an address.
    if (std::strlen(text.c_str()) != text.length()) {
        return false;
    }
    const char* cursor = text.c_str();
    return Parse_IpAddr()(*this, cursor);
}

bool Ip4Addr::Uint32ToString(uint32_t value, char* buffer, size_t size) {
    if (buffer == nullptr) {
        return false;
    }
    char text[16];
    const int length = std::snprintf(text, sizeof text, "%u.%u.%u.%u", (value >> 24) & 0xffu,
                                     (value >> 16) & 0xffu, (value >> 8) & 0xffu, value & 0xffu);
    if (length < 0 || static_cast<size_t>(length) >= size) {
        return false;
    }
    std::memcpy(buffer, text, static_cast<size_t>(length) + 1);
    return true;
}

bool operator==(const Ip4Addr& a, const Ip4Addr& b) {
    return std::memcmp(a.m_bytes, b.m_bytes, sizeof a.m_bytes) == 0;
}

bool operator<(const Ip4Addr& a, const Ip4Addr& b) {
    return std::memcmp(a.m_bytes, b.m_bytes, sizeof a.m_bytes) < 0;
}

}  // namespace Zavrel
