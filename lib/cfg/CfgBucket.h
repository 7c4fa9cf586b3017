// CfgBucket: the items of one CfgSched key, in list order, with the indexes
// that keep the scheduler's operations independent of the bucket's size:
//  - an OID index: items chained by the hash of their OID, each chain in
//    list order, so the first item of an OID is found without a scan;
//  - readiness groups: items chained by their readiness key (see
//    CfgItem::GetListReadyKey), each chain in list order, so a tick learns
//    from one item per group where the bucket's first not-ready item is;
//  - a New index: the items not yet sent, ordered by list position, so a
//    tick reaches them without walking the items already sent.
// Every item carries an order number that grows along the list; numbers are
// spread out so that an item can be linked in between two others, and are
// renumbered when no room is left.
#ifndef ZAVREL_CFG_CFGBUCKET_H
#define ZAVREL_CFG_CFGBUCKET_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <memory_resource>
#include <vector>

#include "cfg/CfgItem.h"
#include "cfg/CfgMemory.h"

namespace Zavrel {

class MibOid;

class CfgBucket {
public:
    struct Entry;
    // The New entries by their order in the list; its nodes live in the
    // queued configuration's memory.
    typedef std::pmr::map<uint64_t, Entry*> NewIndex;

    // A chain of entries in list order, threaded through the entries.
    struct Chain {
        Entry* first = nullptr;
        Entry* last = nullptr;
        size_t count = 0;
    };
    struct Link {
        Entry* prev = nullptr;
        Entry* next = nullptr;
    };
    // Aligned to a cache line, with what a lookup and a state change read
    // in the first line.
    struct alignas(64) Entry {
        CfgItem* item = nullptr;
        const MibOid* oid = nullptr;  // the item's stored OID
        Link oidLink;
        uint64_t order = 0;
        NewIndex::iterator newPos;
        unsigned long oidLength = 0;
        bool indexedNew = false;
        bool hasGroupKey = false;
        // Second line: what linking and unlinking use.
        size_t oidHash = 0;
        Entry* oidChainLast = nullptr;  // kept by the head of an OID chain
        Link listLink;
        Link groupLink;
        Chain* groupChain = nullptr;
        unsigned long groupKey = 0;
    };

    CfgBucket();
    ~CfgBucket();  // destroys the items still held

    // Buckets, with their entries and indexes, live in the queued
    // configuration's memory (see CfgMemory.h).
    static void* operator new(std::size_t size) { return CfgMemoryAllocate(size); }
    static void operator delete(void* block, std::size_t size) noexcept
    {
        CfgMemoryDeallocate(block, size);
    }
    CfgBucket(const CfgBucket&) = delete;
    CfgBucket& operator=(const CfgBucket&) = delete;

    bool Empty() const { return m_list.count == 0; }
    size_t Size() const { return m_list.count; }

    // The first entry, in list order, whose item has this OID (and is
    // Issued); null when there is none.
    // hash is HashOid(oid).
    Entry* FindFirst(const MibOid& oid, size_t hash);
    Entry* FindFirstIssued(const MibOid& oid, size_t hash);

    // Links the item at the tail. oid is the item's stored OID (the value
    // its GetOid() returned), hash its HashOid.
    void Append(CfgItem* item, const MibOid& oid, size_t hash);
    // Destroys the held entry's item, unlinks it, and links item just
    // before the held entry's former predecessor; at the tail when the held
    // entry was the first of the bucket.
    void ReplaceShifted(Entry* held, CfgItem* item, const MibOid& oid, size_t hash);
    // Unlinks the entry and destroys its item.
    void Destroy(Entry* entry);
    // Starts fetching what Destroy will touch, so that it arrives while the
    // caller still works on the item.
    static void PrefetchNeighbours(const Entry* entry);
    // Brings the New index in step with the entry's item's action state
    // after the scheduler (or the item's Send) changed it.
    void SyncState(Entry* entry);
    // Every item back to reason 0, New, retry count 0.
    void ResetAll();

