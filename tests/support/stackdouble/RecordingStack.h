// RecordingStack: a test double of the routing stack behind stackapi/.
//
// Every call the library makes on the stack is recorded, in order, as one line
// of text "function(arg, arg, ...)" (see the rendering rules below), unless
// recording is turned off, and answered with a scripted value. A test acts as
// the stack by calling the library's c* entry points itself, directly or from
// inside nbb_scheduler() through a hook, and answers table walks with rows and
// a closing code.
#ifndef ZAVREL_TESTS_RECORDINGSTACK_H
#define ZAVREL_TESTS_RECORDINGSTACK_H

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "stackapi/stackapi.h"

namespace Zavrel::test {

// Rendering of recorded calls:
//  - integers in decimal, signed ones with their sign;
//  - text arguments in double quotes ("eth0"), a null text as null;
//  - address pointers as address text: by family for sms_update_route and
//    sms_get_route_oid (1: dotted IPv4 of 4 bytes, otherwise canonical IPv6
//    of 16 bytes), by address type for sms_act_ipaddr and sms_set_i3_ea_oid
//    (1: IPv4, 2: IPv6; any other type is read as IPv4, 4 bytes); a null
//    pointer as null;
//  - an entity of sms_cipr_start as
//    {inst=5 rs=0 as=0 ospf_int=40 ospf_ext=110 ebgp=20 ibgp=200 rip=120 dead=60 af=1};
//  - a walk callback and its context are not rendered: a walk is recorded
//    as "sms_get_next_rtm_route(5)" with its starting instance only;
//  - an OID buffer argument is not rendered.
// Examples:
//   smsi_init("ripv2 ripng bgp ospf ospfv3 igmp pim")
//   nbb_scheduler()
//   sms_update_route(1, 1, 1, 1, 10.0.0.0, 24, 192.168.1.1, 196608, 0, 5, 1)
//   sms_act_interface(4, 1, 5, 100, "eth0", 0, 24, 0)
//   sms_act_ipaddr(1, 5, 1, 100, 10.0.0.1, 24)
//   sms_set_i3_ei_oid(5, 100)
//   sms_cipr_action(5, 2080)
class RecordingStack {
public:
    struct Walk {
        std::string table;  // "rtm_route", "rtm_rib", "i3_ei", "i3_ea"
        unsigned long instance;
        sms_walk_callback callback;
        void* context;
    };

    // The one double of the process (the C API has no object to hang it on).
    static RecordingStack& Instance();

    // Forgets every call, walk, script and hook, and restores the defaults.
    void Reset();

    // ---- recorded calls
    const std::vector<std::string>& Calls() const { return m_calls; }
    // The calls of one function, in order.
    std::vector<std::string> Calls(const std::string& function) const;
    // The calls that ask the stack to do something: all calls except the
    // pure OID builders (sms_*_oid), nbb_scheduler and nbb_get_ips_tracing.
    std::vector<std::string> Requests() const;
    void ClearCalls() { m_calls.clear(); }
    // Recording is on by default and after Reset. Off, every call is still
    // answered as described here (hooks, scripted results, OIDs, walks) but
    // neither recorded nor rendered as text: a benchmark turns it off so that
    // rendering the double's lines, which costs several times what the stack
    // itself spends on an OID, does not weigh on the library's figures.
    void SetRecording(bool on) { m_recording = on; }
    bool IsRecording() const { return m_recording; }
    void Record(std::string line) {
        if (m_recording) {
            m_calls.push_back(std::move(line));
        }
    }

    // ---- scripted answers
    // Result of every later call of the function (default 0 for every call,
    // except nbb_scheduler: -1). Two functions answer from the double's own
    // state until a result is set for them: the OID builders return the
    // length of the OID they wrote, nbb_get_ips_tracing returns ipsTracing.
    void SetResult(const std::string& function, long value) { m_results[function] = value; }
    long Result(const std::string& function) const;
    // Whether SetResult was called for the function since the last Reset.
    bool HasResult(const std::string& function) const;
    // Results of the next nbb_scheduler() calls, in order; once they are
    // used up the SetResult value (default -1) applies again.
    void QueueSchedulerResults(const std::vector<int>& results);
    int NextSchedulerResult();
    // Runs inside every later nbb_scheduler() call, before it returns: the
    // place where a test makes the stack's callbacks.
    void OnScheduler(std::function<void()> hook) { m_schedulerHook = std::move(hook); }
    void RunSchedulerHook();
    // Runs inside the next call of the named function (once), while the
    // call is being made: for callbacks the stack makes from inside a
    // request, such as cRescheduleNBase.
    void OnNextCall(const std::string& function, std::function<void()> hook);
    void RunCallHook(const std::string& function);

    // ---- walks
    // The walks requested and not yet answered to their end, oldest first.
    // Every walk request is kept, whatever result is scripted for it.
    std::deque<Walk>& PendingWalks() { return m_walks; }
    void AddWalk(Walk walk) { m_walks.push_back(walk); }
    // Hands one response to the oldest pending walk: calls its callback with
    // (context, 0, code, row) and returns what the callback returned. The
    // walk is dropped when the callback returns 0 in its low byte or when
    // code is not SMS_RC_ROW or SMS_RC_PASS_OVER. The walk is off the queue
    // while its callback runs, so the callback may start new walks (they
    // queue behind it). With no pending walk nothing is called and the
    // result is 0.
    unsigned char Answer(unsigned long code, const void* row);

    // ---- IPS tracing state (nbb_*)
    int ipsTracing = 0;                   // set by nbb_trips_control(on)
    std::vector<std::string> ipsFilters;  // "<filter or null>/<type>" per nbb_set_ips_filter
    // (Reset also sets the stack's global nbb_os_failures back to 0.)

    // ---- OIDs
    // The double builds deterministic OIDs, so tests can predict them:
    //   route:  1.3.6.1.4.1.4874.2 then instance, family, prefix length,
    //           the destination bytes (4 or 16 by family), the next-hop bytes,
    //           if_index
    //   redist: 1.3.6.1.4.1.4874.3 then instance, source, destination
    //   i3 ei:  1.3.6.1.4.1.4874.4 then instance, if_index
    //   i3 ea:  1.3.6.1.4.1.4874.5 then instance, if_index, address type,
    //           the address bytes (4 or 16 by type)
    // (written here with dots; each number is one component). A null address
    // gives zero bytes. The sms_*_oid functions write these into their buffer
    // and return the number of components.
    static std::vector<unsigned long> RouteOid(unsigned long instance, long family,
                                               const unsigned char* dest,
                                               unsigned long prefixLength,
                                               const unsigned char* nextHop, unsigned long ifIndex);
    static std::vector<unsigned long> RedistOid(unsigned long instance, long source, long dest);
    static std::vector<unsigned long> EiOid(unsigned long instance, unsigned long ifIndex);
    static std::vector<unsigned long> EaOid(unsigned long instance, unsigned long ifIndex,
                                            const unsigned char* address, unsigned long addrType);

private:
    RecordingStack() { Reset(); }

    std::vector<std::string> m_calls;
    std::map<std::string, long> m_results;
    std::deque<int> m_schedulerResults;
    std::function<void()> m_schedulerHook;
    std::map<std::string, std::function<void()>> m_callHooks;
    std::deque<Walk> m_walks;
    bool m_recording = true;
};

}  // namespace Zavrel::test

#endif
