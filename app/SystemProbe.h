// SystemProbe: the quiet test of the running system: the stack has nothing
// in hand and the serializer holds no action.
#ifndef ZAVREL_APP_SYSTEMPROBE_H
#define ZAVREL_APP_SYSTEMPROBE_H

#include "app/QuietProbe.h"
#include "app/StackControl.h"

namespace Zavrel {

class SystemProbe : public QuietProbe {
public:
    explicit SystemProbe(StackControl& stack);
    bool IsQuiet() override;
    std::string ProgressText() override;

    // True when the router manager's serializer holds no action.
    static bool SerializerEmpty();

private:
    StackControl& m_stack;
};

}  // namespace Zavrel

#endif
