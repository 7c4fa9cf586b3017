#include "mib/RedistAction.h"

#include "platform/Trace.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

RedistAction::RedistAction()
    : MibAction("RedistAction"),
      m_row_status(0),
      m_admin_status(0),
      m_source(0),
      m_destination(0),
      m_priority(0),
      m_vlan(1),
      m_extra(0) {}

RedistAction::RedistAction(long rowStatus, long adminStatus, long source, long destination,
                           long priority, unsigned long vlan, unsigned long extra)
    : MibAction("RedistAction"),
      m_row_status(rowStatus),
      m_admin_status(adminStatus),
      m_source(source),
      m_destination(destination),
      m_priority(priority),
      m_vlan(vlan),
      m_extra(extra) {}

RedistAction::~RedistAction() = default;

unsigned long RedistAction::IssueReq(bool shared_context) {
    TRACE(5,
          "Redist context = %d vlan = %u dest = %x src = %x pri = %d row_status = %d "
          "admin_status = %d\n",
          shared_context ? 1 : 0, static_cast<unsigned int>(m_vlan),
          static_cast<unsigned int>(m_destination), static_cast<unsigned int>(m_source),
          static_cast<int>(m_priority), static_cast<int>(m_row_status),
          static_cast<int>(m_admin_status));
    if (shared_context) {
        return sms_bld_amb_test_cipr_redist(m_vlan, m_row_status, m_admin_status, m_destination,
                                            m_source, 0);
    }
    return sms_act_cipr_redist(m_row_status, m_admin_status, m_source, m_destination, m_vlan, 0);
}

}  // namespace Zavrel
