#include "platform/StrUtil.h"

#include <cctype>

namespace Zavrel {

bool strcasestrstart(const char* text, const char* prefix) {
    if (text == nullptr || prefix == nullptr) {
        return false;
    }
    for (; *prefix != '\0'; ++text, ++prefix) {
        if (*text == '\0') {
            return false;
        }
        const int a = std::tolower(static_cast<unsigned char>(*text));
        const int b = std::tolower(static_cast<unsigned char>(*prefix));
        if (a != b) {
            return false;
        }
    }
    return true;
}

}  // namespace Zavrel
