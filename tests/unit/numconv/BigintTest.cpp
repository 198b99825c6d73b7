#include "TvGdImpl.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

struct Free {
    void operator()(Bigint* b) const { TvGdImpl::Bfree(b); }
};
using Number = std::unique_ptr<Bigint, Free>;
using Words = std::vector<unsigned>;

Number number(const Words& words)
{
    int k = 0;
    while (std::size_t{1} << k < words.size())
        ++k;
    Bigint* b = TvGdImpl::Balloc(k);
    for (std::size_t i = 0; i < words.size(); ++i)
        b->x[i] = words[i];
    b->wds = static_cast<int>(words.size());
    return Number(b);
}

Words wordsOf(const Bigint* b) { return Words(b->x, b->x + b->wds); }
Words wordsOf(const Number& b) { return wordsOf(b.get()); }

TEST(BigintLayout, FieldsStandInThePublishedOrder)
{
    EXPECT_EQ(offsetof(Bigint, next), 0u);
    EXPECT_EQ(offsetof(Bigint, k), 8u);
    EXPECT_EQ(offsetof(Bigint, maxwds), 12u);
    EXPECT_EQ(offsetof(Bigint, sign), 16u);
    EXPECT_EQ(offsetof(Bigint, wds), 20u);
    EXPECT_EQ(offsetof(Bigint, x), 24u);
    EXPECT_EQ(sizeof(Bigint), 32u);
}

TEST(Bigint, BallocClearsSignAndCount)
{
    const Number b(TvGdImpl::Balloc(3));
    EXPECT_EQ(b->k, 3);
    EXPECT_EQ(b->maxwds, 8);
    EXPECT_EQ(b->sign, 0);
    EXPECT_EQ(b->wds, 0);
}

TEST(Bigint, I2bIsOneWord) { EXPECT_EQ(wordsOf(Number(TvGdImpl::i2b(625))), Words{625}); }

TEST(Bigint, MultaddMultipliesAndAdds)
{
    EXPECT_EQ(wordsOf(Number(TvGdImpl::multadd(TvGdImpl::i2b(7), 10, 3))), Words{73});
}

TEST(Bigint, MultaddByZeroIsOneWord)
{
    EXPECT_EQ(wordsOf(Number(TvGdImpl::multadd(number({5, 6}).release(), 0, 7))), Words{7});
}

TEST(Bigint, MultaddCarriesIntoANewWord)
{
    EXPECT_EQ(wordsOf(Number(TvGdImpl::multadd(number({0xFFFFFFFF}).release(), 10, 9))),
              (Words{0xFFFFFFFF, 9}));
}

TEST(Bigint, MultaddTakesALargerBlockWhenFull)
{
    const Number b(TvGdImpl::multadd(number({0, 0xFFFFFFFF}).release(), 16, 0));
    EXPECT_EQ(wordsOf(b), (Words{0, 0xFFFFFFF0, 15}));
    EXPECT_EQ(b->k, 2);
}

TEST(Bigint, NullGoesThroughEveryChain)
{
    EXPECT_EQ(TvGdImpl::multadd(nullptr, 10, 0), nullptr);
    EXPECT_EQ(TvGdImpl::pow5mult(nullptr, 300), nullptr);
    EXPECT_EQ(TvGdImpl::lshift(nullptr, 3), nullptr);
    EXPECT_EQ(TvGdImpl::mult(nullptr, nullptr), nullptr);
    EXPECT_EQ(TvGdImpl::diff(nullptr, nullptr), nullptr);
    TvGdImpl::Bfree(nullptr);
}

TEST(Bigint, HighZeroBitsAreCounted)
{
    EXPECT_EQ(TvGdImpl::hi0bits(0), 32);
    EXPECT_EQ(TvGdImpl::hi0bits(1), 31);
    EXPECT_EQ(TvGdImpl::hi0bits(0x00FFFFFF), 8);
    EXPECT_EQ(TvGdImpl::hi0bits(0xFFFFFFFF), 0);
}

struct LowBitsCase {
    unsigned before, after;
    int bits;
};

TEST(Bigint, LowZeroBitsAreShiftedOut)
{
    for (const LowBitsCase& c : {LowBitsCase{0, 0, 32}, {1, 1, 0}, {12, 3, 2}, {0x80000000, 1, 31}}) {
        unsigned word = c.before;
        EXPECT_EQ(TvGdImpl::lo0bits(&word), c.bits);
        EXPECT_EQ(word, c.after);
    }
}

