#include "app/Application.h"

#include <net/if.h>
#include <poll.h>

#include <unistd.h>

#include "app/Completer.h"
#include "app/HistoryFile.h"
#include "app/LibraryGrammar.h"
#include "interfaces/DcInterfaceMgr.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

Application::Application() = default;

Application::~Application() {
    LineSource::SetInputWait(nullptr);
    if (m_trace) {
        SetTraceSink(m_previousTrace);
    }
}

int Application::Main(int argc, char** argv) {
    std::string error;
    if (!m_options.Parse(argc > 0 ? argc - 1 : 0, argv + (argc > 0 ? 1 : 0), error)) {
        fprintf(stderr, "zavrel-router: %s\n", error.c_str());
        fprintf(stderr, "Try 'zavrel-router --help'.\n");
        return EXIT_BAD_USAGE;
    }
    if (m_options.showHelp) {
        CommandLine::PrintUsage(stdout);
        return 0;
    }
    if (m_options.showVersion) {
        printf("zavrel-router %s\n", CommandLine::Version());
        return 0;
    }

    m_trace = std::make_unique<AppTraceSink>(stdout, stderr, m_options.traceLevel);
    m_previousTrace = SetTraceSink(m_trace.get());

    if (!Start()) {
        if (m_kernel) {
            // Whatever the failed start put into the kernel comes out again.
            m_kernel->Stop();
        }
        fflush(stdout);
        return EXIT_BAD_COMMAND;
    }

    unsigned int commandNumber = 0;
    for (const CommandLine::Source& given : m_options.sources) {
        if (m_quit) {
            break;
        }
        if (given.kind == CommandLine::Source::COMMAND) {
            ArgumentSource source(given.text, ++commandNumber);
            if (!RunSource(source)) {
                break;
            }
            continue;
        }
        StreamSource source(given.text);
        if (!source.IsOpen()) {
            if (!Fail(given.text, "cannot read the script: " + source.Error())) {
                break;
            }
            continue;
        }
        if (!RunSource(source)) {
            break;
        }
    }
    if (m_kernel) {
        // What an earlier run left in the kernel and the start-up commands
        // did not want again goes now.
        m_kernel->Settled();
    }
    if (!m_quit && m_options.readStdin) {
        if (isatty(STDIN_FILENO)) {
            Completer completer(
                &Application::DescribeCommands,
                [this](const std::string& placeholder) { return ExistingValues(placeholder); });
            HistoryFile history(HistoryFile::DefaultPath());
            ReadlineSource source([this]() { return Prompt(); }, &completer, &history);
            RunSource(source);
        } else {
            StreamSource source(stdin, "<stdin>");
            RunSource(source);
        }
    }
    if (m_kernel) {
        m_kernel->Stop();
    }
    fflush(stdout);
    return m_exitStatus;
}

bool Application::Start() {
    m_driver = LoopDriver::Create(m_options.virtualTime);
    if (!m_driver) {
        fprintf(stderr, "zavrel-router: cannot create the event loop\n");
        return false;
    }
    m_sockets = std::make_unique<LoopSocketInterface>(m_driver->Loop());
    m_console = std::make_unique<StdoutConsole>(stdout, m_options.vlan);
    m_probe = std::make_unique<SystemProbe>(m_stack);
    m_settler = std::make_unique<Settler>(*m_driver, *m_probe);
    if (m_options.settleLimitMs != 0) {
        m_settler->SetLimit(m_options.settleLimitMs);
    }
    if (isatty(STDERR_FILENO)) {
        m_settler->SetProgressStream(stderr);
    }
    m_interpreter =
        std::make_unique<CommandInterpreter>(*m_console, *m_driver, m_stack, *m_sockets);
    m_interpreter->SetEcho(m_options.echo);

    // Start-up order: the manager, its socket registry, the interface
    // manager, then the stack itself.
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        fprintf(stderr, "zavrel-router: cannot create the router manager\n");
        return false;
    }
    manager->SckInterfaceInitialize(m_sockets.get());
    DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance();
    if (interfaces == nullptr) {
        fprintf(stderr, "zavrel-router: cannot create the interface manager\n");
        return false;
    }
    interfaces->Initialize(0);
    const int started = manager->Initialize(m_options.vlan, &m_ipInterface);
    if (started != 0) {
        fprintf(stderr, "zavrel-router: the routing stack did not start (%d)\n", started);
        return false;
    }
    if (!m_settler->RunUntilQuiet([]() { return true; })) {
        fprintf(stderr, "zavrel-router: the routing stack did not settle within %u ms\n",
                m_settler->Limit());
        return false;
    }
    return !m_options.kernel || StartKernel();
}

