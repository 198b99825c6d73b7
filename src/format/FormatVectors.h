// FormatVectors.h - which machines handle wide text several characters at a time.
#ifndef TV_FORMAT_VECTORS_H
#define TV_FORMAT_VECTORS_H

#include <bit>

// Defined on machines with SSE2, which every x86-64 has; the others go the plain ways to the
// same results.
#if defined(__SSE2__) && !defined(TV_PLAIN_FORMATS)
#define TV_FORMAT_BY_SSE2 1
#include <emmintrin.h>

static_assert(std::endian::native == std::endian::little && sizeof(wchar_t) == 4);
#endif

#endif
