// Every kernel set that this machine runs against the plain one, and the plain one against
// a slow model.
#include "codepage/TextKernels.h"
#include "codepage/KernelChoice.h"

#include "GuardPage.h"
#include "TestScale.h"
#include "Utf8Model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

using namespace TvDetail;

namespace {

constexpr std::size_t kMostText = 8192;
constexpr unsigned char kByteMark = 0xA5;
constexpr wchar_t kWideMark = 0x5A5A5A5A;

// A code page made for the test: holes in every table, codes of one and two bytes, all
// characters spread so that each path of a kernel is taken.
struct TestPage {
    CodepageTables tables{};
    std::vector<unsigned short> decode = std::vector<unsigned short>(65537);
    std::vector<unsigned short> encodePair = std::vector<unsigned short>(65537);
    std::vector<unsigned char> encodeByte = std::vector<unsigned char>(65540);
    LeadRanges leads{};

    TestPage(LeadRanges ranges, unsigned window0, unsigned window1) : leads(ranges)
    {
        std::mt19937 random(7);
        for (unsigned i = 0; i < 128; ++i) {
            const unsigned wc = i % 3 == 0 ? 0x80 + i : random() % 0xFF00 + 0x80;
            tables.byteLow[i] = static_cast<unsigned char>(wc);
            tables.byteHigh[i] = static_cast<unsigned char>(wc >> 8);
        }
        for (unsigned c = 1; c < 65536; ++c) {
            const bool hole = random() % 64 == 0 || c >= 0xFFF0;
            decode[c] = static_cast<unsigned short>(c < 0x80           ? c
                                                    : hole && c > 0xFF ? 0
                                                                       : random() % 0xFFFF + 1);
            encodePair[c] = static_cast<unsigned short>(c < 0x80            ? c
                                                        : hole              ? 0
                                                        : random() % 4 == 0 ? random() % 128 + 128
                                                                            : random() % 0xFF00 + 0x100);
            encodeByte[c] = static_cast<unsigned char>(c < 0x80 ? c : hole ? 0 : random() % 255 + 1);
        }
        decode[0xFFFF] = 0x1234; // the last element must be within reach of a wide load
        encodePair[0xFFFF] = 0xFFFF;
        encodeByte[0xFFFF] = 0xFE;
        const unsigned windows[2] = {window0, window1};
        for (int w = 0; w < 2; ++w) {
            tables.windowBase[w] = windows[w];
            for (unsigned i = 0; i < 128; ++i)
                tables.windowCode[w][i] = encodeByte[windows[w] + i];
        }
        tables.decode = decode.data();
        tables.encodePair = encodePair.data();
        tables.encodeByte = encodeByte.data();
    }
};

const TestPage& japanese()
{
    static const TestPage page(LeadRanges{{0x81, 0xE0}, {0x9F, 0xFC}}, 0x80, 0x400);
    return page;
}

const TestPage& chinese()
{
    static const TestPage page(LeadRanges{{0x81, 0x81}, {0xFE, 0xFE}}, 0x100, 0x80);
    return page;
}

class TextKernelsTest : public testing::TestWithParam<const TextKernels*> {
protected:
    using Bytes = std::vector<unsigned char>;
    using Wide = std::vector<wchar_t>;

    template<class Out, class In, class Kernel>
    static std::pair<KernelProgress, std::vector<Out>> run(Kernel kernel, const In* src, std::size_t count,
                                                           std::size_t most, Out mark)
    {
        std::vector<Out> dst(most + kKernelSlack + 8, mark);
        const KernelProgress progress = kernel(src, count, dst.data());
        for (std::size_t i = most + kKernelSlack; i < dst.size(); ++i)
            EXPECT_EQ(dst[i], mark) << "written behind the slack";
        EXPECT_LE(progress.written, most);
        dst.resize(std::min(progress.written, most));
        return {progress, dst};
    }

    template<class Out, class In, class Plain, class Fast>
    void same(Plain plain, Fast fast, const std::vector<In>& text, std::size_t most, Out mark,
              GuardedArray<In>& guard)
    {
        std::vector<In> held = text;
        for (std::size_t i = 0; i < m_elementsBehind; ++i)
            held.push_back(static_cast<In>(0x2C5A3017u * (i + text.size())));
        const In* src = guard.hold(held);
        const auto expected = run<Out>(plain, src, text.size() + m_lengthBehind, most, mark);
        const auto actual = run<Out>(fast, src, text.size() + m_lengthBehind, most, mark);
        ASSERT_EQ(actual.first.read, expected.first.read) << describe(text);
        ASSERT_EQ(actual.first.written, expected.first.written) << describe(text);
        ASSERT_EQ(actual.second, expected.second) << describe(text);
    }

