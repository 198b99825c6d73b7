#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cwchar>
#include <string>

namespace {

struct PathCase {
    const char* name;
    const wchar_t* path;
    const wchar_t* drive;
    const wchar_t* dir;
    const wchar_t* fname;
    const wchar_t* ext;
};

class Paths : public testing::TestWithParam<PathCase> {};

TEST_P(Paths, FallIntoFourPieces)
{
    wchar_t drive[8], dir[64], fname[64], ext[64];
    ASSERT_EQ(_wsplitpath_s(GetParam().path, drive, 8, dir, 64, fname, 64, ext, 64), 0);
    EXPECT_STREQ(drive, GetParam().drive);
    EXPECT_STREQ(dir, GetParam().dir);
    EXPECT_STREQ(fname, GetParam().fname);
    EXPECT_STREQ(ext, GetParam().ext);
}

const PathCase kPaths[] = {
    {"Everything", L"C:\\plans\\hall.dwg", L"C:", L"\\plans\\", L"hall", L".dwg"},
    {"Slashes", L"/home/ann/hall.dwg", L"", L"/home/ann/", L"hall", L".dwg"},
    {"MixedSeparators", L"C:/plans\\old/hall.dwg", L"C:", L"/plans\\old/", L"hall", L".dwg"},
    {"Empty", L"", L"", L"", L"", L""},
    {"NameAlone", L"hall", L"", L"", L"hall", L""},
    {"DriveAlone", L"C:", L"C:", L"", L"", L""},
    {"DriveAndName", L"C:hall.dwg", L"C:", L"", L"hall", L".dwg"},
    {"TrailingSeparator", L"/home/ann/", L"", L"/home/ann/", L"", L""},
    {"SeparatorAlone", L"\\", L"", L"\\", L"", L""},
    {"LastDotCounts", L"hall.2024.dwg", L"", L"", L"hall.2024", L".dwg"},
    {"DotInADirectoryIsNoExtension", L"/v1.2/hall", L"", L"/v1.2/", L"hall", L""},
    {"DotFileIsAllExtension", L"/home/.profile", L"", L"/home/", L"", L".profile"},
    {"DotAtTheEnd", L"hall.", L"", L"", L"hall", L"."},
    {"TwoDots", L"..", L"", L"", L".", L"."},
    {"ColonFurtherOnBelongsToTheName", L"ab:c", L"", L"", L"ab:c", L""},
    {"SeparatorBeforeColonIsNoDrive", L"/:x", L"", L"/", L":x", L""},
    {"ColonFirst", L":x", L"", L"", L":x", L""},
    {"NetworkName", L"\\\\server\\share\\a.b", L"", L"\\\\server\\share\\", L"a", L".b"},
    {"ChineseName", L"D:\\\x56FE\x7EB8\\\x697C.dwg", L"D:", L"\\\x56FE\x7EB8\\", L"\x697C", L".dwg"},
};
INSTANTIATE_TEST_SUITE_P(SplitPath, Paths, testing::ValuesIn(kPaths),
                         [](const auto& instance) { return instance.param.name; });

// The pieces of kPath are 2, 7, 4 and 4 characters long.
const wchar_t* const kPath = L"C:\\plans\\hall.dwg";

struct Split : testing::Test {
    wchar_t drive[16] = L"old", dir[16] = L"old", fname[16] = L"old", ext[16] = L"old";

