// TvFlatMemBufStore.h - the way of every write to a TvFlatMemBuf, for the sources that want it
// without a call.
#ifndef TV_FLAT_MEM_BUF_STORE_H
#define TV_FLAT_MEM_BUF_STORE_H

#include "TvMemStreamBuf.h"
#include "runtime/TvCopyBytes.h"

// Makes the stream `length` bytes long where that takes no memory. False otherwise, and nothing
// has changed.
inline bool TvFlatMemBuf::endWithinRoom(std::uint32_t length)
{
    const auto end = static_cast<int>(length);
    if (end < 0 || end > m_bytes.physicalLength() || TvDetail::isShared(m_bytes))
        return false;
    m_bytes.setLogicalLength(end);
    return true;
}

// Makes the stream `length` bytes long and stores `count` bytes at `at`, which may be the
// stream's own. False when memory ran out, which has then been reported; nothing has changed.
inline bool TvFlatMemBuf::store(std::uint32_t at, const unsigned char* buf, std::uint32_t count,
                                std::uint32_t length)
{
    if (!endWithinRoom(length))
        return storeMoving(at, buf, count, length);
    tvCopyBytes(m_bytes.asArrayPtr() + at, buf, count);
    return true;
}

#endif
