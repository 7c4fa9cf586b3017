// BitCount: population count of a 32-bit word.
#include "platform/BitCount.h"

#include <bitset>

namespace Zavrel {

unsigned int BitCount(uint32_t value) {
    return static_cast<unsigned int>(std::bitset<32>(value).count());
}

}  // namespace Zavrel
