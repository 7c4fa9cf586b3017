#include "routing/DcRouterCmdHandler.h"

namespace Zavrel {

DcRouterCmdHandler::DcRouterCmdHandler(DcRouterCmdFunc handler, const char* help)
    : m_handler(handler), m_help(help) {}

void DcRouterCmdHandler::Run(void* context, DcConsole* console, int argc, char** argv) const {
    if (m_handler != nullptr) {
        m_handler(context, console, argc, argv);
    }
}

}  // namespace Zavrel
