// Any drawing-unit settings with any value: the text fits or is not there, is the same through
// %q, and read back gives the value to the precision that was asked for.
#include "TvFormat.h"
#include "TvUnits.h"

#include "FuzzInput.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <cwctype>
#include <string>

namespace {

constexpr double kPi = 3.141592653589793;
constexpr int kRoom = 4096;

struct Asked {
    double value;
    int kind, flags;
    unsigned maxLength;

    int mode() const { return kind | flags << 8; }
};

// Mostly one that has a meaning.
short anySetting(Choices& choices)
{
    const std::uint8_t b = choices.byte();
    return b < 0xF0 ? static_cast<short>(b % 8) : static_cast<short>(choices.number(2));
}

void chooseSettings(Choices& choices)
{
    g_appUnits.unitMode = anySetting(choices);
    g_appUnits.linearStyle = anySetting(choices);
    g_appUnits.linearPrecision = anySetting(choices);
    g_appUnits.dimLinearStyle = anySetting(choices);
    g_appUnits.dimLinearPrecision = anySetting(choices);
    g_appUnits.angleStyle = anySetting(choices);
    g_appUnits.anglePrecision = anySetting(choices);
    g_appUnits.fractionStack = anySetting(choices);
    g_appUnits.fractionHeight = anySetting(choices);
    g_appUnits.clockwise = choices.below(2) != 0;
    g_appUnits.baseAngle =
        choices.below(4) ? choices.below(256) * kPi / 128 : std::bit_cast<double>(choices.number(8));
}

// A number of hundredths, of sixteenths, or any double.
double anyValue(Choices& choices)
{
    switch (choices.below(3)) {
    case 0:
        return static_cast<std::int32_t>(choices.number(4)) / 100.0;
    case 1:
        return static_cast<std::int16_t>(choices.number(2)) / 16.0;
    default:
        return std::bit_cast<double>(choices.number(8));
    }
}

std::wstring textOf(const Asked& asked, std::size_t capacity)
{
    const auto buffer = exactly(std::wstring(capacity, L'#'));
    FormatUtil::formatQModeDouble(buffer.get(), static_cast<int>(capacity), asked.value, asked.mode(),
                                  asked.maxLength);
    const wchar_t* const end = std::wmemchr(buffer.get(), 0, capacity);
    require(end != nullptr);
    return {buffer.get(), static_cast<std::size_t>(end - buffer.get())};
}

// A text for numbers and marks, read from its start.
class Reader {
public:
    explicit Reader(const std::wstring& text) : m_at(text.c_str()) {}

    bool skip(wchar_t c) { return *m_at == c && *m_at++ != 0; }
    bool skip(const std::wstring& text)
    {
        if (std::wcsncmp(m_at, text.c_str(), text.size()) != 0)
            return false;
        m_at += text.size();
        return true;
    }
    bool isAtNumber() const { return std::iswdigit(static_cast<std::wint_t>(*m_at)) || *m_at == L'.'; }
    double number()
    {
        wchar_t* end = nullptr;
        const double value = isAtNumber() ? std::wcstod(m_at, &end) : 0;
        m_at = isAtNumber() ? end : m_at;
        return value;
    }
    bool isAtEnd() const { return *m_at == 0; }

private:
    const wchar_t* m_at;
};

// Feet, inches and a fraction, each of which may be missing; no sign.
double readDistance(Reader& reader)
{
    double value = 0;
    double number = reader.number();
    if (reader.skip(L'\'')) {
        value = 12 * number;
        reader.skip(L'-');
        number = reader.number();
    }
    if (reader.skip(L' ') || reader.skip(L'-')) {
        value += number;
        number = reader.number();
    }
    if (reader.skip(L'/'))
        number /= reader.number();
    reader.skip(L'"');
    return value + number;
}

void requireNear(double value, double expected, double step, int line = __builtin_LINE())
{
    const bool holds = std::fabs(value - expected) <= step + 1e-13 * std::fabs(expected);
    if (!holds)
        std::fprintf(stderr, "%.17g is not within %g of %.17g\n", value, step, expected);
    require(holds, line);
}

void checkDistance(const Asked& asked, const std::wstring& text)
{
    int precision = 0, style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, asked.kind, asked.flags);
    const double value = std::fabs(asked.value);
    // Beyond, counts of feet and inches wrap; stacked fractions are markup.
    if (value > 2e9 || (asked.flags & 0x80))
        return;
    Reader reader(text);
    require(reader.skip(L'-') == (asked.value < 0));
    if (text.find(L'E') != std::wstring::npos) {
        // The sign costs one of the length, the exponent six.
        const unsigned length = asked.maxLength - std::min(asked.maxLength, asked.value < 0 ? 7u : 6u);
        const auto digits = static_cast<int>(std::min(length, static_cast<unsigned>(precision)));
        if (value > 1e-99 || value == 0)
            requireNear(reader.number(), value, 0.5 * std::pow(10, -std::min(digits, 15)) * value * 1.001);
        return;
    }
    const bool isFraction = style == 4 || style >= 5;
    const double steps = isFraction ? std::ldexp(1, std::min(precision, 30)) : std::pow(10, std::min(precision, 15));
    requireNear(readDistance(reader), value, 0.5 / steps);
    require(reader.isAtEnd());
}

