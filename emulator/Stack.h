// Stack: the embedded routing stack behind stackapi/. It is cooperative and
// single-threaded like the stack it stands for: requests are accepted at any
// time and queued; the work, and every callback into the library (the c*
// entry points), happens only inside Run() (nbb_scheduler). The one
// exception is cRescheduleNBase, which the stack calls whenever it gets work
// while no run is pending.
//
// It holds real tables: RTM instances with their static routes,
// redistribution rows and RIBs, and the I3 interface and address tables; it
// makes the routing decisions (best candidate per destination, next-hop
// resolution over connected prefixes) and answers walks from them. Around
// that it counts requests and answers, checks the library's side of the
// contract, and injects faults on request.
#ifndef ZAVREL_EMULATOR_STACK_H
#define ZAVREL_EMULATOR_STACK_H

#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "emulator/ContractMonitor.h"
#include "emulator/EmulatorTypes.h"
#include "emulator/FaultPlan.h"
#include "emulator/FibSink.h"
#include "emulator/InterfaceTable.h"
#include "emulator/ManagementChannel.h"
#include "emulator/OidCodec.h"
#include "emulator/RtmInstance.h"
#include "emulator/TimeAccount.h"
#include "stackapi/stackapi.h"

namespace Zavrel::Emulator {

class Stack {
public:
    // Components smsi_init knows.
    static const char* const KNOWN_COMPONENTS[];
    // Second argument of the management channel's registration.
    static constexpr int CHANNEL_ARG = 0;

    Stack();
    ~Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;

    // Back to the state before smsi_init: tables, queues, counters, breaches
    // and faults are cleared and the channel is closed, without calling the
    // library. Not to be called from inside a callback of the stack.
    void Reset();

    // ---- N-BASE runtime
    int Init(const char* components);
    // One scheduler run; milliseconds to the next timed work (0: more work
    // is queued), or -1 when idle.
    int Run();
    bool IsInRun() const { return m_inRun; }

    // ---- management requests (the sms_* calls)
    unsigned long UpdateRoute(long rowStatus, long adminStatus, long family,
                              const unsigned char* destination, unsigned long prefixLength,
                              const unsigned char* nextHop, long pathType, unsigned long ifIndex,
                              unsigned long instance, unsigned long metric);
    unsigned long GetRouteOid(unsigned long* oid, unsigned long instance, long family,
                              const unsigned char* destination, unsigned long prefixLength,
                              const unsigned char* nextHop, unsigned long ifIndex);
    unsigned long UpdateInterface(long rowStatus, unsigned long operStatus, unsigned long instance,
                                  unsigned long ifIndex, const char* ifName, unsigned long reserved,
                                  long flags, unsigned long extra);
    unsigned long UpdateAddress(long rowStatus, unsigned long instance, unsigned long addrType,
                                unsigned long ifIndex, const unsigned char* address,
                                unsigned long prefixLength);
    unsigned long GetEiOid(unsigned long* oid, unsigned long instance, unsigned long ifIndex);
    unsigned long GetEaOid(unsigned long* oid, unsigned long instance, unsigned long ifIndex,
                           const unsigned char* address, unsigned long addrType);
    unsigned long UpdateRedistribution(long rowStatus, long adminStatus, long source,
                                       long destination, unsigned long instance,
                                       unsigned long reserved);
    unsigned long GetRedistOid(unsigned long* oid, unsigned long instance, long source,
                               long destination);
    unsigned long StartInstance(unsigned long instance, const amb_cipr_rtm_entity* entity);
    unsigned long InstanceAction(unsigned long instance, unsigned long action);
    unsigned long StartWalk(WalkTable table, unsigned long instance, sms_walk_callback callback,
                            void* context);

    // ---- IPS tracing state
    int IpsTracing() const { return m_ipsTracing ? 1 : 0; }
    void SetIpsFilter(const char* filter, unsigned short filterType);
    void TripsControl(int on) { m_ipsTracing = on != 0; }
    // The filter list of a filter type, "" when reset or never set.
    std::string IpsFilter(unsigned short filterType) const;

