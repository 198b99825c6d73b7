#include "PooledHeap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace {

class TvHeapSizes : public ::testing::Test {
protected:
    static void SetUpTestSuite() { s_pooled = runPageSearchDown(); }
    void SetUp() override
    {
        if (!s_pooled)
            GTEST_SKIP() << "no reserved range in this process";
    }
    static inline bool s_pooled = false;
};

// 0: not pooled.
std::size_t expectedUnit(std::size_t size)
{
    if (size == 0)
        return 8;
    if (size <= 208)
        return (size + 7) / 8 * 8;
    if (size <= 256)
        return (size + 15) / 16 * 16;
    for (std::size_t unit : {512, 1024, 2048, 4096}) {
        const std::size_t least = unit == 512 ? 500 : unit / 1024 * 1000;
        if (size >= least && size <= unit)
            return unit;
    }
    return 0;
}

TEST_F(TvHeapSizes, EachSizeFromNothingToAboveABlock)
{
    for (std::size_t size = 0; size <= 4097; ++size) {
        void* const ptr = _tvMalloc(size);
        ASSERT_NE(ptr, nullptr);
        std::memset(ptr, 0x5A, size);
        const std::size_t unit = expectedUnit(size);
        EXPECT_EQ(g_tvGlobalHeap.isResident(ptr), unit != 0) << size;
        EXPECT_GE(_tvMsize(ptr), size) << size;
        if (unit != 0) {
            EXPECT_EQ(_tvMsize(ptr), unit) << size;
        }
        _tvFree(ptr);
    }
}

struct SizeCase {
    const char* name;
    std::size_t size;
    std::size_t unit; // 0: from malloc
};

const SizeCase kSizeCases[] = {
    {"Nothing", 0, 8},
    {"OneByte", 1, 8},
    {"Eight", 8, 8},
    {"Nine", 9, 16},
    {"Twenty", 20, 24},
    {"LastStepOfEight", 208, 208},
    {"FirstStepOf16", 209, 224},
    {"SmallMost", 256, 256},
    {"AboveSmall", 257, 0},
    {"Below512", 499, 0},
    {"From500", 500, 512},
    {"To512", 512, 512},
    {"Above512", 513, 0},
    {"Below1024", 999, 0},
    {"From1000", 1000, 1024},
    {"To1024", 1024, 1024},
    {"Above1024", 1025, 0},
    {"Below2048", 1999, 0},
    {"From2000", 2000, 2048},
    {"To2048", 2048, 2048},
    {"Above2048", 2049, 0},
    {"Below4096", 3999, 0},
    {"From4000", 4000, 4096},
    {"To4096", 4096, 4096},
    {"AboveABlock", 4097, 0},
};

class TvHeapSize : public ::testing::TestWithParam<SizeCase> {};

TEST_P(TvHeapSize, ComesFromItsPool)
{
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    void* const ptr = g_tvGlobalHeap.allocHeap(GetParam().size);
    EXPECT_EQ(g_tvGlobalHeap.isResident(ptr), GetParam().unit != 0);
    if (GetParam().unit != 0) {
        EXPECT_EQ(g_tvGlobalHeap.sizeOfHeap(ptr), GetParam().unit);
    }
    g_tvGlobalHeap.freeHeap(ptr);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, TvHeapSize, ::testing::ValuesIn(kSizeCases),
                         [](const auto& test) { return test.param.name; });

TEST_F(TvHeapSizes, EveryPagePoolServesUsableMemory)
{
    for (std::size_t pages = 1; pages <= 256; ++pages) {
        const std::size_t size = pages * 4096;
        std::vector<char*> units;
        for (std::size_t i = 0; i < 256 / pages + 1; ++i) { // one more than a page holds
            units.push_back(static_cast<char*>(tvAllocPageHeap(size)));
            ASSERT_TRUE(g_tvGlobalHeap.isResident(units.back())) << pages;
            EXPECT_EQ(_tvMsize(units.back()), size);
            units.back()[0] = static_cast<char>(i);
            units.back()[size - 1] = static_cast<char>(i);
        }
        for (std::size_t i = 0; i < units.size(); ++i) {
            EXPECT_EQ(units[i][0], static_cast<char>(i)) << pages;
            EXPECT_EQ(units[i][size - 1], static_cast<char>(i)) << pages;
        }
        EXPECT_NE(TvHeapConfigurator::sGetPageId(units.front()),
                  TvHeapConfigurator::sGetPageId(units.back()));
        for (char* unit : units)
            tvFreePageHeap(unit);
        EXPECT_FALSE(g_tvGlobalHeap.isResident(units.front())) << pages;
    }
}

const SizeCase kPageCases[] = {
    {"Nothing", 0, 0},
    {"OneByte", 1, 0},
    {"BelowAPage", 4095, 0},
    {"APage", 4096, 4096},
    {"AbovePage", 4097, 0},
    {"TwoPages", 8192, 8192},
    {"Most", 1048576, 1048576},
    {"AboveMost", 1048577, 0},
    {"MultipleAboveMost", 1052672, 0},
    {"Page257Times256", 257u * 1048576, 0},
};

class TvHeapPageSize : public ::testing::TestWithParam<SizeCase> {};

TEST_P(TvHeapPageSize, ComesFromItsPool)
{
    if (!runPageSearchDown())
        GTEST_SKIP() << "no reserved range in this process";
    void* const ptr = g_tvGlobalHeap.allocHeapPage(GetParam().size);
    ASSERT_NE(ptr, nullptr);
    EXPECT_EQ(g_tvGlobalHeap.isResident(ptr), GetParam().unit != 0);
    g_tvGlobalHeap.freeHeapPage(ptr);
}

INSTANTIATE_TEST_SUITE_P(Boundaries, TvHeapPageSize, ::testing::ValuesIn(kPageCases),
                         [](const auto& test) { return test.param.name; });

} // namespace
