// Every byte and every pair of every code page through the mapper, against the C library's
// converters and ICU.
#include "MapperText.h"

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <iconv.h>
#include <map>
#include <string>
#include <vector>

namespace {

class Iconv {
public:
    explicit Iconv(const char* name) : m_converter(iconv_open("UTF-16LE", name)) {}
    ~Iconv() { iconv_close(m_converter); }
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    bool isOpen() const { return m_converter != reinterpret_cast<iconv_t>(-1); }

    // The one unit that the bytes decode to, else 0.
    unsigned decode(std::string bytes)
    {
        iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
        char* in = bytes.data();
        std::size_t inLeft = bytes.size();
        unsigned short units[4] = {};
        char* out = reinterpret_cast<char*>(units);
        std::size_t outLeft = sizeof units;
        const std::size_t result = iconv(m_converter, &in, &inLeft, &out, &outLeft);
        return result == 0 && inLeft == 0 && outLeft == sizeof units - 2 ? units[0] : 0;
    }

private:
    iconv_t m_converter;
};

class DoubleBytePage : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(TvCharMapper::initialize(shippedMapFile()), Orna::eOk); }
    void TearDown() override { TvCharMapper::unInitialize(); }

    static std::string pairOf(unsigned code)
    {
        return {static_cast<char>(code >> 8), static_cast<char>(code)};
    }

    static std::string mif(char digit, unsigned code)
    {
        char text[9];
        std::snprintf(text, sizeof text, "\\M+%c%04X", digit, code);
        return text;
    }

    // Every lead and trail byte, alone and in the middle of a text, and back.
    template<class Oracle>
    void checkAll(code_page_id cp, char digit, Oracle oracle)
    {
        std::map<unsigned, unsigned> firstCode;
        int known = 0;
        for (unsigned code = 0x8000; code < 0x10000; ++code) {
            const unsigned lead = code >> 8;
            if (!tvIsLeadByte(static_cast<unsigned char>(lead), cp) || (code & 0xFF) == 0)
                continue;
            const unsigned unit = oracle(code);
            const std::string escape = mif(digit, code);
            const std::wstring expected = unit ? std::wstring(1, static_cast<wchar_t>(unit))
                                               : std::wstring(escape.begin(), escape.end());
            ASSERT_EQ(toWide(cp, pairOf(code)), expected) << std::hex << code;
            ASSERT_EQ(toWide(cp, "some text" + pairOf(code) + "z"), L"some text" + expected + L"z")
                << std::hex << code;
            wchar_t wc = 0;
            ASSERT_EQ(TvCharMapper::codepageToUnicode(static_cast<wchar_t>(code), cp, wc), unit != 0);
            if (unit) {
                ASSERT_EQ(static_cast<unsigned>(wc), unit);
                firstCode.emplace(unit, code);
                ++known;
            }
        }
        EXPECT_GT(known, 7000);
        for (const auto& [unit, code] : firstCode) {
            wchar_t found = 0;
            ASSERT_TRUE(TvCharMapper::unicodeToCodepage(static_cast<wchar_t>(unit), cp, found, false));
            if (found < 0x100) // a single byte comes first
                continue;
            ASSERT_EQ(static_cast<unsigned>(found), code) << std::hex << unit;
            ASSERT_EQ(toBytes(cp, std::wstring(1, static_cast<wchar_t>(unit))), pairOf(code));
        }
        for (unsigned unit = 0x80; unit < 0x10000; ++unit) {
            wchar_t found = 0;
            const bool has = TvCharMapper::unicodeToCodepage(static_cast<wchar_t>(unit), cp, found, false);
            ASSERT_EQ(has,
                      firstCode.count(unit) != 0 || (cp == CP_ANSI_932 && unit >= 0xFF61 && unit <= 0xFF9F))
                << std::hex << unit;
        }
    }

    void checkWithIconv(code_page_id cp, char digit, const char* name)
    {
        Iconv converter(name);
        ASSERT_TRUE(converter.isOpen());
        checkAll(cp, digit, [&](unsigned code) {
            const unsigned unit =
                (code & 0xFF) < 0x40 || (code & 0xFF) == 0xFF ? 0 : converter.decode(pairOf(code));
            return unit >= 0xE000 && unit <= 0xF8FF ? 0 : unit;
        });
    }

    void checkWithIcu(code_page_id cp, char digit, const char* name)
    {
        UErrorCode status = U_ZERO_ERROR;
        UConverter* converter = ucnv_open(name, &status);
        ASSERT_TRUE(U_SUCCESS(status)) << name;
        checkAll(cp, digit, [&](unsigned code) -> unsigned {
            const std::string bytes = pairOf(code);
            UErrorCode error = U_ZERO_ERROR;
            UChar units[4] = {};
            const int count = ucnv_toUChars(converter, units, 4, bytes.data(), 2, &error);
            const bool one = U_SUCCESS(error) && count == 1 && units[0] != 0xFFFD && units[0] != 0x1A;
            return one && (units[0] < 0xE000 || units[0] > 0xF8FF) ? units[0] : 0;
        });
        ucnv_close(converter);
    }
};