    // ---- control
    FaultPlan& Faults() { return m_faults; }
    // Time spent inside the stack, its callbacks excluded (off until enabled).
    TimeAccount& Account() { return m_account; }
    // Runs until the interface tables are reported ready (default 2: the
    // first run brings them up, the second reports them).
    void SetI3ReadyAfterRuns(unsigned int runs) { m_i3ReadyAfterRuns = runs == 0 ? 1 : runs; }
    // Whether smsi_init opens the management channel (default true). A
    // stack without it registers no descriptor with the application.
    void SetChannelEnabled(bool enabled) { m_channelEnabled = enabled; }
    // Called with every static-route request the stack answers, before the
    // library hears the answer (empty: nobody).
    void SetRouteObserver(std::function<void(const RouteAnswer&)> observer) {
        m_routeObserver = std::move(observer);
    }
    // Rows a walk delivers per run (0, the default: the whole table at once).
    void SetWalkRowsPerRun(unsigned int rows) { m_walkRowsPerRun = rows; }
    // A frozen stack accepts requests but does no work; its channel is
    // masked while frozen. Thawing asks for a run.
    void Freeze(bool frozen);
    bool IsFrozen() const { return m_frozen; }
    // Management work, carried out on the next run.
    void PostProtocolRoute(unsigned long instance, const ProtocolRoute& route, bool add);
    void CloseManagementChannel();

    // The forwarding table every RTM instance installs its routes into (by
    // default MemoryFib). A reset keeps the sink and forgets what it holds.
    void SetFibSink(std::unique_ptr<FibSink> sink);
    FibSink& Fib() { return *m_fib; }
    const FibSink& Fib() const { return *m_fib; }

    // ---- introspection
    bool IsStarted() const { return m_started; }
    const std::vector<std::string>& Components() const { return m_components; }
    bool IsI3Ready() const { return m_monitor.IsI3Ready(); }
    uint64_t Runs() const { return m_run; }
    size_t QueuedRequests() const { return m_queue.size(); }
    size_t ActiveWalks() const { return m_walks.size(); }
    size_t PendingManagementWork() const { return m_management.size(); }

    const std::map<unsigned long, std::unique_ptr<RtmInstance>>& Instances() const {
        return m_instances;
    }
    const RtmInstance* FindInstance(unsigned long id) const;
    const InterfaceTable& Interfaces() const { return m_interfaces; }
    // Brings every RIB up to date and commits the forwarding table (they are
    // otherwise refreshed at the end of each run).
    void RefreshRibs();

    const ContractMonitor& Monitor() const { return m_monitor; }
    uint64_t RequestCount(RequestKind kind) const { return m_requests[static_cast<size_t>(kind)]; }
    uint64_t AnswerCount(unsigned long result) const;
    uint64_t AnswerCount(RequestKind kind, unsigned long result) const;
    // Every result given so far with its count, over all row kinds.
    std::map<unsigned long, uint64_t> Answers() const;
    uint64_t WalkRowsDelivered() const { return m_walkRows; }
    // OIDs the library asked for (sms_*_oid calls).
    uint64_t OidQueries() const { return m_oidQueries; }
    uint64_t ChannelReads() const { return m_channelReads; }

    int ChannelFd() const { return m_channel.Fd(); }
    bool IsChannelRegistered() const { return m_channelRegistered; }
    unsigned int ChannelMask() const { return m_channelMask; }

    // Table dumps, one line per row, and the status text (StackStatus.cpp).
    std::string DumpInstances() const;
    std::string DumpStaticRoutes() const;
    std::string DumpRedistribution() const;
    std::string DumpRib() const;
    std::string DumpInterfaces() const;
    std::string DumpAddresses() const;
    std::string StatusText() const;
    // The same information as one JSON value each (StackJson.cpp).
    Json::Value TablesJson() const;
    Json::Value StatusJson() const;

