#include "TvGdImpl.h"

#include "TvAlloc.h"
#include "numconv/TvFCvtAllocatorCheck.h"
#include "runtime/TvStartup.h"

#include <cassert>

Bigint* G_Pow5Data = nullptr;

TvFCvtAllocator TvFCvtAllocator::s_instance __attribute__((init_priority(TvStartup::kBigNumbers)));

TvFCvtAllocator& tvFCvtAllocator() { return TvFCvtAllocator::s_instance; }

namespace {

void check([[maybe_unused]] const TvFCvtAllocator& allocator)
{
#ifdef TV_CHECK_STRUCTURES
    assert(TvFCvtAllocatorCheck::consistent(allocator));
#endif
}

} // namespace

TvFCvtAllocator::TvFCvtAllocator() : m_next(nullptr), m_free() { init(); }

TvFCvtAllocator::~TvFCvtAllocator() { release(); }

void TvFCvtAllocator::init()
{
    if (m_next)
        return;
    m_next = m_pool;
    for (Bigint*& list : m_free)
        list = nullptr;
    TvGdImpl::initPow5Data();
}

void TvFCvtAllocator::release()
{
    m_next = nullptr;
    for (Bigint*& list : m_free)
        list = nullptr;
    G_Pow5Data = nullptr;
}

Bigint* TvFCvtAllocator::Alloc(int k)
{
    Bigint* b;
    if (static_cast<unsigned>(k) < kLists && m_free[k]) {
        b = m_free[k];
        m_free[k] = b->next;
    } else {
        if (k < 0 || k > 29)
            return nullptr;
        const std::size_t bytes = TvFCvtAllocatorCheck::blockBytes(k);
        if (m_next && static_cast<std::size_t>(m_pool + kPoolBytes - m_next) >= bytes) {
            b = reinterpret_cast<Bigint*>(m_next);
            m_next += bytes;
        } else {
            b = static_cast<Bigint*>(_tvMalloc(bytes));
            if (!b)
                return nullptr;
        }
        b->k = k;
        b->maxwds = 1 << k;
    }
    b->sign = 0;
    b->wds = 0;
    return b;
}

void TvFCvtAllocator::Free(Bigint* b)
{
    if (!b)
        return;
    if (!owns(b)) {
        _tvFree(b);
        return;
    }
    // A block that outlived its pool is dropped: a later init() carves it anew.
    if (!m_next)
        return;
    b->next = m_free[b->k];
    m_free[b->k] = b;
    check(*this);
}
