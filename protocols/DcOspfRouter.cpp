// DcOspfRouter: OSPF areas and their interfaces.
#include "protocols/DcOspfRouter.h"

#include <new>

#include "protocols/OspfAreaConfig.h"
#include "routing/DcConfigLists.h"

namespace Zavrel {

DcOspfRouter::DcOspfRouter(const string& name, unsigned short vid, DcProtoConfigBase* proto,
                           unsigned int version)
    : DcOspfRouterBase(name, vid, proto), m_version(version) {}

DcOspfRouter::~DcOspfRouter() = default;

bool DcOspfRouter::CreateConfigList(DcConfigLists& lists) {
    DCLConfigList* areas = new (std::nothrow) OspfAreaConfigList(*this);
    if (areas == nullptr) {
        return false;
    }
    lists.Add(areas);
    return true;
}

bool DcOspfRouter::AddArea(unsigned int areaId, bool stub) {
    auto it = m_areas.find(areaId);
    if (it == m_areas.end()) {
        m_areas.emplace(areaId, OspfAreaCB(areaId, stub));
    } else {
        it->second.stub = stub;
    }
    return true;
}

bool DcOspfRouter::RemoveArea(unsigned int areaId) {
    return m_areas.erase(areaId) != 0;
}

bool DcOspfRouter::HasArea(unsigned int areaId) const {
    return m_areas.count(areaId) != 0;
}

bool DcOspfRouter::IsStubArea(unsigned int areaId) const {
    auto it = m_areas.find(areaId);
    return it != m_areas.end() && it->second.stub;
}

bool DcOspfRouter::SetAreaStub(unsigned int areaId, bool stub) {
    auto it = m_areas.find(areaId);
    if (it == m_areas.end()) {
        return false;
    }
    it->second.stub = stub;
    return true;
}

unsigned int DcOspfRouter::GetAreaCount() const {
    return static_cast<unsigned int>(m_areas.size());
}

const OspfAreaCB* DcOspfRouter::GetArea(unsigned int areaId) const {
    auto it = m_areas.find(areaId);
    return it == m_areas.end() ? nullptr : &it->second;
}

std::vector<unsigned int> DcOspfRouter::GetAreaIds() const {
    std::vector<unsigned int> ids;
    for (const auto& entry : m_areas) {
        ids.push_back(entry.first);
    }
    return ids;
}

void DcOspfRouter::ClearAreas() {
    m_areas.clear();
}

bool DcOspfRouter::IsAreaBorderRouter() const {
    return m_areas.count(OspfAreaCB::BACKBONE) != 0 && m_areas.size() >= 2;
}

bool DcOspfRouter::AttachInterface(unsigned int areaId, unsigned int ifIndex) {
    auto it = m_areas.find(areaId);
    if (it == m_areas.end()) {
        return false;
    }
    // An interface belongs to one area at a time.
    for (auto& entry : m_areas) {
        if (entry.first != areaId) {
            entry.second.interfaces.erase(ifIndex);
        }
    }
    it->second.interfaces.insert(ifIndex);
    return true;
}

bool DcOspfRouter::DetachInterface(unsigned int ifIndex) {
    bool found = false;
    for (auto& entry : m_areas) {
        found = entry.second.interfaces.erase(ifIndex) != 0 || found;
    }
    return found;
}

bool DcOspfRouter::GetInterfaceArea(unsigned int ifIndex, unsigned int* areaId) const {
    for (const auto& entry : m_areas) {
        if (entry.second.interfaces.count(ifIndex) != 0) {
            if (areaId != nullptr) {
                *areaId = entry.first;
            }
            return true;
        }
    }
    return false;
}

}  // namespace Zavrel
