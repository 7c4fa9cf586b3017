// CfgSched costs with one VLAN's static routes held in one bucket:
//  - Insert (a new route, and a route replacing a held one), Update and
//    Remove, per operation, with 1,000 and with 100,000 routes held;
//  - one timer tick with 100,000 (or 1,000) sent routes waiting for the
//    stack and 31 new routes behind them;
//  - the memory one queued route takes: its item in the scheduler, its
//    entry in the serializer and its action, counted by this program's own
//    operator new.
// Operations are timed in batches; the state is restored between batches
// outside the timed part, so every batch sees the same number held. For the
// operation costs the serializer is ready, as in a running system: sent
// routes have their request outstanding in it, and the requests of a batch
// are completed after the batch (as the stack would), so the serializer too
// stays the same size. The memory figure runs first, while the serializer
// is not ready yet and holds every action queued.
#include <malloc.h>
#include <time.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

#include <benchmark/benchmark.h>

#include "cfg/CfgKey.h"
#include "cfg/CfgMemory.h"
#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"

// ---- allocation counting

namespace {
std::atomic<long long> g_live_bytes{0};
std::atomic<long long> g_allocations{0};

// Kept out of line: the replaced operator new/delete below call them, and an
// inlined malloc/free pair would look to the compiler like new/free mismatch.
__attribute__((noinline)) void* CountedAlloc(size_t size)
{
    void* p = std::malloc(size == 0 ? 1 : size);
    if (p != nullptr) {
        g_live_bytes += static_cast<long long>(malloc_usable_size(p));
        ++g_allocations;
    }
    return p;
}

__attribute__((noinline)) void* CountedAlignedAlloc(size_t size, std::align_val_t alignment)
{
    const size_t align = static_cast<size_t>(alignment);
    // aligned_alloc wants a size that is a multiple of the alignment.
    const size_t rounded = ((size == 0 ? 1 : size) + align - 1) / align * align;
    void* p = std::aligned_alloc(align, rounded);
    if (p != nullptr) {
        g_live_bytes += static_cast<long long>(malloc_usable_size(p));
        ++g_allocations;
    }
    return p;
}

__attribute__((noinline)) void CountedFree(void* p)
{
    if (p != nullptr) {
        g_live_bytes -= static_cast<long long>(malloc_usable_size(p));
        std::free(p);
    }
}
}  // namespace

