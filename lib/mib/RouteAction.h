// RouteAction: one static route row request (sms_update_route).
#ifndef ZAVREL_MIB_ROUTEACTION_H
#define ZAVREL_MIB_ROUTEACTION_H

#include "cfg/CfgRoute.h"
#include "mib/MibAction.h"

namespace Zavrel {

class RouteAction : public MibAction {
public:
    RouteAction();
    // Copies the entry (addresses with 4 bytes for family 1, else 16) and
    // keeps the low 16 bits of the vlan.
    RouteAction(CfgRouteEntry& entry, unsigned long vlan);
    ~RouteAction() override;

    // Outside the stack's context the route goes with sms_update_route's
    // first argument 1, inside it with 0.
    unsigned long IssueReq(bool shared_context) override;

    const CfgRouteEntry& Entry() const { return m_entry; }
    unsigned short Vlan() const { return m_vlan; }

private:
    CfgRouteEntry m_entry;
    unsigned short m_vlan;
};

}  // namespace Zavrel

#endif
