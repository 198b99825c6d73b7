// The allocator's blocks of the smallest class, which hold the digits of ordinary values,
// without a call.
#ifndef TV_DIGIT_BLOCKS_H
#define TV_DIGIT_BLOCKS_H

#include "TvGdImpl.h"

#include "numconv/TvFCvtAllocatorCheck.h"

#include <cassert>
#include <cstring>

struct TvDigitBlocks {
    /// Bytes of a block: its class, the text and the terminator.
    static constexpr std::size_t kBlockBytes = sizeof(Bigint);

    /// A free block whose class is yet to be written, null when none is listed.
    static char* takeListed()
    {
        TvFCvtAllocator& allocator = TvFCvtAllocator::s_instance;
        Bigint* b = allocator.m_free[0];
        if (b)
            allocator.m_free[0] = b->next;
        return reinterpret_cast<char*>(b);
    }

    /// TvGdImpl::rv_alloc for up to 27 characters.
    static char* take()
    {
        char* block = takeListed();
        if (!block)
            return TvGdImpl::rv_alloc(0);
        const int k = 0;
        std::memcpy(block, &k, sizeof k);
        return block + sizeof k;
    }

    /// TvFCvtAllocator::Free for a block of class 0 in the pool; false for any other.
    static bool giveBack(Bigint* b, int k)
    {
        TvFCvtAllocator& allocator = TvFCvtAllocator::s_instance;
        if (k != 0 || !allocator.m_next || !allocator.owns(b))
            return false;
        b->k = 0;
        b->maxwds = 1;
        b->next = allocator.m_free[0];
        allocator.m_free[0] = b;
#ifdef TV_CHECK_STRUCTURES
        assert(TvFCvtAllocatorCheck::consistent(allocator));
#endif
        return true;
    }
};

#endif
