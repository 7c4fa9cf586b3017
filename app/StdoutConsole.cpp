#include "app/StdoutConsole.h"

#include <cstring>
#include <vector>

namespace Zavrel {

StdoutConsole::StdoutConsole(FILE* out, unsigned short vlan) : m_out(out), m_vlan(vlan) {}

void StdoutConsole::VPrint(const char* format, va_list args) {
    if (format == nullptr) {
        return;
    }
    va_list copy;
    va_copy(copy, args);
    char small[512];
    const int needed = vsnprintf(small, sizeof(small), format, copy);
    va_end(copy);
    if (needed < 0) {
        return;
    }
    if (static_cast<size_t>(needed) < sizeof(small)) {
        Write(small, static_cast<size_t>(needed));
        return;
    }
    std::vector<char> large(static_cast<size_t>(needed) + 1);
    vsnprintf(large.data(), large.size(), format, args);
    Write(large.data(), static_cast<size_t>(needed));
}

void StdoutConsole::ErrorPrint(const char* message) {
    // The library's error words ("End of table", "Gen Error", ...) are part
    // of a command's output, so they go where the rest of it goes.
    if (message != nullptr) {
        Write(message, strlen(message));
    }
}

int StdoutConsole::EndOfCommand() {
    ++m_ends;
    fflush(m_out);
    return 0;
}

void StdoutConsole::Write(const char* text, size_t length) {
    if (length == 0) {
        return;
    }
    fwrite(text, 1, length, m_out);
    m_atLineStart = text[length - 1] == '\n';
}

void StdoutConsole::Flush() {
    fflush(m_out);
}

}  // namespace Zavrel
