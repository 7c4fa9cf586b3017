// BitCount: the number of set bits of a 32-bit word; of a netmask, its
// prefix length.
#ifndef ZAVREL_PLATFORM_BITCOUNT_H
#define ZAVREL_PLATFORM_BITCOUNT_H

#include <cstdint>

namespace Zavrel {

unsigned int BitCount(uint32_t value);

}  // namespace Zavrel

#endif
