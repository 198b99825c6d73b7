#include "TvFileSystem.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct ValidCase {
    const char* name;
    const wchar_t* path;
    bool valid;
};

void PrintTo(const ValidCase& c, std::ostream* out) { *out << c.name; }

class ValidPath : public testing::TestWithParam<ValidCase> {};

TEST_P(ValidPath, IsToldFromTheOthers)
{
    EXPECT_EQ(TvPathMaker::isValidPath(GetParam().path), GetParam().valid);
}

const ValidCase kValidCases[] = {
    {"Empty", L"", true},
    {"Null", nullptr, false},
    {"Plain", L"/plans/house.dwg", true},
    {"Drive", L"C:\\plans\\house.dwg", true},
    {"DriveAlone", L"C:", true},
    {"ColonFirst", L":", false},
    {"ColonThird", L"CD:", false},
    {"SecondColonLater", L"C:/a:b", false},
    {"TwoColons", L"C::", false},
    {"Asterisk", L"a*b", false},
    {"Question", L"a?b", false},
    {"Less", L"a<b", false},
    {"Greater", L"a>b", false},
    {"Bar", L"a|b", false},
    {"Quote", L"a\"b", false},
    {"ForbiddenAsFirst", L"*", false},
    {"ForbiddenAsLast", L"a?", false},
    {"TwoSlashes", L"a//b", false},
    {"TwoBackslashes", L"a\\\\b", false},
    {"SlashBackslash", L"a/\\b", false},
    {"BackslashSlash", L"a\\/b", false},
    {"LeadingDoubleSeparator", L"\\\\server\\share", false},
    {"TrailingDoubleSeparator", L"a//", false},
    {"TrailingSeparator", L"a/", true},
    {"SeparatorAlone", L"/", true},
    {"SeparatorsApart", L"/a/b\\c/", true},
    {"BlanksAndDots", L"a b/../c.d.e", true},
    {"BeyondAscii", L"\u56FE\u7EB8/\u041F.dwg", true},
};

INSTANTIATE_TEST_SUITE_P(Cases, ValidPath, testing::ValuesIn(kValidCases),
                         [](const auto& test) { return std::string(test.param.name); });

// What each part of a path is.
struct PartCase {
    const char* name;
    const wchar_t* path;
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* fname;
    const wchar_t* ext;
};

void PrintTo(const PartCase& c, std::ostream* out) { *out << c.name; }

class PathParts : public testing::TestWithParam<PartCase> {};

TEST_P(PathParts, Drive)
{
    wchar_t out[64] = L"old";
    EXPECT_EQ(TvPathMaker::getDriverName(out, GetParam().path),
              static_cast<int>(std::wcslen(GetParam().drive)));
    EXPECT_STREQ(out, GetParam().drive);
}

TEST_P(PathParts, Directory)
{
    wchar_t out[260] = L"old";
    EXPECT_EQ(TvPathMaker::getParentDir(out, GetParam().path), static_cast<int>(std::wcslen(GetParam().dir)));
    EXPECT_STREQ(out, GetParam().dir);
}

TEST_P(PathParts, Name)
{
    wchar_t out[1024] = L"old";
    EXPECT_TRUE(TvPathMaker::getFileName(GetParam().path, out, nullptr));
    EXPECT_STREQ(out, GetParam().fname);
}

TEST_P(PathParts, Extension)
{
    wchar_t out[8] = L"old";
    EXPECT_EQ(TvPathMaker::getExtFileName(out, GetParam().path),
              static_cast<int>(std::wcslen(GetParam().ext)));
    EXPECT_STREQ(out, GetParam().ext);
}

TEST_P(PathParts, NameAndExtensionOrTheWholePath)
{
    const std::wstring fname = GetParam().fname;
    const std::wstring ext = GetParam().ext;
    wchar_t out[2047] = L"old";
    EXPECT_TRUE(TvPathMaker::getFullFileName(GetParam().path, out));
    EXPECT_EQ(out, fname.empty() || ext.empty() ? GetParam().path : fname + ext);
}

TEST_P(PathParts, AllAtOnce)
{
    wchar_t drive[8], dir[64], fname[64], ext[8];
    EXPECT_TRUE(TvPathMaker::splitPath(GetParam().path, drive, 8, dir, 64, fname, 64, ext, 8));
    EXPECT_STREQ(drive, GetParam().drive);
    EXPECT_STREQ(dir, GetParam().dir);
    EXPECT_STREQ(fname, GetParam().fname);
    EXPECT_STREQ(ext, GetParam().ext);
}

const PartCase kPartCases[] = {
    {"Unix", L"/plans/house.dwg", L"", L"/plans/", L"house", L".dwg"},
    {"Windows", L"C:\\plans\\house.dwg", L"C:", L"\\plans\\", L"house", L".dwg"},
    {"MixedSeparators", L"C:/plans\\old/house.dwg", L"C:", L"/plans\\old/", L"house", L".dwg"},
    {"NameAlone", L"house.dwg", L"", L"", L"house", L".dwg"},
    {"NoExtension", L"/plans/house", L"", L"/plans/", L"house", L""},
    {"DotInTheDirectory", L"/plans.old/house", L"", L"/plans.old/", L"house", L""},
    {"TwoDots", L"house.dwg.bak", L"", L"", L"house.dwg", L".bak"},
    {"DirectoryAlone", L"/plans/", L"", L"/plans/", L"", L""},
    {"DriveAlone", L"C:", L"C:", L"", L"", L""},
    {"LongestExtension", L"a.sixsix", L"", L"", L"a", L".sixsix"},
};

