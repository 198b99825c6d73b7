#include "TvFileSystem.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <clocale>
#include <filesystem>
#include <string>
#include <typeinfo>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

class TvFileSystemTest : public testing::Test {
protected:
    // A socket in the file system, whose type shares a bit with that of directories.
    std::wstring putSocket(const std::string& name) const
    {
        const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        files.path(name).copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        ::close(descriptor);
        return files.wide(name);
    }
    std::wstring putDirectory(const std::string& name) const
    {
        std::filesystem::create_directory(files.path(name));
        return files.wide(name);
    }

    TestFiles files;
};

TEST_F(TvFileSystemTest, FileExists)
{
    EXPECT_TRUE(TvFileSystem::isFileExisting(files.put("a", "").c_str()));
}

TEST_F(TvFileSystemTest, MissingFileDoesNotExist)
{
    EXPECT_FALSE(TvFileSystem::isFileExisting(files.wide("missing").c_str()));
}

TEST_F(TvFileSystemTest, DirectoryIsNoExistingFile)
{
    EXPECT_FALSE(TvFileSystem::isFileExisting(putDirectory("dir").c_str()));
}

TEST_F(TvFileSystemTest, SocketIsNoExistingFile)
{
    EXPECT_FALSE(TvFileSystem::isFileExisting(putSocket("socket").c_str()));
}

TEST_F(TvFileSystemTest, CharacterDeviceIsAnExistingFile)
{
    EXPECT_TRUE(TvFileSystem::isFileExisting(L"/dev/null"));
}

TEST_F(TvFileSystemTest, NullAndEmptyPathsDoNotExist)
{
    EXPECT_FALSE(TvFileSystem::isFileExisting(nullptr));
    EXPECT_FALSE(TvFileSystem::isFileExisting(L""));
}

TEST_F(TvFileSystemTest, DanglingLinkDoesNotExist)
{
    std::filesystem::create_symlink("nowhere", files.path("link"));
    EXPECT_FALSE(TvFileSystem::isFileExisting(files.wide("link").c_str()));
}

TEST_F(TvFileSystemTest, WaccessAnswersAsAccess)
{
    const std::wstring name = files.put("a", "");
    EXPECT_EQ(TvFileSystem::waccess(name.c_str(), F_OK), 0);
    EXPECT_EQ(TvFileSystem::waccess(name.c_str(), R_OK | W_OK), 0);
    EXPECT_EQ(TvFileSystem::waccess(name.c_str(), X_OK), -1);
    EXPECT_EQ(TvFileSystem::waccess(files.wide("missing").c_str(), F_OK), -1);
}

TEST_F(TvFileSystemTest, WaccessOfADirectoryAnswersForIt)
{
    EXPECT_EQ(TvFileSystem::waccess(putDirectory("dir").c_str(), X_OK), 0);
}

TEST_F(TvFileSystemTest, WaccessOfNullOrOfNoTextIsMinusOne)
{
    const wchar_t noText[] = {L'a', static_cast<wchar_t>(0x110000), 0};
    EXPECT_EQ(TvFileSystem::waccess(nullptr, F_OK), -1);
    EXPECT_EQ(TvFileSystem::waccess(L"", F_OK), -1);
    EXPECT_EQ(TvFileSystem::waccess(noText, F_OK), -1);
}

TEST_F(TvFileSystemTest, WstatFillsTheRecord)
{
    struct stat record = {};
    EXPECT_EQ(TvFileSystem::wstat(files.put("a", "12345").c_str(), &record), 0);
    EXPECT_EQ(record.st_size, 5);
    EXPECT_TRUE(S_ISREG(record.st_mode));
}

TEST_F(TvFileSystemTest, WstatOfAMissingFileIsMinusOneAndKeepsTheRecord)
{
    struct stat record = {};
    record.st_size = 77;
    EXPECT_EQ(TvFileSystem::wstat(files.wide("missing").c_str(), &record), -1);
    EXPECT_EQ(record.st_size, 77);
}

TEST_F(TvFileSystemTest, SizeOfAFile)
{
    EXPECT_EQ(TvFileSystem::getFileSize(files.put("a", "12345").c_str()), 5u);
    EXPECT_EQ(TvFileSystem::getFileSize(files.put("b", "").c_str()), 0u);
}

