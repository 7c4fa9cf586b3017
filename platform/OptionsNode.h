// OptionsNode: a read-only view on one value of an options document.
#ifndef ZAVREL_PLATFORM_OPTIONSNODE_H
#define ZAVREL_PLATFORM_OPTIONSNODE_H

#include <json/value.h>

#include <cstddef>
#include <string>

#include "platform/String.h"

namespace Zavrel {

class OptionsNodeIterator;

// A node views a Json::Value owned by an Options document (or by the caller)
// and carries an error text that failed reads write into. A node without a
// value stands for a missing member. Views stay valid while the document
// they point into lives and is not changed.
class OptionsNode {
public:
    OptionsNode();  // no value
    explicit OptionsNode(const Json::Value* value);

    bool HasValue() const { return m_value != nullptr; }
    const Json::Value* Value() const { return m_value; }

    // The member named key of an object node. A missing member, or a node
    // that is not an object, gives a node without a value.
    OptionsNode operator[](const char* key) const;
    OptionsNode Child(const char* key) const { return (*this)[key]; }

    // A member name for FindMembers, with its length worked out once (at
    // compile time for a constexpr table of keys).
    struct Key {
        constexpr Key() : name(""), length(0) {}
        // Implicit, so that a table of keys can be written as literals.
        constexpr Key(const char* text)  // NOLINT
            : name(text), length(std::char_traits<char>::length(text)) {}
        constexpr Key(const char* text, size_t textLength) : name(text), length(textLength) {}
        const char* name;
        size_t length;
    };

    // Looks up several members in one pass over the object's members:
    // found[i] comes to view what (*this)[keys[i].name] views (its error text
    // is left alone). The keys must differ from each other. When they are a
    // good part of the members this costs far less than a lookup per key.
    void FindMembers(const Key keys[], OptionsNode found[], size_t count) const;
    template <size_t N>
    void FindMembers(const Key (&keys)[N], OptionsNode (&found)[N]) const {
        FindMembers(keys, found, N);
    }

    // Empty: no value, JSON null, or an object, array or string with no
    // content. Null: no value or JSON null.
    bool IsEmpty() const;
    bool IsNull() const;
    bool IsObject() const;
    bool IsArray() const;
    // Number of elements of an array or members of an object, else 0.
    unsigned int Size() const;

    // The node's value as text: strings as they are, numbers in decimal,
    // booleans "true"/"false"; empty for anything else.
    string GetAsString() const;
    // The member key as text (as above); empty when absent.
    string GetAsString(const char* key) const;

    // Converts the node's value. Accepted JSON kinds:
    //   int:          integer numbers in range; text of decimal digits with
    //                 an optional leading "-", in range ("12", "-3")
    //   unsigned int: non-negative integer numbers in range; text of
    //                 decimal digits only, in range ("12")
    //   bool:         true/false, the numbers 0 and 1, the texts "true",
    //                 "false", "0" and "1" (exactly, lower case)
    // Everything else fails: null, arrays, objects, real numbers (even 5.0
    // or 1e3), booleans for the number types, text with blanks, a "+" sign,
    // hexadecimal or other characters. On failure sets the error text (for
    // example "number 4294967296 is out of range for int", "text \"12x\" is
    // not a decimal number", "cannot convert array to bool"; a node without
    // a value gives "cannot find the node element"), leaves out unchanged and
    // returns false.
    bool AsVal(int& out) const;
    bool AsVal(unsigned int& out) const;
    bool AsVal(bool& out) const;

    // Reads the member key into out. out always receives fallback first;
    // on success it then receives the converted value. A missing or null
    // member sets the error "cannot find the node element"; a node that is
    // not an object sets "Incorrect Node type for Object or Array operations";
    // a member that AsVal cannot convert sets AsVal's error on this node.
    template <typename T>
    bool GetLeafValue(T& out, const char* key, const T& fallback) const;

    const string& Error() const;
    void SetError(const char* text) const;

    // Iteration over the elements of an array or the members of an object.
    OptionsNodeIterator begin() const;
    OptionsNodeIterator end() const;

private:
    // Records one of the fixed error texts without copying it: most failed
    // reads are of optional members, and nobody asks for their error.
    void SetFixedError(const char* text) const;

    // The int and unsigned int conversions.
    template <typename T>
    bool AsInteger(T& out) const;
    // The node of found that waits for the member called name (the first
    // key of that name whose node is still empty), or null.
    static OptionsNode* MatchKey(const Key keys[], OptionsNode found[], size_t count,
                                 const char* name, size_t length);

    const Json::Value* m_value;
    mutable const char* m_fixed_error;  // a fixed text not yet copied into m_error
    mutable string m_error;
};

extern template bool OptionsNode::GetLeafValue<int>(int&, const char*, const int&) const;
extern template bool OptionsNode::GetLeafValue<unsigned int>(unsigned int&, const char*,
                                                             const unsigned int&) const;
extern template bool OptionsNode::GetLeafValue<bool>(bool&, const char*, const bool&) const;

}  // namespace Zavrel

#include "platform/OptionsNodeIterator.h"

#endif
