#include "app/LineSource.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <utility>

#include <readline/history.h>
#include <readline/readline.h>

#include "app/Completer.h"
#include "app/HistoryFile.h"

namespace Zavrel {

namespace {

LineSource::InputWait& InputWaitHook() {
    static LineSource::InputWait wait;
    return wait;
}

// readline's way to read a key, waiting on the loop first.
int WaitingGetc(FILE* stream) {
    InputWaitHook()(fileno(stream));
    return rl_getc(stream);
}

}  // namespace

void LineSource::SetInputWait(InputWait wait) {
    InputWaitHook() = std::move(wait);
    rl_getc_function = InputWaitHook() ? WaitingGetc : rl_getc;
}

void LineSource::WaitForInput(int fd) {
    if (InputWaitHook()) {
        InputWaitHook()(fd);
    }
}

LineSource::~LineSource() = default;

ArgumentSource::ArgumentSource(const std::string& command, unsigned int number)
    : m_command(command), m_number(number) {}

bool ArgumentSource::Next(std::string& line) {
    if (m_done) {
        return false;
    }
    m_done = true;
    line = m_command;
    return true;
}

std::string ArgumentSource::Where() const {
    return "-c #" + std::to_string(m_number);
}

StreamSource::StreamSource(const std::string& path) : m_name(path) {
    m_stream = fopen(path.c_str(), "r");
    if (m_stream == nullptr) {
        m_error = strerror(errno);
        return;
    }
    m_owned = true;
    const size_t slash = path.rfind('/');
    if (slash != std::string::npos) {
        m_baseDir = path.substr(0, slash + 1);
    }
}

StreamSource::StreamSource(FILE* stream, const std::string& name)
    : m_stream(stream), m_name(name) {}

StreamSource::~StreamSource() {
    if (m_owned && m_stream != nullptr) {
        fclose(m_stream);
    }
}

bool StreamSource::Next(std::string& line) {
    if (m_stream == nullptr) {
        return false;
    }
    WaitForInput(fileno(m_stream));
    line.clear();
    int c;
    bool any = false;
    while ((c = fgetc(m_stream)) != EOF) {
        any = true;
        if (c == '\n') {
            break;
        }
        line += static_cast<char>(c);
    }
    if (!any) {
        return false;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    ++m_line;
    return true;
}

std::string StreamSource::Where() const {
    return m_name + ":" + std::to_string(m_line);
}

ReadlineSource::ReadlineSource(std::function<std::string()> prompt, Completer* completer,
                               HistoryFile* history)
    : m_prompt(std::move(prompt)), m_completer(completer), m_history(history) {
    // Lets an inputrc tell this program's settings apart ($if zavrel-router).
    rl_readline_name = "zavrel-router";
    if (m_completer != nullptr) {
        m_completer->Install();
    }
    if (m_history != nullptr) {
        m_lastHistory = m_history->Load();
    }
}

ReadlineSource::~ReadlineSource() {
    if (m_history != nullptr) {
        // A history that cannot be written (no HOME, a read-only place) is
        // lost quietly, as shells do: it is no reason to complain at exit.
        m_history->Save();
    }
    if (m_completer != nullptr) {
        m_completer->Uninstall();
    }
}

bool ReadlineSource::Next(std::string& line) {
    const std::string prompt = m_prompt ? m_prompt() : std::string("> ");
    char* text = readline(prompt.c_str());
    if (text == nullptr) {
        // End of input: leave the terminal on a fresh line.
        fputc('\n', stdout);
        return false;
    }
    line = text;
    free(text);
    if (line.find_first_not_of(" \t") != std::string::npos && line != m_lastHistory) {
        add_history(line.c_str());
        m_lastHistory = line;
    }
    return true;
}

}  // namespace Zavrel
