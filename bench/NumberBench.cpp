// Doubles to text and back, beside the C++ library, {fmt}, dragonbox, double-conversion,
// fast_float and the C library. Time per number; before a row runs its results are compared with the
// C library's.
#include "TvFormat.h"
#include "TvGdImpl.h"
#include "TvNumber.h"

#include <benchmark/benchmark.h>
#include <double-conversion/double-conversion.h>
#include <dragonbox/dragonbox_to_chars.h>
#include <fast_float/fast_float.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <fmt/xchar.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

// More than a processor's branch prediction learns by heart, as the numbers of a drawing are;
// their texts fit the second-level cache.
constexpr int kNumbers = 32768;
constexpr std::size_t kTextRoom = 512;

enum Input { Coordinates, RandomBits, ShortDecimals };

std::vector<double> numbers(Input input)
{
    std::mt19937_64 random(42);
    std::vector<double> values;
    while (values.size() < kNumbers) {
        const std::uint64_t b = random();
        double value = 0;
        switch (input) {
        case Coordinates: {
            // Half short decimals, half computed values, 0.001 to 1e5, a quarter negative.
            const double size = std::pow(10.0, static_cast<double>(b >> 40) / 0x1p24 * 8 - 3);
            value = b & 1 ? size : std::round(size * 1000) / 1000;
            if ((b >> 1 & 3) == 0)
                value = -value;
            break;
        }
        case RandomBits:
            value = std::bit_cast<double>(b);
            break;
        case ShortDecimals:
            value = static_cast<double>(b >> 44) / 1000;
            break;
        }
        if (std::isfinite(value) && value != 0)
            values.push_back(value);
    }
    return values;
}

const std::vector<double>& inputOf(Input input)
{
    static const std::vector<double> sets[] = {numbers(Coordinates), numbers(RandomBits),
                                               numbers(ShortDecimals)};
    return sets[input];
}

// The texts to parse, each terminated: half decimals with 2 to 6 places, half 17 significant
// digits, in no order. Those of random bits have 17 digits, those of short decimals 3 places.
template<class Char>
struct Texts {
    std::basic_string<Char> characters;
    std::vector<std::size_t> starts; // and the place behind the last text
};

Texts<char> makeTexts(Input input)
{
    std::mt19937_64 random(43);
    Texts<char> texts;
    for (const double value : inputOf(input)) {
        const std::uint64_t b = random();
        char text[kTextRoom];
        if (input == RandomBits || (input == Coordinates && b & 1))
            std::snprintf(text, sizeof text, "%.17g", value);
        else
            std::snprintf(text, sizeof text, "%.*f",
                          input == ShortDecimals ? 3 : 2 + static_cast<int>((b >> 1) % 5), value);
        texts.starts.push_back(texts.characters.size());
        texts.characters.append(text, std::strlen(text) + 1);
    }
    texts.starts.push_back(texts.characters.size());
    return texts;
}

const Texts<char>& textsOf(Input input)
{
    static const Texts<char> sets[] = {makeTexts(Coordinates), makeTexts(RandomBits),
                                       makeTexts(ShortDecimals)};
    return sets[input];
}

const Texts<wchar_t>& wideTextsOf(Input input)
{
    const auto widened = [](const Texts<char>& texts) {
        return Texts<wchar_t>{{texts.characters.begin(), texts.characters.end()}, texts.starts};
    };
    static const Texts<wchar_t> sets[] = {widened(textsOf(Coordinates)), widened(textsOf(RandomBits)),
                                          widened(textsOf(ShortDecimals))};
    return sets[input];
}

// Every writer gets room and a value, and answers the end of what it wrote. `compared`
// writes the text that is compared: of bare digits a number that can be read.
using WriteFunction = char* (*)(char*, double);

struct Writer {
    const char* name;
    WriteFunction timed;
    WriteFunction compared;
    bool takesLargeValues = true;

    Writer(const char* who, WriteFunction text) : name(who), timed(text), compared(text) {}
    Writer(const char* who, WriteFunction digits, WriteFunction number)
        : name(who), timed(digits), compared(number)
    {
    }
    Writer smallValuesOnly() const
    {
        Writer w = *this;
        w.takesLargeValues = false;
        return w;
    }
};

