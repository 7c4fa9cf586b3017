#include "app/CommandInterpreter.h"

#include <cstdio>

#include "app/ArgVector.h"
#include "platform/ConsoleCommand.h"
#include "platform/ConsoleSession.h"

namespace Zavrel {

CommandInterpreter::CommandInterpreter(StdoutConsole& console, LoopDriver& driver,
                                       StackControl& stack, const LoopSocketInterface& sockets)
    : m_console(console), m_driver(driver), m_stack(stack), m_sockets(sockets) {}

const std::vector<CommandInterpreter::Command>& CommandInterpreter::Commands() {
    static const std::vector<Command> commands = {
        {"load", &CommandInterpreter::Load, "load <file> [source <name>] [type <n>]",
         "load the options of a JSON file (source: the file's name; type 0)"},
        {"unload", &CommandInterpreter::Unload, "unload <source> [type <n>]",
         "remove everything a source of options configured"},
        {"interface", &CommandInterpreter::Interface,
         "interface add <vlan> <ifindex> <name> [type <n>] [flags <n>] [extra <n>] [up|down]\n"
         "interface up|down|remove <vlan> <ifindex> <name>\n"
         "interface primary <vlan> <name>\n"
         "interface attach|detach <vlan> <ifname>",
         "announce, change and remove interfaces; bind kernel interfaces (--kernel)"},
        {"address", &CommandInterpreter::Address,
         "address add|del|change <vlan> <ifindex> <address>/<length>",
         "add, delete or change an IPv4 or IPv6 interface address"},
        {"route", &CommandInterpreter::Route,
         "route add <vlan> <prefix>/<length> via <gateway> [ifindex <n>] [metric <n>] [type <n>] "
         "[admin up|down]\n"
         "route remove|enable|disable <vlan> <prefix>/<length> via <gateway> [ifindex <n>]",
         "add, remove, enable or disable a static route"},
        {"join", &CommandInterpreter::Join, "join <vlan> <ifindex> [<flag>]",
         "the remote joins a network (multicast)"},
        {"leave", &CommandInterpreter::Leave, "leave <vlan> <ifindex>",
         "the remote leaves a network"},
        {"vlan", &CommandInterpreter::Vlan, "vlan [<vid>]",
         "show or set the console's current VLAN"},
        {"run", &CommandInterpreter::Run, "run [<ms>]",
         "let the loop run for ms milliseconds, or until the system is quiet"},
        {"stack", &CommandInterpreter::Stack,
         "stack fail <count> route|redist|interface|address result <code>\n"
         "stack delay <runs>\n"
         "stack status\n"
         "stack tables\n"
         "stack learn <vlan> rip|ospf|ospf-external|ebgp|ibgp <prefix>/<length> via <gateway> "
         "[ifindex <n>] [metric <n>]\n"
         "stack withdraw <vlan> <protocol> <prefix>/<length> via <gateway> [ifindex <n>]",
         "inject failures into the routing stack, delay its answers, show its counters and "
         "tables, hand it routes learnt by a routing protocol",
         "stack status json\n"
         "stack tables json"},
        {"ip", &CommandInterpreter::Ip4, "ip <word> ...",
         "IPv4 routing commands (ip alone lists the words)"},
        {"ip6", &CommandInterpreter::Ip6, "ip6 <word> ...",
         "IPv6 routing commands (ip6 alone lists the words)"},
        {"rtm", &CommandInterpreter::Rtm4,
         "rtm route|rib [vrf <vid>] [dest <address>] [proto <protocol>] [detail]",
         "list the IPv4 RTM route table or RIB"},
        {"rtm6", &CommandInterpreter::Rtm6,
         "rtm6 route|rib [vrf <vid>] [dest <address>] [proto <protocol>] [detail]",
         "list the IPv6 RTM route table or RIB"},
        {"interfaces", &CommandInterpreter::Interfaces4, "interfaces [<vid>]",
         "list the stack's IPv4 interfaces of a VLAN"},
        {"interfaces6", &CommandInterpreter::Interfaces6, "interfaces6 [<vid>]",
         "list the stack's IPv6 interfaces of a VLAN"},
        {"echo", &CommandInterpreter::Echo, "echo on|off",
         "print each following command after the prompt before running it (as --echo)"},
        {"help", &CommandInterpreter::Help, "help [<command>]", "list the commands, or show one"},
        {"quit", &CommandInterpreter::Quit, "quit", "leave the application"},
    };
    return commands;
}

const CommandInterpreter::Command* CommandInterpreter::FindCommand(const std::string& name) {
    for (const Command& command : Commands()) {
        if (Words::Is(name, command.name)) {
            return &command;
        }
    }
    if (Words::Is(name, "exit")) {
        return FindCommand("quit");
    }
    return nullptr;
}

namespace {

// The lines of a multi-line usage text.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find('\n', start);
        lines.push_back(text.substr(start, end - start));
        if (end == std::string::npos) {
            return lines;
        }
        start = end + 1;
    }
}

