#include "platform/DcConsole.h"

namespace Zavrel {

void DcConsole::Print(const char* format, ...) {
    va_list args;
    va_start(args, format);
    VPrint(format, args);
    va_end(args);
}

}  // namespace Zavrel
