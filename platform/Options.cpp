#include "platform/Options.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <utility>

#include <json/reader.h>

#include "platform/StrictJson.h"

namespace Zavrel {

namespace {

// Line and column (both from 1, columns in bytes) of offset in text, counted
// the way the JSON reader counts them: "\r\n", "\r" and "\n" end a line.
void LineAndColumn(const char* text, size_t offset, unsigned long& line, unsigned long& column) {
    line = 1;
    size_t lineStart = 0;
    for (size_t i = 0; i < offset; ++i) {
        if (text[i] == '\r') {
            if (i + 1 < offset && text[i + 1] == '\n') {
                ++i;
            }
            ++line;
            lineStart = i + 1;
        } else if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    }
    column = static_cast<unsigned long>(offset - lineStart) + 1;
}

string ErrorAt(const char* text, size_t offset, const char* message) {
    unsigned long line = 0;
    unsigned long column = 0;
    LineAndColumn(text, offset, line, column);
    string error;
    error.Format("line %lu, column %lu: %s", line, column, message);
    return error;
}

// Checks what the JSON reader cannot report well by itself: an empty
// document, comments, zero bytes, and nesting deeper than the limit (the reader would
// only throw without a position). Strings are skipped with their escapes.
bool PreScan(const char* text, size_t length, string& error) {
    size_t depth = 0;
    bool inString = false;
    bool sawValue = false;
    for (size_t i = 0; i < length; ++i) {
        const char c = text[i];
        if (c == '\0') {
            // The reader would take it for the end of the document.
            error = ErrorAt(text, i, "unexpected zero byte");
            return false;
        }
        if (inString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                inString = false;
            }
            continue;
        }
        switch (c) {
            case ' ':
            case '\t':
            case '\r':
            case '\n':
            case ',':
            case ':':
                continue;
            case ']':
            case '}':
                if (depth > 0) {
                    --depth;
                }
                continue;
            case '/':
                error = ErrorAt(text, i, "comments are not allowed");
                return false;
            default:
                break;
        }
        // The start of a value or member name (or a stray character, which
        // the reader reports). A value directly inside MAX_DEPTH containers
        // would be one level too deep.
        if (depth >= Options::MAX_DEPTH) {
            string message;
            message.Format("nesting deeper than %u levels", Options::MAX_DEPTH);
            error = ErrorAt(text, i, message.c_str());
            return false;
        }
        sawValue = true;
        if (c == '[' || c == '{') {
            ++depth;
        } else if (c == '"') {
            inString = true;
        } else {
            // Skip the rest of a literal or number.
            while (i + 1 < length && std::strchr(" \t\r\n,:]}[{\"/", text[i + 1]) == nullptr) {
                ++i;
            }
        }
    }
    if (!sawValue) {
        error = ErrorAt(text, length, "the document is empty");
        return false;
    }
    return true;
}

// Turns the reader's first message, "* Line 3, Column 7\n  Duplicate key:
// 'vid'\n...", into "line 3, column 7: Duplicate key: 'vid'".
string ReaderError(const std::string& errors) {
    unsigned long line = 0;
    unsigned long column = 0;
    int consumed = 0;
    if (std::sscanf(errors.c_str(), "* Line %lu, Column %lu%n", &line, &column, &consumed) == 2 &&
        consumed > 0) {
        size_t start = static_cast<size_t>(consumed);
        while (start < errors.size() && (errors[start] == '\n' || errors[start] == ' ')) {
            ++start;
        }
        size_t end = errors.find('\n', start);
        if (end == std::string::npos) {
            end = errors.size();
        }
        string error;
        error.Format("line %lu, column %lu: %s", line, column,
                     errors.substr(start, end - start).c_str());
        return error;
    }
    if (errors.empty()) {
        return string("the document could not be read");
    }
    std::string text = errors;
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return string(text);
}

}  // namespace

Options::Options() : m_root(Json::objectValue) {}

