#include "TvCharCategory.h"

#include "FailNth.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<wchar_t> contentOf(const TvVector<wchar_t>& list) { return {list.begin(), list.end()}; }

TEST(CharCategoryFault, AListThatCannotBeMadeAgainStaysAsItIs)
{
    const TvVector<wchar_t>& left = TvCharCategory::s_instance.leftPuncts();
    const std::vector<wchar_t> before = contentOf(left);
    for (int nth = 1;; ++nth) {
        ASSERT_LT(nth, 100);
        HeapBalance balance;
        Recorder quiet;
        TvVector<wchar_t> copy = left;
        FailNth fail(FailNth::Malloc, nth, FailNth::FromThenOn);
        TvCharCategory::s_instance.initLeftPuncts();
        if (!fail.fired()) {
            EXPECT_GT(nth, 1);
            break;
        }
        EXPECT_EQ(contentOf(left), before);
        EXPECT_EQ(contentOf(copy), before);
    }
}

} // namespace
