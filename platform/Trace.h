// Trace: the system's log. TRACE(level, format, ...) or TRACE(format, ...)
// (level 0). Levels in use: 0 errors, 1 warnings, 3 queue bookkeeping,
// 5 requests and dumps, 10 progress. Lines go to the installed TraceSink.
#ifndef ZAVREL_PLATFORM_TRACE_H
#define ZAVREL_PLATFORM_TRACE_H

#include <cstdarg>
#include <string>
#include <vector>

#include "platform/Compiler.h"

namespace Zavrel {

class TraceSink {
public:
    virtual ~TraceSink() = default;
    // True when a line of this level would be kept; checked before formatting.
    virtual bool Wants(int level) const = 0;
    // One formatted message, exactly as the caller wrote it (newline included).
    virtual void Write(int level, const char* text) = 0;
};

// Writes lines of level <= threshold to standard error (default threshold 0).
class StderrTraceSink : public TraceSink {
public:
    explicit StderrTraceSink(int threshold = 0) : m_threshold(threshold) {}
    bool Wants(int level) const override { return level <= m_threshold; }
    void Write(int level, const char* text) override;
    void SetThreshold(int threshold) { m_threshold = threshold; }
    int Threshold() const { return m_threshold; }

private:
    int m_threshold;
};

// Writes lines of level <= threshold to syslog (level 0 as LOG_ERR, 1 as
// LOG_WARNING, 2..5 as LOG_INFO, above as LOG_DEBUG).
class SyslogTraceSink : public TraceSink {
public:
    explicit SyslogTraceSink(const char* ident, int threshold = 0);
    ~SyslogTraceSink() override;
    bool Wants(int level) const override { return level <= m_threshold; }
    void Write(int level, const char* text) override;

private:
    int m_threshold;
};

// Keeps every line with its level, for tests.
class CapturingTraceSink : public TraceSink {
public:
    struct Line {
        int level;
        std::string text;
        bool operator==(const Line& o) const { return level == o.level && text == o.text; }
    };
    bool Wants(int) const override { return true; }
    void Write(int level, const char* text) override { m_lines.push_back({level, text}); }
    const std::vector<Line>& Lines() const { return m_lines; }
    // The texts of the lines, in order, optionally only those of one level.
    std::vector<std::string> Texts() const;
    std::vector<std::string> Texts(int level) const;
    // True when some line has exactly this text (and level, when given).
    bool Contains(const std::string& text) const;
    bool Contains(int level, const std::string& text) const;
    void Clear() { m_lines.clear(); }

private:
    std::vector<Line> m_lines;
};

// Installs the sink (not owned); null restores the default stderr sink.
// Returns the sink that was installed before.
TraceSink* SetTraceSink(TraceSink* sink);
TraceSink* GetTraceSink();
bool TraceEnabled(int level);

void TraceWrite(int level, const char* format, ...) ZAVREL_PRINTF(2, 3);
void TraceWrite(const char* format, ...) ZAVREL_PRINTF(1, 2);
void TraceWriteV(int level, const char* format, va_list args) ZAVREL_PRINTF(2, 0);

}  // namespace Zavrel

#define TRACE(...) ::Zavrel::TraceWrite(__VA_ARGS__)

#endif
