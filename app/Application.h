// Application: zavrel-router. Starts the library on the event loop with the
// embedded routing stack, then runs commands from -c arguments, scripts and
// standard input, letting the loop run after each command until the system
// is quiet.
#ifndef ZAVREL_APP_APPLICATION_H
#define ZAVREL_APP_APPLICATION_H

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/AppIpInterface.h"
#include "app/AppTraceSink.h"
#include "app/CommandInterpreter.h"
#include "app/CommandLine.h"
#include "app/KernelPlane.h"
#include "app/LineSource.h"
#include "app/LoopDriver.h"
#include "app/LoopSocketInterface.h"
#include "app/Settler.h"
#include "app/StackControl.h"
#include "app/StdoutConsole.h"
#include "app/SystemProbe.h"

namespace Zavrel {

class Application {
public:
    Application();
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    // The whole run; returns the exit status.
    int Main(int argc, char** argv);

    static constexpr int EXIT_BAD_COMMAND = 1;
    static constexpr int EXIT_BAD_USAGE = 2;

private:
    bool Start();
    // --kernel: the link to the kernel, the bindings file, and a loop that
    // keeps running while the application waits for input.
    bool StartKernel();
    // Lets the loop run until the descriptor has input.
    void WaitForInput(int fd);
    // Runs every line of the source; false when the application must stop.
    bool RunSource(LineSource& source);
    bool RunLine(const std::string& line, LineSource& source);
    // Reports a bad command; false when the application must stop.
    bool Fail(const std::string& where, const std::string& message);
    std::string Prompt() const;
    // Every command's words: the application's and the library's.
    static void DescribeCommands(CommandGrammar& grammar);
    // The values that exist for a placeholder of the grammar: the VLANs the
    // router manager holds, the interfaces announced, the commands.
    std::vector<std::string> ExistingValues(const std::string& placeholder) const;

    CommandLine m_options;
    std::unique_ptr<AppTraceSink> m_trace;
    TraceSink* m_previousTrace = nullptr;
    std::unique_ptr<LoopDriver> m_driver;
    std::unique_ptr<LoopSocketInterface> m_sockets;
    AppIpInterface m_ipInterface;
    std::unique_ptr<StdoutConsole> m_console;
    StackControl m_stack;
    std::unique_ptr<SystemProbe> m_probe;
    std::unique_ptr<Settler> m_settler;
    std::unique_ptr<CommandInterpreter> m_interpreter;
    std::unique_ptr<KernelPlane> m_kernel;
    int m_exitStatus = 0;
    bool m_quit = false;
};

}  // namespace Zavrel

#endif
