#include "TvVectorData.h"

#include "Recorder.h"
#include "VectorValues.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

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

} // namespace
