#define TV_BYTES_OUT_OF_LINE // defines readByte()
#include "TvFileStreamBuf.h"

#include "runtime/TvThrow.h"
#include "runtime/TvCopyBytes.h"

#include <algorithm>

#include <sys/mman.h>
#include <sys/stat.h>

namespace {

constexpr std::uint64_t kFirstStep = std::uint64_t{64} << 10;
constexpr std::uint64_t kLargestStep = std::uint64_t{4} << 20;
constexpr std::uint64_t kPageMask = 4095;

// Where an empty file, which the system does not map, is mapped to. Never read.
const unsigned char g_emptyFile = 0;

} // namespace

TvFileIStreamBuf::TvFileIStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                                   TvIO::ShareMode share, TvIO::CreationDisposition disposition)
    : TvFileStreamBufImpl(name, status, access, share, disposition), m_map(nullptr), m_mapLength(0),
      m_position(0), m_readyEnd(0), m_aheadSize(0)
{
    if (status != nullptr && *status != Orna::eOk)
        TvFileStreamBufImpl::close();
    else
        init();
}

TvFileIStreamBuf::~TvFileIStreamBuf()
{
    try {
        TvFileIStreamBuf::close();
    } catch (...) { // nothing escapes a destructor
    }
}

// Maps the file. What cannot be mapped stays unmapped and is read through the C stream.
void TvFileIStreamBuf::init()
{
    struct stat record = {};
    if (!hasFile() || ::fstat(m_descriptor, &record) != 0 || !S_ISREG(record.st_mode))
        return;
    if (record.st_size == 0) {
        m_map = &g_emptyFile;
        return;
    }
    const auto size = static_cast<std::size_t>(record.st_size);
    void* const map = ::mmap(nullptr, size, PROT_READ, MAP_SHARED, m_descriptor, 0);
    if (map == MAP_FAILED)
        return;
    m_map = static_cast<const unsigned char*>(map);
    m_mapLength = size;
}

// Moves m_readyEnd to `end` or beyond, both inside the mapping. A reader who goes straight on
// has the pages ahead of him brought in, in steps that double; one who jumps about has not.
void TvFileIStreamBuf::readAhead(std::uint64_t end)
{
    const bool goesOn = m_position <= m_readyEnd;
    if (!goesOn) {
        m_aheadSize = 0;
        m_readyEnd = end;
        return;
    }
    m_aheadSize = std::clamp(2 * m_aheadSize, kFirstStep, kLargestStep);
    const std::uint64_t start = m_readyEnd & ~kPageMask;
    m_readyEnd = std::min(std::max(end, m_readyEnd + m_aheadSize), m_mapLength);
#ifdef MADV_POPULATE_READ
    if (m_aheadSize > kFirstStep)
        ::madvise(const_cast<unsigned char*>(m_map) + start, m_readyEnd - start, MADV_POPULATE_READ);
#endif
}

std::uint64_t TvFileIStreamBuf::tell() const
{
    return m_map != nullptr ? m_position : TvFileStreamBufImpl::tell();
}

std::uint64_t TvFileIStreamBuf::length() const
{
    return m_map != nullptr ? m_mapLength : TvFileStreamBufImpl::length();
}

void TvFileIStreamBuf::truncate()
{
    if (hasFile())
        tvThrowMessage(L"File internal error!");
}

std::int64_t TvFileIStreamBuf::seek(std::uint64_t offset, TvIO::SeekType type)
{
    if (m_map == nullptr)
        return TvFileStreamBufImpl::seek(offset, type);
    std::uint64_t position = offset;
    switch (type) {
    case TvIO::kSeekForward:
        position = m_position + offset;
        break;
    case TvIO::kSeekBackward:
        position = m_position - offset;
        break;
    case TvIO::kSeekFromEnd:
        position = m_mapLength - offset;
        break;
    default:
        break;
    }
    if (position > m_mapLength)
        tvThrowMessage(L"Out of file stream buffer!");
    m_position = position;
    return static_cast<std::int64_t>(position);
}

// Aligned so that its few instructions lie in one line of the cache.
[[gnu::aligned(64)]] unsigned char TvFileIStreamBuf::readByte()
{
    if (m_position < m_readyEnd)
        return m_map[m_position++];
    return TvStreamBuf::readByte();
}

void TvFileIStreamBuf::readBytes(unsigned char* buf, std::uint32_t count)
{
    const std::uint64_t at = m_position;
    const std::uint64_t end = at + count;
    if (end - 1 >= m_readyEnd) // also for 0 bytes at the start, where nothing may be mapped
        return readBytesBeyond(buf, count);
    m_position = end;
    tvCopyBytes(buf, m_map + at, count); // last, so that a large piece is a jump
}

// readBytes() where the length has to be looked at, or nothing is mapped.
[[gnu::noinline]] void TvFileIStreamBuf::readBytesBeyond(unsigned char* buf, std::uint32_t count)
{
    if (m_map == nullptr)
        return TvFileStreamBufImpl::readBytes(buf, count);
    const std::uint64_t end = m_position + count;
    if (end > m_mapLength)
        tvThrowMessage(L"End of file!");
    readAhead(end);
    tvCopyBytes(buf, m_map + m_position, count);
    m_position = end;
}

void TvFileIStreamBuf::writeBytes(const unsigned char*, std::uint32_t)
{
    tvThrowMessage(L"Write file error!");
}

void TvFileIStreamBuf::getBytes(unsigned char* buf, std::uint32_t count)
{
    if (m_map == nullptr)
        return TvFileStreamBufImpl::getBytes(buf, count);
    TvFileIStreamBuf::readBytes(buf, count); // moves the cursor, unlike other streams, as meant
}

void TvFileIStreamBuf::setBytes(const unsigned char*, std::uint32_t) { tvThrowMessage(L"Write file error!"); }

void TvFileIStreamBuf::close()
{
    if (m_mapLength != 0)
        ::munmap(const_cast<unsigned char*>(m_map), m_mapLength);
    m_map = nullptr;
    m_mapLength = 0;
    m_position = 0;
    m_readyEnd = 0;
    m_aheadSize = 0;
    TvFileStreamBufImpl::close();
}
