// Strict parsers of option text: addresses, prefixes, booleans, numbers and
// ranges. Each reports success as a bool and never throws; the value left
// behind on failure is documented per function.
#ifndef ZAVREL_CONFIG_OPTIONPARSERS_H
#define ZAVREL_CONFIG_OPTIONPARSERS_H

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "platform/Ip6Prefix.h"

namespace Zavrel {

// Dotted IPv4 text. False for a null text; otherwise the result of
// Parse_IpAddr on out and a cursor on the text.
bool ParseAddress(Ip4Addr& out, const char* text);
// "dynamic" (any letter case) succeeds without touching out; anything else
// is parsed as ParseAddress does.
bool ParseAddressDynamic(Ip4Addr& out, const char* text);
// IPv6 text. False for a null text; otherwise Ip6Addr::FromString.
bool ParseIp6Address(Ip6Addr& out, const char* text);
// "dynamic" (any letter case) succeeds without touching out; anything else
// is parsed as ParseIp6Address does.
bool ParseIp6AddressDynamic(Ip6Addr& out, const char* text);
// Address and prefix length given apart; false if either is null, else
// Ip6Prefix::FromString of "<address>/<length>".
bool ParseIp6Prefix(Ip6Prefix& out, const char* address, const char* length);
// Exactly "0" (false) or "1" (true). Anything else fails and leaves *out.
bool ParseBool(bool* out, const char* text);
// Unsigned decimal through strtoul. The converted value is always stored;
// the result is true exactly when the whole text was consumed.
bool ParseNumber(unsigned int* out, const char* text);
// A route metric: ParseNumber's text with a value below 256 ("" reads as
// 0). Anything else fails and leaves *out.
bool ParseMetric(unsigned char* out, const char* text);
// "<n>" (low = high = n) or "<n>-<m>". Partial values are stored even when
// the result is false. No ordering check is made.
bool ParseRange(unsigned int* low, unsigned int* high, const char* text);

}  // namespace Zavrel

#endif
