#include "emulator/IpAddress.h"

#include <arpa/inet.h>

#include <cstring>

namespace Zavrel::Emulator {

IpAddress::IpAddress(int family, const unsigned char* bytes)
    : m_family(family == IPV4 ? IPV4 : IPV6) {
    if (bytes != nullptr) {
        std::memcpy(m_bytes, bytes, Size());
    }
}

bool IpAddress::Parse(const std::string& text) {
    unsigned char buffer[16] = {};
    if (inet_pton(AF_INET, text.c_str(), buffer) == 1) {
        *this = IpAddress(IPV4, buffer);
        return true;
    }
    if (inet_pton(AF_INET6, text.c_str(), buffer) == 1) {
        *this = IpAddress(IPV6, buffer);
        return true;
    }
    return false;
}

bool IpAddress::IsZero() const {
    for (size_t i = 0; i < Size(); ++i) {
        if (m_bytes[i] != 0) {
            return false;
        }
    }
    return true;
}

IpAddress IpAddress::Masked(unsigned long prefixLength) const {
    IpAddress result = *this;
    for (size_t i = 0; i < Size(); ++i) {
        const unsigned long bitsBefore = static_cast<unsigned long>(i) * 8;
        if (prefixLength >= bitsBefore + 8) {
            continue;
        }
        if (prefixLength <= bitsBefore) {
            result.m_bytes[i] = 0;
        } else {
            const unsigned int keep = static_cast<unsigned int>(prefixLength - bitsBefore);
            result.m_bytes[i] = static_cast<unsigned char>(m_bytes[i] & (0xFFu << (8 - keep)));
        }
    }
    return result;
}

bool IpAddress::InPrefix(const IpAddress& prefix, unsigned long prefixLength) const {
    return m_family == prefix.m_family && Masked(prefixLength) == prefix.Masked(prefixLength);
}

void IpAddress::CopyTo(unsigned char out[16]) const {
    std::memset(out, 0, 16);
    std::memcpy(out, m_bytes, Size());
}

std::string IpAddress::ToString() const {
    char text[INET6_ADDRSTRLEN] = {};
    inet_ntop(IsIpv4() ? AF_INET : AF_INET6, m_bytes, text, sizeof(text));
    return text;
}

bool operator==(const IpAddress& a, const IpAddress& b) {
    return a.m_family == b.m_family && std::memcmp(a.m_bytes, b.m_bytes, a.Size()) == 0;
}

bool operator<(const IpAddress& a, const IpAddress& b) {
    if (a.m_family != b.m_family) {
        return a.m_family < b.m_family;
    }
    return std::memcmp(a.m_bytes, b.m_bytes, a.Size()) < 0;
}

}  // namespace Zavrel::Emulator
