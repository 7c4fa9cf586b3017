// libFuzzer harness for console words: each line of the input is one
// command, split into words at spaces and tabs, on a system with VLANs,
// interfaces, addresses and static routes in place. The first word picks
// what runs:
//   ip4 <word> ...       the IPv4 routing command table's handler for word
//   ip6 <word> ...       the IPv6 table's
//   rtm|rtm6 route|rib ...      the RTM route or RIB walk
//   interfaces|interfaces6 ...  the stack's interface walk
//   serializer | sched   the serializer's and the scheduler's listings
// Other lines are skipped. Besides the sanitizers' findings it stops when a
// command ends more than once, or a walk that started does not end exactly
// once with its end of table or an error, or the stack saw a breach.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "cfg/CfgSched.h"
#include "common/FuzzCheck.h"
#include "emulator/Emulator.h"
#include "harness/RouterSystem.h"
#include "harness/SystemDriver.h"
#include "mib/Serializer.h"
#include "platform/CapturingConsole.h"

namespace {

using Zavrel::fuzz::Check;

// Words as the argument vector a console hands a command: argc words and a
// null after them.
class Argv {
public:
    Argv(const std::vector<std::string>& words, size_t from)
        : m_words(words.begin() + from, words.end()) {
        for (std::string& word : m_words) {
            m_argv.push_back(&word[0]);
        }
        m_argv.push_back(nullptr);
    }
    int Argc() const { return static_cast<int>(m_words.size()); }
    char** Get() { return m_argv.data(); }

private:
    std::vector<std::string> m_words;
    std::vector<char*> m_argv;
};

std::vector<std::string> Split(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    for (char c : line) {
        if (c == ' ' || c == '\t' || c == '\r') {
            if (!word.empty()) {
                words.push_back(word);
                word.clear();
            }
        } else {
            word += c;
        }
    }
    if (!word.empty()) {
        words.push_back(word);
    }
    return words;
}

// VLANs 10, 11, 20 and 21 with their routers, an interface with addresses on
// three of them, and static routes, some installed and some not.
void Populate(Zavrel::RouterSystem& system) {
    std::string error;
    system.Reload(Zavrel::SystemDriver::Document(0, 5), Zavrel::SystemDriver::SOURCES[0], error);
    system.Reload(Zavrel::SystemDriver::Document(1, 1), Zavrel::SystemDriver::SOURCES[1], error);
    Zavrel::SeededChoices choices(7);
    Zavrel::SystemDriver::Settings settings;
    settings.stackFaults = false;
    Zavrel::SystemDriver driver(system, choices, settings);
    for (int i = 0; i < 12; ++i) {
        driver.Do(Zavrel::SystemDriver::INTERFACE);
        driver.Do(Zavrel::SystemDriver::ADDRESS);
        driver.Do(Zavrel::SystemDriver::ADD_ROUTE);
    }
    system.Run(3000);
}

// A walk that started: one end, after its end of table or an error.
void CheckWalk(const Zavrel::CapturingConsole& console, const std::string& line) {
    const std::string problem = Zavrel::SystemDriver::WalkProblem(console, line);
    Check(problem.empty(), problem);
}

void RunLine(Zavrel::RouterSystem& system, const std::string& line) {
    const std::vector<std::string> words = Split(line);
    if (words.empty()) {
        return;
    }
    Zavrel::DcRouterMgr& manager = system.Manager();
    Zavrel::CapturingConsole console(10);
    const std::string& first = words[0];
    if (first == "ip4" || first == "ip6") {
        if (words.size() < 2) {
            return;
        }
        const auto& handlers =
            first == "ip4" ? manager.GetIp4ConCmdHandlers() : manager.GetIp6ConCmdHandlers();
        auto found = handlers.find(Zavrel::string(words[1].c_str()));
        if (found == handlers.end()) {
            return;
        }
        Argv argv(words, 1);
        found->second.Run(nullptr, &console, argv.Argc(), argv.Get());
        system.Run(3000);
        Check(console.EndCount() <= 1,
              "'" + line + "' ended " + std::to_string(console.EndCount()) + " times");
    } else if (first == "rtm" || first == "rtm6" || first == "interfaces" ||
               first == "interfaces6") {
        // "rtm route ..." names its table with two words, "interfaces ..."
        // with one.
        const size_t tableWords = first[0] == 'r' ? 2 : 1;
        if (words.size() < tableWords) {
            return;
        }
        const std::string table = tableWords == 2 ? first + " " + words[1] : first;
        if (!Zavrel::SystemDriver::StartWalk(
                console, table,
                std::vector<std::string>(words.begin() + tableWords, words.end()))) {
            Check(console.EndCount() <= 1, "'" + line + "' not started, ended twice");
            return;
        }
        system.Run(3000);
        CheckWalk(console, line);
    } else if (first == "serializer") {
        Check(!manager.GetSerializer().GetPendingActionsAsString().empty(),
              "empty serializer listing");
    } else if (first == "sched") {
        manager.GetCfgSched().Print(&console);
        manager.GetCfgSched().PrintSummary(&console);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Zavrel::RouterSystem system;
    Check(system.IsStarted(), "the system did not start");
    system.Run(500);
    Populate(system);
    const std::string text(reinterpret_cast<const char*>(data), size);
    size_t start = 0;
    int lines = 0;
    while (start <= text.size() && lines < 64) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        RunLine(system, text.substr(start, end - start));
        start = end + 1;
        ++lines;
    }
    Check(Zavrel::Emulator::BreachCount() == 0, "contract breach");
    return 0;
}