// Degrees, minutes and seconds in degrees; what may be lost is added to `lost`.
double readDegrees(Reader& reader, bool isMarkup, int parts, double& lost)
{
    double value = reader.number();
    require(isMarkup ? reader.skip(L"\\U+00B0") : reader.skip(L'd'));
    const double minutes = reader.number();
    require(reader.skip(L'\'') == (parts > 0));
    const double seconds = reader.number();
    require(reader.skip(L'"') == (parts > 2));
    lost = parts == 0 ? 0.5
           : parts < 3
               ? 0.5 / 60
               : std::max(0.5 * std::pow(10, -std::max(0, parts - 4)), std::pow(10, 4 - parts)) / 3600;
    return value + minutes / 60 + seconds / 3600;
}

void checkAngle(const Asked& asked, const std::wstring& text)
{
    int precision = 0, style = 0;
    FormatUtil::convertQTypeToAppType(precision, style, asked.kind, asked.flags);
    const double degrees = std::fabs(asked.value) * 180 / kPi;
    if (degrees > 359)
        return;
    if (style < 0 || style > 4) {
        require(text.empty());
        return;
    }
    Reader reader(text);
    require(reader.skip(L'-') == (asked.value < 0));
    const unsigned length = asked.maxLength - (asked.value < 0 && asked.maxLength > 0 ? 1 : 0);
    const auto digits =
        static_cast<int>(std::min(length - std::min(length, 4u), static_cast<unsigned>(precision)));
    const double step = 0.5 * std::pow(10, -std::min(digits, 15));
    const bool isMarkup = (asked.flags & 0x80) != 0;
    switch (style) {
    case 0:
        requireNear(reader.number(), degrees, step);
        require(reader.skip(L"\\U+00B0") == isMarkup);
        break;
    case 2:
        requireNear(reader.number(), degrees / 0.9, step);
        require(reader.skip(L'g'));
        break;
    case 3:
        requireNear(reader.number(), std::fabs(asked.value), step);
        require(reader.skip(L'r'));
        break;
    default: {
        const unsigned most = length >= 12   ? length - 7
                              : length >= 10 ? length - 6
                              : length >= 7  ? length - 5
                                             : 0;
        const auto parts = static_cast<int>(std::min(most, static_cast<unsigned>(precision)));
        double lost = 0;
        const double value = readDegrees(reader, isMarkup, parts, lost);
        requireNear(value, degrees, lost + 1e-12);
    }
    }
    require(reader.isAtEnd());
}

void checkThroughEngine(const Asked& asked, const std::wstring& text)
{
    static wchar_t buffer[kRoom];
    const int length = FormatUtil::outputStringWithFormat(
        buffer, kRoom, L"%.*q*", static_cast<int>(asked.maxLength), asked.mode(), asked.value);
    require(length >= 0 && std::wcslen(buffer) == static_cast<std::size_t>(length));
    // A negative zero loses its sign there.
    require(text == buffer || text == std::wstring(L"-") + buffer);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Choices choices(data, size);
    chooseSettings(choices);
    const double value = anyValue(choices);
    const Asked asked = {value, static_cast<int>(choices.below(5)), choices.byte(), choices.byte()};

    const std::wstring text = textOf(asked, kRoom);
    require(textOf(asked, text.size() + 1) == text);
    require(textOf(asked, std::max<std::size_t>(text.size(), 1)).empty());
    checkThroughEngine(asked, text);
    if (!std::isfinite(asked.value))
        return 0;
    if (asked.kind < 2)
        checkDistance(asked, text);
    else if (asked.kind == 3)
        checkAngle(asked, text);
    return 0;
}
