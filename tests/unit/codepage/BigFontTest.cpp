// The code page of a big font: the list of well-known fonts, the user's file, file names.
#include "TvBigFont.h"
#include "TvCharMapper.h"
#include "TvPlatformBase.h"

#include "CaseName.h"
#include "EachTestAlone.h" // the user's file is read once a process

#include <cstring>
#include <cwchar>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr unsigned kEnglish = 0x0409;
constexpr unsigned kJapanese = 0x0411;

// A host's reader, which notes what it is asked.
class Reader final : public CReadUserDefBigfontIni {
public:
    bool loadMap(const wchar_t* iniPath, std::map<std::wstring, int>* map) override
    {
        paths.push_back(iniPath);
        maps.push_back(map);
        if (throws)
            throw std::runtime_error("no such luck");
        map->insert(entries.begin(), entries.end());
        return loads;
    }
    int findFile(wchar_t* pathOut, int pathOutSize, const wchar_t* fileName) override
    {
        ++searches;
        size = pathOutSize;
        name = fileName;
        if (found)
            std::wcscpy(pathOut, L"/home/anna/BIGFONT.INI");
        return found;
    }

    std::map<std::wstring, int> entries;
    bool loads = true;
    bool throws = false;
    int found = 1;

    int searches = 0;
    int size = 0;
    std::wstring name;
    std::vector<std::wstring> paths;
    std::vector<std::map<std::wstring, int>*> maps;
};

class BigFont : public testing::Test {
protected:
    void SetUp() override { tvPlatformSetSystemDefaultLCID(kEnglish); }
};

struct KnownFont {
    const char* name;
    const wchar_t* font;
    int index;
    code_page_id id;
};

const KnownFont kKnownFonts[] = {
    {"AtExtfont2", L"@extfont2.shx", 1, CP_ANSI_932}, {"Bigfont", L"bigfont.shx", 1, CP_ANSI_932},
    {"Chineset", L"chineset.shx", 2, CP_ANSI_950},    {"Extfont", L"extfont.shx", 1, CP_ANSI_932},
    {"Extfont2", L"extfont2.shx", 1, CP_ANSI_932},    {"Gbcbig", L"gbcbig.shx", 5, CP_ANSI_936},
    {"Whgdtxt", L"whgdtxt.shx", 3, CP_ANSI_949},      {"Whgtxt", L"whgtxt.shx", 3, CP_ANSI_949},
    {"Whtgtxt", L"whtgtxt.shx", 3, CP_ANSI_949},      {"Whtmtxt", L"whtmtxt.shx", 3, CP_ANSI_949},
    {"Visiojp", L"visiojp.shx", 1, CP_ANSI_932},      {"Visiotc", L"visiotc.shx", 2, CP_ANSI_950},
};

class KnownBigFont : public BigFont, public testing::WithParamInterface<KnownFont> {};

TEST_P(KnownBigFont, HasItsIndex)
{
    EXPECT_EQ(findCodepageByBigfont(GetParam().font, nullptr), GetParam().index);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(GetParam().font, nullptr), GetParam().index);
}

TEST_P(KnownBigFont, HasItsCodePage)
{
    EXPECT_EQ(TvCharMapper::getCpByBigFont(GetParam().font, nullptr), GetParam().id);
}

TEST_P(KnownBigFont, IsKnownInCapitalsToo)
{
    std::wstring name = GetParam().font;
    for (wchar_t& c : name)
        c = c >= L'a' && c <= L'z' ? c - 32 : c;
    EXPECT_EQ(findCodepageByBigfont(name, nullptr), GetParam().index);
}

TEST_P(KnownBigFont, IsKnownBehindFolders)
{
    const std::wstring path = std::wstring(L"/usr/share/fonts v2.0/") + GetParam().font;
    EXPECT_EQ(TvCharMapper::getCpByBigFont(path.c_str(), nullptr), GetParam().id);
}

TEST_P(KnownBigFont, IsKnownWithoutItsExtensionByGetCpByBigFontAlone)
{
    std::wstring name = GetParam().font;
    name.resize(name.size() - 4);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(name.c_str(), nullptr), GetParam().id);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(name.c_str(), nullptr), 0);
}

TEST_P(KnownBigFont, DoesNotAskForTheUsersFile)
{
    Reader reader;
    findCodepageByBigfont(GetParam().font, &reader);
    EXPECT_EQ(reader.searches, 0);
}

INSTANTIATE_TEST_SUITE_P(Fonts, KnownBigFont, testing::ValuesIn(kKnownFonts), nameOfCase<KnownFont>);

