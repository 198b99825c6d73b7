#include "TvMemData.h"

#include "SwitchableAllocator.h"
#include "TvStringA.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using Buffer = TvMemData<char, TvStrHeaderA, SwitchableAllocator>;
using Wide = TvMemData<wchar_t, TvMemDataHeader, SwitchableAllocator>;

constexpr std::uint64_t kMost = std::numeric_limits<std::uint64_t>::max();
volatile std::uint64_t g_most = kMost; // where the compiler would warn of a size that large
constexpr std::uint32_t kLocked = 0xFFFFFFFF;

class TvMemDataTest : public testing::Test {
protected:
    TvMemDataTest()
    {
        SwitchableAllocator::clear();
        m_emptyHolders = TvStrHeaderA::sm_EmptyStrA.refCount;
    }
    ~TvMemDataTest() override
    {
        EXPECT_TRUE(SwitchableAllocator::blocks.empty());
        EXPECT_EQ(SwitchableAllocator::wrongFrees, 0);
        EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, m_emptyHolders);
    }

    static std::string textOf(const Buffer& buffer)
    {
        return buffer.isEmpty() ? "" : std::string(buffer.rawData(), buffer.count());
    }

    static Buffer made(const std::string& text)
    {
        Buffer buffer;
        buffer.assign(text.data(), text.size());
        return buffer;
    }

    static void expectSound(const Buffer& buffer)
    {
        EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), nullptr);
    }

private:
    std::uint32_t m_emptyHolders;
};

TEST(TvMemDataHeader, FieldsLieInOrder)
{
    static_assert(std::is_standard_layout_v<TvMemDataHeader>);
    EXPECT_EQ(offsetof(TvMemDataHeader, refCount), 0u);
    EXPECT_EQ(offsetof(TvMemDataHeader, count), 8u);
    EXPECT_EQ(offsetof(TvMemDataHeader, allocCount), 16u);
    EXPECT_EQ(offsetof(TvMemDataHeader, growth), 24u);
    EXPECT_EQ(sizeof(TvMemDataHeader), 32u);
    static_assert(std::is_same_v<decltype(TvMemDataHeader::refCount), std::uint32_t>);
}

TEST(TvMemDataHeader, TakesItsFieldsInOrder)
{
    const TvMemDataHeader header(1, 2, 3, 4);
    EXPECT_EQ(header.refCount, 1u);
    EXPECT_EQ(header.count, 2u);
    EXPECT_EQ(header.allocCount, 3u);
    EXPECT_EQ(header.growth, 4u);
}

TEST(TvMemDataHeader, CopyIsHeldByNobody)
{
    const TvMemDataHeader header(7, 2, 3, 4);
    const TvMemDataHeader copy(header);
    EXPECT_EQ(copy.refCount, 0u);
    EXPECT_EQ(copy.count, 2u);
    EXPECT_EQ(copy.allocCount, 3u);
    EXPECT_EQ(copy.growth, 4u);
}

TEST(TvMemDataHeader, EmptyOneIsOneZeroZeroEight)
{
    const TvMemDataHeader& empty = TvMemDataHeader::sm_EmptyHeader;
    EXPECT_EQ(TvMemDataHeader::sEmptyHeader(), &empty);
    EXPECT_EQ(empty.refCount, 1u);
    EXPECT_EQ(empty.count, 0u);
    EXPECT_EQ(empty.allocCount, 0u);
    EXPECT_EQ(empty.growth, 8u);
}

TEST(TvStrHeaderA, AddsTheCodePage)
{
    const TvStrHeaderA header(1252);
    EXPECT_EQ(header.refCount, 1u);
    EXPECT_EQ(header.count, 0u);
    EXPECT_EQ(header.allocCount, 0u);
    EXPECT_EQ(header.growth, 8u);
    EXPECT_EQ(header.codepage, 1252);
    EXPECT_EQ(reinterpret_cast<const char*>(&header.codepage) - reinterpret_cast<const char*>(&header), 32);
    EXPECT_EQ(sizeof(TvStrHeaderA), 40u);
}

