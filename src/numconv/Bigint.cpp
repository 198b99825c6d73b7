// Arithmetic on big natural numbers.
#include "TvGdImpl.h"

#include <cstdint>
#include <cstring>
#include <utility>

namespace {

// Cuts zero words off the top; zero keeps one.
void trim(Bigint* b)
{
    while (b->wds > 1 && b->x[b->wds - 1] == 0)
        --b->wds;
}

// The same number in a block of the next size class.
Bigint* enlarge(Bigint* b)
{
    Bigint* larger = TvGdImpl::Balloc(b->k + 1);
    if (larger) {
        larger->sign = b->sign;
        larger->wds = b->wds;
        std::memcpy(larger->x, b->x, static_cast<std::size_t>(b->wds) * sizeof b->x[0]);
    }
    TvGdImpl::Bfree(b);
    return larger;
}

// b times `power`, taking b over.
Bigint* times(Bigint* b, Bigint* power)
{
    Bigint* product = TvGdImpl::mult(b, power);
    TvGdImpl::Bfree(b);
    return product;
}

template<class Char>
Bigint* digitsToBigint(const Char* s, int nd0, int nd, unsigned int y9)
{
    // A word for each nine digits, as 10^9 < 2^32.
    int k = 0;
    while ((std::int64_t{1} << k) * 9 < nd)
        ++k;
    Bigint* b = TvGdImpl::Balloc(k);
    if (!b)
        return nullptr;
    b->x[0] = y9;
    b->wds = 1;
    for (int i = 9; i < nd && b; ++i) {
        const Char* digit = s + i + (i >= nd0 ? 1 : 0);
        b = TvGdImpl::multadd(b, 10, static_cast<int>(*digit - Char('0')));
    }
    return b;
}

} // namespace

Bigint* TvGdImpl::Balloc(int k) { return tvFCvtAllocator().Alloc(k); }

void TvGdImpl::Bfree(Bigint* b) { tvFCvtAllocator().Free(b); }

