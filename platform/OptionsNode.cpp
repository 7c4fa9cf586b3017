#include "platform/OptionsNode.h"

#include <climits>
#include <cstring>
#include <exception>

namespace Zavrel {

namespace {

const char* const NOT_FOUND = "cannot find the node element";
const char* const WRONG_TYPE = "Incorrect Node type for Object or Array operations";

const char* KindName(const Json::Value& value) {
    switch (value.type()) {
        case Json::nullValue:
            return "null";
        case Json::intValue:
        case Json::uintValue:
            return "integer";
        case Json::realValue:
            return "real number";
        case Json::stringValue:
            return "text";
        case Json::booleanValue:
            return "boolean";
        case Json::arrayValue:
            return "array";
        case Json::objectValue:
            return "object";
    }
    return "value";
}

// Decimal text: an optional minus sign (when allowed) and at least one
// digit, nothing else. The magnitude is returned apart from the sign.
bool ParseDecimal(const std::string& text, bool allowMinus, bool& negative,
                  unsigned long long& magnitude) {
    size_t i = 0;
    negative = false;
    if (allowMinus && !text.empty() && text[0] == '-') {
        negative = true;
        i = 1;
    }
    if (i >= text.size()) {
        return false;
    }
    unsigned long long value = 0;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c < '0' || c > '9') {
            return false;
        }
        const unsigned long long digit = static_cast<unsigned long long>(c - '0');
        if (value > (ULLONG_MAX - digit) / 10) {
            value = ULLONG_MAX;  // far out of any range checked below
            continue;
        }
        value = value * 10 + digit;
    }
    magnitude = value;
    return true;
}

// Sign and magnitude of an integer number (type is v's, int or uint).
void IntegerMagnitude(const Json::Value& v, Json::ValueType type, bool& negative,
                      unsigned long long& magnitude) {
    if (type == Json::uintValue) {
        negative = false;
        magnitude = static_cast<unsigned long long>(v.asLargestUInt());
        return;
    }
    const Json::LargestInt value = v.asLargestInt();
    negative = value < 0;
    // Two's complement negation in unsigned arithmetic also covers the
    // smallest value.
    magnitude = negative ? 0ULL - static_cast<unsigned long long>(value)
                         : static_cast<unsigned long long>(value);
}

// What differs between the int and the unsigned int conversions.
template <typename T>
struct IntegerKind;

template <>
struct IntegerKind<int> {
    static constexpr const char* NAME = "int";
    static constexpr bool ALLOW_MINUS = true;
    static bool InRange(bool negative, unsigned long long magnitude) {
        return negative ? magnitude <= static_cast<unsigned long long>(INT_MAX) + 1
                        : magnitude <= static_cast<unsigned long long>(INT_MAX);
    }
    static int From(bool negative, unsigned long long magnitude) {
        return negative ? static_cast<int>(-static_cast<long long>(magnitude))
                        : static_cast<int>(magnitude);
    }
};

template <>
struct IntegerKind<unsigned int> {
    static constexpr const char* NAME = "unsigned int";
    static constexpr bool ALLOW_MINUS = false;
    static bool InRange(bool negative, unsigned long long magnitude) {
        return !negative && magnitude <= UINT_MAX;
    }
    static unsigned int From(bool, unsigned long long magnitude) {
        return static_cast<unsigned int>(magnitude);
    }
};

