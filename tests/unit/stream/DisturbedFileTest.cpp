// Files that are cut short while they are read, and work on files among signals.
#include "TvFileStreamBuf.h"

#include "Child.h"
#include "FileStreams.h"
#include "TestFiles.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <string>

#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t kPage = 4096;

class CutShortFile : public testing::Test {
protected:
    void cutAfterOnePage() const { ASSERT_EQ(truncate(files.path("a").c_str(), kPage), 0); }

    TestFiles files;
    const std::wstring name = files.put("a", std::string(40 * kPage, 'x'));
};

TEST_F(CutShortFile, KeepsWhatIsLeftOfItReadable)
{
    const auto mapped = openIn(name);
    cutAfterOnePage();
    EXPECT_EQ(read(*mapped, kPage), std::string(kPage, 'x'));
}

TEST_F(CutShortFile, KeepsItsLengthWhileItIsMapped)
{
    const auto mapped = openIn(name);
    cutAfterOnePage();
    EXPECT_EQ(mapped->length(), 40u * kPage);
}

// A limit of mapped files, as stated.
TEST_F(CutShortFile, EndsTheProcessThatReadsTheMissingPartOfItsMapping)
{
    EXPECT_EQ(inOtherProcess([&] {
                  std::signal(SIGBUS, SIG_DFL);
                  const auto mapped = openIn(name);
                  cutAfterOnePage();
                  mapped->seek(2 * kPage, TvIO::kSeekFromStart);
                  read(*mapped, 1);
                  return 0;
              }),
              128 + SIGBUS);
}

TEST_F(CutShortFile, OnlyGivesFewerBytesToAStreamThatDoesNotMap)
{
    const auto plain = openFile(name, kRead, TvIO::kShareDenyNone, TvIO::kOpenExisting);
    cutAfterOnePage();
    plain->seek(2 * kPage, TvIO::kSeekFromStart);
    EXPECT_EQ(read(*plain, 4), "????");
    EXPECT_EQ(plain->length(), kPage);
}

// A signal every half millisecond, which interrupts whatever call of the system waits.
class Signals {
public:
    Signals()
    {
        struct sigaction action = {};
        action.sa_handler = [](int) { s_count = s_count + 1; };
        sigaction(SIGALRM, &action, &m_before);
        const itimerval often = {{0, 500}, {0, 500}};
        setitimer(ITIMER_REAL, &often, nullptr);
    }
    ~Signals()
    {
        const itimerval never = {};
        setitimer(ITIMER_REAL, &never, nullptr);
        std::signal(SIGALRM, SIG_IGN); // one may be on its way still
        sigaction(SIGALRM, &m_before, nullptr);
    }
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

    static int count() { return s_count; }

private:
    static volatile std::sig_atomic_t s_count;
    struct sigaction m_before;
};

volatile std::sig_atomic_t Signals::s_count = 0;

TEST(FileAmongSignals, IsOpenedWrittenReadAndClosedAsWithout)
{
    const TestFiles files;
    const std::wstring name = files.put("a", "");
    const std::string text(100000, 't');
    const Signals signals;
    for (int i = 0; i < 20 || Signals::count() < 100; ++i) {
        const auto own = openExclusively(name);
        ASSERT_EQ(own.status, Orna::eOk);
        write(*own, text);
        own->close();
        ASSERT_EQ(read(*openIn(name), static_cast<std::uint32_t>(text.size())), text);
    }
}

} // namespace