void* operator new(size_t size)
{
    void* p = CountedAlloc(size);
    if (p == nullptr) {
        throw std::bad_alloc();
    }
    return p;
}
void* operator new[](size_t size) { return operator new(size); }
void* operator new(size_t size, const std::nothrow_t&) noexcept { return CountedAlloc(size); }
void* operator new[](size_t size, const std::nothrow_t&) noexcept { return CountedAlloc(size); }
void operator delete(void* p) noexcept { CountedFree(p); }
void operator delete[](void* p) noexcept { CountedFree(p); }
void operator delete(void* p, size_t) noexcept { CountedFree(p); }
void operator delete[](void* p, size_t) noexcept { CountedFree(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { CountedFree(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { CountedFree(p); }
// The over-aligned forms, which the queued configuration's pool uses.
void* operator new(size_t size, std::align_val_t alignment)
{
    void* p = CountedAlignedAlloc(size, alignment);
    if (p == nullptr) {
        throw std::bad_alloc();
    }
    return p;
}
void* operator new[](size_t size, std::align_val_t alignment)
{
    return operator new(size, alignment);
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return CountedAlignedAlloc(size, alignment);
}
void* operator new[](size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return CountedAlignedAlloc(size, alignment);
}
void operator delete(void* p, std::align_val_t) noexcept { CountedFree(p); }
void operator delete[](void* p, std::align_val_t) noexcept { CountedFree(p); }
void operator delete(void* p, size_t, std::align_val_t) noexcept { CountedFree(p); }
void operator delete[](void* p, size_t, std::align_val_t) noexcept { CountedFree(p); }
void operator delete(void* p, std::align_val_t, const std::nothrow_t&) noexcept { CountedFree(p); }
void operator delete[](void* p, std::align_val_t, const std::nothrow_t&) noexcept
{
    CountedFree(p);
}

namespace Zavrel {
namespace {

// Batches are timed on the thread's own CPU clock, so that time the
// machine gives to other work does not count.
struct Clock {
    static double now()
    {
        timespec ts;
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
        return static_cast<double>(ts.tv_sec) + static_cast<double>(ts.tv_nsec) * 1e-9;
    }
};

const unsigned short kVlan = 10;
const CfgKey kKey(kVlan, 0x3d000003);
const int kBatch = 256;

// The route with this number: 10.a.b.c/32 via 192.168.0.1.
StaticRouteItem* Route(uint32_t n, long rowStatus = 1)
{
    const unsigned char destination[4] = {10, static_cast<unsigned char>(n >> 16),
                                          static_cast<unsigned char>(n >> 8),
                                          static_cast<unsigned char>(n)};
    const unsigned char nextHop[4] = {192, 168, 0, 1};
    return new StaticRouteItem(kVlan, 1, rowStatus, 1, destination, 32, nextHop, 3, 1, 0x30000,
                               0);
}

// The routes with these numbers, in their order.
std::vector<StaticRouteItem*> Routes(const std::vector<uint32_t>& numbers)
{
    std::vector<StaticRouteItem*> items;
    for (uint32_t n : numbers) {
        items.push_back(Route(n));
    }
    return items;
}

void DeleteAll(const std::vector<StaticRouteItem*>& items)
{
    for (StaticRouteItem* item : items) {
        delete item;
    }
}

Serializer& TheSerializer() { return DcRouterMgr::GetInstance()->GetSerializer(); }

// Drops what the stack double recorded.
void Forget() { test::RecordingStack::Instance().ClearCalls(); }

// Inserts routes 0..count-1, dropping what the stack double records now
// and then so that its record stays small.
void InsertRoutes(CfgSched& sched, size_t count)
{
    for (uint32_t n = 0; n < count; ++n) {
        sched.Insert(kKey, Route(n));
        if (n % 4096 == 0) {
            test::RecordingStack::Instance().ClearCalls();
        }
    }
}

// Ticks until the scheduler has sent every New item.
void SendAll(CfgSched& sched, size_t expected)
{
    for (size_t tick = 0; tick < expected / 31 + 2; ++tick) {
        sched.OnTimeout(100, nullptr);
        if (tick % 64 == 0) {
            Forget();
        }
    }
    Forget();
}

// The stack reports the requests on these routes' rows done: the
// serializer drops each outstanding request and issues the next one.
void Complete(const std::vector<uint32_t>& numbers)
{
    for (uint32_t n : numbers) {
        StaticRouteItem* probe = Route(n);
        MibOid& oid = probe->GetOid();
        TheSerializer().RunPendingAction(const_cast<unsigned long*>(oid.Components()),
                                         oid.Length());
        delete probe;
    }
    Forget();
}

std::vector<uint32_t> Spread(uint32_t cursor, size_t held)
{
    std::vector<uint32_t> numbers;
    for (int i = 0; i < kBatch; ++i) {
        numbers.push_back((cursor + static_cast<uint32_t>(i) * 7919u) %
                          static_cast<uint32_t>(held));
    }
    return numbers;
}

// A scheduler holding `held` sent routes, numbered 0..held-1.
struct Fixture {
    explicit Fixture(size_t held) : held(held)
    {
        if (!TheSerializer().IsReady()) {
            TheSerializer().RunPendingActions();
        }
        DcRtmMgr::GetInstance()->SetRtmReady(kVlan);
        InsertRoutes(sched, held);
        SendAll(sched, held);
    }
    size_t held;
    CfgSched sched;
};

// A probe item standing for the stack's report on route n.
void Report(CfgSched& sched, uint32_t n, bool remove, unsigned int reason)
{
    StaticRouteItem* probe = Route(n);
    if (remove) {
        sched.Remove(kKey, probe, reason);
    } else {
        sched.Update(kKey, probe, reason, true);
    }
    delete probe;
}

// The timed work of a whole run.
struct Totals {
    double seconds = 0;
    long long ops = 0;
};

// Times one batch of ops operations, reports it as the iteration's time and
// adds it to the run's totals.
template <typename Body>
void TimeBatch(benchmark::State& state, Totals& totals, long long ops, Body body)
{
    const double start = Clock::now();
    body();
    const double elapsed = Clock::now() - start;
    state.SetIterationTime(elapsed);
    totals.seconds += elapsed;
    totals.ops += ops;
}

void Finish(benchmark::State& state, const Totals& totals)
{
    state.counters["ns_per_op"] =
        benchmark::Counter(totals.seconds * 1e9 / static_cast<double>(totals.ops));
}

// Inserts new routes (appended at the tail).
void BM_InsertNew(benchmark::State& state)
{
    Fixture f(static_cast<size_t>(state.range(0)));
    uint32_t next = static_cast<uint32_t>(f.held);
    Totals totals;
    for (auto _ : state) {
        std::vector<StaticRouteItem*> items;
        for (int i = 0; i < kBatch; ++i) {
            items.push_back(Route(next + static_cast<uint32_t>(i)));
        }
        TimeBatch(state, totals, kBatch, [&] {
            for (StaticRouteItem* item : items) {
                f.sched.Insert(kKey, item);
            }
        });
        // Back to the held count: send, confirm and complete the new routes.
        SendAll(f.sched, kBatch);
        std::vector<uint32_t> numbers;
        for (int i = 0; i < kBatch; ++i) {
            numbers.push_back(next + static_cast<uint32_t>(i));
            Report(f.sched, numbers.back(), true, 1);
        }
        Complete(numbers);
    }
    Finish(state, totals);
}

// Batches over routes spread across the held ones (a new set each round):
// op is timed on each route of the batch; restore then brings the scheduler
// back to the held count, untimed.
template <typename Op, typename Restore>
void SpreadBatches(benchmark::State& state, Op op, Restore restore)
{
    Fixture f(static_cast<size_t>(state.range(0)));
    uint32_t cursor = 0;
    Totals totals;
    for (auto _ : state) {
        const std::vector<uint32_t> numbers = Spread(cursor, f.held);
        const std::vector<StaticRouteItem*> routes = Routes(numbers);
        TimeBatch(state, totals, kBatch, [&] {
            for (StaticRouteItem* route : routes) {
                op(f.sched, route);
            }
        });
        cursor += 1;
        restore(f.sched, numbers, routes);
    }
    Finish(state, totals);
}

// Inserts routes equal to held ones: each replaces its held route and moves
// one place up.
void BM_InsertReplace(benchmark::State& state)
{
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* item) { sched.Insert(kKey, item); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>&) {
            SendAll(sched, kBatch);
            Complete(numbers);
        });
}

// Reports failures worth a retry: the sent route goes back to New.
void BM_Update(benchmark::State& state)
{
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* probe) { sched.Update(kKey, probe, 1, true); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
            SendAll(sched, kBatch);
            Complete(numbers);
        });
}

// What Update and Remove spend outside the scheduler: the OID of the
// stack's report (one stack call), at the same sizes.
void BM_ReportOidOnly(benchmark::State& state)
{
    SpreadBatches(
        state, [](CfgSched&, StaticRouteItem* probe) { benchmark::DoNotOptimize(probe->GetOid()); },
        [](CfgSched&, const std::vector<uint32_t>&, const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
            Forget();
        });
}

// Confirms sent routes: each is destroyed.
void BM_Remove(benchmark::State& state)
{
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* probe) { sched.Remove(kKey, probe, 1); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
            // Put the confirmed routes back, sent.
            for (uint32_t n : numbers) {
                sched.Insert(kKey, Route(n));
            }
            SendAll(sched, kBatch);
            Complete(numbers);
        });
}

