// ProcessMemory.h - how much memory this process has to itself.
#ifndef TV_BENCH_PROCESS_MEMORY_H
#define TV_BENCH_PROCESS_MEMORY_H

#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

// KiB of the memory that a line of /proc/self/smaps_rollup names, allocating nothing.
inline long memoryKiB(const char* name)
{
    static char text[4096];
    const int file = open("/proc/self/smaps_rollup", O_RDONLY);
    const ssize_t count = file < 0 ? -1 : read(file, text, sizeof text - 1);
    close(file);
    if (count <= 0)
        return 0;
    text[count] = '\0';
    const char* const line = std::strstr(text, name);
    return line ? std::atol(line + std::strlen(name)) : 0;
}

inline long residentKiB() { return memoryKiB("\nRss:"); }

// Of the resident memory what no file backs.
inline long anonymousKiB() { return memoryKiB("\nAnonymous:"); }

#endif