TEST(TvStrHeaderA, CopyKeepsTheCodePage)
{
    TvStrHeaderA header(1252);
    header.setCodepage(936);
    const TvStrHeaderA copy(header);
    EXPECT_EQ(copy.codepage, 936);
    EXPECT_EQ(copy.refCount, 0u);
}

TEST(TvPodReallocator, CopiesAsManyElementsAsTold)
{
    wchar_t to[] = L"....";
    TvPodReallocator<wchar_t>::_copy(to, L"ab", 2);
    EXPECT_STREQ(to, L"ab..");
    TvPodReallocator<wchar_t>::_constructn(to + 2, L"cd", 1);
    EXPECT_STREQ(to, L"abc.");
}

TEST(TvPodReallocator, NothingToCopyNeedsNoMemory)
{
    TvPodReallocator<char>::_copy(nullptr, nullptr, 0);
    TvPodReallocator<char>::_constructn(nullptr, nullptr, 0);
}

TEST(TvPodReallocator, ElementsAreNotTouchedByThemselves)
{
    char text[] = "ab";
    TvPodReallocator<char>::_constructn(text, 2);
    TvPodReallocator<char>::_destructn(text, 2);
    EXPECT_STREQ(text, "ab");
}

TEST(TvMemDataAllocator, MemoryIsOfThePooledEntryPoints)
{
    void* const block = TvMemDataAllocator::_alloc(100);
    EXPECT_GE(_tvMsize(block), 100u);
    TvMemDataAllocator::_dealloc(block);
}

TEST_F(TvMemDataTest, IsOnePointer)
{
    EXPECT_EQ(sizeof(Buffer), sizeof(void*));
    const Buffer buffer = made("abc");
    void* pointer;
    std::memcpy(&pointer, static_cast<const void*>(&buffer), sizeof(pointer));
    EXPECT_EQ(pointer, buffer.rawData());
}

TEST_F(TvMemDataTest, NewOneSharesTheEmptyHeader)
{
    const std::uint32_t before = TvStrHeaderA::sm_EmptyStrA.refCount;
    const Buffer buffer;
    EXPECT_EQ(buffer.header(), TvStrHeaderA::sEmptyHeader());
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.refCount, before + 1);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_TRUE(buffer.isShared());
    EXPECT_FALSE(buffer.isLocked());
    EXPECT_EQ(buffer.count(), 0u);
    EXPECT_EQ(buffer.growth(), 8u);
    EXPECT_TRUE(SwitchableAllocator::requests.empty());
}

TEST_F(TvMemDataTest, EmptyOneHasNoData)
{
    Buffer buffer;
    EXPECT_EQ(buffer.rawData(), nullptr);
    EXPECT_EQ(std::as_const(buffer).rawData(), nullptr);
    EXPECT_EQ(buffer.header(), TvStrHeaderA::sEmptyHeader());
}

TEST_F(TvMemDataTest, HeaderStandsInFrontOfTheElements)
{
    const Buffer buffer = made("abc");
    EXPECT_EQ(reinterpret_cast<const char*>(buffer.header()) + sizeof(TvStrHeaderA), buffer.rawData());
    EXPECT_EQ(buffer.dataPtr(0), buffer.rawData());
    EXPECT_EQ(buffer.dataPtr(2), buffer.rawData() + 2);
}

TEST_F(TvMemDataTest, OneBlockHoldsHeaderAndElements)
{
    const Buffer buffer = made("abc");
    EXPECT_EQ(SwitchableAllocator::requests, std::vector<std::size_t>{40 + 8});
    EXPECT_EQ(SwitchableAllocator::blocks.count(const_cast<TvStrHeaderA*>(buffer.header())), 1u);
}

TEST_F(TvMemDataTest, LargerElementsAreCountedInElements)
{
    Wide wide;
    wide.assign(L"abc", 4);
    EXPECT_EQ(SwitchableAllocator::requests, std::vector<std::size_t>{32 + 8 * sizeof(wchar_t)});
    EXPECT_EQ(wide.count(), 4u);
    EXPECT_STREQ(wide.rawData(), L"abc");
}

