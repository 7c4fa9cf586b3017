// CfgBucket: the items of one CfgSched key, in list order.
//
// The scheduler sends at most 31 items per tick, but a bucket may hold a
// hundred thousand items that were sent and wait for the stack's answer.
// Each of the scheduler's operations reaches the few items it needs without
// walking the others:
//  - Insert and Remove want the first item of an OID, Update the first
//    Issued item of an OID: the items are filed in a HashIndex under the
//    hash of their OID, so that a lookup reads a slot array and then only
//    the items of that hash (whose OIDs it compares);
//  - a tick wants the New items in list order: an ordered index of them by
//    position (an item sent back to New may stand anywhere);
//  - a tick also wants the place of the first item that is not list-ready:
//    the items by readiness key (CfgItem::GetListReadyKey), each group a
//    list in list order, so that the first item of a group answers for all
//    of it;
//  - the list order itself, for the predecessor of a replaced item and for
//    walks over every item.
// What the bucket knows of an item (its position, its OID's hash, its
// readiness key, its links in the list and in its group) is kept in the
// item itself, in fields only the bucket touches, next to the OID the item
// stored (CfgItem::m_oid): a lookup reads a hash slot and then one item,
// whose fields all lie at known places, and unlinking an item touches only
// the item and its neighbours. A record beside the item would cost one
// more read of memory on every lookup, and at a hundred thousand items
// every read is a miss in the caches.
// Places are compared by position, a number that grows along the list. An
// appended item takes the next unused number. A replacement needs no number
// of its own: the list ... X P H Y becomes ... X N P Y, so the new item N
// takes the number of P, and P the number of the replaced H; P keeps its
// place in its group (no item of it lay between P and H), and N goes just
// before P or where H was in their groups. An item keeps where it stands
// in the list and in its group, so that unlinking it searches nothing.
#ifndef ZAVREL_CFG_CFGBUCKET_H
#define ZAVREL_CFG_CFGBUCKET_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <vector>

#include "cfg/CfgItem.h"
#include "platform/HashIndex.h"
#include "platform/IntrusiveList.h"

namespace Zavrel {

class MibOid;

class CfgBucket {
public:
    // Where an item stands: greater along the list.
    using Position = uint64_t;
    // Past every item.
    static constexpr Position NONE = UINT64_MAX;

    // An item held by the bucket.
    using Entry = CfgItem*;

private:
    // Items by position.
    using PositionIndex = std::map<Position, Entry>;
    // The items in list order, and those of a readiness group.
    using List = IntrusiveList<CfgItem, &CfgItem::m_in_bucket>;
    using Group = IntrusiveList<CfgItem, &CfgItem::m_in_bucket_group>;

public:
    CfgBucket() = default;
    ~CfgBucket();  // destroys the items still held, in list order
    CfgBucket(const CfgBucket&) = delete;
    CfgBucket& operator=(const CfgBucket&) = delete;

    bool Empty() const { return m_list.Empty(); }
    size_t Size() const { return m_list.Size(); }
    // What the lookups return when they find nothing.
    Entry End() const { return nullptr; }
    // Where a held item stands.
    static Position PositionOf(const CfgItem* entry) { return entry->m_bucket_position; }

    // The first item, in list order, with this OID (and Issued).
    Entry FindFirst(const MibOid& oid);
    Entry FindFirstIssued(const MibOid& oid);

    // Takes the item, whose OID GetOid() has stored, and links it at the
    // tail.
    void Append(CfgItem* item);
    // Destroys the held entry's item, unlinks it, and links item (of the
    // same OID, stored) just before the held entry's former predecessor; at
    // the tail when the held entry was the first of the bucket.
    void ReplaceShifted(Entry held, CfgItem* item);
    // Unlinks the entry and destroys its item.
    void Destroy(Entry entry);
    // Brings the New index in step with the entry's item's action state
    // after the scheduler (or the item's Send) changed it.
    void SyncState(Entry entry);
    // Every item back to reason 0, New, retry count 0.
    void ResetAll();

    // Position of the first item that is not list-ready, NONE when every
    // item is. One item per readiness group is asked; items without a
    // readiness key are asked one by one.
    Position FirstNotReady();
    // The New items in list order: the first one, and the first one after
    // a position; End() when there is none.
    Entry FirstNew();
    Entry NextNew(Position after);

    // The items in list order.
    std::vector<CfgItem*> Items() const;
    template <typename F>
    void ForEachItem(F f) const {
        for (CfgItem* item : m_list) {
            f(item);
        }
    }

private:
    static size_t HashOid(const MibOid& oid);
    // The first item, in list order, of the OID that passes the test.
    template <typename Test>
    Entry FindFirstWhere(const MibOid& oid, Test test);
    // Files the item at the position in the hash index and the indexes,
    // and links it into the list before `before` (at the tail when null).
    void Add(CfgItem* item, Position position, Entry before,
             std::initializer_list<Entry> successors = {});
    // Links the item into its readiness group and, when New, into the New
    // index; and unlinks it from both. successors are items that may
    // follow the item in its group (null or of another group otherwise):
    // the first of its group is where the item goes. Without one it goes
    // to the end of its group when its position is past the group's last,
    // and is placed by a search otherwise (only a replacement whose
    // readiness key is neither its predecessor's nor the replaced item's).
    void IndexPlace(Entry entry, std::initializer_list<Entry> successors = {});
    void UnindexPlace(Entry entry);
    // The readiness group of the item, and the next item of it (null for
    // the last).
    Group& GroupOf(const CfgItem& item);
    static Entry NextInGroup(const CfgItem& item);
    static bool SameGroup(const CfgItem& a, const CfgItem& b);
    // Into the New index when the item is New.
    void IndexState(Entry entry);

    // The items by the hash of their OID (the OIDs themselves are
    // compared), and in list order.
    HashIndex<CfgItem> m_by_oid;
    List m_list;
    // Readiness groups by key (none empty), and the items without a key.
    std::map<unsigned long, Group> m_groups;
    Group m_ungrouped;
    // The New items.
    PositionIndex m_new;
    Position m_next_position = 0;
};

}  // namespace Zavrel

#endif