Bigint* TvGdImpl::multadd(Bigint* b, int m, int a)
{
    if (!b)
        return nullptr;
    std::uint64_t carry = static_cast<unsigned>(a);
    for (int i = 0; i < b->wds; ++i) {
        carry += std::uint64_t{b->x[i]} * static_cast<unsigned>(m);
        b->x[i] = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
    if (carry == 0) {
        trim(b); // for m = 0
        return b;
    }
    if (b->wds == b->maxwds && !(b = enlarge(b)))
        return nullptr;
    b->x[b->wds++] = static_cast<std::uint32_t>(carry);
    return b;
}

int TvGdImpl::hi0bits(unsigned int word) { return word ? __builtin_clz(word) : 32; }

int TvGdImpl::lo0bits(unsigned int* word)
{
    if (*word == 0)
        return 32;
    const int bits = __builtin_ctz(*word);
    *word >>= bits;
    return bits;
}

// Class 1 although one word would do: most of these numbers grow at once.
Bigint* TvGdImpl::i2b(int i)
{
    Bigint* b = Balloc(1);
    if (b) {
        b->x[0] = static_cast<unsigned>(i);
        b->wds = 1;
    }
    return b;
}

Bigint* TvGdImpl::mult(Bigint* a, Bigint* b)
{
    if (!a || !b)
        return nullptr;
    if (a->wds < b->wds)
        std::swap(a, b);
    const int words = a->wds + b->wds;
    Bigint* product = Balloc(words > a->maxwds ? a->k + 1 : a->k);
    if (!product)
        return nullptr;
    std::memset(product->x, 0, static_cast<std::size_t>(words) * sizeof product->x[0]);
    for (int i = 0; i < b->wds; ++i) {
        const std::uint64_t factor = b->x[i];
        std::uint64_t carry = 0;
        for (int j = 0; j < a->wds; ++j) {
            carry += factor * a->x[j] + product->x[i + j];
            product->x[i + j] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        product->x[i + a->wds] = static_cast<std::uint32_t>(carry);
    }
    product->wds = words;
    trim(product);
    return product;
}

Bigint* TvGdImpl::pow5mult(Bigint* b, int e)
{
    static const int smallPowers[] = {1, 5, 25, 125};
    if (e <= 0)
        return b;
    if (!G_Pow5Data) {
        // Before the library is loaded and after it was unloaded there is no chain.
        for (; e >= 13; e -= 13)
            b = multadd(b, 1220703125, 0);
        for (; e > 0; --e)
            b = multadd(b, 5, 0);
        return b;
    }
    if (e & 3)
        b = multadd(b, smallPowers[e & 3], 0);
    // Bit i of `rest` stands for 5^(4 * 2^i); the last link serves all higher bits.
    Bigint* power = G_Pow5Data;
    int rest = e >> 2;
    for (; power->next; power = power->next, rest >>= 1) {
        if (rest & 1)
            b = times(b, power);
    }
    while (b && rest-- > 0)
        b = times(b, power);
    return b;
}

Bigint* TvGdImpl::lshift(Bigint* b, int bits)
{
    if (!b || bits <= 0)
        return b;
    const int words = bits >> 5;
    const int within = bits & 31;
    const std::int64_t needed = std::int64_t{b->wds} + words + 1;
    int k = b->k;
    while ((std::int64_t{1} << k) < needed)
        ++k;
    Bigint* shifted = Balloc(k);
    if (shifted) {
        std::memset(shifted->x, 0, static_cast<std::size_t>(words) * sizeof shifted->x[0]);
        std::uint64_t carry = 0;
        for (int i = 0; i < b->wds; ++i) {
            carry |= std::uint64_t{b->x[i]} << within;
            shifted->x[words + i] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        shifted->x[words + b->wds] = static_cast<std::uint32_t>(carry);
        shifted->wds = words + b->wds + 1;
        trim(shifted);
    }
    Bfree(b);
    return shifted;
}

int TvGdImpl::cmp(Bigint* a, Bigint* b)
{
    if (a->wds != b->wds)
        return a->wds < b->wds ? -1 : 1;
    for (int i = a->wds; i-- > 0;) {
        if (a->x[i] != b->x[i])
            return a->x[i] < b->x[i] ? -1 : 1;
    }
    return 0;
}

Bigint* TvGdImpl::diff(Bigint* a, Bigint* b)
{
    if (!a || !b)
        return nullptr;
    const bool negative = cmp(a, b) < 0;
    if (negative)
        std::swap(a, b);
    Bigint* d = Balloc(a->k);
    if (!d)
        return nullptr;
    std::uint64_t borrow = 0;
    for (int i = 0; i < a->wds; ++i) {
        const std::uint64_t y = std::uint64_t{a->x[i]} - (i < b->wds ? b->x[i] : 0) - borrow;
        d->x[i] = static_cast<std::uint32_t>(y);
        borrow = y >> 63;
    }
    d->wds = a->wds;
    d->sign = negative;
    trim(d);
    return d;
}

Bigint* TvGdImpl::s2b(const char* s, int nd0, int nd, unsigned int y9)
{
    return digitsToBigint(s, nd0, nd, y9);
}

Bigint* TvGdImpl::s2b(const wchar_t* s, int nd0, int nd, unsigned int y9)
{
    return digitsToBigint(s, nd0, nd, y9);
}

void TvGdImpl::copybits(unsigned int* words, int n, Bigint* b)
{
    const int count = n > 0 ? ((n - 1) >> 5) + 1 : 0;
    for (int i = 0; i < count; ++i)
        words[i] = i < b->wds ? b->x[i] : 0;
}

int TvGdImpl::any_on(Bigint* b, int k)
{
    if (k <= 0)
        return 0;
    int words = k >> 5;
    if (words >= b->wds)
        words = b->wds;
    else if ((k & 31) && (b->x[words] & ((1u << (k & 31)) - 1)))
        return 1;
    while (words-- > 0) {
        if (b->x[words])
            return 1;
    }
    return 0;
}

int TvGdImpl::quorem(Bigint* b, Bigint* S)
{
    const int n = S->wds;
    if (b->wds < n)
        return 0;
    // Never too large, and at most one too small for a top word of 28 bits.
    auto q = static_cast<std::uint32_t>(b->x[n - 1] / (std::uint64_t{S->x[n - 1]} + 1));
    const auto subtract = [&](std::uint64_t factor) {
        std::uint64_t carry = 0, borrow = 0;
        for (int i = 0; i < n; ++i) {
            carry += factor * S->x[i];
            const std::uint64_t y = std::uint64_t{b->x[i]} - static_cast<std::uint32_t>(carry) - borrow;
            b->x[i] = static_cast<std::uint32_t>(y);
            carry >>= 32;
            borrow = y >> 63;
        }
        b->wds = n;
        trim(b);
    };
    if (q)
        subtract(q);
    if (cmp(b, S) >= 0) {
        ++q;
        subtract(1);
    }
    return static_cast<int>(q);
}

void TvGdImpl::initPow5Data()
{
    if (G_Pow5Data)
        return;
    Bigint* first = i2b(625);
    Bigint* last = first;
    for (int squarings = 0; squarings < 6 && last; ++squarings) {
        last->next = mult(last, last);
        last = last->next;
    }
    if (last) {
        last->next = nullptr;
        G_Pow5Data = first;
        return;
    }
    // Memory ran out: pow5mult works without the chain.
    while (first) {
        Bigint* next = first->next;
        Bfree(first);
        first = next;
    }
}
