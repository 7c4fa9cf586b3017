// Choices: where a driver's decisions come from: a seeded sequence for
// runs that must repeat, or a fuzzer's bytes.
#ifndef ZAVREL_TOOLS_CHOICES_H
#define ZAVREL_TOOLS_CHOICES_H

#include <cstdint>

namespace Zavrel {

// Where the driver's decisions come from.
class Choices {
public:
    virtual ~Choices() = default;
    // A value below count (count > 0).
    virtual uint32_t Pick(uint32_t count) = 0;
};

// A seeded 64-bit sequence (splitmix64): the same seed gives the same run
// on every machine.
class SeededChoices : public Choices {
public:
    explicit SeededChoices(uint64_t seed) : m_state(seed) {}
    uint32_t Pick(uint32_t count) override;

private:
    uint64_t m_state;
};

}  // namespace Zavrel

#endif