// Converts a number, or a decimal text, to T when it is in T's range;
// otherwise leaves out alone and says why in error.
template <typename T>
bool ConvertInteger(const Json::Value& v, T& out, string& error) {
    typedef IntegerKind<T> Kind;
    try {
        const Json::ValueType type = v.type();
        if (type == Json::intValue || type == Json::uintValue) {
            bool negative = false;
            unsigned long long magnitude = 0;
            IntegerMagnitude(v, type, negative, magnitude);
            if (Kind::InRange(negative, magnitude)) {
                out = Kind::From(negative, magnitude);
                return true;
            }
            error.Format("number %s is out of range for %s", v.asString().c_str(), Kind::NAME);
        } else if (type == Json::stringValue) {
            const std::string text = v.asString();
            bool negative = false;
            unsigned long long magnitude = 0;
            if (!ParseDecimal(text, Kind::ALLOW_MINUS, negative, magnitude)) {
                error.Format("text \"%s\" is not a decimal number", text.c_str());
            } else if (!Kind::InRange(negative, magnitude)) {
                error.Format("number %s is out of range for %s", text.c_str(), Kind::NAME);
            } else {
                out = Kind::From(negative, magnitude);
                return true;
            }
        } else {
            error.Format("cannot convert %s to %s", KindName(v), Kind::NAME);
        }
    } catch (const std::exception&) {
        error.Format("cannot convert %s to %s", KindName(v), Kind::NAME);
    }
    return false;
}

}  // namespace

OptionsNode::OptionsNode() : m_value(nullptr), m_fixed_error(nullptr) {}

OptionsNode::OptionsNode(const Json::Value* value) : m_value(value), m_fixed_error(nullptr) {}

const string& OptionsNode::Error() const {
    if (m_fixed_error != nullptr) {
        m_error = m_fixed_error;
        m_fixed_error = nullptr;
    }
    return m_error;
}

void OptionsNode::SetError(const char* text) const {
    m_fixed_error = nullptr;
    m_error = text;
}

void OptionsNode::SetFixedError(const char* text) const {
    m_fixed_error = text;
}

OptionsNode OptionsNode::operator[](const char* key) const {
    if (m_value == nullptr || key == nullptr || !m_value->isObject()) {
        return OptionsNode();
    }
    return OptionsNode(m_value->find(key, key + std::strlen(key)));
}

void OptionsNode::FindMembers(const Key keys[], OptionsNode found[], size_t count) const {
    // Only the views are set: the nodes' error texts are left as they are
    // (copying texts would cost more than the search).
    for (size_t i = 0; i < count; ++i) {
        found[i].m_value = nullptr;
    }
    size_t missing = count;
    if (m_value == nullptr || !m_value->isObject()) {
        return;
    }
    const Json::Value::const_iterator end = m_value->end();
    for (Json::Value::const_iterator it = m_value->begin(); missing != 0 && it != end; ++it) {
        const char* nameEnd = nullptr;
        const char* name = it.memberName(&nameEnd);
        if (name == nullptr || nameEnd == nullptr) {
            continue;
        }
        OptionsNode* node = MatchKey(keys, found, count, name, static_cast<size_t>(nameEnd - name));
        if (node != nullptr) {
            node->m_value = &*it;
            --missing;
        }
    }
}

OptionsNode* OptionsNode::MatchKey(const Key keys[], OptionsNode found[], size_t count,
                                   const char* name, size_t length) {
    for (size_t i = 0; i < count; ++i) {
        const Key& key = keys[i];
        if (key.length == length && found[i].m_value == nullptr &&
            (length == 0 || (key.name[0] == name[0] && std::memcmp(key.name, name, length) == 0))) {
            return &found[i];
        }
    }
    return nullptr;
}

bool OptionsNode::IsEmpty() const {
    if (m_value == nullptr) {
        return true;
    }
    switch (m_value->type()) {
        case Json::nullValue:
            return true;
        case Json::objectValue:
        case Json::arrayValue:
            return m_value->size() == 0;
        case Json::stringValue: {
            const char* begin = nullptr;
            const char* end = nullptr;
            return !m_value->getString(&begin, &end) || begin == end;
        }
        default:
            return false;
    }
}

bool OptionsNode::IsNull() const {
    return m_value == nullptr || m_value->isNull();
}

bool OptionsNode::IsObject() const {
    return m_value != nullptr && m_value->isObject();
}

bool OptionsNode::IsArray() const {
    return m_value != nullptr && m_value->isArray();
}

