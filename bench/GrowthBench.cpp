// The same work over four decades of size: the time an item should stay flat or fall, but for
// what the caches of the processor take. Rows are growth/<work>/<size>; items are what the
// name of the work says.
#include "BenchFile.h"
#include "FirstRequests.h"
#include "MapFile.h"
#include "TextData.h"

#include "TvCharMapper.h"
#include "TvFileStreamBuf.h"
#include "TvFormat.h"
#include "TvMemStreamBuf.h"
#include "TvNumber.h"
#include "TvVector.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdarg>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using TextData::Wide;

// Runs `work`, which answers what must be `expected`, and counts `items` for each call.
void measure(benchmark::State& state, std::size_t items, std::size_t expected,
             const std::function<std::size_t()>& work)
{
    if (work() != expected) {
        state.SkipWithError("wrong result");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(work());
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(items));
}

void decodeBytes(benchmark::State& state, std::size_t size)
{
    const Wide text = TextData::makeText(TextData::Mix::kForeign, TextData::hanLetters(), size / 2, 1);
    TvVector<char> bytes;
    TvVector<wchar_t> wide;
    TvCharMapper::wideCharToMultiByte(CP_ANSI_936, text.data(), static_cast<int>(text.size()), bytes);
    const int count = bytes.length() - 1;
    measure(state, static_cast<std::size_t>(count), text.size(), [&] {
        TvCharMapper::multiByteToWideChar(CP_ANSI_936, bytes.asArrayPtr(), count, wide);
        return static_cast<std::size_t>(wide.length()) - 1;
    });
}

template<code_page_id page>
void encodeCharacters(benchmark::State& state, std::size_t size)
{
    const Wide text = TextData::makeText(TextData::Mix::kForeign, TextData::hanLetters(), size, 2);
    TvVector<char> bytes;
    TvCharMapper::wideCharToMultiByte(page, text.data(), static_cast<int>(size), bytes);
    const auto expected = static_cast<std::size_t>(bytes.length()) - 1;
    measure(state, size, expected, [&] {
        TvCharMapper::wideCharToMultiByte(page, text.data(), static_cast<int>(size), bytes);
        return static_cast<std::size_t>(bytes.length()) - 1;
    });
}

int writeLine(wchar_t** out, int room, const wchar_t* format, ...)
{
    va_list args;
    va_start(args, format);
    const int length = OutputWithFormat(out, room, format, &args);
    va_end(args);
    return length;
}

// Lines of a drawing file behind one another in one buffer.
void formatLines(benchmark::State& state, std::size_t lines)
{
    std::vector<wchar_t> buffer(lines * 64 + 64);
    const auto write = [&] {
        std::size_t used = 0;
        for (std::size_t i = 0; i < lines; ++i) {
            wchar_t* at = buffer.data() + used;
            used += static_cast<std::size_t>(writeLine(&at, static_cast<int>(buffer.size() - used),
                                                       L"%d %s %.3f\n", static_cast<int>(i % 1000), L"POINT",
                                                       static_cast<double>(i % 1000) / 8));
        }
        return used;
    };
    measure(state, lines, write(), write);
}

void parseNumbers(benchmark::State& state, std::size_t numbers)
{
    std::string text;
    std::mt19937 random(3);
    for (std::size_t i = 0; i < numbers; ++i)
        text += std::to_string(random() % 100000) + "." + std::to_string(random() % 1000) + " ";
    measure(state, numbers, numbers, [&] {
        char* at = text.data();
        std::size_t count = 0;
        for (char* end = nullptr;; at = end, ++count) {
            benchmark::DoNotOptimize(tvStrToD(at, &end));
            if (end == at)
                return count;
        }
    });
}

void parseDigits(benchmark::State& state, std::size_t digits)
{
    std::string text = "0.";
    std::mt19937 random(4);
    while (text.size() < digits)
        text += static_cast<char>('0' + random() % 10);
    measure(state, digits, text.size(), [&] {
        char* end = nullptr;
        benchmark::DoNotOptimize(tvStrToD(text.c_str(), &end));
        return static_cast<std::size_t>(end - text.c_str());
    });
}

