// The character mapper: starting it, whole texts, escapes, ends of input, tables.
#include "TvCharMapper.h"

#include "MapperText.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

using namespace std::string_literals;

namespace {

class WithMap : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

class WithoutMap : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(L""), Orna::eFileNotFound); }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

class NotInitialized : public testing::Test {
protected:
    void SetUp() override { TvCharMapper::unInitialize(); }
};

bool isLoaded(code_page_id cp) { return theTvCodePages()->findMapperByAcadCp(cp)->m_bLoaded == 1; }

// -- initialize ---------------------------------------------------------------------------

class MapFileCase : public testing::Test {
protected:
    void TearDown() override { TvCharMapper::unInitialize(); }

    Orna::ErrorStatus initializeWith(const std::string& content)
    {
        const std::string path = m_dir / "test.map";
        std::ofstream(path, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
        return TvCharMapper::initialize(std::wstring(path.begin(), path.end()));
    }

    static std::string directory() { return std::string(38 * 4, '\0'); }

    TempDir m_dir;
};

TEST_F(MapFileCase, AnEmptyNameIs72) { EXPECT_EQ(TvCharMapper::initialize(L""), 72); }

TEST_F(MapFileCase, AMissingFileIs72) { EXPECT_EQ(TvCharMapper::initialize(L"/nowhere/codepage.map"), 72); }

TEST_F(MapFileCase, ADirectoryIs74)
{
    const std::string path = m_dir.path();
    EXPECT_EQ(TvCharMapper::initialize(std::wstring(path.begin(), path.end())), 74);
}

TEST_F(MapFileCase, AHeaderThatEndsInHIs0) { EXPECT_EQ(initializeWith("H\0"s + directory()), 0); }

TEST_F(MapFileCase, AHeaderThatEndsInAnotherLetterIs74)
{
    EXPECT_EQ(initializeWith("HG\0"s + directory()), 74);
}

TEST_F(MapFileCase, AnEmptyHeaderIs74) { EXPECT_EQ(initializeWith("\0"s + directory()), 74); }

TEST_F(MapFileCase, AHeaderWithoutNulIs74) { EXPECT_EQ(initializeWith(std::string(5000, 'H')), 74); }

TEST_F(MapFileCase, AnEmptyFileIs74) { EXPECT_EQ(initializeWith(""), 74); }

TEST_F(MapFileCase, AShortDirectoryIs74) { EXPECT_EQ(initializeWith("H\0"s + directory().substr(1)), 74); }

TEST_F(MapFileCase, TheRegistryIsBuiltInEveryCase)
{
    TvCharMapper::initialize(L"");
    EXPECT_NE(theTvCodePages()->findMapperByAcadCp(CP_ANSI_1252), nullptr);
    initializeWith("no map");
    EXPECT_NE(theTvCodePages()->findMapperByAcadCp(CP_ANSI_1252), nullptr);
}

TEST_F(MapFileCase, TheNameIsKept)
{
    TvCharMapper::initialize(L"/nowhere/codepage.map");
    EXPECT_EQ(TvCharMapper::m_MapFile.Compare(L"/nowhere/codepage.map"), 0);
    TvCharMapper::unInitialize();
    EXPECT_EQ(TvCharMapper::m_MapFile.Compare(L"/nowhere/codepage.map"), 0);
}

TEST_F(MapFileCase, TheNameMayBeTheOneInUse)
{
    ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), 0);
    EXPECT_EQ(TvCharMapper::initialize(TvCharMapper::m_MapFile), 0);
}

TEST_F(MapFileCase, ASecondInitializeForgetsLoadedTables)
{
    ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), 0);
    toWide(CP_ANSI_936, "\xB0\xA1");
    ASSERT_TRUE(isLoaded(CP_ANSI_936));
    TvCharMapper::initialize(shippedMapFile());
    EXPECT_FALSE(isLoaded(CP_ANSI_936));
}

TEST_F(MapFileCase, AFileThatAppearsLaterIsUsed)
{
    const std::string path = m_dir / "late.map";
    ASSERT_EQ(TvCharMapper::initialize(std::wstring(path.begin(), path.end())), 72);
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1"), L"\\M+5B0A1");
    // The directory was not read, so the mapper has no offset: a new initialize is needed.
    std::ofstream(path, std::ios::binary)
        << std::ifstream(TV_SOURCE_DIR "/data/codepage.map", std::ios::binary).rdbuf();
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1"), L"\\M+5B0A1");
    ASSERT_EQ(TvCharMapper::initialize(std::wstring(path.begin(), path.end())), 0);
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1"), L"\x554A");
}

