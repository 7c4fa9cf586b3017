// Cost of one request through the Serializer (insert, issue, complete) while
// many other OIDs are held outstanding. The cost per request must not grow
// with the number of held OIDs beyond what an ordered map lookup costs.
//
// Each iteration inserts 100,000 requests spread over 10,000 OIDs (ten per
// OID), then completes them all, round-robin over the OIDs. The "held" OIDs
// each have one request outstanding that never completes. Iterations are
// timed on the thread's CPU clock; median_per_request_ns is the median over
// the iterations of a run.
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
    unsigned long IssueReq(bool shared_context) override
    {
        benchmark::DoNotOptimize(shared_context);
        return 0;
    }
};

// A route-like row OID: a fixed table prefix, then the row index.
std::vector<unsigned long> RowOid(unsigned long table, unsigned long row)
{
    std::vector<unsigned long> oid = {1, 3, 6, 1, 4, 1, 4329, 15, 3, table, 1};
    oid.push_back(row);
    return oid;
}

void BM_SerializerRequestCost(benchmark::State& state)
{
    const unsigned long held = static_cast<unsigned long>(state.range(0));
    Serializer serializer;
    serializer.RunPendingActions();
    for (unsigned long i = 0; i < held; ++i) {
        // Spread the held rows over three tables around the working one.
        std::vector<unsigned long> components = RowOid(10 + (i % 3) * 10, i);
        serializer.Insert(MibOid(components.data(), components.size()), new NoopAction());
    }

    std::vector<std::vector<unsigned long>> working;
    std::vector<MibOid> workingOids;
    working.reserve(WORKING_OIDS);
    workingOids.reserve(WORKING_OIDS);
    for (unsigned long j = 0; j < WORKING_OIDS; ++j) {
        working.push_back(RowOid(15, j * 7919));
        workingOids.emplace_back(working.back().data(), OID_LENGTH);
    }

    Zavrel::bench::Rounds perRequestNs;
    for (auto _ : state) {
        const double start = Zavrel::bench::ThreadCpuSeconds();
        for (unsigned long r = 0; r < REQUESTS; ++r) {
            serializer.Insert(workingOids[r % WORKING_OIDS], new NoopAction());
        }
        for (unsigned long r = 0; r < REQUESTS; ++r) {
            benchmark::DoNotOptimize(
                serializer.RunPendingAction(working[r % WORKING_OIDS].data(), OID_LENGTH));
        }
        const double elapsed = Zavrel::bench::ThreadCpuSeconds() - start;
        state.SetIterationTime(elapsed);
        perRequestNs.Add(elapsed * 1e9 / static_cast<double>(REQUESTS));
    }
    if (serializer.PendingOidCount() != held) {
        state.SkipWithError("working OIDs were not all completed");
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * REQUESTS));
    state.counters["held"] = static_cast<double>(held);
    // Time per request (insert, issue and completion), in seconds.
    state.counters["per_request"] = benchmark::Counter(
        static_cast<double>(REQUESTS),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["median_per_request_ns"] = benchmark::Counter(perRequestNs.Median());
}

BENCHMARK(BM_SerializerRequestCost)
    ->ArgName("held")
    ->Arg(1000)
    ->Arg(100000)
    ->UseManualTime()
    ->Iterations(15)
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
