// NetNamespace: runs a test in a network namespace of its own. The calling
// thread (and every program it starts) moves into a new, empty namespace
// with its loopback up; the destructor moves it back, and the namespace
// disappears with its last user. Making one needs CAP_SYS_ADMIN: without it
// the test is skipped, except under CI=true, where the suite must run as
// root and a skip is a failure.
#ifndef ZAVREL_TESTS_NETNAMESPACE_H
#define ZAVREL_TESTS_NETNAMESPACE_H

#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

namespace Zavrel::test {

class NetNamespace {
public:
    NetNamespace() {
        m_saved = open("/proc/self/ns/net", O_RDONLY | O_CLOEXEC);
        if (m_saved < 0) {
            m_error = std::string("cannot open /proc/self/ns/net: ") + std::strerror(errno);
            return;
        }
        if (unshare(CLONE_NEWNET) != 0) {
            m_error = std::string("unshare(CLONE_NEWNET): ") + std::strerror(errno);
            close(m_saved);
            m_saved = -1;
            return;
        }
        m_inside = true;
        Run("ip link set lo up");
    }
    ~NetNamespace() {
        if (m_inside) {
            setns(m_saved, CLONE_NEWNET);
        }
        if (m_saved >= 0) {
            close(m_saved);
        }
    }
    NetNamespace(const NetNamespace&) = delete;
    NetNamespace& operator=(const NetNamespace&) = delete;

    bool Inside() const { return m_inside; }
    const std::string& Error() const { return m_error; }

    // Whether a test that cannot make a namespace must fail instead of
    // being skipped.
    static bool MustRun() {
        const char* ci = std::getenv("CI");
        return ci != nullptr && std::string(ci) == "true";
    }

    // Runs a shell command inside the namespace; its standard output, and
    // its exit status in status.
    static std::string Run(const std::string& command, int* status = nullptr) {
        std::string output;
        FILE* pipe = popen((command + " 2>&1").c_str(), "r");
        if (pipe == nullptr) {
            return "popen failed";
        }
        std::array<char, 512> buffer;
        size_t size;
        while ((size = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) {
            output.append(buffer.data(), size);
        }
        const int result = pclose(pipe);
        if (status != nullptr) {
            *status = WIFEXITED(result) ? WEXITSTATUS(result) : -1;
        }
        return output;
    }

private:
    int m_saved = -1;
    bool m_inside = false;
    std::string m_error;
};

}  // namespace Zavrel::test

// In a fixture's SetUp: makes a namespace into holder (a
// std::unique_ptr<NetNamespace>), or skips the test when that needs a
// privilege the process lacks (fails instead under CI=true).
#define ZAVREL_ENTER_NET_NAMESPACE(holder)                                              \
    do {                                                                                \
        holder = std::make_unique<::Zavrel::test::NetNamespace>();                      \
        if (!holder->Inside()) {                                                        \
            if (::Zavrel::test::NetNamespace::MustRun()) {                              \
                FAIL() << "skipped: needs CAP_SYS_ADMIN (" << holder->Error()           \
                       << "); CI=true must run this test";                              \
            }                                                                           \
            GTEST_SKIP() << "skipped: needs CAP_SYS_ADMIN (" << holder->Error() << ")"; \
        }                                                                               \
    } while (false)

#endif
