#include "TvFileStreamBuf.h"

#include "runtime/TvThrow.h"
#include "stream/TvFileHandle.h"
#include "stream/TvFlatMemBufStore.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::uint32_t kCacheSize = 16384; // whatever room the cache was built with

} // namespace

TvFileOStreamBuf::TvFileOStreamBuf(const wchar_t* name, Orna::ErrorStatus* status, TvIO::AccessMode access,
                                   TvIO::ShareMode share, TvIO::CreationDisposition disposition,
                                   unsigned int cacheCapacity)
    : TvFileStreamBufImpl(name, status, access, share, disposition), m_cache(cacheCapacity),
      m_unbuffered(false), m_writingNow(false)
{
}

TvFileOStreamBuf::~TvFileOStreamBuf()
{
    try {
        TvFileOStreamBuf::close();
    } catch (...) { // nothing escapes a destructor: who wants to know calls close()
    }
}

// Writes to the file, past the cache and past the C stream's own buffer, so that what fails
// fails here. The repositioning that a C stream wants before a write is left out where the
// last thing that happened to it was a write. Returns how many bytes were written.
std::uint32_t TvFileOStreamBuf::writeThrough(const unsigned char* buf, std::uint32_t count)
{
    if (!m_unbuffered)
        m_unbuffered = std::setvbuf(m_handle, nullptr, _IONBF, 0) == 0;
    if (!m_writingNow)
        ::fseeko(m_handle, 0, SEEK_CUR);
    const std::size_t written = std::fwrite(buf, 1, count, m_handle);
    m_writingNow = std::ferror(m_handle) == 0 && written == count;
    m_dirty = m_dirty || written != 0;
    return static_cast<std::uint32_t>(written);
}

// Writes the cache up to its cursor. The cache keeps its length; after a failure it holds
// what has not reached the file, so that nothing is written twice.
bool TvFileOStreamBuf::writeCache()
{
    const auto count = static_cast<std::uint32_t>(m_cache.tell());
    if (count == 0)
        return true;
    const std::uint32_t written = writeThrough(m_cache.buffer(), count);
    if (m_writingNow) {
        m_cache.rewind();
        return true;
    }
    std::memmove(m_cache.buffer(), m_cache.buffer() + written, count - written);
    m_cache.moveTo(count - written);
    return false;
}

std::uint64_t TvFileOStreamBuf::tell() const { return TvFileStreamBufImpl::tell() + m_cache.tell(); }

std::uint64_t TvFileOStreamBuf::length() const
{
    return std::max(TvFileStreamBufImpl::length(), TvFileOStreamBuf::tell());
}

std::int64_t TvFileOStreamBuf::seek(std::uint64_t offset, TvIO::SeekType type)
{
    flush();
    m_writingNow = false;
    return TvFileStreamBufImpl::seek(offset, type);
}

void TvFileOStreamBuf::writeByte(unsigned char b) { TvFileOStreamBuf::writeBytes(&b, 1); }

void TvFileOStreamBuf::readBytes(unsigned char* buf, std::uint32_t count)
{
    flush();
    m_writingNow = false;
    TvFileStreamBufImpl::readBytes(buf, count);
}

void TvFileOStreamBuf::writeBytes(const unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = m_cache.m_cursor;
    if (!tvIsFile(m_handle) || count > kCacheSize || at + count > kCacheSize ||
        !m_cache.endWithinRoom(at + count))
        return writeBytesFlushing(buf, count);
    m_cache.m_cursor = at + count; // the copy is last, so that a large piece is a jump
    tvCopyBytes(m_cache.m_bytes.asArrayPtr() + at, buf, count);
}

// writeBytes() where the cache is full, small or without memory, or where there is no file.
[[gnu::noinline]] void TvFileOStreamBuf::writeBytesFlushing(const unsigned char* buf, std::uint32_t count)
{
    if (!tvIsFile(m_handle))
        tvThrowMessage(L"Write file error!");
    if (count <= kCacheSize) {
        if (m_cache.m_cursor + count > kCacheSize)
            flush();
        const std::uint32_t end = m_cache.m_cursor + count;
        if (m_cache.store(m_cache.m_cursor, buf, count, end)) {
            m_cache.m_cursor = end;
            return;
        }
    } // a piece that the cache found no memory for goes the way of the large ones
    flush();
    writeThrough(buf, count);
    if (!m_writingNow)
        tvThrowMessage(L"Write file error!");
}

void TvFileOStreamBuf::getBytes(unsigned char* buf, std::uint32_t count)
{
    flush();
    TvFileStreamBufImpl::getBytes(buf, count);
}

void TvFileOStreamBuf::getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    flush();
    TvFileStreamBufImpl::getBytes(position, buf, count);
}

void TvFileOStreamBuf::setBytes(const unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"Write file error!");
    if (count > m_cache.length()) {
        flush();
        TvFileStreamBufImpl::setBytes(buf, count);
        return;
    }
    if (m_cache.tell() + count > m_cache.length())
        flush();
    m_cache.setBytes(buf, count); // never reaches the file from here on, as meant
}

void TvFileOStreamBuf::setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    if (!hasFile())
        tvThrowMessage(L"Write file error!");
    if (count > m_cache.length()) {
        flush();
        TvFileStreamBufImpl::setBytes(position, buf, count);
        return;
    }
    if (m_cache.tell() + count > m_cache.length())
        flush();
    m_cache.setBytes(position, buf, count); // a place in the cache, not in the file, as meant
}

// Releases everything before it tells that the cache did not reach the file; the base does
// the same for what the C stream holds.
void TvFileOStreamBuf::close()
{
    const bool written = writeCache();
    m_cache.rewind(); // a stream that is opened again starts with nothing to write
    m_unbuffered = false;
    m_writingNow = false;
    TvFileStreamBufImpl::close();
    if (!written)
        tvThrowMessage(L"Write file error!");
}

void TvFileOStreamBuf::flush()
{
    if (!writeCache())
        tvThrowMessage(L"Write file error!");
}