TEST_F(MapFileCase, TheFileIsOpenedAnewForEachMapperThatIsNotLoaded)
{
    const std::string path = m_dir / "moved.map";
    std::ofstream(path, std::ios::binary)
        << std::ifstream(TV_SOURCE_DIR "/data/codepage.map", std::ios::binary).rdbuf();
    ASSERT_EQ(TvCharMapper::initialize(std::wstring(path.begin(), path.end())), 0);
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1"), L"\x554A");
    std::filesystem::rename(path, m_dir / "away.map");
    EXPECT_EQ(toWide(CP_ANSI_950, "\xA4\x40"), L"\\M+2A440");
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1"), L"\x554A"); // loaded before
    std::filesystem::rename(m_dir / "away.map", path);
    EXPECT_EQ(toWide(CP_ANSI_950, "\xA4\x40"), L"\x4E00");
}

// -- lazy loading -------------------------------------------------------------------------

TEST_F(WithMap, AsciiTextLoadsNoTable)
{
    toWide(CP_ANSI_936, "plain text \\ \\U+00B0");
    toBytes(CP_ANSI_936, L"plain text \\ \\U+00B0");
    EXPECT_FALSE(isLoaded(CP_ANSI_936));
}

TEST_F(WithMap, TheFirstForeignByteLoadsTheTable)
{
    toWide(CP_ANSI_936, "\xFF");
    EXPECT_TRUE(isLoaded(CP_ANSI_936));
    EXPECT_FALSE(isLoaded(CP_ANSI_932));
}

TEST_F(WithMap, TheFirstForeignCharacterLoadsTheTable)
{
    toBytes(CP_ANSI_949, L"\xAC00");
    EXPECT_TRUE(isLoaded(CP_ANSI_949));
}

TEST_F(WithMap, AnEscapeLoadsTheTableOfItsDigit)
{
    toWide(CP_ANSI_1252, "\\M+1815F");
    EXPECT_TRUE(isLoaded(CP_ANSI_932));
}

// -- bytes to wide ------------------------------------------------------------------------

TEST_F(WithMap, CifEscapeIsRead)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\U+0041"), L"A");
    EXPECT_EQ(toWide(CP_ANSI_1252, "x\\u+00b0y"), L"x\x00B0y");
}

TEST_F(WithMap, CifEscapeOfZeroGivesAZeroInTheText)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "a\\U+0000b"), L"a\0b"s);
}

TEST_F(WithMap, MifEscapeIsReadInItsOwnCodePage)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+1815F"), L"\xFF3C");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+5B0A1"), L"\x554A");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\m+2a440"), L"\x4E00");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+3B0A1"), L"\xAC00");
}

TEST_F(WithoutMap, MifEscapeStaysWithoutATable)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+1815F"), L"\\M+1815F");
}

TEST_F(WithMap, MifEscapeOfAnUnknownCodeStays)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "a\\M+5FFFFb"), L"a\\M+5FFFFb");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+48861"), L"\\M+48861"); // 1361 has no table
}

TEST_F(WithMap, MifEscapeWithDigitZeroIsReadInTheSystemCodePage)
{
    const SystemCodePage system(950);
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+0A440"), L"\x4E00");
}

TEST_F(WithMap, MifEscapeWithDigitZeroUnderAWesternSystemStays)
{
    const SystemCodePage system(1252);
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+0A440"), L"\\M+0A440");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+000E9"), L"\xE9");
}

TEST_F(WithMap, MifEscapeOfASingleByteGivesItsEntryEvenZero)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+10041"), L"A");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+1003F"), L"?");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+100B1"), L"\xFF71");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+10080"), L"\0"s);
}

TEST_F(WithMap, DigitsBeyondFiveAreOrdinaryText)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\M+6815F"), L"\\M+6815F");
}

TEST_F(WithMap, BrokenEscapesAreOrdinaryText)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\U+00G0"), L"\\U+00G0");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\U00B0"), L"\\U00B0");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\U+0B0x"), L"\\U+0B0x");
    EXPECT_EQ(toWide(CP_ANSI_1252, "\\\\U+0041"), L"\\A");
}