TEST_F(TvMemDataTest, CopyShares)
{
    const Buffer buffer = made("abc");
    const Buffer copy(buffer);
    EXPECT_EQ(copy.header(), buffer.header());
    EXPECT_EQ(buffer.header()->refCount, 2u);
    EXPECT_TRUE(buffer.isShared());
}

struct HoldersCase {
    const char* name;
    std::uint32_t refCount;
    bool isShared;
};

// The number of holders is read with a sign.
const HoldersCase kHolders[] = {
    {"One", 1, false},
    {"Two", 2, true},
    {"LargestWithASign", 0x7FFFFFFF, true},
    {"SmallestWithASign", 0x80000000, false},
    {"OneBelowLocked", kLocked - 1, false},
};

class Holders : public TvMemDataTest, public testing::WithParamInterface<HoldersCase> {};

TEST_P(Holders, ShareTheBlock)
{
    Buffer buffer = made("abc");
    buffer.header()->refCount = GetParam().refCount;
    EXPECT_EQ(buffer.isShared(), GetParam().isShared);
    EXPECT_FALSE(buffer.isLocked());
    buffer.header()->refCount = 1;
}

INSTANTIATE_TEST_SUITE_P(All, Holders, testing::ValuesIn(kHolders),
                         [](const auto& test) { return test.param.name; });

TEST_F(TvMemDataTest, AssignmentSharesAndReleasesTheOldBlock)
{
    const Buffer buffer = made("abc");
    Buffer other = made("def");
    other = buffer;
    EXPECT_EQ(other.header(), buffer.header());
    EXPECT_EQ(SwitchableAllocator::blocks.size(), 1u);
}

TEST_F(TvMemDataTest, AssignmentToItselfChangesNothing)
{
    Buffer buffer = made("abc");
    buffer.assign(*&buffer);
    buffer.assign(buffer.header());
    EXPECT_EQ(buffer.header()->refCount, 1u);
    EXPECT_EQ(textOf(buffer), "abc");
}

TEST_F(TvMemDataTest, AssignmentOfACopyChangesNothing)
{
    Buffer buffer = made("abc");
    Buffer copy(buffer);
    copy.assign(buffer);
    EXPECT_EQ(buffer.header()->refCount, 2u);
}

TEST_F(TvMemDataTest, HeaderCanBeAssigned)
{
    Buffer buffer = made("abc");
    Buffer other;
    other.assign(buffer.header());
    EXPECT_EQ(other.header(), buffer.header());
    EXPECT_EQ(buffer.header()->refCount, 2u);
}

TEST_F(TvMemDataTest, NullHeaderIsTheEmptyOne)
{
    Buffer buffer = made("abc");
    buffer.assign(static_cast<TvStrHeaderA*>(nullptr));
    EXPECT_EQ(buffer.header(), TvStrHeaderA::sEmptyHeader());
}

TEST_F(TvMemDataTest, SetEmptyReleasesTheBlock)
{
    Buffer buffer = made("abc");
    buffer.setEmpty();
    EXPECT_EQ(buffer.header(), TvStrHeaderA::sEmptyHeader());
    EXPECT_TRUE(SwitchableAllocator::blocks.empty());
}

TEST_F(TvMemDataTest, ReleasedOneHoldsNothing)
{
    Buffer buffer = made("abc");
    buffer.release();
    EXPECT_EQ(buffer.header(), nullptr);
    EXPECT_EQ(std::as_const(buffer).header(), nullptr);
    EXPECT_EQ(buffer.count(), 0u);
    EXPECT_EQ(buffer.growth(), 0u);
    EXPECT_TRUE(buffer.isEmpty());
    EXPECT_FALSE(buffer.isShared());
    EXPECT_FALSE(buffer.isLocked());
    EXPECT_EQ(buffer.rawData(), nullptr);
    EXPECT_EQ(std::as_const(buffer).rawData(), nullptr);
    EXPECT_TRUE(SwitchableAllocator::blocks.empty());
}

