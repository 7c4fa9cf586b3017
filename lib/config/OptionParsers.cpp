#include "config/OptionParsers.h"

#include <strings.h>

#include <cstdlib>

#include "platform/ParseIpAddr.h"
#include "platform/String.h"

namespace Zavrel {

namespace {

const char DYNAMIC_KEYWORD[] = "dynamic";

bool IsDynamic(const char* text) {
    return text != nullptr && strcasecmp(text, DYNAMIC_KEYWORD) == 0;
}

}  // namespace

bool ParseAddress(Ip4Addr& out, const char* text) {
    if (text == nullptr) {
        return false;
    }
    const char* cursor = text;
    return Parse_IpAddr()(out, cursor);
}

bool ParseAddressDynamic(Ip4Addr& out, const char* text) {
    if (IsDynamic(text)) {
        return true;
    }
    return ParseAddress(out, text);
}

bool ParseIp6Address(Ip6Addr& out, const char* text) {
    if (text == nullptr) {
        return false;
    }
    return out.FromString(string(text));
}

bool ParseIp6AddressDynamic(Ip6Addr& out, const char* text) {
    if (IsDynamic(text)) {
        return true;
    }
    return ParseIp6Address(out, text);
}

bool ParseIp6Prefix(Ip6Prefix& out, const char* address, const char* length) {
    if (address == nullptr || length == nullptr) {
        return false;
    }
    string text;
    text.Format("%s/%s", address, length);
    return out.FromString(text);
}

bool ParseBool(bool* out, const char* text) {
    if (text == nullptr) {
        return false;
    }
    if (text[0] == '0' && text[1] == '\0') {
        *out = false;
        return true;
    }
    if (text[0] == '1' && text[1] == '\0') {
        *out = true;
        return true;
    }
    return false;
}

bool ParseNumber(unsigned int* out, const char* text) {
    if (text == nullptr) {
        return false;
    }
    char* end = nullptr;
    *out = static_cast<unsigned int>(strtoul(text, &end, 10));
    return *end == '\0';
}

bool ParseMetric(unsigned char* out, const char* text) {
    unsigned int value = 0;
    if (!ParseNumber(&value, text) || value >= 256) {
        return false;
    }
    *out = static_cast<unsigned char>(value);
    return true;
}

bool ParseRange(unsigned int* low, unsigned int* high, const char* text) {
    if (text == nullptr) {
        return false;
    }
    char* end = nullptr;
    *low = static_cast<unsigned int>(strtoul(text, &end, 10));
    if (*end == '\0') {
        *high = *low;
        return true;
    }
    if (*end != '-') {
        return false;
    }
    const char* rest = end + 1;
    *high = static_cast<unsigned int>(strtoul(rest, &end, 10));
    return *end == '\0';
}

}  // namespace Zavrel
