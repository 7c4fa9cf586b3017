#include "console/DcConsoleCommand.h"

#include <strings.h>

#include <cstdio>
#include <cstring>

#include "config/AddressFormat.h"
#include "config/OptionParsers.h"
#include "platform/Ip6Addr.h"

namespace Zavrel {

const char* DclUnknownStr = "UNKN";

unsigned short DcConsoleCommand::m_default_vlan = 0;

const DcConsoleCommand::ConsoleCommandValueOption DcConsoleCommand::vlan_option(
    "vrf", false, &DcConsoleCommand::ParseVlan);

namespace {

const unsigned int RESPONSE_PASS_OVER = 12;

const unsigned int SECONDS_PER_WEEK = 604800;
const unsigned int SECONDS_PER_DAY = 86400;

// Error words of the stack's response codes, indexed by code.
const char* const ERROR_WORDS[] = {
    nullptr,                  // 0
    nullptr,                  // 1
    "Gen Error\n",            // 2
    "Wrong Value\n",          // 3
    "Inconsistent Value\n",   // 4
    "Resource Failure\n",     // 5
    "Family is not found\n",  // 6
    "End of table\n",         // 7
    "Agent Error\n",          // 8
    "Incomplete\n",           // 9
    "Partial Family ok\n",    // 10
};
const unsigned int ERROR_WORD_COUNT = sizeof(ERROR_WORDS) / sizeof(ERROR_WORDS[0]);

}  // namespace

// ---- options

bool DcConsoleCommand::ConsoleCommandOption::Matches(const char* word) const {
    if (word == nullptr || keyword == nullptr) {
        return false;
    }
    size_t length = strlen(word);
    return length <= strlen(keyword) && strncasecmp(word, keyword, length) == 0;
}

bool DcConsoleCommand::ConsoleCommandFlagOption::Parse(DcConsoleCommand& command, int& argc,
                                                       char**& argv) const {
    if (argc <= 0 || !Matches(argv[0])) {
        return true;
    }
    --argc;
    ++argv;
    if (action != nullptr) {
        action(command);
    }
    return true;
}

bool DcConsoleCommand::ConsoleCommandValueOption::Parse(DcConsoleCommand& command, int& argc,
                                                        char**& argv) const {
    if (argc <= 0 || !Matches(argv[0])) {
        return !required;
    }
    --argc;
    ++argv;
    if (action == nullptr) {
        return true;
    }
    if (argc <= 0) {
        return false;
    }
    if (!action(command, argv[0])) {
        return false;
    }
    --argc;
    ++argv;
    return true;
}

// ---- command

DcConsoleCommand::DcConsoleCommand(DcConsole* console, const char* usage, const char* description)
    : DcConsoleCommand(console, m_default_vlan, usage, description) {}

DcConsoleCommand::DcConsoleCommand(DcConsole* console, unsigned short vlan, const char* usage,
                                   const char* description)
    : m_console(console),
      m_header_printed(0),
      m_vlan(vlan),
      m_usage(usage),
      m_description(description) {}

DcConsoleCommand::~DcConsoleCommand() = default;

unsigned int DcConsoleCommand::Display(unsigned int, unsigned int, const void*) {
    return 0;
}

bool DcConsoleCommand::ParseOptions(const ConsoleCommandOption* const* options, unsigned int count,
                                    int& argc, char**& argv) {
    for (unsigned int i = 0; i < count; ++i) {
        if (options[i] != nullptr && !options[i]->Parse(*this, argc, argv)) {
            return false;
        }
    }
    return true;
}

void DcConsoleCommand::Print(const char* format, ...) const {
    if (m_console == nullptr) {
        return;
    }
    va_list args;
    va_start(args, format);
    m_console->VPrint(format, args);
    va_end(args);
}

int DcConsoleCommand::CommandEnd() {
    return m_console != nullptr ? m_console->EndOfCommand() : 0;
}

int DcConsoleCommand::TableEnd() {
    Print("End of Table\n");
    return CommandEnd();
}

int DcConsoleCommand::ParseError(unsigned int code) {
    if (code < ERROR_WORD_COUNT && ERROR_WORDS[code] != nullptr && m_console != nullptr) {
        m_console->ErrorPrint(ERROR_WORDS[code]);
    }
    return CommandEnd();
}

bool DcConsoleCommand::ParseVlan(const char* text) {
    unsigned int vlan = 0;
    if (!ParseNumber(&vlan, text)) {
        Print("Invalid VLAN ID %s\n", text != nullptr ? text : "");
        return false;
    }
    m_vlan = static_cast<unsigned short>(vlan);
    return true;
}

bool DcConsoleCommand::ParseVlan(DcConsoleCommand& command, const char* text) {
    return command.ParseVlan(text);
}

// ---- formatters

const char* DcConsoleCommand::DcIp4ToIp4Str(const unsigned char* fourBytes) {
    static char buffer[16];
    return Ip4AddrToStr(buffer, fourBytes);
}

const char* DcConsoleCommand::ToIp4PrefixStr(const unsigned char* fourBytes, unsigned int length) {
    static char buffer[32];
    snprintf(buffer, sizeof(buffer), "%u.%u.%u.%u/%u", static_cast<unsigned int>(fourBytes[0]),
             static_cast<unsigned int>(fourBytes[1]), static_cast<unsigned int>(fourBytes[2]),
             static_cast<unsigned int>(fourBytes[3]), length);
    return buffer;
}

namespace {

// Shared by ToIp6Str and ToIp6PrefixStr.
char ip6Buffer[48];

}  // namespace

const char* DcConsoleCommand::ToIp6Str(const unsigned char* sixteenBytes) {
    string text = Ip6Addr(sixteenBytes).ToString();
    snprintf(ip6Buffer, sizeof(ip6Buffer), "%s", text.c_str());
    return ip6Buffer;
}

const char* DcConsoleCommand::ToIp6PrefixStr(const unsigned char* sixteenBytes,
                                             unsigned int length) {
    static char buffer[64];
    snprintf(buffer, sizeof(buffer), "%s/%u", ToIp6Str(sixteenBytes), length);
    return buffer;
}

bool DcConsoleCommand::IsEqual(const Ip4Addr& address, const unsigned char* fourBytes) {
    Ip4Addr parsed;
    ParseAddress(parsed, DcIp4ToIp4Str(fourBytes));
    return memcmp(parsed.Bytes(), address.Bytes(), 4) == 0;
}

string DcConsoleCommand::DclTimerIntervalString(unsigned int seconds) {
    string text;
    unsigned int weeks = seconds / SECONDS_PER_WEEK;
    if (weeks != 0) {
        text.AppendFmt("%dw", static_cast<int>(weeks));
    }
    unsigned int days = (seconds / SECONDS_PER_DAY) % 7;
    if (days != 0) {
        text.AppendFmt("%dd", static_cast<int>(days));
    }
    if (!text.empty()) {
        return text;
    }
    text.Format("%02d:%02d:%02d", static_cast<int>((seconds / 3600) % 24),
                static_cast<int>((seconds / 60) % 60), static_cast<int>(seconds % 60));
    return text;
}

void DcConsoleCommand::HexDumpLine(const unsigned char*& cursor, unsigned int count,
                                   unsigned int width) const {
    HexDumpLine(cursor, count, width, cursor);
}

void DcConsoleCommand::HexDumpLine(const unsigned char*& cursor, unsigned int count,
                                   unsigned int width, const unsigned char* lowest) const {
    for (unsigned int i = 0; i < count; ++i) {
        Print("%02x ", static_cast<unsigned int>(*cursor));
        ++cursor;
    }
    for (unsigned int i = count; i < width; ++i) {
        Print("   ");
    }
    // The character column starts width bytes before the end of the line
    // (for a short line, that is before the line itself). Positions before
    // lowest are never read: they print nothing.
    const unsigned char* end = cursor;
    size_t readable = static_cast<size_t>(end - lowest);
    for (unsigned int i = 0; i < count; ++i) {
        size_t back = static_cast<size_t>(width) - i;
        if (back <= readable) {
            Print("%c", static_cast<int>(*(end - back)));
        }
    }
    size_t back = static_cast<size_t>(width) - count;
    cursor = back <= readable ? end - back : lowest;
    Print("\n");
}

void DcConsoleCommand::HexDump(const unsigned char* data, unsigned int length,
                               unsigned int width) const {
    // A zero length or width would make the line arithmetic meaningless.
    if (data == nullptr || length == 0 || width == 0) {
        return;
    }
    unsigned int lines = (length - 1) / width;
    const unsigned char* cursor = data;
    for (unsigned int line = 0; line < lines; ++line) {
        HexDumpLine(cursor, width, width, data);
    }
    HexDumpLine(cursor, length - lines * width, width, data);
}

// ---- walk

unsigned char DcConsoleCommand::ResponseHandler(void* context, unsigned long first,
                                                unsigned long code, void* row) {
    if (code == RESPONSE_PASS_OVER) {
        return 1;
    }
    DcConsoleCommand* command = static_cast<DcConsoleCommand*>(context);
    if (command == nullptr) {
        return 0;
    }
    unsigned int result =
        command->Display(static_cast<unsigned int>(first), static_cast<unsigned int>(code), row);
    if (result == 0) {
        delete command;
        return 0;
    }
    return static_cast<unsigned char>(result & 0xff);
}

// ---- words

bool DcConsoleCommand::DclAddrFromString(long family, DclIpAddress& address, const char* text) {
    return family == 1 ? address.Ip4AddrFromString(text) : address.Ip6AddrFromString(text);
}

const char* DcConsoleCommand::OperStatusStr(int status) {
    static const char* words[] = {nullptr, "Up", "Down", "Down", "Down", "Down"};
    static bool initialised = false;
    if (!initialised) {
        words[0] = DclUnknownStr;
        initialised = true;
    }
    if (status < 0 || status > 5) {
        return DclUnknownStr;
    }
    return words[status];
}

const char* DcConsoleCommand::AmbBoolYesNoStr(int value) {
    static const char* words[] = {nullptr, "Yes", "No"};
    static bool initialised = false;
    if (!initialised) {
        words[0] = DclUnknownStr;
        initialised = true;
    }
    if (value < 0 || value > 2) {
        return DclUnknownStr;
    }
    return words[value];
}

}  // namespace Zavrel
