// OptionsNodeIterator: walks the elements of an array node or the members of
// an object node, in document order.
#ifndef ZAVREL_PLATFORM_OPTIONSNODEITERATOR_H
#define ZAVREL_PLATFORM_OPTIONSNODEITERATOR_H

#include <json/value.h>

#include "platform/OptionsNode.h"

namespace Zavrel {

class OptionsNodeIterator {
public:
    OptionsNodeIterator() = default;
    OptionsNodeIterator(Json::Value::const_iterator position, bool valid);

    // The element under the iterator, as a fresh node with an empty error.
    const OptionsNode& operator*() const;
    const OptionsNode* operator->() const { return &**this; }
    // The member name for object members; empty for array elements.
    string Name() const;

    OptionsNodeIterator& operator++();
    bool operator==(const OptionsNodeIterator& other) const;
    bool operator!=(const OptionsNodeIterator& other) const { return !(*this == other); }

private:
    Json::Value::const_iterator m_position;
    bool m_valid = false;
    mutable OptionsNode m_current;
};

}  // namespace Zavrel

#endif
