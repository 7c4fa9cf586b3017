// DcMulticastRouterBase: the base of the multicast routers (IGMP, MLD). It
// declares what the router manager asks of them when a remote joins a
// network; a concrete multicast router implements it.
#ifndef ZAVREL_ROUTING_DCMULTICASTROUTERBASE_H
#define ZAVREL_ROUTING_DCMULTICASTROUTERBASE_H

#include "routing/DcRouterBase.h"

namespace Zavrel {

class DcMulticastRouterBase : public DcRouterBase {
public:
    DcMulticastRouterBase(const string& name, unsigned short vid, DcProtoConfigBase* proto);
    ~DcMulticastRouterBase() override;

    // Runs multicast on the interface, as querier or not.
    virtual bool AddInterface(unsigned int ifIndex, bool querier) = 0;
    // Sets the querier role of one of the router's interfaces; false for an
    // interface the router does not know.
    virtual bool ConfigureInterface(unsigned int ifIndex, bool querier) = 0;
};

}  // namespace Zavrel

#endif
