// The grammar of the application's commands: their usage lines, as help and
// the error texts show them, and a one-line help for each of their words.
#include <algorithm>

#include "app/CommandInterpreter.h"

namespace Zavrel {

namespace {

struct WordHelp {
    const char* command;  // empty: the word in any command
    const char* word;
    const char* help;
};

const WordHelp WORD_HELP[] = {
    {"interface", "add", "announce an interface"},
    {"interface", "up", "set an interface up"},
    {"interface", "down", "set an interface down"},
    {"interface", "remove", "remove an interface"},
    {"interface", "primary", "make an interface the VLAN's primary one"},
    {"interface", "type", "the interface type"},
    {"interface", "flags", "the interface flags"},
    {"interface", "extra", "the interface's extra flags"},
    {"interface", "attach", "bind a kernel interface to a VLAN (--kernel)"},
    {"interface", "detach", "unbind a kernel interface"},
    {"address", "add", "add an interface address"},
    {"address", "del", "delete an interface address"},
    {"address", "change", "change an interface's IPv4 address"},
    {"route", "add", "add a static route"},
    {"route", "remove", "remove a static route"},
    {"route", "enable", "enable a static route"},
    {"route", "disable", "disable a static route"},
    {"route", "via", "the next hop follows"},
    {"route", "metric", "the route's metric"},
    {"route", "type", "the route type (0x30000: static)"},
    {"route", "admin", "the route's administrative state"},
    {"route", "up", "administratively up"},
    {"route", "down", "administratively down"},
    {"stack", "fail", "answer the next requests of a kind with a result code"},
    {"stack", "delay", "answer later requests that many scheduler runs late"},
    {"stack", "status", "the stack's counters and the event loop's descriptors"},
    {"stack", "tables", "every table the stack holds"},
    {"stack", "json", "as one JSON document"},
    {"stack", "learn", "hand an RTM instance a route learnt by a protocol"},
    {"stack", "withdraw", "withdraw a route learnt by a protocol"},
    {"stack", "route", "route requests"},
    {"stack", "redist", "redistribution requests"},
    {"stack", "interface", "interface requests"},
    {"stack", "address", "address requests"},
    {"stack", "result", "the result code follows"},
    {"stack", "rip", "RIP"},
    {"stack", "ospf", "OSPF, internal"},
    {"stack", "ospf-external", "OSPF, external"},
    {"stack", "ebgp", "external BGP"},
    {"stack", "ibgp", "internal BGP"},
    {"stack", "via", "the next hop follows"},
    {"stack", "metric", "the route's metric"},
    {"rtm", "route", "the RTM route table"},
    {"rtm", "rib", "the RTM RIB"},
    {"rtm6", "route", "the RTM route table"},
    {"rtm6", "rib", "the RTM RIB"},
    {"", "vrf", "only this VLAN"},
    {"", "dest", "only this destination"},
    {"", "proto", "only this protocol"},
    {"", "detail", "every field"},
    {"load", "source", "the name of the source of options"},
    {"", "type", "the option type (0: a VLAN's own; 1: a remote's)"},
    {"", "ifindex", "the interface index"},
    {"echo", "on", "print each command"},
    {"echo", "off", "do not print commands"},
    {"", "up", "oper status up"},
    {"", "down", "oper status down"},
    {"", "<vlan>", "a VLAN, 1 to 4094"},
    {"", "<vid>", "a VLAN, 1 to 4094"},
    {"", "<ifindex>", "an interface index"},
    {"", "<name>", "an interface name"},
    {"", "<ifname>", "a kernel interface name"},
    {"", "<n>", "a number, decimal or 0x-hex"},
    {"", "<count>", "how many requests"},
    {"", "<code>", "the result code"},
    {"", "<runs>", "scheduler runs"},
    {"", "<ms>", "milliseconds"},
    {"", "<file>", "a JSON options file"},
    {"", "<source>", "the name of a source of options"},
    {"", "<flag>", "0, 1, true or false"},
    {"", "<command>", "a command"},
    {"", "<address>", "an IPv4 or IPv6 address"},
    {"", "<address>/<length>", "an IPv4 or IPv6 address with its prefix length"},
    {"", "<prefix>/<length>", "an IPv4 or IPv6 destination with its prefix length"},
    {"", "<gateway>", "the next hop's address"},
    {"", "<protocol>", "rip, ospf, ospf-external, ebgp or ibgp"},
};

}  // namespace

void CommandInterpreter::DescribeCommands(CommandGrammar& grammar) {
    for (const WordHelp& entry : WORD_HELP) {
        grammar.AddWordHelp(entry.command, entry.word, entry.help);
    }
    for (const Command& command : Commands()) {
        grammar.AddWordHelp("", command.name, command.summary);
        std::string usage = command.usage;
        if (command.more != nullptr) {
            usage += std::string("\n") + command.more;
        }
        size_t start = 0;
        for (;;) {
            const size_t end = usage.find('\n', start);
            std::string form = usage.substr(start, end == std::string::npos ? end : end - start);
            // "ip <word> ...": the words are those of the library's tables,
            // which the library's own grammar names (LibraryGrammar).
            const std::string libraryWords = " <word> ...";
            if (form.size() > libraryWords.size() &&
                form.compare(form.size() - libraryWords.size(), libraryWords.size(),
                             libraryWords) == 0) {
                form.replace(form.size() - libraryWords.size(), libraryWords.size(), " ...");
            }
            grammar.AddForm(form, command.summary);
            if (end == std::string::npos) {
                break;
            }
            start = end + 1;
        }
    }
}

std::vector<std::string> CommandInterpreter::InterfaceNames() const {
    std::vector<std::string> names;
    for (const auto& entry : m_interfaceNames) {
        names.push_back(entry.second);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

}  // namespace Zavrel
