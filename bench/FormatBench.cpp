// Formatted output and input against the C library and {fmt}.
#include "TvFormat.h"
#include "TvScan.h"

#include <benchmark/benchmark.h>

#define FMT_HEADER_ONLY 1
#include <fmt/compile.h>
#include <fmt/xchar.h>

#include <cmath>
#include <cstdarg>
#include <cstdlib>
#include <cwchar>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kRoom = 256;
constexpr std::size_t kItems = 512;

// One line of input: an integer, a word and two coordinates.
struct Item {
    int number;
    std::wstring word;
    double x;
    double y;
    std::wstring twoNumbers;
    std::wstring threeNumbers;
};

// Half short decimals, half computed values, 0.001 to 1e5, a quarter negative.
double coordinate(std::mt19937_64& random)
{
    std::uniform_real_distribution<double> logarithm(std::log(0.001), std::log(1e5));
    double value = std::exp(logarithm(random));
    if (random() % 2)
        value = std::round(value * 1000) / 1000;
    return random() % 4 ? value : -value;
}

const std::vector<Item>& items()
{
    static const std::vector<Item> all = [] {
        std::mt19937_64 random(1);
        std::vector<Item> made(kItems);
        for (Item& item : made) {
            item.number = static_cast<int>(random()) >> (random() % 24);
            for (std::size_t n = 3 + random() % 12; n > 0; --n)
                item.word += static_cast<wchar_t>(L'a' + random() % 26);
            item.x = coordinate(random);
            item.y = coordinate(random);
            const int second = static_cast<int>(random()) >> (random() % 24);
            item.twoNumbers = std::to_wstring(item.number) + L" " + std::to_wstring(second);
            wchar_t text[40];
            std::swprintf(text, 40, L" %.4f", item.x);
            item.threeNumbers = item.twoNumbers + text;
        }
        return made;
    }();
    return all;
}

// Runs `write(buffer, item)`, which returns a length, over all items.
template<class Writer>
void formatAll(benchmark::State& state, Writer write)
{
    wchar_t buffer[kRoom];
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(write(buffer, items()[i]));
        benchmark::ClobberMemory();
        i = (i + 1) % kItems;
    }
}

// Ends the program unless both ways write the same text for every item.
template<class Ours, class Theirs>
void expectSame(const char* row, Ours ours, Theirs theirs)
{
    wchar_t a[kRoom];
    wchar_t b[kRoom];
    for (const Item& item : items()) {
        const int length = ours(a, item);
        if (length != theirs(b, item) || std::wmemcmp(a, b, static_cast<std::size_t>(length)) != 0) {
            std::fprintf(stderr, "%s: %ls is not %ls\n", row, a, b);
            std::exit(1);
        }
    }
}

template<class Ours, class Libc, class Fmt>
void addOutput(const std::string& row, bool sameText, Ours ours, Libc libc, Fmt fmt)
{
    if (sameText) {
        expectSame(row.c_str(), ours, libc);
        expectSame(row.c_str(), ours, fmt);
    }
    benchmark::RegisterBenchmark((row + "/tv").c_str(), [=](benchmark::State& s) { formatAll(s, ours); });
    benchmark::RegisterBenchmark((row + "/glibc_swprintf").c_str(),
                                 [=](benchmark::State& s) { formatAll(s, libc); });
    benchmark::RegisterBenchmark((row + "/fmt").c_str(), [=](benchmark::State& s) { formatAll(s, fmt); });
}

int terminated(wchar_t* begin, wchar_t* end)
{
    *end = 0;
    return static_cast<int>(end - begin);
}

int scanOurs(const wchar_t* text, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int result = InputWithFormat(false, text, format, &args);
    va_end(args);
    return result;
}

struct Scanned {
    int a;
    int b;
    double d;
};

// Runs `read(item, scanned)` over all items; the first round is compared by the caller.
template<class Reader>
void scanAll(benchmark::State& state, Reader read)
{
    std::size_t i = 0;
    for (auto _ : state) {
        Scanned scanned;
        read(items()[i], scanned);
        benchmark::DoNotOptimize(scanned);
        i = (i + 1) % kItems;
    }
}

template<class Ours, class Libc, class Direct>
void addInput(const std::string& row, Ours ours, Libc libc, const char* directName, Direct direct)
{
    for (const Item& item : items()) {
        Scanned a{};
        Scanned b{};
        ours(item, a);
        libc(item, b);
        // The engine scales by one multiplication: its last bit may differ.
        if (a.a != b.a || a.b != b.b || std::fabs(a.d - b.d) > std::fabs(b.d) * 1e-15) {
            std::fprintf(stderr, "%s: %ls\n", row.c_str(), item.threeNumbers.c_str());
            std::exit(1);
        }
    }
    benchmark::RegisterBenchmark((row + "/tv").c_str(), [=](benchmark::State& s) { scanAll(s, ours); });
    benchmark::RegisterBenchmark((row + "/glibc_swscanf").c_str(),
                                 [=](benchmark::State& s) { scanAll(s, libc); });
    benchmark::RegisterBenchmark((row + "/" + directName).c_str(),
                                 [=](benchmark::State& s) { scanAll(s, direct); });
}

