// The bytes behind a stream: how their room grows, who shares them, where it ends.
#include "TvMemStreamBuf.h"

#include "FlatMemBufText.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

// How the room grows: the reported sizes are promised.
TEST(TvFlatMemBufGrowth, FirstByteTakesRoomForEight)
{
    TvFlatMemBuf stream(0);
    stream.writeByte('X');
    EXPECT_EQ(stream.bufSize(), 8u);
}

TEST(TvFlatMemBufGrowth, FullHundredDoubles)
{
    TvFlatMemBuf stream(100);
    stream.resize(100);
    stream.resize(101);
    EXPECT_EQ(stream.bufSize(), 200u);
}

TEST(TvFlatMemBufGrowth, FullHundredThousandGrowsBy64K)
{
    TvFlatMemBuf stream(100000);
    stream.resize(100000);
    stream.resize(100001);
    EXPECT_EQ(stream.bufSize(), 165536u);
}

TEST(TvFlatMemBufGrowth, SingleBytesDoubleUpTo64KThenStep)
{
    TvFlatMemBuf stream(0);
    std::vector<std::uint32_t> sizes;
    for (int i = 0; i < 200000; ++i) {
        stream.writeByte('X');
        if (sizes.empty() || sizes.back() != stream.bufSize())
            sizes.push_back(stream.bufSize());
    }
    const std::vector<std::uint32_t> expected{8,    16,   32,    64,    128,   256,    512,    1024,  2048,
                                              4096, 8192, 16384, 32768, 65536, 131072, 196608, 262144};
    EXPECT_EQ(sizes, expected);
}

TEST(TvFlatMemBufGrowth, ALargePieceTakesAsMuchAsItNeeds)
{
    TvFlatMemBuf stream(10);
    stream.resize(10);
    stream.resize(1010);
    EXPECT_EQ(stream.bufSize(), 1010u);
}

// Copies share the bytes until one of them is changed.
TEST(TvFlatMemBufCopy, EveryWayToChangeLeavesTheOtherAlone)
{
    struct Change {
        const char* name;
        void (*run)(TvFlatMemBuf& stream);
    };
    const Change changes[] = {
        {"writeByte", [](TvFlatMemBuf& s) { s.writeByte('X'); }},
        {"writeByte to the same length", [](TvFlatMemBuf& s) { s.moveTo(5), s.writeByte('X'); }},
        {"writeByte at", [](TvFlatMemBuf& s) { s.writeByte(1, 'X'); }},
        {"writeBytes", [](TvFlatMemBuf& s) { s.writeBytes(bytes("XY"), 2); }},
        {"writeBytes at", [](TvFlatMemBuf& s) { s.writeBytes(1, bytes("XY"), 2); }},
        {"setByte", [](TvFlatMemBuf& s) { s.setByte('X'); }},
        {"setByte at", [](TvFlatMemBuf& s) { s.setByte(1, 'X'); }},
        {"setBytes", [](TvFlatMemBuf& s) { s.setBytes(bytes("XY"), 2); }},
        {"setBytes at", [](TvFlatMemBuf& s) { s.setBytes(1, bytes("XY"), 2); }},
        {"truncate", [](TvFlatMemBuf& s) { s.truncate(); }},
        {"resize", [](TvFlatMemBuf& s) { s.resize(60000); }},
        {"close", [](TvFlatMemBuf& s) { s.close(); }},
        {"buffer", [](TvFlatMemBuf& s) { s.buffer()[0] = 'X'; }},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(change.name);
        const SixBytes original(3);
        TvFlatMemBuf copy(original);
        change.run(copy);
        EXPECT_EQ(text(original), "abcdef");
        EXPECT_EQ(original.tell(), 3u);
    }
}

TEST(TvFlatMemBufCopy, CopyHasTheBytesAndTheCursor)
{
    const SixBytes original(3);
    const TvFlatMemBuf copy(original);
    EXPECT_EQ(text(copy), "abcdef");
    EXPECT_EQ(copy.tell(), 3u);
}

// The source of a write may be the stream's own storage, which a write may move.
TEST(TvFlatMemBufOwnBytes, WriteOfOwnBytesThatGrows)
{
    TvFlatMemBuf stream(64);
    stream.writeBytes(bytes("0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef"), 64);
    stream.writeBytes(stream.buffer(), 64);
    EXPECT_EQ(text(stream).substr(64), text(stream).substr(0, 64));
}

TEST(TvFlatMemBufOwnBytes, OverlappingWriteMovesTheBytes)
{
    SixBytes stream(0);
    stream.writeBytes(2, stream.buffer(), 4);
    EXPECT_EQ(text(stream), "ababcd");
}

TEST(TvFlatMemBufOwnBytes, OverlappingSetMovesTheBytes)
{
    SixBytes stream(0);
    stream.setBytes(2, stream.buffer(), 4);
    EXPECT_EQ(text(stream), "ababcd");
}

TEST(TvFlatMemBufOwnBytes, OpenOfOwnBytesThatGrows)
{
    SixBytes stream(0);
    stream.open(stream.buffer() + 2, 4, 100);
    EXPECT_EQ(text(stream).substr(0, 4), "cdef");
    EXPECT_EQ(stream.length(), 104u);
}

TEST(TvFlatMemBuf, LengthBeyondTwoGigabytesIsReportedAsOutOfMemory)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.resize(0x80000000u);
    ASSERT_EQ(recorder.statuses().size(), 1u);
    EXPECT_EQ(recorder.statuses()[0], Orna::eOutOfMemory);
    EXPECT_EQ(text(stream), "abcdef");
}

TEST(TvFlatMemBuf, RoomBeyondTwoGigabytesIsReportedAsOutOfMemory)
{
    Recorder recorder;
    SixBytes stream(3);
    stream.reserve(0x80000000u);
    EXPECT_EQ(recorder.statuses(), std::vector<Orna::ErrorStatus>{Orna::eOutOfMemory});
    EXPECT_EQ(text(stream), "abcdef");
}

} // namespace
