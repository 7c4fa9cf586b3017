// ConsoleSession: one operator's session, as handed to registered console
// commands. Its output goes to a DcConsole.
#ifndef ZAVREL_PLATFORM_CONSOLESESSION_H
#define ZAVREL_PLATFORM_CONSOLESESSION_H

#include "platform/Compiler.h"
#include "platform/DcConsole.h"
#include "platform/String.h"

namespace Zavrel {

class ConsoleSession {
public:
    explicit ConsoleSession(DcConsole& console) : m_console(console) {}
    virtual ~ConsoleSession() = default;

    // Writes the text as it is (no format interpretation).
    void Write(const char* text);
    void Write(const string& text) { Write(text.c_str()); }
    void Printf(const char* format, ...) ZAVREL_PRINTF(2, 3);
    DcConsole& Console() { return m_console; }

private:
    DcConsole& m_console;
};

}  // namespace Zavrel

#endif
