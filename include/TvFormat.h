// TvFormat.h - formatted output of wide text.
//
// An engine of its own, with a syntax close to printf and rules of its own: for text that
// must read the same on every platform, and for distances and angles in drawing units.
// For digits of a double that read back exactly take TvNumber.h; for input TvScan.h.
#ifndef TV_FORMAT_H
#define TV_FORMAT_H

#include "TvExport.h"

#include <cstdarg>
#include <cstdint>
#include <cwchar>

/// One positional argument: what it is, and its bits.
struct FormatParameters {
    /// 0 never named; 1 `d i` and `*N$`; 2 `b o p u x`; 3 `B D I O U X`;
    /// 4 `e f g G q Q`; 5 `c`; 6 `s`.
    std::int32_t type;

    /// A 32-bit value (types 1, 2, 3, 5; zero-extended), the bits of a double (4) or a
    /// pointer (6).
    std::uint64_t value;
};

/// Formats into `*out`, which has room for `capacity` characters, the terminating 0
/// included, and leaves `*out` behind the last character written.
///
/// Returns the number of characters written without the terminator; -1 when a field did
/// not fit or `out`, `*out` or `format` is null; 0 when a run of literal text did not fit.
/// The text is terminated in every case, unless `capacity` is 0 or less; it is so behind every
/// piece, so that `%s` may take the text that `*out` held or what the call has written so far.
///
/// A conversion is `%` [N$] [-][+] [0] [width] [.precision] [l|L|h] letter; width and
/// precision are digits, `*` or `*N$`. What surprises those who know printf:
///  - upper-case integer letters (`B D I O U X`) take a 64-bit argument and print its low
///    32 bits, `%x` prints upper-case digits; `l` and `h` change nothing and only one of
///    them is read, so that `%lld` prints "ld";
///  - precision on an integer inserts a decimal point: `%.2d` of 5 is 0.05;
///  - `%e` has three exponent digits, `%g` counts fraction digits and keeps zeros, and a
///    number has at most 16 significant digits;
///  - `+` counts for `f` and for `g` in fixed notation only;
///  - unknown letters print themselves, `E`, `F`, `%`, `#` and blank among them;
///  - infinity and NaN print as Infinity, -Infinity and NaN, padded like text.
/// `%b` prints binary digits. `%qM`, with one digit or `*` for the mode M, prints a double
/// in drawing units, the precision (6 when absent) being the longest text wanted; see
/// FormatUtil::formatQModeDouble().
///
/// With `N$` anywhere in the format all conversions read numbered arguments. Arguments are
/// fetched in the order of their numbers, each by the type that the last conversion naming
/// it has; a number that no conversion names takes no argument, so that later arguments
/// move up. A conversion whose number was fetched as another type reads 0 or an empty
/// string. Number 0 and numbers above 4096 make the call fail with -1.
///
/// **Errors**: the result. **Memory**: heap memory only for numbered arguments, released before
/// the call returns; -1 when there is none. **Threads**: re-entrant, but %q reads g_appUnits.
TV_OSBASE_API int OutputWithFormat(wchar_t** out, int capacity, const wchar_t* format, va_list* args);

/// Writes `value` as `%f` does, with `precision` fraction digits, into `buffer`.
/// Returns the length; -1 with an empty buffer when the text does not fit.
TV_OSBASE_API int FormatScienceDoubleAndOutputString(wchar_t* buffer, int capacity, const double& value,
                                                     int precision);

/// The pieces of the output engine.
///
/// **Errors**: by result, as each operation says. **Memory**: none allocated.
/// **Threads**: re-entrant; the unit operations read g_appUnits.
///
///     wchar_t text[32];
///     int n = FormatUtil::outputStringWithFormat(text, 32, L"%5d|%.2f", 42, 1.5);   // "   42|1.50", 9
class TV_OSBASE_API FormatUtil {
public:
    /// OutputWithFormat() with the arguments behind `format`.
    static int outputStringWithFormat(wchar_t* buffer, int capacity, const wchar_t* format, ...);

    /// Nothing is left to build: the tables of powers are constants. May be called at any time.
    static void initializeConstVar();

    /// Copies `count` characters to `*dst`, when they and a terminating 0 fit into `room`
    /// characters, and moves `*dst` behind them. Writes the 0 in either case (unless
    /// `room` is 0 or less). Returns 0, or -1 when the text does not fit.
    static int StringCopy(wchar_t** dst, int room, const wchar_t* src, unsigned count);