void write(benchmark::State& state, Input input, const Writer& writer, const char* format)
{
    char text[kTextRoom], expected[kTextRoom];
    for (const double value : inputOf(input)) {
        *writer.compared(text, value) = '\0';
        if (format)
            std::snprintf(expected, sizeof expected, format, value);
        if (std::strtod(text, nullptr) != (format ? std::strtod(expected, nullptr) : value)) {
            state.SkipWithError("wrong text");
            return;
        }
    }
    const double* values = inputOf(input).data();
    while (state.KeepRunningBatch(kNumbers)) {
        for (int i = 0; i < kNumbers; ++i) {
            benchmark::DoNotOptimize(writer.timed(text, values[i]));
            benchmark::ClobberMemory();
        }
    }
}

// Bare digits, a sign and the place of the point. Those of the library stand in a block of
// its own, which is given back.
template<int Mode, int Digits>
char* digitsLibrary(char*, double value)
{
    int point, sign;
    char* digits = TvGdImpl::dtoa(value, Mode, Digits, &point, &sign, nullptr);
    benchmark::DoNotOptimize(*digits);
    TvGdImpl::freedtoa(digits);
    return digits;
}

template<int Mode, int Digits>
char* numberOfDigitsLibrary(char* out, double value)
{
    int point, sign;
    char* end;
    char* digits = TvGdImpl::dtoa(value, Mode, Digits, &point, &sign, &end);
    const int n = static_cast<int>(end - digits);
    CvtFormatter<char>::formatE(out, digits, n, n - 1, point, sign, 'e');
    TvGdImpl::freedtoa(digits);
    return out + std::strlen(out);
}

using DigitsMode = double_conversion::DoubleToStringConverter::DtoaMode;

template<DigitsMode Mode, int Digits>
char* digitsDoubleConversion(char* out, double value)
{
    bool sign;
    int length, point;
    double_conversion::DoubleToStringConverter::DoubleToAscii(
        value, Mode, Digits, out, static_cast<int>(kTextRoom), &sign, &length, &point);
    return out + length;
}

template<DigitsMode Mode, int Digits>
char* numberOfDigitsDoubleConversion(char* out, double value)
{
    bool sign;
    int length, point;
    char digits[kTextRoom];
    double_conversion::DoubleToStringConverter::DoubleToAscii(
        value, Mode, Digits, digits, static_cast<int>(kTextRoom), &sign, &length, &point);
    CvtFormatter<char>::formatE(out, digits, length, length - 1, point, sign, 'e');
    return out + std::strlen(out);
}

const double_conversion::DoubleToStringConverter& converter()
{
    static const double_conversion::DoubleToStringConverter c(
        double_conversion::DoubleToStringConverter::NO_FLAGS, "inf", "nan", 'e', -6, 21, 6, 0);
    return c;
}

template<class Conversion>
char* byDoubleConversion(char* out, Conversion conversion)
{
    double_conversion::StringBuilder builder(out, kTextRoom);
    conversion(builder);
    const int n = builder.position();
    builder.Finalize();
    return out + n;
}

// The text of the library ends with a terminator, that of most others with a pointer behind
// it: none is made to give both. The end is found where texts are compared.
using TextFunction = void (*)(char*, double);

template<TextFunction Text>
char* timedLibrary(char* out, double value)
{
    Text(out, value);
    return out;
}

template<TextFunction Text>
char* comparedLibrary(char* out, double value)
{
    Text(out, value);
    return out + std::strlen(out);
}

template<TextFunction Text>
Writer library()
{
    return Writer("tv", timedLibrary<Text>, comparedLibrary<Text>);
}

// As text: an exponent below 1e-4 and from 1e17 on.
void shortestLibrary(char* t, double v)
{
    int point, sign;
    char* end;
    char* digits = TvGdImpl::dtoa(v, 0, 0, &point, &sign, &end);
    CvtFormatter<char>::formatG(t, digits, static_cast<int>(end - digits), 17, point, sign, 'e', 0);
    TvGdImpl::freedtoa(digits);
}
char* shortestToChars(char* t, double v) { return std::to_chars(t, t + kTextRoom, v).ptr; }
char* shortestDragonbox(char* t, double v) { return jkj::dragonbox::to_chars_n(v, t); }
char* shortestFmt(char* t, double v) { return fmt::format_to(t, FMT_COMPILE("{}"), v); }
char* shortestDoubleConversion(char* t, double v)
{
    return byDoubleConversion(t, [v](auto& b) { converter().ToShortest(v, &b); });
}

// What reads back without the shortest digits: 17 of them.
char* shortestLibc(char* t, double v) { return t + std::snprintf(t, kTextRoom, "%.17g", v); }

