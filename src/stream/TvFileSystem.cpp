#include "TvFileSystem.h"

#include "TvAlloc.h"
#include "TvErrorStatus.h"
#include "TvVector.h"
#include "codepage/Utf8.h"
#include "runtime/TvPlatformCalls.h"
#include "runtime/TvThrow.h"

#include <cerrno>
#include <clocale>

#include <unistd.h>

namespace {

constexpr unsigned int kDirectoryBit = 0x4000; // also set for block devices and sockets
constexpr unsigned int kFileTypeMask = 0xF000;
constexpr unsigned int kCacheCapacity = 16384;
constexpr std::size_t kLongestName = 1u << 20; // far beyond what the system takes
constexpr std::uint64_t kNoSize = ~std::uint64_t{0};

// Calls `use` with the path in bytes. A path that has none is a missing file.
template<class Use>
int withPathBytes(const wchar_t* path, Use use)
{
    constexpr std::size_t kBytesPerCharacter = 4; // the longest form in UTF-8 and in any locale's charset
    if (path == nullptr) {
        errno = EINVAL;
        return -1;
    }
    const std::size_t size = (std::wcslen(path) + 1) * kBytesPerCharacter;
    const auto bytes = static_cast<char*>(_tvMalloc(size));
    if (bytes == nullptr) {
        errno = ENOMEM;
        return -1;
    }
    std::setlocale(LC_CTYPE, "UTF-8"); // each call, as meant: hosts rely on the locale that it leaves
    const int result = tvPlatformFileName(path, bytes, size) < 0 ? -1 : use(bytes);
    _tvFree(bytes);
    return result;
}

} // namespace

int TvFileSystem::waccess(const wchar_t* path, int mode)
{
    return withPathBytes(path, [mode](const char* bytes) { return ::access(bytes, mode); });
}

int TvFileSystem::wstat(const wchar_t* path, struct stat* out)
{
    return withPathBytes(path, [out](const char* bytes) { return ::stat(bytes, out); });
}

bool TvFileSystem::isFileExisting(const wchar_t* path)
{
    if (path == nullptr || *path == 0)
        return false;
    if (_waccess(path, 0) != 0)
        return false;
    struct stat record = {};
    return wstat(path, &record) == 0 && (record.st_mode & kDirectoryBit) == 0;
}

bool TvFileSystem::accessFile(const wchar_t* path, TvIO::AccessMode access)
{
    if (path == nullptr || *path == 0)
        return false;
    const std::size_t length = std::wcslen(path);
    if (length > kLongestName)
        return false;
    TvVector<char> utf8;
    utf8.resize(static_cast<unsigned int>(TvDetail::utf8EncodedSize(path, length) + 1));
    if (utf8.isEmpty())
        return false;
    utf8.asArrayPtr()[TvDetail::utf8EncodePlain(path, length, utf8.asArrayPtr())] = '\0';
    const int mode =
        ((access & TvIO::kAccessRead) != 0 ? R_OK : 0) | ((access & TvIO::kAccessWrite) != 0 ? W_OK : 0);
    if (::access(utf8.asArrayPtr(), mode) != 0)
        return false;
    struct stat record = {};
    return ::stat(utf8.asArrayPtr(), &record) == 0 && (record.st_mode & kFileTypeMask) != kDirectoryBit;
}

TvFileStreamBuf* TvFileSystem::createFileBuf(const wchar_t* path, TvIO::AccessMode access,
                                             TvIO::ShareMode share, TvIO::CreationDisposition disposition)
{
    if (path == nullptr || *path == 0)
        tvThrowStatus(Orna::eNoFileName);
    Orna::ErrorStatus status = Orna::eOk;
    TvFileStreamBuf* stream = nullptr;
    if ((access & TvIO::kAccessWrite) != 0)
        stream = createFileOStreamBuf(path, &status, access, share, disposition, kCacheCapacity);
    else
        stream = createFileIStreamBuf(path, &status, access, share, disposition);
    if (status == Orna::eOk)
        return stream;
    destoryFileIOStreamBuf(stream);
    return nullptr;
}

std::uint64_t TvFileSystem::getFileSize(const wchar_t* path)
{
    struct stat record = {};
    return wstat(path, &record) == 0 ? static_cast<std::uint64_t>(record.st_size) : kNoSize;
}

bool TvFileSystem::isDirectory(const wchar_t*) { return false; }

int TvFileSystem::createFile(const wchar_t*) { return 0; }

int TvFileSystem::deleteFile(const wchar_t*) { return 0; }

int TvFileSystem::renameFile(const wchar_t*, const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getCreationTime(const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getAccessingTime(const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getModificationTime(const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getFileSize(void*) { return 0; }

int TvFileSystem::createDirectory(const wchar_t*) { return 0; }

int TvFileSystem::deleteDirectory(const wchar_t*) { return 0; }

int TvFileSystem::setCurrentDirectory(const wchar_t*) { return 0; }

int TvFileSystem::getCurrentDirectory(wchar_t*) { return 0; }

int TvFileSystem::getOSDirectory(wchar_t*) { return 0; }

int TvFileSystem::getSystemDirectory(wchar_t*) { return 0; }

int TvFileSystem::getTempDirectory(wchar_t*) { return 0; }

int TvFileSystem::getRunDirectory(wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getDiskAvailableSpace(const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getDiskFreeSpace(const wchar_t*) { return 0; }

std::uint64_t TvFileSystem::getDiskTotalSpace(const wchar_t*) { return 0; }
