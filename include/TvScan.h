// TvScan.h - formatted input from wide text.
//
// A reader with its own rules, the same on every platform; TvFormat.h is its counterpart for
// output. For one number with a correctly rounded result take tvStrToD of TvNumber.h.
#ifndef TV_SCAN_H
#define TV_SCAN_H

#include "TvExport.h"

#include <cstdarg>
#include <cstdint>

// Declared in TvCharOp.h and used by formats: TvCharToInt, isdigit_WithDiffCodeSys.
#include "TvCharOp.h"

/// Input text with one character of look-ahead.
struct ScanfSourceBuf {
    /// false: a wide string; true: a source without characters, of which every read gives 0.
    bool kind;

    /// Whether a character that is neither the end nor white space has been read.
    bool seenNonSpace;

    /// The look-ahead; -1 at the end of the text.
    std::int32_t current;

    /// Characters taken so far.
    std::int32_t count;

    /// The character behind the look-ahead; the terminating 0 once that has been read.
    const wchar_t* position;
};

/// Reads values from `source`, a terminated wide string when `kind` is false, and stores
/// them through the pointers in `args`. Returns how many were stored; -1 when the text ended
/// before anything but white space.
///
/// A conversion is `%` [*] [width] [h|l] letter: `d i u o x b` integers (binary for `b`),
/// `e f g` numbers, `s` a word, `c` characters, `n` the count of characters taken. What
/// surprises those who know scanf:
///  - upper-case letters (`D O X B`, `E F G`) store 64 bits or a double, with `h` too; `I` and
///    `U` are ignored like every letter that is not listed;
///  - integers are read in 32 bits and wrap; `u` accepts no sign;
///  - in a number the character behind the mantissa costs one of the width, and when the
///    width ends at the exponent's `e`, the decimal places are not applied (`%5f` on 1.5e3
///    stores 15); an exponent has at most two digits; the digits are scaled by one
///    multiplication with a power of ten, so that the last bit may differ from strtod;
///  - ordinary characters skip white space in the input before they are compared.
///
/// `s` and `c` store into `wchar_t` arrays that must be long enough for the width; `s`
/// terminates them, `c` does not; with fewer characters left than its width `c` stores nothing
/// and the scan stops. A null pointer among the arguments is skipped, its value is not counted.
///
/// **Errors**: the result; a mismatch ends the call with what was stored so far, a null `format`
/// or `source` counts as an empty one. **Memory**: none. **Threads**: re-entrant.
TV_OSBASE_API int InputWithFormat(bool kind, const void* source, const wchar_t* format, va_list* args);

/// Takes one character: the look-ahead becomes the next one. At the end of the text it stays
/// there, however often it is called.
TV_OSBASE_API void getACharFromScanfBuf(ScanfSourceBuf* source);

/// Gives the look-ahead back to the text. The look-ahead itself stays as it is.
TV_OSBASE_API void undoACharFromScanfBuf(ScanfSourceBuf* source);

/// One conversion of an input format.
struct ScanfConversion {
    bool suppress;     ///< `*`: nothing is stored or counted
    bool hasWidth;     ///< a width is written
    unsigned width;    ///< 65535 when none is written
    bool isShort;      ///< `h`
    bool isLong;       ///< `l` or an upper-case letter
    bool isUnsigned;   ///< no sign is accepted (`u`)
    bool zeroExtended; ///< 64-bit values are widened without their sign (`u o x b`)
    int base;          ///< 2, 8, 10, 16; 0 takes it from the prefix (`i`)
};

/// Reads an integer (`d i u o x b`) from the look-ahead on, stores it through the next pointer
/// of `args` and adds 1 to `stored`; true when the whole scan is to stop.
///
/// White space in front is the caller's to skip. A conversion that is suppressed takes no pointer
/// and counts nothing; a null pointer is taken and counts nothing.
TV_OSBASE_API bool scanfIntegerFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion,
                                       va_list* args, int& stored);

/// Reads a number (`e f g`): a float, or a double for `l` or an upper-case letter. As
/// scanfIntegerFromBuf() else.
TV_OSBASE_API bool scanfDoubleFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion,
                                      va_list* args, int& stored);

/// Reads a word (`s`) and terminates it. As scanfIntegerFromBuf() else.
TV_OSBASE_API bool scanfStringFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion,
                                      va_list* args, int& stored);

/// Reads `width` characters, one without a width (`c`), white space included, and does not
/// terminate them. As scanfIntegerFromBuf() else.
TV_OSBASE_API bool scanfCharFromBuf(ScanfSourceBuf* source, const ScanfConversion& conversion, va_list* args,
                                    int& stored);

#endif
