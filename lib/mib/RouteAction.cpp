#include "mib/RouteAction.h"

#include <cstring>

#include "platform/Trace.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

RouteAction::RouteAction() : MibAction("RouteAction"), m_entry(), m_vlan(0) {
    std::memset(&m_entry, 0, sizeof(m_entry));
}

RouteAction::RouteAction(CfgRouteEntry& entry, unsigned long vlan)
    : MibAction("RouteAction"), m_entry(), m_vlan(static_cast<unsigned short>(vlan & 0xffff)) {
    std::memset(&m_entry, 0, sizeof(m_entry));
    const size_t width = entry.family == 1 ? 4 : 16;
    m_entry.family = entry.family;
    std::memcpy(m_entry.destination, entry.destination, width);
    std::memcpy(m_entry.nextHop, entry.nextHop, width);
    m_entry.prefixLength = entry.prefixLength;
    m_entry.ifIndex = entry.ifIndex;
    m_entry.metric = entry.metric;
    m_entry.reserved = entry.reserved;
    m_entry.pathType = entry.pathType;
    m_entry.rowStatus = entry.rowStatus;
    m_entry.adminStatus = entry.adminStatus;
}

RouteAction::~RouteAction() = default;

unsigned long RouteAction::IssueReq(bool shared_context) {
    const int afi = m_entry.family == Sms::RECORD_IPV4 ? Sms::AFI_IPV4 : Sms::AFI_IPV6;
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    const unsigned short instance = static_cast<unsigned short>(
        (rtm != nullptr ? rtm->GetDclProtocolInstanceIdFromVlan(m_vlan, afi) : m_vlan) & 0xffff);

    const string destination = m_entry.Format(m_entry.destination);
    const string nextHop = m_entry.Format(m_entry.nextHop);
    TRACE(5,
          "Vlan = %d if_index = %u ipaddr = %s/%lu gw = %s metric = %d path_type = %d "
          "row status = %d admin_status = %d\n",
          static_cast<int>(m_vlan), static_cast<unsigned int>(m_entry.ifIndex), destination.c_str(),
          static_cast<unsigned long>(m_entry.prefixLength), nextHop.c_str(),
          static_cast<int>(m_entry.metric), static_cast<int>(m_entry.pathType),
          static_cast<int>(m_entry.rowStatus), static_cast<int>(m_entry.adminStatus));

    return sms_update_route(shared_context ? 0 : 1, m_entry.rowStatus, m_entry.adminStatus,
                            m_entry.family, m_entry.destination, m_entry.prefixLength,
                            m_entry.nextHop, m_entry.pathType, m_entry.ifIndex, instance,
                            m_entry.metric);
}

}  // namespace Zavrel
