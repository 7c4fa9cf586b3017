// DcOspfRouter: the OSPF router shared by OSPFv2 and OSPFv3. It keeps its
// areas (from the "AREAS" list of its section, see OspfAreaConfig) and the
// interfaces attached to them.
#ifndef ZAVREL_PROTOCOLS_DCOSPFROUTER_H
#define ZAVREL_PROTOCOLS_DCOSPFROUTER_H

#include <vector>

#include "routing/DcOspfRouterBase.h"

namespace Zavrel {

class DcConsole;

class DcOspfRouter : public DcOspfRouterBase {
public:
    DcOspfRouter(const string& name, unsigned short vid, DcProtoConfigBase* proto,
                 unsigned int version);
    ~DcOspfRouter() override;

    // Adds the area list to the bundle.
    bool CreateConfigList(DcConfigLists& lists) override;

    bool AddArea(unsigned int areaId, bool stub) override;
    bool RemoveArea(unsigned int areaId) override;
    bool HasArea(unsigned int areaId) const override;
    bool IsStubArea(unsigned int areaId) const override;
    bool SetAreaStub(unsigned int areaId, bool stub) override;
    unsigned int GetAreaCount() const override;
    const OspfAreaCB* GetArea(unsigned int areaId) const override;
    std::vector<unsigned int> GetAreaIds() const override;
    void ClearAreas() override;
    bool IsAreaBorderRouter() const override;
    bool AttachInterface(unsigned int areaId, unsigned int ifIndex) override;
    bool DetachInterface(unsigned int ifIndex) override;
    bool GetInterfaceArea(unsigned int ifIndex, unsigned int* areaId) const override;

    // 2 or 3.
    unsigned int GetVersion() const { return m_version; }

private:
    unsigned int m_version;
};

}  // namespace Zavrel

#endif
