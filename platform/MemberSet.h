// MemberSet: the trace levels selected for one object, and member_TRACE,
// which traces only the selected levels of an object's set.
#ifndef ZAVREL_PLATFORM_MEMBERSET_H
#define ZAVREL_PLATFORM_MEMBERSET_H

#include <cstdint>

#include "platform/Trace.h"

namespace Zavrel {

class ConsoleSession;

class MemberSet {
public:
    static constexpr int MAX_LEVEL = 31;

    MemberSet() = default;
    bool IsSelected(int level) const;
    bool Any() const { return m_levels != 0; }
    void Select(int level);
    void Deselect(int level);
    void SelectAll() { m_levels = ~0u; }
    void Clear() { m_levels = 0; }
    uint32_t Bits() const { return m_levels; }

private:
    uint32_t m_levels = 0;
};

// Console handling of "debug <level>..." for a trace set. Words: a level
// number 0..31 selects it, "-<n>" deselects it, "all" selects every level,
// "off" or "none" clears the set. With no words, or after the words, writes
// "<name>: <levels>\n" (the selected levels in ascending order, or "off").
// A word that is none of these writes
// "Usage: debug <level>|-<level>|all|off ...\n" and changes nothing.
// Returns 0 on success, 1 on a usage error.
int HandleDebugCommand(ConsoleSession* session, int argc, char** argv, MemberSet& set,
                       const char* name);

}  // namespace Zavrel

#define member_TRACE(set, level, ...)                 \
    do {                                              \
        if ((set).IsSelected(level)) {                \
            ::Zavrel::TraceWrite(level, __VA_ARGS__); \
        }                                             \
    } while (0)

#endif
