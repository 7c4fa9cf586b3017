// DcRouterMgr: instance, VLAN lifecycle, events and the stack bridge.
#include "routing/DcRouterMgr.h"

#include <new>

#include "console/DcConsoleCommand.h"
#include "interfaces/DcInterfaceMgr.h"
#include "platform/AllocationFaults.h"
#include "platform/BitCount.h"
#include "platform/SocketCallback.h"
#include "platform/Trace.h"
#include "routing/DcMulticastRouterBase.h"
#include "routing/DcRipngRouter.h"
#include "routing/DcRipv2Router.h"
#include "routing/DcRouterBase.h"
#include "routing/ProtocolRegistry.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

namespace {

// Names of the routers in messages, indexed by ProtocolType.
const char* const rtrs[DcRouterMgr::PROTOCOL_COUNT] = {"BGP4+", "OSPFv2", "OSPFv3", "RIPv2",
                                                       "RIPng", "IGMP",   "MLD"};

bool IsValidType(int type) {
    return type >= 0 && type < DcRouterMgr::PROTOCOL_COUNT;
}

// The routers that the protocol libraries provide.
const DcRouterMgr::ProtocolType registeredRouters[] = {DcRouterMgr::BGP, DcRouterMgr::OSPFv2,
                                                       DcRouterMgr::OSPFv3, DcRouterMgr::IGMP,
                                                       DcRouterMgr::MLD};

// True when every router a VLAN needs from the protocol libraries has its
// constructor registered; each one missing is named.
bool RoutersRegistered() {
    bool complete = true;
    for (DcRouterMgr::ProtocolType type : registeredRouters) {
        if (ProtocolRegistry::Router(type) == nullptr) {
            TRACE(0, "No %s router is registered\n", DcRouterMgr::RouterName(type));
            complete = false;
        }
    }
    return complete;
}

// The router of a type that a protocol library provides, made through the
// constructor it registered (checked by RoutersRegistered); null when it
// could not be allocated.
DcRouterBase* MakeRegisteredRouter(DcRouterMgr::ProtocolType type, unsigned short vid) {
    return ProtocolRegistry::Router(type)(vid);
}

}  // namespace

DcRouterMgr* DcRouterMgr::m_instance = nullptr;

DcRouterIteratorFunc::~DcRouterIteratorFunc() = default;

DcRouterMgr::VlanRouters::~VlanRouters() {
    for (auto& entry : routers) {
        delete entry.second;
    }
}

DcRouterMgr* DcRouterMgr::GetInstance() {
    if (m_instance == nullptr) {
        TRACE(10, "Creating new Instance of Manager\n");
        // The constructor is private: the fault hook is asked here.
        m_instance = AllocationFaults::ShouldFail("DcRouterMgr") ? nullptr
                                                                 : new (std::nothrow) DcRouterMgr();
        if (m_instance == nullptr) {
            TRACE(0, "Error in allocating DcRouterMgr\n");
        }
    }
    return m_instance;
}

int DcRouterMgr::ResetForTests() {
    int existed = 0;
    if (DcInterfaceMgr::DestroyInstance()) {
        ++existed;
    }
    if (m_instance != nullptr) {
        // m_instance stays set while the destructor runs, so that anything a
        // router does on its way out finds this manager, not a new one.
        delete m_instance;
        m_instance = nullptr;
        ++existed;
    }
    if (DcRtmMgr::DestroyInstance()) {
        ++existed;
    }
    DcRouterBase::Initialize(nullptr);
    DcRouterBase::SocketInitialize(nullptr);
    DcConsoleCommand::m_default_vlan = 0;
    return existed;
}

DcRouterMgr::DcRouterMgr() : m_vlan_section("VLAN_CONFIGURATIONS") {
    TRACE(10, "Creating DcRouterMgr\n");
    RegisterConsoleHandlers();
}

DcRouterMgr::~DcRouterMgr() {
    for (auto& entry : m_vlans) {
        delete entry.second;
    }
}

int DcRouterMgr::Initialize(unsigned short vid, DcIpInterface* ip) {
    TRACE(10, "Initializing Manager\n");
    DcRouterBase::Initialize(ip);
    DcConsoleCommand::m_default_vlan = vid;
    return m_scheduler.init();
}

