// Utf8Encode.cpp - wide text to UTF-8 in vectors.
#include "TvCharMapper.h"

#include "codepage/ResultVector.h"
#include "codepage/TextKernels.h"
#include "codepage/Utf8.h"
#include "codepage/Utf8Text.h"

namespace TvDetail {

template<class Store>
std::size_t utf8Encode(const wchar_t* src, std::size_t count, Store& out)
{
    std::size_t room = 3 * count + 1 + kKernelSlack;
    if (room > INT_MAX) // too long for the usual guess: measure
        room = utf8EncodedSize(src, count) + 1 + kKernelSlack;
    char* to = roomOf(out, room);
    if (!to) {
        ResultVector<char, Store> result(out);
        if (!result.makeRoom(room, room))
            return 0;
        to = result.end();
    }
    const KernelProgress done = textKernels().utf8Encode(src, count, to);
    to[done.written] = 0;
    out.setLogicalLength(static_cast<int>(done.written) + 1);
    return done.read;
}

template std::size_t utf8Encode(const wchar_t*, std::size_t, TvVector<char>&);
template std::size_t utf8Encode(const wchar_t*, std::size_t, ShortText<char>&);

} // namespace TvDetail

void TvCharMapper::unicodeToUtf8(const wchar_t* src, int len, TvVector<char>& out)
{
    if (!src || len <= 0) // not even a terminator: that is meant
        return TvDetail::ResultVector<char>(out).clear();
    const auto count = static_cast<std::size_t>(len);
    const std::size_t end = TvDetail::utf8Encode(src, count, out);
    // An element at src[len] belongs to the text unless it is 0: that is meant. Text that has
    // ended before that place need not have one there.
    if (end == count && src[count] != 0)
        TvDetail::utf8Encode(src, count + 1, out);
}
