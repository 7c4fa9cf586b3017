// DcRouterCmdHandler: one entry of the router manager's console tables: the
// function that handles a routing command word and its help text.
#ifndef ZAVREL_ROUTING_DCROUTERCMDHANDLER_H
#define ZAVREL_ROUTING_DCROUTERCMDHANDLER_H

#include "platform/String.h"

namespace Zavrel {

class DcConsole;

// A console handler receives its context (unused by most handlers), the
// console to print on and the words of the command, its own word first.
typedef void (*DcRouterCmdFunc)(void* context, DcConsole* console, int argc, char** argv);

class DcRouterCmdHandler {
public:
    DcRouterCmdHandler(DcRouterCmdFunc handler, const char* help);

    DcRouterCmdFunc GetHandler() const { return m_handler; }
    const string& GetHelp() const { return m_help; }

    // Calls the handler (nothing when it is null).
    void Run(void* context, DcConsole* console, int argc, char** argv) const;

private:
    DcRouterCmdFunc m_handler;
    string m_help;
};

}  // namespace Zavrel

#endif
