// Streams that somebody still holds when the registry of open files has ended.
#include "TvFileStreamBuf.h"

#include "FileStreams.h"
#include "TestFiles.h"
#include "runtime/TvStartup.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

namespace {

// Lives longer than the registry and shorter than the heap's range.
class LateHolder {
public:
    ~LateHolder()
    {
        if (!files)
            return;
        exclusive.reset();
        cached.reset();
        const bool isRight = files->get("exclusive") == "changed at the end" &&
                             files->get("cached") == "written at the end" && openAnew();
        files.reset();
        if (!isRight) {
            std::fprintf(stderr, "streams closed after the registry lost what was written\n");
            std::_Exit(1);
        }
    }

    std::unique_ptr<TestFiles> files;
    std::unique_ptr<TvFileStreamBufImpl> exclusive;
    std::unique_ptr<TvFileOStreamBuf> cached;

private:
    // Without a registry an exclusive open is like any other.
    bool openAnew() const
    {
        const auto first = openExclusively(files->wide("exclusive"));
        return first.status == Orna::eOk && hasFile(*first);
    }
};

constexpr int kBeforeOpenFiles = TvStartup::kHeapRange + 1;
static_assert(kBeforeOpenFiles < TvStartup::kUnitSettings);
LateHolder g_late __attribute__((init_priority(kBeforeOpenFiles)));

// What goes wrong after the last test ends the program with a failure.
TEST(OpenAtExit, StreamsAreClosedAndWrittenAllTheSame)
{
    g_late.files = std::make_unique<TestFiles>();
    auto exclusive = openExclusively(g_late.files->put("exclusive", "as it was"));
    ASSERT_EQ(exclusive.status, Orna::eOk);
    write(*exclusive, "changed at the end");
    g_late.exclusive = std::move(exclusive.stream);
    auto cached = openOut(g_late.files->wide("cached"));
    ASSERT_EQ(cached.status, Orna::eOk);
    write(*cached, "written at the end");
    g_late.cached = std::move(cached.stream);
}

} // namespace