TEST_F(BigFont, FileNameIsBehindTheLastSlash)
{
    EXPECT_EQ(extractFileName(L"/fonts/asia/gbcbig.shx"), L"gbcbig.shx");
    EXPECT_EQ(extractFileName(L"gbcbig.shx"), L"gbcbig.shx");
    EXPECT_EQ(extractFileName(L"/gbcbig.shx"), L"gbcbig.shx");
    EXPECT_EQ(extractFileName(L"/fonts/"), L"");
    EXPECT_EQ(extractFileName(L""), L"");
    EXPECT_EQ(extractFileName(nullptr), L"");
}

TEST_F(BigFont, BackslashIsNoSeparator)
{
    EXPECT_EQ(extractFileName(L"C:\\fonts\\gbcbig.shx"), L"C:\\fonts\\gbcbig.shx");
    EXPECT_EQ(extractFileName(L"C:\\fonts/gbcbig.shx"), L"gbcbig.shx");
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"C:\\fonts\\gbcbig.shx", nullptr), CP_UNDEFINED);
}

TEST_F(BigFont, PathsOfEitherCaseWithAndWithoutExtension)
{
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts/GBCBIG.SHX", nullptr), CP_ANSI_936);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts/gbcbig", nullptr), CP_ANSI_936);
}

TEST_F(BigFont, AnyDotKeepsTheExtensionFromBeingAdded)
{
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"gbcbig.", nullptr), CP_UNDEFINED);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"gbcbig.ttf", nullptr), CP_UNDEFINED);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts.d/gbcbig", nullptr), CP_ANSI_936);
}

TEST_F(BigFont, IndexByNameStripsNoFolders)
{
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"/fonts/gbcbig.shx", nullptr), 0);
}

TEST_F(BigFont, NullAndEmptyNamesHaveNone)
{
    EXPECT_EQ(TvCharMapper::getCpByBigFont(nullptr, nullptr), CP_UNDEFINED);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"", nullptr), CP_UNDEFINED);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(nullptr, nullptr), 0);
    EXPECT_EQ(findCodepageByBigfont(L"", nullptr), 0);
}

TEST_F(BigFont, UserTableStartsEmpty) { EXPECT_TRUE(g_mapCP2Bigfont.empty()); }

TEST_F(BigFont, ReaderIsAskedForTheIniFile)
{
    Reader reader;
    reader.entries = {{L"mine.shx", 5}};

    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 5);

    EXPECT_EQ(reader.name, L"BIGFONT.INI");
    EXPECT_EQ(reader.size, 1024);
    EXPECT_EQ(reader.paths, std::vector<std::wstring>{L"/home/anna/BIGFONT.INI"});
    EXPECT_EQ(reader.maps, (std::vector<std::map<std::wstring, int>*>{&g_mapCP2Bigfont}));
}

// Readers are also made by code that knows the table of functions alone.
TEST_F(BigFont, ReaderHasTwoFunctionsInOrder)
{
    using Load = bool (*)(void*, const wchar_t*, std::map<std::wstring, int>*);
    using Find = int (*)(void*, wchar_t*, int, const wchar_t*);
    Reader reader;
    CReadUserDefBigfontIni* const base = &reader;
    void** slots = nullptr;
    std::memcpy(&slots, static_cast<void*>(base), sizeof slots);

    EXPECT_TRUE(reinterpret_cast<Load>(slots[0])(base, L"path", &g_mapCP2Bigfont));
    EXPECT_EQ(reader.paths, std::vector<std::wstring>{L"path"});
    wchar_t path[64] = {};
    EXPECT_EQ(reinterpret_cast<Find>(slots[1])(base, path, 64, L"name"), 1);
    EXPECT_EQ(reader.name, L"name");
    EXPECT_EQ(sizeof(CReadUserDefBigfontIni), sizeof(void*));
}

TEST_F(BigFont, UsersFileIsReadOnce)
{
    Reader reader;
    findCodepageByBigfont(L"mine.shx", &reader);
    Reader other;
    other.entries = {{L"mine.shx", 5}};

    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 0);
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &other), 0);

    EXPECT_EQ(reader.searches, 1);
    EXPECT_EQ(other.searches, 0);
}

TEST_F(BigFont, UsersFileCountsAsReadWhateverTheReaderSays)
{
    Reader reader;
    reader.loads = false;
    findCodepageByBigfont(L"mine.shx", &reader);
    findCodepageByBigfont(L"mine.shx", &reader);
    EXPECT_EQ(reader.paths.size(), 1u);
}

TEST_F(BigFont, UsersFileThatIsNotFoundIsLookedForAgain)
{
    Reader reader;
    reader.entries = {{L"mine.shx", 3}};
    reader.found = 0;
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 0);
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 0);
    EXPECT_EQ(reader.searches, 2);
    EXPECT_TRUE(reader.paths.empty());

    reader.found = -1; // any number but 0 is found
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 3);
    EXPECT_EQ(reader.searches, 3);
}

