#include "TvVector.h"

#include "Recorder.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace {

// A static constructor that may run before any of the library's own.
struct Early {
    Early() : growLength(vector.growLength())
    {
        for (int i = 0; i < 9; ++i)
            vector.append(i);
    }
    TvVector<int> vector;
    int growLength;
};
[[gnu::init_priority(101)]] Early g_early;

TEST(TvVector, WorksInAStaticConstructor)
{
    EXPECT_EQ(g_early.growLength, 8);
    EXPECT_EQ(g_early.vector.length(), 9);
    EXPECT_EQ(g_early.vector.physicalLength(), 16);
}

TEST(TvVector, NewOneIsEmpty)
{
    const TvVector<int> v;
    EXPECT_EQ(v.length(), 0);
    EXPECT_EQ(v.logicalLength(), 0);
    EXPECT_EQ(v.physicalLength(), 0);
    EXPECT_EQ(v.growLength(), 8);
    EXPECT_TRUE(v.isEmpty());
    EXPECT_EQ(v.begin(), v.end());
}

TEST(TvVector, NewOneSharesTheEmptyRecord)
{
    const int before = gEmptyVectorData.refCount;
    const TvVector<int> v;
    EXPECT_EQ(gEmptyVectorData.refCount, before + 1);
    EXPECT_TRUE(sharesTheEmptyRecord(v));
}

TEST(TvVector, AllTypesShareOneEmptyRecord)
{
    const int before = gEmptyVectorData.refCount;
    {
        const TvVector<char> a;
        const TvVector<wchar_t> b;
        const TvVector<std::string> c;
        const ByteVector d;
        EXPECT_EQ(gEmptyVectorData.refCount, before + 4);
    }
    EXPECT_EQ(gEmptyVectorData.refCount, before);
}

TEST(TvVector, EmptyRecordIsThatOfThePointer)
{
    EXPECT_EQ(gpEmptyVectorData, &gEmptyVectorData);
    EXPECT_EQ(static_cast<void*>(TvVector<int>::rawEmptyData()), static_cast<void*>(&gEmptyVectorData));
    EXPECT_EQ(static_cast<void*>(TvVector<int>::emptyData().get()), static_cast<void*>(&gEmptyVectorData));
}

TEST(TvVector, CopyShares)
{
    const TvVector<int> v = counting(5);
    const TvVector<int> copy(v);
    EXPECT_EQ(copy.asArrayPtr(), v.asArrayPtr());
    EXPECT_EQ(elements(copy), elements(v));
}

TEST(TvVector, AssignmentShares)
{
    const TvVector<int> v = counting(5);
    TvVector<int> other = counting(3);
    other = v;
    EXPECT_EQ(other.asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, AssignmentToItselfChangesNothing)
{
    TvVector<int> v = counting(5);
    const int* const array = v.asArrayPtr();
    v = *&v;
    EXPECT_EQ(v.asArrayPtr(), array);
    EXPECT_EQ(v.length(), 5);
}

TEST(TvVector, ShorteningACopyUnsharesIt)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.setLogicalLength(3);
    EXPECT_EQ(elements(copy), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_NE(copy.asArrayPtr(), v.asArrayPtr());
    EXPECT_EQ(copy.physicalLength(), 8);
}

TEST(TvVector, LengtheningACopyWithinItsRoomUnsharesIt)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.setLogicalLength(8);
    EXPECT_EQ(copy.length(), 8);
    EXPECT_EQ(v.length(), 5);
    EXPECT_NE(copy.asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, LengtheningACopyBeyondItsRoomUnsharesIt)
{
    const TvVector<int> v = counting(8);
    TvVector<int> copy(v);
    copy.append(8);
    EXPECT_EQ(copy.length(), 9);
    EXPECT_EQ(copy.physicalLength(), 16);
    EXPECT_EQ(v.length(), 8);
    EXPECT_EQ(v.physicalLength(), 8);
}

TEST(TvVector, AppendingToACopyWithRoomLeavesTheOther)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.append(99);
    EXPECT_EQ(elements(copy), (std::vector<int>{0, 1, 2, 3, 4, 99}));
    EXPECT_EQ(elements(v), (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(TvVector, SameLengthStaysShared)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.setLogicalLength(5);
    EXPECT_EQ(copy.asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, PointersDoNotUnshare)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.asArrayPtr();
    copy.begin();
    copy.end();
    copy.last();
    EXPECT_EQ(std::as_const(copy).asArrayPtr(), v.asArrayPtr());
}

TEST(TvVector, AtUnshares)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.at(0) = 42;
    EXPECT_EQ(v.asArrayPtr()[0], 0);
    EXPECT_EQ(copy.asArrayPtr()[0], 42);
    EXPECT_EQ(copy.length(), 5);
}

TEST(TvVector, AtOfAGoodIndexReportsNothing)
{
    Recorder recorder;
    TvVector<int> v = counting(5);
    EXPECT_EQ(v.at(0), 0);
    EXPECT_EQ(v.at(4), 4);
    EXPECT_TRUE(recorder.faults().empty());
}

struct IndexCase {
    const char* name;
    int index;
    bool valid; // of five elements
};

const IndexCase kIndexCases[] = {
    {"First", 0, true},           {"Last", 4, true},
    {"Length", 5, false},         {"BeyondTheCapacity", 100, false},
    {"MinusOne", -1, false},      {"Largest", INT_MAX, false},
    {"Smallest", INT_MIN, false},
};

class Index : public testing::TestWithParam<IndexCase> {};

TEST_P(Index, IsValid) { EXPECT_EQ(counting(5).isValidIndex(GetParam().index), GetParam().valid); }

TEST_P(Index, AtReportsABadOneAndGivesTheAddress)
{
    Recorder recorder;
    TvVector<int> v = counting(5);
    const auto address = reinterpret_cast<std::uintptr_t>(&v.at(GetParam().index));
    const auto start = reinterpret_cast<std::uintptr_t>(v.asArrayPtr());
    EXPECT_EQ(address, start + static_cast<std::uintptr_t>(static_cast<std::intptr_t>(GetParam().index) * 4));
    EXPECT_EQ(recorder.statuses(),
              GetParam().valid ? std::vector<Orna::ErrorStatus>() : std::vector{Orna::eInvalidIndex});
}

INSTANTIATE_TEST_SUITE_P(All, Index, testing::ValuesIn(kIndexCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvVector, AtOfAnEmptyVectorReportsAndUnsharesTheEmptyRecord)
{
    Recorder recorder;
    TvVector<int> v;
    const auto* const address = &v.at(0);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eInvalidIndex});
    EXPECT_EQ(v.physicalLength(), 16);
    EXPECT_EQ(address, v.asArrayPtr());
}

