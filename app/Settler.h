// Settler: runs the loop after a command until the command has ended and
// the system is quiet, within a bound.
//
// Quiet means the probe reports QUIET, or reports PROBABLY_QUIET without a
// break for a whole window of loop time. The window is longer than the
// period of the configuration scheduler's timer, so that an item the probe
// could not look at, waiting to be sent (or re-sent after a failure), gets
// its tick, and its request is seen, before the system counts as quiet.
#ifndef ZAVREL_APP_SETTLER_H
#define ZAVREL_APP_SETTLER_H

#include <cstdint>
#include <cstdio>
#include <functional>

#include "app/LoopDriver.h"
#include "app/QuietProbe.h"

namespace Zavrel {

class Settler {
public:
    // Milliseconds of loop time without activity after which the system is
    // quiet (the configuration scheduler ticks every 100 ms).
    static constexpr unsigned int DEFAULT_WINDOW_MS = 150;
    // Bound of one wait, in milliseconds of loop time.
    static constexpr unsigned int DEFAULT_LIMIT_MS = 300000;

    Settler(LoopDriver& driver, QuietProbe& probe);

    void SetWindow(unsigned int ms) { m_window = ms; }
    void SetLimit(unsigned int ms) { m_limit = ms; }
    unsigned int Limit() const { return m_limit; }
    // Where progress of long waits is shown (null: nowhere).
    void SetProgressStream(FILE* stream) { m_progress = stream; }

    // Runs the loop until ended() is true and the system has been quiet for
    // the window. Returns false when the bound was reached first.
    bool RunUntilQuiet(const std::function<bool()>& ended);

private:
    void ShowProgress(uint64_t startMs, bool final);

    LoopDriver& m_driver;
    QuietProbe& m_probe;
    unsigned int m_window = DEFAULT_WINDOW_MS;
    unsigned int m_limit = DEFAULT_LIMIT_MS;
    FILE* m_progress = nullptr;
    uint64_t m_lastShownMs = 0;
    bool m_shown = false;
};

}  // namespace Zavrel

#endif
