// InterfaceAction: one row request of the stack's I3 interface table.
#ifndef ZAVREL_MIB_INTERFACEACTION_H
#define ZAVREL_MIB_INTERFACEACTION_H

#include "mib/MibAction.h"

namespace Zavrel {

class InterfaceAction : public MibAction {
public:
    // Size of the name buffer; a name keeps at most IF_NAME_SIZE - 1
    // characters and is always terminated.
    static const unsigned int IF_NAME_SIZE = 256;

    // All zero, empty name; traced as "InterfaceAction".
    InterfaceAction();
    // Traced as "unknown" in the serializer. vlan is the stack instance the
    // row belongs to. A longer name is cut at IF_NAME_SIZE - 1 characters; a
    // null name is taken as empty.
    InterfaceAction(long rowStatus, unsigned int operStatus, unsigned int vlan,
                    unsigned int ifIndex, const char* ifName, unsigned int reserved, long flags,
                    unsigned int extra);
    ~InterfaceAction() override;

    // sms_act_interface outside the stack's context, sms_bld_amb_test_i3_ei
    // inside it, with the same arguments.
    unsigned long IssueReq(bool shared_context) override;

    long RowStatus() const { return m_row_status; }
    unsigned int OperStatus() const { return m_oper_status; }
    unsigned int Vlan() const { return m_vlan; }
    unsigned int IfIndex() const { return m_if_index; }
    const char* IfName() const { return m_if_name; }
    unsigned int Reserved() const { return m_reserved; }
    long Flags() const { return m_flags; }
    unsigned int Extra() const { return m_extra; }

private:
    long m_row_status;
    unsigned int m_oper_status;
    unsigned int m_vlan;
    unsigned int m_if_index;
    char m_if_name[IF_NAME_SIZE];
    unsigned int m_reserved;
    long m_flags;
    unsigned int m_extra;
};

}  // namespace Zavrel

#endif
