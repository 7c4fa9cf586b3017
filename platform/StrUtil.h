// Small C-string helpers.
#ifndef ZAVREL_PLATFORM_STRUTIL_H
#define ZAVREL_PLATFORM_STRUTIL_H

namespace Zavrel {

// True when text begins with prefix, compared without regard to letter case.
// A null text or prefix gives false; an empty prefix matches any text.
bool strcasestrstart(const char* text, const char* prefix);

}  // namespace Zavrel

#endif
