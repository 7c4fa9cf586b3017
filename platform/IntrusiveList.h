// IntrusiveList: a doubly linked list whose links live in the listed
// objects themselves.
//
// An object can be on as many lists as it has hooks, one hook per list:
//
//   struct Row {
//       IntrusiveListHook<Row> byAge;
//       IntrusiveListHook<Row> byKind;
//   };
//   IntrusiveList<Row, &Row::byAge> rows;
//
// Linking and unlinking allocate nothing and touch only the object and its
// two neighbours, and an object that knows it is on a list is unlinked
// without a search. The list neither owns nor destroys its objects: an
// object must be erased from every list it is on before it goes away, and
// must not move while linked.
#ifndef ZAVREL_PLATFORM_INTRUSIVELIST_H
#define ZAVREL_PLATFORM_INTRUSIVELIST_H

#include <cstddef>

namespace Zavrel {

template <typename T>
struct IntrusiveListHook {
    T* prev = nullptr;
    T* next = nullptr;
};

template <typename T, IntrusiveListHook<T> T::*Hook>
class IntrusiveList {
public:
    class Iterator {
    public:
        explicit Iterator(T* item) : m_item(item) {}
        T* operator*() const { return m_item; }
        Iterator& operator++() {
            m_item = (m_item->*Hook).next;
            return *this;
        }
        bool operator==(const Iterator& other) const { return m_item == other.m_item; }
        bool operator!=(const Iterator& other) const { return m_item != other.m_item; }

    private:
        T* m_item;
    };

    IntrusiveList() = default;
    IntrusiveList(const IntrusiveList&) = delete;
    IntrusiveList& operator=(const IntrusiveList&) = delete;
    // The objects still linked are unlinked, not destroyed.
    ~IntrusiveList() { Clear(); }

    bool Empty() const { return m_first == nullptr; }
    size_t Size() const { return m_size; }
    // The first and the last object; null when the list is empty.
    T* Front() const { return m_first; }
    T* Back() const { return m_last; }
    // The neighbours of a linked object; null past either end.
    static T* Next(const T& item) { return (item.*Hook).next; }
    static T* Prev(const T& item) { return (item.*Hook).prev; }

    // Links an object that is not on this list just before `before` (an
    // object of this list), or at the back when before is null.
    void InsertBefore(T* before, T& item) {
        IntrusiveListHook<T>& hook = item.*Hook;
        hook.next = before;
        hook.prev = before != nullptr ? (before->*Hook).prev : m_last;
        (hook.prev != nullptr ? (hook.prev->*Hook).next : m_first) = &item;
        (before != nullptr ? (before->*Hook).prev : m_last) = &item;
        ++m_size;
    }
    void PushBack(T& item) { InsertBefore(nullptr, item); }

    // Unlinks an object of this list.
    void Erase(T& item) {
        IntrusiveListHook<T>& hook = item.*Hook;
        (hook.prev != nullptr ? (hook.prev->*Hook).next : m_first) = hook.next;
        (hook.next != nullptr ? (hook.next->*Hook).prev : m_last) = hook.prev;
        hook = IntrusiveListHook<T>{};
        --m_size;
    }

    // Unlinks every object.
    void Clear() {
        while (m_first != nullptr) {
            Erase(*m_first);
        }
    }

    Iterator begin() const { return Iterator(m_first); }
    Iterator end() const { return Iterator(nullptr); }

private:
    T* m_first = nullptr;
    T* m_last = nullptr;
    size_t m_size = 0;
};

}  // namespace Zavrel

#endif
