// StackControl: the application's handle on the embedded routing stack's
// control side: injected failures, delayed answers, counters, and whether
// the stack has work in hand.
#ifndef ZAVREL_APP_STACKCONTROL_H
#define ZAVREL_APP_STACKCONTROL_H

#include <cstddef>
#include <string>

#include "platform/DcConsole.h"

namespace Zavrel {

class StackControl {
public:
    // The kinds of request a failure can be injected into.
    enum RequestKind { ROUTE, REDIST, INTERFACE, ADDRESS };
    // Routing protocols whose routes can be handed to an RTM instance.
    enum Protocol { RIP, OSPF, OSPF_EXTERNAL, EBGP, IBGP };

    StackControl();
    ~StackControl();
    StackControl(const StackControl&) = delete;
    StackControl& operator=(const StackControl&) = delete;

    // The next count requests of the kind are answered with the result code.
    void Fail(unsigned int count, RequestKind kind, unsigned int code);
    // The answers of later requests come runs scheduler runs late.
    void Delay(unsigned int runs);
    // Prints the stack's counters and contract breaches.
    void PrintStatus(DcConsole& console);
    // Prints every table the stack holds.
    void PrintTables(DcConsole& console);
    // The same as one JSON document each, with a "version" member (shape:
    // docs/app.md). The status also tells the event loop's stack
    // descriptors and ready callbacks.
    static constexpr int JSON_VERSION = 1;
    std::string StatusJson(size_t descriptors, unsigned long callbacks);
    std::string TablesJson();
    // Hands the RTM instance of the VLAN (IPv6 when ipv6) a route learnt by
    // a routing protocol, or withdraws it; the stack takes it on its next
    // run, woken through its descriptor. False when the stack refuses the
    // route's values.
    bool Learn(unsigned short vlan, bool ipv6, Protocol protocol, const std::string& destination,
               unsigned int prefixLength, const std::string& nextHop, unsigned int ifIndex,
               unsigned int metric);
    bool Withdraw(unsigned short vlan, bool ipv6, Protocol protocol, const std::string& destination,
                  unsigned int prefixLength, const std::string& nextHop, unsigned int ifIndex);
    // True when the stack has nothing in hand: no request unanswered, no
    // table walk in progress, no delayed answer.
    bool IsIdle();
    // Number of contract breaches the stack has seen (0 when all is well).
    unsigned long Breaches();
    // Short counters for a progress line.
    std::string ProgressText();
};

}  // namespace Zavrel

#endif
