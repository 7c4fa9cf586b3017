// DcProtoInterfaceBase: enabled/ready state, interfaces and redistribution of
// a per-VLAN protocol.
#include "routing/DcProtoInterfaceBase.h"

#include <algorithm>

#include "routing/DcRouterBase.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

DcProtoInterfaceBase::DcProtoInterfaceBase(int afi, unsigned int protocol, bool dualStack)
    : m_afi(afi == DcRtmMgr::AFI_IPV6 ? DcRtmMgr::AFI_IPV6 : DcRtmMgr::AFI_IPV4),
      m_protocol(protocol),
      m_dualStack(dualStack),
      m_router(nullptr),
      m_enabled(false) {}

DcProtoInterfaceBase::~DcProtoInterfaceBase() = default;

void DcProtoInterfaceBase::ApplyOptions(const OptionsNode& section, const string& source,
                                        DclConfigObject::OptionType) {
    // Both settings are looked up in one pass over the section.
    static constexpr OptionsNode::Key KEYS[] = {"enabled", "REDISTRIBUTION"};
    OptionsNode settings[2];
    section.FindMembers(KEYS, settings);
    bool enabled = false;
    const int enabledSetting = settings[0].AsVal(enabled) ? (enabled ? 1 : 0) : -1;
    // A section's profile starts from the defaults: sources it leaves out
    // are redistributed.
    RedistributionProfile profile;
    const bool hasProfile = m_protocol != PROTO_NONE && profile.ParseSection(settings[1]);

    // The source's layer becomes the most recent one. When it already is,
    // it is updated in place, and an unchanged layer changes nothing.
    if (!m_layers.empty() && m_layers.back().source == source) {
        Layer& last = m_layers.back();
        if (last.enabled == enabledSetting && last.hasProfile == hasProfile &&
            last.profile == profile) {
            return;
        }
        last.enabled = enabledSetting;
        last.hasProfile = hasProfile;
        last.profile = profile;
        Recompute();
        return;
    }
    m_layers.erase(std::remove_if(m_layers.begin(), m_layers.end(),
                                  [&source](const Layer& l) { return l.source == source; }),
                   m_layers.end());
    Layer layer;
    layer.source = source;
    layer.enabled = enabledSetting;
    layer.hasProfile = hasProfile;
    layer.profile = profile;
    m_layers.push_back(layer);
    Recompute();
}

void DcProtoInterfaceBase::DeleteOptions(const string& source, DclConfigObject::OptionType) {
    const size_t before = m_layers.size();
    m_layers.erase(std::remove_if(m_layers.begin(), m_layers.end(),
                                  [&source](const Layer& l) { return l.source == source; }),
                   m_layers.end());
    if (m_layers.size() != before) {
        Recompute();
    }
}

void DcProtoInterfaceBase::Recompute() {
    const bool wasEnabled = m_enabled;
    const RedistributionProfile was = m_profile;
    bool enabled = false;
    RedistributionProfile profile;
    for (const Layer& layer : m_layers) {
        if (layer.enabled >= 0) {
            enabled = layer.enabled != 0;
        }
        if (layer.hasProfile) {
            profile = layer.profile;
        }
    }
    m_enabled = enabled;
    m_profile = profile;
    NotifyRedistribution(wasEnabled, was);
}

// One request per RTM instance and source whose effective state changed; a
// protocol does not redistribute its own routes into itself.
void DcProtoInterfaceBase::NotifyRedistribution(bool wasEnabled,
                                                const RedistributionProfile& was) const {
    if (m_protocol == PROTO_NONE) {
        return;
    }
    // Nothing can differ when neither the state nor the profile did.
    if (wasEnabled == m_enabled && was == m_profile) {
        return;
    }
    DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    if (rtm == nullptr) {
        return;
    }
    unsigned short instances[2];
    size_t count = 0;
    if (m_dualStack) {
        instances[count++] = rtm->GetDclProtocolInstanceIdFromVlan(GetVlan(), DcRtmMgr::AFI_IPV4);
        instances[count++] = rtm->GetDclProtocolInstanceIdFromVlan(GetVlan(), DcRtmMgr::AFI_IPV6);
    } else {
        instances[count++] = GetRtmInstance();
    }
    for (size_t i = 0; i < count; ++i) {
        const unsigned short instance = instances[i];
        for (unsigned int source : RedistributionProfile::SOURCES) {
            if (source == m_protocol) {
                continue;
            }
            const bool before = wasEnabled && was.Allows(source);
            const bool now = m_enabled && m_profile.Allows(source);
            if (before != now) {
                rtm->HandleRedistributionStatusChange(instance, source, m_protocol, now, before);
            }
        }
    }
}

