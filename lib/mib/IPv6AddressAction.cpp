#include "mib/IPv6AddressAction.h"

#include "rtm/DcRtmMgr.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

IPv6AddressAction::IPv6AddressAction()
    : MibAction("IPv6AddressAction"),
      m_row_status(0),
      m_vlan(0),
      m_if_index(0),
      m_address(),
      m_prefix_length(0) {}

IPv6AddressAction::IPv6AddressAction(long rowStatus, unsigned int vlan, unsigned int ifIndex,
                                     const Ip6Addr& address, unsigned int prefixLength)
    : MibAction("IPv6AddressAction"),
      m_row_status(rowStatus),
      m_vlan(vlan),
      m_if_index(ifIndex),
      m_address(address),
      m_prefix_length(prefixLength) {}

IPv6AddressAction::~IPv6AddressAction() = default;

unsigned long IPv6AddressAction::IssueReq(bool /*shared_context*/) {
    const unsigned short vlan = static_cast<unsigned short>(m_vlan & 0xffff);
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    const unsigned short instance =
        rtm != nullptr ? rtm->GetDclProtocolInstanceIdFromVlan(vlan, Sms::AFI_IPV6)
                       : static_cast<unsigned short>(vlan | DcRtmMgr::IP6_INSTANCE_BIT);
    return sms_act_ipaddr(m_row_status, instance, Sms::ADDR_TYPE_IPV6, m_if_index,
                          m_address.Bytes(), m_prefix_length);
}

}  // namespace Zavrel
