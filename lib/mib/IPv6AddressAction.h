// IPv6AddressAction: one IPv6 row request of the stack's I3 address table.
#ifndef ZAVREL_MIB_IPV6ADDRESSACTION_H
#define ZAVREL_MIB_IPV6ADDRESSACTION_H

#include "mib/MibAction.h"
#include "platform/Ip6Addr.h"

namespace Zavrel {

class IPv6AddressAction : public MibAction {
public:
    IPv6AddressAction();  // all zero
    IPv6AddressAction(long rowStatus, unsigned int vlan, unsigned int ifIndex,
                      const Ip6Addr& address, unsigned int prefixLength);
    ~IPv6AddressAction() override;

    // sms_act_ipaddr with the IPv6 protocol instance of the vlan (not the
    // vlan itself, unlike the IPv4 row) and address type 2, in and outside
    // the stack's context. Not traced.
    unsigned long IssueReq(bool shared_context) override;

    long RowStatus() const { return m_row_status; }
    unsigned int Vlan() const { return m_vlan; }
    unsigned int IfIndex() const { return m_if_index; }
    const Ip6Addr& Address() const { return m_address; }
    unsigned int PrefixLength() const { return m_prefix_length; }

private:
    long m_row_status;
    unsigned int m_vlan;
    unsigned int m_if_index;
    Ip6Addr m_address;
    unsigned int m_prefix_length;
};

}  // namespace Zavrel

#endif
