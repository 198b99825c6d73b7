#include "TvFileStreamBuf.h"

#include "TvAlloc.h"
#include "TvCharOp.h"
#include "runtime/TvPlatformCalls.h"
#include "runtime/TvThrow.h"
#include "stream/TvFileHandle.h"
#include "stream/TvFileLock.h"
#include "stream/TvFileRegistry.h"

#include <cwchar>
#include <memory>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t kPathSize = 4096; // the system takes no longer path, terminating 0 included

constexpr TvIO::AccessMode kReadWrite = TvIO::kAccessRead | TvIO::kAccessWrite;

struct NameDeleter {
    void operator()(wchar_t* name) const { _tvFree(name); }
};
using Name = std::unique_ptr<wchar_t, NameDeleter>;

Name copyOf(const wchar_t* name)
{
    Name copy(static_cast<wchar_t*>(_tvMalloc((std::wcslen(name) + 1) * sizeof(wchar_t))));
    if (copy)
        _tarmcscpy(copy.get(), name);
    return copy;
}

bool isDirectory(const char* path)
{
    struct stat record = {};
    return ::stat(path, &record) == 0 && S_ISDIR(record.st_mode);
}

bool isReadableAndWritable(const char* path) { return ::access(path, R_OK | W_OK) == 0; }

// The mode for fopen() that the disposition asks for, or null when a file is missing that
// has to exist. Throws where the disposition forbids the open.
const char* openMode(const char* path, bool exists, TvIO::AccessMode access, TvIO::ShareMode share,
                     TvIO::CreationDisposition disposition)
{
    const bool forReading = (access & TvIO::kAccessRead) != 0;
    const bool forWriting = (access & TvIO::kAccessWrite) != 0;
    const char* const openAsItIs = forWriting || share != TvIO::kShareDenyNone ? "r+b" : "rb";
    const char* const create = forReading ? "w+b" : "wb";
    switch (disposition) {
    case TvIO::kCreateNew:
        if (isReadableAndWritable(path))
            tvThrowStatus(Orna::eFileAccessErr);
        return create;
    case TvIO::kCreateAlways:
        return create;
    case TvIO::kOpenExisting:
        return exists ? openAsItIs : nullptr;
    case TvIO::kOpenAlways: // a file not both readable and writable counts as missing, as meant
        return isReadableAndWritable(path) ? openAsItIs : create;
    case TvIO::kTruncateExisting:
        if (!forWriting || !isReadableAndWritable(path))
            tvThrowStatus(Orna::eFileAccessErr);
        return create;
    }
    tvThrowStatus(Orna::eInvalidInput);
}

bool isExclusive(TvIO::AccessMode access, TvIO::ShareMode share, TvIO::CreationDisposition disposition)
{
    return access == kReadWrite && share == TvIO::kShareDenyWrite && disposition == TvIO::kOpenExisting;
}

} // namespace

// Gives up a file that an exclusive open has just got hold of.
void TvFileStreamBufImpl::abandonFile()
{
    std::fclose(m_handle);
    m_handle = nullptr;
    m_descriptor = 0;
}

// Takes the name and the lock. Two processes that come here at once may both fail, but never
// both succeed: each looks again after it has locked, and one of them locked first.
Orna::ErrorStatus TvFileStreamBufImpl::lockExclusively(const wchar_t* name)
{
    if (tvFileIsLockedElsewhere(m_descriptor))
        return Orna::eFileLocked;
    if (TvFileRegistry::contains(name))
        return Orna::eFileNotFound;
    if (!TvFileRegistry::add(*this, name))
        return Orna::eFileOpenFailed;
    tvLockFileShared(m_descriptor);
    if (tvFileIsLockedElsewhere(m_descriptor)) {
        TvFileRegistry::remove(*this, name);
        return Orna::eFileLocked;
    }
    m_registered = true;
    return Orna::eOk;
}

Orna::ErrorStatus TvFileStreamBufImpl::open(const wchar_t* name, TvIO::AccessMode access,
                                            TvIO::ShareMode share, TvIO::CreationDisposition disposition)
{
    if (name == nullptr || *name == 0)
        tvThrowMessage(L"No filename!");
    Name copy = copyOf(name); // before close(), which frees the own name, and that may be `name`
    close();
    if (!copy)
        return Orna::eFileOpenFailed;

    char path[kPathSize];
    if (tvPlatformFileName(copy.get(), path, sizeof path) < 0)
        path[0] = '\0'; // a name that is no possible path is a missing file

    const int wanted =
        ((access & TvIO::kAccessRead) != 0 ? R_OK : 0) | ((access & TvIO::kAccessWrite) != 0 ? W_OK : 0);
    const bool exists = ::access(path, wanted) == 0;
    if (exists && isDirectory(path))
        tvThrowStatus(Orna::eFileAccessErr);
    const char* const mode = openMode(path, exists, access, share, disposition);
    if (mode == nullptr)
        return Orna::eFileNotFound;

    m_handle = std::fopen(path, mode);
    if (m_handle == nullptr) {
        m_handle = tvNoFile();
        return Orna::eFileOpenFailed;
    }
    m_descriptor = ::fileno(m_handle);
    if (isExclusive(access, share, disposition)) {
        const Orna::ErrorStatus status = lockExclusively(copy.get());
        if (status != Orna::eOk) {
            abandonFile();
            return status;
        }
    } else {
        tvLockFileShared(m_descriptor);
    }
    m_fileName = copy.release();
    m_shareMode = share;
    TvFileRegistry::check();
    return Orna::eOk;
}
