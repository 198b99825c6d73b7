// Utf8Sequence.h - one well-formed UTF-8 sequence at a time.
#ifndef TVBASE_UTF8_SEQUENCE_H
#define TVBASE_UTF8_SEQUENCE_H

#include <cstddef>
#include <string>

struct Utf8Sequence {
    int length;     ///< bytes; 0 = no well-formed sequence starts here; -1 = the text ends inside one
    char32_t value; ///< the character
};

/// Reads the sequence at `text`, of which `available` (at least 1) bytes are there. Overlong
/// forms, surrogates and values above U+10FFFF are not well formed.
inline Utf8Sequence readUtf8(const char* text, std::size_t available)
{
    const auto byte = [text](int i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return {1, lead};
    const int length = lead >= 0xC2 && lead <= 0xDF   ? 2
                       : lead >= 0xE0 && lead <= 0xEF ? 3
                       : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                      : 0;
    char32_t value = lead & (0x7F >> length);
    for (int i = 1; i < length; ++i) {
        if (static_cast<std::size_t>(i) == available)
            return {-1, 0};
        // The second byte's range keeps out overlong forms, surrogates and what is too large.
        const unsigned char low = i > 1 ? 0x80 : lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = i > 1 ? 0xBF : lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
        if (byte(i) < low || byte(i) > high)
            return {0, 0};
        value = value << 6 | (byte(i) & 0x3F);
    }
    return {length, value};
}

/// Writes the UTF-8 form of a character, at most 4 bytes, and returns its length.
inline int writeUtf8(char32_t value, char* out)
{
    if (value < 0x80) {
        out[0] = static_cast<char>(value);
        return 1;
    }
    const int length = value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
    for (int i = length - 1; i > 0; --i, value >>= 6)
        out[i] = static_cast<char>(0x80 | (value & 0x3F));
    out[0] = static_cast<char>((0xF00 >> length & 0xFF) | value);
    return length;
}

inline std::string utf8Of(char32_t value)
{
    char bytes[4];
    return {bytes, static_cast<std::size_t>(writeUtf8(value, bytes))};
}

/// A combining mark by itself, as tables show it: on a dotted circle.
inline std::string utf8OfMark(char32_t mark) { return utf8Of(0x25CC) + utf8Of(mark); }

#endif
