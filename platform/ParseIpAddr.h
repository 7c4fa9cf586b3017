// Parse_IpAddr: the strict dotted-quad parser used with a text cursor.
#ifndef ZAVREL_PLATFORM_PARSEIPADDR_H
#define ZAVREL_PLATFORM_PARSEIPADDR_H

#include "platform/Ip4Addr.h"

namespace Zavrel {

// Parses a dotted quad at the cursor: exactly four decimal parts of 0..255,
// each one to three digits without a sign or a superfluous leading zero,
// joined by single dots, and followed by the end of the text. On success
// writes out, moves the cursor past the address and returns true. On failure
// leaves out unchanged, leaves the cursor where the error was found and
// returns false. A null cursor text fails.
struct Parse_IpAddr {
    bool operator()(Ip4Addr& out, const char*& cursor) const;
};

}  // namespace Zavrel

#endif
