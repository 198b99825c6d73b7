#include "TvVectorData.h"

#include "TvVector.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace {

using IntData = TvVector<int>::Data;
using IntPtr = TvVector<int>::DataPtr;

TEST(TvVectorDataPtr, NullHasNoRecord)
{
    const IntPtr handle;
    EXPECT_TRUE(handle.isNull());
}

TEST(TvVectorDataPtr, TakesAReference)
{
    const IntPtr handle(new IntData(4, 8));
    EXPECT_FALSE(handle.isNull());
    EXPECT_EQ(handle.refCount(), 1);
    const IntPtr second(handle);
    EXPECT_EQ(handle.refCount(), 2);
}

TEST(TvVectorDataPtr, AssignReleasesTheOldAndTakesTheNew)
{
    IntPtr first(new IntData(4, 8));
    const IntPtr keeper(first);
    auto* const record = new IntData(4, 8);
    first.assign(record);
    EXPECT_EQ(keeper.refCount(), 1);
    EXPECT_EQ(record->refCount, 1);
}

TEST(TvVectorDataPtr, AssignOfTheHeldRecordDoesNothing)
{
    IntPtr handle(new IntData(4, 8));
    handle.assign(handle.get());
    handle = *&handle;
    EXPECT_EQ(handle.refCount(), 1);
}

TEST(TvVectorData, StartsUnheldWithTheLengthsAsked)
{
    const IntData data(4, 5);
    EXPECT_EQ(data.refCount, 0);
    EXPECT_EQ(data.logicalCnt, 0);
    EXPECT_EQ(data.physicalCnt, 4);
    EXPECT_EQ(static_cast<unsigned int>(data.growPolicy), 5u);
    EXPECT_NE(data.array, nullptr);
}

TEST(TvVectorData, WithoutRoomHasNoArray)
{
    const IntData data(0, 8);
    EXPECT_EQ(data.physicalCnt, 0);
    EXPECT_EQ(data.array, nullptr);
}

TEST(TvVectorData, CloneKeepsStepAndCapacity)
{
    IntData data(4, 5);
    data.array[0] = 11;
    data.array[1] = 12;
    data.logicalCnt = 2;
    const IntPtr clone(data.clone(9));
    EXPECT_EQ(clone->physicalCnt, 4);
    EXPECT_EQ(clone->logicalCnt, 2);
    EXPECT_EQ(static_cast<unsigned int>(clone->growPolicy), 5u);
    EXPECT_EQ(clone->array[1], 12);
}

// The order in which debuggers and checkers read a record.
TEST(Layout, RecordOfAVector)
{
    IntData data(4, 5);
    data.logicalCnt = 2;
    data.refCount = 3;
    std::int32_t counts[4];
    std::memcpy(counts, static_cast<const void*>(&data), sizeof counts);
    EXPECT_EQ(counts[0], 3);
    EXPECT_EQ(counts[1], 2);
    EXPECT_EQ(counts[2], 4);
    EXPECT_EQ(counts[3], 5);
    int* array;
    std::memcpy(&array, reinterpret_cast<const char*>(&data) + 16, sizeof array);
    EXPECT_EQ(array, data.array);
}

TEST(Layout, EmptyRecord)
{
    std::uint32_t words[6];
    std::memcpy(words, static_cast<const void*>(&gEmptyVectorData), sizeof words);
    EXPECT_EQ(words[1], 0u);
    EXPECT_EQ(words[2], 0u);
    EXPECT_EQ(words[3], 8u);
    EXPECT_EQ(words[4], 0xFFFFFFFFu);
    EXPECT_EQ(words[5], 0xFFFFFFFFu);
}

TEST(Layout, VectorAndHandleAreOnePointer)
{
    EXPECT_EQ(sizeof(TvVector<char>), sizeof(void*));
    EXPECT_EQ(sizeof(IntPtr), sizeof(void*));
    EXPECT_EQ(sizeof(TvVectorDefaultGrowPolicy), 4u);
    EXPECT_EQ(sizeof(TvVectorFlatMemBufGrowPolicy), 4u);
}

} // namespace
