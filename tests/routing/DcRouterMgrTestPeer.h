// DcRouterMgrTestPeer: reaches into the router manager (it is a friend of
// DcRouterMgr) for states the application cannot build and for the layout
// of the manager's members.
#ifndef ZAVREL_TESTS_ROUTING_DCROUTERMGRTESTPEER_H
#define ZAVREL_TESTS_ROUTING_DCROUTERMGRTESTPEER_H

#include <map>
#include <set>
#include <type_traits>
#include <vector>

#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"

namespace Zavrel {

class DcRouterMgrTestPeer {
public:
    // A VLAN record with no routers at all.
    static void AddVlanWithoutRouters(DcRouterMgr* mgr, unsigned short vid) {
        mgr->m_vlans[vid] = new DcRouterMgr::VlanRouters();
    }

    // Deletes the routers of an existing VLAN and gives it these instead
    // (owned by the record from then on).
    static void ReplaceRouters(DcRouterMgr* mgr, unsigned short vid,
                               const std::map<DcRouterMgr::ProtocolType, DcRouterBase*>& routers) {
        DcRouterMgr::VlanRouters* record = mgr->m_vlans.at(vid);
        for (auto& entry : record->routers) {
            delete entry.second;
        }
        record->routers = routers;
    }

    // The addresses of the manager's members, in the order of their
    // declaration: the VLAN section name, the VLAN map, the per-source VLAN
    // sets, the stack scheduler, the configuration scheduler, the request
    // serializer and the IPv4 and IPv6 console handler tables.
    static std::vector<const void*> MemberAddresses(const DcRouterMgr& mgr) {
        static_assert(std::is_same<decltype(DcRouterMgr::m_vlan_section), const char*>::value);
        static_assert(std::is_same<decltype(DcRouterMgr::m_vlans), DcRouterMgr::VlanMap>::value);
        static_assert(std::is_same<decltype(DcRouterMgr::m_source_vlans),
                                   std::map<string, std::set<unsigned short>>>::value);
        static_assert(std::is_same<decltype(DcRouterMgr::m_scheduler), DcScheduler>::value);
        static_assert(std::is_same<decltype(DcRouterMgr::m_cfg_sched), CfgSched>::value);
        static_assert(std::is_same<decltype(DcRouterMgr::m_serializer), Serializer>::value);
        static_assert(
            std::is_same<decltype(DcRouterMgr::m_ip4_handlers), DcRouterMgr::CmdHandlerMap>::value);
        static_assert(
            std::is_same<decltype(DcRouterMgr::m_ip6_handlers), DcRouterMgr::CmdHandlerMap>::value);
        return {&mgr.m_vlan_section, &mgr.m_vlans,      &mgr.m_source_vlans, &mgr.m_scheduler,
                &mgr.m_cfg_sched,    &mgr.m_serializer, &mgr.m_ip4_handlers, &mgr.m_ip6_handlers};
    }
};

}  // namespace Zavrel

#endif
