// ShortText.h - where a conversion leaves a result that is copied on at once.
#ifndef TV_SHORT_TEXT_H
#define TV_SHORT_TEXT_H

#include "TvVector.h"

#include <algorithm>
#include <optional>

namespace TvDetail {

/// What ResultVector needs of a vector, with room for short texts in the object itself, so that
/// they cost no allocation. Longer ones are in a vector, with its limits and reports.
template<class T>
class ShortText {
public:
    bool isEmpty() const { return length() == 0; }
    int length() const { return m_long ? m_long->length() : m_length; }
    int physicalLength() const { return m_long ? m_long->physicalLength() : kRoom; }
    T* asArrayPtr() { return m_long ? m_long->asArrayPtr() : m_short; }

    void removeAll() { setPhysicalLength(0); }

    /// Only down to 0.
    void setPhysicalLength(int)
    {
        m_long.reset();
        m_length = 0;
    }

    /// The length stays when there is no memory.
    void setLogicalLength(int length)
    {
        if (m_long)
            m_long->setLogicalLength(length);
        else if (length <= kRoom)
            m_length = length;
        else
            toVector(length);
    }

private:
    static constexpr int kRoom = 512;

    void toVector(int length)
    {
        m_long.emplace();
        m_long->setLogicalLength(length);
        if (m_long->length() == length)
            std::copy_n(m_short, m_length, m_long->asArrayPtr());
        else
            m_long.reset();
    }

    T m_short[kRoom];
    int m_length = 0;
    std::optional<TvVector<T>> m_long;
};

template<class T>
bool isShared(const ShortText<T>&)
{
    return false;
}

} // namespace TvDetail

#endif
