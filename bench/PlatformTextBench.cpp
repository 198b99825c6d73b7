// PlatformTextBench.cpp - MultiByteToWideChar and WideCharToMultiByte beside iconv and ICU.
//
// Rows named 20 convert one piece of about 20 bytes an item, where the cost of the call counts;
// rows named 1M a text of 1 MiB. Peers have their converters open; iconv makes and takes 32-bit
// wide text, ICU UTF-16. The library finds the code page by its number at each call. The
// program ends with an error when results differ.
#include "MapFile.h"
#include "TextData.h"

#include "TvCharMapper.h"
#include "TvPlatformText.h"

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

constexpr std::size_t kPieceBytes = 20;
constexpr std::size_t kPieces = 512;
constexpr std::size_t kLongBytes = std::size_t{1} << 20;

struct Page {
    const char* name;
    unsigned number;
    const char* iconvName;
    const char* icuName;
};

const Page k1252 = {"1252", 1252, "CP1252", "ibm-5348_P100-1997"};
const Page k932 = {"932", 932, "CP932", "ibm-943_P15A-2003"};
const Page k936 = {"936", 936, "CP936", "windows-936-2000"};
const Page kUtf8 = {"utf8", 65001, "UTF-8", "UTF-8"};

struct Piece {
    std::string bytes;
    std::wstring wide;
    std::vector<UChar> units;
};

// Converts into buffers of its own and tells how many elements it made.
struct Side {
    virtual ~Side() = default;
    virtual int decode(const Piece& piece) = 0;
    virtual int encode(const Piece& piece) = 0;
    virtual std::wstring decoded(int count) const = 0;
    virtual std::string encoded(int count) const = 0;
};

class LibrarySide : public Side {
public:
    explicit LibrarySide(const Page& page)
        : m_number(page.number), m_wide(kLongBytes), m_bytes(4 * kLongBytes)
    {
    }
    int decode(const Piece& piece) override
    {
        return MultiByteToWideChar(m_number, 0, piece.bytes.data(), static_cast<int>(piece.bytes.size()),
                                   m_wide.data(), static_cast<int>(m_wide.size()));
    }
    int encode(const Piece& piece) override
    {
        return WideCharToMultiByte(m_number, 0, piece.wide.data(), static_cast<int>(piece.wide.size()),
                                   m_bytes.data(), static_cast<int>(m_bytes.size()), nullptr, nullptr);
    }
    std::wstring decoded(int count) const override
    {
        return {m_wide.data(), static_cast<std::size_t>(count)};
    }
    std::string encoded(int count) const override
    {
        return {m_bytes.data(), static_cast<std::size_t>(count)};
    }

private:
    unsigned m_number;
    std::vector<wchar_t> m_wide;
    std::vector<char> m_bytes;
};

class IconvSide : public Side {
public:
    explicit IconvSide(const Page& page)
        : m_toWide(iconv_open("WCHAR_T", page.iconvName)), m_toBytes(iconv_open(page.iconvName, "WCHAR_T")),
          m_wide(kLongBytes), m_bytes(4 * kLongBytes)
    {
    }
    ~IconvSide() override
    {
        iconv_close(m_toWide);
        iconv_close(m_toBytes);
    }
    int decode(const Piece& piece) override
    {
        return static_cast<int>(
            run(m_toWide, const_cast<char*>(piece.bytes.data()), piece.bytes.size(), m_wide) /
            sizeof(wchar_t));
    }
    int encode(const Piece& piece) override
    {
        char* in = const_cast<char*>(reinterpret_cast<const char*>(piece.wide.data()));
        return static_cast<int>(run(m_toBytes, in, piece.wide.size() * sizeof(wchar_t), m_bytes));
    }
    std::wstring decoded(int count) const override
    {
        return {m_wide.data(), static_cast<std::size_t>(count)};
    }
    std::string encoded(int count) const override
    {
        return {m_bytes.data(), static_cast<std::size_t>(count)};
    }

private:
    template<class T>
    static std::size_t run(iconv_t converter, char* in, std::size_t inLeft, std::vector<T>& to)
    {
        char* out = reinterpret_cast<char*>(to.data());
        const std::size_t all = to.size() * sizeof(T);
        std::size_t outLeft = all;
        if (iconv(converter, &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1))
            fail("iconv does not convert the text");
        return all - outLeft;
    }

    iconv_t m_toWide;
    iconv_t m_toBytes;
    std::vector<wchar_t> m_wide;
    std::vector<char> m_bytes;
};

