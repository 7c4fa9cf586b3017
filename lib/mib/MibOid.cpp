#include "mib/MibOid.h"

#include <cstring>
#include <new>

#include "platform/AllocationFaults.h"
#include "platform/Trace.h"

namespace Zavrel {

MibOid::MibOid() : m_length(0), m_held(0), m_inline() {}

MibOid::MibOid(const unsigned long* components, unsigned long count) : MibOid() {
    const unsigned long length = count > MAX_LENGTH ? MAX_LENGTH : count;
    if (!Hold(length)) {
        return;
    }
    m_length = length;
    if (components != nullptr && length != 0) {
        memcpy(Data(), components, length * sizeof(unsigned long));
    }
}

MibOid::MibOid(const MibOid& other) : MibOid() {
    CopyFrom(other);
}

MibOid::MibOid(MibOid&& other) noexcept : MibOid() {
    MoveFrom(other);
}

MibOid& MibOid::operator=(const MibOid& other) {
    if (this != &other) {
        CopyFrom(other);
    }
    return *this;
}

MibOid& MibOid::operator=(MibOid&& other) noexcept {
    if (this != &other) {
        MoveFrom(other);
    }
    return *this;
}

MibOid::~MibOid() {
    Release();
}

void MibOid::Release() {
    if (OnHeap()) {
        delete[] m_heap;
        m_held = 0;
        memset(m_inline, 0, sizeof(m_inline));
    }
}

bool MibOid::Hold(unsigned long count) {
    if (count > MAX_LENGTH) {
        count = MAX_LENGTH;
    }
    if (count <= m_held) {
        return true;
    }
    if (count > INLINE_CAPACITY && !OnHeap()) {
        unsigned long* heap = AllocationFaults::ShouldFail("MibOid")
                                  ? nullptr
                                  : new (std::nothrow) unsigned long[MAX_LENGTH]();
        if (heap == nullptr) {
            TRACE(0, "MibOid: Error in allocating components\n");
            return false;
        }
        memcpy(heap, m_inline, m_held * sizeof(unsigned long));
        m_heap = heap;
    }
    // Inline and heap components past m_held are already zero.
    m_held = static_cast<unsigned short>(count);
    return true;
}

void MibOid::MakeEmpty() {
    Release();
    memset(m_inline, 0, sizeof(m_inline));
    m_held = 0;
    m_length = 0;
}

void MibOid::MoveFrom(MibOid& other) noexcept {
    if (!other.OnHeap()) {
        // Inline components are copied (no allocation).
        CopyFrom(other);
        return;
    }
    Release();
    m_heap = other.m_heap;
    m_held = other.m_held;
    m_length = other.m_length;
    other.m_held = 0;
    other.m_length = 0;
    memset(other.m_inline, 0, sizeof(other.m_inline));
}

void MibOid::CopyFrom(const MibOid& other) {
    // Components held here beyond the other's must read as zero again.
    if (m_held > other.m_held) {
        memset(Data() + other.m_held, 0, (m_held - other.m_held) * sizeof(unsigned long));
        if (OnHeap() && other.m_held <= INLINE_CAPACITY) {
            unsigned long* heap = m_heap;
            memset(m_inline, 0, sizeof(m_inline));
            memcpy(m_inline, heap, other.m_held * sizeof(unsigned long));
            delete[] heap;
        }
        m_held = other.m_held;
    } else if (!Hold(other.m_held)) {
        MakeEmpty();
        return;
    }
    if (other.m_held != 0) {
        memcpy(Data(), other.Data(), other.m_held * sizeof(unsigned long));
    }
    m_length = other.m_length;
}

void MibOid::SetOid(const unsigned long* components, unsigned long count) {
    m_length = count;
    if (components == nullptr) {
        if (!Hold(count)) {
            MakeEmpty();
        }
        return;
    }
    if (m_length > MAX_LENGTH) {
        m_length = MAX_LENGTH;
    }
    if (m_length != 0) {
        if (!Hold(m_length)) {
            MakeEmpty();
            return;
        }
        memcpy(Data(), components, m_length * sizeof(unsigned long));
    }
}

unsigned long MibOid::UsableLength() const {
    return m_length > MAX_LENGTH ? MAX_LENGTH : m_length;
}

bool MibOid::operator==(const MibOid& other) const {
    if (m_length != other.m_length) {
        return false;
    }
    unsigned long count = UsableLength();
    return count == 0 || memcmp(Data(), other.Data(), count * sizeof(unsigned long)) == 0;
}

bool MibOid::operator<(const MibOid& other) const {
    unsigned long mine = UsableLength();
    unsigned long theirs = other.UsableLength();
    unsigned long common = mine < theirs ? mine : theirs;
    const unsigned long* a = Data();
    const unsigned long* b = other.Data();
    for (unsigned long i = 0; i < common; ++i) {
        if (a[i] != b[i]) {
            return a[i] < b[i];
        }
    }
    return m_length < other.m_length;
}

string MibOid::ToString() const {
    string text;
    unsigned long count = UsableLength();
    const unsigned long* data = Data();
    for (unsigned long i = 0; i < count; ++i) {
        text.AppendFmt(i == 0 ? "%lu" : ":%lu", data[i]);
    }
    return text;
}

}  // namespace Zavrel
