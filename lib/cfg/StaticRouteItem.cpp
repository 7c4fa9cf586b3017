#include "cfg/StaticRouteItem.h"

#include <cstring>
#include <new>

#include "cfg/CfgRoute.h"
#include "config/AddressFormat.h"
#include "mib/RouteAction.h"
#include "mib/Serializer.h"
#include "platform/AllocationFaults.h"
#include "platform/DcConsole.h"
#include "platform/Trace.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

namespace {

// Room for the longest OID the stack builds and for a full MibOid.
const unsigned long kOidBufferSize = 130 > SMS_MAX_OID_LEN ? 130 : SMS_MAX_OID_LEN;

}  // namespace

StaticRouteItem::StaticRouteItem(unsigned long vlan, long family, long rowStatus, long adminStatus,
                                 const unsigned char* destination, long prefixLength,
                                 const unsigned char* nextHop, unsigned long ifIndex,
                                 unsigned long metric, unsigned long routeType, long)
    : CfgItem(),
      m_family(family),
      m_vlan(vlan),
      m_row_status(rowStatus),
      m_admin_status(adminStatus),
      m_destination(),
      m_prefix_length(prefixLength),
      m_next_hop(),
      m_if_index(ifIndex),
      m_metric(metric),
      m_route_type(routeType) {
    const size_t width = family == 1 ? 4 : 16;
    if (destination != nullptr) {
        std::memcpy(m_destination, destination, width);
    }
    if (nextHop != nullptr) {
        std::memcpy(m_next_hop, nextHop, width);
    }
}

StaticRouteItem::~StaticRouteItem() = default;

unsigned short StaticRouteItem::InstanceId() const {
    const unsigned short vlan = static_cast<unsigned short>(m_vlan & 0xffff);
    const int afi = m_family == Sms::RECORD_IPV4 ? Sms::AFI_IPV4 : Sms::AFI_IPV6;
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return afi == Sms::AFI_IPV6 ? static_cast<unsigned short>(vlan | DcRtmMgr::IP6_INSTANCE_BIT)
                                    : vlan;
    }
    return static_cast<unsigned short>(rtm->GetDclProtocolInstanceIdFromVlan(vlan, afi) & 0xffff);
}

MibOid& StaticRouteItem::GetOid() {
    unsigned long components[kOidBufferSize] = {};
    const unsigned long count =
        sms_get_route_oid(components, InstanceId(), m_family, m_destination,
                          static_cast<unsigned long>(m_prefix_length), m_next_hop, m_if_index);
    m_oid.SetOid(components, count < kOidBufferSize ? count : kOidBufferSize);
    return m_oid;
}

bool StaticRouteItem::CfgListReady() {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    return rtm != nullptr && rtm->IsRtmReady(InstanceId());
}

bool StaticRouteItem::CfgItemReady() {
    return CfgListReady();
}

bool StaticRouteItem::GetListReadyKey(unsigned long& key) const {
    key = InstanceId();
    return true;
}

bool StaticRouteItem::Replace(void* other) {
    if (other == nullptr) {
        return false;
    }
    // The scheduler hands over its held item as a CfgItem*; an item of
    // another kind is never a replacement.
    StaticRouteItem* held = dynamic_cast<StaticRouteItem*>(static_cast<CfgItem*>(other));
    if (held == nullptr) {
        return false;
    }
    return held->GetOid() == m_oid && held->m_row_status == m_row_status &&
           held->m_admin_status == m_admin_status;
}

void StaticRouteItem::Send() {
    CfgRouteEntry entry;
    std::memset(&entry, 0, sizeof(entry));
    const size_t width = m_family == 1 ? 4 : 16;
    entry.family = m_family;
    std::memcpy(entry.destination, m_destination, width);
    std::memcpy(entry.nextHop, m_next_hop, width);
    entry.prefixLength = m_prefix_length;
    entry.ifIndex = m_if_index;
    entry.metric = m_metric;
    entry.reserved = 0;
    entry.pathType = m_route_type;
    entry.rowStatus = m_row_status;
    entry.adminStatus = m_admin_status;

    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    RouteAction* action = NewOrNull<RouteAction>("RouteAction", entry, m_vlan);
    if (manager == nullptr || action == nullptr) {
        // Left New: a later tick tries again.
        TRACE(1, "%s::%s: Error in allocating RouteAction\n", "StaticRouteItem", "Send");
        delete action;
        return;
    }
    manager->GetSerializer().Insert(GetOid(), action);
    SetActionState(ACTION_ITEM_ISSUED);
}

void StaticRouteItem::PrintItem(DcConsole* console) const {
    if (console == nullptr) {
        return;
    }
    char destination[64] = "";
    char nextHop[64] = "";
    if (m_family == 1) {
        Ip4AddrToStr(destination, m_destination);
        Ip4AddrToStr(nextHop, m_next_hop);
    } else {
        Ip6AddrToStr(destination, m_destination);
        Ip6AddrToStr(nextHop, m_next_hop);
    }
    console->Print(
        "StaticRouteItem: vrf(%d) Dest(%s/%d) NextHop(%s) Intf(%d) metric(%d) Type(%s) "
        "RowStatus(%s) AdminStatus(%d) ActionState(%s) Reason(%s)\n",
        static_cast<int>(m_vlan), destination, static_cast<int>(m_prefix_length), nextHop,
        static_cast<int>(m_if_index), static_cast<int>(m_metric),
        m_route_type == ROUTE_TYPE_STATIC ? "Static" : "Other", GetRowStatusStr(m_row_status),
        static_cast<int>(m_admin_status), GetActionStateStr(GetActionState()),
        GetReasonStr(GetReasonCode()));
}

}  // namespace Zavrel
