// Scheduling and socket entry points of the stack: early runs of its
// scheduler and the watching of its descriptors by the event loop.
#include "stack/StackCallbacks.h"

#include "routing/DcRouterMgr.h"
#include "stack/DcScheduler.h"

namespace {

// Event kinds handed to the application's socket registry.
const int KIND_NONE = 0;
const int KIND_READ = 1;
const int KIND_WRITE = 2;
const int KIND_EXCEPT = 3;

}  // namespace

extern "C" {

ZAVREL_STACK_EXPORT void cRescheduleNBase(void) {
    Zavrel::DcRouterMgr* mgr = Zavrel::DcRouterMgr::GetInstance();
    if (mgr == nullptr) {
        return;
    }
    mgr->GetScheduler().RescheduleNBase();
}

ZAVREL_STACK_EXPORT int cIsNBaseRescheduled(void) {
    Zavrel::DcRouterMgr* mgr = Zavrel::DcRouterMgr::GetInstance();
    if (mgr == nullptr) {
        return 0;
    }
    return mgr->GetScheduler().IsRescheduled() ? 1 : 0;
}

ZAVREL_STACK_EXPORT void cRegisterWorkWithEventloop(int fd, int arg, unsigned int mask) {
    // Registering knows only read and write interest.
    int kind = KIND_NONE;
    if (mask & SMS_SOCK_READ) {
        kind = KIND_READ;
    } else if (mask & SMS_SOCK_WRITE) {
        kind = KIND_WRITE;
    }
    Zavrel::DcRouterMgr::SetFiledescriptors(fd, arg, kind);
}

ZAVREL_STACK_EXPORT void cUnregisterWorkWithEventloop(int fd, int arg) {
    Zavrel::DcRouterMgr::RemoveFiledescriptors(fd, arg);
}

ZAVREL_STACK_EXPORT void cChangeMask(int fd, unsigned int mask) {
    // Re-masking also knows the exception interest. Masks that combine
    // bits are decided by their lowest of the three bits.
    int kind = KIND_NONE;
    if (mask & SMS_SOCK_READ) {
        kind = KIND_READ;
    } else if (mask & SMS_SOCK_WRITE) {
        kind = KIND_WRITE;
    } else if (mask & SMS_SOCK_EXCEPT) {
        kind = KIND_EXCEPT;
    }
    Zavrel::DcRouterMgr::ChangeMask(fd, kind);
}

}  // extern "C"
