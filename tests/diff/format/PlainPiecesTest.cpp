// The pieces of formats that are written at once against the ways through digits, binary128 and
// parsed conversions.
#include "format/FixedText.h"
#include "format/OutputPlain.h"
#include "format/RealText.h"

#include "TvFormat.h"

#include "DoublePatterns.h"
#include "GuardPage.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace TvFormatDetail;

namespace {

#ifdef TV_FORMAT_BY_SSE2

constexpr std::size_t kRoom = 64;

// Calls `put(buffer)`, which returns a length: the text, which a 0 and then nothing follows.
template<class Put>
std::wstring writtenBy(Put put)
{
    wchar_t buffer[kRoom + 1] = {};
    std::wmemset(buffer, L'#', kRoom);
    const auto length = static_cast<std::size_t>(put(buffer));
    EXPECT_EQ(buffer[length], L'\0');
    EXPECT_EQ(std::wcsspn(buffer + length + 1, L"#"), kRoom - length - 1) << "behind " << length;
    return {buffer, length};
}

void expectSameInteger(std::uint32_t value)
{
    wchar_t expected[kIntegerTextRoom];
    const auto length = static_cast<std::size_t>(signedText(expected, value));
    ASSERT_EQ(writtenBy([=](wchar_t* out) { return putSigned(out, value); }), std::wstring(expected, length));
}

TEST(PlainPieces, IntegersOfEveryLength)
{
    for (std::uint64_t power = 1; power < 10000000000; power *= 10) {
        for (std::uint64_t i = 0; i < 5; ++i) {
            expectSameInteger(static_cast<std::uint32_t>(power * 5 - i));
            expectSameInteger(static_cast<std::uint32_t>(power - i));
            expectSameInteger(static_cast<std::uint32_t>(0 - power + i));
            expectSameInteger(static_cast<std::uint32_t>(std::numeric_limits<int>::max()) +
                              static_cast<std::uint32_t>(i));
        }
    }
    for (std::uint32_t value = 0; value < 20000; ++value)
        expectSameInteger(value);
}

TEST(PlainPieces, RandomIntegers)
{
    std::mt19937_64 random(testSeed(41));
    for (long i = scaled(150000); i > 0; --i) {
        expectSameInteger(static_cast<std::uint32_t>(static_cast<int>(random()) >> random() % 32));
        if (testing::Test::HasFatalFailure())
            return;
    }
}

// Where fixedText() has an answer it is the one of binary128. Tells whether it had.
bool expectSameFixed(double value, int places)
{
    wchar_t expected[kRealTextRoom];
    realTextQuad(expected, value, L'f', places, false);
    wchar_t canary[kFixedTextRoom];
    if (fixedText(canary, value, places) == 0)
        return false;
    EXPECT_EQ(writtenBy([=](wchar_t* out) { return fixedText(out, value, places); }), expected)
        << std::hexfloat << value << " with " << places << " places";
    return true;
}

TEST(PlainPieces, FixedTextOfEdgeDoubles)
{
    for (const double value : edgeDoubles()) {
        for (int places = 0; places <= kFixedTextPlaces; ++places) {
            expectSameFixed(value, places);
            expectSameFixed(-value, places);
        }
        if (testing::Test::HasFailure())
            return;
    }
}

TEST(PlainPieces, FixedTextAroundHalvesAndCarries)
{
    std::mt19937_64 random(testSeed(42));
    for (long i = scaled(30000); i > 0; --i) {
        const int places = static_cast<int>(random() % (kFixedTextPlaces + 1));
        const double scale = std::pow(10.0, places);
        const double whole = static_cast<double>(random() % 100000000 >> random() % 27);
        const double units = random() % 2 ? scale - 0.5 : static_cast<double>(random() % 100000000) + 0.5;
        double value = whole + units / scale;
        for (int step = -2; step <= 2; ++step)
            expectSameFixed(step < 0 ? std::nextafter(value, 0.0) : value = std::nextafter(value, 1e308),
                            places);
        expectSameFixed(
            std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(26 + random() % 120)), places);
        if (testing::Test::HasFailure())
            return;
    }
}

