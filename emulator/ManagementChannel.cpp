#include "emulator/ManagementChannel.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace Zavrel::Emulator {

ManagementChannel::~ManagementChannel() {
    Close();
}

bool ManagementChannel::Open() {
    if (m_fd >= 0) {
        return true;
    }
    m_fd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    return m_fd >= 0;
}

void ManagementChannel::Close() {
    if (m_fd >= 0) {
        close(m_fd);
        m_fd = -1;
    }
}

bool ManagementChannel::Signal() {
    if (m_fd < 0) {
        return false;
    }
    const uint64_t one = 1;
    return write(m_fd, &one, sizeof(one)) == static_cast<ssize_t>(sizeof(one));
}

uint64_t ManagementChannel::Drain() {
    if (m_fd < 0) {
        return 0;
    }
    uint64_t value = 0;
    if (read(m_fd, &value, sizeof(value)) != static_cast<ssize_t>(sizeof(value))) {
        return 0;
    }
    return value;
}

}  // namespace Zavrel::Emulator
