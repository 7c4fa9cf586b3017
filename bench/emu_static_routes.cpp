// 10,000 static routes over 100 VLANs, through the whole library against the
// stack emulator, on the virtual clock: the routes are added, sent by the
// configuration scheduler, answered by the stack and installed in its
// forwarding tables. One iteration is the whole run (the library's
// singletons live as long as the process).
//
// Reported counters:
//   cpu_ms          CPU time of the whole run (process CPU clock)
//   wall_ms         real time of the whole run
//   emulator_ms     CPU time spent inside the emulator, its callbacks into the
//                   library excluded (the emulator's time account on the
//                   thread CPU clock)
//   library_ms      the rest: library, platform and the driver of the run
//   emulator_share  emulator_ms / cpu_ms
//   clock_reads     reads of the thread CPU clock the account made; each
//                   costs read_cost_ns, a system call. cpu_ms and
//                   emulator_ms are given without that cost: half of each
//                   read falls on the emulator's side of a switch.
//   peak_rss_kb     peak resident memory of the process
//   virtual_ms      virtual time from the first route added to the last installed
//   installed       forwarding entries at the end (routes and connected)
//   breaches        contract breaches the emulator saw (must be 0)
#include <benchmark/benchmark.h>

#include <sys/resource.h>
#include <time.h>

#include <cstdio>

#include "bench/BenchSupport.h"
#include "emulator/Emulator.h"
#include "interfaces/DcInterfaceMgr.h"
#include "platform/EventLoop.h"
#include "platform/Ip4Addr.h"
#include "platform/Trace.h"
#include "platform/VirtualEventLoop.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"

namespace {

using namespace Zavrel;
using namespace Zavrel::bench;

const unsigned short VLANS = 100;
const unsigned int ROUTES_PER_VLAN = 100;

size_t Installed() {
    size_t fib = 0;
    Emulator::Instance().RefreshRibs();
    for (const auto& entry : Emulator::Instance().Instances()) {
        fib += entry.second->GetRib().FibCount();
    }
    return fib;
}

void BM_EmuStaticRoutes(benchmark::State& state) {
    // A repetition would measure a system that is already up.
    if (!FirstRunInProcess(state,
                           "runs once per process; run it without --benchmark_repetitions")) {
        return;
    }
    BenchEnvironment environment;
    VirtualEventLoop& loop = environment.loop;

    const uint64_t readCostNs = Emulator::TimeAccount::ReadCostNs(CLOCK_THREAD_CPUTIME_ID);
    for (auto _ : state) {
        const uint64_t cpuStart = ClockNs(CLOCK_PROCESS_CPUTIME_ID);
        const uint64_t wallStart = ClockNs(CLOCK_MONOTONIC);
        Emulator::Instance().Account().Enable(true, CLOCK_THREAD_CPUTIME_ID);

        DcRouterMgr* manager = DcRouterMgr::GetInstance();
        manager->SckInterfaceInitialize(&environment.sockets);
        manager->Initialize(1, &environment.ip);
        AdvanceUntil(loop, 1000, [] { return Emulator::Instance().IsI3Ready(); });

        // One RTM instance, one interface and one address per VLAN.
        for (unsigned short vlan = 1; vlan <= VLANS; ++vlan) {
            DcRtmMgr::GetInstance()->CreateRTMInstance(vlan, DcRtmMgr::AFI_IPV4,
                                                       DcRtmMgr::RTMData());
            char name[16];
            std::snprintf(name, sizeof(name), "eth%u", static_cast<unsigned int>(vlan));
            DcInterfaceMgr::GetInstance()->AddInterface(
                vlan, 1000u + vlan, name, static_cast<DcInterfaceMgr::IntfType>(0), 0x18, 0, 1);
            DcInterfaceMgr::GetInstance()->AddIpAddress(
                vlan, 1000u + vlan, Ip4Addr(10, 0, static_cast<unsigned char>(vlan), 1),
                Ip4Addr(255, 255, 255, 0));
        }
        AdvanceUntil(loop, 10000, [] { return Installed() == VLANS; });

        const uint64_t routesStartMs = loop.NowMs();
        for (unsigned short vlan = 1; vlan <= VLANS; ++vlan) {
            for (unsigned int i = 0; i < ROUTES_PER_VLAN; ++i) {
                AddRoute(
                    vlan,
                    Ip4Addr(20, static_cast<unsigned char>(vlan), static_cast<unsigned char>(i), 0),
                    Ip4Addr(255, 255, 255, 0),
                    Ip4Addr(10, 0, static_cast<unsigned char>(vlan), 254), 0, 1, 0x30000, 1);
            }
        }
        const bool done = AdvanceUntil(loop, 3600000,
                                       [] { return Installed() == VLANS * (ROUTES_PER_VLAN + 1); });

        const Emulator::TimeAccount& account = Emulator::Instance().Account();
        const double readsNs =
            static_cast<double>(account.Reads()) * static_cast<double>(readCostNs);
        const double cpuMs =
            (static_cast<double>(ClockNs(CLOCK_PROCESS_CPUTIME_ID) - cpuStart) - readsNs) / 1e6;
        const double wallMs = static_cast<double>(ClockNs(CLOCK_MONOTONIC) - wallStart) / 1e6;
        const double emulatorMs = (static_cast<double>(account.StackNs()) - readsNs / 2) / 1e6;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        state.counters["cpu_ms"] = cpuMs;
        state.counters["wall_ms"] = wallMs;
        state.counters["emulator_ms"] = emulatorMs;
        state.counters["library_ms"] = cpuMs - emulatorMs;
        state.counters["emulator_share"] = emulatorMs / cpuMs;
        state.counters["clock_reads"] = static_cast<double>(account.Reads());
        state.counters["read_cost_ns"] = static_cast<double>(readCostNs);
        state.counters["peak_rss_kb"] = static_cast<double>(usage.ru_maxrss);
        state.counters["virtual_ms"] = static_cast<double>(loop.NowMs() - routesStartMs);
        state.counters["installed"] = static_cast<double>(Installed());
        state.counters["breaches"] = static_cast<double>(Emulator::BreachCount());
        if (!done) {
            state.SkipWithError("not every route was installed");
        }
    }
}

BENCHMARK(BM_EmuStaticRoutes)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
