// What is made of standard strings throws std::bad_alloc, and leaves nothing behind.
#include "FailNth.h"
#include "TvBigFont.h"
#include "TvCodePages.h"
#include "TvStdStr.h"

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <string>

namespace {

const wchar_t kLong[] = L"/a folder/a name that is too long for a string without memory of its own.shx";

// Runs `work` with each operator new failing in turn; what it throws is std::bad_alloc.
template<class Work>
void eachNewThrows(Work work)
{
    for (int nth = 1; nth < 100; ++nth) {
        const HeapBalance balance;
        const FailNth fail(FailNth::New, nth);
        bool thrown = false;
        try {
            work();
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        EXPECT_EQ(thrown, fail.fired());
        if (!fail.fired()) {
            EXPECT_GT(nth, 1) << "nothing was refused";
            return;
        }
    }
    ADD_FAILURE() << "the allocations never end";
}

TEST(BadAllocFault, ExtractFileName)
{
    eachNewThrows([] { EXPECT_EQ(extractFileName(kLong), std::wstring(kLong + 10)); });
}

TEST(BadAllocFault, WideString)
{
    eachNewThrows([] {
        CStdStr<wchar_t> name(kLong);
        name = kLong + 1;
        const CStdStr<wchar_t> copy = name;
        EXPECT_EQ(copy.Compare(kLong + 1), 0);
    });
}

TEST(BadAllocFault, AssignmentThatThrowsLeavesTheWideStringAsItWas)
{
    CStdStr<wchar_t> name(L"short");
    bool thrown = false;
    {
        const FailNth fail(FailNth::New, 1);
        try {
            name = kLong;
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
    }
    EXPECT_TRUE(thrown);
    EXPECT_EQ(name.Compare(L"short"), 0);
}

TEST(BadAllocFault, MapperOfACodePage)
{
    eachNewThrows([] {
        const EkCodepageMapper mapper(CP_ANSI_936, kLong, 936);
        EXPECT_EQ(mapper.m_desc.Compare(kLong), 0);
    });
}

} // namespace
