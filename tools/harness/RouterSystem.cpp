// RouterSystem: the library, the protocol routers and the embedded stack
// started together on a virtual clock.
#include "harness/RouterSystem.h"

#include "cfg/CfgSched.h"
#include "config/DclConfigObject.h"
#include "emulator/Emulator.h"
#include "interfaces/DcInterfaceMgr.h"
#include "mib/Serializer.h"
#include "platform/Options.h"
#include "protocols/RegisterProtocols.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

bool RouterSystem::Counters::operator==(const Counters& other) const {
    return vlans == other.vlans && cfgItems == other.cfgItems && parkedItems == other.parkedItems &&
           waitingItems == other.waitingItems && pendingRows == other.pendingRows &&
           interfaces == other.interfaces && rtmInstances == other.rtmInstances;
}

std::string RouterSystem::Counters::ToString() const {
    return "vlans " + std::to_string(vlans) + " items " + std::to_string(cfgItems) + " parked " +
           std::to_string(parkedItems) + " waiting " + std::to_string(waitingItems) + " rows " +
           std::to_string(pendingRows) + " interfaces " + std::to_string(interfaces) + " rtm " +
           std::to_string(rtmInstances);
}

RouterSystem::RouterSystem(int traceLevel) : m_trace(traceLevel) {
    // The protocol routers enter the library's registry once per process,
    // with the first system.
    static const bool registered = [] {
        RegisterProtocols();
        return true;
    }();
    (void)registered;
    m_previousTrace = SetTraceSink(&m_trace);
    m_previousLoop = EventLoop::SetCurrent(&m_loop);
    DcRouterMgr::ResetForTests();
    Emulator::Reset();
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return;
    }
    manager->SckInterfaceInitialize(&m_sockets);
    if (manager->Initialize(1, &m_ip) != 0) {
        return;
    }
    m_manager = manager;
}

RouterSystem::~RouterSystem() {
    // The managers go first, while the loop they armed timers on exists.
    DcRouterMgr::ResetForTests();
    Emulator::Reset();
    EventLoop::SetCurrent(m_previousLoop);
    SetTraceSink(m_previousTrace);
}

bool RouterSystem::Reload(const std::string& text, const std::string& source, std::string& error) {
    Options options;
    if (!options.LoadFromText(text.data(), text.size())) {
        error = options.Error().c_str();
        return false;
    }
    error.clear();
    return m_manager->Reload(options, string(source.c_str()), DclConfigObject::OPTION_TYPE_VLAN);
}

void RouterSystem::Unload(const std::string& source) {
    m_manager->DeleteOptions(string(source.c_str()), DclConfigObject::OPTION_TYPE_VLAN);
}

RouterSystem::Counters RouterSystem::Count() {
    Counters counters;
    for (const auto& entry : m_manager->GetVlans()) {
        if (entry.second != nullptr) {
            ++counters.vlans;
        }
    }
    for (CfgItem* item : m_manager->GetCfgSched().AllItems()) {
        ++counters.cfgItems;
        if (item->IsParked()) {
            ++counters.parkedItems;
        }
        if (!item->IsIssued() && !item->CfgListReady()) {
            ++counters.waitingItems;
        }
    }
    counters.pendingRows = m_manager->GetSerializer().PendingOidCount();
    if (DcInterfaceMgr* interfaces = DcInterfaceMgr::GetInstance()) {
        counters.interfaces = interfaces->InterfaceCount();
    }
    if (DcRtmMgr* rtm = DcRtmMgr::GetInstance()) {
        counters.rtmInstances = rtm->RtmDataCount();
    }
    return counters;
}

uint64_t RouterSystem::StackRequests() {
    uint64_t total = 0;
    for (size_t kind = 0; kind < Emulator::REQUEST_KIND_COUNT; ++kind) {
        total += Emulator::RequestCount(static_cast<Emulator::RequestKind>(kind));
    }
    return total;
}

}  // namespace Zavrel
