#include "TvFormat.h"

#include "TvAlloc.h"
#include "format/FormatRecords.h"
#include "format/FormatSpec.h"
#include "format/IntegerText.h"
#include "format/OutputPlain.h"
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

// What stands for "go on" among the results that end a call.
constexpr int kDone = 1;
constexpr int kFailed = -1;

// The result of a call whose text does not fit, or kDone.
int failureOf(PlainEnd end)
{
    // Meant: 0 for ordinary text, -1 for a field.
    return end == PlainEnd::Stopped ? kDone : end == PlainEnd::LiteralTooLong ? 0 : kFailed;
}

[[gnu::noinline]] PlainEnd writePlainOutOfLine(OutputCursor& out, const wchar_t*& f, va_list& args)
{
    return writePlain(out, f, args);
}

// The conversions of a format that are parsed, and what stands between them.
class FormatRun {
public:
    FormatRun(OutputCursor out, FormatArguments args) : m_out(out), m_args(args) {}

    /// Writes what is left of a format; kDone, or the result of the call.
    int formatAll(const wchar_t* f);

    const OutputCursor& position() const { return m_out; }

private:
    // Writes what needs no parsing; `f` is then behind it.
    int writePieces(const wchar_t*& f);

    bool resolveCounts(FormatSpec& spec);
    bool convert(const FormatSpec& spec);
    bool emit(const FormatSpec& spec, const wchar_t* text, std::size_t length, bool numeric);
    bool convertInteger(const FormatSpec& spec, int radix);
    bool convertIntegerWithPoint(const FormatSpec& spec, std::uint32_t value, int radix);
    bool convertReal(const FormatSpec& spec);
    bool convertText(const FormatSpec& spec);
    bool convertUnits(const FormatSpec& spec);

    OutputCursor m_out;
    FormatArguments m_args;
};

int FormatRun::writePieces(const wchar_t*& f)
{
    if (va_list* const list = m_args.list())
        return failureOf(writePlainOutOfLine(m_out, f, *list));
    return writeLiteral(m_out, f) ? kDone : failureOf(PlainEnd::LiteralTooLong);
}

int FormatRun::formatAll(const wchar_t* f)
{
    int failure = *f == L'%' ? kDone : writePieces(f);
    while (failure == kDone && *f) {
        FormatSpec spec;
        f = parseFormatSpec(f + 1, m_args.positional(), spec);
        if (!spec.letter)
            return kDone;
        if (!resolveCounts(spec) || !convert(spec))
            return kFailed;
        if (*f)
            failure = writePieces(f);
    }
    return failure;
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
        m_out.skip(realText(m_out.at, value, spec.letter, precision, spec.plus));
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

// Whether a format may use numbered arguments: it does only with a `$` behind a `%` and a digit.
[[gnu::always_inline]] inline bool hasDollar(const wchar_t* format)
{
    if (!format[0] || !format[1] || !format[2]) // a bare %d has no room for one
        return false;
#ifdef TV_FORMAT_BY_SSE2
    if (isShortReadable(format)) [[likely]] {
        const unsigned dollars = placesOf(format, '$');
        const unsigned ends = placesOf(format, 0);
        if (ends | dollars)
            return (dollars & (ends - 1) & ~ends) != 0; // one in front of the end
        format += kShortText;
    }
#endif
    return std::wcschr(format, L'$') != nullptr;
}

// Terminates the text and tells where it ends.
int finished(wchar_t** out, int capacity, const OutputCursor& cursor, int failure)
{
    if (cursor.room > 0)
        *cursor.at = 0;
    *out = cursor.at;
    return failure == kDone ? capacity - cursor.room : failure;
}

// Writes what is left of a format that is not plain to its end.
[[gnu::noinline]] int formatRest(wchar_t** out, int capacity, const OutputCursor& cursor, const wchar_t* f,
                                 FormatArguments arguments)
{
    FormatRun run(cursor, arguments);
    const int failure = run.formatAll(f);
    return finished(out, capacity, run.position(), failure);
}

// The whole of a format that has a `$`.
[[gnu::noinline]] int formatByRecords(wchar_t** out, int capacity, const wchar_t* format, va_list* args)
{
    FormatParameters* records = nullptr;
    unsigned count = 0;
    if (FormatUtil::isDefineSelfParaIndex(nullptr, format)) {
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
    const int result = formatRest(out, capacity, {*out, capacity}, format,
                                  FormatArguments(args, records != nullptr, records, count));
    if (records)
        _tvFree(records);
    return result;
}

} // namespace

bool TvFormatDetail::writeFixed(OutputCursor& out, double value, int places)
{
    wchar_t text[kRealTextRoom];
    const int length =
        std::isfinite(value) ? realText(text, value, L'f', places, false) : nonFiniteText(text, value);
    return out.put(text, static_cast<std::size_t>(length));
}

int OutputWithFormat(wchar_t** out, int capacity, const wchar_t* format, va_list* args)
{
    if (!out || !*out || !format)
        return -1;
    if (!args || hasDollar(format)) [[unlikely]]
        return formatByRecords(out, capacity, format, args);
    OutputCursor cursor{*out, capacity};
    const PlainEnd end = writePlain(cursor, format, *args);
    if (end == PlainEnd::Stopped && *format) [[unlikely]]
        return formatRest(out, capacity, cursor, format, FormatArguments(args, false, nullptr, 0));
    return finished(out, capacity, cursor, failureOf(end));
}
