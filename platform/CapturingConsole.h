// CapturingConsole: a DcConsole that keeps what is printed, for tests and
// for the application's output buffering.
#ifndef ZAVREL_PLATFORM_CAPTURINGCONSOLE_H
#define ZAVREL_PLATFORM_CAPTURINGCONSOLE_H

#include <string>

#include "platform/DcConsole.h"

namespace Zavrel {

class CapturingConsole : public DcConsole {
public:
    explicit CapturingConsole(unsigned short vlan = 1) : m_vlan(vlan) {}

    void VPrint(const char* format, va_list args) override ZAVREL_PRINTF(2, 0);
    void ErrorPrint(const char* message) override;
    int EndOfCommand() override;
    unsigned short CurrentVlan() const override { return m_vlan; }

    void SetVlan(unsigned short vlan) { m_vlan = vlan; }
    // Normal output; error output; both in the order printed.
    const std::string& Output() const { return m_output; }
    const std::string& Errors() const { return m_errors; }
    const std::string& All() const { return m_all; }
    int EndCount() const { return m_ends; }
    void Clear();

private:
    unsigned short m_vlan;
    std::string m_output;
    std::string m_errors;
    std::string m_all;
    int m_ends = 0;
};

}  // namespace Zavrel

#endif
