// Every conversion letter with every flag, size, width and precision, plainly and with
// numbered arguments. The texts without padding are written out; the padding is worked out
// here, by its definition.
#include "CaseName.h"
#include "FormatCase.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

struct LetterCase {
    const char* name;
    const wchar_t* letter; ///< with its mode, if it has one
    std::wstring text;     ///< without a precision
    std::wstring precise;  ///< with the precision 2
    bool numeric;
    bool takesPlus;
    FormatArgumentsOf arguments;
};

template<class... Args>
FormatArgumentsOf of(Args... args)
{
    return [=](FormatCall& call) { return call(args...); };
}

struct Flags {
    const wchar_t* written;
    bool left;
    bool plus;
    wchar_t pad;
};

// All that the syntax knows: the two flags in either order, then the zero.
const Flags kFlags[] = {
    {L"", false, false, L' '},  {L"-", true, false, L' '},  {L"+", false, true, L' '},
    {L"-+", true, true, L' '},  {L"+-", true, true, L' '},  {L"0", false, false, L'0'},
    {L"-0", true, false, L' '}, {L"+0", false, true, L'0'}, {L"-+0", true, true, L' '},
    {L"+-0", true, true, L' '},
};

std::wstring padded(std::wstring text, bool numeric, const Flags& flags, std::size_t width)
{
    if (text.size() >= width)
        return text;
    const std::size_t missing = width - text.size();
    if (flags.left)
        return text + std::wstring(missing, L' ');
    const bool signFirst = numeric && flags.pad == L'0' && (text[0] == L'-' || text[0] == L'+');
    return text.insert(signFirst, missing, flags.pad);
}

class OutputFlags : public testing::TestWithParam<LetterCase> {
protected:
    // Calls `check(format, expected)` for every way to write the conversion.
    template<class Check>
    void forEachFormat(Check check)
    {
        const LetterCase& c = GetParam();
        for (const Flags& flags : kFlags) {
            for (const std::size_t width : {0u, 4u, 17u}) {
                for (const std::wstring precision : {L"", L".2"}) {
                    std::wstring text = precision.empty() ? c.text : c.precise;
                    if (flags.plus && c.takesPlus)
                        text.insert(0, L"+");
                    for (const wchar_t* size : {L"", L"l", L"L", L"h"})
                        check(std::wstring(L"<%") + flags.written + (width ? std::to_wstring(width) : L"") +
                                  precision + size + c.letter + L">",
                              L"<" + padded(text, c.numeric, flags, width) + L">");
                }
            }
        }
    }

    void expectText(const std::wstring& format, const std::wstring& expected)
    {
        FormatCall call(format.c_str(), FormatCall::kRoom);
        const Formatted got = GetParam().arguments(call);
        EXPECT_EQ(got.text, expected) << "format " << testing::PrintToString(format);
        EXPECT_EQ(got.result, static_cast<int>(expected.size()));
    }
};

TEST_P(OutputFlags, Plain)
{
    forEachFormat(
        [this](const std::wstring& format, const std::wstring& expected) { expectText(format, expected); });
}

TEST_P(OutputFlags, WithNumberedArguments)
{
    forEachFormat([this](const std::wstring& format, const std::wstring& expected) {
        expectText(numberedForm(format), expected);
    });
}

constexpr long long kWide = 0x1234567800000000LL;

const LetterCase kLetters[] = {
    {"c", L"c", L"x", L"x", false, false, of(int{L'x'})},
    {"cOfASign", L"c", L"-", L"-", false, false, of(int{L'-'})},
    {"s", L"s", L"-abc", L"-a", false, false, of(L"-abc")},
    {"sOfNull", L"s", L"", L"", false, false, of(static_cast<const wchar_t*>(nullptr))},
    {"d", L"d", L"42", L"0.42", true, false, of(42)},
    {"dNegative", L"d", L"-1234", L"-12.34", true, false, of(-1234)},
    {"i", L"i", L"-7", L"-0.07", true, false, of(-7)},
    {"u", L"u", L"4294967295", L"42949672.95", true, false, of(-1)},
    {"o", L"o", L"10", L"0.10", true, false, of(8)},
    {"x", L"x", L"FF", L"0.FF", true, false, of(255)},
    {"p", L"p", L"DEADBEEF", L"DEADBE.EF", true, false, of(0xDEADBEEFu)},
    {"b", L"b", L"101", L"1.01", true, false, of(5)},
    {"B", L"B", L"101", L"1.01", true, false, of(kWide + 5)},
    {"D", L"D", L"-5", L"-0.05", true, false, of(0x12FFFFFFFBLL)},
    {"I", L"I", L"42", L"0.42", true, false, of(kWide + 42)},
    {"O", L"O", L"10", L"0.10", true, false, of(kWide + 8)},
    {"U", L"U", L"42", L"0.42", true, false, of(kWide + 42)},
    {"X", L"X", L"FF", L"0.FF", true, false, of(kWide + 255)},
    {"f", L"f", L"1.500000", L"1.50", true, true, of(1.5)},
    {"fNegative", L"f", L"-1.500000", L"-1.50", true, false, of(-1.5)},
    {"fZero", L"f", L"0.000000", L"0.00", true, true, of(-0.0)},
    {"e", L"e", L"1.500000E+000", L"1.50E+000", true, false, of(1.5)},
    {"eNegative", L"e", L"-1.500000E-007", L"-1.50E-007", true, false, of(-1.5e-7)},
    {"g", L"g", L"1.500000", L"1.50", true, true, of(1.5)},
    {"gNegative", L"g", L"-1.500000", L"-1.50", true, false, of(-1.5)},
    {"gWithExponent", L"g", L"1.500000E+006", L"1.50E+006", true, false, of(1.5e6)},
    {"G", L"G", L"1.500000", L"1.50", true, true, of(1.5)},
    {"GWithExponent", L"G", L"-1.500000E-005", L"-1.50E-005", true, false, of(-1.5e-5)},
    // The precision of q is its longest text: 6 when absent.
    {"q", L"q0", L"1.0000", L"1E+00", true, false, of(1.0)},
    {"qNegative", L"q1", L"-7E+01", L"-7E+01", true, false, of(-66.5)},
    {"qZero", L"q0", L"0.0000", L"0E+00", true, false, of(-0.0)},
    {"qStar", L"q*", L"2.25g", L"2g", true, false, of(0x0803, 2.25 * 3.141592653589793 / 200)},
    {"Q", L"Q0", L"1.0000", L"1E+00", true, false, of(1.0)},
    {"qWithoutMode", L"q", L"", L"", false, false, of(1.0)},
    {"percent", L"%", L"%", L"%", false, false, of()},
    {"E", L"E", L"E", L"E", false, false, of()},
    {"F", L"F", L"F", L"F", false, false, of()},
    {"hash", L"#", L"#", L"#", false, false, of()},
    {"blank", L" ", L" ", L" ", false, false, of()},
    {"beyondAscii", L"\x4E2D", L"\x4E2D", L"\x4E2D", false, false, of()},
    {"infinity", L"f", L"Infinity", L"Infinity", false, false, of(HUGE_VAL)},
    {"negativeInfinity", L"e", L"-Infinity", L"-Infinity", false, false, of(-HUGE_VAL)},
};
INSTANTIATE_TEST_SUITE_P(Letters, OutputFlags, testing::ValuesIn(kLetters), nameOfCase<LetterCase>);

} // namespace
