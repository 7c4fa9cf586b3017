// CfgSched costs with one VLAN's static routes held in one bucket:
//  - Insert (a new route, and a route replacing a held one), Update and
//    Remove, per operation, with 1,000 and with 100,000 routes held;
//  - one timer tick with 100,000 (or 1,000) sent routes waiting for the
//    stack and 31 new routes behind them;
//  - the memory one queued route takes: its item in the scheduler, its
//    entry in the serializer and its action, as the C library's allocator
//    counts them (bench/QueuedRoutes.h; bench_figure_queued_route_bytes
//    prints the same figure, and builds for the 32-bit target too).
// The stack is the recording double with its recording off, so that an OID
// costs about what a stack spends on one (bench/QueuedRoutes.h);
// BM_ReportOidOnly gives that cost. Operations are timed in batches on the
// thread's CPU clock; the state is restored between batches outside the timed
// part, so every batch sees the same number held. For the operation costs the
// serializer is ready, as in a running system: sent routes have their request
// outstanding in it, and the requests of a batch are completed after the batch
// (as the stack would), so the serializer too stays the same size.
//
// Insert, Update and Remove run on two schedulers side by side, one holding
// 1,000 routes and one 100,000 (numbers far apart, so that their rows never
// meet in the serializer), a batch on each in every round, in turn first:
// both sizes see the machine as it is at that moment. The counters give the
// median per operation over the batches of each size and their ratio.
// The ticks run per size (BM_Tick*/1000, /100000), with the serializer
// holding as many outstanding requests as the scheduler holds routes, and
// also paired (BM_PairedTick*), where both schedulers share the one
// serializer and the ratio is the scheduler's own.
//
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