TEST(Bigint, MultIsTheProduct)
{
    const Number a = number({0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF});
    const Number b = number({0xFFFFFFFF, 0xFFFFFFFF});
    const Words product = {1, 0, 0xFFFFFFFF, 0xFFFFFFFE, 0xFFFFFFFF};
    EXPECT_EQ(wordsOf(Number(TvGdImpl::mult(a.get(), b.get()))), product);
    EXPECT_EQ(wordsOf(Number(TvGdImpl::mult(b.get(), a.get()))), product);
    EXPECT_EQ(wordsOf(a), (Words{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF}));
}

TEST(Bigint, MultByZeroIsZero)
{
    const Number a = number({5, 6}), zero = number({0});
    EXPECT_EQ(wordsOf(Number(TvGdImpl::mult(a.get(), zero.get()))), Words{0});
}

Words powerOfFive(int e)
{
    Words words{1};
    for (; e > 0; --e) {
        std::uint64_t carry = 0;
        for (unsigned& word : words) {
            carry += std::uint64_t{word} * 5;
            word = static_cast<unsigned>(carry);
            carry >>= 32;
        }
        if (carry)
            words.push_back(static_cast<unsigned>(carry));
    }
    return words;
}

TEST(Bigint, Pow5multIsRightForEveryExponentOfTheChain)
{
    for (int e = 0; e < 512; ++e)
        ASSERT_EQ(wordsOf(Number(TvGdImpl::pow5mult(TvGdImpl::i2b(1), e))), powerOfFive(e)) << e;
}

TEST(Bigint, Pow5multIsRightBeyondTheChain)
{
    for (const int e : {512, 513, 767, 768, 1023, 1024, 1100, 2000})
        ASSERT_EQ(wordsOf(Number(TvGdImpl::pow5mult(TvGdImpl::i2b(1), e))), powerOfFive(e)) << e;
}

TEST(Bigint, Pow5multLeavesTheNumberForNegativeExponents)
{
    EXPECT_EQ(wordsOf(Number(TvGdImpl::pow5mult(TvGdImpl::i2b(3), -1))), Words{3});
}

TEST(Bigint, TheChainHoldsSevenPowersOfFive)
{
    int e = 4;
    for (const Bigint* b = G_Pow5Data; b; b = b->next, e *= 2)
        EXPECT_EQ(wordsOf(b), powerOfFive(e)) << e;
    EXPECT_EQ(e, 512);
}

TEST(Bigint, LshiftMovesBitsAndWords)
{
    EXPECT_EQ(wordsOf(Number(TvGdImpl::lshift(TvGdImpl::i2b(5), 0))), Words{5});
    EXPECT_EQ(wordsOf(Number(TvGdImpl::lshift(TvGdImpl::i2b(5), 1))), Words{10});
    EXPECT_EQ(wordsOf(Number(TvGdImpl::lshift(TvGdImpl::i2b(5), 32))), (Words{0, 5}));
    EXPECT_EQ(wordsOf(Number(TvGdImpl::lshift(number({0x80000001}).release(), 33))), (Words{0, 2, 1}));
    EXPECT_EQ(wordsOf(Number(TvGdImpl::lshift(TvGdImpl::i2b(5), -4))), Words{5});
}

TEST(Bigint, CmpComparesLengthThenWordsFromTheTop)
{
    const Number small = number({9, 1}), large = number({8, 2}), longer = number({0, 0, 1});
    EXPECT_LT(TvGdImpl::cmp(small.get(), large.get()), 0);
    EXPECT_GT(TvGdImpl::cmp(large.get(), small.get()), 0);
    EXPECT_GT(TvGdImpl::cmp(longer.get(), large.get()), 0);
    EXPECT_EQ(TvGdImpl::cmp(large.get(), large.get()), 0);
}