TEST_F(BigFont, WithoutReaderTheUsersFileIsNotLookedFor)
{
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", nullptr), 0);
    Reader reader;
    reader.entries = {{L"mine.shx", 2}};
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 2);
}

TEST_F(BigFont, WhatTheReaderThrowsGoesThroughAndTheFileIsLookedForAgain)
{
    Reader reader;
    reader.throws = true;
    EXPECT_THROW(findCodepageByBigfont(L"mine.shx", &reader), std::runtime_error);
    reader.throws = false;
    reader.entries = {{L"mine.shx", 2}};
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", &reader), 2);
}

TEST_F(BigFont, PathThatFillsTheReadersBufferIsEnded)
{
    class Filler final : public CReadUserDefBigfontIni {
    public:
        bool loadMap(const wchar_t* iniPath, std::map<std::wstring, int>*) override
        {
            length = std::wcslen(iniPath);
            return true;
        }
        int findFile(wchar_t* pathOut, int pathOutSize, const wchar_t*) override
        {
            std::wmemset(pathOut, L'p', static_cast<std::size_t>(pathOutSize));
            return 1;
        }
        std::size_t length = 0;
    } reader;
    findCodepageByBigfont(L"mine.shx", &reader);
    EXPECT_EQ(reader.length, 1023u);
}

TEST_F(BigFont, UserTableDisregardsCase)
{
    g_mapCP2Bigfont = {{L"myfont.SHX", 2}};
    EXPECT_EQ(findCodepageByBigfont(L"MYFONT.shx", nullptr), 2);
    EXPECT_EQ(findCodepageByBigfontInUserDefined(L"MyFont.Shx", nullptr), 2);
}

TEST_F(BigFont, FirstKeyInOrderWinsAmongEqualNames)
{
    g_mapCP2Bigfont = {{L"myfont.shx", 1}, {L"MYFONT.SHX", 2}, {L"Myfont.shx", 3}};
    EXPECT_EQ(findCodepageByBigfont(L"myfont.shx", nullptr), 2);
}

TEST_F(BigFont, WellKnownFontsComeBeforeTheUsers)
{
    g_mapCP2Bigfont = {{L"gbcbig.shx", 1}};
    EXPECT_EQ(findCodepageByBigfont(L"gbcbig.shx", nullptr), 5);
    EXPECT_EQ(findCodepageByBigfontInUserDefined(L"gbcbig.shx", nullptr), 1);
}

TEST_F(BigFont, UsersFontsComeBeforeTheLanguage)
{
    tvPlatformSetSystemDefaultLCID(kJapanese);
    g_mapCP2Bigfont = {{L"mine.shx", 5}};
    EXPECT_EQ(findCodepageByBigfont(L"mine.shx", nullptr), 5);
    EXPECT_EQ(findCodepageByBigfont(L"other.shx", nullptr), 1);
}

TEST_F(BigFont, NameWithoutExtensionFallsThroughToTheLanguage)
{
    tvPlatformSetSystemDefaultLCID(kJapanese);
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"gbcbig", nullptr), 1);
}

TEST_F(BigFont, UnknownFontOfASingleByteLanguageHasNone)
{
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"unknown.shx", nullptr), 0);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"unknown.shx", nullptr), CP_UNDEFINED);
}

struct UserIndex {
    const char* name;
    int index;
    code_page_id id;
};

class UserBigFont : public BigFont, public testing::WithParamInterface<UserIndex> {};

TEST_P(UserBigFont, IndexBecomesACodePage)
{
    g_mapCP2Bigfont = {{L"mine.shx", GetParam().index}};
    EXPECT_EQ(TvCharMapper::getCpIndexByBigFont(L"mine.shx", nullptr), GetParam().index);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"mine.shx", nullptr), GetParam().id);
    EXPECT_EQ(TvCharMapper::getCpByBigFont(L"/fonts/mine", nullptr), GetParam().id);
}

const UserIndex kUserIndexes[] = {
    {"Minimum", -2147483647 - 1, CP_UNDEFINED},
    {"Minus1", -1, CP_UNDEFINED},
    {"One", 1, CP_ANSI_932},
    {"Two", 2, CP_ANSI_950},
    {"Three", 3, CP_ANSI_949},
    {"Four", 4, CP_ANSI_1361},
    {"Five", 5, CP_ANSI_936},
    {"Six", 6, CP_UNDEFINED},
    {"Maximum", 2147483647, CP_UNDEFINED},
};

INSTANTIATE_TEST_SUITE_P(Indexes, UserBigFont, testing::ValuesIn(kUserIndexes), nameOfCase<UserIndex>);

} // namespace
