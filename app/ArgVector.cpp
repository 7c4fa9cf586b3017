#include "app/ArgVector.h"

namespace Zavrel {

ArgVector::ArgVector(const std::vector<std::string>& words, size_t first) {
    for (size_t i = first; i < words.size(); ++i) {
        m_storage.emplace_back(words[i].begin(), words[i].end());
        m_storage.back().push_back('\0');
    }
    for (auto& word : m_storage) {
        m_pointers.push_back(word.data());
    }
    m_pointers.push_back(nullptr);
}

}  // namespace Zavrel
