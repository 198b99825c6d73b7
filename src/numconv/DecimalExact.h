// Decimal digits to a double by big integers: the reference, and what the faster way
// falls back on where it cannot tell.
#ifndef TV_DECIMAL_EXACT_H
#define TV_DECIMAL_EXACT_H

#include <cstdint>

/// Digits behind this many only matter as "more": points half-way between doubles have
/// at most 768 digits.
constexpr int kDigitsThatCount = 800;

/// The bits of the double nearest to 0.d1d2...dn * 10^point, a little more when `more`.
/// `digits` are n characters '0'..'9', the first not '0', n within 1..kDigitsThatCount.
/// False when memory ran out; `bits` is then as it was.
bool exactDouble(const char* digits, int n, std::int64_t point, bool more, std::uint64_t& bits);

#endif