namespace Zavrel {
namespace {

using bench::AnswerWithoutRecording;
using bench::InsertRoutes;
using bench::Route;
using bench::SendAll;

const CfgKey kKey = bench::kRouteKey;
const unsigned short kVlan = bench::kRouteVlan;
const int kBatch = 256;

// The routes with these numbers, in their order.
std::vector<StaticRouteItem*> Routes(const std::vector<uint32_t>& numbers) {
    std::vector<StaticRouteItem*> items;
    for (uint32_t n : numbers) {
        items.push_back(Route(n));
    }
    return items;
}

void DeleteAll(const std::vector<StaticRouteItem*>& items) {
    for (StaticRouteItem* item : items) {
        delete item;
    }
}

Serializer& TheSerializer() {
    return DcRouterMgr::GetInstance()->GetSerializer();
}

// The stack reports the requests on these routes' rows done: the
// serializer drops each outstanding request and issues the next one.
void Complete(const std::vector<uint32_t>& numbers) {
    for (uint32_t n : numbers) {
        StaticRouteItem* probe = Route(n);
        MibOid& oid = probe->GetOid();
        TheSerializer().RunPendingAction(const_cast<unsigned long*>(oid.Components()),
                                         oid.Length());
        delete probe;
    }
}

std::vector<uint32_t> Spread(uint32_t first, uint32_t cursor, size_t held) {
    std::vector<uint32_t> numbers;
    for (int i = 0; i < kBatch; ++i) {
        numbers.push_back(first + (cursor + static_cast<uint32_t>(i) * 7919u) %
                                      static_cast<uint32_t>(held));
    }
    return numbers;
}

// The batch the stack confirms next when it answers in the order the
// requests went out: the oldest held routes, from the head of the list.
std::vector<uint32_t> InSendOrder(uint32_t first, uint32_t cursor, size_t held) {
    std::vector<uint32_t> numbers;
    for (int i = 0; i < kBatch; ++i) {
        numbers.push_back(first +
                          (cursor * static_cast<uint32_t>(kBatch) + static_cast<uint32_t>(i)) %
                              static_cast<uint32_t>(held));
    }
    return numbers;
}

const size_t kSmall = 1000;
const size_t kLarge = 100000;
// Route numbers of the larger and the smaller scheduler of a pair.
const uint32_t kLargeFirst = 0;
const uint32_t kSmallFirst = 4000000;

// A scheduler holding `held` sent routes, numbered first..first+held-1.
struct Fixture {
    Fixture(size_t held, uint32_t first) : held(held), first(first), next(first + held) {
        AnswerWithoutRecording();
        if (!TheSerializer().IsReady()) {
            TheSerializer().RunPendingActions();
        }
        DcRtmMgr::GetInstance()->SetRtmReady(kVlan);
        InsertRoutes(sched, held, first);
        SendAll(sched, held);
    }
    // The serializer forgets the fixture's requests, so that the next one
    // starts from an empty serializer.
    ~Fixture() { TheSerializer().Reset(); }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;
    size_t held;
    uint32_t first;
    uint32_t next;  // the next number for a new route
    uint32_t cursor = 0;
    CfgSched sched;
};

// A probe item standing for the stack's report on route n.
void Report(CfgSched& sched, uint32_t n, bool remove, unsigned int reason) {
    StaticRouteItem* probe = Route(n);
    if (remove) {
        sched.Remove(kKey, probe, reason);
    } else {
        sched.Update(kKey, probe, reason, true);
    }
    delete probe;
}

// Runs body, which does ops operations, and gives the CPU time per
// operation in nanoseconds.
template <typename Body>
double TimedNsPerOp(long long ops, Body body) {
    const double start = bench::ThreadCpuSeconds();
    body();
    return (bench::ThreadCpuSeconds() - start) * 1e9 / static_cast<double>(ops);
}

// Rounds of a batch on a 1,000-route and on a 100,000-route scheduler, in
// turn first. round(fixture) times one batch of kBatch operations (and
// restores the fixture untimed) and gives its nanoseconds per operation.
template <typename Round>
void PairedRounds(benchmark::State& state, Round round) {
    Fixture small(kSmall, kSmallFirst);
    Fixture large(kLarge, kLargeFirst);
    bench::Rounds smallNs;
    bench::Rounds largeNs;
    bool smallFirst = true;
    for (auto _ : state) {
        double seconds = 0;
        for (int turn = 0; turn < 2; ++turn) {
            const bool onSmall = (turn == 0) == smallFirst;
            const double ns = round(onSmall ? small : large);
            (onSmall ? smallNs : largeNs).Add(ns);
            seconds += ns * kBatch * 1e-9;
        }
        smallFirst = !smallFirst;
        state.SetIterationTime(seconds);
    }
    state.counters["median_ns_per_op_1000"] = benchmark::Counter(smallNs.Median());
    state.counters["median_ns_per_op_100000"] = benchmark::Counter(largeNs.Median());
    state.counters["ratio"] = benchmark::Counter(largeNs.Median() / smallNs.Median());
}

// Inserts new routes (appended at the tail).
void BM_InsertNew(benchmark::State& state) {
    PairedRounds(state, [](Fixture& f) {
        std::vector<StaticRouteItem*> items;
        for (int i = 0; i < kBatch; ++i) {
            items.push_back(Route(f.next + static_cast<uint32_t>(i)));
        }
        const double ns = TimedNsPerOp(kBatch, [&] {
            for (StaticRouteItem* item : items) {
                f.sched.Insert(kKey, item);
            }
        });
        // Back to the held count: send, confirm and complete the new routes.
        SendAll(f.sched, kBatch);
        std::vector<uint32_t> numbers;
        for (int i = 0; i < kBatch; ++i) {
            numbers.push_back(f.next + static_cast<uint32_t>(i));
            Report(f.sched, numbers.back(), true, 1);
        }
        Complete(numbers);
        f.next += kBatch;
        return ns;
    });
}

// A round over routes spread across the held ones (a new set each round):
// op is timed on each route of the batch; restore then brings the scheduler
// back to the held count, untimed.
// Pick chooses the batch (Spread by default, the worst case for the caches).
template <typename Op, typename Restore>
void SpreadBatches(benchmark::State& state, Op op, Restore restore,
                   std::vector<uint32_t> (*pick)(uint32_t, uint32_t, size_t) = Spread) {
    PairedRounds(state, [&](Fixture& f) {
        const std::vector<uint32_t> numbers = pick(f.first, f.cursor, f.held);
        const std::vector<StaticRouteItem*> routes = Routes(numbers);
        const double ns = TimedNsPerOp(kBatch, [&] {
            for (StaticRouteItem* route : routes) {
                op(f.sched, route);
            }
        });
        f.cursor += 1;
        restore(f.sched, numbers, routes);
        return ns;
    });
}

// Inserts routes equal to held ones: each replaces its held route and moves
// one place up.
void BM_InsertReplace(benchmark::State& state) {
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* item) { sched.Insert(kKey, item); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>&) {
            SendAll(sched, kBatch);
            Complete(numbers);
        });
}

