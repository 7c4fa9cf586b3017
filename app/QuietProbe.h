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
    enum State {
        BUSY,            // work is in progress or due
        QUIET,           // nothing is in progress or due
        PROBABLY_QUIET,  // nothing in progress; whether something is due is not known
    };

    virtual ~QuietProbe();
    virtual State Check() = 0;
    // A short progress text for long pushes ("1200 requests answered, ...").
    virtual std::string ProgressText() = 0;
};

}  // namespace Zavrel

#endif
