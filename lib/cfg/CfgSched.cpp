#include "cfg/CfgSched.h"

#include <memory>

#include "cfg/CfgBucket.h"
#include "cfg/CfgItem.h"
#include "mib/MibOid.h"
#include "platform/AllocationFaults.h"
#include "platform/Callback.h"
#include "platform/DcConsole.h"
#include "platform/Trace.h"

namespace Zavrel {

namespace {

const CfgKey kFirstResumeKey(1, 0);

}  // namespace

CfgSched::CfgSched()
    : PeriodicTimer("CfgScheduler",
                    new MemberCallback2<CfgSched, unsigned int, void*>(this, &CfgSched::OnTimeout)),
      m_resume_key(kFirstResumeKey) {}

CfgSched::~CfgSched() {
    Stop();
    // Buckets in key order, each of them in list order.
    for (auto& bucket : m_buckets) {
        bucket.second.reset();
    }
    m_buckets.clear();
}

void CfgSched::Insert(CfgKey key, CfgItem* item) {
    if (item == nullptr) {
        return;
    }
    std::unique_ptr<CfgBucket>& bucket = m_buckets[key];
    if (bucket == nullptr) {
        // A new bucket holds nothing that the item could replace.
        bucket.reset(NewOrNull<CfgBucket>("CfgBucket"));
        if (bucket == nullptr) {
            TRACE(1, "%s::%s: Error in allocating CfgBucket\n", "CfgSched", "Insert");
            m_buckets.erase(key);
            delete item;
            return;
        }
    }
    const MibOid& oid = item->GetOid();
    CfgItem* held = bucket->FindFirst(oid);
    if (held != bucket->End() && item->Replace(static_cast<void*>(held))) {
        TRACE(5, "REPLACED ------- 1 item.............\n");
        bucket->ReplaceShifted(held, item);
    } else {
        bucket->Append(item);
    }
    if (!IsRunning()) {
        Start(TIMER_INTERVAL);
    }
}

void CfgSched::Update(CfgKey key, CfgItem* item, unsigned int reason, bool retry) {
    if (item == nullptr) {
        return;
    }
    auto found = m_buckets.find(key);
    if (found == m_buckets.end() || found->second->Empty()) {
        return;
    }
    CfgBucket& bucket = *found->second;
    CfgItem* held = bucket.FindFirstIssued(item->GetOid());
    if (held == bucket.End()) {
        return;
    }
    held->SetReasonCode(reason);
    if (reason != REASON_NOT_COUNTED) {
        held->SetRetryCount(held->GetRetryCount() + 1);
    }
    if (held->IsParked() || !retry) {
        // Stays Issued: not sent again unless a later report allows it.
        return;
    }
    held->SetActionState(CfgItem::ACTION_ITEM_NEW);
    bucket.SyncState(held);
}

void CfgSched::Remove(CfgKey key, CfgItem* item, unsigned int reason) {
    auto found = m_buckets.find(key);
    if (found == m_buckets.end()) {
        return;
    }
    CfgBucket& bucket = *found->second;
    if (item != nullptr && !bucket.Empty()) {
        CfgItem* held = bucket.FindFirst(item->GetOid());
        if (held != bucket.End()) {
            held->SetInMib(true, reason);
            if (held->IsIssued()) {
                TRACE(5, "Removing the handle\n");
                bucket.Destroy(held);
            }
        }
    }
    if (bucket.Empty()) {
        m_buckets.erase(found);
    }
}

void CfgSched::Reset() {
    for (auto& bucket : m_buckets) {
        bucket.second->ResetAll();
    }
}

// A tick walks the buckets from the resume key on and, within a bucket, its
// items in list order: it stops at the bucket's first item that is not
// list-ready, sends the New items that are ready, and leaves Issued items
// alone (but an Issued item that is not list-ready still stops the bucket).
// Visiting every Issued item would cost the whole bucket on every tick, so
// the bucket is asked instead for the position of its first not-list-ready
// item and the tick then goes through the New items in list order up to
// that position. The position is found from one item per readiness group:
// an item's CfgListReady depends only on its readiness key (for a static
// route, the RTM instance of its VLAN and family; for a redistribution
// entry, the RTM instance in the low 16 bits of its instance), so every
// item of a group answers alike at any moment, and the group's first item
// in list order is the first place where the walk could stop for it. Items
// without a key are asked one by one. Sending an item or dropping it does
// not change any RTM instance's readiness, so the position found before the
// New items are handled stays right while they are. The items examined, the
// items sent or dropped, the count and the place where the bucket stops are
// therefore those of the item-by-item walk. After an item the walk goes on
// with the first New item past its position, whether the item was sent,
// dropped or left waiting.
bool CfgSched::VisitBucket(CfgBucket& bucket, unsigned int& count) {
    const CfgBucket::Position stop = bucket.FirstNotReady();
    CfgItem* item = bucket.FirstNew();
    while (item != bucket.End() && CfgBucket::PositionOf(item) < stop) {
        const CfgBucket::Position position = CfgBucket::PositionOf(item);
        if (!item->CfgListReady()) {
            break;
        }
        ++count;
        if (item->CfgItemReady()) {
            TRACE(5, "OnTIMEOUT Sending MIB ACTION\n");
            item->Send();
            bucket.SyncState(item);
        } else if (item->RemoveOnNotReady()) {
            bucket.Destroy(item);
        }
        if (count > MAX_NEW_COUNT) {
            return true;
        }
        item = bucket.NextNew(position);
    }
    return false;
}

void CfgSched::OnTimeout(unsigned int /*interval*/, void* /*context*/) {
    if (m_buckets.empty()) {
        m_resume_key = kFirstResumeKey;
        return;
    }
    BucketMap::iterator it = m_buckets.find(m_resume_key);
    if (it == m_buckets.end()) {
        it = m_buckets.begin();
    }
    unsigned int count = 0;
    while (it != m_buckets.end()) {
        if (VisitBucket(*it->second, count)) {
            ++it;
            m_resume_key = it != m_buckets.end() ? it->first : kFirstResumeKey;
            return;
        }
        if (it->second->Empty()) {
            it = m_buckets.erase(it);
        } else {
            ++it;
        }
    }
    m_resume_key = kFirstResumeKey;
}

void CfgSched::PrintSummary(DcConsole* console) const {
    if (console == nullptr) {
        return;
    }
    console->Print("Pending Item Buckets: %zu\n", m_buckets.size());
}

void CfgSched::Print(DcConsole* console) const {
    if (console == nullptr) {
        return;
    }
    for (const auto& bucket : m_buckets) {
        unsigned int index = 0;
        bucket.second->ForEachItem([&](CfgItem* item) {
            console->Print("==== Item %u ====\n", index++);
            item->PrintItem(console);
            console->Print("\n");
        });
    }
}

bool CfgSched::AnyInFlight(CfgKey key, unsigned int a, unsigned int b) {
    auto found = m_buckets.find(key);
    if (found == m_buckets.end()) {
        return false;
    }
    bool inFlight = false;
    found->second->ForEachItem([&](CfgItem* item) {
        if (!inFlight && item->IsIssued() && item->IsInFlight(a, b)) {
            inFlight = true;
        }
    });
    return inFlight;
}

bool CfgSched::RouteMapInFlight(CfgKey key, unsigned int a, unsigned int b) {
    return AnyInFlight(key, a, b);
}

bool CfgSched::AggrAddrInFlight(CfgKey key, unsigned int a, unsigned int b) {
    return AnyInFlight(key, a, b);
}

std::vector<CfgItem*> CfgSched::Items(CfgKey key) const {
    auto found = m_buckets.find(key);
    if (found == m_buckets.end()) {
        return {};
    }
    return found->second->Items();
}

std::vector<CfgItem*> CfgSched::AllItems() const {
    std::vector<CfgItem*> all;
    all.reserve(ItemCount());
    for (const auto& entry : m_buckets) {
        const std::vector<CfgItem*> items = entry.second->Items();
        all.insert(all.end(), items.begin(), items.end());
    }
    return all;
}

size_t CfgSched::ItemCount() const {
    size_t count = 0;
    for (const auto& entry : m_buckets) {
        count += entry.second->Size();
    }
    return count;
}

}  // namespace Zavrel