void DcRouterMgr::SckInterfaceInitialize(DcSckInterface* sck) {
    TRACE(10, "Initializing SckDescriptor\n");
    DcRouterBase::SocketInitialize(sck);
}

const char* DcRouterMgr::RouterName(ProtocolType type) {
    if (!IsValidType(type)) {
        return "";
    }
    return rtrs[type];
}

unsigned int DcRouterMgr::bitcount(Ip4Addr mask) {
    return BitCount(mask.HostOrder());
}

std::pair<DcRouterMgr::VlanMap::iterator, bool> DcRouterMgr::CreateVlan(
    unsigned short vid, const OptionsNode& node, DclConfigObject::OptionType type) {
    TRACE(10, "Creating VLAN %u\n", vid);
    if (!RoutersRegistered()) {
        return std::make_pair(m_vlans.end(), false);
    }
    VlanRouters* record = NewOrNull<VlanRouters>("VlanRouters");
    if (record == nullptr) {
        return std::make_pair(m_vlans.end(), false);
    }
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr || !rtm->UpdateRtmConfig(vid, node, type)) {
        delete record;
        return std::make_pair(m_vlans.end(), false);
    }

    std::map<ProtocolType, DcRouterBase*>& routers = record->routers;
    routers[BGP] = MakeRegisteredRouter(BGP, vid);
    routers[OSPFv2] = MakeRegisteredRouter(OSPFv2, vid);
    routers[OSPFv3] = MakeRegisteredRouter(OSPFv3, vid);
    routers[RIPv2] = NewOrNull<DcRipv2Router>("DcRipv2Router", vid);
    routers[RIPng] = NewOrNull<DcRipngRouter>("DcRipngRouter", vid);
    routers[IGMP] = MakeRegisteredRouter(IGMP, vid);
    routers[MLD] = MakeRegisteredRouter(MLD, vid);

    for (const auto& entry : routers) {
        if (entry.second == nullptr) {
            TRACE(0, "Memory allocation failed for %s router\n", RouterName(entry.first));
            // Roll back: the record's destructor deletes the routers that
            // were allocated.
            rtm->DeleteRtmConfig(vid);
            delete record;
            return std::make_pair(m_vlans.end(), false);
        }
    }

    std::pair<VlanMap::iterator, bool> result = m_vlans.insert(std::make_pair(vid, record));
    if (!result.second) {
        if (result.first->second == nullptr) {
            // The VLAN was only known from an interface status change that
            // came before it was created: the new record takes its place.
            result.first->second = record;
            result.second = true;
        } else {
            // The VLAN exists; its record stays and the new one goes.
            delete record;
        }
    }
    return result;
}

void DcRouterMgr::DeleteVlan(unsigned short vid) {
    TRACE(10, "Deleting VLAN %u\n", vid);
    VlanMap::iterator it = m_vlans.find(vid);
    if (it == m_vlans.end()) {
        TRACE(1, "Trying to delete VLAN %u which does not exist\n", vid);
        return;
    }
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm != nullptr) {
        rtm->DeleteRtmConfig(vid);
    }
    VlanRouters* record = it->second;
    if (record != nullptr) {
        while (!record->routers.empty()) {
            auto first = record->routers.begin();
            delete first->second;
            record->routers.erase(first);
        }
    }
    TRACE(10, "Deleting the Routers Map\n");
    m_vlans.erase(it);
    delete record;
    TRACE(10, "Deleted VLAN %u\n", vid);
}

void DcRouterMgr::JoinNetwork(unsigned short vid, unsigned int ifIndex, bool flag) {
    VlanMap::iterator it = m_vlans.find(vid);
    if (it == m_vlans.end() || it->second == nullptr) {
        TRACE("Connected remote to inet with VLAN %u before loading VLAN options... Skipping\n",
              vid);
        return;
    }
    auto rit = it->second->routers.find(IGMP);
    DcMulticastRouterBase* igmp = nullptr;
    if (rit != it->second->routers.end()) {
        igmp = dynamic_cast<DcMulticastRouterBase*>(rit->second);
    }
    if (igmp == nullptr) {
        TRACE("Cannot find IGMP router\n");
        return;
    }
    if (!igmp->IsEnabled()) {
        return;
    }
    if (igmp->IsEnabled(ifIndex)) {
        igmp->ConfigureInterface(ifIndex, false);
    } else {
        igmp->AddInterface(ifIndex, flag);
    }
}