unsigned int OptionsNode::Size() const {
    if (m_value == nullptr || !(m_value->isObject() || m_value->isArray())) {
        return 0;
    }
    return m_value->size();
}

string OptionsNode::GetAsString() const {
    if (m_value == nullptr) {
        return string();
    }
    try {
        switch (m_value->type()) {
            case Json::stringValue:
            case Json::intValue:
            case Json::uintValue:
            case Json::realValue:
            case Json::booleanValue:
                return string(m_value->asString());
            default:
                return string();
        }
    } catch (const std::exception&) {
        return string();
    }
}

string OptionsNode::GetAsString(const char* key) const {
    return (*this)[key].GetAsString();
}

template <typename T>
bool OptionsNode::AsInteger(T& out) const {
    if (m_value == nullptr) {
        SetFixedError(NOT_FOUND);
        return false;
    }
    string error;
    if (ConvertInteger(*m_value, out, error)) {
        return true;
    }
    m_fixed_error = nullptr;
    m_error = error;
    return false;
}

bool OptionsNode::AsVal(int& out) const {
    return AsInteger(out);
}

bool OptionsNode::AsVal(unsigned int& out) const {
    return AsInteger(out);
}

bool OptionsNode::AsVal(bool& out) const {
    if (m_value == nullptr) {
        SetFixedError(NOT_FOUND);
        return false;
    }
    const Json::Value& v = *m_value;
    string error;
    try {
        const Json::ValueType type = v.type();
        switch (type) {
            case Json::booleanValue:
                out = v.asBool();
                return true;
            case Json::intValue:
            case Json::uintValue: {
                bool negative = false;
                unsigned long long magnitude = 0;
                IntegerMagnitude(v, type, negative, magnitude);
                if (!negative && magnitude <= 1) {
                    out = magnitude == 1;
                    return true;
                }
                error.Format("number %s is not 0 or 1", v.asString().c_str());
                break;
            }
            case Json::stringValue: {
                const std::string text = v.asString();
                if (text == "true" || text == "1") {
                    out = true;
                    return true;
                }
                if (text == "false" || text == "0") {
                    out = false;
                    return true;
                }
                error.Format("text \"%s\" is not a boolean", text.c_str());
                break;
            }
            default:
                error.Format("cannot convert %s to bool", KindName(v));
                break;
        }
    } catch (const std::exception&) {
        error.Format("cannot convert %s to bool", KindName(v));
    }
    m_fixed_error = nullptr;
    m_error = error;
    return false;
}

template <typename T>
bool OptionsNode::GetLeafValue(T& out, const char* key, const T& fallback) const {
    out = fallback;
    if (!IsObject()) {
        SetFixedError(WRONG_TYPE);
        return false;
    }
    const OptionsNode member = (*this)[key];
    if (member.IsNull()) {
        SetFixedError(NOT_FOUND);
        return false;
    }
    if (!member.AsVal(out)) {
        // The reason of a failed conversion is kept on this node as well.
        m_fixed_error = member.m_fixed_error;
        m_error = member.m_error;
        return false;
    }
    return true;
}

template bool OptionsNode::GetLeafValue<int>(int&, const char*, const int&) const;
template bool OptionsNode::GetLeafValue<unsigned int>(unsigned int&, const char*,
                                                      const unsigned int&) const;
template bool OptionsNode::GetLeafValue<bool>(bool&, const char*, const bool&) const;

OptionsNodeIterator OptionsNode::begin() const {
    if (m_value == nullptr || !(m_value->isObject() || m_value->isArray())) {
        return OptionsNodeIterator();
    }
    return OptionsNodeIterator(m_value->begin(), true);
}

OptionsNodeIterator OptionsNode::end() const {
    if (m_value == nullptr || !(m_value->isObject() || m_value->isArray())) {
        return OptionsNodeIterator();
    }
    return OptionsNodeIterator(m_value->end(), true);
}

}  // namespace Zavrel
