#include "codepage/MapFile.h"

#include "TvStreamBuf.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace {

// The ids that have a place in the directory, in the order of the file.
constexpr int kDirectoryIds[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18,
                                 19, 20, 21, 23, 42, 27, 28, 29, 30, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41};
constexpr std::size_t kDirectoryEntries = std::size(kDirectoryIds);
static_assert(kDirectoryEntries == 38);

// Directory offsets count from here.
constexpr std::uint64_t kOffsetBase = 256;

bool hasBytesLeft(const TvStreamBuf& stream, std::uint64_t count)
{
    const std::uint64_t length = stream.length();
    const std::uint64_t position = stream.tell();
    return position <= length && count <= length - position;
}

void setTableOffset(EkCodepages& pages, int id, std::uint32_t offset)
{
    // CP_UTF8 has no mapper, and before init() no id has one.
    if (EkCodepageMapper* mapper = pages.findMapperByAcadCp(static_cast<code_page_id>(id)))
        mapper->m_tableOffset = offset;
}

bool readDirectory(std::uint32_t (&offsets)[kDirectoryEntries], TvStreamBuf& stream)
{
    if (!hasBytesLeft(stream, sizeof offsets))
        return false;
    const std::uint64_t end = stream.tell() + sizeof offsets;
    for (std::uint32_t& offset : offsets)
        offset = static_cast<std::uint32_t>(TvPlatformStreamer::readInt32(stream));
    return stream.tell() == end; // a file that has become shorter reads short without a word
}

bool readTable(TvStreamBuf& stream, unsigned int tableOffset, TvVector<EkCpUnicodePair>& pairs)
{
    // In 64 bits: an offset near 2^32 is a place past the end, not one before the start.
    const std::uint64_t position = tableOffset + kOffsetBase;
    if (position > stream.length())
        return false;
    stream.seek(position, TvIO::kSeekFromStart);
    if (stream.tell() != position || !hasBytesLeft(stream, sizeof(unsigned short)))
        return false;

    const std::size_t count = getUShort(&stream);
    if (stream.tell() != position + sizeof(unsigned short)) // became shorter, which a read does not tell
        return false;
    const auto bytes = static_cast<std::uint32_t>(2 * count * sizeof(unsigned short));
    if (!hasBytesLeft(stream, bytes))
        return false;
    const std::unique_ptr<unsigned short[]> numbers(new (std::nothrow) unsigned short[2 * count]());
    if (!numbers)
        return false;
    const std::uint64_t end = stream.tell() + bytes;
    stream.readBytes(reinterpret_cast<unsigned char*>(numbers.get()), bytes);
    if (stream.tell() != end) // as above
        return false;

    const unsigned short* const codes = numbers.get();
    const unsigned short* const units = codes + count;
    for (std::size_t i = 1; i < count; ++i) {
        if (codes[i] <= codes[i - 1])
            return false;
    }
    TvVector<EkCpUnicodePair> read;
    read.resize(static_cast<unsigned int>(count));
    if (read.length() != static_cast<int>(count))
        return false;
    EkCpUnicodePair* const out = read.asArrayPtr();
    for (std::size_t i = 0; i < count; ++i)
        out[i] = {units[i], codes[i]};
    pairs = read;
    return true;
}

} // namespace

namespace TvDetail {

bool readMapDirectory(EkCodepages& pages, TvStreamBuf& stream)
{
    std::uint32_t offsets[kDirectoryEntries] = {};
    bool read = false;
    try {
        read = readDirectory(offsets, stream);
    } catch (...) { // file streams throw messages and statuses; here a bad file is an answer
        read = false;
    }
    for (int id = 0; id < CP_CNT; ++id)
        setTableOffset(pages, id, 0);
    for (std::size_t i = 0; read && i < kDirectoryEntries; ++i)
        setTableOffset(pages, kDirectoryIds[i], offsets[i]);
    return read;
}

bool readMapTable(TvStreamBuf& stream, unsigned int tableOffset, TvVector<EkCpUnicodePair>& pairs)
{
    try {
        return readTable(stream, tableOffset, pairs);
    } catch (...) { // as in readMapDirectory
        return false;
    }
}

} // namespace TvDetail
