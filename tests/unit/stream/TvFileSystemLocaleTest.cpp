// Which file-system queries set the process's character type, as hosts expect of them.
#include "TvFileSystem.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The locales that were asked for, in order.
std::vector<std::string> g_asked;

} // namespace

extern "C" char* setlocale(int category, const char* locale) noexcept
{
    static auto* const real = reinterpret_cast<char* (*)(int, const char*)>(dlsym(RTLD_NEXT, "setlocale"));
    if (locale != nullptr)
        g_asked.push_back(std::to_string(category) + " " + locale);
    return real(category, locale);
}

namespace {

using Asked = std::vector<std::string>;

const Asked kOnce{std::to_string(LC_CTYPE) + " UTF-8"};

class FileSystemLocale : public testing::Test {
protected:
    void SetUp() override { g_asked.clear(); }

    TestFiles m_files;
    const std::wstring m_file = m_files.put("file", "text");
    const std::wstring m_missing = m_files.wide("missing");
};

TEST_F(FileSystemLocale, WaccessSetsItOnEachCall)
{
    EXPECT_EQ(TvFileSystem::waccess(m_file.c_str(), R_OK), 0);
    EXPECT_EQ(g_asked, kOnce);
    TvFileSystem::waccess(m_missing.c_str(), R_OK);
    EXPECT_EQ(g_asked.size(), 2u);
}

TEST_F(FileSystemLocale, WstatSetsItOnEachCall)
{
    struct stat record = {};
    EXPECT_EQ(TvFileSystem::wstat(m_file.c_str(), &record), 0);
    EXPECT_EQ(g_asked, kOnce);
    TvFileSystem::wstat(m_missing.c_str(), &record);
    EXPECT_EQ(g_asked.size(), 2u);
}

TEST_F(FileSystemLocale, QueriesThroughWstatSetIt)
{
    EXPECT_EQ(TvFileSystem::getFileSize(m_file.c_str()), 4u);
    EXPECT_EQ(g_asked, kOnce);
    g_asked.clear();
    EXPECT_TRUE(TvFileSystem::isFileExisting(m_file.c_str()));
    EXPECT_EQ(g_asked, kOnce);
}

TEST_F(FileSystemLocale, OtherQueriesAndStreamsLeaveItAlone)
{
    EXPECT_TRUE(TvFileSystem::accessFile(m_file.c_str(), TvIO::kAccessRead));
    destoryFileIOStreamBuf(TvFileSystem::createFileBuf(m_file.c_str(), TvIO::kAccessRead,
                                                       TvIO::kShareDenyNone, TvIO::kOpenExisting));
    EXPECT_FALSE(TvFileSystem::isFileExisting(m_missing.c_str())); // not asked any further
    EXPECT_EQ(g_asked, Asked());
}

} // namespace
