#include "TvVector.h"

#include "FailNth.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using ByteVector =
    TvVector<unsigned char, TvDelegateMemAllocator<unsigned char>, int, TvVectorFlatMemBufGrowPolicy>;

struct Fault {
    const char* name;
    FailNth::Kind kind;
    FailNth::Length length;
};

const Fault kFaults[] = {
    {"OneMalloc", FailNth::Malloc, FailNth::Once},
    {"EveryMalloc", FailNth::Malloc, FailNth::FromThenOn},
    {"OneNew", FailNth::New, FailNth::Once},
    {"EveryNew", FailNth::New, FailNth::FromThenOn},
};

// Builds, copies, grows and cuts; whatever fails, each vector holds the start of 0, 1, 2 ...
// and nothing stays behind.
template<class Vector, class T>
void useVectors()
{
    Vector v;
    for (int i = 0; i < 100; ++i) {
        const int before = v.length();
        v.append(static_cast<T>(before));
    }
    Vector copy(v);
    copy.append(static_cast<T>(copy.length()));
    Vector cut(v);
    cut.setLogicalLength(v.length() / 2);
    copy.reserve(300);
    v.reserve(static_cast<unsigned int>(v.length()));
    for (Vector* vector : {&v, &copy, &cut}) {
        ASSERT_EQ(TvDetail::VectorCheck::faultOf(*vector), nullptr);
        for (int i = 0; i < vector->length(); ++i)
            ASSERT_EQ(vector->asArrayPtr()[i], static_cast<T>(i));
    }
}

class VectorFault : public testing::TestWithParam<Fault> {
protected:
    template<class Vector, class T>
    void everyRequestFails()
    {
        for (int nth = 1;; ++nth) {
            SCOPED_TRACE(nth);
            HeapBalance balance;
            FailNth fail(GetParam().kind, nth, GetParam().length);
            useVectors<Vector, T>();
            if (!fail.fired())
                break;
        }
    }
};

TEST_P(VectorFault, IntsStayWhole) { everyRequestFails<TvVector<int>, int>(); }
TEST_P(VectorFault, BytesStayWhole) { everyRequestFails<ByteVector, unsigned char>(); }

INSTANTIATE_TEST_SUITE_P(All, VectorFault, testing::ValuesIn(kFaults),
                         [](const auto& test) { return test.param.name; });

// Keeps what it is told without memory.
class CountingRecorder : public CrashRecorder {
public:
    CountingRecorder() { ornaSetCrashRecorder(this); }
    ~CountingRecorder() override { ornaSetCrashRecorder(nullptr); }
    void record(TvException* fault) override
    {
        ++reports;
        const auto* const status = dynamic_cast<TvErrorStatus*>(fault);
        lastStatus = status ? status->errorType() : Orna::eOk;
    }
    int reports = 0;
    Orna::ErrorStatus lastStatus = Orna::eOk;
};

// An allocator that can be told to have nothing.
template<class T>
struct Switchable {
    static T* alloc(int n)
    {
        if (empty && n > 0) {
            TvDetail::reportStatus(Orna::eOutOfMemory);
            return nullptr;
        }
        return TvDefaultMemAllocator<T>::alloc(n);
    }
    static void dealloc(T* p, int n) { TvDefaultMemAllocator<T>::dealloc(p, n); }
    static inline bool empty = false;
};

using SwitchVector = TvVector<int, Switchable<int>>;

class EmptyAllocator : public testing::Test {
protected:
    EmptyAllocator()
    {
        for (int i = 0; i < 8; ++i)
            v.append(i);
        Switchable<int>::empty = true;
    }
    ~EmptyAllocator() override { Switchable<int>::empty = false; }

    void expectUnchangedAndOneReport()
    {
        EXPECT_EQ(recorder.reports, 1);
        EXPECT_EQ(recorder.lastStatus, Orna::eOutOfMemory);
        EXPECT_EQ(v.length(), 8);
        EXPECT_EQ(v.physicalLength(), 8);
        EXPECT_EQ(v.last(), 7);
    }

    SwitchVector v;
    CountingRecorder recorder;
};

