#include "mib/MibOid.h"

#include <cstring>

namespace Zavrel {

MibOid::MibOid() : m_length(0)
{
    memset(m_components, 0, sizeof(m_components));
}

MibOid::MibOid(const unsigned long* components, unsigned long count) : MibOid()
{
    m_length = count > MAX_LENGTH ? MAX_LENGTH : count;
    if (components != nullptr && m_length != 0) {
        memcpy(m_components, components, m_length * sizeof(m_components[0]));
    }
}

void MibOid::SetOid(const unsigned long* components, unsigned long count)
{
    m_length = count;
    if (components == nullptr) {
        return;
    }
    if (m_length > MAX_LENGTH) {
        m_length = MAX_LENGTH;
    }
    if (m_length != 0) {
        memcpy(m_components, components, m_length * sizeof(m_components[0]));
    }
}

unsigned long MibOid::UsableLength() const
{
    return m_length > MAX_LENGTH ? MAX_LENGTH : m_length;
}

bool MibOid::operator==(const MibOid& other) const
{
    if (m_length != other.m_length) {
        return false;
    }
    unsigned long count = UsableLength();
    for (unsigned long i = 0; i < count; ++i) {
        if (m_components[i] != other.m_components[i]) {
            return false;
        }
    }
    return true;
}

bool MibOid::operator<(const MibOid& other) const
{
    unsigned long mine = UsableLength();
    unsigned long theirs = other.UsableLength();
    unsigned long common = mine < theirs ? mine : theirs;
    for (unsigned long i = 0; i < common; ++i) {
        if (m_components[i] != other.m_components[i]) {
            return m_components[i] < other.m_components[i];
        }
    }
    return m_length < other.m_length;
}

string MibOid::ToString() const
{
    string text;
    unsigned long count = UsableLength();
    for (unsigned long i = 0; i < count; ++i) {
        text.AppendFmt(i == 0 ? "%lu" : ":%lu", m_components[i]);
    }
    return text;
}

}  // namespace Zavrel
