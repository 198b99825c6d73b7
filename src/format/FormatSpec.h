// FormatSpec.h - one conversion of an output format, parsed.
#ifndef TV_FORMAT_FORMAT_SPEC_H
#define TV_FORMAT_FORMAT_SPEC_H

#include <climits>

namespace TvFormatDetail {

/// The largest argument number that a format may name.
constexpr unsigned kMaxArgumentNumber = 4096;

/// The precision of a conversion that has none.
constexpr unsigned kDefaultPrecision = 6;

/// A width, precision or mode: written out, or taken from an argument.
struct FormatCount {
    unsigned value = 0; ///< the count, or the argument's number (1 and up)
    bool fromArgument = false;
};

/// What stands between a `%` and the end of the conversion.
struct FormatSpec {
    unsigned number = 1; ///< the argument's number in a positional format
    FormatCount width;
    FormatCount precision{kDefaultPrecision, false};
    FormatCount mode; ///< of `q` and `Q`
    bool hasPrecision = false;
    bool hasMode = false;
    bool left = false;
    bool plus = false;
    bool badNumber = false; ///< an argument number is 0 or above kMaxArgumentNumber
    wchar_t pad = L' ';
    wchar_t letter = 0; ///< 0: the format ends inside the conversion
};

inline bool isFormatDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

/// Reads decimal digits at `f`, if any. Values that do not fit become UINT_MAX.
inline unsigned readFormatNumber(const wchar_t*& f)
{
    unsigned value = 0;
    for (; isFormatDigit(*f); ++f) {
        const auto digit = static_cast<unsigned>(*f - L'0');
        value = value > (UINT_MAX - digit) / 10 ? UINT_MAX : value * 10 + digit;
    }
    return value;
}

/// Parses the conversion whose `%` stands before `f`. Returns the place behind it, at most
/// the terminating 0.
const wchar_t* parseFormatSpec(const wchar_t* f, bool positional, FormatSpec& spec);

/// Reads what follows `q`: one digit, or `*` with an argument number in a positional format. A
/// `$` behind that number is ordinary text.
void readFormatMode(const wchar_t*& f, bool positional, FormatSpec& spec);

/// The record type that a conversion letter needs; 0 for letters without an argument.
int argumentTypeOf(wchar_t letter);

} // namespace TvFormatDetail

#endif
