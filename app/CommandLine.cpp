#include "app/CommandLine.h"

#include <cstdint>
#include <cstring>

#include "app/Words.h"

#ifndef ZAVREL_VERSION
#define ZAVREL_VERSION "0.0.0"
#endif

namespace Zavrel {

const char* CommandLine::Version() {
    return ZAVREL_VERSION;
}

void CommandLine::PrintUsage(FILE* out) {
    fputs(
        "Usage: zavrel-router [options]\n"
        "\n"
        "Hosts the zavrel routing library and its embedded routing stack and runs\n"
        "commands: first those of -c and --script, in the order given, then those\n"
        "read from standard input (interactively when it is a terminal).\n"
        "\n"
        "Options:\n"
        "  -c, --command 'CMD'    run one command\n"
        "  -s, --script FILE      run the commands of FILE, one a line ('#' starts a comment)\n"
        "      --vlan VID         default VLAN of the console (1)\n"
        "      --virtual-time     run every timer on a virtual clock: scripts run at once\n"
        "                         and give the same output every time\n"
        "      --trace LEVEL      print traces up to LEVEL on standard error (0: errors)\n"
        "      --strict           stop with exit status 1 at the first bad command\n"
        "      --echo             print each command, after the prompt, before running it\n"
        "      --no-stdin         do not read commands from standard input\n"
        "      --settle-limit MS  longest wait for the system to become quiet after a\n"
        "                         command (300000)\n"
        "      --kernel           forward for real: the stack's routes go into the kernel's\n"
        "                         tables (VLAN v: table v) and 'interface attach' binds\n"
        "                         kernel interfaces to VLANs (needs CAP_NET_ADMIN; see\n"
        "                         docs/kernel.md)\n"
        "      --kernel-attach FILE  as --kernel, binding the interfaces FILE names:\n"
        "                         {\"attach\": [{\"vlan\": 10, \"interface\": \"eth1\"}]}\n"
        "  -h, --help             print this help and exit\n"
        "  -V, --version          print the version and exit\n"
        "\n"
        "Type 'help' at the prompt for the commands.\n",
        out);
}

bool CommandLine::Parse(int argc, char** argv, std::string& error) {
    for (int i = 0; i < argc; ++i) {
        std::string arg = argv[i] != nullptr ? argv[i] : "";
        std::string value;
        bool hasInlineValue = false;
        if (arg.size() > 2 && arg.compare(0, 2, "--") == 0) {
            const size_t eq = arg.find('=');
            if (eq != std::string::npos) {
                value = arg.substr(eq + 1);
                arg = arg.substr(0, eq);
                hasInlineValue = true;
            }
        }
        auto takeValue = [&](std::string& out) -> bool {
            if (hasInlineValue) {
                out = value;
                return true;
            }
            if (i + 1 >= argc || argv[i + 1] == nullptr) {
                error = "option " + arg + " needs a value";
                return false;
            }
            out = argv[++i];
            return true;
        };
        auto noValue = [&]() -> bool {
            if (hasInlineValue) {
                error = "option " + arg + " takes no value";
                return false;
            }
            return true;
        };

        if (arg == "-c" || arg == "--command") {
            std::string text;
            if (!takeValue(text)) {
                return false;
            }
            sources.push_back(Source{Source::COMMAND, text});
        } else if (arg == "-s" || arg == "--script") {
            std::string path;
            if (!takeValue(path)) {
                return false;
            }
            if (path.empty()) {
                error = "option " + arg + " needs a file name";
                return false;
            }
            sources.push_back(Source{Source::SCRIPT, path});
        } else if (arg == "--vlan") {
            std::string text;
            if (!takeValue(text)) {
                return false;
            }
            if (!Words::ParseVlan(text, vlan)) {
                error = "bad VLAN '" + text + "' (1 to 4094)";
                return false;
            }
        } else if (arg == "--trace") {
            std::string text;
            if (!takeValue(text)) {
                return false;
            }
            uint64_t level = 0;
            if (!Words::ParseNumber(text, 1000, level)) {
                error = "bad trace level '" + text + "'";
                return false;
            }
            traceLevel = static_cast<int>(level);
        } else if (arg == "--settle-limit") {
            std::string text;
            if (!takeValue(text)) {
                return false;
            }
            uint64_t ms = 0;
            if (!Words::ParseNumber(text, 86400000, ms) || ms == 0) {
                error = "bad settle limit '" + text + "'";
                return false;
            }
            settleLimitMs = static_cast<unsigned int>(ms);
        } else if (arg == "--virtual-time") {
            if (!noValue()) {
                return false;
            }
            virtualTime = true;
        } else if (arg == "--kernel") {
            if (!noValue()) {
                return false;
            }
            kernel = true;
        } else if (arg == "--kernel-attach") {
            if (!takeValue(kernelAttach)) {
                return false;
            }
            if (kernelAttach.empty()) {
                error = "option " + arg + " needs a file name";
                return false;
            }
            kernel = true;
        } else if (arg == "--strict") {
            if (!noValue()) {
                return false;
            }
            strict = true;
        } else if (arg == "--echo") {
            if (!noValue()) {
                return false;
            }
            echo = true;
        } else if (arg == "--no-stdin") {
            if (!noValue()) {
                return false;
            }
            readStdin = false;
        } else if (arg == "-h" || arg == "--help") {
            if (!noValue()) {
                return false;
            }
            showHelp = true;
        } else if (arg == "-V" || arg == "--version") {
            if (!noValue()) {
                return false;
            }
            showVersion = true;
        } else {
            error = "unknown option '" + arg + "'";
            return false;
        }
    }
    return true;
}

}  // namespace Zavrel
