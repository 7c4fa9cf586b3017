#include "platform/OptionsIndex.h"

#include <cstring>

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

OptionsIndex::Entry EntryFor(const Json::Value& value)
{
    OptionsIndex::Entry entry;
    entry.value = &value;
    entry.children = nullptr;
    entry.name = nullptr;
    entry.nameLength = 0;
    entry.count = 0;
    entry.type = value.type();
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
    default:
        break;
    }
    return entry;
}

}  // namespace

void OptionsIndex::Clear()
{
    m_entries.clear();
    m_entries.shrink_to_fit();
    m_names.clear();
    m_names.shrink_to_fit();
}

void OptionsIndex::Build(const Json::Value& root)
{
    Clear();
    // Offsets while the arrays grow; turned into pointers at the end.
    std::vector<size_t> firstChild;
    std::vector<size_t> nameAt;
    m_entries.push_back(EntryFor(root));
    firstChild.push_back(0);
    nameAt.push_back(0);

    // Depth first, without recursion: a container's children are added
    // together, then the first child's subtree, and so on.
    std::vector<size_t> pending(1, 0);
    while (!pending.empty()) {
        const size_t at = pending.back();
        pending.pop_back();
        const Json::ValueType type = m_entries[at].type;
        if (type != Json::objectValue && type != Json::arrayValue) {
            continue;
        }
        const Json::Value& container = *m_entries[at].value;
        const size_t first = m_entries.size();
        for (Json::Value::const_iterator it = container.begin(); it != container.end(); ++it) {
            Entry entry = EntryFor(*it);
            nameAt.push_back(m_names.size());
            if (type == Json::objectValue) {
                const char* end = nullptr;
                const char* name = it.memberName(&end);
                if (name != nullptr && end != nullptr) {
                    m_names.insert(m_names.end(), name, end);
                    entry.nameLength = static_cast<uint32_t>(end - name);
                }
            }
            m_entries.push_back(entry);
            firstChild.push_back(0);
        }
        const size_t count = m_entries.size() - first;
        m_entries[at].count = static_cast<uint32_t>(count);
        firstChild[at] = first;
        if (type == Json::objectValue) {
            for (size_t i = first + 1; i < first + count; ++i) {
                if (!NameBefore(m_names.data() + nameAt[i - 1], m_entries[i - 1].nameLength,
                                m_names.data() + nameAt[i], m_entries[i].nameLength)) {
                    m_entries[at].sorted = false;
                    break;
                }
            }
        }
        for (size_t i = first + count; i > first; --i) {
            pending.push_back(i - 1);
        }
    }

    for (size_t i = 0; i < m_entries.size(); ++i) {
        Entry& entry = m_entries[i];
        const bool container =
            entry.type == Json::objectValue || entry.type == Json::arrayValue;
        entry.children = container && entry.count != 0 ? &m_entries[firstChild[i]] : nullptr;
        entry.name = m_names.empty() ? "" : m_names.data() + nameAt[i];
    }
}

const OptionsIndex::Entry* OptionsIndex::Find(const Entry& object, const char* key, size_t length)
{
    if (object.type != Json::objectValue || object.count == 0) {
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
