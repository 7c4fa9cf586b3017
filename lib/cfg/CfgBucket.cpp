#include "cfg/CfgBucket.h"

#include <cstring>
#include <memory>
#include <new>

#include "mib/MibOid.h"

namespace Zavrel {

CfgBucket::CfgBucket() : m_new(CfgMemory()) {}

CfgBucket::~CfgBucket()
{
    Entry* entry = m_list.first;
    while (entry != nullptr) {
        Entry* next = entry->listLink.next;
        delete entry->item;
        entry = next;
    }
}

namespace {

// The finaliser of splitmix64: spreads every input bit over the result.
uint64_t Mix(uint64_t value)
{
    value ^= value >> 30;
    value *= 0xbf58476d1ce4e5b9ULL;
    value ^= value >> 27;
    value *= 0x94d049bb133111ebULL;
    value ^= value >> 31;
    return value;
}

}  // namespace

size_t CfgBucket::HashOid(const MibOid& oid)
{
    // Over what operator== compares: the length and the usable components.
    const unsigned long length = oid.Length();
    const unsigned long usable = length < MibOid::MAX_LENGTH ? length : MibOid::MAX_LENGTH;
    const unsigned long* components = oid.Components();
    uint64_t hash = static_cast<uint64_t>(length) * 0x9e3779b97f4a7c15ULL;
    for (unsigned long i = 0; i < usable; ++i) {
        hash = (hash ^ static_cast<uint64_t>(components[i])) * 0x100000001b3ULL;
        hash ^= hash >> 29;
    }
    hash = Mix(hash);
    return static_cast<size_t>(hash ^ (hash >> 32));
}

// ---- entry pool

CfgBucket::Entry* CfgBucket::EntryPool::Get()
{
    if (m_free == nullptr) {
        const size_t size = m_next_block_size;
        m_blocks.reserve(m_blocks.size() + 1);
        Entry* block =
            static_cast<Entry*>(CfgMemory()->allocate(size * sizeof(Entry), alignof(Entry)));
        for (size_t i = 0; i < size; ++i) {
            new (block + i) Entry();
        }
        m_blocks.push_back(Block{block, size});
        for (size_t i = size; i > 0; --i) {
            block[i - 1].listLink.next = m_free;
            m_free = &block[i - 1];
        }
        if (m_next_block_size < 1024) {
            m_next_block_size *= 2;
        }
    }
    Entry* entry = m_free;
    m_free = entry->listLink.next;
    *entry = Entry();
    return entry;
}

CfgBucket::EntryPool::~EntryPool()
{
    for (const Block& block : m_blocks) {
        std::destroy_n(block.entries, block.count);
        CfgMemory()->deallocate(block.entries, block.count * sizeof(Entry), alignof(Entry));
    }
}

void CfgBucket::EntryPool::Put(Entry* entry)
{
    entry->listLink.next = m_free;
    m_free = entry;
}

// ---- OID table

size_t CfgBucket::OidTable::IndexOf(size_t hash) const
{
    const size_t mask = m_slots.size() - 1;
    size_t index = hash & mask;
    while (m_slots[index].head != nullptr && m_slots[index].hash != hash) {
        index = (index + 1) & mask;
    }
    return index;
}

CfgBucket::Entry* CfgBucket::OidTable::Find(size_t hash) const
{
    if (m_slots.empty()) {
        return nullptr;
    }
    const Slot& slot = m_slots[IndexOf(hash)];
    if (slot.head != nullptr) {
        __builtin_prefetch(slot.head);
        __builtin_prefetch(reinterpret_cast<const char*>(slot.head) + 64);
        __builtin_prefetch(slot.headItem);
        __builtin_prefetch(slot.headOid);
    }
    return slot.head;
}

void CfgBucket::OidTable::Grow()
{
    std::pmr::vector<Slot> old(m_slots.get_allocator());
    old.swap(m_slots);
    m_slots.resize(old.empty() ? 16 : old.size() * 2);
    for (const Slot& slot : old) {
        if (slot.head != nullptr) {
            m_slots[IndexOf(slot.hash)] = slot;
        }
    }
}

void CfgBucket::OidTable::SetHead(size_t hash, Entry* head)
{
    if (head == nullptr) {
        if (!m_slots.empty()) {
            const size_t index = IndexOf(hash);
            if (m_slots[index].head != nullptr) {
                Erase(index);
            }
        }
        return;
    }
    // At most half full, so that probe runs stay short.
    if ((m_used + 1) * 2 > m_slots.size()) {
        Grow();
    }
    Slot& slot = m_slots[IndexOf(hash)];
    if (slot.head == nullptr) {
        slot.hash = hash;
        ++m_used;
    }
    slot.head = head;
    slot.headItem = head->item;
    slot.headOid = head->oid;
}

void CfgBucket::OidTable::Erase(size_t hole)
{
    const size_t mask = m_slots.size() - 1;
    // Moves later slots of the probe run back into the hole, so that every
    // slot stays reachable from its home index.
    size_t next = hole;
    for (;;) {
        next = (next + 1) & mask;
        if (m_slots[next].head == nullptr) {
            break;
        }
        const size_t home = m_slots[next].hash & mask;
        const bool homeInRun =
            hole <= next ? (home > hole && home <= next) : (home > hole || home <= next);
        if (!homeInRun) {
            m_slots[hole] = m_slots[next];
            hole = next;
        }
    }
    m_slots[hole] = Slot();
    --m_used;
}

CfgBucket::Chain CfgBucket::OidChain(size_t hash) const
{
    Chain chain;
    chain.first = m_oid_chains.Find(hash);
    chain.last = chain.first != nullptr ? chain.first->oidChainLast : nullptr;
    return chain;
}

void CfgBucket::StoreOidChain(size_t hash, const Chain& chain)
{
    m_oid_chains.SetHead(hash, chain.first);
    if (chain.first != nullptr) {
        chain.first->oidChainLast = chain.last;
    }
}

bool CfgBucket::SameOid(const Entry* entry, const MibOid& oid)
{
    // MibOid's equality, read from the cached length first.
    if (entry->oidLength != oid.Length()) {
        return false;
    }
    const unsigned long usable =
        entry->oidLength < MibOid::MAX_LENGTH ? entry->oidLength : MibOid::MAX_LENGTH;
    return std::memcmp(entry->oid->Components(), oid.Components(), usable * sizeof(unsigned long)) ==
           0;
}

// ---- chains

void CfgBucket::ChainInsertBefore(Chain& chain, Link Entry::*link, Entry* entry, Entry* pos)
{
    Link& own = entry->*link;
    if (pos == nullptr) {
        own.prev = chain.last;
        own.next = nullptr;
        if (chain.last != nullptr) {
            (chain.last->*link).next = entry;
        } else {
            chain.first = entry;
        }
        chain.last = entry;
    } else {
        Link& at = pos->*link;
        own.prev = at.prev;
        own.next = pos;
        if (at.prev != nullptr) {
            (at.prev->*link).next = entry;
        } else {
            chain.first = entry;
        }
        at.prev = entry;
    }
    ++chain.count;
}

void CfgBucket::ChainRemove(Chain& chain, Link Entry::*link, Entry* entry)
{
    Link& own = entry->*link;
    if (own.prev != nullptr) {
        (own.prev->*link).next = own.next;
    } else {
        chain.first = own.next;
    }
    if (own.next != nullptr) {
        (own.next->*link).prev = own.prev;
    } else {
        chain.last = own.prev;
    }
    own.prev = nullptr;
    own.next = nullptr;
    --chain.count;
}

// Puts an entry, already linked in the list before successor (at the tail
// when successor is null), into its place in one chain. replaced is the
// entry that the new one replaces (still linked, right after successor in
// the list) or null.
void CfgBucket::PlaceInChain(Chain& chain, Link Entry::*link, Entry* entry, Entry* successor,
                             Entry* replaced)
{
    if (successor == nullptr) {
        ChainInsertBefore(chain, link, entry, nullptr);
        return;
    }
    auto inChain = [&](Entry* other) {
        if (link == &Entry::oidLink) {
            return other->oidHash == entry->oidHash;
        }
        return other->groupChain == &chain;
    };
    if (inChain(successor)) {
        ChainInsertBefore(chain, link, entry, successor);
        return;
    }
    if (replaced != nullptr && inChain(replaced)) {
        // Nothing of this chain lies between the new position and the
        // replaced entry but the successor, which is not in the chain.
        ChainInsertBefore(chain, link, entry, replaced);
        return;
    }
    // Members of a chain other than the replaced one's: find the place by
    // order number (only items whose readiness key differs from the one they
    // replace get here).
    Entry* after = chain.last;
    while (after != nullptr && after->order > entry->order) {
        after = (after->*link).prev;
    }
    ChainInsertBefore(chain, link, entry,
                      after != nullptr ? (after->*link).next : chain.first);
}

CfgBucket::Chain& CfgBucket::GroupChainFor(Entry* entry)
{
    if (entry->hasGroupKey) {
        return m_groups[entry->groupKey];
    }
    return m_ungrouped;
}

void CfgBucket::LinkChains(Entry* entry, Entry* successor, Entry* replaced)
{
    Chain oidChain = OidChain(entry->oidHash);
    PlaceInChain(oidChain, &Entry::oidLink, entry, successor, replaced);
    StoreOidChain(entry->oidHash, oidChain);
    Chain& group = GroupChainFor(entry);
    entry->groupChain = &group;
    PlaceInChain(group, &Entry::groupLink, entry, successor, replaced);
}

void CfgBucket::ReleaseChains(Entry* entry)
{
    Chain oidChain = OidChain(entry->oidHash);
    if (oidChain.first != nullptr) {
        ChainRemove(oidChain, &Entry::oidLink, entry);
        StoreOidChain(entry->oidHash, oidChain);
    }
    if (entry->groupChain != nullptr) {
        ChainRemove(*entry->groupChain, &Entry::groupLink, entry);
        if (entry->groupChain->count == 0 && entry->hasGroupKey) {
            m_groups.erase(entry->groupKey);
        }
        entry->groupChain = nullptr;
    }
}

// ---- New index

void CfgBucket::IndexNew(Entry* entry)
{
    if (entry->indexedNew) {
        return;
    }
    if (m_new.empty() || m_new.rbegin()->first < entry->order) {
        entry->newPos = m_new.emplace_hint(m_new.end(), entry->order, entry);
    } else {
        entry->newPos = m_new.emplace(entry->order, entry).first;
    }
    entry->indexedNew = true;
}

void CfgBucket::UnindexNew(Entry* entry)
{
    if (!entry->indexedNew) {
        return;
    }
    m_new.erase(entry->newPos);
    entry->indexedNew = false;
}

void CfgBucket::SyncState(Entry* entry)
{
    if (entry->item->IsIssued()) {
        UnindexNew(entry);
    } else {
        IndexNew(entry);
    }
}

CfgBucket::Entry* CfgBucket::FirstNew()
{
    return m_new.empty() ? nullptr : m_new.begin()->second;
}

CfgBucket::Entry* CfgBucket::NextNew(Entry* entry)
{
    if (!entry->indexedNew) {
        return nullptr;
    }
    auto next = std::next(entry->newPos);
    return next == m_new.end() ? nullptr : next->second;
}

// ---- order numbers

void CfgBucket::Renumber()
{
    uint64_t order = ORDER_BASE;
    m_new.clear();
    for (Entry* entry = m_list.first; entry != nullptr; entry = entry->listLink.next) {
        entry->order = order;
        order += ORDER_GAP;
        if (entry->indexedNew) {
            entry->newPos = m_new.emplace_hint(m_new.end(), entry->order, entry);
        }
    }
}

void CfgBucket::MakeRoom(Entry* entry)
{
    Entry* first = entry;
    Entry* last = entry;
    size_t count = 1;
    for (size_t wanted = 2;; wanted *= 2) {
        bool grew = true;
        while (count < wanted && grew) {
            grew = false;
            if (first->listLink.prev != nullptr) {
                first = first->listLink.prev;
                ++count;
                grew = true;
            }
            if (count < wanted && last->listLink.next != nullptr) {
                last = last->listLink.next;
                ++count;
                grew = true;
            }
        }
        const Entry* before = first->listLink.prev;
        const Entry* after = last->listLink.next;
        if (before == nullptr && after == nullptr) {
            Renumber();
            return;
        }
        const uint64_t low = before != nullptr ? before->order : 0;
        // Past the tail the window may use one more gap.
        uint64_t high = 0;
        if (after != nullptr) {
            high = after->order;
        } else if (last->order <= UINT64_MAX - ORDER_GAP) {
            high = last->order + ORDER_GAP;
        } else {
            Renumber();
            return;
        }
        const uint64_t step = (high - low) / (count + 1);
        if (step >= ORDER_MIN_GAP) {
            // The New index nodes of the window are taken out while their
            // keys change, so that a new key never meets an old one.
            std::vector<NewIndex::node_type> nodes;
            uint64_t order = low;
            for (Entry* moved = first;; moved = moved->listLink.next) {
                order += step;
                moved->order = order;
                if (moved->indexedNew) {
                    nodes.push_back(m_new.extract(moved->newPos));
                    nodes.back().key() = order;
                }
                if (moved == last) {
                    break;
                }
            }
            for (auto& node : nodes) {
                Entry* moved = node.mapped();
                moved->newPos = m_new.insert(std::move(node)).position;
            }
            return;
        }
    }
}

// ---- items

CfgBucket::Entry* CfgBucket::NewEntry(CfgItem* item, uint64_t order, const MibOid& oid,
                                      size_t hash)
{
    Entry* entry = m_pool.Get();
    entry->item = item;
    entry->order = order;
    entry->oid = &oid;
    entry->oidLength = oid.Length();
    entry->oidHash = hash;
    entry->hasGroupKey = item->GetListReadyKey(entry->groupKey);
    return entry;
}

CfgBucket::Entry* CfgBucket::FindFirst(const MibOid& oid, size_t hash)
{
    for (Entry* entry = m_oid_chains.Find(hash); entry != nullptr; entry = entry->oidLink.next) {
        // The caller goes on with the item: fetch it while the OIDs compare.
        __builtin_prefetch(entry->item);
        if (SameOid(entry, oid)) {
            return entry;
        }
    }
    return nullptr;
}

CfgBucket::Entry* CfgBucket::FindFirstIssued(const MibOid& oid, size_t hash)
{
    for (Entry* entry = m_oid_chains.Find(hash); entry != nullptr; entry = entry->oidLink.next) {
        // The item's state is read next: fetch it while the OIDs compare.
        __builtin_prefetch(entry->item);
        if (SameOid(entry, oid) && entry->item->IsIssued()) {
            return entry;
        }
    }
    return nullptr;
}

void CfgBucket::Append(CfgItem* item, const MibOid& oid, size_t hash)
{
    if (m_list.last != nullptr && m_list.last->order > UINT64_MAX - ORDER_GAP) {
        Renumber();
    }
    const uint64_t order = m_list.last != nullptr ? m_list.last->order + ORDER_GAP : ORDER_BASE;
    Entry* entry = NewEntry(item, order, oid, hash);
    ChainInsertBefore(m_list, &Entry::listLink, entry, nullptr);
    LinkChains(entry, nullptr, nullptr);
    SyncState(entry);
}

void CfgBucket::ReplaceShifted(Entry* held, CfgItem* item, const MibOid& oid, size_t hash)
{
    Entry* predecessor = held->listLink.prev;
    Entry* entry = nullptr;
    if (predecessor == nullptr) {
        // The held item was the first: the new one goes to the tail.
        if (m_list.last->order > UINT64_MAX - ORDER_GAP) {
            Renumber();
        }
        entry = NewEntry(item, m_list.last->order + ORDER_GAP, oid, hash);
        ChainInsertBefore(m_list, &Entry::listLink, entry, nullptr);
        LinkChains(entry, nullptr, held);
    } else {
        auto lowBound = [&]() {
            const Entry* before = predecessor->listLink.prev;
            return before != nullptr ? before->order : 0;
        };
        if (predecessor->order - lowBound() < 2) {
            MakeRoom(predecessor);
        }
        const uint64_t low = lowBound();
        entry = NewEntry(item, low + (predecessor->order - low) / 2, oid, hash);
        ChainInsertBefore(m_list, &Entry::listLink, entry, predecessor);
        LinkChains(entry, predecessor, held);
    }
    Destroy(held);
    SyncState(entry);
}

void CfgBucket::PrefetchNeighbours(const Entry* entry)
{
    // Unlinking writes the links, which lie in the neighbours' second line.
    const Entry* neighbours[] = {entry->listLink.prev, entry->listLink.next,
                                 entry->groupLink.prev, entry->groupLink.next};
    for (const Entry* neighbour : neighbours) {
        if (neighbour != nullptr) {
            __builtin_prefetch(&neighbour->listLink, 1);
        }
    }
}

void CfgBucket::Destroy(Entry* entry)
{
    UnindexNew(entry);
    ReleaseChains(entry);
    ChainRemove(m_list, &Entry::listLink, entry);
    delete entry->item;
    m_pool.Put(entry);
}

void CfgBucket::ResetAll()
{
    m_new.clear();
    for (Entry* entry = m_list.first; entry != nullptr; entry = entry->listLink.next) {
        entry->item->SetReasonCode(0);
        entry->item->SetActionState(CfgItem::ACTION_ITEM_NEW);
        entry->item->SetRetryCount(0);
        entry->newPos = m_new.emplace_hint(m_new.end(), entry->order, entry);
        entry->indexedNew = true;
    }
}

uint64_t CfgBucket::FirstNotReadyOrder()
{
    uint64_t stop = UINT64_MAX;
    // Within a readiness group every item answers alike, so the group's
    // first item stands for all of them.
    for (auto& group : m_groups) {
        Entry* first = group.second.first;
        if (first != nullptr && first->order < stop && !first->item->CfgListReady()) {
            stop = first->order;
        }
    }
    for (Entry* entry = m_ungrouped.first; entry != nullptr && entry->order < stop;
         entry = entry->groupLink.next) {
        if (!entry->item->CfgListReady()) {
            stop = entry->order;
            break;
        }
    }
    return stop;
}

std::vector<CfgItem*> CfgBucket::Items() const
{
    std::vector<CfgItem*> items;
    items.reserve(m_list.count);
    ForEachItem([&](CfgItem* item) { items.push_back(item); });
    return items;
}

}  // namespace Zavrel