TEST_F(TvFileSystemTest, SizeOfAMissingFileIsAllOnes)
{
    EXPECT_EQ(TvFileSystem::getFileSize(files.wide("missing").c_str()), ~std::uint64_t{0});
    EXPECT_EQ(TvFileSystem::getFileSize(static_cast<const wchar_t*>(nullptr)), ~std::uint64_t{0});
}

TEST_F(TvFileSystemTest, AccessFileAllowsWhatTheFileAllows)
{
    const std::wstring name = files.put("a", "");
    EXPECT_TRUE(TvFileSystem::accessFile(name.c_str(), kRead));
    EXPECT_TRUE(TvFileSystem::accessFile(name.c_str(), kBoth));
    EXPECT_TRUE(TvFileSystem::accessFile(name.c_str(), 0x40000000u));
    EXPECT_TRUE(TvFileSystem::accessFile(name.c_str(), kNeither));
}

TEST_F(TvFileSystemTest, AccessFileRefusesMissingAndDirectory)
{
    EXPECT_FALSE(TvFileSystem::accessFile(files.wide("missing").c_str(), kRead));
    EXPECT_FALSE(TvFileSystem::accessFile(putDirectory("dir").c_str(), kRead));
    EXPECT_FALSE(TvFileSystem::accessFile(nullptr, kRead));
    EXPECT_FALSE(TvFileSystem::accessFile(L"", kRead));
}

TEST_F(TvFileSystemTest, AccessFileTakesASocketForAFile)
{
    EXPECT_TRUE(TvFileSystem::accessFile(putSocket("socket").c_str(), kRead));
}

TEST_F(TvFileSystemTest, AccessFileAsksForTheUsersRights)
{
    const std::wstring name = files.put("a", "");
    chmod(files.path("").c_str(), 0755);
    chmod(files.path("a").c_str(), 0444);
    EXPECT_EQ(inOtherProcess([&] {
                  if (geteuid() == 0 && (setgid(65534) != 0 || setuid(65534) != 0))
                      return 99;
                  return TvFileSystem::accessFile(name.c_str(), kRead) &&
                                 !TvFileSystem::accessFile(name.c_str(), kBoth) &&
                                 !TvFileSystem::accessFile(name.c_str(), kWrite)
                             ? 0
                             : 1;
              }),
              0);
}

TEST_F(TvFileSystemTest, AccessFileTakesUtf8InEveryLocale)
{
    files.put("\xC3\xA9", "");
    std::setlocale(LC_CTYPE, "C");
    EXPECT_TRUE(TvFileSystem::accessFile((files.wide("") + L"\u00E9").c_str(), kRead));
}

// Its names are in UTF-8 as TvCharMapper::unicodeToUtf8 writes it.
TEST_F(TvFileSystemTest, AccessFileLeavesOutCharactersAboveFFFF)
{
    const std::wstring name = files.put("a", "");
    EXPECT_TRUE(TvFileSystem::accessFile((name + L'\U0001F600').c_str(), kRead));
    EXPECT_FALSE(TvFileSystem::isFileExisting((name + L'\U0001F600').c_str()));
    EXPECT_FALSE(TvFileSystem::accessFile(L"\U0001F600", kRead));
}

