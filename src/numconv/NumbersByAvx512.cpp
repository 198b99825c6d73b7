// Shortest digits, and the text of numbers, on machines with 512-bit vectors.
#include "numconv/NumberKernels.h"

#ifdef TV_NUMBERS_BY_AVX512
#include "numconv/Avx512Digits.h"
#include "numconv/LayoutInRegisters.h"
#include "numconv/ScaledInteger.h"
#include "numconv/ShortestDecimal.h"
#include "numconv/TvDigitBlocks.h"
#include "runtime/ReadOn.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// Writes a block of the smallest class: its class 0, the digits without trailing zeros, zeros.
// A function of its own, as it needs other registers than what leads to it.
[[gnu::noinline]] TV_AVX512_NUMBERS char* fillBlock(char* block, std::uint64_t sixteen, std::uint64_t last,
                                                    const unsigned char* places, char** rve)
{
    constexpr int kText = Avx512Tables::kTextInBlock;
    static_assert(TvDigitBlocks::kBlockBytes == sizeof(__m256i) && kText == sizeof(int));
    const __m256i digits = seventeenDigits(sixteen, last, places);
    const std::uint32_t zeros = _lzcnt_u32(_mm256_test_epi8_mask(digits, digits));
    const __mmask32 kept = (~std::uint32_t{0} >> zeros) & (~std::uint32_t{0} << kText);
    const __m256i text = _mm256_maskz_add_epi8(
        kept, digits, _mm256_load_si256(reinterpret_cast<const __m256i*>(g_avx512Tables.zeros)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(block), text);
    if (rve)
        *rve = block + sizeof text - std::uint64_t{zeros};
    return block + kText;
}

TV_AVX512_NUMBERS char* shortestText(double value, int, int, int* decpt, int* sign, char** rve)
{
    const std::uint64_t bits = bitsOf(value);
    if (!isEvenlySpaced(bits)) [[unlikely]]
        return plainText(value, 0, 0, decpt, sign, rve);
    *sign = static_cast<int>(bits >> 63);
    const ShortestDecimal decimal = shortestDecimal(bits);
    if (!decimal.sure) [[unlikely]]
        return plainShortestText(value, decpt, rve);
    const std::uint64_t skip = decimal.startsWithZero();
    *decpt = -static_cast<int>(decimal.minusEnd) - static_cast<int>(skip);
    char* const block = TvDigitBlocks::takeListed();
    if (!block) [[unlikely]]
        return plainShortestText(value, decpt, rve);
    return fillBlock(block, decimal.tens, decimal.ones, g_avx512Tables.block + skip, rve);
}

// The letter, a sign, the last three digits and a terminator.
TV_AVX512_NUMBERS_STEP void putExponent(char* out, int expChar, std::int64_t exponent)
{
    const std::int64_t distance = std::abs(exponent);
    const auto size = static_cast<std::uint32_t>(distance < 1000 ? distance : distance % 1000);
    const std::uint32_t hundreds = size * 41 >> 12;
    const std::uint32_t rest = size - hundreds * 100;
    const std::uint32_t tens = rest * 103 >> 10;
    const std::uint32_t digits = hundreds + (tens << 8) + ((rest - tens * 10) << 16) + 0x303030;
    const std::uint32_t plusOrMinus =
        '+' + static_cast<std::uint32_t>(static_cast<std::uint64_t>(exponent) >> 63) * ('-' - '+');
    const std::uint32_t head = (static_cast<std::uint32_t>(expChar) & 0xFF) | plusOrMinus << 8 | digits << 16;
    const auto tail = static_cast<std::uint16_t>(digits >> 16);
    std::memcpy(out, &head, sizeof head);
    std::memcpy(out + sizeof head, &tail, sizeof tail);
}

// The first `length` characters with a point behind the first digit, and the exponent.
TV_AVX512_NUMBERS_STEP void putExponentText(char* out, __m256i all, std::uint64_t length, int decpt,
                                            int expChar)
{
    const auto* const row =
        reinterpret_cast<const __m256i*>(g_avx512Tables.layout[1 - Avx512Tables::kLowestPoint]);
    _mm256_mask_storeu_epi8(out, lowBits(length), _mm256_permutexvar_epi8(_mm256_load_si256(row), all));
    putExponent(out + length, expChar, std::int64_t{decpt} - 1);
}

// The digits, zeros up to the seventeenth, a point and a 0.
TV_AVX512_NUMBERS_STEP __m256i layoutCharacters(const char* digits, unsigned n)
{
    constexpr int kHead = 16;
    constexpr std::uint32_t kPoint = std::uint32_t{1} << Avx512Tables::kMostDigits;
    const auto* const behind = reinterpret_cast<const __m128i*>(g_avx512Tables.behindHead);
    const auto* const zeros = reinterpret_cast<const __m256i*>(g_avx512Tables.zeros);
    const __m128i head = _mm_loadu_si128(reinterpret_cast<const __m128i*>(digits));
    const __m128i tail = _mm_insert_epi8(_mm_load_si128(behind), digits[kHead], 0);
    return _mm256_mask_blend_epi8(lowBits(n) | kPoint, _mm256_load_si256(zeros),
                                  _mm256_inserti128_si256(_mm256_castsi128_si256(head), tail, 1));
}

// General text of `all` the characters as layoutCharacters orders them.
TV_AVX512_NUMBERS_STEP void putGeneralText(char* out, __m256i all, int n, int precision, int decpt,
                                           int expChar)
{
    constexpr int kLowest = Avx512Tables::kLowestPoint;
    const auto fromLowest = [](int point) { return static_cast<unsigned>(point) + unsigned{-kLowest}; };
    if (fromLowest(decpt) <= fromLowest(precision)) {
        const auto* const row = reinterpret_cast<const __m256i*>(g_avx512Tables.layout[decpt - kLowest]);
        // A point if digits stand behind it, and what stands in front of it below 1.
        const int more = std::max(1, 2 - decpt) & (decpt - n) >> 31;
        const auto length = static_cast<unsigned>(std::max(n + more, decpt));
        _mm256_mask_storeu_epi8(out, lowBits(length), _mm256_permutexvar_epi8(_mm256_load_si256(row), all));
        out[length] = '\0';
        return;
    }
    const auto count = static_cast<unsigned>(n);
    putExponentText(out, all, count + (count > 1), decpt, expChar);
}

TV_AVX512_NUMBERS void generalLayout(char* out, const char* digits, int n, int precision, int decpt,
                                     int expChar)
{
    if (!mayReadOn(digits, Avx512Tables::kMostDigits)) [[unlikely]]
        return plainGeneralLayout(out, digits, n, precision, decpt, expChar);
    putGeneralText(out, layoutCharacters(digits, static_cast<unsigned>(n)), n, precision, decpt, expChar);
}

// The `count` digits of `integer` as numbers, zeros behind them.
TV_AVX512_NUMBERS_STEP __m256i digitsOf(std::uint64_t integer, int count)
{
    std::uint64_t sixteen, last = 0;
    if (count > 16) {
        sixteen = integer / 10;
        last = integer - sixteen * 10;
    } else {
        sixteen = integer * g_tens[16 - count];
    }
    return seventeenDigits(sixteen, last, g_avx512Tables.block + Avx512Tables::kTextInBlock);
}

TV_AVX512_NUMBERS_STEP __m256i charactersOfDigits(__m256i digits)
{
    return _mm256_add_epi8(digits,
                           _mm256_load_si256(reinterpret_cast<const __m256i*>(g_avx512Tables.characters)));
}

// A normal value of either sign, its leading bit moved to the top.
struct NormalParts {
    std::uint64_t mantissa;
    int exponent;
};

TV_AVX512_NUMBERS_STEP NormalParts normalParts(std::uint64_t bits)
{
    return {bits << 11 | kSignBit, static_cast<int>(exponentField(bits)) + kLowestExponent - 12};
}

// The value times 10^places, rounded. False where the rounding is open, at ties too, or the result
// may be 0 or more than 63 bits.
TV_AVX512_NUMBERS_STEP bool roundScaled(const NormalParts& parts, int places, std::uint64_t* integer)
{
    const TenProduct product = multiply(parts.mantissa, tenPower(places));
    const int right = -(parts.exponent + floorLog2Pow10(places) + 1);
    if (static_cast<unsigned>(right) - 1 >= 63) [[unlikely]]
        return false;
    const std::uint64_t fraction = product.high << (64 - right) | product.low >> right;
    *integer = (product.high >> right) + (fraction >> 63);
    return fraction - (kHalf - 2) > 2;
}

// The `count` leading digits and the place of the first, without a branch that depends on the
// digits. False also where nines are rounded up.
TV_AVX512_NUMBERS_STEP bool leadingDigits(std::uint64_t bits, int count, std::uint64_t* integer, int* power)
{
    if (!isNormal(bits)) [[unlikely]]
        return false;
    const NormalParts parts = normalParts(bits);
    const int guess = floorLog10Pow2(parts.exponent + 63);
    const TenPower& next = tenPower(guess + 1);
    const bool sameBinade = floorLog2Pow10(guess + 1) == parts.exponent + 63;
    // The mantissa ends in zeros, so that there is room for the sum.
    const bool notBelow = parts.mantissa + (next.low == 0) > next.high;
    *power = guess + static_cast<int>(sameBinade & notBelow);
    return roundScaled(parts, count - 1 - *power, integer) && *integer != g_tens[count];
}

TV_AVX512_NUMBERS bool fixedText(char* out, double value, int precision)
{
    constexpr int kLowest = Avx512Tables::kLowestPoint;
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    if (!isNormal(bits) || precision >= kMostCharacters || !gapIsBelowPlace(bits, precision) ||
        !roundScaled(normalParts(bits), precision, &integer) || integer >= g_tens[kMostCharacters])
        [[unlikely]]
        return plainFixedText(out, value, precision);
    const int width = std::max(decimalWidth(integer), precision + 1);
    const __m256i all = charactersOfDigits(digitsOf(integer, width));
    const auto* const row =
        reinterpret_cast<const __m256i*>(g_avx512Tables.layout[width - precision - kLowest]);
    const std::uint64_t length = static_cast<unsigned>(width) + (precision > 0);
    out = putSign(out, bits);
    _mm256_mask_storeu_epi8(out, lowBits(length), _mm256_permutexvar_epi8(_mm256_load_si256(row), all));
    out[length] = '\0';
    return true;
}

TV_AVX512_NUMBERS bool exponentText(char* out, double value, int precision, int expChar)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    int power;
    if (precision >= kMostCharacters || !leadingDigits(bits, precision + 1, &integer, &power)) [[unlikely]]
        return plainExponentText(out, value, precision, expChar);
    const __m256i digits = digitsOf(integer, precision + 1);
    putExponentText(putSign(out, bits), charactersOfDigits(digits), static_cast<unsigned>(precision) + 2,
                    power + 1, expChar);
    return true;
}

TV_AVX512_NUMBERS bool generalText(char* out, double value, int precision, int expChar, int style)
{
    const std::uint64_t bits = bitsOf(value);
    std::uint64_t integer;
    int power;
    if (style != 0 || precision < 1 || precision > kMostCharacters ||
        !leadingDigits(bits, precision, &integer, &power)) [[unlikely]]
        return plainGeneralText(out, value, precision, expChar, style);
    const __m256i digits = digitsOf(integer, precision);
    const auto n = static_cast<int>(32 - _lzcnt_u32(_mm256_test_epi8_mask(digits, digits)));
    putGeneralText(putSign(out, bits), charactersOfDigits(digits), n, precision, power + 1, expChar);
    return true;
}

} // namespace

const NumberKernels g_avx512NumberKernels = {"avx512",  shortestText, generalLayout,
                                             fixedText, exponentText, generalText};

#endif
