#include "platform/OptionsNodeIterator.h"

#include <string>

namespace Zavrel {

OptionsNodeIterator::OptionsNodeIterator(Json::Value::const_iterator position, bool valid)
    : m_position(position), m_valid(valid) {}

const OptionsNode& OptionsNodeIterator::operator*() const {
    m_current = m_valid ? OptionsNode(&*m_position) : OptionsNode();
    return m_current;
}

string OptionsNodeIterator::Name() const {
    if (!m_valid) {
        return string();
    }
    return string(m_position.name());
}

OptionsNodeIterator& OptionsNodeIterator::operator++() {
    if (m_valid) {
        ++m_position;
    }
    return *this;
}

bool OptionsNodeIterator::operator==(const OptionsNodeIterator& other) const {
    if (!m_valid || !other.m_valid) {
        return m_valid == other.m_valid;
    }
    return m_position == other.m_position;
}

}  // namespace Zavrel