TEST_F(WithMap, AnEscapeCutByTheEndIsOrdinaryText)
{
    const std::string cif = "\\U+00B0";
    const std::string mif = "\\M+1815F";
    for (std::size_t length = 1; length < cif.size(); ++length) {
        // The rest stands right behind the end and must not count.
        TvVector<wchar_t> out;
        TvCharMapper::multiByteToWideChar(CP_ANSI_1252, cif.data(), static_cast<int>(length), out);
        EXPECT_EQ(resultText(out), std::wstring(cif.begin(), cif.begin() + static_cast<long>(length)));
    }
    for (std::size_t length = 1; length < mif.size(); ++length) {
        TvVector<wchar_t> out;
        TvCharMapper::multiByteToWideChar(CP_ANSI_1252, mif.data(), static_cast<int>(length), out);
        EXPECT_EQ(resultText(out), std::wstring(mif.begin(), mif.begin() + static_cast<long>(length)));
    }
}

TEST_F(WithMap, ALeadByteAtTheEndIsTheByteItself)
{
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0"), L"\xB0");
    EXPECT_EQ(toWide(CP_ANSI_936, "a\xB0"), L"a\xB0");
}

TEST_F(WithMap, ALeadByteBeforeTheEndDoesNotTakeTheByteBehindIt)
{
    TvVector<wchar_t> out;
    TvCharMapper::multiByteToWideChar(CP_ANSI_936, "\xB0\xA1", 1, out);
    EXPECT_EQ(resultText(out), L"\xB0");
}

TEST_F(WithMap, ALeadByteBeforeZeroEndsTheText) { EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\0\xA1"s), L"\xB0"); }

TEST_F(WithMap, AnyByteButZeroIsATrailByte)
{
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\\U+0041"), L"\x7668U+0041");
    EXPECT_EQ(toWide(CP_ANSI_932, "\x81\x5F"), L"\xFF3C");
    EXPECT_EQ(toWide(CP_ANSI_932, "\x83\x5C"), L"\x30BD"); // the trail byte is a backslash
}

TEST_F(WithMap, AnUnknownPairBecomesItsMifEscape)
{
    EXPECT_EQ(toWide(CP_ANSI_936, "a\xFE\xFF"
                                  "b"),
              L"a\\M+5FEFFb");
    EXPECT_EQ(toWide(CP_ANSI_950, "\xC7\xFF"), L"\\M+2C7FF");
}

TEST_F(WithMap, AByteWithoutACharacterIsTheByteItself)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "\x80\x9E"), L"\x80\x9E");
    EXPECT_EQ(toWide(CP_ANSI_936, "\x80\xFF"), L"\x80\xFF");
    EXPECT_EQ(toWide(CP_ANSI_1258, "\xE9"), L"\xE9");
    EXPECT_EQ(toWide(CP_ASCII, "\xE9"), L"\xE9");
}

TEST_F(WithMap, AQuestionMarkInATableCountsAsNoCharacter)
{
    unsigned short bytes[128] = {};
    bytes[0x69] = '?';
    bytes[0x6A] = 0xEA;
    EkCodepageMapper& western = *theTvCodePages()->findMapperByAcadCp(CP_ANSI_1252);
    western.m_pSingleByteTable = bytes;
    EXPECT_EQ(toWide(CP_ANSI_1252, "?\xE9\xEA"), L"?\xE9\xEA");
    wchar_t wc = 0;
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xE9, CP_ANSI_1252, wc));
    EXPECT_EQ(wc, '?'); // alone it is given as it stands

    toWide(CP_ANSI_936, "\xFF"); // loads the table
    EkCodepageMapper& chinese = *theTvCodePages()->findMapperByAcadCp(CP_ANSI_936);
    chinese.m_pairs.removeAll();
    chinese.m_pairs.append({'?', 0xB0A1});
    chinese.m_pairs.append({0x963F, 0xB0A2});
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1\xB0\xA2"), L"\\M+5B0A1\x963F");
}

TEST_F(WithoutMap, PairsBecomeEscapesAndKatakanaConverts)
{
    EXPECT_EQ(toWide(CP_ANSI_932, "\xB1\x81\x5F"), L"\xFF71\\M+1815F");
    EXPECT_EQ(toWide(CP_ANSI_936, "\xB0\xA1\x80"), L"\\M+5B0A1\x80");
}

