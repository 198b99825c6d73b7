// Utf8Decode.cpp - UTF-8 to wide text in vectors.
#include "TvCharMapper.h"

#include "codepage/ResultVector.h"
#include "codepage/TextKernels.h"
#include "codepage/Utf8Text.h"

#include <cstring>

namespace TvDetail {

template<class Store>
std::size_t utf8Decode(const char* src, std::size_t count, Store& out)
{
    const std::size_t room = count + 1 + kKernelSlack;
    wchar_t* to = roomOf(out, room);
    if (!to) {
        ResultVector<wchar_t, Store> result(out);
        if (!result.makeRoom(room, room))
            return 0;
        to = result.end();
    }
    const KernelProgress done =
        textKernels().utf8Decode(reinterpret_cast<const unsigned char*>(src), count, to);
    to[done.written] = 0;
    out.setLogicalLength(static_cast<int>(done.written) + 1);
    return done.read;
}

template std::size_t utf8Decode(const char*, std::size_t, TvVector<wchar_t>&);
template std::size_t utf8Decode(const char*, std::size_t, ShortText<wchar_t>&);

} // namespace TvDetail

void TvCharMapper::utf8ToUnicode(const char* src, int len, TvVector<wchar_t>& out)
{
    if (len < 0)
        return TvDetail::ResultVector<wchar_t>(out).clear();
    if (!src || len == 0) {
        TvDetail::utf8Decode(src, src ? std::strlen(src) : 0, out);
        return;
    }
    const auto count = static_cast<std::size_t>(len);
    const std::size_t end = TvDetail::utf8Decode(src, count, out);
    // A byte at src[len] belongs to the text unless it is 0: that is meant. Text that has ended
    // before that place need not have one there.
    if (end == count && src[count] != 0)
        TvDetail::utf8Decode(src, count + 1, out);
}
