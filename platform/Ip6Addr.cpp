#include "platform/Ip6Addr.h"

#include <arpa/inet.h>

#include <cstdio>
#include <cstring>

namespace Zavrel {

Ip6Addr::Ip6Addr() : m_bytes{} {}

Ip6Addr::Ip6Addr(const unsigned char bytes[16]) {
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
}

uint32_t Ip6Addr::Word(int index) const {
    if (index < 0 || index > 3) {
        return 0;
    }
    const unsigned char* p = m_bytes + 4 * index;
    return (static_cast<uint32_t>(p[0]) << 24) | (static_cast<uint32_t>(p[1]) << 16) |
           (static_cast<uint32_t>(p[2]) << 8) | static_cast<uint32_t>(p[3]);
}

void Ip6Addr::SetWord(int index, uint32_t value) {
    if (index < 0 || index > 3) {
        return;
    }
    unsigned char* p = m_bytes + 4 * index;
    p[0] = static_cast<unsigned char>(value >> 24);
    p[1] = static_cast<unsigned char>(value >> 16);
    p[2] = static_cast<unsigned char>(value >> 8);
    p[3] = static_cast<unsigned char>(value);
}

bool Ip6Addr::IsUnspecified() const {
    for (unsigned char b : m_bytes) {
        if (b != 0) {
            return false;
        }
    }
    return true;
}

string Ip6Addr::ToString() const {
    unsigned int groups[8];
    for (int i = 0; i < 8; ++i) {
        groups[i] = (static_cast<unsigned int>(m_bytes[2 * i]) << 8) | m_bytes[2 * i + 1];
    }

    // IPv4-mapped addresses (::ffff:0:0/96) keep the IPv4 tail in dotted form.
    if (groups[0] == 0 && groups[1] == 0 && groups[2] == 0 && groups[3] == 0 && groups[4] == 0 &&
        groups[5] == 0xffff) {
        string text;
        text.Format("::ffff:%u.%u.%u.%u", m_bytes[12], m_bytes[13], m_bytes[14], m_bytes[15]);
        return text;
    }

    // The longest run of at least two zero groups; the first one wins a tie.
    int bestStart = -1;
    int bestLength = 0;
    for (int i = 0; i < 8;) {
        if (groups[i] != 0) {
            ++i;
            continue;
        }
        int j = i;
        while (j < 8 && groups[j] == 0) {
            ++j;
        }
        if (j - i > bestLength) {
            bestStart = i;
            bestLength = j - i;
        }
        i = j;
    }
    if (bestLength < 2) {
        bestStart = -1;
    }

    string text;
    for (int i = 0; i < 8; ++i) {
        if (i == bestStart) {
            text.Append("::");
            i += bestLength - 1;
            continue;
        }
        if (i > 0 && i != bestStart + bestLength) {
            text.Append(":");
        }
        text.AppendFmt("%x", groups[i]);
    }
    return text;
}

bool Ip6Addr::FromString(const string& text) {
    // Text with an embedded zero byte is not an address.
    if (std::strlen(text.c_str()) != text.length()) {
        return false;
    }
    unsigned char bytes[16];
    if (inet_pton(AF_INET6, text.c_str(), bytes) != 1) {
        return false;
    }
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
    return true;
}

bool operator==(const Ip6Addr& a, const Ip6Addr& b) {
    return std::memcmp(a.m_bytes, b.m_bytes, sizeof a.m_bytes) == 0;
}

bool operator<(const Ip6Addr& a, const Ip6Addr& b) {
    return std::memcmp(a.m_bytes, b.m_bytes, sizeof a.m_bytes) < 0;
}

}  // namespace Zavrel

size_t std::hash<Zavrel::Ip6Addr>::operator()(const Zavrel::Ip6Addr& a) const {
    size_t h = 0;
    for (int i = 0; i < 4; ++i) {
        h = h * 31u + a.Word(i);
    }
    return h;
}
