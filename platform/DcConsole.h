// DcConsole: where console commands print. The five operations below are
// all the system uses.
#ifndef ZAVREL_PLATFORM_DCCONSOLE_H
#define ZAVREL_PLATFORM_DCCONSOLE_H

#include <cstdarg>

#include "platform/Compiler.h"

namespace Zavrel {

class DcConsole {
public:
    virtual ~DcConsole() = default;
    // printf-style output; forwards to VPrint.
    virtual void Print(const char* format, ...) ZAVREL_PRINTF(2, 3);
    virtual void VPrint(const char* format, va_list args) ZAVREL_PRINTF(2, 0) = 0;
    // One error message, printed as it is.
    virtual void ErrorPrint(const char* message) = 0;
    // The command has finished its output.
    virtual int EndOfCommand() = 0;
    // The VLAN the console is working in.
    virtual unsigned short CurrentVlan() const = 0;
};

}  // namespace Zavrel

#endif