    template<class T>
    static std::string describe(const std::vector<T>& text)
    {
        std::string out = std::to_string(text.size()) + " elements:";
        char number[16];
        for (T c : text) {
            std::snprintf(number, sizeof number, " %x", static_cast<unsigned>(c));
            out += number;
        }
        return out;
    }

    // All byte kernels on one text.
    void checkBytes(const Bytes& text)
    {
        const TextKernels& fast = *GetParam();
        const TextKernels& plain = g_plainKernels;
        const auto utf8 = [](const TextKernels& k) {
            return [&k](const unsigned char* s, std::size_t n, wchar_t* d) { return k.utf8Decode(s, n, d); };
        };
        same<wchar_t>(utf8(plain), utf8(fast), text, text.size(), kWideMark, m_bytes);
        for (const TestPage* page : {&japanese(), &chinese()}) {
            const auto single = [page](const TextKernels& k) {
                return [&k, page](const unsigned char* s, std::size_t n, wchar_t* d) {
                    return k.decodeSingle(s, n, d, page->tables);
                };
            };
            same<wchar_t>(single(plain), single(fast), text, text.size(), kWideMark, m_bytes);
            const auto pairs = [page](const TextKernels& k) {
                return [&k, page](const unsigned char* s, std::size_t n, wchar_t* d) {
                    return k.decodeDouble(s, n, d, page->tables, page->leads);
                };
            };
            same<wchar_t>(pairs(plain), pairs(fast), text, text.size(), kWideMark, m_bytes);
        }
    }

    // All wide kernels on one text.
    void checkWide(const Wide& text)
    {
        const TextKernels& fast = *GetParam();
        const TextKernels& plain = g_plainKernels;
        const auto utf8 = [](const TextKernels& k) {
            return [&k](const wchar_t* s, std::size_t n, char* d) { return k.utf8Encode(s, n, d); };
        };
        same<char>(utf8(plain), utf8(fast), text, 3 * text.size(), static_cast<char>(kByteMark), m_wide);
        for (const TestPage* page : {&japanese(), &chinese()}) {
            const auto single = [page](const TextKernels& k) {
                return [&k, page](const wchar_t* s, std::size_t n, char* d) {
                    return k.encodeSingle(s, n, d, page->tables);
                };
            };
            same<char>(single(plain), single(fast), text, text.size(), static_cast<char>(kByteMark), m_wide);
            const auto pairs = [page](const TextKernels& k) {
                return [&k, page](const wchar_t* s, std::size_t n, char* d) {
                    return k.encodeDouble(s, n, d, page->tables);
                };
            };
            same<char>(pairs(plain), pairs(fast), text, 2 * text.size(), static_cast<char>(kByteMark),
                       m_wide);
        }
    }

    // All kernels on texts of every length up to 200 and of every kind.
    void checkShortTexts(unsigned seed);

