#include "TvStringA.h"

#include "TvPlatformBase.h"

#include <type_traits>

static_assert(sizeof(TvStrHeaderA) == 40);
static_assert(std::is_trivially_destructible_v<TvStrHeaderA>); // strings outlive every destructor
static_assert(sizeof(TvStringA) == sizeof(void*));

// A constant: strings are used in static constructors before any code of this file runs.
constinit TvStrHeaderA TvStrHeaderA::sm_EmptyStrA(0);

template<>
const char* const TvStringT<char, TvStrHeaderA>::kEmptyStr = "";

template class TvMemData<char, TvStrHeaderA>;
template class TvStringT<char, TvStrHeaderA>;

TvStringA::TvStringA(const char* text) : TvStringT(text) { setCodepage(static_cast<int>(GetACP())); }

void TvStringA::setCodepage(int codepage)
{
    if (m_data.copyIfShared())
        m_data.header()->setCodepage(codepage);
}
