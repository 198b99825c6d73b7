// MapFile.h - the conversion benchmarks' code page tables, and their way to give up.
#ifndef TV_BENCH_MAP_FILE_H
#define TV_BENCH_MAP_FILE_H

#include "TvCharMapper.h"

#include <cstdio>
#include <cstdlib>
#include <string>

[[noreturn]] inline void fail(const std::string& what)
{
    std::fprintf(stderr, "%s\n", what.c_str());
    std::exit(1);
}

/// Initialises the mapper with the map file of $TVBASE_MAP, else with that of the source tree.
inline void readMapFile()
{
    const char* path = std::getenv("TVBASE_MAP");
    const std::string map = path ? path : TV_BENCH_MAP_FILE;
    if (TvCharMapper::initialize(std::wstring(map.begin(), map.end())) != Orna::eOk)
        fail("no code page map file at " + map);
}

#endif