TEST_F(TvMemDataTest, ReleaseOfTheReleasedDoesNothing)
{
    Buffer buffer = made("abc");
    buffer.release();
    buffer.release();
    buffer.addRef();
    buffer.releaseBuffer(3);
    EXPECT_TRUE(buffer.copyIfShared());
    EXPECT_EQ(buffer.header(), nullptr);
}

TEST_F(TvMemDataTest, CopyOfTheReleasedHoldsNothingEither)
{
    Buffer buffer = made("abc");
    buffer.release();
    const Buffer copy(buffer);
    Buffer assigned = made("def");
    assigned = buffer;
    EXPECT_EQ(copy.header(), nullptr);
    EXPECT_EQ(assigned.header(), nullptr);
}

struct Revival {
    const char* name;
    void (*call)(Buffer&);
    std::uint64_t count;
};

const Revival kRevivals[] = {
    {"Assign", [](Buffer& b) { b.assign("ab", 2); }, 2},
    {"GetBuffer", [](Buffer& b) { b.getBuffer(3); }, 3},
    {"GetBufferOfNothing", [](Buffer& b) { b.getBuffer(0); }, 0},
    {"CopyBeforeWrite", [](Buffer& b) { b.copyBeforeWrite(4); }, 4},
    {"Grow", [](Buffer& b) { b.grow(5); }, 0},
    {"ReallocData", [](Buffer& b) { b.reallocData(0, 6); }, 0},
    {"SetEmpty", [](Buffer& b) { b.setEmpty(); }, 0},
};

class ReleasedBuffer : public TvMemDataTest, public testing::WithParamInterface<Revival> {};

TEST_P(ReleasedBuffer, TakesABlockAgain)
{
    Buffer buffer = made("abc");
    buffer.release();
    GetParam().call(buffer);
    ASSERT_NE(buffer.header(), nullptr);
    EXPECT_EQ(buffer.count(), GetParam().count);
    expectSound(buffer);
}

INSTANTIATE_TEST_SUITE_P(All, ReleasedBuffer, testing::ValuesIn(kRevivals),
                         [](const auto& test) { return test.param.name; });

TEST_F(TvMemDataTest, LastHolderFreesTheBlock)
{
    auto* const first = new Buffer(made("abc"));
    auto* const second = new Buffer(*first);
    delete first;
    EXPECT_EQ(SwitchableAllocator::blocks.size(), 1u);
    EXPECT_EQ(textOf(*second), "abc");
    delete second;
    EXPECT_TRUE(SwitchableAllocator::blocks.empty());
}

TEST_F(TvMemDataTest, ConstDataStaysShared)
{
    Buffer buffer = made("abc");
    const Buffer copy(buffer);
    EXPECT_EQ(copy.rawData(), std::as_const(buffer).rawData());
    EXPECT_EQ(buffer.header(), copy.header());
}

TEST_F(TvMemDataTest, DataToWriteToIsUnsharedWithoutRoomToSpare)
{
    const Buffer buffer = made("abc");
    Buffer copy(buffer);
    copy.rawData()[0] = 'X';
    EXPECT_EQ(textOf(copy), "Xbc");
    EXPECT_EQ(textOf(buffer), "abc");
    EXPECT_EQ(copy.header()->allocCount, 3u);
    EXPECT_EQ(copy.header()->refCount, 1u);
    EXPECT_EQ(buffer.header()->refCount, 1u);
}

TEST_F(TvMemDataTest, DataOfOneHolderStaysWhereItIs)
{
    Buffer buffer = made("abc");
    const char* const before = std::as_const(buffer).rawData();
    EXPECT_EQ(buffer.rawData(), before);
}

TEST_F(TvMemDataTest, CopyIfSharedOfTheEmptyHeaderMakesABlockWithoutElements)
{
    Buffer buffer;
    EXPECT_TRUE(buffer.copyIfShared());
    EXPECT_NE(buffer.header(), TvStrHeaderA::sEmptyHeader());
    EXPECT_EQ(buffer.header()->allocCount, 0u);
    EXPECT_EQ(SwitchableAllocator::requests, std::vector<std::size_t>{40});
    EXPECT_TRUE(buffer.isEmpty());
}

