// LibraryGrammar: the words of the library's own console commands, read
// from what they register: the router manager's `ip` and `ip6` handler
// tables (each word with the first line of its help) and the names of the
// registered console commands. The library keeps parsing its
// words itself; this only reads them for completion and help.
#ifndef ZAVREL_APP_LIBRARYGRAMMAR_H
#define ZAVREL_APP_LIBRARYGRAMMAR_H

#include <string>

#include "app/CommandGrammar.h"

namespace Zavrel {

class LibraryGrammar {
public:
    // Adds the current words of the handler tables and the registry.
    static void Describe(CommandGrammar& grammar);
    // Adds the words of one handler-table entry of the table named table.
    static void DescribeHandler(CommandGrammar& grammar, const std::string& table,
                                const std::string& word, const std::string& help);
};

}  // namespace Zavrel

#endif
