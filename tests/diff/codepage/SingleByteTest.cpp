// Every byte of every single-byte code page against the C library's converters. Where the
// library means to differ, the difference is listed here and must really be one.
#include "TvCodePages.h"

#include <gtest/gtest.h>
#include <iconv.h>
#include <map>
#include <string>

namespace {

constexpr int kNone = -1;

// The unit of one byte, or kNone.
int decode(iconv_t converter, int byte)
{
    char in[1] = {static_cast<char>(byte)};
    unsigned char out[16];
    char* inAt = in;
    char* outAt = reinterpret_cast<char*>(out);
    std::size_t inLeft = 1;
    std::size_t outLeft = sizeof out;
    iconv(converter, nullptr, nullptr, nullptr, nullptr);
    if (iconv(converter, &inAt, &inLeft, &outAt, &outLeft) == static_cast<std::size_t>(-1))
        return kNone;
    iconv(converter, nullptr, nullptr, &outAt, &outLeft);
    return sizeof out - outLeft == 2 ? out[0] | out[1] << 8 : kNone;
}

struct Page {
    int id;
    const char* converter;
    std::map<int, int> deviations = {}; // byte to unit, 0 = no character
    bool unassignedIsTheByte = false;
};

const Page kPages[] = {
    {2, "ISO-8859-1"},
    {3, "ISO-8859-2"},
    {4, "ISO-8859-3", {}, true},
    {5, "ISO-8859-4"},
    {6, "ISO-8859-5"},
    {7, "ISO-8859-6", {}, true},
    {8, "ISO-8859-7", {{0xA1, 0x02BD}, {0xA2, 0x02BC}, {0xA4, 0x00A4}, {0xA5, 0x00A5}, {0xAA, 0x00AA}}, true},
    {9, "ISO-8859-8", {{0xAF, 0x203E}, {0xFD, 0x00FD}, {0xFE, 0x00FE}}, true},
    {10, "ISO-8859-9"},
    {11, "IBM437"},
    {12, "IBM850"},
    {13, "IBM852"},
    {14, "IBM855"},
    {15, "IBM857"},
    {16, "IBM860"},
    {17, "IBM861"},
    {18, "IBM863"},
    {19, "IBM864"},
    {20, "IBM865"},
    {21, "IBM869"},
    {23, "MACINTOSH", {{0xBD, 0x2126}, {0xC6, 0x2206}, {0xDB, 0x00A4}, {0xF0, 0}}},
    {27, "CP866"},
    {28, "CP1250", {{0x80, 0}, {0xAC, 0}}},
    {29, "CP1251", {{0x88, 0}}},
    {30, "CP1252", {{0x80, 0}, {0x8D, 0x0164}, {0x8F, 0x0179}, {0x9E, 0}}},
    {32, "CP1253", {{0x80, 0}}},
    {33, "CP1254", {{0x80, 0}}},
    {34,
     "CP1255",
     {{0x80, 0},
      {0xA1, 0},
      {0xAA, 0},
      {0xB8, 0},
      {0xBA, 0},
      {0xBF, 0},
      {0xD7, 0},
      {0xD8, 0},
      {0xCA, 0x05BA}}},
    {35,
     "CP1256",
     {{0x80, 0}, {0x8A, 0}, {0x8F, 0}, {0x98, 0}, {0x9A, 0}, {0x9F, 0}, {0xAA, 0}, {0xC0, 0}, {0xFF, 0}}},
    {36, "CP1257", {{0x80, 0}}},
    {37, "CP874", {{0x80, 0}}},
    {38, "CP932"},
};

class SingleByte : public testing::TestWithParam<Page> {
protected:
    void SetUp() override
    {
        m_pages.init();
        m_table = m_pages.findMapperByAcadCp(static_cast<code_page_id>(GetParam().id))->m_pSingleByteTable;
        m_converter = iconv_open("UTF-16LE", GetParam().converter);
        ASSERT_NE(m_converter, reinterpret_cast<iconv_t>(-1));
    }
    void TearDown() override { iconv_close(m_converter); }

    // What the table should hold where no deviation is listed.
    int published(int byte) const
    {
        const int unit = decode(m_converter, byte);
        if (unit == kNone)
            return GetParam().unassignedIsTheByte ? byte : 0;
        return unit;
    }

    EkCodepages m_pages;
    const unsigned short* m_table = nullptr;
    iconv_t m_converter = nullptr;
};

TEST_P(SingleByte, EveryByteIsTheConvertersOrAListedDeviation)
{
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        const auto deviation = GetParam().deviations.find(byte);
        const int expected = deviation == GetParam().deviations.end() ? published(byte) : deviation->second;
        EXPECT_EQ(m_table[byte - 0x80], expected) << std::hex << byte;
    }
}

TEST_P(SingleByte, EveryListedDeviationDiffersFromTheConverter)
{
    for (const auto& [byte, unit] : GetParam().deviations)
        EXPECT_NE(decode(m_converter, byte), unit == 0 ? kNone : unit) << std::hex << byte;
}

std::string pageName(const testing::TestParamInfo<Page>& page)
{
    std::string name = page.param.converter;
    for (char& c : name)
        c = c == '-' ? '_' : c;
    return name;
}

INSTANTIATE_TEST_SUITE_P(Pages, SingleByte, testing::ValuesIn(kPages), pageName);

} // namespace
