#include "platform/ConsoleCommand.h"

#include <cctype>
#include <map>
#include <memory>
#include <string>

namespace Zavrel {

namespace {

std::string Folded(const char* name) {
    std::string key(name);
    for (char& c : key) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return key;
}

// Commands by their lower-case name. Registrations last as long as the
// process: components register from constructors of objects that live
// that long.
std::map<std::string, std::unique_ptr<ConsoleCommand>>& Registry() {
    static auto* registry = new std::map<std::string, std::unique_ptr<ConsoleCommand>>();
    return *registry;
}

}  // namespace

ConsoleCommand::ConsoleCommand(ConsoleRole role, Handler handler, const void* owner,
                               const char* name, const char* help)
    : m_role(role), m_handler(std::move(handler)), m_owner(owner), m_name(name), m_help(help) {}

bool ConsoleCommand::RegisterHandler(ConsoleRole role, Handler handler, const void* owner,
                                     const char* name, const char* help) {
    if (name == nullptr || name[0] == '\0' || !handler) {
        return false;
    }
    Registry()[Folded(name)] =
        std::make_unique<ConsoleCommand>(role, std::move(handler), owner, name, help);
    return true;
}

void ConsoleCommand::Unregister(const char* name, const void* owner) {
    if (name == nullptr) {
        return;
    }
    auto& registry = Registry();
    auto it = registry.find(Folded(name));
    if (it != registry.end() && it->second->m_owner == owner) {
        registry.erase(it);
    }
}

const ConsoleCommand* ConsoleCommand::Find(const char* name) {
    if (name == nullptr) {
        return nullptr;
    }
    auto& registry = Registry();
    auto it = registry.find(Folded(name));
    return it != registry.end() ? it->second.get() : nullptr;
}

std::vector<const ConsoleCommand*> ConsoleCommand::All() {
    std::vector<const ConsoleCommand*> commands;
    for (const auto& entry : Registry()) {
        commands.push_back(entry.second.get());
    }
    return commands;
}

int ConsoleCommand::Run(ConsoleSession* session, int argc, char** argv) const {
    // A handler may replace its own registration while it runs: call a copy.
    Handler handler = m_handler;
    return handler(session, argc, argv);
}

}  // namespace Zavrel
