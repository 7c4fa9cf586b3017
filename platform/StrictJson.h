// StrictJson: checks that a document is one JSON text as RFC 8259 defines
// it. The options reader (jsoncpp) builds the tree but lets through some
// texts that the grammar refuses: numbers with a leading zero ("-01"), a "+"
// sign, a dot without digits after it ("2."), a lone "-", raw control
// characters (tab, newline...) inside strings. A document like that is a
// configuration mistake that would be read as something else, so it is
// checked by a parser made for the grammar (yajl) as well.
#ifndef ZAVREL_PLATFORM_STRICTJSON_H
#define ZAVREL_PLATFORM_STRICTJSON_H

#include <cstddef>
#include <string>

namespace Zavrel {

class StrictJson {
public:
    // True when text[0..length) is one JSON text. Otherwise false, with the
    // offset of the byte where the text stops being JSON and a message
    // saying why (one line, no position).
    static bool Check(const char* text, size_t length, size_t& offset, std::string& message);
};

}  // namespace Zavrel

#endif
