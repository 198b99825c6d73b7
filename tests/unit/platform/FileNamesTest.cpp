#include "TvPlatformBase.h"

#include "ScopedLocale.h"
#include "TempDir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string fileName(const std::wstring& name)
{
    char out[4096];
    const int length = tvPlatformFileName(name.c_str(), out, sizeof out);
    return length < 0 ? "failed" : std::string(out, static_cast<size_t>(length));
}

struct NameCase {
    const char* name;
    const wchar_t* wide;
    const char* bytes;
};

class FileNames : public testing::TestWithParam<NameCase> {};

TEST_P(FileNames, AreUtf8InThePlainLocale) { EXPECT_EQ(fileName(GetParam().wide), GetParam().bytes); }

TEST_P(FileNames, AreUtf8InAUtf8Locale)
{
    const ScopedLocale locale("C.UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no C.UTF-8 locale on this machine";
    EXPECT_EQ(fileName(GetParam().wide), GetParam().bytes);
}

const NameCase kNames[] = {
    {"Ascii", L"/tmp/hall.dwg", "/tmp/hall.dwg"},
    {"Empty", L"", ""},
    {"Accented", L"h\x00F4tel", "h\xC3\xB4tel"},
    {"Cyrillic", L"\x0447\x0435\x0440\x0442\x0451\x0436", "\xD1\x87\xD0\xB5\xD1\x80\xD1\x82\xD1\x91\xD0\xB6"},
    {"Chinese", L"\x56FE\x7EB8.dwg", "\xE5\x9B\xBE\xE7\xBA\xB8.dwg"},
    {"LastOfOneByte", L"\x7F", "\x7F"},
    {"FirstOfTwoBytes", L"\x80", "\xC2\x80"},
    {"LastOfTwoBytes", L"\x7FF", "\xDF\xBF"},
    {"FirstOfThreeBytes", L"\x800", "\xE0\xA0\x80"},
    {"LastOfThreeBytes", L"\xFFFD", "\xEF\xBF\xBD"},
    {"BeyondTheBasicPlane", L"\x1F600", "\xF0\x9F\x98\x80"},
    {"InvisibleTagIsKept", L"a\xE0041.dwg", "a\xF3\xA0\x81\x81.dwg"},
    {"TwoSurrogatesAreOneCharacter", L"\xD83D\xDE00x", "\xF0\x9F\x98\x80x"},
    {"LoneHighSurrogate", L"\xD83Dx", "\xED\xA0\xBDx"},
    {"LoneLowSurrogate", L"\xDE00", "\xED\xB8\x80"},
    {"HighSurrogateAtTheEnd", L"x\xD83D", "x\xED\xA0\xBD"},
};
INSTANTIATE_TEST_SUITE_P(Platform, FileNames, testing::ValuesIn(kNames),
                         [](const auto& instance) { return instance.param.name; });

struct FileName : testing::Test {
    char out[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
    void SetUp() override { errno = 0; }
};

TEST_F(FileName, LocaleFormWhereTheLocaleCanRepresentIt)
{
    const TempDir folder;
    const ScopedLocale locale(folder.path(), "zh_CN", "GBK");
    if (!locale.ok())
        GTEST_SKIP() << "no locale sources on this machine";
    EXPECT_EQ(fileName(L"\x56FE\x7EB8"), "\xCD\xBC\xD6\xBD");
}

TEST_F(FileName, Utf8AsAWholeWhereTheLocaleLacksOneCharacter)
{
    const TempDir folder;
    const ScopedLocale locale(folder.path(), "zh_CN", "GBK");
    if (!locale.ok())
        GTEST_SKIP() << "no locale sources on this machine";
    EXPECT_EQ(fileName(L"\x56FE\xAC00"), "\xE5\x9B\xBE\xEA\xB0\x80");
}

TEST_F(FileName, ExactlyFits)
{
    EXPECT_EQ(tvPlatformFileName(L"abc", out, 4), 3);
    EXPECT_STREQ(out, "abc");
    EXPECT_EQ(out[4], '.');
    EXPECT_EQ(errno, 0);
}

TEST_F(FileName, OneByteTooLongFails)
{
    EXPECT_EQ(tvPlatformFileName(L"abcd", out, 4), -1);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(out[4], '.');
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(FileName, Utf8ThatExactlyFits)
{
    EXPECT_EQ(tvPlatformFileName(L"\x56FE", out, 4), 3);
    EXPECT_EQ(out[4], '.');
    EXPECT_EQ(errno, 0);
}

TEST_F(FileName, Utf8CutInsideACharacterFails)
{
    EXPECT_EQ(tvPlatformFileName(L"a\x56FE", out, 4), -1);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(out[4], '.');
    EXPECT_EQ(errno, ENAMETOOLONG);
}

TEST_F(FileName, RoomForTheTerminatorAlone)
{
    EXPECT_EQ(tvPlatformFileName(L"", out, 1), 0);
    EXPECT_EQ(tvPlatformFileName(L"a", out, 1), -1);
}

TEST_F(FileName, NoRoomIsInvalid)
{
    EXPECT_EQ(tvPlatformFileName(L"a", out, 0), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(out[0], '.');
}

TEST_F(FileName, NullsAreInvalid)
{
    EXPECT_EQ(tvPlatformFileName(nullptr, out, sizeof out), -1);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(tvPlatformFileName(L"a", nullptr, 4), -1);
    EXPECT_EQ(tvPlatformFileName(nullptr, nullptr, 0), -1);
}

TEST_F(FileName, ElementsThatAreNoCharacterFail)
{
    for (const wchar_t c :
         {static_cast<wchar_t>(0x110000), static_cast<wchar_t>(-1), static_cast<wchar_t>(INT32_MIN)}) {
        const wchar_t name[] = {L'a', c, L'\0'};
        errno = 0;
        EXPECT_EQ(tvPlatformFileName(name, out, sizeof out), -1);
        EXPECT_STREQ(out, "");
        EXPECT_EQ(errno, EILSEQ);
    }
}

TEST_F(FileName, AHugeSizeIsTakenAsEnough) { EXPECT_EQ(tvPlatformFileName(L"abc", out, SIZE_MAX), 3); }

struct AccessCase {
    const char* name;
    mode_t permissions;
    int mode;
    bool allowed;
};

// Root may do everything, so the program gives that up for a moment.
class AsOrdinaryUser {
public:
    AsOrdinaryUser()
    {
        if (getuid() == 0)
            m_changed = setresuid(65534, 65534, 0) == 0;
    }
    ~AsOrdinaryUser()
    {
        if (m_changed && setresuid(0, 0, 0) != 0)
            std::abort();
    }

private:
    bool m_changed = false;
};

class AccessModes : public testing::TestWithParam<AccessCase> {};

TEST_P(AccessModes, FollowThePermissions)
{
    const TempDir folder;
    const auto file = folder / "file";
    std::ofstream(file) << "x";
    chmod(folder.path().c_str(), 0755);
    // The caller may be owner, group or neither.
    chmod(file.c_str(), GetParam().permissions * 0111);

    int result, error;
    {
        const AsOrdinaryUser user;
        errno = 0;
        result = _waccess(file.wstring().c_str(), GetParam().mode);
        error = errno;
    }
    EXPECT_EQ(result, GetParam().allowed ? 0 : -1);
    EXPECT_EQ(error, GetParam().allowed ? 0 : EACCES);
}

const AccessCase kAccess[] = {
    {"ExistsWithoutPermission", 0, 0, true},
    {"ExistsWithAll", 6, 0, true},
    {"WriteAllowed", 2, 2, true},
    {"WriteRefused", 4, 2, false},
    {"ReadAllowed", 4, 4, true},
    {"ReadRefused", 2, 4, false},
    {"BothAllowed", 6, 6, true},
    {"BothWithReadOnly", 4, 6, false},
    {"BothWithWriteOnly", 2, 6, false},
};
INSTANTIATE_TEST_SUITE_P(Platform, AccessModes, testing::ValuesIn(kAccess),
                         [](const auto& instance) { return instance.param.name; });

struct InvalidModes : testing::TestWithParam<int> {};

TEST_P(InvalidModes, AreRefused)
{
    errno = 0;
    EXPECT_EQ(_waccess(L"/", GetParam()), -1);
    EXPECT_EQ(errno, EINVAL);
}
INSTANTIATE_TEST_SUITE_P(Platform, InvalidModes, testing::Values(1, 3, 5, 7, 8, -1, INT32_MIN, INT32_MAX));

struct Access : testing::Test {
    void SetUp() override { errno = 0; }
};

TEST_F(Access, FolderExists) { EXPECT_EQ(_waccess(L"/", 0), 0); }

TEST_F(Access, MissingFile)
{
    EXPECT_EQ(_waccess(L"/no/such/file", 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Access, EmptyNameIsMissing)
{
    EXPECT_EQ(_waccess(L"", 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Access, NullIsInvalid)
{
    EXPECT_EQ(_waccess(nullptr, 0), -1);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(Access, FileAsFolderIsMissing)
{
    const TempDir folder;
    std::ofstream(folder / "file") << "x";
    EXPECT_EQ(_waccess((folder / "file/inner").wstring().c_str(), 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Access, NameThatIsTooLongIsMissing)
{
    EXPECT_EQ(_waccess((L"/" + std::wstring(300, L'a')).c_str(), 0), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(_waccess(std::wstring(100000, L'a').c_str(), 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Access, LinkInACircleIsMissing)
{
    const TempDir folder;
    std::filesystem::create_symlink("loop", folder / "loop");
    EXPECT_EQ(_waccess((folder / "loop").wstring().c_str(), 0), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Access, ChineseNameInThePlainLocale)
{
    const TempDir folder;
    std::ofstream(folder / "\xE5\x9B\xBE\xE7\xBA\xB8") << "x";
    EXPECT_EQ(_waccess((folder.path().wstring() + L"/\x56FE\x7EB8").c_str(), 4), 0);
}

TEST_F(Access, CyrillicNameInAUtf8Locale)
{
    const TempDir folder;
    std::ofstream(folder / "\xD1\x87\xD0\xB5") << "x";
    const ScopedLocale locale("C.UTF-8");
    if (!locale.ok())
        GTEST_SKIP() << "no C.UTF-8 locale on this machine";
    EXPECT_EQ(_waccess((folder.path().wstring() + L"/\x0447\x0435").c_str(), 4), 0);
}

} // namespace
