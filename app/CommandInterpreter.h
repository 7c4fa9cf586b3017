// CommandInterpreter: the application's commands. Each command checks all
// of its words before it touches the library, so a bad command changes
// nothing and reports one line. Handlers are grouped by theme in
// CommandInterpreter*.cpp.
#ifndef ZAVREL_APP_COMMANDINTERPRETER_H
#define ZAVREL_APP_COMMANDINTERPRETER_H

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/CommandGrammar.h"
#include "app/LoopDriver.h"
#include "app/LoopSocketInterface.h"
#include "app/StackControl.h"
#include "app/StdoutConsole.h"
#include "app/Words.h"

namespace Zavrel {

class KernelPlane;

class CommandInterpreter {
public:
    struct Result {
        enum Status { OK, FAILED, QUIT };
        Status status = OK;
        std::string error;  // FAILED: what was wrong, one line without newline
        // Run the loop until the system is quiet afterwards.
        bool settle = true;
        // Wait until the console has seen this many ends of commands (0: no
        // wait): set by commands that started a table walk.
        unsigned long endTarget = 0;

        static Result Ok() { return Result(); }
        static Result Local() {
            Result r;
            r.settle = false;
            return r;
        }
        static Result Fail(const std::string& error) {
            Result r;
            r.status = FAILED;
            r.error = error;
            r.settle = false;
            return r;
        }
    };

    CommandInterpreter(StdoutConsole& console, LoopDriver& driver, StackControl& stack,
                       const LoopSocketInterface& sockets);

    // Runs one command line, already split into words (at least one).
    // baseDir: the directory relative file names are taken from.
    Result Execute(const std::vector<std::string>& words, const std::string& baseDir);

    // Adds the forms of the application's commands, read from the same
    // table the commands are dispatched and explained from, with the help
    // of their words (CommandInterpreterGrammar.cpp).
    static void DescribeCommands(CommandGrammar& grammar);
    // Names of the interfaces announced with 'interface add' and not
    // removed, sorted, each once.
    std::vector<std::string> InterfaceNames() const;

    // Whether each command is printed, after the prompt, before it runs.
    bool IsEcho() const { return m_echo; }
    void SetEcho(bool echo) { m_echo = echo; }
    // The link to the kernel that 'interface attach|detach' use (null: off).
    void SetKernelPlane(KernelPlane* kernel) { m_kernel = kernel; }

private:
    struct Args {
        const std::vector<std::string>& words;
        const std::string& baseDir;
        size_t Count() const { return words.size(); }
        const std::string& operator[](size_t i) const { return words[i]; }
    };
    using Handler = Result (CommandInterpreter::*)(const Args&);
    struct Command {
        const char* name;
        Handler handler;
        const char* usage;    // one or more lines, each without newline
        const char* summary;  // one line
        // Further forms, one a line, that the grammar offers (Tab, '?')
        // but the usage leaves out, so that help and the usage in error
        // texts read as they always have; null when none.
        const char* more = nullptr;
    };
    static const std::vector<Command>& Commands();
    static const Command* FindCommand(const std::string& name);

    // CommandInterpreter.cpp
    Result Help(const Args& args);
    Result Vlan(const Args& args);
    Result Run(const Args& args);
    Result Quit(const Args& args);
    Result Echo(const Args& args);
    Result Registered(const Args& args);
    // CommandInterpreterConfig.cpp
    Result Load(const Args& args);
    Result Unload(const Args& args);
    // CommandInterpreterInterfaces.cpp
    Result Interface(const Args& args);
    Result InterfaceAdd(const Args& args);
    Result InterfaceAttach(const Args& args);
    Result Address(const Args& args);
    Result Join(const Args& args);
    Result Leave(const Args& args);
    // CommandInterpreterRoutes.cpp
    Result Route(const Args& args);
    // CommandInterpreterStack.cpp
    Result Stack(const Args& args);
    Result StackRoute(const Args& args);
    // CommandInterpreterShow.cpp
    Result Ip4(const Args& args);
    Result Ip6(const Args& args);
    Result IpHandlers(const Args& args, bool ipv6);
    Result Rtm4(const Args& args);
    Result Rtm6(const Args& args);
    Result Rtm(const Args& args, unsigned short family);
    Result Interfaces4(const Args& args);
    Result Interfaces6(const Args& args);
    Result Interfaces(const Args& args, bool ipv6);

    // Readers that produce the error text of a bad word.
    static bool ReadVlan(const Args& args, size_t index, unsigned short& vlan, std::string& error);
    static bool ReadUnsigned(const Args& args, size_t index, const char* what, unsigned int& value,
                             std::string& error);
    // "usage: ..." of a command, only its forms for verb when given.
    static std::string UsageOf(const char* name, const std::string& verb = std::string());
    // "(add, up, down, ...; see 'help name')": the sub-commands of a command.
    static std::string SubCommandsOf(const char* name);
    Result WaitForEnd();

    StdoutConsole& m_console;
    LoopDriver& m_driver;
    StackControl& m_stack;
    const LoopSocketInterface& m_sockets;
    bool m_echo = false;
    KernelPlane* m_kernel = nullptr;
    // (VLAN, ifindex) -> name of the interfaces announced and not removed.
    std::map<std::pair<unsigned short, unsigned int>, std::string> m_interfaceNames;
};

}  // namespace Zavrel

#endif
