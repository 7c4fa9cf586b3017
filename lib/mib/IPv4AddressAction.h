// IPv4AddressAction: one IPv4 row request of the stack's I3 address table.
#ifndef ZAVREL_MIB_IPV4ADDRESSACTION_H
#define ZAVREL_MIB_IPV4ADDRESSACTION_H

#include "mib/MibAction.h"
#include "platform/Ip4Addr.h"

namespace Zavrel {

class IPv4AddressAction : public MibAction {
public:
    IPv4AddressAction();  // zeros, address and mask 0.0.0.0
    IPv4AddressAction(long rowStatus, unsigned int vlan, unsigned int ifIndex,
                      const Ip4Addr& address, Ip4Addr mask);
    ~IPv4AddressAction() override;

    // sms_act_ipaddr with the vlan, address type 1 and the number of one
    // bits of the mask as prefix length, in and outside the stack's context.
    unsigned long IssueReq(bool shared_context) override;

    long RowStatus() const { return m_row_status; }
    unsigned int Vlan() const { return m_vlan; }
    unsigned int IfIndex() const { return m_if_index; }
    const Ip4Addr& Address() const { return m_address; }
    const Ip4Addr& Mask() const { return m_mask; }

private:
    long m_row_status;
    unsigned int m_vlan;
    unsigned int m_if_index;
    Ip4Addr m_address;
    Ip4Addr m_mask;
};

}  // namespace Zavrel

#endif