// Reports failures worth a retry: the sent route goes back to New. With
// pick Spread the routes are spread over the held ones; with InSendOrder
// they are the oldest, as when the stack answers in the order the requests
// went out.
void UpdateBatches(benchmark::State& state,
                   std::vector<uint32_t> (*pick)(uint32_t, uint32_t, size_t)) {
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* probe) { sched.Update(kKey, probe, 1, true); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
            SendAll(sched, kBatch);
            Complete(numbers);
        },
        pick);
}

void BM_Update(benchmark::State& state) {
    UpdateBatches(state, Spread);
}

void BM_UpdateInSendOrder(benchmark::State& state) {
    UpdateBatches(state, InSendOrder);
}

// What Update and Remove spend outside the scheduler: the OID of the
// stack's report (one stack call), at the same sizes.
void BM_ReportOidOnly(benchmark::State& state) {
    SpreadBatches(
        state, [](CfgSched&, StaticRouteItem* probe) { benchmark::DoNotOptimize(probe->GetOid()); },
        [](CfgSched&, const std::vector<uint32_t>&, const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
        });
}

// Confirms sent routes: each is destroyed. With pick Spread the routes are
// spread over the held ones; with InSendOrder they are the oldest, as when
// the stack answers in the order the requests went out.
void RemoveBatches(benchmark::State& state,
                   std::vector<uint32_t> (*pick)(uint32_t, uint32_t, size_t)) {
    SpreadBatches(
        state, [](CfgSched& sched, StaticRouteItem* probe) { sched.Remove(kKey, probe, 1); },
        [](CfgSched& sched, const std::vector<uint32_t>& numbers,
           const std::vector<StaticRouteItem*>& probes) {
            DeleteAll(probes);
            // Put the confirmed routes back, sent (at the tail).
            for (uint32_t n : numbers) {
                sched.Insert(kKey, Route(n));
            }
            SendAll(sched, kBatch);
            Complete(numbers);
        },
        pick);
}

void BM_Remove(benchmark::State& state) {
    RemoveBatches(state, Spread);
}

void BM_RemoveInSendOrder(benchmark::State& state) {
    RemoveBatches(state, InSendOrder);
}

// 31 New routes behind the held ones, all sent, in a fixture.
void AddThirtyOneNew(Fixture& f) {
    for (uint32_t i = 0; i < 31; ++i) {
        f.sched.Insert(kKey, Route(f.next + i));
    }
}

// One tick that sends the 31 New routes; then they fail with a reason that
// does not count, untimed, and are New again.
double TickWith31New(Fixture& f) {
    const double ns = TimedNsPerOp(1, [&] { f.sched.OnTimeout(100, nullptr); });
    std::vector<uint32_t> numbers;
    for (uint32_t i = 0; i < 31; ++i) {
        numbers.push_back(f.next + i);
        Report(f.sched, f.next + i, false, 1);
    }
    Complete(numbers);
    return ns;
}

// The median of a benchmark's rounds, as counters.
void Finish(benchmark::State& state, const bench::Rounds& ns) {
    state.counters["median_ns_per_op"] = benchmark::Counter(ns.Median());
}

