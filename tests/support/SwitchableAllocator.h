// SwitchableAllocator.h - the allocator of a TvMemData that counts, and that can be told to have
// nothing.
#ifndef TV_TEST_SWITCHABLE_ALLOCATOR_H
#define TV_TEST_SWITCHABLE_ALLOCATOR_H

#include "TvMemData.h"

#include <cstddef>
#include <map>
#include <vector>

/// One set of figures for the whole process; clear() before use.
struct SwitchableAllocator {
    static void* _alloc(std::size_t size)
    {
        if (empty)
            return nullptr;
        void* const block = TvMemDataAllocator::_alloc(size);
        if (!block)
            return nullptr;
        blocks[block] = size;
        requests.push_back(size);
        return block;
    }

    static void _dealloc(void* block)
    {
        wrongFrees += static_cast<int>(1 - blocks.erase(block));
        TvMemDataAllocator::_dealloc(block);
    }

    static void clear()
    {
        empty = false;
        requests.clear();
        wrongFrees = 0;
    }

    static inline bool empty = false;
    static inline std::map<void*, std::size_t> blocks; ///< in use, with their sizes
    static inline std::vector<std::size_t> requests;   ///< sizes of all successful ones
    static inline int wrongFrees = 0;                  ///< of what was not in use
};

#endif
