#include "TvStringA.h"

#include "runtime/ReadOn.h"
#include "runtime/TvCopyBytes.h"
#include "runtime/TvPlatformCalls.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace {

constexpr std::size_t kStep = 8; // the growth step of new headers

} // namespace

static_assert(sizeof(TvStrHeaderA) == 40);
static_assert(std::is_trivially_destructible_v<TvStrHeaderA>); // strings outlive every destructor
static_assert(sizeof(TvStringA) == sizeof(void*));

// A constant: strings are used in static constructors before any code of this file runs.
constinit TvStrHeaderA TvStrHeaderA::sm_EmptyStrA(0);

template<>
const char* const TvStringT<char, TvStrHeaderA>::kEmptyStr = "";

template class TvMemData<char, TvStrHeaderA>;
template class TvStringT<char, TvStrHeaderA>;

namespace {

// What assign() and setCodepage() make of an empty string when there is not enough memory for
// the text: perhaps there is enough for a header.
[[gnu::cold, gnu::noinline]] TvStrHeaderA* newEmptyBlock(int codepage)
{
    void* const memory = TvMemDataAllocator::_alloc(sizeof(TvStrHeaderA));
    if (memory)
        return new (memory) TvStrHeaderA(codepage);
    ++TvStrHeaderA::sm_EmptyStrA.refCount;
    return TvStrHeaderA::sEmptyHeader();
}

#ifdef __SSE2__

// A bit for each of 16 characters that is 0.
std::uint64_t zerosIn(const char* text)
{
    const __m128i sixteen = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_cmpeq_epi8(sixteen, _mm_setzero_si128())));
}

// As strlen, which is called only for texts longer than most strings are.
std::size_t lengthOf(const char* text)
{
    if (!mayReadOn(text, 64))
        return std::strlen(text);
    if (const std::uint64_t zeros = zerosIn(text))
        return static_cast<std::size_t>(std::countr_zero(zeros));
    if (const std::uint64_t zeros =
            zerosIn(text + 16) << 16 | zerosIn(text + 32) << 32 | zerosIn(text + 48) << 48)
        return static_cast<std::size_t>(std::countr_zero(zeros));
    return 64 + std::strlen(text + 64);
}

#else

std::size_t lengthOf(const char* text) { return std::strlen(text); }

#endif

// Copies the short texts that most strings are without a call; the shortest of those are asked for
// first.
void copyText(char* dst, const char* src, std::size_t n)
{
    auto* const to = reinterpret_cast<unsigned char*>(dst);
    const auto* const from = reinterpret_cast<const unsigned char*>(src);
    if (n > 64 || n < 8)
        TvPodReallocator<char>::_copy(dst, src, n);
    else if (n < 16)
        TvCopyDetail::moveEnds<8>(to, from, n);
    else if (n <= 32)
        TvCopyDetail::moveEnds<16>(to, from, n);
    else
        TvCopyDetail::moveLongEnds(to, from, n);
}

// What they make of it otherwise, in one step. The caller has the one reference.
TvStrHeaderA* newBlock(const char* text, int codepage)
{
    const std::size_t length = text ? lengthOf(text) : 0;
    const std::size_t count = length != 0 ? length + 1 : 0;
    const std::size_t room = (count + kStep - 1) / kStep * kStep;
    void* const memory = TvMemDataAllocator::_alloc(sizeof(TvStrHeaderA) + room);
    if (!memory)
        return newEmptyBlock(codepage);
    auto* const block = new (memory) TvStrHeaderA(codepage);
    block->count = count;
    block->allocCount = room;
    copyText(reinterpret_cast<char*>(block + 1), text, count);
    return block;
}

} // namespace

TvStringA::TvStringA(const char* text) : TvStringT(*newBlock(text, static_cast<int>(ansiCodePage())))
{
#ifdef TV_CHECK_STRUCTURES
    TvDetail::StringCheck::demand(*this);
#endif
}

void TvStringA::setCodepage(int codepage)
{
    if (m_data.copyIfShared())
        m_data.header()->setCodepage(codepage);
}
