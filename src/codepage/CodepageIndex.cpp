// CodepageIndex.cpp - making the index of a mapper.
#include "codepage/CodepageIndex.h"

#include "codepage/CodepageSearch.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace TvDetail {

namespace {

constexpr std::size_t kUnits = 65536;

// All zero; null without memory. One element more than the table has, for wide loads.
template<class T>
T* newTable()
{
    return new (std::nothrow) T[kUnits + sizeof(int) / sizeof(T)]();
}

// What a conversion emits for a byte: its character, or the byte itself.
unsigned emittedByte(const CodepageView& view, unsigned b)
{
    const int wc = view.decode(b);
    return wc == 0 || wc == '?' ? b : static_cast<unsigned>(wc);
}

void fillBytes(CodepageTables& tables, const CodepageView& view)
{
    for (unsigned i = 0; i < 128; ++i) {
        const unsigned wc = emittedByte(view, 0x80 + i);
        tables.byteLow[i] = static_cast<unsigned char>(wc);
        tables.byteHigh[i] = static_cast<unsigned char>(wc >> 8);
    }
}

void fillDecode(unsigned short* decode, const CodepageView& view)
{
    for (unsigned b = 0; b < 0x100; ++b)
        decode[b] = static_cast<unsigned short>(b < 0x80 ? b : emittedByte(view, b));
    // In ascending order each pair is what the search for its code finds. When somebody has put
    // them out of order, only the search knows which pair counts.
    const EkCpUnicodePair* const end = view.pairs + view.pairCount;
    const bool ascending = std::adjacent_find(view.pairs, end, [](const auto& a, const auto& b) {
                               return a.code >= b.code;
                           }) == end;
    for (const EkCpUnicodePair* pair = view.pairs; pair != end; ++pair) {
        const unsigned code = pair->code;
        const int wc = code <= 0xFF ? -1 : ascending ? pair->unicode : view.decode(code);
        if (wc > 0 && wc != '?')
            decode[code] = static_cast<unsigned short>(wc);
    }
}

// False when some character's first code is 0, which reads as none.
template<class T>
bool fillEncode(T* encode, const CodepageView& view)
{
    for (unsigned c = 1; c < 0x80; ++c)
        encode[c] = static_cast<T>(c);
    for (unsigned i = 0; i < 128; ++i) {
        const unsigned wc = view.bytes[i];
        if (wc >= 0x80 && encode[wc] == 0)
            encode[wc] = static_cast<T>(0x80 + i);
    }
    bool complete = true;
    for (int i = 0; i < view.pairCount; ++i) {
        const unsigned wc = view.pairs[i].unicode;
        if (wc < 0x80 || encode[wc] != 0)
            continue;
        encode[wc] = static_cast<T>(view.pairs[i].code);
        complete = complete && view.pairs[i].code != 0;
    }
    return complete;
}

// The two stretches of 128 characters with the most characters of the code page.
void fillWindows(CodepageTables& tables)
{
    unsigned best[2] = {1, 2};
    int most[2] = {0, 0};
    for (unsigned stretch = 1; stretch < kUnits / 128; ++stretch) {
        const unsigned char* codes = tables.encodeByte + std::size_t{stretch} * 128;
        const auto count = static_cast<int>(128 - std::count(codes, codes + 128, 0));
        if (count > most[0]) {
            best[1] = best[0];
            most[1] = most[0];
            best[0] = stretch;
            most[0] = count;
        } else if (count > most[1]) {
            best[1] = stretch;
            most[1] = count;
        }
    }
    for (int w = 0; w < 2; ++w) {
        tables.windowBase[w] = best[w] * 128;
        std::copy_n(tables.encodeByte + tables.windowBase[w], 128, tables.windowCode[w]);
    }
}

// Every ASCII character is its own code.
struct AsciiCodes {
    unsigned char codes[128];

