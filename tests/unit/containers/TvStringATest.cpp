#include "TvStringA.h"

#include "GuardPage.h"
#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Base = TvStringT<char, TvStrHeaderA>;

// What GetACP() answers while it lives.
class AnsiCodePage {
public:
    explicit AnsiCodePage(unsigned int codePage) { tvPlatformSetACP(codePage); }
    ~AnsiCodePage() { tvPlatformSetACP(0); }
};

bool sharesTheEmptyHeader(const Base& string) { return string.header() == TvStrHeaderA::sEmptyHeader(); }

// A string of this text with a block of its own.
void expectText(const Base& string, const std::string& text)
{
    EXPECT_EQ(string.constStr(), text);
    EXPECT_EQ(string.numOfChars(), text.size());
    EXPECT_EQ(string.isEmpty(), text.empty());
    EXPECT_STREQ(TvDetail::StringCheck::faultOf(string), nullptr);
}

// A static constructor that may run before any of the library's own.
struct Early {
    TvStringA text{"early"};
    TvStringA none;
    int codepage = text.header()->codepage;
};
[[gnu::init_priority(101)]] Early g_early;

TEST(TvStringA, WorksInAStaticConstructor)
{
    expectText(g_early.text, "early");
    expectText(g_early.none, "");
    EXPECT_EQ(g_early.codepage, static_cast<int>(GetACP()));
}

TEST(TvStringA, EmptyHeaderIsOneZeroZeroEightWithoutCodePage)
{
    const TvStrHeaderA& empty = TvStrHeaderA::sm_EmptyStrA;
    EXPECT_EQ(TvStrHeaderA::sEmptyHeader(), &empty);
    EXPECT_EQ(empty.refCount, 1u);
    EXPECT_EQ(empty.count, 0u);
    EXPECT_EQ(empty.allocCount, 0u);
    EXPECT_EQ(empty.growth, 8u);
    EXPECT_EQ(empty.codepage, 0);
}

TEST(TvStringA, EmptyTextIsThatOfTheClass)
{
    EXPECT_STREQ(Base::kEmptyStr, "");
    EXPECT_EQ(TvStringA().constStr(), Base::kEmptyStr);
    EXPECT_EQ(static_cast<const char*>(TvStringA()), Base::kEmptyStr);
}

// Null and the empty text.
const char* const kNothing[] = {nullptr, ""};

class TvStringAOfNothing : public testing::TestWithParam<const char*> {};

TEST_P(TvStringAOfNothing, IsEmpty)
{
    TvStringA string(GetParam());
    expectText(string, "");
    EXPECT_EQ(string.rawStr(), nullptr);
    EXPECT_EQ(string.header()->count, 0u);
}

TEST_P(TvStringAOfNothing, HasItsOwnBlockForTheCodePage)
{
    const AnsiCodePage page(1250);
    const TvStringA string(GetParam());
    EXPECT_FALSE(sharesTheEmptyHeader(string));
    EXPECT_EQ(string.header()->allocCount, 0u);
    EXPECT_EQ(string.header()->codepage, 1250);
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.codepage, 0);
}

TEST_P(TvStringAOfNothing, LeavesNoHolderOfTheEmptyHeader)
{
    const std::uint32_t before = TvStrHeaderA::sm_EmptyStrA.refCount;
    const TvStringA string(GetParam());
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, before);
}

TEST_P(TvStringAOfNothing, BaseStringSharesTheEmptyHeader)
{
    const std::uint32_t before = TvStrHeaderA::sm_EmptyStrA.refCount;
    Base string(GetParam());
    EXPECT_TRUE(sharesTheEmptyHeader(string));
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, before + 1);
    expectText(string, "");
    EXPECT_EQ(string.rawStr(), nullptr);
}

TEST_P(TvStringAOfNothing, AssignedToATextSharesTheEmptyHeader)
{
    TvStringA string("abc");
    EXPECT_TRUE(string.assign(GetParam()));
    EXPECT_TRUE(sharesTheEmptyHeader(string));
    expectText(string, "");
}

TEST_P(TvStringAOfNothing, AssignedToAnEmptyStringChangesNothing)
{
    const AnsiCodePage page(1250);
    TvStringA string;
    const auto* const before = string.header();
    EXPECT_TRUE(string.assign(GetParam()));
    EXPECT_EQ(string.header(), before);
    EXPECT_EQ(string.header()->codepage, 1250);
}

