// Utf8Model.h - the UTF-8 rules of the library spelled out on vectors, slow and obvious.
#ifndef TV_TEST_UTF8_MODEL_H
#define TV_TEST_UTF8_MODEL_H

#include <cstddef>
#include <string>
#include <vector>

namespace Utf8Model {

// The text that ends at the first 0 or with the vector.
template<class T>
std::vector<T> untilZero(const std::vector<T>& text)
{
    std::vector<T> out;
    for (T c : text) {
        if (c == 0)
            break;
        out.push_back(c);
    }
    return out;
}

inline std::vector<wchar_t> decode(const std::vector<unsigned char>& bytes)
{
    std::vector<unsigned char> text = untilZero(bytes);
    text.insert(text.end(), 2, 0); // what lies behind the text reads as 0
    std::vector<wchar_t> out;
    std::size_t at = 0;
    while (text[at] != 0) {
        const int b0 = text[at];
        const int b1 = text[at + 1];
        const int b2 = b1 ? text[at + 2] : 0;
        const bool second = b1 / 64 == 2;
        const bool third = second && b2 / 64 == 2;
        if (b0 >= 0xE0 && third) {
            out.push_back(b0 % 16 * 4096 + b1 % 64 * 64 + b2 % 64);
            at += 3;
        } else if (b0 >= 0xC0 && second) {
            out.push_back(b0 % 32 * 64 + b1 % 64);
            at += 2;
        } else {
            out.push_back(b0);
            at += 1;
        }
    }
    return out;
}

inline std::vector<char> encode(const std::vector<wchar_t>& wide)
{
    std::vector<char> out;
    const auto put = [&out](int byte) { out.push_back(static_cast<char>(byte)); };
    for (wchar_t c : untilZero(wide)) {
        const long v = c;
        if (v < 0 || v > 0xFFFF)
            continue;
        if (v < 0x80) {
            put(static_cast<int>(v));
        } else if (v < 0x800) {
            put(static_cast<int>(0xC0 + v / 64));
            put(static_cast<int>(0x80 + v % 64));
        } else {
            put(static_cast<int>(0xE0 + v / 4096));
            put(static_cast<int>(0x80 + v / 64 % 64));
            put(static_cast<int>(0x80 + v % 64));
        }
    }
    return out;
}

} // namespace Utf8Model

#endif
