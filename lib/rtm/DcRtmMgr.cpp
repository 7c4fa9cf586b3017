// DcRtmMgr: RTM instances per VLAN and their settings.
#include "rtm/DcRtmMgr.h"

#include <cstring>
#include <new>

#include "platform/AllocationFaults.h"
#include "platform/Trace.h"

namespace Zavrel {

DcRtmMgr* DcRtmMgr::m_instance = nullptr;

DcRtmMgr::RTMData::RTMData()
    : ready(false),
      deadTimer(60),
      ospfv2Internal(40),
      ospfv3Internal(40),
      ospfv2External(110),
      ospfv3External(110),
      ripv2(120),
      ripng(120),
      ebgp(200),
      ibgp(20) {}

namespace {

// The dead timer and the eight distances, compared and copied as one block.
bool SameSettings(const DcRtmMgr::RTMData& a, const DcRtmMgr::RTMData& b) {
    return a.deadTimer == b.deadTimer && a.ospfv2Internal == b.ospfv2Internal &&
           a.ospfv3Internal == b.ospfv3Internal && a.ospfv2External == b.ospfv2External &&
           a.ospfv3External == b.ospfv3External && a.ripv2 == b.ripv2 && a.ripng == b.ripng &&
           a.ebgp == b.ebgp && a.ibgp == b.ibgp;
}

void CopySettings(DcRtmMgr::RTMData& to, const DcRtmMgr::RTMData& from) {
    const bool ready = to.ready;
    to = from;
    to.ready = ready;
}

}  // namespace

DcRtmMgr::DcRtmMgr() = default;

DcRtmMgr* DcRtmMgr::GetInstance() {
    if (m_instance == nullptr) {
        // The constructor is private: the fault hook is asked here.
        m_instance =
            AllocationFaults::ShouldFail("DcRtmMgr") ? nullptr : new (std::nothrow) DcRtmMgr();
        if (m_instance == nullptr) {
            TRACE(0, "%s::%s: Error in allocating DcRtmMgr\n", "DcRtmMgr", "GetInstance");
        }
    }
    return m_instance;
}

bool DcRtmMgr::DestroyInstance() {
    if (m_instance == nullptr) {
        return false;
    }
    delete m_instance;
    m_instance = nullptr;
    return true;
}

unsigned short DcRtmMgr::GetDclProtocolInstanceIdFromVlan(unsigned short vlan, int afi) const {
    if (afi == AFI_IPV6) {
        return static_cast<unsigned short>(vlan | IP6_INSTANCE_BIT);
    }
    return vlan;
}

bool DcRtmMgr::IsRtmReady(unsigned short id) const {
    auto it = m_rtm_data.find(id);
    return it != m_rtm_data.end() && it->second.ready;
}

void DcRtmMgr::SetRtmReady(unsigned short id) {
    m_rtm_data[id].ready = true;
}

bool DcRtmMgr::HasRtmData(unsigned short id) const {
    return m_rtm_data.count(id) != 0;
}

const DcRtmMgr::RTMData* DcRtmMgr::GetRtmData(unsigned short id) const {
    auto it = m_rtm_data.find(id);
    return it == m_rtm_data.end() ? nullptr : &it->second;
}

bool DcRtmMgr::GetRTMConfig(const OptionsNode& options, RTMData* data) {
    OptionsNode rtm = options["RTM"];
    if (data == nullptr || rtm.IsEmpty()) {
        return false;
    }
    static constexpr OptionsNode::Key RTM_KEYS[] = {"dead_rpm_timer", "ADMIN_DISTANCE"};
    OptionsNode rtmMembers[2];
    rtm.FindMembers(RTM_KEYS, rtmMembers);
    // A dead timer that is missing or wrong keeps its value.
    rtmMembers[0].AsVal(data->deadTimer);

    // Once an "ADMIN_DISTANCE" section is given, every distance it leaves
    // out is 0 (unlike the dead timer, which keeps its value).
    const OptionsNode& distances = rtmMembers[1];
    if (!distances.IsEmpty()) {
        static constexpr OptionsNode::Key DISTANCE_KEYS[] = {"ospfv2_internal",
                                                             "ospfv2_external",
                                                             "ospfv3_internal",
                                                             "ospfv3_external",
                                                             "ripv2",
                                                             "ripng",
                                                             "ebgp",
                                                             "ibgp"};
        unsigned int* const fields[] = {&data->ospfv2Internal, &data->ospfv2External,
                                        &data->ospfv3Internal, &data->ospfv3External,
                                        &data->ripv2,          &data->ripng,
                                        &data->ebgp,           &data->ibgp};
        OptionsNode values[8];
        distances.FindMembers(DISTANCE_KEYS, values);
        for (size_t i = 0; i < 8; ++i) {
            *fields[i] = 0;
            values[i].AsVal(*fields[i]);
        }
    }
    return true;
}

bool DcRtmMgr::CreateRTMInstance(unsigned short vlan, int afi, const RTMData& data) {
    const unsigned short id = GetDclProtocolInstanceIdFromVlan(vlan, afi);
    auto it = m_rtm_data.find(id);
    if (it != m_rtm_data.end()) {
        if (SameSettings(it->second, data)) {
            TRACE(10, "Creating RTM Instance %u\n", static_cast<unsigned int>(id));
            return true;
        }
        CopySettings(it->second, data);
    } else {
        m_rtm_data.emplace(id, data);
    }
    TRACE(10, "Creating RTM Instance %u\n", static_cast<unsigned int>(id));

    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0, sizeof(entity));
    if (afi == AFI_IPV6) {
        entity.ospf_int_distance = data.ospfv3Internal;
        entity.ospf_ext_distance = data.ospfv3External;
        entity.rip_distance = data.ripng;
        entity.addr_family = 2;
    } else {
        entity.ospf_int_distance = data.ospfv2Internal;
        entity.ospf_ext_distance = data.ospfv2External;
        entity.rip_distance = data.ripv2;
        entity.addr_family = 1;
    }
    entity.dead_rpm_timer = data.deadTimer;
    // The stack takes the BGP distances in this crossed order when an
    // instance is started (the opposite of GetRTMConfig below).
    entity.ebgp_distance = data.ibgp;
    entity.ibgp_distance = data.ebgp;
    sms_cipr_start(id, &entity);
    return true;
}

