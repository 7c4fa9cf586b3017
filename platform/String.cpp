#include "platform/String.h"

#include <cstdio>
#include <cstring>

namespace Zavrel {

string::string(const char* text) : m_text(text != nullptr ? text : "") {}

string::string(const char* text, size_t length) {
    if (text != nullptr) {
        m_text.assign(text, length);
    }
}

string::string(const std::string& text) : m_text(text) {}

string::string(std::string&& text) noexcept : m_text(std::move(text)) {}

string& string::Format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    VFormat(format, args);
    va_end(args);
    return *this;
}

string& string::VFormat(const char* format, va_list args) {
    m_text.clear();
    return VAppendFmt(format, args);
}

string& string::AppendFmt(const char* format, ...) {
    va_list args;
    va_start(args, format);
    VAppendFmt(format, args);
    va_end(args);
    return *this;
}

string& string::VAppendFmt(const char* format, va_list args) {
    if (format == nullptr) {
        return *this;
    }
    // Most texts fit a small stack buffer; longer ones are measured by the
    // first call and written a second time at their full length.
    char buffer[256];
    va_list copy;
    va_copy(copy, args);
    const int needed = vsnprintf(buffer, sizeof buffer, format, copy);
    va_end(copy);
    if (needed < 0) {
        return *this;
    }
    const size_t length = static_cast<size_t>(needed);
    if (length < sizeof buffer) {
        m_text.append(buffer, length);
        return *this;
    }
    const size_t oldLength = m_text.size();
    m_text.resize(oldLength + length + 1);
    va_copy(copy, args);
    vsnprintf(&m_text[oldLength], length + 1, format, copy);
    va_end(copy);
    m_text.resize(oldLength + length);
    return *this;
}

string& string::Append(const char* text) {
    if (text != nullptr) {
        m_text.append(text);
    }
    return *this;
}

string& string::Append(const string& text) {
    m_text.append(text.m_text);
    return *this;
}

bool operator==(const string& a, const char* b) {
    return a.m_text == (b != nullptr ? b : "");
}

}  // namespace Zavrel
