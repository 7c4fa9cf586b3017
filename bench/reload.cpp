// Configuration reload of the whole VLAN range.
//
// Options with 4094 VLANs, each with an "RTM" section and a section for each
// of the seven protocol routers:
//  - BM_ParseOptions: reading the options text into a document;
//  - BM_FirstLoad: the first Reload, which creates every VLAN with its RTM
//    instances and routers, from a document read for the first time;
//  - BM_SecondLoad: a Reload of the same options again, which must make no
//    stack call.
// The stack is the recording double; its records are cleared outside the
// timed regions. The loads are timed on the thread's CPU clock:
// median_ms is the median over the iterations of a run, and the second
// load also gives its median as a share of the first load's
// (second_to_first) when both ran in the same run.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>

#include "bench/Medians.h"
#include "config/DclConfigObject.h"
#include "platform/Options.h"
#include "platform/StrictJson.h"
#include "platform/String.h"
#include "routing/DcRouterMgr.h"
#include "support/stackdouble/RecordingStack.h"

namespace {

using Zavrel::DclConfigObject;
using Zavrel::DcRouterMgr;
using Zavrel::Options;
using Zavrel::bench::Rounds;
using Zavrel::bench::ThreadCpuSeconds;
using Zavrel::test::RecordingStack;

// The median of the first loads of this run, in milliseconds; 0 until
// BM_FirstLoad has run.
double g_first_load_ms = 0;

const unsigned int FIRST_VID = 1;
const unsigned int LAST_VID = 4094;
const char SOURCE[] = "vlans.json";

// The options of one VLAN: its RTM settings and one section per router,
// with the routers running, redistribution profiles and OSPF areas.
void AppendVlan(std::string& text, unsigned int vid) {
    char buffer[2048];
    std::snprintf(buffer, sizeof(buffer),
                  "{\"vid\": %u,"
                  " \"RTM\": {\"dead_rpm_timer\": 90,"
                  " \"ADMIN_DISTANCE\": {\"ospfv2_internal\": 30, \"ospfv2_external\": 100,"
                  " \"ospfv3_internal\": 30, \"ospfv3_external\": 100, \"ripv2\": 120,"
                  " \"ripng\": 120, \"ebgp\": 20, \"ibgp\": 200}},"
                  " \"BGP\": {\"enabled\": true, \"REDISTRIBUTION\": {\"static\": true,"
                  " \"connected\": true, \"rip\": false, \"ospf\": true, \"bgp\": false}},"
                  " \"OSPFV2\": {\"enabled\": true, \"REDISTRIBUTION\": {\"bgp\": false},"
                  " \"AREAS\": [{\"area\": 0, \"stub\": 0, \"interfaces\": [100, 101]},"
                  " {\"area\": 1, \"stub\": 1, \"interfaces\": [102]}]},"
                  " \"OSPFV3\": {\"enabled\": true,"
                  " \"AREAS\": [{\"area\": 0, \"stub\": 0, \"interfaces\": [100]}]},"
                  " \"RIPV2\": {\"enabled\": true, \"REDISTRIBUTION\": {\"connected\": false}},"
                  " \"RIPNG\": {\"enabled\": true},"
                  " \"IGMP\": {\"enabled\": true},"
                  " \"MLD\": {\"enabled\": false}}",
                  vid);
    text += buffer;
}

const std::string& OptionsText() {
    static const std::string text = [] {
        std::string t = "{\"VLAN_CONFIGURATIONS\": [";
        for (unsigned int vid = FIRST_VID; vid <= LAST_VID; ++vid) {
            if (vid != FIRST_VID) {
                t += ",";
            }
            AppendVlan(t, vid);
        }
        t += "]}";
        return t;
    }();
    return text;
}

const Options& LoadedOptions() {
    static const Options options = [] {
        Options o;
        if (!o.LoadFromText(Zavrel::string(OptionsText()))) {
            std::fprintf(stderr, "options: %s\n", o.Error().c_str());
        }
        return o;
    }();
    return options;
}

void BM_ParseOptions(benchmark::State& state) {
    const Zavrel::string text(OptionsText());
    for (auto _ : state) {
        Options options;
        bool loaded = options.LoadFromText(text);
        benchmark::DoNotOptimize(loaded);
    }
    state.counters["vlans"] = LAST_VID - FIRST_VID + 1;
}
BENCHMARK(BM_ParseOptions)->Unit(benchmark::kMillisecond);

// The grammar check alone, which BM_ParseOptions includes: what the check
// adds to a load is this over (BM_ParseOptions - BM_GrammarCheck).
void BM_GrammarCheck(benchmark::State& state) {
    const std::string& text = OptionsText();
    for (auto _ : state) {
        size_t offset = 0;
        std::string message;
        bool valid = Zavrel::StrictJson::Check(text.data(), text.size(), offset, message);
        benchmark::DoNotOptimize(valid);
    }
    state.counters["bytes"] = static_cast<double>(text.size());
}
BENCHMARK(BM_GrammarCheck)->Unit(benchmark::kMillisecond);

void BM_FirstLoad(benchmark::State& state) {
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    const Options& options = LoadedOptions();
    RecordingStack& stack = RecordingStack::Instance();
    size_t requests = 0;
    std::unique_ptr<Options> fresh;
    Rounds ms;
    for (auto _ : state) {
        // Every round reads a document nobody has read yet, as a first load
        // does.
        state.PauseTiming();
        fresh.reset(new Options(options));
        state.ResumeTiming();

        const double start = ThreadCpuSeconds();
        mgr->Reload(*fresh, SOURCE, DclConfigObject::OPTION_TYPE_VLAN);
        const double elapsed = ThreadCpuSeconds() - start;
        state.SetIterationTime(elapsed);
        ms.Add(elapsed * 1e3);

        state.PauseTiming();
        requests = stack.Requests().size();
        // Back to no VLAN for the next round.
        mgr->DeleteOptions(SOURCE, DclConfigObject::OPTION_TYPE_VLAN);
        mgr->GetSerializer().Reset();
        stack.ClearCalls();
        fresh.reset();
        state.ResumeTiming();
    }
    g_first_load_ms = ms.Median();
    state.counters["vlans"] = static_cast<double>(LAST_VID - FIRST_VID + 1);
    state.counters["stack_requests"] = static_cast<double>(requests);
    state.counters["median_ms"] = ms.Median();
}
BENCHMARK(BM_FirstLoad)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);

