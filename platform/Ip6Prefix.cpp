#include "platform/Ip6Prefix.h"

#include <cstring>

namespace Zavrel {

const uint32_t Ip6Prefix::MASK32[32] = {
    0x00000000u, 0x80000000u, 0xc0000000u, 0xe0000000u, 0xf0000000u, 0xf8000000u, 0xfc000000u,
    0xfe000000u, 0xff000000u, 0xff800000u, 0xffc00000u, 0xffe00000u, 0xfff00000u, 0xfff80000u,
    0xfffc0000u, 0xfffe0000u, 0xffff0000u, 0xffff8000u, 0xffffc000u, 0xffffe000u, 0xfffff000u,
    0xfffff800u, 0xfffffc00u, 0xfffffe00u, 0xffffff00u, 0xffffff80u, 0xffffffc0u, 0xffffffe0u,
    0xfffffff0u, 0xfffffff8u, 0xfffffffcu, 0xfffffffeu,
};

Ip6Prefix::Ip6Prefix() : m_length(0) {}

Ip6Prefix::Ip6Prefix(const Ip6Addr& address, unsigned int length)
    : m_address(address), m_length(length) {}

string Ip6Prefix::ToString() const {
    string text = m_address.ToString();
    text.AppendFmt("/%u", m_length);
    return text;
}

bool Ip6Prefix::FromString(const string& text) {
    if (std::strlen(text.c_str()) != text.length()) {
        return false;
    }
    const char* slash = std::strchr(text.c_str(), '/');
    if (slash == nullptr) {
        return false;
    }
    // The length: "0" or one to three digits without a leading zero, at
    // most 128, and nothing after it.
    const char* digits = slash + 1;
    const size_t count = std::strlen(digits);
    if (count == 0 || count > 3 || (count > 1 && digits[0] == '0')) {
        return false;
    }
    unsigned int length = 0;
    for (size_t i = 0; i < count; ++i) {
        if (digits[i] < '0' || digits[i] > '9') {
            return false;
        }
        length = length * 10 + static_cast<unsigned int>(digits[i] - '0');
    }
    if (length > 128) {
        return false;
    }
    Ip6Addr address;
    if (!address.FromString(string(text.c_str(), static_cast<size_t>(slash - text.c_str())))) {
        return false;
    }
    m_address = address;
    m_length = length;
    return true;
}

bool operator==(const Ip6Prefix& a, const Ip6Prefix& b) {
    for (int i = 0; i < 4; ++i) {
        if (a.m_address.Word(i) != b.m_address.Word(i)) {
            return false;
        }
    }
    return a.m_length == b.m_length;
}

}  // namespace Zavrel
