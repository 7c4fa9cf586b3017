#include "app/KernelRules.h"

#include <libmnl/libmnl.h>
#include <linux/fib_rules.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <cerrno>
#include <cstring>
#include <vector>

#include "emulator/KernelFib.h"
#include "emulator/RouteNetlink.h"

namespace Zavrel {

namespace {

constexpr size_t RECEIVE_SIZE = 32768;

struct RuleAttributes {
    const nlattr* table[FRA_MAX + 1] = {};
};

int CollectRuleAttribute(const nlattr* attribute, void* data) {
    if (mnl_attr_type_valid(attribute, FRA_MAX) > 0) {
        static_cast<RuleAttributes*>(data)->table[mnl_attr_get_type(attribute)] = attribute;
    }
    return MNL_CB_OK;
}

struct DumpState {
    std::set<std::tuple<int, std::string, uint32_t, uint32_t>>* adopted = nullptr;
};

int OnDumpedRule(const nlmsghdr* message, void* data) {
    if (message->nlmsg_len < mnl_nlmsg_size(sizeof(fib_rule_hdr))) {
        return MNL_CB_OK;
    }
    const auto* header = static_cast<const fib_rule_hdr*>(mnl_nlmsg_get_payload(message));
    RuleAttributes a;
    if (mnl_attr_parse(message, sizeof(fib_rule_hdr), CollectRuleAttribute, &a) < 0) {
        return MNL_CB_OK;
    }
    const nlattr* const* t = a.table;
    if (t[FRA_PROTOCOL] == nullptr ||
        mnl_attr_get_u8(t[FRA_PROTOCOL]) != Emulator::KernelFib::PROTOCOL ||
        t[FRA_IIFNAME] == nullptr || t[FRA_PRIORITY] == nullptr) {
        return MNL_CB_OK;
    }
    uint32_t table = 0;
    if (header->action == FR_ACT_TO_TBL) {
        table = t[FRA_TABLE] != nullptr ? mnl_attr_get_u32(t[FRA_TABLE]) : header->table;
    }
    static_cast<DumpState*>(data)->adopted->emplace(
        header->family, mnl_attr_get_str(t[FRA_IIFNAME]), mnl_attr_get_u32(t[FRA_PRIORITY]), table);
    return MNL_CB_OK;
}

std::string ErrnoText(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

}  // namespace

KernelRules::KernelRules() = default;

KernelRules::~KernelRules() {
    if (m_socket != nullptr) {
        mnl_socket_close(m_socket);
    }
}

bool KernelRules::Open(std::string& error) {
    m_socket = mnl_socket_open(NETLINK_ROUTE);
    if (m_socket == nullptr || mnl_socket_bind(m_socket, 0, MNL_SOCKET_AUTOPID) < 0) {
        error = ErrnoText("netlink socket for rules");
        return false;
    }
    m_portId = mnl_socket_get_portid(m_socket);
    return Dump(AF_INET, error) && Dump(AF_INET6, error);
}

bool KernelRules::Dump(int family, std::string& error) {
    std::vector<char> buffer(RECEIVE_SIZE);
    nlmsghdr* request = mnl_nlmsg_put_header(buffer.data());
    request->nlmsg_type = RTM_GETRULE;
    request->nlmsg_seq = ++m_sequence;
    auto* header =
        static_cast<fib_rule_hdr*>(mnl_nlmsg_put_extra_header(request, sizeof(fib_rule_hdr)));
    header->family = static_cast<uint8_t>(family);
    DumpState state;
    state.adopted = &m_adopted;
    return Emulator::RunNetlinkDump(m_socket, request, OnDumpedRule, &state, "rule dump", error);
}

bool KernelRules::Write(bool add, const Rule& rule, std::string& error) {
    std::vector<char> buffer(RECEIVE_SIZE);
    nlmsghdr* message = mnl_nlmsg_put_header(buffer.data());
    message->nlmsg_type = add ? RTM_NEWRULE : RTM_DELRULE;
    message->nlmsg_flags = NLM_F_REQUEST | NLM_F_ACK;
    if (add) {
        message->nlmsg_flags |= NLM_F_CREATE | NLM_F_EXCL;
    }
    message->nlmsg_seq = ++m_sequence;
    auto* header =
        static_cast<fib_rule_hdr*>(mnl_nlmsg_put_extra_header(message, sizeof(fib_rule_hdr)));
    const uint32_t table = std::get<3>(rule);
    header->family = static_cast<uint8_t>(std::get<0>(rule));
    header->action = table != 0 ? FR_ACT_TO_TBL : FR_ACT_UNREACHABLE;
    header->table = static_cast<uint8_t>(table < 256 ? table : RT_TABLE_UNSPEC);
    mnl_attr_put_strz(message, FRA_IIFNAME, std::get<1>(rule).c_str());
    mnl_attr_put_u32(message, FRA_PRIORITY, std::get<2>(rule));
    mnl_attr_put_u8(message, FRA_PROTOCOL, Emulator::KernelFib::PROTOCOL);
    if (table != 0) {
        mnl_attr_put_u32(message, FRA_TABLE, table);
    }
    if (mnl_socket_sendto(m_socket, message, message->nlmsg_len) < 0) {
        error = ErrnoText("rule");
        return false;
    }
    const ssize_t size = mnl_socket_recvfrom(m_socket, buffer.data(), buffer.size());
    if (size < 0 || mnl_cb_run(buffer.data(), static_cast<size_t>(size), m_sequence, m_portId,
                               nullptr, nullptr) < 0) {
        // A rule already there (or already gone) is what was wanted.
        if ((add && errno == EEXIST) || (!add && errno == ENOENT)) {
            return true;
        }
        error = ErrnoText(add ? "adding a rule" : "removing a rule");
        return false;
    }
    return true;
}

bool KernelRules::Add(const std::string& ifName, uint32_t table, std::string& error) {
    for (int family : {AF_INET, AF_INET6}) {
        for (const Rule& rule : {Rule(family, ifName, RULE_PRIORITY, table),
                                 Rule(family, ifName, RULE_PRIORITY + 1, 0)}) {
            if (m_adopted.erase(rule) != 0) {
                continue;
            }
            if (!Write(true, rule, error)) {
                return false;
            }
        }
    }
    return true;
}

bool KernelRules::Remove(const std::string& ifName, uint32_t table, std::string& error) {
    bool ok = true;
    for (int family : {AF_INET, AF_INET6}) {
        for (const Rule& rule : {Rule(family, ifName, RULE_PRIORITY, table),
                                 Rule(family, ifName, RULE_PRIORITY + 1, 0)}) {
            ok = Write(false, rule, error) && ok;
        }
    }
    return ok;
}

void KernelRules::ReleaseAdopted() {
    std::string error;
    for (const Rule& rule : m_adopted) {
        Write(false, rule, error);
    }
    m_adopted.clear();
}

}  // namespace Zavrel
