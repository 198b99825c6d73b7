// CodepageMapFile.h - making code page map files.
#ifndef TV_CODEPAGE_MAP_FILE_H
#define TV_CODEPAGE_MAP_FILE_H

#include <cstddef>
#include <map>
#include <string>

/// One double-byte table: code (lead byte times 256 plus trail byte) to UTF-16 unit.
using DoubleByteTable = std::map<unsigned short, unsigned short>;

/// The tables of a map file by drawing code page id.
using MapFileTables = std::map<int, DoubleByteTable>;

/// A double-byte code page that map files hold a table of.
struct DoubleByteCodePage {
    int id;                    ///< drawing code page id, 38 to 41
    const char* converter;     ///< the C library's name
    unsigned char leads[2][2]; ///< ranges of lead bytes, both ends included; {0, 0} = none
};

extern const DoubleByteCodePage kDoubleByteCodePages[4];

/// The ids that have a place in the directory, in the order of the file.
inline constexpr int kMapFileDirectory[38] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12,
                                              13, 14, 15, 16, 17, 18, 19, 20, 21, 23, 42, 27, 28,
                                              29, 30, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41};

/// Directory offsets count from here, and 0 means no table, so the first table must lie
/// behind it.
inline constexpr std::size_t kMapFileOffsetBase = 256;

/// The table of a code page as the C library's converter decodes it: each lead byte with
/// trail bytes 0x40 to 0xFE that gives one UTF-16 unit outside the private use area. (It
/// must be decoded, not encoded: characters that stand twice would lose their second code.)
/// Empty when the C library lacks the converter.
DoubleByteTable decodeDoubleByteTable(const DoubleByteCodePage& page);

/// The bytes of a map file with these tables. `title` begins its header. Ids that have no
/// place in the directory, and tables of more than 65535 entries, throw std::invalid_argument.
std::string makeMapFile(const std::string& title, const MapFileTables& tables);

#endif
