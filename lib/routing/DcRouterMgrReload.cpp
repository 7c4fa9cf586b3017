// DcRouterMgr: configuration reload.
//
// The manager remembers which VLANs each options source configured and which
// sources configure each VLAN. A source that stops listing a VLAN takes its
// options from the VLAN with it, and the VLAN goes with its last source.
#include "routing/DcRouterMgr.h"

#include <cstddef>
#include <vector>

#include "platform/Options.h"
#include "platform/OptionsNode.h"
#include "platform/Trace.h"
#include "routing/DcRouterBase.h"
#include "rtm/DcRtmMgr.h"

namespace Zavrel {

namespace {

// Number of distinct VLAN ids (16 bits).
const size_t VLAN_ID_COUNT = 0x10000;

}  // namespace

bool DcRouterMgr::Reload(const Options& options, const string& source,
                         DclConfigObject::OptionType type) {
    OptionsNode section = options[m_vlan_section];
    if (section.IsEmpty()) {
        DeleteOptions(source, type);
        return true;
    }

    // The VLANs the source configured before, and those it lists now: the
    // ones it no longer lists lose its options at the end.
    std::set<unsigned short>& configured = m_source_vlans[source];
    const std::vector<unsigned short> previous(configured.begin(), configured.end());
    std::vector<bool> listed(VLAN_ID_COUNT, false);

    TRACE(10, "Reloading Configuration in all VLANs\n");
    const OptionsNodeIterator end = section.end();
    for (OptionsNodeIterator it = section.begin(); it != end; ++it) {
        // The iterator hands out a fresh node on every access: keep this one,
        // which carries the error of the read below.
        const OptionsNode& entry = *it;
        unsigned int vidValue = 0;
        if (!entry.GetLeafValue<unsigned int>(vidValue, "vid", 0u)) {
            TRACE("Unable to Get VLAN ID:%s\n", entry.Error().c_str());
            continue;
        }
        unsigned short vid = static_cast<unsigned short>(vidValue & 0xFFFFu);

        VlanMap::iterator vlan = m_vlans.find(vid);
        if (vlan != m_vlans.end() && vlan->second != nullptr) {
            if (type == DclConfigObject::OPTION_TYPE_VLAN) {
                DcRtmMgr* rtm = DcRtmMgr::GetInstance();
                if (rtm != nullptr) {
                    rtm->UpdateRtmConfig(vid, entry, DclConfigObject::OPTION_TYPE_VLAN);
                }
            }
        } else {
            if (type != DclConfigObject::OPTION_TYPE_VLAN) {
                TRACE(
                    "Loaded Remote %s Options with VLAN %u before loading VLAN options... "
                    "Skipping\n",
                    source.c_str(), vid);
                continue;
            }
            std::pair<VlanMap::iterator, bool> created =
                CreateVlan(vid, entry, DclConfigObject::OPTION_TYPE_VLAN);
            if (!created.second) {
                // Not created: the entry is skipped and not recorded.
                continue;
            }
            vlan = created.first;
        }

        configured.insert(vid);
        listed[vid] = true;
        VlanRouters* record = vlan->second;
        record->sources.insert(source);

        ReloadRouters(record, entry, source, type);
    }

    for (unsigned short vid : previous) {
        if (listed[vid]) {
            continue;
        }
        VlanMap::iterator vlan = m_vlans.find(vid);
        if (vlan == m_vlans.end() || vlan->second == nullptr) {
            // Deleted since the source listed it: nothing left to remove.
            continue;
        }
        RemoveSourceFromVlan(vid, vlan->second, source, type);
    }
    return true;
}

void DcRouterMgr::ReloadRouters(VlanRouters* record, const OptionsNode& entry, const string& source,
                                DclConfigObject::OptionType type) {
    // The routers' sections are found in one pass over the entry (the
    // routers have distinct names), then applied in router order.
    auto next = record->routers.begin();
    while (next != record->routers.end()) {
        DcRouterBase* routers[PROTOCOL_COUNT];
        OptionsNode::Key names[PROTOCOL_COUNT];
        OptionsNode sections[PROTOCOL_COUNT];
        size_t count = 0;
        for (; next != record->routers.end() && count < PROTOCOL_COUNT; ++next) {
            routers[count] = next->second;
            const string& name = next->second->GetName();
            names[count] = OptionsNode::Key(name.c_str(), name.length());
            ++count;
        }
        entry.FindMembers(names, sections, count);
        for (size_t i = 0; i < count; ++i) {
            if (type == DclConfigObject::OPTION_TYPE_REMOTE) {
                // A remote's options apply only to the routers that run.
                if (routers[i]->IsEnabled()) {
                    routers[i]->ReloadSection(sections[i], source,
                                              DclConfigObject::OPTION_TYPE_REMOTE);
                }
            } else {
                routers[i]->ReloadSection(sections[i], source, type);
            }
        }
    }
}

void DcRouterMgr::DeleteOptions(const string& source, DclConfigObject::OptionType type) {
    auto found = m_source_vlans.find(source);
    if (found == m_source_vlans.end()) {
        return;
    }
    // Work on copies: the source's entry is erased at the end, and the
    // caller's name may refer to it.
    const string name = source;
    const std::set<unsigned short> vlans = found->second;
    for (unsigned short vid : vlans) {
        VlanMap::iterator vlan = m_vlans.find(vid);
        if (vlan == m_vlans.end() || vlan->second == nullptr) {
            TRACE("Invalid VLAN %u Record found for Config File %s\n", vid, name.c_str());
            continue;
        }
        RemoveSourceFromVlan(vid, vlan->second, name, type);
    }
    m_source_vlans.erase(name);
}

void DcRouterMgr::RemoveSourceFromVlan(unsigned short vid, VlanRouters* record,
                                       const string& source, DclConfigObject::OptionType type) {
    for (auto& router : record->routers) {
        router.second->DeleteOptions(source, type);
    }
    record->sources.erase(source);
    if (record->sources.empty()) {
        DeleteVlan(vid);
    }
}

std::set<unsigned short> DcRouterMgr::GetSourceVlans(const string& source) const {
    auto found = m_source_vlans.find(source);
    if (found == m_source_vlans.end()) {
        return std::set<unsigned short>();
    }
    return found->second;
}

}  // namespace Zavrel
