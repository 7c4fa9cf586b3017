// A small configuration object kind and list for the reconcile tests: each
// object has an id (its key) and a value (its setting); commits are recorded
// as text ("create 1 v=10", "update 1 v=11", "destroy 2").
#ifndef ZAVREL_TESTS_CONFIG_DCLCONFIGLISTTESTSUPPORT_H
#define ZAVREL_TESTS_CONFIG_DCLCONFIGLISTTESTSUPPORT_H

#include <string>
#include <vector>

#include "config/DCLConfigList.h"
#include "config/DclConfigObject.h"
#include "platform/DcConsole.h"
#include "routing/DcConfigLists.h"
#include "routing/DcRouterBase.h"

namespace Zavrel::test {

class TestRouter : public DcRouterBase {
public:
    explicit TestRouter(unsigned short vid) : DcRouterBase("TEST", vid, nullptr) {}
    bool CreateConfigList(DcConfigLists&) override { return true; }
};

struct CommitLog {
    std::vector<std::string> lines;
    std::vector<const void*> marked;  // objects in MarkDestroy order
    int deleted = 0;                  // objects kept in a list
    int deletedParsed = 0;            // freshly parsed objects (temporaries)
};

class TestObject : public DclConfigObject {
public:
    TestObject(DcRouterBase& owner, CommitLog* log) : DclConfigObject(owner), m_log(log) {}
    // The object a list keeps.
    explicit TestObject(const TestObject* other)
        : DclConfigObject(other), value(other->value), kept(true), m_log(other->m_log) {}
    ~TestObject() override { ++(kept ? m_log->deleted : m_log->deletedParsed); }

    int CompareWithNew(DclConfigObject* newer) override {
        auto* other = static_cast<TestObject*>(newer);
        if (other->id != id) {
            return COMPARE_DIFFERENT;
        }
        return other->value == value ? COMPARE_SAME : COMPARE_CHANGED;
    }
    void UpdateFromNew(DclConfigObject* newer) override {
        value = static_cast<TestObject*>(newer)->value;
    }
    unsigned short GetRowStatus() override {
        if (destroy) {
            return 6;
        }
        return inMib ? 1 : 4;
    }
    void MarkDestroy() override {
        destroy = true;
        m_log->marked.push_back(this);
    }
    void Display(DcConsole* console) override {
        console->Print("object %u vlan %u value %d\n", id, static_cast<unsigned int>(vlan), value);
    }
    bool Commit() override {
        actionReq = false;
        if (destroy) {
            m_log->lines.push_back("destroy " + std::to_string(id));
            inMib = false;
            return true;
        }
        m_log->lines.push_back((inMib ? "update " : "create ") + std::to_string(id) +
                               " v=" + std::to_string(value));
        inMib = true;
        return false;
    }
    bool ParseFromOption(const OptionsNode& node) override {
        unsigned int key = 0;
        if (!node.GetLeafValue<unsigned int>(key, "id", 0)) {
            return false;
        }
        id = key;
        node.GetLeafValue<int>(value, "value", 0);
        return true;
    }

    int value = 0;
    bool destroy = false;
    bool kept = false;

private:
    CommitLog* m_log;
};

class TestList : public DCLConfigList {
public:
    TestList(DcRouterBase& owner, CommitLog* log)
        : DCLConfigList(owner, "TESTLIST", "ITEMS"), m_log(log) {}

    void InterfaceStatusChange(unsigned int ifIndex, unsigned int status) override {
        m_log->lines.push_back("if " + std::to_string(ifIndex) + " " + std::to_string(status));
    }
    DclConfigObject* NewObject(const OptionsNode&, const string&,
                               DclConfigObject::OptionType) override {
        return new TestObject(router, m_log);
    }
    DclConfigObject* CopyObject(DclConfigObject* parsed) override {
        return new TestObject(static_cast<TestObject*>(parsed));
    }

    // Puts a running object straight into the list.
    TestObject* Adopt(unsigned int id, int value, unsigned short vlan) {
        auto* object = new TestObject(router, m_log);
        object->kept = true;
        object->id = id;
        object->value = value;
        object->vlan = vlan;
        objects.push_back(object);
        return object;
    }
    std::vector<std::string> Describe() const {
        std::vector<std::string> out;
        for (const DclConfigObject* object : objects) {
            out.push_back(std::to_string(object->vlan) + ":" + std::to_string(object->id) + "=" +
                          std::to_string(static_cast<const TestObject*>(object)->value));
        }
        return out;
    }

private:
    CommitLog* m_log;
};

}  // namespace Zavrel::test

#endif
