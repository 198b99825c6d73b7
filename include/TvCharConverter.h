// TvCharConverter.h - the inline escapes for characters that a code page lacks.
//
// Two forms stand in drawing text: CIF, a backslash, "U+" and four hexadecimal digits of a
// UTF-16 code unit (`\U+00B0`), and MIF, a backslash, "M+", a code page digit and four
// hexadecimal digits of a double-byte code (`\M+1815F`). For converting whole texts with
// their escapes, take TvCharMapper.h.
#ifndef TV_CHAR_CONVERTER_H
#define TV_CHAR_CONVERTER_H

#include "TvCodePages.h"
#include "TvExport.h"

/// Recognises, reads and writes CIF and MIF escapes.
///
/// The templates are there for `char`, `unsigned char` and `wchar_t`. An escape ends with
/// its last digit; letters and digits are read in either case and written in upper case.
/// Tests stop at the first character that does not fit, so text that ends with 0 is never
/// read past its end.
///
/// **Errors**: answered as false or 0.
/// **Memory**: allocates nothing.
/// **Threads**: any.
///
///     wchar_t wc;
///     TvCharConverter::parseCIFString("\\u+00b0", wc);                       // U+00B0
///     char text[7];
///     TvCharConverter::getCIFString(0x20AC, text, 7);                       // \U+20AC
class TV_OSBASE_API TvCharConverter {
public:
    /// Whether `c` is one of 0 to 9.
    template<class C>
    static bool isDigit(C c);

    /// Whether `c` is one of 0 to 9, A to F and a to f.
    template<class C>
    static bool isHexDigit(C c);

    /// 0 to 15; 0 for a character that is no hexadecimal digit.
    template<class C>
    static unsigned int hexValue(C c);

    /// Whether the first `n` characters are all hexadecimal (`hex`) or all decimal digits.
    /// True for an `n` of 0 or less.
    template<class C>
    static bool checkDigits(const C* p, int n, bool hex);

    /// Whether a CIF escape stands at `p`, which may be null.
    template<class C>
    static bool isCIF(const C* p);

    /// Whether a MIF escape with a digit from 0 to 5 stands at `p`, which may be null.
    template<class C>
    static bool isMIF(const C* p);

    /// Reads the 7 characters of a CIF escape; `wc` is untouched when there is none.
    template<class C>
    static bool parseCIFString(const C* p, wchar_t& wc);

    /// Reads the 8 characters of a MIF escape; `code` and `cp` are untouched when there is none.
    template<class C>
    static bool parseMIFString(const C* p, wchar_t& code, code_page_id& cp);

    /// Writes the 7 characters of the CIF escape of `wc`, without a terminator, and returns 7;
    /// writes nothing and returns 0 when `size` (in characters) is below 7 or `buf` null.
    template<class C>
    static int getCIFString(unsigned short wc, C* buf, int size);

    /// Writes the 8 characters of the MIF escape of the low 16 bits of `code`, without a
    /// terminator, and returns 8; writes nothing and returns 0 when `size` (in characters) is
    /// below 8 or `buf` null.
    template<class C>
    static int getMIFString(wchar_t code, code_page_id cp, C* buf, int size);

    /// The code page digit of an id, '1' to '5', or '0' for ids without one.
    static char getMIFIndex(code_page_id id);

    /// The id of a code page digit: the system's for '0', CP_UNDEFINED for anything but '0'..'5'.
    template<class C>
    static code_page_id getMIFCodepage(C digit);

    /// Whether `id` is one of the ten East Asian double-byte code pages.
    static bool isMBCBCodepage(code_page_id id);

    /// The same test as isMBCBCodepage().
    static bool isMIFCodepage(code_page_id id);

    /// The ANSI id of an older id of the same code page (22, 24, 25, 26, 31); others unchanged.
    static code_page_id checkTheSameCP(code_page_id id);
};

/// 'u' when a CIF escape stands at `p`, 'm' when a MIF escape does, else 0; `p` may be null.
///
/// Stricter than TvCharConverter::isMIF: the code page digit 0 is refused.
TV_OSBASE_API char isCIForMIF(const wchar_t* p);

#endif
