#include "TvFormat.h"

#include "TvAlloc.h"
#include "format/FormatRecords.h"
#include "format/FormatSpec.h"
#include "format/IntegerText.h"
#include "format/RealText.h"
#include "format/UnitText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <cwchar>

using namespace TvFormatDetail;

namespace {

// Integers with a decimal point are built here; a longer text fails the call.
constexpr unsigned kFieldRoom = 2048;

// Where the text goes. `room` counts the terminating 0 and is 0 or less when nothing may be
// written at all. The text is terminated behind every piece and untouched before the first, so
// that an argument may be what the buffer held or what has just been written into it.
struct Output {
    wchar_t* at;
    int room;

    bool fits(std::size_t count) const { return room > 0 && count < static_cast<std::size_t>(room); }

    // Steps behind `count` characters that fit.
    void advance(std::size_t count)
    {
        at += count;
        room -= static_cast<int>(count);
        *at = 0;
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

// One call of the engine.
class FormatRun {
public:
    FormatRun(wchar_t* out, int capacity, FormatArguments args) : m_out{out, capacity}, m_args(args) {}

    /// The result of the call; the text is terminated.
    int run(const wchar_t* format)
    {
        const int capacity = m_out.room;
        const int failure = formatAll(format);
        if (m_out.room > 0)
            *m_out.at = 0;
        return failure == kDone ? capacity - m_out.room : failure;
    }

    wchar_t* position() const { return m_out.at; }

private:
    // Results of formatAll() that are not a length; kLiteralTooLong doubles as the result.
    static constexpr int kDone = 1;
    static constexpr int kLiteralTooLong = 0;
    static constexpr int kFailed = -1;

    // What became of a conversion of few characters; with No nothing has been fetched.
    enum class Bare { No, Done, Failed };

    int formatAll(const wchar_t* f);
    Bare convertBare(const wchar_t*& f);
    Bare convertBareFixed(int precision);
    bool resolveCounts(FormatSpec& spec);
    bool convert(const FormatSpec& spec);
    bool emit(const FormatSpec& spec, const wchar_t* text, std::size_t length, bool numeric);
    bool convertInteger(const FormatSpec& spec, int radix);
    bool convertIntegerWithPoint(const FormatSpec& spec, std::uint32_t value, int radix);
    bool convertReal(const FormatSpec& spec);
    bool convertText(const FormatSpec& spec);
    bool convertUnits(const FormatSpec& spec);

    Output m_out;
    FormatArguments m_args;
};

int FormatRun::formatAll(const wchar_t* f)
{
    for (;;) {
        std::size_t run = 0;
        for (; *f && *f != L'%'; ++f, ++run) {
            if (!m_out.fits(run + 1)) // the run is left out as a whole
                return kLiteralTooLong;
            m_out.at[run] = *f;
        }
        if (run != 0)
            m_out.advance(run);
        if (!*f)
            return kDone;
        ++f;
        const Bare bare = convertBare(f);
        if (bare == Bare::Failed)
            return kFailed;
        if (bare == Bare::Done)
            continue;
        FormatSpec spec;
        f = parseFormatSpec(f, m_args.positional(), spec);
        if (!spec.letter)
            return kDone;
        if (!resolveCounts(spec) || !convert(spec))
            return kFailed;
    }
}

// %d, %i, %s, %f and %.Nf without anything else, the most frequent conversions, without parsing.
FormatRun::Bare FormatRun::convertBare(const wchar_t*& f)
{
    if (m_args.positional() || !m_out.fits(kIntegerTextRoom))
        return Bare::No;
    Bare bare = Bare::No;
    int length = 1;
    if (*f == L'd' || *f == L'i') {
        const std::uint32_t value = m_args.takeInteger(1, kSignedArgument);
        m_out.advance(static_cast<std::size_t>(signedText(m_out.at, value)));
        bare = Bare::Done;
    } else if (*f == L's') {
        const wchar_t* const text = m_args.takeText(1);
        bare = m_out.put(text, text ? std::wcslen(text) : 0) ? Bare::Done : Bare::Failed;
    } else if (*f == L'f') {
        bare = convertBareFixed(kDefaultPrecision);
    } else if (*f == L'.' && isFormatDigit(f[1]) && f[2] == L'f') {
        bare = convertBareFixed(f[1] - L'0');
        length = 3;
    }
    if (bare == Bare::Done)
        f += length;
    return bare;
}

FormatRun::Bare FormatRun::convertBareFixed(int precision)
{
    if (!m_out.fits(kRealTextRoom))
        return Bare::No;
    const double value = m_args.takeDouble(1);
    const int length = std::isfinite(value) ? realText(m_out.at, value, L'f', precision, false)
                                            : nonFiniteText(m_out.at, value);
    m_out.advance(static_cast<std::size_t>(length));
    return Bare::Done;
}

// Fetches `*` width and precision. False for a negative width.
bool FormatRun::resolveCounts(FormatSpec& spec)
{
    if (spec.width.fromArgument) {
        const int width = m_args.takeCount(spec.width.value);
        if (width < 0)
            return false;
        spec.width.value = static_cast<unsigned>(width);
    }
    if (spec.precision.fromArgument) {
        const int precision = m_args.takeCount(spec.precision.value);
        spec.hasPrecision = precision >= 0;
        spec.precision.value = precision >= 0 ? static_cast<unsigned>(precision) : kDefaultPrecision;
    }
    return true;
}

bool FormatRun::convert(const FormatSpec& spec)
{
    switch (spec.letter) {
    case L's':
        return convertText(spec);
    case L'c': {
        const auto c = static_cast<wchar_t>(m_args.takeInteger(spec.number, kCharacterArgument));
        return emit(spec, &c, 1, false);
    }
    case L'f':
    case L'e':
    case L'g':
    case L'G':
        return convertReal(spec);
    case L'q':
    case L'Q':
        return convertUnits(spec);
    default:
        if (const int radix = radixOfLetter(spec.letter))
            return convertInteger(spec, radix);
        return emit(spec, &spec.letter, 1, false);
    }
}

bool FormatRun::emit(const FormatSpec& spec, const wchar_t* text, std::size_t length, bool numeric)
{
    std::size_t width = spec.width.value;
    if (!spec.left && width > length) {
        if (numeric && spec.pad == L'0' && length != 0 && (*text == L'-' || *text == L'+')) {
            if (!m_out.put(text, 1))
                return false;
            ++text;
            --length;
            --width;
        }
        if (!m_out.fill(width - length, spec.pad))
            return false;
    }
    if (!m_out.put(text, length))
        return false;
    return !spec.left || width <= length || m_out.fill(width - length, spec.pad);
}

bool FormatRun::convertInteger(const FormatSpec& spec, int radix)
{
    const std::uint32_t value = m_args.takeInteger(spec.number, argumentTypeOf(spec.letter));
    if (spec.hasPrecision)
        return convertIntegerWithPoint(spec, value, radix);
    if (spec.width.value == 0 && m_out.fits(kIntegerTextRoom)) {
        m_out.advance(static_cast<std::size_t>(integerText(m_out.at, value, radix)));
        return true;
    }
    wchar_t text[kIntegerTextRoom];
    const int length = integerText(text, value, radix);
    return emit(spec, text, static_cast<std::size_t>(length), true);
}

bool FormatRun::convertIntegerWithPoint(const FormatSpec& spec, std::uint32_t value, int radix)
{
    wchar_t text[kFieldRoom];
    auto length = static_cast<unsigned>(integerText(text, value, radix));
    if (!insertPoint(text, length, kFieldRoom, value, spec.precision.value))
        return false;
    return emit(spec, text, length, true);
}

bool FormatRun::convertReal(const FormatSpec& spec)
{
    const double value = m_args.takeDouble(spec.number);
    wchar_t text[kRealTextRoom];
    if (!std::isfinite(value))
        return emit(spec, text, static_cast<std::size_t>(nonFiniteText(text, value)), false);
    const int precision = static_cast<int>(std::min(spec.precision.value, unsigned{INT_MAX}));
    if (spec.width.value == 0 && m_out.fits(kRealTextRoom)) {
        m_out.advance(static_cast<std::size_t>(realText(m_out.at, value, spec.letter, precision, spec.plus)));
        return true;
    }
    const int length = realText(text, value, spec.letter, precision, spec.plus);
    return emit(spec, text, static_cast<std::size_t>(length), true);
}

bool FormatRun::convertText(const FormatSpec& spec)
{
    const wchar_t* const text = m_args.takeText(spec.number);
    if (!text)
        return emit(spec, L"", 0, false);
    const std::size_t length = spec.hasPrecision ? wcsnlen(text, spec.precision.value) : std::wcslen(text);
    return emit(spec, text, length, false);
}

bool FormatRun::convertUnits(const FormatSpec& spec)
{
    if (!spec.hasMode) // nothing is fetched; what follows the letter is ordinary text
        return emit(spec, L"", 0, false);
    const int mode =
        spec.mode.fromArgument ? m_args.takeCount(spec.mode.value) : static_cast<int>(spec.mode.value);
    const double value = m_args.takeDouble(spec.number);
    UnitText units;
    const bool numeric = makeUnitText(units, value, mode, spec.precision.value);
    const wchar_t* const text = numeric ? withoutNegativeZero(units.text()) : units.text();
    return emit(spec, text, std::wcslen(text), numeric);
}

// Whether a format may use numbered arguments: it does only with a `$`.
bool hasDollar(const wchar_t* format)
{
    constexpr int shortFormat = 16; // longer ones are worth a call of the vectorised search
    for (int i = 0; i < shortFormat; ++i) {
        if (!format[i])
            return false;
        if (format[i] == L'$')
            return true;
    }
    return std::wcschr(format + shortFormat, L'$') != nullptr;
}

} // namespace

int OutputWithFormat(wchar_t** out, int capacity, const wchar_t* format, va_list* args)
{
    if (!out || !*out || !format)
        return -1;
    FormatParameters* records = nullptr;
    unsigned count = 0;
    if (hasDollar(format) && FormatUtil::isDefineSelfParaIndex(nullptr, format)) {
        count = largestArgumentNumber(format);
        if (count != 0)
            records = static_cast<FormatParameters*>(_tvMalloc(count * sizeof(FormatParameters)));
        if (!records) {
            if (capacity > 0)
                **out = 0;
            return -1;
        }
        FormatUtil::valist2FormatParameters(args, records, format, static_cast<int>(count));
    }
    FormatRun run(*out, capacity, FormatArguments(args, records != nullptr, records, count));
    const int result = run.run(format);
    *out = run.position();
    if (records)
        _tvFree(records);
    return result;
}