TEST_F(WithMap, OlderIdsAreTheirWindowsPages)
{
    EXPECT_EQ(toWide(CP_DOS932, "\x81\x5F"), L"\xFF3C");
    EXPECT_EQ(toWide(CP_BIG5, "\xA4\x40"), L"\x4E00");
    EXPECT_EQ(toWide(CP_KSC5601, "\xB0\xA1"), L"\xAC00");
    EXPECT_EQ(toWide(CP_GB2312, "\xB0\xA1"), L"\x554A");
    EXPECT_EQ(toWide(CP_DOS932, "\xFC\xFC"), L"\\M+1FCFC");
}

TEST_F(WithMap, JohabHasNoLeadBytes)
{
    EXPECT_EQ(toWide(CP_ANSI_1361, "\x88\x61"), L"\x88"
                                                L"a");
    EXPECT_EQ(toWide(CP_JOHAB, "\x88\x61"), L"\x88"
                                            L"a");
}

TEST_F(WithMap, IdsZeroAndCountAreTheSystemCodePage)
{
    const SystemCodePage system(1251);
    EXPECT_EQ(toWide(CP_UNDEFINED, "\xE0"), L"\x430");
    EXPECT_EQ(toWide(CP_CNT, "\xE0"), L"\x430");
    tvPlatformSetACP(936);
    EXPECT_EQ(toWide(CP_UNDEFINED, "\xB0\xA1"), L"\x554A"); // counts at once
    tvPlatformSetACP(65001);
    EXPECT_EQ(toWide(CP_UNDEFINED, "\xC3\xA9"), L"\xE9");
    tvPlatformSetACP(4711); // unknown
    EXPECT_EQ(toWide(CP_UNDEFINED, "\xE9"), L"\xE9");
}

TEST_F(WithMap, ASystemCodePageWithAnOlderIdIsItsWindowsPageInTexts)
{
    const SystemCodePage system(20936);
    EXPECT_EQ(toWide(CP_UNDEFINED, "\xB0\xA1"), L"\x554A");
    EXPECT_EQ(toBytes(CP_UNDEFINED, L"\x554A"), "\xB0\xA1");
}

TEST_F(WithMap, UnknownIdsConvertByTheIdentityTable)
{
    for (int id : {43, 47, 1000, -1, INT_MIN}) {
        EXPECT_EQ(toWide(static_cast<code_page_id>(id), "a\x80\xFF"), L"a\x80\xFF") << id;
        EXPECT_EQ(toBytes(static_cast<code_page_id>(id), L"a\x80\xFF"), "a\x80\xFF") << id;
        EXPECT_EQ(toBytes(static_cast<code_page_id>(id), L"\x100"), "\\U+0100") << id;
    }
}

TEST_F(NotInitialized, ConversionsAreTheIdentityTable)
{
    for (int id : {2, 30, 38, 39, 42}) {
        EXPECT_EQ(toWide(static_cast<code_page_id>(id), "a\x81\x5F"), L"a\x81_") << id;
        EXPECT_EQ(toBytes(static_cast<code_page_id>(id), L"a\x81\x20AC"), "a\x81\\U+20AC") << id;
    }
    EXPECT_EQ(toWide(CP_UTF8, "\xC3\xA9"), L"\xE9");
    EXPECT_FALSE(tvIsLeadByte(0x81, CP_ANSI_932));
}

TEST_F(WithMap, TextEndsAtItsFirstZero)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, "ab\0cd"s), L"ab");
    EXPECT_EQ(toWide(CP_ANSI_936, "ab\0cd"s), L"ab");
    EXPECT_EQ(toWide(CP_UTF8, "ab\0cd"s), L"ab");
    EXPECT_EQ(toBytes(CP_ANSI_1252, L"ab\0cd"s), "ab");
    EXPECT_EQ(toBytes(CP_ANSI_936, L"ab\0cd"s), "ab");
    EXPECT_EQ(toBytes(CP_UTF8, L"ab\0cd"s), "ab");
}

TEST_F(WithMap, EmptyTextIsATerminator)
{
    EXPECT_EQ(toWide(CP_ANSI_1252, ""), L"");
    EXPECT_EQ(toWide(CP_UTF8, ""), L"");
    EXPECT_EQ(toBytes(CP_ANSI_1252, L""), "");
}

TEST_F(WithMap, Utf8OfLengthZeroReadsNothing)
{
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_UTF8, "abc", 0, wide);
    EXPECT_EQ(resultText(wide), L"");
    TvVector<char> bytes;
    TvCharMapper::wideCharToMultiByte(CP_UTF8, L"abc", 0, bytes);
    EXPECT_EQ(bytes.length(), 0);
}

