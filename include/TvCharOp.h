// TvCharOp.h - small helpers for wide and narrow text.
//
// Wide characters are 32-bit. None of these functions knows the size of a buffer that it
// writes to; where that matters, use wmemcpy_s of TvPlatformBase.h.
#ifndef TV_CHAR_OP_H
#define TV_CHAR_OP_H

#include "TvExport.h"

/// Copies `src` with its terminating 0 and returns `dst`; null when either pointer is
/// null. The two may overlap.
TV_OSBASE_API wchar_t* _tarmcscpy(wchar_t* dst, const wchar_t* src);

/// As _tarmcscpy.
TV_OSBASE_API wchar_t* _tarmcscpy_s(wchar_t* dst, const wchar_t* src);

/// Copies at most `count` characters of `src` and then a terminating 0: up to
/// `count` + 1 characters are written. A negative `count` is 0. Null when either pointer
/// is null, else `dst`. The two may overlap.
TV_OSBASE_API wchar_t* _tarmcscpy_s(wchar_t* dst, int count, const wchar_t* src);

/// The value of a decimal digit, of any script of the basic plane; 0 for other characters.
TV_OSBASE_API int TvCharToInt(wchar_t c);

/// Whether `c` is a digit in `base`. In base 16 every digit of iswdigit and the letters
/// a to f in both cases; in base 0 every digit of iswdigit; in another base the digits
/// below it (so 11 to 15 and above have no letters).
TV_OSBASE_API bool isdigit_WithDiffCodeSys(int base, wchar_t c);

/// Services for strings.
///
/// Two names surprise: of a narrow string length() counts characters in the system code
/// page and numOfChars() counts bytes.
///
/// **Errors**: none. Pointers must not be null where nothing else is said. **Memory**: only
/// zalloc() allocates. **Threads**: no state.
///
///     int at;
///     const wchar_t* dot = TvCharOp::find<wchar_t>(L"hall.dwg", L'.', 0, &at);   // at == 4
class TV_OSBASE_API TvCharOp {
public:
    /// Zeroed memory from _tvMalloc, freed with zfree(); null when there is none.
    static void* zalloc(unsigned long bytes);
    /// Null is ignored.
    static void zfree(void* p);

    /// The place behind the character at `p`, the terminating 0 not excepted.
    static const wchar_t* next(const wchar_t* p) { return p + 1; }
    /// `n` characters further, whatever stands there.
    static const wchar_t* next(const wchar_t* p, unsigned long n) { return p + n; }

    /// Whether `c` is a digit as iswdigit() has it: 0 to 9.
    static bool isDigit(wchar_t c);

    /// At most `n` characters of each, as wcsncmp.
    static int compare(const wchar_t* a, const wchar_t* b, unsigned long n);
    /// Without regard to case in the current locale, as wcscasecmp.
    static int compareNoCase(const wchar_t* a, const wchar_t* b);

    /// Wide characters before the terminating 0; 0 for null.
    static unsigned long length(const wchar_t* text);
    /// Characters in the system code page before the terminating 0: a lead byte and its trail byte
    /// are one. 0 for null.
    static unsigned long length(const char* text);
    /// Bytes before the terminating 0; 0 for null.
    static unsigned long numOfChars(const char* text);

    /// As _tarmcscpy.
    static wchar_t* copy(wchar_t* dst, const wchar_t* src);
    /// Exactly `n` characters, without a terminating 0. The two must not overlap.
    static wchar_t* copy(wchar_t* dst, const wchar_t* src, unsigned long n);
    /// Appends `src` to the text in `dst` and returns `dst`.
    static wchar_t* cat(wchar_t* dst, const wchar_t* src);

    /// The first `c` of `text` from character `start` on, or null. `start` must lie within
    /// the text. `*index` (when `index` is not null) receives the position in `text`, or -1.
    /// The terminating 0 is never found.
    template<class Char>
    static const Char* find(const Char* text, Char c, unsigned long start, int* index)
    {
        for (const Char* at = text + start; *at != Char(0); ++at) {
            if (*at != c)
                continue;
            if (index)
                *index = static_cast<int>(at - text);
            return at;
        }
        if (index)
            *index = -1;
        return nullptr;
    }

    /// MultiByteToWideChar() of TvPlatformText.h.
    static int tvMultiByteToWideChar(unsigned int cp, unsigned int flags, const char* src, int srcLen,
                                     wchar_t* dst, int dstLen);

    /// WideCharToMultiByte() of TvPlatformText.h; the last argument is not consulted.
    static int WideCharToMultiByteCIF(unsigned int cp, unsigned int flags, const wchar_t* src, int srcLen,
                                      char* dst, int dstLen, unsigned int);

    /// Writes the classes of `len` characters, or of those before the terminating 0 when `len`
    /// is -1, to `types`: the sum of upper case 0x1, lower case 0x2, decimal digit 0x4, space
    /// 0x8, punctuation 0x10, control 0x20, blank 0x40, hexadecimal digit 0x80 and letter 0x100,
    /// as the C library classifies in the current locale.
    ///
    /// `infoType` names what is wanted: of the kinds that Windows has only the first, bit 0, is
    /// there. False, with `types` untouched, without that bit, without characters, and for a
    /// null pointer or another negative `len`.
    static bool GetStringType(unsigned int infoType, const wchar_t* src, int len, unsigned short* types);

    /// Slash and backslash.
    template<class Char>
    static bool isPathSeparator(Char c)
    {
        return c == Char('\\') || c == Char('/');
    }
};

extern template TV_OSBASE_API const wchar_t* TvCharOp::find<wchar_t>(const wchar_t*, wchar_t, unsigned long,
                                                                     int*);
extern template TV_OSBASE_API bool TvCharOp::isPathSeparator<wchar_t>(wchar_t);

#endif