// The alternatives of the second word of a usage line ("add|del" gives
// both), empty when the line has no second word.
std::vector<std::string> Verbs(const std::string& line) {
    std::vector<std::string> verbs;
    const size_t first = line.find(' ');
    if (first == std::string::npos) {
        return verbs;
    }
    const size_t second = line.find(' ', first + 1);
    const std::string word = line.substr(
        first + 1, second == std::string::npos ? std::string::npos : second - first - 1);
    if (word.empty() || word[0] == '<' || word[0] == '[') {
        return verbs;
    }
    size_t start = 0;
    for (;;) {
        const size_t bar = word.find('|', start);
        verbs.push_back(word.substr(start, bar - start));
        if (bar == std::string::npos) {
            return verbs;
        }
        start = bar + 1;
    }
}

}  // namespace

std::string CommandInterpreter::UsageOf(const char* name, const std::string& verb) {
    const Command* command = FindCommand(name);
    if (command == nullptr) {
        return std::string();
    }
    std::string usage;
    std::string all;
    for (const std::string& line : Lines(command->usage)) {
        all += all.empty() ? line : " | " + line;
        for (const std::string& candidate : Verbs(line)) {
            if (!verb.empty() && Words::Is(verb, candidate.c_str())) {
                usage += usage.empty() ? line : " | " + line;
                break;
            }
        }
    }
    return "usage: " + (usage.empty() ? all : usage);
}

std::string CommandInterpreter::SubCommandsOf(const char* name) {
    const Command* command = FindCommand(name);
    std::string list;
    if (command == nullptr) {
        return list;
    }
    for (const std::string& line : Lines(command->usage)) {
        for (const std::string& verb : Verbs(line)) {
            list += list.empty() ? verb : ", " + verb;
        }
    }
    return "(" + list + "; see 'help " + name + "')";
}

CommandInterpreter::Result CommandInterpreter::Execute(const std::vector<std::string>& words,
                                                       const std::string& baseDir) {
    if (words.empty()) {
        return Result::Local();
    }
    Args args{words, baseDir};
    if (const Command* command = FindCommand(words[0])) {
        return (this->*(command->handler))(args);
    }
    if (ConsoleCommand::Find(words[0].c_str()) != nullptr) {
        return Registered(args);
    }
    return Result::Fail("unknown command '" + words[0] + "' (try 'help')");
}

bool CommandInterpreter::ReadVlan(const Args& args, size_t index, unsigned short& vlan,
                                  std::string& error) {
    if (index >= args.Count()) {
        error = "missing <vlan>";
        return false;
    }
    if (!Words::ParseVlan(args[index], vlan)) {
        error = "bad VLAN '" + args[index] + "' (1 to 4094)";
        return false;
    }
    return true;
}

bool CommandInterpreter::ReadUnsigned(const Args& args, size_t index, const char* what,
                                      unsigned int& value, std::string& error) {
    if (index >= args.Count()) {
        error = std::string("missing <") + what + ">";
        return false;
    }
    if (!Words::ParseUnsigned(args[index], value)) {
        error = std::string("bad ") + what + " '" + args[index] + "'";
        return false;
    }
    return true;
}

