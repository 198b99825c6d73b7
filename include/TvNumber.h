// TvNumber.h - numbers to text with a layout, and text to numbers.
//
// Every digit is correctly rounded, ties to the even digit, whatever the rounding mode and
// the locale; the point is always '.'. For printf-style text take the output engine, for
// bare digits in other modes TvGdImpl.h.
#ifndef TV_NUMBER_H
#define TV_NUMBER_H

#include "TvExport.h"

/// The double nearest to the decimal number at the start of `text`, ties to even.
///
/// White space, a sign, digits with at most one point, an exponent; no hexadecimal form,
/// no "inf", no "nan". Only characters up to the first that does not belong to the number
/// are read. `*end`, when `end` is not null, receives the place behind the number, or
/// `text` when there is none.
///
/// An exponent of 20000 or more counts as 19999. Any number of digits counts, in linear
/// time.
///
/// **Errors**: no number is +0. A number too large is an infinity, one that rounds to zero
/// a zero, of its sign and with errno ERANGE; subnormal results and written zeros leave
/// errno alone. When memory for more than 19 digits ran out, errno is ENOMEM and the last
/// bit of the result in doubt. **Memory**: nothing is kept. **Threads**: one at a time, see
/// TvFCvtAllocator.
///
///     char* end;
///     double d = tvStrToD("  -12.5e1x", &end);     // -125, end on the x
TV_OSBASE_API double tvStrToD(const char* text, char** end);

/// The same of wide text: `*end` points into it.
TV_OSBASE_API double tvStrToD(const wchar_t* text, wchar_t** end);

/// `ndigits` significant digits, at least 1, as TvGdImpl::dtoa in mode 2; freed with
/// tvFreeCvt(). Null when memory ran out.
TV_OSBASE_API char* tvEcvt(double value, int ndigits, int* decpt, int* sign);

/// Digits through `ndigits` places behind the point, or the shortest that read back where
/// those are fewer, as TvGdImpl::dtoa in mode 5; freed with tvFreeCvt(). Null when memory
/// ran out.
TV_OSBASE_API char* tvFcvt(double value, int ndigits, int* decpt, int* sign);

/// Gives back the digits of tvEcvt() and tvFcvt(). Null is allowed.
TV_OSBASE_API void tvFreeCvt(char* digits);

/// @name Layouts
/// They lay a value out as C's f, e and g conversions do, with these differences: digits
/// behind the shortest text that reads back are zeros in f; the exponent has three digits; e
/// always has a point.
///
/// The narrow ones write into `out`, which must have room. The wide ones answer a new string,
/// freed with _tvFree(). A negative precision is 0. Infinities and NaN are the words
/// "Infinity", "-Infinity" and "NaN". When memory ran out the text is empty or null.
/// @{

/// Fixed notation with `precision` places: 123.00
///
/// `out` needs room for a sign, up to 309 digits, the point, the places and the terminating 0.
TV_OSBASE_API void tvFltToF(char* out, double value, int precision);

/// The same as a new wide string, freed with _tvFree(); null when memory ran out.
TV_OSBASE_API wchar_t* tvFltToF(double value, int precision);

/// Exponent notation: one digit, a point always, `precision` places and `expChar`: 1.235e+004
TV_OSBASE_API void tvFltToE(char* out, double value, int precision, int expChar);

/// The same as a new wide string, freed with _tvFree(); null when memory ran out.
TV_OSBASE_API wchar_t* tvFltToE(double value, int precision, int expChar);

/// General notation: at most `precision` digits, with an exponent below 1e-4 and from 10^precision on.
///
/// `style` 1 fills with zeros where no digit stands behind the point or the number is
/// below 1 (2.000, 0.5000, but 1.5), 2 ends whole numbers with ".0", 0 and below write the
/// digits alone. From 3 on as 0, but that whole numbers without an exponent end with the
/// bare point: "2." and 2e+010.
TV_OSBASE_API void tvFltToG(char* out, double value, int precision, int expChar, int style);

/// The same as a new wide string, freed with _tvFree(); null when memory ran out.
TV_OSBASE_API wchar_t* tvFltToG(double value, int precision, int expChar, int style);

/// By the letter `conv`: e and E (the exponent's letter too), f, g and G. Any other, F
/// included, reports "EMPTY THROW" to the crash recorder and gives an empty string or null.
TV_OSBASE_API void tvDToStr(char* out, double value, char conv, int precision, int style);

/// The same as a new wide string, freed with _tvFree(); null when memory ran out.
TV_OSBASE_API wchar_t* tvDToStr(double value, char conv, int precision, int style);

/// @}

/// The layouts alone, on `n` digits d1d2... of the value 0.d1d2... * 10^decpt. Digits that
/// are missing on the right are zeros; null digits give an empty text.
///
/// **Errors**: none. **Memory**: `out` must have room for the text and, but for
/// expToAscii(), its terminator. **Threads**: any.
///
///     char out[16];
///     CvtFormatter<char>::formatF(out, "125", 3, 2, 1, 0);      // "1.25"
template<class Char>
class CvtFormatter {
public:
    /// Fixed notation, as tvFltToF(); a `sign` other than 0 writes a minus sign.
    static void formatF(Char* out, const char* digits, int n, int precision, int decpt, int sign);
    /// Exponent notation, as tvFltToE().
    static void formatE(Char* out, const char* digits, int n, int precision, int decpt, int sign,
                        int expChar);
    /// General notation, as tvFltToG() with its `style`.
    static void formatG(Char* out, const char* digits, int n, int precision, int decpt, int sign, int expChar,
                        int style);

    /// A sign and three digits, without a terminator; `out` moves behind them. Of larger
    /// exponents the last three digits.
    static void expToAscii(Char*& out, int exponent);
};

extern template class TV_OSBASE_API CvtFormatter<char>;
extern template class TV_OSBASE_API CvtFormatter<wchar_t>;

#endif
