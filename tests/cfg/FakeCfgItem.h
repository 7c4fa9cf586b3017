// FakeCfgItem: a configuration item whose readiness, OID and row status a
// test controls, and which logs what the scheduler does with it.
#ifndef ZAVREL_TESTS_CFG_FAKECFGITEM_H
#define ZAVREL_TESTS_CFG_FAKECFGITEM_H

#include <map>
#include <string>
#include <vector>

#include "cfg/CfgItem.h"
#include "mib/MibOid.h"
#include "platform/DcConsole.h"

namespace Zavrel::test {

// What the fake items answer and what they log, shared by all of them.
struct FakeWorld {
    std::map<long, bool> groupReady;               // readiness per group
    std::map<std::string, bool> ownListReady;      // items without a group
    std::map<std::string, bool> itemReady;         // CfgItemReady, default true
    std::map<std::string, bool> removeOnNotReady;  // default false
    std::vector<std::string> log;                  // "send x", "delete x", "inmib x 5"
    int listReadyCalls = 0;

    std::vector<std::string> Take() {
        std::vector<std::string> taken;
        taken.swap(log);
        return taken;
    }
};

class FakeCfgItem : public CfgItem {
public:
    // group < 0: the item has no readiness key and answers CfgListReady
    // from world.ownListReady (default true).
    FakeCfgItem(FakeWorld& world, std::string name, unsigned long oid, int status = 1,
                long group = 0)
        : m_world(world),
          m_name(std::move(name)),
          m_oid_value(oid),
          m_status(status),
          m_group(group) {}
    ~FakeCfgItem() override { m_world.log.push_back("delete " + m_name); }

    bool CfgListReady() override {
        ++m_world.listReadyCalls;
        if (m_group < 0) {
            auto found = m_world.ownListReady.find(m_name);
            return found == m_world.ownListReady.end() || found->second;
        }
        auto found = m_world.groupReady.find(m_group);
        return found == m_world.groupReady.end() || found->second;
    }
    bool CfgItemReady() override {
        auto found = m_world.itemReady.find(m_name);
        return found == m_world.itemReady.end() || found->second;
    }
    void PrintItem(DcConsole* console) const override {
        console->Print("Fake(%s) ActionState(%s)\n", m_name.c_str(),
                       GetActionStateStr(GetActionState()));
    }
    void Send() override {
        m_world.log.push_back("send " + m_name);
        SetActionState(ACTION_ITEM_ISSUED);
    }
    MibOid& GetOid() override {
        const unsigned long components[2] = {42, m_oid_value};
        m_oid.SetOid(components, 2);
        return m_oid;
    }
    void SetInMib(bool inMib, unsigned int reason) override {
        m_world.log.push_back("inmib " + m_name + " " + std::to_string(inMib) + " " +
                              std::to_string(reason));
    }
    bool Replace(void* other) override {
        auto* held = dynamic_cast<FakeCfgItem*>(static_cast<CfgItem*>(other));
        return held != nullptr && held->GetOid() == m_oid && held->m_status == m_status;
    }
    bool RemoveOnNotReady() const override {
        auto found = m_world.removeOnNotReady.find(m_name);
        return found != m_world.removeOnNotReady.end() && found->second;
    }
    bool GetListReadyKey(unsigned long& key) const override {
        if (m_group < 0) {
            return false;
        }
        key = static_cast<unsigned long>(m_group);
        return true;
    }

    const std::string& Name() const { return m_name; }
    unsigned long OidValue() const { return m_oid_value; }
    int Status() const { return m_status; }
    long Group() const { return m_group; }

private:
    FakeWorld& m_world;
    std::string m_name;
    unsigned long m_oid_value;
    int m_status;
    long m_group;
};

}  // namespace Zavrel::test

#endif