class IcuSide : public Side {
public:
    explicit IcuSide(const Page& page) : m_units(kLongBytes), m_bytes(4 * kLongBytes)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_converter = ucnv_open(page.icuName, &status);
        if (U_FAILURE(status))
            fail(std::string("ICU lacks ") + page.icuName);
    }
    ~IcuSide() override { ucnv_close(m_converter); }
    int decode(const Piece& piece) override
    {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_toUChars(m_converter, m_units.data(), static_cast<int>(m_units.size()),
                             piece.bytes.data(), static_cast<int>(piece.bytes.size()), &status);
    }
    int encode(const Piece& piece) override
    {
        UErrorCode status = U_ZERO_ERROR;
        return ucnv_fromUChars(m_converter, m_bytes.data(), static_cast<int>(m_bytes.size()),
                               piece.units.data(), static_cast<int>(piece.units.size()), &status);
    }
    std::wstring decoded(int count) const override { return {m_units.begin(), m_units.begin() + count}; }
    std::string encoded(int count) const override
    {
        return {m_bytes.data(), static_cast<std::size_t>(count)};
    }

private:
    UConverter* m_converter;
    std::vector<UChar> m_units;
    std::vector<char> m_bytes;
};

// Pieces of at most `size` bytes, full but for the last character.
std::vector<Piece> makePieces(const Page& page, Mix mix, const Wide& letters, unsigned seed, std::size_t size,
                              std::size_t count)
{
    LibrarySide library(page);
    const Wide source = TextData::makeText(mix, letters, size * count + 1, seed);
    std::vector<Piece> pieces(1);
    for (const wchar_t c : source) {
        Piece one;
        one.wide = c;
        const std::string bytes = library.encoded(library.encode(one));
        if (pieces.back().bytes.size() + bytes.size() > size) {
            if (pieces.size() == count)
                break;
            pieces.emplace_back();
        }
        pieces.back().bytes += bytes;
        pieces.back().wide += c;
        pieces.back().units.push_back(static_cast<UChar>(c));
    }
    return pieces;
}

void addSide(const std::string& row, const std::string& who,
             const std::shared_ptr<std::vector<Piece>>& pieces, const std::shared_ptr<Side>& side)
{
    for (const Piece& piece : *pieces) {
        if (side->decoded(side->decode(piece)) != piece.wide)
            fail(who + " decodes " + row + " to another text");
        if (side->encoded(side->encode(piece)) != piece.bytes)
            fail(who + " encodes " + row + " to other bytes");
    }
    const auto run = [pieces](benchmark::State& state, auto convert) {
        std::size_t next = 0;
        std::size_t bytes = 0;
        for (auto _ : state) {
            const Piece& piece = (*pieces)[next];
            benchmark::DoNotOptimize(convert(piece));
            bytes += piece.bytes.size();
            next = next + 1 < pieces->size() ? next + 1 : 0;
        }
        state.SetBytesProcessed(static_cast<std::int64_t>(bytes));
    };
    benchmark::RegisterBenchmark(("platform_decode/" + row + "/" + who).c_str(),
                                 [=](benchmark::State& state) {
                                     run(state, [&](const Piece& piece) { return side->decode(piece); });
                                 });
    benchmark::RegisterBenchmark(("platform_encode/" + row + "/" + who).c_str(),
                                 [=](benchmark::State& state) {
                                     run(state, [&](const Piece& piece) { return side->encode(piece); });
                                 });
}

void addRows(const char* text, const Page& page, Mix mix, const Wide& letters, unsigned seed)
{
    for (const bool isLong : {false, true}) {
        const std::string row = std::string(page.name) + "_" + text + (isLong ? "_1M" : "_20");
        const auto pieces = std::make_shared<std::vector<Piece>>(
            makePieces(page, mix, letters, seed, isLong ? kLongBytes : kPieceBytes, isLong ? 1 : kPieces));
        addSide(row, "tv", pieces, std::make_shared<LibrarySide>(page));
        addSide(row, "iconv_wchar", pieces, std::make_shared<IconvSide>(page));
        addSide(row, "icu_utf16", pieces, std::make_shared<IcuSide>(page));
    }
}

} // namespace

int main(int argc, char** argv)
{
    readMapFile();

    addRows("ascii", k1252, Mix::kAscii, TextData::accentedLetters(), 1);
    addRows("accented", k1252, Mix::kForeign, TextData::accentedLetters(), 2);
    addRows("ascii", k936, Mix::kAscii, TextData::hanLetters(), 3);
    addRows("cjk", k936, Mix::kForeign, TextData::hanLetters(), 4);
    addRows("kana", k932, Mix::kForeign, TextData::japaneseLetters(), 5);
    addRows("latin", kUtf8, Mix::kForeign, TextData::accentedLetters(), 6);
    addRows("cjk", kUtf8, Mix::kForeign, TextData::hanLetters(), 7);

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