TEST_F(WithMap, Utf8TextEndsAtItsLength)
{
    TvVector<wchar_t> wide;
    TvCharMapper::multiByteToWideChar(CP_UTF8, "\xC3\xA9", 1, wide);
    EXPECT_EQ(resultText(wide), L"\xC3");
    TvVector<char> bytes;
    TvCharMapper::wideCharToMultiByte(CP_UTF8, L"ab", 1, bytes);
    EXPECT_EQ(resultText(bytes), "a");
}

TEST_F(WithMap, NullIsEmptyText)
{
    const SystemCodePage system(1252);
    for (int id = -1; id <= CP_CNT + 1; ++id) {
        SCOPED_TRACE(id);
        const auto cp = static_cast<code_page_id>(id);
        TvVector<wchar_t> wide;
        TvVector<char> bytes;
        for (const char* room : {"none", "from the last text"}) {
            SCOPED_TRACE(room);
            for (int length : {0, 1, 5, 1000, INT_MAX}) {
                TvCharMapper::multiByteToWideChar(cp, nullptr, length, wide);
                EXPECT_EQ(resultText(wide), L"");
                TvCharMapper::wideCharToMultiByte(cp, nullptr, length, bytes);
                EXPECT_EQ(bytes.length(), cp == CP_UTF8 ? 0 : 1); // in UTF-8 without a terminator
            }
            const std::string text(100, 'x');
            const std::wstring wideText(100, L'\x4E00');
            TvCharMapper::multiByteToWideChar(cp, text.data(), 100, wide);
            TvCharMapper::wideCharToMultiByte(cp, wideText.data(), 100, bytes);
        }
    }
}

TEST_F(WithMap, ANegativeLengthLeavesTheResultEmpty)
{
    for (code_page_id cp : {CP_ANSI_1252, CP_ANSI_936, CP_UTF8}) {
        TvVector<wchar_t> wide;
        wide.append(L'x');
        TvCharMapper::multiByteToWideChar(cp, "abc", -1, wide);
        EXPECT_EQ(wide.length(), 0);
        TvVector<char> bytes;
        bytes.append('x');
        TvCharMapper::wideCharToMultiByte(cp, L"abc", INT_MIN, bytes);
        EXPECT_EQ(bytes.length(), 0);
    }
}

TEST_F(WithMap, ResultsReplaceWhatTheVectorHeld)
{
    TvVector<wchar_t> wide;
    for (int i = 0; i < 1000; ++i)
        wide.append(L'x');
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "ab", 2, wide);
    EXPECT_EQ(resultText(wide), L"ab");
    TvVector<char> bytes;
    for (int i = 0; i < 1000; ++i)
        bytes.append('x');
    TvCharMapper::wideCharToMultiByte(CP_ANSI_1252, L"ab", 2, bytes);
    EXPECT_EQ(resultText(bytes), "ab");
}

TEST_F(WithMap, AVectorThatSharedTheOldResultKeepsIt)
{
    TvVector<wchar_t> first;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "first text", 10, first);
    TvVector<wchar_t> second = first;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, "other text", 10, second);
    EXPECT_EQ(resultText(first), L"first text");
    EXPECT_EQ(resultText(second), L"other text");
}

TEST_F(WithMap, ATableThatAnEscapeHasLoadedServesTheTextBehindIt)
{
    EXPECT_EQ(toWide(CP_ANSI_936, "\\M+5C4E3\xC4\xE3"), L"\u4F60\u4F60");
}

TEST_F(WithMap, FlagsAreNotConsulted)
{
    TvVector<wchar_t> out;
    TvCharMapper::multiByteToWideChar(CP_ANSI_1252, 0xFFFFFFFFu, "\xE9", 1, out);
    EXPECT_EQ(resultText(out), L"\xE9");
}

// -- wide to bytes ------------------------------------------------------------------------

TEST_F(WithMap, AMissingCharacterBecomesItsCifEscape)
{
    EXPECT_EQ(toBytes(CP_ANSI_1252, L"\x20AC"), "\\U+20AC");
    EXPECT_EQ(toBytes(CP_ANSI_936, L"a\xE0FFz"), "a\\U+E0FFz");
    EXPECT_EQ(toBytes(CP_ASCII, L"\xE9"), "\\U+00E9");
}

