#include "platform/ParseIpAddr.h"

namespace Zavrel {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

bool Parse_IpAddr::operator()(Ip4Addr& out, const char*& cursor) const {
    if (cursor == nullptr) {
        return false;
    }
    unsigned char bytes[4];
    const char* p = cursor;
    for (int part = 0; part < 4; ++part) {
        if (part > 0) {
            if (*p != '.') {
                cursor = p;
                return false;
            }
            ++p;
        }
        if (!IsDigit(*p)) {
            cursor = p;
            return false;
        }
        // A part is "0" or starts with 1..9; at most three digits.
        unsigned int value = 0;
        const char* start = p;
        while (IsDigit(*p)) {
            if (p - start == 3 || (p != start && *start == '0')) {
                cursor = p;
                return false;
            }
            value = value * 10 + static_cast<unsigned int>(*p - '0');
            ++p;
        }
        if (value > 255) {
            cursor = start;
            return false;
        }
        bytes[part] = static_cast<unsigned char>(value);
    }
    if (*p != '\0') {
        cursor = p;
        return false;
    }
    out = Ip4Addr(bytes);
    cursor = p;
    return true;
}

}  // namespace Zavrel
