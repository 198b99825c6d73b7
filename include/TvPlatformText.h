// TvPlatformText.h - text conversion under the Windows names, and walking text in a code page.
//
// For code written against that interface; new code takes TvCharMapper.h, which has results
// of any length and no rules of its own. The two functions at the top compile as C; their
// companions of the same form are static members of TvCharOp.
#ifndef TV_PLATFORM_TEXT_H
#define TV_PLATFORM_TEXT_H

#include "TvExport.h"

#include <wchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Bytes in the Windows code page `cp` to wide text; inline escapes are read. The result is
/// the number of elements, written to `dst`, or, with `dstLen` 0, needed there.
///
/// Rules that surprise:
///  - `cp` 0 is not the system code page: bytes 0x80 to 0xFF become U+0080 to U+00FF. Number 3
///    and every number without a code page here mean the system code page; 65001 is UTF-8;
///  - with `srcLen` -1 the source ends at its 0, and the result counts and has a terminator;
///    else the text is `srcLen` bytes or those before the first 0 (nothing has to be there behind
///    that), and no terminator is written;
///  - where the result does not fit, `dst` holds an empty text.
///
/// 0 for a null `src`, for a `srcLen` of 0 or below -1, a negative `dstLen`, a null `dst` with a
/// `dstLen`, a result that does not fit, and when memory runs out. `flags` is not consulted.
/// `src` and `dst` may overlap.
TV_OSBASE_API int MultiByteToWideChar(unsigned int cp, unsigned int flags, const char* src, int srcLen,
                                      wchar_t* dst, int dstLen);

/// Wide text to bytes in the Windows code page `cp`; inline escapes are kept. Code page numbers,
/// lengths and results as of MultiByteToWideChar().
///
/// A character that the code page lacks always becomes its `\U+` escape, 7 bytes: `defaultChar`
/// and `usedDefault` are not consulted, nor is `flags`.
TV_OSBASE_API int WideCharToMultiByte(unsigned int cp, unsigned int flags, const wchar_t* src, int srcLen,
                                      char* dst, int dstLen, const char* defaultChar, int* usedDefault);

#ifdef __cplusplus
} // extern "C"

#include "TvCodePages.h"
#include "TvStringA.h"

/// Walks narrow text in a code page character by character. An inline escape is one character,
/// so is a lead byte with its trail byte.
///
/// The code page is taken as it is: ids 0 and `CP_CNT` are not the system's here, and only the
/// East Asian code pages have double-byte characters. Values are those of the text, not converted:
/// a byte, lead byte times 256 plus trail byte, the UTF-16 unit of a `\U+` escape, the double-byte
/// code of a `\M+` escape (whose code page digit is not kept).
///
/// **Errors**: none. **Memory**: the iterator points into the string, which must stay as it is;
/// only breakSafely() allocates. **Threads**: one iterator, one thread.
///
///     TvStringA text("25\\U+00B0C");
///     TvAnsiTextIterator it(text, CP_ANSI_1252);
///     while (unsigned int c = it.nextChar())
///         use(c);                            // '2', '5', 0xB0, 'C'
class TV_OSBASE_API TvAnsiTextIterator {
public:
    /// Stands before the first character of `text`, whose bytes are read in code page `cp`; the
    /// string's own code page number is not consulted.
    TvAnsiTextIterator(const TvStringA& text, code_page_id cp);

    /// What the last nextChar() gave; 0 before the first.
    unsigned int operator*() const { return m_value; }

    /// The next character; 0 at the end of the text and at a byte 0 in it, where the iterator
    /// then stays. The escape `\U+0000` is 0 too.
    unsigned int nextChar();

    /// Takes up to `n` hexadecimal (`hex`) or decimal digits that stand at the position into the
    /// value: for each, value times 16 or 10 plus digit. Stops at what is no such digit.
    void appendDigits(int n, bool hex);

    /// The same without a look at what the characters are; those that are no hexadecimal digit
    /// count 0. Stops at the end of the text.
    void appendDigitsNoCheck(int n, bool hex);

    /// Looks for a break at about `maxBytes` (from the start of the text) that splits neither
    /// a double-byte character nor an escape, and leaves the text before it in `rest`, which
    /// may be the iterated string itself: the iterator is then done.
    ///
    /// The next character is taken, and, if text follows it, further ones while the position is
    /// below `maxBytes`. The break is before the last character taken, also where that ends the
    /// text. 3: stopped with a character in hand; 1: the text ended; 0: no text followed the
    /// first character. `rest` gets the code page number of the text; it is empty when memory
    /// runs out.
    int breakSafely(int maxBytes, TvStringA& rest);

    /// Whether every byte of `text` is a character, so that no iterator is needed: `cp` has no
    /// double-byte characters and the text no backslash.
    static bool TvAnsiTextIteratorNotRequired(const TvStringA& text, code_page_id cp);

private:
    TV_LOCAL bool isAtEnd() const;

    const char* m_start;
    const char* m_position;
    int m_length; // bytes
    code_page_id m_codePage;
    unsigned int m_value = 0;
    const char* m_charStart; // of the current character
    const char* m_end;
    bool m_isMultiByte;
    int m_textCodePage; // the string's own number, for breakSafely()
};
#endif

#endif
