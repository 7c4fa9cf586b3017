// MulticastRoutingTableConsoleCommand: lists the multicast groups that the
// multicast router of a VLAN holds (IGMP for family 0, MLD for family 41),
// with the interface each was joined on and that interface's querier role.
// Words: "[vrf <vid>] [group <address>]"; the VLAN defaults to the console's.
// The table is printed at once; a command that started deletes itself when
// its table is printed.
#ifndef ZAVREL_PROTOCOLS_MULTICASTROUTINGTABLECONSOLECOMMAND_H
#define ZAVREL_PROTOCOLS_MULTICASTROUTINGTABLECONSOLECOMMAND_H

#include <array>

#include "console/DcConsoleCommand.h"

namespace Zavrel {

class MulticastRoutingTableConsoleCommand : public DcConsoleCommand {
public:
    MulticastRoutingTableConsoleCommand(DcConsole* console, unsigned short family);
    ~MulticastRoutingTableConsoleCommand() override;

    // Parses the words and prints the table. False (usage printed) when the
    // words are refused; true when the table was printed, in which case the
    // command has already deleted itself.
    bool Parse(int argc, char** argv) override;

    unsigned short GetFamily() const { return m_family; }

private:
    static bool ParseGroupOption(DcConsoleCommand& command, const char* text);
    void PrintTable();

    unsigned short m_family;
    bool m_has_group;
    std::array<unsigned char, 16> m_group;
};

}  // namespace Zavrel

#endif
