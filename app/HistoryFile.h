// HistoryFile: where the interactive command history is kept between runs,
// $XDG_STATE_HOME/zavrel-router/history or, without XDG_STATE_HOME,
// ~/.local/state/zavrel-router/history, and its loading and saving through
// readline's history, bounded to a number of lines.
#ifndef ZAVREL_APP_HISTORYFILE_H
#define ZAVREL_APP_HISTORYFILE_H

#include <string>

namespace Zavrel {

class HistoryFile {
public:
    static constexpr int MAX_LINES = 1000;

    // The path from the two variables' values (null or empty: not set);
    // empty when neither gives a place.
    static std::string PathFrom(const char* stateHome, const char* home);
    // The path from the environment.
    static std::string DefaultPath();

    explicit HistoryFile(std::string path, int maxLines = MAX_LINES);
    const std::string& Path() const { return m_path; }
    // Bounds readline's history and reads the file into it (a missing file
    // is an empty history). Returns the last line read, empty when none.
    std::string Load();
    // Writes readline's history to the file, creating its directory, and
    // cuts the file to the bound. False when it could not be written.
    bool Save() const;

private:
    std::string m_path;
    int m_maxLines;
};

}  // namespace Zavrel

#endif
