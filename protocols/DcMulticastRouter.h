// DcMulticastRouter: the multicast router of a VLAN for one family: IGMP for
// IPv4 (protocol 0, named "IGMP") and MLD for IPv6 (protocol 41, named
// "MLD"). It is ready once enabled and the VLAN's RTM instance of its family
// is ready. It holds the interfaces multicast runs on (added when a remote
// joins a network, each with its querier role) and the groups joined on
// them. It takes no redistribution.
#ifndef ZAVREL_PROTOCOLS_DCMULTICASTROUTER_H
#define ZAVREL_PROTOCOLS_DCMULTICASTROUTER_H

#include <array>
#include <map>
#include <set>
#include <utility>

#include "routing/DcMulticastRouterBase.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

class DcConsole;

class DcMulticastRouter : public DcMulticastRouterBase {
public:
    static constexpr int PROTOCOL_IGMP = Sms::AFI_IPV4;
    static constexpr int PROTOCOL_MLD = Sms::AFI_IPV6;

    // A group address (IPv4 in the first 4 bytes) and the interface it was
    // joined on.
    using Group = std::pair<std::array<unsigned char, 16>, unsigned int>;

    // protocol: 41 for MLD, anything else IGMP.
    DcMulticastRouter(unsigned short vid, int protocol);
    ~DcMulticastRouter() override;

    // Accepts the bundle without adding a list.
    bool CreateConfigList(DcConfigLists& lists) override;

    // Runs multicast on the interface, as querier or not; the interface
    // becomes one of the router's interfaces (up). An interface added again
    // takes the new role.
    bool AddInterface(unsigned int ifIndex, bool querier) override;
    // Sets the querier role of one of the router's interfaces, starting
    // multicast on it when it does not run there yet; false for an interface
    // the router does not know.
    bool ConfigureInterface(unsigned int ifIndex, bool querier) override;
    // Stops multicast on the interface with its groups; false when unknown.
    bool RemoveInterface(unsigned int ifIndex);
    bool IsMulticastInterface(unsigned int ifIndex) const;
    bool IsQuerier(unsigned int ifIndex) const;

    // Joins / leaves a group (address text of the router's family, in the
    // multicast range) on a multicast interface; false for a bad address or
    // an interface that is not a multicast one.
    bool AddGroup(unsigned int ifIndex, const char* group);
    bool RemoveGroup(unsigned int ifIndex, const char* group);

    int GetProtocol() const { return m_protocol; }
    const std::map<unsigned int, bool>& GetMulticastInterfaces() const { return m_querier; }
    const std::set<Group>& GetGroups() const { return m_groups; }

    // Parses group address text of the given protocol into a group address;
    // false when it is not a multicast address of that family.
    static bool ParseGroup(int protocol, const char* text, std::array<unsigned char, 16>* out);
    static string FormatGroup(int protocol, const std::array<unsigned char, 16>& address);

    // Console handlers: the IPv4 "igmp" command forwards with protocol 0.
    static void Ip4ConsoleCommand(void* context, DcConsole* console, int argc, char** argv);
    static void ConsoleCommand(void* context, DcConsole* console, int argc, char** argv,
                               int protocol);

private:
    int m_protocol;
    std::map<unsigned int, bool> m_querier;
    std::set<Group> m_groups;
};

}  // namespace Zavrel

#endif
