#include "TvVector.h"

#include "Recorder.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef __SANITIZE_ADDRESS__
// Requests that no memory holds are refused, as everywhere.
extern "C" [[gnu::visibility("default")]] const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
#endif

namespace {

using ByteVector =
    TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>;
using IntData = TvVector<int>::Data;
using IntPtr = TvVector<int>::DataPtr;

// 0, 1, 2 ...
TvVector<int> counting(int length)
{
    TvVector<int> v;
    for (int i = 0; i < length; ++i)
        v.append(i);
    return v;
}

std::vector<int> elements(const TvVector<int>& v) { return {v.begin(), v.end()}; }

bool sharesTheEmptyRecord(const TvVector<int>& v)
{
    return v.asArrayPtr() == TvVector<int>::rawEmptyData()->array && v.physicalLength() == 0;
}

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

struct Mebibyte {
    char bytes[1 << 20];
};

// 2 PiB, more than an address can reach.
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

// Counts the objects that are alive.
struct Counted {
    Counted() { ++alive; }
    Counted(int v) : value(v) { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --alive; }
    int value = 0;
    static inline int alive = 0;
};

TEST(TvVector, EveryElementThatWasMadeIsDestroyed)
{
    const int before = Counted::alive; // the spare one, once there is one
    {
        TvVector<Counted> v;
        for (int i = 0; i < 100; ++i)
            v.append(Counted(i));
        TvVector<Counted> copy(v);
        copy.setLogicalLength(7);
        v.reserve(500);
        v.reserve(50);
        copy = v;
        EXPECT_EQ(v.last().value, 49);
    }
    EXPECT_EQ(Counted::alive, before);
}

TEST(TvVector, RawMemoryHoldsOnlyTheElementsInUse)
{
    using Raw = TvVector<Counted, TvDelegateMemAllocator<Counted>>;
    const int before = Counted::alive;
    {
        Raw v;
        for (int i = 0; i < 100; ++i) {
            v.append(Counted(i));
            ASSERT_EQ(Counted::alive, before + i + 1);
        }
        v.setLogicalLength(10);
        EXPECT_EQ(Counted::alive, before + 10);
        Raw copy(v);
        copy.at(0).value = 5;
        EXPECT_EQ(Counted::alive, before + 20);
        copy.reserve(300);
        EXPECT_EQ(Counted::alive, before + 20);
        EXPECT_EQ(copy.last().value, 9);
    }
    EXPECT_EQ(Counted::alive, before);
}

struct ThrowsWhenCopied {
    ThrowsWhenCopied() = default;
    ThrowsWhenCopied(const ThrowsWhenCopied&) = default;
    ThrowsWhenCopied& operator=(const ThrowsWhenCopied& other)
    {
        if (armed)
            throw std::runtime_error("copy");
        text = other.text;
        return *this;
    }
    std::string text = "a text that needs memory of its own";
    static inline bool armed = false;
};

TEST(TvVector, ElementThatThrowsLeavesTheVectorAsItWas)
{
    TvVector<ThrowsWhenCopied> v;
    v.setLogicalLength(5);
    ThrowsWhenCopied::armed = true;
    EXPECT_THROW(v.reserve(6), std::runtime_error);
    ThrowsWhenCopied::armed = false;
    EXPECT_EQ(v.length(), 5);
    EXPECT_EQ(v.physicalLength(), 8);
    EXPECT_EQ(TvDetail::VectorCheck::faultOf(v), nullptr);
}

TEST(ByteVector, GrowsByItsPolicy)
{
    ByteVector v;
    v.setLogicalLength(1);
    EXPECT_EQ(v.physicalLength(), 8);
    v.setPhysicalLength(100);
    v.setLogicalLength(100);
    v.setLogicalLength(101);
    EXPECT_EQ(v.physicalLength(), 200);
    v.setPhysicalLength(100000);
    v.setLogicalLength(100000);
    v.setLogicalLength(100001);
    EXPECT_EQ(v.physicalLength(), 165536);
}

TEST(ByteVector, KeepsItsBytesWhenItGrows)
{
    ByteVector v;
    for (int i = 0; i < 300000; ++i)
        v.append(static_cast<unsigned char>(i * 7));
    for (int i = 0; i < 300000; ++i)
        ASSERT_EQ(v.asArrayPtr()[i], static_cast<unsigned char>(i * 7)) << i;
}

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

struct GrowCase {
    const char* name;
    unsigned int step;
    unsigned int logical;
    unsigned int physical;
    unsigned int wanted;
    unsigned int result;
};

const GrowCase kDefaultGrowCases[] = {
    {"NothingWanted", 8, 5, 100, 0, 13},
    {"BelowThePhysical", 8, 5, 100, 99, 100},
    {"ThePhysicalItself", 8, 100, 100, 100, 108},
    {"OneMore", 8, 8, 8, 9, 16},
    {"JustBelowTheStep", 8, 8, 8, 15, 16},
    {"TheStep", 8, 8, 8, 16, 16},
    {"BeyondTheStep", 8, 8, 8, 17, 17},
    {"FromNothing", 8, 0, 0, 1, 8},
    {"StepOfOne", 1, 8, 8, 9, 9},
    {"StepOfZero", 0, 8, 8, 9, 9},
    {"Wraps", 8, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu},
};

class DefaultGrowPolicy : public testing::TestWithParam<GrowCase> {};

TEST_P(DefaultGrowPolicy, GrowCount)
{
    TvVectorDefaultGrowPolicy policy;
    policy = GetParam().step;
    EXPECT_EQ(policy.growCount(GetParam().logical, GetParam().physical, GetParam().wanted),
              GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(All, DefaultGrowPolicy, testing::ValuesIn(kDefaultGrowCases),
                         [](const auto& test) { return test.param.name; });

const GrowCase kFlatGrowCases[] = {
    {"NothingWanted", 8, 5, 100, 0, 13},
    {"BelowThePhysical", 8, 5, 100, 99, 100},
    {"NothingMissing", 8, 100, 100, 100, 100},
    {"FromNothing", 8, 0, 0, 1, 8},
    {"FromNothingFar", 8, 0, 0, 14, 14},
    {"Doubles", 8, 100, 100, 101, 200},
    {"StepIsMore", 500, 100, 100, 101, 600},
    {"MissingIsMore", 8, 100, 100, 1000, 1000},
    {"MissingCountsFromTheLength", 8, 10, 100, 1000, 1090},
    {"JustBelow64Ki", 8, 65535, 65535, 65536, 131070},
    {"At64Ki", 8, 65536, 65536, 65537, 131072},
    {"JustAbove64Ki", 8, 65537, 65537, 65538, 131073},
    {"Large", 8, 100000, 100000, 100001, 165536},
    {"MissingMoreThan64Ki", 8, 100000, 100000, 200000, 200000},
    {"Wraps", 8, 0xFFFFFFF0u, 0xFFFFFFF0u, 0xFFFFFFF1u, 0xFFF0u},
};

class FlatGrowPolicy : public testing::TestWithParam<GrowCase> {};

TEST_P(FlatGrowPolicy, GrowCount)
{
    TvVectorFlatMemBufGrowPolicy policy;
    policy = GetParam().step;
    EXPECT_EQ(policy.growCount(GetParam().logical, GetParam().physical, GetParam().wanted),
              GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(All, FlatGrowPolicy, testing::ValuesIn(kFlatGrowCases),
                         [](const auto& test) { return test.param.name; });

template<class Policy>
class GrowPolicy : public testing::Test {
};
using Policies = testing::Types<TvVectorDefaultGrowPolicy, TvVectorFlatMemBufGrowPolicy>;
TYPED_TEST_SUITE(GrowPolicy, Policies);

TYPED_TEST(GrowPolicy, StepIsEightAtFirst) { EXPECT_EQ(static_cast<unsigned int>(TypeParam()), 8u); }

TYPED_TEST(GrowPolicy, StepIsWhatWasAssigned)
{
    TypeParam policy;
    EXPECT_EQ(policy = 17u, 17u);
    EXPECT_EQ(static_cast<unsigned int>(policy), 17u);
}

// Asks for what it has: a vector must not believe it.
struct LazyPolicy {
    operator unsigned int() const { return step; }
    unsigned int operator=(unsigned int s) { return step = s; }
    unsigned int growCount(unsigned int, unsigned int physical, unsigned int) const { return physical; }
    unsigned int step = 8;
};

TEST(TvVector, PolicyThatGrowsTooLittleIsOverruled)
{
    TvVector<int, TvDefaultMemAllocator<int>, int, LazyPolicy> v;
    v.setLogicalLength(5);
    EXPECT_EQ(v.length(), 5);
    EXPECT_EQ(v.physicalLength(), 5);
}

struct HugePolicy : LazyPolicy {
    unsigned int operator=(unsigned int s) { return step = s; }
    unsigned int growCount(unsigned int, unsigned int, unsigned int) const { return 0x80000000u; }
};

TEST(TvVector, PolicyBeyondTheRangeIsAFailedAllocation)
{
    Recorder recorder;
    TvVector<int, TvDefaultMemAllocator<int>, int, HugePolicy> v;
    v.setLogicalLength(5);
    EXPECT_EQ(v.length(), 0);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
}

// Notes what it is asked for.
template<class T>
struct NotingAllocator {
    static T* alloc(int n)
    {
        asked.push_back(n);
        return TvDefaultMemAllocator<T>::alloc(n);
    }
    static void dealloc(T* p, int n) { TvDefaultMemAllocator<T>::dealloc(p, n); }
    static inline std::vector<int> asked;
};

TEST(TvVector, ForeignAllocatorIsAskedForWhatIsReported)
{
    TvVector<int, NotingAllocator<int>> v;
    for (int i = 0; i < 17; ++i)
        v.append(i);
    EXPECT_EQ(NotingAllocator<int>::asked, (std::vector<int>{8, 16, 24}));
}

template<class Allocator>
class Allocators : public testing::Test {
};
using AllocatorTypes =
    testing::Types<TvDefaultMemAllocator<unsigned char>, TvDelegateMemAllocator<unsigned char>>;
TYPED_TEST_SUITE(Allocators, AllocatorTypes);

TYPED_TEST(Allocators, BelowOneIsNullWithoutAReport)
{
    Recorder recorder;
    EXPECT_EQ(TypeParam::alloc(0), nullptr);
    EXPECT_EQ(TypeParam::alloc(-1), nullptr);
    EXPECT_EQ(TypeParam::alloc(INT_MIN), nullptr);
    EXPECT_TRUE(recorder.faults().empty());
}

TYPED_TEST(Allocators, MemoryIsWritable)
{
    auto* const p = TypeParam::alloc(1000);
    std::memset(p, 0xAB, 1000);
    TypeParam::dealloc(p, 1000);
}

TYPED_TEST(Allocators, DeallocIgnoresNull) { TypeParam::dealloc(nullptr, 5); }

TEST(TvDefaultMemAllocator, RequestBeyondAllMemoryReports)
{
    Recorder recorder;
    EXPECT_EQ(TvDefaultMemAllocator<Mebibyte>::alloc(INT_MAX), nullptr);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
}

TEST(TvDelegateMemAllocator, RequestBeyondTwoGigabytesReports)
{
    Recorder recorder;
    EXPECT_EQ(TvDelegateMemAllocator<Mebibyte>::alloc(2049), nullptr);
    EXPECT_EQ(recorder.statuses(), std::vector{Orna::eOutOfMemory});
}

class Thrower : public CrashRecorder {
public:
    Thrower() { ornaSetCrashRecorder(this); }
    ~Thrower() override { ornaSetCrashRecorder(nullptr); }
    void record(TvException* fault) override
    {
        std::unique_ptr<TvException> owned(fault);
        if (throwsStatus)
            throw static_cast<TvErrorStatus*>(owned.release());
        throw 42;
    }
    bool throwsStatus = true;
};

template<class Call>
void expectThrownStatus(Call call, Orna::ErrorStatus status)
{
    Thrower recorder;
    try {
        call();
        ADD_FAILURE() << "nothing was thrown";
    } catch (TvErrorStatus* thrown) {
        EXPECT_EQ(thrown->errorType(), status);
        delete thrown;
    }
}

TEST(Escapes, ThrownStatusLeavesTheAllocator)
{
    expectThrownStatus([] { TvDefaultMemAllocator<Mebibyte>::alloc(INT_MAX); }, Orna::eOutOfMemory);
}

TEST(Escapes, ThrownStatusLeavesLast)
{
    expectThrownStatus([] { TvVector<char>().last(); }, Orna::eInvalidInput);
}

TEST(Escapes, ThrownStatusLeavesTheVectorAsItWas)
{
    TvVector<Mebibyte> v;
    expectThrownStatus([&] { v.setLogicalLength(INT_MAX); }, Orna::eOutOfMemory);
    EXPECT_EQ(v.length(), 0);
    EXPECT_EQ(TvDetail::VectorCheck::faultOf(v), nullptr);
}

void throwAnotherThing(void (*call)())
{
    Thrower recorder;
    recorder.throwsStatus = false;
    try {
        call();
    } catch (...) {
    }
    std::_Exit(0); // not the way a caught exception must end
}

TEST(EscapesDeathTest, AnotherThingEndsTheProcessInTheAllocator)
{
    EXPECT_DEATH(throwAnotherThing([] { TvDefaultMemAllocator<Mebibyte>::alloc(INT_MAX); }), "");
}

TEST(EscapesDeathTest, AnotherThingEndsTheProcessInLast)
{
    EXPECT_DEATH(throwAnotherThing([] { TvVector<char>().last(); }), "");
}

TEST(TvPodTypeConstructor, AssignCopiesThatMany)
{
    const int from[] = {1, 2, 3};
    int to[] = {9, 9, 9};
    TvPodTypeConstructor<int>::assign(to, from, 2);
    EXPECT_EQ(std::vector<int>(to, to + 3), (std::vector<int>{1, 2, 9}));
}

TEST(TvPodTypeConstructor, AssignOfNothingTouchesNothing)
{
    TvPodTypeConstructor<int>::assign(nullptr, nullptr, 0);
    TvPodTypeConstructor<int>::assign(nullptr, nullptr, -1);
}

TEST(TvObjectTypeConstructor, ConstructsAndDestroysThatMany)
{
    alignas(Counted) unsigned char memory[3 * sizeof(Counted)];
    auto* const objects = reinterpret_cast<Counted*>(memory);
    const int before = Counted::alive;
    TvObjectTypeConstructor<Counted>::construct(objects, 3);
    EXPECT_EQ(Counted::alive, before + 3);
    TvObjectTypeConstructor<Counted>::deconstruct(objects, 3);
    EXPECT_EQ(Counted::alive, before);
}

TEST(TvObjectTypeConstructor, BytesKeepWhatTheyHold)
{
    unsigned char bytes[] = {1, 2, 3};
    TvObjectTypeConstructor<unsigned char>::construct(bytes, 0);
    TvObjectTypeConstructor<unsigned char>::deconstruct(bytes, -1);
    EXPECT_EQ(bytes[0], 1);
}

} // namespace