    int split(size_t driveCount, size_t dirCount, size_t fnameCount, size_t extCount)
    {
        errno = 0;
        return _wsplitpath_s(kPath, drive, driveCount, dir, dirCount, fname, fnameCount, ext, extCount);
    }
    bool allEmpty() const { return !*drive && !*dir && !*fname && !*ext; }
};

TEST_F(Split, BuffersOfExactlyTheRightSize)
{
    EXPECT_EQ(split(3, 8, 5, 5), 0);
    EXPECT_STREQ(dir, L"\\plans\\");
    EXPECT_EQ(errno, 0);
}

struct CountCase {
    const char* name;
    size_t drive, dir, fname, ext;
    int result;
};

class Counts : public Split, public testing::WithParamInterface<CountCase> {};

TEST_P(Counts, ThatFailEmptyEveryBuffer)
{
    EXPECT_EQ(split(GetParam().drive, GetParam().dir, GetParam().fname, GetParam().ext), GetParam().result);
    EXPECT_EQ(errno, GetParam().result);
    // A buffer whose count is 0 cannot be emptied.
    EXPECT_STREQ(drive, GetParam().drive ? L"" : L"old");
    EXPECT_STREQ(dir, GetParam().dir ? L"" : L"old");
    EXPECT_STREQ(fname, GetParam().fname ? L"" : L"old");
    EXPECT_STREQ(ext, GetParam().ext ? L"" : L"old");
}

const CountCase kCounts[] = {
    {"DriveTooSmall", 2, 16, 16, 16, ERANGE},
    {"DirTooSmall", 16, 7, 16, 16, ERANGE},
    {"NameTooSmall", 16, 16, 4, 16, ERANGE},
    {"ExtensionTooSmall", 16, 16, 16, 4, ERANGE},
    {"AllTooSmall", 1, 1, 1, 1, ERANGE},
    {"DriveWithoutCount", 0, 16, 16, 16, EINVAL},
    {"DirWithoutCount", 16, 0, 16, 16, EINVAL},
    {"NameWithoutCount", 16, 16, 0, 16, EINVAL},
    {"ExtensionWithoutCount", 16, 16, 16, 0, EINVAL},
};
INSTANTIATE_TEST_SUITE_P(SplitPath, Counts, testing::ValuesIn(kCounts),
                         [](const auto& instance) { return instance.param.name; });

TEST_F(Split, NullPathEmptiesEveryBuffer)
{
    EXPECT_EQ(_wsplitpath_s(nullptr, drive, 16, dir, 16, fname, 16, ext, 16), EINVAL);
    EXPECT_TRUE(allEmpty());
}

TEST_F(Split, NullPathAndNoBuffers)
{
    EXPECT_EQ(_wsplitpath_s(nullptr, nullptr, 0, nullptr, 0, nullptr, 0, nullptr, 0), EINVAL);
}

TEST_F(Split, NullBufferWithACountIsInvalid)
{
    EXPECT_EQ(_wsplitpath_s(kPath, nullptr, 1, dir, 16, fname, 16, ext, 16), EINVAL);
    EXPECT_EQ(_wsplitpath_s(kPath, drive, 16, nullptr, 1, fname, 16, ext, 16), EINVAL);
    EXPECT_EQ(_wsplitpath_s(kPath, drive, 16, dir, 16, nullptr, 1, ext, 16), EINVAL);
    EXPECT_EQ(_wsplitpath_s(kPath, drive, 16, dir, 16, fname, 16, nullptr, 1), EINVAL);
    EXPECT_TRUE(allEmpty());
}

TEST_F(Split, InvalidComesBeforeTooSmall)
{
    EXPECT_EQ(_wsplitpath_s(kPath, drive, 1, dir, 16, fname, 16, nullptr, 1), EINVAL);
}

TEST_F(Split, PiecesMayBeLeftOut)
{
    EXPECT_EQ(_wsplitpath_s(kPath, nullptr, 0, nullptr, 0, fname, 16, nullptr, 0), 0);
    EXPECT_STREQ(fname, L"hall");
    EXPECT_STREQ(ext, L"old");
}

TEST_F(Split, APieceLeftOutMayBeOfAnyLength)
{
    std::wstring path(100000, L'd');
    path += L"/hall.dwg";
    EXPECT_EQ(_wsplitpath_s(path.c_str(), drive, 16, nullptr, 0, fname, 16, ext, 16), 0);
    EXPECT_STREQ(ext, L".dwg");
}

} // namespace
