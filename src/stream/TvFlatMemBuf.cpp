#define TV_BYTES_OUT_OF_LINE // defines readByte() and writeByte()
#include "TvMemStreamBuf.h"

#include "TvHooks.h"
#include "runtime/TvCopyBytes.h"
#include "stream/TvFlatMemBufStore.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>

namespace {

constexpr std::uint32_t kLongest = std::numeric_limits<int>::max(); // what the storage can count

[[gnu::cold, gnu::noinline]] void reportOutOfRange() { TvDetail::reportMessage(L"Out of stream buffer!"); }

std::uint32_t cut(std::uint64_t position) { return static_cast<std::uint32_t>(position); }

// True when `count` bytes from `position` end at `limit` or before, and the sum does not wrap.
bool fits(std::uint32_t position, std::uint32_t count, std::uint32_t limit)
{
    return position <= limit && count <= limit - position;
}

bool wraps(std::uint32_t position, std::uint32_t count) { return position + count < position; }

// Out of line so that the byte's usual way, which is short, needs no stack for its address.
[[gnu::noinline]] void writeOneByte(TvFlatMemBuf& stream, unsigned char b)
{
    stream.TvFlatMemBuf::writeBytes(&b, 1);
}

} // namespace

// Makes the stream end at `end`, shorter or longer. False when memory ran out, which has then
// been reported; nothing has changed.
bool TvFlatMemBuf::endAt(std::uint32_t end)
{
    if (end > kLongest) {
        TvDetail::reportStatus(Orna::eOutOfMemory);
        return false;
    }
    m_bytes.setLogicalLength(static_cast<int>(end));
    return storedLength() == end;
}

// Has the bytes to itself. False when there was no memory for a copy of shared ones.
bool TvFlatMemBuf::unshare()
{
    if (TvDetail::isShared(m_bytes))
        m_bytes.copyBeforeWrite(0);
    return !TvDetail::isShared(m_bytes);
}

// As endAt(), with bytes that may be changed.
bool TvFlatMemBuf::endWritableAt(std::uint32_t end) { return endAt(end) && unshare(); }

// True when `buf` points into the storage, which a change of the length may release.
bool TvFlatMemBuf::isOwn(const unsigned char* buf) const
{
    const unsigned char* const first = m_bytes.asArrayPtr();
    const std::less<const unsigned char*> before;
    return !before(buf, first) && before(buf, first + m_bytes.physicalLength());
}

// store() where that takes memory. Bytes of the stream's own outlive a move of the storage.
bool TvFlatMemBuf::storeMoving(std::uint32_t at, const unsigned char* buf, std::uint32_t count,
                               std::uint32_t length)
{
    if (count == 0)
        return endAt(length);
    std::optional<Storage> keep;
    if (isOwn(buf))
        keep = m_bytes;
    if (!endWritableAt(length))
        return false;
    tvCopyBytes(m_bytes.asArrayPtr() + at, buf, count);
    return true;
}

// writeBytes() where that takes memory, or is out of range. A function of its own, so that the
// usual way keeps nothing on the stack.
[[gnu::noinline]] void TvFlatMemBuf::writeBytesMoving(const unsigned char* buf, std::uint32_t count)
{
    if (wraps(m_cursor, count))
        return reportOutOfRange();
    if (storeMoving(m_cursor, buf, count, m_cursor + count))
        m_cursor += count;
}

TvFlatMemBuf::TvFlatMemBuf(std::uint32_t capacity) : m_cursor(0) { TvFlatMemBuf::reserve(capacity); }

TvFlatMemBuf::~TvFlatMemBuf() = default;

bool TvFlatMemBuf::isEOS() const { return m_cursor >= TvFlatMemBuf::length(); }

std::uint64_t TvFlatMemBuf::tell() const { return m_cursor; }

std::uint64_t TvFlatMemBuf::length() const { return storedLength(); }

void TvFlatMemBuf::setlength(std::uint64_t length) { resize(cut(length)); }

void TvFlatMemBuf::truncate() { endAt(m_cursor); }

std::int64_t TvFlatMemBuf::rewind()
{
    m_cursor = 0;
    return 0;
}

unsigned char* TvFlatMemBuf::buffer()
{
    return m_bytes.physicalLength() != 0 && unshare() ? m_bytes.asArrayPtr() : nullptr;
}

const unsigned char* TvFlatMemBuf::buffer() const
{
    return m_bytes.physicalLength() != 0 ? m_bytes.asArrayPtr() : nullptr;
}

// Aligned, as writeByte() is, so that its few instructions lie in as few lines of the cache as can be.
[[gnu::aligned(64)]] unsigned char TvFlatMemBuf::readByte()
{
    if (m_cursor < storedLength())
        return m_bytes.asArrayPtr()[m_cursor++];
    TvDetail::reportMessage(L"End of stream buffer!");
    return 0;
}

