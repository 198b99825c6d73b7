#include "format/FormatRecords.h"

#include "format/FormatSpec.h"

#include <algorithm>

using namespace TvFormatDetail;

namespace {

// Calls `visit` for each conversion of a positional format.
template<class Visitor>
void forEachConversion(const wchar_t* format, Visitor visit)
{
    const wchar_t* f = format;
    while (*f) {
        if (*f++ != L'%')
            continue;
        FormatSpec spec;
        f = parseFormatSpec(f, true, spec);
        if (spec.letter)
            visit(spec);
    }
}

void setType(FormatParameters* params, unsigned count, unsigned number, int type)
{
    if (number - 1 < count)
        params[number - 1].type = type;
}

void fetch(FormatParameters& record, va_list* args)
{
    switch (record.type) {
    // NOLINTNEXTLINE(bugprone-branch-clone): what is taken from the list differs, its type
    case kSignedArgument:
    case kUnsignedArgument:
    case kCharacterArgument:
        record.value = static_cast<std::uint32_t>(va_arg(*args, int));
        break;
    case kWideSlotArgument:
        record.value = static_cast<std::uint32_t>(va_arg(*args, long long));
        break;
    case kDoubleArgument:
        record.value = std::bit_cast<std::uint64_t>(va_arg(*args, double));
        break;
    case kTextArgument:
        record.value = reinterpret_cast<std::uintptr_t>(va_arg(*args, const wchar_t*));
        break;
    default: // a number that no conversion names takes no argument
        break;
    }
}

} // namespace

unsigned TvFormatDetail::largestArgumentNumber(const wchar_t* format)
{
    unsigned largest = 1;
    bool bad = false;
    forEachConversion(format, [&](const FormatSpec& spec) {
        bad |= spec.badNumber;
        largest = std::max(largest, spec.number);
        for (const FormatCount& count : {spec.width, spec.precision, spec.mode}) {
            if (count.fromArgument)
                largest = std::max(largest, count.value);
        }
    });
    return bad ? 0 : largest;
}

bool FormatUtil::isDefineSelfParaIndex(int* count, const wchar_t* format)
{
    unsigned items = 0;
    unsigned largest = 0;
    bool positional = false;
    for (const wchar_t* f = format; f && *f;) {
        const wchar_t c = *f++;
        if (c == L'%' && *f == L'%') {
            ++f;
        } else if (c == L'%' || c == L'*') {
            ++items;
            const bool numbered = isFormatDigit(*f);
            largest = std::max(largest, readFormatNumber(f));
            positional |= numbered && *f == L'$';
        }
    }
    if (count)
        *count = static_cast<int>(std::min({items, largest, unsigned{INT_MAX}}));
    return positional;
}

bool FormatUtil::valist2FormatParameters(va_list* args, FormatParameters* params, const wchar_t* format,
                                         int count)
{
    if (!params || count <= 0)
        return true;
    const auto records = static_cast<unsigned>(count);
    std::fill_n(params, records, FormatParameters{kNoArgument, 0});
    if (!args || !format)
        return true;
    forEachConversion(format, [&](const FormatSpec& spec) {
        if (spec.width.fromArgument)
            setType(params, records, spec.width.value, kSignedArgument);
        if (spec.hasPrecision && spec.precision.fromArgument)
            setType(params, records, spec.precision.value, kSignedArgument);
        if (const int type = argumentTypeOf(spec.letter))
            setType(params, records, spec.number, type);
        if (spec.hasMode && spec.mode.fromArgument)
            setType(params, records, spec.mode.value, kSignedArgument);
    });
    for (unsigned i = 0; i < records; ++i)
        fetch(params[i], args);
    return true;
}
