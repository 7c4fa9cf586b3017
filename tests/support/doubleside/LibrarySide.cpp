#include "support/doubleside/LibrarySide.h"

#include <arpa/inet.h>

#include <cstring>
#include <sstream>

namespace Zavrel::test {

LibrarySide& LibrarySide::Instance() {
    static LibrarySide* side = new LibrarySide();  // lives as long as the process
    return *side;
}

void LibrarySide::Reset() {
    m_calls.clear();
    rescheduled = false;
    rescheduledAnswer = -1;
    rescheduleCount = 0;
    inRun = false;
    callsOutsideRun.clear();
    m_rtmConfigs.clear();
    m_unknownRtm.clear();
    defaultRtmConfigResult = 1;
    readyInstances.clear();
    i3ReadyResult = 0;
    addresses.clear();
    vlanAddresses.clear();
    routeStates.clear();
    redistStates.clear();
    completedOids.clear();
    registered.clear();
    m_hooks.clear();
    m_onceHooks.clear();
}

std::vector<std::string> LibrarySide::Calls(const std::string& function) const {
    std::vector<std::string> result;
    const std::string prefix = function + "(";
    for (const std::string& call : m_calls) {
        if (call.compare(0, prefix.size(), prefix) == 0) {
            result.push_back(call);
        }
    }
    return result;
}

std::vector<std::string> LibrarySide::Callbacks() const {
    static const char* const queries[] = {"cIsNBaseRescheduled(", "cIsIpv6Instance(",
                                          "cGetIp6Instance(", "cGetIp4Instance(", "cIsRtmReady("};
    std::vector<std::string> result;
    for (const std::string& call : m_calls) {
        bool query = false;
        for (const char* prefix : queries) {
            query = query || call.compare(0, std::strlen(prefix), prefix) == 0;
        }
        if (!query) {
            result.push_back(call);
        }
    }
    return result;
}

void LibrarySide::Record(const std::string& function, const std::string& arguments) {
    m_calls.push_back(function + "(" + arguments + ")");
    if (!inRun && function != "cRescheduleNBase" && function != "cIsNBaseRescheduled") {
        callsOutsideRun.push_back(m_calls.back());
    }
}

int LibrarySide::RunScheduler() {
    rescheduled = false;
    const bool outer = inRun;
    inRun = true;
    const int result = nbb_scheduler();
    inRun = outer;
    return result;
}

int LibrarySide::RunUntilIdle(int maxRuns) {
    int runs = 0;
    while (runs < maxRuns) {
        const int result = RunScheduler();
        ++runs;
        if (result < 0 && !rescheduled) {
            break;
        }
    }
    return runs;
}

void LibrarySide::SetRtmConfig(unsigned long instance, const amb_cipr_rtm_entity& entity) {
    m_unknownRtm.erase(instance);
    m_rtmConfigs[instance] = entity;
}

void LibrarySide::SetRtmConfigUnknown(unsigned long instance) {
    m_rtmConfigs.erase(instance);
    m_unknownRtm.insert(instance);
}

amb_cipr_rtm_entity LibrarySide::DefaultRtmConfig(unsigned long instance) {
    amb_cipr_rtm_entity entity;
    std::memset(&entity, 0, sizeof(entity));
    entity.instance_index = instance;
    entity.row_status = 1;
    entity.admin_status = 1;
    entity.ospf_int_distance = 40;
    entity.ospf_ext_distance = 110;
    entity.ebgp_distance = 200;
    entity.ibgp_distance = 20;
    entity.rip_distance = 120;
    entity.dead_rpm_timer = 60;
    return entity;
}

int LibrarySide::AnswerRtmConfig(unsigned long instance, amb_cipr_rtm_entity* entity) const {
    if (m_unknownRtm.count(instance) != 0) {
        return 2;
    }
    auto found = m_rtmConfigs.find(instance);
    if (found == m_rtmConfigs.end() && defaultRtmConfigResult != 1) {
        return 2;
    }
    if (entity != nullptr) {
        *entity = found != m_rtmConfigs.end() ? found->second : DefaultRtmConfig(instance);
    }
    return 1;
}

void LibrarySide::OnCall(const std::string& function, std::function<void()> hook) {
    m_hooks[function].push_back(std::move(hook));
}

void LibrarySide::OnNextCall(const std::string& function, std::function<void()> hook) {
    m_onceHooks[function].push_back(std::move(hook));
}

void LibrarySide::RunHooks(const std::string& function) {
    auto once = m_onceHooks.find(function);
    if (once != m_onceHooks.end() && !once->second.empty()) {
        std::function<void()> hook = std::move(once->second.front());
        once->second.erase(once->second.begin());
        hook();
    }
    auto every = m_hooks.find(function);
    if (every != m_hooks.end()) {
        // Copied: a hook may add hooks.
        std::vector<std::function<void()>> hooks = every->second;
        for (auto& hook : hooks) {
            hook();
        }
    }
}

std::vector<std::string> LibrarySide::WalkProbe::Rows() const {
    std::vector<std::string> result;
    for (const std::string& line : lines) {
        if (line.compare(0, 2, "1 ") == 0) {
            result.push_back(line.substr(2));
        }
    }
    return result;
}

unsigned char LibrarySide::WalkCallback(void* context, unsigned long, unsigned long code,
                                        void* row) {
    auto* probe = static_cast<WalkProbe*>(context);
    if (probe == nullptr) {
        return 0;
    }
    std::string line = std::to_string(code);
    if (code == SMS_RC_ROW && row != nullptr) {
        if (probe->table == "rtm_rib") {
            line += " " + RibRowText(*static_cast<const amb_cipr_rtm_rib*>(row));
        } else if (probe->table == "i3_ei") {
            line += " " + EiRowText(*static_cast<const amb_stubs_i3_ei*>(row));
        } else if (probe->table == "i3_ea") {
            line += " " + EaRowText(*static_cast<const amb_stubs_i3_ea*>(row));
        } else {
            line += " " + RouteRowText(*static_cast<const amb_cipr_rtm_route*>(row));
        }
    }
    probe->lines.push_back(line);
    if (code == SMS_RC_ROW) {
        ++probe->rows;
    } else if (code != SMS_RC_PASS_OVER) {
        probe->ended = true;
    }
    if (probe->hook) {
        return probe->hook(code, row);
    }
    if (code != SMS_RC_ROW) {
        return 0;
    }
    if (probe->stopAfterRows >= 0 && probe->rows >= static_cast<size_t>(probe->stopAfterRows)) {
        return 0;
    }
    return probe->answer;
}

std::string LibrarySide::AddressText(int family, const unsigned char* bytes) {
    if (bytes == nullptr) {
        return "null";
    }
    char text[INET6_ADDRSTRLEN] = {};
    inet_ntop(family == 1 ? AF_INET : AF_INET6, bytes, text, sizeof(text));
    return text;
}

std::string LibrarySide::OidText(const unsigned long* oid, unsigned long length) {
    if (oid == nullptr) {
        return "null";
    }
    std::string text;
    for (unsigned long i = 0; i < length; ++i) {
        text += (i == 0 ? "" : ":") + std::to_string(oid[i]);
    }
    return text;
}

std::string LibrarySide::RouteRowText(const amb_cipr_rtm_route& row) {
    std::ostringstream text;
    const int family = row.addr_family == 1 ? 1 : 2;
    text << row.instance << " " << AddressText(family, row.dest) << "/" << row.dest_len << " via "
         << AddressText(family, row.next_hop) << " if " << row.if_index << " type "
         << row.route_type << " proto " << row.proto << " age " << row.age << " metric "
         << row.metric1;
    return text.str();
}

std::string LibrarySide::RibRowText(const amb_cipr_rtm_rib& row) {
    amb_cipr_rtm_route route;
    std::memcpy(&route, &row, sizeof(route));
    return RouteRowText(route) + " fib " + std::to_string(row.fib_route) + " unresolved " +
           std::to_string(row.unresolved);
}

std::string LibrarySide::EiRowText(const amb_stubs_i3_ei& row) {
    std::ostringstream text;
    text << row.instance << " " << row.if_index << " "
         << std::string(row.if_name, strnlen(row.if_name, sizeof(row.if_name))) << " oper "
         << row.oper_status << " mtu " << row.mtu << " flags " << row.flags << " extra "
         << row.extra;
    return text.str();
}

std::string LibrarySide::EaRowText(const amb_stubs_i3_ea& row) {
    std::ostringstream text;
    text << row.instance << " " << row.if_index << " type " << row.addr_type << " "
         << AddressText(row.addr_type == 1 ? 1 : 2, row.address) << "/" << row.prefix_len;
    return text.str();
}

}  // namespace Zavrel::test

