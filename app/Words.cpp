#include "app/Words.h"

#include <strings.h>
#include <cctype>

namespace Zavrel {

bool Words::Split(const std::string& line, std::vector<std::string>& words, std::string& error) {
    words.clear();
    size_t i = 0;
    const size_t n = line.size();
    while (i < n) {
        while (i < n && std::isspace(static_cast<unsigned char>(line[i]))) {
            ++i;
        }
        if (i >= n || line[i] == '#') {
            break;
        }
        std::string word;
        if (line[i] == '"') {
            ++i;
            while (i < n && line[i] != '"') {
                word += line[i++];
            }
            if (i >= n) {
                error = "unterminated quote";
                words.clear();
                return false;
            }
            ++i;
        } else {
            while (i < n && !std::isspace(static_cast<unsigned char>(line[i]))) {
                word += line[i++];
            }
        }
        words.push_back(word);
    }
    return true;
}

bool Words::Is(const std::string& word, const char* keyword) {
    return strcasecmp(word.c_str(), keyword) == 0;
}

bool Words::ParseNumber(const std::string& text, uint64_t max, uint64_t& value) {
    if (text.empty()) {
        return false;
    }
    unsigned int base = 10;
    size_t i = 0;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        i = 2;
    }
    uint64_t result = 0;
    for (; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        unsigned int digit;
        if (std::isdigit(c)) {
            digit = c - '0';
        } else if (base == 16 && std::isxdigit(c)) {
            digit = static_cast<unsigned int>(std::tolower(c) - 'a' + 10);
        } else {
            return false;
        }
        result = result * base + digit;
        if (result > max) {
            return false;
        }
    }
    value = result;
    return true;
}

bool Words::ParseUnsigned(const std::string& text, unsigned int& value) {
    uint64_t v = 0;
    if (!ParseNumber(text, 0xFFFFFFFFu, v)) {
        return false;
    }
    value = static_cast<unsigned int>(v);
    return true;
}

bool Words::ParseVlan(const std::string& text, unsigned short& vlan) {
    uint64_t v = 0;
    if (!ParseNumber(text, MAX_VLAN, v) || v == 0) {
        return false;
    }
    vlan = static_cast<unsigned short>(v);
    return true;
}

bool Words::ParseIp4(const std::string& text, Ip4Addr& address) {
    return address.FromString(string(text));
}

bool Words::ParseIp6(const std::string& text, Ip6Addr& address) {
    // Only texts with a colon are IPv6: a dotted quad alone is IPv4.
    if (text.find(':') == std::string::npos) {
        return false;
    }
    return address.FromString(string(text));
}

bool Words::ParsePrefix(const std::string& text, AppPrefix& prefix) {
    const size_t slash = text.find('/');
    if (slash == std::string::npos || slash == 0) {
        return false;
    }
    const std::string address = text.substr(0, slash);
    const std::string lengthText = text.substr(slash + 1);
    // The length is plain decimal without a superfluous leading zero.
    if (lengthText.empty() || lengthText.size() > 3 ||
        (lengthText[0] == '0' && lengthText.size() > 1)) {
        return false;
    }
    for (char c : lengthText) {
        if (!std::isdigit(static_cast<unsigned char>(c))) {
            return false;
        }
    }
    uint64_t length = 0;
    AppPrefix result;
    if (ParseIp4(address, result.ip4)) {
        result.ipv6 = false;
    } else if (ParseIp6(address, result.ip6)) {
        result.ipv6 = true;
    } else {
        return false;
    }
    if (!ParseNumber(lengthText, result.ipv6 ? 128 : 32, length)) {
        return false;
    }
    result.length = static_cast<unsigned int>(length);
    prefix = result;
    return true;
}

Ip4Addr Words::Netmask(unsigned int length) {
    if (length == 0) {
        return Ip4Addr();
    }
    if (length >= 32) {
        return Ip4Addr::FromHostOrder(0xFFFFFFFFu);
    }
    return Ip4Addr::FromHostOrder(~((1u << (32 - length)) - 1u));
}

}  // namespace Zavrel
