// MibOid: the object identifier of one MIB row, up to 130 components.
#ifndef ZAVREL_MIB_MIBOID_H
#define ZAVREL_MIB_MIBOID_H

#include "platform/String.h"

namespace Zavrel {

class MibOid {
public:
    static const unsigned long MAX_LENGTH = 130;

    // All components and the length zero.
    MibOid();
    // Clears every component, then copies min(count, 130) components.
    MibOid(const unsigned long* components, unsigned long count);

    // Stores count as the length first. A null array returns at once with
    // that length unclipped and the components untouched; otherwise the
    // length is clipped to 130 and that many components are copied.
    // Components past the new length are not cleared.
    void SetOid(const unsigned long* components, unsigned long count);

    // Equal lengths and equal first min(length, 130) components.
    bool operator==(const MibOid& other) const;
    bool operator!=(const MibOid& other) const { return !(*this == other); }
    // Lexicographic order on the unsigned component sequences; a proper
    // prefix sorts first.
    bool operator<(const MibOid& other) const;

    // Components in "%lu" joined by ":"; empty for length 0.
    string ToString() const;

    unsigned long Length() const { return m_length; }
    const unsigned long* Components() const { return m_components; }
    unsigned long operator[](unsigned long index) const { return m_components[index]; }

private:
    // Number of components that can be read: the length, at most 130.
    unsigned long UsableLength() const;

    unsigned long m_components[MAX_LENGTH];
    unsigned long m_length;
};

}  // namespace Zavrel

#endif