INSTANTIATE_TEST_SUITE_P(All, TvStringAOfNothing, testing::ValuesIn(kNothing),
                         [](const auto& test) { return test.param ? "EmptyText" : "Null"; });

TEST(TvStringA, LiteralNullIsAText)
{
    EXPECT_TRUE(TvStringA(nullptr).isEmpty());
    EXPECT_TRUE(Base(nullptr).isEmpty());
}

TEST(TvStringA, DefaultIsAnEmptyTextInTheSystemCodePage)
{
    const AnsiCodePage page(936);
    const TvStringA string;
    expectText(string, "");
    EXPECT_EQ(string.header()->codepage, 936);
}

TEST(TvStringA, CountIncludesTheTerminator)
{
    const TvStringA string("ab");
    EXPECT_EQ(string.header()->count, 3u);
    EXPECT_EQ(string.numOfChars(), 2u);
    expectText(string, "ab");
}

struct RoomCase {
    const char* name;
    std::size_t length;
    std::uint64_t room;
};

const RoomCase kRoomCases[] = {
    {"One", 1, 8},        {"UpToAStep", 7, 8}, {"BeyondAStep", 8, 16},
    {"TwoSteps", 15, 16}, {"Many", 200, 208},  {"VeryMany", 100000, 100008},
};

class Room : public testing::TestWithParam<RoomCase> {};

TEST_P(Room, OfANewTextIsWholeSteps)
{
    const std::string text(GetParam().length, 'x');
    const TvStringA string(text.c_str());
    EXPECT_EQ(string.header()->allocCount, GetParam().room);
    EXPECT_EQ(string.header()->count, text.size() + 1);
    EXPECT_EQ(string.header()->growth, 8u);
    EXPECT_EQ(string.header()->refCount, 1u);
    expectText(string, text);
}

INSTANTIATE_TEST_SUITE_P(All, Room, testing::ValuesIn(kRoomCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvStringA, BytesAreTakenAsTheyAre)
{
    std::string text;
    for (int byte = 1; byte < 256; ++byte)
        text += static_cast<char>(byte);
    expectText(TvStringA(text.c_str()), text);
}

// Each length has its own way of being copied; the text ends where its memory does.
TEST(TvStringA, TextsOfEveryLengthAreWhole)
{
    for (std::size_t length = 0; length <= 140; ++length) {
        std::vector<char> text(length + 1, '\0');
        for (std::size_t i = 0; i < length; ++i)
            text[i] = static_cast<char>('!' + (i * 7 + length) % 90);
        expectText(TvStringA(text.data()), std::string(text.data()));
        EXPECT_EQ(std::strlen(text.data()), length);
    }
}

// Texts of every length, each at every distance from the end of a page that nothing follows.
TEST(TvStringA, TextIsReadNoFurtherThanItsPage)
{
    constexpr std::size_t most = 140;
    GuardedArray<char> memory(2 * most);
    const std::string front(most, 'x');
    for (std::size_t behind = 0; behind < 70; ++behind) {
        const std::string rest(behind, 'y');
        for (std::size_t length = 0; length < most; ++length) {
            const std::string text = front.substr(0, length) + '\0' + rest;
            const TvStringA s(memory.hold(text.data(), text.size()));
            ASSERT_EQ(std::string(s.constStr()), front.substr(0, length));
            ASSERT_EQ(s.numOfChars(), length);
        }
    }
}

TEST(TvStringA, CharactersFollowTheHeader)
{
    const TvStringA string("abc");
    EXPECT_EQ(reinterpret_cast<const char*>(string.header()) + 40, string.constStr());
}

TEST(TvStringA, IsOnePointer) { EXPECT_EQ(sizeof(TvStringA), sizeof(void*)); }

TEST(TvStringA, NewOneHasTheSystemCodePageOfTheMoment)
{
    const AnsiCodePage first(932);
    const TvStringA before("abc");
    const AnsiCodePage second(1251);
    const TvStringA after("abc");
    EXPECT_EQ(before.header()->codepage, 932);
    EXPECT_EQ(after.header()->codepage, 1251);
}

TEST(TvStringA, NewOneHasTheEnvironmentsCodePageAgainOnceNoneIsChosen)
{
    tvPlatformSetACP(0);
    const unsigned int environments = GetACP();
    tvPlatformSetACP(environments + 1);
    tvPlatformSetACP(0);
    EXPECT_EQ(TvStringA("abc").header()->codepage, static_cast<int>(environments));
}

TEST(TvStringA, CodePageTravelsWithTheText)
{
    TvStringA string("abc");
    string.setCodepage(949);
    const TvStringA copy(string);
    TvStringA assigned("def");
    assigned = string;
    EXPECT_EQ(copy.header()->codepage, 949);
    EXPECT_EQ(assigned.header()->codepage, 949);
}

TEST(TvStringA, SetCodepageUnsharesFirst)
{
    const AnsiCodePage page(1252);
    const TvStringA string("abc");
    TvStringA copy(string);
    copy.setCodepage(932);
    EXPECT_EQ(copy.header()->codepage, 932);
    EXPECT_EQ(string.header()->codepage, 1252);
    EXPECT_NE(copy.header(), string.header());
    EXPECT_EQ(copy.header()->allocCount, 4u);
    expectText(copy, "abc");
}

TEST(TvStringA, SetCodepageOfATextOfOneHolderStays)
{
    TvStringA string("abc");
    const auto* const before = string.header();
    string.setCodepage(932);
    EXPECT_EQ(string.header(), before);
    EXPECT_EQ(string.header()->codepage, 932);
}

TEST(TvStringA, SetCodepageOfAnEmptyStringLeavesTheEmptyHeader)
{
    TvStringA string("abc");
    string.setEmpty();
    string.setCodepage(932);
    EXPECT_EQ(string.header()->codepage, 932);
    EXPECT_FALSE(sharesTheEmptyHeader(string));
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.codepage, 0);
    expectText(string, "");
}