TEST_F(TvMemDataTest, NewBlockKeepsStepAndCodePage)
{
    Buffer buffer = made("abc");
    buffer.header()->growth = 5;
    buffer.header()->setCodepage(932);
    const Buffer copy(buffer);
    buffer.copyBeforeWrite(6);
    EXPECT_EQ(buffer.header()->growth, 5u);
    EXPECT_EQ(buffer.header()->codepage, 932);
    EXPECT_EQ(buffer.header()->allocCount, 10u);
}

TEST_F(TvMemDataTest, AssignCopiesTheElements)
{
    Buffer buffer;
    EXPECT_TRUE(buffer.assign("abc", 2));
    EXPECT_EQ(textOf(buffer), "ab");
    EXPECT_EQ(buffer.header()->refCount, 1u);
}

TEST_F(TvMemDataTest, AssignOfFewerKeepsTheBlock)
{
    Buffer buffer = made("abcdef");
    const auto* const block = buffer.header();
    buffer.assign("xy", 2);
    EXPECT_EQ(buffer.header(), block);
    EXPECT_EQ(textOf(buffer), "xy");
    EXPECT_EQ(buffer.header()->allocCount, 8u);
}

TEST_F(TvMemDataTest, AssignOfAsManyAsThereIsRoomForKeepsTheBlock)
{
    Buffer buffer = made("abc");
    const auto* const block = buffer.header();
    buffer.assign("12345678", 8);
    EXPECT_EQ(buffer.header(), block);
    EXPECT_EQ(textOf(buffer), "12345678");
}

TEST_F(TvMemDataTest, AssignOfOneMoreThanThereIsRoomForGrows)
{
    Buffer buffer = made("abc");
    buffer.assign("123456789", 9);
    EXPECT_EQ(buffer.header()->allocCount, 16u);
    EXPECT_EQ(textOf(buffer), "123456789");
}

TEST_F(TvMemDataTest, AssignToASharedBlockLeavesTheOther)
{
    const Buffer buffer = made("abc");
    Buffer copy(buffer);
    copy.assign("0123456789", 10);
    EXPECT_EQ(textOf(buffer), "abc");
    EXPECT_EQ(textOf(copy), "0123456789");
    EXPECT_EQ(copy.header()->allocCount, 16u);
}

TEST_F(TvMemDataTest, AssignOfNothingToASharedBlockMakesABlockWithoutElements)
{
    const Buffer buffer = made("abc");
    Buffer copy(buffer);
    copy.assign(nullptr, 0);
    EXPECT_TRUE(copy.isEmpty());
    EXPECT_EQ(copy.header()->allocCount, 0u);
    EXPECT_NE(copy.header(), TvStrHeaderA::sEmptyHeader());
    EXPECT_EQ(textOf(buffer), "abc");
}

TEST_F(TvMemDataTest, AssignOfOwnElementsInPlace)
{
    Buffer buffer = made("abcdefgh");
    buffer.assign(buffer.dataPtr(2), 5);
    EXPECT_EQ(textOf(buffer), "cdefg");
}

TEST_F(TvMemDataTest, AssignOfOwnElementsOfASharedBlock)
{
    const Buffer buffer = made("abcdefgh");
    Buffer copy(buffer);
    copy.assign(copy.dataPtr(2), 5);
    EXPECT_EQ(textOf(copy), "cdefg");
    EXPECT_EQ(textOf(buffer), "abcdefgh");
}

TEST_F(TvMemDataTest, GetBufferMakesTheCount)
{
    Buffer buffer;
    char* const elements = buffer.getBuffer(9);
    EXPECT_EQ(buffer.count(), 9u);
    EXPECT_EQ(buffer.header()->allocCount, 16u);
    EXPECT_EQ(elements, buffer.dataPtr(0));
}

