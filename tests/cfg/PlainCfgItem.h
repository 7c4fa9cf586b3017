// PlainCfgItem: the smallest concrete configuration item, with only the
// pure operations (always ready, sends nothing, an empty OID).
#ifndef ZAVREL_TESTS_CFG_PLAINCFGITEM_H
#define ZAVREL_TESTS_CFG_PLAINCFGITEM_H

#include "cfg/CfgItem.h"
#include "mib/MibOid.h"

namespace Zavrel::test {

class PlainCfgItem : public CfgItem {
public:
    bool CfgListReady() override { return true; }
    bool CfgItemReady() override { return true; }
    void PrintItem(DcConsole*) const override {}
    void Send() override {}
    MibOid& GetOid() override { return m_oid; }
};

}  // namespace Zavrel::test

#endif
