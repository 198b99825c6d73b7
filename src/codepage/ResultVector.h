// ResultVector.h - fills a vector, or what stands for one, with a conversion's result.
#ifndef TV_RESULT_VECTOR_H
#define TV_RESULT_VECTOR_H

#include "TvVector.h"

#include <algorithm>
#include <climits>
#include <cstddef>

namespace TvDetail {

// Writes elements straight into the vector's storage. What the vector held is gone; after a
// failure, and until finish(), it is empty or holds unfinished text. `Store` is a TvVector or
// has what is called of it here.
template<class T, class Store = TvVector<T>>
class ResultVector {
public:
    explicit ResultVector(Store& out) : m_out(out) {}

    // Makes room for `least` elements behind those that are kept, better for `wish`. False
    // when that is more than a vector holds or no memory could be had; the vector is then
    // empty.
    bool makeRoom(std::size_t least, std::size_t wish)
    {
        if (m_used + least <= m_size)
            return true;
        if (m_used + least > kMostElements)
            return clear(), false;
        if (m_used == 0) {
            m_out.removeAll(); // nothing to carry over when the storage moves
            if (!m_out.isEmpty())
                return clear(), false; // shared, and no memory for a record of its own
        }
        const std::size_t size = std::min(m_used + std::max(least, wish), kMostElements);
        m_out.setLogicalLength(static_cast<int>(size));
        if (static_cast<std::size_t>(m_out.length()) != size)
            return clear(), false;
        m_size = size;
        m_data = m_out.asArrayPtr();
        return true;
    }

    // Elements that may be written at end().
    std::size_t room() const { return m_size - m_used; }

    T* end() { return m_data + m_used; }
    void advance(std::size_t count) { m_used += count; }
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
    static constexpr std::size_t kMostElements = INT_MAX;

    Store& m_out;
    T* m_data = nullptr;
    std::size_t m_size = 0;
    std::size_t m_used = 0;
};

} // namespace TvDetail

#endif
