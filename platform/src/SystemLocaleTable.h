// SystemLocaleTable.h - Windows language identifiers and ANSI code pages by locale name.
#ifndef TV_PLATFORM_SYSTEM_LOCALE_TABLE_H
#define TV_PLATFORM_SYSTEM_LOCALE_TABLE_H

#include <cstddef>

namespace tvPlatform {

/// What a POSIX locale name, written in lower case, stands for on Windows.
struct SystemLocale {
    const char* language;  ///< "zh"
    const char* territory; ///< "tw"; "" is the answer for every territory that is not listed
    const char* modifier;  ///< "latin"; "" is the answer for every modifier that is not listed
    unsigned int lcid;
    unsigned int ansiCodePage;
};

extern const SystemLocale kSystemLocales[];
extern const std::size_t kSystemLocaleCount;

} // namespace tvPlatform

#endif
