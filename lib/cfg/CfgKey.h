// CfgKey: the key of a configuration scheduler bucket, a VLAN or instance
// number with a kind code, ordered as a pair.
#ifndef ZAVREL_CFG_CFGKEY_H
#define ZAVREL_CFG_CFGKEY_H

namespace Zavrel {

class CfgKey {
public:
    CfgKey() : m_id(0), m_kind(0) {}
    CfgKey(unsigned int id, unsigned int kind) : m_id(id), m_kind(kind) {}

    unsigned int GetId() const { return m_id; }
    unsigned int GetKind() const { return m_kind; }

    friend bool operator<(const CfgKey& a, const CfgKey& b) {
        return a.m_id < b.m_id || (a.m_id == b.m_id && a.m_kind < b.m_kind);
    }
    friend bool operator==(const CfgKey& a, const CfgKey& b) {
        return a.m_id == b.m_id && a.m_kind == b.m_kind;
    }
    friend bool operator!=(const CfgKey& a, const CfgKey& b) { return !(a == b); }

private:
    unsigned int m_id;
    unsigned int m_kind;
};

}  // namespace Zavrel

#endif
