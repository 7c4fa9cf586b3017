// CommandGrammar: the words a command line may hold, written the way the
// usage lines of the commands are ("route add <vlan> <prefix>/<length> via
// <gateway> [ifindex <n>] [admin up|down]"), and the question the completer
// and the help key ask of them: which words may come after these?
//
// A form is a sequence of fixed tokens followed by optional groups. A token
// is one word or alternatives separated by '|'; a word in angle brackets is
// a value (any word matches it), every other word a keyword (matched without
// regard to case). Each optional group ("[...]") may appear once, in any
// order, after the fixed tokens. A form ending in "..." takes any further
// words, which the grammar does not know.
#ifndef ZAVREL_APP_COMMANDGRAMMAR_H
#define ZAVREL_APP_COMMANDGRAMMAR_H

#include <map>
#include <string>
#include <vector>

namespace Zavrel {

// One word that may come next, with a one-line help.
struct GrammarChoice {
    std::string word;
    std::string help;
    // A value placeholder such as "<vlan>" rather than a keyword.
    bool IsValue() const { return !word.empty() && word[0] == '<'; }
};

class CommandGrammar {
public:
    // Adds one form; help describes the whole form. False (and nothing
    // added) for an empty form or an unterminated "[" group.
    bool AddForm(const std::string& usage, const std::string& help);
    // The help of a keyword or placeholder wherever it appears; context is
    // the command's first word (empty: any command).
    void AddWordHelp(const std::string& context, const std::string& word, const std::string& help);

    struct Next {
        std::vector<GrammarChoice> choices;  // in the order of the forms, no repeats
        bool canEnd = false;                 // the words so far make a whole command
        bool anyWords = false;               // a form takes further words it does not name
    };
    // What may follow the complete words given (none: the first word).
    Next After(const std::vector<std::string>& words) const;

    size_t FormCount() const { return m_forms.size(); }

    // Every form written out as command lines that use each of its words:
    // one line with the first of every alternative, one line more for each
    // further alternative, and the same again with every optional group
    // added; valueOf gives the word that stands for a placeholder. (Tests
    // run these lines to see that the commands take every word the grammar
    // offers.)
    using ValueOf = std::string (*)(const std::string& placeholder);
    std::vector<std::vector<std::string>> Examples(ValueOf valueOf) const;

private:
    using Token = std::vector<std::string>;
    struct Form {
        std::vector<Token> fixed;
        std::vector<std::vector<Token>> options;
        bool open = false;
        std::string help;
    };
    static bool Matches(const Token& token, const std::string& word);
    // Adds the tokens that may follow words in the form; false when the
    // words do not fit the form.
    bool Follow(const Form& form, const std::vector<std::string>& words,
                std::vector<const Token*>& next, bool& canEnd) const;
    std::string HelpOf(const std::string& command, const std::string& word, const Form& form) const;

    std::vector<Form> m_forms;
    std::map<std::string, std::string> m_wordHelp;  // "command word" or " word"
};

}  // namespace Zavrel

#endif