bool Application::StartKernel() {
    m_kernel = std::make_unique<KernelPlane>(
        [this](const std::string& line, std::string& error) {
            std::vector<std::string> words;
            if (!Words::Split(line, words, error)) {
                return false;
            }
            const CommandInterpreter::Result result = m_interpreter->Execute(words, "");
            error = result.error;
            return result.status != CommandInterpreter::Result::FAILED;
        },
        [this](const std::string& line) {
            m_console->Print("%s%s\n", m_console->AtLineStart() ? "" : "\n", line.c_str());
            m_console->Flush();
        });
    std::string error;
    if (!m_kernel->Start(error)) {
        fprintf(stderr, "zavrel-router: --kernel: %s\n", error.c_str());
        m_kernel.reset();
        return false;
    }
    m_interpreter->SetKernelPlane(m_kernel.get());
    if (!m_driver->IsVirtual()) {
        // Input is read a byte at a time so that waiting for it can be left
        // to the loop: kernel notifications are handled while the console
        // is idle.
        setvbuf(stdin, nullptr, _IONBF, 0);
        LineSource::SetInputWait([this](int fd) { WaitForInput(fd); });
    }
    if (!m_options.kernelAttach.empty() && !m_kernel->LoadBindings(m_options.kernelAttach, error)) {
        fprintf(stderr, "zavrel-router: --kernel-attach: %s\n", error.c_str());
        return false;
    }
    return m_settler->RunUntilQuiet([]() { return true; });
}

void Application::WaitForInput(int fd) {
    pollfd input{fd, POLLIN, 0};
    while (poll(&input, 1, 0) == 0) {
        m_driver->Step(m_driver->NowMs() + RealLoopDriver::MAX_WAIT_MS);
        m_console->Flush();
    }
}

void Application::DescribeCommands(CommandGrammar& grammar) {
    CommandInterpreter::DescribeCommands(grammar);
    LibraryGrammar::Describe(grammar);
}

std::vector<std::string> Application::ExistingValues(const std::string& placeholder) const {
    std::vector<std::string> values;
    if (placeholder == "<vlan>" || placeholder == "<vid>") {
        if (DcRouterMgr* manager = DcRouterMgr::GetInstance()) {
            for (const auto& entry : manager->GetVlans()) {
                values.push_back(std::to_string(entry.first));
            }
        }
    } else if (placeholder == "<name>") {
        values = m_interpreter->InterfaceNames();
    } else if (placeholder == "<ifname>") {
        // The kernel's interfaces, for 'interface attach'.
        if (struct if_nameindex* names = if_nameindex()) {
            for (struct if_nameindex* name = names; name->if_index != 0; ++name) {
                values.push_back(name->if_name);
            }
            if_freenameindex(names);
        }
    } else if (placeholder == "<command>") {
        // help <command>: every first word.
        CommandGrammar grammar;
        DescribeCommands(grammar);
        for (const GrammarChoice& choice : grammar.After({}).choices) {
            values.push_back(choice.word);
        }
    }
    return values;
}

std::string Application::Prompt() const {
    return "zavrel-router[vlan " + std::to_string(m_console->CurrentVlan()) + "]> ";
}

bool Application::Fail(const std::string& where, const std::string& message) {
    fflush(stdout);
    if (where.empty()) {
        fprintf(stderr, "zavrel-router: %s\n", message.c_str());
    } else {
        fprintf(stderr, "zavrel-router: %s: %s\n", where.c_str(), message.c_str());
    }
    fflush(stderr);
    if (m_options.strict) {
        m_exitStatus = EXIT_BAD_COMMAND;
        return false;
    }
    return true;
}

bool Application::RunSource(LineSource& source) {
    std::string line;
    while (!m_quit && source.Next(line)) {
        if (!RunLine(line, source)) {
            return false;
        }
    }
    return !m_quit;
}

bool Application::RunLine(const std::string& line, LineSource& source) {
    std::vector<std::string> words;
    std::string error;
    const bool split = Words::Split(line, words, error);
    if (split && words.empty()) {
        return true;
    }
    if (m_interpreter->IsEcho()) {
        // The prompt starts a line of its own, also after output that did
        // not end its last line.
        m_console->Print("%s%s%s\n", m_console->AtLineStart() ? "" : "\n", Prompt().c_str(),
                         line.c_str());
    }
    if (!split) {
        return Fail(source.Where(), error);
    }
    const CommandInterpreter::Result result = m_interpreter->Execute(words, source.BaseDir());
    bool keepGoing = true;
    if (result.status == CommandInterpreter::Result::FAILED) {
        keepGoing = Fail(source.Where(), result.error);
    }
    if (result.settle || result.endTarget != 0) {
        const unsigned long target = result.endTarget;
        StdoutConsole& console = *m_console;
        const bool settled = m_settler->RunUntilQuiet(
            [&console, target]() { return target == 0 || console.EndCount() >= target; });
        if (!settled) {
            keepGoing = Fail(source.Where(), "the system did not become quiet within " +
                                                 std::to_string(m_settler->Limit()) + " ms") &&
                        keepGoing;
        }
    }
    m_console->Flush();
    if (result.status == CommandInterpreter::Result::QUIT) {
        m_quit = true;
    }
    return keepGoing;
}

}  // namespace Zavrel
