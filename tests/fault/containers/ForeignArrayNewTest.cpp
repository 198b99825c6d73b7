// A program with an array new of its own, whose memory malloc knows nothing of: vectors take
// every array from it and give every array back to it.
#include "TvVector.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

constexpr std::size_t kFront = 64; // what it keeps in front of each array
constexpr std::size_t kMark = 0x5A5A1234;

long s_arrays = 0;
long s_taken = 0;

void* takeArray(std::size_t size) noexcept
{
    char* const block = static_cast<char*>(std::malloc(size + kFront));
    if (!block)
        return nullptr;
    ::new (block) std::size_t(kMark);
    ++s_arrays;
    ++s_taken;
    return block + kFront;
}

void giveArray(void* array) noexcept
{
    if (!array)
        return;
    char* const block = static_cast<char*>(array) - kFront;
    auto* const mark = reinterpret_cast<std::size_t*>(block);
    if (*mark != kMark)
        std::abort();
    *mark = 0;
    --s_arrays;
    std::free(block);
}

} // namespace

void* operator new[](std::size_t size)
{
    if (void* const array = takeArray(size))
        return array;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return takeArray(size); }
void operator delete[](void* array) noexcept { giveArray(array); }
void operator delete[](void* array, std::size_t) noexcept { giveArray(array); }
void operator delete[](void* array, const std::nothrow_t&) noexcept { giveArray(array); }

namespace {

TEST(ForeignArrayNew, ServesEveryArrayOfAVector)
{
    const long arraysBefore = s_arrays;
    const long takenBefore = s_taken;
    {
        TvVector<int> v;
        for (int i = 0; i < 100000; ++i)
            v.append(i);
        for (int i = 0; i < 100000; ++i)
            ASSERT_EQ(v.asArrayPtr()[i], i);
        EXPECT_EQ(s_arrays, arraysBefore + 1);
        EXPECT_GT(s_taken, takenBefore + 10); // one for each move
    }
    EXPECT_EQ(s_arrays, arraysBefore);
}

TEST(ForeignArrayNew, ServesWhatTheLibraryGrows)
{
    const long arraysBefore = s_arrays;
    {
        TvVector<char> text; // instantiated in the library
        for (int i = 0; i < 100000; ++i)
            text.append(static_cast<char>(i % 100));
        for (int i = 0; i < 100000; ++i)
            ASSERT_EQ(text.asArrayPtr()[i], static_cast<char>(i % 100));
        EXPECT_EQ(s_arrays, arraysBefore + 1);
    }
    EXPECT_EQ(s_arrays, arraysBefore);
}

} // namespace
