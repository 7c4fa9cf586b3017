// ArgVector: a writable argc/argv copy of some words, for the library's
// console handlers, which take char**.
#ifndef ZAVREL_APP_ARGVECTOR_H
#define ZAVREL_APP_ARGVECTOR_H

#include <string>
#include <vector>

namespace Zavrel {

class ArgVector {
public:
    // Copies words[first..] (none when first is past the end).
    ArgVector(const std::vector<std::string>& words, size_t first);
    ArgVector(const ArgVector&) = delete;
    ArgVector& operator=(const ArgVector&) = delete;

    int Argc() const { return static_cast<int>(m_pointers.size()) - 1; }
    // Null-terminated like a program's argv.
    char** Argv() { return m_pointers.data(); }

private:
    std::vector<std::vector<char>> m_storage;
    std::vector<char*> m_pointers;
};

}  // namespace Zavrel

#endif
