// Utf8Text.h - UTF-8 to UTF-16 units and back, with results in vectors or short texts. A leaf like Utf8.h.
#ifndef TV_UTF8_TEXT_H
#define TV_UTF8_TEXT_H

#include "codepage/ShortText.h"

#include <cstddef>

namespace TvDetail {

// The whole conversion of text that ends at a 0 or after `count` elements, which alone are
// read, with its terminator. Returns where the text ended. `out` is empty, and the return value
// 0, when no memory could be had.
template<class Store>
std::size_t utf8Decode(const char* src, std::size_t count, Store& out);
template<class Store>
std::size_t utf8Encode(const wchar_t* src, std::size_t count, Store& out);

extern template std::size_t utf8Decode(const char*, std::size_t, TvVector<wchar_t>&);
extern template std::size_t utf8Decode(const char*, std::size_t, ShortText<wchar_t>&);
extern template std::size_t utf8Encode(const wchar_t*, std::size_t, TvVector<char>&);
extern template std::size_t utf8Encode(const wchar_t*, std::size_t, ShortText<char>&);

} // namespace TvDetail

#endif
