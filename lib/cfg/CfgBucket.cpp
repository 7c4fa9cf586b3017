#include "cfg/CfgBucket.h"

#include <functional>
#include <string_view>

#include "mib/MibOid.h"

namespace Zavrel {

CfgBucket::~CfgBucket() {
    m_groups.clear();
    m_ungrouped.Clear();
    m_new.clear();
    m_by_oid.Clear();
    // The items in list order.
    while (!m_list.Empty()) {
        CfgItem* item = m_list.Front();
        m_list.Erase(*item);
        delete item;
    }
}

size_t CfgBucket::HashOid(const MibOid& oid) {
    // Over the components that operator== compares; OIDs that differ only
    // in length share a hash and are told apart by the comparison.
    const unsigned long length = oid.Length();
    const unsigned long usable = length < MibOid::MAX_LENGTH ? length : MibOid::MAX_LENGTH;
    return std::hash<std::string_view>()(std::string_view(
        reinterpret_cast<const char*>(oid.Components()), usable * sizeof(unsigned long)));
}

// ---- indexes

CfgBucket::Group& CfgBucket::GroupOf(const CfgItem& item) {
    return item.m_bucket_grouped ? m_groups[item.m_bucket_group_key] : m_ungrouped;
}

CfgBucket::Entry CfgBucket::NextInGroup(const CfgItem& item) {
    return Group::Next(item);
}

bool CfgBucket::SameGroup(const CfgItem& a, const CfgItem& b) {
    return a.m_bucket_grouped == b.m_bucket_grouped &&
           (!a.m_bucket_grouped || a.m_bucket_group_key == b.m_bucket_group_key);
}

void CfgBucket::IndexPlace(Entry entry, std::initializer_list<Entry> successors) {
    Group& group = GroupOf(*entry);
    Entry before = nullptr;  // the end of the group
    bool placed = false;
    for (Entry successor : successors) {
        if (successor != nullptr && SameGroup(*successor, *entry)) {
            before = successor;
            placed = true;
            break;
        }
    }
    if (!placed) {
        for (Entry previous = group.Back();
             previous != nullptr && PositionOf(previous) > PositionOf(entry);
             previous = Group::Prev(*previous)) {
            before = previous;
        }
    }
    group.InsertBefore(before, *entry);
    IndexState(entry);
}

void CfgBucket::IndexState(Entry entry) {
    if (!entry->IsIssued()) {
        m_new.emplace_hint(m_new.end(), PositionOf(entry), entry);
    }
}

void CfgBucket::UnindexPlace(Entry entry) {
    if (entry->m_bucket_grouped) {
        auto group = m_groups.find(entry->m_bucket_group_key);
        group->second.Erase(*entry);
        if (group->second.Empty()) {
            m_groups.erase(group);
        }
    } else {
        m_ungrouped.Erase(*entry);
    }
    if (!m_new.empty()) {
        m_new.erase(PositionOf(entry));
    }
}

// ---- lookups

template <typename Test>
CfgBucket::Entry CfgBucket::FindFirstWhere(const MibOid& oid, Test test) {
    Entry first = nullptr;
    m_by_oid.ForEach(HashOid(oid), [&](CfgItem* item) {
        if (item->m_oid == oid && test(*item) &&
            (first == nullptr || PositionOf(item) < PositionOf(first))) {
            first = item;
        }
    });
    return first;
}

CfgBucket::Entry CfgBucket::FindFirst(const MibOid& oid) {
    return FindFirstWhere(oid, [](const CfgItem&) { return true; });
}

CfgBucket::Entry CfgBucket::FindFirstIssued(const MibOid& oid) {
    return FindFirstWhere(oid, [](const CfgItem& item) { return item.IsIssued(); });
}

CfgBucket::Position CfgBucket::FirstNotReady() {
    Position stop = NONE;
    // Within a readiness group every item answers alike, so the group's
    // first item stands for all of them.
    for (auto& group : m_groups) {
        const Entry first = group.second.Front();
        if (PositionOf(first) < stop && !first->CfgListReady()) {
            stop = PositionOf(first);
        }
    }
    for (Entry item = m_ungrouped.Front(); item != nullptr && PositionOf(item) < stop;
         item = Group::Next(*item)) {
        if (!item->CfgListReady()) {
            stop = PositionOf(item);
            break;
        }
    }
    return stop;
}

CfgBucket::Entry CfgBucket::FirstNew() {
    return m_new.empty() ? nullptr : m_new.begin()->second;
}

CfgBucket::Entry CfgBucket::NextNew(Position after) {
    auto next = m_new.upper_bound(after);
    return next == m_new.end() ? nullptr : next->second;
}

std::vector<CfgItem*> CfgBucket::Items() const {
    std::vector<CfgItem*> items;
    items.reserve(m_list.Size());
    ForEachItem([&](CfgItem* item) { items.push_back(item); });
    return items;
}

// ---- changes

void CfgBucket::Add(CfgItem* item, Position position, Entry before,
                    std::initializer_list<Entry> successors) {
    item->m_bucket_position = position;
    item->m_bucket_hash = HashOid(item->m_oid);
    item->m_bucket_grouped = item->GetListReadyKey(item->m_bucket_group_key);
    m_by_oid.Insert(item->m_bucket_hash, item);
    m_list.InsertBefore(before, *item);
    IndexPlace(item, successors);
}

void CfgBucket::Append(CfgItem* item) {
    Add(item, m_next_position++, nullptr);
}

void CfgBucket::ReplaceShifted(Entry held, CfgItem* item) {
    if (held == m_list.Front()) {
        Append(item);
        Destroy(held);
        return;
    }
    // ... X P H Y becomes ... X N P Y: N takes P's position, P takes H's.
    // P keeps its place in its readiness group: nothing of that group lay
    // between P and H. N goes just before P, or where H was, in its group.
    const Entry predecessor = List::Prev(*held);
    const Position heldPosition = PositionOf(held);
    const Entry afterHeld = NextInGroup(*held);
    Destroy(held);
    const Position newPosition = PositionOf(predecessor);
    if (!m_new.empty()) {
        m_new.erase(newPosition);
    }
    predecessor->m_bucket_position = heldPosition;
    IndexState(predecessor);
    Add(item, newPosition, predecessor, {predecessor, afterHeld});
}

void CfgBucket::Destroy(Entry entry) {
    UnindexPlace(entry);
    m_list.Erase(*entry);
    m_by_oid.Erase(entry->m_bucket_hash, entry);
    delete entry;
}

void CfgBucket::SyncState(Entry entry) {
    if (entry->IsIssued()) {
        m_new.erase(PositionOf(entry));
    } else {
        m_new.emplace(PositionOf(entry), entry);
    }
}

void CfgBucket::ResetAll() {
    m_new.clear();
    for (Entry entry : m_list) {
        entry->SetReasonCode(0);
        entry->SetActionState(CfgItem::ACTION_ITEM_NEW);
        entry->SetRetryCount(0);
        IndexState(entry);
    }
}

}  // namespace Zavrel
