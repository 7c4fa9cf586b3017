// DcConsoleCommand: base of the console commands that walk a table of the
// routing stack row by row and print it. A command is created per
// invocation, parses its words with a fixed sequence of options, starts a
// walk with ResponseHandler as the callback and itself as the context, and
// deletes itself when the walk is over. Also holds the formatting helpers
// the commands share.
#ifndef ZAVREL_CONSOLE_DCCONSOLECOMMAND_H
#define ZAVREL_CONSOLE_DCCONSOLECOMMAND_H

#include "config/DclIpAddress.h"
#include "platform/Compiler.h"
#include "platform/DcConsole.h"
#include "platform/Ip4Addr.h"
#include "platform/String.h"

namespace Zavrel {

// The word printed for a value the tables do not know ("UNKN").
extern const char* DclUnknownStr;

class DcConsoleCommand {
public:
    // One keyword option of a command line. Parse consumes words from the
    // front of the vector and returns false only for a syntax error.
    class ConsoleCommandOption {
    public:
        explicit ConsoleCommandOption(const char* keyword_) : keyword(keyword_) {}
        virtual ~ConsoleCommandOption() = default;
        virtual bool Parse(DcConsoleCommand& command, int& argc, char**& argv) const = 0;

        // True when word is a case-insensitive prefix of the keyword (an
        // empty word matches; a word longer than the keyword never does).
        bool Matches(const char* word) const;

        const char* keyword;
    };

    // A keyword alone; the action (may be null) is called when it is given.
    class ConsoleCommandFlagOption : public ConsoleCommandOption {
    public:
        using Action = bool (*)(DcConsoleCommand& command);
        ConsoleCommandFlagOption(const char* keyword_, Action action_)
            : ConsoleCommandOption(keyword_), action(action_) {}
        bool Parse(DcConsoleCommand& command, int& argc, char**& argv) const override;

        Action action;
    };

    // A keyword followed by one value handed to the action (may be null).
    class ConsoleCommandValueOption : public ConsoleCommandOption {
    public:
        using Action = bool (*)(DcConsoleCommand& command, const char* value);
        ConsoleCommandValueOption(const char* keyword_, bool required_, Action action_)
            : ConsoleCommandOption(keyword_), required(required_), action(action_) {}
        bool Parse(DcConsoleCommand& command, int& argc, char**& argv) const override;

        bool required;
        Action action;
    };

    // "vrf <vid>": optional, sets the command's VLAN through ParseVlan.
    static const ConsoleCommandValueOption vlan_option;

    // VLAN of a command built without one; set by the router manager.
    static unsigned short m_default_vlan;

    DcConsoleCommand(DcConsole* console, const char* usage, const char* description);
    DcConsoleCommand(DcConsole* console, unsigned short vlan, const char* usage,
                     const char* description);
    virtual ~DcConsoleCommand();
    DcConsoleCommand(const DcConsoleCommand&) = delete;
    DcConsoleCommand& operator=(const DcConsoleCommand&) = delete;

    // Parses the words after the command's name and starts the walk. True
    // when the command now runs by itself; false when it did not start (the
    // creator then deletes it).
    virtual bool Parse(int argc, char** argv) = 0;
    // One response of the stack. 1 keeps the command for further responses;
    // 0 ends it (it is deleted); other values go back to the stack in their
    // low 8 bits while the command stays alive (256 stops a walk).
    virtual unsigned int Display(unsigned int first, unsigned int code, const void* row);

    void Print(const char* format, ...) const ZAVREL_PRINTF(2, 3);
    int CommandEnd();
    // "End of Table\n", then the end of the command.
    int TableEnd();
    // The error word of a stack response code (if it has one), then the end
    // of the command.
    int ParseError(unsigned int code);
    bool ParseVlan(const char* text);
    static bool ParseVlan(DcConsoleCommand& command, const char* text);

    // Formatters writing into static buffers of their own; a result stays
    // valid until the next call of the same function (ToIp6PrefixStr also
    // overwrites the buffer of ToIp6Str).
    static const char* DcIp4ToIp4Str(const unsigned char* fourBytes);
    static const char* ToIp4PrefixStr(const unsigned char* fourBytes, unsigned int length);
    static const char* ToIp6Str(const unsigned char* sixteenBytes);
    static const char* ToIp6PrefixStr(const unsigned char* sixteenBytes, unsigned int length);
    static bool IsEqual(const Ip4Addr& address, const unsigned char* fourBytes);
    // "2w3d" style for a day or more, else "hh:mm:ss".
    static string DclTimerIntervalString(unsigned int seconds);

    // One line of a hex dump: count bytes in hex, padding for the missing
    // columns, then a character column read from width bytes before the end
    // of the line. Positions before lowest (the start of the line when not
    // given) are not read and print nothing.
    void HexDumpLine(const unsigned char*& cursor, unsigned int count, unsigned int width) const;
    void HexDumpLine(const unsigned char*& cursor, unsigned int count, unsigned int width,
                     const unsigned char* lowest) const;
    void HexDump(const unsigned char* data, unsigned int length, unsigned int width) const;

    // The walk callback handed to the stack's get-next requests, with the
    // command as context.
    static unsigned char ResponseHandler(void* context, unsigned long first, unsigned long code,
                                         void* row);

    static bool DclAddrFromString(long family, DclIpAddress& address, const char* text);
    static const char* OperStatusStr(int status);
    static const char* AmbBoolYesNoStr(int value);

    DcConsole* GetConsole() const { return m_console; }
    unsigned short GetVlan() const { return m_vlan; }
    void SetVlan(unsigned short vlan) { m_vlan = vlan; }
    const char* GetUsage() const { return m_usage; }
    const char* GetDescription() const { return m_description; }

protected:
    // Offers the words to each option in order; false as soon as one fails.
    bool ParseOptions(const ConsoleCommandOption* const* options, unsigned int count, int& argc,
                      char**& argv);

    DcConsole* m_console;
    unsigned short m_header_printed;
    unsigned short m_vlan;
    const char* m_usage;
    const char* m_description;
};

}  // namespace Zavrel

#endif
