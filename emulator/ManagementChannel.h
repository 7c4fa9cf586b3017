// ManagementChannel: the stack's one descriptor, an eventfd. Management work
// posted to the stack from outside the library (protocol routes, freezing,
// closing the channel) makes it readable; the application's event loop then
// hands it back through InvokeCallback, and reading it lets the stack ask for
// an early scheduler run.
#ifndef ZAVREL_EMULATOR_MANAGEMENTCHANNEL_H
#define ZAVREL_EMULATOR_MANAGEMENTCHANNEL_H

#include <cstdint>

namespace Zavrel::Emulator {

class ManagementChannel {
public:
    ManagementChannel() = default;
    ~ManagementChannel();
    ManagementChannel(const ManagementChannel&) = delete;
    ManagementChannel& operator=(const ManagementChannel&) = delete;

    // Creates the descriptor (non-blocking); false on an OS failure.
    bool Open();
    void Close();
    bool IsOpen() const { return m_fd >= 0; }
    int Fd() const { return m_fd; }

    // Makes the descriptor readable; false on an OS failure.
    bool Signal();
    // Reads the descriptor empty; returns the number of signals it held
    // (0 when it was not readable).
    uint64_t Drain();

private:
    int m_fd = -1;
};

}  // namespace Zavrel::Emulator

#endif
