// The entry points the routing stack calls back into the library.
//
// They are declared, with C linkage and unmangled names, by the stack's C API
// (stackapi/stackapi.h) and defined and exported by lib/stack/. The stack
// calls them on the application's event thread, from inside its own
// scheduler run:
//  - scheduling and sockets: cRescheduleNBase, cIsNBaseRescheduled,
//    cRegisterWorkWithEventloop, cUnregisterWorkWithEventloop, cChangeMask;
//  - state: cIsIpv6Instance, cGetIp6Instance, cGetIp4Instance,
//    cSetRouteState, cSetRedistState, cIsRtmReady, cSetRtmReady,
//    cGetRtmConfig, cGetAddress, cGetVlanAddress, cI3Ready,
//    cRunPendingAction.
#ifndef ZAVREL_STACK_STACKCALLBACKS_H
#define ZAVREL_STACK_STACKCALLBACKS_H

#include "stackapi/stackapi.h"

// Makes a definition visible outside the shared object whatever the
// default visibility of the build.
#define ZAVREL_STACK_EXPORT __attribute__((visibility("default")))

#endif
