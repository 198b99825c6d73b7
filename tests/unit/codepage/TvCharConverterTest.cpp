#include "TvCharConverter.h"

#include "TvPlatformBase.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace {

// The functions behave alike for the three character types; each claim runs for all of them.
template<class C>
class Escapes : public testing::Test {
protected:
    using Text = std::basic_string<C>;

    static Text text(const char* ascii)
    {
        Text result;
        for (; *ascii; ++ascii)
            result += static_cast<C>(*ascii);
        return result;
    }

    static bool isCif(const char* ascii) { return TvCharConverter::isCIF(text(ascii).c_str()); }
    static bool isMif(const char* ascii) { return TvCharConverter::isMIF(text(ascii).c_str()); }
};

using CharacterTypes = testing::Types<char, unsigned char, wchar_t>;
TYPED_TEST_SUITE(Escapes, CharacterTypes);

TYPED_TEST(Escapes, DecimalDigitsAreZeroToNine)
{
    for (const char c : {'0', '5', '9'})
        EXPECT_TRUE(TvCharConverter::isDigit(TypeParam(c))) << c;
    for (const char c : {'/', ':', 'a', 'A', ' ', '\0'})
        EXPECT_FALSE(TvCharConverter::isDigit(TypeParam(c))) << c;
}

TYPED_TEST(Escapes, HexadecimalDigitsAreOfEitherCase)
{
    for (const char c : {'0', '9', 'a', 'f', 'A', 'F'})
        EXPECT_TRUE(TvCharConverter::isHexDigit(TypeParam(c))) << c;
    for (const char c : {'/', ':', '@', 'G', '`', 'g', '\0'})
        EXPECT_FALSE(TvCharConverter::isHexDigit(TypeParam(c))) << c;
}

TYPED_TEST(Escapes, ValueOfEachHexadecimalDigit)
{
    const char digits[] = "0123456789abcdef";
    for (unsigned int value = 0; value < 16; ++value)
        EXPECT_EQ(TvCharConverter::hexValue(TypeParam(digits[value])), value);
    for (unsigned int value = 10; value < 16; ++value)
        EXPECT_EQ(TvCharConverter::hexValue(TypeParam('A' + value - 10)), value);
}

TYPED_TEST(Escapes, ValueOfAnythingElseIsZero)
{
    for (const char c : {'/', ':', '@', 'G', '`', 'g', '\0', ' '})
        EXPECT_EQ(TvCharConverter::hexValue(TypeParam(c)), 0u) << c;
}

TYPED_TEST(Escapes, CheckDigitsLooksAtTheFirstCharactersOnly)
{
    const auto digits = this->text("12aFz");
    EXPECT_TRUE(TvCharConverter::checkDigits(digits.c_str(), 4, true));
    EXPECT_FALSE(TvCharConverter::checkDigits(digits.c_str(), 5, true));
    EXPECT_TRUE(TvCharConverter::checkDigits(digits.c_str(), 2, false));
    EXPECT_FALSE(TvCharConverter::checkDigits(digits.c_str(), 3, false));
}

TYPED_TEST(Escapes, NoDigitsAreAllDigits)
{
    const auto letters = this->text("xyz");
    EXPECT_TRUE(TvCharConverter::checkDigits(letters.c_str(), 0, true));
    EXPECT_TRUE(TvCharConverter::checkDigits(letters.c_str(), 0, false));
    EXPECT_TRUE(TvCharConverter::checkDigits(letters.c_str(), -1, false));
}

TYPED_TEST(Escapes, CifForms)
{
    EXPECT_TRUE(this->isCif("\\U+00B0"));
    EXPECT_TRUE(this->isCif("\\u+00b0"));
    EXPECT_TRUE(this->isCif("\\U+FFFFmore text"));
    EXPECT_TRUE(this->isCif("\\U+00B05"));
}

TYPED_TEST(Escapes, AlmostCif)
{
    for (const char* ascii :
         {"\\U+00G0", "\\U00B0", "\\U+0B0", "\\U+0B0 ", "\\U+0B0x", "\\U+0B", "\\U+", "\\U", "\\", "",
          "U+00B0", "/U+00B0", "\\V+00B0", "\\U-00B0", "\\M+00B0", " \\U+00B0"})
        EXPECT_FALSE(this->isCif(ascii)) << ascii;
}

