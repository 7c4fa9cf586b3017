// LibrarySide: a test double of the library's side of the stack's C API.
//
// It implements every c* entry point of stackapi/stackapi.h: each call is
// recorded, in order, as one line of text "function(arg, arg, ...)" and
// answered from a script, so that a stack (the emulator) can be tested
// without the library. A test drives the stack's scheduler through
// RunScheduler(), which behaves like the library's scheduler timer: it
// clears the early-run flag that cRescheduleNBase sets, then calls
// nbb_scheduler().
//
// Rendering of recorded calls:
//  - integers in decimal;
//  - route addresses of cSetRouteState as address text by family (1: dotted
//    IPv4 of 4 bytes, otherwise canonical IPv6 of 16 bytes), null as null;
//  - the OID of cRunPendingAction as its components joined by ":";
//  - the entity pointer of cGetRtmConfig and the buffers of cGetAddress and
//    cGetVlanAddress are not rendered.
// Examples:
//   cRescheduleNBase()
//   cRegisterWorkWithEventloop(7, 0, 1)
//   cSetRouteState(5, 1, 10.0.0.0, 24, 192.168.1.1, 0, 1, 196608, 1, 1, 0, 1)
//   cSetRedistState(1, 1, 196608, 524288, 0, 5, 0, 1)
//   cRunPendingAction(1:3:6:1:4:1:47810:7:3:5:100)
//   cGetRtmConfig(5)
#ifndef ZAVREL_TESTS_LIBRARYSIDE_H
#define ZAVREL_TESTS_LIBRARYSIDE_H

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "stackapi/stackapi.h"

namespace Zavrel::test {

class LibrarySide {
public:
    // One walk as the test follows it: pass a probe as the walk's context
    // and LibrarySide::WalkCallback as its callback.
    struct WalkProbe {
        // How rows are rendered: "rtm_route", "rtm_rib", "i3_ei" or "i3_ea".
        std::string table;
        // One line per callback: "<code>" or "<code> <row text>".
        std::vector<std::string> lines;
        // Returned for a row (code SMS_RC_ROW) unless stopAfterRows says 0.
        unsigned char answer = 1;
        // Return 0 once this many rows have come (-1: never).
        int stopAfterRows = -1;
        // When set, decides the value returned (after the line is recorded).
        std::function<unsigned char(unsigned long code, const void* row)> hook;
        size_t rows = 0;
        bool ended = false;  // a code other than SMS_RC_ROW came

        explicit WalkProbe(std::string tableName = "rtm_route") : table(std::move(tableName)) {}
        // The rows' texts only.
        std::vector<std::string> Rows() const;
    };

    struct RouteState {
        unsigned long instance;
        int family;
        std::string destination;
        unsigned int prefixLength;
        std::string nextHop;
        unsigned int ifIndex;
        int metric;
        int routeType;
        int rowStatus;
        int adminStatus;
        unsigned long spare;
        unsigned int result;
    };

    static LibrarySide& Instance();

    // Forgets every call, script and hook, and restores the defaults.
    void Reset();

    // ---- recorded calls
    const std::vector<std::string>& Calls() const { return m_calls; }
    // The calls of one function, in order.
    std::vector<std::string> Calls(const std::string& function) const;
    // The calls that tell the library something: all but the pure queries
    // (cIsNBaseRescheduled, cIsIpv6Instance, cGetIp6Instance, cGetIp4Instance,
    // cIsRtmReady).
    std::vector<std::string> Callbacks() const;
    void ClearCalls() { m_calls.clear(); }
    void Record(const std::string& function, const std::string& arguments);

    // ---- scheduling
    // The early-run flag as the library keeps it: set by cRescheduleNBase,
    // cleared by RunScheduler.
    bool rescheduled = false;
    // Answer of cIsNBaseRescheduled: -1 (default) follows the flag.
    int rescheduledAnswer = -1;
    size_t rescheduleCount = 0;
    // True while RunScheduler is inside nbb_scheduler().
    bool inRun = false;
    // Calls made outside nbb_scheduler() other than cRescheduleNBase and
    // cIsNBaseRescheduled, which a stack must not make.
    std::vector<std::string> callsOutsideRun;
    // Clears the flag, runs nbb_scheduler() once and returns its result.
    int RunScheduler();
    // Runs the scheduler until it is idle (-1) with no early run asked for,
    // at most maxRuns times; returns the number of runs made.
    int RunUntilIdle(int maxRuns = 100);

    // ---- RTM instances
    // cGetRtmConfig answers 1 with this entity for the instance.
    void SetRtmConfig(unsigned long instance, const amb_cipr_rtm_entity& entity);
    // cGetRtmConfig answers 2 for the instance.
    void SetRtmConfigUnknown(unsigned long instance);
    // Answer for instances without a script: 1 (default) with
    // DefaultRtmConfig, or 2.
    int defaultRtmConfigResult = 1;
    // The settings the library answers by default (dead timer 60, OSPF 40
    // and 110, eBGP 200, iBGP 20, RIP 120, row and admin status 1).
    static amb_cipr_rtm_entity DefaultRtmConfig(unsigned long instance);
    // What cGetRtmConfig answers for the instance (fills entity when 1).
    int AnswerRtmConfig(unsigned long instance, amb_cipr_rtm_entity* entity) const;
    // Instances reported by cSetRtmReady.
    std::set<unsigned long> readyInstances;

    // ---- other answers
    int i3ReadyResult = 0;
    // Addresses for cGetAddress / cGetVlanAddress, by instance (absent: 0).
    std::map<unsigned long, std::vector<unsigned char>> addresses;
    std::map<unsigned long, std::vector<unsigned char>> vlanAddresses;

    // ---- what the stack reported
    std::vector<RouteState> routeStates;
    std::vector<std::vector<unsigned long>> redistStates;   // a0..a7
    std::vector<std::vector<unsigned long>> completedOids;  // cRunPendingAction
    // fd -> (arg, mask) of the descriptors registered and not unregistered.
    std::map<int, std::pair<int, unsigned int>> registered;

    // ---- hooks, run after the call is recorded and before it answers
    void OnCall(const std::string& function, std::function<void()> hook);      // every call
    void OnNextCall(const std::string& function, std::function<void()> hook);  // once
    void RunHooks(const std::string& function);

    // ---- walks
    static unsigned char WalkCallback(void* context, unsigned long first, unsigned long code,
                                      void* row);

    // ---- text forms
    static std::string AddressText(int family, const unsigned char* bytes);
    static std::string OidText(const unsigned long* oid, unsigned long length);
    // "5 10.0.0.0/24 via 192.168.1.1 if 100 type 4 proto 3 age 0 metric 1"
    static std::string RouteRowText(const amb_cipr_rtm_route& row);
    // the route text, then " fib 1 unresolved 0"
    static std::string RibRowText(const amb_cipr_rtm_rib& row);
    // "5 100 eth0 oper 1 mtu 1500 flags 24 extra 0"
    static std::string EiRowText(const amb_stubs_i3_ei& row);
    // "5 100 type 1 10.0.0.1/24"
    static std::string EaRowText(const amb_stubs_i3_ea& row);

private:
    LibrarySide() { Reset(); }

    std::vector<std::string> m_calls;
    std::map<unsigned long, amb_cipr_rtm_entity> m_rtmConfigs;
    std::set<unsigned long> m_unknownRtm;
    std::map<std::string, std::vector<std::function<void()>>> m_hooks;
    std::map<std::string, std::vector<std::function<void()>>> m_onceHooks;
};

}  // namespace Zavrel::test

#endif
