// CfgSched costs with one VLAN's static routes held in one bucket:
//  - Insert (a new route, and a route replacing a held one), Update and
//    Remove, per operation, with 1,000 and with 100,000 routes held;
//  - one timer tick with 100,000 (or 1,000) sent routes waiting for the
//    stack and 31 new routes behind them;
//  - the memory one queued route takes: its item in the scheduler, its
//    entry in the serializer and its action, as the C library's allocator
//    counts them (bench/QueuedRoutes.h; bench_figure_queued_route_bytes
//    prints the same figure, and builds for the 32-bit target too).
// Operations are timed in batches on the thread's CPU clock; the state is
// restored between batches outside the timed part, so every batch sees the
// same number held. median_ns_per_op is the median over the batches of a
// run, ns_per_op their mean. For the operation costs the serializer is
// ready, as in a running system: sent routes have their request
// outstanding in it, and the requests of a batch are completed after the
// batch (as the stack would), so the serializer too stays the same size.
// The memory figure runs first, while the serializer is not ready yet and
// holds every action queued.
#include <cstdint>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/Medians.h"
#include "bench/QueuedRoutes.h"
#include "cfg/CfgKey.h"
#include "cfg/CfgSched.h"
#include "cfg/StaticRouteItem.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "support/stackdouble/RecordingStack.h"

namespace Zavrel {
namespace {

using bench::ForgetStackCalls;
using bench::InsertRoutes;
using bench::Route;
using bench::SendAll;

const CfgKey kKey = bench::kRouteKey;
const unsigned short kVlan = bench::kRouteVlan;
const int kBatch = 256;

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

void Forget() { ForgetStackCalls(); }

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
    bench::Rounds nsPerOp;  // one per batch
};

// Times one batch of ops operations, reports it as the iteration's time and
// adds it to the run's totals.
template <typename Body>
void TimeBatch(benchmark::State& state, Totals& totals, long long ops, Body body)
{
    const double start = bench::ThreadCpuSeconds();
    body();
    const double elapsed = bench::ThreadCpuSeconds() - start;
    state.SetIterationTime(elapsed);
    totals.seconds += elapsed;
    totals.ops += ops;
    totals.nsPerOp.Add(elapsed * 1e9 / static_cast<double>(ops));
}

void Finish(benchmark::State& state, const Totals& totals)
{
    state.counters["ns_per_op"] =
        benchmark::Counter(totals.seconds * 1e9 / static_cast<double>(totals.ops));
    state.counters["median_ns_per_op"] = benchmark::Counter(totals.nsPerOp.Median());
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

// Bytes held per queued route: the item in the scheduler, then its entry in
// the (not yet ready) serializer and its action after the ticks sent it.
void BM_MemoryPerQueuedRoute(benchmark::State& state)
{
    const size_t routes = static_cast<size_t>(state.range(0));
    bench::QueuedRouteBytes bytes{};
    for (auto _ : state) {
        state.PauseTiming();
        if (!bench::MeasureQueuedRouteBytes(routes, bytes)) {
            state.SkipWithError("the serializer is ready: actions would not stay queued");
        }
        state.ResumeTiming();
    }
    state.counters["item_bytes"] = benchmark::Counter(bytes.item);
    state.counters["queued_route_bytes"] = benchmark::Counter(bytes.total);
    state.counters["serializer_and_action_bytes"] = benchmark::Counter(bytes.total - bytes.item);
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
