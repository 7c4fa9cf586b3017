// AllocationFaults: makes chosen allocations fail, so that tests can show
// what the code does when memory runs out: it logs, abandons the operation
// and leaves nothing half-done. Allocations that can fail go through
// NewOrNull with the name of what they allocate; in normal runs nothing is
// armed and NewOrNull is a nothrow new.
#ifndef ZAVREL_PLATFORM_ALLOCATIONFAULTS_H
#define ZAVREL_PLATFORM_ALLOCATIONFAULTS_H

#include <new>
#include <string>
#include <utility>

namespace Zavrel {

class AllocationFaults {
public:
    // The n-th allocation of kind from now (n from 1) fails; n 0 disarms
    // the kind. Replaces what was armed for the kind.
    static void FailNth(const std::string& kind, unsigned int n);
    // Disarms every kind.
    static void Clear();
    // Counts one allocation of kind; true when it is to fail.
    static bool ShouldFail(const char* kind);

private:
    static bool s_armed;
};

// A new T(args...) that yields null instead of throwing when memory runs
// out or when the allocation is made to fail.
template <typename T, typename... Args>
T* NewOrNull(const char* kind, Args&&... args) {
    if (AllocationFaults::ShouldFail(kind)) {
        return nullptr;
    }
    return new (std::nothrow) T(std::forward<Args>(args)...);
}

}  // namespace Zavrel

#endif
