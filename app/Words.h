// Words: one command line split into words, with the readers the command
// handlers use (case-insensitive keywords, decimal or 0x-hex numbers, IPv4 and
// IPv6 addresses with a prefix length).
#ifndef ZAVREL_APP_WORDS_H
#define ZAVREL_APP_WORDS_H

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"

namespace Zavrel {

// An address with a prefix length, IPv4 or IPv6 as the text says.
struct AppPrefix {
    bool ipv6 = false;
    Ip4Addr ip4;
    Ip6Addr ip6;
    unsigned int length = 0;
};

class Words {
public:
    // Splits a line at blanks. A word may be quoted with double quotes to
    // hold blanks; a '#' at the start of a word begins a comment. Returns
    // false (with an error text) for an unterminated quote.
    static bool Split(const std::string& line, std::vector<std::string>& words, std::string& error);

    // True when word equals keyword, compared without regard to case.
    static bool Is(const std::string& word, const char* keyword);

    // Decimal or 0x-hexadecimal, no sign, at most max. False when the text
    // is not such a number or is larger than max.
    static bool ParseNumber(const std::string& text, uint64_t max, uint64_t& value);
    static bool ParseUnsigned(const std::string& text, unsigned int& value);
    static bool ParseVlan(const std::string& text, unsigned short& vlan);

    // An IPv4 or IPv6 address alone.
    static bool ParseIp4(const std::string& text, Ip4Addr& address);
    static bool ParseIp6(const std::string& text, Ip6Addr& address);
    // "<address>/<length>": a dotted IPv4 address with 0..32, or an IPv6
    // address with 0..128.
    static bool ParsePrefix(const std::string& text, AppPrefix& prefix);

    // The IPv4 netmask of a prefix length (0..32).
    static Ip4Addr Netmask(unsigned int length);

    // Highest VLAN number accepted on the command line.
    static constexpr unsigned int MAX_VLAN = 4094;
};

}  // namespace Zavrel

#endif
