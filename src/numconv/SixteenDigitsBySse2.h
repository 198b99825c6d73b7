// The sixteen digits of an integer in one vector. Included by SixteenDigits.h alone.
#ifndef TV_SIXTEEN_DIGITS_BY_SSE2_H
#define TV_SIXTEEN_DIGITS_BY_SSE2_H

#include "numconv/ByteMasks.h"

#include <bit>
#include <cstdint>
#include <emmintrin.h>

/// As PlainSixteenCharacters.
class Sse2SixteenCharacters {
public:
    explicit Sse2SixteenCharacters(__m128i text) : m_text(text) {}
    explicit Sse2SixteenCharacters(const char* from)
        : m_text(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)))
    {
    }

    Sse2SixteenCharacters first(int count) const
    {
        return Sse2SixteenCharacters(chosen(firstBytes(count), m_text, _mm_set1_epi8('0')));
    }

    Sse2SixteenCharacters withPoint(int place) const
    {
        // The first byte that is not among the first `place` and not behind `place` + 1.
        const __m128i behind = chosen(firstBytes(place + 1), _mm_set1_epi8('.'), _mm_slli_si128(m_text, 1));
        return Sse2SixteenCharacters(chosen(firstBytes(place), m_text, behind));
    }

    char last() const { return static_cast<char>(_mm_extract_epi16(m_text, 7) >> 8); }

    template<Counts counts>
    char* put(char* out, int count) const
    {
        alignas(16) char text[16];
        _mm_store_si128(reinterpret_cast<__m128i*>(text), m_text);
        return putCharacters<counts>(out, text, count);
    }

    char* putAll(char* out) const
    {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), m_text);
        return out + sizeof m_text;
    }

    void putTerminated(char* out, int count) const
    {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_and_si128(m_text, firstBytes(count)));
    }

private:
    static __m128i chosen(__m128i mask, __m128i there, __m128i elsewhere)
    {
        return _mm_or_si128(_mm_and_si128(mask, there), _mm_andnot_si128(mask, elsewhere));
    }

    __m128i m_text;
};

/// As PlainSixteenDigits.
class Sse2SixteenDigits {
public:
    explicit Sse2SixteenDigits(std::uint64_t n)
    {
        const std::uint64_t upper = n / 100000000;
        const std::uint64_t lower = n - upper * 100000000;
        // Each step splits every lane into quotient (lower half) and remainder (upper half);
        // the multipliers are the divisors' reciprocals, rounded up, exact for these ranges.
        const __m128i eight = _mm_set_epi64x(static_cast<long long>(lower), static_cast<long long>(upper));
        const __m128i by10000 = _mm_srli_epi64(_mm_mul_epu32(eight, _mm_set1_epi64x(3518437209)), 45);
        const __m128i four = _mm_add_epi32(
            by10000,
            _mm_slli_epi64(_mm_sub_epi32(eight, _mm_mul_epu32(by10000, _mm_set1_epi64x(10000))), 32));
        const __m128i by100 = _mm_srli_epi16(_mm_mulhi_epu16(four, _mm_set1_epi32(5243)), 3);
        const __m128i two = _mm_add_epi16(
            by100, _mm_slli_epi32(_mm_sub_epi16(four, _mm_mullo_epi16(by100, _mm_set1_epi32(100))), 16));
        const __m128i by10 = _mm_mulhi_epu16(two, _mm_set1_epi16(6554));
        m_digits = _mm_add_epi8(
            by10, _mm_slli_epi16(_mm_sub_epi16(two, _mm_mullo_epi16(by10, _mm_set1_epi16(10))), 8));
    }

    int significant(bool oneMore) const
    {
        const auto zeros =
            static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(m_digits, _mm_setzero_si128())));
        return static_cast<int>(std::bit_width((~zeros & 0xFFFFu) | unsigned{oneMore} << 16));
    }

    Sse2SixteenCharacters characters() const
    {
        return Sse2SixteenCharacters(_mm_add_epi8(m_digits, _mm_set1_epi8('0')));
    }

private:
    __m128i m_digits;
};

#endif
