// TextEnd.h - loading texts in blocks although they may end at a 0 before their length.
//
// The length that a caller passes may reach past the 0, and past the memory that the text lies
// in. Whatever shares a page with an element of the text can be loaded; the next page only once
// it is known that the text goes on there.
#ifndef TV_TEXT_END_H
#define TV_TEXT_END_H

#include "runtime/ReadOn.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <cwchar>

namespace TvDetail {

inline std::size_t lengthWithin(const unsigned char* src, std::size_t count)
{
    return strnlen(reinterpret_cast<const char*>(src), count);
}
inline std::size_t lengthWithin(const wchar_t* src, std::size_t count) { return wcsnlen(src, count); }

// How many elements from `src` on lie wholly in its page.
template<class T>
std::size_t leftInPage(const T* src)
{
    return (kPageBytes - pageOffset(src)) / sizeof(T);
}

// Whether so many elements lie in the page of the first: all of them may be loaded. The quick way
// for short texts.
template<class T>
inline bool lieInOnePage(const T* src, std::size_t count)
{
    return kLoadsPages && pageOffset(src) + count * sizeof(T) <= kPageBytes;
}

// `count`, no more than a page's worth, when that many elements may be loaded; fewer, those
// before the 0, when the text ends before they do and before its page does. `src` is readable.
template<class T>
[[gnu::noinline]] std::size_t loadableUpTo(const T* src, std::size_t count)
{
    const std::size_t searched = kLoadsPages ? leftInPage(src) : count;
    if (kLoadsPages ? searched >= count : count == 0) // of a null text there are none to search
        return count;
    const std::size_t length = lengthWithin(src, searched);
    return length < searched ? length : count;
}

// Of `left` elements how many may be taken for there by loads of up to `block` of them: all, or
// those before the 0.
template<class T>
inline std::size_t loadable(const T* src, std::size_t left, std::size_t block)
{
    if (kLoadsPages && pageOffset(src) <= kPageBytes - block * sizeof(T)) [[likely]]
        return left;
    const std::size_t wanted = std::min(left, block);
    const std::size_t there = loadableUpTo(src, wanted);
    return there < wanted ? there : left;
}

// Tells which full blocks of a text may be loaded:
//     while (blocks.has(at, kBlock))
//         for (; at + kBlock <= blocks.known(); at += kBlock)
template<class T>
class TextBlocks {
public:
    TextBlocks(const T* src, std::size_t count)
        : m_src(src), m_count(count), m_known(kLoadsPages ? std::min(count, leftInPage(src)) : 0)
    {
    }

    std::size_t count() const { return m_count; }

    // Whether `size` elements from `at` on may be loaded. There is no 0 before `at`.
    bool has(std::size_t at, std::size_t size)
    {
        return at + size <= m_known || (at + size <= m_count && hasBeyond(at, size));
    }

    // That many may be loaded. Loops over full blocks run up to here without a call, which would
    // cost the registers that hold their constants, and then ask for more.
    std::size_t known() const { return m_known; }

private:
    [[gnu::noinline]] bool hasBeyond(std::size_t at, std::size_t size)
    {
        if (loadableUpTo(m_src + at, size) < size)
            return false;
        const std::size_t last = at + size - 1;
        m_known = kLoadsPages ? std::min(m_count, last + leftInPage(m_src + last)) : at + size;
        return true;
    }

    const T* m_src;
    std::size_t m_count;
    std::size_t m_known;
};

} // namespace TvDetail

#endif
