#include "app/StdoutConsole.h"

namespace Zavrel {

StdoutConsole::StdoutConsole(FILE* out, unsigned short vlan) : m_out(out), m_vlan(vlan) {}

void StdoutConsole::VPrint(const char* format, va_list args)
{
    if (format != nullptr) {
        vfprintf(m_out, format, args);
    }
}

void StdoutConsole::ErrorPrint(const char* message)
{
    // The library's error words ("End of table", "Gen Error", ...) are part
    // of a command's output, so they go where the rest of it goes.
    if (message != nullptr) {
        fputs(message, m_out);
    }
}

int StdoutConsole::EndOfCommand()
{
    ++m_ends;
    fflush(m_out);
    return 0;
}

void StdoutConsole::Flush()
{
    fflush(m_out);
}

}  // namespace Zavrel