TEST_F(EmptyAllocator, AppendDoesNothing)
{
    v.append(8);
    expectUnchangedAndOneReport();
}

TEST_F(EmptyAllocator, AppendInternalGivesASpareElement)
{
    int& spare = v.appendInternal();
    spare = 99;
    expectUnchangedAndOneReport();
    EXPECT_TRUE(&spare < v.begin() || &spare >= v.end());
}

TEST_F(EmptyAllocator, SetLogicalLengthDoesNothing)
{
    v.setLogicalLength(20);
    expectUnchangedAndOneReport();
}

TEST_F(EmptyAllocator, SetPhysicalLengthDoesNothing)
{
    v.setPhysicalLength(20);
    expectUnchangedAndOneReport();
}

TEST_F(EmptyAllocator, ShrinkingDoesNothing)
{
    v.setPhysicalLength(4);
    expectUnchangedAndOneReport();
}

TEST_F(EmptyAllocator, GivingUpTheElementsNeedsNone)
{
    v.setPhysicalLength(0);
    EXPECT_EQ(recorder.reports, 0);
    EXPECT_EQ(v.physicalLength(), 0);
}

TEST_F(EmptyAllocator, ShorteningASharedVectorDoesNothing)
{
    const SwitchVector copy(v);
    v.setLogicalLength(3);
    expectUnchangedAndOneReport();
    EXPECT_EQ(copy.asArrayPtr(), std::as_const(v).asArrayPtr());
}

TEST_F(EmptyAllocator, AppendToASharedVectorWithRoomDoesNothing)
{
    v.setLogicalLength(5);
    const SwitchVector copy(v);
    v.append(99);
    EXPECT_EQ(recorder.reports, 1);
    EXPECT_EQ(v.length(), 5);
    EXPECT_EQ(copy.length(), 5);
}

TEST_F(EmptyAllocator, AtReadsTheElementThatIsStillShared)
{
    const SwitchVector copy(v);
    EXPECT_EQ(v.at(3), 3);
    expectUnchangedAndOneReport();
}

TEST_F(EmptyAllocator, AtOfABadIndexReportsTheIndexFirst)
{
    Recorder told;
    SwitchVector none;
    const volatile auto* const address = &none.at(0);
    EXPECT_NE(address, nullptr);
    EXPECT_EQ(told.statuses(), (std::vector{Orna::eInvalidIndex, Orna::eOutOfMemory}));
}

// Malloc fails for the object of the report as well: nothing is told and nothing changes.
TEST(VectorFault, WithoutAnyMemoryNothingIsTold)
{
    TvVector<int> v;
    CountingRecorder recorder;
    {
        FailNth none(FailNth::Malloc, 1, FailNth::FromThenOn);
        v.append(1);
    }
    EXPECT_EQ(recorder.reports, 0);
    EXPECT_EQ(v.length(), 0);
}

TEST(VectorFault, RecordThatCannotBeMadeIsReportedByClone)
{
    TvVector<int> v;
    v.append(1);
    TvVector<int> copy(v);
    CountingRecorder recorder;
    {
        FailNth record(FailNth::Malloc, 1);
        copy.copyBeforeWrite(0);
        if (!record.fired())
            GTEST_SKIP() << "the record came from the pool";
    }
    EXPECT_EQ(recorder.reports, 1);
    EXPECT_EQ(recorder.lastStatus, Orna::eOutOfMemory);
    EXPECT_EQ(std::as_const(copy).asArrayPtr(), std::as_const(v).asArrayPtr());
}

// One that fails is the roomier request; the exact one then succeeds.
TEST(VectorFault, GrowthFallsBackToTheExactSize)
{
    TvVector<int> v;
    for (int i = 0; i < 8; ++i)
        v.append(i);
    CountingRecorder recorder;
    FailNth room(FailNth::New, 1);
    v.append(8);
    EXPECT_TRUE(room.fired());
    EXPECT_EQ(recorder.reports, 0);
    EXPECT_EQ(v.length(), 9);
    EXPECT_EQ(TvDetail::VectorCheck::roomOf(v), 16);
}

} // namespace
