// OutputCursor.h - where the output engine writes.
#ifndef TV_FORMAT_OUTPUT_CURSOR_H
#define TV_FORMAT_OUTPUT_CURSOR_H

#include <algorithm>
#include <cstddef>
#include <cwchar>

namespace TvFormatDetail {

// Where the text goes. `room` counts the terminating 0 and is 0 or less when nothing may be
// written at all. The text is terminated behind every piece and untouched before the first, so
// that an argument may be what the buffer held or what has just been written into it.
struct OutputCursor {
    wchar_t* at;
    int room;

    bool fits(std::size_t count) const { return room > 0 && count < static_cast<std::size_t>(room); }

    // Steps behind `count` characters that fit.
    void advance(std::size_t count)
    {
        skip(static_cast<int>(count));
        *at = 0;
    }

    // The same where a terminating 0 stands there already.
    void skip(int count)
    {
        at += count;
        room -= count;
    }

    bool put(const wchar_t* text, std::size_t count)
    {
        if (!fits(count))
            return false;
        if (count)
            std::wmemmove(at, text, count);
        advance(count);
        return true;
    }

    bool fill(std::size_t count, wchar_t pad)
    {
        // Meant: what does not fit as a whole is written piece by piece until it ends.
        constexpr std::size_t piece = 30;
        while (count != 0) {
            const std::size_t n = fits(count) ? count : std::min(count, piece);
            if (!fits(n))
                return false;
            std::wmemset(at, pad, n);
            advance(n);
            count -= n;
        }
        return true;
    }
};

} // namespace TvFormatDetail

#endif