    constexpr AsciiCodes() : codes{}
    {
        for (unsigned c = 0; c < 128; ++c)
            codes[c] = static_cast<unsigned char>(c);
    }
};
constinit AsciiCodes s_ascii;

constexpr CodepageTables tablesOf(AsciiCodes& ascii)
{
    CodepageTables tables = {};
    tables.encodeByte = ascii.codes;
    return tables;
}

struct DeleteIndex {
    void operator()(CodepageIndex* index) const { deleteCodepageIndex(index); }
};

void fillLeads(CodepageIndex& index, const TvVector<EkLeaderBytes>& ranges)
{
    const int count = ranges.length();
    index.madeForLeadCount = count;
    index.madeForLeads = count > 0 ? CodepageIndex::leadBytes(ranges) : 0;
    index.kernelsDecode = count <= 2;
    for (int i = 0; i < 2 && count > 0; ++i) {
        const EkLeaderBytes range = ranges.asArrayPtr()[count == 1 ? 0 : i];
        index.leads.first[i] = range.first;
        index.leads.last[i] = range.last;
        index.kernelsDecode = index.kernelsDecode && range.first >= 0x80 && range.first <= range.last;
    }
}

CodepageIndex* makeIndex(const EkCodepageMapper& mapper)
{
    const CodepageView view = CodepageView::of(&mapper);
    std::unique_ptr<CodepageIndex, DeleteIndex> index(new (std::nothrow) CodepageIndex{});
    if (!index)
        return nullptr;
    CodepageTables& tables = index->tables;
    index->madeFromBytes = view.bytes;
    index->madeFromPairs = view.pairs;
    index->madeFromPairCount = view.pairCount;
    fillLeads(*index, mapper.m_leadBytes);
    fillBytes(tables, view);
    if (index->hasLeads()) {
        tables.decode = newTable<unsigned short>();
        if (!tables.decode)
            return nullptr;
        fillDecode(tables.decode, view);
    }
    if (view.pairCount > 0) {
        tables.encodePair = newTable<unsigned short>();
        if (!tables.encodePair)
            return nullptr;
        index->searchWhenNone = !fillEncode(tables.encodePair, view);
    } else {
        tables.encodeByte = newTable<unsigned char>();
        if (!tables.encodeByte)
            return nullptr;
        fillEncode(tables.encodeByte, view);
        fillWindows(tables);
    }
    return index.release();
}

} // namespace

constinit const CodepageTables g_asciiTables = tablesOf(s_ascii);

int CodepageIndex::decode(unsigned code, const CodepageView& view) const noexcept
{
    // 0 may stand for a character that a text conversion does not emit: the search knows.
    const bool known = code > 0xFF && code <= 0xFFFF && tables.decode && tables.decode[code] != 0;
    return known ? tables.decode[code] : view.decode(code);
}

int CodepageIndex::encode(unsigned wc, const CodepageView& view) const noexcept
{
    if (wc > 0xFFFF)
        return -1;
    const int code = tables.encodePair ? tables.encodePair[wc] : tables.encodeByte[wc];
    if (code != 0)
        return code;
    return searchWhenNone ? view.encode(wc) : -1;
}

const CodepageIndex* makeCodepageIndex(const EkCodepageMapper& mapper) noexcept
{
    // Conversions with complete mappers may run side by side: who comes second drops his own.
    const std::atomic_ref<CodepageIndex*> published(mapper.m_index);
    CodepageIndex* index = published.load(std::memory_order_acquire);
    if (index && index->isOf(mapper))
        return index;
    if (index) { // somebody has changed the mapper, which nobody may use meanwhile
        published.store(nullptr, std::memory_order_relaxed);
        deleteCodepageIndex(index);
    }
    CodepageIndex* const made = makeIndex(mapper);
    CodepageIndex* first = nullptr;
    if (!made || published.compare_exchange_strong(first, made, std::memory_order_acq_rel))
        return made;
    deleteCodepageIndex(made);
    return first;
}

void deleteCodepageIndex(CodepageIndex* index) noexcept
{
    if (!index)
        return;
    delete[] index->tables.decode;
    delete[] index->tables.encodeByte;
    delete[] index->tables.encodePair;
    delete index;
}

} // namespace TvDetail
