// TextUnits.h - byte text as a sequence of characters, escapes and damaged places.
#ifndef TVBASE_TEXT_UNITS_H
#define TVBASE_TEXT_UNITS_H

#include "TvCodePages.h"

#include <cstddef>
#include <string>
#include <vector>

/// The next piece of a byte text.
struct TextUnit {
    enum Kind {
        kCharacter, ///< one character, which the library converts
        kEscape,    ///< an escape that stands for a character; the library converts it
        kVerbatim,  ///< an escape that stays as it is written
        kAbove,     ///< a UTF-8 sequence beyond the basic plane
        kZero,      ///< a 0 byte
        kNoPair,    ///< lead and trail byte that the code page has no character for
        kBadByte,   ///< a byte that is no character, or part of a broken one
        kCut        ///< the text ends inside a unit: more of it must be seen
    };
    Kind kind;
    int length;     ///< bytes; 0 for kCut
    char32_t value; ///< the character; the code of kNoPair, the byte of kBadByte
};

/// Reads byte text of one code page unit by unit.
///
/// It agrees with TvCharMapper on where characters begin and end, and knows beside that which
/// of them have no character. An escape that stands for an ASCII character, which with the
/// text around it could become another escape, counts as kVerbatim, as do escapes in UTF-8,
/// which needs none. Two escapes in a row that are the surrogates of one character are one
/// unit.
///
/// **Errors**: none. **Memory**: a table of the code page. **Threads**: one.
class TextUnits {
public:
    /// The registry must be filled, and the tables of `page` be there.
    explicit TextUnits(code_page_id page);

    /// The unit at `text`, of which `available` (at least 1) bytes are there; `last` when the
    /// whole text ends with them.
    TextUnit read(const char* text, std::size_t available, bool last) const;

    /// Bytes at `text` that are plain characters of one byte: no line end, no backslash.
    std::size_t skipPlain(const char* text, std::size_t available) const;

private:
    TextUnit readBackslash(const char* text, std::size_t available, bool last) const;
    TextUnit readHigh(const char* text, std::size_t available, bool last) const;

    code_page_id m_page;
    bool m_isPlain[256];
    bool m_isLead[256];
    std::vector<unsigned short> m_pairs; // unit of each code, empty without lead bytes
    unsigned short m_single[256];        // 0 = no character
};

#endif