TYPED_TEST(Escapes, MifFormsOfEachCodePageDigit)
{
    for (const char* ascii : {"\\M+0815F", "\\M+1815F", "\\M+2815F", "\\M+3815F", "\\M+4815F", "\\M+5815F",
                              "\\m+1815f", "\\M+1815Fmore text"})
        EXPECT_TRUE(this->isMif(ascii)) << ascii;
}

TYPED_TEST(Escapes, AlmostMif)
{
    for (const char* ascii :
         {"\\M+6815F", "\\M+/815F", "\\M+A815F", "\\M+1815G", "\\M+G815F", "\\M+1815", "\\M+181", "\\M+1",
          "\\M+", "\\M", "\\", "", "M+1815F", "\\N+1815F", "\\M-1815F", "\\U+1815F"})
        EXPECT_FALSE(this->isMif(ascii)) << ascii;
}

TYPED_TEST(Escapes, NullIsNoEscape)
{
    wchar_t unit = L'x';
    code_page_id cp = CP_CNT;
    EXPECT_FALSE(TvCharConverter::isCIF<TypeParam>(nullptr));
    EXPECT_FALSE(TvCharConverter::isMIF<TypeParam>(nullptr));
    EXPECT_FALSE(TvCharConverter::parseCIFString<TypeParam>(nullptr, unit));
    EXPECT_FALSE(TvCharConverter::parseMIFString<TypeParam>(nullptr, unit, cp));
}

// Each text lies in a block of just its size, so that a memory checker sees a read behind it.
TYPED_TEST(Escapes, TestsStopAtTheEndOfTheText)
{
    for (const char* whole : {"\\U+00B0", "\\M+1815F"}) {
        for (std::size_t length = 0; whole[length]; ++length) {
            const auto cut = this->text(std::string(whole, length).c_str());
            const std::unique_ptr<TypeParam[]> block(new TypeParam[length + 1]);
            std::copy(cut.c_str(), cut.c_str() + length + 1, block.get());
            EXPECT_FALSE(TvCharConverter::isCIF(block.get())) << whole << length;
            EXPECT_FALSE(TvCharConverter::isMIF(block.get())) << whole << length;
        }
    }
}

TYPED_TEST(Escapes, ParsingCifGivesTheUnit)
{
    wchar_t unit = 0;
    EXPECT_TRUE(TvCharConverter::parseCIFString(this->text("\\U+00B0").c_str(), unit));
    EXPECT_EQ(unit, 0x00B0);
    EXPECT_TRUE(TvCharConverter::parseCIFString(this->text("\\u+aBcD").c_str(), unit));
    EXPECT_EQ(unit, 0xABCD);
    EXPECT_TRUE(TvCharConverter::parseCIFString(this->text("\\U+FFFF").c_str(), unit));
    EXPECT_EQ(unit, 0xFFFF);
    EXPECT_TRUE(TvCharConverter::parseCIFString(this->text("\\U+0000").c_str(), unit));
    EXPECT_EQ(unit, 0);
}

TYPED_TEST(Escapes, ParsingNoCifLeavesTheUnit)
{
    wchar_t unit = L'x';
    EXPECT_FALSE(TvCharConverter::parseCIFString(this->text("\\U+00G0").c_str(), unit));
    EXPECT_EQ(unit, L'x');
}

TYPED_TEST(Escapes, ParsingMifGivesTheCodePageOfEachDigit)
{
    const struct {
        const char* text;
        code_page_id cp;
    } cases[] = {{"\\M+1815F", CP_ANSI_932},
                 {"\\M+2815F", CP_ANSI_950},
                 {"\\M+3815F", CP_ANSI_949},
                 {"\\M+4815F", CP_ANSI_1361},
                 {"\\m+5815f", CP_ANSI_936}};
    for (const auto& c : cases) {
        wchar_t code = 0;
        code_page_id cp = CP_CNT;
        EXPECT_TRUE(TvCharConverter::parseMIFString(this->text(c.text).c_str(), code, cp)) << c.text;
        EXPECT_EQ(code, 0x815F) << c.text;
        EXPECT_EQ(cp, c.cp) << c.text;
    }
}

TYPED_TEST(Escapes, MifDigitZeroIsTheSystemCodePage)
{
    tvPlatformSetACP(936);
    wchar_t code = 0;
    code_page_id cp = CP_CNT;
    EXPECT_TRUE(TvCharConverter::parseMIFString(this->text("\\M+0815F").c_str(), code, cp));
    EXPECT_EQ(cp, CP_ANSI_936);
    tvPlatformSetACP(1251);
    EXPECT_EQ(TvCharConverter::getMIFCodepage(TypeParam('0')), CP_ANSI_1251);
    tvPlatformSetACP(0);
}

