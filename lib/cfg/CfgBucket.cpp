#include "cfg/CfgBucket.h"

#include <functional>
#include <string_view>

#include "mib/MibOid.h"

namespace Zavrel {

CfgBucket::CfgBucket() {
    // Half-full buckets: a lookup mostly meets its record first in its
    // bucket's chain.
    m_records.max_load_factor(0.5f);
}

CfgBucket::~CfgBucket() {
    m_groups.clear();
    m_ungrouped.Clear();
    m_new.clear();
    // The items in list order.
    for (Record* record : m_list) {
        record->item.reset();
    }
    m_list.Clear();
    m_records.clear();
    m_further_records.clear();
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

CfgBucket::Group& CfgBucket::GroupOf(const Record& record) {
    return record.grouped ? m_groups[record.groupKey] : m_ungrouped;
}

CfgBucket::Entry CfgBucket::NextInGroup(const Record& record) {
    return Group::Next(record);
}

void CfgBucket::IndexPlace(Entry entry, std::initializer_list<Entry> successors) {
    Group& group = GroupOf(*entry);
    Entry before = nullptr;  // the end of the group
    bool placed = false;
    for (Entry successor : successors) {
        if (successor != nullptr && successor->grouped == entry->grouped &&
            (!entry->grouped || successor->groupKey == entry->groupKey)) {
            before = successor;
            placed = true;
            break;
        }
    }
    if (!placed) {
        for (Entry previous = group.Back();
             previous != nullptr && previous->position > entry->position;
             previous = Group::Prev(*previous)) {
            before = previous;
        }
    }
    group.InsertBefore(before, *entry);
    IndexState(entry);
}

void CfgBucket::IndexState(Entry entry) {
    if (!entry->item->IsIssued()) {
        m_new.emplace_hint(m_new.end(), entry->position, entry);
    }
}

void CfgBucket::UnindexPlace(Entry entry) {
    if (entry->grouped) {
        auto group = m_groups.find(entry->groupKey);
        group->second.Erase(*entry);
        if (group->second.Empty()) {
            m_groups.erase(group);
        }
    } else {
        m_ungrouped.Erase(*entry);
    }
    if (!m_new.empty()) {
        m_new.erase(entry->position);
    }
}

// ---- lookups

template <typename Test>
CfgBucket::Entry CfgBucket::FindFirstWhere(const MibOid& oid, Test test) {
    const size_t hash = HashOid(oid);
    Entry first = nullptr;
    auto consider = [&](Record& record) {
        if (*record.oid == oid && test(record) &&
            (first == nullptr || record.position < first->position)) {
            first = &record;
        }
    };
    const auto found = m_records.find(hash);
    if (found != m_records.end()) {
        consider(found->second);
    }
    if (!m_further_records.empty()) {
        const auto range = m_further_records.equal_range(hash);
        for (auto it = range.first; it != range.second; ++it) {
            consider(it->second);
        }
    }
    return first;
}

CfgBucket::Entry CfgBucket::FindFirst(const MibOid& oid) {
    return FindFirstWhere(oid, [](const Record&) { return true; });
}

CfgBucket::Entry CfgBucket::FindFirstIssued(const MibOid& oid) {
    return FindFirstWhere(oid, [](const Record& record) { return record.item->IsIssued(); });
}

CfgBucket::Position CfgBucket::FirstNotReady() {
    Position stop = NONE;
    // Within a readiness group every item answers alike, so the group's
    // first item stands for all of them.
    for (auto& group : m_groups) {
        const Entry first = group.second.Front();
        if (first->position < stop && !first->item->CfgListReady()) {
            stop = first->position;
        }
    }
    for (Entry record = m_ungrouped.Front(); record != nullptr && record->position < stop;
         record = Group::Next(*record)) {
        if (!record->item->CfgListReady()) {
            stop = record->position;
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

CfgBucket::Entry CfgBucket::Add(Record&& record, Entry before,
                                std::initializer_list<Entry> successors) {
    const size_t hash = HashOid(*record.oid);
    record.grouped = record.item->GetListReadyKey(record.groupKey);
    record.further = false;
    Entry entry = nullptr;
    auto first = m_records.try_emplace(hash, std::move(record));
    if (first.second) {
        entry = &first.first->second;
    } else {
        // try_emplace left the record alone.
        record.further = true;
        entry = &m_further_records.emplace(hash, std::move(record))->second;
    }
    m_list.InsertBefore(before, *entry);
    IndexPlace(entry, successors);
    return entry;
}

void CfgBucket::Append(CfgItem* item, const MibOid& oid) {
    Record record{std::unique_ptr<CfgItem>(item), &oid, m_next_position++, false, false, 0, {}, {}};
    Add(std::move(record), nullptr);
}

void CfgBucket::ReplaceShifted(Entry held, CfgItem* item, const MibOid& oid) {
    if (held == m_list.Front()) {
        Append(item, oid);
        Destroy(held);
        return;
    }
    // ... X P H Y becomes ... X N P Y: N takes P's position, P takes H's.
    // P keeps its place in its readiness group: nothing of that group lay
    // between P and H. N goes just before P, or where H was, in its group.
    const Entry predecessor = List::Prev(*held);
    const Position heldPosition = held->position;
    const Entry afterHeld = NextInGroup(*held);
    Destroy(held);
    const Position newPosition = predecessor->position;
    if (!m_new.empty()) {
        m_new.erase(newPosition);
    }
    predecessor->position = heldPosition;
    IndexState(predecessor);
    Record record{std::unique_ptr<CfgItem>(item), &oid, newPosition, false, false, 0, {}, {}};
    Add(std::move(record), predecessor, {predecessor, afterHeld});
}

void CfgBucket::Destroy(Entry entry) {
    UnindexPlace(entry);
    m_list.Erase(*entry);
    const size_t hash = HashOid(*entry->oid);
    if (!entry->further) {
        m_records.erase(hash);
        return;
    }
    auto range = m_further_records.equal_range(hash);
    for (auto it = range.first; it != range.second; ++it) {
        if (&it->second == entry) {
            m_further_records.erase(it);
            return;
        }
    }
}

void CfgBucket::SyncState(Entry entry) {
    if (entry->item->IsIssued()) {
        m_new.erase(entry->position);
    } else {
        m_new.emplace(entry->position, entry);
    }
}

void CfgBucket::ResetAll() {
    m_new.clear();
    for (Entry entry : m_list) {
        entry->item->SetReasonCode(0);
        entry->item->SetActionState(CfgItem::ACTION_ITEM_NEW);
        entry->item->SetRetryCount(0);
        IndexState(entry);
    }
}

}  // namespace Zavrel
