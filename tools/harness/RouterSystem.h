// RouterSystem: the whole library as the application starts it, with the
// protocol routers and the embedded stack, on a virtual clock, for programs
// that drive it with generated input for a long time (the fuzzers and the
// churn run) without a test framework. The stack's descriptor is watched by
// the system's loop and served through DcRouterMgr::SocketCallback.
//
// The managers and the stack are process-wide, so one RouterSystem exists
// at a time: it starts them afresh when it is made and takes them down
// again when it goes, leaving the process as it found it.
#ifndef ZAVREL_TOOLS_ROUTERSYSTEM_H
#define ZAVREL_TOOLS_ROUTERSYSTEM_H

#include <cstddef>
#include <cstdint>
#include <string>

#include "harness/CountingTraceSink.h"
#include "harness/LoopSockets.h"
#include "platform/EventLoop.h"
#include "platform/VirtualEventLoop.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

class RouterSystem {
public:
    // What the library holds, from its own tables.
    struct Counters {
        size_t vlans = 0;         // VLANs of the router manager
        size_t cfgItems = 0;      // items held by the configuration scheduler
        size_t parkedItems = 0;   // of them, parked
        size_t waitingItems = 0;  // of them, waiting for their table instance
        size_t pendingRows = 0;   // rows with queued actions in the serializer
        size_t interfaces = 0;    // interfaces of the interface manager
        size_t rtmInstances = 0;  // VLANs with RTM data
        bool operator==(const Counters& other) const;
        bool operator!=(const Counters& other) const { return !(*this == other); }
        // "vlans 2 items 5 parked 0 waiting 1 rows 1 interfaces 3 rtm 2"
        std::string ToString() const;
    };

    // traceLevel: the highest trace level formatted (and counted).
    explicit RouterSystem(int traceLevel = 10);
    ~RouterSystem();
    RouterSystem(const RouterSystem&) = delete;
    RouterSystem& operator=(const RouterSystem&) = delete;

    // False when the manager could not be made or the stack did not start.
    bool IsStarted() const { return m_manager != nullptr; }
    DcRouterMgr& Manager() { return *m_manager; }
    VirtualEventLoop& Loop() { return m_loop; }
    const CountingTraceSink& Trace() const { return m_trace; }

    // Lets ms milliseconds pass on the virtual clock.
    void Run(uint64_t ms) { m_loop.Advance(ms); }
    // Loads text as an options document and applies it as the VLAN options
    // of source. False, with the loader's message in error, when the text
    // is not a document; nothing changes then.
    bool Reload(const std::string& text, const std::string& source, std::string& error);
    void Unload(const std::string& source);

    Counters Count();
    // Every row request the stack has had since the system started.
    static uint64_t StackRequests();

private:
    CountingTraceSink m_trace;
    VirtualEventLoop m_loop;
    LoopSockets m_sockets{m_loop};
    class AppInterface : public DcIpInterface {};
    AppInterface m_ip;
    TraceSink* m_previousTrace = nullptr;
    EventLoop* m_previousLoop = nullptr;
    DcRouterMgr* m_manager = nullptr;
};

}  // namespace Zavrel

#endif
