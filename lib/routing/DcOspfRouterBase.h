// DcOspfRouterBase: the base of the OSPF routers. It adds the router's areas
// (area id to OspfAreaCB), emptied when the router goes, and the operations
// on them that a concrete OSPF router implements.
#ifndef ZAVREL_ROUTING_DCOSPFROUTERBASE_H
#define ZAVREL_ROUTING_DCOSPFROUTERBASE_H

#include <map>
#include <vector>

#include "routing/DcRouterBase.h"
#include "routing/OspfAreaCB.h"

namespace Zavrel {

class DcOspfRouterBase : public DcRouterBase {
public:
    DcOspfRouterBase(const string& name, unsigned short vid, DcProtoConfigBase* proto);
    ~DcOspfRouterBase() override;

    // Creates the area, or changes its stub flag when it exists.
    virtual bool AddArea(unsigned int areaId, bool stub) = 0;
    // Removes the area with its interface attachments; false when unknown.
    virtual bool RemoveArea(unsigned int areaId) = 0;
    virtual bool HasArea(unsigned int areaId) const = 0;
    virtual bool IsStubArea(unsigned int areaId) const = 0;
    virtual bool SetAreaStub(unsigned int areaId, bool stub) = 0;
    virtual unsigned int GetAreaCount() const = 0;
    // The area, or null.
    virtual const OspfAreaCB* GetArea(unsigned int areaId) const = 0;
    // The area ids in ascending order.
    virtual std::vector<unsigned int> GetAreaIds() const = 0;
    virtual void ClearAreas() = 0;
    // True with the backbone and at least one other area.
    virtual bool IsAreaBorderRouter() const = 0;
    // Attaches an interface to an area (moving it from another area); false
    // when the area is unknown.
    virtual bool AttachInterface(unsigned int areaId, unsigned int ifIndex) = 0;
    virtual bool DetachInterface(unsigned int ifIndex) = 0;
    // The area an interface is attached to.
    virtual bool GetInterfaceArea(unsigned int ifIndex, unsigned int* areaId) const = 0;

protected:
    std::map<unsigned int, OspfAreaCB> m_areas;
};

}  // namespace Zavrel

#endif
