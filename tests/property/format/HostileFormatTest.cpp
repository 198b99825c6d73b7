// Formats from anywhere: neither engine leaves the text, the format or the buffers it was given.
#include "GuardPage.h"
#include "ScanCall.h"
#include "TestScale.h"
#include "TvFormat.h"
#include "TvUnits.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

// Pieces that formats are made of, mixed at random.
std::wstring randomFormat(std::mt19937_64& random, const std::vector<std::wstring>& pieces)
{
    std::wstring format;
    for (std::size_t n = random() % 12; n > 0; --n) {
        const std::size_t choice = random() % (pieces.size() + 2);
        if (choice < pieces.size())
            format += pieces[choice];
        else if (choice == pieces.size())
            format += static_cast<wchar_t>(1 + random() % 127);
        else
            format += std::to_wstring(random() >> (random() % 64));
    }
    return format;
}

const std::vector<std::wstring> kOutputPieces = {
    L"%",    L"%",   L"-",  L"+",  L"0",  L".",    L"*",     L"$",       L"l",       L"h",
    L"%d",   L"%c",  L"%x", L"%f", L"%e", L"%g",   L"%q",    L"%q*",     L"%q1",     L"%3$",
    L"%1$d", L"*2$", L"%%", L"D",  L"b",  L"text", L"%.20f", L"%.3000d", L"%.*f",    L"%*d",
    L"%U",   L"%X",  L"%B", L"%I", L"%O", L"q2",   L"Q3",    L"e",       L"%4096$d", L"%9$f"};

TEST(HostileFormat, OutputStaysInItsBufferAndFormat)
{
    const std::uint64_t seed = testSeed(21);
    std::mt19937_64 random(seed);
    GuardedArray<wchar_t> formats(200);
    GuardedArray<wchar_t> buffers(5000);
    for (long i = scaled(60000); i > 0; --i) {
        const std::wstring text = randomFormat(random, kOutputPieces);
        // Texts are only read through %s, which needs a pointer: it is not among the pieces, and
        // a random one would read what no caller handed over.
        if (text.size() > 190 || text.find(L's') != std::wstring::npos)
            continue;
        const wchar_t* const format = formats.hold(text.c_str(), text.size() + 1);
        const int capacity = static_cast<int>(random() % (random() % 4 ? 60 : 5000));
        const std::vector<wchar_t> fill(static_cast<std::size_t>(capacity), L'#');
        auto* const buffer = const_cast<wchar_t*>(buffers.hold(fill));

        const int result =
            FormatUtil::outputStringWithFormat(buffer, capacity, format, 1, -2, 3, 4, 5, 6, 7, 8, 9, 10, 1.5,
                                               -2.5e10, 1e300, -0.0, 1e-300, 12.0);

        ASSERT_GE(result, -1) << "seed " << seed;
        ASSERT_LT(result, std::max(capacity, 1)) << "seed " << seed;
        if (capacity > 0) {
            ASSERT_NE(std::wmemchr(buffer, 0, static_cast<std::size_t>(capacity)), nullptr)
                << "seed " << seed;
        }
    }
}

TEST(HostileFormat, UnitSettingsOfAnyValueAreSafe)
{
    std::mt19937_64 random(testSeed(22));
    const OrnaAppUnitSets old = g_appUnits;
    for (long i = scaled(30000); i > 0; --i) {
        auto any = [&] { return static_cast<short>(random() % 3 ? random() % 8 : random()); };
        g_appUnits.unitMode = any();
        g_appUnits.linearStyle = any();
        g_appUnits.linearPrecision = any();
        g_appUnits.dimLinearStyle = any();
        g_appUnits.dimLinearPrecision = any();
        g_appUnits.angleStyle = any();
        g_appUnits.anglePrecision = any();
        g_appUnits.fractionStack = any();
        g_appUnits.fractionHeight = any();
        g_appUnits.baseAngle = std::bit_cast<double>(random());
        const double value = std::bit_cast<double>(random());
        wchar_t buffer[300];
        const int result =
            FormatUtil::outputStringWithFormat(buffer, 300, L"%.*q*", static_cast<int>(random() % 64),
                                               static_cast<int>(random()), random() % 4 ? value : value * 0);
        ASSERT_GE(result, 0);
        ASSERT_LT(result, 250);
    }
    g_appUnits = old;
}

const std::vector<std::wstring> kScanPieces = {
    L"%",   L"*", L"%d", L"%i", L"%x", L"%f", L"%lf", L"%*s", L"%3d", L"%u", L"%o", L"%b", L"%n",
    L"%5f", L" ", L"1",  L"-",  L"%%", L"%E", L"%D",  L"%l",  L"%h",  L"0x", L"e",  L"."};

TEST(HostileFormat, InputStaysInItsTextAndFormat)
{
    const std::uint64_t seed = testSeed(23);
    std::mt19937_64 random(seed);
    GuardedArray<wchar_t> formats(200);
    GuardedArray<wchar_t> texts(200);
    for (long i = scaled(60000); i > 0; --i) {
        std::wstring format = randomFormat(random, kScanPieces);
        std::wstring text;
        for (std::size_t n = random() % 20; n > 0; --n)
            text += L"0123456789 .-+eExXabf\t%g"[random() % 24];
        if (format.size() > 190)
            continue;
        const wchar_t* const heldFormat = formats.hold(format.c_str(), format.size() + 1);
        const wchar_t* const heldText = texts.hold(text.c_str(), text.size() + 1);
        alignas(8) wchar_t targets[24][64]; // each larger than any value and any text here
        const int result =
            scanText(heldText, heldFormat, targets[0], targets[1], targets[2], targets[3], targets[4],
                     targets[5], targets[6], targets[7], targets[8], targets[9], targets[10], targets[11],
                     targets[12], targets[13], targets[14], targets[15], targets[16], targets[17],
                     targets[18], targets[19], targets[20], targets[21], targets[22], targets[23]);
        ASSERT_GE(result, -1) << "seed " << seed;
        ASSERT_LE(result, 12) << "seed " << seed;
    }
}

} // namespace
