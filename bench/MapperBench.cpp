// MapperBench.cpp - text conversions beside iconv and ICU, converters open and outputs reused.
//
// All rows of the library go through the character mapper; utf8_to_wide and wide_to_utf8 are
// its UTF-8 code page. iconv makes and takes 32-bit wide text, ICU UTF-16. Rates count
// bytes of the code page or of UTF-8; rows named label convert one piece of 8 to 40
// characters an item. The program ends with an error when results differ.
#include "MapFile.h"
#include "TextData.h"

#include "TvCharMapper.h"

#include <benchmark/benchmark.h>
#include <unicode/ucnv.h>

#include <functional>
#include <iconv.h>
#include <memory>
#include <string>
#include <vector>

namespace {

using TextData::Mix;
using TextData::Wide;

constexpr std::size_t kTextBytes = 64 * 1024;

struct Page {
    const char* name;
    code_page_id cp;
    const char* iconvName;
    const char* icuName;
};

const Page k1252 = {"1252", CP_ANSI_1252, "CP1252", "ibm-5348_P100-1997"};
const Page k932 = {"932", CP_ANSI_932, "CP932", "ibm-943_P15A-2003"};
const Page k936 = {"936", CP_ANSI_936, "CP936", "windows-936-2000"};
const Page kUtf8 = {"utf8", CP_UTF8, "UTF-8", "UTF-8"};

// One text in every form that a side takes.
struct Text {
    std::string name;
    Page page;
    Wide wide;
    std::vector<char> bytes;
    std::vector<UChar> units;
    std::vector<std::size_t> pieces;     // cuts of the wide text
    std::vector<std::size_t> bytePieces; // the same cuts in the bytes
};

// A side converts `count` elements from `from` on and tells how many it made.
struct Side {
    virtual ~Side() = default;
    virtual std::size_t decode(const Text& text, std::size_t from, std::size_t count) = 0;
    virtual std::size_t encode(const Text& text, std::size_t from, std::size_t count) = 0;
    virtual Wide decoded(std::size_t count) const = 0;
    virtual std::vector<char> encoded(std::size_t count) const = 0;
};

class LibrarySide : public Side {
public:
    std::size_t decode(const Text& text, std::size_t from, std::size_t count) override
    {
        TvCharMapper::multiByteToWideChar(text.page.cp, text.bytes.data() + from, static_cast<int>(count),
                                          m_wide);
        return static_cast<std::size_t>(m_wide.length()) - 1;
    }
    std::size_t encode(const Text& text, std::size_t from, std::size_t count) override
    {
        TvCharMapper::wideCharToMultiByte(text.page.cp, text.wide.data() + from, static_cast<int>(count),
                                          m_bytes);
        return static_cast<std::size_t>(m_bytes.length()) - 1;
    }
    Wide decoded(std::size_t count) const override
    {
        return {m_wide.asArrayPtr(), m_wide.asArrayPtr() + count};
    }
    std::vector<char> encoded(std::size_t count) const override
    {
        return {m_bytes.asArrayPtr(), m_bytes.asArrayPtr() + count};
    }

private:
    TvVector<wchar_t> m_wide;
    TvVector<char> m_bytes;
};

class IconvSide : public Side {
public:
    explicit IconvSide(const Page& page)
        : m_toWide(iconv_open("WCHAR_T", page.iconvName)), m_toBytes(iconv_open(page.iconvName, "WCHAR_T")),
          m_wide(kTextBytes + 64), m_bytes(4 * kTextBytes)
    {
    }
    ~IconvSide() override
    {
        iconv_close(m_toWide);
        iconv_close(m_toBytes);
    }
    std::size_t decode(const Text& text, std::size_t from, std::size_t count) override
    {
        return run(m_toWide, const_cast<char*>(text.bytes.data()) + from, count, m_wide) / sizeof(wchar_t);
    }
    std::size_t encode(const Text& text, std::size_t from, std::size_t count) override
    {
        char* in = const_cast<char*>(reinterpret_cast<const char*>(text.wide.data() + from));
        return run(m_toBytes, in, count * sizeof(wchar_t), m_bytes);
    }
    Wide decoded(std::size_t count) const override
    {
        return {m_wide.begin(), m_wide.begin() + static_cast<long>(count)};
    }
    std::vector<char> encoded(std::size_t count) const override
    {
        return {m_bytes.begin(), m_bytes.begin() + static_cast<long>(count)};
    }

private:
    template<class T>
    static std::size_t run(iconv_t converter, char* in, std::size_t inLeft, std::vector<T>& to)
    {
        char* out = reinterpret_cast<char*>(to.data());
        std::size_t outLeft = to.size() * sizeof(T);
        const std::size_t all = outLeft;
        if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1))
            fail("iconv does not convert the text");
        return all - outLeft;
    }

    iconv_t m_toWide;
    iconv_t m_toBytes;
    Wide m_wide;
    std::vector<char> m_bytes;
};