    GuardedArray<unsigned char> m_bytes{kMostText};
    GuardedArray<wchar_t> m_wide{kMostText};
    std::size_t m_lengthBehind = 0;   // how far the length that kernels are given passes the text's end
    std::size_t m_elementsBehind = 0; // of any kind, in front of the guard
};

// What random text is made of; each kind leads kernels down another path.
using ByteMaker = unsigned char (*)(std::mt19937&);
const ByteMaker kByteKinds[] = {
    [](std::mt19937& r) { return static_cast<unsigned char>('a' + r() % 26); },
    [](std::mt19937& r) { return static_cast<unsigned char>(r() % 32 == 0 ? 0xC3 : 'a' + r() % 26); },
    [](std::mt19937& r) { return static_cast<unsigned char>(0x80 + r() % 128); },
    [](std::mt19937& r) { return static_cast<unsigned char>(0x81 + r() % 0x1F); },
    [](std::mt19937& r) { return static_cast<unsigned char>(r() % 3 ? 0xE3 : 0x81); },
    [](std::mt19937& r) { return static_cast<unsigned char>(r() % 2 ? 0x81 + r() % 126 : 0x40 + r() % 63); },
    [](std::mt19937& r) { return static_cast<unsigned char>(1 + r() % 255); },
    [](std::mt19937& r) { return static_cast<unsigned char>(r() % 40 == 0 ? '\\' : 1 + r() % 255); },
    [](std::mt19937& r) { return static_cast<unsigned char>(r() % 256); },
};

using WideMaker = wchar_t (*)(std::mt19937&);
const WideMaker kWideKinds[] = {
    [](std::mt19937& r) { return static_cast<wchar_t>('a' + r() % 26); },
    [](std::mt19937& r) { return static_cast<wchar_t>(r() % 32 == 0 ? 0xE9 : 'a' + r() % 26); },
    [](std::mt19937& r) { return static_cast<wchar_t>(0x80 + r() % 0x100); },
    [](std::mt19937& r) { return static_cast<wchar_t>(1 + r() % 0x7FF); },
    [](std::mt19937& r) { return static_cast<wchar_t>(0x4E00 + r() % 0x5000); },
    [](std::mt19937& r) { return static_cast<wchar_t>(r() % 2 ? 0x4E00 + r() % 0x5000 : 0x20 + r() % 0x60); },
    [](std::mt19937& r) { return static_cast<wchar_t>(1 + r() % 0xFFFF); },
    [](std::mt19937& r) { return static_cast<wchar_t>(r() % 50 == 0 ? '\\' : 1 + r() % 0x500); },
    [](std::mt19937& r) { return static_cast<wchar_t>(r() % 50 == 0 ? r() : 1 + r() % 0x500); },
    [](std::mt19937& r) { return static_cast<wchar_t>(r() % 0x200); },
};

void TextKernelsTest::checkShortTexts(unsigned seed)
{
    std::mt19937 random(seed);
    for (std::size_t length = 0; length <= 200; ++length) {
        for (ByteMaker kind : kByteKinds) {
            Bytes text(length);
            std::generate(text.begin(), text.end(), [&] { return kind(random); });
            ASSERT_NO_FATAL_FAILURE(checkBytes(text));
        }
        for (WideMaker kind : kWideKinds) {
            Wide text(length);
            std::generate(text.begin(), text.end(), [&] { return kind(random); });
            ASSERT_NO_FATAL_FAILURE(checkWide(text));
        }
    }
}

TEST_P(TextKernelsTest, ShortTextsOfEveryLengthAndKind) { checkShortTexts(11); }

TEST_P(TextKernelsTest, WhatStandsBehindATextInItsPageDoesNotMatter)
{
    m_elementsBehind = 200;
    checkShortTexts(19);
}

TEST_P(TextKernelsTest, EveryByteAtEveryPlaceOfABlock)
{
    for (std::size_t place = 0; place < 132; ++place) {
        for (int value = 0; value < 256; ++value) {
            Bytes text(132, 'a');
            text[place] = static_cast<unsigned char>(value);
            m_elementsBehind = (place + static_cast<std::size_t>(value)) % 2 * 40;
            ASSERT_NO_FATAL_FAILURE(checkBytes(text));
        }
    }
}

TEST_P(TextKernelsTest, EveryPairOfBytesAtTheEdgesOfABlock)
{
    std::mt19937 random(23);
    for (std::size_t place : {0u, 61u, 62u, 63u, 64u}) {
        for (int pair = 0; pair < 65536; pair += 1 + (pair & 3)) {
            Bytes text(70, 'a');
            m_elementsBehind = random() % 2 * 40;
            text[place] = static_cast<unsigned char>(pair >> 8);
            text[place + 1] = static_cast<unsigned char>(pair);
            text[place + 2] = 0x80;
            ASSERT_NO_FATAL_FAILURE(checkBytes(text));
        }
    }
}

TEST_P(TextKernelsTest, RunsOfLeadBytesOfEveryLengthFromEveryPlace)
{
    for (std::size_t first = 0; first < 66; ++first) {
        for (std::size_t length = 0; length < 70; ++length) {
            for (std::size_t size : {120u, 140u}) {
                m_elementsBehind = 140 - size;
                Bytes text(140, 'a');
                std::fill_n(text.begin() + static_cast<long>(first), length,
                            static_cast<unsigned char>(0x91));
                text.resize(size);
                ASSERT_NO_FATAL_FAILURE(checkBytes(text));
            }
        }
    }
}

TEST_P(TextKernelsTest, EveryCharacterAmongAscii)
{
    for (unsigned wc = 0; wc < 0x10100; ++wc) {
        m_elementsBehind = wc % 2 * 40;
        Wide text(wc % 2 ? 60 : 70, L'x');
        text[wc % 59] = static_cast<wchar_t>(wc);
        ASSERT_NO_FATAL_FAILURE(checkWide(text));
    }
}

TEST_P(TextKernelsTest, NegativeElementsCountAsTooLarge)
{
    for (std::size_t place = 0; place < 70; ++place) {
        Wide text(70, L'x');
        text[place] = static_cast<wchar_t>(-42);
        ASSERT_NO_FATAL_FAILURE(checkWide(text));
    }
}

TEST_P(TextKernelsTest, RandomMixesOfKinds)
{
    const auto seed = testSeed(20240611);
    SCOPED_TRACE("TV_TEST_SEED=" + std::to_string(seed));
    std::mt19937 random(static_cast<unsigned>(seed));
    for (long round = scaled(4000); round > 0; --round) {
        Bytes bytes;
        Wide wide;
        while (bytes.size() < 700 && random() % 8 != 0) {
            const ByteMaker kind = kByteKinds[random() % std::size(kByteKinds)];
            for (unsigned n = random() % 90; n > 0; --n)
                bytes.push_back(kind(random));
        }
        while (wide.size() < 700 && random() % 8 != 0) {
            const WideMaker kind = kWideKinds[random() % std::size(kWideKinds)];
            for (unsigned n = random() % 90; n > 0; --n)
                wide.push_back(kind(random));
        }
        ASSERT_NO_FATAL_FAILURE(checkBytes(bytes));
        ASSERT_NO_FATAL_FAILURE(checkWide(wide));
    }
}

// The 0 is the last readable element.
TEST_P(TextKernelsTest, ALengthBehindTheZeroReadsNothingBehindIt)
{
    std::mt19937 random(13);
    for (std::size_t length = 0; length <= 600; length += length < 150 ? 1 : 7) {
        for (std::size_t behind : {1u, 2u, 40u, 70u, 5000u}) {
            m_lengthBehind = behind;
            const ByteMaker byteKind = kByteKinds[random() % std::size(kByteKinds)];
            Bytes bytes(length);
            std::generate(bytes.begin(), bytes.end(), [&] { return byteKind(random); });
            bytes.push_back(0);
            ASSERT_NO_FATAL_FAILURE(checkBytes(bytes));
            const WideMaker wideKind = kWideKinds[random() % std::size(kWideKinds)];
            Wide wide(length);
            std::generate(wide.begin(), wide.end(), [&] { return wideKind(random); });
            wide.push_back(0);
            ASSERT_NO_FATAL_FAILURE(checkWide(wide));
        }
    }
}

// The 0 stands before, at and behind the end of a page that is followed by a readable one.
TEST_P(TextKernelsTest, TextsGoOnOverTheEndOfAPage)
{
    std::mt19937 random(17);
    for (std::size_t room = 4096 - 80; room <= 4096 + 80; ++room) {
        m_lengthBehind = room % 3 * 50;
        Bytes bytes(room, 'a');
        std::generate(bytes.begin() + 20, bytes.end(), [&] { return kByteKinds[room % 7](random); });
        bytes[79] = 0;
        ASSERT_NO_FATAL_FAILURE(checkBytes(bytes));
        bytes[79] = 'b';
        bytes.back() = 0;
        ASSERT_NO_FATAL_FAILURE(checkBytes(bytes));
        Wide wide(room / 4, L'a');
        std::generate(wide.begin() + 5, wide.end(), [&] { return kWideKinds[room % 7](random); });
        wide[19] = 0;
        ASSERT_NO_FATAL_FAILURE(checkWide(wide));
        wide[19] = L'b';
        wide.back() = 0;
        ASSERT_NO_FATAL_FAILURE(checkWide(wide));
    }
}

TEST_P(TextKernelsTest, Utf8AgreesWithTheModel)
{
    const TextKernels& kernels = *GetParam();
    std::mt19937 random(static_cast<unsigned>(testSeed(5)));
    for (long round = scaled(3000); round > 0; --round) {
        Bytes bytes(random() % 300);
        const ByteMaker byteKind = kByteKinds[random() % std::size(kByteKinds)];
        std::generate(bytes.begin(), bytes.end(), [&] { return byteKind(random); });
        std::vector<wchar_t> wide(bytes.size() + kKernelSlack);
        wide.resize(kernels.utf8Decode(m_bytes.hold(bytes), bytes.size(), wide.data()).written);
        ASSERT_EQ(wide, Utf8Model::decode(bytes)) << describe(bytes);

        Wide text(random() % 300);
        const WideMaker wideKind = kWideKinds[random() % std::size(kWideKinds)];
        std::generate(text.begin(), text.end(), [&] { return wideKind(random); });
        std::vector<char> narrow(3 * text.size() + kKernelSlack);
        narrow.resize(kernels.utf8Encode(m_wide.hold(text), text.size(), narrow.data()).written);
        ASSERT_EQ(narrow, Utf8Model::encode(text)) << describe(text);
    }
}

std::vector<const TextKernels*> allKernels()
{
    const KernelList list = runnableKernels();
    return {list.sets, list.sets + list.count};
}

TEST(TextKernels, TheBestSetIsTheOneInUseAndNamedRight)
{
    EXPECT_STREQ(textKernels().name, kKernelSetNames[static_cast<int>(bestKernelSet())]);
}

INSTANTIATE_TEST_SUITE_P(Sets, TextKernelsTest, testing::ValuesIn(allKernels()),
                         [](const auto& set) { return std::string(set.param->name); });

} // namespace
