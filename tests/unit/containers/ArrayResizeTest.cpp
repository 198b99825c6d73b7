// Arrays of array new that grow where they lie.
#include "TvVectorData.h"

#include "HugeRequests.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>

namespace {

using TvDetail::ArrayDelete;
using TvDetail::ArrayNew;
using TvDetail::resizeArray;

const auto kNew = static_cast<ArrayNew>(&::operator new[]);
const auto kDelete = static_cast<ArrayDelete>(&::operator delete[]);

void* foreignNew(std::size_t size, const std::nothrow_t& tag) noexcept { return ::operator new[](size, tag); }
void foreignDelete(void* array) noexcept { ::operator delete[](array); }

// 0, 1, 2 ... in an array of array new.
std::unique_ptr<int[]> numbers(int count)
{
    std::unique_ptr<int[]> array(new int[static_cast<std::size_t>(count)]);
    for (int i = 0; i < count; ++i)
        array[static_cast<std::size_t>(i)] = i;
    return array;
}

void expectNumbers(const std::unique_ptr<int[]>& array, int count)
{
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(array[static_cast<std::size_t>(i)], i);
}

// Sizes on both sides of where the C library begins to map blocks.
class ArrayResize : public testing::TestWithParam<int> {};

TEST_P(ArrayResize, KeepsTheElementsAndGivesArrayNewMemory)
{
    const int count = GetParam();
    std::unique_ptr<int[]> array = numbers(count);
    void* const larger =
        resizeArray(array.get(), static_cast<std::size_t>(count) * 2 * sizeof(int), kNew, kDelete);
    if (!larger)
        GTEST_SKIP() << "array new is not malloc's here";
    static_cast<void>(array.release());
    array.reset(static_cast<int*>(larger)); // array delete takes it
    expectNumbers(array, count);
    array[static_cast<std::size_t>(count) * 2 - 1] = 7;
    EXPECT_EQ(array[static_cast<std::size_t>(count) * 2 - 1], 7);
}

INSTANTIATE_TEST_SUITE_P(Sizes, ArrayResize, testing::Values(1, 250, 1000, 30000, 40000, 3000000));

TEST(ArrayResize, LeavesArraysOfAnotherArrayNewAlone)
{
    std::unique_ptr<int[]> array = numbers(1000);
    EXPECT_EQ(resizeArray(array.get(), 8000, &foreignNew, kDelete), nullptr);
    expectNumbers(array, 1000);
}

TEST(ArrayResize, LeavesArraysForAnotherArrayDeleteAlone)
{
    std::unique_ptr<int[]> array = numbers(1000);
    EXPECT_EQ(resizeArray(array.get(), 8000, kNew, &foreignDelete), nullptr);
    expectNumbers(array, 1000);
}

TEST(ArrayResize, WithoutMemoryLeavesTheArrayAsItIs)
{
    std::unique_ptr<int[]> array = numbers(1000);
    EXPECT_EQ(resizeArray(array.get(), PTRDIFF_MAX, kNew, kDelete), nullptr);
    expectNumbers(array, 1000);
}

} // namespace
