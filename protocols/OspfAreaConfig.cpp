// OspfAreaConfig: OSPF areas from the options.
#include "protocols/OspfAreaConfig.h"

#include <new>

#include "platform/DcConsole.h"
#include "routing/DcOspfRouterBase.h"

namespace Zavrel {

OspfAreaConfig::OspfAreaConfig(DcRouterBase& owner)
    : DclConfigObject(owner), stub(false), destroy(false) {}

OspfAreaConfig::OspfAreaConfig(const OspfAreaConfig* other)
    : DclConfigObject(other), stub(other->stub), interfaces(other->interfaces), destroy(false) {}

OspfAreaConfig::~OspfAreaConfig() = default;

int OspfAreaConfig::CompareWithNew(DclConfigObject* newer) {
    auto* other = dynamic_cast<OspfAreaConfig*>(newer);
    if (other == nullptr || !KeyMatch(other)) {
        return COMPARE_DIFFERENT;
    }
    return (other->stub == stub && other->interfaces == interfaces) ? COMPARE_SAME
                                                                    : COMPARE_CHANGED;
}

void OspfAreaConfig::UpdateFromNew(DclConfigObject* newer) {
    auto* other = dynamic_cast<OspfAreaConfig*>(newer);
    if (other != nullptr) {
        stub = other->stub;
        interfaces = other->interfaces;
    }
}

unsigned short OspfAreaConfig::GetRowStatus() {
    if (destroy) {
        return 6;
    }
    return inMib ? 1 : 4;
}

void OspfAreaConfig::MarkDestroy() {
    destroy = true;
}

void OspfAreaConfig::Display(DcConsole* console) {
    console->Print("Area %u%s Interfaces:", id, stub ? " (stub)" : "");
    for (unsigned int ifIndex : interfaces) {
        console->Print(" %u", ifIndex);
    }
    console->Print("\n");
}

bool OspfAreaConfig::Commit() {
    actionReq = false;
    auto* ospf = dynamic_cast<DcOspfRouterBase*>(&router);
    if (destroy) {
        if (ospf != nullptr) {
            ospf->RemoveArea(id);
        }
        inMib = false;
        return true;
    }
    if (ospf == nullptr) {
        return false;
    }
    // Interfaces the area no longer lists are detached before the listed
    // ones are attached (an interface listed by two areas ends in the last
    // one committed).
    const OspfAreaCB* area = ospf->GetArea(id);
    if (area != nullptr) {
        const std::set<unsigned int> attached = area->interfaces;
        for (unsigned int ifIndex : attached) {
            if (interfaces.count(ifIndex) == 0) {
                ospf->DetachInterface(ifIndex);
            }
        }
    }
    ospf->AddArea(id, stub);
    for (unsigned int ifIndex : interfaces) {
        ospf->AttachInterface(id, ifIndex);
    }
    inMib = true;
    return false;
}

bool OspfAreaConfig::ParseFromOption(const OptionsNode& node) {
    static constexpr OptionsNode::Key KEYS[] = {"area", "stub", "interfaces"};
    OptionsNode members[3];
    node.FindMembers(KEYS, members);
    unsigned int area = 0;
    if (!members[0].AsVal(area)) {
        return false;
    }
    id = area;
    stub = false;
    members[1].AsVal(stub);
    const OptionsNode& list = members[2];
    if (list.IsEmpty()) {
        return true;
    }
    const OptionsNodeIterator end = list.end();
    for (OptionsNodeIterator it = list.begin(); it != end; ++it) {
        unsigned int ifIndex = 0;
        if (it->AsVal(ifIndex)) {
            interfaces.insert(ifIndex);
        }
    }
    return true;
}

OspfAreaConfigList::OspfAreaConfigList(DcRouterBase& owner)
    : DCLConfigList(owner, "OSPF_AREAS", "AREAS") {}

OspfAreaConfigList::~OspfAreaConfigList() = default;

void OspfAreaConfigList::InterfaceStatusChange(unsigned int, unsigned int) {}

DclConfigObject* OspfAreaConfigList::NewObject(const OptionsNode&, const string&,
                                               DclConfigObject::OptionType) {
    return new (std::nothrow) OspfAreaConfig(router);
}

DclConfigObject* OspfAreaConfigList::CopyObject(DclConfigObject* parsed) {
    auto* area = dynamic_cast<OspfAreaConfig*>(parsed);
    return area != nullptr ? new (std::nothrow) OspfAreaConfig(area) : nullptr;
}

}  // namespace Zavrel
