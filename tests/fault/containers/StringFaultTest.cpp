#include "TvStringA.h"

#include "FailNth.h"
#include "Recorder.h"
#include "SwitchableAllocator.h"
#include "TvPlatformBase.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

const std::string kShort = "abc";
const std::string kLong(300, 'x');
const std::string kLonger(3000, 'y');

// Whether the string is sound and has this text.
bool is(const TvStringA& string, const std::string& text)
{
    return TvDetail::StringCheck::faultOf(string) == nullptr && text == string.constStr();
}

// Every way to change a string, on one that shares its text: it has the old text or the new
// one, the other string keeps its own.
void useStrings()
{
    const int systemPage = static_cast<int>(GetACP());
    const TvStringA made(kShort.c_str());
    ASSERT_TRUE(is(made, kShort) || is(made, ""));
    ASSERT_TRUE(made.header()->codepage == systemPage || made.isEmpty());
    const std::string text(made.constStr());

    TvStringA string(made);
    const bool assigned = string.assign(kLong.c_str());
    ASSERT_TRUE(is(string, assigned ? kLong : text));
    const std::string before(string.constStr());

    TvStringA copy(string);
    const bool assignedLonger = copy.assign(kLonger.c_str());
    ASSERT_TRUE(is(copy, assignedLonger ? kLonger : before));

    copy = string;
    if (char* const own = copy.rawStr()) {
        own[0] = '#';
        ASSERT_EQ(copy.constStr(), "#" + before.substr(1));
    }
    copy = string;
    copy.setCodepage(1);
    ASSERT_TRUE(copy.header()->codepage == 1 || copy.header() == string.header());
    copy = string;
    if (char* const room = copy.getBuffer(1000)) {
        std::memcpy(room, kLong.c_str(), kLong.size() + 1);
        copy.releaseBuffer(-1);
        ASSERT_EQ(copy.constStr(), kLong);
    }
    copy = string;
    copy.releaseBuffer(1);
    ASSERT_TRUE(is(copy, before.substr(0, 1)) || is(copy, before));
    ASSERT_TRUE(is(string, before));
    ASSERT_TRUE(is(made, text));
}

class StringFault : public testing::TestWithParam<FailNth::Length> {};

TEST_P(StringFault, StringsStayWhole)
{
    for (int nth = 1;; ++nth) {
        SCOPED_TRACE(nth);
        HeapBalance balance;
        const std::uint32_t empties = TvStrHeaderA::sm_EmptyStrA.refCount;
        FailNth fail(FailNth::Malloc, nth, GetParam());
        useStrings();
        EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, empties);
        if (!fail.fired() || HasFatalFailure())
            break;
    }
}

INSTANTIATE_TEST_SUITE_P(All, StringFault, testing::Values(FailNth::Once, FailNth::FromThenOn),
                         [](const auto& test) { return test.param == FailNth::Once ? "One" : "Every"; });

// Without a report, too.
class NoMemory : public testing::Test {
protected:
    NoMemory() : string("abc"), copy(string) { string.setCodepage(932); }
    ~NoMemory() override { EXPECT_TRUE(recorder.faults().empty()); }

    TvStringA string; // of one holder
    TvStringA copy;   // shares with `other`
    TvStringA other{copy};
    Recorder recorder;
};

TEST_F(NoMemory, NewStringIsEmptyWithoutCodePage)
{
    FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
    const TvStringA made("abc");
    EXPECT_TRUE(none.fired());
    EXPECT_TRUE(made.isEmpty());
    EXPECT_EQ(made.header()->codepage, 0);
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.codepage, 0);
}

TEST_F(NoMemory, NewStringWithRoomForTheHeaderAloneHasTheCodePage)
{
    FailNth first(FailNth::Malloc, 1);
    const TvStringA made("abc");
    EXPECT_TRUE(first.fired());
    EXPECT_TRUE(made.isEmpty());
    EXPECT_EQ(made.header()->codepage, static_cast<int>(GetACP()));
}

TEST_F(NoMemory, AssignToASharedTextAnswersFalse)
{
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        EXPECT_FALSE(copy.assign("xy"));
    }
    EXPECT_STREQ(copy, "abc");
    EXPECT_STREQ(other, "abc");
    EXPECT_EQ(copy.numOfChars(), 3u);
}

TEST_F(NoMemory, AssignOfMoreThanThereIsRoomForAnswersFalse)
{
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        EXPECT_FALSE(string.assign("12345678"));
    }
    EXPECT_STREQ(string, "abc");
    EXPECT_EQ(string.numOfChars(), 3u);
    EXPECT_EQ(string.header()->codepage, 932);
}