void digits17Library(char* t, double v) { tvFltToE(t, v, 16, 'e'); }
char* digits17ToChars(char* t, double v)
{
    return std::to_chars(t, t + kTextRoom, v, std::chars_format::scientific, 16).ptr;
}
char* digits17Fmt(char* t, double v) { return fmt::format_to(t, FMT_COMPILE("{:.16e}"), v); }
char* digits17Libc(char* t, double v) { return t + std::snprintf(t, kTextRoom, "%.16e", v); }
char* digits17DoubleConversion(char* t, double v)
{
    return byDoubleConversion(t, [v](auto& b) { converter().ToExponential(v, 16, &b); });
}

void f6Library(char* t, double v) { tvFltToF(t, v, 6); }
char* f6ToChars(char* t, double v)
{
    return std::to_chars(t, t + kTextRoom, v, std::chars_format::fixed, 6).ptr;
}
char* f6Fmt(char* t, double v) { return fmt::format_to(t, FMT_COMPILE("{:.6f}"), v); }
char* f6Libc(char* t, double v) { return t + std::snprintf(t, kTextRoom, "%.6f", v); }
char* f6DoubleConversion(char* t, double v)
{
    return byDoubleConversion(t, [v](auto& b) { converter().ToFixed(v, 6, &b); });
}

void g15Library(char* t, double v) { tvFltToG(t, v, 15, 'e', 0); }
char* g15ToChars(char* t, double v)
{
    return std::to_chars(t, t + kTextRoom, v, std::chars_format::general, 15).ptr;
}
char* g15Fmt(char* t, double v) { return fmt::format_to(t, FMT_COMPILE("{:.15g}"), v); }
char* g15Libc(char* t, double v) { return t + std::snprintf(t, kTextRoom, "%.15g", v); }
char* g15DoubleConversion(char* t, double v)
{
    return byDoubleConversion(t, [v](auto& b) { converter().ToPrecision(v, 15, &b); });
}

// Wide text, six places, through the engines that take a format.
using WideWriteFunction = int (*)(wchar_t*, double);

int formatLibrary(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    wchar_t* at = out;
    const int length = OutputWithFormat(&at, static_cast<int>(kTextRoom), format, &args);
    va_end(args);
    return length;
}

int wideF6Library(wchar_t* t, double v) { return formatLibrary(t, L"%.6f", v); }
int wideF6Libc(wchar_t* t, double v) { return std::swprintf(t, kTextRoom, L"%.6f", v); }
int wideF6Fmt(wchar_t* t, double v)
{
    wchar_t* const end = fmt::format_to(t, L"{:.6f}", v);
    *end = 0;
    return static_cast<int>(end - t);
}

void writeWide(benchmark::State& state, WideWriteFunction writer)
{
    wchar_t text[kTextRoom], expected[kTextRoom];
    for (const double value : inputOf(Coordinates)) {
        const int length = std::swprintf(expected, kTextRoom, L"%.6f", value);
        if (writer(text, value) != length || std::wcscmp(text, expected) != 0) {
            state.SkipWithError("wrong text");
            return;
        }
    }
    const double* values = inputOf(Coordinates).data();
    while (state.KeepRunningBatch(kNumbers)) {
        for (int i = 0; i < kNumbers; ++i) {
            benchmark::DoNotOptimize(writer(text, values[i]));
            benchmark::ClobberMemory();
        }
    }
}

// A reader gets a text from its first character to its terminator.
template<class Char, class Reader>
void read(benchmark::State& state, const Texts<Char>& texts, Input input, Reader reader)
{
    const Char* const all = texts.characters.data();
    const std::size_t* const starts = texts.starts.data();
    for (int i = 0; i < kNumbers; ++i) {
        const double expected = std::strtod(textsOf(input).characters.data() + starts[i], nullptr);
        if (reader(all + starts[i], all + starts[i + 1] - 1) != expected) {
            state.SkipWithError("wrong number");
            return;
        }
    }
    while (state.KeepRunningBatch(kNumbers)) {
        for (int i = 0; i < kNumbers; ++i)
            benchmark::DoNotOptimize(reader(all + starts[i], all + starts[i + 1] - 1));
    }
}

double parseLibrary(const char* t, const char*) { return tvStrToD(t, nullptr); }
double parseWideLibrary(const wchar_t* t, const wchar_t*) { return tvStrToD(t, nullptr); }
double parseLibc(const char* t, const char*) { return std::strtod(t, nullptr); }
double parseWideLibc(const wchar_t* t, const wchar_t*) { return std::wcstod(t, nullptr); }
double parseFromChars(const char* t, const char* end)
{
    double value = 0;
    std::from_chars(t, end, value);
    return value;
}
double parseFastFloat(const char* t, const char* end)
{
    double value = 0;
    fast_float::from_chars(t, end, value);
    return value;
}
double parseWideByNarrowing(const wchar_t* t, const wchar_t* end)
{
    char narrow[kTextRoom];
    char* to = narrow;
    for (; t < end; ++t)
        *to++ = static_cast<char>(*t);
    double value = 0;
    fast_float::from_chars(narrow, to, value);
    return value;
}

