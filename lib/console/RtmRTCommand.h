// RtmRTCommand: console listing of an RTM table of one VLAN (the route table
// or the RIB), IPv4 or IPv6, as one line per route or as a detailed block
// per route, filtered by destination and protocol. The stack walks the
// table and hands each row to Display.
#ifndef ZAVREL_CONSOLE_RTMRTCOMMAND_H
#define ZAVREL_CONSOLE_RTMRTCOMMAND_H

#include "console/DcConsoleCommand.h"
#include "platform/Ip4Addr.h"
#include "platform/Ip6Addr.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

template <typename T>
class RtmRTCommand : public DcConsoleCommand {
public:
    // family: 0 IPv4, 41 IPv6.
    RtmRTCommand(DcConsole* console, unsigned short family, const char* usage,
                 const char* description);
    ~RtmRTCommand() override;

    // One row of the walk: rows of other instances and rows the filters
    // reject are passed over; any code other than a row ends the command
    // with its error word.
    unsigned int Display(unsigned int first, unsigned int code, const void* row) override;
    virtual void PrintEntry(const T* row) const;

    // Option actions.
    static bool ParseDestination(DcConsoleCommand& command, const char* text);
    static bool ParseProtocol(DcConsoleCommand& command, const char* text);
    static bool SetDetail(DcConsoleCommand& command);

    // Word of a route protocol code (empty beyond the table) and of a route
    // type code (likewise).
    static const char* ProtoStr(unsigned long code);
    static const char* TypeStr(unsigned long code);

    // "vrf", "dest", "proto", "detail", in this order.
    static const ConsoleCommandOption* const m_opts[4];
    static const ConsoleCommandValueOption dest_option;
    static const ConsoleCommandValueOption proto_option;
    static const ConsoleCommandFlagOption detail_option;

    unsigned short GetFamily() const { return m_family; }
    long GetProtocol() const { return m_protocol; }
    bool GetDetail() const { return m_detail; }
    const Ip4Addr& GetIp4Destination() const { return m_ip4_destination; }
    const Ip6Addr& GetIp6Destination() const { return m_ip6_destination; }
    // The stack instance of the VLAN for the command's family.
    unsigned short Instance() const;

protected:
    // The part of Parse both tables share: VLAN, options, leftovers and the
    // RTM check. True when the walk may start.
    bool ParseWords(int argc, char** argv);
    bool IsIpv6() const { return m_family == Sms::AFI_IPV6; }
    void PrintHeader();
    void PrintTableRow(const T* row);
    // The texts both forms print.
    const char* PrefixText(const T* row) const;
    const char* NextHopText(const T* row) const;

    Ip4Addr m_ip4_destination;
    Ip6Addr m_ip6_destination;
    bool m_detail;
    unsigned short m_family;
    long m_protocol;
};

// "rtm route": the RTM route table.
class RtmRouteCommand : public RtmRTCommand<amb_cipr_rtm_route> {
public:
    static const char* const USAGE;
    static const char* const DESCRIPTION;

    RtmRouteCommand(DcConsole* console, unsigned short family);
    ~RtmRouteCommand() override;
    bool Parse(int argc, char** argv) override;
};

// "rtm rib": the RTM RIB; rows installed in the forwarding table are marked.
class RtmRibCommand : public RtmRTCommand<amb_cipr_rtm_rib> {
public:
    static const char* const USAGE;
    static const char* const DESCRIPTION;

    RtmRibCommand(DcConsole* console, unsigned short family);
    ~RtmRibCommand() override;
    bool Parse(int argc, char** argv) override;
    void PrintEntry(const amb_cipr_rtm_rib* row) const override;
};

extern template class RtmRTCommand<amb_cipr_rtm_route>;
extern template class RtmRTCommand<amb_cipr_rtm_rib>;

}  // namespace Zavrel

#endif
