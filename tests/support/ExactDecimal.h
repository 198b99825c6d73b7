// ExactDecimal.h - decimal digits of doubles and doubles of decimal digits, the slow and
// obvious way: every value is written out in full, then digits are compared as text.
#ifndef TV_TEST_EXACT_DECIMAL_H
#define TV_TEST_EXACT_DECIMAL_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

/// The value 0.d1d2... * 10^point; no zeros at either end, no digits for 0.
struct ExactDecimal {
    std::string digits;
    int point = 0;
};

inline bool operator==(const ExactDecimal& a, const ExactDecimal& b)
{
    return a.digits == b.digits && a.point == b.point;
}

inline ExactDecimal trimmed(std::string digits, int point)
{
    std::size_t zeros = 0;
    while (zeros < digits.size() && digits[zeros] == '0')
        ++zeros;
    digits.erase(0, zeros);
    while (!digits.empty() && digits.back() == '0')
        digits.pop_back();
    return {digits, digits.empty() ? 0 : point - static_cast<int>(zeros)};
}

/// mantissa * 2^exponent: multiplied out by twos, or by fives with the point moved.
inline ExactDecimal exactDecimal(std::uint64_t mantissa, int exponent)
{
    std::vector<std::uint32_t> groups; // of nine digits, lowest first
    for (; mantissa; mantissa /= 1000000000)
        groups.push_back(static_cast<std::uint32_t>(mantissa % 1000000000));
    for (int i = 0; i < std::abs(exponent); ++i) {
        std::uint64_t carry = 0;
        for (std::uint32_t& group : groups) {
            carry += std::uint64_t{group} * (exponent > 0 ? 2 : 5);
            group = static_cast<std::uint32_t>(carry % 1000000000);
            carry /= 1000000000;
        }
        if (carry)
            groups.push_back(static_cast<std::uint32_t>(carry));
    }
    std::string digits;
    for (std::size_t i = groups.size(); i-- > 0;) {
        const std::string group = std::to_string(groups[i]);
        digits += std::string(9 - group.size(), '0') + group;
    }
    const int places = exponent < 0 ? -exponent : 0;
    const int point = static_cast<int>(digits.size()) - places;
    return trimmed(digits, point);
}

/// |bits|, and the middles between it and its neighbours.
struct DoubleNeighbourhood {
    ExactDecimal value, below, above;
    bool even;
};

inline DoubleNeighbourhood neighbourhood(std::uint64_t bits)
{
    bits &= ~(std::uint64_t{1} << 63);
    const int field = static_cast<int>(bits >> 52);
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << 52) - 1);
    const std::uint64_t m = field ? fraction | std::uint64_t{1} << 52 : fraction;
    const int e = (field ? field : 1) - 1075;
    const bool narrowBelow = fraction == 0 && field > 1;
    return {exactDecimal(m, e), narrowBelow ? exactDecimal(4 * m - 1, e - 2) : exactDecimal(2 * m - 1, e - 1),
            exactDecimal(2 * m + 1, e - 1), m % 2 == 0};
}

/// Below, equal or above 0; both values not negative.
inline int compare(const ExactDecimal& a, const ExactDecimal& b)
{
    if (a.digits.empty() || b.digits.empty())
        return static_cast<int>(!a.digits.empty()) - static_cast<int>(!b.digits.empty());
    if (a.point != b.point)
        return a.point < b.point ? -1 : 1;
    return a.digits.compare(b.digits);
}

/// The first `count` digits; one more unit of the last when `up`. `count` may be 0 or less.
inline ExactDecimal cut(const ExactDecimal& x, int count, bool up)
{
    std::string digits = count > 0 ? x.digits.substr(0, static_cast<std::size_t>(count)) : "";
    int point = x.point;
    if (!up)
        return trimmed(digits, point);
    if (count <= 0)
        return {"1", point - count + 1};
    digits.resize(static_cast<std::size_t>(count), '0');
    std::size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9')
        digits[--i] = '0';
    if (i == 0) {
        digits.insert(0, "1");
        ++point;
    } else {
        ++digits[i - 1];
    }
    return trimmed(digits, point);
}

/// The first `count` digits, rounded to nearest, ties to the even digit.
inline ExactDecimal rounded(const ExactDecimal& x, int count)
{
    if (count < 0 || x.digits.size() <= static_cast<std::size_t>(count))
        return count < 0 ? ExactDecimal{} : x;
    const std::string rest = x.digits.substr(static_cast<std::size_t>(count));
    const bool odd = count > 0 && (x.digits[static_cast<std::size_t>(count) - 1] - '0') % 2 == 1;
    return cut(x, count, rest == "5" ? odd : rest > "5");
}

/// The shortest digits that read back as the value, the nearest of them; `inclusive`: the
/// middles read back too.
inline ExactDecimal shortest(const DoubleNeighbourhood& n, bool inclusive)
{
    const auto readsBack = [&](const ExactDecimal& x) {
        const int low = compare(x, n.below), high = compare(x, n.above);
        return (low > 0 || (low == 0 && inclusive)) && (high < 0 || (high == 0 && inclusive));
    };
    for (int count = 1;; ++count) {
        const ExactDecimal lower = cut(n.value, count, false);
        const ExactDecimal upper = cut(n.value, count, true);
        if (readsBack(lower) && readsBack(upper))
            return rounded(n.value, count);
        if (readsBack(lower))
            return lower;
        if (readsBack(upper))
            return upper;
    }
}

/// What dtoa gives in modes 0 to 9 for a finite value other than 0, which is written out
/// once for all of them.
class ExpectedDigits {
public:
    explicit ExpectedDigits(std::uint64_t bits)
        : m_near(neighbourhood(bits)), m_shortest(shortest(m_near, m_near.even)),
          m_strictlyShortest(shortest(m_near, false))
    {
    }

    ExactDecimal in(int mode, int ndigits) const
    {
        if (mode >= 6)
            mode -= 4;
        if (mode < 2)
            return mode == 0 ? m_shortest : m_strictlyShortest;
        const bool byPlaces = mode == 3 || mode == 5;
        const int wanted = ndigits < 1 && !byPlaces ? 1 : ndigits;
        if (mode >= 4) {
            const int length = static_cast<int>(m_shortest.digits.size());
            if ((byPlaces ? length - m_shortest.point : length) <= wanted)
                return m_shortest;
        }
        ExactDecimal r = rounded(m_near.value, byPlaces ? m_near.value.point + wanted : wanted);
        if (r.digits.empty())
            r.point = -wanted;
        return r;
    }

private:
    DoubleNeighbourhood m_near;
    ExactDecimal m_shortest, m_strictlyShortest;
};

inline ExactDecimal expectedDigits(std::uint64_t bits, int mode, int ndigits)
{
    return ExpectedDigits(bits).in(mode, ndigits);
}

/// The bits of the double nearest to `x`, ties to even, by halving the range of all bits.
inline std::uint64_t nearestDouble(const ExactDecimal& x)
{
    // The largest pattern whose lower middle is not above x; the bits of infinity are the
    // upper end, as for them the middle is the bound of overflow.
    std::uint64_t low = 0, high = std::uint64_t{0x7FF} << 52;
    while (low < high) {
        const std::uint64_t middle = low + (high - low + 1) / 2;
        const DoubleNeighbourhood n = neighbourhood(middle - 1);
        const int order = compare(n.above, x);
        const bool takes = order < 0 || (order == 0 && middle % 2 == 0);
        if (takes)
            low = middle;
        else
            high = middle - 1;
    }
    return low;
}

#endif
