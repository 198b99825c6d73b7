// Makes, copies, assigns and appends narrow text: TvStringA beside std::string and, where
// text is made or copied, QByteArray.
#include "TvStringA.h"

#include "FirstRequests.h"

#include <QByteArray>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

// Kept where no benchmark writes beside it.
std::string textOf(int length)
{
    std::string text;
    text.reserve(256);
    for (int i = 0; i < length; ++i)
        text += static_cast<char>('a' + i % 26);
    return text;
}

const char* charsOf(const TvStringA& s) { return s.constStr(); }
const char* charsOf(const std::string& s) { return s.c_str(); }
const char* charsOf(const QByteArray& s) { return s.constData(); }

template<class String>
void expect(const String& string, const std::string& text)
{
    if (charsOf(string) != text)
        std::abort();
}

// A thousand strings that do not share their text.
template<class String>
std::vector<std::unique_ptr<String>> stringsOf(const std::string& text)
{
    std::vector<std::unique_ptr<String>> strings;
    for (int i = 0; i < 1000; ++i)
        strings.push_back(std::make_unique<String>(text.c_str()));
    return strings;
}

// From a text to a string and its end, among others that stay.
template<class String, int length>
void BM_make(benchmark::State& state)
{
    const std::string text = textOf(length);
    const std::vector<std::unique_ptr<String>> others = stringsOf<String>(text);
    expect(*others.front(), text);
    const char* chars = text.c_str();
    for (auto _ : state) {
        benchmark::DoNotOptimize(chars);
        String made(chars);
        benchmark::DoNotOptimize(made);
    }
    state.SetItemsProcessed(state.iterations());
}

// A copy and its end.
template<class String, int length>
void BM_copy(benchmark::State& state)
{
    const std::string text = textOf(length);
    String string(text.c_str());
    for (auto _ : state) {
        benchmark::DoNotOptimize(string);
        String copy(string);
        benchmark::DoNotOptimize(copy);
    }
    expect(string, text);
    state.SetItemsProcessed(state.iterations());
}

// Another text into a string that has room for it.
template<class String, int length>
void BM_assign(benchmark::State& state)
{
    const std::string text = textOf(length);
    const char* chars = text.c_str();
    String string(chars);
    for (auto _ : state) {
        benchmark::DoNotOptimize(chars);
        string.assign(chars);
        benchmark::DoNotOptimize(string);
    }
    expect(string, text);
    state.SetItemsProcessed(state.iterations());
}

void append(TvStringA& string, const char* piece, std::size_t size)
{
    const auto length = static_cast<int>(string.numOfChars());
    char* const text = string.getBuffer(length + static_cast<int>(size));
    std::memcpy(text + length, piece, size);
    string.releaseBuffer(length + static_cast<int>(size));
}

void append(std::string& string, const char* piece, std::size_t size) { string.append(piece, size); }

// A text of `count` pieces of eight characters; items are pieces.
template<class String, int count>
void BM_append(benchmark::State& state)
{
    const std::string piece = textOf(8);
    const char* chars = piece.c_str();
    for (auto _ : state) {
        String string("");
        for (int i = 0; i < count; ++i) {
            benchmark::DoNotOptimize(chars);
            append(string, chars, 8);
        }
        if (std::strlen(charsOf(string)) != static_cast<std::size_t>(count) * 8)
            std::abort();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

#define TV_WITH_QT(work, row, number)                                                                        \
    TV_BOTH(work, row, number);                                                                              \
    BENCHMARK_TEMPLATE(work, QByteArray, number)->Name(row "/QByteArray")
#define TV_BOTH(work, row, number)                                                                           \
    BENCHMARK_TEMPLATE(work, TvStringA, number)->Name(row "/tv");                                            \
    BENCHMARK_TEMPLATE(work, std::string, number)->Name(row "/std_string")

TV_WITH_QT(BM_copy, "string_copy/len_8", 8);
TV_WITH_QT(BM_copy, "string_copy/len_32", 32);
TV_WITH_QT(BM_copy, "string_copy/len_200", 200);
TV_WITH_QT(BM_make, "string_make/len_8", 8);
TV_WITH_QT(BM_make, "string_make/len_32", 32);
TV_WITH_QT(BM_make, "string_make/len_200", 200);
TV_BOTH(BM_assign, "string_assign/len_8", 8);
TV_BOTH(BM_assign, "string_assign/len_32", 32);
TV_BOTH(BM_assign, "string_assign/len_200", 200);
TV_BOTH(BM_append, "string_append/pieces_10", 10);
TV_BOTH(BM_append, "string_append/pieces_1000", 1000);

} // namespace

int main(int argc, char** argv)
{
    passTheFirstRequests();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
