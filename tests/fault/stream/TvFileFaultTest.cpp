// Every call to the C library's file functions, and every allocation, fails once in turn. The
// caller is then told, or has what he asked for; and nothing is left behind.

#include "FailingCalls.h"
#include "FileWorks.h"
#include "Recorder.h"

#include "stream/TvFileRegistry.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class FileFault : public testing::TestWithParam<Work> {
protected:
    // Runs the work with each call of `kind` failing in turn, until none is left to fail.
    static void failEach(FailingCalls::Kind kind)
    {
        const long descriptors = openDescriptors();
        for (int nth = 1;; ++nth) {
            Place place;
            Recorder recorder;
            bool told = false;
            {
                FailingCalls::Armed armed(kind, nth);
                told = GetParam().isTold(place);
            }
            EXPECT_TRUE(told || GetParam().isRight(place)) << "call " << nth << ", " << FailingCalls::name;
            EXPECT_TRUE(!told || FailingCalls::fired) << "told of a failure that was none";
            EXPECT_EQ(openDescriptors(), descriptors) << "call " << nth << ", " << FailingCalls::name;
            EXPECT_TRUE(TvFileStreamBufImpl::m_cstrAlreadyOpenFiles.empty()) << FailingCalls::name;
            EXPECT_TRUE(TvFileRegistry::isSound());
            EXPECT_EQ(openExclusively(place.name).status, Orna::eOk) << FailingCalls::name;
            if (!FailingCalls::fired) {
                EXPECT_GT(nth, 1);
                return;
            }
        }
    }
};

TEST_P(FileFault, EachFileCallMayFail) { failEach(FailingCalls::kFiles); }

TEST_P(FileFault, EachAllocationMayFail)
{
    if (!kFailsMemory)
        GTEST_SKIP() << "the sanitizer owns malloc";
    failEach(FailingCalls::kMemory);
}

INSTANTIATE_TEST_SUITE_P(Works, FileFault, testing::ValuesIn(kWorks),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