void BM_SecondLoad(benchmark::State& state) {
    DcRouterMgr* mgr = DcRouterMgr::GetInstance();
    const Options& options = LoadedOptions();
    RecordingStack& stack = RecordingStack::Instance();
    mgr->Reload(options, SOURCE, DclConfigObject::OPTION_TYPE_VLAN);
    stack.ClearCalls();
    Rounds ms;
    for (auto _ : state) {
        const double start = ThreadCpuSeconds();
        mgr->Reload(options, SOURCE, DclConfigObject::OPTION_TYPE_VLAN);
        const double elapsed = ThreadCpuSeconds() - start;
        state.SetIterationTime(elapsed);
        ms.Add(elapsed * 1e3);
    }
    if (!stack.Calls().empty()) {
        state.SkipWithError(("the second load called the stack: " + stack.Calls().front()).c_str());
    }
    state.counters["vlans"] = static_cast<double>(mgr->GetVlans().size());
    state.counters["stack_calls"] = static_cast<double>(stack.Calls().size());
    state.counters["median_ms"] = ms.Median();
    if (g_first_load_ms > 0) {
        state.counters["second_to_first"] = ms.Median() / g_first_load_ms;
    }
    mgr->DeleteOptions(SOURCE, DclConfigObject::OPTION_TYPE_VLAN);
    mgr->GetSerializer().Reset();
    stack.ClearCalls();
}
BENCHMARK(BM_SecondLoad)->UseManualTime()->Iterations(15)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
