// The embedded stack's controls.
#include "app/CommandInterpreter.h"

namespace Zavrel {

CommandInterpreter::Result CommandInterpreter::Stack(const Args& args)
{
    if (args.Count() < 2) {
        return Result::Fail("stack: missing sub-command; " + UsageOf("stack"));
    }
    const std::string& verb = args[1];
    if (Words::Is(verb, "status")) {
        if (args.Count() > 2) {
            return Result::Fail("stack status: unexpected '" + args[2] + "'");
        }
        m_stack.PrintStatus(m_console);
        return Result::Local();
    }
    std::string error;
    if (Words::Is(verb, "delay")) {
        unsigned int runs = 0;
        if (!ReadUnsigned(args, 2, "runs", runs, error)) {
            return Result::Fail("stack delay: " + error);
        }
        if (args.Count() > 3) {
            return Result::Fail("stack delay: unexpected '" + args[3] + "'");
        }
        m_stack.Delay(runs);
        return Result::Local();
    }
    if (Words::Is(verb, "fail")) {
        const std::string prefix = "stack fail: ";
        unsigned int count = 0;
        if (!ReadUnsigned(args, 2, "count", count, error)) {
            return Result::Fail(prefix + error + "; " + UsageOf("stack"));
        }
        if (args.Count() < 4) {
            return Result::Fail(prefix + "missing route|redist|interface|address");
        }
        StackControl::RequestKind kind;
        const std::string& what = args[3];
        if (Words::Is(what, "route")) {
            kind = StackControl::ROUTE;
        } else if (Words::Is(what, "redist")) {
            kind = StackControl::REDIST;
        } else if (Words::Is(what, "interface")) {
            kind = StackControl::INTERFACE;
        } else if (Words::Is(what, "address")) {
            kind = StackControl::ADDRESS;
        } else {
            return Result::Fail(prefix + "bad request kind '" + what +
                                "' (route, redist, interface or address)");
        }
        if (args.Count() < 5 || !Words::Is(args[4], "result")) {
            return Result::Fail(prefix + "missing 'result <code>'");
        }
        unsigned int code = 0;
        if (!ReadUnsigned(args, 5, "code", code, error)) {
            return Result::Fail(prefix + error);
        }
        if (args.Count() > 6) {
            return Result::Fail(prefix + "unexpected '" + args[6] + "'");
        }
        m_stack.Fail(count, kind, code);
        return Result::Local();
    }
    return Result::Fail("stack: unknown sub-command '" + verb + "'; " + UsageOf("stack"));
}

}  // namespace Zavrel
