// Streams driven by random programs, beside the plainest model of each.
#include "FileStreams.h"
#include "FileTraffic.h"
#include "MemoryTraffic.h"
#include "StreamChoices.h"
#include "TestFiles.h"
#include "TestScale.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

namespace {

StreamChoices choicesOf(std::uint64_t seed)
{
    const auto random = std::make_shared<std::mt19937_64>(seed);
    return StreamChoices([random](std::uint32_t n) {
        return std::uniform_int_distribution<std::uint32_t>(0, n - 1)(*random);
    });
}

TEST(StreamModel, FlatMemBufFollowsItsModel)
{
    const std::uint64_t seed = testSeed(20240611);
    RecordProperty("seed", std::to_string(seed));
    for (long run = 0; run < scaled(300); ++run) {
        StreamChoices choices = choicesOf(seed + static_cast<std::uint64_t>(run));
        MemoryTraffic traffic(choices, choices.below(100));
        for (int i = 0; i < 200; ++i)
            ASSERT_STREQ(traffic.step(), nullptr) << "run " << run << " step " << i;
    }
}

template<class Open>
void followModel(Open open, bool setsBytes)
{
    const std::uint64_t seed = testSeed(20240612);
    testing::Test::RecordProperty("seed", std::to_string(seed));
    TestFiles files;
    for (long run = 0; run < scaled(40); ++run) {
        const auto stream = open(files.wide("file"));
        ASSERT_TRUE(hasFile(*stream));
        FileTraffic traffic(choicesOf(seed + static_cast<std::uint64_t>(run)), *stream, setsBytes);
        for (int i = 0; i < 100; ++i)
            ASSERT_STREQ(traffic.step(), nullptr) << "run " << run << " step " << i;
        stream->close();
        ASSERT_EQ(files.get("file"), traffic.bytes()) << "run " << run;
        const auto back = openIn(files.wide("file"));
        ASSERT_EQ(read(*back, static_cast<std::uint32_t>(traffic.bytes().size())), traffic.bytes());
    }
}

TEST(StreamModel, UnbufferedFileFollowsItsModel)
{
    followModel(
        [](const std::wstring& name) {
            return openFile(name, kBoth, TvIO::kShareDenyNone, TvIO::kCreateAlways);
        },
        true);
}

TEST(StreamModel, CachedFileFollowsItsModel)
{
    followModel([](const std::wstring& name) { return openOut(name); }, false);
}

TEST(StreamModel, MappedFileFollowsItsModel)
{
    const std::uint64_t seed = testSeed(20240613);
    RecordProperty("seed", std::to_string(seed));
    TestFiles files;
    for (long run = 0; run < scaled(20); ++run) {
        StreamChoices choices = choicesOf(seed + static_cast<std::uint64_t>(run));
        const std::string content = choices.bytes(choices.size(3000000));
        files.put("file", content);
        const auto stream = openIn(files.wide("file"));
        MappedFileTraffic traffic(choices, *stream, content);
        for (int i = 0; i < 300; ++i)
            ASSERT_STREQ(traffic.step(), nullptr) << "run " << run << " step " << i;
    }
}

} // namespace
