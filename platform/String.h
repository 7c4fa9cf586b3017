// Zavrel::string: the value string type used across the system.
#ifndef ZAVREL_PLATFORM_STRING_H
#define ZAVREL_PLATFORM_STRING_H

#include <cstdarg>
#include <cstddef>
#include <functional>
#include <string>

#include "platform/Compiler.h"

namespace Zavrel {

class string {
public:
    string() = default;
    string(const char* text);  // NOLINT: implicit on purpose; null gives ""
    string(const char* text, size_t length);
    string(const std::string& text);      // NOLINT
    string(std::string&& text) noexcept;  // NOLINT

    const char* c_str() const { return m_text.c_str(); }
    size_t length() const { return m_text.length(); }
    size_t size() const { return m_text.size(); }
    bool empty() const { return m_text.empty(); }
    const std::string& str() const { return m_text; }
    char operator[](size_t index) const { return m_text[index]; }

    // Replaces the content with the printf-style text.
    string& Format(const char* format, ...) ZAVREL_PRINTF(2, 3);
    string& VFormat(const char* format, va_list args) ZAVREL_PRINTF(2, 0);
    // Appends the printf-style text.
    string& AppendFmt(const char* format, ...) ZAVREL_PRINTF(2, 3);
    string& VAppendFmt(const char* format, va_list args) ZAVREL_PRINTF(2, 0);

    string& Append(const char* text);
    string& Append(const string& text);
    string& operator+=(const char* text) { return Append(text); }
    string& operator+=(const string& text) { return Append(text); }
    void clear() { m_text.clear(); }

    friend bool operator==(const string& a, const string& b) { return a.m_text == b.m_text; }
    friend bool operator!=(const string& a, const string& b) { return a.m_text != b.m_text; }
    friend bool operator<(const string& a, const string& b) { return a.m_text < b.m_text; }
    friend bool operator<=(const string& a, const string& b) { return a.m_text <= b.m_text; }
    friend bool operator>(const string& a, const string& b) { return a.m_text > b.m_text; }
    friend bool operator>=(const string& a, const string& b) { return a.m_text >= b.m_text; }
    friend bool operator==(const string& a, const char* b);
    friend bool operator!=(const string& a, const char* b) { return !(a == b); }

private:
    std::string m_text;
};

// Hash for unordered containers keyed by Zavrel::string.
struct StringHash {
    size_t operator()(const string& s) const { return std::hash<std::string>()(s.str()); }
};

}  // namespace Zavrel

#endif