TEST_F(TvFileSystemTest, CreateFileBufForReadingIsAMappedStream)
{
    std::unique_ptr<TvFileStreamBuf> file(TvFileSystem::createFileBuf(
        files.put("a", "text").c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(typeid(*file), typeid(TvFileIStreamBuf));
    EXPECT_EQ(read(*file, 4), "text");
}

TEST_F(TvFileSystemTest, CreateFileBufForWritingIsACachedStream)
{
    std::unique_ptr<TvFileStreamBuf> file(TvFileSystem::createFileBuf(
        files.wide("a").c_str(), kWrite, TvIO::kShareDenyNone, TvIO::kCreateAlways));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(typeid(*file), typeid(TvFileOStreamBuf));
    write(*file, std::string(16384, 'x'));
    EXPECT_EQ(files.get("a"), "");
    file.reset();
    EXPECT_EQ(files.get("a").size(), 16384u);
}

TEST_F(TvFileSystemTest, CreateFileBufTakesPlainNumbers)
{
    std::unique_ptr<TvFileStreamBuf> file(
        TvFileSystem::createFileBuf(files.put("a", "text").c_str(), 0xC0000000u, 64, 3));
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(typeid(*file), typeid(TvFileOStreamBuf));
}

TEST_F(TvFileSystemTest, CreateFileBufOfNullOrEmptyPathThrows365)
{
    EXPECT_EQ(thrownBy([] {
                  TvFileSystem::createFileBuf(nullptr, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
              }),
              L"status 365");
    EXPECT_EQ(
        thrownBy([] { TvFileSystem::createFileBuf(L"", kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting); }),
        L"status 365");
}

TEST_F(TvFileSystemTest, CreateFileBufIsNullWhenTheOpenGivesAStatus)
{
    EXPECT_EQ(TvFileSystem::createFileBuf(files.wide("missing").c_str(), kRead, TvIO::kShareDenyNone,
                                          TvIO::kOpenExisting),
              nullptr);
    EXPECT_EQ(TvFileSystem::createFileBuf(files.wide("missing").c_str(), kBoth, TvIO::kShareDenyNone,
                                          TvIO::kOpenExisting),
              nullptr);
}

TEST_F(TvFileSystemTest, CreateFileBufIsAStreamWithoutAFileWhenTheOpenThrows)
{
    std::unique_ptr<TvFileStreamBuf> file(TvFileSystem::createFileBuf(
        putDirectory("dir").c_str(), kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
    ASSERT_NE(file, nullptr);
    EXPECT_FALSE(hasFile(*file));
}

TEST_F(TvFileSystemTest, OperationsOfOtherPlatformsGiveTheirFixedResults)
{
    const std::wstring dir = putDirectory("dir");
    const std::wstring name = files.put("a", "text");
    const wchar_t* const path = name.c_str();
    EXPECT_FALSE(TvFileSystem::isDirectory(dir.c_str()));
    EXPECT_EQ(TvFileSystem::createFile(files.wide("new").c_str()), 0);
    EXPECT_EQ(TvFileSystem::deleteFile(path), 0);
    EXPECT_EQ(TvFileSystem::renameFile(path, files.wide("new").c_str()), 0);
    EXPECT_EQ(TvFileSystem::getCreationTime(path), 0u);
    EXPECT_EQ(TvFileSystem::getAccessingTime(path), 0u);
    EXPECT_EQ(TvFileSystem::getModificationTime(path), 0u);
    EXPECT_EQ(TvFileSystem::getFileSize(static_cast<void*>(nullptr)), 0u);
    EXPECT_EQ(TvFileSystem::createDirectory(files.wide("new").c_str()), 0);
    EXPECT_EQ(TvFileSystem::deleteDirectory(dir.c_str()), 0);
    EXPECT_EQ(TvFileSystem::setCurrentDirectory(dir.c_str()), 0);
    EXPECT_EQ(TvFileSystem::getDiskAvailableSpace(path), 0u);
    EXPECT_EQ(TvFileSystem::getDiskFreeSpace(path), 0u);
    EXPECT_EQ(TvFileSystem::getDiskTotalSpace(path), 0u);
    EXPECT_FALSE(files.has("new"));
    EXPECT_TRUE(files.has("dir"));
    EXPECT_EQ(files.get("a"), "text");
}

TEST_F(TvFileSystemTest, DirectoryQueriesLeaveTheBufferAlone)
{
    wchar_t out[] = L"untouched";
    EXPECT_EQ(TvFileSystem::getCurrentDirectory(out), 0);
    EXPECT_EQ(TvFileSystem::getOSDirectory(out), 0);
    EXPECT_EQ(TvFileSystem::getSystemDirectory(out), 0);
    EXPECT_EQ(TvFileSystem::getTempDirectory(out), 0);
    EXPECT_EQ(TvFileSystem::getRunDirectory(out), 0);
    EXPECT_STREQ(out, L"untouched");
}

} // namespace
