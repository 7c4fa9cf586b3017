// Static routes through the library, the stack and the Linux kernel: the
// routes are added through the library's AddRoute (what the application's
// "route add" calls), sent by the configuration scheduler, answered by the
// stack, installed in its forwarding tables and written into kernel tables
// over rtnetlink, on the virtual clock. The same routes are then installed
// with "ip -batch" into other tables of the same kernel, for comparison.
//
// Needs CAP_SYS_ADMIN: the program moves into a network namespace of its
// own (unshare) and makes one veth pair per VLAN there. The library and the
// stack are process-wide, so each benchmark runs once per process: choose
// one with --benchmark_filter (BM_KernelRoutes/10000/ or BM_KernelRoutes/100000/).
//
// Reported counters, per route (microseconds of CPU):
//   library_us   the library, the platform and the driver of the run
//   stack_us     the stack emulator, its kernel writes excluded
//   kernel_us    the stack's kernel writes: sends and acknowledgements, the
//                kernel's own work on them included (thread CPU clock, read
//                once per send)
//   total_us     the whole path (process CPU clock)
//   ip_batch_us  "ip -batch" installing the same routes (CPU of the child)
//   ratio        total_us / ip_batch_us
// and written (routes the kernel accepted), refused, batches, breaches.
#include <benchmark/benchmark.h>

#include <net/if.h>
#include <sched.h>
#include <sys/resource.h>
#include <time.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/BenchSupport.h"
#include "emulator/Emulator.h"
#include "emulator/KernelFib.h"
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

uint64_t ChildrenCpuNs() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return (static_cast<uint64_t>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec)) * 1000000000u +
           static_cast<uint64_t>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) * 1000u;
}

size_t Installed() {
    Emulator::Instance().RefreshRibs();
    return Emulator::Instance().Fib().Committed().size();
}

// Route i of a VLAN: (20 + i / 256).vlan.(i % 256).0/24 via 10.0.vlan.254.
Ip4Addr RouteOf(unsigned short vlan, unsigned int i) {
    return Ip4Addr(static_cast<unsigned char>(20 + i / 256), static_cast<unsigned char>(vlan),
                   static_cast<unsigned char>(i % 256), 0);
}

bool Shell(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

// One veth pair per VLAN: vethV (10.0.V.1/24) and its peer, both up.
bool MakeLinks() {
    const std::string path = "/tmp/zavrel-bench-links." + std::to_string(getpid());
    FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) {
        return false;
    }
    std::fprintf(file, "link set lo up\n");
    for (unsigned int vlan = 1; vlan <= VLANS; ++vlan) {
        std::fprintf(file,
                     "link add veth%u type veth peer name vpeer%u\nlink set veth%u up\n"
                     "link set vpeer%u up\naddress add 10.0.%u.1/24 dev veth%u\n",
                     vlan, vlan, vlan, vlan, vlan, vlan);
    }
    std::fclose(file);
    const bool ok = Shell("ip -batch " + path);
    std::remove(path.c_str());
    return ok;
}

// CPU time "ip -batch" takes to install the routes into tables 5000 + V.
double IpBatchNs(unsigned int perVlan) {
    const std::string path = "/tmp/zavrel-bench-routes." + std::to_string(getpid());
    FILE* file = std::fopen(path.c_str(), "w");
    if (file == nullptr) {
        return 0;
    }
    for (unsigned short vlan = 1; vlan <= VLANS; ++vlan) {
        for (unsigned int i = 0; i < perVlan; ++i) {
            std::fprintf(
                file, "route add %s/24 via 10.0.%u.254 dev veth%u table %u proto 201 metric 20\n",
                RouteOf(vlan, i).ToString().c_str(), vlan, vlan, 5000u + vlan);
        }
    }
    std::fclose(file);
    const uint64_t before = ChildrenCpuNs();
    const bool ok = Shell("ip -batch " + path);
    const uint64_t after = ChildrenCpuNs();
    std::remove(path.c_str());
    return ok ? static_cast<double>(after - before) : 0;
}