void DcRouterMgr::LeaveNetwork(unsigned short vid, unsigned int ifIndex) {
    (void)ifIndex;
    VlanMap::iterator it = m_vlans.find(vid);
    if (it == m_vlans.end() || it->second == nullptr) {
        TRACE("Connected remote to inet with VLAN %u before loading VLAN options... Skipping\n",
              vid);
        return;
    }
    auto rit = it->second->routers.find(IGMP);
    if (rit == it->second->routers.end() || rit->second == nullptr) {
        TRACE("Cannot find IGMP router\n");
        return;
    }
    // Leaving a network leaves the multicast interface configured: the
    // router is only asked whether it runs.
    (void)rit->second->IsEnabled();
}

void DcRouterMgr::ProcessIPAddressChange(unsigned short vid, unsigned int ifIndex,
                                         const Ip4Addr& addr) {
    TRACE(10, "Updating IP Address Change to Interface %u\n", ifIndex);
    VlanMap::iterator it = m_vlans.find(vid);
    if (it == m_vlans.end() || it->second == nullptr) {
        return;
    }
    for (auto& entry : it->second->routers) {
        entry.second->ProcessIPAddressChange(ifIndex, addr);
    }
}

void DcRouterMgr::ProcessInterfaceStatusChange(unsigned short vid, unsigned int ifIndex,
                                               unsigned short status) {
    TRACE(10, "Updating Interface Status of Interface %u\n", ifIndex);
    // An unknown VLAN is entered with a null record, which is not walked.
    VlanRouters* record = m_vlans[vid];
    if (record == nullptr) {
        return;
    }
    for (auto& entry : record->routers) {
        entry.second->ProcessInterfaceStatusChange(ifIndex, status);
    }
}

DcRouterBase* DcRouterMgr::GetDcRouterByVID(unsigned short vid, ProtocolType type) {
    VlanMap::iterator it = m_vlans.find(vid);
    if (it == m_vlans.end() || it->second == nullptr) {
        return nullptr;
    }
    auto rit = it->second->routers.find(type);
    if (rit == it->second->routers.end()) {
        return nullptr;
    }
    return rit->second;
}

DcRouterBase* DcRouterMgr::GetDcRouterByInstanceID(unsigned int instanceId, ProtocolType type) {
    if (!IsValidType(type)) {
        TRACE(10, "Invalid protocol type\n");
        return nullptr;
    }
    DcRtmMgr::GetInstance();
    unsigned short vid = static_cast<unsigned short>(
        instanceId & ~static_cast<unsigned int>(DcRtmMgr::IP6_INSTANCE_BIT) & 0xFFFFu);
    return GetDcRouterByVID(vid, type);
}

void DcRouterMgr::ForEachDcRouter(DcRouterIteratorFunc* f, ProtocolType type) {
    if (f == nullptr) {
        return;
    }
    for (auto& vlan : m_vlans) {
        if (vlan.second == nullptr) {
            continue;
        }
        auto rit = vlan.second->routers.find(type);
        if (rit != vlan.second->routers.end()) {
            (*f)(rit->second);
        }
    }
}

void DcRouterMgr::SetFiledescriptors(int fd, int arg, int kind) {
    DcRouterBase::SetSckDescriptor(fd, kind, arg);
}

void DcRouterMgr::RemoveFiledescriptors(int fd, int arg) {
    DcRouterBase::RemoveSckDescriptor(fd, arg);
}

void DcRouterMgr::ChangeMask(int fd, int kind) {
    DcRouterBase::ChangeWorkMask(fd, kind);
}

void DcRouterMgr::SocketCallback(int fd, int events) {
    InvokeCallback(fd, events);
}

bool DcRouterMgr::GetIPSTracing() const {
    nbb_os_failures = 0;
    return nbb_get_ips_tracing() != 0;
}

void DcRouterMgr::SetIPSFilter(char* filter, unsigned short value) {
    nbb_os_failures = 0;
    nbb_set_ips_filter(filter, value);
}

void DcRouterMgr::TripsControl(bool on) {
    nbb_os_failures = 0;
    nbb_trips_control(on ? 1 : 0);
}

}  // namespace Zavrel
