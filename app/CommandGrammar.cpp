#include "app/CommandGrammar.h"

#include <algorithm>
#include <set>

#include "app/Words.h"

namespace Zavrel {

namespace {

std::vector<std::string> SplitAt(const std::string& text, char separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (;;) {
        const size_t end = text.find(separator, start);
        const std::string part = text.substr(start, end == std::string::npos ? end : end - start);
        if (!part.empty()) {
            parts.push_back(part);
        }
        if (end == std::string::npos) {
            return parts;
        }
        start = end + 1;
    }
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(tolower(c)); });
    return text;
}

}  // namespace

bool CommandGrammar::AddForm(const std::string& usage, const std::string& help) {
    Form form;
    form.help = help;
    std::vector<Token>* group = nullptr;
    for (std::string word : SplitAt(usage, ' ')) {
        if (word == "...") {
            form.open = true;
            break;
        }
        const bool opens = word.front() == '[';
        if (opens) {
            if (group != nullptr) {
                return false;
            }
            form.options.emplace_back();
            group = &form.options.back();
            word.erase(0, 1);
        }
        const bool closes = !word.empty() && word.back() == ']';
        if (closes) {
            word.pop_back();
        }
        if (!word.empty()) {
            Token token = SplitAt(word, '|');
            if (group != nullptr) {
                group->push_back(token);
            } else if (form.options.empty()) {
                form.fixed.push_back(token);
            } else {
                // A fixed word after optional groups is not a shape this
                // grammar knows: treat it as one more optional group.
                form.options.push_back({token});
            }
        }
        if (closes) {
            group = nullptr;
        }
    }
    if (group != nullptr || form.fixed.empty()) {
        return false;
    }
    m_forms.push_back(form);
    return true;
}

void CommandGrammar::AddWordHelp(const std::string& context, const std::string& word,
                                 const std::string& help) {
    m_wordHelp[Lower(context) + " " + Lower(word)] = help;
}

bool CommandGrammar::Matches(const Token& token, const std::string& word) {
    for (const std::string& alternative : token) {
        if (alternative[0] == '<' || Words::Is(word, alternative.c_str())) {
            return true;
        }
    }
    return false;
}

bool CommandGrammar::Follow(const Form& form, const std::vector<std::string>& words,
                            std::vector<const Token*>& next, bool& canEnd) const {
    size_t i = 0;
    for (; i < form.fixed.size(); ++i) {
        if (i == words.size()) {
            next.push_back(&form.fixed[i]);
            return true;
        }
        if (!Matches(form.fixed[i], words[i])) {
            return false;
        }
    }
    if (form.open) {
        canEnd = true;
        return true;
    }
    std::vector<bool> used(form.options.size(), false);
    const std::vector<Token>* group = nullptr;
    size_t position = 0;
    for (; i < words.size(); ++i) {
        if (group != nullptr && position < group->size()) {
            if (!Matches((*group)[position], words[i])) {
                return false;
            }
            ++position;
            continue;
        }
        group = nullptr;
        for (size_t g = 0; g < form.options.size() && group == nullptr; ++g) {
            if (!used[g] && Matches(form.options[g][0], words[i])) {
                used[g] = true;
                group = &form.options[g];
                position = 1;
            }
        }
        if (group == nullptr) {
            return false;
        }
    }
    if (group != nullptr && position < group->size()) {
        next.push_back(&(*group)[position]);
        return true;
    }
    canEnd = true;
    for (size_t g = 0; g < form.options.size(); ++g) {
        if (!used[g]) {
            next.push_back(&form.options[g][0]);
        }
    }
    return true;
}

std::string CommandGrammar::HelpOf(const std::string& command, const std::string& word,
                                   const Form& form) const {
    auto found = m_wordHelp.find(Lower(command) + " " + Lower(word));
    if (found == m_wordHelp.end()) {
        found = m_wordHelp.find(" " + Lower(word));
    }
    return found != m_wordHelp.end() ? found->second : form.help;
}

CommandGrammar::Next CommandGrammar::After(const std::vector<std::string>& words) const {
    Next result;
    std::set<std::string> seen;
    for (const Form& form : m_forms) {
        std::vector<const Token*> next;
        bool canEnd = false;
        if (!Follow(form, words, next, canEnd)) {
            continue;
        }
        result.canEnd = result.canEnd || canEnd;
        result.anyWords = result.anyWords || (form.open && words.size() >= form.fixed.size());
        const std::string command = words.empty() ? std::string() : words[0];
        for (const Token* token : next) {
            for (const std::string& word : *token) {
                if (seen.insert(Lower(word)).second) {
                    result.choices.push_back({word, HelpOf(command, word, form)});
                }
            }
        }
    }
    return result;
}

std::vector<std::vector<std::string>> CommandGrammar::Examples(ValueOf valueOf) const {
    // The tokens as words: the first alternative of each, or alternative
    // of the token at vary.
    const auto spell = [valueOf](const std::vector<Token>& tokens, size_t vary,
                                 size_t alternative) {
        std::vector<std::string> line;
        for (size_t i = 0; i < tokens.size(); ++i) {
            const std::string& word = tokens[i][i == vary ? alternative : 0];
            line.push_back(word[0] == '<' ? valueOf(word) : word);
        }
        return line;
    };
    std::vector<std::vector<std::string>> lines;
    for (const Form& form : m_forms) {
        std::vector<Token> tokens = form.fixed;
        for (bool withOptions : {false, true}) {
            if (withOptions) {
                if (form.options.empty()) {
                    break;
                }
                for (const std::vector<Token>& group : form.options) {
                    tokens.insert(tokens.end(), group.begin(), group.end());
                }
            }
            lines.push_back(spell(tokens, tokens.size(), 0));
            for (size_t t = 0; t < tokens.size(); ++t) {
                for (size_t a = 1; a < tokens[t].size(); ++a) {
                    lines.push_back(spell(tokens, t, a));
                }
            }
        }
    }
    return lines;
}

}  // namespace Zavrel
