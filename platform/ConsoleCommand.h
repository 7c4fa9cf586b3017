// ConsoleCommand: the registry of named console commands. Components register
// a handler under a command name; the application looks a name up and
// dispatches the words of a command line to it.
#ifndef ZAVREL_PLATFORM_CONSOLECOMMAND_H
#define ZAVREL_PLATFORM_CONSOLECOMMAND_H

#include <functional>
#include <vector>

#include "platform/String.h"

namespace Zavrel {

class ConsoleSession;

enum ConsoleRole {
    CONSOLE_ROLE_EVERYONE = 0,
    CONSOLE_ROLE_ADMIN = 1,
};

class ConsoleCommand {
public:
    using Handler = std::function<int(ConsoleSession*, int, char**)>;

    // Registers handler under name, replacing an earlier registration of the
    // same name. The handler receives the session and the words of the
    // command line, the command name first. Returns false for a null or
    // empty name or a null handler.
    template <typename T>
    static bool Register(ConsoleRole role, int (*handler)(T*, ConsoleSession*, int, char**),
                         T* context, const char* name, const char* help) {
        if (handler == nullptr) {
            return false;
        }
        return RegisterHandler(
            role,
            [handler, context](ConsoleSession* s, int argc, char** argv) {
                return handler(context, s, argc, argv);
            },
            context, name, help);
    }
    static bool RegisterHandler(ConsoleRole role, Handler handler, const void* owner,
                                const char* name, const char* help);
    // Removes the registration of name when it was made with this owner.
    static void Unregister(const char* name, const void* owner);

    // The command registered under exactly this name (case-insensitive), or
    // null. The pointer stays valid until the name is registered anew or
    // unregistered.
    static const ConsoleCommand* Find(const char* name);
    // Every registered command, ordered by name (case-insensitive).
    static std::vector<const ConsoleCommand*> All();

    int Run(ConsoleSession* session, int argc, char** argv) const;
    const string& Name() const { return m_name; }
    const string& Help() const { return m_help; }
    ConsoleRole Role() const { return m_role; }
    // The owner given at registration (the context of Register).
    const void* Owner() const { return m_owner; }

    ConsoleCommand(ConsoleRole role, Handler handler, const void* owner, const char* name,
                   const char* help);

private:
    ConsoleRole m_role;
    Handler m_handler;
    const void* m_owner;
    string m_name;
    string m_help;
};

}  // namespace Zavrel

#endif
