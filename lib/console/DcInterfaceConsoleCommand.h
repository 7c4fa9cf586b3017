// DcInterfaceConsoleCommand: lists the interfaces the stack holds for one
// VLAN and address family, with their state, MTU, flags and addresses. It
// walks the I3 interface table, then the I3 address table, collects both
// and prints one table when the second walk ends. The application creates
// one per invocation; it deletes itself when it is done.
#ifndef ZAVREL_CONSOLE_DCINTERFACECONSOLECOMMAND_H
#define ZAVREL_CONSOLE_DCINTERFACECONSOLECOMMAND_H

#include <list>
#include <map>
#include <utility>

#include "console/DcConsoleCommand.h"
#include "platform/String.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

class DcInterfaceConsoleCommand : public DcConsoleCommand {
public:
    // A handler's result: the next row, the end of the command (it is
    // deleted), or the end of a walk with the command kept alive (low byte
    // 0 for the stack, the whole value not 0).
    static const unsigned int NEXT_ROW = 1;
    static const unsigned int DONE = 0;
    static const unsigned int END_OF_WALK = 256;

    DcInterfaceConsoleCommand(DcConsole* console, bool ipv6);
    DcInterfaceConsoleCommand(DcConsole* console, unsigned short vlan, bool ipv6);
    ~DcInterfaceConsoleCommand() override;

    // The words are ignored; starts the walk of the interface table.
    bool Parse(int argc, char** argv) override;
    unsigned int Display(unsigned int first, unsigned int code, const void* row) override;

    unsigned int HandleEiEntry(unsigned int first, unsigned int code, const void* row);
    unsigned int HandleEaEntry(unsigned int first, unsigned int code, const void* row);
    // Goes on with the walk of the address table.
    void SwitchToEaEntries();

    static string GetIfFlagHelpStr();
    // The letters of the flags set in the row, in bit order (T L P B M U).
    static string GetIfFlagsStr(const amb_stubs_i3_ei* row);

    bool IsIpv6() const { return m_ipv6; }
    unsigned int GetInstance() const { return m_instance; }

private:
    using Handler = unsigned int (DcInterfaceConsoleCommand::*)(unsigned int, unsigned int,
                                                                const void*);
    using PrefixFormatter = const char* (*)(const unsigned char*, unsigned int);
    using Addresses = std::list<amb_stubs_i3_ea>;
    using Interfaces = std::map<unsigned int, std::pair<amb_stubs_i3_ei, Addresses>>;

    void PrintTable();

    bool m_ipv6;
    unsigned int m_instance;
    PrefixFormatter m_prefix_formatter;
    Handler m_handler;
    Interfaces m_interfaces;
};

}  // namespace Zavrel

#endif
