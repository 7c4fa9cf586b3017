#include "app/Completer.h"

#include <strings.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <readline/readline.h>

#include "app/Words.h"

namespace Zavrel {

Completer* Completer::s_installed = nullptr;
const char Completer::WORD_BREAKS[] = " \t";

namespace {

bool StartsWith(const std::string& word, const std::string& prefix) {
    return word.size() >= prefix.size() &&
           strncasecmp(word.c_str(), prefix.c_str(), prefix.size()) == 0;
}

// The complete words before the last one, and the last (partial) word,
// empty when the text ends in a blank. Quotes are not taken apart here: a
// line with an open quote completes nothing.
bool SplitForCompletion(const std::string& text, std::vector<std::string>& words,
                        std::string& partial) {
    std::string error;
    if (!Words::Split(text, words, error)) {
        return false;
    }
    partial.clear();
    if (!text.empty() && text.back() != ' ' && text.back() != '\t' && !words.empty()) {
        partial = words.back();
        words.pop_back();
    }
    return true;
}

}  // namespace

Completer::Completer(GrammarSource grammar, ValueSource values)
    : m_grammar(std::move(grammar)), m_values(std::move(values)) {}

Completer::~Completer() {
    Uninstall();
}

Completer::Candidates Completer::Complete(const std::string& text) const {
    Candidates candidates;
    std::vector<std::string> words;
    std::string partial;
    if (!SplitForCompletion(text, words, partial)) {
        return candidates;
    }
    CommandGrammar grammar;
    if (m_grammar) {
        m_grammar(grammar);
    }
    for (const GrammarChoice& choice : grammar.After(words).choices) {
        if (!choice.IsValue()) {
            if (StartsWith(choice.word, partial)) {
                candidates.words.push_back(choice.word);
                candidates.listing.push_back(choice);
            }
            continue;
        }
        candidates.placeholder = true;
        candidates.listing.push_back(choice);
        if (m_values) {
            for (const std::string& value : m_values(choice.word)) {
                if (StartsWith(value, partial)) {
                    candidates.words.push_back(value);
                    candidates.listing.push_back({value, choice.help});
                }
            }
        }
    }
    return candidates;
}

std::string Completer::Help(const std::string& text) const {
    std::vector<std::string> words;
    std::string partial;
    if (!SplitForCompletion(text, words, partial)) {
        return std::string();
    }
    CommandGrammar grammar;
    if (m_grammar) {
        m_grammar(grammar);
    }
    const CommandGrammar::Next next = grammar.After(words);
    std::vector<GrammarChoice> shown;
    for (const GrammarChoice& choice : next.choices) {
        if (choice.IsValue() || StartsWith(choice.word, partial)) {
            shown.push_back(choice);
        }
    }
    if (partial.empty() && next.canEnd) {
        shown.push_back({"<cr>", "run the command"});
    }
    if (partial.empty() && next.anyWords && next.choices.empty()) {
        shown.push_back({"...", "the command's own words"});
    }
    if (shown.empty()) {
        return "% no command fits here\n";
    }
    size_t width = 0;
    for (const GrammarChoice& choice : shown) {
        width = std::max(width, choice.word.size());
    }
    std::string help;
    for (const GrammarChoice& choice : shown) {
        help += "  " + choice.word + std::string(width - choice.word.size() + 2, ' ') +
                choice.help + "\n";
    }
    return help;
}

std::string Completer::Listing(const std::vector<GrammarChoice>& choices, size_t width) {
    std::string text;
    size_t column = 0;
    for (const GrammarChoice& choice : choices) {
        if (column != 0 && column + 2 + choice.word.size() > width) {
            text += "\n";
            column = 0;
        }
        if (column != 0) {
            text += "  ";
            column += 2;
        }
        text += choice.word;
        column += choice.word.size();
    }
    return text + "\n";
}

void Completer::Install() {
    s_installed = this;
    rl_attempted_completion_function = &Completer::Attempt;
    rl_completion_display_matches_hook = &Completer::Display;
    // Words end at blanks only, as the command line splits them: a word
    // such as "10.1.0.0/16" or "ospf-external" is completed as a whole.
    m_wordBreaks = rl_completer_word_break_characters;
    // (Older readlines declare the variable without const.)
    rl_completer_word_break_characters =
        const_cast<decltype(rl_completer_word_break_characters)>(WORD_BREAKS);
    rl_bind_key('?', &Completer::HelpKey);
}

void Completer::Uninstall() {
    if (s_installed != this) {
        return;
    }
    s_installed = nullptr;
    rl_attempted_completion_function = nullptr;
    rl_completion_display_matches_hook = nullptr;
    rl_completer_word_break_characters =
        const_cast<decltype(rl_completer_word_break_characters)>(m_wordBreaks);
    rl_bind_key('?', rl_insert);
}

char** Completer::Attempt(const char* text, int start, int) {
    // Never fall back to file names.
    rl_attempted_completion_over = 1;
    if (s_installed == nullptr) {
        return nullptr;
    }
    const std::string before = std::string(rl_line_buffer, static_cast<size_t>(start)) + text;
    const Candidates candidates = s_installed->Complete(before);
    s_installed->m_lastListing = candidates.listing;
    if (candidates.listing.empty()) {
        return nullptr;
    }
    std::vector<std::string> matches = candidates.words;
    // A single existing value is not taken for the user while a new value
    // could be meant as well, nor is a placeholder inserted: two matches
    // that share nothing keep the word as it is, and a second Tab lists the
    // choices (Display shows the listing, never these matches).
    if (candidates.placeholder && (matches.empty() || text[0] == '\0')) {
        matches.push_back("<");
        matches.push_back(">");
    }
    char** array = static_cast<char**>(malloc((matches.size() + 2) * sizeof(char*)));
    if (array == nullptr) {
        return nullptr;
    }
    // The first entry replaces the word: what every match starts with, or
    // the word itself when they share less than it (a word typed in
    // capitals, or the placeholder marks).
    std::string common = matches[0];
    for (const std::string& match : matches) {
        size_t same = 0;
        while (same < common.size() && same < match.size() && common[same] == match[same]) {
            ++same;
        }
        common.resize(same);
    }
    if (common.size() < strlen(text)) {
        common = text;
    }
    array[0] = strdup(common.c_str());
    for (size_t i = 0; i < matches.size(); ++i) {
        array[i + 1] = strdup(matches[i].c_str());
    }
    array[matches.size() + 1] = nullptr;
    if (matches.size() == 1) {
        free(array[1]);
        array[1] = nullptr;
    }
    return array;
}

void Completer::Display(char**, int, int) {
    if (s_installed == nullptr) {
        return;
    }
    int rows = 0;
    int columns = 0;
    rl_get_screen_size(&rows, &columns);
    const size_t width = columns > 0 ? static_cast<size_t>(columns) : 80;
    const std::string text = "\n" + Listing(s_installed->m_lastListing, width);
    fputs(text.c_str(), rl_outstream != nullptr ? rl_outstream : stdout);
    rl_on_new_line();
    rl_redisplay();
}

int Completer::HelpKey(int count, int key) {
    const std::string before(rl_line_buffer, static_cast<size_t>(rl_point));
    const std::string help = s_installed != nullptr ? s_installed->Help(before) : std::string();
    if (help.empty()) {
        // Inside a quoted word a '?' is part of the word.
        return rl_insert(count, key);
    }
    const std::string text = "\n" + help;
    FILE* out = rl_outstream != nullptr ? rl_outstream : stdout;
    fputs(text.c_str(), out);
    fflush(out);
    rl_on_new_line();
    rl_redisplay();
    return 0;
}

}  // namespace Zavrel