bool DcProtoInterfaceBase::IsEnabled() const {
    return m_enabled;
}

DcProtoInterfaceBase::ConfigStatus DcProtoInterfaceBase::GetStatus() const {
    if (!m_enabled) {
        return CONFIG_DISABLED;
    }
    return IsReady() ? CONFIG_READY : CONFIG_ENABLED;
}

bool DcProtoInterfaceBase::IsReady() const {
    if (!m_enabled) {
        return false;
    }
    const DcRtmMgr* rtm = DcRtmMgr::GetInstance();
    return rtm != nullptr && rtm->IsRtmReady(GetRtmInstance());
}

bool DcProtoInterfaceBase::IsReady(unsigned int ifIndex) const {
    return IsReady() && GetInterfaceStatus(ifIndex) == IF_UP;
}

void DcProtoInterfaceBase::InterfaceStatusChange(unsigned int ifIndex, unsigned int status) {
    IfStatus state = IF_UP;
    if (status == IF_REMOVED) {
        state = IF_REMOVED;
        m_interfaces.erase(ifIndex);
        m_addresses.erase(ifIndex);
    } else {
        state = status == IF_DOWN ? IF_DOWN : IF_UP;
        m_interfaces[ifIndex] = state;
    }
    if (m_router != nullptr) {
        m_router->SetInterfaceStatus(ifIndex, state);
    }
}

void DcProtoInterfaceBase::AddressChange(unsigned int ifIndex, const Ip4Addr& address) {
    m_addresses[ifIndex] = address;
}

unsigned short DcProtoInterfaceBase::GetVlan() const {
    return m_router != nullptr ? m_router->GetVlan() : 0;
}

unsigned short DcProtoInterfaceBase::GetRtmInstance() const {
    return m_afi == DcRtmMgr::AFI_IPV6
               ? static_cast<unsigned short>(GetVlan() | DcRtmMgr::IP6_INSTANCE_BIT)
               : GetVlan();
}

DcProtoInterfaceBase::IfStatus DcProtoInterfaceBase::GetInterfaceStatus(
    unsigned int ifIndex) const {
    auto it = m_interfaces.find(ifIndex);
    return it == m_interfaces.end() ? IF_REMOVED : it->second;
}

const char* DcProtoInterfaceBase::StatusName(ConfigStatus status) {
    switch (status) {
        case CONFIG_DISABLED:
            return "Disabled";
        case CONFIG_ENABLED:
            return "Enabled";
        case CONFIG_READY:
            return "Ready";
    }
    return "Unknown";
}

const char* DcProtoInterfaceBase::IfStatusName(IfStatus status) {
    switch (status) {
        case IF_REMOVED:
            return "Removed";
        case IF_DOWN:
            return "Down";
        case IF_UP:
            return "Up";
    }
    return "Unknown";
}

const char* DcProtoInterfaceBase::ProtocolName(unsigned int protocol) {
    switch (protocol) {
        case RedistributionProfile::PROTO_STATIC:
            return "static";
        case RedistributionProfile::PROTO_CONNECTED:
            return "connected";
        case RedistributionProfile::PROTO_RIP:
            return "rip";
        case RedistributionProfile::PROTO_OSPF:
            return "ospf";
        case RedistributionProfile::PROTO_BGP:
            return "bgp";
        default:
            return "unknown";
    }
}

}  // namespace Zavrel