int ours(wchar_t* out, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    wchar_t* at = out;
    const int length = OutputWithFormat(&at, kRoom, format, &args);
    va_end(args);
    return length;
}

void addOutputs()
{
    addOutput(
        "format/d", true, [](wchar_t* o, const Item& i) { return ours(o, L"%d", i.number); },
        [](wchar_t* o, const Item& i) { return std::swprintf(o, kRoom, L"%d", i.number); },
        [](wchar_t* o, const Item& i) { return terminated(o, fmt::format_to(o, L"{}", i.number)); });
    addOutput(
        "format/d_s", true,
        [](wchar_t* o, const Item& i) { return ours(o, L"%d %s", i.number, i.word.c_str()); },
        [](wchar_t* o, const Item& i) {
            return std::swprintf(o, kRoom, L"%d %ls", i.number, i.word.c_str());
        },
        [](wchar_t* o, const Item& i) {
            return terminated(o, fmt::format_to(o, L"{} {}", i.number, i.word.c_str()));
        });
    addOutput(
        "format/d_s_f6", true,
        [](wchar_t* o, const Item& i) { return ours(o, L"%d %s %.6f", i.number, i.word.c_str(), i.x); },
        [](wchar_t* o, const Item& i) {
            return std::swprintf(o, kRoom, L"%d %ls %.6f", i.number, i.word.c_str(), i.x);
        },
        [](wchar_t* o, const Item& i) {
            return terminated(o, fmt::format_to(o, L"{} {} {:.6f}", i.number, i.word.c_str(), i.x));
        });
    addOutput(
        "format/f6", true, [](wchar_t* o, const Item& i) { return ours(o, L"%.6f", i.x); },
        [](wchar_t* o, const Item& i) { return std::swprintf(o, kRoom, L"%.6f", i.x); },
        [](wchar_t* o, const Item& i) { return terminated(o, fmt::format_to(o, L"{:.6f}", i.x)); });
    addOutput(
        "format/e6_three_exponent_digits_ours", false,
        [](wchar_t* o, const Item& i) { return ours(o, L"%.6e", i.x); },
        [](wchar_t* o, const Item& i) { return std::swprintf(o, kRoom, L"%.6e", i.x); },
        [](wchar_t* o, const Item& i) { return terminated(o, fmt::format_to(o, L"{:.6e}", i.x)); });
    addOutput(
        "format/point_line", true,
        [](wchar_t* o, const Item& i) {
            return ours(o, L"%5d: POINT %s (%.3f, %.3f)", i.number, i.word.c_str(), i.x, i.y);
        },
        [](wchar_t* o, const Item& i) {
            return std::swprintf(o, kRoom, L"%5d: POINT %ls (%.3f, %.3f)", i.number, i.word.c_str(), i.x,
                                 i.y);
        },
        [](wchar_t* o, const Item& i) {
            return terminated(
                o, fmt::format_to(o, L"{:5}: POINT {} ({:.3f}, {:.3f})", i.number, i.word.c_str(), i.x, i.y));
        });
}

void addInputs()
{
    addInput(
        "scan/d_d", [](const Item& i, Scanned& s) { scanOurs(i.twoNumbers.c_str(), L"%d %d", &s.a, &s.b); },
        [](const Item& i, Scanned& s) { std::swscanf(i.twoNumbers.c_str(), L"%d %d", &s.a, &s.b); },
        "glibc_wcstol",
        [](const Item& i, Scanned& s) {
            wchar_t* end;
            s.a = static_cast<int>(std::wcstol(i.twoNumbers.c_str(), &end, 10));
            s.b = static_cast<int>(std::wcstol(end, &end, 10));
        });
    addInput(
        "scan/d_d_lf",
        [](const Item& i, Scanned& s) { scanOurs(i.threeNumbers.c_str(), L"%d %d %lf", &s.a, &s.b, &s.d); },
        [](const Item& i, Scanned& s) {
            std::swscanf(i.threeNumbers.c_str(), L"%d %d %lf", &s.a, &s.b, &s.d);
        },
        "glibc_wcstol_wcstod",
        [](const Item& i, Scanned& s) {
            wchar_t* end;
            s.a = static_cast<int>(std::wcstol(i.threeNumbers.c_str(), &end, 10));
            s.b = static_cast<int>(std::wcstol(end, &end, 10));
            s.d = std::wcstod(end, &end);
        });
}

} // namespace

int main(int argc, char** argv)
{
    addOutputs();
    addInputs();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
