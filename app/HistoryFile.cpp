#include "app/HistoryFile.h"

#include <sys/stat.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include <readline/history.h>

namespace Zavrel {

namespace {

bool IsSet(const char* value) {
    return value != nullptr && value[0] != '\0';
}

// Creates every missing directory of path (mode 0700: a history is
// private); false when one cannot be made.
bool MakeDirectories(const std::string& path) {
    for (size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
        const std::string part = path.substr(0, slash);
        if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
            return false;
        }
        if (slash == std::string::npos) {
            return true;
        }
    }
}

}  // namespace

std::string HistoryFile::PathFrom(const char* stateHome, const char* home) {
    if (IsSet(stateHome)) {
        return std::string(stateHome) + "/zavrel-router/history";
    }
    if (IsSet(home)) {
        return std::string(home) + "/.local/state/zavrel-router/history";
    }
    return std::string();
}

std::string HistoryFile::DefaultPath() {
    return PathFrom(getenv("XDG_STATE_HOME"), getenv("HOME"));
}

HistoryFile::HistoryFile(std::string path, int maxLines)
    : m_path(std::move(path)), m_maxLines(maxLines) {}

std::string HistoryFile::Load() {
    stifle_history(m_maxLines);
    if (m_path.empty() || read_history(m_path.c_str()) != 0) {
        return std::string();
    }
    HIST_ENTRY* last = history_get(history_base + history_length - 1);
    return last != nullptr && last->line != nullptr ? std::string(last->line) : std::string();
}

bool HistoryFile::Save() const {
    if (m_path.empty()) {
        return false;
    }
    const size_t slash = m_path.rfind('/');
    if (slash != std::string::npos && slash > 0 && !MakeDirectories(m_path.substr(0, slash))) {
        return false;
    }
    if (write_history(m_path.c_str()) != 0) {
        return false;
    }
    return history_truncate_file(m_path.c_str(), m_maxLines) == 0;
}

}  // namespace Zavrel