    /// Writes `count` times `pad` in pieces of at most 30 characters; false at the first
    /// piece that does not fit, the earlier ones stay written.
    static bool fillStringWithBlankChar(wchar_t** dst, int count, wchar_t pad, int room);

    /// Writes `value` in the given radix (2 to 36; others are clamped), digits above 9 as
    /// A to Z. A negative radix means that `value` is signed, otherwise it is unsigned.
    /// Returns `buffer`; text longer than `capacity` - 1 characters is cut.
    static wchar_t* formatLong(wchar_t* buffer, int value, int capacity, int radix);

    /// Brings `*v` to a magnitude in [1, 10), sign kept, and returns the decimal exponent
    /// taken out. Zero, infinities and NaN stay as they are, with exponent 0.
    static int scaleDoubleToScience(long double* v);

    /// Rounds a mantissa to `precision` fraction digits of the number that it makes with
    /// `exponent` (0 for exponent notation). Returns 1 when that reached 10 and `*v` was
    /// divided by 10, else 0.
    static int roundScienceDouble(long double* v, int precision, int exponent);

    /// Writes a mantissa in (-10, 10) as fixed notation with `intDigits` digits before the
    /// point and `precision` behind it, at most 16 together, and a terminating 0.
    /// Returns the number of characters. `capacity` is not consulted: `buffer` has room
    /// for 126 characters. With more than 16 integer digits the number runs on to the
    /// 125th character.
    static int formatScienceDouble(wchar_t* buffer, long double mantissa, int capacity, int intDigits,
                                   int precision);

    /// Whether `format` uses numbered arguments; `*count` receives the smaller of the
    /// number of items (conversions and `*`) and the largest number read.
    static bool isDefineSelfParaIndex(int* count, const wchar_t* format);

    /// Types the `count` records at `params` from the conversions of `format` and fetches
    /// their values from `args` in record order. Numbers outside the records are skipped.
    /// Always true.
    static bool valist2FormatParameters(va_list* args, FormatParameters* params, const wchar_t* format,
                                        int count);

    /// Writes `value` in drawing units. `mode` holds the kind in its low byte and flags in
    /// bits 8 to 15; `maxLength` is the longest text wanted: linear text beyond it turns
    /// into exponent notation, angles lose digits. A text that does not fit into `capacity`
    /// leaves the buffer empty.
    ///
    /// Kinds: 0 and 1 distance, 2 angle from the base angle, 3 angle as given; others have
    /// no text. Flags: 0x01 no "0'" before inches, 0x02 no zero inches, 0x04 no zero
    /// before the point, 0x08 no trailing zeros, 0x10 never compact, 0x20 linear settings,
    /// 0x40 linear settings without feet (kind 0), 0x80 degree sign as escape, stacked
    /// fractions.
    static void formatQModeDouble(wchar_t* buffer, int capacity, double value, int mode, unsigned maxLength);

    /// Chooses style and precision for a kind and its flags from g_appUnits.
    static void convertQTypeToAppType(int& precision, int& style, int kind, int flags);
};

/// Fetches one integer argument for the letter `conv`, from record `index` when
/// `positional`, else from `args`, and writes it into `buffer`, with a decimal point when
/// `hasPrecision`. `length` receives the length. False, with an empty text, when it is
/// longer than `capacity`. `longFlag` is neither read nor set.
TV_OSBASE_API bool formatLongUtil(wchar_t conv, bool& longFlag, bool positional, FormatParameters* params,
                                  int index, va_list* args, wchar_t* buffer, int capacity, bool hasPrecision,
                                  unsigned& length, unsigned precision);

/// Writes `value` as the letter `conv` (`e`, `g`, `G`) does; false, with an empty text, when
/// it does not fit.
TV_OSBASE_API bool formatScienceDoubleUtil(long double value, wchar_t conv, unsigned precision, bool plus,
                                           wchar_t* buffer, int capacity, unsigned& length);

/// The `q` and `Q` conversions: `format` stands at the letter and is left at the last
/// character of the mode. `text` receives the start of the text inside `buffer`, `length`
/// its length; without a mode nothing is fetched, `length` is 0 and `numeric` false.
TV_OSBASE_API void formatQModeDoubleUtil(const wchar_t*& format, bool positional, FormatParameters* params,
                                         va_list* args, bool& numeric, unsigned& length, int index,
                                         wchar_t* buffer, int capacity, unsigned precision, wchar_t*& text);

/// Strips zeros from `text` in place: trailing ones and then the point with flag 0x08 (in
/// front of a degree escape, a letter or an inch mark), the one before the point with 0x04.
TV_OSBASE_API void delPrefixSurfixZero(int flags, wchar_t* text);

#endif