// One tick with every held route sent and waiting, and 31 New behind them.
void BM_TickWith31NewBehindSent(benchmark::State& state)
{
    Fixture f(static_cast<size_t>(state.range(0)));
    const uint32_t first = static_cast<uint32_t>(f.held);
    for (uint32_t i = 0; i < 31; ++i) {
        f.sched.Insert(kKey, Route(first + i));
    }
    Totals totals;
    for (auto _ : state) {
        TimeBatch(state, totals, 1, [&] { f.sched.OnTimeout(100, nullptr); });
        // The 31 fail with a reason that does not count: New again.
        std::vector<uint32_t> numbers;
        for (uint32_t i = 0; i < 31; ++i) {
            numbers.push_back(first + i);
            Report(f.sched, first + i, false, 1);
        }
        Complete(numbers);
    }
    Finish(state, totals);
}

// One tick with every held route sent and waiting and nothing new: what
// the scheduler itself spends on a bucket it cannot send from.
void BM_TickNothingNew(benchmark::State& state)
{
    Fixture f(static_cast<size_t>(state.range(0)));
    Totals totals;
    for (auto _ : state) {
        TimeBatch(state, totals, 1, [&] { f.sched.OnTimeout(100, nullptr); });
    }
    Finish(state, totals);
}

// Bytes held: the heap's blocks, with the queued configuration's pool
// counted by the blocks it hands out rather than by the chunks it keeps.
long long HeldBytes()
{
    const CfgMemoryUse pool = CfgMemoryUsage();
    return g_live_bytes.load() - static_cast<long long>(pool.reserved) +
           static_cast<long long>(pool.inUse);
}

