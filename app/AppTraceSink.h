// AppTraceSink: the library's traces on standard error, up to a chosen
// level. Standard output is flushed before each line so that, when both
// streams go to one place, traces and console output appear in the order
// they were made.
#ifndef ZAVREL_APP_APPTRACESINK_H
#define ZAVREL_APP_APPTRACESINK_H

#include <cstdio>

#include "platform/Trace.h"

namespace Zavrel {

class AppTraceSink : public TraceSink {
public:
    AppTraceSink(FILE* out, FILE* err, int threshold);

    bool Wants(int level) const override { return level <= m_threshold; }
    void Write(int level, const char* text) override;
    void SetThreshold(int threshold) { m_threshold = threshold; }
    int Threshold() const { return m_threshold; }

private:
    FILE* m_out;
    FILE* m_err;
    int m_threshold;
};

}  // namespace Zavrel

#endif
