// Text of any length goes through the tool in constant memory: it is made into the tool's
// standard input, to UTF-8 by one process and back by another, and compared as it comes out.
//
// 16 MiB; with TV_TEST_SCALE=32 the 512 MiB of ctest --preset long.
#include "TestScale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

constexpr rlim_t kMostData = rlim_t{40} << 20; // what the process may allocate
constexpr long kMostResident = 40 << 10;       // what it may have in memory, in KiB

std::string sample(const std::string& name)
{
    std::ifstream in(TV_SOURCE_DIR "/samples/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Two pipes' ends and a process between them.
struct Stage {
    pid_t pid = -1;
    int out = -1; ///< to read its output from
};

void closeAllFrom(int first)
{
    for (int descriptor = first; descriptor < 64; ++descriptor)
        close(descriptor);
}

template<class Run>
Stage startStage(int in, Run run)
{
    int ends[2];
    if (pipe(ends) != 0)
        return {};
    const pid_t pid = fork();
    if (pid == 0) {
        dup2(in, 0);
        dup2(ends[1], 1);
        closeAllFrom(3);
        _exit(run());
    }
    if (in > 0)
        close(in);
    close(ends[1]);
    return {pid, ends[0]};
}

Stage startTool(int in, const char* option, const char* page)
{
    return startStage(in, [=] {
        if (!kIsSanitized) {
            const struct rlimit limit = {kMostData, kMostData};
            setrlimit(RLIMIT_DATA, &limit);
        }
        execl(TV_TOOL, "tvbase", "recode", option, page, static_cast<char*>(nullptr));
        return 127;
    });
}

bool writeAll(const std::string& text, std::size_t count)
{
    for (std::size_t at = 0; at < count;) {
        const ssize_t written = write(1, text.data() + at, count - at);
        if (written <= 0)
            return false;
        at += static_cast<std::size_t>(written);
    }
    return true;
}

// The sample over and over, without a character cut at the end.
int generate(const std::string& piece, long pieces)
{
    for (long i = 0; i < pieces; ++i)
        if (!writeAll(piece, piece.size()))
            return 1;
    return 0;
}

// Bytes until the end; false at the first one that is not the sample's.
bool isSampleOverAndOver(int in, const std::string& piece, long pieces)
{
    std::string buffer(1 << 16, '\0');
    const std::uint64_t size = static_cast<std::uint64_t>(pieces) * piece.size();
    std::uint64_t at = 0;
    bool same = true;
    for (ssize_t got = 0; (got = read(in, buffer.data(), buffer.size())) > 0;) {
        for (ssize_t i = 0; same && i < got;) {
            const std::size_t from = at % piece.size();
            const std::size_t count = std::min(piece.size() - from, static_cast<std::size_t>(got - i));
            same = std::memcmp(buffer.data() + i, piece.data() + from, count) == 0;
            i += static_cast<ssize_t>(count);
            at += count;
        }
        if (!same)
            return false;
    }
    return at == size;
}

class LargeRecode : public testing::TestWithParam<const char*> {};

TEST_P(LargeRecode, ComesBackByteForByteInConstantMemory)
{
    const std::string page = GetParam();
    std::string piece = sample(page + ".txt");
    ASSERT_FALSE(piece.empty());
    while (piece.size() < 60000)
        piece += piece;
    const long pieces = scaled((16l << 20) / static_cast<long>(piece.size()) + 1);
    const Stage source = startStage(0, [&] { return generate(piece, pieces); });
    const Stage decode = startTool(source.out, "-f", page.c_str());
    const Stage encode = startTool(decode.out, "-t", page.c_str());
    ASSERT_GT(encode.pid, 0);
    EXPECT_TRUE(isSampleOverAndOver(encode.out, piece, pieces));
    close(encode.out);
    int status = 0;
    waitpid(source.pid, &status, 0);
    EXPECT_EQ(status, 0);
    // A process that was forked counts what its parent had, until then, as its own; under valgrind
    // that is much.
    struct rusage own = {};
    getrusage(RUSAGE_SELF, &own);
    for (const Stage& stage : {decode, encode}) {
        struct rusage usage = {};
        wait4(stage.pid, &status, 0, &usage);
        EXPECT_EQ(status, 0);
        if (!kIsSanitized) {
            EXPECT_LE(usage.ru_maxrss, std::max(kMostResident, own.ru_maxrss));
        }
        std::printf("%s: %lld MiB, at most %ld KiB resident\n", page.c_str(),
                    static_cast<long long>(pieces) * static_cast<long long>(piece.size()) >> 20,
                    usage.ru_maxrss);
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, LargeRecode, testing::Values("ansi_936", "ansi_1252"),
                         [](const auto& test) { return std::string(test.param); });

} // namespace
