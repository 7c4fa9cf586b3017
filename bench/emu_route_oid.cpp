// What the stack emulator spends on one route OID through the stack's C API
// (sms_get_route_oid), the call the configuration scheduler makes for every
// insert and every report: the yardstick for the OID the scheduler benchmark
// takes from the recording double (its BM_ReportOidOnly), whose cost is part
// of each operation there.
//
// Reported counter: median_ns_per_call, the median over batches of 1,000
// calls on the thread CPU clock (IPv4 routes 10.x.y.0/24, as the scheduler
// benchmark's).
#include <benchmark/benchmark.h>

#include "bench/Medians.h"
#include "emulator/Emulator.h"
#include "stackapi/stackapi.h"

namespace {

const int kBatch = 1000;

void BM_RouteOid(benchmark::State& state) {
    // The emulator's stack, made before the first call (and so linked in:
    // the C API alone is a weak reference).
    benchmark::DoNotOptimize(&Zavrel::Emulator::Instance());
    unsigned long oid[SMS_MAX_OID_LEN] = {};
    unsigned char destination[4] = {10, 0, 0, 0};
    const unsigned char nextHop[4] = {192, 168, 0, 1};
    Zavrel::bench::Rounds ns;
    unsigned long n = 0;
    for (auto _ : state) {
        const double start = Zavrel::bench::ThreadCpuSeconds();
        for (int i = 0; i < kBatch; ++i, ++n) {
            destination[1] = static_cast<unsigned char>(n >> 8);
            destination[2] = static_cast<unsigned char>(n);
            benchmark::DoNotOptimize(sms_get_route_oid(oid, 10, 1, destination, 24, nextHop, 3));
        }
        ns.Add((Zavrel::bench::ThreadCpuSeconds() - start) * 1e9 / kBatch);
    }
    state.counters["median_ns_per_call"] = benchmark::Counter(ns.Median());
}

BENCHMARK(BM_RouteOid)->Iterations(2000);

}  // namespace

BENCHMARK_MAIN();
