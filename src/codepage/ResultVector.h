// ResultVector.h - fills a vector, or what stands for one, with a conversion's result.
#ifndef TV_RESULT_VECTOR_H
#define TV_RESULT_VECTOR_H

#include "TvVector.h"

#include <algorithm>
#include <climits>
#include <cstddef>

namespace TvDetail {

// Where `out` has room for `count` elements that are its own; null when it has not. A result
// written there counts with setLogicalLength().
template<class Store>
inline auto* roomOf(Store& out, std::size_t count)
{
    return count <= static_cast<std::size_t>(out.physicalLength()) && !isShared(out) ? out.asArrayPtr()
                                                                                     : nullptr;
}

// Writes elements straight into the vector's storage. What the vector held is gone; after a
// failure, and until finish(), it is empty or holds unfinished text. `Store` is a TvVector or
// has what is called of it here.
template<class T, class Store = TvVector<T>>
class ResultVector {
public:
    explicit ResultVector(Store& out) : m_out(out) {}

    // Goes on with a result of which another object has written the first `used` elements.
    ResultVector(Store& out, std::size_t used) : m_out(out)
    {
        if (used != 0) {
            m_size = static_cast<std::size_t>(out.physicalLength());
            m_data = out.asArrayPtr();
            m_used = used;
        }
    }

    // Makes room for `least` elements behind those that are kept, better for `wish`. False
    // when that is more than a vector holds or no memory could be had; the vector is then
    // empty.
    bool makeRoom(std::size_t least, std::size_t wish)
    {
        return m_used + least <= m_size || (m_used == 0 && takeRoom(wish)) || makeMoreRoom(least, wish);
    }

    // Elements that may be written at end().
    std::size_t room() const { return m_size - m_used; }

    T* end() { return m_data + m_used; }
    void advance(std::size_t count) { m_used += count; }
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference): makeRoom() comes first, of at least one
    void put(T value) { m_data[m_used++] = value; }

    // Ends the text with a 0, for which there must be room.
    void finish()
    {
        put(0);
        m_out.setLogicalLength(static_cast<int>(m_used));
    }

    void clear()
    {
        m_out.setPhysicalLength(0);
        m_data = nullptr;
        m_size = 0;
        m_used = 0;
    }

private:
    // The room that the vector has anyway: its length stays as it was until finish().
    bool takeRoom(std::size_t wish)
    {
        m_data = roomOf(m_out, wish);
        if (m_data)
            m_size = static_cast<std::size_t>(m_out.physicalLength());
        return m_data;
    }

    [[gnu::noinline]] bool makeMoreRoom(std::size_t least, std::size_t wish)
    {
        if (m_used + least > kMostElements)
            return clear(), false;
        // What is carried over when the storage moves.
        m_out.setLogicalLength(static_cast<int>(m_used));
        if (static_cast<std::size_t>(m_out.length()) != m_used)
            return clear(), false; // shared, and no memory for a record of its own
        const std::size_t size = std::min(m_used + std::max(least, wish), kMostElements);
        m_out.setLogicalLength(static_cast<int>(size));
        if (static_cast<std::size_t>(m_out.length()) != size)
            return clear(), false;
        m_size = size;
        m_data = m_out.asArrayPtr();
        return true;
    }

    static constexpr std::size_t kMostElements = INT_MAX;

    Store& m_out;
    T* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_used = 0;
};

} // namespace TvDetail

#endif
