// Completer: completion and help of command lines from a CommandGrammar,
// bound to readline. Tab completes the word under the cursor (a second Tab
// lists the choices); '?' lists the words that may come next, each with a
// one-line help, and leaves the line as it was. Where the next word is a
// value, the listing names it ("<vlan>") and a value source may offer the
// values that exist (VLAN ids, interface names).
#ifndef ZAVREL_APP_COMPLETER_H
#define ZAVREL_APP_COMPLETER_H

#include <functional>
#include <string>
#include <vector>

#include "app/CommandGrammar.h"

namespace Zavrel {

class Completer {
public:
    // Fills a grammar with the commands as they are now.
    using GrammarSource = std::function<void(CommandGrammar&)>;
    // The values that exist for a placeholder such as "<vlan>" (may be none).
    using ValueSource = std::function<std::vector<std::string>(const std::string& placeholder)>;

    Completer(GrammarSource grammar, ValueSource values);
    ~Completer();
    Completer(const Completer&) = delete;
    Completer& operator=(const Completer&) = delete;

    struct Candidates {
        std::vector<std::string> words;      // what Tab may insert
        std::vector<GrammarChoice> listing;  // what a listing shows
        bool placeholder = false;            // a value is expected that words may not name
    };
    // The candidates for the word that ends at the end of text (the line up
    // to the cursor): keywords and existing values that start with it.
    Candidates Complete(const std::string& text) const;
    // The text '?' prints for the line up to the cursor: one line per word
    // that may come next ("<cr>" when the line is a whole command); empty
    // inside a quoted word, where '?' is a character like any other.
    std::string Help(const std::string& text) const;
    // The text a second Tab prints: the choices, two blanks apart, in lines
    // of at most width characters (a longer word gets a line of its own).
    static std::string Listing(const std::vector<GrammarChoice>& choices, size_t width = 80);

    // Binds Tab and '?' of readline to this completer until Uninstall (or
    // destruction). One completer is bound at a time.
    void Install();
    void Uninstall();

private:
    static char** Attempt(const char* text, int start, int end);
    static int HelpKey(int count, int key);
    static void Display(char** matches, int count, int maxLength);

    GrammarSource m_grammar;
    ValueSource m_values;
    std::vector<GrammarChoice> m_lastListing;
    const char* m_wordBreaks = nullptr;  // readline's word breaks before Install
    static const char WORD_BREAKS[];
    static Completer* s_installed;
};

}  // namespace Zavrel

#endif