TEST_F(TvMemDataTest, GetBufferOfZeroKeepsTheCountAndUnshares)
{
    const Buffer buffer = made("abc");
    Buffer copy(buffer);
    copy.getBuffer(0)[1] = 'X';
    EXPECT_EQ(textOf(copy), "aXc");
    EXPECT_EQ(textOf(buffer), "abc");
    EXPECT_EQ(copy.header()->allocCount, 8u);
}

TEST_F(TvMemDataTest, GetBufferOfFewerFreesNothing)
{
    Buffer buffer = made("abcdef");
    EXPECT_EQ(buffer.getBuffer(2), buffer.dataPtr(0));
    EXPECT_EQ(textOf(buffer), "ab");
    EXPECT_EQ(buffer.header()->allocCount, 8u);
}

TEST_F(TvMemDataTest, SharedBlockCutShortKeepsTheFirstElements)
{
    const Buffer buffer = made("abcdef");
    Buffer copy(buffer);
    copy.copyBeforeWrite(2);
    EXPECT_EQ(textOf(copy), "ab");
    EXPECT_EQ(copy.header()->allocCount, 8u);
    EXPECT_EQ(textOf(buffer), "abcdef");
}

TEST_F(TvMemDataTest, ReleaseBufferMakesTheCount)
{
    Buffer buffer;
    std::memcpy(buffer.getBuffer(10), "abc", 3);
    buffer.releaseBuffer(3);
    EXPECT_EQ(textOf(buffer), "abc");
}

TEST_F(TvMemDataTest, ReleaseBufferIsCutToTheRoom)
{
    Buffer buffer = made("abc");
    buffer.releaseBuffer(1000);
    EXPECT_EQ(buffer.count(), 8u);
    buffer.releaseBuffer(kMost);
    EXPECT_EQ(buffer.count(), 8u);
}

TEST_F(TvMemDataTest, ReleaseBufferOfAnEmptyBufferLeavesTheEmptyHeader)
{
    Buffer buffer;
    buffer.releaseBuffer(5);
    EXPECT_EQ(TvStrHeaderA::sm_EmptyStrA.count, 0u);
}

struct RoundCase {
    const char* name;
    std::uint64_t count, growth, capacity;
};

const RoundCase kRoundCases[] = {
    {"One", 1, 8, 8},
    {"OneBelowAStep", 7, 8, 8},
    {"AStep", 8, 8, 8},
    {"OneAboveAStep", 9, 8, 16},
    {"NoStep", 9, 0, 9},
    {"StepOfOne", 9, 1, 9},
    {"OddStep", 9, 5, 10},
    {"LargeStep", 9, 1000, 1000},
    {"Many", 100001, 8, 100008},
};

class SharedBlock : public TvMemDataTest, public testing::WithParamInterface<RoundCase> {};

TEST_P(SharedBlock, IsReplacedByWholeSteps)
{
    Buffer buffer = made("abc");
    buffer.header()->growth = GetParam().growth;
    const Buffer copy(buffer);
    buffer.copyBeforeWrite(GetParam().count);
    EXPECT_EQ(buffer.header()->allocCount, GetParam().capacity);
    EXPECT_EQ(buffer.count(), GetParam().count);
    EXPECT_EQ(textOf(copy), "abc");
}

INSTANTIATE_TEST_SUITE_P(All, SharedBlock, testing::ValuesIn(kRoundCases),
                         [](const auto& test) { return test.param.name; });

struct GrowCase {
    const char* name;
    std::uint64_t used, room, growth, more, capacity;
};