TEST(TvStringA, EmptiedStringForgetsItsCodePage)
{
    TvStringA string("abc");
    string.setEmpty();
    EXPECT_EQ(string.header()->codepage, 0);
    string.assign("def");
    EXPECT_EQ(string.header()->codepage, 0);
}

TEST(TvStringA, AssignedTextKeepsTheCodePageOfTheString)
{
    const AnsiCodePage page(1252);
    TvStringA string("abc");
    string.setCodepage(932);
    string.assign("def");
    EXPECT_EQ(string.header()->codepage, 932);
    string.assign("a text that needs a larger block");
    EXPECT_EQ(string.header()->codepage, 932);
}

TEST(TvStringA, TextOfATemporaryHasTheSystemCodePage)
{
    const AnsiCodePage page(1252);
    TvStringA string("abc");
    string.setCodepage(932);
    string = "def";
    EXPECT_EQ(string.header()->codepage, 1252);
    expectText(string, "def");
}

TEST(TvStringA, CopySharesAndLastHolderFrees)
{
    TvStringA* const string = new TvStringA("abc");
    TvStringA copy(*string);
    EXPECT_EQ(copy.constStr(), string->constStr());
    EXPECT_EQ(copy.header()->refCount, 2u);
    delete string;
    EXPECT_EQ(copy.header()->refCount, 1u);
    expectText(copy, "abc");
}

TEST(TvStringA, CopyOfAnEmptyStringSharesItsBlock)
{
    const TvStringA string;
    const TvStringA copy(string);
    EXPECT_EQ(copy.header(), string.header());
}

TEST(TvStringA, AssignSharesLikeTheOperator)
{
    const TvStringA string("abc");
    TvStringA other("def");
    other.assign(string);
    EXPECT_EQ(other.constStr(), string.constStr());
}

TEST(TvStringA, AssignmentToItselfChangesNothing)
{
    TvStringA string("abc");
    const auto* const before = string.header();
    string = *&string;
    string.assign(*&string);
    EXPECT_EQ(string.header(), before);
    EXPECT_EQ(before->refCount, 1u);
    expectText(string, "abc");
}

TEST(TvStringA, WritingACopyLeavesTheFirst)
{
    const TvStringA string("abc");
    TvStringA copy(string);
    copy.rawStr()[0] = 'X';
    expectText(copy, "Xbc");
    expectText(string, "abc");
}

TEST(TvStringA, RawStrOfOneHolderStaysWhereItIs)
{
    TvStringA string("abc");
    EXPECT_EQ(string.rawStr(), string.constStr());
}

TEST(TvStringA, AssignOfTheOwnText)
{
    TvStringA string("abc");
    EXPECT_TRUE(string.assign(string.constStr()));
    expectText(string, "abc");
}

