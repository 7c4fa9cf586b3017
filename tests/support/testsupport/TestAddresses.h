// TestAddresses: IPv4 and IPv6 addresses from their text, for tests. A text
// that does not parse fails the running test and names the text.
#ifndef ZAVREL_TESTS_TESTADDRESSES_H
#define ZAVREL_TESTS_TESTADDRESSES_H

#include <gtest/gtest.h>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"

namespace Zavrel::test {

inline Ip4Addr V4(const char* text) {
    Ip4Addr addr;
    EXPECT_TRUE(addr.FromString(text)) << text;
    return addr;
}

inline Ip6Addr V6(const char* text) {
    Ip6Addr addr;
    EXPECT_TRUE(addr.FromString(text)) << text;
    return addr;
}

}  // namespace Zavrel::test

#endif
