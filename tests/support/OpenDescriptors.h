// OpenDescriptors.h - how many descriptors the process holds, for tests that none is left behind.
#ifndef TV_TEST_OPEN_DESCRIPTORS_H
#define TV_TEST_OPEN_DESCRIPTORS_H

#include <filesystem>

/// One of them is that of the folder that is counted, each time.
inline long openDescriptors()
{
    long count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

#endif