// ---------------------------------------------------------------------------
// The c* entry points.

using Zavrel::test::LibrarySide;

namespace {

LibrarySide& Side() {
    return LibrarySide::Instance();
}

std::string Join(std::initializer_list<std::string> parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += (text.empty() ? "" : ", ") + part;
    }
    return text;
}

template <typename T>
std::string S(T value) {
    return std::to_string(value);
}

}  // namespace

extern "C" {

void cRescheduleNBase(void) {
    Side().Record("cRescheduleNBase", "");
    ++Side().rescheduleCount;
    Side().rescheduled = true;
    Side().RunHooks("cRescheduleNBase");
}

int cIsNBaseRescheduled(void) {
    Side().Record("cIsNBaseRescheduled", "");
    Side().RunHooks("cIsNBaseRescheduled");
    if (Side().rescheduledAnswer >= 0) {
        return Side().rescheduledAnswer;
    }
    return Side().rescheduled ? 1 : 0;
}

void cRegisterWorkWithEventloop(int fd, int arg, unsigned int mask) {
    Side().Record("cRegisterWorkWithEventloop", Join({S(fd), S(arg), S(mask)}));
    Side().registered[fd] = std::make_pair(arg, mask);
    Side().RunHooks("cRegisterWorkWithEventloop");
}

void cUnregisterWorkWithEventloop(int fd, int arg) {
    Side().Record("cUnregisterWorkWithEventloop", Join({S(fd), S(arg)}));
    Side().registered.erase(fd);
    Side().RunHooks("cUnregisterWorkWithEventloop");
}

void cChangeMask(int fd, unsigned int mask) {
    Side().Record("cChangeMask", Join({S(fd), S(mask)}));
    auto found = Side().registered.find(fd);
    if (found != Side().registered.end()) {
        found->second.second = mask;
    }
    Side().RunHooks("cChangeMask");
}

int cIsIpv6Instance(unsigned long instance) {
    Side().Record("cIsIpv6Instance", S(instance));
    return (instance & 0x8000) != 0 ? 1 : 0;
}

unsigned long cGetIp6Instance(unsigned long instance) {
    Side().Record("cGetIp6Instance", S(instance));
    return (instance & 0x7fff) | 0x8000;
}

unsigned long cGetIp4Instance(unsigned long instance) {
    Side().Record("cGetIp4Instance", S(instance));
    return instance & 0x7fff;
}

void cSetRouteState(unsigned long instance, int family, const unsigned char* dest,
                    unsigned int prefix_len, const unsigned char* next_hop, unsigned int if_index,
                    int metric, int route_type, int row_status, int admin_status,
                    unsigned long spare, unsigned int result) {
    const std::string destination = LibrarySide::AddressText(family, dest);
    const std::string nextHop = LibrarySide::AddressText(family, next_hop);
    Side().Record("cSetRouteState", Join({S(instance), S(family), destination, S(prefix_len),
                                          nextHop, S(if_index), S(metric), S(route_type),
                                          S(row_status), S(admin_status), S(spare), S(result)}));
    Side().routeStates.push_back({instance, family, destination, prefix_len, nextHop, if_index,
                                  metric, route_type, row_status, admin_status, spare, result});
    Side().RunHooks("cSetRouteState");
}

void cSetRedistState(unsigned long a0, unsigned long a1, unsigned long a2, unsigned long a3,
                     unsigned long a4, unsigned long a5, unsigned long a6, unsigned long a7) {
    Side().Record("cSetRedistState",
                  Join({S(a0), S(a1), S(a2), S(a3), S(a4), S(a5), S(a6), S(a7)}));
    Side().redistStates.push_back({a0, a1, a2, a3, a4, a5, a6, a7});
    Side().RunHooks("cSetRedistState");
}

int cIsRtmReady(unsigned long instance) {
    Side().Record("cIsRtmReady", S(instance));
    return Side().readyInstances.count(instance & 0xffff) != 0 ? 1 : 0;
}

void cSetRtmReady(unsigned long instance) {
    Side().Record("cSetRtmReady", S(instance));
    Side().readyInstances.insert(instance & 0xffff);
    Side().RunHooks("cSetRtmReady");
}

int cGetRtmConfig(unsigned long instance, amb_cipr_rtm_entity* entity) {
    Side().Record("cGetRtmConfig", S(instance));
    Side().RunHooks("cGetRtmConfig");
    return Side().AnswerRtmConfig(instance, entity);
}

int cGetAddress(unsigned long instance, unsigned char* address) {
    Side().Record("cGetAddress", S(instance));
    auto found = Side().addresses.find(instance);
    if (address == nullptr || found == Side().addresses.end() || found->second.size() < 4) {
        return 0;
    }
    std::memcpy(address, found->second.data(), 4);
    return 1;
}

int cGetVlanAddress(unsigned long instance, unsigned char* address) {
    Side().Record("cGetVlanAddress", S(instance));
    auto found = Side().vlanAddresses.find(instance);
    if (address == nullptr || found == Side().vlanAddresses.end() || found->second.size() < 4) {
        return 0;
    }
    std::memcpy(address, found->second.data(), 4);
    return 1;
}

int cI3Ready(void) {
    Side().Record("cI3Ready", "");
    Side().RunHooks("cI3Ready");
    return Side().i3ReadyResult;
}

void cRunPendingAction(unsigned long* oid, unsigned long length) {
    Side().Record("cRunPendingAction", LibrarySide::OidText(oid, length));
    if (oid != nullptr) {
        Side().completedOids.emplace_back(oid, oid + length);
    }
    Side().RunHooks("cRunPendingAction");
}

}  // extern "C"