[[gnu::aligned(64)]] void TvFlatMemBuf::writeByte(unsigned char b)
{
    const std::uint32_t at = m_cursor;
    if (at != storedLength() || at >= roomLength() || TvDetail::isShared(m_bytes))
        return writeOneByte(*this, b);
    m_bytes.append(b); // no more than a store and a count here
    m_cursor = at + 1;
}

// A byte at or past the end lies in the spare room just behind the new end; readers that know
// of it fetch it with getBytes().
void TvFlatMemBuf::writeByte(std::uint64_t position, unsigned char b)
{
    const std::uint32_t at = cut(position);
    const std::uint32_t oldLength = storedLength();
    if (wraps(at, 1))
        return reportOutOfRange();
    if (at >= kLongest)
        return TvDetail::reportStatus(Orna::eOutOfMemory);
    if (!endWritableAt(at == 0 && oldLength == 0 ? 1 : std::max(at, oldLength)))
        return;
    TvFlatMemBuf::reserve(at + 1);
    if (roomLength() <= at) {
        endAt(oldLength);
        return;
    }
    m_bytes.asArrayPtr()[at] = b;
    m_cursor = at;
}

unsigned char TvFlatMemBuf::getByte()
{
    unsigned char b = 0;
    seek(m_cursor, TvIO::kSeekFromStart);
    readBytes(&b, 1);
    return b;
}

unsigned char TvFlatMemBuf::getByte(std::uint64_t position)
{
    const std::uint32_t at = cut(position);
    if (at >= storedLength()) {
        reportOutOfRange();
        return 0;
    }
    return m_bytes.asArrayPtr()[at];
}

void TvFlatMemBuf::setByte(unsigned char b) { setByte(m_cursor, b); }

void TvFlatMemBuf::setByte(std::uint64_t position, unsigned char b)
{
    const std::uint32_t at = cut(position);
    if (at >= storedLength())
        return reportOutOfRange();
    if (unshare())
        m_bytes.asArrayPtr()[at] = b;
}

void TvFlatMemBuf::readBytes(unsigned char* buf, std::uint32_t count)
{
    if (!fits(m_cursor, count, storedLength()))
        return reportOutOfRange();
    tvCopyBytes(buf, m_bytes.asArrayPtr() + m_cursor, count);
    m_cursor += count;
}

void TvFlatMemBuf::readBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = cut(position);
    if (!fits(at, count, storedLength()))
        return reportOutOfRange();
    tvCopyBytes(buf, m_bytes.asArrayPtr() + at, count);
}

void TvFlatMemBuf::writeBytes(const unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = m_cursor;
    const std::uint32_t end = at + count;
    if (end < at || !endWithinRoom(end))
        return writeBytesMoving(buf, count);
    m_cursor = end;
    tvCopyBytes(m_bytes.asArrayPtr() + at, buf, count); // last, so that a large piece is a jump
}

void TvFlatMemBuf::writeBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = cut(position);
    if (wraps(at, count))
        return reportOutOfRange();
    if (store(at, buf, count, std::max(at + count, storedLength())))
        m_cursor = at;
}

void TvFlatMemBuf::getBytes(unsigned char* buf, std::uint32_t count) { getBytes(m_cursor, buf, count); }

void TvFlatMemBuf::getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = cut(position);
    if (!fits(at, count, bufSize()))
        return reportOutOfRange();
    tvCopyBytes(buf, m_bytes.asArrayPtr() + at, count);
}

void TvFlatMemBuf::setBytes(const unsigned char* buf, std::uint32_t count) { setBytes(m_cursor, buf, count); }

void TvFlatMemBuf::setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    const std::uint32_t at = cut(position);
    if (!fits(at, count, storedLength()))
        return reportOutOfRange();
    store(at, buf, count, storedLength());
}

std::uint32_t TvFlatMemBuf::bufSize() const { return roomLength(); }

void TvFlatMemBuf::resize(std::uint32_t length) { endAt(length); }

void TvFlatMemBuf::reserve(std::uint32_t capacity)
{
    if (capacity <= roomLength())
        return;
    if (capacity > kLongest)
        return TvDetail::reportStatus(Orna::eOutOfMemory);
    m_bytes.setPhysicalLength(static_cast<int>(capacity));
}

void TvFlatMemBuf::moveTo(std::uint64_t position)
{
    const std::uint32_t at = cut(position);
    if (at > storedLength())
        return reportOutOfRange();
    m_cursor = at;
}

void TvFlatMemBuf::open(void* data, std::uint32_t size, std::uint32_t position)
{
    if (wraps(position, size))
        return reportOutOfRange();
    const auto* const from = static_cast<const unsigned char*>(data);
    std::optional<Storage> keep;
    if (isOwn(from))
        keep = m_bytes;
    close();
    if (store(0, from, size, position + size))
        m_cursor = position;
}

void TvFlatMemBuf::close()
{
    m_cursor = 0;
    m_bytes.removeAll();
}
