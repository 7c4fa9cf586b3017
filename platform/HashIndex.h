// HashIndex: objects filed under a hash of their key, for lookups that read
// one slot array and then only the objects whose hash matches.
//
// The index holds pointers, not objects, and leaves keys to its user:
// several objects may be filed under one hash (equal keys, or keys that
// collide), and a lookup hands each of them to the caller, which compares
// the keys itself. A slot keeps the hash next to the pointer, so that the
// objects filed under other hashes are never touched.
//
// Slots are probed linearly in a power-of-two array kept at most half full,
// starting from the hash's Fibonacci mix (so that hashes which differ only
// in their high bits still spread). Erasing moves the slots that follow
// back into the gap instead of leaving a tombstone: a lookup stops at the
// first empty slot, and the array never fills with dead entries however
// long objects come and go.
#ifndef ZAVREL_PLATFORM_HASHINDEX_H
#define ZAVREL_PLATFORM_HASHINDEX_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Zavrel {

template <typename T>
class HashIndex {
public:
    HashIndex() = default;
    HashIndex(const HashIndex&) = delete;
    HashIndex& operator=(const HashIndex&) = delete;

    size_t Size() const { return m_size; }
    bool Empty() const { return m_size == 0; }

    // Files a non-null object under the hash (again, if it is there already).
    void Insert(size_t hash, T* object) {
        if ((m_size + 1) * 2 > m_slots.size()) {
            Grow();
        }
        Place(Slot{hash, object});
        ++m_size;
    }

    // Calls f(object) for every object filed under the hash, in no set
    // order. f must not change the index.
    template <typename F>
    void ForEach(size_t hash, F f) const {
        if (m_size == 0) {
            return;
        }
        for (size_t i = Home(hash); m_slots[i].object != nullptr; i = Next(i)) {
            if (m_slots[i].hash == hash) {
                f(m_slots[i].object);
            }
        }
    }

    // Takes the object off the hash; false when it is not filed under it.
    bool Erase(size_t hash, const T* object) {
        if (m_size == 0) {
            return false;
        }
        size_t gap = Home(hash);
        while (m_slots[gap].object != object || m_slots[gap].hash != hash) {
            if (m_slots[gap].object == nullptr) {
                return false;
            }
            gap = Next(gap);
        }
        // Each slot after the gap, up to the next empty one, moves into the
        // gap unless its home lies cyclically in (gap, slot]: a lookup from
        // that home would not pass the gap.
        for (size_t i = Next(gap); m_slots[i].object != nullptr; i = Next(i)) {
            const size_t home = Home(m_slots[i].hash);
            const bool reachable = gap <= i ? (gap < home && home <= i) : (gap < home || home <= i);
            if (!reachable) {
                m_slots[gap] = m_slots[i];
                gap = i;
            }
        }
        m_slots[gap] = Slot{};
        --m_size;
        return true;
    }

    // Every object off the index; the slot array is kept.
    void Clear() {
        for (Slot& slot : m_slots) {
            slot = Slot{};
        }
        m_size = 0;
    }

private:
    struct Slot {
        size_t hash = 0;
        T* object = nullptr;  // null: the slot is empty
    };

    static constexpr size_t kFirstSlots = 16;
    static constexpr unsigned kFirstShift = sizeof(size_t) * 8 - 4;  // 16 slots
    // 2^64 and 2^32 divided by the golden ratio.
    static constexpr size_t kFibonacci =
        sizeof(size_t) == 8 ? static_cast<size_t>(UINT64_C(0x9E3779B97F4A7C15)) : 0x9E3779B9u;

    size_t Home(size_t hash) const { return (hash * kFibonacci) >> m_shift; }
    size_t Next(size_t i) const { return (i + 1) & (m_slots.size() - 1); }

    void Place(const Slot& slot) {
        size_t i = Home(slot.hash);
        while (m_slots[i].object != nullptr) {
            i = Next(i);
        }
        m_slots[i] = slot;
    }

    void Grow() {
        std::vector<Slot> old;
        old.swap(m_slots);
        if (old.empty()) {
            m_slots.resize(kFirstSlots);
            m_shift = kFirstShift;
            return;
        }
        m_slots.resize(old.size() * 2);
        --m_shift;
        for (const Slot& slot : old) {
            if (slot.object != nullptr) {
                Place(slot);
            }
        }
    }

    std::vector<Slot> m_slots;
    size_t m_size = 0;
    unsigned m_shift = kFirstShift;
};

}  // namespace Zavrel

#endif