const GrowCase kGrowCases[] = {
    {"Nothing", 100, 100, 8, 0, 100},
    {"WithinTheRoom", 90, 100, 8, 9, 100},
    {"ToTheLastOfTheRoom", 90, 100, 8, 10, 100},
    {"OneMoreThanTheRoom", 90, 100, 8, 11, 200},
    {"ByOneDoubles", 100, 100, 8, 1, 200},
    {"ByAsManyAsThereAre", 100, 100, 8, 100, 200},
    {"ByMoreThanThereAre", 100, 100, 8, 101, 201},
    {"ByAtLeastTheStep", 4, 4, 8, 1, 12},
    {"ByTheStepOfALargeOne", 100, 100, 500, 1, 600},
    {"WithoutAStep", 100, 100, 0, 1, 200},
    {"FromNothing", 0, 0, 8, 1, 8},
    {"FromNothingWithoutAStep", 0, 0, 0, 3, 3},
    {"LastToDouble", 65535, 65535, 8, 1, 131070},
    {"AtTheEndOfDoubling", 65536, 65536, 8, 1, 131072},
    {"BeyondTheEndOfDoubling", 65537, 65537, 8, 1, 131073},
    {"FarBeyond", 200000, 200000, 8, 1, 265536},
    {"FarBeyondByMore", 200000, 200000, 8, 70000, 270000},
};

class Growth : public TvMemDataTest, public testing::WithParamInterface<GrowCase> {};

TEST_P(Growth, HasItsCapacity)
{
    const GrowCase& c = GetParam();
    Buffer buffer;
    ASSERT_TRUE(buffer.reallocData(c.used, c.room));
    std::memset(buffer.dataPtr(0), 'a', c.used);
    buffer.header()->growth = c.growth;
    ASSERT_EQ(buffer.header()->allocCount, c.room);
    EXPECT_TRUE(buffer.grow(c.more));
    EXPECT_EQ(buffer.header()->allocCount, c.capacity);
    EXPECT_EQ(buffer.count(), c.used);
    EXPECT_EQ(buffer.growth(), c.growth);
    EXPECT_EQ(textOf(buffer), std::string(c.used, 'a'));
}

TEST_P(Growth, IsThatOfAWrite)
{
    const GrowCase& c = GetParam();
    Buffer buffer;
    ASSERT_TRUE(buffer.reallocData(c.used, c.room));
    buffer.header()->growth = c.growth;
    EXPECT_TRUE(buffer.copyBeforeWrite(c.used + c.more));
    EXPECT_EQ(buffer.header()->allocCount, c.capacity);
    EXPECT_EQ(buffer.count(), c.used + c.more);
}

INSTANTIATE_TEST_SUITE_P(All, Growth, testing::ValuesIn(kGrowCases),
                         [](const auto& test) { return test.param.name; });

TEST_F(TvMemDataTest, ReallocDataTakesAtLeastTheCount)
{
    Buffer buffer = made("abc");
    EXPECT_TRUE(buffer.reallocData(5, 2));
    EXPECT_EQ(buffer.header()->allocCount, 5u);
    EXPECT_EQ(std::memcmp(buffer.dataPtr(0), "abc", 3), 0);
}

TEST_F(TvMemDataTest, ReallocDataToFewerCutsElementsOff)
{
    Buffer buffer = made("abc");
    EXPECT_TRUE(buffer.reallocData(2, 2));
    EXPECT_EQ(textOf(buffer), "ab");
    EXPECT_EQ(buffer.header()->allocCount, 2u);
    EXPECT_EQ(buffer.header()->refCount, 1u);
}

// A locked block: written in place by all, freed by none.
class LockedBlock : public TvMemDataTest {
protected:
    LockedBlock() : buffer(made("abc")), block(buffer.header()) { block->refCount = kLocked; }
    ~LockedBlock() override
    {
        buffer.setEmpty();
        EXPECT_EQ(SwitchableAllocator::blocks.count(block), 1u);
        SwitchableAllocator::_dealloc(block);
        buffer.release();
    }

    Buffer buffer;
    TvStrHeaderA* block;
};

TEST_F(LockedBlock, IsLockedAndNotShared)
{
    EXPECT_TRUE(buffer.isLocked());
    EXPECT_FALSE(buffer.isShared());
    expectSound(buffer);
}

TEST_F(LockedBlock, IsKeptByRelease)
{
    buffer.release();
    EXPECT_EQ(buffer.header(), block);
    EXPECT_EQ(block->refCount, kLocked);
}

