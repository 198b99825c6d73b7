#include "TvErrorStatus.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

namespace {

using namespace std::string_literals;

struct StatusCase {
    const char* name;
    Orna::ErrorStatus status;
    int number;
};

const StatusCase kStatusCases[] = {
    {"Ok", Orna::eOk, 0},
    {"InvalidInput", Orna::eInvalidInput, 2},
    {"OutOfMemory", Orna::eOutOfMemory, 6},
    {"InvalidIndex", Orna::eInvalidIndex, 24},
    {"FileOpenFailed", Orna::eFileOpenFailed, 53},
    {"FileNotFound", Orna::eFileNotFound, 72},
    {"BadMapFile", Orna::eBadMapFile, 74},
    {"FileAccessErr", Orna::eFileAccessErr, 364},
    {"NoFileName", Orna::eNoFileName, 365},
    {"FileLocked", Orna::eFileLocked, 433},
};

class Status : public testing::TestWithParam<StatusCase> {};

TEST_P(Status, HasItsNumber) { EXPECT_EQ(static_cast<int>(GetParam().status), GetParam().number); }

TEST_P(Status, IsWhatErrorTypeAnswers)
{
    EXPECT_EQ(TvErrorStatus(GetParam().status).errorType(), GetParam().status);
}

TEST_P(Status, IsInTheDescription)
{
    EXPECT_EQ(TvErrorStatus(GetParam().status).description(),
              L"error type: " + std::to_wstring(GetParam().number) + L"\tmessage:");
}

INSTANTIATE_TEST_SUITE_P(All, Status, testing::ValuesIn(kStatusCases),
                         [](const auto& test) { return test.param.name; });

TEST(ErrorStatus, IsASigned32BitInteger)
{
    EXPECT_TRUE((std::is_same_v<std::underlying_type_t<Orna::ErrorStatus>, int>));
}

TEST(TvException, DefaultsAreEmpty)
{
    const TvException e;
    EXPECT_EQ(e.inner, nullptr);
    EXPECT_EQ(e.file, L""s);
    EXPECT_EQ(e.line, 0);
}

TEST(TvException, KeepsThePointersItIsGiven)
{
    TvException cause;
    const wchar_t file[] = L"a.cpp";
    const TvException e(file, 7, &cause);
    EXPECT_EQ(e.inner, &cause);
    EXPECT_EQ(e.file, file);
    EXPECT_EQ(e.line, 7);
}

TEST(TvException, HasNoCauseUnlessOneIsGiven) { EXPECT_EQ(TvException(L"a.cpp", 7).inner, nullptr); }

TEST(TvException, DescribesItselfByItsName) { EXPECT_EQ(TvException().description(), L"TvException"s); }

TEST(TvException, CopyForgetsTheCauseAndKeepsThePlace)
{
    TvException cause;
    const TvException e(L"a.cpp", 7, &cause);
    const TvException copy(e);
    EXPECT_EQ(copy.inner, nullptr);
    EXPECT_EQ(copy.file, L"a.cpp"s);
    EXPECT_EQ(copy.line, 7);
}

TEST(TvException, AssignmentForgetsTheCauseAndTakesThePlace)
{
    TvException cause;
    TvException target(L"b.cpp", 9, &cause);
    target = TvException(L"a.cpp", 7, &cause);
    EXPECT_EQ(target.inner, nullptr);
    EXPECT_EQ(target.file, L"a.cpp"s);
    EXPECT_EQ(target.line, 7);
}

TEST(TvException, AssignmentToItselfChangesNothing)
{
    TvException cause;
    TvException e(L"a.cpp", 7, &cause);
    e = *&e;
    EXPECT_EQ(e.inner, &cause);
}

TEST(Code, IsZeroForARoot) { EXPECT_EQ(TvException().code(), 0); }
TEST(Code, IsZeroForAStatus) { EXPECT_EQ(TvErrorStatus(Orna::eOutOfMemory).code(), 0); }
TEST(Code, IsZeroForAMessage) { EXPECT_EQ(TvExceptionWithMsg(L"", 1, L"text").code(), 0); }

TEST(TvErrorStatus, FromACodeAloneHasNoPlaceAndNoMessage)
{
    const TvErrorStatus e(Orna::eOutOfMemory);
    EXPECT_EQ(e.inner, nullptr);
    EXPECT_EQ(e.file, L""s);
    EXPECT_EQ(e.line, 0);
    EXPECT_EQ(e.message, L""s);
}

TEST(TvErrorStatus, WithAPlaceHasNoMessage)
{
    const TvErrorStatus e(Orna::eOutOfMemory, L"a.cpp", 3);
    EXPECT_EQ(e.message, L""s);
    EXPECT_EQ(e.file, L"a.cpp"s);
    EXPECT_EQ(e.line, 3);
}

TEST(TvErrorStatus, DescriptionHasCodeAndMessage)
{
    const TvErrorStatus e(Orna::eFileLocked, L"title block", L"a.cpp", 3);
    EXPECT_EQ(e.description(), L"error type: 433\tmessage:title block"s);
}

TEST(TvErrorStatus, DescriptionOfANegativeCode)
{
    EXPECT_EQ(TvErrorStatus(static_cast<Orna::ErrorStatus>(INT_MIN)).description(),
              L"error type: -2147483648\tmessage:"s);
}

TEST(TvErrorStatus, NullMessageReadsAsEmpty)
{
    EXPECT_EQ(TvErrorStatus(Orna::eOk, nullptr, L"a.cpp", 3).description(), L"error type: 0\tmessage:"s);
}

TEST(TvErrorStatus, PercentSignsInAMessageAreText)
{
    EXPECT_EQ(TvErrorStatus(Orna::eOk, L"%s%n", L"", 0).description(), L"error type: 0\tmessage:%s%n"s);
}

TEST(TvErrorStatus, DescriptionIsMadeOnce)
{
    TvErrorStatus e(Orna::eOutOfMemory, L"first", L"", 0);
    const wchar_t* const text = e.description();
    e.message = L"second";
    EXPECT_EQ(e.description(), text);
    EXPECT_EQ(text, L"error type: 6\tmessage:first"s);
}

// "error type: 6\tmessage:" has 22 characters; 489 more make 511.
struct LengthCase {
    const char* name;
    std::size_t messageLength;
    std::size_t described;
};

const LengthCase kLengthCases[] = {
    {"OneBelow", 488, 488},
    {"JustFits", 489, 489},
    {"OneAbove", 490, 489},
    {"FarAbove", 100000, 489},
};

class LongMessage : public testing::TestWithParam<LengthCase> {};

TEST_P(LongMessage, IsCutAt511Characters)
{
    const std::wstring message(GetParam().messageLength, L'x');
    const TvErrorStatus e(Orna::eOutOfMemory, message.c_str(), L"", 0);
    EXPECT_EQ(e.description(), L"error type: 6\tmessage:" + std::wstring(GetParam().described, L'x'));
}

INSTANTIATE_TEST_SUITE_P(All, LongMessage, testing::ValuesIn(kLengthCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvErrorStatus, CopyHasAnEqualDescriptionOfItsOwn)
{
    auto e = std::make_unique<TvErrorStatus>(Orna::eOutOfMemory, L"text", L"a.cpp", 3);
    const wchar_t* const text = e->description();
    const TvErrorStatus copy(*e);
    EXPECT_NE(copy.description(), text);
    e.reset();
    EXPECT_EQ(copy.description(), L"error type: 6\tmessage:text"s);
    EXPECT_EQ(copy.errorType(), Orna::eOutOfMemory);
    EXPECT_EQ(copy.line, 3);
}

TEST(TvErrorStatus, CopyForgetsTheCause)
{
    TvException cause;
    TvErrorStatus e(Orna::eOutOfMemory);
    e.inner = &cause;
    EXPECT_EQ(TvErrorStatus(e).inner, nullptr);
}

TEST(TvErrorStatus, CopyBeforeTheFirstDescriptionSharesTheMessage)
{
    const wchar_t message[] = L"text";
    const TvErrorStatus e(Orna::eOutOfMemory, message, L"", 0);
    EXPECT_EQ(TvErrorStatus(e).message, message);
}

TEST(TvErrorStatus, AssignmentReplacesADescription)
{
    TvErrorStatus e(Orna::eOutOfMemory);
    e.description();
    TvErrorStatus other(Orna::eFileLocked, L"text", L"a.cpp", 3);
    other.description();
    e = other;
    EXPECT_EQ(e.description(), L"error type: 433\tmessage:text"s);
    EXPECT_NE(e.description(), other.description());
    EXPECT_EQ(e.errorType(), Orna::eFileLocked);
}

TEST(TvErrorStatus, AssignmentToItselfKeepsTheDescription)
{
    TvErrorStatus e(Orna::eOutOfMemory);
    const wchar_t* const text = e.description();
    e = *&e;
    EXPECT_EQ(e.description(), text);
}

TEST(TvExceptionWithMsg, CopiesItsMessage)
{
    wchar_t message[] = L"text";
    const TvExceptionWithMsg e(L"a.cpp", 3, message);
    message[0] = L'X';
    EXPECT_EQ(e.description(), L"text"s);
    EXPECT_EQ(e.file, L"a.cpp"s);
    EXPECT_EQ(e.line, 3);
    EXPECT_EQ(e.inner, nullptr);
}

TEST(TvExceptionWithMsg, KeepsTheCause)
{
    TvException cause;
    EXPECT_EQ(TvExceptionWithMsg(L"", 0, L"text", &cause).inner, &cause);
}

TEST(TvExceptionWithMsg, NullMessageReadsAsEmpty)
{
    EXPECT_EQ(TvExceptionWithMsg(L"", 0, nullptr).description(), L""s);
}

TEST(TvExceptionWithMsg, CopyOutlivesTheOriginal)
{
    auto e = std::make_unique<TvExceptionWithMsg>(L"a.cpp", 3, L"text");
    const TvExceptionWithMsg copy(*e);
    e.reset();
    EXPECT_EQ(copy.description(), L"text"s);
}

TEST(TvExceptionWithMsg, CopyForgetsTheCauseAndKeepsThePlace)
{
    TvException cause;
    const TvExceptionWithMsg e(L"a.cpp", 3, L"text", &cause);
    const TvExceptionWithMsg copy(e);
    EXPECT_EQ(copy.inner, nullptr);
    EXPECT_EQ(copy.file, L"a.cpp"s);
    EXPECT_EQ(copy.line, 3);
    EXPECT_EQ(e.inner, &cause);
}

TEST(TvExceptionWithMsg, AssignmentForgetsTheCause)
{
    TvException cause;
    TvExceptionWithMsg target(L"", 0, L"x", &cause);
    target = TvExceptionWithMsg(L"a.cpp", 3, L"text", &cause);
    EXPECT_EQ(target.inner, nullptr);
}

TEST(TvExceptionWithMsg, AssignmentOutlivesTheOriginal)
{
    auto e = std::make_unique<TvExceptionWithMsg>(L"a.cpp", 3, L"a longer text");
    TvExceptionWithMsg target(L"", 0, L"x");
    target = *e;
    e.reset();
    EXPECT_EQ(target.description(), L"a longer text"s);
    EXPECT_EQ(target.line, 3);
}

TEST(TvExceptionWithMsg, AssignmentToItselfKeepsTheMessage)
{
    TvExceptionWithMsg e(L"", 0, L"text");
    e = *&e;
    EXPECT_EQ(e.description(), L"text"s);
}

// Debuggers and crash handlers read these objects without the headers.
template<class T>
T fieldAt(const void* object, std::size_t offset)
{
    T value;
    std::memcpy(&value, static_cast<const char*>(object) + offset, sizeof value);
    return value;
}

using Slot = void (*)();

Slot slotOf(const void* object, int index) { return fieldAt<Slot*>(object, 0)[index]; }

TEST(Layout, TvException)
{
    TvException cause;
    const wchar_t file[] = L"a.cpp";
    const TvException e(file, 7, &cause);
    EXPECT_EQ(fieldAt<TvException*>(&e, 8), &cause);
    EXPECT_EQ(fieldAt<bool>(&e, 16), false);
    EXPECT_EQ(fieldAt<const wchar_t*>(&e, 24), file);
    EXPECT_EQ(fieldAt<int>(&e, 32), 7);
    EXPECT_EQ(sizeof e, 40u);
}

TEST(Layout, FlagIsCopied)
{
    TvException e;
    reinterpret_cast<char*>(&e)[16] = 1;
    const TvException copy(e);
    EXPECT_TRUE(fieldAt<bool>(&copy, 16));
}

TEST(Layout, TvErrorStatus)
{
    const wchar_t message[] = L"text";
    const TvErrorStatus e(Orna::eFileLocked, message, L"", 0);
    EXPECT_EQ(fieldAt<const wchar_t*>(&e, 40), message);
    EXPECT_EQ(fieldAt<const wchar_t*>(&e, 48), nullptr);
    EXPECT_EQ(fieldAt<int>(&e, 56), 433);
    const wchar_t* const text = e.description();
    EXPECT_EQ(fieldAt<const wchar_t*>(&e, 48), text);
}

TEST(Layout, TvExceptionWithMsg)
{
    const TvExceptionWithMsg e(L"", 0, L"text");
    EXPECT_EQ(fieldAt<const wchar_t*>(&e, 40), e.description());
    EXPECT_EQ(sizeof e, 48u);
}

TEST(Layout, ThirdSlotIsDescription)
{
    const TvExceptionWithMsg e(L"", 0, L"text");
    const auto description = reinterpret_cast<const wchar_t* (*)(const void*)>(slotOf(&e, 2));
    EXPECT_EQ(description(&e), L"text"s);
}

TEST(Layout, FourthSlotIsCode)
{
    const TvErrorStatus e(Orna::eFileLocked);
    const auto code = reinterpret_cast<int (*)(const void*)>(slotOf(&e, 3));
    EXPECT_EQ(code(&e), 0);
}

TEST(Layout, SecondSlotDeletes)
{
    auto* const e = new TvExceptionWithMsg(L"", 0, L"text"); // leak checkers see what stays
    reinterpret_cast<void (*)(void*)>(slotOf(e, 1))(e);
}

} // namespace