TEST_F(WithoutMap, WithoutATableCharactersBecomeCifEscapes)
{
    EXPECT_EQ(toBytes(CP_ANSI_936, L"\x554A"), "\\U+554A");
    EXPECT_EQ(toBytes(CP_ANSI_932, L"\xFF71\x30BD"), "\xB1\\U+30BD");
}

TEST_F(WithMap, ElementsAboveFfffAreCutToSixteenBitsInEscapes)
{
    EXPECT_EQ(toBytes(CP_ANSI_1252, std::wstring(1, 0x1F600)), "\\U+F600");
    EXPECT_EQ(toBytes(CP_ANSI_936, std::wstring(1, 0x1554A)), "\\U+554A");
    EXPECT_EQ(toBytes(CP_ANSI_1252, std::wstring(1, static_cast<wchar_t>(-1))), "\\U+FFFF");
}

TEST_F(WithMap, PairsAreWrittenLeadByteFirst)
{
    EXPECT_EQ(toBytes(CP_ANSI_936, L"a\x554A"), "a\xB0\xA1");
    EXPECT_EQ(toBytes(CP_ANSI_932, L"\xFF71\x30BD"), "\xB1\x83\x5C");
}

TEST_F(WithMap, EscapesInTheTextAreKept)
{
    EXPECT_EQ(toBytes(CP_ANSI_1252, L"a\\U+20ACb\\M+1815Fc"), "a\\U+20ACb\\M+1815Fc");
    EXPECT_EQ(toBytes(CP_ANSI_936, L"\\u+00b0\x554A"), "\\u+00b0\xB0\xA1");
}

TEST_F(WithMap, AnEscapeCutByTheEndIsConvertedAsText)
{
    const std::wstring text = L"\\M+1815F";
    for (int length = 1; length < 8; ++length) {
        TvVector<char> out;
        TvCharMapper::wideCharToMultiByte(CP_ANSI_1252, text.data(), length, out);
        EXPECT_EQ(resultText(out), std::string(text.begin(), text.begin() + length));
    }
}

TEST_F(WithMap, DigitZeroIsNoEscapeInWideText)
{
    // Either way the same bytes come out; what follows the digit shows the difference.
    EXPECT_EQ(toBytes(CP_ANSI_1252, L"\\M+0\x20AC"), "\\M+0\\U+20AC");
    EXPECT_EQ(toBytes(CP_ANSI_1252, L"\\M+0815F"), "\\M+0815F");
}

TEST_F(WithMap, ATextOfNothingButEscapesFits)
{
    const std::wstring text(5000, L'\x20AC');
    std::string expected;
    for (std::size_t i = 0; i < text.size(); ++i)
        expected += "\\U+20AC";
    EXPECT_EQ(toBytes(CP_ANSI_1252, text), expected);
    EXPECT_EQ(toBytes(CP_ANSI_949, std::wstring(5000, L'\xE000')).size(), 35000u);
    EXPECT_EQ(toWide(CP_ANSI_936, std::string(10000, '\xFE')).size(), 5000u * 8);
}

// -- single characters --------------------------------------------------------------------

TEST_F(WithMap, AsciiCodesAreThemselves)
{
    wchar_t wc = 0;
    for (int code = 0; code < 128; ++code) {
        EXPECT_TRUE(TvCharMapper::codepageToUnicode(code, CP_ANSI_936, wc));
        EXPECT_EQ(wc, code);
        EXPECT_TRUE(TvCharMapper::unicodeToCodepage(code, CP_UTF8, wc, false));
        EXPECT_EQ(wc, code);
    }
}

TEST_F(WithMap, AByteWithoutACharacterIsZeroAndTrue)
{
    wchar_t wc = 1;
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0x80, CP_ANSI_1252, wc));
    EXPECT_EQ(wc, 0);
}

TEST_F(WithMap, UnknownAndImpossibleCodesAreFalseAndLeaveTheResult)
{
    wchar_t wc = 77;
    for (int code : {0xFFFF, 0x8100, 0x10000, 0x1B0A1, INT_MAX, -1, INT_MIN}) {
        EXPECT_FALSE(TvCharMapper::codepageToUnicode(code, CP_ANSI_936, wc)) << code;
        EXPECT_FALSE(TvCharMapper::codepageToUnicode(code, CP_ANSI_1252, wc)) << code;
        EXPECT_FALSE(TvCharMapper::codepageToUnicode(code, static_cast<code_page_id>(99), wc)) << code;
    }
    EXPECT_EQ(wc, 77);
    for (int c : {0x20AC, 0x10041, -5})
        EXPECT_FALSE(TvCharMapper::unicodeToCodepage(c, CP_ANSI_1252, wc, false)) << c;
    EXPECT_EQ(wc, 77);
}

