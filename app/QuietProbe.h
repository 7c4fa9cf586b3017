// QuietProbe: tells the application whether the system has work in hand:
// requests in the stack, actions waiting in the serializer, configuration
// items waiting to be sent. The application runs its loop after each
// command until the probe reports quiet.
#ifndef ZAVREL_APP_QUIETPROBE_H
#define ZAVREL_APP_QUIETPROBE_H

#include <string>

namespace Zavrel {

class QuietProbe {
public:
    virtual ~QuietProbe();
    // True when nothing is in progress right now.
    virtual bool IsQuiet() = 0;
    // A short progress text for long pushes ("1200 requests answered, ...").
    virtual std::string ProgressText() = 0;
};

}  // namespace Zavrel

#endif
