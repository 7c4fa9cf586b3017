#include "platform/OptionsIndex.h"

#include <cstring>
#include <new>

namespace Zavrel {

namespace {

// jsoncpp's order of member names: bytes compared over the shorter length,
// then the shorter name first.
bool NameBefore(const char* a, size_t aLength, const char* b, size_t bLength)
{
    const size_t shorter = aLength < bLength ? aLength : bLength;
    const int order = shorter == 0 ? 0 : std::memcmp(a, b, shorter);
    if (order != 0) {
        return order < 0;
    }
    return aLength < bLength;
}

void Describe(OptionsIndex::Entry& entry, const Json::Value& value)
{
    entry.value = &value;
    entry.children = nullptr;
    entry.name = "";
    entry.nameLength = 0;
    entry.count = 0;
    entry.type = value.type();
    entry.laidOut = false;
    entry.sorted = true;
    entry.number.unsign = 0;
    switch (entry.type) {
    case Json::intValue:
        entry.number.integer = value.asLargestInt();
        break;
    case Json::uintValue:
        entry.number.unsign = value.asLargestUInt();
        break;
    case Json::booleanValue:
        entry.number.boolean = value.asBool();
        break;
    case Json::stringValue: {
        const char* begin = nullptr;
        const char* end = nullptr;
        if (value.getString(&begin, &end)) {
            entry.count = static_cast<uint32_t>(end - begin);
        }
        break;
    }
    case Json::objectValue:
    case Json::arrayValue:
        entry.count = value.size() == 0 ? 0 : 1;  // the real count once laid out
        break;
    default:
        break;
    }
}

}  // namespace

void OptionsIndex::Reset(const Json::Value* root)
{
    m_entries.Clear();
    m_names.Clear();
    m_has_root = root != nullptr;
    if (root != nullptr) {
        Describe(m_root, *root);
    }
}

bool OptionsIndex::LayOut(const Entry& entry) const
{
    if (entry.laidOut || (entry.type != Json::objectValue && entry.type != Json::arrayValue)) {
        return true;
    }
    const Json::Value& container = *entry.value;
    try {
        // size() counts an array up to its last index, at least its
        // elements: room enough.
        const size_t room = container.size();
        Entry* children = room == 0 ? nullptr : m_entries.Take(room);
        size_t count = 0;
        const Json::Value::const_iterator end = container.end();
        for (Json::Value::const_iterator it = container.begin(); it != end && count < room; ++it) {
            Entry& child = children[count];
            Describe(child, *it);
            if (entry.type == Json::objectValue) {
                const char* nameEnd = nullptr;
                const char* name = it.memberName(&nameEnd);
                if (name != nullptr && nameEnd != nullptr && nameEnd != name) {
                    child.nameLength = static_cast<uint32_t>(nameEnd - name);
                    char* kept = m_names.Take(child.nameLength);
                    std::memcpy(kept, name, child.nameLength);
                    child.name = kept;
                }
                if (count != 0 && !NameBefore(children[count - 1].name,
                                              children[count - 1].nameLength, child.name,
                                              child.nameLength)) {
                    entry.sorted = false;
                }
            }
            ++count;
        }
        entry.children = count == 0 ? nullptr : children;
        entry.count = static_cast<uint32_t>(count);
        entry.laidOut = true;
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

const OptionsIndex::Entry* OptionsIndex::Find(const Entry& object, const char* key, size_t length)
{
    if (object.type != Json::objectValue || !object.laidOut || object.count == 0) {
        return nullptr;
    }
    const Entry* begin = object.children;
    const Entry* end = begin + object.count;
    if (object.sorted && object.count > 8) {
        // Binary search in jsoncpp's order.
        while (begin < end) {
            const Entry* middle = begin + (end - begin) / 2;
            if (NameBefore(middle->name, middle->nameLength, key, length)) {
                begin = middle + 1;
            } else {
                end = middle;
            }
        }
        end = object.children + object.count;
        if (begin != end && begin->nameLength == length &&
            (length == 0 || std::memcmp(begin->name, key, length) == 0)) {
            return begin;
        }
        return nullptr;
    }
    for (const Entry* entry = begin; entry != end; ++entry) {
        if (entry->nameLength == length &&
            (length == 0 || std::memcmp(entry->name, key, length) == 0)) {
            return entry;
        }
    }
    return nullptr;
}

}  // namespace Zavrel
