// Utf8.h - UTF-8 to UTF-16 units and back, on plain arrays and one character at a time. A
// leaf: nothing of the code page registry is needed here.
#ifndef TV_UTF8_H
#define TV_UTF8_H

#include <cstddef>

namespace TvDetail {

// Decodes `src` up to its first 0 byte, at most `count` bytes; what would stand behind
// them reads as 0 and is not touched. Writes at most `count` elements to `dst` and
// returns how many; no terminator.
//
// Lead bytes 0xF0 to 0xFF take two continuation bytes like 0xE0, whatever follows; a byte
// that starts no complete form stands for itself. Overlong forms and surrogates pass.
std::size_t utf8DecodePlain(const unsigned char* src, std::size_t count, wchar_t* dst) noexcept;

// Encodes `src` up to its first 0, at most `count` elements, to at most 3 * count bytes at
// `dst`; returns how many. Elements outside 0..0xFFFF are dropped, surrogates are encoded
// like any other value.
std::size_t utf8EncodePlain(const wchar_t* src, std::size_t count, char* dst) noexcept;

// The bytes that utf8EncodePlain would write.
std::size_t utf8EncodedSize(const wchar_t* src, std::size_t count) noexcept;

} // namespace TvDetail

#endif
