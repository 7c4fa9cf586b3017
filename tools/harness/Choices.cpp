// SeededChoices: splitmix64.
#include "harness/Choices.h"

namespace Zavrel {

uint32_t SeededChoices::Pick(uint32_t count) {
    m_state += 0x9e3779b97f4a7c15ull;
    uint64_t z = m_state;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
    z ^= z >> 31;
    return static_cast<uint32_t>(z % count);
}

}  // namespace Zavrel
