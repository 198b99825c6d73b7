// MapBytes.h - code page map files put together byte by byte.
#ifndef TV_TEST_MAP_BYTES_H
#define TV_TEST_MAP_BYTES_H

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// Code and unit.
using CodeUnit = std::pair<unsigned, unsigned>;

inline void appendLittleEndian(std::string& bytes, std::uint64_t number, int size)
{
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> 8 * i & 0xFF);
}

/// A table as it lies in the file: count, codes, units.
inline std::string tableBytes(const std::vector<CodeUnit>& pairs)
{
    std::string bytes;
    appendLittleEndian(bytes, pairs.size(), 2);
    for (const CodeUnit& pair : pairs)
        appendLittleEndian(bytes, pair.first, 2);
    for (const CodeUnit& pair : pairs)
        appendLittleEndian(bytes, pair.second, 2);
    return bytes;
}

/// A map file: header (its NUL included), directory, then whatever follows.
///
///     MapBytes map;
///     map.setOffset(39, map.append(tableBytes({{0xB0A1, 0x554A}})));
///     use(map.bytes());
class MapBytes {
public:
    explicit MapBytes(const std::string& header = std::string(255, ' ') + std::string("H\0", 2))
        : m_bytes(header)
    {
        m_directory = m_bytes.size();
        m_bytes.append(38 * 4, '\0');
    }

    /// Puts bytes at the end of the file and returns their offset, as the directory counts.
    std::uint32_t append(const std::string& bytes)
    {
        const std::size_t position = m_bytes.size();
        m_bytes += bytes;
        return static_cast<std::uint32_t>(position - 256);
    }

    /// Sets the offset of an id in the directory.
    void setOffset(int id, std::uint32_t offset) { setEntry(directoryPlace(id), offset); }

    void setEntry(int place, std::uint32_t offset)
    {
        std::string entry;
        appendLittleEndian(entry, offset, 4);
        m_bytes.replace(m_directory + 4 * static_cast<std::size_t>(place), 4, entry);
    }

    /// Where the directory begins, in bytes.
    std::size_t directory() const { return m_directory; }
    const std::string& bytes() const { return m_bytes; }

    /// The place of an id in the directory, -1 for ids without one.
    static int directoryPlace(int id)
    {
        static const int ids[38] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                    13, 14, 15, 16, 17, 18, 19, 20, 21, 23, 42, 27, 28,
                                    29, 30, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41};
        for (int place = 0; place < 38; ++place) {
            if (ids[place] == id)
                return place;
        }
        return -1;
    }

private:
    std::string m_bytes;
    std::size_t m_directory = 0;
};

/// The map file of this source tree.
inline std::string shippedMapBytes()
{
    std::ifstream file(TV_SOURCE_DIR "/data/codepage.map", std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " TV_SOURCE_DIR "/data/codepage.map");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

#endif
