// Utf8Text.h - UTF-8 to UTF-16 units and back, with results in vectors. A leaf like Utf8.h.
#ifndef TV_UTF8_TEXT_H
#define TV_UTF8_TEXT_H

#include "TvVector.h"

#include <cstddef>

namespace TvDetail {

// The whole conversion of text that ends at a 0 or after `count` elements, which alone are
// read, with its terminator. `out` is empty when no memory could be had.
void utf8Decode(const char* src, std::size_t count, TvVector<wchar_t>& out);
void utf8Encode(const wchar_t* src, std::size_t count, TvVector<char>& out);

} // namespace TvDetail

#endif