TEST_F(WithoutMap, AnUnloadedPageWithAnEmptyTableConvertsNoCodeAtAll)
{
    wchar_t wc = 77;
    EXPECT_FALSE(TvCharMapper::codepageToUnicode(0x41, CP_ANSI_936, wc));
    EXPECT_FALSE(TvCharMapper::codepageToUnicode(0xB0, CP_ANSI_936, wc));
    EXPECT_EQ(wc, 77);
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xB1, CP_ANSI_932, wc));
    EXPECT_EQ(wc, 0xFF71);
}

TEST_F(WithMap, TheOlderOverloadFoldsAndIgnores)
{
    wchar_t wc = 0;
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xB0A1, 12345u, CP_GB2312, wc));
    EXPECT_EQ(wc, 0x554A);
}

TEST_F(WithMap, Utf8CodesArePackedLowestByteFirst)
{
    wchar_t code = 0;
    EXPECT_TRUE(TvCharMapper::unicodeToCodepage(0x20AC, CP_UTF8, code, true));
    EXPECT_EQ(code, 0xAC82E2);
    EXPECT_TRUE(TvCharMapper::unicodeToCodepage(0xE9, CP_UTF8, code, true));
    EXPECT_EQ(code, 0xA9C3);
    wchar_t wc = 0;
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xAC82E2, CP_UTF8, wc));
    EXPECT_EQ(wc, 0x20AC);
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xA9C3, CP_UTF8, wc));
    EXPECT_EQ(wc, 0xE9);
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0, CP_UTF8, wc));
    EXPECT_EQ(wc, 0);
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(static_cast<wchar_t>(0x80808080), CP_UTF8, wc));
    EXPECT_EQ(wc, 0x80);
}

TEST_F(WithMap, Utf8OfACharacterAboveFfffHasNoBytes)
{
    wchar_t code = 77;
    EXPECT_TRUE(TvCharMapper::unicodeToCodepage(0x1F600, CP_UTF8, code, false));
    EXPECT_EQ(code, 0);
}

TEST_F(WithMap, SingleCharactersUseTheSystemCodePageForZeroAndCount)
{
    const SystemCodePage system(1253);
    wchar_t wc = 0;
    EXPECT_TRUE(TvCharMapper::codepageToUnicode(0xE1, CP_UNDEFINED, wc));
    EXPECT_EQ(wc, 0x3B1);
    EXPECT_TRUE(TvCharMapper::unicodeToCodepage(0x3B1, CP_CNT, wc, false));
    EXPECT_EQ(wc, 0xE1);
}

TEST_F(WithMap, AnOlderSystemCodePageIsNotFoldedForSingleCharacters)
{
    const SystemCodePage system(20936);
    wchar_t wc = 0;
    EXPECT_FALSE(TvCharMapper::codepageToUnicode(0xB0A1, CP_UNDEFINED, wc));
}

// -- lead bytes ---------------------------------------------------------------------------

struct LeadCase {
    code_page_id cp;
    int first0, last0, first1, last1;
};

TEST_F(WithMap, LeadBytesOfEveryId)
{
    for (int id = -2; id < 60; ++id) {
        const bool japan = id == 22 || id == 38;
        const bool asia = id == 24 || id == 25 || id == 31 || (id >= 39 && id <= 41);
        for (int b = 0; b < 256; ++b) {
            const bool expected =
                japan ? (b >= 0x81 && b <= 0x9F) || (b >= 0xE0 && b <= 0xFC) : asia && b >= 0x81 && b <= 0xFE;
            const auto cp = static_cast<code_page_id>(id);
            ASSERT_EQ(tvIsLeadByte(static_cast<unsigned char>(b), cp), expected) << id << ' ' << b;
            ASSERT_EQ(TvCharMapper::isLeadByte(static_cast<unsigned char>(b), cp), expected)
                << id << ' ' << b;
        }
    }
}

TEST_F(WithMap, LeadBytesOfTheSystemCodePageAreNotLooked)
{
    const SystemCodePage system(936);
    EXPECT_FALSE(tvIsLeadByte(0xB0, CP_UNDEFINED));
    EXPECT_FALSE(tvIsLeadByte(0xB0, CP_CNT));
}