TEST_F(NoMemory, AssignWithinTheRoomNeedsNone)
{
    FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
    EXPECT_TRUE(string.assign("xyz"));
    EXPECT_STREQ(string, "xyz");
    EXPECT_FALSE(none.fired());
}

TEST_F(NoMemory, EmptyingNeedsNone)
{
    FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
    copy.setEmpty();
    string.releaseBuffer(0);
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_TRUE(string.isEmpty());
    EXPECT_FALSE(none.fired());
}

TEST_F(NoMemory, RawStrOfASharedTextIsNull)
{
    FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
    EXPECT_EQ(copy.rawStr(), nullptr);
    EXPECT_STREQ(copy, "abc");
}

TEST_F(NoMemory, GetBufferIsNullAndLeavesTheLength)
{
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        EXPECT_EQ(string.getBuffer(100), nullptr);
        EXPECT_EQ(copy.getBuffer(2), nullptr);
    }
    EXPECT_EQ(string.numOfChars(), 3u);
    EXPECT_EQ(other.numOfChars(), 3u);
}

TEST_F(NoMemory, GetBufferOfAnEmptyStringLeavesTheEmptyHeader)
{
    TvStringA empty;
    empty.setEmpty();
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        EXPECT_EQ(empty.getBuffer(2), nullptr);
    }
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.count, 0u);
    EXPECT_TRUE(empty.isEmpty());
}

TEST_F(NoMemory, SetCodepageLeavesTheSharedHeader)
{
    TvStringA empty;
    empty.setEmpty();
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        copy.setCodepage(936);
        empty.setCodepage(936);
    }
    EXPECT_EQ(other.header()->codepage, static_cast<int>(GetACP()));
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.codepage, 0);
}

TEST_F(NoMemory, ReleaseBufferLeavesTheSharedText)
{
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        copy.releaseBuffer(1);
    }
    EXPECT_STREQ(other, "abc");
    EXPECT_STREQ(copy, "abc");
}

using Buffer = TvMemData<char, TvStrHeaderA, SwitchableAllocator>;

struct BufferCase {
    const char* name;
    bool (*call)(Buffer&);
};

const BufferCase kBufferCases[] = {
    {"Assign", [](Buffer& b) { return b.assign("0123456789", 10); }},
    {"GetBuffer", [](Buffer& b) { return b.getBuffer(10) != nullptr; }},
    {"CopyBeforeWrite", [](Buffer& b) { return b.copyBeforeWrite(10); }},
    {"Grow", [](Buffer& b) { return b.grow(10); }},
    {"ReallocData", [](Buffer& b) { return b.reallocData(2, 2); }},
};

class BufferWithoutMemory : public testing::TestWithParam<BufferCase> {
protected:
    BufferWithoutMemory() { buffer.assign("abc", 3); }
    ~BufferWithoutMemory() override { SwitchableAllocator::clear(); }

    void expectNothing(const Buffer& other)
    {
        SwitchableAllocator::empty = true;
        EXPECT_FALSE(GetParam().call(buffer));
        EXPECT_EQ(buffer.header(), other.header());
        EXPECT_EQ(buffer.count(), 3u);
        EXPECT_EQ(buffer.header()->allocCount, 8u);
        EXPECT_EQ(std::memcmp(buffer.dataPtr(0), "abc", 3), 0);
        EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), nullptr);
    }

    Buffer buffer;
};

TEST_P(BufferWithoutMemory, KeepsItsOwnBlock) { expectNothing(buffer); }

TEST_P(BufferWithoutMemory, KeepsTheSharedBlock)
{
    const Buffer other(buffer);
    expectNothing(other);
    EXPECT_EQ(other.header()->refCount, 2u);
}

INSTANTIATE_TEST_SUITE_P(All, BufferWithoutMemory, testing::ValuesIn(kBufferCases),
                         [](const auto& test) { return test.param.name; });

TEST(BufferData, ToWriteToOfASharedBlockIsNullWithoutMemory)
{
    Buffer buffer;
    buffer.assign("abc", 3);
    const Buffer other(buffer);
    SwitchableAllocator::empty = true;
    EXPECT_EQ(buffer.rawData(), nullptr);
    EXPECT_FALSE(buffer.copyIfShared());
    EXPECT_EQ(buffer.header(), other.header());
    SwitchableAllocator::clear();
}

} // namespace
