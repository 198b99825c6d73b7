// FormatRecords.h - the arguments of a format, in sequence or by number.
#ifndef TV_FORMAT_FORMAT_RECORDS_H
#define TV_FORMAT_FORMAT_RECORDS_H

#include "TvFormat.h"

#include <bit>

namespace TvFormatDetail {

/// Record types by what they hold; see FormatParameters::type.
enum ArgumentType {
    kNoArgument = 0,
    kSignedArgument = 1,
    kUnsignedArgument = 2,
    kWideSlotArgument = 3,
    kDoubleArgument = 4,
    kCharacterArgument = 5,
    kTextArgument = 6
};

/// The largest argument number that the conversions of a positional format name, at least 1;
/// 0 when one of them is 0 or above kMaxArgumentNumber.
unsigned largestArgumentNumber(const wchar_t* format);

/// Hands out the arguments of one call: from the records when they are given, else the next
/// one from the list. A record of another type, or outside the records, gives 0.
class FormatArguments {
public:
    FormatArguments(va_list* args, bool positional, const FormatParameters* records, unsigned count)
        : m_args(args), m_records(records), m_count(records ? count : 0), m_positional(positional)
    {
    }

    bool positional() const { return m_positional; }

    /// The list whose next argument a conversion takes; null when there is none, or records.
    va_list* list() const { return m_positional ? nullptr : m_args; }

    /// A `*` width, precision or mode.
    int takeCount(unsigned number)
    {
        return positional() ? static_cast<int>(record(number, kSignedArgument)) : next<int>();
    }

    std::uint32_t takeInteger(unsigned number, int type)
    {
        if (positional())
            return static_cast<std::uint32_t>(record(number, type));
        return static_cast<std::uint32_t>(type == kWideSlotArgument ? next<long long>() : next<int>());
    }

    double takeDouble(unsigned number)
    {
        return positional() ? std::bit_cast<double>(record(number, kDoubleArgument)) : next<double>();
    }

    const wchar_t* takeText(unsigned number)
    {
        if (positional())
            return std::bit_cast<const wchar_t*>(record(number, kTextArgument));
        return next<const wchar_t*>();
    }

private:
    std::uint64_t record(unsigned number, int type) const
    {
        const unsigned index = number - 1;
        return index < m_count && m_records[index].type == type ? m_records[index].value : 0;
    }

    template<class T>
    T next()
    {
        return m_args ? va_arg(*m_args, T) : T();
    }

    va_list* m_args;
    const FormatParameters* m_records;
    unsigned m_count;
    bool m_positional;
};

} // namespace TvFormatDetail

#endif
