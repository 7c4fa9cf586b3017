// StaticRouteItem: a static route row of an RTM instance.
#ifndef ZAVREL_CFG_STATICROUTEITEM_H
#define ZAVREL_CFG_STATICROUTEITEM_H

#include "cfg/CfgItem.h"
#include "mib/MibOid.h"

namespace Zavrel {

class StaticRouteItem : public CfgItem {
public:
    // Route type of a static route.
    static const unsigned long ROUTE_TYPE_STATIC = 0x30000;

    // family 1 is IPv4 (4-byte addresses), any other value IPv6 (16 bytes).
    // The last argument (extra) completes the row's shape; no static route
    // row uses it, so it is not kept.
    StaticRouteItem(unsigned long vlan, long family, long rowStatus, long adminStatus,
                    const unsigned char* destination, long prefixLength,
                    const unsigned char* nextHop, unsigned long ifIndex, unsigned long metric,
                    unsigned long routeType, long extra);
    ~StaticRouteItem() override;

    // Ready when the RTM instance of the route's vlan and family is.
    bool CfgListReady() override;
    bool CfgItemReady() override;
    void PrintItem(DcConsole* console) const override;
    void Send() override;
    MibOid& GetOid() override;
    // True for another static route of the same OID, row and admin status.
    bool Replace(void* other) override;
    // The RTM instance id, which alone decides CfgListReady.
    bool GetListReadyKey(unsigned long& key) const override;

    unsigned long Vlan() const { return m_vlan; }
    long Family() const { return m_family; }
    long RowStatus() const { return m_row_status; }
    long AdminStatus() const { return m_admin_status; }
    const unsigned char* Destination() const { return m_destination; }
    long PrefixLength() const { return m_prefix_length; }
    const unsigned char* NextHop() const { return m_next_hop; }
    unsigned long IfIndex() const { return m_if_index; }
    unsigned long Metric() const { return m_metric; }
    unsigned long RouteType() const { return m_route_type; }
    // The RTM instance the route belongs to.
    unsigned short InstanceId() const;

private:
    long m_family;
    unsigned long m_vlan;
    long m_row_status;
    long m_admin_status;
    unsigned char m_destination[16];
    long m_prefix_length;
    unsigned char m_next_hop[16];
    unsigned long m_if_index;
    unsigned long m_metric;
    unsigned long m_route_type;
};

}  // namespace Zavrel

#endif
