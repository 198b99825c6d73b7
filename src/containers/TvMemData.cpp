#include "TvMemData.h"

#include <type_traits>

static_assert(sizeof(TvMemDataHeader) == 32);
static_assert(std::is_trivially_destructible_v<TvMemDataHeader>); // buffers outlive every destructor
static_assert(sizeof(TvMemData<char, TvMemDataHeader>) == sizeof(void*));

// A constant: buffers are used in static constructors before any code of this file runs.
constinit TvMemDataHeader TvMemDataHeader::sm_EmptyHeader(1, 0, 0, 8);
