// How a vector's elements come and go: allocators, construction, what may be thrown.
#include "TvVector.h"

#include "HugeRequests.h"
#include "Recorder.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

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

// A type that is not complete yet where it names its vector.
struct Tree {
    TvVector<Tree> branches;
    int leaf = 0;
};

TEST(TvVector, OfATypeMayBeAMemberOfIt)
{
    Tree tree;
    for (int i = 0; i < 20; ++i) {
        Tree branch;
        branch.leaf = i;
        tree.branches.append(branch);
        tree.branches.append(tree.branches.at(0));
        tree.branches.at(2 * i).branches.append(branch);
    }
    EXPECT_EQ(tree.branches.length(), 40);
    EXPECT_EQ(tree.branches.at(0).branches.at(0).leaf, 0);
    EXPECT_EQ(tree.branches.last().branches.at(0).leaf, 0);
    EXPECT_EQ(tree.branches.at(38).branches.at(0).leaf, 19);
}

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

TEST(TvVector, ElementThatThrowsInGrowthLeavesTheVectorAsItWas)
{
    TvVector<ThrowsWhenCopied> v;
    v.setLogicalLength(8);
    const auto* const before = v.begin();
    ThrowsWhenCopied::armed = true;
    EXPECT_THROW(v.setLogicalLength(9), std::runtime_error);
    ThrowsWhenCopied::armed = false;
    EXPECT_EQ(v.begin(), before);
    EXPECT_EQ(v.length(), 8);
    EXPECT_EQ(v.physicalLength(), 8);
    EXPECT_EQ(TvDetail::VectorCheck::faultOf(v), nullptr);
}

struct Branch : Counted {
    std::shared_ptr<TvVector<Branch>> branches;
};

TEST(TvVector, MayBecomeWhatOneOfItsElementsHolds)
{
    const int before = Counted::alive;
    {
        TvVector<Branch> v;
        v.setLogicalLength(1);
        v.at(0).branches = std::make_shared<TvVector<Branch>>();
        v.at(0).branches->setLogicalLength(2);
        v.at(0).branches->at(1).value = 7;

        v = *v.at(0).branches;

        EXPECT_EQ(v.length(), 2);
        EXPECT_EQ(v.last().value, 7);
        EXPECT_EQ(TvDetail::VectorCheck::faultOf(v), nullptr);
    }
    EXPECT_EQ(Counted::alive, before);
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

// Unsharing goes through clone(), which lets nothing else out.
TEST(EscapesDeathTest, AnotherThingEndsTheProcessInClone)
{
    TvVector<ThrowsWhenCopied> v;
    v.setLogicalLength(5);
    TvVector<ThrowsWhenCopied> copy(v);
    const auto unshare = [&] {
        ThrowsWhenCopied::armed = true;
        try {
            copy.copyBeforeWrite(0);
        } catch (...) {
        }
        std::_Exit(0); // not the way a caught exception must end
    };
    EXPECT_DEATH(unshare(), "");
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
