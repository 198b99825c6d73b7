// OutputPlain.h - the most frequent pieces of a format: ordinary text, and %d, %i, %s, %f and
// %.Nf without anything else.
#ifndef TV_FORMAT_OUTPUT_PLAIN_H
#define TV_FORMAT_OUTPUT_PLAIN_H

#include "format/FixedText.h"
#include "format/FormatSpec.h"
#include "format/IntegerText.h"
#include "format/OutputCursor.h"
#include "format/WideCopy.h"

#include <bit>
#include <cstdarg>
#include <cwchar>

namespace TvFormatDetail {

/// Why writing pieces ended: in front of something else (or of the end of the format), or with
/// a text that does not fit.
enum class PlainEnd { Stopped, LiteralTooLong, Failed };

/// Writes the ordinary text at `f`, up to a `%` or the end. False, with nothing written for
/// certain, when it does not fit.
[[gnu::always_inline]] inline bool writeLiteral(OutputCursor& out, const wchar_t*& f)
{
    int run = 0;
    for (; *f && *f != L'%'; ++f, ++run) {
        if (run + 1 >= out.room) // the run is left out as a whole
            return false;
        out.at[run] = *f;
    }
    if (run != 0)
        out.advance(static_cast<std::size_t>(run));
    return true;
}

/// Writes the text of a `%s`. False when it does not fit.
[[gnu::always_inline]] inline bool writeText(OutputCursor& out, const wchar_t* text)
{
#ifdef TV_FORMAT_BY_SSE2
    if (text && isShortReadable(text)) [[likely]] {
        if (const unsigned ends = placesOf(text, 0)) {
            const int length = std::countr_zero(ends);
            if (length >= out.room)
                return false;
            copyShort(out.at, text, length + 1);
            out.skip(length);
            return true;
        }
    }
#endif
    return out.put(text, text ? std::wcslen(text) : 0);
}

/// Writes a number as %.Nf shows it, the general way. False when it does not fit.
bool writeFixed(OutputCursor& out, double value, int places);

static_assert(kFixedTextRoom <= kIntegerTextRoom);

/// Writes the pieces at the start of `f` as long as they are plain and their arguments can be
/// written without asking for every character whether it fits. `f` is then behind them. Behind
/// a text and its terminating 0 nothing is written: an argument may stand there.
[[gnu::always_inline]] inline PlainEnd writePlain(OutputCursor& out, const wchar_t*& f, va_list& args)
{
    for (;;) {
        if (!writeLiteral(out, f))
            return PlainEnd::LiteralTooLong;
        if (!*f || out.room <= kIntegerTextRoom)
            return PlainEnd::Stopped;
        const wchar_t letter = f[1];
        if (letter == L'd' || letter == L'i') {
            const auto value = static_cast<std::uint32_t>(va_arg(args, int));
#ifdef TV_FORMAT_BY_SSE2
            out.skip(putSigned(out.at, value));
#else
            out.advance(static_cast<std::size_t>(signedText(out.at, value)));
#endif
            f += 2;
        } else if (letter == L's') {
            if (!writeText(out, va_arg(args, const wchar_t*)))
                return PlainEnd::Failed;
            f += 2;
        } else {
            int places = kDefaultPrecision;
            const wchar_t* behind = f + 2;
            if (letter == L'.' && isFormatDigit(f[2]) && f[3] == L'f') {
                places = f[2] - L'0';
                behind = f + 4;
            } else if (letter != L'f') {
                return PlainEnd::Stopped;
            }
            const double value = va_arg(args, double);
            const int length = places <= kFixedTextPlaces ? fixedText(out.at, value, places) : 0;
            if (length) [[likely]] {
                out.skip(length);
            } else {
                OutputCursor passed = out; // keeps the caller's in registers
                if (!writeFixed(passed, value, places))
                    return PlainEnd::Failed;
                out = passed;
            }
            f = behind;
        }
    }
}

} // namespace TvFormatDetail

#endif
