// StdoutConsole: the application's console. What the library prints goes to
// standard output exactly as printed; the console counts the ends of
// commands so that the application can wait for a table walk to finish, and
// it carries the VLAN the operator is working in.
#ifndef ZAVREL_APP_STDOUTCONSOLE_H
#define ZAVREL_APP_STDOUTCONSOLE_H

#include <cstdio>

#include "platform/DcConsole.h"

namespace Zavrel {

class StdoutConsole : public DcConsole {
public:
    StdoutConsole(FILE* out, unsigned short vlan);

    void VPrint(const char* format, va_list args) override ZAVREL_PRINTF(2, 0);
    void ErrorPrint(const char* message) override;
    int EndOfCommand() override;
    unsigned short CurrentVlan() const override { return m_vlan; }

    void SetVlan(unsigned short vlan) { m_vlan = vlan; }
    // True when nothing has been printed yet or the last output ended a line.
    bool AtLineStart() const { return m_atLineStart; }
    // Number of EndOfCommand calls so far.
    unsigned long EndCount() const { return m_ends; }
    void Flush();

private:
    void Write(const char* text, size_t length);

    FILE* m_out;
    unsigned short m_vlan;
    unsigned long m_ends = 0;
    bool m_atLineStart = true;
};

}  // namespace Zavrel

#endif