const char* const kInputNames[] = {"coords", "randombits", "shortdecimals"};
const char* const kMixNames[] = {"mix", "randombits", "shortdecimals"}; // of the texts to parse

void addWriters(const char* row, const char* format, const std::vector<Writer>& writers)
{
    for (const Input input : {Coordinates, RandomBits, ShortDecimals}) {
        for (const Writer& writer : writers) {
            if (input == RandomBits && !writer.takesLargeValues)
                continue;
            benchmark::RegisterBenchmark(
                (std::string(row) + "_" + kInputNames[input] + "/" + writer.name).c_str(),
                [input, writer, format](benchmark::State& s) { write(s, input, writer, format); });
        }
    }
}

template<class Char, class Reader>
void addReader(const char* row, const char* name, Input input, const Texts<Char>& texts, Reader reader)
{
    benchmark::RegisterBenchmark(
        (std::string(row) + kMixNames[input] + "/" + name).c_str(),
        [&texts, input, reader](benchmark::State& s) { read(s, texts, input, reader); });
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    using Converter = double_conversion::DoubleToStringConverter;
    addWriters("dtoa/shortest", nullptr,
               {library<shortestLibrary>(),
                {"to_chars", shortestToChars},
                {"dragonbox", shortestDragonbox},
                {"fmt", shortestFmt},
                {"double_conversion", shortestDoubleConversion},
                {"snprintf", shortestLibc}});
    addWriters("dtoa/bare_shortest", nullptr,
               {{"tv", digitsLibrary<0, 0>, numberOfDigitsLibrary<0, 0>},
                {"dragonbox", shortestDragonbox},
                {"double_conversion", digitsDoubleConversion<Converter::SHORTEST, 0>,
                 numberOfDigitsDoubleConversion<Converter::SHORTEST, 0>}});
    addWriters("dtoa/digits17", "%.16e",
               {library<digits17Library>(),
                {"to_chars", digits17ToChars},
                {"fmt", digits17Fmt},
                {"double_conversion", digits17DoubleConversion},
                {"snprintf", digits17Libc}});
    addWriters("dtoa/bare_digits17", "%.16e",
               {{"tv", digitsLibrary<2, 17>, numberOfDigitsLibrary<2, 17>},
                {"double_conversion", digitsDoubleConversion<Converter::PRECISION, 17>,
                 numberOfDigitsDoubleConversion<Converter::PRECISION, 17>}});
    // double-conversion refuses 1e60 and above here.
    addWriters("dtoa/f6", "%.6f",
               {library<f6Library>(),
                {"to_chars", f6ToChars},
                {"fmt", f6Fmt},
                Writer("double_conversion", f6DoubleConversion).smallValuesOnly(),
                {"snprintf", f6Libc}});
    // double-conversion rounds ties away from zero, which large whole numbers show.
    addWriters("dtoa/g15", "%.15g",
               {library<g15Library>(),
                {"to_chars", g15ToChars},
                {"fmt", g15Fmt},
                Writer("double_conversion", g15DoubleConversion).smallValuesOnly(),
                {"snprintf", g15Libc}});
    benchmark::RegisterBenchmark("dtoa/wide_f6_coords/tv", writeWide, wideF6Library);
    benchmark::RegisterBenchmark("dtoa/wide_f6_coords/glibc_swprintf", writeWide, wideF6Libc);
    benchmark::RegisterBenchmark("dtoa/wide_f6_coords/fmt", writeWide, wideF6Fmt);
    for (const Input input : {Coordinates, RandomBits, ShortDecimals}) {
        addReader("atod/", "tv", input, textsOf(input), parseLibrary);
        addReader("atod/", "from_chars", input, textsOf(input), parseFromChars);
        addReader("atod/", "fast_float", input, textsOf(input), parseFastFloat);
        addReader("atod/", "strtod", input, textsOf(input), parseLibc);
        addReader("atod/wide_", "tv", input, wideTextsOf(input), parseWideLibrary);
        addReader("atod/wide_", "narrowed_fast_float", input, wideTextsOf(input), parseWideByNarrowing);
        addReader("atod/wide_", "wcstod", input, wideTextsOf(input), parseWideLibc);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
