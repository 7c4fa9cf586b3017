#include "platform/Trace.h"

#include <syslog.h>

#include <cstdio>

#include "platform/String.h"

namespace Zavrel {

namespace {

// The default sink lives as long as the process: traces may be written from
// destructors of other static objects.
StderrTraceSink& DefaultSink() {
    static StderrTraceSink* sink = new StderrTraceSink(0);
    return *sink;
}

TraceSink* g_sink = nullptr;

TraceSink& CurrentSink() {
    return g_sink != nullptr ? *g_sink : DefaultSink();
}

}  // namespace

void StderrTraceSink::Write(int, const char* text) {
    std::fputs(text, stderr);
}

SyslogTraceSink::SyslogTraceSink(const char* ident, int threshold) : m_threshold(threshold) {
    openlog(ident, LOG_PID, LOG_DAEMON);
}

SyslogTraceSink::~SyslogTraceSink() {
    closelog();
}

void SyslogTraceSink::Write(int level, const char* text) {
    int priority = LOG_DEBUG;
    if (level <= 0) {
        priority = LOG_ERR;
    } else if (level == 1) {
        priority = LOG_WARNING;
    } else if (level <= 5) {
        priority = LOG_INFO;
    }
    syslog(priority, "%s", text);
}

std::vector<std::string> CapturingTraceSink::Texts() const {
    std::vector<std::string> texts;
    texts.reserve(m_lines.size());
    for (const Line& line : m_lines) {
        texts.push_back(line.text);
    }
    return texts;
}

std::vector<std::string> CapturingTraceSink::Texts(int level) const {
    std::vector<std::string> texts;
    for (const Line& line : m_lines) {
        if (line.level == level) {
            texts.push_back(line.text);
        }
    }
    return texts;
}

bool CapturingTraceSink::Contains(const std::string& text) const {
    for (const Line& line : m_lines) {
        if (line.text == text) {
            return true;
        }
    }
    return false;
}

bool CapturingTraceSink::Contains(int level, const std::string& text) const {
    for (const Line& line : m_lines) {
        if (line.level == level && line.text == text) {
            return true;
        }
    }
    return false;
}

TraceSink* SetTraceSink(TraceSink* sink) {
    TraceSink* previous = &CurrentSink();
    g_sink = sink;
    return previous;
}

TraceSink* GetTraceSink() {
    return &CurrentSink();
}

bool TraceEnabled(int level) {
    return CurrentSink().Wants(level);
}

void TraceWriteV(int level, const char* format, va_list args) {
    TraceSink& sink = CurrentSink();
    if (format == nullptr || !sink.Wants(level)) {
        return;
    }
    string text;
    text.VFormat(format, args);
    sink.Write(level, text.c_str());
}

void TraceWrite(int level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    TraceWriteV(level, format, args);
    va_end(args);
}

void TraceWrite(const char* format, ...) {
    va_list args;
    va_start(args, format);
    TraceWriteV(0, format, args);
    va_end(args);
}

}  // namespace Zavrel