    // The socket handler of the channel (InvokeCallback reaches it).
    static void OnChannelEvent(int fd, int events, void* context);

private:
    struct Work {
        RequestKind kind = RequestKind::Route;
        FaultDecision fault;
        Oid oid;
        long rowStatus = 0;
        long adminStatus = 0;
        long family = 1;
        unsigned char destination[16] = {};
        unsigned char nextHop[16] = {};
        bool nullAddress = false;
        unsigned long prefixLength = 0;
        long pathType = 0;
        unsigned long ifIndex = 0;
        unsigned long instance = 0;
        unsigned long metric = 0;
        unsigned long operStatus = 0;
        std::string name;
        unsigned long reserved = 0;
        long flags = 0;
        unsigned long extra = 0;
        unsigned long addrType = 0;
        long source = 0;
        long redistDestination = 0;
        unsigned long action = 0;  // instance work: 0 start, else the action code
        amb_cipr_rtm_entity entity = {};
        WalkTable table = WalkTable::RtmRoute;
        sms_walk_callback callback = nullptr;
        void* context = nullptr;
    };
    struct Walk {
        uint64_t id = 0;
        WalkTable table = WalkTable::RtmRoute;
        sms_walk_callback callback = nullptr;
        void* context = nullptr;
        unsigned long instance = 0;  // the instance the cursor is in
        bool hasKey = false;         // a row was delivered from the cursor's instance
        Rib::Key ribKey;
        InterfaceTable::EiKey eiKey;
        InterfaceTable::EaKey eaKey;
        // A walk cut short by the fault plan: after its first row it ends
        // with this code instead of going on (0: not cut).
        unsigned long cutCode = 0;
    };
    struct ManagementWork {
        unsigned long instance = 0;
        ProtocolRoute route;
        bool add = true;
    };

    // Every call into the library goes through here, for the time account.
    template <typename Call>
    auto CallLibrary(Call&& call) {
        TimeAccount::Scope scope(m_account, false);
        return call();
    }

    // Accepting requests (Stack.cpp).
    void Accept(Work work);
    void CheckRow(RequestKind kind, const Oid& oid, const std::string& row);
    // Counts an OID query, lets the monitor know the OID was handed out and
    // writes it to oid; returns its length.
    unsigned long GiveOid(const Oid& value, unsigned long* oid);
    void AskForRun();

    // Runs (StackRun.cpp).
    void StartupStep();
    void UpdateChannel();
    void ProcessDue();
    void Process(Work& work);
    void ProcessRoute(Work& work);
    void ProcessRedistribution(Work& work);
    void ProcessInterface(Work& work);
    void ProcessAddress(Work& work);
    void ProcessInstance(Work& work);
    void ApplyManagementWork();
    void FinishRow(const Work& work, unsigned long result);
    void MarkInterfacesChanged(unsigned long instance);
    bool HasPendingWork() const;
    void OnChannelReadable();

    // Walks (StackWalks.cpp).
    void ProcessWalks();
    // Delivers up to limit rows (0: all); true when the walk is over.
    bool Deliver(Walk& walk, unsigned int limit);
    bool NextRtmRow(Walk& walk, bool fibOnly, const RibEntry*& entry);
    void FillRoute(const RibEntry& entry, unsigned long instance, amb_cipr_rtm_route& row) const;
    unsigned long AgeOf(uint64_t sinceMs) const;

    RtmInstance* Instance(unsigned long id);
    uint64_t NowMs() const;

    bool m_started = false;
    std::vector<std::string> m_components;
    bool m_inRun = false;
    uint64_t m_run = 0;       // runs started so far
    uint64_t m_startRun = 0;  // the run count when smsi_init came
    unsigned int m_i3ReadyAfterRuns = 2;
    unsigned int m_walkRowsPerRun = 0;
    std::function<void(const RouteAnswer&)> m_routeObserver;
    bool m_frozen = false;

    uint64_t m_sequence = 0;
    std::map<std::pair<uint64_t, uint64_t>, Work> m_queue;  // (due run, sequence)
    std::list<Walk> m_walks;
    uint64_t m_walkIds = 0;
    std::vector<ManagementWork> m_management;

    std::map<unsigned long, std::unique_ptr<RtmInstance>> m_instances;
    InterfaceTable m_interfaces;
    std::unique_ptr<FibSink> m_fib = std::make_unique<MemoryFib>();

    FaultPlan m_faults;
    ContractMonitor m_monitor;
    uint64_t m_requests[REQUEST_KIND_COUNT] = {};
    std::map<unsigned long, uint64_t> m_answers[REQUEST_KIND_COUNT];
    uint64_t m_walkRows = 0;
    uint64_t m_oidQueries = 0;
    uint64_t m_channelReads = 0;

    TimeAccount m_account;
    ManagementChannel m_channel;
    bool m_channelRegistered = false;
    unsigned int m_channelMask = 0;
    bool m_closeChannel = false;
    bool m_channelEnabled = true;

    bool m_ipsTracing = false;
    std::map<unsigned short, std::string> m_ipsFilters;
};

}  // namespace Zavrel::Emulator

#endif