INSTANTIATE_TEST_SUITE_P(Cases, PathParts, testing::ValuesIn(kPartCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TvPathMaker, ExtensionOfEightCharactersIsNone)
{
    wchar_t out[8] = L"old";
    EXPECT_EQ(TvPathMaker::getExtFileName(out, L"a.seven77"), 0);
    EXPECT_STREQ(out, L"");
}

TEST(TvPathMaker, DirectoryOf259CharactersFits)
{
    wchar_t out[260] = L"old";
    const std::wstring dir = L"/" + std::wstring(257, L'd') + L"/";
    EXPECT_EQ(TvPathMaker::getParentDir(out, (dir + L"f").c_str()), 259);
    EXPECT_EQ(out, dir);
}

TEST(TvPathMaker, DirectoryOf260CharactersIsNone)
{
    wchar_t out[260] = L"old";
    const std::wstring dir = L"/" + std::wstring(258, L'd') + L"/";
    EXPECT_EQ(TvPathMaker::getParentDir(out, (dir + L"f").c_str()), 0);
    EXPECT_STREQ(out, L"");
}

TEST(TvPathMaker, NameOf1023CharactersFits)
{
    wchar_t out[1024] = L"old";
    const std::wstring name(1023, L'n');
    EXPECT_TRUE(TvPathMaker::getFileName(name.c_str(), out, nullptr));
    EXPECT_EQ(out, name);
}

TEST(TvPathMaker, NameOf1024CharactersFails)
{
    wchar_t out[1024] = L"old";
    EXPECT_FALSE(TvPathMaker::getFileName(std::wstring(1024, L'n').c_str(), out, nullptr));
    EXPECT_STREQ(out, L"");
}

TEST(TvPathMaker, LongestNameWithLongestExtensionFits)
{
    wchar_t out[2047] = L"old";
    const std::wstring path = std::wstring(1023, L'n') + L"." + std::wstring(1022, L'e');
    EXPECT_TRUE(TvPathMaker::getFullFileName(path.c_str(), out));
    EXPECT_EQ(out, path);
}

TEST(TvPathMaker, FullNameThatCannotBeSplitIsTheWholePathAndFalse)
{
    wchar_t out[2047] = L"old";
    const std::wstring path = L"/d/" + std::wstring(1024, L'n') + L".e";
    EXPECT_FALSE(TvPathMaker::getFullFileName(path.c_str(), out));
    EXPECT_EQ(out, path);
}

TEST(TvPathMaker, NullAndEmptyPathsHaveNoParts)
{
    for (const wchar_t* const path : {static_cast<const wchar_t*>(nullptr), L""}) {
        wchar_t out[260] = L"old";
        EXPECT_EQ(TvPathMaker::getDriverName(out, path), 0);
        EXPECT_STREQ(out, L"");
        EXPECT_EQ(TvPathMaker::getParentDir(out, path), 0);
        EXPECT_EQ(TvPathMaker::getExtFileName(out, path), 0);
        wchar_t name[1024] = L"old";
        EXPECT_FALSE(TvPathMaker::getFileName(path, name, nullptr));
        EXPECT_STREQ(name, L"");
        wchar_t full[2047] = L"old";
        EXPECT_FALSE(TvPathMaker::getFullFileName(path, full));
        EXPECT_STREQ(full, L"");
        EXPECT_FALSE(TvPathMaker::splitPath(path, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0));
    }
}

TEST(TvPathMaker, NullOutBuffersAreNotWritten)
{
    EXPECT_EQ(TvPathMaker::getDriverName(nullptr, L"C:/a.b"), 0);
    EXPECT_EQ(TvPathMaker::getParentDir(nullptr, L"C:/a.b"), 0);
    EXPECT_EQ(TvPathMaker::getExtFileName(nullptr, L"C:/a.b"), 0);
    EXPECT_FALSE(TvPathMaker::getFileName(L"C:/a.b", nullptr, nullptr));
    EXPECT_FALSE(TvPathMaker::getFullFileName(L"C:/a.b", nullptr));
}

TEST(TvPathMaker, SplitLeavesOutNullParts)
{
    wchar_t fname[8];
    EXPECT_TRUE(TvPathMaker::splitPath(L"C:/plans/house.dwg", nullptr, 0, nullptr, 0, fname, 8, nullptr, 0));
    EXPECT_STREQ(fname, L"house");
}

TEST(TvPathMaker, SplitFailsWhereAPartDoesNotFit)
{
    wchar_t fname[5];
    EXPECT_FALSE(TvPathMaker::splitPath(L"C:/plans/house.dwg", nullptr, 0, nullptr, 0, fname, 5, nullptr, 0));
}

TEST(TvPathMaker, AbsolutePathWritesNothingAndSucceeds)
{
    wchar_t out[] = L"old";
    EXPECT_TRUE(TvPathMaker::getAbsolutePath(out, 4, L"house.dwg"));
    EXPECT_STREQ(out, L"old");
}

} // namespace