class IcuSide : public Side {
public:
    explicit IcuSide(const Page& page) : m_units(kTextBytes + 64), m_bytes(4 * kTextBytes)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_converter = ucnv_open(page.icuName, &status);
        if (U_FAILURE(status))
            fail(std::string("ICU lacks ") + page.icuName);
    }
    ~IcuSide() override { ucnv_close(m_converter); }
    std::size_t decode(const Text& text, std::size_t from, std::size_t count) override
    {
        UErrorCode status = U_ZERO_ERROR;
        UChar* to = m_units.data();
        const char* in = text.bytes.data() + from;
        ucnv_toUnicode(m_converter, &to, m_units.data() + m_units.size(), &in, in + count, nullptr, true,
                       &status);
        return static_cast<std::size_t>(to - m_units.data());
    }
    std::size_t encode(const Text& text, std::size_t from, std::size_t count) override
    {
        UErrorCode status = U_ZERO_ERROR;
        char* to = m_bytes.data();
        const UChar* in = text.units.data() + from;
        ucnv_fromUnicode(m_converter, &to, m_bytes.data() + m_bytes.size(), &in, in + count, nullptr, true,
                         &status);
        return static_cast<std::size_t>(to - m_bytes.data());
    }
    Wide decoded(std::size_t count) const override
    {
        return {m_units.begin(), m_units.begin() + static_cast<long>(count)};
    }
    std::vector<char> encoded(std::size_t count) const override
    {
        return {m_bytes.begin(), m_bytes.begin() + static_cast<long>(count)};
    }

private:
    UConverter* m_converter;
    std::vector<UChar> m_units;
    std::vector<char> m_bytes;
};

Text makeText(const std::string& name, const Page& page, Mix mix, const Wide& letters, unsigned seed,
              std::size_t size = kTextBytes)
{
    Text text;
    text.name = name;
    text.page = page;
    const Wide source = TextData::makeText(mix, letters, size, seed);
    LibrarySide library;
    std::vector<std::size_t> ends; // of each character in the bytes
    for (wchar_t c : source) {
        text.wide.assign(1, c);
        const std::size_t count = library.encode(text, 0, 1);
        const std::vector<char> bytes = library.encoded(count);
        if (text.bytes.size() + count > size)
            break;
        text.bytes.insert(text.bytes.end(), bytes.begin(), bytes.end());
        ends.push_back(text.bytes.size());
    }
    text.wide.assign(source.begin(), source.begin() + static_cast<long>(ends.size()));
    text.units.assign(text.wide.begin(), text.wide.end());
    text.pieces = TextData::cutPlaces(text.wide.size(), seed + 1);
    for (std::size_t place : text.pieces)
        text.bytePieces.push_back(place == 0 ? 0 : ends[place - 1]);
    return text;
}

void checkSide(const Text& text, Side& side, const std::string& who)
{
    if (side.decoded(side.decode(text, 0, text.bytes.size())) != text.wide)
        fail(who + " decodes " + text.name + " to another text");
    if (side.encoded(side.encode(text, 0, text.wide.size())) != text.bytes)
        fail(who + " encodes " + text.name + " to other bytes");
}

void addRows(const std::string& decodeRow, const std::string& encodeRow, const std::shared_ptr<Text>& text,
             const std::string& who, const std::shared_ptr<Side>& side)
{
    checkSide(*text, *side, who);
    const auto rate = [text](benchmark::State& state) {
        state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                                static_cast<std::int64_t>(text->bytes.size()));
    };
    benchmark::RegisterBenchmark((decodeRow + "/" + text->name + "/" + who).c_str(),
                                 [=](benchmark::State& state) {
                                     for (auto _ : state)
                                         benchmark::DoNotOptimize(side->decode(*text, 0, text->bytes.size()));
                                     rate(state);
                                 });
    benchmark::RegisterBenchmark((encodeRow + "/" + text->name + "/" + who).c_str(),
                                 [=](benchmark::State& state) {
                                     for (auto _ : state)
                                         benchmark::DoNotOptimize(side->encode(*text, 0, text->wide.size()));
                                     rate(state);
                                 });
    const auto pieces = [](benchmark::State& state, const std::vector<std::size_t>& cuts,
                           const auto& convert) {
        std::size_t piece = 0;
        for (auto _ : state) {
            benchmark::DoNotOptimize(convert(cuts[piece], cuts[piece + 1] - cuts[piece]));
            piece = piece + 2 < cuts.size() ? piece + 1 : 0;
        }
    };
    benchmark::RegisterBenchmark(
        (decodeRow + "_label/" + text->name + "/" + who).c_str(), [=](benchmark::State& state) {
            pieces(state, text->bytePieces,
                   [&](std::size_t from, std::size_t count) { return side->decode(*text, from, count); });
        });
    benchmark::RegisterBenchmark(
        (encodeRow + "_label/" + text->name + "/" + who).c_str(), [=](benchmark::State& state) {
            pieces(state, text->pieces,
                   [&](std::size_t from, std::size_t count) { return side->encode(*text, from, count); });
        });
}

