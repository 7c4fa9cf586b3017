#include "platform/OptionsNodeIterator.h"

#include <string>

namespace Zavrel {

OptionsNodeIterator::OptionsNodeIterator(Json::Value::const_iterator position, bool valid)
    : m_position(position), m_valid(valid)
{
}

OptionsNodeIterator::OptionsNodeIterator(const OptionsIndex* index,
                                         const OptionsIndex::Entry* entry)
    : m_valid(entry != nullptr), m_index(index), m_entry(entry)
{
}

const OptionsNode& OptionsNodeIterator::operator*() const
{
    if (m_entry != nullptr) {
        m_current = OptionsNode(m_index, m_entry);
    } else {
        m_current = m_valid ? OptionsNode(&*m_position) : OptionsNode();
    }
    return m_current;
}

string OptionsNodeIterator::Name() const
{
    if (!m_valid) {
        return string();
    }
    if (m_entry != nullptr) {
        return string(std::string(m_entry->name, m_entry->nameLength));
    }
    return string(m_position.name());
}

OptionsNodeIterator& OptionsNodeIterator::operator++()
{
    if (m_entry != nullptr) {
        ++m_entry;
    } else if (m_valid) {
        ++m_position;
    }
    return *this;
}

bool OptionsNodeIterator::operator==(const OptionsNodeIterator& other) const
{
    if (!m_valid || !other.m_valid) {
        return m_valid == other.m_valid;
    }
    if (m_entry != nullptr || other.m_entry != nullptr) {
        return m_entry == other.m_entry;
    }
    return m_position == other.m_position;
}

}  // namespace Zavrel
