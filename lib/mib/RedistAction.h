// RedistAction: one route redistribution row request of the RTM.
#ifndef ZAVREL_MIB_REDISTACTION_H
#define ZAVREL_MIB_REDISTACTION_H

#include "mib/MibAction.h"

namespace Zavrel {

class RedistAction : public MibAction {
public:
    RedistAction();  // all zero but the vlan, which is 1
    // vlan is the RTM instance of the row; the last value is kept but never
    // sent.
    RedistAction(long rowStatus, long adminStatus, long source, long destination, long priority,
                 unsigned long vlan, unsigned long extra);
    ~RedistAction() override;

    // sms_act_cipr_redist outside the stack's context,
    // sms_bld_amb_test_cipr_redist inside it; the two take source and
    // destination in opposite orders. The priority is only traced.
    unsigned long IssueReq(bool shared_context) override;

    long RowStatus() const { return m_row_status; }
    long AdminStatus() const { return m_admin_status; }
    long Source() const { return m_source; }
    long Destination() const { return m_destination; }
    long Priority() const { return m_priority; }
    unsigned long Vlan() const { return m_vlan; }
    unsigned long Extra() const { return m_extra; }

private:
    long m_row_status;
    long m_admin_status;
    long m_source;
    long m_destination;
    long m_priority;
    unsigned long m_vlan;
    unsigned long m_extra;
};

}  // namespace Zavrel

#endif
