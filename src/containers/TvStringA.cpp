#include "TvStringA.h"

#include "runtime/TvPlatformCalls.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>

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

// Copies the short texts that most strings are without a call, by two halves that overlap.
void copyText(char* dst, const char* src, std::size_t n)
{
    const auto copyEnds = [=](auto piece) {
        auto end = piece;
        std::memcpy(&piece, src, sizeof piece);
        std::memcpy(&end, src + n - sizeof piece, sizeof piece);
        std::memcpy(dst, &piece, sizeof piece);
        std::memcpy(dst + n - sizeof piece, &end, sizeof piece);
    };
    struct Sixteen {
        std::uint64_t words[2];
    };
    if (n > 2 * sizeof(Sixteen) || n < sizeof(std::uint64_t))
        TvPodReallocator<char>::_copy(dst, src, n);
    else if (n >= sizeof(Sixteen))
        copyEnds(Sixteen{});
    else
        copyEnds(std::uint64_t{});
}

// What they make of it otherwise, in one step. The caller has the one reference.
TvStrHeaderA* newBlock(const char* text, int codepage)
{
    const std::size_t length = text ? std::strlen(text) : 0;
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

TvStringA::TvStringA(const char* text) : TvStringT(*newBlock(text, static_cast<int>(GetACP())))
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
