// PtySession: runs zavrel-router on a pseudo-terminal, as a user at a
// terminal would, for the console tests. The command that starts it comes
// from ZAVREL_ROUTER_COMMAND (words joined by '|': a cross build's emulator,
// then the program). The child gets a fresh HOME and XDG_STATE_HOME (the
// given state directory), TERM=dumb and an inputrc of its own, so that
// nothing of the machine's settings shows on the screen.
#ifndef ZAVREL_TESTS_APP_PTYSESSION_H
#define ZAVREL_TESTS_APP_PTYSESSION_H

#include <sys/types.h>

#include <string>
#include <vector>

namespace Zavrel::test {

class PtySession {
public:
    PtySession() = default;
    ~PtySession();
    PtySession(const PtySession&) = delete;
    PtySession& operator=(const PtySession&) = delete;

    // Starts the program with the arguments; home is its HOME and
    // XDG_STATE_HOME is home + "/state". False (with Error) when it
    // could not be started.
    bool Start(const std::vector<std::string>& arguments, const std::string& home);
    const std::string& Error() const { return m_error; }

    // Types text.
    bool Send(const std::string& text);
    // Reads until the screen output since the last Take holds text, for at
    // most timeoutMs; false when it did not come.
    bool WaitFor(const std::string& text, int timeoutMs = 10000);
    // The output since the last Take (the whole of it), and starts anew.
    std::string Take();
    // Reads until the program closes the terminal and returns its exit
    // status (-1 when it did not end within timeoutMs or ended by a signal).
    int WaitForExit(int timeoutMs = 10000);

private:
    // Reads what is there within timeoutMs; false at the end of output.
    bool ReadSome(int timeoutMs);

    int m_master = -1;
    pid_t m_child = -1;
    std::string m_output;
    std::string m_error;
};

}  // namespace Zavrel::test

#endif
