#include "TvPlatformBase.h"

#include "CaseName.h"
#include "ScopedLocale.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <limits>
#include <memory>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr wchar_t kBehind = L'\x2588';

int count(const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = _vscwprintf(format, args);
    va_end(args);
    return length;
}

// The text of one call; the counting function must agree with it, and nothing behind the
// terminator may change.
template<class... Arguments>
std::wstring text(const wchar_t* format, Arguments... arguments)
{
    static wchar_t buffer[20000];
    std::wmemset(buffer, kBehind, 20000);
    const int length = swprintf(buffer, format, arguments...);
    EXPECT_EQ(count(format, arguments...), length);
    if (length < 0) {
        EXPECT_EQ(buffer[0], L'\0');
        return L"failed";
    }
    EXPECT_EQ(buffer[length], L'\0');
    EXPECT_EQ(buffer[length + 1], kBehind);
    return std::wstring(buffer, static_cast<size_t>(length));
}

TEST(WideFormatText, PlainLetterIsWide) { EXPECT_EQ(text(L"<%s>", L"caf\x00E9"), L"<caf\x00E9>"); }
TEST(WideFormatText, CapitalLetterIsBytes) { EXPECT_EQ(text(L"<%S>", "bytes"), L"<bytes>"); }
TEST(WideFormatText, LMakesEitherWide)
{
    EXPECT_EQ(text(L"<%ls|%lS>", L"\x4E2D", L"\x6587"), L"<\x4E2D|\x6587>");
}
TEST(WideFormatText, WMakesEitherWide)
{
    EXPECT_EQ(text(L"<%ws|%wS>", L"\x4E2D", L"\x6587"), L"<\x4E2D|\x6587>");
}
TEST(WideFormatText, HMakesEitherBytes) { EXPECT_EQ(text(L"<%hs|%hS>", "ab", "cd"), L"<ab|cd>"); }
TEST(WideFormatText, EmptyText) { EXPECT_EQ(text(L"<%s|%S>", L"", ""), L"<|>"); }
TEST(WideFormatText, Width) { EXPECT_EQ(text(L"<%5s|%-5s>", L"ab", L"cd"), L"<   ab|cd   >"); }
TEST(WideFormatText, WidthOfBytes) { EXPECT_EQ(text(L"<%5S|%-5S>", "ab", "cd"), L"<   ab|cd   >"); }
TEST(WideFormatText, WidthBelowLength) { EXPECT_EQ(text(L"<%1s>", L"abc"), L"<abc>"); }
TEST(WideFormatText, Precision)
{
    EXPECT_EQ(text(L"<%.2s|%.9s|%.0s>", L"abc", L"abc", L"abc"), L"<ab|abc|>");
}
TEST(WideFormatText, DotAloneIsPrecisionZero) { EXPECT_EQ(text(L"<%.s>", L"abc"), L"<>"); }
TEST(WideFormatText, PrecisionOfBytes) { EXPECT_EQ(text(L"<%.2hs>", "abc"), L"<ab>"); }
TEST(WideFormatText, ZeroFlagPadsText) { EXPECT_EQ(text(L"<%05s|%-05s>", L"ab", L"ab"), L"<000ab|ab   >"); }
TEST(WideFormatText, NullPrintsAWord)
{
    const wchar_t* wide = nullptr;
    const char* bytes = nullptr;
    EXPECT_EQ(text(L"<%s|%S|%hs|%8ls>", wide, bytes, bytes, wide), L"<(null)|(null)|(null)|  (null)>");
}
TEST(WideFormatText, PrecisionCutsTheNullWord)
{
    EXPECT_EQ(text(L"<%.3s|%.3hs>", static_cast<wchar_t*>(nullptr), static_cast<char*>(nullptr)),
              L"<(nu|(nu>");
}
TEST(WideFormatText, WithAPrecisionNoTerminatorIsNeeded)
{
    const auto wide = std::make_unique<wchar_t[]>(2);
    wide[0] = L'a';
    wide[1] = L'b';
    const auto bytes = std::make_unique<char[]>(2);
    bytes[0] = 'c';
    bytes[1] = 'd';
    EXPECT_EQ(text(L"%.2s%.2S", wide.get(), bytes.get()), L"abcd");
}
TEST(WideFormatText, BytesAreReadInTheLocale)
{
    const ScopedLocale locale("C.UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no C.UTF-8 locale on this machine";
    EXPECT_EQ(text(L"<%3hs|%.1hs>", "\xC3\xA9", "\xE4\xB8\xAD\xE6\x96\x87"), L"<  \x00E9|\x4E2D>");
}
TEST(WideFormatText, PrecisionNeedsNoTerminatorBehindAWholeCharacter)
{
    const ScopedLocale locale("C.UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no C.UTF-8 locale on this machine";
    const auto bytes = std::make_unique<char[]>(2);
    bytes[0] = '\xC3';
    bytes[1] = '\xA9';
    EXPECT_EQ(text(L"%.1hs", bytes.get()), L"\x00E9");
}
TEST(WideFormatText, BytesThatTheLocaleCannotReadFail)
{
    const ScopedLocale locale("C.UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no C.UTF-8 locale on this machine";
    errno = 0;
    EXPECT_EQ(text(L"x%hs", "a\xFFz"), L"failed");
    EXPECT_EQ(errno, EILSEQ);
    EXPECT_EQ(text(L"x%hs", "a\xE4\xB8"), L"failed");
}

TEST(WideFormatCharacter, PlainLetterIsWide) { EXPECT_EQ(text(L"<%c>", 0x4E2D), L"<\x4E2D>"); }
TEST(WideFormatCharacter, CapitalLetterIsAByte) { EXPECT_EQ(text(L"<%C>", 'c'), L"<c>"); }
TEST(WideFormatCharacter, PrefixesDecide)
{
    EXPECT_EQ(text(L"<%lc%lC%wc%hc%hC>", 0x4E00, 0x4E01, 0x4E03, 'a', 'b'), L"<\x4E00\x4E01\x4E03"
                                                                            L"ab>");
}
TEST(WideFormatCharacter, Width) { EXPECT_EQ(text(L"<%3c|%-3c>", L'a', L'b'), L"<  a|b  >"); }
TEST(WideFormatCharacter, ZeroIsACharacter) { EXPECT_EQ(text(L"a%cb", 0), std::wstring(L"a\0b", 3)); }
TEST(WideFormatCharacter, ByteThatTheLocaleCannotReadFails)
{
    errno = 0;
    EXPECT_EQ(text(L"%hc", 0xE9), L"failed");
    EXPECT_EQ(errno, EILSEQ);
}

TEST(WideFormatSize, I64)
{
    EXPECT_EQ(text(L"%I64d %I64x", INT64_MIN, UINT64_MAX), L"-9223372036854775808 ffffffffffffffff");
}
TEST(WideFormatSize, I32)
{
    EXPECT_EQ(text(L"%I32d %I32u", INT32_MIN, UINT32_MAX), L"-2147483648 4294967295");
}
TEST(WideFormatSize, IAlone)
{
    EXPECT_EQ(text(L"%Iu %Id", SIZE_MAX, static_cast<std::ptrdiff_t>(-1)), L"18446744073709551615 -1");
}
TEST(WideFormatSize, INotFollowedByAKnownSize) { EXPECT_EQ(text(L"%I6u", static_cast<size_t>(7)), L"6u"); }
TEST(WideFormatSize, LongIsLong)
{
    EXPECT_EQ(text(L"%ld %lu", LONG_MIN, ULONG_MAX), L"-9223372036854775808 18446744073709551615");
}
TEST(WideFormatSize, LongLong) { EXPECT_EQ(text(L"%lld", LLONG_MAX), L"9223372036854775807"); }
TEST(WideFormatSize, ShortIsCut) { EXPECT_EQ(text(L"%hd %hu", 0x12345, 0x1FFFF), L"9029 65535"); }
TEST(WideFormatSize, CharIsCut) { EXPECT_EQ(text(L"%hhd %hhu", 0x180, 0x1FF), L"-128 255"); }
TEST(WideFormatSize, OtherPrefixes)
{
    EXPECT_EQ(text(L"%jd %zu %td", INTMAX_MIN, SIZE_MAX, PTRDIFF_MAX),
              L"-9223372036854775808 18446744073709551615 9223372036854775807");
}
TEST(WideFormatSize, LongDouble) { EXPECT_EQ(text(L"%.3Lf", 2.5L), L"2.500"); }

TEST(WideFormatInteger, Letters)
{
    EXPECT_EQ(text(L"%d %i %u %o %x %X", -1, 1, 2u, 8u, 255u, 255u), L"-1 1 2 10 ff FF");
}
TEST(WideFormatInteger, Flags)
{
    EXPECT_EQ(text(L"%+d|% d|%+ d|%05d|%-5d|", 1, 2, 3, -4, 5), L"+1| 2|+3|-0004|5    |");
}
TEST(WideFormatInteger, Alternate)
{
    EXPECT_EQ(text(L"%#x|%#X|%#o|%#x|%#o", 10, 10, 8, 0, 0), L"0xa|0XA|010|0|0");
}
TEST(WideFormatInteger, PrecisionBeatsZeroFlag) { EXPECT_EQ(text(L"%08.3d", 5), L"     005"); }
TEST(WideFormatInteger, ZeroWithPrecisionZero) { EXPECT_EQ(text(L"<%.0d|%+.0d|%#.0o>", 0, 0, 0), L"<|+|0>"); }
TEST(WideFormatInteger, ZerosBehindThePrefix) { EXPECT_EQ(text(L"%#08x", 0xabc), L"0x000abc"); }
TEST(WideFormatInteger, StarWidthAndPrecision) { EXPECT_EQ(text(L"<%*.*d>", 6, 3, 42), L"<   042>"); }
TEST(WideFormatInteger, NegativeStarWidthGoesLeft) { EXPECT_EQ(text(L"<%*d>", -4, 7), L"<7   >"); }
TEST(WideFormatInteger, NegativeStarPrecisionIsNone)
{
    EXPECT_EQ(text(L"<%.*d|%.*s>", -1, 0, -5, L"abc"), L"<0|abc>");
}
TEST(WideFormatInteger, LongPrecision) { EXPECT_EQ(text(L"%.5000d", 7), std::wstring(4999, L'0') + L'7'); }

TEST(WideFormatFloat, Letters)
{
    EXPECT_EQ(text(L"%f %e %E %g %G %F", 1.5, 1.5, 1.5, 1e-10, 1e-10, 0.25),
              L"1.500000 1.500000e+00 1.500000E+00 1e-10 1E-10 0.250000");
}
TEST(WideFormatFloat, Hexadecimal)
{
    EXPECT_EQ(text(L"%.1a %.2A %08.0a", 1.5, -1.5, 1.0), L"0x1.8p+0 -0X1.80P+0 0x001p+0");
}
TEST(WideFormatFloat, HexadecimalWithoutPrecisionHasThirteenPlaces)
{
    EXPECT_EQ(text(L"%a %A %.*a", 1.5, -0.1, -1, 0.0),
              L"0x1.8000000000000p+0 -0X1.999999999999AP-4 0x0.0000000000000p+0");
}
TEST(WideFormatFloat, Flags)
{
    EXPECT_EQ(text(L"%+.1f|% .1f|%07.2f|%-7.2f|%#.0f", 1.0, 2.0, -3.5, 4.5, 5.0),
              L"+1.0| 2.0|-003.50|4.50   |5.");
}
TEST(WideFormatFloat, InfinityAndNanAreNotPaddedWithZeros)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(text(L"%05f|%06F|%-5g|", infinity, -infinity, infinity), L"  inf|  -INF|inf  |");
    EXPECT_EQ(text(L"%05f", std::numeric_limits<double>::quiet_NaN()), L"  nan");
}

struct NanCase {
    const char* name;
    const wchar_t* format;
    std::uint64_t bits;
    const wchar_t* printed;
};

struct NanWords : testing::TestWithParam<NanCase> {};

TEST_P(NanWords, TellWhatKindItIs)
{
    double nan;
    std::memcpy(&nan, &GetParam().bits, sizeof nan);
    EXPECT_EQ(text(GetParam().format, nan), GetParam().printed);
}

const NanCase kNans[] = {
    {"Quiet", L"%f", 0x7FF8000000000000, L"nan"},
    {"QuietWithPayload", L"%e", 0x7FF8000000000001, L"nan"},
    {"NegativeWithPayload", L"%g", 0xFFF8000000000001, L"-nan"},
    {"Indefinite", L"%f", 0xFFF8000000000000, L"-nan(ind)"},
    {"IndefiniteInCapitals", L"%G", 0xFFF8000000000000, L"-NAN(IND)"},
    {"IndefiniteFillsItsField", L"<%012a>", 0xFFF8000000000000, L"<   -nan(ind)>"},
    {"IndefiniteToTheLeft", L"<%-12.2f>", 0xFFF8000000000000, L"<-nan(ind)   >"},
    {"Signalling", L"%f", 0x7FF0000000000001, L"nan(snan)"},
    {"NegativeSignalling", L"%E", 0xFFF4000000000000, L"-NAN(SNAN)"},
    {"SignallingWithPlus", L"%+f", 0x7FF0000000000001, L"+nan(snan)"},
};
INSTANTIATE_TEST_SUITE_P(WideFormatFloat, NanWords, testing::ValuesIn(kNans), nameOfCase<NanCase>);

TEST(WideFormatFloat, NanOfALongDouble)
{
    const long double nan = std::numeric_limits<long double>::quiet_NaN();
    EXPECT_EQ(text(L"%Lf %Lf", nan, -nan), L"nan -nan(ind)");
}
TEST(WideFormatFloat, MoreDigitsThanAnyStackBuffer)
{
    const std::wstring printed = text(L"%.3000f", 0.5);
    EXPECT_EQ(printed, L"0.5" + std::wstring(2999, L'0'));
}
TEST(WideFormatFloat, LargestLongDoubleWithoutPrecision)
{
    EXPECT_EQ(text(L"%Lf", std::numeric_limits<long double>::max()).size(), 4933u + 7);
}
TEST(WideFormatFloat, DecimalPointOfTheLocale)
{
    const TempDir folder;
    const ScopedLocale locale(folder.path(), "de_DE", "UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no locale sources on this machine";
    EXPECT_EQ(text(L"%6.2f", 2.5), L"  2,50");
}
TEST(WideFormatFloat, DecimalPointOfSeveralBytesIsOneCharacter)
{
    const TempDir folder;
    const ScopedLocale locale(folder.path(), "ps_AF", "UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no locale sources on this machine";
    EXPECT_EQ(text(L"%6.2f", 2.5), L"  2\x066B"
                                   L"50");
}

TEST(WideFormatNumberText, DoesNotUseTheLocalesPoint)
{
    const TempDir folder;
    const ScopedLocale locale(folder.path(), "de_DE", "UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no locale sources on this machine";
    EXPECT_EQ(_wtof(L"2.5"), 2.5);
    EXPECT_EQ(_wtof(L"2,5"), 2.0);
}

TEST(WideFormat, Pointer) { EXPECT_EQ(text(L"%p", reinterpret_cast<void*>(0x12AB)), L"00000000000012AB"); }
TEST(WideFormat, PercentSign) { EXPECT_EQ(text(L"100%%"), L"100%"); }
TEST(WideFormat, UnknownLetterPrintsItself) { EXPECT_EQ(text(L"%y%5k%d", 3), L"yk3"); }
TEST(WideFormat, PositionsAreNotKnown) { EXPECT_EQ(text(L"%1$d"), L"$d"); }
TEST(WideFormat, EmptyFormat) { EXPECT_EQ(text(L""), L""); }
TEST(WideFormat, LiteralTextOfAnyCharacters) { EXPECT_EQ(text(L"\x56FE\xFFFF\x80"), L"\x56FE\xFFFF\x80"); }

TEST(WideFormat, StoringTheCountIsRefused)
{
    int stored = 7;
    errno = 0;
    EXPECT_EQ(text(L"abc%n", &stored), L"failed");
    EXPECT_EQ(stored, 7);
    EXPECT_EQ(errno, EINVAL);
}

struct BrokenFormat : testing::TestWithParam<const wchar_t*> {};

TEST_P(BrokenFormat, EndsInsideAConversion)
{
    errno = 0;
    EXPECT_EQ(text(GetParam(), 1, 1), L"failed");
    EXPECT_EQ(errno, EINVAL);
}
INSTANTIATE_TEST_SUITE_P(WideFormat, BrokenFormat,
                         testing::Values(L"%", L"a%", L"%5", L"%.", L"%.3", L"%-", L"%l", L"%ll", L"%h",
                                         L"%I", L"%I64", L"%*", L"%.*", L"%w"));

struct TooLarge : testing::TestWithParam<const wchar_t*> {};

TEST_P(TooLarge, IsRefusedAndNotWritten)
{
    va_list none{};
    errno = 0;
    EXPECT_EQ(_vscwprintf(GetParam(), none), -1);
    EXPECT_EQ(errno, EOVERFLOW);
}
INSTANTIATE_TEST_SUITE_P(WideFormat, TooLarge,
                         testing::Values(L"%2147483648%", L"%.2147483648%", L"%99999999999999999999%"));

TEST(WideFormat, ALengthUpToTheLargestIntIsCounted)
{
    EXPECT_EQ(count(L"%2147483647d", 1), INT_MAX);
    errno = 0;
    EXPECT_EQ(count(L"x%2147483647d", 1), -1);
    EXPECT_EQ(errno, EOVERFLOW);
    EXPECT_EQ(count(L"%*d", INT_MIN, 1), -1);
}

// INT_MAX + 1 characters, all of which are the same 2 MiB of memory.
class LongestText {
public:
    LongestText()
    {
        void* const range = mmap(nullptr, kBytes + kPiece, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (range == MAP_FAILED)
            return;
        m_start = static_cast<char*>(range);
        const std::wstring piece(kPiece / sizeof(wchar_t), L'x');
        m_file = memfd_create("text", 0);
        m_ok = m_file >= 0 && write(m_file, piece.data(), kPiece) == static_cast<ssize_t>(kPiece);
        for (std::size_t at = 0; m_ok && at < kBytes; at += kPiece)
            m_ok = mmap(m_start + at, kPiece, PROT_READ, MAP_SHARED | MAP_FIXED, m_file, 0) != MAP_FAILED;
    }
    ~LongestText()
    {
        if (m_start != nullptr)
            munmap(m_start, kBytes + kPiece);
        if (m_file >= 0)
            close(m_file);
    }
    LongestText(const LongestText&) = delete;
    LongestText& operator=(const LongestText&) = delete;

    bool ok() const { return m_ok; }
    const wchar_t* text() const { return reinterpret_cast<const wchar_t*>(m_start); }

private:
    static constexpr std::size_t kPiece = 0x200000;
    static constexpr std::size_t kBytes = (static_cast<std::size_t>(INT_MAX) + 1) * sizeof(wchar_t);

    char* m_start = nullptr;
    int m_file = -1;
    bool m_ok = false;
};

TEST(WideFormat, ATextLongerThanAnyIntIsRefused)
{
    const LongestText longest;
    if (!longest.ok())
        GTEST_SKIP() << "no 8 GiB of address space";
    wchar_t buffer[4] = L"old";
    errno = 0;
    EXPECT_EQ(swprintf(buffer, L"%s", longest.text()), -1);
    EXPECT_EQ(errno, EOVERFLOW);
    EXPECT_STREQ(buffer, L"");
}

TEST(WideFormat, NullsAreInvalid)
{
    wchar_t buffer[4] = L"old";
    va_list none{};
    errno = 0;
    EXPECT_EQ(swprintf(buffer, static_cast<const wchar_t*>(nullptr)), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_STREQ(buffer, L"");
    EXPECT_EQ(swprintf(nullptr, L"x"), -1);
    EXPECT_EQ(vswprintf(nullptr, L"x", none), -1);
    EXPECT_EQ(_vscwprintf(nullptr, none), -1);
}

TEST(WideFormat, SuccessLeavesTheErrorNumberAlone)
{
    errno = 4321;
    text(L"%d %f %hs", 1, 2.0, "x");
    EXPECT_EQ(errno, 4321);
}

TEST(WideFormat, TheCallersArgumentListStaysUsable)
{
    const auto twice = [](const wchar_t* format, ...) {
        va_list args;
        va_start(args, format);
        wchar_t first[32], second[32];
        va_list again;
        va_copy(again, args);
        vswprintf(first, format, args);
        vswprintf(second, format, again);
        va_end(again);
        va_end(args);
        return std::wstring(first) + second;
    };
    EXPECT_EQ(twice(L"<%d %s>", 5, L"x"), L"<5 x><5 x>");
}

TEST(WideFormat, TheCLibrarysFunctionKeepsItsSize)
{
    wchar_t buffer[8];
    EXPECT_EQ(swprintf(buffer, 8, L"%d", 42), 2);
    EXPECT_STREQ(buffer, L"42");
}

} // namespace