TEST_F(LockedBlock, StaysLockedWhenItIsCopied)
{
    {
        const Buffer first(buffer), second(buffer);
        EXPECT_EQ(second.header(), block);
        EXPECT_EQ(block->refCount, kLocked);
    }
    EXPECT_EQ(block->refCount, kLocked);
    EXPECT_EQ(textOf(buffer), "abc");
}

TEST_F(LockedBlock, IsWrittenInPlace)
{
    const Buffer copy(buffer);
    buffer.rawData()[0] = 'X';
    EXPECT_EQ(buffer.header(), block);
    EXPECT_EQ(textOf(copy), "Xbc");
}

TEST_F(LockedBlock, IsLeftWhenItGrows)
{
    buffer.assign("0123456789", 10);
    EXPECT_NE(buffer.header(), block);
    EXPECT_EQ(buffer.header()->refCount, 1u);
    EXPECT_EQ(block->refCount, kLocked);
}

struct RefusedCase {
    const char* name;
    bool (*call)(Buffer&);
};

const RefusedCase kRefusedCases[] = {
    {"GrowByTheLargestNumber", [](Buffer& b) { return b.grow(kMost); }},
    {"GrowByWhatWrapsWithTheRoom", [](Buffer& b) { return b.grow(kMost - 7); }},
    {"WriteOfTheLargestNumber", [](Buffer& b) { return b.copyBeforeWrite(kMost); }},
    {"WriteOfWhatWrapsWithTheHeader", [](Buffer& b) { return b.copyBeforeWrite(kMost - 39); }},
    {"WriteOfWhatWrapsWhenRounded", [](Buffer& b) { return b.copyBeforeWrite(kMost - 3); }},
    {"GetBufferOfTheLargestNumber", [](Buffer& b) { return b.getBuffer(kMost) != nullptr; }},
    {"ReallocToTheLargestCapacity", [](Buffer& b) { return b.reallocData(1, kMost); }},
    {"AssignOfTheLargestNumber", [](Buffer& b) { return b.assign("x", g_most); }},
    {"MoreThanTheHeapHasInOnePiece", [](Buffer& b) { return b.copyBeforeWrite(0x80000000u); }},
};

class RefusedSize : public TvMemDataTest, public testing::WithParamInterface<RefusedCase> {};

TEST_P(RefusedSize, ChangesNothing)
{
    Buffer buffer = made("abc");
    SwitchableAllocator::requests.clear();
    EXPECT_FALSE(GetParam().call(buffer));
    EXPECT_EQ(textOf(buffer), "abc");
    EXPECT_EQ(buffer.header()->allocCount, 8u);
    expectSound(buffer);
}

TEST_P(RefusedSize, LeavesASharedBlockAlone)
{
    Buffer buffer = made("abc");
    const Buffer copy(buffer);
    EXPECT_FALSE(GetParam().call(buffer));
    EXPECT_EQ(buffer.header(), copy.header());
    EXPECT_EQ(textOf(copy), "abc");
}

TEST_P(RefusedSize, LeavesTheEmptyHeaderAlone)
{
    Buffer buffer;
    EXPECT_FALSE(GetParam().call(buffer));
    EXPECT_EQ(buffer.header(), TvStrHeaderA::sEmptyHeader());
    expectSound(buffer);
}

INSTANTIATE_TEST_SUITE_P(All, RefusedSize, testing::ValuesIn(kRefusedCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvMemDataCheck, SeesWhatIsWrong)
{
    TvMemData<char, TvStrHeaderA> buffer;
    buffer.assign("abc", 3);
    buffer.header()->refCount = 0;
    EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), "fewer holders than there are");
    buffer.header()->refCount = 1;
    buffer.header()->count = 9;
    EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), "more elements in use than allocated");
    buffer.header()->count = 3;
    TvStrHeaderA::sm_EmptyStrA.growth = 9;
    EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), "the empty header has changed");
    TvStrHeaderA::sm_EmptyStrA.growth = 8;
    EXPECT_STREQ(TvDetail::MemDataCheck::faultOf(buffer), nullptr);
}

} // namespace
