// Options: a loaded options document (JSON).
#ifndef ZAVREL_PLATFORM_OPTIONS_H
#define ZAVREL_PLATFORM_OPTIONS_H

#include <cstddef>

#include <json/value.h>

#include "platform/OptionsNode.h"
#include "platform/String.h"

namespace Zavrel {

// Documents are read strictly: they must be JSON by the grammar of RFC 8259
// (no leading zeros, no "+" sign, digits after a dot, no raw control
// characters in strings...), the root must be an object or an array,
// no comments, no trailing content, no duplicate member names, at most
// MAX_DEPTH levels of nesting (the root is level 1; so at most MAX_DEPTH - 1
// nested containers around a scalar) and at most MAX_INPUT_BYTES of input.
// A failed load keeps the previous document and leaves a readable error
// such as "line 3, column 7: Duplicate key: 'vid'" (lines and columns from
// 1, columns in bytes). Errors of a file are prefixed with "<path>: "; a file
// that cannot be opened gives "cannot open <path>: <system error text>".
// A successful load clears the error. Nothing here throws.
class Options {
public:
    static constexpr unsigned int MAX_DEPTH = 256;
    static constexpr size_t MAX_INPUT_BYTES = 64u * 1024u * 1024u;

    Options();  // an empty object
    explicit Options(const Json::Value& root);
    // Copies hold a document of their own; a moved-from document is left
    // null (construction) or with the target's former document (assignment).
    Options(const Options& other);
    Options(Options&& other) noexcept;
    Options& operator=(const Options& other);
    Options& operator=(Options&& other) noexcept;

    bool LoadFromText(const char* text, size_t length);
    bool LoadFromText(const string& text);
    bool LoadFromFile(const char* path);

    const string& Error() const { return m_error; }

    OptionsNode Root() const { return OptionsNode(&m_root); }
    OptionsNode operator[](const char* key) const { return Root()[key]; }
    OptionsNode Child(const char* key) const { return Root()[key]; }
    const Json::Value& Json() const { return m_root; }

private:
    Json::Value m_root;
    string m_error;
};

}  // namespace Zavrel

#endif
