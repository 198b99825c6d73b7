// Utf8Decode.cpp - UTF-8 to wide text in vectors.
#include "TvCharMapper.h"

#include "codepage/ResultVector.h"
#include "codepage/TextKernels.h"
#include "codepage/Utf8Text.h"

#include <cstring>

namespace TvDetail {

template<class Store>
void utf8Decode(const char* src, std::size_t count, Store& out)
{
    const std::size_t room = count + 1 + kKernelSlack;
    wchar_t* to = roomOf(out, room);
    if (!to) {
        ResultVector<wchar_t, Store> result(out);
        if (!result.makeRoom(room, room))
            return;
        to = result.end();
    }
    const std::size_t written =
        textKernels().utf8Decode(reinterpret_cast<const unsigned char*>(src), count, to);
    to[written] = 0;
    out.setLogicalLength(static_cast<int>(written) + 1);
}

template void utf8Decode(const char*, std::size_t, TvVector<wchar_t>&);
template void utf8Decode(const char*, std::size_t, ShortText<wchar_t>&);

} // namespace TvDetail

void TvCharMapper::utf8ToUnicode(const char* src, int len, TvVector<wchar_t>& out)
{
    if (len < 0)
        return TvDetail::ResultVector<wchar_t>(out).clear();
    std::size_t count = 0;
    if (src) // a byte at src[len] belongs to the text unless it is 0: that is meant
        count = len == 0 ? std::strlen(src) : static_cast<std::size_t>(len) + 1;
    TvDetail::utf8Decode(src, count, out);
}