TYPED_TEST(Escapes, ParsingNoMifLeavesBothResults)
{
    wchar_t code = L'x';
    code_page_id cp = CP_CNT;
    EXPECT_FALSE(TvCharConverter::parseMIFString(this->text("\\M+6815F").c_str(), code, cp));
    EXPECT_EQ(code, L'x');
    EXPECT_EQ(cp, CP_CNT);
}

TYPED_TEST(Escapes, OtherMifDigitsAreNoCodePage)
{
    for (const char digit : {'6', '7', '9', '/', 'A', '\0', '\1'})
        EXPECT_EQ(TvCharConverter::getMIFCodepage(TypeParam(digit)), CP_UNDEFINED) << digit;
}

TYPED_TEST(Escapes, CifIsWrittenInUpperCaseWithoutATerminator)
{
    auto buffer = this->text("xxxxxxxxx");
    EXPECT_EQ(TvCharConverter::getCIFString(0x00B0, buffer.data(), 9), 7);
    EXPECT_EQ(buffer, this->text("\\U+00B0xx"));
    EXPECT_EQ(TvCharConverter::getCIFString(0xABCD, buffer.data(), 7), 7);
    EXPECT_EQ(buffer, this->text("\\U+ABCDxx"));
}

TYPED_TEST(Escapes, CifNeedsRoomForSevenCharacters)
{
    auto buffer = this->text("xxxxxxxxx");
    for (const int size : {6, 1, 0, -1})
        EXPECT_EQ(TvCharConverter::getCIFString(0x00B0, buffer.data(), size), 0) << size;
    EXPECT_EQ(buffer, this->text("xxxxxxxxx"));
}

TYPED_TEST(Escapes, MifIsWrittenWithTheDigitOfTheCodePage)
{
    auto buffer = this->text("xxxxxxxxx");
    EXPECT_EQ(TvCharConverter::getMIFString(0x815F, CP_DOS932, buffer.data(), 9), 8);
    EXPECT_EQ(buffer, this->text("\\M+1815Fx"));
    EXPECT_EQ(TvCharConverter::getMIFString(0x815F, CP_ANSI_1252, buffer.data(), 8), 8);
    EXPECT_EQ(buffer, this->text("\\M+0815Fx"));
}

TYPED_TEST(Escapes, MifKeepsTheLowSixteenBitsOfTheCode)
{
    auto buffer = this->text("xxxxxxxx");
    EXPECT_EQ(TvCharConverter::getMIFString(0x7ABCB0A1, CP_ANSI_936, buffer.data(), 8), 8);
    EXPECT_EQ(buffer, this->text("\\M+5B0A1"));
}

TYPED_TEST(Escapes, MifNeedsRoomForEightCharacters)
{
    auto buffer = this->text("xxxxxxxxx");
    for (const int size : {7, 1, 0, -1})
        EXPECT_EQ(TvCharConverter::getMIFString(0x815F, CP_ANSI_932, buffer.data(), size), 0) << size;
    EXPECT_EQ(buffer, this->text("xxxxxxxxx"));
}

TYPED_TEST(Escapes, NothingIsWrittenToNull)
{
    EXPECT_EQ(TvCharConverter::getCIFString<TypeParam>(0x00B0, nullptr, 7), 0);
    EXPECT_EQ(TvCharConverter::getMIFString<TypeParam>(0x815F, CP_ANSI_932, nullptr, 8), 0);
}

TYPED_TEST(Escapes, EveryUnitIsReadBackFromItsCif)
{
    TypeParam buffer[8] = {};
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
        wchar_t read = 0;
        TvCharConverter::getCIFString(static_cast<unsigned short>(unit), buffer, 7);
        ASSERT_TRUE(TvCharConverter::parseCIFString(buffer, read) && read == static_cast<wchar_t>(unit))
            << unit;
    }
}

struct MifDigitCase {
    int id;
    char digit;
};

const MifDigitCase kMifDigits[] = {{22, '1'}, {38, '1'}, {24, '2'}, {41, '2'}, {25, '3'},
                                   {40, '3'}, {26, '4'}, {42, '4'}, {31, '5'}, {39, '5'}};

