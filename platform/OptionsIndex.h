// OptionsIndex: a compact, read-only index over a loaded options document,
// laid out as the document is read.
//
// jsoncpp keeps every member of an object in a map node of its own, with the
// member's name in another block; reading a large document walks memory
// spread over tens of megabytes. The first read of an object or array lays
// its children out in the index, next to each other, with their names in
// one buffer and their numbers and booleans copied in. Reading the document
// again (a reload of the same options, a second reader) then walks a few
// kilobytes per VLAN entry that lie together, in the order they were first
// read, and leaves jsoncpp's values to the reads that need them (texts, real
// numbers, error texts). Building costs one pass over what is read, which
// the first read makes anyway; loading a document builds nothing.
//
// The index points into the document it was made for: it stays valid while
// that document lives and is not changed. It is changed by reads (as a
// cache): like the rest of the library, one thread uses it.
#ifndef ZAVREL_PLATFORM_OPTIONSINDEX_H
#define ZAVREL_PLATFORM_OPTIONSINDEX_H

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace Zavrel {

class OptionsIndex {
public:
    struct Entry {
        const Json::Value* value;        // the value in the document
        mutable const Entry* children;   // containers, once laid out: the first child
        const char* name;                // object members: the name (nameLength bytes)
        uint32_t nameLength;
        // Texts: length in bytes. Containers: 0 when empty; once laid out,
        // the number of children.
        mutable uint32_t count;
        Json::ValueType type;
        mutable bool laidOut;  // containers: children are in the index
        // Objects: the children are in the order of jsoncpp's own lookup, so
        // that a binary search finds what jsoncpp finds.
        mutable bool sorted;
        union {
            long long integer;          // intValue
            unsigned long long unsign;  // uintValue
            bool boolean;               // booleanValue
        } number;
    };

    OptionsIndex() = default;
    OptionsIndex(const OptionsIndex&) = delete;
    OptionsIndex& operator=(const OptionsIndex&) = delete;

    // Starts over for the document below root (null: no document).
    void Reset(const Json::Value* root);

    // The root's entry; null without a document.
    const Entry* Root() const { return m_has_root ? &m_root : nullptr; }

    // Lays the children of a container entry out in the index, on its first
    // use; true when they are there (always for other entries). False only
    // without memory for them: the caller then reads the document itself.
    bool LayOut(const Entry& entry) const;

    // The member of a laid-out object entry named by the length bytes at
    // key; null when there is none (or the entry is not an object).
    static const Entry* Find(const Entry& object, const char* key, size_t length);

private:
    // Runs of T handed out one after another from blocks of at least
    // BLOCK elements, kept until Clear.
    template <typename T, size_t BLOCK>
    class Blocks {
    public:
        T* Take(size_t count)
        {
            if (count > m_left) {
                const size_t size = count > BLOCK ? count : BLOCK;
                std::unique_ptr<T[]> block(new T[size]);
                m_blocks.push_back(std::move(block));
                m_next = m_blocks.back().get();
                m_left = size;
            }
            T* taken = m_next;
            m_next += count;
            m_left -= count;
            return taken;
        }
        void Clear()
        {
            m_blocks.clear();
            m_next = nullptr;
            m_left = 0;
        }

    private:
        std::vector<std::unique_ptr<T[]>> m_blocks;
        T* m_next = nullptr;
        size_t m_left = 0;
    };

    Entry m_root;
    bool m_has_root = false;
    mutable Blocks<Entry, 1024> m_entries;
    mutable Blocks<char, 16384> m_names;
};

}  // namespace Zavrel

#endif
