// Recounts the free lists of the big-number allocator.
#ifndef TV_FCVT_ALLOCATOR_CHECK_H
#define TV_FCVT_ALLOCATOR_CHECK_H

#include "TvGdImpl.h"

#include <cstddef>

struct TvFCvtAllocatorCheck {
    /// Bytes of a block of size class `k`.
    static std::size_t blockBytes(int k)
    {
        const std::size_t bytes = sizeof(Bigint) + ((std::size_t{1} << k) - 1) * sizeof(unsigned int);
        return (bytes + 7) & ~std::size_t{7};
    }

    static std::size_t poolBytes() { return TvFCvtAllocator::kPoolBytes; }

    /// Bytes from the start of the object to lock, pool, bump pointer and free lists.
    struct Offsets {
        std::size_t lock, pool, next, lists;
    };

    static Offsets offsets(const TvFCvtAllocator& a)
    {
        const auto from = [&a](const void* field) {
            return static_cast<std::size_t>(static_cast<const char*>(field) -
                                            reinterpret_cast<const char*>(&a));
        };
        return {from(&a.m_lock), from(a.m_pool), from(&a.m_next), from(a.m_free)};
    }

    static std::size_t poolUsed(const TvFCvtAllocator& a)
    {
        return a.m_next ? static_cast<std::size_t>(a.m_next - a.m_pool) : 0;
    }

    static bool owns(const TvFCvtAllocator& a, const void* p)
    {
        return a.owns(static_cast<const Bigint*>(p));
    }

    static int freeBlocks(const TvFCvtAllocator& a, int k)
    {
        int n = 0;
        for (const Bigint* b = a.m_free[k]; b; b = b->next)
            ++n;
        return n;
    }

    /// Every listed block lies aligned inside the carved part of the pool, has the class
    /// of its list, and together they are no larger than what was carved.
    static bool consistent(const TvFCvtAllocator& a)
    {
        std::size_t listed = 0;
        for (int k = 0; k < TvFCvtAllocator::kLists; ++k) {
            for (const Bigint* b = a.m_free[k]; b; b = b->next) {
                const auto* at = reinterpret_cast<const unsigned char*>(b);
                if (!a.owns(b) || (at - a.m_pool) % 8 != 0 || b->k != k || b->maxwds != 1 << k)
                    return false;
                if (at + blockBytes(k) > a.m_next)
                    return false;
                listed += blockBytes(k);
                if (listed > poolUsed(a))
                    return false;
            }
        }
        return true;
    }
};

#endif
