// Strings of digits in blocks of the big-number allocator.
#include "TvGdImpl.h"

#include "numconv/TvDigitBlocks.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

// The size class stands in the first word of the block, the text right behind it.
constexpr std::ptrdiff_t kTextOffset = sizeof(int);

} // namespace

char* TvGdImpl::rv_alloc(int n)
{
    // A block of class k has 24 + 4 * 2^k bytes behind its first word and link.
    int k = 0;
    while (24 + (std::size_t{4} << k) <= static_cast<std::size_t>(std::max(n, 0)))
        ++k;
    Bigint* b = Balloc(k);
    if (!b)
        return nullptr;
    char* block = reinterpret_cast<char*>(b);
    std::memcpy(block, &k, sizeof k);
    return block + kTextOffset;
}

char* TvGdImpl::nrv_alloc(const char* s, char** rve, int n)
{
    char* text = rv_alloc(std::max(n, static_cast<int>(std::strlen(s))));
    if (!text)
        return nullptr;
    char* end = strcp(text, s);
    if (rve)
        *rve = end;
    return text;
}

void TvGdImpl::freedtoa(char* digits)
{
    if (!digits)
        return;
    char* block = digits - kTextOffset;
    int k;
    std::memcpy(&k, block, sizeof k);
    Bigint* b = reinterpret_cast<Bigint*>(block);
    if (TvDigitBlocks::giveBack(b, k))
        return;
    b->k = k;
    b->maxwds = 1 << k;
    Bfree(b);
}

char* TvGdImpl::strcp(char* to, const char* from)
{
    const std::size_t length = std::strlen(from);
    std::memcpy(to, from, length + 1);
    return to + length;
}
