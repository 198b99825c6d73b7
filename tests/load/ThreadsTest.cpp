// What may be used from several threads at once, used so: every thread has the results that one
// alone has. Most is told by a build with the thread sanitizer (docs/robustness.md).
#include "DrawingTexts.h"
#include "MapperText.h"
#include "ScanCall.h"
#include "TestScale.h"
#include "TvOsBase.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <ostream>
#include <string>
#include <thread>

namespace {

// A hash of results.
class Results {
public:
    template<class T>
    void add(const T& value)
    {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
        for (std::size_t i = 0; i < sizeof value; ++i)
            m_hash = (m_hash ^ bytes[i]) * 0x100000001B3u;
    }
    template<class Char>
    void addText(const Char* text)
    {
        for (; *text != 0; ++text)
            add(*text);
    }
    std::uint64_t hash() const { return m_hash; }

private:
    std::uint64_t m_hash = 0xCBF29CE484222325u;
};

struct Service {
    const char* name;
    void (*use)(unsigned i, Results& results); ///< for i = 0, 1, 2, ...
};

const wchar_t* textOf(unsigned i) { return kDrawingTexts[i % std::size(kDrawingTexts)].text; }

void useSingleCharacters(unsigned i, Results& results)
{
    const auto page = static_cast<code_page_id>(i % 47);
    wchar_t code = 0;
    wchar_t wc = 0;
    results.add(
        TvCharMapper::unicodeToCodepage(static_cast<wchar_t>(i * 40503u % 0xFFFF), page, code, false));
    results.add(TvCharMapper::codepageToUnicode(static_cast<wchar_t>(i * 7919u % 0xFFFF), page, wc));
    results.add(code);
    results.add(wc);
    results.add(TvCharMapper::isLeadByte(static_cast<unsigned char>(i), page));
}

void useEscapes(unsigned i, Results& results)
{
    char text[9] = {};
    results.add(TvCharConverter::getCIFString(static_cast<unsigned short>(i * 31), text, 8));
    wchar_t wc = 0;
    results.add(TvCharConverter::parseCIFString(text, wc));
    results.add(wc);
    results.add(isCIForMIF(textOf(i)));
}

void useTables(unsigned i, Results& results)
{
    const auto wc = static_cast<wchar_t>(i * 257 % 0x10000);
    results.add(OrCodePage::LineBreakClass(wc));
    results.add(OrCodePage::CharSetFromUnicode(wc, 0x0409, 0x0411));
    results.add(OrCodePage::LanguageToCodePage(static_cast<unsigned short>(i % 0x2000)));
    for (const wchar_t mark : TvCharCategory::s_instance.allPuncts())
        results.add(mark == wc);
    results.add(TvCodePageMapper::ornaCpToAnsiCp(static_cast<code_page_id>(i % 46)));
}

void useOutput(unsigned i, Results& results)
{
    wchar_t text[300];
    results.add(FormatUtil::outputStringWithFormat(text, 300, L"%d %x %.3f %e %s %.32q0", i, i, i / 7.0,
                                                   i * 1e10, textOf(i), i / 16.0));
    results.addText(text);
}

void useInput(unsigned i, Results& results)
{
    wchar_t text[100];
    FormatUtil::outputStringWithFormat(text, 100, L"%d %.4f name", i, i / 3.0);
    int whole = 0;
    double real = 0;
    wchar_t word[100];
    results.add(scanText(text, L"%d %F %s", &whole, &real, word));
    results.add(whole);
    results.add(real);
    results.addText(word);
}

void useLayouts(unsigned i, Results& results)
{
    wchar_t text[64];
    CvtFormatter<wchar_t>::formatF(text, "125", 3, 2, static_cast<int>(i % 9), 0);
    results.addText(text);
    CvtFormatter<wchar_t>::formatE(text, "125", 3, 2, static_cast<int>(i % 300), 1, 'e');
    results.addText(text);
}

void usePaths(unsigned i, Results& results)
{
    wchar_t path[64];
    FormatUtil::outputStringWithFormat(path, 64, L"/plans/floor%d/house%d.dwg", i % 10, i);
    wchar_t part[1024];
    results.add(TvPathMaker::getParentDir(part, path));
    results.addText(part);
    results.add(TvPathMaker::getFileName(path, part, nullptr));
    results.addText(part);
    results.add(TvPathMaker::isValidPath(path));
    results.add(TvCharOp::compareNoCase(path, L"/PLANS"));
    results.add(TvMath::floor(i / 3.0));
}

void usePlatform(unsigned i, Results& results)
{
    wchar_t text[64];
    results.add(swprintf(text, L"%d,%.2f,%s", i, i / 4.0, L"x"));
    results.addText(text);
    results.add(_wtoi(text));
    results.add(_wtof(text));
    results.add(GetACP());
    results.add(GetSystemDefaultLCID());
    char name[300];
    results.add(tvPlatformFileName(textOf(i), name, sizeof name));
}

const Service kServices[] = {
    {"SingleCharacters", useSingleCharacters},
    {"Escapes", useEscapes},
    {"Tables", useTables},
    {"Output", useOutput},
    {"Input", useInput},
    {"Layouts", useLayouts},
    {"Paths", usePaths},
    {"Platform", usePlatform},
};

void PrintTo(const Service& service, std::ostream* out) { *out << service.name; }

std::uint64_t useFrom(const Service& service, unsigned start)
{
    Results results;
    const auto count = static_cast<unsigned>(scaled(2000));
    for (unsigned i = 0; i < count; ++i)
        service.use(start + i, results);
    return results.hash();
}

class Threads : public testing::TestWithParam<Service> {
protected:
    static constexpr unsigned kCount = 4;

    void SetUp() override
    {
        ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk);
        for (const code_page_id page : {CP_ANSI_932, CP_ANSI_936, CP_ANSI_949, CP_ANSI_950})
            toWide(page, "\x88\x9F"); // the double-byte tables are read by one thread
    }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

TEST_P(Threads, HaveTheResultsThatOneHasAlone)
{
    std::array<std::uint64_t, kCount> together = {};
    {
        std::array<std::thread, kCount> threads;
        for (unsigned k = 0; k < kCount; ++k)
            threads[k] = std::thread([&, k] { together[k] = useFrom(GetParam(), k); });
        for (std::thread& thread : threads)
            thread.join();
    }
    for (unsigned k = 0; k < kCount; ++k)
        EXPECT_EQ(together[k], useFrom(GetParam(), k)) << "thread " << k;
}

INSTANTIATE_TEST_SUITE_P(Services, Threads, testing::ValuesIn(kServices),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
