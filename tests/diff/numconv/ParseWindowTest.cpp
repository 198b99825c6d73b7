// A window of characters at once against reading one character after the other, and the
// product with half a power against the product with all of it.
#include "numconv/DecimalByProduct.h"
#include "numconv/DecimalScan.h"
#include "numconv/DecimalWindow.h"

#include "TvNumber.h"

#include "DoublePatterns.h"
#include "GuardPage.h"
#include "NumberText.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

// Mantissas of digits and points, and what may stand behind them.
std::string randomText(RandomDoubles& random, std::size_t longest)
{
    static const char* const behind[] = {"",  "e5", "E-7", "e",    "x",    " ",     "/",
                                         ":", ".",  ".5",  "\xB0", "\xFF", "1e+300"};
    std::string text(random.bits() % 4 == 0 ? random.bits() % 6 : 0, '0');
    for (std::size_t n = random.bits() % (longest + 1); n > 0; --n)
        text += static_cast<char>('0' + (random.bits() % 8 == 0 ? 9 : random.bits() % 10));
    if (random.bits() % 4 != 0)
        text.insert(random.bits() % (text.size() + 1), ".");
    return text + behind[random.bits() % (sizeof behind / sizeof *behind)];
}

std::wstring widened(const std::string& text)
{
    std::wstring wide;
    for (const char c : text)
        wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return wide;
}

// The window of the text, with what follows the terminator or without it.
template<class Char>
void expectSameAsScan(const std::basic_string<Char>& text, const DecimalWindow& window,
                      const std::string& shown)
{
    const DecimalText<Char> scanned = scanDecimal(text.c_str());
    WindowNumber number;
    if (!readWindow(text.c_str(), window, number)) {
        const std::size_t digits = static_cast<std::size_t>(scanned.digitsEnd - scanned.digits);
        ASSERT_TRUE(!scanned.end || digits > 17) << shown;
        return;
    }
    ASSERT_NE(scanned.end, nullptr) << shown;
    ASSERT_EQ(text.c_str() + number.length, scanned.digitsEnd) << shown;
    ASSERT_FALSE(scanned.cut) << shown;
    if (scanned.leading == 0) {
        ASSERT_EQ(number.leading, 0u) << shown;
        return;
    }
    int exponent = 0;
    if ((*scanned.digitsEnd | 0x20) == 'e')
        scanExponent(scanned.digitsEnd, exponent);
    // The window may have appended zeros.
    std::uint64_t leading = scanned.leading;
    std::int64_t power = scanned.power - exponent;
    for (; power > number.power; --power)
        leading *= 10;
    ASSERT_EQ(power, number.power) << shown;
    ASSERT_EQ(leading, number.leading) << shown;
}

template<class Char>
void expectSame(std::basic_string<Char> text, const std::string& shown)
{
    ASSERT_NO_FATAL_FAILURE(expectSameAsScan(text, windowOfCopy(text.c_str()), shown));
    // Digits behind the terminator do not count.
    Char room[96];
    for (Char& c : room)
        c = Char('7');
    std::copy_n(text.c_str(), std::min<std::size_t>(text.size() + 1, 64), room);
    ASSERT_NO_FATAL_FAILURE(expectSameAsScan(text, windowAt(room), shown));
}

TEST(ParseWindow, ReadsWhatTheScanReads)
{
    const std::uint64_t seed = testSeed(20271);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    for (long i = scaled(200000); i > 0; --i) {
        const std::string text = randomText(random, 26);
        ASSERT_NO_FATAL_FAILURE(expectSame(text, text)) << "seed " << seed;
        ASSERT_NO_FATAL_FAILURE(expectSame(widened(text), text)) << "seed " << seed;
    }
}

TEST(ParseWindow, EveryPlaceOfThePointInEveryLength)
{
    for (std::size_t length = 0; length <= 40; ++length) {
        for (const char digit : {'0', '1', '9'}) {
            for (std::size_t point = 0; point <= length; ++point) {
                std::string text(length, digit);
                text.insert(point, ".");
                ASSERT_NO_FATAL_FAILURE(expectSame(text, text));
                ASSERT_NO_FATAL_FAILURE(expectSame(widened(text), text));
            }
            const std::string whole(length, digit);
            ASSERT_NO_FATAL_FAILURE(expectSame(whole, whole));
            ASSERT_NO_FATAL_FAILURE(expectSame(widened(whole), whole));
        }
    }
}

TEST(ParseWindow, EveryOtherCharacterEndsTheDigits)
{
    for (unsigned c = 1; c < 256; ++c) {
        if (c >= '0' && c <= '9')
            continue;
        const std::string text = std::string("12") + static_cast<char>(c) + "34";
        ASSERT_NO_FATAL_FAILURE(expectSame(text, text));
        ASSERT_NO_FATAL_FAILURE(expectSame(widened(text), text));
    }
}

// Each text ends right in front of memory that must not be read.
template<class Char>
void expectNoReadBehind(const std::basic_string<Char>& text, GuardedArray<Char>& guarded)
{
    const Char* held = guarded.hold(text.c_str(), text.size() + 1);
    Char *end = nullptr, *heldEnd = nullptr;
    const double expected = tvStrToD(text.c_str(), &end);
    ASSERT_EQ(bitsOf(tvStrToD(held, &heldEnd)), bitsOf(expected));
    ASSERT_EQ(heldEnd - held, end - text.c_str());
}

TEST(ParseWindow, TextAtTheEndOfReadableMemory)
{
    GuardedArray<char> narrow(4096);
    GuardedArray<wchar_t> wide(1024);
    RandomDoubles random(20272);
    for (int i = 0; i < 5000; ++i) {
        const std::string text = (i % 3 ? "" : " -") + randomText(random, 48);
        ASSERT_NO_FATAL_FAILURE(expectNoReadBehind(text, narrow)) << text;
        ASSERT_NO_FATAL_FAILURE(expectNoReadBehind(widened(text), wide)) << text;
    }
}

TEST(ParseWindow, UpperProductAgreesWithTheWholeOne)
{
    const std::uint64_t seed = testSeed(20273);
    RecordProperty("seed", std::to_string(seed));
    RandomDoubles random(seed);
    long told = 0;
    const long rounds = scaled(500000);
    for (long i = rounds; i > 0; --i) {
        const std::uint64_t leading = (random.bits() >> random.bits() % 64) | 1;
        const int power = static_cast<int>(random.bits() % 700) - 350;
        std::uint64_t upper = 0, whole = 0;
        if (!doubleByUpperProduct(leading, power, upper))
            continue;
        ++told;
        ASSERT_TRUE(doubleByProduct(leading, power, false, whole)) << leading << "e" << power;
        ASSERT_EQ(upper, whole) << leading << "e" << power << " seed " << seed;
    }
    EXPECT_GT(told, rounds / 2);
}

} // namespace
