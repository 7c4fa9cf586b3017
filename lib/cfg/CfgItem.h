// CfgItem: one row of routing configuration that the library wants the
// stack to hold, as filed in the configuration scheduler (CfgSched).
#ifndef ZAVREL_CFG_CFGITEM_H
#define ZAVREL_CFG_CFGITEM_H

#include "mib/MibOid.h"

namespace Zavrel {

class DcConsole;

class CfgItem {
public:
    // 0: not yet sent ("New"); 1: sent to the stack ("Issued").
    enum ACTION_ITEM_STATE { ACTION_ITEM_NEW = 0, ACTION_ITEM_ISSUED = 1 };

    CfgItem();
    virtual ~CfgItem();

    // True when the stack's routing table instance of the item is ready.
    virtual bool CfgListReady() = 0;
    // True when the item may be sent now.
    virtual bool CfgItemReady() = 0;
    // One line on the console.
    virtual void PrintItem(DcConsole* console) const = 0;
    // Builds the item's MIB action, queues it in the serializer under the
    // item's OID and marks the item Issued.
    virtual void Send() = 0;
    // Computes the row's OID, stores it in the item and returns the stored
    // value.
    virtual MibOid& GetOid() = 0;
    virtual void SetInMib(bool inMib, unsigned int reason);
    // other is another CfgItem of the same kind (passed as CfgItem*).
    virtual bool Replace(void* other);
    virtual bool RemoveOnNotReady() const;
    virtual void SetActionState(ACTION_ITEM_STATE state);
    virtual void SetReasonCode(unsigned long reason);
    virtual bool IsInFlight(unsigned int a, unsigned int b) const;
    // Readiness key: when it returns true, every item giving the same key
    // answers CfgListReady alike at any moment, so the scheduler may ask one
    // of them for all. The base gives none (each item is asked itself).
    virtual bool GetListReadyKey(unsigned long& key) const;

    unsigned int GetReasonCode() const { return m_reason_code; }
    ACTION_ITEM_STATE GetActionState() const { return m_action_state; }
    bool IsIssued() const { return m_action_state == ACTION_ITEM_ISSUED; }
    // Failed sends counted against the item by the scheduler.
    unsigned int GetRetryCount() const { return m_retry_count; }
    void SetRetryCount(unsigned int count) { m_retry_count = count; }

    static const char* GetRowStatusStr(long rowStatus);
    static const char* GetReasonStr(long reason);
    static const char* GetActionStateStr(long state);

private:
    unsigned int m_reason_code;
    ACTION_ITEM_STATE m_action_state;
    unsigned int m_retry_count;
};

}  // namespace Zavrel

#endif