void DcRtmMgr::DeleteRTMInstance(unsigned short vlan, int afi) {
    const unsigned short id = GetDclProtocolInstanceIdFromVlan(vlan, afi);
    TRACE(10, "Deleting RTM Instance %u\n", static_cast<unsigned int>(id));
    sms_cipr_action(id, SMS_CIPR_ACTION_DELETE);
    m_rtm_data.erase(id);
}

void DcRtmMgr::DeleteRtmConfig(unsigned short vlan) {
    DeleteRTMInstance(vlan, AFI_IPV4);
    DeleteRTMInstance(vlan, AFI_IPV6);
}

bool DcRtmMgr::UpdateRtmConfig(unsigned short vlan, const OptionsNode& options,
                               DclConfigObject::OptionType type) {
    RTMData data;
    TRACE(10, "%s::%s: Creating IPv4 Unicast RTM for vlan %u\n", "DcRtmMgr", "UpdateRtmConfig",
          static_cast<unsigned int>(vlan));
    // Only the VLAN's own options carry RTM settings.
    if (type != DclConfigObject::OPTION_TYPE_VLAN) {
        return true;
    }
    GetRTMConfig(options, &data);
    if (!CreateRTMInstance(vlan, AFI_IPV4, data)) {
        TRACE("Error in creating IPv4 Unicast RTM\n");
        return false;
    }
    TRACE(10, "Creating IPv6 Unicast RTM for vlan %u\n", static_cast<unsigned int>(vlan));
    if (!CreateRTMInstance(vlan, AFI_IPV6, data)) {
        TRACE("Error in creating IPv6 Unicast RTM\n");
        return false;
    }
    return true;
}

bool DcRtmMgr::GetRTMConfig(unsigned short instanceId, amb_cipr_rtm_entity* entity) {
    auto it = m_rtm_data.find(instanceId);
    if (it == m_rtm_data.end() || entity == nullptr) {
        return false;
    }
    const RTMData& data = it->second;
    std::memset(entity, 0, sizeof(*entity));
    entity->instance_index = instanceId;
    entity->dead_rpm_timer = data.deadTimer;
    entity->ebgp_distance = data.ebgp;
    entity->ibgp_distance = data.ibgp;
    if ((instanceId & IP6_INSTANCE_BIT) != 0) {
        entity->ospf_int_distance = data.ospfv3Internal;
        entity->ospf_ext_distance = data.ospfv3External;
        entity->rip_distance = data.ripng;
    } else {
        entity->ospf_int_distance = data.ospfv2Internal;
        entity->ospf_ext_distance = data.ospfv2External;
        entity->rip_distance = data.ripv2;
    }
    entity->row_status = Sms::ROW_ACTIVE;
    entity->admin_status = 1;
    return true;
}

}  // namespace Zavrel
