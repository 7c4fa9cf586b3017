// CfgSched: the configuration scheduler. It holds the static-route and
// redistribution items that the RTM manager wants in the stack, per
// CfgKey bucket, sends them from a periodic timer when the stack side they
// depend on is ready, keeps them until the stack confirms them, and sends
// them again after a failure a bounded number of times.
#ifndef ZAVREL_CFG_CFGSCHED_H
#define ZAVREL_CFG_CFGSCHED_H

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "cfg/CfgItem.h"
#include "cfg/CfgKey.h"
#include "platform/Timer.h"

namespace Zavrel {

class CfgBucket;
class DcConsole;

class CfgSched : public PeriodicTimer {
public:
    // Interval the timer is started with on the first Insert.
    static const unsigned int TIMER_INTERVAL = 100;
    // A tick stops once it has examined more than this many New items.
    static const unsigned int MAX_NEW_COUNT = 30;
    // An item whose retry count goes above this is parked: not sent again.
    static constexpr unsigned int MAX_RETRIES = CfgItem::MAX_RETRIES;
    // Reason code whose failures do not count against the item.
    static const unsigned int REASON_NOT_COUNTED = 1;

    CfgSched();
    ~CfgSched() override;  // destroys the items still held

    // Takes ownership of the item. An item with the OID, row and admin
    // status of the first held item of its OID replaces that item (and is
    // linked one place earlier); any other item is appended. Starts the
    // timer if it is not running. A null item is ignored.
    void Insert(CfgKey key, CfgItem* item);
    // The stack reported a failure for the row of item (compared by OID;
    // the caller keeps item).
    void Update(CfgKey key, CfgItem* item, unsigned int reason, bool retry);
    // The stack confirmed the row of item (compared by OID; the caller
    // keeps item).
    void Remove(CfgKey key, CfgItem* item, unsigned int reason);
    // Every held item is marked as not yet sent.
    void Reset();
    // The timer callback: one round-robin slice of sending.
    void OnTimeout(unsigned int interval, void* context);

    void PrintSummary(DcConsole* console) const;
    void Print(DcConsole* console) const;

    bool RouteMapInFlight(CfgKey key, unsigned int a, unsigned int b);
    bool AggrAddrInFlight(CfgKey key, unsigned int a, unsigned int b);

    // Inspection.
    size_t BucketCount() const { return m_buckets.size(); }
    bool HasBucket(CfgKey key) const { return m_buckets.count(key) != 0; }
    // The items of a bucket in list order (empty when there is none).
    std::vector<CfgItem*> Items(CfgKey key) const;
    // Every held item, bucket by bucket in key order, each bucket in list
    // order; and how many there are.
    std::vector<CfgItem*> AllItems() const;
    size_t ItemCount() const;
    const CfgKey& ResumeKey() const { return m_resume_key; }

private:
    using BucketMap = std::map<CfgKey, std::unique_ptr<CfgBucket>>;

    // One bucket's share of a tick; true when the tick must stop.
    bool VisitBucket(CfgBucket& bucket, unsigned int& count);
    bool AnyInFlight(CfgKey key, unsigned int a, unsigned int b);

    BucketMap m_buckets;
    CfgKey m_resume_key;
};

}  // namespace Zavrel

#endif
