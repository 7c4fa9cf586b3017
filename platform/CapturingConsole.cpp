#include "platform/CapturingConsole.h"

#include "platform/String.h"

namespace Zavrel {

void CapturingConsole::VPrint(const char* format, va_list args) {
    string text;
    text.VFormat(format, args);
    m_output += text.str();
    m_all += text.str();
}

void CapturingConsole::ErrorPrint(const char* message) {
    if (message == nullptr) {
        return;
    }
    m_errors += message;
    m_all += message;
}

int CapturingConsole::EndOfCommand() {
    ++m_ends;
    return 0;
}

void CapturingConsole::Clear() {
    m_output.clear();
    m_errors.clear();
    m_all.clear();
    m_ends = 0;
}

}  // namespace Zavrel
