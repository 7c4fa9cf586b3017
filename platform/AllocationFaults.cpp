// AllocationFaults: the armed kinds and their countdowns.
#include "platform/AllocationFaults.h"

#include <map>

namespace Zavrel {

namespace {

// Countdown per armed kind: the allocation that takes it to zero fails.
std::map<std::string, unsigned int>& Countdowns() {
    static std::map<std::string, unsigned int> countdowns;
    return countdowns;
}

}  // namespace

bool AllocationFaults::s_armed = false;

void AllocationFaults::FailNth(const std::string& kind, unsigned int n) {
    if (n == 0) {
        Countdowns().erase(kind);
    } else {
        Countdowns()[kind] = n;
    }
    s_armed = !Countdowns().empty();
}

void AllocationFaults::Clear() {
    Countdowns().clear();
    s_armed = false;
}

bool AllocationFaults::ShouldFail(const char* kind) {
    if (!s_armed || kind == nullptr) {
        return false;
    }
    auto it = Countdowns().find(kind);
    if (it == Countdowns().end() || --it->second != 0) {
        return false;
    }
    Countdowns().erase(it);
    s_armed = !Countdowns().empty();
    return true;
}

}  // namespace Zavrel