CommandInterpreter::Result CommandInterpreter::WaitForEnd() {
    Result result;
    result.endTarget = m_console.EndCount() + 1;
    return result;
}

CommandInterpreter::Result CommandInterpreter::Help(const Args& args) {
    if (args.Count() > 2) {
        return Result::Fail("help: too many words; " + UsageOf("help"));
    }
    if (args.Count() == 2) {
        if (const Command* command = FindCommand(args[1])) {
            m_console.Print("%s\n", command->usage);
            m_console.Print("    %s\n", command->summary);
            return Result::Local();
        }
        if (const ConsoleCommand* registered = ConsoleCommand::Find(args[1].c_str())) {
            m_console.Print("%s ...\n    %s\n", registered->Name().c_str(),
                            registered->Help().c_str());
            return Result::Local();
        }
        return Result::Fail("help: unknown command '" + args[1] + "'");
    }
    m_console.Print("Commands (keywords in any case; numbers decimal or 0x-hex):\n");
    for (const Command& command : Commands()) {
        std::string usage = command.usage;
        size_t start = 0;
        for (;;) {
            const size_t end = usage.find('\n', start);
            m_console.Print("  %s\n", usage.substr(start, end - start).c_str());
            if (end == std::string::npos) {
                break;
            }
            start = end + 1;
        }
    }
    const std::vector<const ConsoleCommand*> registered = ConsoleCommand::All();
    if (!registered.empty()) {
        m_console.Print("Registered console commands:\n");
        for (const ConsoleCommand* command : registered) {
            m_console.Print("  %-16s %s\n", command->Name().c_str(), command->Help().c_str());
        }
    }
    return Result::Local();
}

CommandInterpreter::Result CommandInterpreter::Vlan(const Args& args) {
    if (args.Count() == 1) {
        m_console.Print("Current VLAN: %u\n", m_console.CurrentVlan());
        return Result::Local();
    }
    if (args.Count() > 2) {
        return Result::Fail("vlan: too many words; " + UsageOf("vlan"));
    }
    unsigned short vlan = 0;
    std::string error;
    if (!ReadVlan(args, 1, vlan, error)) {
        return Result::Fail("vlan: " + error);
    }
    m_console.SetVlan(vlan);
    return Result::Local();
}

CommandInterpreter::Result CommandInterpreter::Run(const Args& args) {
    if (args.Count() > 2) {
        return Result::Fail("run: too many words; " + UsageOf("run"));
    }
    if (args.Count() == 1) {
        return Result::Ok();
    }
    uint64_t ms = 0;
    if (!Words::ParseNumber(args[1], 86400000, ms)) {
        return Result::Fail("run: bad time '" + args[1] + "' (milliseconds)");
    }
    m_driver.RunFor(ms);
    return Result::Local();
}

CommandInterpreter::Result CommandInterpreter::Quit(const Args& args) {
    if (args.Count() > 1) {
        return Result::Fail("quit: too many words");
    }
    Result result = Result::Local();
    result.status = Result::QUIT;
    return result;
}

CommandInterpreter::Result CommandInterpreter::Echo(const Args& args) {
    if (args.Count() != 2 || !(Words::Is(args[1], "on") || Words::Is(args[1], "off"))) {
        return Result::Fail("echo: " + UsageOf("echo"));
    }
    m_echo = Words::Is(args[1], "on");
    return Result::Local();
}

CommandInterpreter::Result CommandInterpreter::Registered(const Args& args) {
    const ConsoleCommand* command = ConsoleCommand::Find(args[0].c_str());
    if (command == nullptr) {
        return Result::Fail("unknown command '" + args[0] + "' (try 'help')");
    }
    ConsoleSession session(m_console);
    ArgVector argv(args.words, 0);
    command->Run(&session, argv.Argc(), argv.Argv());
    return Result::Ok();
}

}  // namespace Zavrel
