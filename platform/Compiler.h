// Compiler helpers shared by the platform headers.
#ifndef ZAVREL_PLATFORM_COMPILER_H
#define ZAVREL_PLATFORM_COMPILER_H

// printf-style format checking. For member functions count "this" as 1.
#define ZAVREL_PRINTF(fmt_index, args_index) __attribute__((format(printf, fmt_index, args_index)))

#endif
