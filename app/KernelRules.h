// KernelRules: the policy rules that send traffic arriving on an attached
// interface to its VLAN's routing table, IPv4 and IPv6. Per interface two
// rules, written with the system's route protocol number:
//   priority RULE_PRIORITY      iif <name> lookup <vlan>
//   priority RULE_PRIORITY + 1  iif <name> unreachable
// The second keeps a destination the VLAN's table does not know from falling
// through to the main table. Rules of ours found at start are adopted: kept
// when the same interface is attached again, removed by ReleaseAdopted.
#ifndef ZAVREL_APP_KERNELRULES_H
#define ZAVREL_APP_KERNELRULES_H

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <tuple>

struct mnl_socket;

namespace Zavrel {

class KernelRules {
public:
    static constexpr uint32_t RULE_PRIORITY = 1000;

    KernelRules();
    ~KernelRules();
    KernelRules(const KernelRules&) = delete;
    KernelRules& operator=(const KernelRules&) = delete;

    // Opens the socket and adopts the rules of our protocol in the kernel.
    bool Open(std::string& error);
    // The rules of an interface bound to a VLAN (added, or kept when adopted).
    bool Add(const std::string& ifName, uint32_t table, std::string& error);
    bool Remove(const std::string& ifName, uint32_t table, std::string& error);
    // Removes the adopted rules not added again.
    void ReleaseAdopted();
    size_t AdoptedCount() const { return m_adopted.size(); }

private:
    // family, interface name, priority, table (0 for unreachable)
    using Rule = std::tuple<int, std::string, uint32_t, uint32_t>;
    bool Write(bool add, const Rule& rule, std::string& error);
    bool Dump(int family, std::string& error);

    mnl_socket* m_socket = nullptr;
    uint32_t m_portId = 0;
    uint32_t m_sequence = 0;
    std::set<Rule> m_adopted;
};

}  // namespace Zavrel

#endif