TEST(TvStringA, AssignOfAPartOfTheOwnText)
{
    TvStringA string("abcdefgh");
    EXPECT_TRUE(string.assign(string.constStr() + 3));
    expectText(string, "defgh");
}

TEST(TvStringA, AssignOfAPartOfTheSharedOwnText)
{
    TvStringA string("abcdefgh");
    const TvStringA copy(string);
    EXPECT_TRUE(string.assign(string.constStr() + 3));
    expectText(string, "defgh");
    expectText(copy, "abcdefgh");
}

TEST(TvStringA, AssignOfTheEndOfTheOwnTextEmpties)
{
    TvStringA string("abc");
    EXPECT_TRUE(string.assign(string.constStr() + 3));
    EXPECT_TRUE(sharesTheEmptyHeader(string));
}

TEST(TvStringA, AssignOfAShorterTextKeepsTheBlock)
{
    TvStringA string("abcdefgh");
    const auto* const before = string.header();
    string.assign("xy");
    EXPECT_EQ(string.header(), before);
    EXPECT_EQ(before->allocCount, 16u);
    expectText(string, "xy");
}

TEST(TvStringA, GrowingTextDoublesItsRoom)
{
    TvStringA string(std::string(99, 'a').c_str());
    ASSERT_EQ(string.header()->allocCount, 104u);
    string.assign(std::string(104, 'b').c_str());
    EXPECT_EQ(string.header()->allocCount, 208u);
    expectText(string, std::string(104, 'b'));
}

TEST(TvStringA, GetBufferThenReleaseUpToTheFirstZero)
{
    TvStringA string;
    std::strcpy(string.getBuffer(10), "abc");
    string.releaseBuffer(-1);
    expectText(string, "abc");
}

TEST(TvStringA, GetBufferThenReleaseACount)
{
    TvStringA string;
    std::memcpy(string.getBuffer(10), "abcdef", 6);
    string.releaseBuffer(4);
    expectText(string, "abcd");
}

TEST(TvStringA, GetBufferMakesRoomAndLength)
{
    TvStringA string;
    string.getBuffer(10);
    EXPECT_EQ(string.numOfChars(), 10u);
    EXPECT_EQ(string.header()->count, 11u);
    EXPECT_EQ(string.header()->allocCount, 11u); // a block without room grows by what is asked
}

TEST(TvStringA, GetBufferOfAnEmptiedStringTakesWholeSteps)
{
    TvStringA string("x");
    string.setEmpty();
    string.getBuffer(10);
    EXPECT_EQ(string.header()->allocCount, 16u);
}

struct LengthCase {
    const char* name;
    int asked;
    std::uint64_t length; // of "abc"
};

const LengthCase kLengthCases[] = {
    {"Zero", 0, 3}, {"Negative", -1, 3}, {"Smallest", INT_MIN, 3},
    {"One", 1, 1},  {"Same", 3, 3},      {"More", 4, 4},
};

class GetBuffer : public testing::TestWithParam<LengthCase> {};

TEST_P(GetBuffer, OfATextHasItsLength)
{
    TvStringA string("abc");
    string.getBuffer(GetParam().asked);
    EXPECT_EQ(string.numOfChars(), GetParam().length);
}

TEST_P(GetBuffer, OfASharedTextLeavesTheOtherAndEndsWithZero)
{
    const TvStringA other("abc");
    TvStringA string(other);
    const char* const text = string.getBuffer(GetParam().asked);
    EXPECT_EQ(text[GetParam().length], '\0');
    EXPECT_EQ(std::strncmp(text, "abc", std::min<std::size_t>(3, GetParam().length)), 0);
    expectText(other, "abc");
}