TEST_F(DoubleBytePage, JapaneseAgreesWithIconv) { checkWithIconv(CP_ANSI_932, '1', "CP932"); }

TEST_F(DoubleBytePage, JapaneseAgreesWithIcu) { checkWithIcu(CP_ANSI_932, '1', "ibm-943_P15A-2003"); }

TEST_F(DoubleBytePage, SimplifiedChineseAgreesWithIconv) { checkWithIconv(CP_ANSI_936, '5', "CP936"); }

TEST_F(DoubleBytePage, SimplifiedChineseAgreesWithIcu) { checkWithIcu(CP_ANSI_936, '5', "windows-936-2000"); }

TEST_F(DoubleBytePage, KoreanAgreesWithIconv) { checkWithIconv(CP_ANSI_949, '3', "CP949"); }

TEST_F(DoubleBytePage, KoreanAgreesWithIcu) { checkWithIcu(CP_ANSI_949, '3', "windows-949-2000"); }

TEST_F(DoubleBytePage, TraditionalChineseAgreesWithIconv) { checkWithIconv(CP_ANSI_950, '2', "CP950"); }

TEST_F(DoubleBytePage, TraditionalChineseAgreesWithIcu)
{
    checkWithIcu(CP_ANSI_950, '2', "windows-950-2000");
}

struct SingleBytePage {
    code_page_id cp;
    const char* name;
};

// Bytes whose character here is another one than in the C library's converters are left to
// the test of the tables; here every byte must come through the mapper as its table has it.
const SingleBytePage kSingleBytePages[] = {
    {CP_ISO8859_1, "ISO-8859-1"}, {CP_ISO8859_2, "ISO-8859-2"}, {CP_ISO8859_4, "ISO-8859-4"},
    {CP_ISO8859_5, "ISO-8859-5"}, {CP_ISO8859_9, "ISO-8859-9"}, {CP_DOS437, "IBM437"},
    {CP_DOS850, "IBM850"},        {CP_DOS852, "IBM852"},        {CP_DOS855, "IBM855"},
    {CP_DOS860, "IBM860"},        {CP_DOS861, "IBM861"},        {CP_DOS863, "IBM863"},
    {CP_DOS865, "IBM865"},        {CP_DOS866, "CP866"},
};

class SingleByteOracle : public testing::TestWithParam<SingleBytePage> {
protected:
    void SetUp() override { TvCharMapper::initialize(L""); }
    void TearDown() override { TvCharMapper::unInitialize(); }
};

TEST_P(SingleByteOracle, EveryByteBothWays)
{
    Iconv converter(GetParam().name);
    ASSERT_TRUE(converter.isOpen());
    std::map<unsigned, unsigned> firstByte;
    for (unsigned b = 0x80; b < 0x100; ++b) {
        const std::string byte(1, static_cast<char>(b));
        const unsigned unit = converter.decode(byte);
        const std::wstring expected(1, static_cast<wchar_t>(unit ? unit : b));
        ASSERT_EQ(toWide(GetParam().cp, byte), expected) << b;
        ASSERT_EQ(toWide(GetParam().cp, std::string(40, 'x') + byte + std::string(40, 'y')),
                  std::wstring(40, L'x') + expected + std::wstring(40, L'y'));
        if (unit)
            firstByte.emplace(unit, b);
    }
    for (unsigned unit = 0x80; unit < 0x10000; ++unit) {
        const auto found = firstByte.find(unit);
        const std::string bytes = toBytes(GetParam().cp, std::wstring(1, static_cast<wchar_t>(unit)));
        if (found == firstByte.end()) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\U+%04X", unit);
            ASSERT_EQ(bytes, escape);
        } else {
            ASSERT_EQ(bytes, std::string(1, static_cast<char>(found->second)));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, SingleByteOracle, testing::ValuesIn(kSingleBytePages),
                         [](const auto& row) { return std::to_string(static_cast<int>(row.param.cp)); });

} // namespace