TEST(PlainPieces, FixedTextOfDrawingCoordinates)
{
    std::mt19937_64 random(testSeed(43));
    long answered = 0;
    const long all = scaled(80000);
    for (long i = all; i > 0; --i) {
        const double decimals = static_cast<double>(random() % 10000000000) / 1e5;
        const double value = random() % 2 ? decimals : -std::sqrt(decimals) * 123.456;
        answered += expectSameFixed(value, static_cast<int>(random() % (kFixedTextPlaces + 1)));
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_GT(answered, all * 9 / 10); // the others end in a half
}

TEST(PlainPieces, FixedTextLeavesOthersAlone)
{
    wchar_t text[kFixedTextRoom];
    for (const double value : {99999999.0, 1e8, 1e300, HUGE_VAL, -HUGE_VAL, std::nan(""), 0.5, -2.5, 1234.5})
        EXPECT_EQ(fixedText(text, value, 0), 0) << value;
}

TEST(PlainPieces, ShortCopiesOverlapAndWriteNothingElse)
{
    for (int count = 1; count <= kShortText; ++count) {
        for (int from = 0; from < 40; ++from) {
            for (int to = 0; to < 40; ++to) {
                std::wstring expected;
                for (int i = 0; i < 64; ++i)
                    expected += static_cast<wchar_t>(L'A' + i);
                std::wstring got = expected;
                std::wmemmove(&expected[static_cast<std::size_t>(to)],
                              &expected[static_cast<std::size_t>(from)], static_cast<std::size_t>(count));
                copyShort(&got[static_cast<std::size_t>(to)], &got[static_cast<std::size_t>(from)], count);
                ASSERT_EQ(got, expected) << count << " from " << from << " to " << to;
            }
        }
    }
}

TEST(PlainPieces, PlacesOfACharacterAreThoseOfNoOther)
{
    const wchar_t others[] = {0x124,
                              0x10024,
                              0x100,
                              0x10000,
                              0x7FFFFFFF,
                              static_cast<wchar_t>(0x80000000),
                              static_cast<wchar_t>(0xFFFFFFFF),
                              0xFF24,
                              0x80,
                              1};
    for (const wchar_t other : others) {
        wchar_t text[kShortText];
        std::wmemset(text, other, kShortText);
        EXPECT_EQ(placesOf(text, 0), 0u);
        EXPECT_EQ(placesOf(text, '$'), 0u);
        for (int i = 0; i < kShortText; ++i) {
            text[i] = 0;
            EXPECT_EQ(placesOf(text, 0), 1u << i);
            text[i] = L'$';
            EXPECT_EQ(placesOf(text, '$'), 1u << i);
            text[i] = other;
        }
    }
}

#endif

// What a call leaves behind in a buffer of its capacity, up to the terminator.
struct Written {
    int result;
    std::wstring text;
    bool operator==(const Written&) const = default;
};

void PrintTo(const Written& written, std::ostream* out)
{
    *out << written.result << ' ' << testing::PrintToString(written.text);
}

// Every conversion takes its argument from the same places, whatever its kind.
struct Arguments {
    int integers[4];
    const wchar_t* texts[4];
    double reals[4];
};

// Writes pieces, three of them conversions: `%` stands where one is, and `kinds` tells which.
Written write(GuardedArray<wchar_t>& memory, int capacity, const wchar_t* format, const std::string& kinds,
              const Arguments& a)
{
    const std::vector<wchar_t> fill(static_cast<std::size_t>(capacity), L'#');
    auto* const buffer = const_cast<wchar_t*>(memory.hold(fill));
    const auto call = [&](auto... arguments) {
        const int result = FormatUtil::outputStringWithFormat(buffer, capacity, format, arguments...);
        return Written{result, capacity ? std::wstring(buffer) : std::wstring()};
    };
    const auto first = [&](auto... rest) {
        return kinds[0] == 'd'   ? call(a.integers[0], rest...)
               : kinds[0] == 's' ? call(a.texts[0], rest...)
                                 : call(a.reals[0], rest...);
    };
    const auto second = [&](auto... rest) {
        return kinds[1] == 'd'   ? first(a.integers[1], rest...)
               : kinds[1] == 's' ? first(a.texts[1], rest...)
                                 : first(a.reals[1], rest...);
    };
    return kinds[2] == 'd'   ? second(a.integers[2])
           : kinds[2] == 's' ? second(a.texts[2])
                             : second(a.reals[2]);
}

// A text whose terminator is followed by the end of readable memory, or by more of it.
const wchar_t* heldAtRandom(GuardedArray<wchar_t>& memory, std::wstring text, std::mt19937_64& random)
{
    const std::size_t length = text.size();
    text.resize(length + 1 + random() % 2 * (random() % 30), L'$');
    text[length] = 0;
    return memory.hold(text.c_str(), text.size());
}

// A pad of zeros without a width changes nothing, but is parsed.
TEST(PlainPieces, FormatsAreWrittenAsByParsing)
{
    static const wchar_t* const literals[] = {
        L"", L" ", L", ", L"x=", L"(", L"", L"|", L"door", L"%%", L"\t", L"a much longer piece of text"};
    std::mt19937_64 random(testSeed(44));
    GuardedArray<wchar_t> buffers(400);
    GuardedArray<wchar_t> formats(400);
    GuardedArray<wchar_t> texts[3] = {GuardedArray<wchar_t>(100), GuardedArray<wchar_t>(100),
                                      GuardedArray<wchar_t>(100)};
    for (long i = scaled(60000); i > 0; --i) {
        std::wstring plain;
        std::wstring parsed;
        std::string kinds;
        const auto both = [&](const std::wstring& text) {
            plain += text;
            parsed += text;
        };
        Arguments a{};
        for (std::size_t n = 0; n < 3; ++n) {
            const std::wstring literal = literals[random() % std::size(literals)];
            both(literal);
            plain += L'%';
            parsed += L"%0";
            switch (random() % 4) {
            case 0:
                both(random() % 2 ? L"d" : L"i");
                kinds += 'd';
                break;
            case 1:
                both(L"s");
                kinds += 's';
                break;
            case 2:
                both(L"f");
                kinds += 'f';
                break;
            default:
                both(L"." + std::to_wstring(random() % 10) + L"f");
                kinds += 'f';
                break;
            }
            a.integers[n] = static_cast<int>(random()) >> random() % 32;
            a.reals[n] = random() % 4 ? std::ldexp(static_cast<double>(static_cast<int>(random())),
                                                   -static_cast<int>(random() % 60))
                                      : std::bit_cast<double>(random());
            std::wstring text(random() % (random() % 4 ? 18 : 60), L'w');
            if (!text.empty() && random() % 4 == 0)
                text[random() % text.size()] = static_cast<wchar_t>(1 + random());
            a.texts[n] = random() % 32 ? heldAtRandom(texts[n], text, random) : nullptr;
        }
        both(literals[random() % 5]);
        const int capacity = static_cast<int>(random() % (random() % 2 ? 60 : 400));
        const Written expected = write(buffers, capacity, parsed.c_str(), kinds, a);
        const Written got = write(buffers, capacity, heldAtRandom(formats, plain, random), kinds, a);
        ASSERT_EQ(got, expected) << testing::PrintToString(plain) << " in " << capacity;
    }
}

TEST(PlainPieces, ArgumentBehindTheTextIsNotOverwritten)
{
    for (const wchar_t* format : {L"%d%s", L"%i%s"}) {
        wchar_t buffer[200] = L"0123456789";
        EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 200, format, 7, buffer + 2), 9);
        EXPECT_STREQ(buffer, L"723456789");
    }
    for (int places = 1; places <= 8; ++places) {
        wchar_t buffer[200] = L"abcdefghijklmnopqrstuvwxyz";
        const std::wstring format = L"%." + std::to_wstring(places) + L"f%s";
        const wchar_t* const behind = buffer + places + 3;
        const std::wstring kept = behind;
        const int length = FormatUtil::outputStringWithFormat(buffer, 200, format.c_str(), 1.0, behind);
        EXPECT_EQ(std::wstring(buffer), L"1." + std::wstring(static_cast<std::size_t>(places), L'0') + kept);
        EXPECT_EQ(static_cast<std::size_t>(length), std::wcslen(buffer));
    }
    for (const wchar_t* format : {L"%+.1f%s", L"%.1g%s"}) { // these are parsed
        wchar_t buffer[200] = L"abcdefghijklmnopqrstuvwxyz";
        EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 200, format, 1.5, buffer + 5) % 21,
                  3 + (format[1] == L'+'));
        EXPECT_EQ(std::wstring(buffer + std::wcslen(buffer) - 21), L"fghijklmnopqrstuvwxyz");
    }
    wchar_t buffer[200] = L"door 0123456789";
    EXPECT_EQ(FormatUtil::outputStringWithFormat(buffer, 200, L"%s%s", L"ab", buffer + 3), 14);
    EXPECT_STREQ(buffer, L"abr 0123456789");
}