INSTANTIATE_TEST_SUITE_P(All, GetBuffer, testing::ValuesIn(kLengthCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvStringA, GetBufferOfFewerKeepsTheRest)
{
    TvStringA string("abcdef");
    string.getBuffer(2);
    string.releaseBuffer(6);
    expectText(string, "abcdef");
}

TEST(TvStringA, GetBufferWithoutLengthOfAnEmptyStringIsATerminatedText)
{
    TvStringA string;
    EXPECT_STREQ(string.getBuffer(0), "");
    string.releaseBuffer(-1);
    expectText(string, "");
}

TEST(TvStringA, GetBufferOfMoreThanTheHeapHasInOnePieceIsNull)
{
    TvStringA string("abc");
    EXPECT_EQ(string.getBuffer(INT_MAX), nullptr);
    expectText(string, "abc");
}

TEST(TvStringA, ReleaseOfZeroEmpties)
{
    TvStringA string("abc");
    string.releaseBuffer(0);
    EXPECT_TRUE(sharesTheEmptyHeader(string));
    expectText(string, "");
}

TEST(TvStringA, ReleaseOfZeroLeavesAnEmptyStringItsBlock)
{
    TvStringA string;
    const auto* const before = string.header();
    string.releaseBuffer(0);
    EXPECT_EQ(string.header(), before);
}

TEST(TvStringA, ReleaseOfAnEmptyTextStaysEmpty)
{
    Base shared;
    TvStringA own;
    shared.releaseBuffer(-1);
    own.releaseBuffer(-1);
    EXPECT_TRUE(sharesTheEmptyHeader(shared));
    expectText(own, "");
}

TEST(TvStringA, ReleaseOfTextThatStartsWithZeroEmpties)
{
    TvStringA string;
    string.getBuffer(10)[0] = '\0';
    string.releaseBuffer(-1);
    EXPECT_TRUE(sharesTheEmptyHeader(string));
}

TEST(TvStringA, ReleaseIsCutToTheRoom)
{
    TvStringA string("abc");
    std::memcpy(string.getBuffer(7), "1234567", 7);
    string.releaseBuffer(INT_MAX);
    expectText(string, "1234567");
}

TEST(TvStringA, ReleaseOfAnEmptyStringIsCutToNothing)
{
    Base shared;
    TvStringA own;
    shared.releaseBuffer(5);
    own.releaseBuffer(5);
    EXPECT_TRUE(sharesTheEmptyHeader(shared));
    expectText(own, "");
}

TEST(TvStringA, ReleaseWithoutAZeroInTheRoomTakesTheRoom)
{
    TvStringA string("abc");
    std::memset(string.getBuffer(7), 'x', 8); // the place of the terminating 0, too
    string.releaseBuffer(-1);
    expectText(string, "xxxxxxx");
}

TEST(TvStringA, AnyNegativeReleaseIsUpToTheFirstZero)
{
    TvStringA string;
    std::strcpy(string.getBuffer(10), "abc");
    string.releaseBuffer(INT_MIN);
    expectText(string, "abc");
}

TEST(TvStringA, ReleaseOfASharedTextCutsThisStringAlone)
{
    const TvStringA string("abcdef");
    TvStringA copy(string);
    copy.releaseBuffer(2);
    expectText(copy, "ab");
    expectText(string, "abcdef");
}

TEST(TvStringA, ReleaseOfASharedTextIsCutToTheText)
{
    const TvStringA string("abc");
    TvStringA copy(string);
    copy.releaseBuffer(6);
    expectText(copy, "abc");
    expectText(string, "abc");
}

TEST(TvStringA, VectorsOfStringsShareTheirTexts)
{
    std::vector<TvStringA> strings;
    for (int i = 0; i < 100; ++i)
        strings.emplace_back(std::to_string(i).c_str());
    const std::vector<TvStringA> copies(strings);
    EXPECT_EQ(copies[42].header()->refCount, 2u);
    strings.clear();
    for (int i = 0; i < 100; ++i)
        expectText(copies[static_cast<std::size_t>(i)], std::to_string(i));
}

// One thread at a time; which one it is does not matter.
TEST(TvStringA, MayMoveToAnotherThreadWithAllThatShareIt)
{
    TvStringA string("abc"), copy(string);
    std::thread([&] {
        copy.rawStr()[0] = 'X';
        string.assign("a longer text of the other thread");
        TvStringA third(string);
        third.setCodepage(932);
    }).join();
    expectText(copy, "Xbc");
    expectText(string, "a longer text of the other thread");
    EXPECT_EQ(string.header()->refCount, 1u);
}

TEST(TvStringACheck, SeesWhatIsWrong)
{
    TvStringA string("abc");
    EXPECT_STREQ(TvDetail::StringCheck::faultOf(string), nullptr);
    string.rawStr()[3] = 'x';
    EXPECT_STREQ(TvDetail::StringCheck::faultOf(string), "no terminating 0");
    string.rawStr()[3] = '\0';
    TvStrHeaderA::sm_EmptyStrA.codepage = 1252;
    EXPECT_STREQ(TvDetail::StringCheck::faultOf(string), "the empty header has a code page");
    TvStrHeaderA::sm_EmptyStrA.codepage = 0;
}

} // namespace
