#include "cfg/RouteRedistributeItem.h"

#include <new>

#include "mib/RedistAction.h"
#include "mib/Serializer.h"
#include "platform/AllocationFaults.h"
#include "platform/DcConsole.h"
#include "platform/Trace.h"
#include "routing/DcRouterBase.h"
#include "routing/DcRouterMgr.h"
#include "rtm/DcRtmMgr.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

namespace {

const unsigned long kOidBufferSize = 130 > SMS_MAX_OID_LEN ? 130 : SMS_MAX_OID_LEN;

}  // namespace

RouteRedistributeItem::RouteRedistributeItem()
    : CfgItem(),
      m_row_status(0),
      m_admin_status(0),
      m_source(0),
      m_destination(0),
      m_priority(0),
      m_instance(1),
      m_extra(0) {}

RouteRedistributeItem::RouteRedistributeItem(long rowStatus, long adminStatus, long source,
                                             long destination, long priority,
                                             unsigned long instance, unsigned long extra)
    : CfgItem(),
      m_row_status(rowStatus),
      m_admin_status(adminStatus),
      m_source(source),
      m_destination(destination),
      m_priority(priority),
      m_instance(instance),
      m_extra(extra) {}

RouteRedistributeItem::~RouteRedistributeItem() = default;

void RouteRedistributeItem::BuildOid(MibOid& oid) const {
    unsigned long components[kOidBufferSize] = {};
    const unsigned long count =
        sms_set_cipr_redist_oid(components, m_instance, m_source, m_destination);
    oid.SetOid(components, count < kOidBufferSize ? count : kOidBufferSize);
}

MibOid& RouteRedistributeItem::GetOid() {
    BuildOid(m_oid);
    return m_oid;
}

unsigned short RouteRedistributeItem::ListInstanceId() const {
    const unsigned short low = static_cast<unsigned short>(m_instance & 0xffff);
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return low;
    }
    return static_cast<unsigned short>(rtm->GetDclProtocolInstanceIdFromVlan(low, 0) & 0xffff);
}

bool RouteRedistributeItem::CfgListReady() {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    return rtm != nullptr && rtm->IsRtmReady(ListInstanceId());
}

bool RouteRedistributeItem::GetListReadyKey(unsigned long& key) const {
    key = ListInstanceId();
    return true;
}

unsigned short RouteRedistributeItem::ReceivingVlan() const {
    unsigned long vlan = m_instance;
    if ((m_instance & DcRtmMgr::IP6_INSTANCE_BIT) != 0) {
        vlan = m_instance & ~static_cast<unsigned long>(DcRtmMgr::IP6_INSTANCE_BIT);
    }
    return static_cast<unsigned short>(vlan & 0xffff);
}

int RouteRedistributeItem::ReceivingRouterKind() const {
    const bool ipv6 = (m_instance & DcRtmMgr::IP6_INSTANCE_BIT) != 0;
    if (m_destination == PROTOCOL_RIP) {
        return ipv6 ? DcRouterMgr::RIPng : DcRouterMgr::RIPv2;
    }
    if (m_destination == PROTOCOL_OSPF) {
        return ipv6 ? DcRouterMgr::OSPFv3 : DcRouterMgr::OSPFv2;
    }
    return DcRouterMgr::BGP;
}

bool RouteRedistributeItem::CfgItemReady() {
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    if (manager == nullptr) {
        return false;
    }
    DcRouterBase* router = manager->GetDcRouterByVID(
        ReceivingVlan(), static_cast<DcRouterMgr::ProtocolType>(ReceivingRouterKind()));
    if (router == nullptr) {
        return false;
    }
    return router->IsReady();
}

bool RouteRedistributeItem::RemoveOnNotReady() const {
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr || m_instance > 0xffff) {
        return false;
    }
    return rtm->HasRtmData(static_cast<unsigned short>(m_instance));
}

bool RouteRedistributeItem::Replace(void* other) {
    if (other == nullptr) {
        return false;
    }
    RouteRedistributeItem* held =
        dynamic_cast<RouteRedistributeItem*>(static_cast<CfgItem*>(other));
    if (held == nullptr) {
        return false;
    }
    return held->GetOid() == m_oid && held->m_row_status == m_row_status &&
           held->m_admin_status == m_admin_status;
}

void RouteRedistributeItem::Send() {
    DcRouterMgr* manager = DcRouterMgr::GetInstance();
    RedistAction* action =
        NewOrNull<RedistAction>("RedistAction", m_row_status, m_admin_status, m_source,
                                m_destination, m_priority, m_instance, m_extra);
    if (manager == nullptr || action == nullptr) {
        TRACE(1, "%s::%s: Error in allocating RedistAction\n", "RouteRedistributeItem", "Send");
        delete action;
        return;
    }
    // The OID is computed afresh for the request; the stored one is left as
    // it is.
    MibOid oid;
    BuildOid(oid);
    manager->GetSerializer().Insert(oid, action);
    SetActionState(ACTION_ITEM_ISSUED);
}

void RouteRedistributeItem::PrintItem(DcConsole* console) const {
    if (console == nullptr) {
        return;
    }
    console->Print(
        "RedistItem: Instance(%d) Dest(0x%x) Src(0x%x) Priority(0x%x) RowStatus(%s) "
        "AdminStatus(%d) ActionState(%s) Reason(%s)\n",
        static_cast<int>(m_instance), static_cast<unsigned int>(m_destination),
        static_cast<unsigned int>(m_source), static_cast<unsigned int>(m_priority),
        GetRowStatusStr(m_row_status), static_cast<int>(m_admin_status),
        GetActionStateStr(GetActionState()), GetReasonStr(GetReasonCode()));
}

}  // namespace Zavrel