TEST(TvVector, LastIsTheElementBeforeTheEnd)
{
    TvVector<int> v = counting(5);
    EXPECT_EQ(&v.last(), v.end() - 1);
    EXPECT_EQ(v.last(), 4);
}

TEST(TvVector, LastOfAnEmptyVectorReportsAndGivesTheAddress)
{
    Recorder recorder;
    TvVector<int> v;
    const auto address = reinterpret_cast<std::uintptr_t>(&v.last());
    EXPECT_EQ(address, reinterpret_cast<std::uintptr_t>(v.end()) - sizeof(int));
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eInvalidInput});
}

TEST(TvVector, LastOfAnEmptyVectorWithRoomReports)
{
    Recorder recorder;
    TvVector<int> v;
    v.reserve(4);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(&v.last()),
              reinterpret_cast<std::uintptr_t>(v.begin()) - sizeof(int));
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eInvalidInput});
}

TEST(TvVector, AppendOfAnOwnElementWhenFull)
{
    TvVector<std::string> v;
    for (int i = 0; i < 8; ++i)
        v.append(std::string(40, static_cast<char>('a' + i)));
    v.append(v.at(0));
    EXPECT_EQ(v.last(), std::string(40, 'a'));
    EXPECT_EQ(v.at(0), std::string(40, 'a'));
}

TEST(TvVector, AppendInternalGivesTheNewLastElement)
{
    TvVector<int> v = counting(5);
    v.appendInternal() = 77;
    EXPECT_EQ(v.length(), 6);
    EXPECT_EQ(v.last(), 77);
}

TEST(TvVector, CopyBeforeWriteOfOneHolderDoesNothing)
{
    TvVector<int> v = counting(5);
    const int* const array = v.asArrayPtr();
    v.copyBeforeWrite(2);
    EXPECT_EQ(v.asArrayPtr(), array);
    EXPECT_EQ(v.length(), 5);
}

struct CloneCase {
    const char* name;
    unsigned int count;
    int length; // of a copy of five elements
};

const CloneCase kCloneCases[] = {
    {"ZeroMeansAll", 0, 5}, {"One", 1, 1}, {"All", 5, 5}, {"More", 6, 5}, {"Huge", 0xFFFFFFFFu, 5},
};

class CopyBeforeWrite : public testing::TestWithParam<CloneCase> {};

TEST_P(CopyBeforeWrite, KeepsThatMany)
{
    const TvVector<int> v = counting(5);
    TvVector<int> copy(v);
    copy.copyBeforeWrite(GetParam().count);
    EXPECT_NE(std::as_const(copy).asArrayPtr(), v.asArrayPtr());
    EXPECT_EQ(copy.length(), GetParam().length);
    EXPECT_EQ(copy.physicalLength(), 8);
    EXPECT_EQ(v.length(), 5);
}

INSTANTIATE_TEST_SUITE_P(All, CopyBeforeWrite, testing::ValuesIn(kCloneCases),
                         [](const auto& test) { return test.param.name; });

TEST(TvVector, CopyBeforeWriteOfANewVectorMakesSixteen)
{
    TvVector<int> v;
    v.copyBeforeWrite(0);
    EXPECT_EQ(v.length(), 0);
    EXPECT_EQ(v.physicalLength(), 16);
}

TEST(TvVector, CopiesGoAwayInAnyOrder)
{
    const int before = gEmptyVectorData.refCount;
    {
        auto* const first = new TvVector<std::string>;
        first->append("text");
        TvVector<std::string> second(*first);
        delete first;
        EXPECT_EQ(second.last(), "text");
    }
    EXPECT_EQ(gEmptyVectorData.refCount, before);
}

} // namespace
