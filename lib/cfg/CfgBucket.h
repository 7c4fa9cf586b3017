// CfgBucket: the items of one CfgSched key, in list order.
//
// The scheduler sends at most 31 items per tick, but a bucket may hold a
// hundred thousand items that were sent and wait for the stack's answer.
// Each of the scheduler's operations reaches the few items it needs without
// walking the others:
//  - Insert and Remove want the first item of an OID, Update the first
//    Issued item of an OID: the records are kept in hash tables by OID,
//    which are the one place a record lives in. An OID rarely has more
//    than one item held at once, so the first record of a hash goes into a
//    table of one record per hash, where a lookup stops at the record it
//    finds, and any further records of the hash into a second table,
//    which is mostly empty;
//  - a tick wants the New items in list order: an ordered index of them by
//    position (an item sent back to New may stand anywhere);
//  - a tick also wants the place of the first item that is not list-ready:
//    the items by readiness key (CfgItem::GetListReadyKey), each group a
//    list in list order, so that the first item of a group answers for all
//    of it;
//  - the list order itself, for the predecessor of a replaced item and for
//    walks over every item: a list of the records.
// Both lists are linked through the records themselves (IntrusiveList), so
// that a record costs no list nodes of its own and unlinking it touches
// only its neighbours.
// Places are compared by position, a number that grows along the list. An
// appended item takes the next unused number. A replacement needs no number
// of its own: the list ... X P H Y becomes ... X N P Y, so the new item N
// takes the number of P, and P the number of the replaced H; P keeps its
// place in its group (no item of it lay between P and H), and N goes just
// before P or where H was in their groups. A record keeps where it stands
// in the list and in its group, so that unlinking it searches nothing.
#ifndef ZAVREL_CFG_CFGBUCKET_H
#define ZAVREL_CFG_CFGBUCKET_H

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <unordered_map>
#include <vector>

#include "cfg/CfgItem.h"
#include "platform/IntrusiveList.h"

namespace Zavrel {

class MibOid;

class CfgBucket {
public:
    // Where an item stands: greater along the list.
    using Position = uint64_t;
    // Past every item.
    static constexpr Position NONE = UINT64_MAX;

    struct Record;
    using Entry = Record*;

    struct Record {
        std::unique_ptr<CfgItem> item;
        const MibOid* oid;  // the item's stored OID (what its GetOid returned)
        Position position;
        bool grouped;
        bool further;                       // in m_further_records (not the first of its hash)
        unsigned long groupKey;             // when grouped: the item's readiness key
        IntrusiveListHook<Record> inList;   // in m_list
        IntrusiveListHook<Record> inGroup;  // in its readiness group
    };

private:
    // Records by position.
    using PositionIndex = std::map<Position, Record*>;
    // The records in list order, and those of a readiness group.
    using List = IntrusiveList<Record, &Record::inList>;
    using Group = IntrusiveList<Record, &Record::inGroup>;

public:
    CfgBucket();
    ~CfgBucket();  // destroys the items still held, in list order
    CfgBucket(const CfgBucket&) = delete;
    CfgBucket& operator=(const CfgBucket&) = delete;

    bool Empty() const { return m_list.Empty(); }
    size_t Size() const { return m_list.Size(); }
    // What the lookups return when they find nothing.
    Entry End() const { return nullptr; }

    // The first item, in list order, with this OID (and Issued).
    Entry FindFirst(const MibOid& oid);
    Entry FindFirstIssued(const MibOid& oid);

    // Takes the item and links it at the tail. oid is the item's stored OID
    // (the value its GetOid() returned).
    void Append(CfgItem* item, const MibOid& oid);
    // Destroys the held entry's item, unlinks it, and links item (of the
    // same OID) just before the held entry's former predecessor; at the tail
    // when the held entry was the first of the bucket.
    void ReplaceShifted(Entry held, CfgItem* item, const MibOid& oid);
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
        for (const Record* record : m_list) {
            f(record->item.get());
        }
    }

private:
    static size_t HashOid(const MibOid& oid);
    // The first record, in list order, of the OID that passes the test.
    template <typename Test>
    Entry FindFirstWhere(const MibOid& oid, Test test);
    // Files a new record (its item, OID and position set) in a table and
    // the indexes, and links it into the list before `before` (at the tail
    // when null).
    Entry Add(Record&& record, Entry before, std::initializer_list<Entry> successors = {});
    // Links the record into its readiness group and, when New, into the New
    // index; and unlinks it from both. successors are records that may
    // follow the record in its group (null or of another group otherwise):
    // the first of its group is where the record goes. Without one it goes
    // to the end of its group when its position is past the group's last,
    // and is placed by a search otherwise (only a replacement whose
    // readiness key is neither its predecessor's nor the replaced item's).
    void IndexPlace(Entry entry, std::initializer_list<Entry> successors = {});
    void UnindexPlace(Entry entry);
    // The readiness group of the record, and the next record of it (null
    // for the last).
    Group& GroupOf(const Record& record);
    Entry NextInGroup(const Record& record);
    // Into the New index when its item is New.
    void IndexState(Entry entry);

    // The records, by the hash of their OID (the OIDs themselves are
    // compared), and in list order.
    std::unordered_map<size_t, Record> m_records;
    std::unordered_multimap<size_t, Record> m_further_records;
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
