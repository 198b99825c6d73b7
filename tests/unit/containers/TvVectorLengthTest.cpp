#include "TvVector.h"

#include "HugeRequests.h"
#include "Recorder.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <utility>
#include <vector>

namespace {

TEST(TvVector, NineAppendsGiveEightThenSixteen)
{
    TvVector<int> v;
    std::vector<int> lengths;
    for (int i = 0; i < 9; ++i) {
        v.append(i);
        lengths.push_back(v.physicalLength());
    }
    EXPECT_EQ(lengths, (std::vector<int>{8, 8, 8, 8, 8, 8, 8, 8, 16}));
}

TEST(TvVector, CapacityGrowsByEightAThousandTimes)
{
    TvVector<int> v;
    for (int i = 0; i < 8000; ++i) {
        v.append(i);
        ASSERT_EQ(v.physicalLength(), i / 8 * 8 + 8);
        ASSERT_EQ(TvDetail::VectorCheck::faultOf(v), nullptr);
    }
    for (int i = 0; i < 8000; ++i)
        ASSERT_EQ(v.asArrayPtr()[i], i);
}

TEST(TvVector, AMillionAppendsMoveTheElementsAFewTimes)
{
    TvVector<int> v;
    std::set<const int*> places;
    for (int i = 0; i < 1000000; ++i) {
        v.append(i);
        places.insert(v.asArrayPtr());
    }
    EXPECT_LT(places.size(), 50u);
}

TEST(TvVector, HiddenRoomIsAtMostHalfAsMuchAgain)
{
    TvVector<int> v;
    for (int i = 0; i < 10000; ++i) {
        v.append(i);
        ASSERT_LE(TvDetail::VectorCheck::roomOf(v), v.physicalLength() * 3 / 2);
    }
}

TEST(TvVector, FirstRequestIsExact)
{
    TvVector<int> v;
    v.reserve(1000);
    EXPECT_EQ(TvDetail::VectorCheck::roomOf(v), 1000);
}

TEST(TvVector, ResizeToMoreThanTheStepIsExact)
{
    TvVector<int> v;
    v.resize(9);
    EXPECT_EQ(v.length(), 9);
    EXPECT_EQ(v.physicalLength(), 9);
}

TEST(TvVector, ResizeToLessThanTheStepTakesTheStep)
{
    TvVector<int> v;
    v.resize(3);
    EXPECT_EQ(v.length(), 3);
    EXPECT_EQ(v.physicalLength(), 8);
}

TEST(TvVector, ResizeDownKeepsTheCapacity)
{
    TvVector<int> v = counting(20);
    v.resize(2);
    EXPECT_EQ(v.length(), 2);
    EXPECT_EQ(v.physicalLength(), 24);
}

TEST(TvVector, RemoveAllKeepsTheCapacity)
{
    TvVector<int> v = counting(20);
    v.removeAll();
    EXPECT_TRUE(v.isEmpty());
    EXPECT_EQ(v.physicalLength(), 24);
}

TEST(TvVector, RemoveAllOfACopyLeavesTheOther)
{
    const TvVector<int> v = counting(20);
    TvVector<int> copy(v);
    copy.removeAll();
    EXPECT_EQ(copy.length(), 0);
    EXPECT_EQ(copy.physicalLength(), 24);
    EXPECT_EQ(v.length(), 20);
}

TEST(TvVector, RemoveAllOfANewVectorChangesNothing)
{
    TvVector<int> v;
    v.removeAll();
    EXPECT_TRUE(sharesTheEmptyRecord(v));
}

TEST(TvVector, ReserveMakesExactlyThatRoom)
{
    TvVector<int> v = counting(5);
    v.reserve(100);
    EXPECT_EQ(v.physicalLength(), 100);
    EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(TvVector, ReserveBelowTheCapacityShrinks)
{
    TvVector<int> v = counting(20);
    v.reserve(21);
    EXPECT_EQ(v.physicalLength(), 21);
    EXPECT_EQ(v.length(), 20);
}

TEST(TvVector, ReserveBelowTheLengthCutsElementsOff)
{
    TvVector<int> v = counting(20);
    v.reserve(3);
    EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(v.physicalLength(), 3);
}

TEST(TvVector, ReserveOfTheSameCapacityStaysShared)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.reserve(8);
    EXPECT_EQ(std::as_const(copy).asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, ReserveUnsharesACopy)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.reserve(9);
    EXPECT_NE(std::as_const(copy).asArrayPtr(), v.asArrayPtr());
    EXPECT_EQ(v.physicalLength(), 8);
}

TEST(TvVector, PhysicalLengthZeroSharesTheEmptyRecordAgain)
{
    TvVector<int> v = counting(5);
    v.setPhysicalLength(0);
    EXPECT_TRUE(sharesTheEmptyRecord(v));
    EXPECT_EQ(v.length(), 0);
}

TEST(TvVector, NegativePhysicalLengthSharesTheEmptyRecord)
{
    Recorder recorder;
    TvVector<int> v = counting(5);
    v.setPhysicalLength(-1);
    EXPECT_TRUE(sharesTheEmptyRecord(v));
    EXPECT_TRUE(recorder.faults().empty());
}

TEST(TvVector, NegativePhysicalLengthOfANewVectorKeepsTheEmptyRecord)
{
    TvVector<int> v;
    v.setPhysicalLength(INT_MIN);
    EXPECT_TRUE(sharesTheEmptyRecord(v));
}

TEST(TvVector, NegativeLengthReportsAndChangesNothing)
{
    Recorder recorder;
    TvVector<int> v = counting(5);
    v.setLogicalLength(-1);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
    EXPECT_EQ(v.length(), 5);
}

TEST(TvVector, ResizeBeyondTheRangeReportsAndChangesNothing)
{
    Recorder recorder;
    TvVector<int> v = counting(5);
    v.resize(0x80000000u);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
    EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(TvVector, ReserveBeyondTheRangeReportsAndChangesNothing)
{
    for (unsigned int n : {0x80000000u, 0xFFFFFFFFu}) {
        Recorder recorder;
        TvVector<int> v = counting(5);
        v.reserve(n);
        EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory}) << n;
        EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2, 3, 4})) << n;
        EXPECT_EQ(v.physicalLength(), 8) << n;
    }
}

TEST(TvVector, ReserveBeyondTheRangeLeavesACopyShared)
{
    Recorder recorder;
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.reserve(0x80000000u);
    EXPECT_EQ(std::as_const(copy).asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, LengthThatNoMemoryHoldsReportsAndChangesNothing)
{
    Recorder recorder;
    TvVector<Mebibyte> v;
    v.setLogicalLength(INT_MAX);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
    EXPECT_EQ(v.length(), 0);
    EXPECT_EQ(v.physicalLength(), 0);
}

TEST(TvVector, CapacityThatNoMemoryHoldsReportsAndChangesNothing)
{
    Recorder recorder;
    TvVector<Mebibyte> v;
    v.setPhysicalLength(INT_MAX);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
    EXPECT_EQ(v.physicalLength(), 0);
}

} // namespace
