// QueuedRoutes: static routes of one VLAN for the scheduler's figures, and
// the bytes one queued route holds, as the C library's allocator counts them
// (so the figure holds whatever allocates: the items, the scheduler's
// containers, the serializer's entries and the actions).
//
// The library runs against the recording stack double with its recording
// off (AnswerWithoutRecording): the double still answers every call, the
// OIDs above all, but rendering and keeping a line of text per call would
// cost several times what a stack spends on an OID (the emulator answers in
// 85-87 ns, bench_emu_route_oid) and would weigh on every figure.
#ifndef ZAVREL_BENCH_QUEUEDROUTES_H
#define ZAVREL_BENCH_QUEUEDROUTES_H

#include <malloc.h>

#include <cstddef>
#include <cstdint>

#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"

namespace Zavrel::bench {

const unsigned short kRouteVlan = 10;
const CfgKey kRouteKey(kRouteVlan, 0x3d000003);

// The route with this number: 10.a.b.c/32 via 192.168.0.1.
inline StaticRouteItem* Route(uint32_t n, long rowStatus = 1) {
    const unsigned char destination[4] = {10, static_cast<unsigned char>(n >> 16),
                                          static_cast<unsigned char>(n >> 8),
                                          static_cast<unsigned char>(n)};
    const unsigned char nextHop[4] = {192, 168, 0, 1};
    return new StaticRouteItem(kRouteVlan, 1, rowStatus, 1, destination, 32, nextHop, 3, 1, 0x30000,
                               0);
}

// The stack double answers from now on without recording the calls.
inline void AnswerWithoutRecording() {
    test::RecordingStack::Instance().SetRecording(false);
}

// Inserts routes first..first+count-1.
inline void InsertRoutes(CfgSched& sched, size_t count, uint32_t first = 0) {
    for (uint32_t n = 0; n < count; ++n) {
        sched.Insert(kRouteKey, Route(first + n));
    }
}

// Ticks until the scheduler has examined `expected` New items.
inline void SendAll(CfgSched& sched, size_t expected) {
    for (size_t tick = 0; tick < expected / 31 + 2; ++tick) {
        sched.OnTimeout(100, nullptr);
    }
}

// Bytes the C library's allocator has handed out and not taken back.
inline long long HeapBytesInUse() {
    const struct mallinfo2 info = mallinfo2();
    return static_cast<long long>(info.uordblks) + static_cast<long long>(info.hblkhd);
}

struct QueuedRouteBytes {
    double item;   // per route, as filed in the scheduler
    double total;  // per route, once sent: with its serializer entry and action
};

// Files `routes` routes in a scheduler, then sends them all while the
// serializer is not ready, so that every action stays queued in it. Must
// run before anything makes the serializer ready (false then).
inline bool MeasureQueuedRouteBytes(size_t routes, QueuedRouteBytes& bytes) {
    Serializer& serializer = DcRouterMgr::GetInstance()->GetSerializer();
    if (serializer.IsReady()) {
        return false;
    }
    DcRtmMgr::GetInstance()->SetRtmReady(kRouteVlan);
    AnswerWithoutRecording();
    {
        CfgSched sched;
        const long long before = HeapBytesInUse();
        InsertRoutes(sched, routes);
        const long long afterInsert = HeapBytesInUse();
        SendAll(sched, routes);
        const long long afterSend = HeapBytesInUse();
        bytes.item = static_cast<double>(afterInsert - before) / static_cast<double>(routes);
        bytes.total = static_cast<double>(afterSend - before) / static_cast<double>(routes);
        serializer.Reset();
    }
    return true;
}

}  // namespace Zavrel::bench

#endif
