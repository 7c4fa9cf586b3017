#include "mib/IPv4AddressAction.h"

#include "platform/BitCount.h"
#include "platform/Trace.h"
#include "stackapi/SmsConstants.h"
#include "stackapi/stackapi.h"

namespace Zavrel {

IPv4AddressAction::IPv4AddressAction()
    : MibAction("IPv4AddressAction"),
      m_row_status(0),
      m_vlan(0),
      m_if_index(0),
      m_address(),
      m_mask() {}

IPv4AddressAction::IPv4AddressAction(long rowStatus, unsigned int vlan, unsigned int ifIndex,
                                     const Ip4Addr& address, Ip4Addr mask)
    : MibAction("IPv4AddressAction"),
      m_row_status(rowStatus),
      m_vlan(vlan),
      m_if_index(ifIndex),
      m_address(address),
      m_mask(mask) {}

IPv4AddressAction::~IPv4AddressAction() = default;

unsigned long IPv4AddressAction::IssueReq(bool shared_context) {
    char text[16] = "";
    Ip4Addr::Uint32ToString(m_address.HostOrder(), text, sizeof(text));
    TRACE(5,
          "AddressAction: shared_context = %d row_status = %ld vlan = %d if_index = %d "
          "address = %s\n",
          shared_context ? 1 : 0, m_row_status, static_cast<int>(m_vlan),
          static_cast<int>(m_if_index), text);
    const unsigned int prefixLength = BitCount(m_mask.HostOrder());
    return sms_act_ipaddr(m_row_status, m_vlan, Sms::ADDR_TYPE_IPV4, m_if_index, m_address.Bytes(),
                          prefixLength);
}

}  // namespace Zavrel
