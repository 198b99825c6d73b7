// TvFlatMemBufStore.h - the way of every write to a TvFlatMemBuf, for the sources that want it
// without a call.
#ifndef TV_FLAT_MEM_BUF_STORE_H
#define TV_FLAT_MEM_BUF_STORE_H

#include "TvMemStreamBuf.h"
#include "stream/TvCopyBytes.h"

inline std::uint32_t TvFlatMemBuf::storedLength() const
{
    return static_cast<std::uint32_t>(m_bytes.length());
}

inline std::uint32_t TvFlatMemBuf::roomLength() const
{
    return static_cast<std::uint32_t>(m_bytes.physicalLength());
}

// Makes the stream `length` bytes long and stores `count` bytes at `at`, which may be the
// stream's own. False when memory ran out, which has then been reported; nothing has changed.
inline bool TvFlatMemBuf::store(std::uint32_t at, const unsigned char* buf, std::uint32_t count,
                                std::uint32_t length)
{
    if (length > roomLength() || TvDetail::isShared(m_bytes))
        return storeMoving(at, buf, count, length);
    m_bytes.setLogicalLength(static_cast<int>(length));
    tvCopyBytes(m_bytes.asArrayPtr() + at, buf, count);
    return true;
}

#endif
