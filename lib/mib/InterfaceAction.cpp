#include "mib/InterfaceAction.h"

#include <cstring>

#include "platform/Trace.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

InterfaceAction::InterfaceAction()
    : MibAction("InterfaceAction"),
      m_row_status(0),
      m_oper_status(0),
      m_vlan(0),
      m_if_index(0),
      m_if_name(),
      m_reserved(0),
      m_flags(0),
      m_extra(0) {}

InterfaceAction::InterfaceAction(long rowStatus, unsigned int operStatus, unsigned int vlan,
                                 unsigned int ifIndex, const char* ifName, unsigned int reserved,
                                 long flags, unsigned int extra)
    : MibAction("unknown"),
      m_row_status(rowStatus),
      m_oper_status(operStatus),
      m_vlan(vlan),
      m_if_index(ifIndex),
      m_if_name(),
      m_reserved(reserved),
      m_flags(flags),
      m_extra(extra) {
    if (ifName != nullptr) {
        // The buffer is zero-filled, so copying at most size - 1 characters
        // always leaves the name terminated.
        const size_t length = strnlen(ifName, IF_NAME_SIZE - 1);
        std::memcpy(m_if_name, ifName, length);
    }
}

InterfaceAction::~InterfaceAction() = default;

unsigned long InterfaceAction::IssueReq(bool shared_context) {
    TRACE(5,
          "InterfaceAction: shared_context = %d row_status = %ld oper_status = %d vlan = %d "
          "if_index = %d if_name = %s\n",
          shared_context ? 1 : 0, m_row_status, static_cast<int>(m_oper_status),
          static_cast<int>(m_vlan), static_cast<int>(m_if_index), m_if_name);
    if (shared_context) {
        return sms_bld_amb_test_i3_ei(m_row_status, m_oper_status, m_vlan, m_if_index, m_if_name,
                                      m_reserved, m_flags, m_extra);
    }
    return sms_act_interface(m_row_status, m_oper_status, m_vlan, m_if_index, m_if_name, m_reserved,
                             m_flags, m_extra);
}

}  // namespace Zavrel