// Bytes held per queued route: the item in the scheduler, then its entry in
// the (not yet ready) serializer and its action after the ticks sent it.
void BM_MemoryPerQueuedRoute(benchmark::State& state)
{
    const size_t routes = static_cast<size_t>(state.range(0));
    DcRtmMgr::GetInstance()->SetRtmReady(kVlan);
    Forget();
    if (TheSerializer().IsReady()) {
        state.SkipWithError("the serializer is ready: actions would not stay queued");
        return;
    }
    double itemBytes = 0;
    double totalBytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        {
            CfgSched sched;
            const long long before = HeldBytes();
            InsertRoutes(sched, routes);
            test::RecordingStack::Instance().ClearCalls();
            const long long afterInsert = HeldBytes();
            for (size_t tick = 0; tick < routes / 31 + 2; ++tick) {
                sched.OnTimeout(100, nullptr);
                if (tick % 128 == 0) {
                    test::RecordingStack::Instance().ClearCalls();
                }
            }
            test::RecordingStack::Instance().ClearCalls();
            const long long afterSend = HeldBytes();
            itemBytes = static_cast<double>(afterInsert - before) / static_cast<double>(routes);
            totalBytes = static_cast<double>(afterSend - before) / static_cast<double>(routes);
            TheSerializer().Reset();
        }
        state.ResumeTiming();
    }
    state.counters["item_bytes"] = benchmark::Counter(itemBytes);
    state.counters["queued_route_bytes"] = benchmark::Counter(totalBytes);
    state.counters["serializer_and_action_bytes"] = benchmark::Counter(totalBytes - itemBytes);
    state.counters["sizeof_StaticRouteItem"] =
        benchmark::Counter(static_cast<double>(sizeof(StaticRouteItem)));
}

BENCHMARK(BM_MemoryPerQueuedRoute)->Arg(100000)->Iterations(1);
BENCHMARK(BM_InsertNew)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(400);
BENCHMARK(BM_InsertReplace)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(400);
BENCHMARK(BM_Update)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(400);
BENCHMARK(BM_ReportOidOnly)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(400);
BENCHMARK(BM_Remove)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(400);
BENCHMARK(BM_TickWith31NewBehindSent)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(2000);
BENCHMARK(BM_TickNothingNew)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(2000);

}  // namespace
}  // namespace Zavrel

BENCHMARK_MAIN();
