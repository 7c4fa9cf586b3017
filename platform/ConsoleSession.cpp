#include "platform/ConsoleSession.h"

namespace Zavrel {

void ConsoleSession::Write(const char* text) {
    if (text != nullptr) {
        m_console.Print("%s", text);
    }
}

void ConsoleSession::Printf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    m_console.VPrint(format, args);
    va_end(args);
}

}  // namespace Zavrel
