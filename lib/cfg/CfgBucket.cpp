#include "cfg/CfgBucket.h"

#include <functional>
#include <string_view>

#include "mib/MibOid.h"

namespace Zavrel {

CfgBucket::~CfgBucket()
{
    m_groups.clear();
    m_ungrouped.clear();
    m_new.clear();
    // The items in list order.
    for (Record* record : m_list) {
        record->item.reset();
    }
    m_list.clear();
    m_records.clear();
}

size_t CfgBucket::HashOid(const MibOid& oid)
{
    // Over the components that operator== compares; OIDs that differ only
    // in length share a hash and are told apart by the comparison.
    const unsigned long length = oid.Length();
    const unsigned long usable = length < MibOid::MAX_LENGTH ? length : MibOid::MAX_LENGTH;
    return std::hash<std::string_view>()(std::string_view(
        reinterpret_cast<const char*>(oid.Components()), usable * sizeof(unsigned long)));
}

// ---- indexes

void CfgBucket::IndexPlace(Entry entry)
{
    PositionIndex& group = entry->grouped ? m_groups[entry->groupKey] : m_ungrouped;
    entry->groupPlace = group.emplace_hint(group.end(), entry->position, entry);
    IndexState(entry);
}

void CfgBucket::IndexState(Entry entry)
{
    if (!entry->item->IsIssued()) {
        m_new.emplace_hint(m_new.end(), entry->position, entry);
    }
}

void CfgBucket::UnindexPlace(Entry entry)
{
    if (entry->grouped) {
        auto group = m_groups.find(entry->groupKey);
        group->second.erase(entry->groupPlace);
        if (group->second.empty()) {
            m_groups.erase(group);
        }
    } else {
        m_ungrouped.erase(entry->groupPlace);
    }
    if (!m_new.empty()) {
        m_new.erase(entry->position);
    }
}

// ---- lookups

CfgBucket::Entry CfgBucket::FindFirst(const MibOid& oid)
{
    Entry first = nullptr;
    auto range = m_records.equal_range(HashOid(oid));
    for (auto it = range.first; it != range.second; ++it) {
        Record& record = it->second;
        if (*record.oid == oid && (first == nullptr || record.position < first->position)) {
            first = &record;
        }
    }
    return first;
}

CfgBucket::Entry CfgBucket::FindFirstIssued(const MibOid& oid)
{
    Entry first = nullptr;
    auto range = m_records.equal_range(HashOid(oid));
    for (auto it = range.first; it != range.second; ++it) {
        Record& record = it->second;
        if (*record.oid == oid && record.item->IsIssued() &&
            (first == nullptr || record.position < first->position)) {
            first = &record;
        }
    }
    return first;
}

CfgBucket::Position CfgBucket::FirstNotReady()
{
    Position stop = NONE;
    // Within a readiness group every item answers alike, so the group's
    // first item stands for all of them.
    for (auto& group : m_groups) {
        const PositionIndex::value_type& first = *group.second.begin();
        if (first.first < stop && !first.second->item->CfgListReady()) {
            stop = first.first;
        }
    }
    for (auto it = m_ungrouped.begin(); it != m_ungrouped.end() && it->first < stop; ++it) {
        if (!it->second->item->CfgListReady()) {
            stop = it->first;
            break;
        }
    }
    return stop;
}

CfgBucket::Entry CfgBucket::FirstNew()
{
    return m_new.empty() ? nullptr : m_new.begin()->second;
}

CfgBucket::Entry CfgBucket::NextNew(Position after)
{
    auto next = m_new.upper_bound(after);
    return next == m_new.end() ? nullptr : next->second;
}

std::vector<CfgItem*> CfgBucket::Items() const
{
    std::vector<CfgItem*> items;
    items.reserve(m_list.size());
    ForEachItem([&](CfgItem* item) { items.push_back(item); });
    return items;
}

// ---- changes

CfgBucket::Entry CfgBucket::Add(Record&& record, std::list<Record*>::iterator before)
{
    const size_t hash = HashOid(*record.oid);
    record.grouped = record.item->GetListReadyKey(record.groupKey);
    Entry entry = &m_records.emplace(hash, std::move(record))->second;
    entry->place = m_list.insert(before, entry);
    IndexPlace(entry);
    return entry;
}

void CfgBucket::Append(CfgItem* item, const MibOid& oid)
{
    Record record{std::unique_ptr<CfgItem>(item), &oid, m_next_position++, false, 0, {}, {}};
    Add(std::move(record), m_list.end());
}

void CfgBucket::ReplaceShifted(Entry held, CfgItem* item, const MibOid& oid)
{
    if (held->place == m_list.begin()) {
        Append(item, oid);
        Destroy(held);
        return;
    }
    // ... X P H Y becomes ... X N P Y: N takes P's position, P takes H's.
    const Entry predecessor = *std::prev(held->place);
    const Position heldPosition = held->position;
    Destroy(held);
    UnindexPlace(predecessor);
    const Position newPosition = predecessor->position;
    predecessor->position = heldPosition;
    IndexPlace(predecessor);
    Record record{std::unique_ptr<CfgItem>(item), &oid, newPosition, false, 0, {}, {}};
    Add(std::move(record), predecessor->place);
}

void CfgBucket::Destroy(Entry entry)
{
    UnindexPlace(entry);
    m_list.erase(entry->place);
    auto range = m_records.equal_range(HashOid(*entry->oid));
    for (auto it = range.first; it != range.second; ++it) {
        if (&it->second == entry) {
            m_records.erase(it);
            return;
        }
    }
}

void CfgBucket::SyncState(Entry entry)
{
    if (entry->item->IsIssued()) {
        m_new.erase(entry->position);
    } else {
        m_new.emplace(entry->position, entry);
    }
}

void CfgBucket::ResetAll()
{
    m_new.clear();
    for (Entry entry : m_list) {
        entry->item->SetReasonCode(0);
        entry->item->SetActionState(CfgItem::ACTION_ITEM_NEW);
        entry->item->SetRetryCount(0);
        IndexState(entry);
    }
}

}  // namespace Zavrel
