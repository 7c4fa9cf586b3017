// LineSource: where command lines come from: a -c argument, a script file,
// standard input read line by line, or an interactive terminal with line
// editing and history.
#ifndef ZAVREL_APP_LINESOURCE_H
#define ZAVREL_APP_LINESOURCE_H

#include <cstdio>
#include <functional>
#include <string>

namespace Zavrel {

class LineSource {
public:
    virtual ~LineSource();
    // The next line, without its line break; false at the end.
    virtual bool Next(std::string& line) = 0;
    // Where the line last read came from, for messages ("site.script:12");
    // empty for an interactive terminal.
    virtual std::string Where() const = 0;
    // Directory that relative file names in its commands are taken from
    // (empty: the working directory).
    virtual std::string BaseDir() const { return std::string(); }
    virtual bool IsInteractive() const { return false; }

    // Called with a descriptor before a source blocks on it for input; the
    // application lets its event loop run there until the descriptor is
    // readable, so that the system keeps working while it waits for a
    // command (null: block as usual). A stream read this way must be
    // unbuffered, or a line already buffered would wait for more input.
    using InputWait = std::function<void(int fd)>;
    static void SetInputWait(InputWait wait);

protected:
    static void WaitForInput(int fd);
};

// One command given with -c.
class ArgumentSource : public LineSource {
public:
    ArgumentSource(const std::string& command, unsigned int number);
    bool Next(std::string& line) override;
    std::string Where() const override;

private:
    std::string m_command;
    unsigned int m_number;
    bool m_done = false;
};

// The lines of a script file or of a non-interactive stream.
class StreamSource : public LineSource {
public:
    // Opens a script; IsOpen tells whether that worked (Error gives why).
    explicit StreamSource(const std::string& path);
    // Reads an open stream (not closed at the end), named as given.
    StreamSource(FILE* stream, const std::string& name);
    ~StreamSource() override;
    StreamSource(const StreamSource&) = delete;
    StreamSource& operator=(const StreamSource&) = delete;

    bool IsOpen() const { return m_stream != nullptr; }
    const std::string& Error() const { return m_error; }
    bool Next(std::string& line) override;
    std::string Where() const override;
    std::string BaseDir() const override { return m_baseDir; }

private:
    FILE* m_stream = nullptr;
    bool m_owned = false;
    std::string m_name;
    std::string m_baseDir;
    std::string m_error;
    unsigned long m_line = 0;
};

class Completer;
class HistoryFile;

// A terminal: line editing and history, with a prompt made fresh for each
// line. With a completer, Tab and '?' complete and explain the words; with
// a history file, the history is read from it at the start and written
// back at the end.
class ReadlineSource : public LineSource {
public:
    explicit ReadlineSource(std::function<std::string()> prompt, Completer* completer = nullptr,
                            HistoryFile* history = nullptr);
    ~ReadlineSource() override;
    ReadlineSource(const ReadlineSource&) = delete;
    ReadlineSource& operator=(const ReadlineSource&) = delete;
    bool Next(std::string& line) override;
    std::string Where() const override { return std::string(); }
    bool IsInteractive() const override { return true; }

private:
    std::function<std::string()> m_prompt;
    Completer* m_completer;
    HistoryFile* m_history;
    std::string m_lastHistory;
};

}  // namespace Zavrel

#endif
