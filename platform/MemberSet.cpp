#include "platform/MemberSet.h"

#include <strings.h>

#include <vector>

#include "platform/ConsoleSession.h"
#include "platform/String.h"

namespace Zavrel {

bool MemberSet::IsSelected(int level) const {
    if (level < 0 || level > MAX_LEVEL) {
        return false;
    }
    return (m_levels & (1u << level)) != 0;
}

void MemberSet::Select(int level) {
    if (level >= 0 && level <= MAX_LEVEL) {
        m_levels |= 1u << level;
    }
}

void MemberSet::Deselect(int level) {
    if (level >= 0 && level <= MAX_LEVEL) {
        m_levels &= ~(1u << level);
    }
}

namespace {

// A level: one or two decimal digits, 0..MAX_LEVEL.
bool ParseLevel(const char* text, int& level) {
    if (text[0] < '0' || text[0] > '9') {
        return false;
    }
    int value = 0;
    int digits = 0;
    for (const char* p = text; *p != '\0'; ++p) {
        if (*p < '0' || *p > '9' || ++digits > 2) {
            return false;
        }
        value = value * 10 + (*p - '0');
    }
    if (value > MemberSet::MAX_LEVEL) {
        return false;
    }
    level = value;
    return true;
}

}  // namespace

int HandleDebugCommand(ConsoleSession* session, int argc, char** argv, MemberSet& set,
                       const char* name) {
    // Every word is checked before any is applied, so a bad word changes nothing.
    MemberSet result = set;
    for (int i = 0; i < argc; ++i) {
        const char* word = argv != nullptr ? argv[i] : nullptr;
        int level = 0;
        if (word == nullptr) {
            // not a valid word
        } else if (strcasecmp(word, "all") == 0) {
            result.SelectAll();
            continue;
        } else if (strcasecmp(word, "off") == 0 || strcasecmp(word, "none") == 0) {
            result.Clear();
            continue;
        } else if (word[0] == '-' && ParseLevel(word + 1, level)) {
            result.Deselect(level);
            continue;
        } else if (ParseLevel(word, level)) {
            result.Select(level);
            continue;
        }
        if (session != nullptr) {
            session->Write("Usage: debug <level>|-<level>|all|off ...\n");
        }
        return 1;
    }
    set = result;

    if (session != nullptr) {
        string text;
        text.Format("%s: ", name != nullptr ? name : "");
        if (!set.Any()) {
            text.Append("off");
        } else {
            bool first = true;
            for (int level = 0; level <= MemberSet::MAX_LEVEL; ++level) {
                if (set.IsSelected(level)) {
                    text.AppendFmt(first ? "%d" : " %d", level);
                    first = false;
                }
            }
        }
        text.Append("\n");
        session->Write(text);
    }
    return 0;
}

}  // namespace Zavrel
