// Which machines convert sixteen characters at a time.
#ifndef TV_NUMBER_VECTORS_H
#define TV_NUMBER_VECTORS_H

#include <bit>

// Defined on machines with SSE2, which every x86-64 has. A build that defines TV_PLAIN_NUMBERS
// goes the plain ways of all other machines; the results are the same.
#if defined(__SSE2__) && !defined(TV_PLAIN_NUMBERS)
#define TV_NUMBERS_BY_SSE2 1
#endif

// Characters are loaded, and digits stored, as integers whose lowest byte is the first.
static_assert(std::endian::native == std::endian::little);

#endif
