// Uses a few installed headers and libraries, and prints what it got so that
// the check can compare it.
#include <cstdio>

#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "stackapi/stackapi.h"
#if __has_include("routing/DcRouterMgr.h")
#include "routing/DcRouterMgr.h"
#define CONSUMER_HAS_ROUTER_MGR 1
#endif

int main() {
    Zavrel::Ip4Addr address;
    if (!address.FromString("192.0.2.1")) {
        std::printf("address not parsed\n");
        return 1;
    }
    unsigned char bytes[16] = {0x20, 0x01, 0x0d, 0xb8};
    bytes[15] = 1;
    std::printf("%s %s %d\n", address.ToString().c_str(), Zavrel::Ip6Addr(bytes).ToString().c_str(),
                SMS_CIPR_ACTION_DELETE);
#ifdef CONSUMER_HAS_ROUTER_MGR
    std::printf("prefix %u\n", Zavrel::DcRouterMgr::bitcount(Zavrel::Ip4Addr(255, 255, 255, 0)));
#endif
    return 0;
}
