// RouteRedistributeItem: a route redistribution row of an RTM instance.
#ifndef ZAVREL_CFG_ROUTEREDISTRIBUTEITEM_H
#define ZAVREL_CFG_ROUTEREDISTRIBUTEITEM_H

#include "cfg/CfgItem.h"
#include "mib/MibOid.h"
#include "stackapi/SmsConstants.h"

namespace Zavrel {

class RouteRedistributeItem : public CfgItem {
public:
    // Destination protocol codes that pick the receiving router.
    static constexpr long PROTOCOL_RIP = Sms::RedistProtocol(Sms::PROTO_RIP);
    static constexpr long PROTOCOL_OSPF = Sms::RedistProtocol(Sms::PROTO_OSPF);

    RouteRedistributeItem();  // all zero but the instance, which is 1
    // instance is the RTM instance (with the IPv6 bit for IPv6); the last
    // value is handed on to the action and never sent.
    RouteRedistributeItem(long rowStatus, long adminStatus, long source, long destination,
                          long priority, unsigned long instance, unsigned long extra);
    ~RouteRedistributeItem() override;

    // Ready when the RTM instance (the low 16 bits of instance) is.
    bool CfgListReady() override;
    // Ready when the router that receives the routes exists and is ready.
    bool CfgItemReady() override;
    void PrintItem(DcConsole* console) const override;
    void Send() override;
    MibOid& GetOid() override;
    bool Replace(void* other) override;
    // True when the RTM manager holds this very instance number.
    bool RemoveOnNotReady() const override;
    bool GetListReadyKey(unsigned long& key) const override;

    long RowStatus() const { return m_row_status; }
    long AdminStatus() const { return m_admin_status; }
    long Source() const { return m_source; }
    long Destination() const { return m_destination; }
    long Priority() const { return m_priority; }
    unsigned long Instance() const { return m_instance; }
    unsigned long Extra() const { return m_extra; }
    // The router kind (DcRouterMgr::ProtocolType) and VLAN that receive the
    // redistributed routes.
    int ReceivingRouterKind() const;
    unsigned short ReceivingVlan() const;

private:
    void BuildOid(MibOid& oid) const;
    unsigned short ListInstanceId() const;

    long m_row_status;
    long m_admin_status;
    long m_source;
    long m_destination;
    long m_priority;
    unsigned long m_instance;
    unsigned long m_extra;
};

}  // namespace Zavrel

#endif
