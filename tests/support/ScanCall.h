// ScanCall.h - calls the input engine with its arguments written out.
#ifndef TV_TEST_SCAN_CALL_H
#define TV_TEST_SCAN_CALL_H

#include "TvScan.h"

#include <cstdarg>

inline int scanText(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = InputWithFormat(false, text, format, &args);
    va_end(args);
    return result;
}

inline int scanEmptySource(const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = InputWithFormat(true, nullptr, format, &args);
    va_end(args);
    return result;
}

#endif
