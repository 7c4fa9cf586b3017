// OspfAreaCB: one OSPF area of a router: its id, whether it is a stub area,
// and the interfaces attached to it.
#ifndef ZAVREL_ROUTING_OSPFAREACB_H
#define ZAVREL_ROUTING_OSPFAREACB_H

#include <set>

namespace Zavrel {

struct OspfAreaCB {
    // The backbone area.
    static constexpr unsigned int BACKBONE = 0;

    OspfAreaCB() = default;
    OspfAreaCB(unsigned int id, bool isStub) : areaId(id), stub(isStub) {}

    bool IsBackbone() const { return areaId == BACKBONE; }

    unsigned int areaId = 0;
    bool stub = false;
    std::set<unsigned int> interfaces;
};

}  // namespace Zavrel

#endif
