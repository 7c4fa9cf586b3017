#include "app/Settler.h"

#include <chrono>
#include <string>

namespace Zavrel {

namespace {

uint64_t WallMs() {
    using namespace std::chrono;
    return static_cast<uint64_t>(
        duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace

Settler::Settler(LoopDriver& driver, QuietProbe& probe) : m_driver(driver), m_probe(probe) {}

bool Settler::RunUntilQuiet(const std::function<bool()>& ended) {
    const uint64_t start = m_driver.NowMs();
    const uint64_t limit = start + m_limit;
    const uint64_t wallStart = WallMs();
    m_shown = false;
    m_lastShownMs = wallStart;

    bool quietSinceValid = false;
    uint64_t quietSince = 0;
    for (;;) {
        const uint64_t now = m_driver.NowMs();
        const QuietProbe::State state = ended() ? m_probe.Check() : QuietProbe::BUSY;
        if (state == QuietProbe::QUIET) {
            ShowProgress(wallStart, true);
            return true;
        }
        const bool quiet = state == QuietProbe::PROBABLY_QUIET;
        if (!quiet) {
            quietSinceValid = false;
        } else if (!quietSinceValid) {
            quietSinceValid = true;
            quietSince = now;
        }
        if (quietSinceValid && now - quietSince >= m_window) {
            ShowProgress(wallStart, true);
            return true;
        }
        if (now >= limit) {
            ShowProgress(wallStart, true);
            return false;
        }
        // Look again when the window would be complete, or earlier when
        // something falls due.
        uint64_t deadline = quietSinceValid ? quietSince + m_window : now + m_window;
        if (deadline > limit) {
            deadline = limit;
        }
        m_driver.Step(deadline);
        ShowProgress(wallStart, false);
    }
}

void Settler::ShowProgress(uint64_t startMs, bool final) {
    if (m_progress == nullptr) {
        return;
    }
    const uint64_t wall = WallMs();
    if (final) {
        if (m_shown) {
            // Clear the progress line.
            fputs("\r\033[K", m_progress);
            fflush(m_progress);
            m_shown = false;
        }
        return;
    }
    // Long pushes only: nothing during the first second, then a few updates
    // a second.
    if (wall - startMs < 1000 || wall - m_lastShownMs < 250) {
        return;
    }
    m_lastShownMs = wall;
    const std::string text = m_probe.ProgressText();
    fprintf(m_progress, "\r\033[K[working %.1f s] %s", static_cast<double>(wall - startMs) / 1000.0,
            text.c_str());
    fflush(m_progress);
    m_shown = true;
}

}  // namespace Zavrel
