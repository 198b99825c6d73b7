// TvCharOp::GetStringType().
#include "TvCharOp.h"

#include "CaseName.h"
#include "ScopedLocale.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr unsigned kType1 = 1;
constexpr unsigned short kUntouched = 0xBEEF;

struct TypeCase {
    const char* name;
    wchar_t wc;
    unsigned short type;
};

class StringTypeOf : public testing::TestWithParam<TypeCase> {};

TEST_P(StringTypeOf, IsTheSumOfItsClasses)
{
    const ScopedLocale plain("C");
    unsigned short type = kUntouched;
    EXPECT_TRUE(TvCharOp::GetStringType(kType1, &GetParam().wc, 1, &type));
    EXPECT_EQ(type, GetParam().type);
}

const TypeCase kTypes[] = {
    {"CapitalHexadecimal", L'A', 0x181},
    {"Capital", L'G', 0x101},
    {"SmallHexadecimal", L'f', 0x182},
    {"Small", L'z', 0x102},
    {"Digit", L'7', 0x84},
    {"Punctuation", L'!', 0x10},
    {"Symbol", L'+', 0x10},
    {"Blank", L' ', 0x48},
    {"Tab", L'\t', 0x68},
    {"LineFeed", L'\n', 0x28},
    {"Control", L'\x01', 0x20},
    {"Delete", L'\x7F', 0x20},
    {"Zero", L'\0', 0x20},
    {"NoCharacter", static_cast<wchar_t>(0x110000), 0},
    {"Negative", static_cast<wchar_t>(-2), 0},
};

INSTANTIATE_TEST_SUITE_P(Characters, StringTypeOf, testing::ValuesIn(kTypes), nameOfCase<TypeCase>);

TEST(StringType, FollowsTheLocale)
{
    const ScopedLocale unicode("C.UTF-8");
    if (!unicode.ok())
        GTEST_SKIP() << "no C.UTF-8";
    const wchar_t text[] = L"\x00C9\x00E9\x4E2D\x3002";
    unsigned short types[4] = {};
    EXPECT_TRUE(TvCharOp::GetStringType(kType1, text, 4, types));
    EXPECT_EQ(types[0], 0x101);
    EXPECT_EQ(types[1], 0x102);
    EXPECT_EQ(types[2], 0x100);
    EXPECT_EQ(types[3], 0x10);
}

TEST(StringType, LengthMinus1EndsAtThe0)
{
    std::vector<unsigned short> types(4, kUntouched);
    EXPECT_TRUE(TvCharOp::GetStringType(kType1, L"a1", -1, types.data()));
    EXPECT_EQ(types, (std::vector<unsigned short>{0x182, 0x84, kUntouched, kUntouched}));
}

TEST(StringType, GivenLengthGoesOverA0)
{
    const wchar_t text[] = {L'1', 0, L'2'};
    std::vector<unsigned short> types(3, kUntouched);
    EXPECT_TRUE(TvCharOp::GetStringType(kType1, text, 3, types.data()));
    EXPECT_EQ(types, (std::vector<unsigned short>{0x84, 0x20, 0x84}));
}

struct RefusedCase {
    const char* name;
    unsigned infoType;
    const wchar_t* src;
    int len;
};

class StringTypeRefused : public testing::TestWithParam<RefusedCase> {};

TEST_P(StringTypeRefused, GivesFalseAndLeavesTheTypes)
{
    unsigned short type = kUntouched;
    EXPECT_FALSE(TvCharOp::GetStringType(GetParam().infoType, GetParam().src, GetParam().len, &type));
    EXPECT_EQ(type, kUntouched);
}

const RefusedCase kRefused[] = {
    {"NullSource", 1, nullptr, 1},
    {"NullSourceToItsEnd", 1, nullptr, -1},
    {"SecondKind", 2, L"a", 1},
    {"ThirdKind", 4, L"a", 1},
    {"NoKind", 0, L"a", 1},
    {"NoLength", 1, L"a", 0},
    {"EmptyText", 1, L"", -1},
    {"NegativeLength", 1, L"a", -2},
    {"AllKindsButTheFirst", ~1u, L"a", 1},
};

INSTANTIATE_TEST_SUITE_P(Arguments, StringTypeRefused, testing::ValuesIn(kRefused), nameOfCase<RefusedCase>);

TEST(StringType, FurtherKindsBesideTheFirstDoNotMatter)
{
    unsigned short type = 0;
    EXPECT_TRUE(TvCharOp::GetStringType(7, L"a", 1, &type));
    EXPECT_EQ(type, 0x182);
}

TEST(StringType, NowhereToWriteIsRefused) { EXPECT_FALSE(TvCharOp::GetStringType(kType1, L"a", 1, nullptr)); }

} // namespace
