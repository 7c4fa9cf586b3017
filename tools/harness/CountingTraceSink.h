// CountingTraceSink: a trace sink for programs that run the system for a
// long time: it formats and counts the lines up to a level and keeps none.
#ifndef ZAVREL_TOOLS_COUNTINGTRACESINK_H
#define ZAVREL_TOOLS_COUNTINGTRACESINK_H

#include <cstdint>

#include "platform/Trace.h"

namespace Zavrel {

// Counts trace lines up to a level and keeps none of them.
class CountingTraceSink : public TraceSink {
public:
    explicit CountingTraceSink(int level) : m_level(level) {}
    bool Wants(int level) const override { return level <= m_level; }
    void Write(int level, const char* text) override;
    uint64_t Lines() const { return m_lines; }
    // Lines at level 0 and 1: the errors and allocation failures.
    uint64_t ErrorLines() const { return m_errors; }

private:
    int m_level;
    uint64_t m_lines = 0;
    uint64_t m_errors = 0;
};

}  // namespace Zavrel

#endif
