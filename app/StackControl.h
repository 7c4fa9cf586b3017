// StackControl: the application's handle on the embedded routing stack's
// control side: injected failures, delayed answers, counters, and whether
// the stack has work in hand.
#ifndef ZAVREL_APP_STACKCONTROL_H
#define ZAVREL_APP_STACKCONTROL_H

#include <string>

#include "platform/DcConsole.h"

namespace Zavrel {

class StackControl {
public:
    // The kinds of request a failure can be injected into.
    enum RequestKind { ROUTE, REDIST, INTERFACE, ADDRESS };

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