    // List position (order number) of the first item that is not list-ready,
    // UINT64_MAX when every item is. One item per readiness group is asked;
    // items without a readiness key are asked one by one.
    uint64_t FirstNotReadyOrder();
    // The New entries in list order.
    Entry* FirstNew();
    Entry* NextNew(Entry* entry);
    size_t NewCount() const { return m_new.size(); }

    // Spreads the order numbers of a window of entries around the entry
    // evenly over the room its neighbours leave, widening the window until
    // the room is ample (the whole bucket at most); at least the entry and
    // its predecessor move apart. Used when a position runs out of room.
    void MakeRoom(Entry* entry);

    // The items in list order.
    std::vector<CfgItem*> Items() const;
    template <typename F>
    void ForEachItem(F f) const
    {
        for (const Entry* entry = m_list.first; entry != nullptr; entry = entry->listLink.next) {
            f(entry->item);
        }
    }

    static size_t HashOid(const MibOid& oid);

private:
    // The heads of the OID chains, by hash: open addressing with linear
    // probing. A slot also holds where the head's item and OID are, so that
    // a lookup fetches the head entry, its item and its OID together rather
    // than one after the other. The head entry keeps the chain's last entry.
    class OidTable {
    public:
        // The head of the hash's chain, null when there is none; its item
        // and OID are being fetched when it returns.
        Entry* Find(size_t hash) const;
        // Sets the head of the hash's chain, adding the hash when absent;
        // a null head removes it.
        void SetHead(size_t hash, Entry* head);
        size_t Size() const { return m_used; }

    private:
        struct Slot {
            size_t hash = 0;
            Entry* head = nullptr;  // null: the slot is free
            const CfgItem* headItem = nullptr;
            const MibOid* headOid = nullptr;
        };
        size_t IndexOf(size_t hash) const;
        void Grow();
        void Erase(size_t index);

        std::pmr::vector<Slot> m_slots{CfgMemory()};
        size_t m_used = 0;
    };

    // Entries come from blocks of growing size owned by the bucket, so that
    // they lie together and are quick to get and give back.
    class EntryPool {
    public:
        EntryPool() = default;
        ~EntryPool();
        EntryPool(const EntryPool&) = delete;
        EntryPool& operator=(const EntryPool&) = delete;
        Entry* Get();
        void Put(Entry* entry);

    private:
        struct Block {
            Entry* entries;
            size_t count;
        };
        std::pmr::vector<Block> m_blocks{CfgMemory()};
        size_t m_next_block_size = 8;
        Entry* m_free = nullptr;  // linked through listLink.next
    };

    // The OID chain of a hash as a Chain, and back.
    Chain OidChain(size_t hash) const;
    void StoreOidChain(size_t hash, const Chain& chain);

    static bool SameOid(const Entry* entry, const MibOid& oid);
    static const uint64_t ORDER_BASE = 1ULL << 62;
    static const uint64_t ORDER_GAP = 1ULL << 24;
    // The smallest spacing MakeRoom leaves between two entries.
    static const uint64_t ORDER_MIN_GAP = 1ULL << 12;

    Entry* NewEntry(CfgItem* item, uint64_t order, const MibOid& oid, size_t hash);
    void LinkChains(Entry* entry, Entry* successor, Entry* replaced);
    void PlaceInChain(Chain& chain, Link Entry::*link, Entry* entry, Entry* successor,
                      Entry* replaced);
    static void ChainInsertBefore(Chain& chain, Link Entry::*link, Entry* entry, Entry* pos);
    static void ChainRemove(Chain& chain, Link Entry::*link, Entry* entry);
    Chain& GroupChainFor(Entry* entry);
    void ReleaseChains(Entry* entry);
    void IndexNew(Entry* entry);
    void UnindexNew(Entry* entry);
    void Renumber();

    EntryPool m_pool;
    Chain m_list;  // every entry, in list order
    OidTable m_oid_chains;
    std::pmr::map<unsigned long, Chain> m_groups{CfgMemory()};
    Chain m_ungrouped;
    NewIndex m_new;
};

}  // namespace Zavrel

#endif
