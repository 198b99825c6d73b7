// VectorValues.h - vectors and elements that the tests of TvVector share.
#ifndef TV_TEST_VECTOR_VALUES_H
#define TV_TEST_VECTOR_VALUES_H

#include "TvVector.h"

#include <vector>

using ByteVector =
    TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>;

/// 0, 1, 2 ...
inline TvVector<int> counting(int length)
{
    TvVector<int> v;
    for (int i = 0; i < length; ++i)
        v.append(i);
    return v;
}

inline std::vector<int> elements(const TvVector<int>& v) { return {v.begin(), v.end()}; }

inline bool sharesTheEmptyRecord(const TvVector<int>& v)
{
    return v.asArrayPtr() == TvVector<int>::rawEmptyData()->array && v.physicalLength() == 0;
}

/// Counts the objects that are alive.
struct Counted {
    Counted() { ++alive; }
    Counted(int v) : value(v) { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
    int value = 0;
    static inline int alive = 0;
};

#endif
