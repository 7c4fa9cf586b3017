// StrictJson: the JSON grammar checked with yajl.
#include "platform/StrictJson.h"

#include <yajl/yajl_parse.h>

#include <cstring>

namespace Zavrel {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// yajl's text for the error, without its kind ("lexical error: ", "parse
// error: ") and its line end.
std::string YajlMessage(yajl_handle handle, const unsigned char* text, size_t length) {
    unsigned char* raw = yajl_get_error(handle, 0, text, length);
    std::string message = raw != nullptr ? reinterpret_cast<const char*>(raw) : "not JSON";
    if (raw != nullptr) {
        yajl_free_error(handle, raw);
    }
    const size_t colon = message.find(": ");
    if (colon != std::string::npos && message.compare(0, colon, "lexical error") == 0) {
        message.erase(0, colon + 2);
    } else if (colon != std::string::npos && message.compare(0, colon, "parse error") == 0) {
        message.erase(0, colon + 2);
    }
    while (!message.empty() && (message.back() == '\n' || message.back() == ' ')) {
        message.pop_back();
    }
    return message;
}

// Where the grammar failed on a number that starts with a zero followed by
// another digit, yajl reads "0" as a whole number and complains about what
// follows it; say what is wrong instead. at is yajl's stopping offset.
bool LeadingZero(const char* text, size_t length, size_t at, size_t& offset) {
    // yajl stops at the digit after the zero or just around it.
    for (size_t i = at > 1 ? at - 1 : 1; i <= at + 1 && i < length; ++i) {
        if (IsDigit(text[i]) && text[i - 1] == '0' &&
            (i < 2 || !(IsDigit(text[i - 2]) || text[i - 2] == '.' || text[i - 2] == 'e' ||
                        text[i - 2] == 'E'))) {
            offset = i - 1;
            return true;
        }
    }
    return false;
}

}  // namespace

bool StrictJson::Check(const char* text, size_t length, size_t& offset, std::string& message) {
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(text);
    yajl_handle handle = yajl_alloc(nullptr, nullptr, nullptr);
    if (handle == nullptr) {
        offset = 0;
        message = "out of memory checking the document";
        return false;
    }
    yajl_status status = yajl_parse(handle, bytes, length);
    size_t at = yajl_get_bytes_consumed(handle);
    if (status == yajl_status_ok) {
        status = yajl_complete_parse(handle);
        at = length;
    }
    bool ok = status == yajl_status_ok;
    if (ok) {
        // yajl also skips form feeds and vertical tabs as white space, which
        // the grammar does not (inside a string yajl refuses them already).
        const void* formFeed = std::memchr(text, '\f', length);
        const void* verticalTab = std::memchr(text, '\v', length);
        if (formFeed != nullptr || verticalTab != nullptr) {
            const char* first = static_cast<const char*>(formFeed);
            if (first == nullptr || (verticalTab != nullptr && verticalTab < formFeed)) {
                first = static_cast<const char*>(verticalTab);
            }
            offset = static_cast<size_t>(first - text);
            message = "form feed and vertical tab are not white space";
            ok = false;
        }
    } else {
        // yajl counts the byte it failed on as consumed.
        offset = at > 0 && at <= length ? at - 1 : at;
        message = YajlMessage(handle, bytes, length);
        size_t zero = 0;
        if (LeadingZero(text, length, offset, zero)) {
            offset = zero;
            message = "numbers may not start with a zero followed by digits";
        }
    }
    yajl_free(handle);
    return ok;
}

}  // namespace Zavrel
