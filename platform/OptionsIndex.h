// OptionsIndex: a compact, read-only index over a loaded options document.
//
// jsoncpp keeps every member of an object in a map node of its own, with the
// member's name in another block; reading a large document walks memory
// spread over tens of megabytes. The index lays the same tree out again in
// one array, the children of each object or array next to each other and
// each container's children right after the container's siblings, with all
// member names in one buffer and the numbers and booleans copied in. A
// reload that reads a VLAN entry then walks a few kilobytes that lie
// together, and leaves jsoncpp's values to the reads that need them (texts,
// real numbers, error texts).
//
// The index points into the document it was built from: it stays valid while
// that document lives and is not changed.
#ifndef ZAVREL_PLATFORM_OPTIONSINDEX_H
#define ZAVREL_PLATFORM_OPTIONSINDEX_H

#include <json/value.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Zavrel {

class OptionsIndex {
public:
    struct Entry {
        const Json::Value* value;  // the value in the document
        const Entry* children;     // objects and arrays: the first child
        const char* name;          // object members: the name (nameLength bytes)
        uint32_t nameLength;
        // Objects and arrays: number of children; texts: length in bytes.
        uint32_t count;
        Json::ValueType type;
        // Objects: the children are in the order of jsoncpp's own lookup, so
        // that a binary search finds what jsoncpp finds.
        bool sorted;
        union {
            long long integer;           // intValue
            unsigned long long unsign;   // uintValue
            bool boolean;                // booleanValue
        } number;
    };

    OptionsIndex() = default;
    OptionsIndex(const OptionsIndex&) = delete;
    OptionsIndex& operator=(const OptionsIndex&) = delete;

    // Indexes the tree below root (replacing what was indexed before).
    void Build(const Json::Value& root);
    void Clear();

    // The root's entry; null before Build.
    const Entry* Root() const { return m_entries.empty() ? nullptr : &m_entries.front(); }

    // The member of an object entry named by the length bytes at key; null
    // when there is none (or the entry is not an object).
    static const Entry* Find(const Entry& object, const char* key, size_t length);

private:
    std::vector<Entry> m_entries;
    std::vector<char> m_names;
};

}  // namespace Zavrel

#endif