void addText(const std::string& decodeRow, const std::string& encodeRow, Text made)
{
    const auto text = std::make_shared<Text>(std::move(made));
    addRows(decodeRow, encodeRow, text, "tv", std::make_shared<LibrarySide>());
    addRows(decodeRow, encodeRow, text, "iconv_wchar", std::make_shared<IconvSide>(text->page));
    addRows(decodeRow, encodeRow, text, "icu_utf16", std::make_shared<IcuSide>(text->page));
}

// Han characters of a loaded double-byte page, in the order of its codes.
Wide hanOf(code_page_id cp)
{
    TvVector<wchar_t> loaded;
    TvCharMapper::multiByteToWideChar(cp, "\xFF", 1, loaded);
    const EkCodepageMapper& mapper = *theTvCodePages()->findMapperByAcadCp(cp);
    Wide out;
    for (int i = 0; i < mapper.m_pairs.length(); ++i) {
        const EkCpUnicodePair pair = mapper.m_pairs.asArrayPtr()[i];
        wchar_t first = 0;
        if (pair.unicode >= 0x4E00 && pair.unicode < 0xA000 &&
            TvCharMapper::unicodeToCodepage(pair.unicode, cp, first, false) && first == pair.code)
            out.push_back(pair.unicode);
    }
    return out;
}

// From 1 KB to 100 MB: the rate must not fall with the length but for the caches' sake.
void addGrowth(const Wide& han)
{
    const Text unit = makeText("unit", k936, Mix::kForeign, han, 21, 1024);
    for (std::size_t size :
         {std::size_t{1} << 10, std::size_t{1} << 16, std::size_t{1} << 20, std::size_t{100} << 20}) {
        const auto text = std::make_shared<Text>();
        text->name = "936_cjk_" + std::to_string(size);
        text->page = k936;
        while (text->bytes.size() < size)
            text->bytes.insert(text->bytes.end(), unit.bytes.begin(), unit.bytes.end());
        const auto side = std::make_shared<LibrarySide>();
        benchmark::RegisterBenchmark(
            ("cp_decode_growth/" + text->name + "/tv").c_str(), [=](benchmark::State& state) {
                for (auto _ : state)
                    benchmark::DoNotOptimize(side->decode(*text, 0, text->bytes.size()));
                state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                                        static_cast<std::int64_t>(text->bytes.size()));
            });
    }
}

} // namespace

int main(int argc, char** argv)
{
    readMapFile();
    const Wide accented = TextData::accentedLetters();
    const Wide chinese = hanOf(CP_ANSI_936);
    Wide japanese = hanOf(CP_ANSI_932);
    japanese.resize(500); // the commonest ones come first in the page
    const Wide kana = TextData::japaneseLetters();
    for (int times = 0; times < 5; ++times)
        japanese.insert(japanese.end(), kana.begin(), kana.end());

    addText("cp_decode", "cp_encode", makeText("1252_ascii", k1252, Mix::kAscii, accented, 1));
    addText("cp_decode", "cp_encode", makeText("1252_accented", k1252, Mix::kForeign, accented, 2));
    addText("cp_decode", "cp_encode", makeText("932_ascii", k932, Mix::kAscii, japanese, 3));
    addText("cp_decode", "cp_encode", makeText("932_cjk", k932, Mix::kForeign, japanese, 4));
    addText("cp_decode", "cp_encode", makeText("936_ascii", k936, Mix::kAscii, chinese, 5));
    addText("cp_decode", "cp_encode", makeText("936_cjk", k936, Mix::kForeign, chinese, 6));
    addText("utf8_to_wide", "wide_to_utf8", makeText("ascii97", kUtf8, Mix::kAscii, accented, 7));
    addText("utf8_to_wide", "wide_to_utf8", makeText("latin", kUtf8, Mix::kForeign, accented, 8));
    addText("utf8_to_wide", "wide_to_utf8", makeText("japanese", kUtf8, Mix::kForeign, japanese, 9));
    addText("utf8_to_wide", "wide_to_utf8", makeText("chinese", kUtf8, Mix::kForeign, chinese, 10));
    addGrowth(chinese);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
