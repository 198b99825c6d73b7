// Files of tables and settings while each system call that reads them fails once in turn, below
// the C library: the status is one of those stated, text is converted with the table or without
// it, and once the fault is over all is there.
#include "FailNth.h"
#include "FailingSystemCalls.h"
#include "MapperText.h"
#include "OpenDescriptors.h"
#include "Recorder.h"
#include "TestFiles.h"
#include "TvBigFont.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <map>
#include <string>

namespace {

// An error number, or that half of a transfer is made.
class TableFileFault : public testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        if (!FailingSystemCalls::areAvailable())
            GTEST_SKIP() << "system calls cannot be caught here";
    }
    void TearDown() override { TvCharMapper::unInitialize(); }

    // Runs `work` with its nth system call failing, for every n, and `check` after each.
    template<class Prepare, class Work, class Check>
    static void eachCall(Prepare prepare, Work work, Check check)
    {
        const long descriptors = openDescriptors();
        int nth = 1;
        for (; nth < 10000; ++nth) {
            prepare();
            Recorder quiet;
            {
                const FailingSystemCalls::Armed armed(FailingSystemCalls::kFiles, GetParam(), nth);
                work();
            }
            const bool fired = FailingSystemCalls::haveFired();
            check(fired);
            EXPECT_EQ(openDescriptors(), descriptors) << nth;
            if (!fired || HasFailure())
                break;
        }
        EXPECT_GT(nth, GetParam() == FailingSystemCalls::kShort ? 0 : 1);
    }

    const CStdStr<wchar_t> map = shippedMapFile();
};

TEST_P(TableFileFault, InitializeIsAStatedStatus)
{
    Orna::ErrorStatus status = Orna::eOk;
    eachCall([] {}, [&] { status = TvCharMapper::initialize(map); },
             [&](bool fired) {
                 EXPECT_TRUE(status == Orna::eOk ||
                             (fired && (status == Orna::eFileNotFound || status == Orna::eBadMapFile)))
                     << status;
                 const std::wstring text = toWide(CP_ANSI_936, "a\xB0\xA1");
                 EXPECT_EQ(text, status == Orna::eOk ? L"a\x554A" : L"a\\M+5B0A1");
             });
}

TEST_P(TableFileFault, ATableIsReadWholeOrLater)
{
    std::wstring text;
    eachCall([&] { ASSERT_EQ(TvCharMapper::initialize(map), Orna::eOk); },
             [&] { text = toWide(CP_ANSI_932, "\x88\x9F"); },
             [&](bool fired) {
                 EXPECT_TRUE(text == L"\x4E9C" || (fired && text == L"\\M+1889F"));
                 EXPECT_EQ(toWide(CP_ANSI_932, "\x88\x9F"), L"\x4E9C");
             });
}

TEST_P(TableFileFault, BigFontsAreReadUpToTheFailure)
{
    const TestFiles files;
    std::string content;
    for (int i = 0; i < 1000; ++i)
        content += "font" + std::to_string(i) + ".shx;" + std::to_string(i % 5 + 1) + "\n";
    const std::wstring path = files.put("BIGFONT.INI", content);
    bool done = false;
    eachCall([] { g_mapCP2Bigfont.clear(); }, [&] { done = ReadBigfontIni(path.c_str()); },
             [&](bool fired) {
                 EXPECT_TRUE(done || fired);
                 EXPECT_TRUE(!done || g_mapCP2Bigfont.size() == 1000u) << g_mapCP2Bigfont.size();
                 for (const auto& [name, index] : g_mapCP2Bigfont)
                     EXPECT_EQ(std::stoi(name.substr(4)) % 5 + 1, index);
                 g_mapCP2Bigfont.clear();
             });
}

INSTANTIATE_TEST_SUITE_P(Errors, TableFileFault,
                         testing::Values(EIO, EINTR, EMFILE, EACCES, FailingSystemCalls::kShort));

} // namespace
