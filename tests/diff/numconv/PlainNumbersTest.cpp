// Numbers as machines without vectors convert them: this program holds the number sources
// of its own, built that way, and runs the comparisons with the C library over them.
#include "numconv/NumberVectors.h"
#include "numconv/SixteenDigits.h"

#include <gtest/gtest.h>

#include <type_traits>

#ifdef TV_NUMBERS_BY_SSE2
#error "this program is about the plain ways"
#endif

namespace {

TEST(PlainNumbers, DigitsComeFromPlainIntegers)
{
    EXPECT_TRUE((std::is_same_v<SixteenDigits, PlainSixteenDigits>));
}

} // namespace
