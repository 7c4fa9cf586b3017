// Cost of one request through the Serializer (insert, issue, complete) while
// many other OIDs are held outstanding. The cost per request must not grow
// with the number of held OIDs beyond what an ordered map lookup costs.
//
// Each iteration inserts 100,000 requests spread over 10,000 OIDs (ten per
// OID), then completes them all, round-robin over the OIDs. The "held" OIDs
// each have one request outstanding that never completes. Iterations are
// timed on the thread's CPU clock; median_per_request_ns is the median over
// the iterations of a run. The paired benchmark runs both sizes in turn and
// gives the ratio of their medians.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/Medians.h"

#include "mib/MibAction.h"
#include "mib/MibOid.h"
#include "mib/Serializer.h"

namespace {

using Zavrel::MibAction;
using Zavrel::MibOid;
using Zavrel::Serializer;

const unsigned long REQUESTS = 100000;
const unsigned long WORKING_OIDS = 10000;
const unsigned long OID_LENGTH = 12;

// A request that costs nothing to issue.
class NoopAction : public MibAction {
public:
    NoopAction() : MibAction("NoopAction") {}
    unsigned long IssueReq(bool shared_context) override {
        benchmark::DoNotOptimize(shared_context);
        return 0;
    }
};

// A route-like row OID: a fixed table prefix, then the row index.
std::vector<unsigned long> RowOid(unsigned long table, unsigned long row) {
    std::vector<unsigned long> oid = {1, 3, 6, 1, 4, 1, 4329, 15, 3, table, 1};
    oid.push_back(row);
    return oid;
}

// A serializer holding `held` OIDs outstanding, and the working OIDs.
struct Fixture {
    explicit Fixture(unsigned long held) : held(held) {
        serializer.RunPendingActions();
        for (unsigned long i = 0; i < held; ++i) {
            // Spread the held rows over three tables around the working one.
            std::vector<unsigned long> components = RowOid(10 + (i % 3) * 10, i);
            serializer.Insert(MibOid(components.data(), components.size()), new NoopAction());
        }
        working.reserve(WORKING_OIDS);
        workingOids.reserve(WORKING_OIDS);
        for (unsigned long j = 0; j < WORKING_OIDS; ++j) {
            working.push_back(RowOid(15, j * 7919));
            workingOids.emplace_back(working.back().data(), OID_LENGTH);
        }
    }
    // One round of REQUESTS requests; its CPU time per request in ns.
    double Round() {
        const double start = Zavrel::bench::ThreadCpuSeconds();
        for (unsigned long r = 0; r < REQUESTS; ++r) {
            serializer.Insert(workingOids[r % WORKING_OIDS], new NoopAction());
        }
        for (unsigned long r = 0; r < REQUESTS; ++r) {
            benchmark::DoNotOptimize(
                serializer.RunPendingAction(working[r % WORKING_OIDS].data(), OID_LENGTH));
        }
        return (Zavrel::bench::ThreadCpuSeconds() - start) * 1e9 / static_cast<double>(REQUESTS);
    }
    bool AllCompleted() const { return serializer.PendingOidCount() == held; }

    unsigned long held;
    Serializer serializer;
    std::vector<std::vector<unsigned long>> working;
    std::vector<MibOid> workingOids;
};

void BM_SerializerRequestCost(benchmark::State& state) {
    Fixture f(static_cast<unsigned long>(state.range(0)));
    Zavrel::bench::Rounds perRequestNs;
    for (auto _ : state) {
        const double ns = f.Round();
        state.SetIterationTime(ns * 1e-9 * static_cast<double>(REQUESTS));
        perRequestNs.Add(ns);
    }
    if (!f.AllCompleted()) {
        state.SkipWithError("working OIDs were not all completed");
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * REQUESTS));
    state.counters["held"] = static_cast<double>(f.held);
    // Time per request (insert, issue and completion), in seconds.
    state.counters["per_request"] = benchmark::Counter(
        static_cast<double>(REQUESTS),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["median_per_request_ns"] = benchmark::Counter(perRequestNs.Median());
}

// The same with 1,000 and 100,000 held, a round of each in turn, so that
// both see the machine alike: the medians and their ratio from one run.
void BM_SerializerRequestCostPaired(benchmark::State& state) {
    Fixture small(1000);
    Fixture large(100000);
    Zavrel::bench::Rounds smallNs;
    Zavrel::bench::Rounds largeNs;
    bool smallFirst = true;
    for (auto _ : state) {
        double seconds = 0;
        for (int turn = 0; turn < 2; ++turn) {
            const bool onSmall = (turn == 0) == smallFirst;
            const double ns = (onSmall ? small : large).Round();
            (onSmall ? smallNs : largeNs).Add(ns);
            seconds += ns * 1e-9 * static_cast<double>(REQUESTS);
        }
        smallFirst = !smallFirst;
        state.SetIterationTime(seconds);
    }
    if (!small.AllCompleted() || !large.AllCompleted()) {
        state.SkipWithError("working OIDs were not all completed");
    }
    state.counters["median_per_request_ns_1000"] = benchmark::Counter(smallNs.Median());
    state.counters["median_per_request_ns_100000"] = benchmark::Counter(largeNs.Median());
    state.counters["ratio"] = benchmark::Counter(largeNs.Median() / smallNs.Median());
}

BENCHMARK(BM_SerializerRequestCost)
    ->ArgName("held")
    ->Arg(1000)
    ->Arg(100000)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SerializerRequestCostPaired)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
