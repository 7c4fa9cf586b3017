// FuzzCheck: how a harness stops on a broken invariant. It prints what was
// broken on standard error, where libFuzzer's log keeps it next to the
// reproducer's name, and aborts, which libFuzzer reports as a finding.
#ifndef ZAVREL_FUZZ_FUZZCHECK_H
#define ZAVREL_FUZZ_FUZZCHECK_H

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace Zavrel::fuzz {

inline void Fail(const std::string& what) {
    std::fprintf(stderr, "invariant broken: %s\n", what.c_str());
    std::abort();
}

inline void Check(bool condition, const std::string& what) {
    if (!condition) {
        Fail(what);
    }
}

// Fails with every problem listed, one a line, when there is any.
inline void CheckNone(const std::vector<std::string>& problems, const char* when) {
    if (problems.empty()) {
        return;
    }
    std::string text = when;
    for (const std::string& problem : problems) {
        text += "\n  " + problem;
    }
    Fail(text);
}

}  // namespace Zavrel::fuzz

#endif