TEST(Bigint, DiffIsTheDistanceWithItsSign)
{
    const Number a = number({0, 0, 1}), b = number({1});
    const Number positive(TvGdImpl::diff(a.get(), b.get()));
    const Number negative(TvGdImpl::diff(b.get(), a.get()));
    EXPECT_EQ(wordsOf(positive), (Words{0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(positive->sign, 0);
    EXPECT_EQ(wordsOf(negative), wordsOf(positive));
    EXPECT_EQ(negative->sign, 1);
}

TEST(Bigint, DiffOfEqualNumbersIsZero)
{
    const Number a = number({7, 7});
    const Number zero(TvGdImpl::diff(a.get(), a.get()));
    EXPECT_EQ(wordsOf(zero), Words{0});
    EXPECT_EQ(zero->sign, 0);
}

struct UlpCase {
    double value, ulp;
};

TEST(Bigint, UlpIsTheDistanceToTheNextDouble)
{
    const UlpCase cases[] = {
        {1.0, 0x1p-52},         {-1.0, 0x1p-52},        {1.5, 0x1p-52},
        {2.0, 0x1p-51},         {0.0, 0x1p-1074},       {5e-324, 0x1p-1074},
        {0x1p-1022, 0x1p-1074}, {0x1p-1021, 0x1p-1073}, {0x1p-971, 0x1p-1023},
        {0x1p-970, 0x1p-1022},  {0x1p-969, 0x1p-1021},  {0x1.fffffffffffffp1023, 0x1p971},
    };
    for (const UlpCase& c : cases)
        EXPECT_EQ(TvGdImpl::ulp(c.value), c.ulp) << c.value;
}

TEST(Bigint, B2dTakesTheLeadingBits)
{
    int e = 0;
    EXPECT_EQ(TvGdImpl::b2d(number({1}).get(), &e), 1.0);
    EXPECT_EQ(e, 1);
    EXPECT_EQ(TvGdImpl::b2d(number({0, 0xC0000000}).get(), &e), 1.5);
    EXPECT_EQ(e, 32);
    EXPECT_EQ(TvGdImpl::b2d(number({0xFFFFFFFF, 0xFFFFFFFF, 1}).get(), &e), 0x1.fffffffffffffp0);
    EXPECT_EQ(e, 1);
    EXPECT_EQ(TvGdImpl::b2d(number({0x80000000, 0, 0x10}).get(), &e), 1 + 0x1p-37);
    EXPECT_EQ(e, 5);
    EXPECT_EQ(TvGdImpl::b2d(number({0x80000000, 0, 0x1000}).get(), &e), 1 + 0x1p-45);
    EXPECT_EQ(e, 13);
}

struct D2bCase {
    double value;
    Words words;
    int e, bits;
};

TEST(Bigint, D2bIsAnOddNumberTimesAPowerOfTwo)
{
    const D2bCase cases[] = {
        {1.0, {1}, 0, 1},
        {-12.0, {3}, 2, 2},
        {0.1, {0xCCCCCCCD, 0xCCCCC}, -55, 52},
        {5e-324, {1}, -1074, 1},
        {0x1.fffffffffffffp1023, {0xFFFFFFFF, 0x1FFFFF}, 971, 53},
        {4294967297.0, {1, 1}, 0, 33},
        {0.0, {0}, -1074, 0},
    };
    for (const D2bCase& c : cases) {
        int e = 0, bits = 0;
        EXPECT_EQ(wordsOf(Number(TvGdImpl::d2b(c.value, &e, &bits))), c.words) << c.value;
        EXPECT_EQ(e, c.e) << c.value;
        EXPECT_EQ(bits, c.bits) << c.value;
    }
}

struct S2bCase {
    const char* text;
    int nd0, nd;
    unsigned y9;
    Words words;
};

// 12345678901234567890 = 0xAB54A98C EB1F0AD2.
const S2bCase kS2bCases[] = {
    {"1234", 4, 4, 1234, {1234}},
    {"12.34", 2, 4, 1234, {1234}},
    {"1234567890", 10, 10, 123456789, {1234567890}},
    {"12345678.90", 8, 10, 123456789, {1234567890}},
    {"123456789.0", 9, 10, 123456789, {1234567890}},
    {"1234567890.", 10, 10, 123456789, {1234567890}},
    {"12345678901234567890", 20, 20, 123456789, {0xEB1F0AD2, 0xAB54A98C}},
    {"123456789012.34567890", 12, 20, 123456789, {0xEB1F0AD2, 0xAB54A98C}},
};

TEST(Bigint, S2bReadsDigitsAroundAPoint)
{
    for (const S2bCase& c : kS2bCases)
        EXPECT_EQ(wordsOf(Number(TvGdImpl::s2b(c.text, c.nd0, c.nd, c.y9))), c.words) << c.text;
}

TEST(Bigint, S2bReadsWideDigitsAlike)
{
    for (const S2bCase& c : kS2bCases) {
        const std::wstring text(c.text, c.text + std::strlen(c.text));
        EXPECT_EQ(wordsOf(Number(TvGdImpl::s2b(text.c_str(), c.nd0, c.nd, c.y9))), c.words) << c.text;
    }
}

TEST(Bigint, RatioDividesTheLeadingBits)
{
    const Number three = number({3}), two = number({2}), large = number({0, 0, 0, 3});
    EXPECT_EQ(TvGdImpl::ratio(three.get(), two.get()), 1.5);
    EXPECT_EQ(TvGdImpl::ratio(large.get(), two.get()), 0x1.8p96);
    EXPECT_EQ(TvGdImpl::ratio(two.get(), large.get()), 0x1p-95 / 3);
}

TEST(Bigint, CopybitsFillsWholeWords)
{
    unsigned words[3] = {7, 7, 7};
    TvGdImpl::copybits(words, 33, number({5}).get());
    EXPECT_EQ(words[0], 5u);
    EXPECT_EQ(words[1], 0u);
    EXPECT_EQ(words[2], 7u);
}

TEST(Bigint, CopybitsStopsAtTheBitsAskedFor)
{
    unsigned words[2] = {7, 7};
    TvGdImpl::copybits(words, 32, number({5, 6}).get());
    EXPECT_EQ(words[0], 5u);
    EXPECT_EQ(words[1], 7u);
    TvGdImpl::copybits(words, 0, number({9}).get());
    EXPECT_EQ(words[0], 5u);
}

TEST(Bigint, AnyOnLooksAtTheLowBits)
{
    const Number b = number({0, 0x10});
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 0), 0);
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 32), 0);
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 36), 0);
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 37), 1);
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 64), 1);
    EXPECT_EQ(TvGdImpl::any_on(b.get(), 1000), 1);
    EXPECT_EQ(TvGdImpl::any_on(number({1}).get(), 1), 1);
}