void BM_KernelRoutes(benchmark::State& state) {
    const unsigned int routes = static_cast<unsigned int>(state.range(0));
    const unsigned int perVlan = routes / VLANS;
    if (!FirstRunInProcess(state, "runs once per process; choose one with --benchmark_filter")) {
        return;
    }
    if (unshare(CLONE_NEWNET) != 0 || !MakeLinks()) {
        state.SkipWithError("needs CAP_SYS_ADMIN (a network namespace of its own)");
        for (auto _ : state) {
        }
        return;
    }
    BenchEnvironment environment;
    VirtualEventLoop& loop = environment.loop;

    auto sink = std::make_unique<Emulator::KernelFib>([&loop] { return loop.NowMs(); });
    std::string error;
    if (!sink->Open(error)) {
        state.SkipWithError(error.c_str());
        for (auto _ : state) {
        }
        return;
    }
    Emulator::KernelFib* fib = sink.get();
    Emulator::Instance().SetFibSink(std::move(sink));

    for (auto _ : state) {
        DcRouterMgr* manager = DcRouterMgr::GetInstance();
        manager->SckInterfaceInitialize(&environment.sockets);
        manager->Initialize(1, &environment.ip);
        AdvanceUntil(loop, 1000, [] { return Emulator::Instance().IsI3Ready(); });
        for (unsigned short vlan = 1; vlan <= VLANS; ++vlan) {
            DcRtmMgr::GetInstance()->CreateRTMInstance(vlan, DcRtmMgr::AFI_IPV4,
                                                       DcRtmMgr::RTMData());
            const std::string name = "veth" + std::to_string(vlan);
            const unsigned int ifIndex = if_nametoindex(name.c_str());
            DcInterfaceMgr::GetInstance()->AddInterface(
                vlan, ifIndex, name.c_str(), static_cast<DcInterfaceMgr::IntfType>(0), 0x18, 0, 1);
            DcInterfaceMgr::GetInstance()->AddIpAddress(
                vlan, ifIndex, Ip4Addr(10, 0, static_cast<unsigned char>(vlan), 1),
                Ip4Addr(255, 255, 255, 0));
        }
        AdvanceUntil(loop, 10000, [] { return Installed() == VLANS; });

        const Emulator::KernelFib::Counters before = fib->GetCounters();
        Emulator::Instance().Account().Enable(true, CLOCK_THREAD_CPUTIME_ID);
        const uint64_t cpuStart = ClockNs(CLOCK_PROCESS_CPUTIME_ID);
        for (unsigned short vlan = 1; vlan <= VLANS; ++vlan) {
            for (unsigned int i = 0; i < perVlan; ++i) {
                AddRoute(vlan, RouteOf(vlan, i), Ip4Addr(255, 255, 255, 0),
                         Ip4Addr(10, 0, static_cast<unsigned char>(vlan), 254), 0, 1, 0x30000, 1);
            }
        }
        const bool done = AdvanceUntil(loop, 36000000, [&] {
            return Installed() == VLANS * (perVlan + 1) && !Emulator::Instance().Fib().HasPending();
        });
        const double totalNs = static_cast<double>(ClockNs(CLOCK_PROCESS_CPUTIME_ID) - cpuStart);
        const Emulator::TimeAccount& account = Emulator::Instance().Account();
        const Emulator::KernelFib::Counters& after = fib->GetCounters();
        const double kernelNs = static_cast<double>(after.sendCpuNs - before.sendCpuNs);
        const double stackNs = static_cast<double>(account.StackNs()) - kernelNs;
        const double ipBatchNs = IpBatchNs(perVlan);
        const double perRoute = 1000.0 * routes;  // ns -> us per route
        state.counters["library_us"] = (totalNs - stackNs - kernelNs) / perRoute;
        state.counters["stack_us"] = stackNs / perRoute;
        state.counters["kernel_us"] = kernelNs / perRoute;
        state.counters["total_us"] = totalNs / perRoute;
        state.counters["ip_batch_us"] = ipBatchNs / perRoute;
        state.counters["ratio"] = ipBatchNs > 0 ? totalNs / ipBatchNs : 0;
        state.counters["written"] = static_cast<double>(after.written - before.written);
        state.counters["refused"] = static_cast<double>(after.refused - before.refused);
        state.counters["batches"] = static_cast<double>(after.batches - before.batches);
        state.counters["breaches"] = static_cast<double>(Emulator::BreachCount());
        if (!done) {
            state.SkipWithError("not every route was installed");
        }
    }
}

BENCHMARK(BM_KernelRoutes)->Arg(10000)->Arg(100000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
