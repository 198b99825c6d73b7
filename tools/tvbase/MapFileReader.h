// MapFileReader.h - a code page map file as it lies on disk, right or wrong.
#ifndef TVBASE_MAP_FILE_READER_H
#define TVBASE_MAP_FILE_READER_H

#include "CodepageMapFile.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// One table, as far as the file holds it.
struct MapFileTable {
    int id;                                                       ///< drawing code page id
    std::uint64_t position;                                       ///< bytes from the start of the file
    std::vector<std::pair<unsigned short, unsigned short>> pairs; ///< code and unit, in file order
};

/// What a map file holds, and what is wrong with it.
struct MapFileContent {
    std::string title; ///< the header, without the letter and blanks at its end
    std::uint64_t size = 0;
    std::vector<MapFileTable> tables;
    std::vector<std::string> problems;
};

/// Reads a map file without the library, so that the two can be compared. Throws InputError
/// when it cannot be read; whatever it holds gives a result.
MapFileContent readMapFile(const std::string& name);

#endif