Options::Options(const Json::Value& root) : m_root(root) {}

Options::Options(const Options& other) : m_root(other.m_root), m_error(other.m_error) {}

Options::Options(Options&& other) noexcept : m_error(std::move(other.m_error)) {
    m_root.swap(other.m_root);
}

Options& Options::operator=(const Options& other) {
    if (this != &other) {
        // Copies first: a failed copy leaves this document as it was.
        Json::Value root(other.m_root);
        string error(other.m_error);
        m_root.swap(root);
        m_error = std::move(error);
    }
    return *this;
}

Options& Options::operator=(Options&& other) noexcept {
    if (this != &other) {
        m_root.swap(other.m_root);
        m_error = std::move(other.m_error);
    }
    return *this;
}

bool Options::LoadFromText(const string& text) {
    return LoadFromText(text.c_str(), text.length());
}

bool Options::LoadFromText(const char* text, size_t length) {
    if (text == nullptr) {
        m_error = "no text to read";
        return false;
    }
    if (length > MAX_INPUT_BYTES) {
        m_error.Format("the document has %zu bytes, more than the limit of %zu", length,
                       MAX_INPUT_BYTES);
        return false;
    }
    string error;
    if (!PreScan(text, length, error)) {
        m_error = error;
        return false;
    }
    try {
        Json::CharReaderBuilder builder;
        Json::CharReaderBuilder::strictMode(&builder.settings_);
        builder.settings_["rejectDupKeys"] = true;
        builder.settings_["stackLimit"] = MAX_DEPTH;
        Json::Value invalid;
        if (!builder.validate(&invalid)) {
            m_error = "invalid JSON reader settings";
            return false;
        }
        std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
        Json::Value root;
        std::string errors;
        if (!reader->parse(text, text + length, &root, &errors)) {
            m_error = ReaderError(errors);
            return false;
        }
        // What the reader let through must still be JSON by the grammar.
        size_t offset = 0;
        std::string grammar;
        if (!StrictJson::Check(text, length, offset, grammar)) {
            m_error = ErrorAt(text, offset, grammar.c_str());
            return false;
        }
        m_root.swap(root);
        m_error.clear();
        return true;
    } catch (const std::exception& e) {
        m_error.Format("the document could not be read: %s", e.what());
    } catch (...) {
        m_error = "the document could not be read";
    }
    return false;
}

bool Options::LoadFromFile(const char* path) {
    if (path == nullptr) {
        m_error = "no file name";
        return false;
    }
    std::FILE* file = std::fopen(path, "rb");
    if (file == nullptr) {
        m_error.Format("cannot open %s: %s", path, std::strerror(errno));
        return false;
    }
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> closer(file, &std::fclose);
    struct stat info;
    if (fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode) &&
        static_cast<unsigned long long>(info.st_size) > MAX_INPUT_BYTES) {
        m_error.Format("%s: the file has %llu bytes, more than the limit of %zu", path,
                       static_cast<unsigned long long>(info.st_size), MAX_INPUT_BYTES);
        return false;
    }
    // Read at most one byte more than the limit, so that descriptors
    // without a size are capped as well.
    std::string content;
    char buffer[65536];
    for (;;) {
        const size_t got = std::fread(buffer, 1, sizeof buffer, file);
        content.append(buffer, got);
        if (content.size() > MAX_INPUT_BYTES) {
            m_error.Format("%s: the file has more than %zu bytes", path, MAX_INPUT_BYTES);
            return false;
        }
        if (got < sizeof buffer) {
            break;
        }
    }
    if (std::ferror(file)) {
        m_error.Format("cannot read %s: %s", path, std::strerror(errno));
        return false;
    }
    if (!LoadFromText(content.data(), content.size())) {
        string error;
        error.Format("%s: %s", path, m_error.c_str());
        m_error = error;
        return false;
    }
    return true;
}

}  // namespace Zavrel
