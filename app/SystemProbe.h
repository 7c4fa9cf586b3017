// SystemProbe: the quiet test of the running system: the stack has nothing
// in hand, the serializer holds no action, and the configuration scheduler
// holds no item that its next tick would send (or drop).
#ifndef ZAVREL_APP_SYSTEMPROBE_H
#define ZAVREL_APP_SYSTEMPROBE_H

#include "app/QuietProbe.h"
#include "app/StackControl.h"

namespace Zavrel {

class SystemProbe : public QuietProbe {
public:
    explicit SystemProbe(StackControl& stack);
    State Check() override;
    std::string ProgressText() override;

    // True when the router manager's serializer holds no action.
    static bool SerializerEmpty();
    // BUSY when the configuration scheduler holds an item that its next
    // tick would send or drop; QUIET when it holds none; PROBABLY_QUIET when
    // it holds buckets this probe cannot find.
    static State SchedulerState();

private:
    StackControl& m_stack;
};

}  // namespace Zavrel

#endif
