// MibOid: the object identifier of one MIB row, up to 130 components.
#ifndef ZAVREL_MIB_MIBOID_H
#define ZAVREL_MIB_MIBOID_H

#include "platform/String.h"

namespace Zavrel {

// Behaves as a fixed array of 130 components that starts zeroed. Only the
// leading components ever written are held (inline when few, which is the
// usual case for routes and interfaces); the rest read as zero.
class MibOid {
public:
    static const unsigned long MAX_LENGTH = 130;

    // All components and the length zero.
    MibOid();
    // Clears every component, then copies min(count, 130) components.
    MibOid(const unsigned long* components, unsigned long count);
    MibOid(const MibOid& other);
    MibOid(MibOid&& other) noexcept;
    MibOid& operator=(const MibOid& other);
    MibOid& operator=(MibOid&& other) noexcept;
    ~MibOid();

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
    // Valid for at least min(Length(), 130) components.
    const unsigned long* Components() const { return Data(); }
    unsigned long operator[](unsigned long index) const {
        return index < m_held ? Data()[index] : 0;
    }

private:
    static const unsigned short INLINE_CAPACITY = 20;

    // Number of components that can be read: the length, at most 130.
    unsigned long UsableLength() const;
    bool OnHeap() const { return m_held > INLINE_CAPACITY; }
    unsigned long* Data() { return OnHeap() ? m_heap : m_inline; }
    const unsigned long* Data() const { return OnHeap() ? m_heap : m_inline; }
    // Makes the first count components (at most 130) held; newly held
    // ones are zero. False, with "MibOid: Error in allocating components"
    // logged at level 0, when the heap array cannot be had: the OID is then
    // left as it was, and the caller makes it the empty OID.
    bool Hold(unsigned long count);
    // The empty OID: length 0, nothing held.
    void MakeEmpty();
    void CopyFrom(const MibOid& other);
    // Takes other's heap components, or copies inline ones; other is left
    // empty when it gave its heap.
    void MoveFrom(MibOid& other) noexcept;
    void Release();

    unsigned long m_length;
    // Leading components held; the ones past it are zero. Never below
    // min(m_length, 130). Past INLINE_CAPACITY they live in a full-size
    // zeroed heap array.
    unsigned short m_held;
    union {
        unsigned long m_inline[INLINE_CAPACITY];
        unsigned long* m_heap;
    };
};

}  // namespace Zavrel

#endif
