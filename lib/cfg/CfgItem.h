// CfgItem: one row of routing configuration that the library wants the
// stack to hold, as filed in the configuration scheduler (CfgSched).
#ifndef ZAVREL_CFG_CFGITEM_H
#define ZAVREL_CFG_CFGITEM_H

#include <cstddef>
#include <cstdint>

#include "mib/MibOid.h"
#include "platform/IntrusiveList.h"

namespace Zavrel {

class DcConsole;

class CfgItem {
public:
    // The life cycle of an item filed in the configuration scheduler
    // (CfgSched), which makes every change below:
    //
    //   filed --> New --tick: Send()--> Issued --confirmed--> destroyed
    //              ^                          |
    //              +-------- retried ---------+--> parked (stays Issued)
    //   New --tick: not item-ready, RemoveOnNotReady()--> dropped (destroyed)
    //   any --reset--> New
    //
    //  - New (ACTION_ITEM_NEW, 0, printed "New"): filed and not sent yet,
    //    or sent back to New. A tick walks a bucket in list order, stops at
    //    the first item that is not CfgListReady (New or Issued), and sends
    //    each New item before it that is CfgItemReady; one that is not
    //    waits for a later tick, or is dropped (destroyed) when its
    //    RemoveOnNotReady() holds.
    //  - Issued (ACTION_ITEM_ISSUED, 1, printed "Issued"): Send() has put
    //    the item's action into the serializer; the item waits for the
    //    stack's answer on its row.
    //  - confirmed: the stack reports the row programmed (CfgSched::Remove);
    //    the first item of the OID takes SetInMib, and is destroyed if it is
    //    Issued (a New one stays).
    //  - retried: the stack reports a failure (CfgSched::Update) for the
    //    first Issued item of the OID: it takes the reason code, its retry
    //    count rises unless the reason is 1, and it goes back to New when
    //    the stack allows a retry and the count is at most MAX_RETRIES.
    //  - parked: the count has gone past MAX_RETRIES (IsParked()): the item
    //    stays Issued and in its bucket, and no report sends it again. A
    //    failure that the stack says not to retry leaves the item Issued as
    //    well (its count counted as for any failure) without parking it: a
    //    later report on the row that allows a retry may still send it back
    //    to New.
    //  - reset (CfgSched::Reset): every item goes back to New with reason 0
    //    and retry count 0, parked ones included; ticks send them all again.
    //
    // Replacing a held item by an equal one (CfgSched::Insert) destroys the
    // held item, whatever its state; the new one starts New.
    enum ACTION_ITEM_STATE { ACTION_ITEM_NEW = 0, ACTION_ITEM_ISSUED = 1 };
    // A failure report sends an item back to New at most this many times.
    static constexpr unsigned int MAX_RETRIES = 9;

    CfgItem();
    virtual ~CfgItem();
    // An item is filed in one bucket at a time, by address: no copies.
    CfgItem(const CfgItem&) = delete;
    CfgItem& operator=(const CfgItem&) = delete;

    // True when the stack's routing table instance of the item is ready.
    virtual bool CfgListReady() = 0;
    // True when the item may be sent now.
    virtual bool CfgItemReady() = 0;
    // One line on the console.
    virtual void PrintItem(DcConsole* console) const = 0;
    // Builds the item's MIB action, queues it in the serializer under the
    // item's OID and marks the item Issued.
    virtual void Send() = 0;
    // Computes the row's OID, stores it in the item (m_oid) and returns
    // the stored value.
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
    // Issued with its retries used up: no failure report sends it again.
    bool IsParked() const { return IsIssued() && m_retry_count > MAX_RETRIES; }
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

    // Where the item stands in the scheduler bucket that holds it, kept by
    // that bucket alone (see CfgBucket.h). They live in the item so that a
    // lookup by OID reads the bucket's hash slots and then the item itself.
    friend class CfgBucket;
    uint64_t m_bucket_position = 0;
    size_t m_bucket_hash = 0;              // of m_oid when filed
    unsigned long m_bucket_group_key = 0;  // when grouped: the readiness key
    bool m_bucket_grouped = false;
    IntrusiveListHook<CfgItem> m_in_bucket;        // the bucket's list order
    IntrusiveListHook<CfgItem> m_in_bucket_group;  // its readiness group

protected:
    // The row's OID as GetOid last computed it. The scheduler's bucket
    // compares it when it looks an item up, so it lives at the same place
    // in every item, next to the fields the bucket reads with it.
    MibOid m_oid;
};

}  // namespace Zavrel

#endif
