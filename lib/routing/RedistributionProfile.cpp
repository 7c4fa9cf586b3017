// RedistributionProfile: route sources a protocol redistributes.
#include "routing/RedistributionProfile.h"

namespace Zavrel {

const unsigned int RedistributionProfile::SOURCES[RedistributionProfile::SOURCE_COUNT] = {
    PROTO_STATIC, PROTO_CONNECTED, PROTO_RIP, PROTO_OSPF, PROTO_BGP};

RedistributionProfile::RedistributionProfile()
    : staticRoutes(true), connected(true), rip(true), ospf(true), bgp(true) {}

RedistributionProfile::RedistributionProfile(bool staticRoutes_, bool connected_, bool bgp_,
                                             bool ospf_, bool rip_)
    : staticRoutes(staticRoutes_), connected(connected_), rip(rip_), ospf(ospf_), bgp(bgp_) {}

RedistributionProfile& RedistributionProfile::operator=(const RedistributionProfile& other) {
    if (this != &other) {
        staticRoutes = other.staticRoutes;
        connected = other.connected;
        rip = other.rip;
        ospf = other.ospf;
        bgp = other.bgp;
    }
    return *this;
}

bool RedistributionProfile::operator==(const RedistributionProfile& other) const {
    return staticRoutes == other.staticRoutes && connected == other.connected && rip == other.rip &&
           ospf == other.ospf && bgp == other.bgp;
}

void RedistributionProfile::Reset() {
    staticRoutes = true;
    connected = true;
    rip = true;
    ospf = true;
    bgp = true;
}

bool RedistributionProfile::ParseOption(const OptionsNode& node) {
    return ParseSection(node["REDISTRIBUTION"]);
}

bool RedistributionProfile::ParseSection(const OptionsNode& section) {
    if (section.IsEmpty()) {
        return false;
    }
    // A source whose setting is missing or not a boolean keeps its value.
    static constexpr OptionsNode::Key KEYS[] = {"static", "connected", "bgp", "rip", "ospf"};
    bool* const fields[] = {&staticRoutes, &connected, &bgp, &rip, &ospf};
    OptionsNode settings[SOURCE_COUNT];
    section.FindMembers(KEYS, settings);
    for (size_t i = 0; i < SOURCE_COUNT; ++i) {
        bool value = true;
        if (settings[i].AsVal(value)) {
            *fields[i] = value;
        }
    }
    return true;
}

bool RedistributionProfile::Allows(unsigned int sourceProtocol) const {
    switch (sourceProtocol) {
        case PROTO_STATIC:
            return staticRoutes;
        case PROTO_CONNECTED:
            return connected;
        case PROTO_RIP:
            return rip;
        case PROTO_OSPF:
            return ospf;
        case PROTO_BGP:
            return bgp;
        default:
            return false;
    }
}

}  // namespace Zavrel