TEST(TvCharConverter, DigitOfEachMifCodePage)
{
    for (const MifDigitCase& c : kMifDigits) {
        const auto id = static_cast<code_page_id>(c.id);
        EXPECT_EQ(TvCharConverter::getMIFIndex(id), c.digit) << c.id;
        EXPECT_TRUE(TvCharConverter::isMBCBCodepage(id)) << c.id;
        EXPECT_TRUE(TvCharConverter::isMIFCodepage(id)) << c.id;
    }
}

TEST(TvCharConverter, OtherIdsHaveTheDigitZeroAndAreNoMifCodePages)
{
    for (int id = -2; id <= 48; ++id) {
        bool listed = false;
        for (const MifDigitCase& c : kMifDigits)
            listed |= c.id == id;
        if (listed)
            continue;
        EXPECT_EQ(TvCharConverter::getMIFIndex(static_cast<code_page_id>(id)), '0') << id;
        EXPECT_FALSE(TvCharConverter::isMBCBCodepage(static_cast<code_page_id>(id))) << id;
        EXPECT_FALSE(TvCharConverter::isMIFCodepage(static_cast<code_page_id>(id))) << id;
    }
}

TEST(TvCharConverter, OlderIdsFoldOntoTheAnsiOnes)
{
    const int folded[][2] = {{22, 38}, {24, 41}, {25, 40}, {26, 42}, {31, 39}};
    for (const auto& pair : folded)
        EXPECT_EQ(TvCharConverter::checkTheSameCP(static_cast<code_page_id>(pair[0])), pair[1]);
}

TEST(TvCharConverter, OtherIdsFoldOntoThemselves)
{
    for (int id = -2; id <= 48; ++id) {
        if (id != 22 && id != 24 && id != 25 && id != 26 && id != 31) {
            EXPECT_EQ(TvCharConverter::checkTheSameCP(static_cast<code_page_id>(id)), id);
        }
    }
    EXPECT_EQ(TvCharConverter::checkTheSameCP(static_cast<code_page_id>(-2147483647 - 1)), -2147483647 - 1);
}

TEST(TvCharConverter, WideDigitsBeyondAsciiAreNone)
{
    // Full-width and Arabic-Indic zero, and a value whose low byte is '1'.
    for (const wchar_t c :
         {wchar_t(0xFF10), wchar_t(0x0660), wchar_t(0x0131), wchar_t(0x7FFFFF31), wchar_t(-207)}) {
        EXPECT_FALSE(TvCharConverter::isDigit(c));
        EXPECT_FALSE(TvCharConverter::isHexDigit(c));
        EXPECT_EQ(TvCharConverter::hexValue(c), 0u);
        EXPECT_EQ(TvCharConverter::getMIFCodepage(c), CP_UNDEFINED);
    }
}

TEST(TvCharConverter, BytesAboveAsciiAreNoDigits)
{
    for (int byte = 0x80; byte <= 0xFF; ++byte) {
        EXPECT_FALSE(TvCharConverter::isHexDigit(static_cast<char>(byte)));
        EXPECT_FALSE(TvCharConverter::isHexDigit(static_cast<unsigned char>(byte)));
    }
}

TEST(isCIForMIF, NamesTheFormOfTheEscape)
{
    EXPECT_EQ(isCIForMIF(L"\\U+00B0"), 'u');
    EXPECT_EQ(isCIForMIF(L"\\u+00b0 text"), 'u');
    EXPECT_EQ(isCIForMIF(L"\\M+1815F"), 'm');
    EXPECT_EQ(isCIForMIF(L"\\m+5b0a1"), 'm');
}

TEST(isCIForMIF, IsZeroForOtherText)
{
    EXPECT_EQ(isCIForMIF(L"\\U+00G0"), 0);
    EXPECT_EQ(isCIForMIF(L"\\M+6815F"), 0);
    EXPECT_EQ(isCIForMIF(L"text"), 0);
    EXPECT_EQ(isCIForMIF(L""), 0);
    EXPECT_EQ(isCIForMIF(nullptr), 0);
}

TEST(isCIForMIF, RefusesTheDigitZeroThatIsMifAccepts)
{
    EXPECT_TRUE(TvCharConverter::isMIF(L"\\M+0815F"));
    EXPECT_EQ(isCIForMIF(L"\\M+0815F"), 0);
}

} // namespace
