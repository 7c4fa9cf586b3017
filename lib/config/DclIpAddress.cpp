#include "config/DclIpAddress.h"

#include <cstring>

#include "config/OptionParsers.h"

namespace Zavrel {

DclIpAddress::DclIpAddress() {
    Init(nullptr, 0);
}

DclIpAddress::DclIpAddress(const unsigned char* data, unsigned long length_) {
    Init(data, length_);
}

DclIpAddress::DclIpAddress(const DclIpAddress& other) {
    Init(other.bytes, other.length);
}

DclIpAddress& DclIpAddress::operator=(const DclIpAddress& other) {
    if (this != &other) {
        Init(other.bytes, other.length);
    }
    return *this;
}

DclIpAddress::~DclIpAddress() = default;

void DclIpAddress::Init(const unsigned char* data, unsigned long length_) {
    memset(bytes, 0, sizeof(bytes));
    length = static_cast<unsigned int>(length_);
    // Only 0, 4 or 16 are ever passed. The copy never runs past the 16 bytes
    // held here, and a null source leaves the bytes zero.
    if (length_ != 0 && data != nullptr) {
        memcpy(bytes, data, length_ < MAX_BYTES ? length_ : MAX_BYTES);
    }
}

bool DclIpAddress::Ip4AddrFromString(const char* text) {
    Ip4Addr address;
    if (!ParseAddress(address, text)) {
        return false;
    }
    Init(address.Bytes(), 4);
    return true;
}

bool DclIpAddress::Ip6AddrFromString(const char* text) {
    Ip6Addr address;
    if (!ParseIp6Address(address, text)) {
        return false;
    }
    Init(address.Bytes(), 16);
    return true;
}

bool DclIpAddress::operator==(const DclIpAddress& other) const {
    if (this == &other) {
        return true;
    }
    if (length != other.length) {
        return false;
    }
    unsigned int count = length < MAX_BYTES ? length : MAX_BYTES;
    return memcmp(bytes, other.bytes, count) == 0;
}

bool DclIpAddress::operator==(const Ip4Addr& address) const {
    if (length != 4) {
        return false;
    }
    Ip4Addr own = ToIp4Addr();
    return memcmp(own.Bytes(), address.Bytes(), 4) == 0;
}

Ip4Addr DclIpAddress::ToIp4Addr() const {
    return Ip4Addr(bytes);
}

Ip6Addr DclIpAddress::ToIp6Addr() const {
    return Ip6Addr(bytes);
}

string DclIpAddress::ToString() const {
    string text;
    if (length <= 4) {
        text.AppendFmt("%u", static_cast<unsigned int>(bytes[0]));
        for (int i = 1; i < 4; ++i) {
            text.AppendFmt(".%u", static_cast<unsigned int>(bytes[i]));
        }
        return text;
    }
    if (length <= MAX_BYTES) {
        return ToIp6Addr().ToString();
    }
    return text;
}

}  // namespace Zavrel
