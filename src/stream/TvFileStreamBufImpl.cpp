#include "TvFileStreamBuf.h"

#include "TvAlloc.h"
#include "runtime/TvThrow.h"
#include "stream/TvFileHandle.h"
#include "stream/TvFileLock.h"
#include "stream/TvFileRegistry.h"

#include <stdio_ext.h>
#include <sys/stat.h>

namespace {

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;

// Runs `transfer` and puts the cursor back, also when it throws.
template<class Transfer>
void keepingCursor(TvStreamBuf& stream, Transfer transfer)
{
    const std::uint64_t cursor = stream.tell();
    try {
        transfer();
    } catch (...) {
        try {
            stream.seek(cursor, TvIO::kSeekFromStart);
        } catch (...) { // the failure of the transfer is the one to tell
        }
        throw;
    }
    stream.seek(cursor, TvIO::kSeekFromStart);
}

} // namespace

TvFileStreamBuf::~TvFileStreamBuf() = default;

TvFileStreamBufImpl::TvFileStreamBufImpl(const wchar_t* name, Orna::ErrorStatus* status,
                                         TvIO::AccessMode access, TvIO::ShareMode share,
                                         TvIO::CreationDisposition disposition)
    : m_handle(tvNoFile()), m_fileName(nullptr), m_shareMode(), m_dirty(false), m_descriptor(0),
      m_registered(false)
{
    try {
        const Orna::ErrorStatus result = open(name, access, share, disposition);
        if (result != Orna::eOk && status != nullptr)
            *status = result;
    } catch (...) { // dropped, as meant: callers find a stream without a file
    }
}

TvFileStreamBufImpl::TvFileStreamBufImpl(void* handle)
    : m_handle(static_cast<std::FILE*>(handle)), m_fileName(nullptr), m_shareMode(), m_dirty(false),
      m_descriptor(0), m_registered(false)
{
    if (hasFile())
        m_descriptor = ::fileno(m_handle);
}

TvFileStreamBufImpl::~TvFileStreamBufImpl()
{
    try {
        TvFileStreamBufImpl::close();
    } catch (...) { // nothing escapes a destructor: who wants to know calls close()
    }
}

bool TvFileStreamBufImpl::hasFile() const { return tvIsFile(m_handle); }

std::uint64_t TvFileStreamBufImpl::tell() const
{
    return hasFile() ? static_cast<std::uint64_t>(::ftello(m_handle)) : 0;
}

std::uint64_t TvFileStreamBufImpl::length() const
{
    struct stat record = {};
    if (!hasFile() || ::fstat(m_descriptor, &record) != 0)
        return 0;
    return static_cast<std::uint64_t>(record.st_size);
}

void TvFileStreamBufImpl::truncate()
{
    if (hasFile())
        ::fseeko(m_handle, 0, SEEK_END);
}

std::int64_t TvFileStreamBufImpl::seek(std::uint64_t offset, TvIO::SeekType type)
{
    if (!hasFile())
        tvThrowMessage(L"File internal error!");
    int result = 0;
    switch (type) {
    case TvIO::kSeekForward:
        result = ::fseeko(m_handle, static_cast<off_t>(offset), SEEK_CUR);
        break;
    case TvIO::kSeekBackward:
        result = ::fseeko(m_handle, static_cast<off_t>(tell() - offset), SEEK_SET);
        break;
    case TvIO::kSeekFromEnd: // forward from the end, unlike the other streams, as meant
        result = ::fseeko(m_handle, static_cast<off_t>(offset), SEEK_END);
        break;
    default:
        result = ::fseeko(m_handle, static_cast<off_t>(offset), SEEK_SET);
        break;
    }
    if (result == 0)
        return 0;
    if (static_cast<std::uint32_t>(offset) == kAllOnes) // callers ask with -1 whether they may seek
        return -1;
    tvThrowMessage(L"File internal error!");
}

void TvFileStreamBufImpl::readBytes(unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"End of file!");
    if (::__fwriting(m_handle) != 0) // a large read would throw away what was written just before
        ::fseeko(m_handle, 0, SEEK_CUR);
    [[maybe_unused]] const std::size_t items = std::fread(buf, count, 1, m_handle); // may be short, untold
}

void TvFileStreamBufImpl::writeBytes(const unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"Write file error!");
    ::fseeko(m_handle, 0, SEEK_CUR); // a C stream wants this between reading and writing
    const std::size_t written = std::fwrite(buf, 1, count, m_handle);
    if (std::ferror(m_handle) != 0 || written < count)
        tvThrowMessage(L"Write file error!");
    m_dirty = true;
}

void TvFileStreamBufImpl::getBytes(unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"End of file!");
    keepingCursor(*this, [&] { readBytes(buf, count); });
}

void TvFileStreamBufImpl::getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"End of file!");
    seek(position, TvIO::kSeekFromStart);
    readBytes(buf, count);
}

void TvFileStreamBufImpl::setBytes(const unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"Write file error!");
    keepingCursor(*this, [&] { writeBytes(buf, count); });
}

void TvFileStreamBufImpl::setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"Write file error!");
    seek(position, TvIO::kSeekFromStart);
    writeBytes(buf, count);
}

const wchar_t* TvFileStreamBufImpl::fileName() const { return m_fileName; }

TvIO::ShareMode TvFileStreamBufImpl::shareMode() const { return m_shareMode; }

void* TvFileStreamBufImpl::fileHandle() const { return m_handle; }

void TvFileStreamBufImpl::close()
{
    bool failed = false;
    if (hasFile()) {
        failed = m_dirty && std::fflush(m_handle) != 0;
        tvUnlockFile(m_descriptor);
        if (m_registered && m_fileName != nullptr)
            TvFileRegistry::remove(*this, m_fileName);
        m_registered = false;
        failed = std::fclose(m_handle) != 0 || failed;
        m_handle = tvNoFile();
        m_descriptor = 0;
    }
    _tvFree(m_fileName);
    m_fileName = nullptr;
    m_shareMode = TvIO::ShareMode();
    m_dirty = false;
    TvFileRegistry::check();
    if (failed)
        tvThrowMessage(L"Write file error!");
}
