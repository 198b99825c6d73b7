// The mapper's conversions with each set of kernels, one beside the other: 64 KiB of text, MB/s of
// code page or UTF-8 bytes; rows named label convert one piece of 8 to 40 characters an item. Sets
// that the processor lacks are skipped, and the report says so.
#include "MapFile.h"
#include "TextData.h"

#include "TvCharMapper.h"
#include "codepage/TextKernels.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using TextData::Mix;
using TextData::Wide;
using TvDetail::TextKernels;

constexpr std::size_t kTextBytes = 64 * 1024;

struct Text {
    code_page_id page;
    Wide wide;
    std::vector<char> bytes;
    std::vector<std::size_t> pieces;     // cuts of the wide text
    std::vector<std::size_t> bytePieces; // the same cuts in the bytes
};

// A part of a text: where it begins, and its length.
struct Piece {
    std::size_t from;
    std::size_t count;
};

int decode(const Text& text, Piece piece, TvVector<wchar_t>& out)
{
    TvCharMapper::multiByteToWideChar(text.page, text.bytes.data() + piece.from,
                                      static_cast<int>(piece.count), out);
    return out.length() - 1;
}

int encode(const Text& text, Piece piece, TvVector<char>& out)
{
    TvCharMapper::wideCharToMultiByte(text.page, text.wide.data() + piece.from, static_cast<int>(piece.count),
                                      out);
    return out.length() - 1;
}

std::shared_ptr<Text> makeText(code_page_id page, Mix mix, const Wide& letters, unsigned seed)
{
    const auto text = std::make_shared<Text>();
    text->page = page;
    text->wide = TextData::makeText(mix, letters, kTextBytes, seed);
    text->pieces = TextData::cutPlaces(text->wide.size(), seed + 1);
    text->bytePieces = {0};
    TvVector<char> bytes;
    for (std::size_t i = 0; i + 1 < text->pieces.size(); ++i) {
        const int count = encode(*text, {text->pieces[i], text->pieces[i + 1] - text->pieces[i]}, bytes);
        text->bytes.insert(text->bytes.end(), bytes.asArrayPtr(), bytes.asArrayPtr() + count);
        text->bytePieces.push_back(text->bytes.size());
    }
    TvVector<wchar_t> wide;
    if (decode(*text, {0, text->bytes.size()}, wide) != static_cast<int>(text->wide.size()) ||
        !std::equal(text->wide.begin(), text->wide.end(), wide.asArrayPtr()))
        fail("a text does not come back");
    return text;
}

std::vector<const TextKernels*> allSets()
{
    std::vector<const TextKernels*> sets = {&TvDetail::g_plainKernels};
#if defined(__x86_64__)
    sets.insert(sets.end(), {&TvDetail::g_sse2Kernels, &TvDetail::g_avx2Kernels, &TvDetail::g_avx512Kernels});
#endif
    return sets;
}

bool isRunnable(const TextKernels* set)
{
    const TvDetail::KernelList list = TvDetail::runnableKernels();
    return std::find(list.sets, list.sets + list.count, set) != list.sets + list.count;
}

// `expected` is what the plain set gave for the whole text.
template<class T, class Convert>
bool isUsable(benchmark::State& state, const Text& text, const TextKernels* set, Piece whole,
              const std::vector<T>& expected, Convert convert)
{
    if (!isRunnable(set)) {
        state.SkipWithError("this processor lacks them");
        return false;
    }
    TvDetail::forceTextKernels(set);
    TvVector<T> out;
    if (convert(text, whole, out) != static_cast<int>(expected.size()) ||
        !std::equal(expected.begin(), expected.end(), out.asArrayPtr())) {
        state.SkipWithError("another result than the plain kernels'");
        return false;
    }
    return true;
}

template<class T, class Convert>
void run(benchmark::State& state, const Text& text, const TextKernels* set, Piece whole,
         const std::vector<T>& expected, Convert convert)
{
    if (!isUsable(state, text, set, whole, expected, convert))
        return;
    TvVector<T> out;
    for (auto _ : state)
        benchmark::DoNotOptimize(convert(text, whole, out));
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                            static_cast<std::int64_t>(text.bytes.size()));
}

template<class T, class Convert>
void runPieces(benchmark::State& state, const Text& text, const TextKernels* set,
               const std::vector<std::size_t>& cuts, const std::vector<T>& expected, Convert convert)
{
    if (!isUsable(state, text, set, {0, cuts.back()}, expected, convert))
        return;
    TvVector<T> out;
    std::size_t piece = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(convert(text, {cuts[piece], cuts[piece + 1] - cuts[piece]}, out));
        piece = piece + 2 < cuts.size() ? piece + 1 : 0;
    }
}

void addRows(const std::string& name, const std::shared_ptr<Text>& text)
{
    for (const TextKernels* set : allSets()) {
        const std::string who = name + "/" + set->name;
        benchmark::RegisterBenchmark(("kernels_decode/" + who).c_str(), [=](benchmark::State& state) {
            run(state, *text, set, {0, text->bytes.size()}, text->wide, decode);
        });
        benchmark::RegisterBenchmark(("kernels_encode/" + who).c_str(), [=](benchmark::State& state) {
            run(state, *text, set, {0, text->wide.size()}, text->bytes, encode);
        });
        benchmark::RegisterBenchmark(("kernels_decode_label/" + who).c_str(), [=](benchmark::State& state) {
            runPieces(state, *text, set, text->bytePieces, text->wide, decode);
        });
        benchmark::RegisterBenchmark(("kernels_encode_label/" + who).c_str(), [=](benchmark::State& state) {
            runPieces(state, *text, set, text->pieces, text->bytes, encode);
        });
    }
}

} // namespace

int main(int argc, char** argv)
{
    TvDetail::forceTextKernels(&TvDetail::g_plainKernels); // their results are expected of the others
    readMapFile();
    const Wide accented = TextData::accentedLetters();
    const Wide han = TextData::hanLetters();
    addRows("1252_ascii", makeText(CP_ANSI_1252, Mix::kAscii, accented, 1));
    addRows("1252_accented", makeText(CP_ANSI_1252, Mix::kForeign, accented, 2));
    addRows("936_ascii", makeText(CP_ANSI_936, Mix::kAscii, han, 3));
    addRows("936_cjk", makeText(CP_ANSI_936, Mix::kForeign, han, 4));
    addRows("utf8_latin", makeText(CP_UTF8, Mix::kForeign, accented, 5));
    addRows("utf8_cjk", makeText(CP_UTF8, Mix::kForeign, han, 6));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
