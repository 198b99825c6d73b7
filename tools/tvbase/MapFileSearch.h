// MapFileSearch.h - where the code page map file is, and making the library read it.
#ifndef TVBASE_MAP_FILE_SEARCH_H
#define TVBASE_MAP_FILE_SEARCH_H

#include "TvCodePages.h"

#include <string>

struct Shared;

/// The map file to use: that of --map, of $TVBASE_MAP, the one installed with this program, or
/// that of the build folder the program lies in. One that was named must exist (CommandError); empty when none was
/// named and none is there.
std::string findMapFile(const Shared& shared);

/// The file's name for the library. CommandError for a path that is not UTF-8, for which it
/// has no name; empty for an empty one.
std::wstring libraryMapFile(const std::string& file);

/// Initialises the mapper with that file. Without any file the single-byte pages still work.
/// Throws CommandError when the library cannot use the file.
void initializeMapper(const Shared& shared);

/// Makes sure that the tables of `id` are there; throws CommandError when they are not.
void requireTables(code_page_id id);

#endif
