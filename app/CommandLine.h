// CommandLine: the options of zavrel-router.
#ifndef ZAVREL_APP_COMMANDLINE_H
#define ZAVREL_APP_COMMANDLINE_H

#include <cstdio>
#include <string>
#include <vector>

namespace Zavrel {

class CommandLine {
public:
    // One source of commands given on the command line, in order.
    struct Source {
        enum Kind { COMMAND, SCRIPT };
        Kind kind;
        std::string text;  // the command, or the script's path
    };

    // Parses the arguments (argv[0] excluded). False with an error text for
    // an unknown option, a missing or malformed value.
    bool Parse(int argc, char** argv, std::string& error);

    static void PrintUsage(FILE* out);
    static const char* Version();

    unsigned short vlan = 1;
    bool virtualTime = false;
    bool strict = false;
    bool echo = false;
    bool showHelp = false;
    bool showVersion = false;
    bool readStdin = true;
    // Routes into the kernel, interfaces from it (--kernel); the interface
    // bindings file of --kernel-attach (implies --kernel).
    bool kernel = false;
    std::string kernelAttach;
    int traceLevel = 0;
    unsigned int settleLimitMs = 0;  // 0: the default bound
    std::vector<Source> sources;
};

}  // namespace Zavrel

#endif
