#include "TvStreamBuf.h"

#include "TvHooks.h"

#include <algorithm>

namespace {

constexpr std::uint64_t kCopyChunk = 4096;

// True when `count` bytes from `position` lie inside `stream`; else the error is reported.
bool liesInside(const TvStreamBuf& stream, std::uint64_t position, std::uint32_t count)
{
    const std::uint64_t end = position + count;
    if (end >= position && end <= stream.length())
        return true;
    TvDetail::reportMessage(L"Out of stream buffer!");
    return false;
}

// Runs `transfer` with the cursor at `position`. The cursor goes back afterwards only if it
// stood elsewhere: a transfer at the cursor's own position moves it on, as callers expect.
template<class Transfer>
void transferAt(TvStreamBuf& stream, std::uint64_t position, Transfer transfer)
{
    const std::uint64_t cursor = stream.tell();
    if (position == cursor) {
        transfer();
        return;
    }
    stream.seek(position, TvIO::kSeekFromStart);
    transfer();
    stream.seek(cursor, TvIO::kSeekFromStart);
}

void copyChunks(TvStreamBuf& source, TvStreamBuf& destination, std::uint64_t count)
{
    unsigned char chunk[kCopyChunk] = {}; // a source that fails to deliver leaves no stray bytes
    while (count > 0) {
        const auto size = static_cast<std::uint32_t>(std::min(count, kCopyChunk));
        source.readBytes(chunk, size);
        destination.writeBytes(chunk, size);
        count -= size;
    }
}

// Bytes after `cursor`; none when the cursor stands past the end.
std::uint64_t bytesAfter(std::uint64_t length, std::uint64_t cursor)
{
    return length > cursor ? length - cursor : 0;
}

// Moves `stream` to the lower end of a range that is given in either order; its length.
std::uint64_t enterRange(TvStreamBuf& stream, std::uint64_t from, std::uint64_t to)
{
    if (from == to)
        return 0;
    stream.seek(std::min(from, to), TvIO::kSeekFromStart);
    return std::max(from, to) - std::min(from, to);
}

} // namespace

TvStreamBuf::~TvStreamBuf() = default;

bool TvStreamBuf::isEOS() const { return tell() >= length(); }

void TvStreamBuf::setlength(std::uint64_t) {}

void TvStreamBuf::truncate() {}

std::int64_t TvStreamBuf::rewind() { return seek(0, TvIO::kSeekFromStart); }

unsigned char* TvStreamBuf::buffer() { return nullptr; }

const unsigned char* TvStreamBuf::buffer() const { return nullptr; }

unsigned char TvStreamBuf::readByte()
{
    unsigned char b = 0;
    readBytes(&b, 1);
    return b;
}

unsigned char TvStreamBuf::readByte(std::uint64_t position)
{
    unsigned char b = 0;
    readBytes(position, &b, 1);
    return b;
}

void TvStreamBuf::writeByte(unsigned char b) { writeBytes(&b, 1); }

void TvStreamBuf::writeByte(std::uint64_t position, unsigned char b) { writeBytes(position, &b, 1); }

unsigned char TvStreamBuf::getByte() { return getByte(tell()); }

unsigned char TvStreamBuf::getByte(std::uint64_t position)
{
    unsigned char b = 0;
    getBytes(position, &b, 1);
    return b;
}

void TvStreamBuf::setByte(unsigned char b) { setByte(tell(), b); }

void TvStreamBuf::setByte(std::uint64_t position, unsigned char b) { setBytes(position, &b, 1); }

void TvStreamBuf::readBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    if (liesInside(*this, position, count))
        transferAt(*this, position, [&] { readBytes(buf, count); });
}

void TvStreamBuf::writeBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    if (liesInside(*this, position, count))
        transferAt(*this, position, [&] { writeBytes(buf, count); });
}

void TvStreamBuf::getBytes(unsigned char* buf, std::uint32_t count) { getBytes(tell(), buf, count); }

void TvStreamBuf::getBytes(std::uint64_t position, unsigned char* buf, std::uint32_t count)
{
    if (liesInside(*this, position, count))
        transferAt(*this, position, [&] { readBytes(buf, count); });
}

void TvStreamBuf::setBytes(const unsigned char* buf, std::uint32_t count) { setBytes(tell(), buf, count); }

void TvStreamBuf::setBytes(std::uint64_t position, const unsigned char* buf, std::uint32_t count)
{
    if (liesInside(*this, position, count))
        transferAt(*this, position, [&] { writeBytes(buf, count); });
}

void TvStreamBuf::copyFrom(TvStreamBuf* source, std::uint64_t from, std::uint64_t to)
{
    if (source == nullptr)
        return;
    const std::uint64_t cursor = source->tell();
    const bool wholeRest = from == 0 && to == 0;
    const std::uint64_t count =
        wholeRest ? bytesAfter(source->length(), cursor) : enterRange(*source, from, to);
    if (count == 0)
        return;
    copyChunks(*source, *this, count);
    source->seek(cursor, TvIO::kSeekFromStart);
}

void TvStreamBuf::copyTo(TvStreamBuf* destination, std::uint64_t from, std::uint64_t to)
{
    if (destination == nullptr)
        return;
    const std::uint64_t cursor = tell();
    const bool allRoom = from == 0 && to == 0;
    const std::uint64_t room =
        allRoom ? bytesAfter(destination->length(), destination->tell()) : enterRange(*destination, from, to);
    const std::uint64_t count = std::min(room, bytesAfter(length(), cursor));
    if (count == 0)
        return;
    copyChunks(*this, *destination, count);
    seek(cursor, TvIO::kSeekFromStart);
}

std::int16_t TvPlatformStreamer::readInt16(TvStreamBuf& stream)
{
    std::int16_t value = 0;
    stream.readBytes(reinterpret_cast<unsigned char*>(&value), sizeof value);
    return value;
}

std::int32_t TvPlatformStreamer::readInt32(TvStreamBuf& stream)
{
    std::int32_t value = 0;
    stream.readBytes(reinterpret_cast<unsigned char*>(&value), sizeof value);
    return value;
}

TvAutoResetStreamPosition::TvAutoResetStreamPosition(TvStreamBuf* stream)
    : m_stream(stream), m_position(stream != nullptr ? stream->tell() : 0)
{
}

TvAutoResetStreamPosition::~TvAutoResetStreamPosition()
{
    if (m_stream != nullptr)
        m_stream->seek(m_position, TvIO::kSeekFromStart);
}