// A `$` in any place of a long format makes its numbers count, and one behind the end does not.
TEST(PlainPieces, DollarsAreSeenInEveryPlace)
{
    GuardedArray<wchar_t> formats(200);
    wchar_t alone[200];
    EXPECT_EQ(FormatUtil::outputStringWithFormat(alone, 200, formats.hold(L"%$", 3)), 1);
    EXPECT_STREQ(alone, L"$");
    for (std::size_t before = 0; before < 70; ++before) {
        const std::wstring text(before, L'-');
        wchar_t buffer[200];
        const std::wstring numbered = text + L"%2$d";
        FormatUtil::outputStringWithFormat(buffer, 200, formats.hold(numbered.c_str(), numbered.size() + 1),
                                           1, 2);
        EXPECT_EQ(std::wstring(buffer), text + L"1"); // the number left out takes no argument
        std::wstring cut = text + L"%d";
        cut += L'\0';
        cut += L"%2$d";
        FormatUtil::outputStringWithFormat(buffer, 200, cut.c_str(), 1, 2);
        EXPECT_EQ(std::wstring(buffer), text + L"1");
        const std::wstring both = text + L"%2$d %1$d";
        for (const wchar_t* format : {both.c_str(), formats.hold(both.c_str(), both.size() + 1)}) {
            FormatUtil::outputStringWithFormat(buffer, 200, format, 1, 2);
            EXPECT_EQ(std::wstring(buffer), text + L"2 1");
        }
    }
}

} // namespace