TEST(Bigint, QuoremLeavesTheRemainder)
{
    // 28 bits in the divisor's top word.
    const Words divisor = {0x12345678, 0x0FFFFFFF};
    for (int q = 0; q < 16; ++q) {
        Number s = number(divisor);
        Number b(TvGdImpl::multadd(number(divisor).release(), q, 77));
        EXPECT_EQ(TvGdImpl::quorem(b.get(), s.get()), q);
        EXPECT_EQ(wordsOf(b), Words{77});
    }
}

TEST(Bigint, QuoremOfOneLessThanTheDivisorIsZero)
{
    Number s = number({0, 0x08000000}), b = number({0xFFFFFFFF, 0x07FFFFFF});
    EXPECT_EQ(TvGdImpl::quorem(b.get(), s.get()), 0);
    EXPECT_EQ(wordsOf(b), (Words{0xFFFFFFFF, 0x07FFFFFF}));
}

TEST(Bigint, QuoremTakesADivisorWhoseTopWordIsFull)
{
    const Words divisor = {5, 0xFFFFFFFF};
    Number s = number(divisor), below = number({4, 0xFFFFFFFF}), above = number({9, 0xFFFFFFFF});
    EXPECT_EQ(TvGdImpl::quorem(below.get(), s.get()), 0);
    EXPECT_EQ(wordsOf(below), (Words{4, 0xFFFFFFFF}));
    EXPECT_EQ(TvGdImpl::quorem(above.get(), s.get()), 1);
    EXPECT_EQ(wordsOf(above), Words{4});
    EXPECT_EQ(wordsOf(s), divisor);
}

TEST(DigitString, CarriesItsSizeClassInFront)
{
    // A block of class k has room for 24 + 4 * 2^k bytes of text.
    const int lengths[] = {0, 27, 28, 31, 32, 39, 40, 55, 56, 800};
    const int classes[] = {0, 0, 1, 1, 2, 2, 3, 3, 4, 8};
    for (int i = 0; i < 10; ++i) {
        char* text = TvGdImpl::rv_alloc(lengths[i]);
        int k = -1;
        std::memcpy(&k, text - 4, sizeof k);
        EXPECT_EQ(k, classes[i]) << lengths[i];
        std::memset(text, 'x', static_cast<std::size_t>(lengths[i]) + 1);
        TvGdImpl::freedtoa(text);
    }
}

TEST(DigitString, CopyOfAFixedText)
{
    char* end = nullptr;
    char* text = TvGdImpl::nrv_alloc("Infinity", &end, 8);
    EXPECT_STREQ(text, "Infinity");
    EXPECT_EQ(end, text + 8);
    TvGdImpl::freedtoa(text);
}

TEST(DigitString, CopyHasRoomForItsTextWhateverIsAsked)
{
    const std::string longText(100, '7');
    char* text = TvGdImpl::nrv_alloc(longText.c_str(), nullptr, -1);
    EXPECT_EQ(text, longText);
    TvGdImpl::freedtoa(text);
}

TEST(DigitString, StrcpAnswersTheTerminator)
{
    char text[8] = "zzzzzzz";
    EXPECT_EQ(TvGdImpl::strcp(text, "abc"), text + 3);
    EXPECT_STREQ(text, "abc");
}

TEST(DigitString, NullMayBeFreed) { TvGdImpl::freedtoa(nullptr); }

} // namespace