void copyFileBytes(benchmark::State& state, std::size_t size)
{
    const BenchFile from("copied", size);
    const BenchFile to("copy", size);
    measure(state, size, size, [&] {
        Orna::ErrorStatus status = Orna::eOk;
        const std::unique_ptr<TvFileStreamBuf> in(createFileIStreamBuf(
            from.wide().c_str(), &status, TvIO::kAccessRead, TvIO::kShareDenyNone, TvIO::kOpenExisting));
        const std::unique_ptr<TvFileStreamBuf> out(
            createFileOStreamBuf(to.wide().c_str(), &status, TvIO::kAccessRead | TvIO::kAccessWrite,
                                 TvIO::kShareDenyNone, TvIO::kOpenExisting, 16384));
        unsigned char piece[4096];
        for (std::size_t left = size; left > 0;) {
            const auto count = static_cast<std::uint32_t>(std::min(left, sizeof piece));
            in->readBytes(piece, count);
            out->writeBytes(piece, count);
            left -= count;
        }
        return static_cast<std::size_t>(out->tell());
    });
}

// One object freed and one taken, among so many that live.
template<void* (*take)(std::size_t), void (*give)(void*)>
void replaceObjects(benchmark::State& state, std::size_t living)
{
    std::vector<void*> objects(living);
    std::mt19937 random(5);
    for (void*& object : objects)
        object = take(16 + random() % 49);
    std::uint64_t bits = 88172645463325252u;
    for (auto _ : state) {
        bits ^= bits << 13;
        bits ^= bits >> 7;
        bits ^= bits << 17;
        void*& object = objects[static_cast<std::size_t>(((bits >> 32) * living) >> 32)];
        give(object);
        object = take(16 + bits % 49);
        *static_cast<std::uint64_t*>(object) = bits;
    }
    state.SetItemsProcessed(state.iterations());
    for (void* object : objects)
        give(object);
}

void appendElements(benchmark::State& state, std::size_t count)
{
    measure(state, count, count, [&] {
        TvVector<int> v;
        for (std::size_t i = 0; i < count; ++i)
            v.append(static_cast<int>(i));
        benchmark::DoNotOptimize(v.begin());
        return static_cast<std::size_t>(v.length());
    });
}

void writeMemoryBytes(benchmark::State& state, std::size_t size)
{
    const std::vector<unsigned char> piece(50, 'x');
    measure(state, size, size, [&] {
        TvFlatMemBuf stream(0);
        for (std::size_t at = 0; at < size; at += piece.size())
            stream.writeBytes(piece.data(), static_cast<std::uint32_t>(piece.size()));
        return static_cast<std::size_t>(stream.length());
    });
}

using Work = void (*)(benchmark::State&, std::size_t);

void add(const std::string& work, const char* who, std::size_t smallest, Work run)
{
    for (std::size_t size = smallest, decades = 0; decades <= 4; ++decades, size *= 10) {
        benchmark::RegisterBenchmark(("growth/" + work + "/" + std::to_string(size) + "/" + who).c_str(), run,
                                     size);
    }
}

} // namespace

int main(int argc, char** argv)
{
    readMapFile();
    passTheFirstRequests();
    add("decode_936_bytes", "tv", 100, decodeBytes);
    add("encode_936_characters", "tv", 100, encodeCharacters<CP_ANSI_936>);
    add("encode_utf8_characters", "tv", 100, encodeCharacters<CP_UTF8>);
    add("format_lines", "tv", 10, formatLines);
    add("parse_numbers", "tv", 10, parseNumbers);
    add("parse_digits_of_one_number", "tv", 10, parseDigits);
    add("copy_file_bytes", "tv", 1000, copyFileBytes);
    add("replace_one_of_objects", "tv", 100, replaceObjects<_tvMalloc, _tvFree>);
    add("replace_one_of_objects", "glibc", 100, replaceObjects<std::malloc, std::free>);
    add("append_elements", "tv", 100, appendElements);
    add("write_memory_bytes", "tv", 1000, writeMemoryBytes);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
