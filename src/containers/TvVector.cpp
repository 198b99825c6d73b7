#include "TvVector.h"

namespace {

// Every record must lie like the shared empty one.
using Data = TvVector<int>::Data;
static_assert(sizeof(Data) == sizeof(TvDetail::EmptyVectorRecord));
static_assert(sizeof(TvVector<int>) == sizeof(void*));

} // namespace

// A constant: vectors are used in static constructors before any code of this file runs.
constinit TvDetail::EmptyVectorRecord gEmptyVectorData;
constinit TvDetail::VectorRecord* const gpEmptyVectorData = &gEmptyVectorData;

template class TvVector<char>;
template class TvVector<wchar_t>;
template class TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int,
                        TvVectorFlatMemBufGrowPolicy>;