TEST_F(WithMap, LeadBytesByWindowsNumber)
{
    EXPECT_TRUE(IsDBCSLeadByteEx(932, 0x81));
    EXPECT_FALSE(IsDBCSLeadByteEx(932, 0xA1));
    EXPECT_TRUE(IsDBCSLeadByteEx(949, 0xFE));
    EXPECT_FALSE(IsDBCSLeadByteEx(1361, 0x88));
    EXPECT_FALSE(IsDBCSLeadByteEx(65001, 0xE3));
    EXPECT_FALSE(IsDBCSLeadByteEx(0, 0x81));
    EXPECT_FALSE(IsDBCSLeadByteEx(0xFFFFFFFFu, 0x81));
}

// -- character sets -----------------------------------------------------------------------

TEST(TvCharMapperCharset, EveryCharset)
{
    const std::vector<std::pair<int, int>> rows = {{0, 30},   {2, 30},   {128, 38}, {129, 40}, {134, 39},
                                                   {136, 41}, {161, 32}, {162, 33}, {163, 44}, {177, 34},
                                                   {178, 35}, {186, 36}, {204, 29}, {222, 37}, {238, 28}};
    std::vector<int> expected(65536, 0);
    for (const auto& [charset, id] : rows)
        expected[static_cast<std::size_t>(charset)] = id;
    for (int charset = 0; charset < 65536; ++charset)
        ASSERT_EQ(TvCharMapper::getCodepageByCharset(static_cast<unsigned short>(charset)),
                  expected[static_cast<std::size_t>(charset)])
            << charset;
}

TEST(TvCharMapperCharset, EveryId)
{
    const std::vector<std::pair<int, int>> rows = {{28, 238}, {29, 204}, {30, 0},   {32, 161}, {33, 162},
                                                   {34, 177}, {35, 178}, {36, 186}, {37, 222}, {38, 128},
                                                   {39, 134}, {40, 129}, {41, 136}, {44, 163}};
    for (int id = -5; id < 100; ++id) {
        int expected = 1;
        for (const auto& [row, charset] : rows)
            expected = row == id ? charset : expected;
        EXPECT_EQ(TvCharMapper::getCharSetByCodepageId(static_cast<code_page_id>(id)), expected) << id;
    }
}

// -- checksums ----------------------------------------------------------------------------

TEST(TvCharMapperChecksum, SmallSums)
{
    const unsigned units[] = {1, 2};
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(units, 2), 5.0);
    const unsigned char byte = 0xFF;
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(&byte, 1), -1.0);
    const signed char bytes[] = {1, -2, 3};
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(bytes, 3), 1.0 - 4.0 + 9.0);
}

TEST(TvCharMapperChecksum, NothingIsZero)
{
    const unsigned units[] = {1, 2};
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(units, 0), 0.0);
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(units, -3), 0.0);
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(nullptr, 2), 0.0);
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(units, 0), 0.0);
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(units, -3), 0.0);
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(nullptr, 2), 0.0);
}

TEST(TvCharMapperChecksum, EachUnicodeProductWrapsAndTheSumDoesNot)
{
    const unsigned units[] = {0xFFFFFFFFu, 0x80000001u, 0xFFFFFFFFu};
    // 4294967295, then 2 * 0x80000001 = 2, then 3 * 0xFFFFFFFF = 0xFFFFFFFD.
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(units, 3), 4294967295.0 + 2.0 + 4294967293.0);
}

TEST(TvCharMapperChecksum, AnsiProductsWrapToSigned)
{
    // 127 * 16909321 = 2147483767 is past 2^31 - 1 and reads as -2147483529.
    std::vector<char> bytes(16909321, 0);
    bytes.back() = 127;
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(bytes.data(), static_cast<int>(bytes.size())), -2147483529.0);
    bytes.back() = -128;
    // -128 * 16909321 = -2164393088, which reads as 2130574208.
    EXPECT_EQ(TvCharMapper::getCheckSumAnsi(bytes.data(), static_cast<int>(bytes.size())), 2130574208.0);
}

TEST(TvCharMapperChecksum, UnicodeMayLieAnywhere)
{
    unsigned char bytes[9] = {};
    const unsigned units[] = {7, 9};
    std::memcpy(bytes + 1, units, sizeof units);
    EXPECT_EQ(TvCharMapper::getCheckSumUnicode(bytes + 1, 2), 25.0);
}

} // namespace
