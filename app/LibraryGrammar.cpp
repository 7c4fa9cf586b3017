#include "app/LibraryGrammar.h"

#include "platform/ConsoleCommand.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

namespace {

std::string Trim(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) {
        return std::string();
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void LibraryGrammar::DescribeHandler(CommandGrammar& grammar, const std::string& table,
                                     const std::string& word, const std::string& help) {
    // The words after the table's word are the handler's own business.
    const std::string summary = Trim(help.substr(0, help.find('\n')));
    grammar.AddForm(table + " " + word + " ...", summary);
    grammar.AddWordHelp(table, word, summary);
}

void LibraryGrammar::Describe(CommandGrammar& grammar) {
    if (DcRouterMgr* manager = DcRouterMgr::GetInstance()) {
        for (const auto& entry : manager->GetIp4ConCmdHandlers()) {
            DescribeHandler(grammar, "ip", entry.first.c_str(), entry.second.GetHelp().c_str());
        }
        for (const auto& entry : manager->GetIp6ConCmdHandlers()) {
            DescribeHandler(grammar, "ip6", entry.first.c_str(), entry.second.GetHelp().c_str());
        }
    }
    for (const ConsoleCommand* command : ConsoleCommand::All()) {
        const std::string name = command->Name().c_str();
        grammar.AddForm(name + " ...", command->Help().c_str());
        grammar.AddWordHelp("", name, command->Help().c_str());
    }
}

}  // namespace Zavrel
