#include "PtySession.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace Zavrel::test {

namespace {

std::vector<std::string> SplitAtBars(const std::string& text) {
    std::vector<std::string> words;
    size_t start = 0;
    for (;;) {
        const size_t bar = text.find('|', start);
        words.push_back(text.substr(start, bar == std::string::npos ? bar : bar - start));
        if (bar == std::string::npos) {
            return words;
        }
        start = bar + 1;
    }
}

long long NowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

}  // namespace

PtySession::~PtySession() {
    if (m_child > 0) {
        kill(m_child, SIGKILL);
        waitpid(m_child, nullptr, 0);
    }
    if (m_master >= 0) {
        close(m_master);
    }
}

bool PtySession::Start(const std::vector<std::string>& arguments, const std::string& home) {
    const char* command = getenv("ZAVREL_ROUTER_COMMAND");
    if (command == nullptr || command[0] == '\0') {
        m_error = "ZAVREL_ROUTER_COMMAND is not set";
        return false;
    }
    std::vector<std::string> words = SplitAtBars(command);
    words.insert(words.end(), arguments.begin(), arguments.end());
    {
        std::ofstream inputrc(home + "/inputrc");
        inputrc << "set enable-bracketed-paste off\nset bell-style none\n";
    }
    m_master = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0) {
        m_error = std::string("no pseudo-terminal: ") + strerror(errno);
        return false;
    }
    const std::string slave = ptsname(m_master);
    struct winsize size = {};
    size.ws_row = 24;
    size.ws_col = 200;
    m_child = fork();
    if (m_child < 0) {
        m_error = std::string("fork: ") + strerror(errno);
        return false;
    }
    if (m_child == 0) {
        setsid();
        const int fd = open(slave.c_str(), O_RDWR);
        if (fd < 0) {
            _exit(126);
        }
        ioctl(fd, TIOCSCTTY, 0);
        ioctl(fd, TIOCSWINSZ, &size);
        dup2(fd, STDIN_FILENO);
        dup2(fd, STDOUT_FILENO);
        dup2(fd, STDERR_FILENO);
        if (fd > STDERR_FILENO) {
            close(fd);
        }
        close(m_master);
        setenv("HOME", home.c_str(), 1);
        setenv("XDG_STATE_HOME", (home + "/state").c_str(), 1);
        setenv("TERM", "dumb", 1);
        setenv("INPUTRC", (home + "/inputrc").c_str(), 1);
        // Under the cross build's emulator script this names the test
        // program itself; the router must not inherit it.
        unsetenv("ZAVREL_QEMU_PROGRAM");
        std::vector<char*> argv;
        for (std::string& word : words) {
            argv.push_back(&word[0]);
        }
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    return true;
}

bool PtySession::Send(const std::string& text) {
    return write(m_master, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

bool PtySession::ReadSome(int timeoutMs) {
    struct pollfd ready = {m_master, POLLIN, 0};
    if (poll(&ready, 1, timeoutMs) <= 0) {
        return true;
    }
    char buffer[4096];
    const ssize_t count = read(m_master, buffer, sizeof(buffer));
    if (count <= 0) {
        return false;  // the program has closed the terminal (EIO)
    }
    m_output.append(buffer, static_cast<size_t>(count));
    return true;
}

bool PtySession::WaitFor(const std::string& text, int timeoutMs) {
    const long long end = NowMs() + timeoutMs;
    while (m_output.find(text) == std::string::npos) {
        const long long left = end - NowMs();
        if (left <= 0 || !ReadSome(static_cast<int>(left))) {
            return m_output.find(text) != std::string::npos;
        }
    }
    return true;
}

std::string PtySession::Take() {
    std::string output;
    output.swap(m_output);
    return output;
}

int PtySession::WaitForExit(int timeoutMs) {
    const long long end = NowMs() + timeoutMs;
    while (NowMs() < end) {
        if (!ReadSome(static_cast<int>(end - NowMs()))) {
            break;
        }
    }
    int status = 0;
    for (;;) {
        const pid_t done = waitpid(m_child, &status, WNOHANG);
        if (done == m_child) {
            m_child = -1;
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }
        if (NowMs() >= end) {
            return -1;
        }
        // The terminal is closed but the process has not been reaped yet.
        struct pollfd none = {-1, 0, 0};
        poll(&none, 0, 10);
    }
}

}  // namespace Zavrel::test