// One tick with every held route sent and waiting, and 31 New behind them.
void BM_TickWith31NewBehindSent(benchmark::State& state) {
    Fixture f(static_cast<size_t>(state.range(0)), kLargeFirst);
    AddThirtyOneNew(f);
    bench::Rounds ns;
    for (auto _ : state) {
        const double tick = TickWith31New(f);
        state.SetIterationTime(tick * 1e-9);
        ns.Add(tick);
    }
    Finish(state, ns);
}

// One tick with every held route sent and waiting and nothing new: what
// the scheduler itself spends on a bucket it cannot send from.
double TickNothingNew(Fixture& f) {
    return TimedNsPerOp(1, [&] { f.sched.OnTimeout(100, nullptr); });
}

void BM_TickNothingNew(benchmark::State& state) {
    Fixture f(static_cast<size_t>(state.range(0)), kLargeFirst);
    bench::Rounds ns;
    for (auto _ : state) {
        const double tick = TickNothingNew(f);
        state.SetIterationTime(tick * 1e-9);
        ns.Add(tick);
    }
    Finish(state, ns);
}

// The same ticks on the pair of schedulers (one serializer for both).
template <typename Tick>
void PairedTicks(benchmark::State& state, bool withNew, Tick tick) {
    Fixture small(kSmall, kSmallFirst);
    Fixture large(kLarge, kLargeFirst);
    if (withNew) {
        AddThirtyOneNew(small);
        AddThirtyOneNew(large);
    }
    bench::Rounds smallNs;
    bench::Rounds largeNs;
    bool smallFirst = true;
    for (auto _ : state) {
        double seconds = 0;
        for (int turn = 0; turn < 2; ++turn) {
            const bool onSmall = (turn == 0) == smallFirst;
            const double ns = tick(onSmall ? small : large);
            (onSmall ? smallNs : largeNs).Add(ns);
            seconds += ns * 1e-9;
        }
        smallFirst = !smallFirst;
        state.SetIterationTime(seconds);
    }
    state.counters["median_ns_per_op_1000"] = benchmark::Counter(smallNs.Median());
    state.counters["median_ns_per_op_100000"] = benchmark::Counter(largeNs.Median());
    state.counters["ratio"] = benchmark::Counter(largeNs.Median() / smallNs.Median());
}

void BM_PairedTickWith31NewBehindSent(benchmark::State& state) {
    PairedTicks(state, true, TickWith31New);
}

void BM_PairedTickNothingNew(benchmark::State& state) {
    PairedTicks(state, false, TickNothingNew);
}

// Bytes held per queued route: the item in the scheduler, then its entry in
// the (not yet ready) serializer and its action after the ticks sent it.
void BM_MemoryPerQueuedRoute(benchmark::State& state) {
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
BENCHMARK(BM_InsertNew)->UseManualTime()->Iterations(400);
BENCHMARK(BM_InsertReplace)->UseManualTime()->Iterations(400);
BENCHMARK(BM_Update)->UseManualTime()->Iterations(400);
BENCHMARK(BM_UpdateInSendOrder)->UseManualTime()->Iterations(400);
BENCHMARK(BM_ReportOidOnly)->UseManualTime()->Iterations(400);
BENCHMARK(BM_Remove)->UseManualTime()->Iterations(400);
BENCHMARK(BM_RemoveInSendOrder)->UseManualTime()->Iterations(400);
BENCHMARK(BM_TickWith31NewBehindSent)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(2000);
BENCHMARK(BM_TickNothingNew)->Arg(1000)->Arg(100000)->UseManualTime()->Iterations(2000);
BENCHMARK(BM_PairedTickWith31NewBehindSent)->UseManualTime()->Iterations(2000);
BENCHMARK(BM_PairedTickNothingNew)->UseManualTime()->Iterations(2000);

}  // namespace
}  // namespace Zavrel

BENCHMARK_MAIN();
